# SPDX-License-Identifier: GPL-2.0-or-later
"""Burning by the companion, with other programs as witnesses. Usage: burn_test.py VELMORA_CLI FAKE_BURNER

cd-read and cd-info (libcdio) and bchunk read the image back; the real library for burning writes to a drive that
answers within the process.
"""

import os
import random
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest

import pending_files

CLI = FAKE = None
SECTOR = 2352
DRIVE = "VELMORA Test Burner"


def noise(frames, seed):
    return random.Random(seed).randbytes(frames * 4)


def wav(path, data, rate=44100, channels=2):
    frame = channels * 2
    head = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + len(data), b"WAVE", b"fmt ", 16, 1, channels, rate,
                       rate * frame, frame, 16, b"data", len(data))
    with open(path, "wb") as file:
        file.write(head + data)
    return path


def read(path):
    with open(path, "rb") as file:
        return file.read()


def filled(data):
    sectors = max(300, -(-len(data) // SECTOR))
    return data.ljust(sectors * SECTOR, b"\0")


class BurnTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.env = dict(os.environ, LC_ALL="C.UTF-8")

    def at(self, name):
        return os.path.join(self.folder.name, name)

    def burn(self, *words, status=0, env=None):
        done = subprocess.run([CLI, "burn", *words], capture_output=True, env=env or self.env, timeout=120, check=False)
        out, err = done.stdout.decode(), done.stderr.decode()
        self.assertEqual(done.returncode, status, out + err)
        return out, err

    def two_tracks(self):
        """Their files, and what stands of them on the disc."""
        one, two = noise(588 * 700 + 17, 1), noise(588 * 20, 2)
        files = [wav(self.at("one.wav"), one), wav(self.at('say "two".WAV'), two)]
        return files, [filled(one), filled(two)]

    def test_an_image_and_what_is_said_of_it(self):
        files, tracks = self.two_tracks()
        out, err = self.burn(*files, "--image", self.at("out.cue"))
        self.assertEqual(out, '01 00:09:26 one.wav\n02 00:04:00 say "two".WAV\nTotal 00:13:26\n')
        self.assertEqual(err, "")
        self.assertEqual(read(self.at("out.bin")), b"".join(tracks))
        self.assertEqual(read(self.at("out.cue")).decode().split("\n"), [
            'FILE "out.bin" BINARY',
            "  TRACK 01 AUDIO", '    TITLE "one"', "    INDEX 01 00:00:00",
            "  TRACK 02 AUDIO", "    TITLE \"say 'two'\"", "    INDEX 01 00:09:26", ""])

    def test_bchunk_reads_the_image_back(self):
        files, tracks = self.two_tracks()
        self.burn(*files, "--image", self.at("out.cue"))
        subprocess.run(["bchunk", "-w", "out.bin", "out.cue", "track"], cwd=self.folder.name, check=True,
                       stdout=subprocess.DEVNULL)
        for number, track in enumerate(tracks, 1):
            self.assertEqual(read(self.at(f"track{number:02}.wav"))[44:], track)

    def test_cd_read_and_cd_info_read_the_image_back(self):
        files, tracks = self.two_tracks()
        self.burn(*files, "--image", self.at("out.cue"))
        info = subprocess.run(["cd-info", "--no-header", "--no-cddb", "--no-device-info", "--no-disc-mode", "-c",
                               self.at("out.cue")], capture_output=True, text=True, check=False).stdout
        self.assertRegex(info, r"1: 00:02:00\s+000000 audio")
        self.assertRegex(info, r"2: 00:11:26\s+000701 audio")
        self.assertIn("170: 00:15:26  001001 leadout", info)
        whole = b"".join(tracks)
        for first, last in ((0, 0), (0, 700), (701, 1000)):
            subprocess.run(["cd-read", "-c", self.at("out.cue"), "--mode=audio", f"--start={first}", f"--end={last}",
                            f"--output-file={self.at('read')}"], check=True, stdout=subprocess.DEVNULL)
            self.assertEqual(read(self.at("read")), whole[first * SECTOR:(last + 1) * SECTOR])

    def test_old_files_go_when_the_new_ones_stand(self):
        files, tracks = self.two_tracks()
        for name in ("out.cue", "out.bin"):
            with open(self.at(name), "w", encoding="ascii") as file:
                file.write("old")
        self.burn(files[0], self.at("absent.wav"), "--image", self.at("out.cue"), status=1)
        self.assertEqual(read(self.at("out.bin")) + read(self.at("out.cue")), b"oldold")
        self.burn(*files, "--image", self.at("out.cue"))
        self.assertEqual(read(self.at("out.bin")), b"".join(tracks))
        self.assertEqual(len(os.listdir(self.folder.name)), 4)

    def test_an_interrupt_leaves_the_old_files(self):
        big = wav(self.at("big.wav"), bytes(44100 * 4 * 60 * 5), rate=32000)  # it is converted, which takes a while
        with open(self.at("out.bin"), "w", encoding="ascii") as file:
            file.write("old")
        for kind in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            work = subprocess.Popen([CLI, "burn", *[big] * 9, "--image", self.at("out.cue")], stdout=subprocess.DEVNULL,
                                    stderr=subprocess.PIPE)
            deadline = time.monotonic() + 60
            while pending_files.count(work.pid, self.folder.name) < 2:
                self.assertIsNone(work.poll())
                self.assertLess(time.monotonic(), deadline)
                time.sleep(0.01)
            work.send_signal(kind)
            _, err = work.communicate(timeout=60)
            self.assertEqual(work.returncode, 1)
            self.assertIn(b"out.cue", err)
            self.assertEqual(err.count(b"\n"), 1)
            self.assertEqual(read(self.at("out.bin")), b"old")
            self.assertEqual(sorted(os.listdir(self.folder.name)), ["big.wav", "out.bin"])

    def test_every_unsupported_file_is_told_and_nothing_is_written(self):
        files, _ = self.two_tracks()
        with open(self.at("text.mp3"), "w", encoding="ascii") as file:
            file.write("no sound")
        out, err = self.burn(self.at("text.mp3"), files[0], self.at("absent.wav"), "--image", self.at("out.cue"), status=1)
        self.assertEqual(out, "")
        self.assertEqual([line.split("/")[-1] for line in err.splitlines()],
                         ["text.mp3 is not supported.", "absent.wav is not supported."])
        self.assertFalse(os.path.exists(self.at("out.cue")))
        self.assertFalse(os.path.exists(self.at("out.bin")))

    def test_there_are_ninety_nine_tracks_at_most(self):
        short = wav(self.at("short.wav"), noise(9, 1))
        self.burn(*[short] * 99, "--image", self.at("out.cue"))
        self.assertEqual(os.path.getsize(self.at("out.bin")), 99 * 300 * SECTOR)
        self.assertIn("TRACK 99 AUDIO", read(self.at("out.cue")).decode())
        _, err = self.burn(*[short] * 100, "--image", self.at("more.cue"), status=1)
        self.assertIn("Only 99 tracks allowed!", err)
        self.assertFalse(os.path.exists(self.at("more.cue")))

    def test_what_is_too_long_is_told(self):
        def lasting(name, sectors):  # few samples at a low rate
            return wav(self.at(name), bytes(sectors * 8000 // 75 * 2), rate=8000, channels=1)
        fits = lasting("fits.wav", 75 * 60 * 40)
        rest = lasting("rest.wav", 75 * 60 * 40 - 151)
        longer = lasting("longer.wav", 75 * 60 * 40)
        out, err = self.burn(fits, rest, "--dry-run", "--image", self.at("out.cue"))
        self.assertEqual(err, "")
        self.assertIn("Total 79:57:74", out)
        _, err = self.burn(fits, longer, "--dry-run", "--image", self.at("out.cue"))
        self.assertIn("00:02:01 too long for a disc of 80 minutes", err)
        _, err = self.burn(fits, longer, "--device", DRIVE, status=1)
        self.assertIn("00:02:01 too long for a disc of 80 minutes", err)
        _, err = self.burn(fits, longer, fits, "--image", self.at("out.cue"), status=1)
        self.assertIn("too long", err)
        self.assertFalse(os.path.exists(self.at("out.bin")))

    def test_a_dry_run_writes_nothing_and_touches_no_drive(self):
        files, _ = self.two_tracks()
        env = self.drive("medium cdr\n")
        for where in (("--image", self.at("out.cue")), ("--device", DRIVE), ("--device", "absent")):
            out, _ = self.burn(*files, *where, "--dry-run", env=env)
            self.assertIn("Total 00:13:26\n", out)
        self.assertFalse(os.path.exists(self.at("out.cue")))
        self.assertFalse(os.path.exists(self.at("drive/commands")))

    def test_wrong_words(self):
        files, _ = self.two_tracks()
        for words in ([], files, ["--list", *files], [*files, "--image", "a.cue", "--device", "x"],
                      [*files, "--image", "a.bin"], [*files, "--image", "a.cue", "--speed", "4"],
                      [*files, "--device", "x", "--speed", "fast"], ["--image", "a.cue"], ["--list", "--dry-run"]):
            self.burn(*words, status=2)

    def test_a_place_that_cant_be_written_to(self):
        files, _ = self.two_tracks()
        _, err = self.burn(*files, "--image", self.at("absent/out.cue"), status=1)
        self.assertIn("absent/out.cue", err)
        self.assertEqual(err.count("\n"), 1)

    # The drive.

    def drive(self, what):
        os.makedirs(self.at("drive"), exist_ok=True)
        with open(self.at("drive/drive"), "w", encoding="ascii") as file:
            file.write(what)
        return dict(self.env, VELMORA_FAKE_BURNER=self.at("drive"), LD_PRELOAD=FAKE)

    def test_burners_are_listed_with_their_speeds(self):
        out, _ = self.burn("--list", env=self.drive("medium cdr\n"))
        self.assertEqual(out, DRIVE + ": Max., 7056 KB/s (40x), 2822 KB/s (16x), 706 KB/s (4x)\n")
        for none in ("absent yes\n", "reader yes\n"):
            for words in (["--list"], [*self.two_tracks()[0], "--device", DRIVE]):
                _, err = self.burn(*words, status=1, env=self.drive(none))
                self.assertIn("No CD Burner Hardware was found on your computer", err)

    def test_a_drive_gets_the_tracks_byte_for_byte(self):
        files, tracks = self.two_tracks()
        out, err = self.burn(*files, "--device", DRIVE, "--speed", "16", env=self.drive("medium cdr\n"))
        self.assertEqual((out.splitlines()[-1], err), ("Total 00:13:26", ""))
        self.assertEqual(read(self.at("drive/disc")), b"".join(tracks))
        self.assertEqual(read(self.at("drive/toc")), b"0\n701\nout 1001\n")
        self.assertEqual(os.listdir(self.folder.name).count("out.bin"), 0)

    def test_what_goes_wrong_with_a_drive_is_one_line(self):
        files, _ = self.two_tracks()
        for what, text in (("medium none\n", "There is no disc in " + DRIVE), ("medium cdr\ncapacity 900\n", "holds 00:12:00"),
                           ("medium cdr\nwrong 500\n", "track 1 at 00:0")):
            _, err = self.burn(*files, "--device", DRIVE, status=1, env=self.drive(what))
            self.assertIn(text, err)
            self.assertEqual(err.count("\n"), 1)
        for words, text in ((("--device", "Other"), DRIVE), (("--device", DRIVE, "--speed", "5"), "706 KB/s (4x)")):
            _, err = self.burn(*files, *words, status=1, env=self.drive("medium cdr\n"))
            self.assertIn(text, err)


if __name__ == "__main__":
    CLI, FAKE = sys.argv[1:3]
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
