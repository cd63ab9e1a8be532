# SPDX-License-Identifier: GPL-2.0-or-later
"""`record --virtual`: what a take holds, how it is kept and what the session says."""

import array
import math
import os
import random
import re

from player_model import Score
from studio import measure, mp3s
from studio.case import SMALL_SOUNDFONT, StudioCase
from studio.midis import midi, note, scale, track
from studio.waves import CODINGS, Header, read_plain, wave

FORMATS = (("22.050Hz, 8bit Mono, 21k/sec", 22050, 8, 1), ("22.050Hz, 8bit Stereo, 43k/sec", 22050, 8, 2),
           ("22.050Hz, 16bit Mono, 43k/sec", 22050, 16, 1), ("22.050Hz, 16bit Stereo, 86k/sec", 22050, 16, 2),
           ("44.100Hz, 8bit Mono, 43k/sec", 44100, 8, 1), ("44.100Hz, 8bit Stereo, 86k/sec", 44100, 8, 2),
           ("44.100Hz, 16bit Mono, 86k/sec", 44100, 16, 1), ("44.100Hz, 16bit Stereo, 172k/sec", 44100, 16, 2),
           ("48.000Hz, 16bit Stereo, 192k/sec", 48000, 16, 2))
LISTED = (4, 5, 6, 7, 8)  # the rows that the window's list offers, in its order
BEFORE, BEHIND = 4410, 22050  # frames of silence at most


class RecordCase(StudioCase):
    def noise(self, name="n.wav", frames=60000, seed=1, channels=2):
        rng = random.Random(seed)
        values = array.array("h", [rng.randrange(-32767, 32768) or 1 for _ in range(frames * channels)])
        self.save(name, wave(values, 44100, channels))
        return values if channels == 2 else measure.stereo(values, values)

    def tune(self, name="tune.sng", rows=(60, 62, 64, 65), tempo=200, channel=0):
        score = Score()
        score.tempo = tempo
        for i, row in enumerate(rows):
            score.cell[channel][2 * i], score.cell[channel][2 * i + 1] = row, 1000 + row
        return self.save(name, score.text().encode())

    def record(self, *words, **more):
        return self.succeed("record", *words, "--virtual", "--soundfont", SMALL_SOUNDFONT, **more)

    def take(self, name="t.wav"):
        plain, size = read_plain(self.read(name))
        self.assertEqual(len(plain.data), size, "the header tells what is there")
        self.assertEqual(len(self.read(name)), 44 + size + size % 2 * (len(self.read(name)) - 44 - size))
        return plain

    def assertHolds(self, take, values):
        """The values stand in the take bit for bit, with no more silence around them than there may be."""
        begin = measure.first_sound(take.values)
        self.assertLessEqual(begin, BEFORE)
        self.assertEqual(take.values[2 * begin:2 * begin + len(values)], values)
        rest = take.values[2 * begin + len(values):]
        self.assertFalse(any(rest))
        self.assertLessEqual(len(rest) // 2, BEHIND)


class TakeTest(RecordCase):
    def test_a_sound_file_is_taken_bit_for_bit(self):
        for channels in (2, 1):
            for frames in (60000, 1, 100, 4411):
                values = self.noise(frames=frames, channels=channels)
                done = self.record("n.wav", "t.wav")
                self.assertHolds(self.take(), values)
                self.assertEqual(self.take()[:3], (44100, 2, 16))
                self.assertNotIn("silent", done.stderr)
                os.remove(self.path("t.wav"))

    def test_the_same_samples_come_each_time(self):
        self.noise()
        self.tune()
        self.save("m.mid", scale())
        for source in ("n.wav", "tune.sng", "m.mid"):
            self.record(source, "1.wav", "--replace")
            self.record(source, "2.wav", "--replace")
            self.assertEqual(self.read("1.wav"), self.read("2.wav"), source)

    TONES, OTHER = [(440, 1, 0), (1900, 1, 1)], [(700, 1, 0)]

    def begin_of(self, tone, take):
        """The frame of a take at 44,100 Hz at which the tone begins, by the least difference."""
        left = take.values[0::2]
        about = measure.first_sound(left, 1, 300)
        return about + measure.best_shift(tone, left[about:], 200, 1000)

    def test_every_format_by_its_text_and_by_its_place_in_the_list(self):
        left, right = (measure.rounded(measure.tones(33000, 44100, parts, 0.7)) for parts in (self.TONES, self.OTHER))
        self.save("s.wav", wave(measure.stereo(left, right)))
        self.record("s.wav", "default.wav")
        seconds = self.begin_of(left, self.take("default.wav")) / 44100
        self.assertTrue(0 <= seconds <= 0.1, seconds)

        def late(parts, rate):
            turned = [(frequency, share, phase - 2 * math.pi * frequency * seconds) for frequency, share, phase in parts]
            return measure.tones(rate, rate, turned, 0.7)

        for row, (text, rate, bits, channels) in enumerate(FORMATS):
            self.record("s.wav", "t.wav", "--format", text, "--replace")
            take = self.take()
            self.assertEqual(take[:3], (rate, channels, bits), text)
            frames = 33000 * rate / 44100
            self.assertGreaterEqual(take.frames, frames - 1)
            self.assertLessEqual(take.frames, frames + 0.6 * rate + 1)
            a, b = late(self.TONES, rate), late(self.OTHER, rate)
            inner = slice(round((seconds + 0.1) * rate), round((seconds + 0.6) * rate))
            for side in range(channels):
                wanted = [(x + y) / 2 for x, y in zip(a, b)] if channels == 1 else (a, b)[side]
                error = measure.error_db(wanted[inner], take.values[side::channels][inner])
                self.assertLess(error, -60 if bits == 16 else -38, (text, side))
            if row in LISTED:
                self.record("s.wav", "u.wav", "--format", LISTED.index(row), "--replace")
                self.assertEqual(self.read("u.wav"), self.read("t.wav"), text)
            if row == 7:
                self.assertEqual(self.read("t.wav"), self.read("default.wav"))

    def test_eight_bits_are_unsigned_and_nearest_and_mono_is_the_mean(self):
        values = self.noise()
        pairs = list(zip(values[0::2], values[1::2]))
        for row, width in ((4, 8), (5, 8), (6, 16)):
            self.record("n.wav", "t.wav", "--format", FORMATS[row][0], "--replace")
            take = self.take()
            exact = [v for v in values] if take.channels == 2 else [(a + b) / 2 for a, b in pairs]
            if width == 8:
                wanted = [min(255.0, v / 256 + 128) for v in exact]
                got, limit = list(take.data), 0.5 + 0.51 / 256
            else:
                wanted, got, limit = exact, list(take.values), 0.5
            extra = len(got) - len(wanted)
            silence = 128 if width == 8 else 0
            fitting = [begin for begin in range(0, min(extra, BEFORE * take.channels) + 1, take.channels)
                       if all(abs(g - w) <= limit for g, w in zip(got[begin:begin + 200], wanted))]
            self.assertEqual(len(fitting), 1, FORMATS[row])
            begin = fitting[0]
            wrong = [n for n, (g, w) in enumerate(zip(got[begin:], wanted)) if abs(g - w) > limit]
            self.assertEqual(wrong, [], FORMATS[row])
            self.assertEqual(set(got[:begin] + got[begin + len(wanted):]) - {silence}, set(), FORMATS[row])

    def test_other_codings_and_mp3_files_are_sources_too(self):
        values = self.noise()
        self.save("x.wav", Header(container=b"RIFX").file(b"".join(CODINGS[1].pack(v, ">") for v in values)))
        self.record("x.wav", "t.wav")
        self.assertHolds(self.take(), values)
        tone = measure.rounded(measure.tones(40000, 44100, [(440, 1, 0)], 0.5))
        self.save("tone.wav", wave(measure.stereo(tone, tone)))
        mp3s.lame(self.path("tone.wav"), self.path("tone.MP3"), "-b", "256")
        self.record("tone.MP3", "m.wav")
        take = self.take("m.wav")
        self.assertGreaterEqual(take.frames, 40000)
        self.assertLessEqual(take.frames, 40000 + BEFORE + BEHIND)
        begin = self.begin_of(tone, take)
        self.assertLessEqual(begin, BEFORE)
        self.assertLess(measure.error_db(tone[2000:-2000], take.values[0::2][2000 + begin:38000 + begin]), -25)

    def test_a_score_is_taken_as_convert_writes_it(self):
        self.tune(rows=(60, 55, 50, 67, 40))
        self.succeed("convert", "tune.sng", "c.wav", "--soundfont", SMALL_SOUNDFONT)
        self.record("tune.sng", "t.wav")
        converted, _ = read_plain(self.read("c.wav"))
        self.assertAlike(converted, self.take())

    def assertAlike(self, converted, take):
        a, b = (measure.first_sound(one.values, 2, 40) for one in (converted, take))
        self.assertLessEqual(b - a, BEFORE)
        count = min(converted.frames - a, take.frames - b)
        self.assertGreaterEqual(count, converted.frames - a - 64, "the end rings out as convert has it")
        self.assertLessEqual(take.frames, converted.frames + BEFORE + BEHIND)
        best = min(measure.error_db(list(converted.values[2 * a:2 * (a + 40000)]),
                                    list(take.values[2 * at:2 * (at + 40000)]))
                   for at in range(max(0, b - 2), b + 3))
        self.assertLess(best, -60)
        whole = min(measure.error_db(list(converted.values[2 * a:2 * (a + count - 4)]),
                                     list(take.values[2 * at:2 * (at + count - 4)]))
                    for at in range(max(0, b - 2), b + 3))
        self.assertLess(whole, -60)

    def test_options_of_scores_hold(self):
        self.tune(rows=range(60, 76))
        for words in (["--segment", "4:11"], ["--mute", "0"], ["--top-channel", "2"], ["--classic"]):
            self.succeed("convert", "tune.sng", "c.wav", *words, "--soundfont", SMALL_SOUNDFONT)
            done = self.record("tune.sng", "t.wav", "--replace", *words)
            converted, _ = read_plain(self.read("c.wav"))
            if "--mute" in words:
                self.assertFalse(any(self.take().values))
                self.assertIn("silent", done.stderr)
            else:
                self.assertAlike(converted, self.take())

    def test_a_midi_file_is_taken_note_for_note(self):
        self.save("m.mid", midi(track((960, b"\xff\x01\0"), *note(60, 240), (960, b"\xff\x01\0"), *note(64, 240))))
        self.record("m.mid", "t.wav")
        take = self.take()
        level = [measure.level_db(take.values[n:n + 4410]) for n in range(0, len(take.values) - 4410, 4410)]  # twentieths

        def loudest(begin, end):
            return max(level[round(begin * 20):round(end * 20)])

        self.assertLess(loudest(0, 0.9), -60)
        self.assertGreater(loudest(1.0, 1.3), -45)
        self.assertGreater(loudest(2.25, 2.6), loudest(1.9, 2.2) + 3)
        self.assertGreater(take.frames / 44100, 2.5)


class KeepTest(RecordCase):
    def test_a_target_that_is_there_is_left_unless_it_may_be_replaced(self):
        values = self.noise()
        self.save("t.wav", b"old")
        self.fail_naming("t.wav", "record", "n.wav", "t.wav", "--virtual")
        self.assertEqual((self.read("t.wav"), self.names()), (b"old", ["n.wav", "t.wav"]))
        self.record("n.wav", "t.wav", "--replace")
        self.assertHolds(self.take(), values)
        for there in ("u.wav", "u.mp3"):
            self.save(there, b"old")
            self.fail_naming(there, "record", "n.wav", "u.mp3", "--virtual")
            self.assertEqual((self.read(there), self.names()), (b"old", sorted(["n.wav", "t.wav", there])))
            os.remove(self.path(there))

    def test_an_mp3_target_is_encoded_from_the_wave_of_its_name(self):
        values = self.noise(frames=30000)
        self.record("n.wav", "a.mp3")
        self.assertEqual(self.names(), ["a.mp3", "n.wav"])
        self.record("n.wav", "b.mp3", "--keep-wav")
        self.assertEqual(self.names(), ["a.mp3", "b.mp3", "b.wav", "n.wav"])
        self.assertEqual(self.read("a.mp3"), self.read("b.mp3"))
        take = self.take("b.wav")
        self.assertHolds(take, values)
        stream = mp3s.Stream(self.read("b.mp3"))
        self.assertEqual((stream.frames[0].bitrate, stream.frames[0].mode, stream.frames[0].rate),
                         (224, mp3s.JOINT_STEREO, 44100))
        self.assertEqual(len(mp3s.decoded(self.path("b.mp3"))) // 4, take.frames)
        self.record("n.wav", "c.MP3", "--bitrate", "128", "--quality", "phone")
        self.assertEqual(mp3s.Stream(self.read("c.MP3")).frames[0].bitrate, 128)
        self.record("n.wav", "d.mp3", "--format", FORMATS[0][0], "--bitrate", "64")
        first = mp3s.Stream(self.read("d.mp3")).frames[0]
        self.assertEqual((first.rate, first.mode, first.bitrate), (22050, mp3s.MONO, 64))
        self.save("a.wav", b"old")
        self.record("n.wav", "a.mp3", "--replace")
        self.assertEqual(self.read("a.mp3"), self.read("b.mp3"))
        self.assertNotIn("a.wav", self.names())

    def test_a_take_ends_after_the_seconds_given_at_the_latest(self):
        values = self.noise(frames=100000)
        self.record("n.wav", "t.wav", "--seconds", "1")
        take = self.take()
        self.assertNear(take.frames, 44100, 2205)
        self.assertLessEqual(take.frames, 44100 + 441)
        begin = measure.first_sound(take.values)
        self.assertEqual(take.values[2 * begin:], values[:len(take.values) - 2 * begin])
        self.record("n.wav", "u.wav", "--seconds", "60")
        self.assertHolds(self.take("u.wav"), values)
        self.record("tune.sng" if self.tune() else "", "v.wav", "--seconds", "0.5")
        self.assertNear(self.take("v.wav").frames, 22050, 2205)

    def test_without_a_source_a_take_lasts_as_long_as_is_said_and_is_told_to_be_silent(self):
        done = self.record("t.wav", "--seconds", "60")
        self.assertNear(self.take().frames, 60 * 44100, 4410)
        self.assertFalse(any(self.take().values))
        self.assertIn("silent", done.stderr)
        self.assertLess(done.seconds, 20)

    def test_a_source_that_is_silent_is_told(self):
        self.save("s.wav", wave([0] * 20000))
        self.assertIn("silent", self.record("s.wav", "t.wav").stderr)
        self.assertGreaterEqual(self.take().frames, 10000)

    def test_a_source_that_cannot_be_played_is_named(self):
        self.save("bad.wav", b"no sound")
        self.save("bad.mid", b"MThd")
        self.save("bad.sng", b"\0\1\2")
        self.save("old.wav", b"old")
        for source in ("bad.wav", "absent.wav", "absent.mid", "bad.mid", "bad.sng", "absent.sng"):
            done = self.run_cli("record", source, "t.wav", "--virtual")
            self.assertEqual(done.returncode, 1, source)
            self.assertIn(source, done.stderr)
            self.assertNotIn("t.wav", self.names(), source)
            self.run_cli("record", source, "old.wav", "--virtual", "--replace")
            self.assertEqual(self.read("old.wav"), b"old", source)

    def test_a_source_is_never_its_own_target(self):
        values = self.noise()
        data = self.read("n.wav")
        self.noise("m.wav")
        os.symlink("n.wav", self.path("link.wav"))
        for words in (["n.wav", "n.wav"], ["n.wav", "./n.wav"], ["n.wav", "n.mp3"], ["n.wav", "link.wav"]):
            done = self.run_cli("record", *words, "--virtual", "--replace")
            self.assertNotEqual(done.returncode, 0, words)
            self.assertEqual(self.read("n.wav"), data, words)
        self.assertEqual(len(values), 120000)

    def test_what_cannot_be_written_is_named(self):
        self.noise()
        self.save("file", b"")
        os.mkdir(self.path("d.wav"))
        for out in ("absent/t.wav", "file/t.wav", "d.wav", "/proc/t.wav", "absent/t.mp3"):
            for more in ([], ["--replace"]):
                done = self.run_cli("record", "n.wav", out, "--virtual", *more)
                self.assertEqual(done.returncode, 1, out)
                self.assertIn(os.path.basename(out)[:2], done.stderr)  # an MP3 target's wave is written first
                self.assertEqual(self.names(), ["d.wav", "file", "n.wav"])

    def test_a_full_disk_ends_the_take_and_what_fitted_stays(self):
        values = self.noise(frames=100000)
        for limit in (44 + 40000, 200001, 300000):
            done = self.fail_naming("t.wav", "record", "n.wav", "t.wav", "--virtual", file_size=limit)
            self.assertEqual(done.stdout, "")
            take = self.take()
            self.assertGreater(len(take.data), min(limit - 44, limit * 0.8 - 44 - 16384))
            self.assertLessEqual(len(take.data), limit - 44)
            begin = measure.first_sound(take.values)
            self.assertEqual(take.values[2 * begin:], values[:len(take.values) - 2 * begin])
            os.remove(self.path("t.wav"))

    def test_a_full_disk_while_it_encodes_keeps_the_wave(self):
        self.noise(frames=2000)
        limit = 44 + 4 * (2000 + BEFORE + BEHIND)  # room for the take
        frames = 400000
        self.save("q.wav", Header(channels=1, rate=8000,
                                  coding=CODINGS[0]).file(bytes(n % 200 for n in range(frames // 6))))
        done = self.run_cli("record", "q.wav", "t.mp3", "--virtual", "--format", FORMATS[0][0], "--bitrate", "160",
                            file_size=limit + 100000)
        if done.returncode:
            self.assertIn("t.", done.stderr)
            self.assertNotIn("t.mp3", self.names())
            self.take("t.wav")
        else:
            self.assertNotIn("t.wav", self.names())

    def test_wrong_words_are_wrong_usage_and_write_nothing(self):
        self.noise(frames=10)
        for words in ([], ["--virtual"], ["n.wav", "t.wav", "u.wav", "--virtual"],
                      ["n.wav", "t.wav", "--virtual", "--from", "everything"],
                      ["n.wav", "t.wav", "--virtual", "--from", "elsewhere"],
                      ["n.wav", "t.wav", "--virtual", "--format", "5"],
                      ["n.wav", "t.wav", "--virtual", "--format", "-1"],
                      ["n.wav", "t.wav", "--virtual", "--format", "44.100Hz"],
                      ["n.wav", "t.wav", "--virtual", "--seconds", "x"], ["n.wav", "t.wav", "--virtual", "--seconds", "-1"],
                      ["n.wav", "t.mp3", "--virtual", "--bitrate", "100"],
                      ["n.wav", "t.mp3", "--virtual", "--quality", "best"],
                      ["n.wav", "t.wav", "--virtual", "--loud"]):
            self.misuse("record", *words)


class LogTest(RecordCase):
    def session(self, *words):
        lines = self.record(*words, "--log").stdout.split("\n")
        self.assertEqual(lines.pop(), "")
        return lines

    def answered(self, lines):
        """The commands with their answers; each is answered before the next one is sent."""
        found = []
        for line in lines:
            if line.startswith("> "):
                found.append([line[2:], None])
            elif line.startswith("< "):
                self.assertIsNone(found[-1][1], line)
                found[-1][1] = line[2:]
        self.assertTrue(all(answer is not None for _, answer in found), lines)
        return found

    def test_each_command_and_each_message_is_told_as_it_is(self):
        self.noise()
        for row, (text, rate, bits, channels) in enumerate(FORMATS):
            lines = self.session("n.wav", "t.wav", "--format", text, "--replace")
            sent = self.answered(lines)
            commands = [command for command, _ in sent]
            alignment = bits * channels // 8
            setting = f"set capture samplespersec {rate} channels {channels} bitspersample {bits} " \
                      f"alignment {alignment} bytespersec {rate * alignment}"
            self.assertEqual(commands[:3], ["open new type waveaudio alias capture", setting, "record capture"])
            self.assertEqual(commands[-1].strip(), "close capture")
            order = [commands.index("stop capture"), commands.index("capability capture can save"),
                     next(n for n, c in enumerate(commands) if c.lower().startswith("save capture ")),
                     commands.index("delete capture"), len(commands) - 1]
            self.assertEqual(order, sorted(order))
            self.assertIn("t.wav", commands[order[2]])
            answers = dict(sent)
            self.assertTrue(all(a.split("\t")[0] in ("Success", "true") or c.startswith("status") for c, a in sent), sent)
            self.assertIn(answers["capability capture can save"], ("Success\ttrue", "true"))
            texts = [line for line in lines if not line.startswith(("> ", "< "))]
            for wanted in ("Recording", "Recording Stopped!", "File Can be saved", "Recording buffer Deleted! ",
                           "Recording Closed "):
                self.assertIn(wanted, texts, row)
            self.assertEqual(len([t for t in texts if re.fullmatch(r"File was saved as .*t\.wav", t)]), 1, texts)

    def test_the_messages_stand_between_the_commands_they_are_about(self):
        self.noise()
        lines = self.session("n.wav", "t.wav")

        def at(text):
            return next(n for n, line in enumerate(lines) if line.lower().startswith(text.lower()))

        order = ["> open new type waveaudio", "> set capture", "> record capture", "> stop capture", "Recording Stopped!",
                 "> capability capture",
                 "File Can be saved", "> save capture", "File was saved as ", "> delete capture",
                 "Recording buffer Deleted! ", "> close capture",
                 "Recording Closed "]
        places = [at(text) for text in order]
        self.assertEqual(places, sorted(places), lines)

    def test_a_music_file_is_opened_and_played_by_commands_too(self):
        self.noise()
        self.save("m.mid", scale())
        for source in ("n.wav", "m.mid"):
            commands = [command for command, _ in self.answered(self.session(source, "t.wav", "--replace"))]
            opened = [c for c in commands
                      if re.match(r"open .*" + re.escape(source) + r"\"? type MPEGVideo alias audiomp3", c, re.I)]
            self.assertEqual(len(opened), 1, commands)
            self.assertTrue(any(c.lower().startswith("play audiomp3") for c in commands), commands)
            self.assertLess(commands.index("record capture"), len(commands))

    def test_an_mp3_target_tells_of_the_encoding(self):
        self.noise()
        lines = self.session("n.wav", "t.mp3")
        self.assertIn("Encoding in progress", lines)
        self.assertTrue(any(line.startswith("Finished Encoding ") for line in lines), lines)

    def test_without_log_nothing_is_printed(self):
        self.noise()
        done = self.record("n.wav", "t.wav")
        self.assertEqual(done.stdout, "")

    def test_the_set_command_of_the_default(self):
        self.tune()
        lines = self.session("tune.sng", "t.wav")
        self.assertIn("> set capture samplespersec 44100 channels 2 bitspersample 16 alignment 4 bytespersec 176400", lines)
