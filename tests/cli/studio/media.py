# SPDX-License-Identifier: GPL-2.0-or-later
"""`media`: each command with what it answers, and the same by the clock."""

import array
import math
import os
import random
import select
import signal
import subprocess
import time

from studio import case, measure, mp3s
from studio.case import SMALL_SOUNDFONT, StudioCase
from studio.midis import midi, note, scale, track
from studio.waves import CODINGS, Header, read_plain, wave

OK = "Success"


class MediaCase(StudioCase):
    def setUp(self):
        super().setUp()
        rng = random.Random(6)
        self.values = array.array("h", [rng.randrange(-20000, 20001) or 1 for _ in range(2 * 44100)])
        self.save("n.wav", wave(self.values))
        self.save("n48.wav", wave(self.values, 48000))

    def media(self, *lines, live=False, **more):
        """The answers."""
        words = ["media", "--soundfont", SMALL_SOUNDFONT] + ([] if live else ["--virtual"])
        done = self.run_cli(*words, given="\n".join(lines).encode("utf-8", "surrogateescape"), **more)
        answers = done.stdout.splitlines()
        self.assertEqual(done.returncode, 0 if all(a.split("\t")[0] == OK for a in answers) else 1,
                         (done.stdout, done.stderr))
        return answers

    def assertAnswers(self, *pairs, live=False):
        """Pairs of a line and its answer: `error` for any error text that names the second word or the file."""
        answers = self.media(*(line for line, _ in pairs), live=live)
        self.assertEqual(len(answers), len(pairs), answers)
        for (line, wanted), answer in zip(pairs, answers):
            if wanted == "error":
                self.assertFalse(answer.startswith(OK), (line, answer))
                self.assertTrue(0 < len(answer) <= 128, (line, answer))
            elif isinstance(wanted, tuple):
                self.assertTrue(answer.startswith(OK + "\t"), (line, answer))
                self.assertNear(int(answer.split("\t")[1]), *wanted, line)
            else:
                self.assertEqual(answer, wanted, line)

    def take(self, name):
        plain, size = read_plain(self.read(name))
        self.assertEqual(len(plain.data), size)
        return plain


OPEN = "open n.wav type MPEGVideo alias p"
NEW = "open new type waveaudio alias c"


class WordsTest(MediaCase):
    def test_keywords_and_aliases_count_in_any_case_and_with_any_blanks(self):
        self.assertAnswers(("OPEN n.wav TYPE mpegvideo ALIAS Player", OK), ("pLaY   PLAYER    from 5   TO  900", OK),
                           ("Status player   MODE", OK + "\tplaying"), ("set player time   FORMAT ms", OK),
                           ("CLOSE pLAYER", OK),
                           ("Close All", OK))

    def test_blank_lines_and_remarks_have_no_answer(self):
        self.assertEqual(self.media("", "# open", "   ", "close all", "#", "close all"), [OK, OK])
        self.assertEqual(self.media(), [])

    def test_a_path_is_all_up_to_the_last_type(self):
        for name in ("with blanks  two.wav", "a type b.wav", "x type MPEGVideo alias y.wav", "ünï 音.wav", "it's.wav",
                     "#.wav"):
            self.save(name, wave([1, 2] * 500))
            for path in (name, f'"{name}"', self.path(name), f'"{self.path(name)}"'):
                self.assertAnswers((f"open {path} type MPEGVideo alias p", OK), ("status p length", OK + "\t500"))
                self.assertAnswers((f"open {path} type MPEGVideo alias p parent 0 style child 1073741824", OK),
                                   ("status p length", OK + "\t500"))

    def test_names_that_are_in_use_absent_or_unreadable_are_errors(self):
        self.save("bad.wav", b"no sound")
        self.save("bad.mp3", b"no sound")
        self.save("bad.mid", b"no score")
        self.save("empty.wav", b"")
        self.save("n.ogg", b"OggS")
        os.mkdir(self.path("d.wav"))
        self.assertAnswers((OPEN, OK), (OPEN, "error"), ("open n.wav type MPEGVideo alias P", "error"),
                           ("open new type waveaudio alias p", "error"),
                           *((f"open {name} type MPEGVideo alias q", "error")
                             for name in ("bad.wav", "bad.mp3", "bad.mid", "empty.wav", "n.ogg", "d.wav", "absent.wav", "",
                                          '""')),
                           ("status q mode", "error"), ("status p mode", OK + "\tstopped"))

    def test_errors_name_the_alias_or_the_file_in_one_line(self):
        long = "x" * 200 + ".wav"
        answers = self.media("play nobody", "open absent.wav type MPEGVideo alias q", "status nobody length",
                             "record nobody", NEW,
                             "save c no folder/t.wav", f"open {long} type MPEGVideo alias q", "close nobody")
        for answer, name in zip(answers, ("nobody", "absent.wav", "nobody", "nobody", OK, "t.wav", "", "nobody")):
            self.assertIn(name, answer)
            self.assertLessEqual(len(answer), 128)

    def test_wrong_words_are_wrong_usage(self):
        self.misuse("media", "--loud")
        self.misuse("media", "a file")
        self.misuse("media", "--soundfont")

    def test_each_answer_comes_at_once(self):
        process = subprocess.Popen([case.cli, "media", "--virtual"], cwd=self.folder, env=self.environment,
                                   stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, text=True, bufsize=1)
        self.addCleanup(lambda: (process.kill(), process.wait(), process.stdin.close(), process.stdout.close()))
        for line, answer in ((OPEN, OK), ("play p", OK), ("wait 0.5", OK), ("status p mode", OK + "\tplaying"),
                             ("close p", OK)):
            process.stdin.write(line + "\n")
            self.assertTrue(select.select([process.stdout], [], [], 20)[0], line)
            self.assertEqual(process.stdout.readline(), answer + "\n")
        process.stdin.close()
        self.assertEqual(process.wait(20), 0)

    def test_a_signal_ends_it_at_once(self):
        for live in ([], ["--virtual"]):
            for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
                process = subprocess.Popen([case.cli, "media", *live], cwd=self.folder, env=self.environment,
                                           stdin=subprocess.PIPE,
                                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
                process.stdin.write(OPEN + "\nplay p\n" + ("" if live else "wait 30\n"))
                process.stdin.flush()
                self.assertEqual((process.stdout.readline(), process.stdout.readline()), (OK + "\n", OK + "\n"))
                process.send_signal(number)
                try:
                    self.assertGreaterEqual(process.wait(5), 0, (live, number))
                finally:
                    process.kill()
                    process.wait()
                    process.stdin.close()
                    process.stdout.close()


class PlayerTest(MediaCase):
    def test_a_player_plays_pauses_resumes_and_stops(self):
        self.assertAnswers(
            (OPEN, OK), ("status p mode", OK + "\tstopped"), ("status p position", (0, 0)),
            ("status p length", OK + "\t44100"),
            ("pause p", "error"), ("resume p", "error"), ("stop p", "error"), ("play p", OK),
            ("status p mode", OK + "\tplaying"),
            ("resume p", "error"), ("wait 0.25", OK), ("status p position", (11025, 882)), ("pause p", OK),
            ("pause p", "error"),
            ("status p mode", OK + "\tpaused"), ("wait 3", OK), ("status p position", (11025, 882)), ("resume p", OK),
            ("wait 0.25", OK),
            ("status p position", (22050, 882)), ("stop p", OK), ("stop p", "error"), ("status p mode", OK + "\tstopped"),
            ("status p position", (22050, 882)), ("resume p", "error"), ("play p", OK), ("wait 0.25", OK),
            ("status p position", (33075, 882)),
            ("pause p", OK), ("stop p", OK), ("stop p", "error"), ("close p", OK), ("close p", "error"),
            ("status p mode", "error"))

    def test_at_the_end_of_its_range_a_player_stands_still_there(self):
        self.assertAnswers(
            (OPEN, OK), ("play p from 1000 to 20000", OK), ("status p position", (1000, 0)), ("wait 1", OK),
            ("status p mode", OK + "\tstopped"),
            ("status p position", OK + "\t20000"), ("stop p", "error"), ("play p to 30000", OK), ("wait p", OK),
            ("status p position", OK + "\t30000"),
            ("play p to 99999999", OK), ("wait p", OK), ("status p position", OK + "\t44100"),
            ("status p mode", OK + "\tstopped"),
            ("play p from 0", OK), ("wait 5", OK), ("status p position", OK + "\t44100"))

    def test_a_range_without_a_frame_and_one_beyond_the_end_are_errors(self):
        self.assertAnswers(
            (OPEN, OK), ("play p from 10 to 10", "error"), ("play p from 10 to 9", "error"), ("play p from 44101", "error"),
            ("play p from 99999999 to 999999999", "error"), ("play p to 0", "error"), ("play p from 0 to 0", "error"),
            ("status p mode", OK + "\tstopped"), ("status p position", (0, 0)), ("play p from 44099", OK), ("wait p", OK),
            ("status p position", OK + "\t44100"), ("play p from -1", "error"), ("play p from x", "error"),
            ("play p from 99999999999999999999", "error"), ("play p from 5 to 6", OK))

    def test_the_unit_rules_what_is_asked_and_answered(self):
        self.assertAnswers(
            ("open n48.wav type MPEGVideo alias p", OK), ("status p length", OK + "\t44100"), ("play p", OK),
            ("wait 0.5", OK),
            ("status p position", (24000, 960)), ("set p time format ms", OK), ("status p position", (500, 20)),
            ("status p length", (919, 1)),
            ("play p from 100 to 300", OK), ("status p position", (100, 1)), ("wait 1", OK),
            ("status p position", (300, 1)),
            ("set p time format frames", OK), ("status p position", (14400, 48)), ("play p from 920", OK),
            ("set p time format ms", OK),
            ("play p from 920", "error"), ("set p time format hours", "error"))

    def test_an_mp3_file_has_its_exact_length(self):
        mp3s.lame(self.path("n.wav"), self.path("m.mp3"))
        self.assertAnswers(
            ("open m.mp3 type MPEGVideo alias m", OK), ("status m length", OK + "\t44100"), ("play m from 40000", OK),
            ("wait m", OK), ("status m position", OK + "\t44100"))

    def test_a_midi_file_has_the_length_that_info_tells_in_44100_frames_a_second(self):
        """It may ring out behind that, but what its length is doesn't change by playing it."""
        for data in (scale(), scale(keys=(48,), ticks=960), midi(track((0, b"\xc0\x0e"), *note(60, 240)))):
            self.save("t.mid", data)
            frames = round(float(self.facts("t.mid")["Seconds"]) * 44100)
            self.assertAnswers(
                ("open t.mid type MPEGVideo alias t", OK), ("status t length", (frames, 882)), ("set t time format ms", OK),
                ("status t length", (frames / 44.1, 20)), ("set t time format frames", OK), ("play t", OK), ("wait 0.1", OK),
                ("status t position", (4410, 882)), ("wait t", OK), ("status t length", (frames, 882)),
                ("status t position", (frames, 882)), ("status t mode", OK + "\tstopped"))

    def test_a_midi_file_is_played_in_part(self):
        self.save("t.mid", scale())
        self.assertAnswers(
            ("open t.mid type MPEGVideo alias t", OK), ("set t time format ms", OK), ("play t from 250 to 750", OK),
            ("wait 0.25", OK), ("status t position", (500, 20)), ("wait t", OK), ("status t position", (750, 20)),
            ("status t mode", OK + "\tstopped"), ("play t to 900", OK), ("wait 1", OK), ("status t position", (900, 20)))

    def test_a_length_beyond_31_bits_is_told_as_their_largest(self):
        size = (1 << 32) - 100
        self.save("huge.wav", Header(coding=CODINGS[0], channels=1, data_length=size, riff_length=size + 36).file(b""))
        os.truncate(self.path("huge.wav"), size + 44)
        self.assertAnswers(("open huge.wav type MPEGVideo alias h", OK), ("status h length", OK + "\t2147483647"))

    def test_wait_for_a_player_that_stands_still_is_over_at_once(self):
        self.assertAnswers((OPEN, OK), ("wait p", OK), ("play p", OK), ("wait 0.1", OK), ("pause p", OK), ("wait p", OK),
                           ("status p mode", OK + "\tpaused"), ("wait nobody", "error"), ("wait -1", "error"),
                           ("wait", "error"))

    def test_close_all_succeeds_always_and_frees_the_aliases(self):
        self.assertAnswers(("close all", OK), (OPEN, OK), (NEW, OK), ("play p", OK), ("record c", OK), ("close all", OK),
                           ("close p", "error"),
                           ("status c mode", "error"), (OPEN, OK), (NEW, OK), ("close all", OK), ("close all", OK))


class RecorderTest(MediaCase):
    def test_a_recorder_takes_what_is_played_frame_for_frame(self):
        self.assertAnswers((NEW, OK), (OPEN, OK), ("status c mode", OK + "\tstopped"), ("record c", OK),
                           ("status c mode", OK + "\trecording"),
                           ("record c", "error"), ("play p", OK), ("wait 1.5", OK), ("save c t.wav", "error"),
                           ("stop c", OK), ("stop c", "error"),
                           ("status c mode", OK + "\tstopped"), ("capability c can save", OK + "\ttrue"),
                           ("save c t.wav", OK))
        take = self.take("t.wav")
        self.assertEqual((take.rate, take.channels, take.bits, take.frames), (44100, 2, 16, 66150))
        begin = measure.first_sound(take.values)
        self.assertLessEqual(begin, 882)
        self.assertEqual(take.values[2 * begin:2 * begin + 88200], self.values)
        self.assertFalse(any(take.values[2 * begin + 88200:]))

    def test_captures_follow_each_other_until_they_are_deleted(self):
        self.assertAnswers((NEW, OK), (OPEN, OK), ("play p", OK), ("record c", OK), ("wait 0.2", OK), ("stop c", OK),
                           ("wait 0.2", OK), ("record c", OK),
                           ("wait 0.3", OK), ("stop c", OK), ("save c both.wav", OK), ("delete c", OK),
                           ("save c none.wav", OK), ("record c", OK),
                           ("wait 0.1", OK), ("stop c", OK), ("save c new.wav", OK), ("save c both.wav", OK))
        self.assertEqual(self.take("none.wav").frames, 0)
        self.assertEqual(len(self.read("none.wav")), 44)
        self.assertEqual(self.take("new.wav").frames, 4410)
        self.assertEqual(self.read("both.wav"), self.read("new.wav"))

    def test_two_pieces_of_a_capture_join_without_a_frame_between(self):
        self.media(NEW, OPEN, "play p", "record c", "wait 0.2", "stop c", "record c", "wait 0.3", "stop c", "save c t.wav")
        take = self.take("t.wav")
        self.assertEqual(take.frames, 22050)
        begin = measure.first_sound(take.values)
        self.assertEqual(take.values[2 * begin:], self.values[:44100 - 2 * begin])

    def test_between_record_and_the_next_wait_nothing_is_captured(self):
        self.media(NEW, OPEN, "record c", "play p", "pause p", "resume p", "stop c", "save c t.wav", "record c", "stop c",
                   "save c u.wav")
        self.assertEqual((self.take("t.wav").frames, self.take("u.wav").frames), (0, 0))

    def test_a_recorder_takes_no_numbers_that_contradict_each_other(self):
        good = "samplespersec 44100 channels 2 bitspersample 16 alignment 4 bytespersec 176400"
        bad = ["samplespersec 7999 channels 2 bitspersample 16 alignment 4 bytespersec 31996",
               "samplespersec 192001 channels 1 bitspersample 8 alignment 1 bytespersec 192001",
               "samplespersec 44100 channels 3 bitspersample 16 alignment 6 bytespersec 264600",
               "samplespersec 44100 channels 0 bitspersample 16 alignment 0 bytespersec 0",
               "samplespersec 44100 channels 2 bitspersample 24 alignment 6 bytespersec 264600",
               "samplespersec 44100 channels 2 bitspersample 16 alignment 2 bytespersec 176400",
               "samplespersec 44100 channels 2 bitspersample 16 alignment 4 bytespersec 176401",
               "samplespersec x channels 2 bitspersample 16 alignment 4 bytespersec 176400",
               "samplespersec -1 channels 2 bitspersample 16 alignment 4 bytespersec -4"]
        mono = "set c samplespersec 22050 channels 1 bitspersample 8 alignment 1 bytespersec 22050"
        self.assertAnswers((NEW, OK), (mono, OK), *(("set c " + one, "error") for one in bad), ("record c", OK),
                           ("set c " + good, "error"),
                           ("wait 1", OK), ("stop c", OK), ("save c t.wav", OK), ("set nobody " + good, "error"),
                           (OPEN, OK),
                           ("set p " + good, "error"))
        take = self.take("t.wav")
        self.assertEqual(take[:3], (22050, 1, 8))
        self.assertNear(take.frames, 22050, 441)
        self.assertEqual(set(take.data), {128})

    TONES, OTHER = [(440, 1, 0), (1210, 1, 1)], [(700, 1, 0)]

    def taken(self, rate, channels, bits):
        """A second of the tones in that format."""
        alignment = channels * bits // 8
        self.media(NEW, f"set c samplespersec {rate} channels {channels} bitspersample {bits} alignment {alignment} "
                   f"bytespersec {rate * alignment}", "open tone.wav type MPEGVideo alias p", "record c", "play p",
                   "wait 1",
                   "stop c", "save c t.wav")
        take = self.take("t.wav")
        self.assertEqual(take[:3], (rate, channels, bits))
        self.assertNear(take.frames, rate, 1)
        return take

    def test_every_format_takes_what_it_can_hold(self):
        left, right = (measure.rounded(measure.tones(44100, 44100, parts, 0.6)) for parts in (self.TONES, self.OTHER))
        self.save("tone.wav", wave(measure.stereo(left, right)))
        delay = measure.best_shift(left, self.taken(44100, 2, 16).values[0::2], 882, 400) / 44100
        self.assertTrue(0 <= delay <= 0.02, delay)

        def late(parts, rate):
            turned = [(frequency, share, phase - 2 * math.pi * frequency * delay) for frequency, share, phase in parts]
            return measure.tones(rate, rate, turned, 0.6)

        for rate in (8000, 11025, 22050, 32000, 44100, 48000, 96000, 192000):
            a, b = late(self.TONES, rate), late(self.OTHER, rate)
            inner = slice(rate // 5, rate * 4 // 5)
            for channels in (1, 2):
                for bits in (8, 16):
                    take = self.taken(rate, channels, bits)
                    for side in range(channels):
                        wanted = [(x + y) / 2 for x, y in zip(a, b)] if channels == 1 else (a, b)[side]
                        error = measure.error_db(wanted[inner], take.values[side::channels][inner])
                        self.assertLess(error, -60 if bits == 16 else -35, (rate, channels, bits, side))

    def test_save_takes_the_rest_of_the_line_and_replaces_a_whole_file(self):
        self.save("old name.wav", b"old")
        self.media(NEW, OPEN, "record c", "play p", "wait 0.1", "stop c", "save c old name.wav",
                   "save c with type and alias x.wav",
                   "save c " + self.path("absolute ü.wav"))
        self.assertEqual(self.take("old name.wav").frames, 4410)
        for name in ("with type and alias x.wav", "absolute ü.wav"):
            self.assertEqual(self.read(name), self.read("old name.wav"))
        self.assertEqual(self.names(), sorted(["absolute ü.wav", "n.wav", "n48.wav", "old name.wav",
                                               "with type and alias x.wav"]))

    def test_a_save_that_fails_leaves_the_old_file_and_the_capture(self):
        os.mkdir(self.path("d.wav"))
        before = self.names()
        lines = [NEW, OPEN, "record c", "play p", "wait 1", "stop c", "save c d.wav", "save c absent/t.wav", "save c",
                 "save c /proc/t.wav",
                 "status c mode", "save c good.wav"]
        answers = self.media(*lines)
        self.assertEqual([a.split("\t")[0] == OK for a in answers], [True] * 6 + [False] * 4 + [True] * 2, answers)
        self.assertEqual(self.names(), sorted([*before, "good.wav"]))
        self.assertEqual(self.take("good.wav").frames, 44100)

    def test_a_full_disk_is_told_and_leaves_the_old_file_or_what_fitted(self):
        self.save("t.wav", b"old")
        answers = self.media(NEW, OPEN, "record c", "play p", "wait 1", "stop c", "save c t.wav", "status c mode",
                             file_size=50000)
        self.assertFalse(all(answer.startswith(OK) for answer in answers), answers)
        self.assertTrue(all(len(answer) <= 128 for answer in answers), answers)
        self.assertEqual(self.names(), ["n.wav", "n48.wav", "t.wav"])
        if answers[6] == OK:
            self.assertGreater(self.take("t.wav").frames, 5000)
        else:
            self.assertEqual(self.read("t.wav"), b"old")

    def test_two_players_sound_together_and_two_recorders_hear_the_same(self):
        quiet = array.array("h", [v // 2 for v in self.values])
        self.save("q.wav", wave(quiet))
        self.media(NEW, "open new type waveaudio alias d", OPEN, "open q.wav type MPEGVideo alias q", "record c",
                   "record d", "play p from 22050",
                   "play q from 100", "wait 0.25", "stop c", "stop d", "save c c.wav", "save d d.wav")
        self.assertEqual(self.read("c.wav"), self.read("d.wav"))
        take = self.take("c.wav")
        begin = measure.first_sound(take.values)
        self.assertLessEqual(begin, 882)
        count = len(take.values) - 2 * begin
        wanted = [a + b for a, b in zip(self.values[44100:], quiet[200:])]
        self.assertLess(max(map(abs, wanted)), 32767)
        self.assertEqual(list(take.values[2 * begin:]), wanted[:count])

    def test_what_no_wait_is_given_for_is_not_played(self):
        self.assertAnswers((OPEN, OK), ("play p", OK), ("status p position", OK + "\t0"),
                           ("status p mode", OK + "\tplaying"),
                           ("status p position", OK + "\t0"))

    def test_a_long_time_passes_at_once(self):
        began = time.monotonic()
        self.assertAnswers((OPEN, OK), (NEW, OK), ("record c", OK), ("wait 600", OK), ("stop c", OK),
                           ("save c long.wav", OK))
        self.assertLess(time.monotonic() - began, 60)
        self.assertEqual(self.take("long.wav").frames, 600 * 44100)

    def test_midi_sounds_in_the_mix_by_the_soundfont_given(self):
        self.save("t.mid", scale())
        self.media(NEW, "open t.mid type MPEGVideo alias t", "record c", "play t", "wait t", "wait 1", "stop c",
                   "save c t.wav")
        take = self.take("t.wav")
        self.assertGreater(measure.level_db(take.values[:80000]), -50)
        self.assertLess(measure.first_sound(take.values, 2, 50) / 44100, 0.2)


class ClockTest(MediaCase):
    """The same without --virtual: time passes by itself, whether a sound server runs or none."""

    def test_players_go_on_by_the_clock(self):
        began = time.monotonic()
        self.assertAnswers((OPEN, OK), ("play p", OK), ("wait 0.4", OK), ("status p position", (17640, 8000)),
                           ("pause p", OK),
                           ("pause p", "error"), ("wait 0.2", OK), ("resume p", OK), ("wait p", OK),
                           ("status p position", OK + "\t44100"),
                           ("status p mode", OK + "\tstopped"), ("stop p", "error"), live=True)
        self.assertGreater(time.monotonic() - began, 1.1)

    def test_what_is_recorded_by_the_clock_is_the_own_mix_bit_for_bit(self):
        self.assertAnswers((NEW, OK), (OPEN, OK), ("record c", OK), ("play p", OK), ("wait p", OK), ("wait 0.5", OK),
                           ("stop c", OK), ("save c t.wav", OK),
                           live=True)
        take = self.take("t.wav")
        begin = measure.first_sound(take.values)
        self.assertEqual(take.values[2 * begin:2 * begin + 88200], self.values)
        self.assertNear(take.frames, 1.5 * 44100, 0.5 * 44100)

    def test_the_end_of_input_closes_everything_at_once(self):
        began = time.monotonic()
        self.assertEqual(self.media(OPEN, "play p", NEW, "record c", live=True), [OK] * 4)
        self.assertLess(time.monotonic() - began, 10)
        self.assertEqual(self.names(), ["n.wav", "n48.wav"])
