# SPDX-License-Identifier: GPL-2.0-or-later
"""A program that does not end properly loses nothing: the next start offers the score."""

import os
import random
import signal
import time

import desktop
from composing import Tableau, filled, play_line_moves
from desktop import wait_for
from journey import MARCH, Journey

PERIOD = 2  # seconds from a change to the file at most; the rest of the program has ten
ROUNDS = int(os.environ.get("VELMORA_KILLS", "2"))


class Recovery(Journey):
    def new_user(self, **environment):
        return super().new_user(VELMORA_RECOVERY_PERIOD=str(PERIOD), **environment)

    def kept(self):
        """The recovery files."""
        try:
            names = os.listdir(self.user.path("data", "recovery"))
        except OSError:
            return []
        return [self.user.path("data", "recovery", name) for name in sorted(names)]

    def score(self):
        """The score in the one recovery file, without its last line; nothing while there is none."""
        files = [path for path in self.kept() if path.endswith(".sng")]
        if len(files) != 1:
            return None
        with open(files[0], "rb") as file:
            return file.read().partition(b"Recovery=")[0]

    def kept_after(self, change):
        """Waits for the file to follow a change."""
        before = self.score()
        change()
        return wait_for(lambda: self.score() not in (before, None) and self.score(), "the recovery file",
                        PERIOD + desktop.patience)

    def kill(self, program):
        program.process.send_signal(signal.SIGKILL)
        program.process.wait()
        wait_for(lambda: not self.screen.windows(), "the end of the windows")

    def start_again(self, *words):
        program = self.compose(*words)
        program.focus(wait_for(program.question, "the question"))
        return program

    def answer(self, program, key):
        self.screen.key(key)
        wait_for(lambda: not program.question(), "the question's end")
        program.focus(program.window)

    def save(self, program, name):
        path = self.user.path("home", name)
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - " + name)
        with open(path, "rb") as file:
            return file.read()

    def crash_with_a_note(self):
        program = self.compose()
        kept = self.kept_after(lambda: Tableau(program).note(4, 60, 6))
        self.kill(program)
        return kept

    def test_yes_brings_back_what_was_drawn(self):
        kept = self.crash_with_a_note()
        program = self.start_again(MARCH)
        self.answer(program, "alt+y")
        program.title_becomes("Velmora*")  # it had no name, and the march stays shut
        self.assertEqual(self.save(program, "back.sng"), kept)
        self.assertEqual(filled(self.user.path("home", "back.sng")), list(range(4, 10)))
        program.close()
        self.assertEqual(self.kept(), [], "a proper end leaves nothing")

    def test_the_name_comes_back_and_its_file_stays_as_it_was(self):
        path = self.user.path("home", "tune.sng")
        with open(MARCH, "rb") as march, open(path, "wb") as file:
            file.write(march.read())
        with open(path, "rb") as file:
            before = file.read()
        program = self.compose(path)
        program.title_becomes("Velmora - tune.sng")
        kept = self.kept_after(lambda: Tableau(program).note(4, 60, 6))
        self.kill(program)
        program = self.start_again(path)
        self.answer(program, "alt+y")
        program.title_becomes("Velmora - tune.sng*")
        with open(path, "rb") as file:
            self.assertEqual(file.read(), before)
        self.assertEqual(self.save(program, "other.sng"), kept)

        def draw_and_play():
            Tableau(program).note(24, 70, 6)
            self.screen.key("space")
        kept = self.kept_after(draw_and_play)
        self.assertTrue(play_line_moves(program), "it was kept while it played")
        self.screen.key("space")
        self.assertEqual(self.save(program, "played.sng"), kept)
        program.close()

    def test_no_removes_it_and_the_named_score_opens(self):
        self.crash_with_a_note()
        program = self.start_again(MARCH)
        self.answer(program, "alt+n")
        program.title_becomes("Velmora - march.sng")
        self.assertEqual(self.kept(), [])
        program.close()
        self.compose().close()  # without a question, or the window would not get the focus

    def test_escape_asks_again_at_the_next_start(self):
        kept = self.crash_with_a_note()
        program = self.start_again()
        self.answer(program, "Escape")
        program.close()
        self.assertEqual(self.score(), kept)
        program = self.start_again()
        self.answer(program, "alt+n")
        program.close()
        self.assertEqual(self.kept(), [])

    def test_a_damaged_file_is_put_aside_without_a_word(self):
        os.makedirs(self.user.path("data", "recovery"))
        with open(self.user.path("data", "recovery", "score-1.sng"), "wb") as file:
            file.write(random.Random(5).randbytes(5000))
        program = self.compose()
        self.assertFalse(program.question())
        program.close()
        self.assertEqual([os.path.basename(path) for path in self.kept()], ["score-1.sng.damaged"])

    def test_a_full_disk_is_no_reason_for_words(self):
        folder = self.user.path("data", "recovery")
        os.makedirs(folder)
        self.small_disk(folder, "4k")
        program = self.compose(MARCH)
        program.title_becomes("Velmora - march.sng")
        time.sleep(PERIOD + 2)  # a look at a stretch of time: nothing is to be seen
        self.assertFalse(program.question())
        self.assertEqual(os.listdir(folder), [])
        program.close()

    def test_killed_at_random_moments_it_always_comes_back_whole(self):
        chance = random.Random()
        self.crash_with_a_note()
        for kill in range(ROUNDS):
            with self.subTest(kill=kill):
                kept = self.score()
                program = self.start_again()
                self.answer(program, "alt+y")
                name = f"whole {kill}.sng"
                self.assertEqual(self.save(program, name), kept)
                os.remove(self.user.path("home", name))  # or nothing would be lost and nothing asked
                tableau = Tableau(program)
                end = time.monotonic() + chance.uniform(0, 1.3 * PERIOD)
                while time.monotonic() < end:
                    position = chance.randrange(80)
                    tableau.note(position, chance.randrange(45, 80), chance.randrange(1, 10))
                self.kill(program)
