# SPDX-License-Identifier: GPL-2.0-or-later
"""Media commands as a program sends them. Usage: media_test.py PATH-OF-VELMORA-CLI"""

import array
import os
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import wave

CLI = None
SMALL_SOUNDFONT = "/usr/share/sounds/sf2/TimGM6mb.sf2"
OPEN_RECORDER = "open new type waveaudio alias rec"


def midi(seconds):
    """One note of that many seconds, at 480 ticks a second."""
    track = b"\x00\xff\x51\x03\x0f\x42\x40" + b"\x00\x90\x3c\x7f"
    ticks, bytes_ = round(480 * seconds), b""
    while True:
        bytes_ = bytes([ticks & 127 | (128 if bytes_ else 0)]) + bytes_
        ticks >>= 7
        if not ticks:
            break
    track += bytes_ + b"\x80\x3c\x00" + b"\x00\xff\x2f\x00"
    return b"MThd" + struct.pack(">IHHH", 6, 0, 1, 480) + b"MTrk" + struct.pack(">I", len(track)) + track


class MediaTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        os.environ["HOME"] = self.folder
        os.environ["XDG_CONFIG_HOME"] = self.folder
        os.environ["TMPDIR"] = self.folder
        os.environ["PULSE_SERVER"] = "unix:" + self.path("no server")
        os.environ["SDL_AUDIODRIVER"] = "none of them"
        os.environ["JACK_DEFAULT_SERVER"] = "no_such_server"

    def path(self, name):
        return os.path.join(self.folder, name)

    def song(self, name="a song.wav", frames=44100, rate=44100):
        samples = array.array("h", (value for i in range(frames) for value in (i % 30000 + 1, -(i % 20000) - 1)))
        with wave.open(self.path(name), "wb") as file:
            file.setnchannels(2)
            file.setsampwidth(2)
            file.setframerate(rate)
            file.writeframes(samples.tobytes())
        return self.path(name), samples

    def samples(self, name):
        with wave.open(self.path(name), "rb") as file:
            return array.array("h", file.readframes(file.getnframes()))

    def drive(self, *lines, options=("--virtual",)):
        """Answers of these commands, and the exit status."""
        done = subprocess.run([CLI, "media", *options], input="\n".join(lines) + "\n", capture_output=True, text=True,
                              timeout=120)
        self.assertEqual(done.stderr, "")
        return done.stdout.splitlines(), done.returncode

    def start(self, *options):
        process = subprocess.Popen([CLI, "media", *options], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                   bufsize=1)
        self.addCleanup(self.end, process)
        return process

    @staticmethod
    def end(process):
        process.kill()
        process.wait()
        process.stdin.close()
        process.stdout.close()

    def ask(self, process, line):
        process.stdin.write(line + "\n")
        process.stdin.flush()
        return process.stdout.readline().rstrip("\n")

    # Answers

    def test_each_command_is_answered_by_a_line(self):
        file, _ = self.song(frames=88200)
        answers, status = self.drive(
            "# a comment", "", "   ", f"open {file} type MPEGVideo alias Song parent 1 style 1073741824",
            "STATUS  song   LENGTH", "set song time format ms", "status song length", "status song mode", "play song",
            "wait 1", "status song mode", "pause song", "status song mode", "resume song", "stop song", "close song",
            "close all")
        self.assertEqual(answers, ["Success", "Success\t88200", "Success", "Success\t2000", "Success\tstopped", "Success",
                                   "Success", "Success\tplaying", "Success", "Success\tpaused", "Success", "Success",
                                   "Success", "Success"])
        self.assertEqual(status, 0)

    def test_an_error_names_what_it_is_about_and_ends_with_status_1(self):
        long = "x" * 300
        answers, status = self.drive("stop nobody", f"open {self.path('none.wav')} type MPEGVideo alias m", "jump over",
                                     f"open /{long}/{long}.wav type MPEGVideo alias m", f"status {long} mode", "close all")
        self.assertEqual(len(answers), 6)
        self.assertIn("nobody", answers[0])
        self.assertIn("none.wav", answers[1])
        self.assertIn("jump over", answers[2])
        self.assertEqual(answers[5], "Success")
        for answer in answers[:5]:
            self.assertNotIn("Success", answer)
            self.assertLessEqual(len(answer), 128)
        self.assertEqual(status, 1)

    def test_answers_come_while_the_input_is_still_open(self):
        file, _ = self.song()
        process = self.start("--virtual")
        self.assertEqual(self.ask(process, f'open "{file}" type MPEGVideo alias m'), "Success")
        self.assertEqual(self.ask(process, "status m length"), "Success\t44100")
        process.stdin.close()
        self.assertEqual(process.wait(10), 0)

    def test_the_last_line_needs_no_end_and_lines_may_end_as_elsewhere(self):
        done = subprocess.run([CLI, "media", "--virtual"], input=b"close all\r\nclose all", capture_output=True, timeout=60)
        self.assertEqual((done.stdout, done.returncode), (b"Success\nSuccess\n", 0))

    def test_no_input_is_no_error(self):
        self.assertEqual(self.drive(""), ([], 0))

    def test_any_bytes_are_answered(self):
        done = subprocess.run([CLI, "media", "--virtual"], input=bytes(range(1, 256)) * 3 + b"\nstop \0m\nopen \xff type x\n",
                              capture_output=True, timeout=60)
        answers = done.stdout.split(b"\n")[:-1]
        self.assertEqual(len(answers), 6)  # there is one end of a line among all bytes
        self.assertTrue(all(0 < len(answer) <= 128 for answer in answers), answers)
        self.assertEqual(done.returncode, 1)

    def test_a_file_on_the_command_line_is_wrong_usage(self):
        done = subprocess.run([CLI, "media", "a.wav"], capture_output=True, text=True, timeout=60)
        self.assertEqual((done.returncode, done.stdout), (2, ""))

    # Sound

    def test_what_is_played_in_the_waits_is_captured_frame_for_frame(self):
        file, samples = self.song(frames=20000)
        answers, status = self.drive(
            f"open {file} type MPEGVideo alias m", OPEN_RECORDER, "play m to 5000", "record rec", "wait m",
            "wait 0.02", "stop rec", "wait 1", "record rec", "play m from 5000", "wait m", "wait 0.02", "stop rec", "status rec length",
            f"save rec {self.path('an out.wav')}")
        self.assertEqual(status, 0, answers)
        kept = self.samples("an out.wav")
        sounding = array.array("h", (value for value in kept if value))
        self.assertEqual(sounding, samples)
        self.assertLessEqual(len(kept) // 2, 20000 + 2 * 2 * 882)
        self.assertEqual(answers[-2], f"Success\t{len(kept) // 2}")

    def test_the_same_commands_give_the_same_file(self):
        with open(self.path("a.mid"), "wb") as file:
            file.write(midi(0.5))
        for name in ("one.wav", "two.wav"):
            answers, status = self.drive(
                f"open {self.path('a.mid')} type MPEGVideo alias m", OPEN_RECORDER, "status m length", "record rec",
                "play m", "wait m", "status m position", "status m length", "stop rec", f"save rec {self.path(name)}",
                options=("--virtual", "--soundfont", SMALL_SOUNDFONT))
            self.assertEqual(status, 0, answers)
            self.assertEqual(answers[6], answers[7])
            self.assertGreaterEqual(int(answers[2].split("\t")[1]), 22050)
        with open(self.path("one.wav"), "rb") as one, open(self.path("two.wav"), "rb") as two:
            self.assertEqual(one.read(), two.read())
        self.assertGreater(max(self.samples("one.wav")), 500)

    def test_the_witness_reads_what_is_saved(self):
        _, status = self.drive(
            OPEN_RECORDER, "set rec samplespersec 22050 channels 1 bitspersample 8 alignment 1 bytespersec 22050",
            "record rec", "wait 2.5", "stop rec", f"save rec {self.path('out.wav')}")
        self.assertEqual(status, 0)
        for option, wanted in (("-r", "22050"), ("-c", "1"), ("-b", "8"), ("-s", "55125")):
            done = subprocess.run(["soxi", option, self.path("out.wav")], capture_output=True, text=True, check=True)
            self.assertEqual(done.stdout.strip(), wanted)

    def test_an_hour_passes_at_once(self):
        begin = time.monotonic()
        answers, _ = self.drive("wait 3600", OPEN_RECORDER, "status rec length")
        self.assertEqual(answers, ["Success", "Success", "Success\t0"])
        self.assertLess(time.monotonic() - begin, 60)

    # The clock

    def test_without_a_sound_server_time_passes_all_the_same(self):
        file, _ = self.song(frames=22050)
        process = self.start()
        self.assertEqual(self.ask(process, f"open {file} type MPEGVideo alias m"), "Success")
        begin = time.monotonic()
        self.assertEqual(self.ask(process, "play m"), "Success")
        self.assertLess(time.monotonic() - begin, 0.4)
        self.assertEqual(self.ask(process, "status m mode"), "Success\tplaying")
        self.assertEqual(self.ask(process, "wait m"), "Success")
        self.assertGreater(time.monotonic() - begin, 0.4)
        self.assertEqual(self.ask(process, "status m position"), "Success\t22050")
        process.stdin.close()
        self.assertEqual(process.wait(10), 0)

    def test_the_own_mix_is_captured_bit_for_bit_as_it_plays(self):
        file, samples = self.song(frames=22050)
        answers, status = self.drive(f"open {file} type MPEGVideo alias m", OPEN_RECORDER, "record rec", "play m", "wait m",
                                     "wait 0.3", "stop rec", f"save rec {self.path('out.wav')}", options=())
        self.assertEqual(status, 0, answers)
        self.assertEqual(array.array("h", (value for value in self.samples("out.wav") if value)), samples)

    def test_an_interrupt_ends_a_wait_and_leaves_nothing_behind(self):
        for options in ((), ("--virtual",)):
            process = self.start(*options)
            for line in (OPEN_RECORDER, "record rec"):
                self.assertEqual(self.ask(process, line), "Success")
            process.stdin.write("wait 100000000\n")
            process.stdin.flush()
            time.sleep(0.3)
            begin = time.monotonic()
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(10), 1)
            self.assertLess(time.monotonic() - begin, 2)
            self.assertEqual([name for name in os.listdir(self.folder) if not name.startswith(".config")], [])

    def test_an_interrupt_ends_what_waits_for_commands(self):
        process = self.start("--virtual")
        self.assertEqual(self.ask(process, "close all"), "Success")
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(10), 0)


if __name__ == "__main__":
    CLI = os.path.abspath(sys.argv.pop(1))
    unittest.main()
