# SPDX-License-Identifier: GPL-2.0-or-later
"""What playing sends, worked out a second time from the rules alone, slowly and step by step."""

import struct

CHANNELS = 13
CHORDS = {1: (4, 7, 12), 2: (3, 7, 12), 3: (4, 7, 11), 4: (3, 7, 10), 5: (3, 6, 10), 6: (-12, 0, 0), 7: (-12, 12, 0)}
CLEARED = {"Volume": 127, "Modulation_Change": 0, "Pan_Change": 64, "Reverb_Change": 0, "Chorus_Change": 0}


def f32(value):
    return struct.unpack("f", struct.pack("f", value))[0]


class Score:
    """A score as a file in the newest form fills it."""

    def __init__(self, positions=1000):
        self.last = positions
        self.cell = [[-1] * (positions + 1) for _ in range(16)]
        self.instrument = [[0] * (positions + 1) for _ in range(16)]
        self.chord = [[0] * (positions + 1) for _ in range(16)]
        self.effects = {name: [[cleared] * (positions + 1) for _ in range(16)] for name, cleared in CLEARED.items()}
        self.tempo = 100
        self.meter = (16, 4, 4)
        self.channel_instrument = [0] * 16

    def used(self):
        return [c for c in range(CHANNELS) if any(cell >= 0 for cell in self.cell[c])]

    def song_end(self, muted=()):
        end = 0
        for c in range(CHANNELS):
            filled = [p for p, cell in enumerate(self.cell[c]) if cell >= 0]
            if c not in muted and filled and filled[-1] >= 1:
                end = max(end, filled[-1] + 1)
        return end

    def text(self):
        """The newest form, written out."""
        last = [max([p for p, cell in enumerate(self.cell[c]) if cell >= 0], default=0) for c in range(CHANNELS)]
        longest = max(last)
        lines = []
        for c in range(CHANNELS):
            lines.append(self.cell[c][: last[c] + 1])
            lines.append(self.instrument[c][: last[c] + 1])
        lines.append(self.channel_instrument[:CHANNELS])
        lines.append(["Polyphonics"])
        lines += [self.chord[r][: longest + 2] for r in range(9)]
        for name in CLEARED:
            lines.append([name])
            lines += [self.effects[name][c][1 : longest + 2] for c in range(CHANNELS)]
        lines.append([f"Tempo={self.tempo}"])
        lines += [[f"{key}={value}"] for key, value in
                  zip(("Notes per measure", "Beats per measure", "Note Value"), self.meter)]
        return "".join(",".join(map(str, line)) + "\r\n" for line in lines)


def kind(cell):
    return 0 if cell < 0 else 1 if cell < 1000 else 2


class Player:
    def __init__(self, score, top=None, muted=(), strummed=(), classic=False):
        self.s, self.muted, self.strummed, self.classic = score, muted, strummed, classic
        self.top = top if top is not None else max([1] + score.used())
        self.velocity = [127] * 12 + [0] * 4
        self.drum = [False] * 16
        self.key = [0] * 16
        self.steps = (3, 7, 12)
        self.position, self.now, self.lines = 0, 0.0, []

    def get(self, grid, channel, position):
        return grid[channel][position] if 0 <= position <= self.s.last else None

    def send(self, word):
        self.lines.append(f"{self.position} {self.now:.6f} 0x{word & 0xFFFFFFFF:06X}")

    def pitch(self, row, c):
        return (self.key[c], 9) if self.drum[c] else (127 - row, c)

    def start(self, row, c):
        s, p = self.s, self.position
        if c > 7:
            self.drum[c] = True
        note, ch = self.pitch(row, c)
        volume = self.get(s.effects["Volume"], c, p + 1)
        if volume is not None:
            self.velocity[0] = volume  # the active channel is 0
        chord = self.get(s.chord, c + 1, p) or 0
        if c < 8 and chord >= 1:
            self.velocity[c] = round(self.velocity[c] * 0.8)
        for name, number in (("Modulation_Change", 1), ("Pan_Change", 10), ("Reverb_Change", 91),
                             ("Chorus_Change", 93)):
            value = self.get(s.effects[name], ch, p + 1)
            if value is not None:
                self.send(0xB0 + ch + number * 0x100 + value * 0x10000)
        self.send(0x90 + ch + note * 0x100 + self.velocity[c] * 0x10000)
        if ch == 9 or chord == 0:
            return
        self.steps = CHORDS.get(chord, self.steps)
        self.velocity[c] = round(self.velocity[c] * 0.8)
        strum = c in self.strummed
        self.now += 0.045 if strum else 0
        self.send(0x90 + ch + (note + self.steps[0]) * 0x100 + self.velocity[c] * 0x10000)
        self.now += 0.035 if strum else 0
        if self.steps[1] > 0:
            self.send(0x90 + ch + (note + self.steps[1]) * 0x100 + self.velocity[c] * 0x10000)
            self.now += 0.035 if strum else 0
        if self.steps[2] > 0:
            self.send(0x90 + ch + (note + self.steps[2]) * 0x100 + self.velocity[c] * 0x10000)

    def stop(self, row, c):
        note, ch = self.pitch(row, c)
        self.send(0x80 + ch + note * 0x100)
        here = self.get(self.s.chord, c + 1, self.position) or 0
        before = self.get(self.s.chord, c + 1, self.position - 1) or 0
        if ch != 9 and (here or before):
            for step in self.steps:
                self.send(0x80 + ch + (note + step) * 0x100)

    def change_instrument(self, code, c):
        if code < 128:
            self.send(0xB0 + c)
            self.send(0x20B0 + c)
            self.send(0xC0 + c + code * 0x100)
            self.drum[c] = False
        elif c >= 8:
            self.drum[c], self.key[c] = True, code - 93
        else:
            self.drum[c] = False

    def play_notes(self, played, played_instrument):
        s, p = self.s, self.position
        for c in range(self.top + 1):
            if c in self.muted:
                continue
            new = self.get(s.cell, c, p)
            new = -1 if new is None else new
            old, instrument = played[c], self.get(s.instrument, c, p) or 0
            volume = self.get(s.effects["Volume"], c, p)
            if volume is not None:
                self.velocity[c] = volume
            if instrument != played_instrument[c] and kind(new) == 1:
                self.change_instrument(instrument, c)
            if kind(old) != 0 and kind(new) == 1:
                self.stop(old % 1000, c)
                self.start(new % 1000, c)
            elif kind(old) != 0 and kind(new) == 0:
                self.stop(old % 1000, c)
            elif kind(old) == 0 and kind(new) == 1:
                self.start(new % 1000, c)
            played[c] = new
            if kind(new) == 1:
                played_instrument[c] = instrument

    def wait(self, step):
        """Until the next step: classic, its time after the work; careful, when it is due or as soon as it can."""
        if self.classic:
            self.now += step
            return
        self.taken += 1
        self.now = self.last = max(self.now, step * self.taken, self.last + step / 4)

    def play(self, segment=None):
        self.taken, self.last = 0, 0.0
        played, played_instrument = [-1] * 16, [-1] * 16
        end = self.s.song_end(self.muted)
        factor, self.position = 0.046, 0
        if segment:
            self.position, end = segment
            factor = 0.04
            if end < 1:
                return self.lines
        step = f32(300 / self.s.tempo * factor) if self.s.tempo else 0
        if not 0.01 <= step <= 10:
            return self.lines
        while self.position <= end:
            self.wait(step)
            self.play_notes(played, played_instrument)
            self.position += 1
        self.wait(step)
        for c in range(CHANNELS):
            if c not in self.muted and played[c] >= 0:
                self.stop(played[c] % 1000, c)
        self.lines.append(f"{self.position} {self.now:.6f} reset")
        return self.lines
