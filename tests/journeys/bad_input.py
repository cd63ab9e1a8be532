# SPDX-License-Identifier: GPL-2.0-or-later
"""What a disk, an editor and an environment can do to a program. It starts, says what it must and loses nothing."""

import os
import random

from desktop import wait_for
from journey import MARCH, Journey
from scores import notes

ABSURD = {
    "form1 width": "999999999", "form1 Height": "-5", "form1 left": "NaN", "form1 top": "1e38", "Skin type": "99",
    "Skin buttons": "-7", "ToolText type": "balloon", "Notes per measure": "0", "Beats per measure": "-3",
    "Type of note": "99999", "Intrumentval": "-1", "Intrumentval2": "30000", "Notationstyle": "77", "Devices": "4000",
    "Percussion": "perhaps",
}


class Settings(Journey):
    def opens_and_closes(self, user=None):
        program = self.compose(user=user)
        left, top, width, height = program.place()
        self.assertTrue(0 <= left and left + width <= self.SIZE[0] and 0 <= top and top + height <= self.SIZE[1],
                        (left, top, width, height))
        self.assertTrue(width >= 880 and height >= 520, (width, height))
        program.close()

    def test_random_bytes(self):
        self.user.write_settings(random.Random(7).randbytes(20000))
        self.opens_and_closes()
        self.assertEqual(self.user.settings()["form1 left"], str(33 * 15))

    def test_absurd_values(self):
        for line_height, notes_number in (("0", "-5"), ("32000", "2000000000")):
            with self.subTest(NumNotes=notes_number):
                values = dict(ABSURD, Line_Height=line_height, NumNotes=notes_number)
                self.user.write_settings("".join(f"Settings/{key}={value}\n" for key, value in values.items()))
                self.opens_and_closes()

    def test_a_file_in_place_of_the_folder(self):
        self.user.forget()
        with open(self.user.path("config", "velmora"), "w") as file:
            file.write("not a folder")
        self.opens_and_closes()
        with open(self.user.path("config", "velmora")) as file:
            self.assertEqual(file.read(), "not a folder")

    def test_a_folder_in_place_of_the_file(self):
        self.user.forget()
        os.makedirs(self.user.settings_path)
        self.opens_and_closes()
        self.assertEqual(os.listdir(self.user.settings_path), [])

    def test_a_link_to_a_full_device(self):
        self.user.forget()
        os.makedirs(os.path.dirname(self.user.settings_path))
        os.symlink("/dev/full", self.user.settings_path)
        self.opens_and_closes()
        self.assertEqual(os.readlink(self.user.settings_path), "/dev/full")

    def test_a_full_disk_keeps_the_settings_of_before(self):
        config = self.user.path("config")
        self.small_disk(config, "64k")
        self.user.write_settings("Settings/Skin type=6\n")
        with open(os.path.join(config, "filler"), "wb", buffering=0) as filler:
            try:
                while True:
                    filler.write(bytes(4096))
            except OSError:
                pass
        program = self.compose()
        wait_for(lambda: max(self.screen.pixel(*program.at(600, 14))) < 60, "the dark skin of before")
        program.close()
        self.assertEqual(self.user.settings(), {"Skin type": "6"})

    def test_no_home(self):
        home = self.new_user(HOME=None, XDG_CONFIG_HOME=None, VELMORA_HOME=None, XDG_RUNTIME_DIR=None,
                             XDG_DATA_HOME=self.user.path("data"))
        home.more["XDG_CONFIG_HOME"] = self.user.path("config")  # nothing is to be left in the real user's home
        self.opens_and_closes(user=home)
        self.assertTrue(os.path.exists(self.user.settings_path))

    def test_only_one_family_of_fonts(self):
        fonts = self.user.path("fonts.conf")
        with open(fonts, "w") as file:
            file.write('<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd"><fontconfig>'
                       "<dir>/usr/share/fonts/truetype/dejavu</dir>"
                       f"<cachedir>{self.user.path('cache')}</cachedir></fontconfig>")
        self.assertTrue(os.path.isdir("/usr/share/fonts/truetype/dejavu"))
        self.opens_and_closes(user=self.new_user(FONTCONFIG_FILE=fonts))


class BadScores(Journey):
    """Words are shown, and the program goes on: afterwards it opens a good score."""

    def refused(self, name, make):
        path = self.user.path("home", name)
        make(path)
        program = self.compose(path)
        box = wait_for(program.question, "words about the score")
        program.focus(box)
        self.screen.key("Return")
        wait_for(lambda: not program.question(), "the end of the words")
        program.focus(program.window)
        self.assertEqual(self.screen.name(program.window), "Velmora")
        self.screen.key("ctrl+q")
        program.ends()

    @staticmethod
    def writes(content):
        def write(path):
            with open(path, "wb") as file:
                file.write(content)
        return write

    def test_a_folder(self):
        self.refused("a folder.sng", os.mkdir)

    def test_a_missing_file(self):
        self.refused("missing.sng", lambda path: None)

    def test_a_binary_file(self):
        self.refused("binary.sng", self.writes(random.Random(3).randbytes(50000)))

    def test_an_empty_file_and_one_of_digits_keep_the_program_alive(self):
        for name, content in (("empty.sng", b""), ("digits.sng", b"7" * 3_000_000)):
            with self.subTest(name=name):
                path = self.user.path("home", name)
                self.writes(content)(path)
                program = self.compose(path)
                wait_for(lambda: program.question() or
                         name in self.screen.name(program.window), "words or a score")
                if program.question():
                    program.focus(program.question())
                    self.screen.key("Return")
                    wait_for(lambda: not program.question(), "the end of the words")
                    program.focus(program.window)
                program.close()
                with open(path, "rb") as file:
                    self.assertEqual(file.read(), content)

    def test_a_disk_without_room_for_the_score_is_said_and_nothing_is_lost(self):
        small = self.user.path("small")
        os.mkdir(small)
        self.small_disk(small, "16k")
        program = self.compose(MARCH)
        program.title_becomes("Velmora - march.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(os.path.join(small, "big.sng"))
        box = wait_for(program.question, "words about the disk")
        program.focus(box)
        self.screen.key("Return")
        wait_for(lambda: not program.question(), "the end of the words")
        self.assertEqual(os.listdir(small), [])
        program.focus(program.window)
        path = self.user.path("home", "whole.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - whole.sng")
        self.assertEqual(notes(path), notes(MARCH))
        program.close()
