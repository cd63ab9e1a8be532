# SPDX-License-Identifier: GPL-2.0-or-later
"""The pieces of the lessons. Their form has no velocities, so every note is struck in full: the balance of
the voices lies in the choice of instruments and registers.

Ludwig van Beethoven (1770-1827): Ode to Joy, from the ninth symphony, alone and with a piano.
Stephen Foster (1826-1864): Oh! Susanna (1848), for clarinet, accordion, banjo, bass and drums.
"""

from score import Score, bars, quiet, rest, spread

# ---- Ode to Joy ----

JOY_OPEN = "e5:4 e5 f5 g5 | g5 f5 e5 d5 | c5 c5 d5 e5 | e5:6 d5:2 d5:7 r:1 | "
JOY_CLOSED = "e5:4 e5 f5 g5 | g5 f5 e5 d5 | c5 c5 d5 e5 | d5:6 c5:2 c5:7 r:1 | "
JOY_MIDDLE = "d5:4 d5 e5 c5 | d5 e5:2 f5 e5:4 c5 | d5 e5:2 f5 e5:4 d5 | c5 d5 g4:7 r:1 | "
JOY = JOY_OPEN + JOY_CLOSED + JOY_MIDDLE + JOY_CLOSED.replace("c5:7 r:1", "c5:8")

PIANO = {"C": "c3 g3 e4 g3", "G": "b2 g3 d4 g3", "Am": "a2 e3 c4 e3", "D": "d3 a3 f#3 a3"}
JOY_CHORDS = ("C C G G C C C G", "C C G G C C G C", "G C G C G C Am G", "C C G G C C G")


def ode_alone():
    piece = Score(tempo=100)
    piece.voice(0, "!flute", JOY)
    return piece


def ode_for_two():
    piece = Score(tempo=100)
    piece.voice(0, "!flute", JOY)
    words = [spread(PIANO[name], 2) for line in JOY_CHORDS for name in line.split()]
    words[22] = "a2:2 e3 f#3 a3"       # the only turn to D, on the last beat before the middle ends
    words.append("c3:8")
    piece.voice(1, "!piano", *(f"{a} {b} |" for a, b in zip(words[::2], words[1::2])))
    return piece


# ---- Oh! Susanna ----

LINE_1 = "b4:2 d5 d5:3 e5:1 d5:2 b4 g4:3 a4:1 | b4:2 b4 a4 g4 a4:4 r:2 g4:1 a4 | "
LINE_2 = "b4:2 d5 d5:3 e5:1 d5:2 b4 g4:3 a4:1 | b4:2 b4 a4 a4 g4:4 r:2 g4:1 a4 | "
LINE_END = "b4:2 d5 d5:3 e5:1 d5:2 b4 g4:3 a4:1 | b4:2 b4 a4 a4 g4:6 r:2 | "
CHORUS = "c5:4 c5 e5:2 e5:5 r:1 | d5:2 d5 b4 g4 a4:4 r:2 g4:1 a4 | " + LINE_END

CHORUS_BELOW = """
    e4:4 e4 g4:2 g4:5 r:1 | b4:2 b4 g4 d4 f#4:4 r:2 d4:1 f#4 |
    g4:2 b4 b4:3 c5:1 b4:2 g4 d4:3 f#4:1 | g4:2 g4 f#4 f#4 d4:6 r:2 |
"""

# A measure of banjo and of bass for each pair of chords.
BANJO = {"G": "g3 b3 d4 b3", "D": "f#3 a3 d4 a3", "C": "g3 c4 e4 c4"}
LOW = {"G": "g2:4' d2'", "D": "d2:4' a2'", "C": "c2:4' g2'"}
VERSE_CHORDS = ["GG", "GD", "GG", "GDG"] * 2
CHORUS_CHORDS = ["CC", "GD", "GG", "GDG"]


def measure(chords, table):
    """Two chords of half a measure, or three of which the first two share a half."""
    if len(chords) == 2:
        return spread(f"{table[chords[0]]} {table[chords[1]]}", 2)
    first, second = table[chords[0]].split()[:2], table[chords[1]].split()[:2]
    return spread(" ".join(first + second + table[chords[2]].split()), 2)


def low_measure(chords):
    if len(chords) == 2:
        return f"{LOW[chords[0]]} {LOW[chords[1]]}"
    return f"{LOW[chords[0]].split()[0]} {LOW[chords[1]].split()[0]} {LOW[chords[2]]}"


def susanna():
    piece = Score(tempo=112)
    plan = VERSE_CHORDS + CHORUS_CHORDS * 2
    piece.voice(0, rest(1), "!clarinet r:14 g4:1 a4 |",
                LINE_1, LINE_2, LINE_1, LINE_2.replace("r:2 g4:1 a4", "r:4"), CHORUS * 2,
                "r:16 | b4:2 d5 r:4 g5:8")
    piece.voice(1, "!banjo", *(measure(chords, BANJO) + " |" for chords in ["GG", "GG"] + plan),
                "g3:2 b3 d4 g4 d4 b3 d4 f#4 | g4:2 g4 r:4 b3:8")
    piece.voice(2, "!acoustic_bass", rest(1), "g2:4 d2 g2:2 a2 b2 d3 |",
                *(low_measure(chords) + " |" for chords in plan), "g2:4 d2 a2 d2 | g2:2 d2 r:4 g2:8")
    piece.voice(3, "!accordion", rest(10), CHORUS_BELOW * 2, "r:16 | g4:2 b4 r:4 d5:8")

    piece.drum(8, quiet(2), bars("b.......b.......", 17), bars("b...b...b...b..."), "b.b.....b")
    piece.drum(10, quiet(1), bars("........x.x.x.x."), bars("....x.......x...", 17),
               bars("....x.......x.xx"), "........x")
    piece.drum(11, quiet(10), bars("..g...g...g...g.", 8), bars("..g...g...g.g.g."))
    return piece
