# SPDX-License-Identifier: GPL-2.0-or-later
"""Files of whatever bytes: no crash, no long time, no memory by what a header claims."""

import array
import os
import random
import struct

from studio import case, mp3s
from studio.case import SMALL_SOUNDFONT, StudioCase
from studio.midis import midi, note, scale, tempo, track
from studio.waves import CODINGS, Header, chunk, text_chunk, wave

SECONDS = 20  # that a small file may take on a machine with other work
LENGTHS = (0, 1, 2, 7, 0x7F, 0x80, 0xFF, 0x7FFF, 0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFF0, 0xFFFFFFFF)


def damaged(rng, data):
    """The bytes cut, changed, doubled or moved, once or several times."""
    data = bytearray(data)
    for _ in range(rng.choice([1, 1, 2, 3, 8])):
        if not data:
            break
        kind, at = rng.randrange(8), rng.randrange(len(data)) if rng.random() < 0.4 else rng.randrange(min(len(data), 120))
        if kind == 0:
            del data[at:]
        elif kind == 1:
            data[at] ^= 1 << rng.randrange(8)
        elif kind == 2:
            data[at] = rng.randrange(256)
        elif kind == 3:
            number = struct.pack(rng.choice("<>") + "I", rng.choice(LENGTHS))
            data[at:at + 4] = number
        elif kind == 4:
            del data[at:at + rng.randrange(1, 200)]
        elif kind == 5:
            data[at:at] = rng.randbytes(rng.randrange(1, 200))
        elif kind == 6:
            data[at:at] = data[at:at + rng.randrange(1, 2000)]
        else:
            data[at:at + 2] = struct.pack("<H", rng.choice(LENGTHS) & 0xFFFF)
    return bytes(data)


class HostileTest(StudioCase):
    def setUp(self):
        super().setUp()
        self.save("good.wav", wave([1, 2] * 2000))
        plain = self.run_cli("info", "good.wav")
        self.least = plain.memory
        self.rng = random.Random(case.seed or 1)
        self.count = case.rounds or (40 if case.sanitized else 160)

    def seeds(self):
        """Good files of every kind: (extension, bytes)."""
        rng = random.Random(7)
        for coding in CODINGS:
            raw = [coding.draw(rng) for _ in range(400)]
            for container, extensible in ((b"RIFF", False), (b"RIFX", False), (b"RF64", True), (b"RIFF", True)):
                head = Header(coding=coding, container=container, extensible=extensible,
                              rate=rng.choice([8000, 44100, 48000]), channels=2)
                yield "wav", head.file(b"".join(coding.pack(value, head.order) for value in raw))
        yield "wav", Header(before=chunk(b"bext", bytes(700)), behind=text_chunk(INAM="Title",
                                                                                 IART="Artist")).file(rng.randbytes(4000))
        values = array.array("h", [rng.randrange(-9000, 9000) for _ in range(30000)])
        self.save("seed.wav", wave(values))
        for options in (["-b", "128"], ["-V", "4"], ["-m", "m", "-b", "64", "--resample", "22.05"], ["-t", "-b", "320"],
                        ["--tt", "Title", "--ta", "Artist", "--add-id3v2"]):
            yield "mp3", mp3s.lame(self.path("seed.wav"), self.path("seed.mp3"), *options)
        yield "mp3", mp3s.id3v2(mp3s.id3v2_picture(rng.randbytes(5000))) + mp3s.lame(self.path("seed.wav"),
                                                                                     self.path("seed.mp3"))
        yield "mid", scale()
        yield "mid", midi(track((0, tempo(250000)), (0, b"\xff\x03\4Name"), (0, b"\xf0\3\1\2\xf7")),
                          track(*note(60, 480), *note(64, 480)),
                          track((0, b"\xc0\5"), *note(67, 240)))
        os.remove(self.path("seed.wav"))
        os.remove(self.path("seed.mp3"))

    def assertHarmless(self, done, *what):
        self.assertIn(done.returncode, (0, 1), (what, done.stderr[-300:]))
        self.assertLittleMemory(done, self.least, *what)

    def test_info_survives_damaged_files_of_every_kind(self):
        seeds = list(self.seeds())
        batch = 20
        for first in range(0, self.count * 3, batch):
            names = []
            for n in range(first, first + batch):
                extension, data = self.rng.choice(seeds)
                names.append(self.save(f"{n}.{extension}", damaged(self.rng, data)))
            done = self.run_cli("info", *names, patience=SECONDS)
            self.assertHarmless(done, "seed", case.seed or 1, names)
            failed = done.stderr.splitlines()
            told = [line for line in done.stdout.splitlines() if line.startswith("Kind: ")]
            self.assertGreaterEqual(len(failed) + len(told), batch, (failed, told))
            for name in names:
                os.remove(self.path(name))

    def test_what_encodes_burns_plays_and_records_survives_them(self):
        seeds = list(self.seeds())
        for n in range(self.count // 4):
            extension, data = self.rng.choice(seeds)
            name = self.save(f"{n}.{extension}", damaged(self.rng, data))
            if extension == "wav":
                self.assertHarmless(self.run_cli("encode", name, "out.mp3", patience=SECONDS), "encode", n)
            if extension != "mid":
                self.assertHarmless(self.run_cli("burn", name, "--image", "out.cue", "--dry-run", patience=SECONDS),
                                    "burn", n)
            lines = f"open {name} type MPEGVideo alias p\n" + \
                "play p\nwait 0.2\nstatus p length\nplay p from 100\nwait 0.1\nclose all\n"
            done = self.run_cli("media", "--virtual", "--soundfont", SMALL_SOUNDFONT, given=lines.encode(),
                                patience=SECONDS)
            self.assertIn(done.returncode, (0, 1), (n, done.stderr))
            self.assertEqual(len(done.stdout.splitlines()), 7, n)
            done = self.run_cli("record", name, "take.wav", "--virtual", "--seconds", "0.3", "--replace", "--soundfont",
                                SMALL_SOUNDFONT,
                                patience=SECONDS)
            self.assertIn(done.returncode, (0, 1), (n, done.stderr))
            os.remove(self.path(name))

    def test_bytes_of_no_kind_are_refused_under_any_name(self):
        for n in range(self.count // 4):
            size = self.rng.choice([0, 1, 3, 4, 11, 12, 43, 44, 45, 100, 1000, 30000])
            head = self.rng.choice([b"", b"RIFF", b"RIFF\xff\xff\xff\xffWAVE", b"RIFF\0\0\0\0WAVEdata\xff\xff\xff\xff",
                                    b"ID3\4\0\0\x7f\x7f\x7f\x7f",
                                    b"\xff\xfb\x90\x64", b"MThd\0\0\0\6\0\1\xff\xff\0\1", b"MThd\xff\xff\xff\xff",
                                    b"RF64\xff\xff\xff\xffWAVEds64"])
            data = (head + self.rng.randbytes(size))[:max(size, 1)]
            for extension in ("wav", "mp3", "mid"):
                name = self.save("x." + extension, data)
                self.assertHarmless(self.run_cli("info", name, patience=SECONDS), n, extension, data[:40])

    def test_media_commands_of_any_bytes_are_answered_a_line_each(self):
        words = ["open", "close", "play", "set", "status", "record", "save", "delete", "wait", "type", "alias", "p", "all",
                 "from", "to", "0", "-1",
                 "99999999999999999999", "good.wav", "new", "waveaudio", "MPEGVideo", "time", "format", "ms", "frames",
                 "length", "mode", "\"", "é",
                 "x" * 5000, "samplespersec", "channels", "nan", "inf", "1e308", "0x10", "%s%n", "capability", "can", "\t",
                 "alias alias", "0.01"]
        for _ in range(self.count // 8):
            lines = [" ".join(self.rng.choice(words) for _ in range(self.rng.randrange(1, 9))) for _ in range(80)]
            # A long wait would be just that.
            lines = [line for line in lines if line.strip() and not line.lstrip().startswith(("#", "wait 9", "wait inf",
                                                                                              "wait 1e", "save"))]
            done = self.run_cli("media", "--virtual", given="\n".join(lines).encode() + b"\n", patience=60)
            answers = done.stdout.split("\n")
            self.assertEqual(answers.pop(), "")
            self.assertEqual(len(answers), len(lines))
            for line, answer in zip(lines, answers):
                self.assertTrue(answer.split("\t")[0] == "Success" or 0 < len(answer) <= 128, (line, answer))
        raw = self.rng.randbytes(20000).replace(b"\n", b"x")
        done = self.run_cli("media", "--virtual", given=raw)
        self.assertEqual((done.returncode, len(done.stdout.splitlines())), (1, 1))

    def test_what_is_no_file_is_refused_at_once(self):
        os.mkfifo(self.path("pipe.wav"))
        os.symlink("loop.wav", self.path("loop.wav"))
        for name in ("loop.wav", "/dev/null", "/dev/zero"):
            target = name
            if name.startswith("/dev"):
                target = os.path.basename(name) + ".wav"
                os.symlink(name, self.path(target))
            done = self.run_cli("info", target, patience=SECONDS)
            self.assertHarmless(done, name)
            self.assertTrue(done.returncode == 1 or "Frames: 0" in done.stdout, name)
