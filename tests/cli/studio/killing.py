# SPDX-License-Identifier: GPL-2.0-or-later
"""`record` by the clock: with a sound server or none, ended by a key, a signal or a full disk, and killed."""

import array
import os
import random
import signal
import struct
import subprocess
import time

from player_model import Score
from studio import measure
from studio.case import SMALL_SOUNDFONT, StudioCase, wait_until
from studio.midis import scale
from studio.server import JackServer, Server
from studio.waves import little, read_plain, values_of, wave

LATE = 1.6  # seconds that a header may be old where it is renewed each second and the machine has other work
BYTES = 176400  # a second


class LiveCase(StudioCase):
    def noise(self, frames=44100, name="n.wav", top=32767):
        rng = random.Random(5)
        values = array.array("h", [rng.randrange(-top, top + 1) or 1 for _ in range(2 * frames)])
        self.save(name, wave(values))
        return values

    def take(self, name="t.wav"):
        plain, size = read_plain(self.read(name))
        self.assertEqual(len(plain.data), size)
        return plain

    def told(self, name="t.wav"):
        """What the header tells and what is there, in bytes."""
        with open(self.path(name), "rb") as file:
            head = file.read(44)
            return (struct.unpack("<I", head[40:44])[0] if len(head) == 44 else -1), os.fstat(file.fileno()).st_size - 44

    def begun(self, name="t.wav", seconds=0.5):
        wait_until(lambda: os.path.exists(self.path(name)) and os.path.getsize(self.path(name)) >= 44 + seconds * BYTES, "a take")

    def assertHolds(self, take, values):
        begin = measure.first_sound(take.values)
        self.assertEqual(take.values[2 * begin:2 * begin + len(values)], values)
        self.assertFalse(any(take.values[2 * begin + len(values):]))
        self.assertLessEqual(begin, 4410)
        self.assertLessEqual(take.frames - begin - len(values) // 2, 22050)

    def frames_by_sox(self, name):
        done = subprocess.run(["soxi", "-s", self.path(name)], capture_output=True, text=True, check=True)
        return int(done.stdout)


class EndTest(LiveCase):
    def test_a_signal_ends_the_take_as_stop_recording_does(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            for source in ([], ["long.wav"]):
                self.noise(44100 * 20, "long.wav")
                running = self.start("record", *source, "t.wav")
                self.begun()
                sent = time.monotonic()
                running.send(number)
                done = running.wait(15)
                self.assertLess(time.monotonic() - sent, 3)
                if number == signal.SIGINT:
                    self.assertEqual(done.returncode, 0, done.stderr)
                self.assertGreaterEqual(done.returncode, 0)
                self.assertGreaterEqual(self.take().frames, 22050)
                self.assertEqual(self.frames_by_sox("t.wav"), self.take().frames)
                os.remove(self.path("t.wav"))
                self.assertEqual(self.names(), ["long.wav"])

    def test_ctrl_c_with_an_mp3_target_leaves_a_whole_one(self):
        self.noise(44100 * 20, "long.wav")
        running = self.start("record", "long.wav", "t.mp3")
        self.begun()
        running.send(signal.SIGINT)
        done = running.wait(20)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.names(), ["long.wav", "t.mp3"])
        self.assertGreater(self.frames("t.mp3"), 10000)

    def test_a_take_without_a_source_lasts_its_seconds(self):
        done = self.succeed("record", "t.wav", "--seconds", "1.5")
        self.assertNear(self.take().frames / 44100, 1.5, 0.3)
        self.assertGreater(done.seconds, 1.2)
        self.assertIn("silent", done.stderr)

    def test_a_full_disk_ends_the_take_and_what_fitted_stays(self):
        values = self.noise(44100 * 20, "long.wav")
        limit = 44 + BYTES
        done = self.run_cli("record", "long.wav", "t.wav", file_size=limit)
        self.assertEqual(done.returncode, 1, done.stderr)
        # The library of the sound server has words of its own for what it can't make room for.
        own = [line for line in done.stderr.splitlines() if line.startswith("velmora-cli")]
        self.assertEqual(len(own), 1, done.stderr)
        self.assertIn("t.wav", own[0])
        self.assertLess(done.seconds, 10)
        take = self.take()
        self.assertGreater(len(take.data), BYTES * 0.7)
        begin = measure.first_sound(take.values)
        self.assertEqual(take.values[2 * begin:], values[:len(take.values) - 2 * begin])

    def test_two_sessions_at_once_take_their_own_mix_only(self):
        values = self.noise()
        both = [self.start("record", "n.wav", "1.wav"), self.start("record", "2.wav", "--seconds", "1")]
        for running in both:
            self.assertEqual(running.wait().returncode, 0)
        self.assertHolds(self.take("1.wav"), values)
        self.assertFalse(any(self.take("2.wav").values))


class KilledTest(LiveCase):
    def test_the_header_tells_the_true_length_at_least_once_a_second(self):
        self.noise(44100 * 20, "long.wav")
        running = self.start("record", "long.wav", "t.wav")
        self.begun()
        history, end = [], time.monotonic() + 4
        while time.monotonic() < end:
            told, there = self.told()
            now = time.monotonic()
            self.assertLessEqual(told, there)
            history.append((now, there))
            old = [size for moment, size in history if moment < now - LATE]
            if old:
                self.assertGreaterEqual(told, old[-1])
            time.sleep(0.05)
        running.send(signal.SIGINT)
        self.assertEqual(running.wait(20).returncode, 0)
        self.assertGreater(history[-1][1], 2.5 * BYTES)

    def test_what_was_recorded_until_it_is_killed_opens_elsewhere(self):
        values = self.noise(44100 * 20, "long.wav")
        for seconds in (0.6, 2.2):
            for out, wav in (("t.wav", "t.wav"), ("u.mp3", "u.wav")):
                running = self.start("record", "long.wav", out)
                self.begun(wav, seconds)
                running.process.kill()
                running.process.wait()
                data = self.read(wav)
                told, there = self.told(wav)
                self.assertLessEqual(told, there)
                self.assertGreaterEqual(told, there - LATE * BYTES)
                if seconds > 2:
                    self.assertGreater(told, 0)
                self.assertEqual(self.frames_by_sox(wav), told // 4)
                frames = self.frames(wav)
                self.assertTrue(told // 4 <= frames <= there // 4, (told, there, frames))
                sound = values_of(data[44:44 + told // 4 * 4])
                begin = measure.first_sound(sound)
                self.assertEqual(sound[2 * begin:], values[:len(sound) - 2 * begin])
                self.assertNotIn("u.mp3", self.names())
                os.remove(self.path(wav))
                # What nobody is left to take away has at least no name that is seen.
                self.assertEqual([name for name in self.names() if not name.startswith(".")], ["long.wav"])


class ServerTest(LiveCase):
    """The own mix is free of what happens to a sound server."""

    def setUp(self):
        super().setUp()
        self.values = self.noise(66150)

    def record_beside(self, disturb, *words):
        with Server(os.path.join(self.home, f"pulse-{time.monotonic()}")) as server:
            running = self.start("record", "n.wav", "t.wav", *words, env={"PULSE_SERVER": server.address})
            disturb(server)
            done = running.wait()
        self.assertEqual(done.returncode, 0, done.stderr)
        return done

    def test_the_own_mix_is_taken_whole_at_any_volume(self):
        def quiet(server):
            server.control("set-sink-volume", "out", "30%")

        def mute(server):
            server.control("set-sink-mute", "out", "1")

        for disturb in (quiet, mute):
            self.record_beside(disturb)
            self.assertHolds(self.take(), self.values)
            os.remove(self.path("t.wav"))

    def test_a_server_that_dies_takes_nothing_with_it(self):
        def die(server):
            self.begun()
            server.process.kill()

        self.record_beside(die)
        self.assertHolds(self.take(), self.values)

    def test_everything_that_sounds_is_taken_from_the_monitor(self):
        self.noise(30000, "other.wav", 20000)
        other = values_of(self.read("other.wav")[44:])

        def attempt():
            with Server(os.path.join(self.home, f"pulse-{time.monotonic()}")) as server:
                running = self.start("record", "t.wav", "--from", "everything", "--replace",
                                     env={"PULSE_SERVER": server.address})
                self.begun(seconds=0.3)
                subprocess.run(["paplay", self.path("other.wav")], env=server.environment, check=True, timeout=30)
                time.sleep(0.5)
                running.send(signal.SIGINT)
                done = running.wait()
            self.assertEqual(done.returncode, 0, done.stderr)
            data = little(self.take().values)
            at = data.find(little(other[:128]))
            return at >= 0 and data[at:at + 2 * len(other)] == little(other)

        self.assertTrue(any(attempt() for _ in range(3)))

    def test_everything_includes_the_source_that_is_played(self):
        def attempt():
            with Server(os.path.join(self.home, f"pulse-{time.monotonic()}")) as server:
                done = self.start("record", "n.wav", "t.wav", "--from", "everything", "--replace",
                                  env={"PULSE_SERVER": server.address}).wait()
            self.assertEqual(done.returncode, 0, done.stderr)
            return little(self.take().values).find(little(self.values)) >= 0

        self.assertTrue(any(attempt() for _ in range(3)))

    def test_everything_without_a_server_is_told(self):
        done = self.run_cli("record", "t.wav", "--from", "everything", "--seconds", "1", patience=20)
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stderr.strip())

    def test_a_midi_file_and_a_score_are_taken_by_the_clock_too(self):
        self.save("m.mid", scale())
        self.succeed("record", "m.mid", "t.wav", "--soundfont", SMALL_SOUNDFONT)
        self.assertGreater(measure.level_db(self.take().values[:80000]), -50)


class OuterDeviceTest(LiveCase):
    def test_a_score_for_an_outer_device_is_taken_through_the_built_in_synthesizer(self):
        """The device is a client of a JACK server, as a program without a sound of its own mix would be."""
        score = Score()
        for n in range(4):
            score.cell[0][n] = 60 + n
        self.save("s.sng", score.text().encode())
        self.succeed("record", "s.sng", "alone.wav", "--virtual", "--soundfont", SMALL_SOUNDFONT)
        jack = JackServer()
        self.addCleanup(jack.stop)
        environment = {name: jack.environment[name] for name in ("JACK_DEFAULT_SERVER", "JACK_NO_START_SERVER")}

        def listed():
            return [line for line in self.run_cli("devices", env=environment).stdout.splitlines() if "midi-monitor" in line]

        def plugged():
            if self.dump.poll() is not None:
                self.dump = subprocess.Popen(["jack_midi_dump"], env=jack.environment, stdout=subprocess.DEVNULL,
                                             stderr=subprocess.DEVNULL)
            return listed()

        self.dump = subprocess.Popen(["false"])
        try:
            device = wait_until(plugged, "a client of the JACK server")[0].strip()
            done = self.succeed("record", "s.sng", "t.wav", "--virtual", "--soundfont", SMALL_SOUNDFONT, "--device", device,
                                env=environment)
        finally:
            self.dump.terminate()
            self.dump.wait()
        self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)
        self.assertIn("built-in", done.stderr.lower())
        self.assertEqual(self.read("t.wav"), self.read("alone.wav"))
