# SPDX-License-Identifier: GPL-2.0-or-later
"""The image of a CD read back: the sheet of its tracks and the sectors beside it."""

import os
import re

from studio.waves import values_of

SECTOR = 2352
LEAST = 300
SECOND = 75


def msf(sectors):
    return f"{sectors // (60 * SECOND):02}:{sectors // SECOND % 60:02}:{sectors % SECOND:02}"


def sectors_of(text):
    minutes, seconds, frames = map(int, text.split(":"))
    if seconds > 59 or frames > 74:
        raise AssertionError(text + " is no time of a CD")
    return (minutes * 60 + seconds) * SECOND + frames


def sectors_for(frames):
    """Of a track of so many frames at 44,100 a second."""
    return max(LEAST, -(-frames // 588))


class Image:
    def __init__(self, folder, cue):
        with open(os.path.join(folder, cue), "rb") as file:
            self.text = file.read().decode("utf-8")
        self.starts, self.titles, self.performers, self.numbers = [], [], [], []
        for line in self.text.splitlines():
            self._line(line.strip())
        name = re.search(r'^FILE "(.*)" BINARY\r?$', self.text, re.M).group(1)
        self.name = name
        self.path = os.path.join(folder, os.path.dirname(cue), name)

    def _line(self, line):
        if found := re.fullmatch(r"TRACK (\d\d) AUDIO", line):
            self.numbers.append(int(found[1]))
            self.titles.append(None)
            self.performers.append(None)
            self.starts.append(None)
        elif found := re.fullmatch(r'TITLE "([^"]*)"', line):
            if self.titles:
                self.titles[-1] = found[1]
        elif found := re.fullmatch(r'PERFORMER "([^"]*)"', line):
            if self.performers:
                self.performers[-1] = found[1]
        elif found := re.fullmatch(r"INDEX 01 (\d\d:\d\d:\d\d)", line):
            self.starts[-1] = sectors_of(found[1])
        elif line and not re.match(r'(FILE "|REM |CATALOG |PERFORMER "|TITLE "|FLAGS |INDEX 00 )', line):
            raise AssertionError("a line that no program knows: " + line)

    def lengths(self):
        """Of the tracks in sectors, by where the next one begins."""
        ends = self.starts[1:] + [os.path.getsize(self.path) // SECTOR]
        return [end - start for start, end in zip(self.starts, ends)]

    def tracks(self):
        """The samples of each track, both sides in turn."""
        found = []
        with open(self.path, "rb") as file:
            for start, length in zip(self.starts, self.lengths()):
                file.seek(start * SECTOR)
                found.append(values_of(file.read(length * SECTOR)))
        return found
