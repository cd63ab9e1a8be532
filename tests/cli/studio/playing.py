# SPDX-License-Identifier: GPL-2.0-or-later
"""`play` through a sound server: what reaches it, bit for bit and without a gap."""

import array
import os
import random
import signal
import time

from player_model import Score
from studio import measure, mp3s
from studio.case import SMALL_SOUNDFONT, StudioCase
from studio.midis import scale
from studio.server import Server
from studio.waves import CODINGS, Header, little, values_of, wave

TRIES = 3  # a server that other work holds up drops sound of its own; what we do wrong, we do wrong each time
MARK = 64  # frames by which a place in what is heard is found


class PlayCase(StudioCase):
    def noise(self, name, frames, seed, channels=2, top=32767):
        rng = random.Random(seed)
        values = array.array("h", [rng.randrange(-top, top + 1) or 1 for _ in range(frames * channels)])
        self.save(name, wave(values, 44100, channels))
        return values if channels == 2 else measure.stereo(values, values)

    def heard(self, *files, status=0):
        """What the server's sink gives, as bytes."""
        with Server(os.path.join(self.home, f"pulse-{time.monotonic()}")) as server:
            def work():
                done = self.run_cli("play", *files, "--soundfont", SMALL_SOUNDFONT, env={"PULSE_SERVER": server.address})
                self.assertEqual(done.returncode, status, done.stderr)
                self.told = done
            return server.listen_to(work)

    @staticmethod
    def place(data, values, at=0):
        """The frame at which a few values from the `at`th frame on are heard, -1 if nowhere."""
        mark, found = little(values[2 * at:2 * (at + MARK)]), -1
        while (found := data.find(mark, found + 1)) % 4 > 0:
            pass
        return found // 4 if found >= 0 else -1

    def within(self, check):
        for left in reversed(range(TRIES)):
            try:
                return check()
            except AssertionError:
                if not left:
                    raise


class PlayTest(PlayCase):
    def test_a_wave_file_comes_out_bit_for_bit(self):
        for n, channels in enumerate((2, 1)):
            values = self.noise("n.wav", 60000, n, channels)

            def check():
                data = self.heard("n.wav")
                begin = self.place(data, values)
                self.assertGreaterEqual(begin, 0)
                heard = values_of(data[4 * begin:4 * begin + 2 * len(values)])
                self.assertEqual(heard, values)
                self.assertFalse(any(values_of(data[4 * begin + 2 * len(values):])))
                self.assertFalse(any(values_of(data[:4 * begin])))

            self.within(check)

    def test_files_follow_each_other_with_nothing_between(self):
        sounds = [self.noise(f"{n}.wav", frames, n) for n, frames in enumerate((30000, 30001, 777, 20000))]
        swapped = Header(container=b"RIFX").file(b"".join(CODINGS[1].pack(v, ">") for v in sounds[1]))
        self.save("1.wav", swapped)
        whole = array.array("h")
        for values in sounds:
            whole += values

        def check():
            data = self.heard("0.wav", "1.wav", "2.wav", "3.wav")
            begin = self.place(data, whole)
            self.assertGreaterEqual(begin, 0)
            self.assertEqual(values_of(data[4 * begin:4 * begin + 2 * len(whole)]), whole)

        self.within(check)

    def test_an_mp3_file_stands_between_two_others_with_its_exact_frames(self):
        first, last = self.noise("a.wav", 20000, 1), self.noise("z.wav", 20000, 2)
        tone = measure.rounded(measure.tones(31000, 44100, [(440, 1, 0)], 0.5))
        self.save("m.wav", wave(measure.stereo(tone, tone)))
        mp3s.lame(self.path("m.wav"), self.path("m.mp3"), "-b", "256")

        def check():
            data = self.heard("a.wav", "m.mp3", "z.wav")
            begin, end = self.place(data, first), self.place(data, last)
            self.assertGreaterEqual(begin, 0)
            self.assertEqual(end - begin, 20000 + 31000)
            middle = values_of(data[4 * (begin + 20000):4 * end])[0::2]
            self.assertLess(measure.error_db(tone[2000:-2000], middle[2000:-2000]), -25)

        self.within(check)

    def test_scores_and_midi_files_sound_between_them(self):
        first, last = self.noise("a.wav", 10000, 1), self.noise("z.wav", 10000, 2)
        self.save("t.mid", scale())
        score = Score()
        score.tempo = 300
        for n in range(4):
            score.cell[0][n] = 60 + n
        self.save("s.sng", score.text().encode())

        def check():
            data = self.heard("a.wav", "t.mid", "s.sng", "z.wav")
            begin, end = self.place(data, first), self.place(data, last)
            self.assertGreaterEqual(begin, 0)
            self.assertGreater(end - begin, 10000 + 44100)
            self.assertGreater(measure.level_db(values_of(data[4 * (begin + 11000):4 * (begin + 11000 + 40000)])), -50)

        self.within(check)

    def test_what_cannot_be_played_is_told_and_passed_over(self):
        values = self.noise("a.wav", 20000, 1)
        self.save("bad.wav", b"no sound")
        self.save("bad.mp3", bytes(3000))
        self.save("bad.mid", b"MThd")

        def check():
            data = self.heard("bad.wav", "absent.wav", "a.wav", "bad.mp3", "bad.mid", status=1)
            self.assertGreaterEqual(self.place(data, values), 0)
            self.assertGreaterEqual(self.place(data, values, 19000), 0)
            lines = self.told.stderr.splitlines()
            self.assertEqual(len(lines), 4, lines)
            for name in ("bad.wav", "absent.wav", "bad.mp3", "bad.mid"):
                self.assertEqual(sum(name in line for line in lines), 1, lines)

        self.within(check)

    def test_without_a_server_it_takes_the_time_that_it_lasts(self):
        self.noise("a.wav", 44100, 1)
        self.noise("b.wav", 22050, 2)
        done = self.succeed("play", "a.wav", "b.wav")
        self.assertGreater(done.seconds, 1.4)
        self.assertLess(done.seconds, 10)

    def test_a_signal_ends_it_at_once(self):
        self.noise("a.wav", 44100 * 20, 1)
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            running = self.start("play", "a.wav", "a.wav")
            time.sleep(0.5)
            sent = time.monotonic()
            running.send(number)
            done = running.wait(15)
            self.assertLess(time.monotonic() - sent, 3)
            self.assertGreaterEqual(done.returncode, 0)
            self.assertLess(done.seconds, 10)

    def test_wrong_words_are_wrong_usage(self):
        self.misuse("play")
        self.misuse("play", "a.wav", "--quality", "CD")

    def test_a_file_that_none_is_by_its_name_is_told(self):
        self.fail_naming("absent.wav", "play", "absent.wav")
