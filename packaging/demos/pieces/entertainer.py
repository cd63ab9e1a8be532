# SPDX-License-Identifier: GPL-2.0-or-later
"""Scott Joplin (1868-1917): The Entertainer, a ragtime two step (1902); introduction and first strain.

Two measures of the print make one here. The right hand is channels 1 to 3, the left hand channels 4 to 7.
"""

from score import Score, rest, spread

INTRO = """
    d6:1 e6 c6 a5:2 b5:1 g5:2 d5:1 e5 c5 a4:2 b4:1 g4:2 |
    d4:1 e4 c4 a3:2 b3:1 a3 ab3 g3:2 r vol=116 g5 vol=96 d4:1 d#4 |
"""
INTRO_BELOW = """
    r:1 e5:1 c5 a4:2 b4:1 g4:2 d4:1 e4 c4 a3:2 b3:1 g3:2 |
    d3:1 e3 c3 a2:2 b2:1 a2 ab2 g2:2 r g4 r |
"""
RAGGED = "vol=98 e4:1 c5:2 e4:1 c5:2 e4:1 c5 "
ANSWER = "vol=112 e6:1 c6 d6 e6:2 b5:1 d6:2 "

TOP = (RAGGED + "_:5 vol=110 c6:1 d6 d#6 | " + ANSWER + "c6:6 vol=96 d4:1 d#4 | " +
       RAGGED + "_:6 vol=106 a5:1 g5 | vol=110 f#5 a5 c6 e6:2 d6:1 c6 a5 d6:6 vol=96 d4:1 d#4 | " +
       RAGGED + "_:5 vol=110 c6:1 d6 d#6 | " + ANSWER + "c6:6 vol=104< c6:1 d6 | " +
       "e6 c6 d6 e6:2 c6:1 d6 c6 e6 c6 d6 e6:2 vol=116 c6:1 d6 c6 | " +
       "e6 c6 d6 e6:2 b5:1 d6:2 c6:2 r c6>:4 | _:4")
OCTAVE = """
    r:13 c5:1 d5 d#5 | e5 c5 d5 e5:2 b4:1 d5:2 c5:6 r:2 |
    r:14 a4:1 g4 | f#4 a4 c5 e5:2 d5:1 c5 a4 d5:6 r:2 |
    r:13 c5:1 d5 d#5 | e5 c5 d5 e5:2 b4:1 d5:2 c5:6 c5:1 d5 |
    e5 c5 d5 e5:2 c5:1 d5 c5 e5 c5 d5 e5:2 c5:1 d5 c5 |
    e5 c5 d5 e5:2 b4:1 d5:2 c5:2 r c5:4 | _:4
"""
MIDDLE = """
    r:13 e5:1 f5 f#5 | g5 e5 f5 g5:2 d5:1 f5:2 e5:6 r:2 |
    r:14 c5:1 c5 | c5 r:7 f5:6 r:2 |
    r:13 e5:1 f5 f#5 | g5 e5 f5 g5:2 d5:1 f5:2 e5:6 r:2 |
    r:16 | g5:1 e5 f5 g5:2 d5:1 f5:2 e5:2 r e5:4 | _:4
"""

# Left hand in eighths, a measure a group: what each channel plays, from the lowest up.
LEFT = (
    ("c3 r g2 r  f2 r e2 r", "r e3 g3 g3  f3 a3 e3 g3", "r g3 r bb3  r r r r", "r c4 r c4  r c4 r c4"),
    ("g2 r g2 r  c3 r r r", "r e3 r f3  r e3 e3 g3", "r g3 r g3  r g3 g3 r", "r c4 r b3  r c4 c4 b3"),
    ("c3 r g2 r  f2 r e2 eb2", "r e3 g3 g3  f3 a3 e3 eb3", "r g3 r bb3  r r r r", "r c4 r c4  r c4 r r"),
    ("d2 r d3 r  r g2 a2 b2", "d3 f#3 r f#3  g3 g3 a3 b3", "r a3 r a3  r r r r", "r c4 r c4  b3 r r r"),
    ("c3 r g2 r  f2 r e2 r", "r e3 g3 g3  f3 a3 e3 g3", "r g3 r bb3  r r r r", "r c4 r c4  r c4 r c4"),
    ("g2 r g2 r  c3 r r r", "r e3 r f3  r e3 g3 r", "r g3 r g3  r g3 c4 r", "r c4 r b3  r c4 e4 r"),
    ("c3 r bb2 r  a2 r ab2 r", "c4 g3 bb3 g3  a3 a3 ab3 ab3", "r c4 r c4  r c4 r c4", "r e4 r e4  r f4 r f4"),
)
PICKUP = ("r:12 g2:2 r", "r:14 g3:2", "r:16", "r:14 b3:2")
CLOSE = ("g2:2 r g2 r c3 g2 c2:4 | _:4", "g3:2 g3 r g3 g3 g3 c3:4 | _:4", "r:2 c4 r:12", "r:2 e4 r b3 c4 r:6")


def score():
    piece = Score(tempo=80)
    touch = "!piano rev=36 cho=0"
    piece.voice(0, touch, "pan=72 vol=112", INTRO, TOP)
    piece.voice(1, touch, "pan=70 vol=96", INTRO_BELOW, OCTAVE)
    piece.voice(2, touch, "pan=70 vol=88", rest(1), "r:12 d5:2 r |", MIDDLE)
    for voice, (channel, level) in enumerate(((3, 92), (4, 80), (5, 78), (6, 80))):
        piece.voice(channel, touch, f"pan=56 vol={level}", rest(1), PICKUP[voice], "|",
                    *(spread(measure[voice], 2) + " |" for measure in LEFT), CLOSE[voice])
    return piece
