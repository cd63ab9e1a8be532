# SPDX-License-Identifier: GPL-2.0-or-later
"""What a person does on the first evening: a tune with chords and drums, kept, left, opened again and heard whole."""

import subprocess
import time

import program as programs
from composing import PLAY, Tableau, filled
from desktop import wait_for
from journey import Journey
from midi import channels_with_notes
from sound import SoundServer


class Newcomer(Journey):
    EFFECTS, CHORD, SELECT = (29, 122), (342, 121), (402, 70)

    def hear(self, program, server):
        def play():
            yield
            program.focus(program.window)
            self.screen.click(*program.at(*PLAY))
            for _ in range(70):
                time.sleep(0.1)  # sound takes its time
                yield
        return server.listen(play)

    def compose_with(self, server, *words):
        user = self.new_user() if not hasattr(self, "own") else self.own
        self.own = user
        user.more.update(PULSE_SERVER=server.address)
        return self.compose(*words, user=user)

    def test_a_tune_with_chords_and_drums_is_kept_left_and_heard_again(self):
        server = SoundServer(self.user.path("sound"))
        self.addCleanup(server.stop)
        program = self.compose_with(server)
        tableau = Tableau(program)
        for position, row in ((2, 60), (8, 58), (14, 55), (20, 60)):
            tableau.note(position, row, 5)
        self.screen.click(*tableau.square(4))
        tableau.note(2, 67, 10)
        for position in (2, 8, 14, 20):
            tableau.drum(position, 2)
        self.screen.click(*tableau.square(0))
        program.click(*self.EFFECTS)
        program.click(*self.CHORD)
        program.popup()
        self.screen.key("Down", "Return")
        wait_for(lambda: not program.popups(), "the list's end")
        tableau.stroke(tableau.melody(2, 60), tableau.melody(4, 60), button=3)
        program.title_becomes("Velmora*")
        before = self.hear(program, server)
        path = self.own.path("home", "evening.sng")
        self.screen.key("ctrl+s")  # it has no name yet
        program.save_as(path)
        program.title_becomes("Velmora - evening.sng")
        self.screen.key("ctrl+q")  # nothing is unsaved, so nothing is asked
        program.ends()

        program = self.compose_with(server, path)
        program.title_becomes("Velmora - evening.sng")
        after = self.hear(program, server)
        self.assertGreater(len(before), 30)
        self.assertGreater(max(before[:30]), 500, "it sounds")
        # Every channel has its say: with one missing the curves would differ at its notes.
        far = [abs(one - other) for one, other in zip(before[:36], after[:36])]
        self.assertLess(sum(far) / len(far), 0.08 * max(before), (before[:36], after[:36]))
        program.close()

        exported = self.own.path("home", "evening.mid")
        subprocess.run([programs.cli, "convert", path, exported], check=True)
        listed = subprocess.run(["midicsv", exported], capture_output=True, text=True, check=True).stdout
        self.assertEqual(channels_with_notes(listed), {0, 4, 9})

    def test_cut_paste_undo_and_redo_go_by_keys_alone(self):
        program = self.compose()
        tableau = Tableau(program)
        tableau.note(2, 60, 3)
        tableau.note(8, 62, 3)
        path = self.user.path("home", "keys.sng")
        self.screen.key("ctrl+s")
        program.save_as(path)
        program.title_becomes("Velmora - keys.sng")

        def saved():
            self.screen.key("ctrl+s")
            program.title_becomes("Velmora - keys.sng")
            return filled(path)

        self.screen.key("ctrl+z")
        program.title_becomes("Velmora - keys.sng*")
        self.assertEqual(saved(), [2, 3, 4])
        self.screen.key("ctrl+shift+z")
        program.title_becomes("Velmora - keys.sng*")
        self.assertEqual(saved(), [2, 3, 4, 8, 9, 10])
        self.screen.key("ctrl+z", "ctrl+z")
        program.title_becomes("Velmora - keys.sng*")
        self.screen.key("ctrl+y", "ctrl+y")
        program.title_becomes("Velmora - keys.sng")  # what was saved is what stands there

        program.click(*self.SELECT)
        tableau.stroke(tableau.melody(2, 66), tableau.melody(7, 66))
        self.screen.key("ctrl+x")
        program.title_becomes("Velmora - keys.sng*")
        self.assertEqual(saved(), [2, 3, 4], "all that was marked is gone, and the rest has followed")
        self.screen.key("ctrl+shift+v")
        program.title_becomes("Velmora - keys.sng*")
        self.assertEqual(saved(), [2, 3, 4, 8, 9, 10])
        self.screen.key("ctrl+z", "ctrl+z")
        program.title_becomes("Velmora - keys.sng*")
        self.assertEqual(saved(), [2, 3, 4, 8, 9, 10])
        program.close()
