# SPDX-License-Identifier: GPL-2.0-or-later
"""Pages as files, looked at by others: poppler's tools, xmllint, and the PNG chunks by hand."""

import os
import re
import subprocess

from notation.case import NotationCase, tune
from notation.lyrics_model import item_line
from rasters import Picture, grey_map

LONG = tune(*[(60, 4), (62, 2), (63, 2), (66, 8)] * 40)


def strays(first, second):
    """How many black dots of the first picture have nothing dark near them in the second, and how many there are."""
    black = missing = 0
    for y, row in enumerate(first):
        near = [second[k] for k in range(max(0, y - 2), min(len(second), y + 3))]
        for x, value in enumerate(row):
            if value < 90:
                black += 1
                missing += min(min(line[max(0, x - 2) : x + 3]) for line in near) > 200
    return missing, black


class PicturesTest(NotationCase):
    def make(self, name, *words, score=LONG):
        self.succeed("engrave", self.score_file(score), name, *words)
        return name

    def tool(self, *words):
        done = subprocess.run(words, cwd=self.folder, capture_output=True, timeout=60)
        self.assertEqual(done.returncode, 0, (words, done.stderr))
        self.assertEqual(done.stderr, b"", words)
        return done.stdout.decode()

    def pages(self, name="out.pdf"):
        """Width and height of each page of a PDF in points."""
        sizes = re.findall(r"^Page +\d+ size: +([\d.]+) x ([\d.]+)", self.tool("pdfinfo", "-l", "1000", name), re.M)
        return [(float(width), float(height)) for width, height in sizes]

    def count(self, *words):
        """How many pages the list has."""
        self.make("count.txt", *words)
        return sum(line.startswith("page ") for line in self.listed("count.txt"))

    def test_a_pdf_page_has_the_size_of_the_picture_at_96_pixels_an_inch(self):
        for manner in ((), ("--classic",)):
            for words, width, height in (((), 794, 1123), (("--page", "letter"), 816, 1056), (("--page", "500x400"), 500, 400)):
                self.make("out.pdf", *manner, *words)
                sizes = self.pages()
                self.assertEqual(len(sizes), self.count(*manner, *words))
                for size in sizes:
                    self.assertNear(size[0], width * 0.75, 0.51, words)
                    self.assertNear(size[1], height * 0.75, 0.51, words)

    def test_paper_and_landscape_decide_the_size_of_the_sheet(self):
        for paper, width, height in (("a4", 595.28, 841.89), ("letter", 612, 792)):
            for words, wanted in (((), (width, height)), (("--landscape",), (height, width))):
                self.make("out.pdf", "--paper", paper, *words)
                for size in self.pages():
                    self.assertNear(size[0], wanted[0], 0.6, (paper, words))
                    self.assertNear(size[1], wanted[1], 0.6, (paper, words))

    def test_text_is_text_and_shapes_are_no_pictures(self):
        for manner in ((), ("--classic",)):
            self.make("out.pdf", *manner, "--title", "grüne Wiese")
            self.assertIn("Grüne Wiese", self.tool("pdftotext", "-layout", "out.pdf", "-"), manner)
            self.assertEqual(len(self.tool("pdfimages", "-list", "out.pdf").splitlines()), 2, manner)  # two lines of heading
            self.assertGreater(len(self.tool("pdffonts", "out.pdf").splitlines()), 2, manner)

    def page_numbers(self, *words):
        self.make("out.pdf", "--classic", "--page", "500x300", "--title-every-page", *words)
        return [int(found) for found in re.findall(r"Page +(\d+)", self.tool("pdftotext", "-layout", "out.pdf", "-"))]

    def test_copies_are_the_outer_loop_of_the_pages_chosen(self):
        last = self.count("--classic", "--page", "500x300")
        self.assertGreater(last, 3)
        every = list(range(1, last + 1))
        self.assertEqual(self.page_numbers(), every)
        self.assertEqual(self.page_numbers("--copies", 2, "--from", 1, "--to", 3), [1, 2, 3, 1, 2, 3])
        self.assertEqual(self.page_numbers("--from", 2), every[1:])
        self.assertEqual(self.page_numbers("--to", 2), [1, 2])
        self.assertEqual(self.page_numbers("--from", last, "--to", last + 500), [last])
        self.fail_naming("nothing to print", "engrave", "in.sng", "out.pdf", "--from", 3, "--to", 2)

    def test_a_png_has_the_pixels_of_the_page_black_on_white(self):
        for manner in ((), ("--classic",)):
            for words, width, height in (((), 794, 1123), (("--page", "letter"), 816, 1056), (("--scale", 2), 1588, 2246)):
                self.make("out.png", *manner, *words, score=tune((60, 4), (62, 4)))
                picture = Picture(self.read("out.png"))
                self.assertEqual((picture.width, picture.height, picture.depth), (width, height, 8), words)
                self.assertIn(picture.colour, (0, 3))
                self.assertEqual(picture.rows[0], b"\xff" * width)
                values = set().union(*map(set, picture.rows))
                self.assertIn(255, values)
                self.assertLess(min(values), 40)
                white = sum(row.count(255) for row in picture.rows)
                self.assertGreater(white, 0.9 * width * height)

    def test_staff_lines_stand_in_the_png_where_the_list_has_them(self):
        self.make("out.png", "--classic", score=tune((60, 4)))
        picture = Picture(self.read("out.png"))
        for y in (100, 108, 116, 124, 132):
            dark = [k for k in (y - 1, y, y + 1) if picture.rows[k][600] < 200]
            self.assertTrue(dark, y)
        for y in (104, 112, 120, 128, 90, 142):
            self.assertEqual(picture.rows[y][600], 255, y)

    def test_picture_drawing_and_print_show_the_same(self):
        score = tune(*[(60, 4), (48, 2), (75, 2), (66, 8), (None, 3), (61, 1), (62, 12), (57, 16)] * 3)
        for manner in ((), ("--classic", "--join", 4)):
            for name in ("out.png", "out.svg", "out.pdf"):
                self.make(name, *manner, "--title", "three of one", "--key", "Eb", score=score)
            self.tool("rsvg-convert", "-f", "pdf", "-o", "svg.pdf", "out.svg")
            seen = {"png": Picture(self.read("out.png")).rows}
            for name in ("out", "svg"):
                self.tool("pdftoppm", "-gray", "-singlefile", "-scale-to-x", "794", "-scale-to-y", "1123", name + ".pdf", name)
                seen[name] = grey_map(self.read(name + ".pgm"))
            for name, other in (("png", "out"), ("out", "png"), ("png", "svg"), ("svg", "png")):
                missing, black = strays(seen[name], seen[other])
                self.assertGreater(black, 3000, (manner, name))
                self.assertLess(missing, black / 100, (manner, name, other, black))

    def test_one_page_is_the_file_itself_and_more_are_numbered(self):
        before = ["in.sng"]
        for extension in ("png", "svg"):
            self.make("one." + extension, score=tune((60, 4)))
            self.assertEqual(self.names(), sorted(["in.sng", "one." + extension]))
            self.make("many." + extension, "--classic", "--page", "500x300")
            count = 0
            while f"many-{count + 1}.{extension}" in self.names():
                count += 1
            self.assertEqual(self.names(), sorted(["in.sng", "one." + extension]
                                                  + [f"many-{k + 1}.{extension}" for k in range(count)]))
            self.assertEqual(count, self.count("--classic", "--page", "500x300"))
            self.assertGreater(count, 3)
            for name in self.names():
                if name not in before:
                    os.remove(self.path(name))

    def test_svg_is_well_formed_and_as_large_as_the_page(self):
        for manner in ((), ("--classic",)):
            self.make("out.svg", *manner, "--page", "1000x2000", "--title", "a < b & \"c\" > d")
            self.tool("xmllint", "--nonet", "--noout", "out.svg")
            attribute = lambda name: self.tool("xmllint", "--nonet", "--xpath", f"string(/*/@{name})", "out.svg").strip()
            self.assertRegex(attribute("width"), r"^(1000(\.0+)?(px)?|750(\.0+)?pt)$")
            self.assertRegex(attribute("height"), r"^(2000(\.0+)?(px)?|1500(\.0+)?pt)$")
            self.assertIn(self.tool("xmllint", "--nonet", "--xpath", "count(//*[local-name()='image'])", "out.svg").strip(), "0")

    def test_items_of_lyrics_are_words_in_the_pdf(self):
        self.save("words.lyr", (item_line(1, 300, 600, 12, "DejaVu Sans", "Dona nobis") + "\r\n").encode())
        for manner in ((), ("--classic",)):
            self.make("out.pdf", *manner, "--lyrics", "words.lyr")
            self.assertIn("Dona nobis", self.tool("pdftotext", "-layout", "out.pdf", "-"))
