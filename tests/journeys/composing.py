# SPDX-License-Identifier: GPL-2.0-or-later
"""Drawing a tune with the mouse, hearing it, keeping it."""

import os
import subprocess
import time

import program as programs
from desktop import wait_for
from journey import Journey
from program import SAVE_DIALOG

PLAY, PAUSE, STOP, LOOP = ((x, 70) for x in (134, 198, 230, 326))
UNDO = (434, 70)
RED, BLUE = (255, 0, 0), (0, 0, 255)


class Tableau:
    """Places on the Tableau of a window as it opens: position and row to pixels of the screen."""

    def __init__(self, program):
        self.program = program
        self.screen = program.screen
        self.top_row = 42

    def melody(self, position, row):
        return self.program.at(48 + 12 * position + 5, 311 + 8 * (row - self.top_row) + 5)

    def beat(self, position, line):
        return self.program.at(48 + 12 * position + 5, 236 + 12 * line + 6)

    def square(self, channel):
        gap = 12 if channel >= 8 else 0
        place = channel - (1 if channel > 9 else 0)
        return self.program.at(12 + 4 + 24 * place + gap + 10, 170)

    def stroke(self, begin, end, button=1):
        """A hand's: down, along, up."""
        steps = max(1, abs(end[0] - begin[0]) // 12)
        words = ["mousemove", *begin, "mousedown", button]
        for step in range(1, steps + 1):
            words += ["mousemove", begin[0] + (end[0] - begin[0]) * step // steps,
                      begin[1] + (end[1] - begin[1]) * step // steps]
        self.screen.do(*words, "mouseup", button)

    def note(self, position, row, length):
        self.stroke(self.melody(position, row), self.melody(position + length - 1, row))

    def drum(self, position, line, length=1):
        self.stroke(self.beat(position, line), self.beat(position + length - 1, line))


def filled(path, channel=0):
    """Positions of a channel that hold something, in a saved score: its notes stand in every other line."""
    with open(path) as file:
        cells = file.readlines()[2 * channel].split(",")
    return [position for position, cell in enumerate(cells) if cell.strip() not in ("-1", "")]


def play_line_moves(program):
    """Whether anything changes on the Tableau's first line, where no notes are."""
    left, top = program.at(48, 311)
    before = program.screen.picture(left, top, 1100, 2)
    time.sleep(0.4)  # three steps of the score
    return program.screen.picture(left, top, 1100, 2) != before


class Composing(Journey):
    def trace(self, path):
        done = subprocess.run([programs.cli, "trace", path], capture_output=True, text=True, timeout=120)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def save(self, program, path):
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - " + os.path.basename(path))
        with open(path, "rb") as file:
            return file.read()

    def draw_four_bars(self, program):
        """A melody on the first channel, longer notes on the second, a beat on the third group."""
        tableau = Tableau(program)
        for bar in range(4):
            for beat, row in enumerate((60, 58, 56, 55)):
                tableau.note(16 * bar + 4 * beat, row, 3)
        self.screen.click(*tableau.square(1))
        for bar in range(4):
            tableau.note(16 * bar, 72, 15)
        for beat in range(16):
            tableau.drum(4 * beat, 1)
        return tableau

    def test_four_bars_are_drawn_played_kept_and_opened_again(self):
        program = self.compose()
        tableau = self.draw_four_bars(program)
        # The second channel lies over the first no more than it must: both are seen.
        left, top = tableau.melody(0, 72)
        wait_for(lambda: self.screen.pixel(left + 20, top + 0) == BLUE or
                 self.screen.pixel(left + 20, top) != (255, 255, 255), "the second channel's note")
        path = self.user.path("home", "four bars.sng")
        first = self.save(program, path)

        self.screen.click(*program.at(*PLAY))
        wait_for(lambda: play_line_moves(program), "the play line")
        self.screen.click(*program.at(*PAUSE))
        wait_for(lambda: not play_line_moves(program), "the pause")
        self.screen.click(*program.at(*PLAY))
        wait_for(lambda: play_line_moves(program), "the play line after the pause")
        self.screen.click(*program.at(*STOP))
        wait_for(lambda: not play_line_moves(program), "the stop")
        self.screen.click(*program.at(*LOOP))
        self.screen.click(*program.at(*PLAY))
        wait_for(lambda: play_line_moves(program), "the loop")
        self.screen.click(*program.at(*STOP))
        wait_for(lambda: not play_line_moves(program), "the end of the loop")

        # A note too many is taken back.
        tableau.note(70, 60, 4)
        self.screen.click(*program.at(*UNDO))
        second = self.save(program, self.user.path("home", "again.sng"))
        self.assertEqual(first, second, "undo brings the score back as it was")
        program.close()

        program = self.compose(path)
        program.title_becomes("Velmora - four bars.sng")
        third = self.save(program, self.user.path("home", "third.sng"))
        self.assertEqual(first, third, "opened and saved, it is the same file")
        program.close()

    def test_a_right_click_erases_the_whole_note(self):
        program = self.compose()
        tableau = Tableau(program)
        tableau.note(4, 60, 6)
        tableau.note(20, 60, 2)
        self.screen.click(*tableau.melody(7, 60), 3)
        path = self.user.path("home", "one.sng")
        self.save(program, path)
        self.assertEqual(filled(path), [20, 21])
        program.close()

    def test_what_is_drawn_reads_as_midi(self):
        program = self.compose()
        tableau = Tableau(program)
        tableau.note(0, 60, 4)
        tableau.note(4, 58, 4)
        self.screen.key("ctrl+shift+s")
        path = self.user.path("home", "tune")
        dialog = self.screen.window(SAVE_DIALOG)
        program.focus(dialog)
        left, top, _, height = self.screen.geometry(dialog)
        self.screen.click(left + 300, top + height - 24)  # the list of types of files
        program.popup()
        self.screen.key("Down", "Return")
        wait_for(lambda: not program.popups(), "the list's end")
        self.screen.key("alt+n")
        program.save_as(path)
        wait_for(lambda: os.path.exists(path + ".mid"), "the MIDI file")
        done = subprocess.run(["midicsv", path + ".mid"], capture_output=True, text=True, timeout=60)
        notes = [line.split(", ") for line in done.stdout.splitlines() if "Note_on_c" in line]
        pitches = [int(words[4]) for words in notes if int(words[5]) > 0]
        self.assertEqual(pitches, [67, 69])
        program.close()

    def test_the_wheel_scrolls_rows_and_with_shift_columns(self):
        program = self.compose()
        tableau = Tableau(program)
        tableau.note(10, 60, 1)
        ball = tableau.melody(10, 60)
        self.screen.move(*tableau.melody(40, 60))  # off the note
        wait_for(lambda: self.screen.pixel(ball[0], ball[1]) == RED, "the note")
        self.screen.click(*tableau.melody(40, 60), 5)
        wait_for(lambda: self.screen.pixel(ball[0], ball[1] - 24) == RED, "the note three rows higher")
        self.screen.do("keydown", "shift")
        self.screen.click(*tableau.melody(40, 60), 5)
        self.screen.do("keyup", "shift")
        wait_for(lambda: self.screen.pixel(ball[0] - 48, ball[1] - 24) == RED, "the note four columns earlier")
        program.close()

    def test_a_stroke_ends_where_the_window_loses_the_mouse(self):
        program = self.compose()
        tableau = Tableau(program)
        begin, end = tableau.melody(4, 60), tableau.melody(9, 60)
        self.screen.do("mousemove", *begin, "mousedown", 1, "mousemove", *end)
        self.screen.key("ctrl+q")  # the question takes the focus away
        wait_for(lambda: program.question() or not program.running(), "the question")
        self.screen.do("mouseup", 1)
        self.assertTrue(program.running(), "there is a note to be asked about")
        self.screen.key("Escape")
        wait_for(lambda: not program.question(), "the question's end")
        program.focus(program.window)
        path = self.user.path("home", "kept.sng")
        self.save(program, path)
        self.assertEqual(filled(path), list(range(4, 10)))
        program.close()

    def test_resizing_and_closing_while_it_plays(self):
        program = self.compose()
        self.draw_four_bars(program)
        self.screen.click(*program.at(*PLAY))
        wait_for(lambda: play_line_moves(program), "the play line")
        left, top, width, height = program.place()
        self.screen.do("windowsize", program.window, 880, 520)
        wait_for(lambda: program.place()[2:] == (880, 520), "the smallest size")
        self.screen.do("windowsize", program.window, width, height)
        wait_for(lambda: program.place()[2:] == (width, height), "the old size")
        self.screen.key("ctrl+q")
        wait_for(program.question, "the question")
        self.screen.key("alt+d")
        program.ends()

    def test_a_broken_file_opened_while_it_plays_changes_nothing(self):
        program = self.compose()
        Tableau(program).note(0, 60, 8)
        path = self.user.path("home", "broken.sng")
        with open(path, "wb") as file:
            file.write(b"\0\xff no score")
        self.screen.click(*program.at(*PLAY))
        self.screen.key("ctrl+o")
        program.focus(wait_for(program.question, "the question about the note"))
        self.screen.key("alt+d")
        program.focus(self.screen.window("^Open Score File"))
        self.screen.type(path)
        self.screen.key("Return")
        box = wait_for(program.question, "the words")
        program.focus(box)
        self.screen.key("Return")
        wait_for(lambda: not program.question(), "their end")
        program.focus(program.window)
        kept = self.user.path("home", "kept.sng")
        self.save(program, kept)
        self.assertIn("0x7F4390", self.trace(kept), "the note that was drawn")
        program.close()


class LargeScale(Journey):
    """A screen at twice the scale, where every length is doubled."""
    SIZE = (2732, 1536)

    def cell(self, program, position, row):
        return program.at(2 * (48 + 12 * position + 5), 2 * (311 + 8 * (row - 42) + 5))

    def test_notes_stand_where_they_are_drawn(self):
        program = self.compose(user=self.new_user(QT_SCALE_FACTOR="2"))
        Tableau(program).stroke(self.cell(program, 3, 60), self.cell(program, 6, 60))
        wait_for(lambda: self.screen.pixel(*self.cell(program, 5, 60)) == RED, "the note's line")
        path = self.user.path("home", "large.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - large.sng")
        self.assertEqual(filled(path), [3, 4, 5, 6])
        program.close()


class SecondScreen(Journey):
    """Two screens side by side, the second one at twice the scale."""
    SIZE = (4200, 2000)
    FIRST = 1366

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.screen.split(cls.FIRST)

    def test_a_window_that_comes_there_is_drawn_on_as_before(self):
        program = self.compose(user=self.new_user(QT_SCREEN_SCALE_FACTORS="1;2"))
        self.screen.do("windowmove", program.window, self.FIRST + 100, 40)
        wait_for(lambda: program.place()[0] >= self.FIRST and program.place()[2] >= 2 * 880, "the room it needs there")
        left, top = program.at(2 * (48 + 12 * 3 + 5), program.place()[3] - 2 * 200)
        Tableau(program).stroke((left, top), (left + 2 * 12 * 3, top))
        wait_for(lambda: RED in {self.screen.pixel(left + 2 * 12 * 2, top + y) for y in range(-16, 17)}, "the note's line")
        path = self.user.path("home", "second.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - second.sng")
        self.assertEqual(filled(path), [3, 4, 5, 6])
        program.close()


class Stamping(Journey):
    """The Melody Maker's own example: 60 notes long, a loop of 12, 8 of which are playable."""

    MAKER, FIRST_BOX, CREATE = (29, 102), (728, 108), (1038, 122)
    LENGTH, LOOP, PLAYABLE = (200, 122), (336, 122), (472, 122)

    def type_into(self, program, place, number):
        program.click(*place)
        self.screen.key("ctrl+a")
        self.screen.type(str(number))

    def test_a_motif_is_stamped_by_the_window_as_by_the_companion(self):
        program = self.compose()
        tableau = Tableau(program)
        tableau.note(0, 60, 2)
        tableau.note(3, 58, 3)
        path = self.user.path("home", "motif.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - motif.sng")

        program.click(*self.MAKER)
        self.type_into(program, self.LENGTH, 60)
        self.type_into(program, self.LOOP, 12)
        self.type_into(program, self.PLAYABLE, 8)
        program.click(*self.FIRST_BOX)
        program.click(*self.CREATE)
        stamped = self.user.path("home", "stamped.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(stamped)
        program.title_becomes("Velmora - stamped.sng")
        self.assertEqual(filled(stamped), [at + part for at in (0, 12, 24, 36, 48, 60) for part in (0, 1, 3, 4, 5)])

        told = self.user.path("home", "told.sng")
        done = subprocess.run([programs.cli, "edit", path, told, "pick 0", "cycle 8 12 60", "create 1"],
                              capture_output=True, text=True, timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        with open(stamped, "rb") as one, open(told, "rb") as other:
            self.assertEqual(one.read(), other.read())
        program.close()


class Tools(Journey):
    """Block editing and Single Note Effects, by the mouse."""

    MAKER, EFFECTS = (29, 102), (29, 122)
    FIRST_BOX, LOOP, PLAYABLE = (728, 108), (336, 122), (472, 122)
    SELECT, COPY, OVERWRITE = ((x, 70) for x in (402, 510, 574))
    CHORD = (342, 121)

    def test_a_part_is_copied_and_pasted(self):
        program = self.compose()
        tableau = Tableau(program)
        tableau.note(2, 60, 3)
        program.click(*self.MAKER)
        for place, number in ((self.LOOP, 12), (self.PLAYABLE, 4)):
            program.click(*place)
            self.screen.key("ctrl+a")
            self.screen.type(str(number))
        program.click(*self.FIRST_BOX)
        program.click(*self.SELECT)
        tableau.stroke(tableau.melody(2, 66), tableau.melody(6, 66))
        program.click(*self.COPY)
        self.screen.click(*tableau.melody(20, 66))
        program.click(*self.OVERWRITE)
        path = self.user.path("home", "pasted.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - pasted.sng")
        self.assertEqual(filled(path), [2, 3, 4, 20, 21, 22])
        program.close()

    def test_a_chord_is_dragged_over_three_notes(self):
        program = self.compose()
        tableau = Tableau(program)
        for position in (2, 8, 14):
            tableau.note(position, 60, 2)
        program.click(*self.EFFECTS)
        program.click(*self.CHORD)
        program.popup()
        self.screen.key("Down", "Return")
        wait_for(lambda: not program.popups(), "the list's end")
        tableau.stroke(tableau.melody(2, 60), tableau.melody(15, 60), button=3)
        path = self.user.path("home", "chords.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(path)
        program.title_becomes("Velmora - chords.sng")
        self.assertEqual(filled(path), [2, 3, 8, 9, 14, 15], "nothing is erased")
        done = subprocess.run([programs.cli, "trace", path], capture_output=True, text=True, timeout=60)
        ons = [int(line.split()[2][4:6], 16) for line in done.stdout.splitlines() if line.endswith("90")]
        self.assertEqual(ons, [67, 71, 74, 79] * 3)
        program.close()
