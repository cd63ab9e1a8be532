# SPDX-License-Identifier: GPL-2.0-or-later
"""The media commands as their rules tell them: every device's state, every answer, every frame that is captured."""

import array
import math

MIX = 44100
CLOSE = 0.02  # seconds that a position may be off


class Source:
    """A file that can be opened. `values` are its frames as the mix gets them, both sides in turn, or None if only its
    length is known."""

    def __init__(self, name, rate, frames, values=None, slack=0):
        self.name, self.rate, self.frames, self.values = name, rate, frames, values
        self.slack = slack  # frames that the length may be off


class Player:
    kind = "player"

    def __init__(self, source):
        self.source, self.position, self.end, self.mode, self.ms = source, 0.0, source.frames, "stopped", False

    def frames_of(self, units):
        return units * self.source.rate / 1000 if self.ms else units

    def units_of(self, frames):
        return frames * 1000 / self.source.rate if self.ms else frames

    @property
    def tolerance(self):
        """In the unit of the answers."""
        return self.units_of(CLOSE * self.source.rate) + 1

    @property
    def left(self):
        """Seconds until it stands still."""
        return (self.end - self.position) / self.source.rate

    def play(self, begin=None, end=None):
        begin = self.position if begin is None else self.frames_of(begin)
        end = self.source.frames if end is None else min(self.source.frames, self.frames_of(end))
        if begin < 0 or begin > self.source.frames or end <= begin:
            return False
        self.position, self.end, self.mode = begin, end, "playing"
        return True

    def pause(self):
        return self._turn(("playing",), "paused")

    def resume(self):
        return self._turn(("paused",), "playing")

    def stop(self):
        return self._turn(("playing", "paused"), "stopped")

    def _turn(self, modes, to):
        if self.mode not in modes:
            return False
        self.mode = to
        return True

    def advance(self, frames, mix):
        """Adds to the mix what is heard of it in so many frames of the mix."""
        if self.mode != "playing":
            return
        if self.source.values is not None:
            at, last = int(self.position), int(self.end)
            for n, value in enumerate(self.source.values[2 * at:2 * min(last, at + frames)]):
                mix[n] += value
        self.position += frames * self.source.rate / MIX
        if self.position >= self.end:
            self.position, self.mode = self.end, "stopped"


class Recorder:
    kind = "recorder"

    def __init__(self):
        self.rate, self.channels, self.bits = 44100, 2, 16
        self.recording = False
        self.pieces = []  # (first frame, behind the last one) of the mix

    @property
    def mode(self):
        return "recording" if self.recording else "stopped"

    @property
    def frames(self):
        return sum(end - begin for begin, end in self.pieces)

    def set(self, rate, channels, bits, alignment, bytes_per_second):
        if self.recording or not 8000 <= rate <= 192000 or channels not in (1, 2) or bits not in (8, 16) \
                or alignment != channels * bits // 8 or bytes_per_second != rate * alignment:
            return False
        self.rate, self.channels, self.bits = rate, channels, bits
        return True

    def wanted(self, mix, delay):
        """What is captured, exact, where the mix is heard `delay` frames late; in 16-bit steps."""
        late = array.array("i", bytes(8 * delay)) + mix
        heard = array.array("i")
        for begin, end in self.pieces:
            heard += late[2 * begin:2 * end]
        if self.channels == 2:
            return heard
        return [(heard[n] + heard[n + 1]) / 2 for n in range(0, len(heard), 2)]

    def agrees(self, take, mix, delay):
        wanted = self.wanted(mix, delay)
        got = take.values
        if len(got) != len(wanted):
            return False
        if self.bits == 16 and self.channels == 2:
            return list(got) == list(wanted)
        step = 256 if self.bits == 8 else 1
        top = 32767 if self.bits == 16 else 127 * 256
        # A mean that is rounded before its width is halved may be off by as much again.
        return all(abs(g - min(top, w)) <= step / 2 + 0.51 * (self.bits == 8) for g, w in zip(got, wanted))

    def difference(self, take, mix):
        """In words, None if every frame is right under one delay."""
        if (take.rate, take.channels, take.bits) != (self.rate, self.channels, self.bits):
            return f"a take of {take[:3]} and not {(self.rate, self.channels, self.bits)}"
        frames = round(self.frames * self.rate / MIX)
        if abs(take.frames - frames) > (0 if self.rate == MIX else CLOSE * self.rate):
            return f"{take.frames} frames and not {frames}"
        if self.rate != MIX or mix is None:
            return None
        for delay in range(math.ceil(CLOSE * MIX) + 1):
            if self.agrees(take, mix, delay):
                return None
        wanted = self.wanted(mix, 0)
        at = next(n for n, (g, w) in enumerate(zip(take.values, wanted)) if abs(g - w) > (256 if self.bits == 8 else 1) / 2)
        return f"value {at} of {len(wanted)} is wrong: {list(take.values[at:at + 6])} and not {list(wanted[at:at + 6])}"


class Model:
    """All devices; `mix` is what was heard since the beginning, or None once a sound is heard that isn't known exactly."""

    def __init__(self, sources):
        self.sources = {source.name: source for source in sources}
        self.devices, self.now, self.mix = {}, 0, array.array("i")

    def get(self, alias, kind=None):
        device = self.devices.get(alias.lower())
        return device if device and kind in (None, device.kind) else None

    def open(self, name, alias):
        if alias.lower() in self.devices or (name is not None and name not in self.sources):
            return False
        self.devices[alias.lower()] = Recorder() if name is None else Player(self.sources[name])
        return True

    def close(self, alias):
        return self.devices.pop(alias.lower(), None) is not None

    def players(self):
        return [device for device in self.devices.values() if device.kind == "player"]

    def recorders(self):
        return [device for device in self.devices.values() if device.kind == "recorder"]

    def wait(self, frames):
        heard = array.array("i", bytes(8 * frames))
        for player in self.players():
            if player.mode == "playing" and player.source.values is None:
                self.mix = None
            player.advance(frames, heard)
        if self.mix is not None:
            self.mix += heard
        for recorder in self.recorders():
            if recorder.recording:
                recorder.pieces.append((self.now, self.now + frames))
        self.now += frames
