# SPDX-License-Identifier: GPL-2.0-or-later
"""The Recording Studio: what sounds becomes a file, files sound, and a disc's image is written."""

import array
import math
import os
import signal
import subprocess
import time

import program as programs
from clipboard import Clipboard
from composing import Tableau
from desktop import wait_for
from keys import OCARINA, SCALE, SCALE_PITCHES, KeyboardJourney, Keys
from sound import RATE, SILENT, notes

OPENER = (-134, 70)  # in the composing window
RECORD = "Recording Studio$"
SAVE_TAKE = "^Save As FLAC"
CD_WRITER = "^Audio CD Writer$"
SONGS = ("data", "Songs")
CLOSER = (-20, 14)
# Places in the Recording Studio, which opens as large as they have it.
PLAYER = {"Open": (36, 80), "Play": (87, 80), "Pause": (139, 80), "Stop": (191, 80), "Save": (243, 80)}
START, STOP = (222, 172), (222, 216)
FROM_MIDI, FROM_KEYBOARD = (31, 192), (31, 220)
BURN_CD = (233, 368)
TAKE_SAVE, TAKE_BACK = (-116, -36), (-56, 268)  # in the take's own panel
MESSAGES = (458, 361)
CUT, LOUDER, BACK = (162, 364), (355, 364), (590, 269)
BEGIN_MARK, BEHIND_SILENCE, MIDDLE_LINE = (30, 305), (70, 305), (45, 317)
# Places in the CD writer.
ADD, BURN = (568, 73), (568, 382)
TRACKS = ((270, 88), (270, 108))  # where their rows have no words; the latest is chosen
SECTOR = 2352  # bytes
KEPT_AFTER = 1  # seconds at most, until what sounds is in its file
# A tune for the program csvmidi: six notes of an ocarina in two seconds.
TUNE = (60, 64, 62, 67, 65, 69)
TUNE_LINES = "".join(["0, 0, Header, 0, 1, 480\n1, 0, Start_track\n1, 0, Program_c, 0, %d\n" % OCARINA] + [
    "1, %d, Note_on_c, 0, %d, 100\n1, %d, Note_off_c, 0, %d, 0\n" % (320 * at, pitch, 320 * at + 240, pitch)
    for at, pitch in enumerate(TUNE)] + ["1, 2000, End_track\n0, 0, End_of_file\n"])
# The types of "Save As" in the take's own panel, in their order, and who decodes such a file.
DECODERS = {".flac": "flac -s -d {} -o {}", ".ogg": "oggdec -Q {} -o {}", ".opus": "opusdec --quiet {} {}"}


def samples_of(path, rate=44100):
    """A file's sound as other programs read it, both sides as one."""
    reader = ["mpg123", "-q", "-s", "-m", "-r", str(rate), path] if path.endswith(".mp3") else \
        ["sox", path, "-t", "raw", "-e", "signed", "-b", "16", "-c", "1", "-r", str(rate), "-"]
    done = subprocess.run(reader, capture_output=True, check=True, timeout=60)
    return array.array("h", done.stdout)


def loudness(samples, note):
    """Decibels of full scale in the middle of a note."""
    middle, around = int((note.onset + note.end) / 2 * RATE), RATE // 20
    part = samples[middle - around:middle + around]
    return 10 * math.log10(sum(value * value for value in part) / len(part) / 32768 ** 2)


class Hand:
    """The Recording Studio's window, opened by its button."""

    def __init__(self, program):
        self.program = program
        self.screen = program.screen
        self.screen.click(*program.at(*OPENER))
        self.window = self.screen.window(RECORD)
        self.focus()

    def focus(self):
        self.screen.do("windowactivate", self.window)
        self.program.focus(self.window)

    def at(self, place):
        left, top, width, height = self.screen.geometry(self.window)
        return left + place[0] % width, top + place[1] % height

    def press(self, place):
        self.focus()
        self.screen.click(*self.at(place))

    def messages(self):
        """The lines of the message box, as they are copied from it."""
        self.press(MESSAGES)
        with Clipboard(self.screen.environment["DISPLAY"]) as clipboard:
            clipboard.forget()
            self.screen.key("ctrl+a", "ctrl+c")
            try:
                wait_for(clipboard.is_filled, "", 1)
            except AssertionError:  # there is nothing to copy
                return []
            return clipboard.text().splitlines()

    def says(self, line):
        last = []

        def said():
            last[:] = self.messages()
            return last[-1:] == [line]
        try:
            wait_for(said, "")
        except AssertionError:
            raise AssertionError(f"the messages end with {last[-3:]}, not with {line!r}") from None

    def open_file(self, path):
        self.press(PLAYER["Open"])
        self.program.save_as(path, "^Open File")
        self.screen.gone("^Open File")
        self.says("File Opened")


class Studio(KeyboardJourney):
    def open_studio(self, instrument=OCARINA, **settings):
        self.user.keep(Intrumentval=instrument, Inst_Name="Mine", formS_width=15000, **settings)
        program = self.compose()
        return program, Hand(program)

    def songs(self, extension):
        try:
            names = os.listdir(self.user.path(*SONGS))
        except OSError:
            return []
        return [self.user.path(*SONGS, name) for name in sorted(names) if name.endswith(extension)]

    def take(self):
        """The one file that is recorded to, once it is there."""
        return wait_for(lambda: len(found := self.songs(".wav")) == 1 and found[0], "a WAV file")

    def record_keyboard(self, program, studio):
        """The keyboard's window, while it is recorded."""
        keys = Keys(program)
        studio.press(FROM_KEYBOARD)
        studio.press(START)
        self.take()
        keys.focus()
        return keys

    def question(self, program):
        box = wait_for(program.question, "a question")
        program.focus(box)
        return box

    def assertHolds(self, path, pitches):
        self.assertEqual(self.pitches(notes(samples_of(path, RATE))), pitches)

    def assertWhole(self, path):
        """The header tells of all that is in the file."""
        told = subprocess.run(["soxi", "-s", path], capture_output=True, text=True, check=True)
        self.assertEqual(told.stderr, "")
        self.assertEqual(os.path.getsize(path), 44 + 4 * int(told.stdout))

    def test_a_score_becomes_an_mp3_file_while_the_desktop_is_muted(self):
        program, studio = self.open_studio()
        self.screen.do("windowactivate", program.window)
        program.focus(program.window)
        tableau = Tableau(program)
        for beat, row in enumerate((60, 64, 62, 67, 60, 64)):
            tableau.note(4 * beat, row - 7, 3)
        score = self.user.path("home", "tune.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(score)
        program.title_becomes("Velmora - tune.sng")

        with self.server.record() as monitor:
            monitor.silence(1)  # the notes were heard as they were drawn
        subprocess.run(["pactl", "set-sink-mute", "out", "1"], env=self.server.environment, check=True)
        with self.server.record() as monitor:
            studio.press(START)
            wav = self.take()
            wait_for(lambda: not os.path.exists(wav), "the end of the WAV file")
        self.assertLess(max(map(abs, monitor.samples)), SILENT, "muted is muted")
        mp3 = wav.removesuffix("wav") + "mp3"
        self.assertEqual(sorted(os.listdir(self.user.path(*SONGS))), [os.path.basename(mp3)])
        studio.says("Finished Encoding " + wav)

        reference = self.user.path("home", "reference.wav")
        subprocess.run([programs.cli, "convert", score, reference], check=True, capture_output=True,
                       env=self.user.environment(self.screen))
        self.assertSameSound(mp3, reference)
        program.close()

    def assertSameSound(self, path, reference):
        recorded, expected = samples_of(path, RATE), samples_of(reference, RATE)
        self.assertLess(abs(len(recorded) - len(expected)), 0.4 * RATE)
        heard, wanted = notes(recorded), notes(expected)
        self.assertEqual(self.pitches(heard), self.pitches(wanted))
        self.assertSameTimes(heard, wanted, 0.025)
        for one, other in zip(heard, wanted):
            self.assertLess(abs(loudness(recorded, one) - loudness(expected, other)), 1, "decibels")

    def test_the_keyboard_is_recorded_and_its_file_played(self):
        program, studio = self.open_studio(autoencode=0)
        keys = self.record_keyboard(program, studio)
        keys.play(SCALE[:5], 0.3, 0.1, before=0.2)
        studio.press(STOP)
        studio.says("Recording Closed ")
        path = self.take()
        self.assertWhole(path)
        self.assertHolds(path, SCALE_PITCHES[:5])
        self.assertEqual(self.songs(".mp3"), [])
        studio.open_file(path)
        self.assertEqual(self.pitches(notes(self.hear(lambda: (studio.press(PLAYER["Play"]), time.sleep(1.5))))),
                         SCALE_PITCHES[:5])
        program.close()

    def test_a_take_that_became_mp3_is_cut_and_made_louder(self):
        program, studio = self.open_studio()
        keys = self.record_keyboard(program, studio)
        keys.play(SCALE[:5], 0.3, 0.1, before=0.2)
        wav = self.take()
        studio.press(STOP)
        studio.says("Finished Encoding " + wav)
        take = wav.removesuffix("wav") + "mp3"
        self.assertEqual(self.songs(""), [take])

        def make(button, word):
            made = take.removesuffix(".mp3") + word + ".mp3"
            studio.press(button)
            wait_for(lambda: os.path.exists(made), made)
            return made
        studio.focus()
        self.screen.key("ctrl+t")
        mark, aim = studio.at(BEGIN_MARK), studio.at(BEHIND_SILENCE)
        line = studio.at(MIDDLE_LINE)
        wait_for(lambda: self.screen.pixel(*line)[2] > self.screen.pixel(*line)[0] + 60, "the picture")
        background = self.screen.pixel(*aim)
        self.screen.drag(mark, (aim[0] - mark[0], 0), lambda: self.screen.pixel(*aim) != background)
        cut = make(CUT, " cut")
        whole, part = samples_of(take, RATE), samples_of(cut, RATE)
        self.assertLess(len(part), 0.97 * len(whole))
        self.assertHolds(cut, SCALE_PITCHES[:5])
        loud = make(LOUDER, " cut loud")
        self.assertHolds(loud, SCALE_PITCHES[:5])
        self.assertEqual(len(samples_of(loud, RATE)), len(part))
        for one, other in zip(notes(samples_of(loud, RATE)), notes(part)):
            self.assertGreater(loudness(samples_of(loud, RATE), one), loudness(part, other) + 3, "decibels")
        self.assertEqual(samples_of(take, RATE), whole, "the old file stays")
        studio.press(BACK)
        self.assertEqual(studio.messages()[-4:], [
            f"File was saved as {cut}", "MP3 can't be changed as it is: it was encoded again, at 224 kbit/s",
            f"File was saved as {loud}", "MP3 can't be changed as it is: it was encoded again, at 224 kbit/s"])
        program.close()

    def test_a_midi_file_is_recorded_to_its_end_and_saved_as_each_type(self):
        midi = self.user.path("home", "tune.mid")
        subprocess.run(["csvmidi", "-", midi], input=TUNE_LINES, text=True, check=True)
        program, studio = self.open_studio(Delete_WAV=0)
        studio.press(FROM_MIDI)
        studio.press(START)
        program.save_as(midi, "^Open MIDI File")
        wav = self.take()
        mp3 = wav.removesuffix("wav") + "mp3"
        studio.says("Finished Encoding " + wav)
        self.assertWhole(wav)
        for path in (wav, mp3):
            self.assertHolds(path, list(TUNE))

        for path in (midi, mp3, wav):
            self.save_as_it_is(program, studio, path)
        self.save_as_other_types(program, studio)
        program.close()

    def save_as_it_is(self, program, studio, path):
        """Under a name without an extension, which the program adds."""
        studio.press(PLAYER["Open"])
        program.save_as(path, "^Open File")
        self.screen.gone("^Open File")
        saved = self.user.path("home", "saved")
        studio.press(PLAYER["Save"])
        program.save_as(saved, "^Save As$")
        self.screen.gone("^Save As$")
        saved += os.path.splitext(path)[1]
        wait_for(lambda: os.path.exists(saved), "the saved file")
        with open(path, "rb") as one, open(saved, "rb") as other:
            self.assertTrue(one.read() == other.read(), saved)

    def save_as_other_types(self, program, studio):
        """By the button of the take's own panel, which is there for what the panel has read."""
        def is_ready():
            left, top = studio.at(TAKE_SAVE)
            lines = self.screen.picture(left - 80, top - 6, 70, 12)
            return any(max(line[at:at + 3]) < 100 for line in lines for at in range(0, len(line), 4))
        for row, (extension, decoder) in enumerate(DECODERS.items()):
            studio.focus()
            self.screen.key("ctrl+t")
            wait_for(is_ready, "the button's words in full")
            studio.press(TAKE_SAVE)
            program.focus(self.screen.window(SAVE_TAKE))
            self.screen.key("Tab", *["Down"] * row, "shift+Tab")
            saved = self.user.path("home", "saved" + extension)
            program.save_as(saved, SAVE_TAKE)
            self.screen.gone(SAVE_TAKE)
            studio.press(TAKE_BACK)
            studio.says("File was saved as " + saved)
            decoded = saved + ".wav"
            subprocess.run(decoder.format(saved, decoded).split(), check=True, capture_output=True)
            self.assertHolds(decoded, list(TUNE))

    def test_a_file_is_played_paused_and_stopped_twice(self):
        tones = self.user.path("home", "tones.wav")
        pitches = [60, 64, 62, 67, 65, 69, 64, 72]
        words = []
        for pitch in pitches:
            words += ["synth", "1", "sine", str(440 * 2 ** ((pitch - 69) / 12)), "fade", "0.01", "1", "0.05", ":"]
        subprocess.run(["sox", "-n", "-r", "44100", "-c", "2", "-b", "16", tones, *words[:-1]], check=True)
        program, studio = self.open_studio()
        studio.open_file(tones)
        with self.server.record() as heard:
            heard.silence()
            studio.press(PLAYER["Play"])
            wait_for(lambda: heard.latest(0.2) > 8 * SILENT, "the first tones")
            time.sleep(2.3)
            studio.press(PLAYER["Pause"])
            heard.silence(0.3)
            studio.says("Paused")
            studio.press(PLAYER["Pause"])
            wait_for(lambda: heard.latest(0.2) > 8 * SILENT, "the tones that follow")
            studio.says("Playing")
            time.sleep(1.2)
            studio.press(PLAYER["Stop"])
            heard.silence(0.5)
        studio.says("Music Stopped")
        studio.press(PLAYER["Stop"])
        studio.says("Music File was previously stopped.")
        tones = notes(heard.samples)
        (torn,) = [at for at, (one, other) in enumerate(zip(tones, tones[1:])) if one.pitch == other.pitch]
        self.assertGreater(tones[torn + 1].onset - tones[torn].end, 0.3, "the pause")
        self.assertEqual(self.pitches(tones[:torn] + tones[torn + 1:]), pitches[:len(tones) - 1])
        self.assertGreater(len(tones), torn + 2, tones)
        seconds = [tone.end - tone.onset for tone in tones]
        for second in [*seconds[:torn], seconds[torn] + seconds[torn + 1], *seconds[torn + 2:-1]]:
            self.assertLess(abs(second - 1), 0.15, "all of a tone is heard, and once")
        program.close()

    def test_what_sounded_before_a_kill_stands_in_the_wav_file(self):
        program, studio = self.open_studio()
        keys = self.record_keyboard(program, studio)
        keys.play(SCALE[:4], 0.3, 0.1)
        held = SCALE[4]
        begin = time.monotonic()
        self.screen.do("keydown", held)
        try:
            time.sleep(2.2)
            seconds = time.monotonic() - begin
            program.process.send_signal(signal.SIGKILL)
            program.process.wait()
        finally:
            self.screen.do("keyup", held)
        path = self.take()
        told = subprocess.run(["soxi", path], capture_output=True, text=True, check=True)
        self.assertEqual(told.stderr, "")
        heard = notes(samples_of(path, RATE))
        self.assertEqual(self.pitches(heard), SCALE_PITCHES[:5])
        self.assertGreater(heard[-1].end - heard[-1].onset, seconds - KEPT_AFTER - 0.2)

    def test_a_disc_image_is_written_that_other_programs_read_back(self):
        paths = [self.user.path("home", name) for name in ("first.wav", "second one.wav")]
        for path, seconds, sound in zip(paths, (5, 4.321), ("pinknoise", "brownnoise")):
            subprocess.run(["sox", "-R", "-n", "-r", "44100", "-c", "2", "-b", "16", path, "synth", str(seconds),
                            sound, "gain", "-6"], check=True)
        program, studio = self.open_studio()
        studio.press(BURN_CD)
        self.question_of_writer(program, "alt+y")
        writer = self.screen.window(CD_WRITER)
        left, top, _, _ = self.screen.geometry(writer)
        for path, (x, y) in zip(paths, TRACKS):
            self.activate(program, writer)
            empty = self.screen.pixel(left + x, top + y)
            self.press_writer(program, writer, ADD)
            program.save_as(path, "^Add a track")
            self.screen.gone("^Add a track")
            self.activate(program, writer)
            wait_for(lambda: self.screen.pixel(left + x, top + y) != empty, "the track in the list")
        self.press_writer(program, writer, BURN)
        cue = self.user.path("home", "disc.cue")
        program.save_as(cue, "^Write a disc image")
        self.question_of_writer(program, "Return")
        self.assertTrue(os.path.exists(cue))
        subprocess.run(["bchunk", "-w", "disc.bin", "disc.cue", "track"], cwd=self.user.path("home"), check=True,
                       capture_output=True)
        listed = subprocess.run(["cd-info", "--no-header", "--no-cddb", "--no-device-info", "-c", cue], check=True,
                                capture_output=True, text=True).stdout
        self.assertRegex(listed, r"\n +1: 00:02:00 .* audio")
        self.assertRegex(listed, r"\n +2: 00:07:00 .* audio")
        first = 0
        for number, path in enumerate(paths, 1):
            sound = subprocess.run(["sox", path, "-t", "raw", "-"], capture_output=True, check=True).stdout
            sectors = -(-len(sound) // SECTOR)
            expected = sound.ljust(sectors * SECTOR, b"\0")
            back = subprocess.run(["sox", self.user.path("home", f"track{number:02}.wav"), "-t", "raw", "-"],
                                  capture_output=True, check=True).stdout
            self.assertTrue(back == expected, "bchunk reads track %d back" % number)
            out = self.user.path("home", "back.raw")
            subprocess.run(["cd-read", "-c", cue, "--mode=audio", f"--start={first}", f"--end={first + sectors - 1}",
                            "-o", out], check=True, capture_output=True)
            with open(out, "rb") as file:
                self.assertTrue(file.read() == expected, "cd-read reads track %d back" % number)
            first += sectors
        program.close()

    def question_of_writer(self, program, key):
        box = wait_for(lambda: [w for w in self.screen.windows(CD_WRITER)
                                if "DIALOG" in self.screen.property(w, "_NET_WM_WINDOW_TYPE")], "a question")[0]
        program.focus(box)
        self.screen.key(key)
        wait_for(lambda: box not in self.screen.windows(CD_WRITER), "the question's end")

    def activate(self, program, window):
        self.screen.do("windowactivate", window)
        program.focus(window)

    def press_writer(self, program, writer, place):
        self.activate(program, writer)
        left, top, _, _ = self.screen.geometry(writer)
        self.screen.click(left + place[0], top + place[1])

    def test_closing_while_it_records_asks_and_keeps_the_take(self):
        program, studio = self.open_studio()
        keys = self.record_keyboard(program, studio)
        keys.play(SCALE[:2], 0.3, 0.1, before=0.2)
        path = self.take()
        studio.press(CLOSER)
        question = self.question(program)
        self.screen.click(*studio.at(CLOSER))  # which the question doesn't let through
        program.focus(question)
        self.screen.key("Escape")
        wait_for(lambda: not program.question(), "the question's end")
        self.assertTrue(self.screen.windows(RECORD))
        keys.focus()
        keys.play(SCALE[2:4], 0.3, 0.1, before=0.2)
        studio.press(CLOSER)
        self.question(program)
        self.screen.key("alt+y")
        self.screen.gone(RECORD)
        self.assertEqual(self.take(), path)
        self.assertWhole(path)
        self.assertHolds(path, SCALE_PITCHES[:4])

        self.activate(program, program.window)
        studio = Hand(program)  # opened again, it has nothing to ask
        studio.press(CLOSER)
        self.screen.gone(RECORD)
        self.activate(program, program.window)
        Hand(program)
        self.screen.key("ctrl+w")
        self.screen.gone(RECORD)
        program.close()
