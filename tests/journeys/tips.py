# SPDX-License-Identifier: GPL-2.0-or-later
"""Tips, and what a right click does."""

from desktop import wait_for
from journey import Journey
from program import EDIT_HEIGHT, FILE_HEIGHT, TIP

CLEAR, ACCIDENTALS = (26, 70), (810, 70)  # a command, and one that needs traditional notation
MAKER_TAB, FIFTH_SQUARE = (26, 108), (126, 170)  # the tip of the one lies over the other
TRACK = (1014, 164)  # in the colour of the active channel
PAPER = (600, 450)
LONG_TIP = "^Melody Tableau$"


class Tips(Journey):
    def mode(self, program, name):
        program.click({"Erase": -218, "Chord": -162, "Menu": -106, "Tips": -50}[name], -16)
        self.screen.move(*program.at(*PAPER))

    def switch(self, program):
        return self.screen.picture(*program.at(-256, -28), 236, 22)

    def test_a_tip_comes_at_rest_and_goes_with_the_mouse_and_never_takes_the_focus(self):
        program = self.compose()
        for place in (CLEAR, ACCIDENTALS):
            with self.subTest(place=place):
                self.screen.move(*program.at(*place))
                tip = self.screen.window(TIP)
                left, top, width, height = self.screen.geometry(tip)
                self.assertTrue(0 <= left and left + width <= self.SIZE[0] and 0 <= top and
                                top + height <= self.SIZE[1], (left, top, width, height))
                self.assertEqual(self.screen.focused(), program.window)
                self.screen.move(*program.at(*PAPER))
                self.screen.gone(TIP)
        self.screen.move(*program.at(*CLEAR))
        self.screen.window(TIP)
        self.screen.move(self.SIZE[0] - 1, self.SIZE[1] - 1)  # outside the window
        self.screen.gone(TIP)
        program.close()

    def test_a_click_goes_through_a_tip_to_what_lies_under_it(self):
        program = self.compose()
        self.screen.move(*program.at(*MAKER_TAB))
        left, top, width, height = self.screen.geometry(self.screen.window(TIP))
        x, y = program.at(*FIFTH_SQUARE)
        self.assertTrue(left < x < left + width and top < y < top + height, (left, top, width, height))
        before = self.screen.pixel(*program.at(*TRACK))
        self.screen.click(x, y)
        wait_for(lambda: self.screen.pixel(*program.at(*TRACK)) != before, "another channel")
        program.close()

    def test_a_tip_in_the_corner_of_the_screen_stays_on_it(self):
        program = self.compose()
        program.click(-43, 14)
        self.screen.geometry_becomes(program.window, (0, 0, *self.SIZE))
        self.screen.move(*program.at(-50, -16))
        left, top, width, height = self.screen.geometry(self.screen.window(TIP))
        self.assertTrue(left + width <= self.SIZE[0] and top + height <= self.SIZE[1], (left, top, width, height))
        program.close()

    def test_escape_closes_a_menu(self):
        program = self.compose()
        program.open_menu("File")
        self.screen.key("Escape")
        wait_for(lambda: not program.popups(), "the menu's end")
        program.close()

    def test_in_menu_mode_a_right_click_opens_the_edit_menu_and_on_percussion_the_file_menu(self):
        program = self.compose()
        self.mode(program, "Menu")
        for place, height in ((PAPER, EDIT_HEIGHT), ((600, 270), FILE_HEIGHT)):
            program.click(*place, 3)
            self.assertEqual(self.screen.geometry(program.popup())[3], height)
            self.screen.key("Escape")
            wait_for(lambda: not program.popups(), "the menu's end")
        program.close()

    def test_in_tips_mode_a_right_click_tells_and_the_cross_ends_the_mode(self):
        program = self.compose()
        self.screen.move(*program.at(*PAPER))
        wait_for(lambda: self.screen.pixel(*program.at(19, 163)) == (255, 0, 0), "a painted window")
        erasing = self.switch(program)
        self.mode(program, "Tips")
        wait_for(lambda: self.switch(program) != erasing, "the mode on the switch")
        program.click(*PAPER, 3)
        left, top, width, height = self.screen.geometry(self.screen.window(LONG_TIP))
        self.assertEqual(width, 320 + 2 * 12 + 24)
        self.assertEqual(self.screen.focused(), program.window)
        self.screen.click(left + width - 16, top + 16)
        self.screen.gone(LONG_TIP)
        self.screen.move(*program.at(*PAPER))
        wait_for(lambda: self.switch(program) == erasing, "the switch as before")
        program.close()

    def test_help_opens_by_f1_and_closes_by_escape(self):
        program = self.compose()
        self.screen.key("F1")
        help_ = self.screen.window("Help")
        program.focus(help_)
        self.screen.key("Escape")
        self.screen.gone("Help")
        program.focus(program.window)
        program.close()


class Parts(Journey):
    """What can be hidden gives its room away."""

    def grip(self, program):
        return self.screen.pixel(*program.at(630, 310))

    def first_square(self, program, top):
        return self.screen.pixel(*program.at(19, top)) == (255, 0, 0)

    def test_percussion_gives_its_room_and_stays_hidden_after_a_restart(self):
        program = self.compose()
        wait_for(lambda: max(self.grip(program)) < 160, "the splitter's grip")
        program.click(714, 70)
        self.user.setting_becomes("Percussion", "False")
        wait_for(lambda: self.grip(program) == (255, 255, 255), "paper where percussion was")
        program.close()
        program = self.compose()
        wait_for(lambda: self.grip(program) == (255, 255, 255), "paper where percussion was")
        program.choose_from_tools("Percussion Tableau")
        self.user.setting_becomes("Percussion", "True")
        wait_for(lambda: max(self.grip(program)) < 160, "the splitter's grip")
        program.close()

    def test_the_editing_toolbar_hides_by_its_button_and_comes_back_by_the_menu(self):
        program = self.compose()
        wait_for(lambda: self.first_square(program, 163), "the first channel under the bar")
        program.click(-31, 122)
        wait_for(lambda: self.first_square(program, 163 - 64), "the first channel in the bar's place")
        self.user.setting_becomes("Editing Toolbar", "False")
        program.choose_from_tools("Editing Toolbar")
        wait_for(lambda: self.first_square(program, 163), "the first channel under the bar")
        self.user.setting_becomes("Editing Toolbar", "True")
        program.close()
