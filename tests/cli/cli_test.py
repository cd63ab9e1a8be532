# SPDX-License-Identifier: GPL-2.0-or-later
"""The headless companion as its users call it. Usage: cli_test.py PATH-OF-VELMORA-CLI"""

import math
import os
import random
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import wave

from player_model import CHANNELS, CLEARED, Player, Score

CLI = None
SMALL_SOUNDFONT = "/usr/share/sounds/sf2/TimGM6mb.sf2"


def run(*words, **more):
    return subprocess.run([CLI, *map(str, words)], capture_output=True, text=True, timeout=120, **more)


def random_score(rng, positions=60, channels=CHANNELS):
    score = Score()
    score.tempo = rng.choice([60, 100, 137, 333, 500])
    for c in rng.sample([c for c in range(channels) if c != 9], rng.randint(1, 5)):
        codes = [rng.randrange(128) for _ in range(2)] if c < 8 else [rng.randrange(128, 175) for _ in range(2)]
        p = rng.randrange(4)
        while p < positions:
            length, row = rng.randint(1, 6), rng.randrange(128)
            for q in range(p, min(p + length, positions)):
                score.cell[c][q] = row if q == p else 1000 + row
                score.instrument[c][q] = codes[p % 2]
            if rng.random() < 0.2 and c < 8:
                score.chord[c + 1][p] = rng.randrange(8)
            p += length + rng.choice([0, 0, 1, 5])
        for name in CLEARED:
            for q in range(1, positions):
                if rng.random() < 0.3:
                    score.effects[name][c][q] = rng.randrange(128)
    return score


class CliTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        os.environ["HOME"] = self.folder
        os.environ["XDG_CONFIG_HOME"] = self.folder
        os.environ["PULSE_SERVER"] = "unix:" + self.path("no server")
        os.environ["SDL_AUDIODRIVER"] = "none of them"
        os.environ["JACK_DEFAULT_SERVER"] = "no_such_server"

    def path(self, name):
        return os.path.join(self.folder, name)

    def save(self, name, text):
        mode = "wb" if isinstance(text, bytes) else "w"
        with open(self.path(name), mode, **({} if mode == "wb" else {"newline": ""})) as file:
            file.write(text)
        return self.path(name)

    def tune(self, name="tune.sng", rows=(60, 62, 64, 65), length=2, tempo=200, channel=0):
        score = Score()
        score.tempo = tempo
        for i, row in enumerate(rows):
            for k in range(length):
                score.cell[channel][i * length + k] = row if k == 0 else 1000 + row
                score.instrument[channel][i * length + k] = 0 if channel < 8 else 130
        return self.save(name, score.text())

    # What playing sends

    def test_a_trace_is_what_an_independent_player_sends(self):
        rng = random.Random(7)
        for case in range(60):
            score = random_score(rng)
            file = self.save("s.sng", score.text())
            options, top, segment = [], None, None
            muted = sorted(rng.sample(range(CHANNELS), rng.choice([0, 0, 2])))
            strummed = sorted(rng.sample(range(8), rng.choice([0, 0, 3])))
            if muted:
                options += ["--mute", ",".join(map(str, muted))]
            if strummed:
                options += ["--strum", ",".join(map(str, strummed))]
            if rng.random() < 0.3:
                top = rng.randrange(CHANNELS)
                options += ["--top-channel", top]
            if rng.random() < 0.3:
                segment = sorted(rng.choices(range(70), k=2))
                options += ["--segment", f"{segment[0]}:{segment[1]}"]
            classic = rng.random() < 0.5
            if classic:
                options += ["--classic"]
            wanted = Player(score, top, muted, strummed, classic).play(segment)
            done = run("trace", file, *options)
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertEqual(done.stdout.splitlines(), wanted, f"case {case}: {options}")

    def test_the_first_step_comes_one_step_after_the_start(self):
        lines = run("trace", self.tune(tempo=100)).stdout.splitlines()
        self.assertEqual(lines[0], "0 0.138000 0x0000B0")
        self.assertEqual(lines[-1].split()[2], "reset")

    def test_opening_a_file_alone_leaves_channels_above_one_silent(self):
        file = self.tune(channel=5)
        self.assertEqual(len(run("trace", file, "--top-channel", 1).stdout.splitlines()), 1)
        self.assertGreater(len(run("trace", file).stdout.splitlines()), 20)

    def test_a_score_of_200000_positions_is_played_whole(self):
        score = Score(200000)
        score.tempo = 1000
        for p in (0, 32768, 40000, 199999):
            score.cell[0][p], score.instrument[0][p] = 60, 1
        file = self.save("long.sng", score.text())
        self.assertIn("SongEnd: 200000\n", run("info", file).stdout)
        ons = [line for line in run("trace", file).stdout.splitlines() if line.endswith("90") and "0x7F43" in line]
        self.assertEqual([int(line.split()[0]) for line in ons], [0, 32768, 40000, 199999])
        for options, ticks in ((["--classic"], [0, 393216, 480000, 2399988]),
                               ([], [240 * (p + 1) for p in (0, 32768, 40000, 199999)])):
            self.assertEqual(run("convert", file, self.path("long.mid"), *options).returncode, 0)
            notes = self.listed(self.path("long.mid"))
            self.assertEqual([int(n[1]) for n in notes if n[2] == "Note_on_c"], ticks)

    # Files

    def listed(self, path):
        done = subprocess.run(["midicsv", path], capture_output=True, text=True, check=True)
        return [line.split(", ") for line in done.stdout.splitlines()]

    def test_a_midi_lister_reads_the_notes_that_the_score_holds(self):
        file = self.tune(rows=(60, 60, 50), length=4)
        self.assertEqual(run("convert", file, self.path("t.mid"), "--classic").returncode, 0)
        records = self.listed(self.path("t.mid"))
        self.assertEqual(records[0], ["0", "0", "Header", "1", "14", "48"])
        notes = [(int(r[1]), r[2], int(r[4])) for r in records if r[2].startswith("Note")]
        self.assertEqual(notes, [(0, "Note_on_c", 67), (48, "Note_off_c", 67), (48, "Note_on_c", 67),
                                 (96, "Note_off_c", 67), (96, "Note_on_c", 77), (144, "Note_off_c", 77)])

    def performed(self, path):
        """What a player that merges the tracks of a MIDI file sends: moments and words; and the end of each track."""
        records = self.listed(path)
        division = int(records[0][5])
        tempi = [(int(r[1]), int(r[3])) for r in records if r[2] == "Tempo"]

        def moment(tick):
            passed, since, per = 0.0, 0, 0.0
            for at, microseconds in tempi:
                if at > tick:
                    break
                passed, since, per = passed + (at - since) * per, at, microseconds / 1e6 / division
            return passed + (tick - since) * per

        kinds = {"Note_off_c": 0x80, "Note_on_c": 0x90, "Control_c": 0xB0, "Program_c": 0xC0}
        words = [(int(r[1]), kinds[r[2]] + sum(int(v) << 8 * i for i, v in enumerate(r[3:]))) for r in records
                 if r[2] in kinds]
        return ([(moment(tick), word) for tick, word in sorted(words, key=lambda one: one[0])],
                [moment(int(r[1])) for r in records if r[2] == "End_track"])

    def assert_sounds_as_traced(self, file, *options):
        done = run("convert", file, self.path("heard.mid"), *options)
        self.assertEqual(done.returncode, 0, done.stderr)
        got, ends = self.performed(self.path("heard.mid"))
        traced = [line.split() for line in run("trace", file, *options).stdout.splitlines()]
        wanted = [(float(moment), int(word, 16)) for _, moment, word in traced if word != "reset"]
        wanted = [(moment, word) for moment, word in wanted if word & 0xFF808000 == 0]  # ports drop the others
        self.assertEqual([word for _, word in got[:len(wanted)]], [word for _, word in wanted])
        self.assertLess(max((abs(a - b) for (a, _), (b, _) in zip(got, wanted)), default=0), 0.001)
        end = float(traced[-1][1])
        for moment in ends:
            self.assertAlmostEqual(moment, end, delta=0.001)
        for moment, word in got[len(wanted):]:
            self.assertEqual(word & 0xF0, 0x80)
            self.assertAlmostEqual(moment, end, delta=0.001)

    def test_a_midi_lister_reads_what_playing_sends(self):
        demos = os.path.join(os.path.dirname(__file__), "..", "..", "packaging", "demos")
        for name in sorted(os.listdir(demos)):
            if name.endswith(".sng"):
                self.assert_sounds_as_traced(os.path.join(demos, name))
        march = os.path.join(demos, "march.sng")
        self.assert_sounds_as_traced(march, "--mute", "0,8")
        self.assert_sounds_as_traced(march, "--top-channel", "3")
        self.assert_sounds_as_traced(march, "--segment", "30:90")
        self.assert_sounds_as_traced(os.path.join(demos, "folksong.sng"), "--strum", "0,1,2,3,4,5,6,7")
        rng = random.Random(23)
        for _ in range(10):
            self.assert_sounds_as_traced(self.save("r.sng", random_score(rng).text()), "--strum", "0,2,5")

    def rising(self, path, moments):
        """How much later than its moment each note begins that stands alone."""
        with wave.open(path) as sound:
            rate = sound.getframerate()
            left = struct.unpack(f"<{sound.getnframes() * 2}h", sound.readframes(sound.getnframes()))[::2]
        late = []
        for moment in moments:
            at = int(moment * rate)
            before = max(map(abs, left[at - rate // 20:at - rate // 50]), default=0)
            begun = next(i for i in range(at - rate // 50, at + rate // 5) if abs(left[i]) > 4 * before + 300)
            late.append(begun / rate - moment)
        return late

    def three_minutes(self):
        """Single notes far apart, at a tempo whose quarter is no whole number of microseconds; the last one at the end."""
        score = Score(6600)
        score.tempo = 503
        for p in (0, 1000, 2500, 4000, 5555, 6580):
            score.cell[0][p], score.instrument[0][p] = 60, 13
            score.cell[0][p + 1], score.instrument[0][p + 1] = 1060, 13
        return self.save("three.sng", score.text())

    def test_a_tune_lasts_as_long_as_sound_as_midi_and_as_a_list(self):
        file = self.three_minutes()
        trace = [line.split() for line in run("trace", file).stdout.splitlines()]
        moments = [float(moment) for _, moment, word in trace if word.endswith("90")]
        self.assertGreater(moments[-1], 180)
        _, ends = self.performed_of(file)
        for end in ends:
            self.assertAlmostEqual(end, float(trace[-1][1]), delta=0.002)
        done = run("convert", file, self.path("t.wav"), "--soundfont", SMALL_SOUNDFONT)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        late = self.rising(self.path("t.wav"), moments)
        self.assertLess(max(late) - min(late), 0.002, late)
        theirs = self.rising(self.foreign_sound(self.path("p.mid")), moments)
        self.assertLess(max(theirs) - min(theirs), 0.005, theirs)

    def foreign_sound(self, midi):
        """What a player that is not ours makes of a MIDI file."""
        subprocess.run(["fluidsynth", "-niq", "-r", "44100", "-F", midi + ".wav", SMALL_SOUNDFONT, midi], check=True,
                       capture_output=True)
        return midi + ".wav"

    def performed_of(self, file):
        self.assertEqual(run("convert", file, self.path("p.mid")).returncode, 0)
        return self.performed(self.path("p.mid"))

    def loudness(self, path):
        """Of each tenth of a second."""
        with wave.open(path) as sound:
            part = sound.getframerate() // 10
            left = struct.unpack(f"<{sound.getnframes() * 2}h", sound.readframes(sound.getnframes()))[::2]
        return [math.sqrt(sum(s * s for s in left[i:i + part]) / part) for i in range(0, len(left) - part, part)]

    def test_a_player_that_is_not_ours_makes_the_same_sound_of_chords_effects_and_drums(self):
        file = os.path.join(os.path.dirname(__file__), "..", "..", "packaging", "demos", "welcome.sng")
        levels = {}
        for name, options in (("heard", []), ("classic", ["--classic"])):
            self.assertEqual(run("convert", file, self.path(name + ".mid"), *options).returncode, 0)
            levels[name] = self.loudness(self.foreign_sound(self.path(name + ".mid")))
        self.assertEqual(run("convert", file, self.path("ours.wav"), "--soundfont", SMALL_SOUNDFONT).returncode, 0)
        ours = self.loudness(self.path("ours.wav"))

        def alike(theirs):
            count = min(len(ours), len(theirs))
            means = sum(ours[:count]) / count, sum(theirs[:count]) / count
            pairs = [(a - means[0], b - means[1]) for a, b in zip(ours, theirs)]
            return sum(a * b for a, b in pairs) / math.sqrt(sum(a * a for a, _ in pairs) * sum(b * b for _, b in pairs))
        self.assertGreater(alike(levels["heard"]), 0.98)
        self.assertLess(alike(levels["classic"]), 0.95, "the measure would not notice another tempo")

    def test_a_score_comes_back_as_it_was(self):
        text = random_score(random.Random(3)).text()
        file = self.save("a.sng", text)
        self.assertEqual(run("convert", file, self.path("b.sng")).returncode, 0)
        with open(self.path("b.sng"), newline="") as saved:
            self.assertEqual(saved.read(), text)

    def test_the_first_form_keeps_its_tempo_only_through_its_own_reader(self):
        rows = ["60,1060", "0,0"] + ["-1", "0"] * 12
        file = self.save("old.sng", "\r\n".join(rows + [" 500 ", "24" + ",0" * 12]) + "\r\n")
        self.assertIn("Tempo: 400\n", run("info", file, "--form", "first").stdout)
        self.assertIn("Tempo: 100\n", run("info", file).stdout)

    def test_the_second_form_is_known_and_read_as_that(self):
        rows = ["60,1060", "24,24"] + ["-1", "24"] * 12 + [" 70 ", ",".join(["24"] * 13), "Polyphonics"]
        sections = ["0,0"] * 9 + sum(([name] + [value] * 13 for name, value in (
            ("Volume", "99"), ("Modulation_Change", "0"), ("Pan_Change", "64"), ("Reverb_Change", "0"),
            ("Chorus_Change", "0"))), [])
        file = self.save("recorded.sng", "\r\n".join(rows + sections) + "\r\n")
        for words in ([], ["--form", "second"]):
            done = run("info", file, *words)
            self.assertIn("Tempo: 70\n", done.stdout)
            self.assertEqual(done.stderr, "")
        self.assertEqual(run("trace", file).stdout, run("trace", file, "--form", "second").stdout)
        self.assertIn("Tempo: 100\n", run("info", file, "--form", "newest").stdout)
        self.assertEqual(run("edit", file, self.path("e.sng"), "channel 1").returncode, 0)
        with open(self.path("e.sng")) as edited:
            self.assertIn("Volume\n99", edited.read())

    def test_the_lesson_in_midi_is_what_its_score_exports(self):
        demos = os.path.join(os.path.dirname(__file__), "..", "..", "packaging", "demos")
        self.assertEqual(run("convert", os.path.join(demos, "333.sng"), self.path("333.mid"),
                             "--classic").returncode, 0)
        with open(self.path("333.mid"), "rb") as made, open(os.path.join(demos, "333.mid"), "rb") as kept:
            self.assertEqual(made.read(), kept.read())

    def test_sound_is_written_whole_with_its_tail_and_without_clipping(self):
        file = self.tune(rows=(60, 62, 64, 65))
        done = run("convert", file, self.path("t.wav"), "--soundfont", SMALL_SOUNDFONT)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        with wave.open(self.path("t.wav")) as sound:
            self.assertEqual((sound.getnchannels(), sound.getsampwidth(), sound.getframerate()), (2, 2, 44100))
            frames = struct.unpack(f"<{sound.getnframes() * 2}h", sound.readframes(sound.getnframes()))
        loud = [i // 2 for i, s in enumerate(frames) if abs(s) > 300]
        self.assertAlmostEqual(loud[0] / 44100, 13.8 / 200, delta=0.02)
        self.assertLess(max(map(abs, frames)), 32767)
        self.assertLess(max(map(abs, frames[-2000:])), 20)

    def test_a_decoder_reads_the_mp3(self):
        file = self.tune()
        done = run("convert", file, self.path("t.mp3"), "--soundfont", SMALL_SOUNDFONT, "--bitrate", 128)
        self.assertEqual(done.returncode, 0, done.stderr)
        told = subprocess.run(["mpg123", "-t", "-v", self.path("t.mp3")], capture_output=True, text=True)
        self.assertEqual(told.returncode, 0, told.stderr)
        self.assertIn("cbr128 44100", told.stderr)

    def test_several_scores_are_converted_into_a_folder_and_failures_are_named(self):
        files = [self.tune(f"{n}.sng") for n in "abc"]
        out = self.path("midi")
        done = run("convert", *files, self.path("absent.sng"), "--to", "mid", "--out", out)
        self.assertEqual(done.returncode, 1)
        self.assertIn("absent.sng", done.stderr)
        self.assertEqual(sorted(os.listdir(out)), ["a.mid", "b.mid", "c.mid"])

    def test_a_file_that_cannot_be_written_leaves_the_old_one(self):
        file = self.tune()
        for name in ("t.sng", "t.mid", "t.wav", "t.mp3"):
            self.assertEqual(run("convert", file, os.path.join(file, name), "--soundfont", SMALL_SOUNDFONT).returncode, 1)
        kept = self.save("kept.wav", "old")
        done = run("convert", file, kept, "--soundfont", self.path("absent.sf2"))
        self.assertEqual(done.returncode, 1)
        self.assertIn("absent.sf2", done.stderr)
        with open(kept) as still:
            self.assertEqual(still.read(), "old")

    # Bad input

    def test_any_bytes_are_taken_for_a_score_without_harm(self):
        rng = random.Random(11)
        good = random_score(rng).text().encode()
        cases = [b"", b"\n" * 300, b",,,,\n" * 120, b"9" * 100000, bytes(rng.randbytes(20000)).replace(b"\0", b"0"),
                 good[: len(good) // 2], good.replace(b"\r\n", b"\n"), good.replace(b"6", b"x")]
        for case in cases:
            file = self.save("bad.sng", case)
            for command in (("info", file), ("trace", file), ("convert", file, self.path("o.mid"))):
                done = run(*command)
                self.assertEqual(done.returncode, 0, (case[:40], command, done.stderr))

    def test_what_is_no_text_is_refused_as_a_score(self):
        kept = self.tune("kept.sng")
        with open(kept, "rb") as file:
            before = file.read()
        sound = self.save("sound.wav", b"RIFF\0\0\0\0WAVE")
        done = run("convert", sound, kept)
        self.assertEqual(done.returncode, 1)
        self.assertIn("sound.wav", done.stderr)
        with open(kept, "rb") as still:
            self.assertEqual(still.read(), before)

    def test_no_output_takes_the_place_of_another_or_of_its_input(self):
        os.mkdir(self.path("a"))
        os.mkdir(self.path("b"))
        files = [self.tune("a/x.sng"), self.tune("b/x.sng")]
        self.assertEqual(run("convert", *files, "--to", "mid", "--out", self.path("out")).returncode, 2)
        self.assertEqual(run("convert", files[0], "--to", "sng").returncode, 2)
        self.assertEqual(run("convert", files[0], files[0]).returncode, 2)
        self.assertFalse(os.path.exists(self.path("out")))

    def test_names_need_not_be_utf_8(self):
        name = os.path.join(self.folder.encode(), b"lat\xe9 \n tune.sng")
        os.rename(self.tune(), name)
        out = os.path.join(self.folder.encode(), b"\xff.mid")
        done = subprocess.run([CLI.encode(), b"convert", name, out], capture_output=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(os.path.exists(out))

    def test_output_that_cannot_be_written_is_a_failure(self):
        with open("/dev/full", "w") as full:
            for words in (["info", self.tune()], ["trace", self.tune()], ["--help"], ["devices"]):
                done = subprocess.run([CLI, *words], stdout=full, stderr=subprocess.PIPE, text=True)
                self.assertEqual(done.returncode, 1, words)
                self.assertIn("standard output", done.stderr)

    def test_a_segment_that_is_none_is_refused(self):
        file = self.tune()
        for words in (["trace", file], ["play", file], *(["convert", file, self.path("o" + end)]
                                                        for end in (".wav", ".mp3", ".mid"))):
            for options in ([], ["--classic"]):
                if words[-1].endswith(".mid") and options:
                    continue  # takes no segment at all
                done = run(*words, "--segment", "0:0", *options)
                self.assertEqual((done.returncode, done.stdout), (1, ""), words)
                self.assertIn("nothing to play", done.stderr)
        self.assertEqual(os.listdir(self.folder), ["tune.sng"])
        self.assertNotEqual(run("trace", file, "--segment", "1:1").stdout, "")
        self.assertNotEqual(run("trace", file, "--segment", "0:1").stdout, "")

    def test_silence_and_older_forms_are_told(self):
        self.assertIn("tempo", run("convert", self.tune(tempo=1), self.path("t.mid")).stderr)
        self.assertIn("no notes", run("convert", self.save("e.sng", Score().text()), self.path("t.mid")).stderr)
        demos = os.path.join(os.path.dirname(__file__), "..", "..", "packaging", "demos")
        self.assertIn("--form", run("info", os.path.join(demos, "301.sng")).stderr)
        self.assertEqual(run("info", os.path.join(demos, "301.sng"), "--form", "first").stderr, "")
        self.assertEqual(run("info", os.path.join(demos, "333.sng")).stderr, "")

    def test_a_missing_soundfont_is_named(self):
        for command in (["play", self.tune()], ["convert", self.tune(), self.path("t.wav")]):
            done = run(*command, "--soundfont", self.path("absent.sf2"))
            self.assertEqual(done.returncode, 1, done.stderr)
            self.assertIn("absent.sf2", done.stderr)

    def test_wrong_words_are_usage_errors_and_write_nothing(self):
        file = self.tune()
        out = self.path("o.mid")
        for words in ([], ["sing"], ["info"], ["convert", file], ["convert", file, self.path("o.xyz")],
                      ["convert", file, out, "--top-channel", "13"], ["convert", file, out, "--mute", "1,x"],
                      ["trace", file, "--segment", "9:3"], ["trace", file, "--segment", "9"], ["trace", file, file],
                      ["trace", file, "--form", "third"], ["convert", file, self.path("o.mp3"), "--bitrate", "129"],
                      ["convert", file, "--to", "ogg"], ["convert", file, out, "--classic", "--segment", "0:3"],
                      ["convert", file, self.path("o.sng"), "--segment", "0:3"], ["play", file, "--no-such-option"]):
            done = run(*words)
            self.assertEqual(done.returncode, 2, (words, done.stderr))
            self.assertTrue(done.stderr.startswith("velmora-cli: "), words)
            self.assertEqual(done.stdout, "")
        self.assertEqual(os.listdir(self.folder), ["tune.sng"])

    def test_every_command_explains_itself(self):
        self.assertEqual(run("--help").returncode, 0)
        for command in ("info", "convert", "edit", "play", "notation", "engrave", "lyrics", "trace", "devices", "keys"):
            self.assertIn(command, run("--help").stdout)
            done = run(command, "--help")
            self.assertEqual(done.returncode, 0)
            self.assertIn("velmora-cli " + command, " ".join(done.stdout.split()))

    # Keyboard schemes

    BUILT_IN = list("ZSXDCVGBHNJM,FGHJKL:\"QWERTYUIOP{}1234567890]")

    def keys(self, *words):
        """The labels that are shown."""
        done = subprocess.run([CLI, "keys", *words], capture_output=True, timeout=120)
        self.assertEqual((done.returncode, done.stderr), (0, b""), words)
        lines = done.stdout.decode("utf-8").split("\n")
        self.assertEqual((len(lines), lines[-1]), (45, ""))
        labels = []
        for key, line in enumerate(lines[:-1]):
            start = f"{key} {36 + key} "
            self.assertTrue(line.startswith(start), line)
            labels.append(line[len(start):])
        return labels

    def test_the_built_in_scheme_is_shown_without_a_file(self):
        self.assertEqual(self.keys(), self.BUILT_IN)

    def test_a_scheme_is_read_by_its_lines_and_the_last_one_stands_for_the_rest(self):
        for text, labels in ((b"A\r\nB\r\nC\r\n", ["A", "B"] + ["C"] * 42), (b"A\nB\r\nC", ["A", "B"] + ["C"] * 42),
                             (b"", [""] * 44), (b" A \n\n", [" A "] + [""] * 43),
                             (b"\xef\xbb\xbf\xc3\xb6\nB", ["\xf6"] + ["B"] * 43),
                             (b"\xf6\n\x80\n", ["\xf6"] + ["\u20ac"] * 43),
                             (b"".join(b"%d\r\n" % n for n in range(50)), [str(n) for n in range(44)])):
            self.assertEqual(self.keys(self.save("in.key", text)), labels, text)

    def test_labels_are_set_in_their_order_to_all_behind_the_first_equals(self):
        wanted = list(self.BUILT_IN)
        wanted[0], wanted[7], wanted[43] = "=a=", "", " \xf6 "
        self.assertEqual(self.keys("--set", "0=x", "--set", "7=", "--set=0==a=", "--set", "43= \xf6 "), wanted)

    def test_a_scheme_is_written_trimmed_with_its_extension_and_in_place(self):
        file = self.save("in.key", "A\nB\n")
        for out, name in ((self.path("new"), "new.key"), (self.path("BIG.KEY"), "BIG.KEY"), (file, "in.key")):
            done = run("keys", file, "--set", "1=  b  c ", "--set", "2=", "--out", out)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
            with open(self.path(name), "rb") as written:
                self.assertEqual(written.read(), b"A\r\nb  c\r\n\r\n" + b"B\r\n" * 41)
        self.assertEqual(sorted(os.listdir(self.folder)), ["BIG.KEY", "in.key", "new.key"])
        self.assertEqual(run("keys", "--out", self.path("own")).returncode, 0)
        self.assertEqual(self.keys(self.path("own.key")), self.BUILT_IN)

    def test_labels_of_any_bytes_are_written_as_utf_8(self):
        done = subprocess.run([CLI.encode(), b"keys", b"--set", b"3=\xe9", b"--set", b"4=\xc3\xa9", b"--out",
                               os.path.join(self.folder.encode(), b"\xff")], capture_output=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        with open(os.path.join(self.folder.encode(), b"\xff.key"), "rb") as written:
            self.assertEqual(written.read().split(b"\r\n")[3:5], [b"\xc3\xa9"] * 2)

    def test_what_is_no_scheme_is_named_and_nothing_is_written(self):
        os.mkdir(self.path("folder.key"))
        kept = self.save("kept.key", "K")
        for name, text in (("binary.key", b"\x7fELF\0\1"), ("wide.key", "A\nB\n".encode("utf-16")),
                           ("line.key", b"x" * 100_000_000), ("folder.key", None), ("missing.key", None)):
            file = self.save(name, text) if text else self.path(name)
            done = run("keys", file, "--out", kept)
            self.assertEqual((done.returncode, done.stdout), (1, ""), name)
            self.assertIn(name, done.stderr)
        with open(kept, "rb") as still:
            self.assertEqual(still.read(), b"K")

    def test_a_scheme_that_cannot_be_written_is_named(self):
        done = run("keys", "--out", os.path.join(self.save("file", ""), "below"))
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn("below.key", done.stderr)

    def test_wrong_words_about_keys_are_usage_errors_and_write_nothing(self):
        out = self.path("o.key")
        for words in (["--set", "44=x"], ["--set", "-1=x"], ["--set", "x=1"], ["--set", "=x"], ["--set", "1 =x"],
                      ["--set", "1"], ["--set", ""], ["--set", "1=a\nb"], ["--set", "0=a", "--set", "99=b"],
                      [self.path("a"), self.path("b")], [""], ["--set"]):
            done = run("keys", "--out", out, *words)
            self.assertEqual((done.returncode, done.stdout), (2, ""), (words, done.stderr))
        for name in ("", "  "):
            self.assertEqual(run("keys", "--out", name).returncode, 2)
        self.assertEqual(os.listdir(self.folder), [])

    # Libraries that are loaded when they are needed

    def without(self, library):
        """An environment in which a library is found and is none."""
        folder = self.path("broken")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, library), "w", encoding="utf-8"):
            pass
        return dict(os.environ, LD_LIBRARY_PATH=folder)

    def test_a_library_that_is_missing_is_named_and_leaves_the_old_file(self):
        for library, name in (("libfluidsynth.so.3", "tune.wav"), ("libsndfile.so.1", "tune.wav"),
                              ("libmp3lame.so.0", "tune.mp3")):
            out = self.path(name)
            with open(out, "w", encoding="utf-8") as file:
                file.write("old")
            done = run("convert", self.tune(), out, "--soundfont", SMALL_SOUNDFONT, env=self.without(library))
            shutil.rmtree(self.path("broken"))
            self.assertEqual(done.returncode, 1, done.stderr)
            self.assertIn(library, done.stderr)
            with open(out, encoding="utf-8") as file:
                self.assertEqual(file.read(), "old")

    def test_without_the_libraries_of_sound_servers_and_devices_everything_else_works(self):
        for library in ("libjack.so.0", "librtmidi.so.6"):
            self.without(library)
        done = run("devices", env=self.without("libasound.so.2"))
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(done.stdout.splitlines()[0], "MIDI Mapper")
        done = run("convert", self.tune(), self.path("tune.mid"), env=self.without("libpulse.so.0"))
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    # Playing

    def test_an_unknown_device_is_answered_with_the_known_ones(self):
        done = run("play", self.tune(), "--device", "Trombone 3000")
        self.assertEqual(done.returncode, 1)
        self.assertIn("Trombone 3000", done.stderr)
        self.assertIn("MIDI Mapper", done.stderr)
        self.assertEqual(run("devices").stdout.splitlines()[0], "MIDI Mapper")

    def test_playing_takes_the_time_that_the_score_takes_even_without_a_sound_server(self):
        file = self.tune(length=1, tempo=300)  # 4 positions, 5 steps and the last one's time
        began = time.monotonic()
        done = run("play", file, "--soundfont", SMALL_SOUNDFONT)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertGreater(time.monotonic() - began, 6 * 13.8 / 300)

    def test_ctrl_c_ends_a_loop_at_once(self):
        playing = subprocess.Popen([CLI, "play", self.tune(), "--loop", "--soundfont", SMALL_SOUNDFONT],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.assertTrue(playing.stdout.readline().startswith("Playing"))
        playing.send_signal(signal.SIGINT)
        _, errors = playing.communicate(timeout=5)
        self.assertEqual((playing.returncode, errors), (0, ""))

    def wav(self, name, seconds=0.4, rate=44100):
        with wave.open(self.path(name), "wb") as file:
            file.setnchannels(2)
            file.setsampwidth(2)
            file.setframerate(rate)
            frames = (int(9000 * math.sin(2 * math.pi * 440 * i / rate)) for i in range(int(seconds * rate)))
            file.writeframes(b"".join(struct.pack("<hh", value, value) for value in frames))
        return self.path(name)

    def test_files_of_all_kinds_are_played_one_after_the_other(self):
        self.assertEqual(run("convert", self.tune(length=1, tempo=300), self.path("tune.mid")).returncode, 0)
        files = [self.wav("one.wav"), self.wav("two.WAV", 0.3, 22050), self.path("tune.mid"), self.path("tune.sng"),
                 self.wav("three.wav")]
        began = time.monotonic()
        done = run("play", *files, "--soundfont", SMALL_SOUNDFONT)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertGreater(time.monotonic() - began, 0.4 + 0.3 + 0.4 + 2 * 6 * 13.8 / 300)
        self.assertEqual([line.split(" (")[0] for line in done.stdout.splitlines()], ["Playing " + file for file in files])
        self.assertIn("two.WAV (0.3 s)", done.stdout)

    def test_what_cannot_be_played_is_told_and_passed_over(self):
        junk = [self.save("junk.wav", "no sound"), self.save("junk.mp3", "no sound"), self.save("junk.mid", "no music"),
                self.path("absent.wav"), self.path("absent.mid"), self.path("absent.sng")]
        one, two = self.wav("one.wav", 0.1), self.wav("two.wav", 0.1)
        done = run("play", one, *junk, two, "--soundfont", SMALL_SOUNDFONT)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stdout.splitlines(), [f"Playing {one} (0.1 s)", f"Playing {two} (0.1 s)"])
        told = done.stderr.splitlines()
        self.assertEqual(len(told), len(junk))
        for line, file in zip(told, junk):
            self.assertTrue(line.startswith("velmora-cli: "), line)
            self.assertIn(file, line)
        done = run("play", *junk[:2])
        self.assertEqual((done.returncode, done.stdout), (1, ""))

    def test_ctrl_c_ends_music_at_once(self):
        self.assertEqual(run("convert", self.tune(tempo=20), self.path("tune.mid")).returncode, 0)
        for sent in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            for file in (self.wav("long.wav", 20), self.path("tune.mid")):
                playing = subprocess.Popen([CLI, "play", file, self.wav("next.wav"), "--soundfont", SMALL_SOUNDFONT],
                                           stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
                self.assertEqual(playing.stdout.readline().split(" (")[0], "Playing " + file)
                playing.send_signal(sent)
                rest, errors = playing.communicate(timeout=3)
                self.assertEqual((playing.returncode, rest, errors), (0, "", ""))

    def test_sound_files_need_no_soundfont(self):
        done = run("play", self.wav("one.wav", 0.1), "--soundfont", self.path("absent.sf2"))
        self.assertEqual((done.returncode, done.stderr), (0, ""))


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main()
