# SPDX-License-Identifier: GPL-2.0-or-later
"""The classic page worked out a second time from its rules: what is drawn, an element a line, in the order of drawing."""

from fractions import Fraction

from notation.reading_model import Reading, Rest, nearest

# Key: x of the time signature, first x of a line.
KEY_X = {"C": (30, 40), "G": (34, 48), "D": (44, 52), "A": (52, 60), "E": (60, 68), "B": (68, 76), "F": (32, 40),
         "Bb": (40, 48), "Eb": (46, 54), "Ab": (50, 60), "Db": (58, 68), "Gb": (62, 72)}
SHARP_AT = ((16, -16), (26, -4), (34, -20), (42, -8), (50, 4))
FLAT_AT = ((16, -2), (22, -14), (26, 2), (32, -10), (36, 6), (42, -6))
# The last d of each case, how far left of x the lines begin, where they stand.
LEDGERS = ((22, 5, (32, 24)), (30, 5, (32,)), (72, 5, ()), (80, 6, (80,)), (83, 6, (80, 88)), (87, 6, (80, 88, 96)),
           (98, 5, (88, 96, 104)), (102, 5, (96, 104, 112)), (141, 5, ()), (145, 5, (148,)), (149, 5, (148, 156)),
           (154, 5, (148, 156, 164)), (158, 5, (158,)), (166, 5, (158, 166)), (10 ** 6, 5, (158, 166, 174)))
IMAGES = {"half": "Img2", "quarter": "Img4", "eighth": "Img8", "sixteenth": "Img16"}
MOST_SYSTEMS = 100


class Pen:
    """What one measure moves on: where the next symbol stands, and the step of the symbol before."""

    def __init__(self, x, previous):
        self.x, self.previous = x, previous
        self.drawn = []
        self.group, self.up = [], False  # pending notes, and the way their first one's stem points

    def move(self, by):
        self.x = nearest(self.x + by)

    def line(self, x1, y1, x2, y2, width=1):
        self.drawn.append(f"line {nearest(x1)} {nearest(y1)} {nearest(x2)} {nearest(y2)} {width}")

    def image(self, name, x, y):
        self.drawn.append(f"image {name} {nearest(x)} {nearest(y)}")

    def ellipse(self, x, y, radius, aspect, fill):
        self.drawn.append(f"ellipse {nearest(x)} {nearest(y)} {radius} {aspect} {fill}")

    def text(self, x, y, text):
        self.drawn.append(f"text {nearest(x)} {nearest(y)} {text}")


class ClassicPage:
    def __init__(self, score, options):
        self.reading = Reading(score, options)
        self.options, self.staves = options, self.reading.staves
        self.measure, self.key = self.reading.measure, self.reading.key
        self.header, self.spacer = options.header, options.spacer
        self.bar = Fraction(options.bar_width)
        self.width, self.height = options.page
        self.drawn, self.page, self.previous, self.last_read = [], 0, 0, 0

    # Systems

    def _open_page(self):
        self.page += 1
        pen = Pen(0, 0)
        self.drawn.append(f"page {self.page} {self.width} {self.height}")
        if self.page == 1 or self.options.title_every_page:
            title = self.options.title or "Untitled Score"
            pen.text(32, 20, title[0].upper() + title[1:])
        x = KEY_X[self.key.short][0]
        pen.text(x, self.header + 38, self.reading.upper)
        pen.text(x, self.header + 50, self.reading.lower)
        self.drawn += pen.drawn
        self.systems = 0

    def _rule(self, top):
        pen = Pen(0, 0)
        y, self.top = top, top
        self.lines_of_percussion = {}
        for staff in self.staves:
            if staff.clef == "percussion":
                pen.line(3, y, self.width - 6, y)
                self.lines_of_percussion[staff.number] = self.bottom = y
            else:
                if staff.clef == "treble":
                    pen.image("Image14", 0, y - 5)
                else:
                    pen.image("Image4", 0, y)
                for k in range(5):
                    pen.line(3, y + 8 * k, self.width - 6, y + 8 * k)
                for x, dy in (FLAT_AT if self.key.flat else SHARP_AT)[: self.key.count]:
                    pen.image("ImgFlat" if self.key.flat else "ImgSharp", x, y + dy)
                self.bottom = y + 32
            y = self.bottom + self.spacer
        pen.line(3, self.top, 3, self.bottom)
        if self.top == 60:
            pen.line(6, self.top, 6, self.bottom)
        self.drawn += pen.drawn
        self.systems += 1

    def lines(self):
        """The whole list."""
        self._open_page()
        first = self.header + 40
        start = nearest(KEY_X[self.key.short][1] + self.bar / 5)
        bars, k = list(self.reading.bars()) if self.staves else [], 0
        if bars:
            self._rule(first)
        while k < len(bars):
            x, alone = start, True
            while k < len(bars):
                drawn, after, previous, read, right = self._measure_of(k, x, k == len(bars) - 1)
                if not alone and (right > self.width - 6):
                    break
                self.drawn += drawn
                self.previous, self.last_read, x, alone = previous, read, after, False
                k += 1
                if x + self.bar > self.width * Fraction(9, 10) or x + self.bar > self.width - self.bar:
                    break
            if k < len(bars):
                top = self.bottom + self.spacer
                if top > self.height - (self.bottom - self.top) or self.systems == MOST_SYSTEMS:
                    self._open_page()
                    top = first
                self._rule(top)
        return self.drawn

    # A measure

    def _measure_of(self, k, x, last):
        """What a measure draws from x, with its bar line: elements, x behind, previous step, last note's end, rightmost x."""
        drawn, previous, read, furthest = [], self.previous, self.last_read, 0
        for staff in self.staves:
            pen = Pen(x, previous)
            for symbol in staff.bars[k]:
                if isinstance(symbol, Rest):
                    self._close(pen)
                    self._rest(pen, staff, symbol)
                else:
                    read = read if symbol.held else symbol.end
                    self._note(pen, staff, symbol)
            self._close(pen)
            drawn += pen.drawn
            previous, furthest = pen.previous, max(furthest, pen.x)
        pen = Pen(0, 0)
        offsets = (10,)
        if last and not self.options.repeat_signs:
            offsets = (35, 38) if read > self.reading.last - 2 else (35, 38, 39, 40)
        for offset in offsets:
            pen.line(furthest + offset, self.top, furthest + offset, self.bottom)
        if self.options.numbers:
            pen.text(furthest + offsets[-1], self.bottom, self.reading.bars()[k] + 1)
        return drawn + pen.drawn, furthest + 20, previous, read, furthest + offsets[-1]

    def _offset(self, staff):
        """`TT`."""
        return self.top - (self.header + 40) + (staff.number - 1) * (32 + self.spacer)

    def _step(self, pen, steps):
        if self.options.spacing == "proportional":
            pen.move(self.bar / self.measure * steps)
        else:
            pen.move(self.bar / 10 + self.bar / 2 * steps / 4)

    def _push(self, pen, after):
        previous = pen.previous
        if previous < 1:
            previous = 1
        elif previous == self.measure:
            previous = 0
        elif previous > after:
            previous = after - 1
        pen.move((after - previous) * 4)
        pen.previous = after

    # Rests

    def _rest(self, pen, staff, rest):
        melody = staff.clef != "percussion"
        if melody:
            x, y = pen.x, self.header + self._offset(staff)
        else:
            x, y = nearest(pen.x - Fraction(pen.x, 4)), self.lines_of_percussion[staff.number] - 32 - self.header - 12
        x = max(x, 50)
        written = rest.values.split("+")
        if written[0] == "whole":
            end = pen.x + self.bar * Fraction(3, 5)
            pen.line(end - 10, y + 51, end, y + 51, 4)
        elif written[0] == "half":
            if "eighth" in written:
                pen.image("ImgPause8", x + 10, y + 39)
            if "sixteenth" in written:
                pen.image("ImgPause16", x + 20, y + 38)
            if "quarter" in written:
                pen.image("ImgPause4", pen.x + self.bar / 5, y + 39)
            end = pen.x + self.bar * Fraction(9, 20)
            pen.line(end - 10, y + 54, end, y + 54, 4)
            pen.move(self.bar / 4)
        else:
            for value in written:
                name, dy = {"quarter": ("4", 39), "eighth": ("8", 39), "sixteenth": ("16", 38)}[value]
                pen.image("ImgPause" + name, x, y + dy)
                x += 10
        self._step(pen, rest.steps)
        pen.move(10)
        if not melody:
            pen.move(4)
        pen.previous = rest.step + rest.steps

    # Notes

    def _note(self, pen, staff, note):
        melody = staff.clef != "percussion"
        if melody:
            cy, offset, up = self.header + note.place, self._offset(staff), note.up
        else:
            cy, offset = self.lines_of_percussion[staff.number], 0
            up = cy > 57
        if note.group is not None:
            self._grouped(pen, note, cy, offset, up)
            return
        self._close(pen)
        for piece in note.pieces:
            pen.move(5 if melody else 9)
            if piece.value == "whole":
                x = pen.x + self.bar / 2
                pen.ellipse(x, cy + 5 + offset, 5, "0.63", "open")
                for dx in (0, 1, -1):
                    pen.ellipse(x + dx, cy + 5 + offset, 4, "0.80", "open")
            else:
                x = pen.x
                lift = 19 if up else 2 if piece.value == "sixteenth" else 1
                pen.image(IMAGES[piece.value] + ("UP" if up else "DN"), x - 14, cy + offset - lift)
            if melody:
                self._signs(pen, note, x, cy, offset)
            if piece.dotted:
                for dy in {"half": (3, 5), "quarter": (3, 4), "eighth": (3, 2)}[piece.value]:
                    pen.ellipse(pen.x + 11, cy + offset + dy, 1, "1.00", "filled")
            if piece.value == "half":
                pen.move(self.bar / 8)
            self._step(pen, piece.steps)
            self._push(pen, piece.after)
            if not melody:
                pen.move(4)

    def _signs(self, pen, note, x, cy, offset):
        if note.sign == "#":
            pen.image("ImgSharp", x - 23, cy - 11 + offset)
        elif note.sign == "b":
            pen.image("ImgFlat", x - 25, cy - 12 + offset)
        left, places = next((left, places) for last, left, places in LEDGERS if cy - self.header <= last)
        for place in places:
            y = place + self.header + offset
            pen.line(x - left, y, x - left + 15, y)

    # Groups

    def _grouped(self, pen, note, cy, offset, up):
        if note.group[0] is note:
            self._close(pen)
            pen.move(5)
            pen.group, pen.up = [], up
        else:
            share = Fraction(3, 20) if note.joins == "sixteenth" else Fraction(1, 4 if len(pen.group) == 1 else 5)
            pen.x = nearest(pen.group[-1][0] + self.bar * share) + 14
        stem = cy + offset - (19 if up else 2)
        flip = 0 if up == pen.up else -17 if pen.up else 18
        painted = stem + flip
        if len(pen.group) == 3:
            painted = cy + offset - (19 if pen.up else 1)
        pen.group.append((pen.x - 14, stem, painted, up, note.joins))
        self._signs(pen, note, pen.x, cy, offset)
        self._step(pen, note.steps)
        self._push(pen, note.step + note.steps)
        if note.closes:
            self._close(pen)

    def _close(self, pen):
        """A pending group is painted, with a beam or as the one flagged note that it is."""
        group = pen.group
        if not group:
            return
        x1, x2, joins = group[0][0], group[-1][0], group[0][4]
        if len(group) == 1:
            pen.image(IMAGES[joins] + ("UP" if pen.up else "DN"), x1, group[0][1])
        else:
            for x, _, y, _, _ in group:
                pen.image("Img4UP" if pen.up else "Img4DN", x, y)
            heads = [note[2] for note in group]
            beam = min(heads) if pen.up else max(heads) + 32
            width = 2 if joins == "sixteenth" else 3
            left, right = (19, 17) if pen.up else (13, 11)
            second = () if joins == "eighth" else (3, 4) if pen.up else (-4, -5)
            for dy in (0, *second):
                pen.line(x1 + left, beam + dy, x2 + right, beam + dy, width)
            for x, _, y, _, _ in group:
                x, y = (x + 18, y) if pen.up else (x + 12, y + 30)
                pen.line(x, y, x, beam)
        pen.group = []
        pen.move(self.bar / 5)
