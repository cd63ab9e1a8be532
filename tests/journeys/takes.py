# SPDX-License-Identifier: GPL-2.0-or-later
"""What becomes of what is played on the on-screen keyboard: takes, scores and phrases."""

import os
import time

from composing import Tableau, filled
from desktop import wait_for
from keys import FIRST_LAMP, KEEP, METRONOME, OCARINA, TAKES, TONE, Keys, KeyboardJourney
from sound import Heard, notes

KEEP_WINDOW = "^Keep what I just played$"
SAVE_SCORE = "^Save As SNG score"


class Takes(KeyboardJourney):
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
        """A take plays its ticks of 10 ms in 12 ms each, and some three ticks more a note; that is meant."""
        heard = notes(self.hear(lambda: self.screen.do(*press, "sleep", 1)))
        self.assertEqual(self.pitches(heard), self.TUNE_PITCHES)
        slow = [note._replace(onset=1.2 * note.onset + 0.036 * i) for i, note in enumerate(played)]
        self.assertSameTimes(heard, slow, 0.1)

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
