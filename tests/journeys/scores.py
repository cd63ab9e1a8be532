# SPDX-License-Identifier: GPL-2.0-or-later
"""Scores: opened, played, saved and lost on purpose only."""

import os
import shutil
import subprocess
import time

import program as programs
from composing import Tableau, filled
from desktop import wait_for
from journey import MARCH, Journey
from program import SAVE_DIALOG


def notes(path):
    """Every message that playing the score sends."""
    done = subprocess.run([programs.cli, "trace", path], capture_output=True, text=True, timeout=120)
    if done.returncode != 0:
        raise AssertionError(done.stderr)
    return done.stdout


def length(path):
    done = subprocess.run([programs.cli, "info", path], capture_output=True, text=True, timeout=60)
    return [line for line in done.stdout.splitlines() if line.startswith("SongEnd")]


class Scores(Journey):
    def open_march(self):
        program = self.compose(MARCH)
        program.title_becomes("Velmora - march.sng")
        return program

    def open_changed_march(self):
        """With a note more, so that there is something to be asked about."""
        program = self.open_march()
        Tableau(program).note(60, 45, 2)
        program.title_becomes("Velmora - march.sng*")
        return program

    def ask(self, program):
        self.screen.key("ctrl+q")
        question = wait_for(program.question, "the question")
        program.focus(question)

    def wakes(self, program):
        """How often the main thread has run."""
        with open(f"/proc/{program.process.pid}/status") as status:
            return sum(int(line.split()[1]) for line in status if "ctxt_switches" in line)

    def plays(self, program):
        """Its thread wakes at every step of the score, and not at all at rest."""
        for _ in range(3):
            before = self.wakes(program)
            time.sleep(0.4)  # a look at a stretch of time; what is waited for is the answer
            if self.wakes(program) - before < 2:
                return False
        return True

    def test_space_plays_and_space_stops(self):
        program = self.open_march()
        wait_for(lambda: not self.plays(program), "rest")
        self.screen.key("space")
        wait_for(lambda: self.plays(program), "playing")
        self.screen.key("space")
        wait_for(lambda: not self.plays(program), "rest")
        self.screen.key("ctrl+q")  # nothing is unsaved
        program.ends()

    def test_it_closes_while_it_plays(self):
        program = self.open_changed_march()
        self.screen.key("space")
        wait_for(lambda: self.plays(program), "playing")
        self.ask(program)
        self.screen.key("alt+d")
        program.ends()

    def test_it_ends_at_once_even_in_the_middle_of_a_very_long_step(self):
        path = self.user.path("slow.sng")
        with open(MARCH, encoding="utf-8") as march, open(path, "w", encoding="utf-8") as slow:
            slow.write(march.read().replace("Tempo=107", "Tempo=2"))  # a position lasts seven seconds
        program = self.compose(path)
        program.title_becomes("Velmora - slow.sng")
        self.screen.key("space")
        begin = time.monotonic()
        self.screen.key("ctrl+q")
        program.ends()
        self.assertLess(time.monotonic() - begin, 5)

    def test_escape_in_the_question_keeps_the_program_and_discard_ends_it(self):
        program = self.open_changed_march()
        self.ask(program)
        self.screen.key("Escape")
        wait_for(lambda: not program.question(), "the question's end")
        program.focus(program.window)
        self.ask(program)
        self.screen.key("alt+d")
        program.ends()

    def test_save_writes_the_scores_own_file_and_ends(self):
        path = self.user.path("home", "my march.sng")
        shutil.copy(MARCH, path)
        program = self.compose(path)
        program.title_becomes("Velmora - my march.sng")
        Tableau(program).note(60, 45, 2)
        program.title_becomes("Velmora - my march.sng*")
        self.ask(program)
        self.screen.key("alt+s")
        program.ends()
        self.assertNotEqual(notes(path), notes(MARCH))
        self.assertEqual(length(path), ["SongEnd: 928"])

    def test_save_asks_for_the_name_of_a_new_score_and_ends(self):
        program = self.compose()
        Tableau(program).note(4, 60, 6)
        program.title_becomes("Velmora*")
        path = self.user.path("home", "new.sng")
        self.ask(program)
        self.screen.key("alt+s")
        program.save_as(path)
        program.ends()
        self.assertEqual(filled(path), list(range(4, 10)))

    def test_ctrl_s_writes_to_the_own_file_without_a_question(self):
        path = self.user.path("home", "mine.sng")
        shutil.copy(MARCH, path)
        program = self.compose(path)
        program.title_becomes("Velmora - mine.sng")
        Tableau(program).note(60, 45, 2)
        program.title_becomes("Velmora - mine.sng*")
        self.screen.key("ctrl+s")
        program.title_becomes("Velmora - mine.sng")
        self.assertFalse(self.screen.windows(SAVE_DIALOG))
        self.assertNotEqual(notes(path), notes(MARCH))
        self.screen.key("ctrl+q")
        program.ends()

    def test_in_classic_manners_leaving_always_asks_and_save_always_wants_a_name(self):
        self.user.keep(Classic=1)
        program = self.open_march()
        self.screen.key("ctrl+s")
        program.focus(self.screen.window(SAVE_DIALOG))
        self.screen.key("Escape")
        self.screen.gone(SAVE_DIALOG)
        program.focus(program.window)
        self.ask(program)
        self.screen.key("Escape")
        wait_for(lambda: not program.question(), "the question's end")
        program.focus(program.window)
        path = self.user.path("home", "my march.sng")
        self.ask(program)
        self.screen.key("alt+y")
        program.save_as(path)
        program.ends()
        self.assertEqual(notes(path), notes(MARCH))

    def test_cancel_in_the_save_dialog_keeps_the_program_and_the_score(self):
        program = self.compose()
        Tableau(program).note(4, 60, 6)
        self.ask(program)
        self.screen.key("alt+s")
        program.focus(self.screen.window(SAVE_DIALOG))
        self.screen.key("Escape")
        self.screen.gone(SAVE_DIALOG)
        program.focus(program.window)
        path = self.user.path("home", "kept.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - kept.sng")
        self.assertEqual(filled(path), list(range(4, 10)))
        program.close()

    def test_a_file_in_the_way_is_replaced_only_after_a_yes(self):
        program = self.open_march()
        path = self.user.path("home", "old.sng")
        with open(path, "w") as file:
            file.write("old")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.focus(wait_for(program.question, "the question"))
        self.screen.key("Escape")
        wait_for(lambda: not program.question(), "the question's end")
        with open(path) as file:
            self.assertEqual(file.read(), "old")
        program.focus(self.screen.window(SAVE_DIALOG))
        self.screen.key("Return")
        program.focus(wait_for(program.question, "the question"))
        self.screen.key("y")
        self.screen.gone(SAVE_DIALOG)
        program.title_becomes("Velmora - old.sng")
        self.assertEqual(notes(path), notes(MARCH))
        program.close()

    def test_ctrl_z_brings_a_cleared_score_back(self):
        program = self.open_march()
        self.screen.key("ctrl+n")
        program.title_becomes("Velmora")
        self.screen.key("ctrl+z")
        wait_for(lambda: self.screen.name(program.window).startswith("Velmora - march.sng"), "the march")
        path = self.user.path("home", "back.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - back.sng")
        self.assertEqual(notes(path), notes(MARCH))
        program.close()

    def test_an_empty_score_closes_without_a_question(self):
        program = self.compose()
        self.screen.key("ctrl+q")
        program.ends()
        self.assertFalse(os.path.exists(self.user.path("data", "Songs", "temp.sng")))
