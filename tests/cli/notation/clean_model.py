# SPDX-License-Identifier: GPL-2.0-or-later
"""What must hold of the clean reading of any score: bars that add up, and a grid that can be read back."""

from fractions import Fraction
from typing import NamedTuple

from notation.reading_model import FLATS, KEYS, SHARPS
from player_model import CHORDS

NAMES = ("whole", "half", "quarter", "eighth", "sixteenth", "thirtysecond", "sixtyfourth", "hundredtwentyeighth",
         "twohundredfiftysixth", "fivehundredtwelfth")
LETTERS = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
SIGNS = {"#": 1, "b": -1, "n": 0, "x": 2, "##": 2, "bb": -2}
MIDDLE_C = {"treble": 75, "bass": 27}  # its place
STEP_ORDER = "CDEFGAB"


class Note(NamedTuple):
    begin: int
    end: int
    pitches: tuple  # as they sound


class Line(NamedTuple):
    kind: str
    bar: int
    staff: int
    step: int
    steps: int
    values: str
    held: bool = False
    name: str = "-"
    sign: str = "-"
    place: str = "-"
    stem: str = "-"
    beam: str = "-"
    ties: str = "-"


def parsed(line):
    words = line.split(" ")
    head = (words[0], *map(int, words[1:5]), words[5])
    if words[0] == "rest":
        assert len(words) == 6, line
        return Line(*head)
    assert words[0] == "note" and len(words) == 13 and words[6] in ("struck", "held"), line
    return Line(*head, words[6] == "held", *words[7:])


def worth(value):
    """A written value as a share of a whole note."""
    name = value.rstrip("3.")
    dots = value[len(name):]
    share = Fraction(1, 1 << NAMES.index(name))
    assert dots in ("", ".", "..", "3", ".3", "3."), value
    share *= 2 - Fraction(1, 1 << dots.count("."))
    return share * Fraction(2, 3) if "3" in dots else share


def spelled(name):
    """Letter, how much it is altered, the pitch class."""
    altered = name.count("#") - name.count("b") + 2 * name.count("x")
    assert name[0] in LETTERS and set(name[1:]) <= set("#bx"), name
    return name[0], altered, (LETTERS[name[0]] + altered) % 12


def notes_of(score, channel, first, last, chords=True):
    """What sounds in a range of the grid, as the reading has it."""
    cells, p, notes = score.cell[channel], first, []
    at = lambda q: cells[q] if q < len(cells) else -1
    while p < last:
        q = p + 1
        if 0 <= at(p) < 1000:
            while q < last and at(q) >= 1000:
                q += 1
            pitch = 127 - at(p)
            chord = score.chord[channel + 1][p] if chords and channel < 8 else 0
            more = [pitch + by for by in CHORDS.get(chord, ()) if by != 0]
            notes.append(Note(p, q, (pitch, *more)))
        p = q
    return notes


class Key:
    def __init__(self, text):
        self.short = next(short for short, (long, _, _) in KEYS.items() if long == text)
        _, count, flat = KEYS[self.short]
        names = (FLATS if flat else SHARPS)[:count]
        self.altered = {name[0]: -1 if flat else 1 for name in names}
        self.scale = {(LETTERS[letter] + self.altered.get(letter, 0)) % 12: letter for letter in LETTERS}


# Whole notes of so many steps can be written to the step.
EXACT = (1, 2, 3, 4, 6, 8, 12, 16, 24)


def faults(score, lines, muted=()):
    """Whatever is wrong with a printed clean reading of the score, in words."""
    head = lines[0].split(" ", 6)
    first, last, measure, upper, lower = map(int, head[1:6])
    if measure != score.meter[0] or first % measure or last % measure or head[0] != "score":
        return [f"wrong first line {lines[0]}"]
    key, found = Key(head[6]), []
    staves = [line.split() for line in lines if line.startswith("staff ")]
    body = [parsed(line) for line in lines[1 + len(staves):]]
    whole = Fraction(measure * lower, upper)
    order = [(line.bar, line.staff) for line in body]
    if order != sorted(order):
        found.append("bars and staves are out of order")
    for _, number, channel, clef in staves:
        number, channel = int(number), int(channel)
        own = [line for line in body if line.staff == number]
        found += [f"staff {number}: {fault}" for fault in _filled(own, first, last, measure, whole)]
        found += [f"staff {number}: {fault}" for fault in _read_back(score, own, channel, clef, first, last, measure)]
        if clef != "percussion":
            found += [f"staff {number}: {fault}" for fault in _signed(own, clef, key, measure)]
        found += [f"staff {number}: {fault}" for fault in _beamed(own)]
    return found


def _filled(own, first, last, measure, whole):
    bars = {bar + 1: [] for bar in range(first // measure, last // measure)}
    for line in own:
        if line.bar not in bars:
            yield f"bar {line.bar} is outside"
            return
        bars[line.bar].append(line)
    for bar, lines in bars.items():
        at = 0
        for line in lines:
            if line.step != at or line.steps < 1:
                yield f"bar {bar}: {line} begins at {line.step}, {at} is reached"
            at = line.step + line.steps
            if line.kind == "rest" and (line.values == "bar") != (line.steps == measure):
                yield f"bar {bar}: {line} is a rest of {line.steps}"
            if line.values in ("bar",) and line.kind == "rest":
                continue
            total = sum(worth(value) for value in line.values.split("+"))
            if whole in EXACT and total * whole != line.steps:
                yield f"bar {bar}: {line.values} is worth {total * whole} steps, not {line.steps}"
        if at != measure:
            yield f"bar {bar} is filled to {at} of {measure}"


def _read_back(score, own, channel, clef, first, last, measure):
    """Heads, lengths and pitches as the page has them, beside the grid."""
    notes, going = [], False
    for line in own:
        begin = (line.bar - 1) * measure + line.step
        if line.kind == "rest":
            if going:
                yield f"a tie into a rest at {begin}"
            going = False
            continue
        into, out = "in" in line.ties.split("+"), "out" in line.ties.split("+")
        if line.ties not in ("in", "out", "in+out", "-"):
            yield f"ties are {line.ties}"
        if into != going:
            yield f"tied from {'nothing' if into else 'a note that nobody takes up'} at {begin}"
        if line.held != (into and line.step == 0):
            yield f"{'held' if line.held else 'struck'} with ties {line.ties} at {begin}"
        classes = tuple(spelled(name)[2] for name in line.name.split("+")) if clef != "percussion" else ()
        if into and notes:
            if notes[-1][2] != classes:
                yield f"a tie between {notes[-1][2]} and {classes} at {begin}"
            notes[-1][1] = begin + line.steps
        else:
            notes.append([begin, begin + line.steps, classes])
        going = out
    if going:
        yield "a tie into nothing"
    wanted = notes_of(score, channel, first, last)
    shape = lambda note: (note.begin, note.end, () if clef == "percussion" else tuple(p % 12 for p in note.pitches))
    got, wanted = [tuple(note) for note in notes], [shape(note) for note in wanted]
    if got != wanted:
        at = next((k for k, pair in enumerate(zip(got, wanted)) if pair[0] != pair[1]), min(len(got), len(wanted)))
        yield f"note {at} reads {got[at:at + 1]}, the grid has {wanted[at:at + 1]}"


def _signed(own, clef, key, measure):
    """Signs beside the key and what the bar has said; names by the key; places by the clef."""
    said, bar = {}, None
    for line in own:
        if line.kind == "rest":
            continue
        if line.bar != bar:
            said, bar = {}, line.bar
        names, signs, places = line.name.split("+"), line.sign.split("+"), line.place.split("+")
        if not len(names) == len(signs) == len(places):
            yield f"{line} has not one sign and place a name"
            continue
        for name, sign, place in zip(names, signs, map(int, places)):
            letter, altered, pitch = spelled(name)
            if pitch in key.scale and letter != key.scale[pitch]:
                yield f"{name} in {key.short} at {line.bar} {line.step}"
            steps = Fraction(MIDDLE_C[clef] - place, 4)
            if steps.denominator != 1 or STEP_ORDER[int(steps) % 7] != letter:
                yield f"{name} stands at {place} on a {clef} staff"
            if sign != "-":
                if SIGNS[sign] != altered:
                    yield f"{name} has the sign {sign} at {line.bar} {line.step}"
                if line.held:
                    yield f"a held {name} has the sign {sign} at {line.bar} {line.step}"
                if said.get(place) == altered:
                    yield f"{name} has its sign {sign} again at {line.bar} {line.step}"
                said[place] = altered
            elif not line.held and said.get(place, key.altered.get(letter, 0)) != altered:
                yield f"{name} lacks a sign at {line.bar} {line.step}"


def _beamed(own):
    """A line of several values may end one group and begin another; it tells its place in the first."""
    at = size = 0
    several = False
    for line in own:
        if line.kind == "rest":
            continue
        k, of = (0, 0) if line.beam == "-" else map(int, line.beam.split("/"))
        if not several and (at < size and (k, of) != (at + 1, size) or at == size and k > 1) or of == 1:
            yield f"beam {line.beam} follows {at}/{size} at {line.bar} {line.step}"
        at, size, several = k, of, "+" in line.values
    if at != size and not several:
        yield f"the last beam ends at {at}/{size}"
