# SPDX-License-Identifier: GPL-2.0-or-later
"""The composing window as the user moves and sizes it, with a window manager."""

import itertools

from desktop import wait_for
from journey import MARCH, Journey

LEFT, TOP, WIDTH, HEIGHT = OPENED = (33, 33, 1233, 701)  # on this screen, by the size rule
STEP = 30


class Frames(Journey):
    def drag(self, program, start, by, expected):
        program.laid_out()  # its edges are then where the server says
        self.screen.drag_window(program.window, program.at(*start), by, expected)

    def test_a_drag_of_the_title_moves_the_window_and_its_place_is_stored(self):
        program = self.compose()
        self.drag(program, (600, 14), (60, 25), (LEFT + 60, TOP + 25, WIDTH, HEIGHT))
        self.user.setting_becomes("form1 top", str((TOP + 25) * 15))
        program.close()
        settings = self.user.settings()
        self.assertEqual((settings["form1 left"], settings["form1 top"]),
                         (str((LEFT + 60) * 15), str((TOP + 25) * 15)))

    def test_a_window_dragged_above_the_screen_comes_back_to_0(self):
        program = self.compose()
        begin = program.at(600, 26)

        def above():
            moved = program.place() != OPENED
            if moved:
                self.screen.move(begin[0], 1)
            else:  # the manager may not have heard of the drag
                self.screen.move(begin[0] + next(nudges) % 2 * 4, begin[1] - 12)
            return moved and program.place()[1] <= 0
        nudges = itertools.count()
        self.screen.drag(begin, (0, -12), until=above)
        wait_for(lambda: program.place()[1] == 0, "the title at the screen's top")
        self.assertEqual(program.place()[2:], (WIDTH, HEIGHT))
        program.close()

    def test_each_edge_and_corner_resizes_the_window(self):
        program = self.compose()
        _, _, width, height = OPENED
        for across, down in ((-1, 0), (1, 0), (0, -1), (0, 1), (-1, -1), (1, -1), (-1, 1), (1, 1)):
            start = (1 if across < 0 else -2 if across else width // 2,
                     1 if down < 0 else -2 if down else height // 2)
            left, top, width, height = program.place()
            left, width = left + (STEP if across < 0 else 0), width - STEP * abs(across)
            top, height = top + (STEP if down < 0 else 0), height - STEP * abs(down)
            with self.subTest(edge=(across, down)):
                self.drag(program, start, (-across * STEP, -down * STEP), (left, top, width, height))
        program.close()

    def test_it_never_becomes_smaller_than_its_least_size(self):
        program = self.compose()
        self.drag(program, (WIDTH - 2, HEIGHT - 2), (-900, -500), (LEFT, TOP, 880, 520))
        self.drag(program, (1, 1), (300, 200), (LEFT, TOP, 880, 520))
        program.close()

    def test_the_button_and_a_double_click_on_the_title_maximise_and_restore(self):
        program = self.compose()
        whole = (0, 0, *self.SIZE)
        for press in (lambda: program.click(-43, 14),
                      lambda: self.screen.double_click(*program.at(400, 14))):
            program.laid_out()
            press()
            self.screen.geometry_becomes(program.window, whole)
            program.laid_out()
            press()
            self.screen.geometry_becomes(program.window, OPENED)
        program.close()

    def test_a_maximised_window_closes_with_its_normal_place_stored(self):
        program = self.compose()
        program.click(-43, 14)
        self.screen.geometry_becomes(program.window, (0, 0, *self.SIZE))
        program.close()
        settings = self.user.settings()
        self.assertEqual([settings["form1 " + key] for key in ("left", "top", "Width", "Height")],
                         [str(length * 15) for length in OPENED])

    def test_it_is_minimised_and_comes_back(self):
        program = self.compose()
        program.click(-67, 14)
        wait_for(lambda: program.window not in self.screen.windows(), "a minimised window")
        self.assertIn(program.window, self.screen.managed())
        self.screen.do("windowactivate", program.window)
        wait_for(lambda: program.window in self.screen.windows(), "the window again")
        self.screen.geometry_becomes(program.window, OPENED)
        program.close()

    def test_it_stands_in_the_list_of_windows_with_a_class_and_a_title(self):
        program = self.compose(MARCH)
        program.title_becomes("Velmora - march.sng")
        self.assertIn(program.window, self.screen.managed())
        self.assertEqual(self.screen.property(program.window, "WM_CLASS"), '"velmora", "velmora"')
        self.assertEqual(self.screen.property(program.window, "_NET_WM_NAME"), '"Velmora - march.sng"')
        program.close()


class Places(Journey):
    """On a screen so large that a stored size can pass the size rule."""

    SIZE = (2000, 1400)

    def test_a_stored_place_is_taken_up_again(self):
        self.user.keep(form1_left=300 * 15, form1_top=200 * 15, form1_width=900 * 15, form1_Height=530 * 15)
        program = self.compose()
        self.assertEqual(program.place(), (300, 200, 900, 530))
        self.screen.drag_window(program.window, program.at(400, 14), (50, 70), (350, 270, 900, 530))
        self.user.setting_becomes("form1 top", str(270 * 15))
        program.close()
        program = self.compose()
        self.assertEqual(program.place(), (350, 270, 900, 530))
        program.close()

    def test_a_place_outside_the_screen_is_pulled_back(self):
        self.user.keep(form1_left=5000 * 15, form1_top=-900 * 15, form1_width=900 * 15, form1_Height=530 * 15)
        program = self.compose()
        self.assertEqual(program.place(), (1100, 0, 900, 530))
        program.close()


class PlacesOnTheSecondScreen(Journey):
    """Beside the first one, and of another size."""

    SIZE = (3366, 1400)
    FIRST = 1366

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.screen.split(cls.FIRST)

    def test_a_stored_place_is_taken_up_there(self):
        left = self.FIRST + 300
        self.user.keep(form1_left=left * 15, form1_top=200 * 15, form1_width=900 * 15, form1_Height=530 * 15)
        program = self.compose()
        self.assertEqual(program.place(), (left, 200, 900, 530))
        program.close()

    def test_the_size_rule_measures_that_screen(self):
        self.user.keep(form1_left=(self.FIRST + 33) * 15, form1_top=33 * 15)
        program = self.compose()
        placed = (self.FIRST + 33, 33, 2000 - 133, 1400 - 67)
        self.assertEqual(program.place(), placed)
        program.close()
        program = self.compose()  # and with what it has saved itself
        self.assertEqual(program.place(), placed)
        program.close()
