# SPDX-License-Identifier: GPL-2.0-or-later
"""Scores edited by script. Usage: edit_test.py PATH-OF-VELMORA-CLI"""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

from player_model import CHANNELS, CLEARED, Score

CLI = None
GUITAR = 24  # the melody instrument that a new user has


def run(*words, **more):
    return subprocess.run([CLI, *map(str, words)], capture_output=True, text=True, timeout=120, **more)


def read_score(path):
    """A file in the newest form, read by place."""
    with open(path, newline="") as file:
        lines = file.read().split("\r\n")
    rows = iter(lines)
    score = Score(200000)

    def fill(grid, first=0):
        for p, field in enumerate(next(rows).split(",")):
            grid[first + p] = int(field)

    for c in range(CHANNELS):
        fill(score.cell[c])
        fill(score.instrument[c])
    fill(score.channel_instrument)
    assert next(rows) == "Polyphonics"
    for r in range(9):
        fill(score.chord[r])
    for name in CLEARED:
        assert next(rows) == name
        for c in range(CHANNELS):
            fill(score.effects[name][c], 1)
    score.tempo = int(next(rows).split("=")[1])
    return score


class EditFixture(unittest.TestCase):
    options = ()

    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.out = self.path("out.sng")
        self.score = Score()
        self.score.channel_instrument = [5] * 8 + [130] * 8

    def path(self, name):
        return os.path.join(self.folder, name)

    def note(self, channel, position, row, length=1, instrument=5):
        for k in range(length):
            self.score.cell[channel][position + k] = row if k == 0 else 1000 + row
            self.score.instrument[channel][position + k] = instrument

    def save(self, name="in.sng"):
        with open(self.path(name), "w", newline="") as file:
            file.write(self.score.text())
        return self.path(name)

    def call(self, *steps, **more):
        return run("edit", *self.options, self.save(), self.out, *steps, **more)

    def edit(self, *steps, said=""):
        """The score that the steps make of the one at hand."""
        done = self.call(*steps)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", said))
        return read_score(self.out)

    def careful(self, *steps):
        done = run("edit", self.save(), self.out, *steps)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        return read_score(self.out)

    def assertNotes(self, score, channel, notes):
        """Exactly these cells are filled in the channel."""
        self.assertEqual({p: cell for p, cell in enumerate(score.cell[channel]) if cell != -1}, notes)


class EditTest(EditFixture):
    options = ("--classic",)

    # The Melody Maker

    def test_a_motif_of_8_in_a_loop_of_12_over_60_is_stamped_six_times_9_cells_long(self):
        for k in range(9):
            self.note(2, 1 + k, 60 + k)
        self.score.effects["Volume"][2][3] = 80  # of position 2
        self.score.effects["Volume"][2][10] = 70  # of position 9, which is copied without its effects
        made = self.edit("pick 2", "cycle 8 12 60", "create 1")
        self.assertNotes(made, 2, {at + k: 60 + k for at in (1, 13, 25, 37, 49, 61) for k in range(9)})
        self.assertEqual([p for p, v in enumerate(made.effects["Volume"][2]) if v == 80], [3, 15, 27, 39, 51, 63])
        self.assertEqual(made.effects["Volume"][2][22], 127)

    def test_without_a_box_nothing_is_stamped_but_undo_still_has_its_step(self):
        self.note(0, 0, 60, 3)
        self.assertNotes(self.edit("cycle 2 4 20", "create 0"), 0, {0: 60, 1: 1060, 2: 1060})
        made = self.edit("stroke 0 70 5 5", "cycle 2 4 20", "create 0", "undo")
        self.assertEqual(made.cell[0][5], 70)

    def test_duplicating_a_melody_starts_at_the_selection_and_asks_the_melody_box(self):
        self.note(0, 2, 60, 2)
        self.note(8, 2, 60, 1, 130)
        steps = ["pick 0,8", "cycle 2 10 10", "select 2 3"]
        self.assertNotes(self.edit(*steps, "duplicate-melody"), 0, {2: 60, 3: 1060})
        # The motif is taken from its position on and stamped from `PlayMark`, which it is added to.
        made = self.edit(*steps, "mark 0", "melody-box on", "duplicate-melody")
        self.assertNotes(made, 0, {2: 60, 3: 1060, 12: 60, 13: 1060})
        self.assertNotes(made, 8, {2: 60})
        made = self.edit(*steps, "mark 0", "melody-box on", "note-effects on", "duplicate-melody")
        self.assertNotes(made, 8, {2: 60, 12: 60})

    def test_duplicating_notes_leaves_a_head_in_the_corner_of_the_view(self):
        self.note(1, 0, 60, 2)
        made = self.edit("pick 1", "all-tracks on", "cycle 2 6 6", "mark 10", "duplicate")
        self.assertNotes(made, 1, {0: 60, 1: 1060, 10: 60, 11: 1060, 16: 60, 17: 1060})
        self.assertNotes(made, 0, {0: 42})
        made = self.edit("pick 1", "cycle 2 6 6", "mark 10", "duplicate")
        self.assertNotes(made, 1, {0: 60, 1: 1060})

    # Strokes

    def test_a_stroke_is_a_head_and_continuations_with_the_instrument_of_the_channel(self):
        made = self.edit("instrument 3 40", "stroke 3 60 10 12")
        self.assertNotes(made, 3, {10: 60, 11: 1060, 12: 1060})
        self.assertEqual(made.instrument[3][9:14], [0, 40, 40, 40, 0])
        self.assertEqual(made.channel_instrument[:5], [5, 5, 5, 40, 5])

    def test_the_corners_of_the_view_can_be_drawn_on(self):
        made = self.edit("stroke 0 42 0 0", "stroke 0 127 99 99", "stroke 12 42 98 99")
        self.assertNotes(made, 0, {0: 42, 99: 127})
        self.assertNotes(made, 12, {98: 42, 99: 1042})

    def test_a_stroke_to_the_left_is_one_cell(self):
        self.assertNotes(self.edit("stroke 0 60 10 4"), 0, {10: 60})

    def test_a_stroke_cuts_what_it_meets(self):
        made = self.edit("stroke 0 60 0 9", "stroke 0 70 3 5")
        self.assertNotes(made, 0, {0: 60, 1: 1060, 2: 1060, 3: 70, 4: 1070, 5: 1070, 6: 60, 7: 1060, 8: 1060, 9: 1060})

    def test_percussion_is_drawn_and_erased_on_its_own_tableau(self):
        made = self.edit("stroke 10 50 4 5", "stroke 12 60 0 0", "stroke 12 60 8 8", "erase 12 8 60")
        self.assertNotes(made, 10, {4: 50, 5: 1050})
        self.assertEqual(made.instrument[10][4:6], [130, 130])
        self.assertNotes(made, 12, {0: 60})

    def test_erasing_a_continuation_takes_the_whole_note_and_its_effects(self):
        self.note(1, 5, 60, 3)
        self.note(1, 8, 61)
        self.score.chord[2][5] = 3
        self.score.effects["Pan_Change"][1][6] = 9
        made = self.edit("erase 1 7 60")
        self.assertNotes(made, 1, {8: 61})
        self.assertEqual((made.chord[2][5], made.effects["Pan_Change"][1][6], made.instrument[1][5]), (0, 64, 0))

    def test_a_stroke_displaces_the_first_five_cells_of_a_copy(self):
        self.note(0, 0, 60, 8)
        self.note(0, 20, 70)
        steps = ["pick 0", "select 0 7", "cycle 7 0 0", "copy"]
        plain = self.edit(*steps, "mark 30", "paste-overwrite")
        self.assertEqual(plain.cell[0][30:38], [60] + [1060] * 7)
        made = self.edit(*steps, "stroke 0 90 19 19", "mark 30", "paste-overwrite")
        self.assertEqual(made.cell[0][30:38], [-1, 70, -1, -1, -1, 1060, 1060, 1060])

    # Blocks

    def test_a_copy_takes_the_cycle_and_not_the_selection(self):
        for p in range(6):
            self.note(0, p, 60 + p)
        made = self.edit("pick 0", "cycle 1 0 0", "select 2 5", "copy", "mark 20", "paste-overwrite")
        self.assertNotes(made, 0, {**{p: 60 + p for p in range(6)}, 20: 62, 21: 63})

    def test_a_cut_leaves_one_position_and_spares_muted_channels(self):
        for p in range(6):
            self.note(0, p, 60 + p)
            self.note(3, p, 60 + p)
            self.note(4, p, 60 + p)
        made = self.edit("mute 3 on", "mute 4 on", "mute 4 off", "select 1 3", "cut")
        self.assertNotes(made, 0, {0: 60, 1: 63, 2: 64, 3: 65})
        self.assertNotes(made, 3, {p: 60 + p for p in range(6)})
        self.assertNotes(made, 4, {0: 60, 1: 63, 2: 64, 3: 65})

    def test_a_cut_of_one_track_is_pasted_into_another(self):
        self.note(0, 0, 60, 2)
        self.note(1, 0, 61, 2)
        made = self.edit("one-track on", "channel 0", "select 0 1", "cut", "channel 5", "mark 8", "paste-overwrite")
        self.assertNotes(made, 5, {8: 60, 9: 1060})
        self.assertNotes(made, 1, {0: 61, 1: 1061})
        made = self.edit("one-track on", "one-track off", "channel 0", "select 0 1", "cut")
        self.assertNotes(made, 1, {0: 61})

    def test_pasting_between_moves_what_follows(self):
        self.note(0, 0, 60, 2)
        self.note(0, 2, 70)
        made = self.edit("pick 0", "cycle 1 0 0", "select 0 1", "copy", "mark 2", "paste-insert")
        self.assertNotes(made, 0, {0: 60, 1: 1060, 2: 60, 3: 1060, 4: 70})

    def test_spaces_move_every_layer(self):
        self.note(7, 1, 60)
        self.score.chord[8][1] = 4
        self.score.effects["Chorus_Change"][7][2] = 99
        made = self.edit("mark 1", "insert 3")
        self.assertNotes(made, 7, {4: 60})
        self.assertEqual((made.chord[8][4], made.effects["Chorus_Change"][7][5]), (4, 99))
        self.assertNotes(self.edit("mark 1", "insert 0"), 7, {1: 60})

    def test_boxes_are_exactly_those_named_last(self):
        self.note(0, 0, 60)
        self.note(1, 0, 61)
        paste = ["cycle 0 0 0", "select 0 0", "copy", "mark 5", "paste-overwrite"]
        made = self.edit("pick 0", "pick 1,2", *paste)
        self.assertNotes(made, 0, {0: 60})
        self.assertNotes(made, 1, {0: 61, 5: 61})
        self.assertNotes(self.edit("pick 1", "pick none", *paste), 1, {0: 61})

    # Single Note Effects

    def test_applying_gives_a_note_instrument_and_chord(self):
        self.note(2, 3, 60, 3)
        made = self.edit("chord 5", "pick-instrument 73", "apply 2 5 60")
        self.assertEqual(made.instrument[2][2:7], [0, 73, 73, 73, 0])
        self.assertEqual(made.chord[3][2:7], [0, 5, 5, 5, 0])
        self.assertNotes(made, 2, {3: 60, 4: 1060, 5: 1060})

    def test_applying_to_an_empty_cell_goes_on_where_it_has_a_chord(self):
        self.note(2, 20, 60)  # up to which a file is read
        self.score.chord[3][5] = 4
        made = self.edit("chord 2", "pick-instrument 73", "apply 2 5 60", "apply 2 6 60")
        self.assertEqual(made.instrument[2][4:8], [0, 73, 0, 0])
        self.assertEqual(made.chord[3][4:8], [0, 2, 0, 0])
        self.assertNotes(made, 2, {20: 60})

    def test_in_careful_manner_a_note_takes_all_effects_and_the_indicator_its_chord_in_place(self):
        self.note(2, 3, 60, 2)
        self.note(3, 3, 60, 2)
        made = self.careful("chord 1", "pick-instrument 73", "indicator 3 3 90 1 -2 3 4", "apply 2 4 60")
        self.assertEqual(made.instrument[2][2:6], [0, 73, 73, 0])
        self.assertEqual(made.chord[3][2:6], [0, 1, 1, 0])
        self.assertEqual(made.chord[4][2:6], [0, 1, 0, 0])
        for name, value in (("Modulation_Change", 1), ("Pan_Change", 62), ("Reverb_Change", 3), ("Chorus_Change", 4)):
            self.assertEqual(made.effects[name][2][4:6], [value] * 2, name)
        self.assertEqual(made.effects["Volume"][2][3:6], [90] * 3)

    def test_in_careful_manner_a_motif_begins_at_the_column_of_its_start(self):
        self.note(2, 0, 60, 2)
        made = self.careful("pick 2", "cycle 2 20 20", "create 1")
        self.assertNotes(made, 2, {0: 60, 1: 1060, 20: 60, 21: 1060})

    def test_in_careful_manner_blank_fields_are_those_of_the_worked_example(self):
        self.note(2, 0, 60)
        made = self.careful("pick 2", "create 1")
        self.assertNotes(made, 2, {at: 60 for at in range(0, 61, 12)})

    def test_with_note_effects_on_a_right_click_applies_and_off_it_erases(self):
        self.note(2, 3, 60)
        self.assertEqual(self.edit("note-effects on", "pick-instrument 73", "erase 2 3 60").instrument[2][3], 73)
        self.assertNotes(self.edit("apply 2 3 60", "erase 2 3 60"), 2, {})
        self.assertNotes(self.edit("note-effects on", "note-effects off", "erase 2 3 60"), 2, {})

    def test_the_indicator_takes_all_values_for_melody_and_the_volume_for_percussion(self):
        self.note(0, 4, 60, 2, instrument=9)
        self.note(11, 4, 60, 2, instrument=140)
        made = self.edit("chord 6", "indicator 0 4 90 1 -64 3 4", "indicator 11 4 91 1 63 3 4", "indicator 0 5 0 0 0 0 0")
        self.assertEqual([made.effects[name][0][5] for name in CLEARED], [90, 1, 0, 3, 4])
        self.assertEqual([made.effects[name][0][6] for name in CLEARED], [0, 0, 64, 0, 0])
        self.assertEqual([made.effects[name][11][5] for name in CLEARED], [91, 0, 64, 0, 0])
        self.assertEqual(made.chord[1][4:8], [0, 6, 6, 0])
        self.assertEqual((made.instrument[0][4:6], made.instrument[11][4:6]), ([5, 5], [128, 140]))

    def test_looking_at_an_empty_cell_resets_its_effects(self):
        self.note(0, 9, 60)
        for p in (3, 10):
            self.score.effects["Reverb_Change"][0][p] = 50
            self.score.effects["Pan_Change"][0][p] = 50
        made = self.edit("look 0 2", "look 0 9")
        self.assertEqual([made.effects["Reverb_Change"][0][p] for p in (3, 10)], [0, 50])
        self.assertEqual([made.effects["Pan_Change"][0][p] for p in (3, 10)], [64, 50])

    def test_a_selection_takes_an_instrument_but_no_melody_one_on_percussion(self):
        self.note(1, 0, 60, 4)
        made = self.edit("channel 1", "select 1 2", "instrument-to-selection 33")
        self.assertEqual((made.instrument[1][:4], made.channel_instrument[1]), ([5, 33, 33, 5], 33))
        self.note(8, 0, 60, 2, 130)
        made = self.edit("channel 8", "select 0 1", "instrument-to-selection 33",
                         said='velmora-cli: "instrument-to-selection 33": This is a percussion instrument\n')
        self.assertEqual((made.instrument[8][:2], made.channel_instrument[8]), ([130, 130], 130))

    def test_clearing_effects_gives_everything_the_melody_instrument(self):
        self.note(0, 0, 60, 2)
        self.note(8, 0, 60, 2, 130)
        self.score.chord[1][0] = 3
        for name in CLEARED:
            self.score.effects[name][0][1] = 9
        made = self.edit("clear-effects")
        self.assertEqual((made.instrument[0][:2], made.instrument[8][:2]), ([GUITAR] * 2, [GUITAR] * 2))
        self.assertEqual(made.chord[1][0], 0)
        self.assertEqual([made.effects[name][0][1] for name in CLEARED], list(CLEARED.values()))
        self.assertNotes(made, 8, {0: 60, 1: 1060})

    # Clear and undo

    def test_clearing_empties_the_score_and_the_cycle(self):
        self.note(0, 0, 60, 4)
        self.score.tempo = 333
        made = self.edit("cycle 5 5 5", "clear")
        self.assertNotes(made, 0, {})
        self.assertEqual(made.tempo, 100)
        # A cycle of 0 copies one position.
        made = self.edit("cycle 5 5 5", "clear", "pick 0", "stroke 0 60 0 9", "select 0 9", "copy", "mark 20", "paste-overwrite")
        self.assertEqual(made.cell[0][19:22], [-1, 60, -1])

    def test_undo_brings_back_what_each_kind_of_step_changed(self):
        self.note(0, 0, 60, 4)
        self.note(1, 2, 62, 4)
        self.note(8, 2, 62, 4, 130)
        self.score.chord[1][0] = 3
        self.score.effects["Volume"][1][3] = 50
        was = read_score(self.save())
        ready = ["pick 0,1,8", "all-tracks on", "melody-box on", "cycle 3 4 8"]
        for step in ("cut", "paste-overwrite", "paste-insert", "insert 2", "duplicate", "duplicate-melody", "create 1",
                     "clear", "stroke 0 90 1 2", "erase 0 1 60"):
            ahead = ["select 0 3", "copy"] if step.startswith("paste") else []
            changed = self.edit(*ready, *ahead, "select 0 2", "mark 1", step)
            made = self.edit(*ready, *ahead, "select 0 2", "mark 1", step, "undo", "undo")
            self.assertNotEqual(changed.cell, was.cell, step)
            self.assertEqual((made.cell, made.instrument, made.effects), (was.cell, was.instrument, was.effects), step)

    def test_undo_of_a_right_click_costs_the_channel_no_chord(self):
        self.note(1, 5, 60, 3)
        self.note(1, 20, 60)
        self.score.chord[2][5] = 3
        self.score.chord[2][20] = 4
        self.score.effects["Pan_Change"][1][6] = 9
        before = self.score.text()
        for step in ("erase 1 7 60", "apply 1 7 60"):
            self.edit("chord 6", step, "undo")
            with open(self.out, newline="") as out:
                self.assertEqual(out.read(), before, step)

    def test_undo_with_nothing_to_undo_changes_nothing(self):
        self.note(0, 0, 60, 4)
        before = self.score.text()
        self.edit("undo")
        with open(self.out, newline="") as out:
            self.assertEqual(out.read(), before)
        self.assertNotes(self.edit("stroke 8 50 0 0", "undo"), 8, {0: 50})  # percussion strokes keep no step

    def test_undo_forgets_the_marks(self):
        self.note(0, 0, 60, 4)
        made = self.edit("select 1 3", "mark 2", "insert 1", "undo", "cut", "insert 2")
        self.assertNotes(made, 0, {2: 60, 3: 1060, 4: 1060, 5: 1060})

    # The call

    def test_steps_are_read_from_lines_with_comments(self):
        lines = "# a tune\r\n\n  stroke 0 60 0 1  # two cells\n\tstroke\t0 61   2 2\n#stroke 0 62 3 3\nmark 1"
        done = self.call("-", input=lines)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertNotes(read_score(self.out), 0, {0: 60, 1: 1060, 2: 61})

    def test_no_line_is_no_step(self):
        self.note(0, 0, 60, 4)
        self.assertEqual(self.call("-", input="").returncode, 0)
        self.assertNotes(read_score(self.out), 0, {0: 60, 1: 1060, 2: 1060, 3: 1060})

    def test_what_is_no_step_is_a_usage_error_and_nothing_is_written(self):
        for step in ("", " ", "sing", "Cut", "cut 1", "copy now", "channel", "channel 9", "channel 13", "channel -1",
                     "channel x", "channel 1x", "channel 1 2", "instrument 0 175", "instrument 0 -1", "pick", "pick 1,,2",
                     "pick 9", "pick 1 2", "pick 1,", "mute 0", "mute 0 yes", "one-track", "one-track ON", "note-effects 1",
                     "all-tracks", "melody-box maybe", "stroke 0 60 0", "stroke 0 60 0 100", "stroke 0 60 -1 3",
                     "stroke 0 41 0 3", "stroke 0 128 0 3", "stroke 9 60 0 3", "erase 0 100 60", "erase 0 0 41",
                     "select 3", "select 5 3", "select 0 1001", "select -1 3", "mark 1001", "mark 1.5", "mark 99999999999",
                     "cycle 1 2", "cycle 1 2 -3", "cycle 1 2 32768", "insert", "insert -1", "create", "create one",
                     "chord 8", "chord -1", "pick-instrument 175", "apply 8 0 60", "apply 0 100 60", "indicator 0 0 1 1 1 1",
                     "indicator 0 0 128 0 0 0 0", "indicator 0 0 0 0 64 0 0", "indicator 0 0 0 0 -65 0 0",
                     "indicator 0 1001 0 0 0 0 0", "look 0", "look 0 1001", "instrument-to-selection", "-",
                     "stroke 0 60 0 3 # comment"):
            # Even where good steps stand around it.
            done = self.call("stroke 0 60 0 3", step, "stroke 0 61 5 5")
            self.assertEqual((done.returncode, done.stdout), (2, ""), (step, done.stderr))
            self.assertTrue(done.stderr.startswith("velmora-cli: "), step)
            self.assertEqual(os.listdir(self.folder), ["in.sng"], step)
        done = self.call("-", input="stroke 0 60 0 3\nsing loudly\n")
        self.assertEqual(done.returncode, 2)
        self.assertIn('"sing loudly"', done.stderr)
        self.assertIn("paste-overwrite", done.stderr)  # what there is instead
        self.assertEqual(os.listdir(self.folder), ["in.sng"])

    def test_a_wrong_step_says_what_is_wanted(self):
        self.assertIn("stroke C ROW FIRST LAST", self.call("stroke 0 60").stderr)
        self.assertIn('"64" is not a pan, -64 to 63', self.call("indicator 0 0 0 0 64 0 0").stderr)

    def test_too_few_words_are_a_usage_error(self):
        file = self.save()
        for words in ([], [file], [file, self.out], ["", self.out, "cut"], [file, "", "cut"],
                      [file, self.out, "cut", "--form", "third"]):
            self.assertEqual(run("edit", *words).returncode, 2, words)
        self.assertEqual(os.listdir(self.folder), ["in.sng"])

    def test_the_input_is_never_written_over(self):
        self.note(0, 0, 60)
        file = self.save()
        os.symlink(file, self.path("link.sng"))
        for out in (file, self.path("link.sng"), os.path.join(self.folder, ".", "in.sng")):
            self.assertEqual(run("edit", file, out, "clear").returncode, 2)
        self.assertNotes(read_score(file), 0, {0: 60})

    def test_a_failure_leaves_what_stands_at_the_place(self):
        kept = self.path("kept.sng")
        with open(kept, "w") as file:
            file.write("kept")
        self.assertEqual(run("edit", self.path("absent.sng"), kept, "clear").returncode, 1)
        self.assertEqual(run("edit", self.save(), kept, "sing").returncode, 2)
        with open(kept) as file:
            self.assertEqual(file.read(), "kept")
        done = run("edit", self.save(), os.path.join(self.path("in.sng"), "x.sng"), "clear")
        self.assertEqual(done.returncode, 1)
        self.assertIn("x.sng", done.stderr)

    def test_nothing_is_left_of_the_call_and_the_users_choices_do_not_matter(self):
        home = self.path("home")
        settings = os.path.join(home, "velmora", "settings")
        os.makedirs(os.path.dirname(settings))
        with open(settings, "w") as file:
            file.write("Settings/Intrumentval=99\nSettings/NumNotes=10\nSettings/CopyonlyOneTrack=True\n")
        os.mkdir(self.path("tmp"))
        self.note(0, 0, 60, 4)
        done = self.call("stroke 0 60 50 50", "clear-effects",
                         env={**os.environ, "HOME": home, "XDG_CONFIG_HOME": home, "XDG_DATA_HOME": home,
                              "VELMORA_HOME": home, "TMPDIR": self.path("tmp")})
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        made = read_score(self.out)
        self.assertEqual((made.cell[0][50], made.instrument[0][50]), (60, GUITAR))
        self.assertEqual(os.listdir(home), ["velmora"])
        self.assertEqual(os.listdir(self.path("tmp")), [])

    def test_an_interrupt_leaves_nothing_behind(self):
        temporary = self.path("tmp")
        os.mkdir(temporary)
        self.note(0, 0, 60)
        steps = self.path("steps")
        with open(steps, "w") as file:
            file.write("insert 1\n" * 1000000)
        with open(steps) as lines:
            process = subprocess.Popen([CLI, "edit", self.save(), self.out, "-"], stdin=lines, stderr=subprocess.PIPE,
                                       text=True, env={**os.environ, "TMPDIR": temporary})
        # Its folder, that is: a sanitizer makes a file there before the program runs.
        while not any(entry.is_dir() for entry in os.scandir(temporary)) and process.poll() is None:
            pass
        process.send_signal(signal.SIGINT)
        self.assertIn("cancelled", process.communicate(timeout=120)[1])
        self.assertEqual((process.returncode, os.listdir(temporary)), (1, []))
        self.assertFalse(os.path.exists(self.out))

    def test_a_long_score_loses_nothing_and_ends_where_it_ended(self):
        self.score = Score(3000)
        self.note(0, 2999, 60)
        self.assertNotes(self.edit("mark 5"), 0, {2999: 60})
        self.assertNotes(self.edit("mark 0", "insert 1"), 0, {})
        self.assertEqual(self.call("mark 3000").returncode, 2)

    def test_the_last_position_of_a_long_score_keeps_its_effects(self):
        self.score = Score(3001)
        self.note(0, 2999, 60)
        self.score.effects["Volume"][0][3000] = 50
        self.assertEqual(self.edit("mark 5").effects["Volume"][0][3000], 50)
        self.score.effects["Volume"][0][3000] = 127
        self.score.chord[1][3000] = 3  # where the note indicator writes it
        self.assertEqual(self.edit("mark 5").chord[1][3000], 3)

    def test_a_score_of_usual_length_has_1000_positions_after_the_first(self):
        self.note(0, 999, 60)
        self.assertNotes(self.edit("mark 0", "insert 1"), 0, {1000: 60})
        self.assertNotes(self.edit("mark 0", "insert 2"), 0, {})

    def test_the_help_lists_every_step(self):
        told = run("edit", "--help").stdout
        for line in ("stroke C ROW FIRST LAST", "indicator C POSITION VOLUME MOD PAN REVERB CHORUS", "pick C,C,...|none",
                     "instrument-to-selection CODE", "undo [N]", "redo [N]"):
            self.assertIn(f"\n  {line}\n", told)

    def test_the_manual_tells_of_every_step_and_of_no_other(self):
        with open(os.path.join(os.path.dirname(__file__), "..", "..", "packaging", "man", "velmora-cli.1")) as file:
            steps = file.read().split(".Sh STEPS")[1].split(".Sh")[0]
        items = re.findall(r"^\.It (.*)", steps, re.M)
        told = {name for item in items for name in re.findall(r"(?:Cm|,) ([a-z-]+)", item)} - {"on", "off", "none"}
        listed = re.findall(r"^  ([a-z-]+)", run("edit", "--help").stdout.split("Steps:")[1], re.M)
        self.assertEqual(told, set(listed))
        self.assertEqual(len(listed), 31)


class CarefulEditTest(EditFixture):
    """The manners that the window has unless "Classic behaviour" is ticked."""

    def test_without_a_ticked_channel_commands_work_on_the_active_one(self):
        self.note(0, 0, 60, 4)
        self.note(1, 0, 62, 4)
        made = self.edit("channel 1", "select 0 1", "cut")
        self.assertNotes(made, 0, {0: 60, 1: 1060, 2: 1060, 3: 1060})
        self.assertNotes(made, 1, {0: 62, 1: 1062})

    def test_ticked_channels_are_copied_cut_and_pasted_alike(self):
        for channel in (0, 1, 8):
            self.note(channel, 0, 60, 2, 130 if channel == 8 else 5)
        made = self.edit("pick 0,8", "select 0 1", "cut", "mark 10", "paste-overwrite")
        self.assertNotes(made, 0, {10: 60, 11: 1060})
        self.assertNotes(made, 1, {0: 60, 1: 1060})
        self.assertNotes(made, 8, {10: 60, 11: 1060})

    def test_all_tracks_are_those_that_are_not_muted(self):
        for channel in (0, 1, 2):
            self.note(channel, 0, 60, 2)
        made = self.edit("all-tracks on", "mute 1 on", "select 0 1", "cut")
        self.assertNotes(made, 0, {})
        self.assertNotes(made, 1, {0: 60, 1: 1060})
        self.assertNotes(made, 2, {})

    def test_what_was_cut_and_pasted_at_its_place_is_as_it_was(self):
        self.note(0, 0, 60, 3)
        self.note(0, 3, 62, 5)
        self.score.effects["Volume"][0][4] = 50
        made = self.edit("select 3 7", "cut", "mark 3", "paste-insert")
        self.assertNotes(made, 0, {0: 60, 1: 1060, 2: 1060, 3: 62, 4: 1062, 5: 1062, 6: 1062, 7: 1062})
        self.assertEqual(made.effects["Volume"][0][4], 50)

    def test_a_copy_takes_what_is_marked_and_not_the_cycle(self):
        self.note(0, 0, 60, 6)
        made = self.edit("cycle 1 1 1", "select 0 2", "copy", "mark 20", "paste-overwrite")
        self.assertEqual(made.cell[0][19:25], [-1, 60, 1060, 1060, -1, -1])

    def test_one_copied_channel_goes_to_the_active_one(self):
        self.note(0, 0, 60, 2)
        made = self.edit("channel 0", "select 0 1", "copy", "channel 4", "mark 6", "paste-overwrite")
        self.assertNotes(made, 4, {6: 60, 7: 1060})
        self.assertNotes(made, 0, {0: 60, 1: 1060})

    def test_a_paste_empties_no_channel_that_was_not_copied(self):
        self.note(0, 0, 60, 2)
        self.note(2, 0, 65, 2)
        made = self.edit("pick 0", "select 0 1", "copy", "pick 0,2", "mark 0", "paste-overwrite")
        self.assertNotes(made, 2, {0: 65, 1: 1065})

    def test_everything_is_undone_and_done_again_in_order(self):
        self.note(0, 0, 60, 4)
        steps = ["stroke 0 70 6 8", "stroke 8 50 0 0", "channel 0", "select 0 1", "cut", "clear"]
        self.assertNotes(self.edit(*steps, "undo"), 0, {0: 60, 1: 1060, 4: 70, 5: 1070, 6: 1070})
        made = self.edit(*steps, "undo 3")
        self.assertNotes(made, 0, {0: 60, 1: 1060, 2: 1060, 3: 1060, 6: 70, 7: 1070, 8: 1070})
        self.assertNotes(made, 8, {})  # a percussion stroke is a step like any other
        self.assertNotes(self.edit(*steps, "undo 4", "redo 2"), 8, {0: 50})
        self.assertNotes(self.edit(*steps, "undo 2", "redo", "redo"), 0, {})

    def test_at_the_oldest_and_the_newest_undo_and_redo_stop(self):
        self.note(0, 0, 60, 4)
        self.assertNotes(self.edit("stroke 0 70 6 8", "undo 100", "undo"), 0, {0: 60, 1: 1060, 2: 1060, 3: 1060})
        self.assertEqual(self.edit("stroke 0 70 6 6", "undo", "redo 100", "redo").cell[0][6], 70)

    def test_a_step_that_changed_nothing_is_not_there_to_be_undone(self):
        self.note(0, 0, 60, 4)
        made = self.edit("stroke 0 70 6 8", "select 0 2", "copy", "insert 0", "stroke 0 70 6 8", "undo")
        self.assertEqual(made.cell[0][6], -1)

    def test_a_command_after_clear_asks_no_channel_of_the_score_before(self):
        made = self.edit("channel 1", "stroke 1 60 0 0", "clear", "channel 10", "duplicate")
        self.assertNotes(made, 1, {})


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main()
