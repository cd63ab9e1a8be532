# SPDX-License-Identifier: GPL-2.0-or-later
"""Random scripts for `media --virtual`, held against a model of all its states, answers and frames."""

import array
import os
import random
import re

from studio import case, mp3s
from studio.case import SMALL_SOUNDFONT, StudioCase
from studio.media_model import CLOSE, MIX, Model, Source
from studio.midis import scale
from studio.waves import CODINGS, Header, read_plain, values_of, wave

ALIASES = ("one", "Two", "audiomp3", "capture", "x")
LARGEST = 2147483647


def spoken(rng, *words):
    """The words with any number of blanks between and in any case of letters; what is a tuple stays as it is."""
    text = ""
    for word in words:
        if text:
            text += " " * (1 if rng.random() < 0.8 else rng.randrange(2, 5))
        if isinstance(word, tuple):
            text += word[0]
        else:
            text += "".join(c.upper() if rng.random() < 0.5 else c.lower() for c in word) if rng.random() < 0.2 else word
    return text


class Script:
    """Lines and, for each, what its answer must be: a function that tells what is wrong with it, or None."""

    def __init__(self, rng, sources, absent):
        self.rng, self.model, self.absent = rng, Model(sources), absent
        self.lines, self.checks, self.takes = [], [], []

    def add(self, line, check):
        if self.rng.random() < 0.05:
            self.lines.append(self.rng.choice(["", "   ", "# close all", "#"]))
        self.lines.append(line)
        self.checks.append((line, check))

    def expect(self, good, names, *words):
        self.add(spoken(self.rng, *words), success if good else self.error(names))

    @staticmethod
    def error(names):
        def check(answer):
            if answer.startswith("Success") or not answer.strip() or len(answer) > 128:
                return "wanted an error of at most 128 characters"
            if names and not any(name.lower() in answer.lower() for name in names):
                return f"wanted an error that names {' or '.join(names)}"
            return None
        return check

    def alias(self):
        return self.rng.choice(ALIASES)

    def device(self, kind=None):
        """An alias that is often one of that kind."""
        known = [alias for alias, device in self.model.devices.items() if kind in (None, device.kind)]
        return self.rng.choice(known) if known and self.rng.random() < 0.9 else self.alias()

    # Commands

    def open(self):
        rng, alias = self.rng, self.alias()
        if rng.random() < 0.35:
            self.expect(self.model.open(None, alias), [alias], "open", "new", "type", "waveaudio", "alias", alias)
            return
        name = rng.choice(list(self.model.sources) + self.absent)
        shown = '"' + name + '"' if rng.random() < 0.3 else name
        more = rng.choice([(), ("parent", "0"), ("style", "child"), ("parent", "12345", "style", "1073741824")])
        good = self.model.open(name, alias)
        self.expect(good, [alias, os.path.basename(name)], ("open " + shown,), "type", "MPEGVideo", "alias", alias, *more)

    def close(self):
        if self.rng.random() < 0.1:
            self.model.devices.clear()
            self.expect(True, [], "close", "all")
        else:
            alias = self.device()
            self.expect(self.model.close(alias), [alias], "close", alias)

    def play(self):
        rng, alias = self.rng, self.device("player")
        player = self.model.get(alias, "player")
        length = int(player.units_of(player.source.frames)) if player else 1000
        if player and player.source.slack:
            length //= 2  # not near its end
        begin = end = None
        # Standing at the end, what "from here" means is left open; so is a beginning that is the end itself.
        if player and player.position >= player.source.frames - player.tolerance or rng.random() < 0.6:
            begin = rng.choice([0, 0, rng.randrange(max(1, length - 100)), rng.randrange(max(1, length - 100)),
                                length + 500 + rng.randrange(999)])
        if rng.random() < 0.5:
            here = begin if begin is not None else int(player.units_of(player.position)) if player else 0
            end = rng.choice([0, here + 200 + rng.randrange(max(1, length)), max(0, here - 200), length + 1000, LARGEST,
                              here + 100 + rng.randrange(400)])
            if begin is not None and rng.random() < 0.1:
                end = begin
        if player and player.ms:  # what lies between two frames may begin at either
            begin, end = (value if value is None else -(-value // 10) * 10 for value in (begin, end))
        good = player is not None and player.play(begin, end)
        words = (["from", str(begin)] if begin is not None else []) + (["to", str(end)] if end is not None else [])
        self.expect(good, [alias], "play", alias, *words)

    def turn(self):
        verb, alias = self.rng.choice(["pause", "resume", "stop"]), self.device("player")
        device = self.model.get(alias)
        if device and device.kind == "recorder":
            if verb != "stop":
                return
            good, device.recording = device.recording, False
        else:
            good = device is not None and getattr(device, verb)()
        self.expect(good, [alias], verb, alias)

    def unit(self):
        alias = self.device("player")
        player = self.model.get(alias, "player")
        if self.model.get(alias, "recorder"):
            return
        ms = self.rng.random() < 0.5
        if player:
            player.ms = ms
        self.expect(player is not None, [alias], "set", alias, "time", "format", "ms" if ms else "frames")

    def status(self):
        alias = self.device()
        device = self.model.get(alias)
        what = self.rng.choice(["length", "position", "mode"])
        if device is None:
            self.expect(False, [alias], "status", alias, what)
            return
        if what == "mode":
            check = value_is(device.mode)
        elif device.kind == "recorder":
            return
        elif what == "length":
            check = value_near(device.units_of(device.source.frames), 1 + device.units_of(device.source.slack))
        else:
            check = value_near(device.units_of(device.position), device.tolerance)
        self.add(spoken(self.rng, "status", alias, what), check)

    def record(self):
        alias = self.device("recorder")
        device = self.model.get(alias)
        good = device is not None and device.kind == "recorder" and not device.recording
        if good:
            device.recording = True
        self.expect(good, [alias], "record", alias)

    def set(self):
        rng, alias = self.rng, self.device("recorder")
        recorder = self.model.get(alias, "recorder")
        if recorder and recorder.pieces and not recorder.recording:
            return  # what becomes of what is captured is left open
        rate, channels, bits = rng.choice([44100, 44100, 44100, 22050, 8000, 48000, 192000, 7999, 192001]), rng.choice(
            [1, 2, 2, 3, 0]), rng.choice([8, 16, 16, 24])
        alignment = channels * bits // 8 + (1 if rng.random() < 0.1 else 0)
        speed = rate * alignment + (1 if rng.random() < 0.1 else 0)
        good = recorder is not None and recorder.set(rate, channels, bits, alignment, speed)
        self.expect(good, [alias], "set", alias, "samplespersec", str(rate), "channels", str(channels), "bitspersample",
                    str(bits),
                    "alignment", str(alignment), "bytespersec", str(speed))

    def save(self):
        alias = self.device("recorder")
        device = self.model.get(alias)
        name = f"take {len(self.takes)}.wav"
        good = device is not None and device.kind == "recorder" and not device.recording
        self.expect(good, [alias, name], "save", alias, (name,))
        if good:
            mix = None if self.model.mix is None else array.array("i", self.model.mix)
            kept = type(device)()
            kept.__dict__.update(device.__dict__, pieces=list(device.pieces))
            self.takes.append((name, kept, mix))

    def delete(self):
        alias = self.device("recorder")
        device = self.model.get(alias)
        if device and device.kind == "recorder" and device.recording:
            return
        good = device is not None and device.kind == "recorder"
        if good:
            device.pieces = []
        self.expect(good, [alias], "delete", alias)

    def capability(self):
        alias = self.device("recorder")
        device = self.model.get(alias)
        if device and device.kind == "player":
            check = lambda answer: None if re.fullmatch("Success\t(true|false)", answer) else "wanted true or false"
        else:
            check = value_is("true") if device else self.error([alias])
        self.add(spoken(self.rng, "capability", alias, "can", "save"), check)

    def wait(self):
        hundredths = self.rng.choice([0, 1, 2, 5, 10, 20, 35, 50, self.rng.randrange(100)])
        self.pass_time(hundredths)

    def pass_time(self, hundredths):
        before = {id(p) for p in self.model.players() if p.mode == "playing"}
        lefts = {id(p): p.left - hundredths / 100 for p in self.model.players()}
        self.model.wait(441 * hundredths)
        text = f"{hundredths / 100:.2f}" if self.rng.random() < 0.7 or hundredths % 10 else f"{hundredths / 100:g}"
        self.add(spoken(self.rng, "wait", text), success)
        if any(abs(lefts[key]) <= CLOSE + 0.005 for key in before):
            self.pass_time(5)  # near its end a player may stand still or not: not so later

    def wait_for_player(self):
        """Only where no other device goes on, since it may end a little later."""
        alias = self.device("player")
        player = self.model.get(alias, "player")
        if self.model.get(alias, "recorder") or any(r.recording for r in self.model.recorders()) or any(
                p is not player and p.mode == "playing" for p in self.model.players()):
            return
        if player and player.source.slack and player.end == player.source.frames:
            return
        if player and player.mode == "playing":
            if player.source.values is None:
                self.model.mix = None
            player.position, player.mode = player.end, "stopped"
        self.expect(player is not None, [alias], "wait", alias)
        self.pass_time(5)  # so that nothing of it is still on its way when something is captured

    def nonsense(self):
        rng = self.rng
        line = rng.choice(["play", "frobnicate one", "open", "set", "status one", "status one mood",
                           "set one time format yards",
                           "capability", "save", "wait", "wait -1", "wait nobody", "play one from", "play one from x",
                           "close",
                           "play one from 1 to", "open x type waveaudio alias", "type MPEGVideo alias one", "record", "x"])
        self.add(line, self.error([]))

    COMMANDS = ((open, 8), (close, 2), (play, 8), (turn, 7), (unit, 2), (status, 14), (record, 5), (set, 2), (save, 4),
                (delete, 1),
                (capability, 1), (wait, 12), (wait_for_player, 2), (nonsense, 1))

    def fill(self, count):
        commands, weights = zip(*self.COMMANDS)
        while len(self.checks) < count:
            self.rng.choices(commands, weights)[0](self)
        for alias in list(self.model.devices):
            device = self.model.devices[alias]
            if device.kind == "recorder":
                if device.recording:
                    device.recording = False
                    self.expect(True, [], "stop", alias)
                name = f"last {alias}.wav"
                self.expect(True, [], "save", alias, (name,))
                self.takes.append((name, device, self.model.mix))


def success(answer):
    return None if answer == "Success" else "wanted Success"


def value_is(text):
    return lambda answer: None if answer == "Success\t" + text else f"wanted {text}"


def value_near(value, tolerance):
    def check(answer):
        found = re.fullmatch(r"Success\t(\d+)", answer)
        return None if found and abs(int(found[1]) - min(value, LARGEST)) <= tolerance else f"wanted about {value:.0f}"
    return check


class ScriptTest(StudioCase):
    def sources(self):
        rng = random.Random(1)

        def noise(frames, channels):
            values = array.array("h", [rng.randrange(-8000, 8001) or 1 for _ in range(frames * channels)])
            both = values if channels == 2 else array.array("h", [v for v in values for _ in range(2)])
            return values, both

        exact, more = [], []
        for name, frames, channels in (("a.wav", 30000, 2), ("b mono.wav", 50001, 1), ("type c.WAV", 120000, 2)):
            values, both = noise(frames, channels)
            self.save(name, wave(values, 44100, channels))
            exact.append(Source(name, 44100, frames, both))
        values, both = noise(20000, 2)
        self.save("r.wav", Header(container=b"RIFX").file(b"".join(CODINGS[1].pack(v, ">") for v in values)))
        exact.append(Source("r.wav", 44100, 20000, both))
        for name, rate, frames in (("slow.wav", 22050, 30000), ("fast.wav", 48000, 60000)):
            values, both = noise(frames, 2)
            self.save(name, wave(values, rate))
            more.append(Source(name, rate, frames))
        mp3s.lame(self.path("a.wav"), self.path("m.mp3"))
        more.append(Source("m.mp3", 44100, 30000))
        # So long that no script comes near its end, where it may ring out for a while.
        self.save("tune.mid", scale(keys=range(48, 88), ticks=2880))
        more.append(Source("tune.mid", 44100, 40 * 3 * 44100, slack=0.3 * 44100))
        self.save("bad.wav", b"no sound")
        return exact, more, ["absent.wav", "bad.wav", "no folder/x.mp3", "new", "absent 2.mid"]

    def run_script(self, seed, sources, absent, count):
        script = Script(random.Random(seed), sources, absent)
        script.fill(count)
        text = "\n".join(script.lines) + "\n"
        done = self.run_cli("media", "--virtual", "--soundfont", SMALL_SOUNDFONT, given=text.encode())
        answers = done.stdout.split("\n")
        self.assertEqual(answers.pop(), "")
        told = f"seed {seed}:\n" + "\n".join(f"{line}  ->  {answer}" for (line, _), answer in zip(script.checks, answers))
        for n, ((line, check), answer) in enumerate(zip(script.checks, answers)):
            if wrong := check(answer):
                self.fail(f"{wrong}; line {n + 1}, {line!r} was answered by {answer!r}\n{told}")
        self.assertEqual(len(answers), len(script.checks), told)
        self.assertEqual(done.returncode, 0 if all(a.split("\t")[0] == "Success" for a in answers) else 1, told)
        for name, recorder, mix in script.takes:
            take, size = read_plain(self.read(name))
            self.assertEqual(len(take.data), size, name)
            if wrong := recorder.difference(take, mix):
                self.fail(f"{name}: {wrong}; it captured {recorder.pieces}\n{told}")
            os.remove(self.path(name))
        return len(script.takes)

    def test_random_scripts_are_answered_and_captured_as_the_rules_tell(self):
        exact, more, absent = self.sources()
        first, count = case.seed or 0, case.rounds or (10 if case.sanitized else 60)
        takes = 0
        for n in range(first, first + count):
            # Two of three have only sounds that the mix gets frame for frame, so that what is captured is known.
            takes += self.run_script(n, exact if n % 3 else exact + more, absent, 60)
        self.assertGreater(takes, count // 2)

    def test_a_script_gives_the_same_frames_each_time(self):
        exact, more, _ = self.sources()
        lines = ["open new type waveaudio alias c", "record c"]
        for n, source in enumerate(exact + more):
            lines += [f"open {source.name} type MPEGVideo alias p{n}", f"play p{n}", "wait 0.3"]
        takes = []
        for name in ("1.wav", "2.wav"):
            self.succeed("media", "--virtual", "--soundfont", SMALL_SOUNDFONT, given="\n".join(
                [*lines, "stop c", "save c " + name]).encode())
            takes.append(self.read(name))
        self.assertEqual(takes[0], takes[1])
        self.assertGreater(max(values_of(takes[0][44:])), 1000)
        self.assertEqual(len(takes[0]), 44 + 4 * round(0.3 * MIX * len(exact + more)))
