# SPDX-License-Identifier: GPL-2.0-or-later
"""The British Grenadiers, a march of the eighteenth century, for fifes, band and drums.

A call, a verse for fifes in F, a verse for the band, a rise to G, and a verse for all with a high descant.
Everything is written in G and shifted down where it is played in F.
"""

from score import Score, bars, quiet, rest, shift, spread

STRAIN_1 = """
    g4:4 d4 g4 a4 | b4:8 a4:4 b4:2 c5 | d5:4 g4 b4:2 a4 g4 f#4 | g4:11 r:1 d4:4 |
    g4:4 d4 g4 a4 | b4:8 a4:4 b4:2 c5 | d5:4 g4 b4:2 a4 g4 f#4 | g4:11 r:1 b4:2 c5 |
"""
STRAIN_2 = """
    d5>:6 e5:2 d5:4 c5 | b4 c5 d5 d5 | e5> e5 d5:2 c5 b4 a4 | g4:8 f#4:3 r:1 d4:2 d4 |
    g4:4 f#4:2 g4 a4:4 g4:2 a4 | b4:4 a4:2 b4 c5:4 b4:2 c5 | d5>:4 g4 b4:2 a4 g4 f#4 |
"""
SECOND_2 = """
    b4:6 c5:2 b4:4 a4 | g4 a4 b4 b4 | c5 c5 b4:2 a4 g4 f#4 | d4:8 d4:3 r:1 d4:2 d4 |
    d4:4 d4:2 d4 f#4:4 e4:2 f#4 | g4:4 f#4:2 g4 a4:4 g4:2 a4 | b4:4 d4 g4:2 f#4 e4 d4 |
"""

# Each measure: bass and chord on the four beats.
BEATS_1 = ["g2 G g2 D", "g2 G d2 D", "g2 G d2 D", "g2 G d2 D",
           "g2 G g2 D", "g2 G d2 D", "g2 G d2 D", "g2 G g2 -"]
BEATS_2 = ["g2 G g2 D", "g2 D g2 G", "c3 C b2 D", "d3 G d2 D", "g2 G d2 D", "b2 G c3 C", "b2 G d2 D"]
CHORDS = {"G": ("d4", "b3", "g3"), "D": ("c4", "a3", "f#3"), "C": ("e4", "c4", "g3"), "-": ("r", "r", "r")}

DESCANT_1 = """
    r:4 b5:2 a5 g5 d5 f#5 a5 | b5 c6 b5 a5 f#5 a5 g5 f#5 | g5 b5 g5 b5 d5 f#5 a5 c6 | b5:4 g5 d5:2 r:6 |
    r:4 b5:2 a5 g5 d5 f#5 a5 | b5 c6 b5 a5 f#5 a5 g5 f#5 | g5 b5 g5 b5 d5 f#5 a5 c6 |
    b5:1 c6 b5 c6 b5 c6 b5 c6 b5:4 r |
"""
DESCANT_2 = """
    r:4 g5:2 b5 a5 f#5 d5 f#5 | g5:4 a5 b5 b5 | c6 g5 b5:2 a5 g5 f#5 | g5:1 a5 g5 a5 g5 a5 g5 a5 f#5:4 r |
    b5:2 a5 b5 g5 c6 a5 f#5 a5 | b5 d5 g5 b5 c6 g5 e5 g5 | b5:4 g5 d5:2 f#5 a5 c6 |
"""
TROMBONE_1 = """
    b3:8 b3:4 c4 | d4:8 c4 | b3 g3:4 a3 | g3:12 r:4 | b3:8 b3:4 c4 | d4:8 c4 | b3 g3:4 a3 | g3:12 r:4 |
"""
TROMBONE_2 = "b3:8 b3:4 a3 | g3 a3 b3 d4 | c4:8 b3:4 a3 | b3:8 a3:7 r:1 | b3:8 c4 | d4 e4 | d4 g3:4 f#3 | "


def oompah(beats):
    """Bass on the first and third beat, detached."""
    return "".join(f"{m.split()[0]}:4' r:4 {m.split()[2]}:4' r:4 | " for m in beats)


def afterbeats(beats, voice):
    """One note of the chords on the second and fourth beat, detached."""
    text = ""
    for m in beats:
        second, fourth = (CHORDS[m.split()[beat]][voice] for beat in (1, 3))
        text += f"r:4 {second}:4' r:4 {fourth}:4' | ".replace("r:4'", "r:4")
    return text


def score():
    piece = Score(tempo=107)

    def low(*words):
        return shift(" ".join(words), -2)

    call = "g4:3 r:1 g4:2 g4 b4:3 r:1 g4:3 r:1 | d5>:8 r:4"
    call_second = "d4:3 r:1 d4:2 d4 g4:3 r:1 d4:3 r:1 | b4:8 r:8 |"

    # Sections: call 4 measures, fifes 16, call 2, band 16, rise 2, all 16, close 2.
    piece.voice(0, rest(2), "!trumpet rev=50 pan=60 vol=96", low(call),
                "!piccolo rev=58 pan=52 vol=84", low("d5:4 |"),
                low(shift(STRAIN_1, 12)), "vol=90<", low(shift(STRAIN_2, 12)), "vol=98", low("g5:12 r:4 |"),
                "!trumpet pan=60 vol=100", low(call),
                "!clarinet vol=92", low("d4:4 |", STRAIN_1),
                "!trumpet vol=98<", low(STRAIN_2), "vol=106", low("g4:12 r:4 |"),
                "vol=100 a4:3 r:1 a4:2 a4 c5:3 r:1 a4:3 r:1 | e5>:8 vol=100 d5:4 d4 |",
                "vol=104", STRAIN_1, "vol=108", STRAIN_2, "vol=114 g4:12 r:4 |",
                "g4:4 b4:2 b4 d5:4 b4 | g5>:4' r:4 g4>:8")

    piece.voice(1, rest(2), "!trumpet rev=50 pan=72 vol=84", low(call_second), rest(8),
                "!piccolo rev=58 pan=76 vol=74", low(shift(SECOND_2, 12), "d5:12 r:4 |"),
                "!trumpet vol=86 pan=72", low(call_second),
                "!clarinet vol=80", low(TROMBONE_1), "!trumpet vol=84", low(SECOND_2, "d4:12 r:4 |"),
                "vol=86 f4:3 r:1 f4:2 f4 a4:3 r:1 f4:3 r:1 | c5:8 f#4:4 r |",
                "!trombone vol=76", TROMBONE_1, TROMBONE_2, "g3:12 r:4 |",
                "b3:4 d4:2 d4 b3:4 d4 | d4>:4' r:4 b3>:8")

    # The after-beats: three voices of one chord.
    for voice, (channel, pan) in enumerate(((2, 86), (4, 84), (6, 82))):
        tonic = CHORDS["G"][voice]
        piece.voice(channel, f"!horn rev=48 pan={pan}", rest(22),
                    "vol=72", low(afterbeats(BEATS_1, voice)),
                    "vol=84", low(afterbeats(BEATS_2, voice)), rest(1),
                    "vol=86", ("f4:8", "c4:8", "a3:8")[voice], "r:8 |",
                    ("c4:8", "a3:8", "f#3:8")[voice], "r:8 |",
                    "vol=88", afterbeats(BEATS_1 + BEATS_2, voice), f"{tonic}:8 r:8 |",
                    afterbeats(["g2 G d2 G"], voice), f"{tonic}>:4' r:4 {tonic}>:8")

    piece.voice(3, "!tuba rev=36 pan=64", rest(3), "vol=84", low("g2:8 r:8 |"), rest(8),
                "vol=70", low(oompah(BEATS_2), "g2:4' r:4 d2:4' r:4 |"), rest(2),
                "vol=80", low(oompah(BEATS_1)), "vol=88", low(oompah(BEATS_2), "g2:4' r:4 d2:4' g2:4' |"),
                "vol=92 f2:8 c2:8 | d2:8 d2:8 |",
                "vol=94", oompah(BEATS_1 + BEATS_2), "g2:4' r:4 d2:4' d2 | g2 r d2 r | g2>:4' r:4 g1>:8")

    piece.voice(5, "!piccolo rev=60 pan=46", rest(40), "vol=68", DESCANT_1, "vol=74", DESCANT_2,
                "b5:12 r:4 | r:8 d5:2 g5 b5 d5 | g5:4' r:4 g5>:8")

    piece.voice(7, "!glockenspiel rev=56 pan=84", rest(40),
                "vol=96", STRAIN_1, "vol=104", STRAIN_2, "g4:12 r:4 |")

    street = bars("S...s.ssS...s.s.") + bars("S.s.s.ssS.s.ssss")
    soft = bars("s.....s.s...s...") + bars("s.....s.s...s.ss")
    turn = bars("S...s.ssS...s.s.") + bars("ssssssssS...S...")
    piece.drum(10, "vol=126", street * 2,
               "vol=92", soft * 4, "vol=94", street * 3, turn,
               "vol=106", street,
               "vol=89", soft * 4, "vol=102", street * 3, turn,
               "vol=94<", bars("s.s.s.s.s.s.s.ss"), "vol=126", bars("ssssssssssssS..."),
               "vol=109", street * 7, turn,
               bars("S.s.s.ssS.s.ssss"), "vol=126 S.......Sssssss")

    walk, turn = bars("b.......b......."), bars("b.......b...b...")
    call = bars("b...b...b...b...") + bars("b...............")
    piece.drum(8, quiet(2), call,
               "vol=94", walk * 15, turn,
               "vol=111", call,
               "vol=99", walk * 8, "vol=111", walk * 7, turn,
               "vol=116", bars("b...b...b...b..."), walk,
               "vol=124", walk * 15, turn,
               walk, "vol=126 B.......B")

    clash = bars("y...............")
    piece.drum(11, quiet(3), "vol=106", clash, quiet(17), clash,
               "vol=101", clash, quiet(7), "vol=106", (clash + quiet(3)) * 2,
               quiet(1), bars("........y......."),
               "vol=121", (clash + quiet(3)) * 4, quiet(1), "vol=126 Y.......Y")

    tambourine = bars("....t.......t...", 8)
    piece.drum(12, quiet(12), "vol=100", tambourine, quiet(2),
               tambourine, bars("....p.......p...", 8), quiet(2),
               bars("..p.p.p...p.p.p.", 8), bars("....t.......t.t.", 8))
    piece.drum_space(rev=44, pan=64)
    return piece
