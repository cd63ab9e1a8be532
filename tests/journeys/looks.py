# SPDX-License-Identifier: GPL-2.0-or-later
"""Skins, button styles and styles of tips, chosen by the mouse and by the keyboard."""

from desktop import wait_for
from journey import Journey
from program import EDIT_HEIGHT, FILE_HEIGHT, TIP

# What stands in the title between the text and the buttons, half way down and half way across.
SKINS = {
    "XP (Blue)": (15, 79, 187),
    "3D stylized": (91, 65, 137),
    "Blue Steel": (47, 73, 105),
    "Riveted": (85, 59, 37),
    "Gray Steel": (81, 85, 89),
    "Gunmetal": (37, 42, 47),
    "Win 98": (6, 46, 152),
    "XP (Silver)": (211, 215, 227),
}
BUTTONS = ("Rectangular", "Rounded", "Hidden", "Flat", "Round")
TIPS = ("Rectangular Tooltext", "Balloon Tooltext", "Win 98 Style Tooltext")


class Looks(Journey):
    def title_becomes(self, program, colour):
        _, _, width, _ = program.place()
        place = program.at(width // 2, 14)
        wait_for(lambda: max(abs(a - b) for a, b in zip(self.screen.pixel(*place), colour)) <= 4,
                 f"a title of {colour} at {place}")

    def test_each_skin_is_chosen_by_the_mouse(self):
        program = self.compose()
        rows = tuple(SKINS)
        for number, (skin, colour) in list(enumerate(SKINS.items(), 1))[1:] + [(1, ("XP (Blue)", SKINS["XP (Blue)"]))]:
            program.choose_from_tools("Appearance", rows, skin)
            self.user.setting_becomes("Skin type", str(number))
            self.title_becomes(program, colour)
        program.close()

    def test_each_skin_is_chosen_by_the_keyboard_and_survives_a_restart(self):
        program = self.compose()
        for number, colour in enumerate(SKINS.values(), 1):
            self.screen.key("F10")
            program.popup()
            # The menu is a ring, and Appearance the third from its end.
            self.screen.key("Right", "Right", "Up", "Up", "Up", "Right")
            program.popup(2)
            self.screen.key(*["Down"] * (number - 1), "Return")
            self.user.setting_becomes("Skin type", str(number))
            self.title_becomes(program, colour)
        program.close()
        program = self.compose()
        self.title_becomes(program, SKINS["XP (Silver)"])
        program.close()

    def test_alt_alone_opens_the_first_menu_arrows_walk_and_escape_leaves(self):
        program = self.compose()
        self.screen.do("keydown", "alt", "keyup", "alt")
        first = program.popup()
        self.screen.key("Right")
        wait_for(lambda: program.popups() and first not in program.popups(), "the second menu")
        self.assertEqual(self.screen.geometry(program.popup())[3], EDIT_HEIGHT)
        self.screen.key("Left")
        wait_for(lambda: program.popups() == [first], "the first menu again")
        self.screen.key("Escape")
        wait_for(lambda: not program.popups(), "the menu's end")
        self.screen.key("alt+e")
        self.assertEqual(self.screen.geometry(program.popup())[3], EDIT_HEIGHT)
        self.screen.key("Escape")
        wait_for(lambda: not program.popups(), "the menu's end by one key")
        self.screen.do("keydown", "alt", "keyup", "alt")
        self.assertEqual(self.screen.geometry(program.popup())[3], FILE_HEIGHT)
        self.screen.do("keydown", "alt", "keyup", "alt")
        wait_for(lambda: not program.popups(), "the menu's end by the same key")
        program.close()

    def test_square_skins_have_square_corners_and_the_others_cut_ones(self):
        for number, square in ((1, False), (4, False), (6, True), (7, True)):
            self.user.keep(Skin_type=number)
            program = self.compose()
            wait_for(lambda: self.screen.pixel(*program.at(100, 14)) != (0, 0, 0), "a painted window")
            corner = self.screen.pixel(*program.at(0, 0))
            self.assertEqual(corner != (0, 0, 0), square, (number, corner))
            program.close()

    def test_each_button_style_changes_the_buttons_and_is_stored(self):
        program = self.compose()
        bar = lambda: self.screen.picture(*program.at(12, 52), 400, 40)
        seen = []
        for number, style in enumerate(BUTTONS, 2):
            program.choose_from_tools("Button Styles", BUTTONS, style)
            self.user.setting_becomes("Skin buttons", str(number))
            wait_for(lambda: bar() not in seen, f"other buttons for {style}")
            self.screen.move(*program.at(600, 500))
            wait_for(lambda: (first := bar()) == bar() and first not in seen, "buttons at rest")
            seen.append(bar())
        program.close()

    def test_each_tip_style_shapes_the_next_tip(self):
        program = self.compose()
        shapes = []
        for number, style in enumerate(TIPS):
            program.choose_from_tools("Tooltext Style", TIPS, style)
            self.user.setting_becomes("ToolText type", str(number))
            self.screen.move(*program.at(26, 72))
            tip = self.screen.window(TIP)
            left, top, width, height = self.screen.geometry(tip)
            shapes.append((width, height))
            if style.startswith("Win"):
                ground = lambda: self.screen.pixel(left + width // 2, top + 3)
                wait_for(lambda: ground() == (255, 255, 225), "a plain ground")
            self.screen.move(*program.at(600, 500))
            self.screen.gone(TIP)
        self.assertGreater(shapes[1][1], shapes[0][1] + 8, "a balloon has a stem")
        program.close()
