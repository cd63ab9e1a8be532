# SPDX-License-Identifier: GPL-2.0-or-later
"""Johann Sebastian Bach (1685-1750): Invention No. 1 in C major, BWV 772.

Complete. The grid has no room for the trills, nor for the two thirty-seconds of measure 6, of which the first
stands for both.
"""

from score import Score, rest

SOPRANO = """
    r:1 c4 d4 e4 f4 d4 e4 c4 g4:2 c5 b4 c5 |
    d5:1 g4 a4 b4 c5 a4 b4 g4 d5:2 g5 f5 g5 |
    vol=90< e5:1 a5 g5 f5 e5 g5 f5 a5 g5 f5 e5 d5 c5 e5 d5 f5 |
    e5 d5 c5 b4 a4 c5 b4 d5 c5 b4 a4 g4 f#4 a4 g4 b4 |
    vol=80< a4:2 d4 c5:3 d5:1 b4 a4 g4 f#4 e4 g4 f#4 a4 |
    g4 b4 a4 c5 b4 d5 c5 e5 vol=98 d5 b4 d5 g5 b4:2 a4:1 g4 |

    g4:2 r:6 vol=76 r:1 g4 a4 b4 c5 a4 b4 g4 |
    f#4:2 r:6 vol=82 r:1 a4 b4 c5 d5 b4 c5 a4 |
    b4:2 r:6 vol=88 r:1 d5 c5 b4 a4 c5 b4 d5 |
    c5:2 r:6 vol=92 r:1 e5 d5 c5 b4 d5 c#5 e5 |
    vol=86 d5:2 c#5 d5 e5 f5 a4 b4 c#5 |
    d5:2 f#4 g#4 a4 b4 c5 d5:4 |
    vol=84< _:1 e4 f#4 g#4 a4 f#4 g#4 e4 e5 d5 c5 e5 d5 c5 b4 d5 |
    c5 a5 g#5 b5 vol=100 a5 e5 f5 d5 g#4 f5 e5 d5 c5:2 b4:1 a4 |

    vol=82 a4:1 a5 g5 f5 e5 g5 f5 a5 g5:8 |
    vol=76 _:1 e5 f5 g5 a5 f5 g5 e5 f5:8 |
    vol=72 _:1 g5 f5 e5 d5 f5 e5 g5 f5:8 |
    vol=76 _:1 d5 e5 f5 g5 e5 f5 d5 e5:8 |
    vol=80< _:1 c5 d5 e5 f5 d5 e5 c5 d5 e5 f5 g5 a5 f5 g5 e5 |
    f5 g5 a5 b5 vol=104 c6 a5 b5 g5 c6:2 g5 e5 d5:1 c5 |
    vol=96 c5 bb4 a4 g4 f4 a4 g4 bb4 a4 b4 c5 e4 d4 c5 f4 b4 |
    vol=98 c5:16 | _:10
"""

BASS = """
    r:9 c3:1 d3 e3 f3 d3 e3 c3 |
    g3:2 g2 r:5 g3:1 a3 b3 c4 a3 b3 g3 |
    vol=92< c4:2 b3 c4 d4 e4 g3 a3 b3 |
    c4:2 e3 f#3 g3 a3 b3 c4:4 |
    vol=102 _:1 d3 e3 f#3 g3 e3 f#3 d3 vol=96 g3:2 b2 c3 d3 |
    e3:2 f#3 g3 e3 vol=104 b2:3 c3:1 d3:2 d2 |

    vol=98 r:1 g2 a2 b2 c3 a2 b2 g2 vol=90 d3:2 g3 f#3 g3 |
    vol=100 a3:1 d3 e3 f#3 g3 e3 f#3 d3 vol=92 a3:2 d4 c4 d4 |
    vol=102 g3:1 g4 f4 e4 d4 f4 e4 g4 vol=92 f4:2 e4 f4 d4 |
    vol=102 e4:1 a4 g4 f4 e4 g4 f4 a4 vol=94 g4:2 f4 g4 e4 |
    vol=104 f4:1 bb4 a4 g4 f4 a4 g4 bb4 a4 g4 f4 e4 d4 f4 e4 g4 |
    f4 e4 d4 c4 b3 d4 c4 e4 d4 c4 b3 a3 g#3 b3 a3 c4 |
    vol=92< b3:2 e3 d4:3 e4:1 c4 b3 a3 g3 f#3 a3 g#3 b3 |
    a3 c4 b3 d4 c4 e4 d4 f4 vol=106 e4:2 a3 e4 e3 |

    vol=96 a3:2 a2 r:5 e4:1 d4 c4 b3 d4 c#4 e4 |
    vol=90 d4:8 _:1 a3 b3 c4 d4 b3 c4 a3 |
    vol=86 b3:8 _:1 d4 c4 b3 a3 c4 b3 d4 |
    vol=88 c4:8 _:1 g3 a3 bb3 c4 a3 bb3 g3 |
    vol=92< a3:2 bb3 a3 g3 f3 d4 c4 bb3 |
    a3:2 f4 e4 d4 vol=106 e4:1 d3 e3 f3 g3 e3 f3 d3 |
    e3:2 c3 d3 e3 f3:1 d3 e3 f3 g3:2 g2 |
    vol=104 c3:16 | _:10
"""


def score():
    piece = Score(tempo=80)
    space = "!harpsichord rev=44 cho=0"
    piece.voice(0, space, "pan=50 vol=90", SOPRANO)
    piece.voice(1, space, "pan=78 vol=98", BASS)
    for channel, note, pan in ((2, "g4", 54), (3, "e4", 58), (4, "c2", 80)):    # the closing chord only
        piece.voice(channel, space, f"pan={pan} vol=92", rest(21), f"{note}:16 | _:10")
    return piece
