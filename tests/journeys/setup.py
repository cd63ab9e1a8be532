# SPDX-License-Identifier: GPL-2.0-or-later
"""The setup toolbar, over the composing window."""

from composing import Tableau, filled
from desktop import wait_for
from journey import Journey
from program import SAVE_DIALOG

EDITOR = "^Editor$"
SETUP = (-191, 70)


class SetupToolbar(Journey):
    def setUp(self):
        super().setUp()
        self.user.forget()  # as at the first start

    def activate(self, window):
        self.screen.do("windowactivate", window)
        wait_for(lambda: self.screen.focused() == window, "the focus")

    def at(self, x, y):
        left, top, _, _ = self.screen.geometry(self.screen.window(EDITOR))
        return left + x, top + y

    def test_it_comes_up_at_the_first_start_and_takes_no_focus(self):
        program = self.compose()
        self.screen.window(EDITOR)
        self.assertEqual(self.screen.focused(), program.window, "Space is to play")
        program.close()

    def test_what_it_sets_is_what_is_drawn(self):
        program = self.compose()
        self.screen.window(EDITOR)
        self.screen.click(*self.at(114, 122))  # the second channel
        self.activate(program.window)
        tableau = Tableau(program)
        tableau.note(4, 50, 3)
        path = self.user.path("home", "second.sng")
        self.screen.key("ctrl+shift+s")
        program.focus(self.screen.window(SAVE_DIALOG))
        program.save_as(path)
        program.title_becomes("Velmora - second.sng")
        self.assertEqual(filled(path, channel=1), [4, 5, 6])
        self.assertEqual(filled(path), [])
        program.close()

    def test_what_it_cuts_off_can_be_brought_back(self):
        program = self.compose()
        tableau = Tableau(program)
        self.screen.window(EDITOR)
        self.activate(program.window)
        tableau.note(30, 50, 3)
        tableau.note(40, 50, 3)
        self.screen.key("ctrl+z")  # nothing is left to undo
        self.activate(self.screen.window(EDITOR))
        self.screen.click(*self.at(320, 52))  # Midi
        self.screen.click(*self.at(292, 254))  # how many
        self.screen.type("980")
        self.screen.click(*self.at(230, 292))  # Subtract notes
        self.user.setting_becomes("NumNotes", "20")
        self.activate(program.window)
        self.screen.key("ctrl+z")
        path = self.user.path("home", "whole.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - whole.sng")
        self.assertEqual(filled(path), [30, 31, 32])
        program.close()

    def test_space_ticks_the_box_that_the_keyboard_has_reached(self):
        program = self.compose()
        self.activate(self.screen.window(EDITOR))
        self.screen.key("Tab", "Tab")  # the active channel's button, and its box
        box = self.at(58, 151)
        empty = self.screen.pixel(*box)
        self.screen.key("space")
        wait_for(lambda: self.screen.pixel(*box) != empty, "the tick")
        self.activate(program.window)
        program.close()

    def test_closed_it_stays_away_until_it_is_asked_for(self):
        program = self.compose()
        self.screen.click(*self.at(501, 14))  # its close button
        self.screen.gone(EDITOR)
        self.user.setting_becomes("frmsetup", "False")
        self.activate(program.window)
        program.close()
        program = self.compose()
        wait_for(lambda: self.screen.pixel(*program.at(-19, 14)) != (0, 0, 0), "paint")
        self.assertFalse(self.screen.windows(EDITOR))
        self.screen.click(*program.at(*SETUP))
        self.screen.window(EDITOR)
        self.user.setting_becomes("frmsetup", "True")
        self.activate(program.window)
        program.close()

    def test_letters_and_large_numbers_in_its_fields_harm_nothing(self):
        program = self.compose()
        self.activate(self.screen.window(EDITOR))
        for tab in (3, 4, 5):  # Timing, Midi, Staff Configuration
            self.screen.key(*["ctrl+Tab"] * (2 if tab == 3 else 1))
            for _ in range(8):
                self.screen.key("Tab", "ctrl+a")
                self.screen.type("x9999999999999")
                self.screen.key("Tab", "ctrl+a")
                self.screen.type("-5abc")
        self.activate(program.window)
        self.assertTrue(program.running())
        Tableau(program).note(2, 50, 2)
        self.screen.key("space")
        self.screen.key("space")
        program.close()


class SetupOnTheSecondScreen(Journey):
    SIZE = (2732, 768)

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.screen.split(1366)

    def test_it_comes_up_where_it_was_left(self):
        self.user.keep(frmsetup=1, frmsetup_left=1600 * 15, frmsetup_top=100 * 15)
        program = self.compose()
        self.screen.geometry_becomes(self.screen.window(EDITOR), (1600, 100, 520, 340))
        program.close()
