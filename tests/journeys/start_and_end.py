# SPDX-License-Identifier: GPL-2.0-or-later
"""How the program comes up and goes down."""

import os
import signal

from composing import Tableau
from desktop import wait_for
from journey import MARCH, Journey
from program import START


class StartAndEnd(Journey):
    def test_the_start_window_stands_in_the_middle_of_the_screen(self):
        self.start()
        width, height = self.SIZE
        self.screen.geometry_becomes(self.screen.window(START), ((width - 480) // 2, (height - 300) // 2, 480, 300))

    def test_enter_opens_the_composing_window_and_the_start_window_goes(self):
        program = self.start()
        program.start_composing()
        self.assertEqual(self.screen.windows(START), [])
        program.close()

    def test_start_program_opens_the_composing_window_by_the_mouse(self):
        program = self.start()
        left, top, width, height = self.screen.geometry(self.screen.window(START))
        program.focus(self.screen.window(START))
        self.screen.click(left + width - 160, top + height - 32)
        program.form1()
        program.close()

    def test_exit_ends_with_status_0(self):
        program = self.start()
        left, top, width, height = self.screen.geometry(self.screen.window(START))
        self.screen.click(left + width - 60, top + height - 32)
        program.ends()

    def test_escape_and_enter_on_the_exit_button_end_the_start_window(self):
        for keys in (["Escape"], ["Tab", "Return"]):
            program = self.start()
            program.focus(self.screen.window(START))
            self.screen.key(*keys)
            program.ends()

    def test_ctrl_q_and_the_window_manager_end_the_program(self):
        for key in ("ctrl+q", "alt+F4"):  # the second is the manager's
            program = self.compose()
            self.screen.key(key)
            program.ends()

    def test_a_second_program_says_so_and_the_first_goes_on(self):
        first = self.compose()
        second = self.start()
        box = wait_for(lambda: [w for w in self.screen.windows(r"^Velmora$") if w != first.window],
                       "the message")[0]
        # Its words fill a box of a moderate size.
        _, _, width, height = self.screen.geometry(box)
        self.assertTrue(150 < width < 600 and 60 < height < 300, (width, height))
        second.focus(box)
        self.screen.key("Return")
        second.ends()
        self.assertTrue(first.running())
        first.focus(first.window)
        first.close()

    def hand_over(self, *words):
        """A second start with a score, which ends without a word."""
        second = self.start(*words)
        second.ends()
        self.assertEqual(second.said(), "")

    def test_a_second_start_hands_its_score_to_the_first_which_comes_to_the_front(self):
        first = self.compose()
        self.screen.do("windowminimize", first.window)
        wait_for(lambda: self.screen.focused() != first.window, "the iconified window")
        self.hand_over(MARCH)
        first.title_becomes("Velmora - march.sng")
        wait_for(lambda: self.screen.focused() == first.window, "the focus")
        first.close()

    def test_a_score_that_is_handed_over_costs_nothing_that_is_unsaved(self):
        first = self.compose()
        Tableau(first).note(4, 60, 6)
        first.title_becomes("Velmora*")
        self.hand_over(MARCH)
        first.focus(wait_for(first.question, "the question"))
        self.screen.key("Escape")
        wait_for(lambda: not first.question(), "the question's end")
        self.assertEqual(self.screen.name(first.window), "Velmora*")
        first.focus(first.window)
        self.screen.key("ctrl+q")
        first.focus(wait_for(first.question, "the question"))
        self.hand_over(MARCH)  # in the middle of a question: it waits for the answer
        self.screen.key("Escape")
        first.focus(wait_for(first.question, "the next question"))
        self.screen.key("alt+d")
        first.title_becomes("Velmora - march.sng")
        first.focus(first.window)
        first.close()

    def test_a_score_that_is_handed_to_the_start_window_begins_composing(self):
        first = self.start()
        self.screen.window(START)
        self.hand_over(MARCH)
        first.form1()
        first.title_becomes("Velmora - march.sng")
        first.close()

    def test_after_a_crash_scores_are_handed_over_again(self):
        first = self.compose()
        first.process.send_signal(signal.SIGKILL)
        first.process.wait()
        wait_for(lambda: not self.screen.windows(), "the end of the first one's windows")
        self.assertTrue(os.path.exists(self.user.path("runtime", "velmora.socket")), "it is left behind")
        second = self.compose()
        self.hand_over(MARCH)
        second.title_becomes("Velmora - march.sng")
        second.close()
        self.assertFalse(os.path.exists(self.user.path("runtime", "velmora.socket")))

    def test_after_a_crash_the_next_start_works_and_finds_the_settings(self):
        self.user.keep(Skin_type=6)
        first = self.compose(MARCH)
        first.process.send_signal(signal.SIGKILL)
        first.process.wait()
        wait_for(lambda: not self.screen.windows(), "the end of the first one's windows")
        second = self.compose()
        self.assertEqual(self.user.settings()["Skin type"], "6")
        second.close()

    def test_places_are_stored_while_the_program_runs(self):
        program = self.compose()
        left, top, width, height = program.place()
        self.assertEqual((left, top), (33, 33))  # 500 twips, by the size rule
        for key, pixels in (("form1 left", left), ("form1 top", top), ("form1 Width", width),
                            ("form1 Height", height)):
            self.user.setting_becomes(key, str(pixels * 15))
        program.close()

    def test_a_termination_by_the_session_ends_the_program(self):
        program = self.compose()
        program.process.terminate()
        program.process.wait(30)
        self.assertIn(program.process.returncode, (0, -signal.SIGTERM))
        self.compose().close()  # and the next start works
