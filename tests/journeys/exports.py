# SPDX-License-Identifier: GPL-2.0-or-later
"""A score as a file for others: by the menu, under a name that is typed, and told of when the disk is full."""

import os
import subprocess

from desktop import wait_for
from journey import MARCH, Journey

FROM_THE_END = {"MP3": 3, "WAV": 4, "MIDI": 5}  # steps up the File menu


class Exports(Journey):
    def export(self, program, kind, path):
        program.open_menu("File")
        self.screen.key(*["Up"] * FROM_THE_END[kind], "Return")
        title = "^Export as " + kind
        program.focus(self.screen.window(title))
        self.screen.key("ctrl+a")
        self.screen.type(path)
        self.screen.key("Return")
        wait_for(lambda: program.question() or not self.screen.windows(title), "an answer to Enter")

    def answer(self, program, key):
        box = wait_for(program.question, "a question or words")
        program.focus(box)
        self.screen.key(key)
        wait_for(lambda: program.question() != box, "its end")

    def report_is_read(self):
        """Enter closes the window once the file is made, and does nothing before."""
        report = self.screen.windows("^Export as")
        if report and self.screen.focused() == report[0]:
            self.screen.key("Return")
        return not report

    def test_a_score_becomes_a_file_of_each_kind(self):
        program = self.compose(MARCH)
        program.title_becomes("Velmora - march.sng")
        witnesses = {"MIDI": ("mid", ["midicsv"]), "WAV": ("wav", ["soxi"]), "MP3": ("mp3", ["mpg123", "-q", "-t"])}
        for kind, (extension, witness) in witnesses.items():
            path = self.user.path("home", "tune." + extension)
            self.export(program, kind, self.user.path("home", "tune"))
            wait_for(lambda: os.path.exists(path), "the file")
            done = subprocess.run([*witness, path], capture_output=True, text=True, timeout=60)
            self.assertEqual(done.returncode, 0, done.stderr)
            wait_for(self.report_is_read, "the end of the window of what takes longer than a second")
            program.focus(program.window)
        program.title_becomes("Velmora - march.sng")
        program.close()

    def test_a_full_disk_is_told_and_the_old_file_stays(self):
        small = self.user.path("small")
        os.mkdir(small)
        self.small_disk(small, "64k")
        path = os.path.join(small, "tune.wav")
        with open(path, "w") as file:
            file.write("an old file")
        program = self.compose(MARCH)
        program.title_becomes("Velmora - march.sng")
        self.export(program, "WAV", path)
        self.answer(program, "y")  # it may be replaced
        self.screen.gone("^Export as")
        self.answer(program, "Return")  # what became of it
        self.assertEqual(os.listdir(small), ["tune.wav"])
        with open(path) as file:
            self.assertEqual(file.read(), "an old file")
        program.focus(program.window)
        program.close()
