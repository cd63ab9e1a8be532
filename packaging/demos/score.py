# SPDX-License-Identifier: GPL-2.0-or-later
"""A score on the composing grid, the note text it is written in, and its two file forms.

A voice is a string of words, read from left to right on the grid; one position is a sixteenth:

    |               bar line; it must fall on a multiple of the measure
    c4:2  f#4  bb3  a note and its length in positions; a length holds until the next one. Middle C is c4
    c4'             staccato: the note sounds for half its length
    c4>             accented
    a3/min7         struck as a chord of that type
    r:4             rest
    _:4             the note before goes on, usually over a bar line
    !flute          instrument from here on
    vol=80          velocity from here on; likewise pan, mod, rev (reverb) and cho (chorus), all 0 to 127
    vol=40<         the same, moving in a straight line to the next value of that control

A drum part is read the same way, but its words are patterns with one character a position: a dot is silence,
a letter a stroke of the drum it names, a capital letter an accented one. There, vol is in percent of the
strength that the drum has in the table below.
"""

import re
from dataclasses import dataclass, field

CHANNELS = 13
MELODY_CHANNELS = range(8)
DRUM_CHANNELS = (8, 10, 11, 12)
DRUM_CONTROLS = 9          # row of the effect arrays that speaks for all drums
LAST_POSITION = 989        # what a grid of the usual size can show
ACCENT = 14

PROGRAMS = {
    "piano": 0, "harpsichord": 6, "celesta": 8, "glockenspiel": 9, "music box": 10, "vibraphone": 11,
    "marimba": 12, "xylophone": 13, "tubular bells": 14, "nylon guitar": 24, "steel guitar": 25,
    "acoustic bass": 32, "finger bass": 33, "violin": 40, "viola": 41, "cello": 42, "contrabass": 43,
    "tremolo": 44, "pizzicato": 45, "harp": 46, "timpani": 47, "strings": 48, "slow strings": 49,
    "choir": 52, "voice": 53, "orchestra hit": 55, "trumpet": 56, "trombone": 57, "tuba": 58, "horn": 60,
    "brass": 61, "oboe": 68, "english horn": 69, "bassoon": 70, "clarinet": 71, "piccolo": 72, "flute": 73,
    "recorder": 74, "pan flute": 75, "whistle": 78, "ocarina": 79, "banjo": 105, "fiddle": 110,
    "accordion": 21, "harmonica": 22, "warm pad": 89,
}

CHORDS = {"maj": 1, "min": 2, "maj7": 3, "min7": 4, "m7b5": 5, "oct": 6, "oct3": 7}

# letter: (percussion key, row on the percussion grid, velocity)
DRUMS = {
    "c": (49, 44, 92),    # crash cymbal
    "h": (42, 46, 66),    # closed hi-hat
    "p": (44, 46, 66),    # pedal hi-hat
    "o": (46, 46, 70),    # open hi-hat
    "r": (51, 45, 72),    # ride cymbal
    "t": (54, 47, 88),    # tambourine
    "i": (81, 48, 62),    # open triangle
    "g": (69, 48, 64),    # cabasa
    "w": (76, 49, 72),    # wood block
    "x": (37, 50, 74),    # side stick
    "s": (38, 50, 84),    # snare
    "l": (45, 52, 88),    # low tom
    "b": (36, 54, 94),    # bass drum
    "y": (57, 44, 84),    # second crash, a pair of hand cymbals
}

SEMITONES = {"c": 0, "d": 2, "e": 4, "f": 5, "g": 7, "a": 9, "b": 11}

NOTE = re.compile(r"([a-g])(#|b)?(\d)(>)?(?:/(\w+))?(?::(\d+))?(')?$")
CONTROL = re.compile(r"(vol|pan|mod|rev|cho)=(\d+)(<)?$")
SPACE = re.compile(r"([r_])(?::(\d+))?$")


class Curve:
    """A control over time: steps and straight lines between the values given."""

    def __init__(self, start):
        self.start = start
        self.points = []

    def add(self, position, value, ramp):
        if not 0 <= value <= 127:
            raise ValueError(f"control value {value} is not within 0 to 127")
        self.points.append((position, value, ramp))

    def at(self, position):
        value = self.start
        for index, (begin, level, ramp) in enumerate(self.points):
            if begin > position:
                break
            value = level
            if ramp and index + 1 < len(self.points):
                end, target, _ = self.points[index + 1]
                if position < end:
                    value = level + (target - level) * (position - begin) / (end - begin)
        return int(value + 0.5)


def new_controls():
    return {"vol": Curve(127), "pan": Curve(64), "mod": Curve(0), "rev": Curve(0), "cho": Curve(0)}


@dataclass
class Note:
    position: int
    length: int
    row: int
    instrument: int
    velocity: int
    chord: int = 0


@dataclass
class Part:
    instrument: int
    notes: list = field(default_factory=list)
    controls: dict = field(default_factory=new_controls)
    end: int = 0


class Score:
    def __init__(self, tempo, measure=16, beats=4, value=4):
        self.tempo = tempo
        self.measure = measure
        self.beats = beats
        self.value = value
        self.parts = {}
        self.drum_controls = new_controls()

    # ---- writing music ----

    def voice(self, channel, *sections):
        if channel not in MELODY_CHANNELS:
            raise ValueError(f"channel {channel} is not a melody channel")
        part = Part(instrument=0)
        instrument, length, position, first = 0, 1, 0, True
        pending = []                     # notes whose velocity waits for the curve to be complete
        for word in " ".join(sections).replace("|", " | ").split():
            control, space, note = CONTROL.match(word), SPACE.match(word), NOTE.match(word)
            if word == "|":
                self._check_bar(channel, position)
            elif word.startswith("!"):
                instrument = PROGRAMS[word[1:].replace("_", " ")]
                if first:
                    part.instrument, first = instrument, False
            elif control:
                name, value, ramp = control.groups()
                part.controls[name].add(position, int(value), bool(ramp))
            elif space:
                length = int(space[2] or length)
                if space[1] == "_":
                    if not pending or pending[-1][0].position + pending[-1][0].length != position:
                        raise ValueError(f"channel {channel}: nothing to hold at position {position}")
                    pending[-1][0].length += length
                position += length
            elif note:
                letter, sign, octave, accent, chord, own, staccato = note.groups()
                length = int(own or length)
                pitch = (int(octave) + 1) * 12 + SEMITONES[letter] + {"#": 1, "b": -1}.get(sign, 0)
                sounding = max(1, length // 2) if staccato else length
                pending.append((Note(position, sounding, 127 - pitch, instrument, 0,
                                     CHORDS[chord] if chord else 0), bool(accent)))
                position += length
            else:
                raise ValueError(f"channel {channel}: what is '{word}'?")
        for item, accented in pending:
            item.velocity = min(127, part.controls["vol"].at(item.position) + (ACCENT if accented else 0))
            part.notes.append(item)
        self._keep(channel, part, position)

    def drum(self, channel, *sections):
        if channel not in DRUM_CHANNELS:
            raise ValueError(f"channel {channel} is not a percussion channel")
        part = Part(instrument=0)
        volume, strokes, position = Curve(100), [], 0
        for word in " ".join(sections).split():
            control = CONTROL.match(word)
            if control:
                volume.add(position, int(control[2]), bool(control[3]))
                continue
            for mark in word:
                if mark == "|":
                    self._check_bar(channel, position)
                    continue
                if mark != ".":
                    strokes.append((position, mark))
                position += 1
        for place, mark in strokes:
            key, row, level = DRUMS[mark.lower()]
            level = (level + (ACCENT if mark.isupper() else 0)) * volume.at(place) // 100
            part.notes.append(Note(place, 1, row, key + 93, max(1, min(127, level))))
        for before, after in zip(part.notes, part.notes[1:]):
            # A drum is silenced by the key its channel has by then, so each drum ends before the next begins.
            if before.instrument != after.instrument and before.position + 1 == after.position:
                raise ValueError(f"channel {channel}: two drums touch at position {after.position}")
        part.instrument = part.notes[0].instrument
        self._keep(channel, part, position)

    def drum_space(self, **levels):
        """Pan, reverb and chorus of the percussion as a whole."""
        for name, value in levels.items():
            self.drum_controls[name].add(0, value, False)

    def _check_bar(self, channel, position):
        if position % self.measure:
            number, offset = divmod(position, self.measure)
            raise ValueError(f"channel {channel}: bar line {offset} positions into measure {number + 1}")

    def _keep(self, channel, part, end):
        part.end = end
        if end - 1 > LAST_POSITION:
            raise ValueError(f"channel {channel} ends at {end}, past the grid")
        if channel != 0 and part.notes[0].position == 0 and part.notes[0].velocity < 100:
            # The first position of these channels is always struck at full velocity.
            raise ValueError(f"channel {channel} begins softly at position 0, where it would be struck hard")
        for before, after in zip(part.notes, part.notes[1:]):
            if before.position + before.length > after.position:
                raise ValueError(f"channel {channel}: notes overlap at position {after.position}")
        self.parts[channel] = part

    # ---- the grid ----

    def last(self, channel):
        """Highest position of the channel that is not empty; 0 for a channel without notes."""
        if channel not in self.parts:
            return 0
        note = self.parts[channel].notes[-1]
        return note.position + note.length - 1

    def longest(self):
        return max(self.last(channel) for channel in self.parts)

    def seconds(self):
        """Time that the score takes to play."""
        return (self.longest() + 2) * 13.8 / self.tempo

    def cells(self, channel):
        """Rows of cells and of instruments, trimmed after the last note."""
        cells = [-1] * (self.last(channel) + 1)
        instruments = [0] * len(cells)
        for note in self.parts[channel].notes if channel in self.parts else ():
            for position in range(note.position, note.position + note.length):
                cells[position] = note.row + (1000 if position > note.position else 0)
                instruments[position] = note.instrument
        return cells, instruments

    def chords(self, row, length):
        """Row of chord types. It covers a note to its end, where the player looks when it stops the chord."""
        chords = [0] * length
        part = self.parts.get(row - 1) if row - 1 in MELODY_CHANNELS else None
        for note in part.notes if part else ():
            for position in range(note.position, note.position + note.length):
                chords[position] = note.chord
        return chords

    def volumes(self, channel, length):
        """Row of velocities.

        Channels above the first are struck with the velocity that stands one position before the note, so
        that position already carries the note's own value. Where it is itself the start of a note, in a run
        of sixteenths, a change comes one note late.
        """
        volumes = [127] * length
        notes = self.parts[channel].notes if channel in self.parts else []
        for index, note in enumerate(notes):
            begin = note.position
            if index == 0:
                begin = 0
            elif notes[index - 1].position < note.position - 1:
                begin = note.position - 1
            for position in range(begin, length):
                volumes[position] = note.velocity
        return volumes

    def effect(self, name, channel, length):
        controls = self.parts[channel].controls if channel in self.parts else new_controls()
        if channel == DRUM_CONTROLS:
            controls = self.drum_controls
        return [controls[name].at(position) for position in range(length)]

    # ---- files ----

    def _note_rows(self):
        for channel in range(CHANNELS):
            yield from self.cells(channel)

    def _instruments(self):
        usual = [128 if channel in DRUM_CHANNELS else 0 for channel in range(CHANNELS)]
        return [self.parts[c].instrument if c in self.parts else usual[c] for c in range(CHANNELS)]

    def newest_form(self):
        """Notes, chords, velocities, effects, tempo and meter: the form that the composing window writes."""
        self._check_chords()
        fields = self.longest() + 1
        lines = [joined(values) for values in self._note_rows()]
        lines += [joined(self._instruments()), "Polyphonics"]
        lines += [joined(self.chords(index, fields + 1)) for index in range(9)]
        lines += ["Volume"] + [joined(self.volumes(channel, fields)) for channel in range(CHANNELS)]
        for keyword, name in (("Modulation_Change", "mod"), ("Pan_Change", "pan"),
                              ("Reverb_Change", "rev"), ("Chorus_Change", "cho")):
            lines += [keyword] + [joined(self.effect(name, channel, fields)) for channel in range(CHANNELS)]
        lines += [f"Tempo={self.tempo}", f"Notes per measure={self.measure}",
                  f"Beats per measure={self.beats}", f"Note Value={self.value}"]
        return encoded(lines)

    def first_form(self):
        """Notes, tempo and instruments only: the form of the lessons."""
        rows = [joined(values) for values in self._note_rows()]
        return encoded(rows + [f" {self.tempo} ", joined(self._instruments())])

    def _check_chords(self):
        # The player knows one set of chord steps at a time, so chords belong to one channel.
        players = [c for c, part in self.parts.items() if any(note.chord for note in part.notes)]
        if len(players) > 1:
            raise ValueError(f"chords on channels {players}; they would silence each other wrongly")


def joined(values):
    return ",".join(str(value) for value in values)


def encoded(lines):
    return "".join(line + "\r\n" for line in lines).encode("ascii")


def bars(words, count=1):
    """The same measure several times."""
    return f"{words} | " * count


def rest(count):
    """Measures of silence in a voice."""
    return bars("r:16", count)


def quiet(count):
    """Measures of silence in a drum part."""
    return bars("." * 16, count)


def shift(words, semitones):
    """The same music, higher or lower."""
    names = ("c", "c#", "d", "eb", "e", "f", "f#", "g", "g#", "a", "bb", "b")

    def moved(match):
        letter, sign, octave = match.groups()
        pitch = int(octave) * 12 + SEMITONES[letter] + {"#": 1, "b": -1}.get(sign, 0) + semitones
        return f"{names[pitch % 12]}{pitch // 12}"

    return re.sub(r"(?<!\S)([a-g])(#|b)?(\d)(?=[>/:'\s]|$)", moved, words)


def spread(words, length):
    """Give each of the words the same length."""
    return " ".join(f"{word}:{length}" for word in words.split())
