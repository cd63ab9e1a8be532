# SPDX-License-Identifier: GPL-2.0-or-later
"""What journeys to the on-screen keyboard share: its window, a hand and an ear."""

import subprocess
import time

import program as programs
from desktop import wait_for
from journey import Journey
from sound import Heard, SoundServer, notes

OPENER = (-166, 70)  # in the composing window
# Places in the keyboard's window, as wide as the tests have it.
WIDTH = 1000
TABS = {"Setup": (40, 101), "Compose": (108, 101), "Sound 1": (184, 101), "Sound 2": (258, 101)}
FIT, INPUTS = (480, 180), (690, 160, 260, 20)
TAKES, KEEP = (698, 184), (882, 144)
METRONOME, TONE, FIRST_LAMP = (738, 126), (738, 150), (738, 176)
KEY_OF_72 = (286, 345)  # two octaves up, under the label
TWO_OCTAVES_UP = (881, 194)
# The journal of what was played: the size of its records, and how one of a strike begins.
PLAYED, RECORD_SIZE, MARK_OF_STRIKE = ("data", "played"), 16, b"\xA5\x00"
# The key codes of the lowest row of letters, where the white keys from C to C are; by their places, which all
# layouts share.
SCALE = range(52, 60)
SCALE_PITCHES = [60, 62, 64, 65, 67, 69, 71, 72]
OCARINA, GUITAR = 79, 24  # nearly one partial alone; a sound that fades


class Keys:
    """The keyboard's window, opened by its button, so that the lowest row plays from the middle C on."""

    def __init__(self, program):
        self.program = program
        self.screen = program.screen
        self.screen.click(*program.at(*OPENER))
        self.window = self.screen.window("Keyboard$")
        self.focus()
        self.click("Sound 1", TWO_OCTAVES_UP)

    def focus(self):
        self.activate(self.window)

    def activate(self, window):
        self.screen.do("windowactivate", window)
        self.program.focus(window)

    def colour(self, place):
        return self.screen.pixel(*self.at(*place))

    def at(self, x, y):
        left, top, _, _ = self.screen.geometry(self.window)
        return left + x, top + y

    def click(self, tab, place):
        self.show(tab)
        self.screen.click(*self.at(*place))

    def show(self, tab):
        self.screen.click(*self.at(*TABS[tab]))

    def play(self, codes, hold=0.16, gap=0.1, before=0.0):
        """One after another, by one hand: a process a key would take its own time."""
        words = ["sleep", before]
        for code in codes:
            words += ["keydown", code, "sleep", hold, "keyup", code, "sleep", gap]
        self.screen.do(*words)


class KeyboardJourney(Journey):
    def setUp(self):
        super().setUp()
        self.server = SoundServer(self.user.path("sound"))
        self.addCleanup(self.server.stop)
        self.user.more["PULSE_SERVER"] = self.server.address

    def begin(self, instrument, classic):
        self.user.keep(Intrumentval=instrument, Inst_Name="Mine", Classic=classic, formS_width=15 * WIDTH)
        program = self.compose()
        return program, Keys(program)

    def end(self, program):
        """Classic manner always asks whether to save."""
        program.click(-19, 14)
        wait_for(lambda: program.question() or not program.running(), "the question")
        if program.running():
            program.focus(program.question())
            self.screen.key("alt+n" if self.user.settings().get("Classic") == "1" else "alt+d")
        program.ends()

    def struck(self):
        """How many strikes the journal of what was played tells of."""
        try:
            with open(self.user.path(*PLAYED), "rb") as file:
                journal = file.read()
        except OSError:  # nothing was played yet
            return 0
        return sum(journal.startswith(MARK_OF_STRIKE, at) for at in range(0, len(journal), RECORD_SIZE))

    def hear(self, act):
        """What sounds while somebody acts, between two silences."""
        with self.server.record() as recording:
            recording.silence()
            act()
            recording.silence(0.5)
        return recording.samples

    def hear_score(self, program):
        """The score of the composing window, played there from its beginning."""
        def play():
            program.focus(program.window)
            self.screen.key("space")
            time.sleep(1)  # by then it sounds
        return notes(self.hear(play))

    def pitches(self, heard):
        return [note.pitch for note in heard]

    def assertSameTimes(self, heard, expected, slack):
        """The distances of the onsets from the first."""
        for one, other in zip(heard, expected, strict=True):
            self.assertLess(abs(one.onset - heard[0].onset - other.onset + expected[0].onset), slack,
                            (heard, expected))

    def traced(self, path):
        """Seconds and pitches of the notes that a score's playing begins."""
        done = subprocess.run([programs.cli, "trace", path], capture_output=True, text=True, check=True)
        words = [line.split() for line in done.stdout.splitlines()]
        messages = [(float(line[1]), int(line[2], 16)) for line in words if line[2] != "reset"]
        return [Heard(second, 0, word >> 8 & 0x7F) for second, word in messages if word & 0xF0 == 0x90 and word >> 16]
