#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-2.0-or-later
"""Sets the same music as PDF by velmora-cli and by the engravers that one would use instead, and prints what each took.

engravers.py VELMORA-CLI [MEASURES]: five staves of quarters, eighths and sixteenths, made by chance from a fixed seed. Each
program is started anew, reads a file of its own kind and writes a PDF; the shortest of three runs counts (of one where a run
takes more than ten seconds). What is not installed is said to be missing."""

import os
import random
import shutil
import subprocess
import sys
import tempfile
import time

STAVES, STEPS = 5, 16  # steps a bar, of which a sixteenth is one
LETTERS = "CDEFGAB"
KEYS = (0, 2, 4, 5, 7, 9, 11)
TYPES = {4: "quarter", 2: "eighth", 1: "16th"}


def music(measures):
    """For each staff its bars: notes of (steps, degree), the degree counted from the C below the middle one."""
    rng = random.Random(24)

    def bar():
        notes, degree = [], rng.randrange(6, 18)
        for beat in rng.choices(((4,), (2, 2), (2, 1, 1), (1, 1, 1, 1)), (4, 4, 2, 1), k=4):
            for steps in beat:
                degree = min(18, max(6, degree + rng.choice((-2, -1, -1, 0, 1, 1, 2))))
                notes.append((steps, degree))
        return notes

    return [[bar() for _ in range(measures)] for _ in range(STAVES)]


def key_of(degree):
    return 48 + 12 * (degree // 7) + KEYS[degree % 7]


def as_sng(staves):
    """The rows of cells of the first form of score files: a row is 127 - key, and 1000 more where a note goes on."""
    end = len(staves[0]) * STEPS
    none = ",".join(["-1"])
    lines = []
    for channel in range(13):
        cells = []
        for bar in staves[channel] if channel < STAVES else ():
            for steps, degree in bar:
                cells += [127 - key_of(degree)] + [1127 - key_of(degree)] * (steps - 1)
        lines += [",".join(map(str, cells)) or none, ",".join(["0"] * len(cells)) or "0"]
    lines.append(",".join(["0"] * 13))
    lines.append("Polyphonics")
    lines += [",".join(["0"] * (end + 1))] * 9
    for name, value in (("Volume", 127), ("Modulation_Change", 0), ("Pan_Change", 64), ("Reverb_Change", 0),
                        ("Chorus_Change", 0)):
        lines.append(name)
        lines += [",".join([str(value)] * end)] * 13
    lines += ["Tempo=100", f"Notes per measure={STEPS}", "Beats per measure=4", "Note Value=4"]
    return "\r\n".join(lines) + "\r\n"


def as_abc(staves):
    def note(steps, degree):
        octave, letter = divmod(degree, 7)
        name = LETTERS[letter] + "," if octave == 0 else LETTERS[letter] if octave == 1 else LETTERS[letter].lower()
        return name + (str(steps) if steps > 1 else "")

    def beats(bar):
        text, at = "", 0
        for steps, degree in bar:
            text += (" " if at % 4 == 0 else "") + note(steps, degree)
            at += steps
        return text

    lines = ["X:1", "T:Title", "M:4/4", "L:1/16", "%%score 1 2 3 4 5", "K:C"]
    for first in range(0, len(staves[0]), 4):
        lines += [f"[V:{n + 1}] " + " |".join(map(beats, staff[first:first + 4])) + " |" for n, staff in enumerate(staves)]
    return "\n".join(lines) + "\n"


def as_ly(staves):
    values = {4: "4", 2: "8", 1: "16"}

    def note(steps, degree):
        octave, letter = divmod(degree, 7)
        return LETTERS[letter].lower() + "'" * octave + values[steps]

    parts = ["\\new Staff { " + " |\n".join(" ".join(note(*n) for n in bar) for bar in staff) + " }" for staff in staves]
    return '\\version "2.24.0"\n\\header { title = "Title" tagline = ##f }\n\\score { <<\n' + "\n".join(parts) + "\n>> }\n"


def as_musicxml(staves):
    parts, listed = [], []
    for number, staff in enumerate(staves, 1):
        listed.append(f'<score-part id="P{number}"><part-name>{number}</part-name></score-part>')
        bars = []
        for index, bar in enumerate(staff, 1):
            head = ("<attributes><divisions>4</divisions><key><fifths>0</fifths></key><time><beats>4</beats><beat-type>4"
                    "</beat-type></time><clef><sign>G</sign><line>2</line></clef></attributes>") if index == 1 else ""
            notes = "".join(
                f"<note><pitch><step>{LETTERS[degree % 7]}</step><octave>{3 + degree // 7}</octave></pitch>"
                f"<duration>{steps}</duration><type>{TYPES[steps]}</type></note>" for steps, degree in bar)
            bars.append(f'<measure number="{index}">{head}{notes}</measure>')
        parts.append(f'<part id="P{number}">{"".join(bars)}</part>')
    return ('<?xml version="1.0" encoding="UTF-8"?><score-partwise version="3.1"><part-list>' + "".join(listed) +
            "</part-list>" + "".join(parts) + "</score-partwise>")


def pages_of(pdf):
    told = subprocess.run(["pdfinfo", pdf], capture_output=True, text=True, check=True).stdout
    return int(next(line.split()[1] for line in told.splitlines() if line.startswith("Pages:")))


def timed(commands, folder):
    """The shortest time of the commands one after the other, in seconds."""
    environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "HOME": folder}
    best, runs = float("inf"), 0
    while runs < 3 and not (runs and best > 10):
        begun = time.monotonic()
        for command in commands:
            subprocess.run(command, cwd=folder, env=environment, check=True, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
        best = min(best, time.monotonic() - begun)
        runs += 1
    return best


def main(cli, measures="240"):
    staves = music(int(measures))
    rows = (
        ("velmora-cli", "in.sng", as_sng, [[os.path.abspath(cli), "engrave", "in.sng", "out.pdf"]]),
        ("velmora-cli --classic", "in.sng", as_sng,
         [[os.path.abspath(cli), "engrave", "in.sng", "out.pdf", "--classic", "--join", "4"]]),
        ("abcm2ps, ps2pdf", "in.abc", as_abc, [["abcm2ps", "-q", "-O", "out.ps", "in.abc"], ["ps2pdf", "out.ps", "out.pdf"]]),
        ("mscore3", "in.musicxml", as_musicxml, [["mscore3", "-o", "out.pdf", "in.musicxml"]]),
        ("lilypond", "in.ly", as_ly, [["lilypond", "-s", "-o", "out", "in.ly"]]),
    )
    print(f"{measures} measures of {STAVES} staves as PDF        seconds  pages  seconds for 24 pages")
    for name, file, write, commands in rows:
        if missing := [words[0] for words in commands if not shutil.which(words[0])]:
            print(f"{name:42} {', '.join(missing)} is not installed")
            continue
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, file), "w", encoding="utf-8", newline="") as out:
                out.write(write(staves))
            seconds = timed(commands, folder)
            pages = pages_of(os.path.join(folder, "out.pdf"))
        print(f"{name:42} {seconds:7.2f}  {pages:5}  {seconds * 24 / pages:7.2f}", flush=True)


if __name__ == "__main__":
    main(*sys.argv[1:])
