# SPDX-License-Identifier: GPL-2.0-or-later
"""`burn`: the image of an audio CD, as it stands and as other programs read it back."""

import array
import os
import random
import re
import signal
import subprocess
import time

from studio import disc, measure, mp3s
from studio.case import StudioCase
from studio.waves import CODINGS, Header, little, text_chunk, values_of, wave

MOST_ON_DISC = 79 * 4500 + 57 * 75 + 74  # sectors
MOST = 99 * 4500 + 59 * 75 + 74


class BurnCase(StudioCase):
    def noise(self, frames, seed, name):
        values = values_of(random.Random(seed).randbytes(4 * frames))
        self.save(name, wave(values))
        return values

    def silence(self, sectors, name):
        """A long file of nothing, which takes no place on the disk."""
        size = sectors * disc.SECTOR
        self.save(name, Header(data_length=size, riff_length=36 + size).file(b""))
        os.truncate(self.path(name), 44 + size)

    def image(self, cue="out.cue"):
        return disc.Image(self.folder, cue)


class ImageTest(BurnCase):
    def test_tracks_stand_one_behind_the_other_bit_for_bit(self):
        frames = [300 * 588, 300 * 588 + 1, 301 * 588 - 1, 301 * 588, 50, 1, 100000, 399 * 588 + 587]
        sounds = [self.noise(count, n, f"t {n}.wav") for n, count in enumerate(frames)]
        done = self.succeed("burn", *(f"t {n}.wav" for n in range(len(frames))), "--image", "out.cue")
        image = self.image()
        self.assertEqual((image.name, image.numbers), ("out.bin", list(range(1, len(frames) + 1))))
        self.assertEqual(image.lengths(), [disc.sectors_for(count) for count in frames])
        self.assertEqual(image.starts[0], 0)
        for values, track in zip(sounds, image.tracks()):
            self.assertEqual(track[:len(values)], values)
            self.assertFalse(any(track[len(values):]))
        self.assertEqual(os.path.getsize(self.path("out.bin")), sum(map(disc.sectors_for, frames)) * disc.SECTOR)
        lines = done.stdout.splitlines()
        self.assertEqual(len(lines), len(frames) + 1)
        for n, (line, count) in enumerate(zip(lines, frames)):
            number, length, name = line.split(" ", 2)
            self.assertEqual((number, length), (f"{n + 1:02}", disc.msf(disc.sectors_for(count))))
            self.assertIn(f"t {n}", name)
        self.assertEqual(lines[-1], "Total " + disc.msf(sum(map(disc.sectors_for, frames))))
        self.assertEqual(done.stderr, "")

    def test_the_sheet_is_one_that_other_programs_know(self):
        self.noise(200000, 1, "a.wav")
        self.noise(300000, 2, "b.wav")
        self.succeed("burn", "a.wav", "b.wav", "--image", "out.cue")
        lines = [line.strip() for line in self.image().text.splitlines()]
        self.assertIn('FILE "out.bin" BINARY', lines)
        at = lines.index("TRACK 02 AUDIO")
        self.assertIn('TITLE "b"', lines[at:])
        self.assertIn("INDEX 01 " + disc.msf(disc.sectors_for(200000)), lines[at:])
        self.assertLess(lines.index('FILE "out.bin" BINARY'), lines.index("TRACK 01 AUDIO"))
        self.assertNotIn("PERFORMER", self.image().text)

    def test_other_programs_read_it_back(self):
        sounds = [self.noise(count, n, f"{n}.wav") for n, count in enumerate((180000, 500, 250001))]
        self.succeed("burn", "0.wav", "1.wav", "2.wav", "--image", "out.cue")
        listed = subprocess.run(["cd-info", "--no-device-info", "-c", "out.cue"], capture_output=True, text=True,
                                cwd=self.folder)
        starts = re.findall(r"^ *\d+: \d\d:\d\d:\d\d +(\d+) audio", listed.stdout, re.M)
        self.assertEqual(list(map(int, starts)), self.image().starts, listed.stdout)
        self.assertRegex(listed.stdout, f"170: .* 0*{os.path.getsize(self.path('out.bin')) // disc.SECTOR} leadout")
        self.assertEqual(re.findall(r"TITLE: (.*)", listed.stdout), ["0", "1", "2"])
        sectors = [disc.sectors_for(len(values) // 2) for values in sounds]
        at = 0
        for values, count in zip(sounds, sectors):
            subprocess.run(["cd-read", "--mode=audio", "-c", "out.cue", f"--start={at}", f"--number={count}",
                            "--output-file=read.bin", "--no-header", "--no-hexdump"], cwd=self.folder, check=True,
                            capture_output=True)
            self.assertEqual(values_of(self.read("read.bin"))[:len(values)], values)
            at += count
        subprocess.run(["bchunk", "-w", "out.bin", "out.cue", "chunk"], cwd=self.folder, check=True, capture_output=True)
        for n, values in enumerate(sounds):
            data = self.read(f"chunk{n + 1:02}.wav")
            self.assertEqual(values_of(data[44:])[:len(values)], values, n)

    def test_titles_and_performers_are_the_files_own(self):
        quiet = little([0] * 2000)
        titled = Header(behind=text_chunk(INAM='Say "hello" twice', IART='The "Band"')).file(quiet)
        self.save("one.wav", titled)
        self.save("two.three.wav", wave([0] * 10))
        self.save('quo"ted.wav', wave([0] * 10))
        self.save("s.wav", wave([100, -100] * 3000))
        mp3s.lame(self.path("s.wav"), self.path("four.mp3"), "--tt", "Tagged", "--ta", "Singer")
        plain = mp3s.lame(self.path("s.wav"), self.path("plain.mp3"))
        self.save("five.mp3", mp3s.id3v2(mp3s.id3v2_text(b"TIT2", "Größe №5"), mp3s.id3v2_text(b"TPE1", "Ω")) + plain)
        self.save("six.mp3", plain + mp3s.id3v1(b"Old", b"Tag"))
        self.save("seven.mp3", mp3s.id3v2(mp3s.id3v2_text(b"TIT2", 'Two\nlines "x"')) + plain)
        os.mkdir(self.path("folder"))
        self.save("folder/Eight.WAV", wave([0] * 10))
        names = ["one.wav", "two.three.wav", 'quo"ted.wav', "four.mp3", "five.mp3", "six.mp3", "seven.mp3",
                 "folder/Eight.WAV"]
        self.succeed("burn", *names, "--image", "out.cue")
        image = self.image()
        self.assertEqual(image.titles[:6], ["Say 'hello' twice", "two.three", "quo'ted", "Tagged", "Größe №5", "Old"])
        self.assertEqual(image.titles[7], "Eight")
        self.assertRegex(image.titles[6], r"Two.*lines 'x'")
        self.assertEqual(image.performers, ["The 'Band'", None, None, "Singer", "Ω", "Tag", None, None])

    def test_what_the_encoder_tags_is_the_title_on_the_disc(self):
        self.save("a.wav", wave([100, -100] * 20000))
        self.succeed("encode", "a.wav", "a.mp3", "--title", "Ein “Lied”", "--artist", "Sängerin")
        self.succeed("burn", "a.mp3", "--image", "out.cue")
        self.assertEqual((self.image().titles, self.image().performers), (["Ein “Lied”"], ["Sängerin"]))
        self.assertEqual(self.image().lengths(), [disc.sectors_for(20000)])

    def test_mono_other_widths_and_rates_and_mp3_become_cd_sound(self):
        tone = measure.rounded(measure.tones(24000, 48000, [(1000, 1, 0)], 0.5))
        self.save("m.wav", wave(tone, 48000, 1))
        self.save("e.wav", Header(coding=CODINGS[0], channels=1).file(bytes([0, 128, 255, 127])))
        self.succeed("burn", "m.wav", "e.wav", "--image", "out.cue")
        first, second = self.image().tracks()
        self.assertEqual(first[0::2], first[1::2])
        wanted = measure.tones(22050, 44100, [(1000, 1, 0)], 0.5)
        self.assertLess(measure.error_db(wanted[2000:20000], first[4000:40000:2]), -60)
        self.assertEqual(list(second[:10]), [-32768, -32768, 0, 0, 32512, 32512, -256, -256, 0, 0])

    def test_an_image_in_another_folder_names_its_data_without_the_folder(self):
        self.noise(1000, 1, "a.wav")
        os.mkdir(self.path("sub"))
        self.succeed("burn", "a.wav", "--image", "sub/My disc.cue")
        self.assertEqual(sorted(os.listdir(self.path("sub"))), ["My disc.bin", "My disc.cue"])
        self.assertEqual(disc.Image(self.folder, "sub/My disc.cue").name, "My disc.bin")

    def test_one_file_may_stand_on_the_disc_twice(self):
        values = self.noise(9000, 1, "a.wav")
        self.succeed("burn", "a.wav", "a.wav", "--image", "out.cue")
        for track in self.image().tracks():
            self.assertEqual(track[:18000], values)


class LimitTest(BurnCase):
    def test_a_dry_run_tells_all_and_writes_nothing(self):
        self.noise(200000, 1, "a.wav")
        self.noise(20, 2, "b.wav")
        told = self.succeed("burn", "a.wav", "b.wav", "--image", "out.cue", "--dry-run").stdout
        self.assertEqual(self.names(), ["a.wav", "b.wav"])
        self.assertEqual(told, self.succeed("burn", "a.wav", "b.wav", "--image", "out.cue").stdout)
        self.assertEqual(told.splitlines()[-1], "Total " + disc.msf(disc.sectors_for(200000) + 300))

    def test_99_tracks_fit_and_no_more(self):
        self.save("a.wav", wave([5, 6]))
        done = self.succeed("burn", *["a.wav"] * 99, "--image", "out.cue", "--dry-run")
        self.assertEqual(len(done.stdout.splitlines()), 100)
        self.assertTrue(done.stdout.splitlines()[98].startswith("99 00:04:00 "))
        self.assertEqual(done.stdout.splitlines()[99], "Total " + disc.msf(99 * 300))
        for more in ([], ["--dry-run"]):
            self.fail_naming("Only 99 tracks allowed!", "burn", *["a.wav"] * 100, "--image", "out.cue", *more)
        self.assertEqual(self.names(), ["a.wav"])
        self.succeed("burn", *["a.wav"] * 99, "--image", "out.cue")
        image = self.image()
        self.assertEqual((image.numbers[-1], image.starts[-1]), (99, 98 * 300))
        self.assertTrue(all(track[0] == 5 and track[1] == 6 and not any(track[2:20]) for track in image.tracks()))

    def test_all_files_that_cannot_be_read_are_told_and_nothing_is_written(self):
        self.noise(100, 1, "good.wav")
        self.save("text.wav", b"no sound")
        self.save("noise.mp3", bytes(5000))
        self.save("tune.mid", b"MThd")
        os.mkdir(self.path("folder.wav"))
        self.save("out.cue", b"old")
        self.save("out.bin", b"older")
        bad = ["text.wav", "absent.wav", "noise.mp3", "tune.mid", "folder.wav"]
        before = self.names()
        for more in ([], ["--dry-run"]):
            done = self.run_cli("burn", "good.wav", *bad, "good.wav", "--image", "out.cue", *more)
            self.assertEqual(done.returncode, 1)
            lines = done.stderr.splitlines()
            self.assertEqual(len(lines), len(bad), lines)
            for name, line in zip(bad, lines):
                self.assertIn(name + " is not supported.", line.replace('"', ""))
            self.assertEqual((self.names(), self.read("out.cue"), self.read("out.bin")), (before, b"old", b"older"))

    def test_too_long_for_a_disc_is_told_but_an_image_is_written(self):
        self.silence(MOST_ON_DISC - 300, "long.wav")
        self.noise(100, 1, "a.wav")
        self.noise(300 * 588 + 1, 2, "b.wav")
        fits = self.succeed("burn", "long.wav", "a.wav", "--image", "out.cue", "--dry-run")
        self.assertEqual((fits.stdout.splitlines()[-1], fits.stderr), ("Total 79:57:74", ""))
        done = self.succeed("burn", "long.wav", "b.wav", "--image", "out.cue", "--dry-run")
        self.assertEqual(done.stdout.splitlines()[-1], "Total 79:58:00")
        self.assertEqual(len(done.stderr.splitlines()), 1)
        self.assertRegex(done.stderr, r"00:00:01|\b1\b")
        written = self.succeed("burn", "long.wav", "b.wav", "--image", "out.cue")
        self.assertEqual((written.stdout, len(written.stderr.splitlines())), (done.stdout, 1))
        self.assertEqual(os.path.getsize(self.path("out.bin")), (MOST_ON_DISC + 1) * disc.SECTOR)
        self.assertEqual(self.image().starts, [0, MOST_ON_DISC - 300])
        device = self.run_cli("burn", "long.wav", "b.wav", "--device", "nothing such")
        self.assertEqual(device.returncode, 1)

    def test_beyond_what_a_sheet_can_tell_nothing_is_written(self):
        self.silence(MOST - 300, "long.wav")
        self.noise(100, 1, "a.wav")
        self.noise(300 * 588 + 1, 2, "b.wav")
        fits = self.succeed("burn", "long.wav", "a.wav", "--image", "out.cue", "--dry-run")
        self.assertEqual((fits.stdout.splitlines()[-1], len(fits.stderr.splitlines())), ("Total 99:59:74", 1))
        for more in ([], ["--dry-run"]):
            done = self.run_cli("burn", "long.wav", "b.wav", "--image", "out.cue", *more)
            self.assertEqual(done.returncode, 1)
            self.assertTrue(done.stderr.strip())
            self.assertEqual(self.names(), ["a.wav", "b.wav", "long.wav"])

    def test_without_a_burner_that_is_said(self):
        self.noise(100, 1, "a.wav")
        for words in (["burn", "--list"], ["burn", "a.wav", "--device", "/dev/sr9"],
                      ["burn", "a.wav", "--device", "x", "--speed", "Max."]):
            done = self.run_cli(*words)
            self.assertEqual((done.returncode, done.stdout if "--list" in words else ""), (1, ""), words)
            self.assertIn("No CD Burner Hardware was found on your computer", done.stderr)

    def test_wrong_words_are_wrong_usage_and_write_nothing(self):
        self.noise(100, 1, "a.wav")
        for words in ([], ["a.wav"], ["--image", "o.cue"], ["a.wav", "--image"],
                      ["a.wav", "--image", "o.cue", "--device", "x"],
                      ["a.wav", "--image", "o.cue", "--loud"], ["a.wav", "--image", ""]):
            self.misuse("burn", *words)


class WholeTest(BurnCase):
    def test_an_old_image_is_replaced_by_a_whole_one(self):
        values = self.noise(9000, 1, "a.wav")
        self.save("out.cue", b"old")
        self.save("out.bin", b"older" * 99)
        self.succeed("burn", "a.wav", "--image", "out.cue")
        self.assertEqual(self.names(), ["a.wav", "out.bin", "out.cue"])
        self.assertEqual(self.image().tracks()[0][:18000], values)

    def test_what_fails_leaves_the_old_image_and_nothing_else(self):
        self.noise(90000, 1, "a.wav")
        self.save("out.cue", b"old")
        self.save("out.bin", b"older")
        for limit in (1000, 300000):
            done = self.run_cli("burn", "a.wav", "--image", "out.cue", file_size=limit)
            self.assertEqual(done.returncode, 1, limit)
            self.assertEqual((self.names(), self.read("out.cue"), self.read("out.bin")),
                             (["a.wav", "out.bin", "out.cue"], b"old", b"older"))
            self.assertIn("out.", done.stderr)
        for out in ("absent/out.cue", "/proc/out.cue"):
            done = self.run_cli("burn", "a.wav", "--image", out)
            self.assertEqual(done.returncode, 1, out)
            self.assertIn("out.", done.stderr)
        os.mkdir(self.path("b.bin"))
        self.assertEqual(self.run_cli("burn", "a.wav", "--image", "b.cue").returncode, 1)
        self.assertEqual(self.names(), ["a.wav", "b.bin", "out.bin", "out.cue"])

    def test_a_source_is_never_overwritten_by_the_image(self):
        values = self.noise(90000, 1, "out.wav")
        data = self.read("out.wav")
        self.succeed("burn", "out.wav", "--image", "out.cue")
        self.assertEqual((self.read("out.wav"), self.image().tracks()[0][:180000]), (data, values))

    def test_a_signal_ends_it_at_once_and_cleanly(self):
        self.silence(300000, "long.wav")
        self.save("out.cue", b"old")
        self.save("out.bin", b"older")
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            running = self.start("burn", "long.wav", "--image", "out.cue")
            time.sleep(0.1)
            sent = time.monotonic()
            running.send(number)
            done = running.wait(20)
            self.assertLess(time.monotonic() - sent, 2)
            self.assertEqual(self.names(), ["long.wav", "out.bin", "out.cue"])
            if done.returncode:  # else it was quicker than the signal
                self.assertEqual((self.read("out.cue"), self.read("out.bin")), (b"old", b"older"))
            else:
                self.save("out.cue", b"old")
                self.save("out.bin", b"older")

    def test_a_file_that_shrinks_meanwhile_does_no_harm(self):
        self.silence(200000, "long.wav")
        running = self.start("burn", "long.wav", "--image", "out.cue")
        time.sleep(0.05)
        os.truncate(self.path("long.wav"), 44 + 1000)
        done = running.wait(60)
        self.assertIn(done.returncode, (0, 1))
        if done.returncode:
            self.assertIn("long.wav", done.stderr)
            self.assertEqual(self.names(), ["long.wav"])
        else:
            self.assertEqual(self.image().lengths(), [200000])
            self.assertEqual(array.array("h", self.image().tracks()[0][:10]).tolist(), [0] * 10)
