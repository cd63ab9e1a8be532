# SPDX-License-Identifier: GPL-2.0-or-later
"""A sound server of the tests' own, and an ear for what comes out of it."""

import array
import math
import operator
import os
import re
import subprocess
import tempfile
from typing import NamedTuple

from desktop import wait_for

RATE = 8000
SILENT = 60  # of 32768


class SoundServer:
    def __init__(self, folder):
        os.makedirs(folder)
        socket = os.path.join(folder, "native")
        self.address = "unix:" + socket
        self.environment = {**os.environ, "PULSE_SERVER": self.address, "PULSE_RUNTIME_PATH": folder,
                            "PULSE_STATE_PATH": folder, "PULSE_CONFIG_PATH": folder}
        self.environment.pop("DISPLAY", None)
        self.process = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "--realtime=no",
             "--high-priority=no",
             "-L", "module-null-sink sink_name=out rate=44100 channels=2 format=float32le norewinds=1",
             "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + socket],
            env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(lambda: os.path.exists(socket), "the sound server")

    def stop(self):
        self.process.terminate()
        self.process.wait(10)

    def record(self):
        return Recording(self)

    def listen(self, play):
        """The loudness of what sounds while `play` runs, in tenths of a second from its beginning on."""
        with self.record() as recording:
            recording.silence()
            begin = recording.size() // 2
            for _ in play():
                pass
        samples = recording.samples[begin:]
        step = RATE // 10
        tenths = [max(map(abs, samples[at:at + step])) for at in range(0, len(samples) - step, step)]
        first = next((at for at, loud in enumerate(tenths) if loud > 100), len(tenths))
        return tenths[first:]


class Recording:
    """What sounds while a `with` lasts: `samples` afterwards."""

    def __init__(self, server):
        self.server = server

    def __enter__(self):
        self.file = tempfile.TemporaryFile()
        self.process = subprocess.Popen(
            ["parec", "--device=out.monitor", "--format=s16le", f"--rate={RATE}", "--channels=1", "--raw",
             "--latency-msec=20"], env=self.server.environment, stdout=self.file)
        wait_for(lambda: self.size() > 0, "what the sound server gives, silence at least")
        return self

    def __exit__(self, *failure):
        self.process.terminate()
        self.process.wait(10)
        self.file.seek(0)
        heard = self.file.read()
        self.file.close()
        self.samples = array.array("h", heard[:len(heard) // 2 * 2])

    def size(self):
        return os.fstat(self.file.fileno()).st_size

    def silence(self, seconds=0.2):
        """Waits for what sounds to end."""
        wait_for(lambda: self.size() >= 2 * RATE * seconds and self.latest(seconds) < SILENT, "silence")

    def latest(self, seconds):
        """How loud the last moments were, while the recording goes on."""
        count = 2 * int(RATE * seconds)
        heard = os.pread(self.file.fileno(), count, max(0, self.size() // 2 * 2 - count))
        return max(map(abs, array.array("h", heard[:len(heard) // 2 * 2])), default=0)


class Heard(NamedTuple):
    onset: float  # seconds
    end: float
    pitch: int  # as MIDI counts notes


WINDOW, HOP = 480, 80  # samples: 60 ms every 10 ms
SHORTEST = 4  # hops, of what counts as a note
GAP = 0.15  # seconds
NOTHING = rb"(?:\0\0){32,}"  # 4 ms


def stumbles(samples):
    """Where a server under load faltered, from sample to sample: nothing at all amid a sound, which then goes on where it
    stood."""
    runs = [((run.start() + 1) // 2, run.end() // 2) for run in re.finditer(NOTHING, samples.tobytes())]
    return [(begin, end) for begin, end in runs
            if end - begin < GAP * RATE and max(map(abs, samples[max(0, begin - 40):begin]), default=0) > 4 * SILENT]


def meets(gaps, begin, end):
    return any(first < end and begin < last for first, last in gaps)


def _waves(pitch):
    """Both phases of a pitch, faded in and out."""
    turn = 2 * math.pi * 440 * 2 ** ((pitch - 69) / 12) / RATE
    fade = [0.5 - 0.5 * math.cos(2 * math.pi * (i + 0.5) / WINDOW) for i in range(WINDOW)]
    return tuple([fade[i] * phase(turn * i) for i in range(WINDOW)] for phase in (math.cos, math.sin))


def notes(samples, lowest=55, highest=79):
    """The notes of a tune in one voice, by the semitone that is strongest: so of a sound with a strong first
    partial, whose neighbours in the tune differ; a server that falters makes no two notes of one, nor a note of its
    own."""
    waves = {pitch: _waves(pitch) for pitch in range(lowest, highest + 1)}

    def strength(window, pitch):
        return sum(sum(map(operator.mul, window, wave)) ** 2 for wave in waves[pitch])

    gaps = stumbles(samples)
    pitches = []
    for at in range(0, len(samples) - WINDOW, HOP):
        if pitches and meets(gaps, at, at + WINDOW):
            pitches.append(pitches[-1])
            continue
        window = samples[at:at + WINDOW]
        loud = max(map(abs, window[WINDOW // 4:-WINDOW // 4])) > 8 * SILENT
        pitches.append(max(waves, key=lambda pitch: strength(window, pitch)) if loud else None)
    found, begin = [], 0
    for at in range(1, len(pitches) + 1):
        if at < len(pitches) and pitches[at] == pitches[begin]:
            continue
        if pitches[begin] is not None and at - begin >= SHORTEST:
            onset, end = ((hop * HOP + WINDOW // 2) / RATE for hop in (begin, at))
            if found and found[-1].pitch == pitches[begin] and onset - found[-1].end < GAP:
                onset = found.pop().onset
            found.append(Heard(onset, end, pitches[begin]))
        begin = at
    return found


def strikes(samples):
    """How often a sound that fades by itself was struck: its level jumps up."""
    step = RATE // 50
    gaps = stumbles(samples)
    levels = [max(map(abs, samples[at:at + step])) for at in range(0, len(samples) - step, step)
              if not meets(gaps, at, at + step)]
    struck, lowest, rises = 0, 0, False
    for level in levels:
        jumps = level > 1.6 * lowest + 4 * SILENT
        struck += jumps and not rises
        rises = jumps
        lowest = level if jumps else min(lowest, level)
    return struck
