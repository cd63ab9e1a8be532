# SPDX-License-Identifier: GPL-2.0-or-later
"""The clean reading: bars that add up, and a grid that can be read back from what is written."""

import unittest
from fractions import Fraction

from notation.case import NotationCase, rng, rounds, tune
from notation.clean_model import faults, parsed, worth
from notation.random_scores import MEASURES, options_of, score_of
from notation.reading_model import KEYS, MELODY, Options, Reading

MAJOR = (0, 2, 4, 5, 7, 9, 11)
TONICS = {"C": 60, "G": 67, "D": 62, "A": 69, "E": 64, "B": 71, "F": 65, "Bb": 70, "Eb": 63, "Ab": 68, "Db": 61, "Gb": 66}
# Bars as their meter has them: steps, upper, lower.
METERS = ((16, 4, 4), (12, 3, 4), (8, 2, 4), (12, 6, 8), (24, 4, 4), (16, 4, 4), (12, 4, 4), (8, 4, 4), (6, 3, 4), (6, 6, 8),
          (10, 5, 8), (18, 9, 8), (24, 12, 8), (4, 4, 4), (16, 2, 2), (14, 7, 8), (9, 9, 8), (3, 3, 4), (20, 5, 4))


WRITTEN = """score 0 32 16 4 4 C Major
staff 1 0 treble
staff 2 1 bass
rest 1 1 0 4 quarter
note 1 1 4 4 quarter struck F# # 63 up - -
note 1 1 8 4 quarter struck F n 63 up - -
note 1 1 12 4 quarter struck F# # 63 up - out
note 1 2 0 2 eighth struck C - 55 down 1/2 -
note 1 2 2 2 eighth struck C - 55 down 2/2 -
rest 1 2 4 12 quarter+half
note 2 1 0 4 quarter held F# - 63 up - in
note 2 1 4 4 quarter struck F# # 63 up - -
note 2 1 8 8 half struck C+E+G+C -+-+-+- 75+67+59+47 up - -
rest 2 2 0 16 bar"""
# One change each that no reader of music would let pass.
WRONG = (("score 0 32", "score 0 48"), ("rest 1 1 0 4 quarter\n", ""), ("0 4 quarter\nnote", "0 4 half\nnote"),
         ("rest 1 1 0 4", "rest 1 1 0 5"), ("F# # 63 up - -\nnote 1 1 8", "F# - 63 up - -\nnote 1 1 8"), ("F n 63", "F - 63"),
         ("F# # 63 up - out", "F# # 63 up - -"), ("up - in", "up - -"), ("held F# - 63", "held F# # 63"),
         ("4 4 quarter struck F# # 63 up - -\nnote 2", "4 4 quarter struck F# - 63 up - -\nnote 2"), ("held F#", "struck F#"),
         ("C+E+G+C", "C+E+G"), ("C+E+G+C", "C+E+G+B"), ("C+E+G+C", "C+Fb+G+C"), ("75+67+59+47", "75+67+59+51"),
         ("-+-+-+-", "-+#+-+-"), ("16 bar", "16 whole"), ("quarter+half", "bar"), ("quarter+half", "quarter+half."),
         ("1/2 -", "- -"), ("2/2 -", "- -"), ("2/2 -", "2/3 -"), ("C - 55 down 1/2 -", "C - 55 down 1/2 out"),
         ("C - 55 down 1/2", "B - 55 down 1/2"), ("note 1 2 2 2 eighth struck C", "note 1 2 2 2 eighth held C"),
         ("note 2 1 4 4 quarter struck F# #", "note 2 1 4 4 quarter struck Gb b"), ("8 8 half struck C", "8 8 whole struck C"))


class CheckerTest(unittest.TestCase):
    """What the cases below look for is found where it is."""

    def setUp(self):
        self.score = tune((None, 4), (61, 4), (62, 4), (61, 8), (61, 4), (67, 8))
        self.score.chord[1][24] = 1
        tune((79, 2), (79, 2), channel=1, score=self.score)

    def test_a_reading_by_hand_has_no_fault(self):
        self.assertEqual(faults(self.score, WRITTEN.split("\n")), [])

    def test_each_change_is_a_fault(self):
        for old, new in WRONG:
            self.assertEqual(WRITTEN.count(old) > 0, True, old)
            self.assertTrue(faults(self.score, WRITTEN.replace(old, new, 1).split("\n")), (old, new))

    def test_values_are_worth_their_share(self):
        for value, share in (("whole", 1), ("half.", Fraction(3, 4)), ("half..", Fraction(7, 8)), ("eighth3", Fraction(1, 12)),
                             ("sixteenth", Fraction(1, 16)), ("quarter.", Fraction(3, 8))):
            self.assertEqual(worth(value), share)


class CleanTest(NotationCase):
    def lines(self, score, *words):
        return self.notated(score, *words)

    def own(self, *notes, words=("--key", "C"), **more):
        return [parsed(line) for line in self.lines(tune(*notes, **more), *words) if line.split()[0] in ("note", "rest")]

    def values(self, *notes, **more):
        return [line.values for line in self.own(*notes, **more)]

    def check(self, score, words, about):
        lines = self.lines(score, *words)
        found = faults(score, lines)
        self.assertEqual(found, [], (about, words, "\n".join(lines[:60])))
        return lines

    def test_a_score_without_a_bar_has_only_its_first_line(self):
        self.assertEqual(self.lines(tune(meter=(12, 3, 4)), "--key", "Bb"), ["score 0 0 12 3 4 B flat Major"])

    def test_a_bar_of_rest_is_bar_in_any_meter(self):
        for meter in METERS:
            values = self.values((60, meter[0]), (None, meter[0]), (60, meter[0]), meter=meter)
            self.assertEqual(values[1], "bar", meter)

    def test_a_full_bar_of_three_quarters_is_a_dotted_half(self):
        self.assertEqual(self.values((60, 12), meter=(12, 3, 4))[0], "half.")
        self.assertEqual(self.values((60, 12), meter=(12, 6, 8))[0], "half.")
        self.assertEqual(self.values((60, 16))[0], "whole")
        self.assertEqual(self.values((60, 8), meter=(8, 2, 4))[0], "half")

    def test_a_note_over_the_bar_line_is_tied(self):
        lines = self.own((60, 12), (62, 8))
        self.assertEqual([(line.ties, line.held) for line in lines if line.kind == "note"],
                         [("-", False), ("out", False), ("in", True)])
        lines = self.own((60, 40))
        self.assertEqual([line.ties for line in lines if line.kind == "note"], ["out", "in+out", "in"])

    def test_accidentals_are_remembered_within_the_bar_and_taken_back(self):
        signs = [line.sign for line in self.own((67, 4), (66, 4), (65, 4), (67, 4), (66, 4), (65, 4), (66, 4), (65, 4))]
        self.assertEqual(signs, ["-", "#", "-", "n", "#", "-", "-", "-"])
        in_g = [line.sign for line in self.own((61, 4), (62, 4), (61, 4), (61, 4), words=("--key", "G"))]
        self.assertEqual(in_g, ["-", "n", "#", "-"])

    def test_a_held_note_needs_no_sign(self):
        lines = [line for line in self.own((67, 12), (66, 8), (66, 4)) if line.kind == "note"]
        self.assertEqual([(line.name, line.sign) for line in lines], [("C", "-"), ("C#", "#"), ("C#", "-"), ("C#", "#")])

    def test_chords_are_told_as_they_sound(self):
        for chord, names in ((1, "C+E+G+C"), (2, "C+Eb+G+C"), (3, "C+E+G+B"), (4, "C+Eb+G+Bb"), (6, "C+C"), (7, "C+C+C")):
            score = tune((67, 4))
            score.chord[1][0] = chord
            line = parsed(self.lines(score, "--key", "Eb" if "b" in names else "C")[2])
            self.assertEqual(line.name, names, chord)
            self.assertEqual(len(line.place.split("+")), len(names.split("+")))

    def test_triplets_are_written_where_the_grid_has_them(self):
        self.assertEqual(self.values(*[(60, 4)] * 3, (60, 12), meter=(24, 4, 4))[:3], ["quarter3"] * 3)
        self.assertEqual(self.values(*[(60, 2)] * 3, (60, 6), (60, 12), meter=(24, 4, 4))[:3], ["eighth3"] * 3)
        self.assertEqual(self.values(*[(60, 1)] * 3, (60, 9), meter=(12, 4, 4))[:3], ["eighth3"] * 3)

    def test_keys_are_found_from_a_scale_with_its_triad(self):
        for key, tonic in TONICS.items():
            for by in (0, -12):
                pitches = [tonic + by + k for k in (*MAJOR, 12, 7, 4, 0, 5, 4, 2, 11, 0, 4, 7, 4, 0)]
                score = tune(*((127 - pitch, 2) for pitch in pitches))
                self.assertEqual(self.lines(score)[0].split(" ", 6)[6], KEYS[key][0], (key, by))
                self.assertEqual(self.lines(score), self.lines(score, "--key", "auto"))

    def test_join_has_no_effect(self):
        score = tune(*[(60, 2), (62, 1), (63, 1)] * 9)
        plain = self.lines(score)
        for size in (0, 2, 3, 4):
            self.assertEqual(self.lines(score, "--join", size), plain)

    def test_whole_tunes_in_every_meter_add_up_and_read_back(self):
        numbers = rng("clean meters")
        for k in range(rounds(60)):
            score = score_of(numbers, odd=False, measures=MEASURES)
            meter = METERS[k % len(METERS)]
            if score.meter[0] > 100:
                continue
            score.meter = meter
            words = ("--key", numbers.choice(list(KEYS))) if numbers.random() < 0.7 else ()
            with_chords(numbers, score)
            self.check(score, words, k)

    def test_random_scores_of_any_grid_add_up_and_read_back(self):
        numbers = rng("clean reading")
        for k in range(rounds(80)):
            score = score_of(numbers)
            options = options_of(numbers, score)
            if numbers.random() < 0.3:
                with_chords(numbers, score)
            self.check(score, options.words(), k)

    def test_the_staves_are_those_of_the_classic_reading(self):
        numbers = rng("clean staves")
        for k in range(rounds(20)):
            score = score_of(numbers)
            options = options_of(numbers, score)
            options.key = numbers.choice(list(KEYS)[1:])
            got = self.lines(score, *options.words())
            wanted = list(Reading(score, options).lines())
            fixed = lambda lines: [line for line in lines if line.split()[0] in ("score", "staff")]
            self.assertEqual(fixed(got), fixed(wanted), (k, options.words()))


def with_chords(numbers, score):
    """Some heads become chords, low enough to sound."""
    for channel in MELODY:
        for p, cell in enumerate(score.cell[channel]):
            if 20 <= cell < 100 and numbers.random() < 0.2:
                score.chord[channel + 1][p] = numbers.randint(1, 7)
