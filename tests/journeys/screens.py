# SPDX-License-Identifier: GPL-2.0-or-later
"""Small screens, scaled ones, and one without a window manager."""

from desktop import wait_for
from journey import Journey
from program import START


class NetbookScreen(Journey):
    SIZE = (1024, 600)

    def test_the_composing_window_lies_inside(self):
        program = self.compose()
        self.assertEqual(program.place(), (33, 33, 891, 533))
        self.screen.move(*program.at(26, 70))
        left, top, width, height = self.screen.geometry(self.screen.window("NQV-EXTOOLTIP"))
        self.assertTrue(left >= 0 and top >= 0 and left + width <= 1024 and top + height <= 600)
        tools = self.screen.geometry(program.open_menu("Tools"))
        self.assertTrue(tools[0] + tools[2] <= 1024 and tools[1] + tools[3] <= 600, tools)
        self.screen.key("Escape")
        wait_for(lambda: not program.popups(), "the menu's end")
        self.screen.key("F1")
        left, top, width, height = self.screen.geometry(self.screen.window("Help"))
        self.assertTrue(left >= 0 and top >= 0 and left + width <= 1024 and top + height <= 600,
                        (left, top, width, height))
        program.focus(self.screen.window("Help"))
        self.screen.key("Escape")
        self.screen.gone("Help")
        program.focus(program.window)
        program.close()


class TinyScreen(Journey):
    SIZE = (640, 480)

    def test_it_starts_and_its_title_is_on_the_screen(self):
        program = self.compose()
        left, top, _, _ = program.place()
        self.assertTrue(0 <= left < 640 and 0 <= top < 480 - 28, (left, top))
        self.screen.key("ctrl+q")
        program.ends()


class LargeScreen(Journey):
    SIZE = (2732, 1536)

    def test_a_scale_of_one_and_a_half_and_of_two(self):
        for factor in (1.5, 2):
            with self.subTest(factor=factor):
                user = self.new_user(QT_SCALE_FACTOR=str(factor))
                program = self.start(user=user)
                _, _, width, height = self.screen.geometry(self.screen.window(START))
                self.assertEqual((width, height), (int(480 * factor), int(300 * factor)))
                program.start_composing()
                left, top, width, height = program.place()
                self.assertTrue(left >= 0 and top >= 0 and left + width <= 2732 and top + height <= 1536)
                self.assertTrue(width >= 880 * factor and height >= 520 * factor, (width, height))
                wait_for(lambda: self.screen.pixel(left + width // 2, top + height - 100) != (0, 0, 0), "paint")
                self.screen.key("ctrl+q")
                program.ends()


class BareScreen(Journey):
    MANAGER = False

    def test_start_and_exit_work_without_a_window_manager(self):
        program = self.compose()
        left, top, width, height = program.place()
        self.assertTrue(left >= 0 and top >= 0 and left + width <= 1366 and top + height <= 768)
        begin = program.at(600, 14)
        self.screen.drag(begin, (50, 20), until=lambda: program.place()[:2] != (left, top))
        self.screen.drag(program.at(-2, -2), (-60, -40), until=lambda: program.place()[2:] != (width, height))
        program.close()

    def test_exit_in_the_start_window_works_without_one(self):
        program = self.start()
        left, top, width, height = self.screen.geometry(self.screen.window(START))
        self.screen.click(left + width - 60, top + height - 32)
        program.ends()
