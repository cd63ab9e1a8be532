# SPDX-License-Identifier: GPL-2.0-or-later
"""The clean page's list: nothing stands outside of the page, nothing that is read is left out."""

from notation.case import NotationCase, rng, rounds, tune
from notation.clean import METERS, with_chords
from notation.clean_model import parsed
from notation.random_scores import score_of
from notation.reading_model import KEYS

SHAPES = {"page": 3, "line": 5, "image": 3, "ellipse": 5, "text": 2, "curve": 9, "glyph": 4}


class CleanPageTest(NotationCase):
    def elements(self, lines):
        """Each page's elements, checked for their form."""
        pages = []
        for line in lines:
            kind, *words = line.split(" ")
            self.assertIn(kind, SHAPES, line)
            if kind == "text":
                words[2:] = [" ".join(words[2:])]
                self.assertTrue(words[2], line)
            else:
                self.assertEqual(len(words), SHAPES[kind], line)
            if kind == "page":
                pages.append([tuple(map(int, words))])
                self.assertEqual(int(words[0]), len(pages))
            else:
                self.assertTrue(pages, line)
                pages[-1].append((kind, *words))
        return pages

    def points(self, element):
        kind, *words = element
        if kind == "line":
            return [tuple(map(int, words[0:2])), tuple(map(int, words[2:4]))]
        if kind == "curve":
            return [tuple(map(int, words[k : k + 2])) for k in (0, 2, 4, 6)]
        at = words[1:3] if kind in ("image", "glyph") else words[0:2]
        return [tuple(map(int, at))]

    def check(self, score, words, about):
        pages = self.elements(self.engraved(score, *words))
        reading = [parsed(line) for line in self.notated(score, *words) if line.split()[0] in ("note", "rest")]
        for (_, width, height), *elements in pages:
            for element in elements:
                for x, y in self.points(element):
                    self.assertTrue(-1 <= x <= width and -1 <= y <= height, (about, words, element))
        flat = [element for page in pages for element in page[1:]]
        ties = sum(len(line.name.split("+")) * (line.values.count("+") + ("out" in line.ties)) for line in reading
                   if line.kind == "note")
        self.assertGreaterEqual(sum(element[0] == "curve" for element in flat), ties, (about, words))
        return flat, reading

    def test_a_score_without_a_bar_is_one_page_with_its_title(self):
        lines = self.engraved(tune(meter=(3, 3, 4)), "--title", "waltz")
        self.assertEqual([line for line in lines if line.startswith("page")], ["page 1 794 1123"])
        self.assertTrue([line for line in lines if line.startswith("text") and line.endswith(" Waltz")])

    def test_join_has_no_effect(self):
        score = tune(*[(60, 2), (62, 1), (63, 1)] * 9)
        plain = self.engraved(score)
        for size in (2, 3, 4):
            self.assertEqual(self.engraved(score, "--join", size), plain)

    def test_ties_are_curves(self):
        curves = lambda *notes: sum(line.startswith("curve ") for line in self.engraved(tune(*notes)))
        self.assertEqual(curves((60, 4), (60, 4), (60, 8)), 0)
        self.assertEqual(curves((60, 20), (62, 4), (62, 8)), 1)
        self.assertEqual(curves((60, 40), (62, 8)), 2)
        self.assertEqual(curves((60, 5), (62, 11)), 1 + self.pieces((60, 5), (62, 11)))

    def pieces(self, *notes):
        """Further values of the lines of a tune whose first note is tied once."""
        lines = [parsed(line) for line in self.notated(tune(*notes)) if line.startswith("note")]
        return sum(line.values.count("+") for line in lines) - 1

    def test_each_head_of_a_plain_tune_is_drawn_once(self):
        for count in (1, 7, 33, 160):
            score = tune(*[(60, 4)] * count, positions=2000)
            pages = self.elements(self.engraved(score))
            heads = [element for page in pages for element in page[1:] if self.is_head(element)]
            self.assertEqual(len(heads), count)

    def is_head(self, element):
        kind, name, *_ = element
        return kind in ("image", "glyph") and (name in ("Img2UP", "Img2DN", "Img4UP", "Img4DN", "Img8UP", "Img8DN", "Img16UP",
                                                        "Img16DN") or "head" in name.lower())

    def test_bars_are_numbered_if_asked(self):
        score = tune(*[(60, 4)] * 100)
        texts = [line.split(" ", 3)[3] for line in self.engraved(score, "--numbers") if line.startswith("text ")]
        self.assertIn("25", texts)

    def test_random_scores_stay_on_their_pages(self):
        numbers = rng("clean page")
        for k in range(rounds(50)):
            score = score_of(numbers, odd=False)
            if numbers.random() < 0.6 and score.meter[0] < 100:
                score.meter = METERS[k % len(METERS)]
            with_chords(numbers, score)
            words = ["--page", numbers.choice(("a4", "letter", "1000x700")), "--title", numbers.choice(("", "song"))]
            if numbers.random() < 0.5:
                words += ["--key", numbers.choice(list(KEYS))]
            if numbers.random() < 0.3:
                words += ["--numbers", "--title-every-page"]
            self.check(score, words, k)
