# SPDX-License-Identifier: GPL-2.0-or-later
"""Edvard Grieg (1843-1907): In the Hall of the Mountain King, from Peer Gynt, op. 23, as a study in effects.

    measures 2 to 5     the pan walks across the cave, deep reverb
    measures 6 to 9     an echo answers from the other side, softer each time
    measures 10 to 13   another instrument and another place for every note
    measures 14 to 17   chorus opens slowly on the woodwinds
    measures 18 to 25   swells: struck sixteenths that rise and fall in velocity
    measures 26 to 33   a voice above the band, its modulation rising from note to note
    measures 34 to 45   everything, the reverb drying out; then chords with the cave's answer between them
"""

from score import Score, bars, quiet, rest, shift

LOW_B = """
    b2:2 c#3 d3 e3 f#3 d3 f#3:4 | f3:2 c#3 f3:4 e3:2 c3 e3:4 |
    b2:2 c#3 d3 e3 f#3 d3 f#3 b3 | a3 f#3 d3 f#3 a3:7 r:1 |
"""
LOW_F = """
    f#3:2 g#3 a#3 b3 c#4 a#3 c#4:4 | d4:2 a#3 d4:4 c#4:2 a#3 c#4:4 |
    f#3:2 g#3 a#3 b3 c#4 a#3 c#4:4 | d4:2 a#3 d4 a#3 c#4:7 r:1 |
"""
B = shift(LOW_B, 12)
F = shift(LOW_F, 12)

PULSE_B = bars("b2:2 r f#2 r b2 r f#2 r", 3) + bars("d3:2 r a2 r d3 r a2 r")
PULSE_F = bars("f#2:2 r c#3 r f#2 r c#3 r", 4)

COLOURS = ("pizzicato", "bassoon", "marimba", "clarinet", "vibraphone", "oboe", "harp", "xylophone")


def note_by_note(words, places=(14, 40, 66, 92, 116, 92, 66, 40)):
    """Give each note the next instrument and the next place between left and right."""
    text, count = [], 0
    for word in words.split():
        if word[0] in "abcdefg":
            text.append(f"!{COLOURS[count % len(COLOURS)]} pan={places[count % len(places)]}")
            count += 1
        text.append(word)
    return " ".join(text) + " "


def bowed(words):
    """Break every note into sixteenths."""
    text, length = [], 1
    for word in words.split():
        if word[0] in "abcdefg":
            name, _, own = word.partition(":")
            length = int(own or length)
            text.append(" ".join([f"{name}:1"] + [name] * (length - 1)))
        else:
            if word[0] == "r":
                length = int(word[2:] or length)
            text.append(word)
    return " ".join(text) + " "


def swelling(words, soft, loud):
    """Rise to the middle of each measure and fall again."""
    text = ""
    for measure in words.split("|")[:-1]:
        notes = measure.split()
        middle = len(notes) // 2
        text += f"vol={soft}< {' '.join(notes[:middle])} vol={loud}< {' '.join(notes[middle:])} | "
    return text


def echo(note, level, far, near):
    return f"vol={level} pan={far} {note}:2 vol={level - 22} pan={near} {note}:2"


def stabs(note):
    """The closing chords, with the places of the answers left free."""
    pair = f"{note}:2 r:6 {note}:2 r:6 | r:16 | "
    return pair * 2 + f"{note}:2 r {note} r {note} r {note} r | "


def score():
    piece = Score(tempo=138)

    # The tune.
    walk = zip(((10, 60), (60, 116), (116, 60), (60, 10)), LOW_B.split("|"))
    piece.voice(0, "!horn rev=120 cho=0 pan=64 mod=44 vol=62 f#3:12 mod=0 r:4 |",
                "!pizzicato rev=112 vol=86", *(f"pan={a}< {notes} pan={b} |" for (a, b), notes in walk),
                "!bassoon rev=104 pan=30 vol=88", LOW_B,
                "rev=90 vol=88", note_by_note(LOW_F),
                "!clarinet pan=50 rev=76 vol=84< cho=0<", F, "cho=110",
                "!tremolo cho=40 rev=70 pan=44", swelling(bowed(B), 62, 96), swelling(bowed(B), 74, 108),
                "!violin rev=60 cho=30 vol=96", F, "vol=102", F,
                "!strings rev=52 cho=20 pan=54 vol=100<", bowed(B), "vol=106<", bowed(B), "vol=112", bowed(B),
                "!brass rev=40 cho=0 vol=116", stabs("b4"), "vol=124 b4:16 | _:4")

    # Echoes, then the octave above.
    piece.voice(1, "!celesta rev=127 cho=30 pan=112", rest(5),
                "r:14 vol=84 pan=112 f#4:2 | r:6 vol=82 pan=112 f4:2 r:6 vol=76 e4:2 |", rest(1),
                "r:8", echo("a4", 92, 112, 16), echo("a4", 64, 96, 32), "|", rest(8),
                "!xylophone rev=70 cho=0 pan=84 vol=78", rest(4), B,
                "!oboe vol=84 rev=60", F * 2,
                "!piccolo pan=88 rev=56 vol=84", shift(B, 12) * 2, "vol=90", shift(B, 12),
                "!trumpet rev=40 vol=106", stabs("f#4"), "f#4:16 | _:4")

    # Bass.
    piece.voice(2, "!pizzicato rev=96 pan=72", rest(1), "vol=66", PULSE_B, "vol=70", PULSE_B,
                "vol=72", PULSE_F * 2, "rev=70 vol=78", PULSE_B, "!contrabass vol=104", PULSE_B,
                "rev=50 vol=108", PULSE_F * 2, "vol=112", PULSE_B * 2, "vol=118", PULSE_B,
                "vol=106", stabs("b1"), "b1:16 | _:4")

    # Chords on the off beats, by chord type.
    off_b = bars("r:2 b3/min:2 r b3/min r b3/min r b3/min") + rest(1)
    off_f = bars("r:2 f#3/maj:2 r f#3/maj r f#3/maj r f#3/maj") + rest(1)
    piece.voice(3, "!pizzicato rev=70 cho=0 pan=40", rest(21), "vol=70", off_b * 2, "vol=78", off_f * 4,
                "!horn rev=50 pan=40 vol=84", off_b * 6,
                "!brass vol=104", stabs("b3/min"), "b3/min:16 | _:4")

    # A voice whose vibrato grows, then a choir.
    wail = """
        mod=10 f#5:8 mod=60 a#5:8 | mod=100 a5:8 mod=127 a#5:8 |
        mod=20 c#6:8 mod=70 a#5:8 | mod=110 d5:8 mod=127 c#5:7 r:1 |
    """
    piece.voice(4, "!voice rev=90 cho=60 pan=64", rest(25), "vol=62", wail, "vol=68", wail,
                "!choir rev=100 vol=74 mod=0", "b4:15 r:1 | f4:8 e4:7 r:1 | b4:15 r:1 | a4:15 r:1 |" * 3)

    # The cave's answers to the closing chords.
    answer = "pan={}< b4:1 c#5 d5 e5 f#5 d5 f#5:2 pan={} r:8 |"
    piece.voice(5, "!celesta rev=127 cho=40", rest(46), "vol=84", answer.format(16, 112), rest(1),
                "vol=66", answer.format(112, 16))

    # Timpani, with a roll into the last chord.
    beat_b = bars("b2:2 r:6 f#2:2 r:6", 3) + bars("d3:2 r:6 a2:2 r:6")
    beat_f = bars("f#2:2 r:6 c#3:2 r:6", 4)
    piece.voice(7, "!timpani rev=70 pan=76", rest(21), "vol=92", beat_b, "vol=100", beat_f * 2,
                "vol=110", beat_b * 3, "rev=40 vol=104 b2:2 r:6 b2:2 r:6 |", rest(1), "b2:2 r:6 b2:2 r:6 |",
                "vol=50<", bowed("f#2:16 | f#2:16 |"), "vol=120 b2:8")

    piece.drum(8, quiet(25), "vol=108", bars("b.......b.......", 8), "vol=116", bars("b...b...b...b...", 12),
               "vol=124", (bars("b.......b.......") + quiet(1)) * 2, bars("b...b...b...b..."), "B")
    piece.drum(10, quiet(33), "vol=100", bars("....s.......s...", 8), "vol=104", bars("s.s.S.s.s.s.S.s.", 4),
               quiet(3), "vol=40<", bars("s" * 16), "vol=104", bars("s" * 16), "S")
    piece.drum(11, quiet(33), "vol=108", (bars("c...............") + quiet(3)) * 2,
               bars("c...............", 4),
               "vol=100", bars("c.......c......."), quiet(1), bars("c.......c......."), quiet(2), "vol=116 C")
    piece.drum(12, quiet(17), "vol=96", bars("i...............", 8), bars("..t...t...t...t.", 20))
    piece.drum_space(rev=64, pan=64)
    return piece
