# SPDX-License-Identifier: GPL-2.0-or-later
"""The classic page, element by element beside a second one."""

import re

from notation.case import NotationCase, rng, rounds, tune
from notation.page_model import ClassicPage
from notation.random_scores import options_of, score_of
from notation.reading_model import KEYS, Options


class PageTest(NotationCase):
    def page(self, score, *words):
        """The list, without the "Page N" that may stand anywhere beside the title: there is one a page, or none."""
        lines, kept = self.engraved(score, "--classic", *words), []
        for line in lines:
            if line.startswith("page "):
                _, number, width, _ = line.split()
                due = "--title-every-page" in words
            told = re.fullmatch(r"text (\d+) 20 Page (\d+)", line)
            if told and due:
                self.assertEqual(told[2], number)
                self.assertTrue(32 <= int(told[1]) < int(width), line)
                due = False
            else:
                self.assertFalse(due and not line.startswith(("page ", "text 32 20 ")), (number, line))
                kept.append(line)
        return kept

    def compare(self, score, options, about=None):
        self.assertSameLines(self.page(score, *options.words()), ClassicPage(score, options).lines(),
                             about or options.words())

    def xs(self, lines, *names):
        """Where the images of these names stand."""
        return [int(line.split()[2]) for line in lines if line.startswith("image") and line.split()[1] in names]

    def test_a_score_without_a_bar_is_one_page_with_title_and_meter(self):
        self.assertEqual(self.page(tune(meter=(12, 3, 8)), "--title", "waltz", "--key", "D"),
                         ["page 1 794 1123", "text 32 20 Waltz", "text 44 98 3", "text 44 110 8"])
        self.assertEqual(self.page(tune(), "--header", 10, "--page", "letter"),
                         ["page 1 816 1056", "text 32 20 Untitled Score", "text 30 48 4", "text 30 60 4"])

    def test_a_quarter_moves_the_pen_by_the_mode_and_its_steps(self):
        quarters = tune(*[(60, 4)] * 4)
        for spacing, steps in (("proportional", (32, 36, 36)), ("symmetrical", (53, 57, 57))):
            x = self.xs(self.page(quarters, "--spacing", spacing), "Img4UP")
            self.assertEqual(x[0], 52 + 5 - 14)
            self.assertEqual(tuple(b - a for a, b in zip(x, x[1:])), steps, spacing)  # 5, 15 or 36, and 4 a step of NB

    def test_only_at_a_header_of_20_a_second_line_stands_at_the_left(self):
        score = tune((60, 16))
        self.assertIn("line 6 60 6 92 1", self.page(score, "--header", 20))
        for header in (10, 30, 60):
            self.assertFalse([line for line in self.page(score, "--header", header) if line.startswith("line 6 ")])

    def test_bar_lines_of_a_lone_percussion_staff_have_no_length(self):
        lines = self.page(tune((60, 16), (60, 16), channel=8))
        upright = [line.split() for line in lines if line.startswith("line") and line.split()[1] == line.split()[3]]
        self.assertEqual([words[2:5:2] for words in upright], [["100", "100"]] * 4)

    def test_the_end_has_two_lines_four_or_with_repeat_signs_one(self):
        def ends(score, *words):
            lines = self.page(score, *words)
            x = [int(line.split()[1]) for line in lines if line.startswith("line") and line.split()[1] == line.split()[3]]
            return [value - x[1] for value in x[1:]]  # behind the line at the left
        self.assertEqual(ends(tune((60, 16))), [0, 3])
        self.assertEqual(ends(tune((60, 8), (None, 6), (60, 1))), [0, 3])
        self.assertEqual(ends(tune((60, 8))), [0, 3, 4, 5])
        self.assertEqual(ends(tune((60, 8)), "--repeat-signs"), [0])

    def test_signs_of_each_key_stand_on_treble_and_bass_staves_alike(self):
        for key in KEYS:
            for clef in ("treble", "bass"):
                self.compare(tune((67, 4), (66, 4), (61, 4), (57, 4)), Options(key=key, channels=[(0, clef)]))

    def test_each_row_has_its_ledger_lines(self):
        for clef in ("treble", "bass"):
            self.compare(tune(*((row, 4) for row in range(128))), Options(channels=[(0, clef)]), clef)

    def test_each_length_is_split_as_told(self):
        for measure in (16, 12, 10, 7, 32, 40):
            notes = [(40 + k, k) for k in range(1, measure + 1)]
            for options in (Options(), Options(join=4, spacing="symmetrical", channels=[(0, "bass")])):
                self.compare(tune(*notes, meter=(measure, 4, 4), positions=2000), options, measure)

    def test_each_rest_is_drawn_as_told(self):
        for channel in (0, 8):
            notes = [note for k in range(1, 17) for note in ((60, 16 - k), (None, k))]
            for bar_width in (10, 33, 60, 118):
                self.compare(tune(*notes, (60, 1), channel=channel), Options(bar_width=bar_width), (channel, bar_width))

    def test_groups_take_the_first_direction(self):
        for rows in ((60, 50, 62, 48), (50, 60, 48, 62), (60, 61, 62, 63), (40, 41, 45, 46), (70, 40, 70, 40)):
            for length in (1, 2):
                for join in (2, 3, 4):
                    self.compare(tune(*((row, length) for row in rows)), Options(join=join, bar_width=45), (rows, length, join))

    def test_pages_turn_with_title_and_number_if_asked(self):
        score = tune(*[(60, 4)] * 200)
        for every in (False, True):
            options = Options(title="march", title_every_page=every, page=(500, 400), numbers=True)
            lines = self.page(score, *options.words())
            pages = [line.split() for line in lines if line.startswith("page")]
            self.assertEqual([words[1] for words in pages], [str(k + 1) for k in range(len(pages))])
            self.assertGreater(len(pages), 2)
            self.assertEqual(sum("March" in line for line in lines), len(pages) if every else 1)
            self.assertSameLines(lines, ClassicPage(score, options).lines(), every)

    def test_no_more_than_a_hundred_systems_stand_on_a_page(self):
        self.compare(tune(*[(60, 16)] * 60, channel=8, positions=2000),
                     Options(spacer=10, header=10, page=(200, 10000), bar_width=100))
        self.compare(tune(*[(60, 4)] * 120, channel=8, meter=(4, 4, 4), positions=2000),
                     Options(spacer=10, header=10, page=(200, 10000), bar_width=100))

    def test_random_scores_are_drawn_the_same_twice(self):
        numbers = rng("classic page")
        for k in range(rounds(100)):
            score = score_of(numbers)
            options = options_of(numbers, score)
            self.compare(score, options, (k, options.words()))
