# SPDX-License-Identifier: GPL-2.0-or-later
"""The Londonderry Air, a folk tune from Ireland (printed in 1855), in F major.

Channel 2 plays chords by chord type: a guitar in the first verse, strings in the second.
"""

from score import Score, rest, spread

CHORDS = {"F": "f3/maj", "Bb": "bb3/maj", "Dm": "d3/min", "Dm7": "d3/min7", "Gm7": "g3/min7", "C": "c4/maj",
          "Am7": "a3/min7", "Bbj": "bb3/maj7"}
ROOTS = {"F": "f2", "Bb": "bb1", "Dm": "d2", "Dm7": "d2", "Gm7": "g2", "C": "c2", "Am7": "a1", "Bbj": "bb1"}
BROKEN = {"F": "f3 c4 f4 a4", "Bb": "bb2 f3 bb3 d4", "Dm": "d3 a3 d4 f4", "Dm7": "d3 a3 c4 f4",
          "Gm7": "g2 d3 f3 bb3", "C": "c3 g3 c4 e4", "Am7": "a2 e3 g3 c4", "Bbj": "bb2 f3 a3 d4"}

# Two chords a measure; 'Bb+C' changes once more on the last beat.
FIRST_HALF = "F F  Bb Bb  F Dm7  Gm7 C  F Dm  Bb Bb  F C  F F".split()
SECOND_HALF = "F Bb  F Dm  F Am7  Gm7 C  F Bbj  F Dm  F Bb+C  F F".split()
CLOSE = "F Dm7  Gm7 C".split()

# The tune. The three notes before each measure-long phrase end the measure before it.
PHRASE_1 = """
    a4:6 g4:2 a4 d5 c5 a4 | g4:2 f4 d4:5 r:1 f4:2 a4 bb4 |
    c5:6 d5:2 c5 a4 f4 a4 | g4:9 r:1 e4:2 f4 g4 |
"""
PHRASE_2 = """
    a4:6 g4:2 a4 d5 c5 a4 | g4:2 f4 d4:5 r:1 e4:2 f4 g4 |
    a4:6 bb4:2 a4 g4 f4 g4 | f4:9 r:1 c5:2 d5 e5 |
"""
PHRASE_3 = """
    f5:6 e5:2 e5 d5 c5 d5 | c5:2 a4 f4:5 r:1 c5:2 d5 e5 |
    f5:6 e5:2 e5 d5 c5 a4 | g4:9 r:1 c5:2 c5 c5 |
"""
PHRASE_4 = """
    a5:6 g5:2 g5 f5 d5 f5 | c5:2 a4 f4:5 r:1 e4:2 f4 g4 |
    a4:2 d5 c5 a4 g4 f4 d4 e4 |
"""

TENOR = """
    c4:8 a3 | bb3:8 d4:4 c4 | c4:8 a3:4 d4 | d4:8 c4:7 r:1 |
    c4:8 d4 | d4:8 bb3:4 c4 | c4:8 bb3 | a3:9 r:1 a3:2 bb3 c4 |
    c4:8 d4 | c4:4 a3 d4:7 r:1 | a3:8 c4 | bb3:8 c4:7 r:1 |
    c4:4 f4:4 f4 d4 | c4:8 a3:4 c4 | c4:8 d4:4 bb3 | a3:15 r:1 |
"""
ALTO = """
    a4:6 c5:2 c5 bb4 a4 bb4 | a4:2 f4 c4:5 r:1 a4:2 bb4 c5 |
    a4:6 c5:2 c5:4 a4:2 e4 | d4:8 e4:2 e4 f4 g4 |
    c5:6 bb4:2 bb4 a4 f4 a4 | a4:2 f4 d4:5 r:1 c4:2 d4 e4 |
    f4:4 f4 d4 bb3:2 c4 | c4:15 r:1 |
"""


def measures(plan, half, quarter):
    """Text for a plan of two chords a measure; a half note of one, or a quarter note each of two."""
    text = ""
    for index, entry in enumerate(plan):
        names = entry.split("+")
        text += " ".join((half if len(names) == 1 else quarter)(name) for name in names)
        text += " | " if index % 2 else " "
    return text


def guitar(plan):
    """A chord held for two beats, then two of one beat."""
    text = ""
    for index, entry in enumerate(plan):
        names = entry.split("+")
        if len(names) == 2:
            text += spread(" ".join(CHORDS[name] for name in names), 4)
        elif index % 2:
            text += spread(f"{CHORDS[entry]} {CHORDS[entry]}", 4)
        else:
            text += f"{CHORDS[entry]}:8"
        text += " | " if index % 2 else " "
    return text


def held(plan):
    return measures(plan, lambda name: f"{CHORDS[name]}:8", lambda name: f"{CHORDS[name]}:4")


def bass(plan):
    return measures(plan, lambda name: f"{ROOTS[name]}:8", lambda name: f"{ROOTS[name]}:4")


def harp(plan):
    return measures(plan, lambda name: spread(BROKEN[name], 2), lambda name: spread(BROKEN[name], 1))


def score():
    piece = Score(tempo=72)
    verse = FIRST_HALF + SECOND_HALF

    piece.voice(0, "!harp rev=64 cho=12 pan=56 vol=58<",
                "f3:2 c4 f4 a4 c5 a4 f4 c4 | d3 a3 c4 f4 a4 f4 c4 a3 | bb2 f3 a3 d4 f4 d4 a3 f3 |",
                "vol=64 g2 d3 bb3 d4 r !flute pan=62 rev=58 vol=84< e4:2 f4 g4 |",
                "vol=92<", PHRASE_1, "vol=84<", PHRASE_2, "vol=96<", PHRASE_3, "vol=106<", PHRASE_4,
                "vol=88 f4:9 r:1 !violin vol=96< e4:2 f4 g4 |",
                "vol=102<", PHRASE_1, "vol=98<", PHRASE_2, "vol=108<", PHRASE_3, "vol=116<", PHRASE_4,
                "vol=98 f4:14 r:2 |",
                "!flute vol=88< a4:4 d5 c5 a4 | g4 f4 d4 e4 | vol=74 f4:16 | _:8")

    piece.voice(1, "!warm_pad rev=64 cho=20 pan=48", rest(1),
                "vol=54 d3/min7:16 | bb3/maj7:16 | g3/min7:8 c4/maj:8 |",
                "!nylon_guitar pan=44 vol=64", guitar(FIRST_HALF), "vol=70", guitar(SECOND_HALF),
                "!slow_strings pan=56 vol=66", held(FIRST_HALF), "vol=74", held(SECOND_HALF),
                "vol=60", held(CLOSE), "vol=54 f3/maj:16 | _:8")

    piece.voice(2, "!harp rev=66 cho=14 pan=84", rest(12), "vol=50", harp(SECOND_HALF),
                "vol=56", harp(verse), "vol=50", harp(CLOSE), "f3:2 c4 f4 a4 c5 f5:6 | _:8")

    piece.voice(3, "!acoustic_bass rev=30 pan=64", rest(4), "vol=78", bass(verse),
                "!cello rev=50 vol=70", bass(verse), "vol=62", bass(CLOSE), "vol=58 f2:16 | _:8")

    piece.voice(4, "!horn rev=62 pan=76", rest(20), "vol=62", TENOR, "vol=56 c4:8 a3 | bb3 bb3 | a3:16 | _:8")
    piece.voice(5, "!oboe rev=58 pan=40", rest(28), "vol=62", ALTO)
    return piece
