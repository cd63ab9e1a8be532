# SPDX-License-Identifier: GPL-2.0-or-later
"""The classic reading worked out a second time from its rules: a grid as staves, bars, values, signs and groups."""

from fractions import Fraction
from typing import NamedTuple

MELODY = range(8)
PERCUSSION = (8, 10, 11, 12)
MOST_STAVES = 5

KEYS = {"C": ("C Major", 0, False), "G": ("G Major", 1, False), "D": ("D Major", 2, False), "A": ("A Major", 3, False),
        "E": ("E Major", 4, False), "B": ("B Major", 5, False), "F": ("F Major", 1, True),
        "Bb": ("B flat Major", 2, True), "Eb": ("E flat Major", 3, True), "Ab": ("A flat Major", 4, True),
        "Db": ("D flat Major", 5, True), "Gb": ("G flat Major", 6, True)}
SHARPS = ("F#", "C#", "G#", "D#", "A#")
FLATS = ("Bb", "Eb", "Ab", "Db", "Gb", "Cb")
SHARP_NAMES = ("B", "A#", "A", "G#", "G", "F#", "F", "E", "D#", "D", "C#", "C")  # n = 9 to 20
FLAT_NAMES = ("B", "Bb", "A", "Ab", "G", "Gb", "F", "E", "Eb", "D", "Db", "C")

# The last row of each step of the table, and its place.
PLACES = ((38, 11), (40, 15), (43, 19), (44, 23), (46, 27), (48, 31), (50, 35), (51, 39), (53, 43), (55, 47), (56, 51),
          (58, 55), (60, 59), (62, 63), (63, 67), (65, 71), (67, 75), (68, 79), (70, 83), (72, 85), (74, 91), (75, 95),
          (77, 99), (79, 103), (80, 107), (82, 110), (84, 115), (86, 119), (87, 123), (89, 127), (91, 129), (92, 131))

NAMES = ("whole", "half", "quarter", "eighth", "sixteenth")
# What a rest of so many sixteenths of a bar is written as.
RESTS = {1: "sixteenth", 2: "eighth", 3: "eighth+sixteenth", 4: "quarter", 5: "quarter+sixteenth", 6: "quarter+eighth",
         7: "quarter+eighth+sixteenth", 8: "half", 9: "half+sixteenth", 10: "half+eighth", 11: "half+eighth+sixteenth",
         12: "half+quarter", 13: "half+quarter+sixteenth", 14: "half+quarter+eighth",
         15: "half+quarter+eighth+sixteenth", 16: "whole"}


def nearest(value):
    """The nearest whole number, a half to the even one."""
    return round(Fraction(value))


def place_of(row):
    return next((place for last, place in PLACES if row <= last), 135)


class Key:
    def __init__(self, short):
        self.short = short
        self.text, count, self.flat = KEYS[short]
        self.count = count
        self.set = set((FLATS if self.flat else SHARPS)[:count])

    def name(self, cell):
        n = cell % 1000 + 1
        if n < 9:
            n += 12
        while n >= 21:
            n -= 12
        return (FLAT_NAMES if self.flat else SHARP_NAMES)[n - 9]

    def sign(self, name):
        return "-" if name in self.set or name[-1] not in "#b" else name[-1]


class Piece(NamedTuple):
    value: str
    dotted: bool
    steps: int  # how many it moves the pen by
    after: int  # NB behind it

    def text(self):
        return self.value + "." * self.dotted


def split(length, begun, measure):
    """What a part of a note of `length` steps, beginning `begun` steps into its bar, is written as."""
    whole = Fraction(measure)
    if length == measure:
        return [Piece("whole", False, length, measure)]
    pieces, left, at = [], length, begun

    def write(value, worth, dot=None):
        nonlocal left, at
        before, left, at = left, nearest(left - worth), nearest(at + worth)
        steps = before - left
        dotted = dot is not None and left > 0 and (dot == "any" or left == dot)
        if dotted:
            left = 0
        if left <= 0:  # the last takes what is left
            steps, at = length - sum(piece.steps for piece in pieces), begun + length
        pieces.append(Piece(value, dotted, steps, at))

    half, quarter, eighth, sixteenth = whole / 2, whole / 4, whole / 8, whole / 16
    if left >= half:
        write("half", half, quarter)
    if left > 0 and left >= quarter:
        write("quarter", quarter, eighth)
    if left > 0 and left >= eighth:
        write("eighth", eighth, "any")
    while left >= 1:
        write("sixteenth", max(sixteenth, Fraction(1)))
    return pieces


class Note:
    """What one bar holds of a note."""

    def __init__(self, bar, step, steps, held, end):
        self.bar, self.step, self.steps, self.held, self.end = bar, step, steps, held, end
        self.pieces, self.name, self.sign, self.place, self.up = [], "-", "-", None, False
        self.joins = None  # "eighth" or "sixteenth" if it can stand under a beam
        self.group, self.closes = None, False  # whether it ends its group at once

    def values(self):
        return "+".join(piece.text() for piece in self.pieces)

    def line(self, staff):
        beam = "-" if self.group is None or len(self.group) < 2 else f"{self.group.index(self) + 1}/{len(self.group)}"
        if staff.clef == "percussion":
            own = "- - - -"
        else:
            own = f"{self.name} {self.sign} {self.place} {'up' if self.up else 'down'}"
        return (f"note {self.bar} {staff.number} {self.step} {self.steps} {self.values()} "
                f"{'held' if self.held else 'struck'} {own} {beam}")


class Rest:
    """A run of rest in one bar."""

    def __init__(self, bar, step, steps, measure):
        self.bar, self.step, self.steps = bar, step, steps
        self.values = RESTS[-(-16 * steps // measure)]

    def line(self, staff):
        return f"rest {self.bar} {staff.number} {self.step} {self.steps} {self.values}"


class Staff:
    def __init__(self, number, channel, clef):
        self.number, self.channel, self.clef = number, channel, clef
        self.bars = []  # of lists of Note and Rest


class Options:
    """The panels as `notation` and `engrave` find them."""

    def __init__(self, **given):
        self.header = self.spacer = self.bar_width = 60
        self.key, self.join, self.spacing = "C", 0, "proportional"
        self.start, self.end, self.channels, self.mute = 0, None, None, ()
        self.title, self.title_every_page, self.numbers, self.repeat_signs = "", False, False, False
        self.page = (794, 1123)
        for name, value in given.items():
            assert hasattr(self, name), name
            setattr(self, name, value)

    def words(self):
        """As they are given on the line; what is at its default is left out."""
        plain, words = Options(), []
        for name, value in vars(self).items():
            if value == getattr(plain, name) or value is None:
                continue
            word = "--" + name.replace("_", "-")
            if value is True:
                words.append(word)
            elif name == "page":
                words += [word, f"{value[0]}x{value[1]}"]
            elif name == "channels":
                words += [word, ",".join(f"{channel}{'' if clef == 'percussion' else clef[0]}" for channel, clef in value)]
            elif name == "mute":
                words += [word, ",".join(map(str, value))]
            else:
                words += [word, str(value)]
        return words


def assigned(score, muted):
    """What New Score ticks: up to five channels, each with its clef."""
    found = []
    for channel in (*MELODY, *PERCUSSION):
        cells = score.cell[channel]
        in_use = channel == 0 or any(cell >= 0 for cell in cells[1:])
        if channel in muted or not in_use or len(found) == MOST_STAVES:
            continue
        if channel in PERCUSSION:
            found.append((channel, "percussion"))
            continue
        places = [place_of(cell) for cell in cells if 0 <= cell < 1000][:10]
        if places:
            found.append((channel, "bass" if Fraction(sum(places), len(places)) >= 91 else "treble"))
    return found


class Reading:
    def __init__(self, score, options):
        self.options, self.key = options, Key(options.key)
        self.measure, self.upper, self.lower = score.meter
        end = score.song_end(options.mute) if options.end is None else options.end
        self.first = options.start // self.measure * self.measure
        self.last = -(-end // self.measure) * self.measure
        ticked = assigned(score, options.mute) if options.channels is None else options.channels
        order = ("treble", "bass", "percussion")
        ticked = sorted(ticked, key=lambda pair: (order.index(pair[1]), pair[0]))
        self.staves = []
        if self.first < self.last:
            self.staves = [Staff(k + 1, channel, clef) for k, (channel, clef) in enumerate(ticked)]
        for staff in self.staves:
            self._read(score.cell[staff.channel], staff)

    def bars(self):
        return range(self.first // self.measure, self.last // self.measure)

    def _read(self, cells, staff):
        at = lambda p: cells[p] if p < len(cells) else -1
        held = None  # head and end of the note that goes on
        for bar in self.bars():
            begin, line, p = bar * self.measure, [], bar * self.measure
            stop = begin + self.measure
            while p < stop:
                q = p
                if held or 0 <= at(p) < 1000:
                    fresh = held is None
                    if fresh:
                        end = p + 1
                        while end < self.last and at(end) >= 1000:
                            end += 1
                        held = at(p), end
                    q = min(held[1], stop)
                    line.append(self._note(staff, bar + 1, p - begin, q - p, not fresh, *held))
                    if q == held[1]:
                        held = None
                elif at(p) < -1:
                    q += 1  # skipped, though a rest that has begun goes on over such a cell
                else:
                    while q < stop and not 0 <= at(q) < 1000:
                        q += 1
                    line.append(Rest(bar + 1, p - begin, q - p, self.measure))
                p = q
            if self.options.join:
                self._join(line, staff)
            staff.bars.append(line)

    def _note(self, staff, bar, step, steps, held, head, end):
        note = Note(bar, step, steps, held, end)
        note.pieces = split(steps, step, self.measure)
        if staff.clef == "percussion":
            return note
        note.name = self.key.name(head)
        note.sign = self.key.sign(note.name)
        note.place = place_of(head % 1000)
        if staff.clef == "bass" and note.place >= 83:
            note.place -= 48
        note.up = note.place > 51
        if note.values() in ("eighth", "sixteenth"):
            note.joins = note.values()
        return note

    def _join(self, line, staff):
        group = []
        for symbol in line:
            joins = getattr(symbol, "joins", None)
            if not joins or (group and group[0].joins != joins):
                group = []
            if not joins:
                continue
            group.append(symbol)
            symbol.group = group
            full = 16 * (symbol.step + symbol.steps) + self.measure > 16 * self.measure
            if full or len(group) == self.options.join:
                symbol.closes, group = True, []

    def lines(self):
        yield f"score {self.first} {self.last} {self.measure} {self.upper} {self.lower} {self.key.text}"
        for staff in self.staves:
            yield f"staff {staff.number} {staff.channel} {staff.clef}"
        for k in range(len(self.staves[0].bars) if self.staves else 0):
            for staff in self.staves:
                for symbol in staff.bars[k]:
                    yield symbol.line(staff)
