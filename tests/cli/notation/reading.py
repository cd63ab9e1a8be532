# SPDX-License-Identifier: GPL-2.0-or-later
"""The classic reading, line by line beside a second one."""

from notation.case import NotationCase, rng, rounds, tune
from notation.random_scores import options_of, score_of
from notation.reading_model import KEYS, Options, Reading


class ReadingTest(NotationCase):
    def lines(self, score, *words):
        return self.notated(score, "--classic", *words)

    def own(self, *notes, words=(), **more):
        """The `note` and `rest` lines of a tune on one staff, without their bar and staff."""
        lines = self.lines(tune(*notes, **more), *words)
        return [line for line in lines if line.split()[0] in ("note", "rest")]

    def values(self, *notes, words=(), **more):
        return [" ".join((*line.split()[1:2], *line.split()[3:6])) for line in self.own(*notes, words=words, **more)]

    def test_a_quarter_and_a_note_held_over_the_bar_line_read_as_told(self):
        score = tune((60, 4), (None, 8), (67, 8))
        self.assertEqual(self.lines(score), [
            "score 0 32 16 4 4 C Major", "staff 1 0 treble", "note 1 1 0 4 quarter struck G - 59 up -",
            "rest 1 1 4 8 half", "note 1 1 12 4 quarter struck C - 75 up -",
            "note 2 1 0 4 quarter held C - 75 up -", "rest 2 1 4 12 half+quarter"])

    def test_a_score_without_a_bar_has_only_its_first_line(self):
        self.assertEqual(self.lines(tune(meter=(12, 3, 4)), "--key", "Bb"), ["score 0 0 12 3 4 B flat Major"])
        self.assertEqual(self.lines(tune((60, 1))), ["score 0 0 16 4 4 C Major"])  # one step is not yet a song

    def test_a_note_of_a_bar_and_three_steps_is_a_whole_and_the_split_of_three(self):
        self.assertEqual(self.values((60, 19)), ["1 0 16 whole", "2 0 3 eighth.", "2 3 13 half+quarter+sixteenth"])

    def test_a_quarter_two_steps_before_the_bar_line_is_two_eighths(self):
        self.assertEqual(self.values((None, 14), (60, 4))[1:3], ["1 14 2 eighth", "2 0 2 eighth"])

    def test_a_half_and_a_quarter_are_a_dotted_half_within_a_bar_only(self):
        self.assertEqual(self.values((60, 12))[0], "1 0 12 half.")
        self.assertEqual(self.values((None, 8), (60, 12))[1:3], ["1 8 8 half", "2 0 4 quarter"])

    def test_rests_are_cut_at_the_bar_and_take_the_class_above(self):
        self.assertEqual(self.values((60, 1), (None, 3), (60, 1), (None, 5), (60, 6), (None, 20), (60, 1))[1::2],
                         ["1 1 3 eighth+sixteenth", "1 5 5 quarter+sixteenth", "2 0 16 whole", "3 4 1 sixteenth"])
        rests = self.values((60, 1), (None, 4), (60, 15), meter=(20, 5, 4))
        self.assertEqual(rests[1], "1 1 4 quarter")  # a fifth of the bar: between two classes

    def test_every_length_of_rest_has_its_class(self):
        wanted = "s e e+s q q+s q+e q+e+s h h+s h+e h+e+s h+q h+q+s h+q+e h+q+e+s".split()
        letters = {"sixteenth": "s", "eighth": "e", "quarter": "q", "half": "h"}
        for steps in range(1, 16):
            values = self.values((None, steps), (60, 16 - steps))[0].split()[3]
            self.assertEqual("+".join(letters[value] for value in values.split("+")), wanted[steps - 1])

    def test_one_step_of_twelve_is_a_sixteenth(self):
        self.assertEqual(self.values((60, 1), (61, 2), (62, 3), (63, 6), meter=(12, 3, 4)),
                         ["1 0 1 sixteenth", "1 1 2 eighth", "1 3 3 quarter", "1 6 6 half"])

    def test_names_and_signs_follow_the_key(self):
        def name(row, key):
            return " ".join(self.own((row, 4), words=("--key", key))[0].split()[7:9])
        for row, key, wanted in ((61, "G", "F# -"), (66, "G", "C# #"), (57, "C", "A# #"), (57, "F", "Bb -"), (56, "F", "B -"),
                                 (59, "F", "Ab b"), (68, "Gb", "B -"), (57, "B", "A# -"), (57, "E", "A# #"), (67, "D", "C -")):
            self.assertEqual(name(row, key), wanted, (row, key))

    def test_the_row_table_holds_on_every_row(self):
        for clef in "tb":
            notes = [(row, 1) for row in range(128)]
            options = Options(channels=[(0, {"t": "treble", "b": "bass"}[clef])])
            score = tune(*notes)
            self.assertSameLines(self.lines(score, *options.words()), list(Reading(score, options).lines()), clef)

    def test_each_key_spells_each_row(self):
        score = tune(*((row, 2) for row in range(128)))
        for key in KEYS:
            options = Options(key=key)
            self.assertSameLines(self.lines(score, "--key", key), list(Reading(score, options).lines()), key)

    def test_the_middle_line_has_its_stem_down(self):
        stems = [line.split()[9:11] for line in self.own((56, 4), (57, 4), (55, 4), (58, 4))]
        self.assertEqual(stems, [["51", "down"], ["55", "up"], ["47", "down"], ["55", "up"]])

    def test_groups_close_at_their_size_at_another_value_at_rests_and_at_bar_lines(self):
        def beams(size, *notes):
            return [line.split()[-1] for line in self.own(*notes, words=("--join", size)) if line[0] == "n"]
        eighths = [(60, 2)] * 3
        self.assertEqual(beams(2, *eighths), ["1/2", "2/2", "-"])
        self.assertEqual(beams(3, *eighths), ["1/3", "2/3", "3/3"])
        self.assertEqual(beams(4, *eighths), ["1/3", "2/3", "3/3"])
        self.assertEqual(beams(0, *eighths), ["-", "-", "-"])
        self.assertEqual(beams(4, *eighths[:2], (60, 1), (60, 1), (60, 2)), ["1/2", "2/2", "1/2", "2/2", "-"])
        self.assertEqual(beams(4, (60, 2), (None, 2), *eighths), ["-", "1/3", "2/3", "3/3"])
        self.assertEqual(beams(4, (None, 12), *[(60, 2)] * 4), ["1/2", "2/2", "1/2", "2/2"])
        self.assertEqual(beams(4, *eighths[:2], (60, 4), (60, 2), (60, 3), (60, 2)), ["1/2", "2/2", "-", "-", "-", "-"])
        self.assertEqual(beams(4, (None, 12), (60, 2), (60, 4), (60, 2)), ["1/2", "2/2", "1/2", "2/2"])  # cut by the bar

    def test_staves_are_assigned_by_the_mean_of_ten_notes(self):
        def clefs(rows):
            return self.lines(tune(*((row, 1) for row in rows)))[1]
        self.assertEqual(clefs([74] * 3), "staff 1 0 bass")
        self.assertEqual(clefs([73] * 10 + [60]), "staff 1 0 bass")
        self.assertEqual(clefs([73] * 9 + [72] + [127] * 5), "staff 1 0 treble")
        self.assertEqual(clefs([75] * 5 + [70] * 3), "staff 1 0 treble")

    def test_five_staves_stand_treble_bass_percussion(self):
        score = tune((60, 4))
        for channel, row in ((1, 90), (2, 60), (3, 90), (8, 50), (10, 50), (11, 50)):
            tune((row, 4), score=score, channel=channel)
        self.assertEqual([line for line in self.lines(score) if line[0:5] == "staff"],
                         ["staff 1 0 treble", "staff 2 2 treble", "staff 3 1 bass", "staff 4 3 bass", "staff 5 8 percussion"])
        self.assertEqual([line for line in self.lines(score, "--mute", "0,3,8") if line[0:5] == "staff"],
                         ["staff 1 2 treble", "staff 2 1 bass", "staff 3 10 percussion", "staff 4 11 percussion"])
        chosen = self.lines(score, "--channels", "11,3t,0b,2t")
        self.assertEqual([line for line in chosen if line[0:5] == "staff"],
                         ["staff 1 2 treble", "staff 2 3 treble", "staff 3 0 bass", "staff 4 11 percussion"])

    def test_percussion_has_no_name_sign_place_or_stem(self):
        score = tune((60, 2), (61, 2), channel=8)
        self.assertEqual(self.lines(score, "--join", 4)[1:4], ["staff 1 8 percussion",
                         "note 1 1 0 2 eighth struck - - - - -", "note 1 1 2 2 eighth struck - - - - -"])

    def test_start_is_lowered_and_end_raised_to_bars(self):
        score = tune(*[(60, 4)] * 20)
        lines = self.lines(score, "--start", 19, "--end", 33)
        self.assertEqual(lines[0], "score 16 48 16 4 4 C Major")
        self.assertEqual({line.split()[1] for line in lines[2:]}, {"2", "3"})

    def test_a_continuation_without_a_head_is_rest(self):
        score = tune((60, 4), (None, 4), (60, 8), (60, 16))
        score.cell[0][4:6] = [-1, 1060]
        self.assertEqual(self.lines(score)[3], "rest 1 1 4 4 quarter")
        self.assertEqual(self.lines(tune((60, 24)), "--start", 16)[2], "rest 2 1 0 16 whole")

    def test_random_scores_read_the_same_twice(self):
        numbers = rng("classic reading")
        for k in range(rounds(120)):
            score = score_of(numbers)
            options = options_of(numbers, score)
            model = Reading(score, options)
            self.assertSameLines(self.lines(score, *options.words()), list(model.lines()), (k, options.words()))
