# SPDX-License-Identifier: GPL-2.0-or-later
"""The on-screen keyboard, played by the computer's keys and by MIDI."""

from desktop import wait_for
from jack import NAME, JackServer
from keys import FIT, GUITAR, INPUTS, KEY_OF_72, OCARINA, SCALE, SCALE_PITCHES, KeyboardJourney
from sound import SILENT, notes, strikes

LETTERS = SCALE[:7]
CAPS_LOCK, SHIFT = 66, 50


class Keyboard(KeyboardJourney):
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
        for _ in range(3):  # a server under load can bend a note
            heard = notes(self.hear(play))
            if self.pitches(heard) == SCALE_PITCHES[:len(codes)]:
                break
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
        self.assertStruck(3)
        self.assertEqual(strikes(self.hear(lambda: keys.play([key], 0.8))), 1)
        self.assertStruck(4)

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
        self.assertEqual(self.struck(), 6, "all that the program struck")

    def assertStruck(self, count):
        wait_for(lambda: self.struck() >= count, "the strikes in the journal")
        self.assertEqual(self.struck(), count)

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
