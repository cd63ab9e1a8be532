# SPDX-License-Identifier: GPL-2.0-or-later
"""Times and memory, beside those of the usual tools. Nothing else should run meanwhile."""

import array
import os
import random
import resource
import subprocess
import time

from studio import case
from studio.case import StudioCase
from studio.waves import CODINGS, Header, wave

ROUNDS = 3


class FigureTest(StudioCase):
    def setUp(self):
        super().setUp()
        if case.sanitized:
            self.fail("a sanitizer's build has no figures")

    def music(self, seconds, name="in.wav"):
        """Sound that an encoder has work with."""
        rng = random.Random(1)
        block, level = array.array("h"), 0.0
        for n in range(2 * 44100):
            level = 0.97 * level + rng.uniform(-900, 900)
            block.append(round(level + 5000 * ((n // (50 + n // 9000)) % 3 - 1)))
        data = wave(block)[44:]
        self.save(name, Header().file((data * seconds)[:176400 * seconds]))

    @staticmethod
    def processor(words, cwd):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        began = time.monotonic()
        subprocess.run(words, cwd=cwd, check=True, capture_output=True)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, time.monotonic() - began

    def test_three_minutes_are_encoded_faster_than_by_the_stock_command(self):
        self.music(180)
        for quality, effort in (("Studio", "2"), ("Low", "7")):
            ours, theirs = [], []
            for _ in range(ROUNDS):
                theirs.append(self.processor(["lame", "--quiet", "-b", "224", "-q", effort, "in.wav", "l.mp3"],
                                             self.folder)[1])
                ours.append(self.succeed("encode", "in.wav", "o.mp3", "--bitrate", 224, "--quality", quality).seconds)
            ratio = min(ours) / min(theirs)
            print(f"encode {quality}: {min(ours):.3f} s, stock {min(theirs):.3f} s, ratio {ratio:.3f}")
            self.assertLessEqual(ratio, 0.97)

    def test_an_image_takes_half_the_processor_time_of_the_stock_command(self):
        self.music(240)
        ours, theirs = [], []
        for _ in range(ROUNDS):
            theirs.append(self.processor(["sox", "in.wav", "-t", "raw", "o.raw"], self.folder)[0])
            ours.append(self.succeed("burn", "in.wav", "--image", "o.cue").processor)
        print(f"burn: {min(ours):.3f} s, stock {min(theirs):.3f} s, ratio {min(ours) / min(theirs):.3f}")
        self.assertLessEqual(min(ours), 0.5 * min(theirs))

    def test_two_gigabytes_are_told_in_little_memory(self):
        self.save("small.wav", wave([1, 2]))
        least = self.succeed("info", "small.wav").memory
        size = (1 << 31) - 44
        self.save("huge.wav", Header(coding=CODINGS[1], data_length=size, riff_length=size + 36).file(b""))
        os.truncate(self.path("huge.wav"), size + 44)
        done = self.succeed("info", "huge.wav")
        self.assertIn(f"Frames: {size // 4}", done.stdout)
        more, whole = ((bytes_ / 2 ** 20) for bytes_ in (done.memory - least, done.memory))
        print(f"info of 2 GiB: {done.seconds:.2f} s, {more:.1f} MiB more than for a small one, {whole:.1f} in all")
        self.assertLessEqual(done.memory - least, 32 << 20)
        self.assertLess(done.seconds, 15)

    def test_a_virtual_take_of_a_wave_runs_at_200_times_real_time(self):
        self.music(200)
        took = min(self.succeed("record", "in.wav", "t.wav", "--virtual", "--replace").seconds for _ in range(ROUNDS))
        print(f"record --virtual: {200 / took:.0f} times real time")
        self.assertGreaterEqual(200 / took, 200)

    def test_a_take_by_the_clock_costs_little_more_than_playing(self):
        self.music(8)
        played = min(self.succeed("play", "in.wav").processor for _ in range(2))
        taken = min(self.succeed("record", "in.wav", "t.wav", "--replace").processor for _ in range(2))
        print(f"8 s: playing {played:.3f} s of a core, recording {taken:.3f}")
        self.assertLess(taken - played, 0.02 * 8)

    def test_memory_does_not_grow_with_a_take(self):
        short = self.succeed("record", "t.wav", "--virtual", "--seconds", "5", "--replace").memory
        long = self.succeed("record", "t.wav", "--virtual", "--seconds", "900", "--replace").memory
        print(f"memory of 5 s: {short / 2 ** 20:.1f} MiB, of 900 s: {long / 2 ** 20:.1f}")
        self.assertLess(long - short, 8 << 20)
