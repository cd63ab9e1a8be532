# SPDX-License-Identifier: GPL-2.0-or-later
"""`velmora-cli encode` as its users call it. Usage: encode_test.py PATH-OF-VELMORA-CLI"""

import math
import os
import pty
import random
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import wave

import pending_files

CLI = None


def run(*words, **more):
    return subprocess.run([CLI, "encode", *map(str, words)], capture_output=True, text=True, timeout=120, **more)


def samples(frames, rate=44100, channels=2):
    """A tone on each side, and a little noise, in 16 bits."""
    rng = random.Random(5)
    values = []
    for i in range(frames):
        for side in range(channels):
            values.append(round(9000 * math.sin(2 * math.pi * (440, 554.4)[side % 2] * i / rate)) + rng.randint(-300, 300))
    return struct.pack(f"<{len(values)}h", *values)


class EncodeTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        os.environ["HOME"] = self.folder
        os.environ["XDG_CONFIG_HOME"] = self.folder

    def path(self, name):
        return os.path.join(self.folder, name)

    def take(self, name="take.wav", frames=22050, rate=44100, channels=2):
        with wave.open(self.path(name), "wb") as file:
            file.setnchannels(channels)
            file.setsampwidth(2)
            file.setframerate(rate)
            file.writeframes(samples(frames, rate, channels))
        return self.path(name)

    def long_take(self, seconds=600):
        """Of noise that costs the encoder time."""
        block = random.Random(1).randbytes(4 * 44100)
        with wave.open(self.path("long.wav"), "wb") as file:
            file.setnchannels(2)
            file.setsampwidth(2)
            file.setframerate(44100)
            for _ in range(seconds):
                file.writeframes(block)
        return self.path("long.wav")

    def told(self, mp3):
        """What another program says of the stream."""
        done = subprocess.run(["mpg123", "-t", "-v", mp3], capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stderr

    def frames(self, mp3):
        out = self.path("decoded.wav")
        subprocess.run(["mpg123", "-q", "-w", out, mp3], check=True)
        return int(subprocess.run(["soxi", "-s", out], capture_output=True, text=True, check=True).stdout)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def test_out_is_in_with_another_extension_and_the_takes_own_sound(self):
        for rate, channels, says in ((44100, 2, "MPEG 1.0 L III cbr224 44100 j-s"), (48000, 1, "cbr224 48000 mono"),
                                     (22050, 2, "MPEG 2.0 L III cbr160 22050 j-s"), (32000, 2, "cbr224 32000 j-s")):
            done = run(self.take("a.b.wav", rate // 2, rate, channels))
            self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)
            self.assertIn(says, self.told(self.path("a.b.mp3")))
            self.assertEqual(self.frames(self.path("a.b.mp3")), rate // 2)
            self.assertEqual(done.stderr.count("\n"), 1 if rate < 32000 else 0)
            if rate < 32000:
                self.assertIn("160", done.stderr)

    def test_a_row_of_the_table_sets_rate_and_mode(self):
        take = self.take()
        for row, says in enumerate(("22050 j-s", "22050 mono", "22050 j-s", "44100 mono", "44100 j-s")):
            done = run(take, self.path("o.mp3"), "--format", row, "--bitrate", 128)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertIn("cbr128 " + says, self.told(self.path("o.mp3")))
            self.assertEqual(self.frames(self.path("o.mp3")), 22050 if "44100" in says else 11025)

    def test_each_quality_goes_by_its_text_or_its_index(self):
        take = self.take()
        texts = ("Low", "Normal", "High", "Voice", "Phone", "Radio", "Tape", "Hifi", "CD", "Studio")
        for index, text in enumerate(texts):
            self.assertEqual(run(take, self.path("text.mp3"), "--quality", text.upper()).returncode, 0)
            self.assertEqual(run(take, self.path("index.mp3"), "--quality", index).returncode, 0)
            self.assertEqual(self.read("text.mp3"), self.read("index.mp3"))
        self.assertEqual(run(take, self.path("default.mp3")).returncode, 0)
        self.assertEqual(self.read("default.mp3"), self.read("text.mp3"))

    def test_what_the_tables_lack_is_wrong_usage(self):
        take = self.take()
        for words in (["--bitrate", "100"], ["--bitrate", ""], ["--bitrate", "128x"], ["--quality", "Best"],
                      ["--quality", "10"], ["--quality", "-1"], ["--format", "5"], ["--format", "-1"],
                      ["--format", "x"], ["--nonsense"], [self.path("o.mp3"), "one too many"]):
            done = run(take, *words)
            self.assertEqual(done.returncode, 2, words)
        for words in ([], [""]):
            self.assertEqual(run(*words).returncode, 2, words)
        self.assertEqual(run(take, self.path("other.wav")).returncode, 2)
        self.assertEqual(os.listdir(self.folder), ["take.wav"])

    def test_what_is_no_wave_file_is_told(self):
        take = self.take()
        os.rename(take, self.path("take.bin"))
        for name in ("take.bin", "take", "wav"):
            done = run(self.path(name))
            self.assertEqual(done.returncode, 1)
            self.assertTrue(done.stderr.endswith(" The Source file is not a Wave file.\n"), done.stderr)
        done = run(self.path("none.WAV"))
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stderr.endswith(" The Source file is not a Wave file, or does not exist.\n"), done.stderr)
        for content in (b"", b"RIFF", b"no sound at all" * 100):
            with open(self.path("bad.wav"), "wb") as file:
                file.write(content)
            done = run(self.path("bad.wav"), "--delete-wav")
            self.assertEqual((done.returncode, done.stderr.count("\n")), (1, 1))
            self.assertIn("bad.wav", done.stderr)
        self.assertEqual(sorted(os.listdir(self.folder)), ["bad.wav", "take.bin"])

    def test_the_extension_counts_in_any_case_of_letters(self):
        self.assertEqual(run(self.take("A.WaV")).returncode, 0)
        self.assertEqual(self.frames(self.path("A.mp3")), 22050)

    def test_a_title_of_any_text_is_in_the_tag(self):
        title, artist = "Für Elise: 月光 \U0001D11E", "Ж & «Ω»"
        self.assertEqual(run(self.take(), "--title", title, "--artist", artist).returncode, 0)
        done = subprocess.run(["mpg123", "-t", self.path("take.mp3")], capture_output=True,
                              env=dict(os.environ, LC_ALL="C.UTF-8"))
        self.assertIn(title, done.stderr.decode())
        self.assertIn(artist, done.stderr.decode())
        self.assertEqual(self.frames(self.path("take.mp3")), 22050)

    def test_the_take_is_deleted_only_when_the_mp3_stands(self):
        take = self.take()
        for words in ([self.path("none/o.mp3")], ["/dev/full"], ["/dev/null"], ["--cover", self.path("none")]):
            done = run(take, *words, "--delete-wav")
            self.assertEqual((done.returncode, done.stderr.count("\n")), (1, 1), words)
            self.assertTrue(os.path.exists(take))
        self.assertEqual(run(take, "--delete-wav").returncode, 0)
        self.assertEqual(os.listdir(self.folder), ["take.mp3"])

    def test_a_full_disk_leaves_the_old_file(self):
        take = self.take(frames=100000)
        with open(self.path("take.mp3"), "w") as file:
            file.write("old")
        done = run(take, "--delete-wav", preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (20000, 20000)))
        self.assertEqual((done.returncode, done.stderr.count("\n")), (1, 1))
        self.assertIn("take.mp3", done.stderr)
        self.assertEqual(self.read("take.mp3"), b"old")
        self.assertEqual(sorted(os.listdir(self.folder)), ["take.mp3", "take.wav"])

    def test_signals_end_it_at_once_and_leave_everything(self):
        take = self.long_take()
        with open(self.path("long.mp3"), "w") as file:
            file.write("old")
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            encoding = subprocess.Popen([CLI, "encode", take, "--delete-wav"], stderr=subprocess.PIPE, text=True)
            until = time.monotonic() + 20
            while not pending_files.count(encoding.pid, self.folder) and time.monotonic() < until:
                time.sleep(0.01)
            self.assertEqual(pending_files.count(encoding.pid, self.folder), 1, "the new file is on its way")
            sent = time.monotonic()
            encoding.send_signal(number)
            _, errors = encoding.communicate(timeout=20)
            self.assertLess(time.monotonic() - sent, 2)
            self.assertEqual((encoding.returncode, errors.count("\n")), (1, 1))
            self.assertEqual(sorted(os.listdir(self.folder)), ["long.mp3", "long.wav"])
            self.assertEqual(self.read("long.mp3"), b"old")

    def test_a_bar_is_shown_on_a_terminal_alone(self):
        take = self.long_take(500)
        self.assertEqual(run(take).stderr, "")
        ours, theirs = pty.openpty()
        encoding = subprocess.Popen([CLI, "encode", take], stderr=theirs)
        os.close(theirs)
        shown = b""
        try:
            while block := os.read(ours, 4096):
                shown += block
        except OSError:
            pass  # the other end is closed
        os.close(ours)
        self.assertEqual(encoding.wait(), 0)
        self.assertIn(b"long.mp3 [", shown)

    def test_other_formats_go_by_the_extension(self):
        take = self.take()
        for name, decoder in (("o.flac", ["flac", "-s", "-t"]), ("o.ogg", ["oggdec", "-Q", "-o", os.devnull]),
                              ("o.OPUS", ["opusinfo"])):
            self.assertEqual(run(take, self.path(name), "--title", "T").returncode, 0)
            subprocess.run([*decoder, self.path(name)], check=True, stdout=subprocess.DEVNULL)


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main()
