# SPDX-License-Identifier: GPL-2.0-or-later
"""The on-screen keyboard: played, recorded, kept, and heard."""

import os
import subprocess
import time

import program as programs
from composing import Tableau, filled
from desktop import wait_for
from jack import NAME, JackServer
from journey import Journey
from program import SAVE_DIALOG
from sound import SILENT, Heard, SoundServer, notes, strikes

KEEP_WINDOW = "^Keep what I just played$"
SAVE_SCORE = "^Save As SNG score"
OPENER = (-166, 70)  # in the composing window
# Places in the keyboard's window, as wide as the tests have it.
WIDTH = 1000
TABS = {"Setup": (40, 101), "Compose": (108, 101), "Sound 1": (184, 101), "Sound 2": (258, 101)}
FIT, INPUTS = (480, 180), (690, 160, 260, 20)
TAKES, KEEP = (698, 184), (882, 144)
METRONOME, TONE, FIRST_LAMP = (738, 126), (738, 150), (738, 176)
KEY_OF_72 = (286, 345)  # two octaves up, under the label
TWO_OCTAVES_UP = (881, 194)
# The key codes of the lowest row of letters, where the white keys from C to C are; by their places, which all
# layouts share.
SCALE = range(52, 60)
SCALE_PITCHES = [60, 62, 64, 65, 67, 69, 71, 72]
LETTERS = SCALE[:7]
CAPS_LOCK, SHIFT = 66, 50
OCARINA, GUITAR = 79, 24  # nearly one partial alone; a sound that fades


class Keys:
    """The keyboard's window, opened by its button, so that the lowest row plays from the middle C on."""

    def __init__(self, program):
        self.program = program
        self.screen = program.screen
        self.screen.click(*program.at(*OPENER))
        self.window = self.screen.window("Keyboard$")
        self.focus()
        self.click("Sound 1", TWO_OCTAVES_UP)

    def focus(self):
        self.activate(self.window)

    def activate(self, window):
        self.screen.do("windowactivate", window)
        self.program.focus(window)

    def colour(self, place):
        return self.screen.pixel(*self.at(*place))

    def at(self, x, y):
        left, top, _, _ = self.screen.geometry(self.window)
        return left + x, top + y

    def click(self, tab, place):
        self.show(tab)
        self.screen.click(*self.at(*place))

    def show(self, tab):
        self.screen.click(*self.at(*TABS[tab]))

    def play(self, codes, hold=0.16, gap=0.1, before=0.0):
        """One after another, by one hand: a process a key would take its own time."""
        words = ["sleep", before]
        for code in codes:
            words += ["keydown", code, "sleep", hold, "keyup", code, "sleep", gap]
        self.screen.do(*words)


class Keyboard(Journey):
    def setUp(self):
        super().setUp()
        self.server = SoundServer(self.user.path("sound"))
        self.addCleanup(self.server.stop)
        self.user.more["PULSE_SERVER"] = self.server.address

    def begin(self, instrument, classic):
        self.user.keep(Intrumentval=instrument, Inst_Name="Mine", Classic=classic, formS_width=15 * WIDTH)
        program = self.compose()
        return program, Keys(program)

    def end(self, program):
        """Classic manner always asks whether to save."""
        program.click(-19, 14)
        wait_for(lambda: program.question() or not program.running(), "the question")
        if program.running():
            program.focus(program.question())
            self.screen.key("alt+n" if self.user.settings().get("Classic") == "1" else "alt+d")
        program.ends()

    def hear(self, act):
        """What sounds while somebody acts, between two silences."""
        with self.server.record() as recording:
            recording.silence()
            act()
            recording.silence(0.5)
        return recording.samples

    def hear_score(self, program):
        """The score of the composing window, played there from its beginning."""
        def play():
            program.focus(program.window)
            self.screen.key("space")
            time.sleep(1)  # by then it sounds
        return notes(self.hear(play))

    def pitches(self, heard):
        return [note.pitch for note in heard]

    def assertSameTimes(self, heard, expected, slack):
        """The distances of the onsets from the first."""
        for one, other in zip(heard, expected, strict=True):
            self.assertLess(abs(one.onset - heard[0].onset - other.onset + expected[0].onset), slack,
                            (heard, expected))

    # Playing.

    def use_layout(self, layout, keys):
        self.screen.run("setxkbmap", layout)
        self.addCleanup(self.screen.run, "setxkbmap", "us")
        keys.click("Setup", FIT)

    def assertPlays(self, keys, codes, before=(), after=()):
        def play():
            if before:
                self.screen.do(*before)
            keys.play(codes)
            if after:
                self.screen.do(*after)
        heard = notes(self.hear(play))
        self.assertEqual(self.pitches(heard), SCALE_PITCHES[:len(codes)], heard)
        for one, other in zip(heard, heard[1:]):
            self.assertLess(abs(other.onset - one.onset - 0.26), 0.2, heard)

    def test_a_scale_sounds_in_three_layouts(self):
        program, keys = self.begin(OCARINA, 0)
        self.assertPlays(keys, SCALE)
        self.use_layout("de", keys)
        self.assertPlays(keys, LETTERS, before=("keydown", SHIFT), after=("keyup", SHIFT))
        self.assertPlays(keys, SCALE)
        self.use_layout("fr", keys)
        self.assertPlays(keys, SCALE, before=("key", CAPS_LOCK), after=("key", CAPS_LOCK))
        self.end(program)

    def test_a_scale_sounds_by_the_old_rules(self):
        program, keys = self.begin(OCARINA, 1)
        self.use_layout("de", keys)
        self.assertPlays(keys, SCALE)
        self.end(program)

    def test_a_held_key_strikes_once_and_ends_with_the_focus(self):
        self.hold_a_key(classic=0)

    def test_a_held_key_strikes_once_and_ends_with_the_focus_by_the_old_rules(self):
        self.hold_a_key(classic=1)

    def hold_a_key(self, classic):
        program, keys = self.begin(GUITAR, classic)
        key = SCALE[0]
        self.screen.run("xset", "r", "rate", "100", "40")
        self.assertEqual(strikes(self.hear(lambda: keys.play([key] * 3, 0.2, 0.25))), 3, "three are told apart")
        self.assertEqual(strikes(self.hear(lambda: keys.play([key], 0.8))), 1)

        with self.server.record() as recording:
            recording.silence()
            self.screen.do("keydown", key)
            try:
                wait_for(lambda: recording.latest(0.1) > 4 * SILENT, "a note")
                keys.activate(program.window)
                recording.silence()
            finally:
                self.screen.do("keyup", key)
            keys.focus()
            keys.play([key])
            recording.silence()
        self.assertEqual(strikes(recording.samples), 2, "it plays again")
        self.end(program)

    # Recording.

    TUNE, TUNE_PITCHES = (52, 55, 54, 57, 52, 56), [60, 65, 64, 69, 60, 67]

    def record(self, keys):
        def play():
            self.screen.key("ctrl+r")
            keys.play(self.TUNE[:3], 0.3, 0.1, before=0.1)
            keys.play(self.TUNE[3:], 0.15, 0.1)
            self.screen.key("ctrl+r")
        heard = notes(self.hear(play))
        self.assertEqual(self.pitches(heard), self.TUNE_PITCHES)
        return heard

    def assertTakePlays(self, played, press=("key", "ctrl+p")):
        """A take plays its ticks of 10 ms in 12 ms each, and two ticks more a note; that is meant."""
        heard = notes(self.hear(lambda: self.screen.do(*press, "sleep", 1)))
        self.assertEqual(self.pitches(heard), self.TUNE_PITCHES)
        slow = [note._replace(onset=1.2 * note.onset + 0.024 * i) for i, note in enumerate(played)]
        self.assertSameTimes(heard, slow, 0.08)

    def save(self, keys, name, *choice):
        """The choice is made in a menu; without one none comes up."""
        path = self.user.path("home", name)
        self.screen.key("ctrl+shift+s")
        if choice:
            keys.program.popup()
            self.screen.key(*choice)
        wait_for(lambda: self.screen.windows(SAVE_SCORE), "the dialog")
        keys.program.save_as(path, SAVE_SCORE)
        wait_for(lambda: os.path.exists(path), "the score")
        return path

    def traced(self, path):
        """Seconds and pitches of the notes that a score's playing begins."""
        done = subprocess.run([programs.cli, "trace", path], capture_output=True, text=True, check=True)
        words = [line.split() for line in done.stdout.splitlines()]
        messages = [(float(line[1]), int(line[2], 16)) for line in words if line[2] != "reset"]
        return [Heard(second, 0, word >> 8 & 0x7F) for second, word in messages if word & 0xF0 == 0x90 and word >> 16]

    def open_score(self, keys, path):
        """As from a folder: by a second start, which hands it over."""
        self.start(path).ends()
        keys.program.title_becomes("Velmora - " + os.path.basename(path))
        keys.activate(keys.program.window)

    def test_a_recording_is_saved_opened_and_heard_at_its_tempo(self):
        program, keys = self.begin(OCARINA, 0)
        played = self.record(keys)
        self.assertTakePlays(played)
        path = self.save(keys, "notes.sng", "Down", "Return")
        self.open_score(keys, path)
        for heard in (self.traced(path), self.hear_score(program)):
            self.assertEqual(self.pitches(heard), self.TUNE_PITCHES)
            self.assertSameTimes(heard, played, 0.03)

        keys.focus()
        self.record(keys)
        path = self.save(keys, "trace.sng", "Down", "Down", "Return")
        self.open_score(keys, path)
        self.assertEqual(self.pitches(self.hear_score(program)), self.TUNE_PITCHES)
        self.end(program)

    def test_a_recording_becomes_a_trace_by_the_old_rules(self):
        program, keys = self.begin(OCARINA, 1)
        self.record(keys)
        path = self.save(keys, "trace.sng")
        self.assertEqual(self.pitches(self.traced(path)), self.TUNE_PITCHES)
        self.open_score(keys, path)
        self.assertEqual(self.pitches(self.hear_score(program)), self.TUNE_PITCHES)
        self.end(program)

    # Keeping.

    def test_a_phrase_is_kept_in_time_and_taken_back_as_one_step(self):
        self.keep_a_phrase(classic=0)

    def test_a_phrase_is_kept_in_time_and_taken_back_as_one_step_by_the_old_rules(self):
        self.keep_a_phrase(classic=1)

    def keep_a_phrase(self, classic):
        program, keys = self.begin(OCARINA, classic)
        tableau = Tableau(program)

        def paper():  # where the phrase will stand, below the hint
            return self.screen.picture(*tableau.melody(0, 61), 180, 60)
        keys.click("Sound 2", TONE)
        dark = keys.colour(FIRST_LAMP)
        keys.click("Sound 2", METRONOME)
        for lit in (True, False, True):  # the hand has the measure by then
            wait_for(lambda: (keys.colour(FIRST_LAMP) != dark) == lit, "the beat")
        keys.play((52, 54, 56, 57), 0.36, 0.13)
        keys.activate(program.window)
        self.screen.click(*tableau.square(1))
        empty = wait_for(paper, "")
        self.screen.key("ctrl+k")
        program.focus(self.screen.window(KEEP_WINDOW))
        self.screen.key("Return")
        self.screen.gone(KEEP_WINDOW)
        if not classic:
            program.title_becomes("Velmora*")
        path = self.user.path("home", "kept.sng")
        self.screen.key("ctrl+s")
        program.save_as(path)
        program.title_becomes("Velmora - kept.sng")
        self.assertEqual(filled(path, channel=1), list(range(16)))
        kept = self.traced(path)
        self.assertEqual(self.pitches(kept), [60, 64, 67, 69])
        self.assertSameTimes(kept, [Heard(beat / 2, 0, 0) for beat in range(4)], 0.01)
        self.assertTrue(paper() != empty, "the notes are seen")
        self.screen.key("ctrl+z")
        wait_for(lambda: paper() == empty, "the Tableau as it was")
        self.end(program)

    # A keyboard that is plugged in.

    def test_a_midi_keyboard_that_is_plugged_in_plays(self):
        self.play_midi(classic=0)

    def test_a_midi_keyboard_that_is_plugged_in_plays_by_the_old_rules(self):
        self.play_midi(classic=1)

    def play_midi(self, classic):
        self.user.more["JACK_DEFAULT_SERVER"] = NAME
        server = JackServer()
        self.addCleanup(server.stop)
        program, keys = self.begin(OCARINA, classic)
        keys.show("Setup")
        left, top = keys.at(*INPUTS[:2])
        inputs = lambda: self.screen.picture(left, top, *INPUTS[2:])
        none = wait_for(inputs, "")
        white = keys.colour(KEY_OF_72)
        midi = server.plug_in("Keys")
        self.addCleanup(midi.pull_out)
        wait_for(lambda: inputs() != none, "the keyboard in the list")
        with self.server.record() as recording:
            recording.silence()
            midi.play(0x90, 72, 90)
            wait_for(lambda: keys.colour(KEY_OF_72) != white, "the key's light")
            wait_for(lambda: recording.latest(0.2) > 8 * SILENT, "a note")
            midi.play(0x80, 72, 0)
            wait_for(lambda: keys.colour(KEY_OF_72) == white, "the light's end")
            recording.silence()
            midi.play(0x90, 67, 90)
            wait_for(lambda: recording.latest(0.2) > 8 * SILENT, "a note")
            midi.pull_out()
            recording.silence()
        self.assertEqual(self.pitches(notes(recording.samples)), [72, 67])
        wait_for(lambda: inputs() == none, "the keyboard's end in the list")
        self.end(program)

    # The worst.

    def test_what_was_played_before_a_crash_can_be_heard_and_kept(self):
        self.crash(classic=0)

    def test_what_was_played_before_a_crash_can_be_heard_and_kept_by_the_old_rules(self):
        self.crash(classic=1)

    def crash(self, classic):
        program, keys = self.begin(OCARINA, classic)
        self.screen.key("ctrl+r")
        keys.play(self.TUNE, 0.3, 0.1)
        time.sleep(1)  # so long anything may take to the disk
        program.process.kill()
        program.process.wait()
        wait_for(lambda: not self.screen.windows(), "the end of the windows")

        program = self.compose()
        keys = Keys(program)

        def choose():
            keys.click("Compose", TAKES)
            program.popup()
            self.screen.do("key", "Down", "key", "Return", "sleep", 1)
        self.assertEqual(self.pitches(notes(self.hear(choose))), self.TUNE_PITCHES)
        self.screen.click(*keys.at(*KEEP))
        program.focus(self.screen.window(KEEP_WINDOW))
        self.screen.key("Return")
        self.screen.gone(KEEP_WINDOW)
        keys.activate(program.window)
        if not classic:
            program.title_becomes("Velmora*")
        path = self.user.path("home", f"crash {classic}.sng")
        self.screen.key("ctrl+s")
        program.save_as(path)
        program.title_becomes("Velmora - " + os.path.basename(path))
        self.assertEqual(self.pitches(self.traced(path)), self.TUNE_PITCHES)
        self.end(program)
