# SPDX-License-Identifier: GPL-2.0-or-later
"""Johann Pachelbel (1653-1706): Canon in D, in a short arrangement for small orchestra and drums.

One measure of harp, four times the ground of eight half notes (four measures each), a held chord. Each time
the ground comes round, a line heard before goes on in another instrument: that is the canon.
"""

from score import Score, bars, quiet, rest, spread

GROUND = ("d", "a", "b", "f#", "g", "d", "g", "a")

LARGO = "f#5:8 e5 | d5 c#5 | b4 a4 | b4 c#5:7 r:1 | "
ANDANTE = "d5:4 f#5 a5 g5 | f#5 d5 f#5 e5 | d5 b4 d5 a5 | g5 b5 a5 g5:3 r:1 | "
RUN = """
    a5>:2 f#5:1 g5 a5:2 f#5:1 g5 a5 a4 b4 c#5 d5 e5 f#5 g5 |
    f#5>:2 d5:1 e5 f#5:2 f#4:1 g4 a4 b4 a4 g4 a4 f#4 g4 a4 |
    g4>:2 b4:1 a4 g4:2 f#4:1 e4 f#4 e4 d4 e4 f#4 g4 a4 b4 |
    g4>:2 b4:1 a4 b4:2 c#5:1 d5 a4 b4 c#5 d5 e5 f#5 g5 a5 |
"""
RUN_ON = """
    f#5>:2 d5:1 e5 f#5:2 e5:1 d5 e5 c#5 d5 e5 f#5 e5 d5 c#5 |
    d5>:2 b4:1 c#5 d5:2 d4:1 e4 f#4 g4 f#4 e4 f#4 d5 c#5 d5 |
    b4>:2 d5:1 c#5 b4:2 a4:1 g4 a4 g4 f#4 g4 a4 b4 c#5 d5 |
    b4>:2 d5:1 c#5 d5:2 c#5:1 b4 c#5 d5 e5 d5 c#5 d5 b4 c#5 |
"""

BROKEN = {"d": "d3 a3 d4 f#4", "a": "a2 e3 a3 c#4", "b": "b2 f#3 b3 d4", "f#": "f#2 c#3 f#3 a3",
          "g": "g2 d3 g3 b3"}
CHORD = ("d4/maj", "a3/maj", "b3/min", "f#3/min", "g3/maj", "d4/maj", "g3/maj", "a3/maj")
BASS = {"d": "d2:4 d2:2 a2:2", "a": "a1:4 a1:2 e2:2", "b": "b1:4 b1:2 f#2:2", "f#": "f#1:4 f#1:2 c#2:2",
        "g": "g1:4 g1:2 d2:2"}


def in_measures(words):
    """Two half notes of the ground to the measure."""
    return "".join(f"{first} {second} | " for first, second in zip(words[::2], words[1::2]))


def score():
    piece = Score(tempo=126)
    chords = in_measures([f"{chord}:8" for chord in CHORD])
    broken = in_measures([spread(BROKEN[name], 2) for name in GROUND])
    bass = in_measures([BASS[name] for name in GROUND])

    piece.voice(0, "!harp rev=70 cho=20 pan=58 vol=62<",
                "d3:1 a3 d4 f#4 a4 d5 f#5 a5 d6 a5 f#5 vol=84 d5 f#5 a5 d5 e5 |",
                "!flute vol=92 pan=60", LARGO,
                "!violin vol=104< rev=60", ANDANTE.replace("g5:3 r:1 |", "vol=112 g5:4 |"),
                "vol=112", RUN, "vol=116", RUN_ON, "vol=118 d5>:16 | _:10")

    piece.voice(1, "!slow_strings rev=74 cho=30 pan=70", rest(1),
                "vol=58", chords, "vol=66", chords,
                "!strings vol=74", chords, "vol=80", chords, "vol=84 d4/maj:16 | _:10")

    piece.voice(2, "!harp rev=66 cho=16 pan=44", rest(1), "vol=60", broken * 2,
                "!steel_guitar cho=34", broken * 2, "!harp vol=72 d3:1 a3 d4 f#4 a4 d5:11 | _:10")

    piece.voice(3, "!cello rev=50 pan=76", rest(1), "vol=62 d3:8 a2 | b2 f#2 | g2 d2 | g2 a2 |",
                "!finger_bass rev=22 pan=64 vol=84", bass, "vol=86", bass * 2, "d2:16 | _:10")

    piece.voice(4, "!clarinet rev=58 pan=84", rest(5), "vol=66 f#4:8 e4 | d4 c#4 | b3 a3 | b3 c#4:7 r:1 |",
                "!horn d4:4 f#4 a4 g4 | f#4 d4 f#4 e4 | d4 b3 d4 a4 | g4 b4 a4 g4:3 r:1 |",
                "vol=68 f#4:4 d4 e4 c#4 | d4 f#4 a4 a3 | b3 g3 a3 f#3 | g3 b3 a3 c#4 | vol=76 a4:16 | _:10")

    piece.voice(5, "!glockenspiel rev=70 pan=40", rest(9), "vol=98", LARGO,
                "vol=88 r:4 f#5 r e5 | r d5 r c#5 | r b4 r a4 | r b4 r c#5 | vol=96 d5:4 f#5 a5 d6 | _:10")

    piece.voice(6, "!trumpet rev=62 pan=74", rest(13),
                "vol=90<", LARGO.replace("c#5:7 r:1", "vol=104 c#5:8"), "f#5>:16 | _:10")

    piece.voice(7, "!flute rev=64 pan=48", rest(9), "vol=86", RUN, "vol=92", RUN_ON, "vol=94 a5:16 | _:10")

    piece.drum(8, quiet(5), "vol=92", bars("b.......b.......", 4),
               "vol=104", (bars("b.....b.b.......", 3) + bars("b.....b.b...b...")) * 2, "B")
    piece.drum(10, quiet(5), "vol=90", bars("....x.......x...", 3), "vol=50<", bars("....x...s...s.ss"),
               "vol=98", bars("....s.......s...", 3), bars("....s.......s..s"),
               bars("....s.......s...", 3), "vol=70<", bars("s...s...s.s.ssss"), "vol=100 S")
    piece.drum(11, quiet(5), "vol=104", bars("..h...h...h...h.", 4), "vol=114", bars("h.H.h.H.h.H.h.H.", 8))
    piece.drum(12, quiet(1), "vol=74", (bars("i...............") + quiet(3)) * 2,
               "vol=84", bars("c..............."), quiet(3),
               "vol=96", bars("c...t...t...t..."), bars("t...t...t...t...", 3), "vol=100 C")
    piece.drum_space(rev=46, pan=64, cho=0)
    return piece
