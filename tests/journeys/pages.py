# SPDX-License-Identifier: GPL-2.0-or-later
"""The Songwriter as a hand and an eye have it: its window, its pages on the screen, and pages from elsewhere to compare."""

import os
import subprocess
import sys
import tempfile

import desktop
import program as programs
from clipboard import Clipboard
from desktop import wait_for

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "cli"))

from notation.lyrics_model import item_line  # noqa: E402
from rasters import Picture, grey_map  # noqa: E402

OPENER = (-102, 70)  # in the composing window
SONGWRITER = "^Velmora SongWriter"
PRINT = "^Velmora  PRINT SCORE$"
PAGE = (794, 1123)
FONT = "Times New Roman"
# A window that shows the whole of a page, and the screen that has room for it.
SCREEN = (1400, 1540)
ROOMY = {"frmscore_left": 100, "frmscore_top": 200, "frmscore_Width": 15 * 1040, "frmscore_Height": 15 * 1480}
# Places in the window, which the width of its words gives.
BUTTONS = {"Blank": (36, 55), "Open": (88, 55), "Save": (140, 55), "Edit": (206, 55), "Write": (263, 55), "Loop": (335, 55),
           "ReWrite": (407, 55), "Print": (466, 55), "Close": (532, 55)}
TABS = {"Write": (37, 97), "Text": (89, 97), "File": (137, 97), "Channels": (199, 97), "Note Setup": (281, 97),
        "Score Setup": (371, 97)}
FIELDS = {"Title": (180, 127), "Composer": (150, 158), "Words": (760, 158), "Start": (345, 147), "End": (460, 147)}
# The rows of its menus that journeys choose from; None is a line.
FILE = ("New Score", "Open Score", "Save Score As", "Open Lyrics", "Save  Lyrics", "Print Score", "Close Songwriter")
# The pages: the first lies at the left, those behind it a step up and to the right.
FIRST, ACROSS, UP, BEHIND = (56, 224), 28, 28, 3


def box_of_differences(one, other):
    """Left, top, right and bottom of where two pictures differ, the last two outside; None if they are equal."""
    rows = [y for y, (a, b) in enumerate(zip(one, other)) if a != b]
    if not rows:
        return None
    columns = [x for y in rows for x, (a, b) in enumerate(zip(one[y], other[y])) if a != b]
    return min(columns), rows[0], max(columns) + 1, rows[-1] + 1


def engraved(score, *words, title=None, lyrics=None):
    """What the companion makes of the score: a picture a page."""
    with tempfile.TemporaryDirectory() as folder:
        words = list(words) + (["--title", title] if title else [])
        if lyrics is not None:
            path = os.path.join(folder, "words.lyr")
            with open(path, "wb") as file:
                file.write(lyrics if isinstance(lyrics, bytes) else lyrics.encode())
            words += ["--lyrics", path]
        subprocess.run([programs.cli, "engrave", score, os.path.join(folder, "page.png"), *words], check=True,
                       capture_output=True, timeout=60)
        names = [name for name in os.listdir(folder) if name.endswith(".png")]
        pictures = []
        for name in sorted(names, key=lambda name: int(name.removesuffix(".png").partition("-")[2] or 0)):
            with open(os.path.join(folder, name), "rb") as file:
                pictures.append(Picture(file.read()).rows)
        return pictures


def drawn(document, page, width, height):
    """A page of a PDF as another program paints it, so large."""
    done = subprocess.run(["pdftoppm", "-gray", "-f", str(page), "-l", str(page), "-scale-to-x", str(width), "-scale-to-y",
                           str(height), document], capture_output=True, check=True, timeout=60)
    return grey_map(done.stdout)


def ink(rows, block):
    """The mean darkness of each block of so many pixels."""
    width = len(rows[0]) // block
    blocks = []
    for top in range(0, len(rows) - block + 1, block):
        sums = [0] * width
        for row in rows[top:top + block]:
            for column in range(width):
                sums[column] += sum(row[column * block:(column + 1) * block])
        blocks += [255 - total / (block * block) for total in sums]
    return blocks


def likeness(one, other, block=4):
    """The correlation of two pictures by their blocks: 1 for equal ones. The second may be some times as large."""
    one, other = ink(one, block), ink(other, block * (len(other) // len(one)))
    mean, other_mean = sum(one) / len(one), sum(other) / len(other)
    one, other = [value - mean for value in one], [value - other_mean for value in other]
    spread = (sum(value * value for value in one) * sum(value * value for value in other)) ** 0.5
    return sum(a * b for a, b in zip(one, other)) / spread if spread else 0


class Window:
    """A window of the program, by its name."""

    def __init__(self, program, name):
        self.program = program
        self.screen = program.screen
        self.name = name
        self.window = self.screen.window(name)

    def focus(self):
        if self.screen.focused() != self.window:
            self.screen.do("windowactivate", self.window)
            self.program.focus(self.window)

    def at(self, place):
        left, top, width, height = self.screen.geometry(self.window)
        return left + place[0] % width, top + place[1] % height

    def press(self, place, button=1):
        self.focus()
        self.screen.click(*self.at(place), button)

    def pixels(self, place, width, height):
        """A part of it, as the screen has it: four bytes a pixel."""
        return self.screen.picture(*self.at(place), width, height)

    def greys(self, place, width, height):
        """The same as rows of lightness; what has a colour counts as white."""
        rows = []
        for line in self.pixels(place, width, height):
            rows.append(bytes(green if abs(blue - green) < 24 and abs(red - green) < 24 else 255
                              for blue, green, red in zip(line[0::4], line[1::4], line[2::4])))
        return rows

    def becomes_still(self, place, width, height):
        """A part of it once two looks at it are the same."""
        seen = [None]

        def still():
            before, seen[0] = seen[0], self.pixels(place, width, height)
            return before == seen[0] and before
        return wait_for(still, "a picture that stays")

    def closes(self, *keys):
        self.focus()
        self.screen.key(*keys)
        self.screen.gone(self.name)


class Songwriter(Window):
    def __init__(self, program, opened=False):
        if not opened:
            program.screen.click(*program.at(*OPENER))
        super().__init__(program, SONGWRITER)
        self.program.focus(self.window)

    def button(self, name):
        self.press(BUTTONS[name])

    def away(self):
        """Takes the mouse off the pages, where it would be part of the picture."""
        self.screen.move(self.screen.size[0] - 1, self.screen.size[1] - 1)

    def origin(self, page=1, pages=1):
        behind = min(pages - 1, BEHIND)
        depth = min(page - 1, behind)
        return FIRST[0] + depth * ACROSS, FIRST[1] + (behind - depth) * UP

    def shown(self, page=1, pages=1):
        """The page that lies before the others, as rows of lightness."""
        return [line[1::4] for line in self.pixels(self.origin(page, pages), *PAGE)]

    def shows(self, expected, page=1, pages=1):
        """Waits until that page is before the others and is that picture, pixel for pixel."""
        self.away()
        try:
            wait_for(lambda: self.shown(page, pages) == expected, "")
        except desktop.NotInTime:
            raise AssertionError(f"page {page} differs from what was expected in "
                                 f"{box_of_differences(self.shown(page, pages), expected)}") from None

    def caption(self, page=1, pages=1):
        """The ink of the words over a page, without the empty columns at both ends."""
        left, top = self.origin(page, pages)
        lines = self.pixels((left + 20, top - 22), 500, 17)
        light = [[min(line[at:at + 3]) > 170 for at in range(0, len(line), 4)] for line in lines]
        columns = list(zip(*light))
        inked = [at for at, column in enumerate(columns) if any(column)]
        return columns[inked[0]:inked[-1] + 1] if inked else []

    def type_into(self, field, words):
        """Into a field of the panel that is shown."""
        self.press(FIELDS[field])
        self.screen.key("ctrl+a")
        self.screen.type(words)

    def show_texts(self):
        """The panel of title and words; its popup comes along, and is sent away."""
        self.press(TABS["Text"])
        self.program.popup()
        self.screen.key("Escape")
        wait_for(lambda: not self.program.popups(), "the popup's end")

    def choose(self, wanted):
        """From the File popup."""
        self.press(TABS["File"])
        menu = self.program.popup()
        self.screen.click(*self.program.row(menu, FILE, wanted))
        wait_for(lambda: not self.program.popups(), "the popup's end")

    def holder(self, at, page=1, pages=1):
        """Presses the right button on a page, and waits for the field that comes up there."""
        left, top = self.origin(page, pages)
        place, around = (left + at[0], top + at[1]), (left + at[0] - 12, top + at[1] - 12)
        self.away()
        before = self.pixels(around, 24, 24)
        self.press(place, 3)
        self.away()
        wait_for(lambda: self.pixels(around, 24, 24) != before, "the field for a text")

    def place(self, at, words, page=1, pages=1):
        self.holder(at, page, pages)
        self.screen.type(words)
        self.screen.key("Return")

    def words_of(self):
        """What the field with the focus holds, as it is copied from it."""
        with Clipboard(self.screen.environment["DISPLAY"]) as clipboard:
            clipboard.forget()
            self.screen.key("ctrl+a", "ctrl+c")
            wait_for(clipboard.is_filled, "copied words")
            return clipboard.text()
