# SPDX-License-Identifier: GPL-2.0-or-later
"""The keyboard played by script. Usage: perform_test.py PATH-OF-VELMORA-CLI"""

import os
import random
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from itertools import groupby

from keyboard_model import BUILT_IN, ERASE, Keyboard, scheme_of
from player_model import Player, Score

CLI = None
KEYS = list("zsxdcvgbhnjmfkqwertyuiop1234567890ZAQ") + [",", ":", '"', "{", "}", "]", "?", ";", "-", "ä", "space"]
SLIDERS = {"channel": (0, 8), "octave": (0, 10), "chord": (0, 10), "strum": (1, 11), "volume": (0, 127),
           "modulation": (0, 127), "pan": (-64, 64), "reverb": (0, 127), "chorus": (0, 127), "speed": (1, 13),
           "pauses": (1, 13), "compression": (1, 7), "tempo": (0, 500)}
REAL = ("speed", "pauses", "compression")


def run(*words, **more):
    return subprocess.run([CLI, *map(str, words)], capture_output=True, timeout=120, **more)


def sounding_after(lines):
    """Notes that a list of message texts leaves on."""
    notes = set()
    for text in lines:
        if text == "reset":
            notes.clear()
        elif text.startswith("0x"):
            word = int(text, 16)
            status, note = word & 0xFF, (word >> 8) & 0xFF
            if status & 0xF0 == 0x90:
                notes.add((status & 0xF, note))
            elif status & 0xF0 == 0x80:
                notes.discard((status & 0xF, note))
    return notes


def reads(text):
    """A message in words: `on 36`, `off 36 @2` on channel 2, `control 7 127`, `program 24`, or as it stands."""
    if not text.startswith("0x"):
        return text
    word = int(text, 16)
    kind, channel, first, second = word & 0xF0, word & 0xF, (word >> 8) & 0xFF, word >> 16
    where = f" @{channel}" if channel else ""
    if (kind, second) in ((0x90, 100), (0x80, 0)):
        return ("on " if kind == 0x90 else "off ") + str(first) + where
    if kind == 0xB0:
        return f"control {first} {second}{where}"
    return f"program {first}{where}" if kind == 0xC0 and not second else text


def told(seconds):
    return f"{float(seconds):.6f}"


def difference(model, printed):
    """The first disagreement of what was printed with the model, None if there is none. What falls due at one
    moment from different sources may come in any order, and the end may end what sounds."""
    printed = [tuple(line.split(" ", 1)) for line in printed.splitlines()]
    wanted = [(told(seconds), scripted, text) for seconds, scripted, text in model.lines]
    at = 0
    for (moment, scripted), group in groupby(wanted, key=lambda line: line[:2]):
        group = [(line[0], line[2]) for line in group]
        got = printed[at : at + len(group)]
        if (got if scripted else sorted(got)) != (group if scripted else sorted(group)):
            return f"at {moment}: wanted {group}, got {got}"
        at += len(group)
    end, closing = told(model.now), printed[at:]
    if not closing or closing[-1] != (end, "reset"):
        return f"wanted to close by {(end, 'reset')}, got {closing}"
    left = sounding_after(text for _, _, text in wanted)
    if model.beat_note is not None:
        left.add((14, model.beat_note))  # which closing stops, and so ends, also behind a reset
    for moment, text in closing[:-1]:
        word = int(text, 16) if text.startswith("0x") else 0
        if moment != end or word & 0xF0 != 0x80 or (word & 0xF, word >> 8) not in left:
            return f"closing told {moment} {text}"
    return None


class Script:
    """A random script of what a user may do."""

    def __init__(self, rng):
        self.rng, self.at, self.lines, self.mouse = rng, 0, [], False
        self.down, self.playing = [], False

    def add(self, words):
        ms = self.at
        self.lines.append((f"{ms // 1000}.{ms % 1000:03}" if ms % 1000 else str(ms // 1000), words))

    def wait(self, most):
        rng = self.rng
        self.at += rng.choice([0, 0, 1, 5, 10, 10, 20, 30, 40, 60, rng.randrange(200), rng.randrange(most)])

    def key(self):
        rng = self.rng
        if self.down and rng.random() < 0.6:
            k = self.down.pop(rng.randrange(len(self.down)))
            self.add("up " + k)
        else:
            k = rng.choice(KEYS if rng.random() < 0.7 else list("zxcg") + ["space"])
            self.down.append(k)
            self.add("down " + k)

    def slider(self, names=tuple(SLIDERS)):
        rng = self.rng
        name = rng.choice(names)
        low, high = SLIDERS[name]
        kind = rng.random()
        if kind < 0.6:
            value = (f"{rng.uniform(low, high):.2f}" if rng.random() < 0.7 else str(rng.randint(low, high))) if name in REAL \
                else 4 * rng.randrange(126) if name == "tempo" else rng.randint(low, high)
            self.add(f"set {name} {value}")
        elif kind < 0.8:
            self.add(f"drag {name} {rng.choice(['0', '1', '0.5', f'{rng.random():.2f}'])}")
        else:
            self.add(f"right-click {name}")

    def setting(self):
        rng = self.rng
        on = rng.choice(["on", "off"])
        words = rng.choice(["single", "polynotes-space", "polynotes-always", "polynotes-space", "polynotes-always",
                            "strum " + on, "hold " + on, "mute " + on, f"octaves {rng.randint(-2, 3)}",
                            f"instrument {rng.randrange(128)}", "panic", "metronome " + on, "tone " + on,
                            f"beats {rng.choice([30, 60, 120, 180, 1000, rng.randint(100, 1000)])}", "end",
                            "edit " + on, f"label {rng.randrange(44)} {rng.choice(KEYS[:-1])}", f"label {rng.randrange(44)}"])
        self.add(words)

    def click(self):
        if self.mouse:
            self.add("mouse-up")
        else:
            self.add(f"mouse {self.rng.randrange(44)}")
        self.mouse = not self.mouse

    def command(self):
        rng = self.rng
        words = rng.choice(["record", "record", "play", "play", "stop", "pause", "loop on", "loop off", "insert-pauses on",
                             "insert-pauses off", "save t", "save t.sng", "save absent/t", "answer yes", "answer no"])
        if words.startswith("save") and self.playing:
            self.add("stop")
        self.playing = words == "play" or self.playing and words not in ("record", "stop")
        self.add(words)

    def mixed(self, length, keys=8, sliders=3, settings=3, clicks=1, commands=1, most=300):
        steps = [self.key] * keys + [self.slider] * sliders + [self.setting] * settings + [self.click] * clicks \
            + [self.command] * commands
        for _ in range(length):
            self.rng.choice(steps)()
            self.wait(most)
        return self

    def note(self, k, held, after):
        self.add("down " + k)
        self.at += held
        self.add("up " + k)
        self.at += after

    def take(self, notes, then=("play", "save t")):
        """A take of a tune: few keys, often the first, from single samples to runs of more than a hundred."""
        rng = self.rng
        tool = ("speed", "pauses", "compression", "octave", "tempo")
        kind = rng.random()
        for _ in range(rng.randrange(4) if kind < 0.9 else 0):
            self.slider(tool)
        self.add("record")
        self.at += rng.randrange(50)
        keys = rng.sample("zxcvqwe1,:", rng.randint(1, 4))
        if rng.random() < 0.2:  # a first sample without a key
            self.add("down " + keys[0])
            self.add("up " + keys[0])
            self.at += rng.randrange(10)
        if kind < 0.1:  # a long first note, that stays long
            self.add(f"set compression {rng.choice(['7', '6.5', '2.5'])}")
            self.note(keys[0], 1000 + rng.randrange(1500), 0)
        elif kind > 0.95:  # more than a hundred short strikes of the first key
            held = rng.choice([20, 30])
            for _ in range(rng.randint(97, 105)):
                self.note(keys[0], held, 10)
        pace = rng.choice([[10, 20, 30, 50], [10, 60, 90, 200], [40, 100, 400], [10, 50, 300, 1500]])
        for _ in range(notes):
            self.note(rng.choice([keys[0], *keys]), rng.choice([*pace, rng.randrange(100)]),
                      rng.choice([0, 0, *pace, rng.randrange(100)]))
        self.add(rng.choice(["record", "record", "stop"]))
        self.at += rng.randrange(20)
        if rng.random() < 0.3:
            self.slider(tool)
        for words in then:
            if words == "play" and rng.random() < 0.5:
                self.add("insert-pauses on")
            self.add(words)
            self.at += rng.randrange(4000)
            if words == "play":
                self.add("stop")
        return self

    def text(self):
        return "".join(f"{seconds} {words}\n" for seconds, words in self.lines)


END = "99.0001"  # a second at which nothing but the closing happens


class PerformFixture(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, data):
        with open(self.path(name), "wb") as file:
            file.write(data if isinstance(data, bytes) else data.encode())
        return self.path(name)

    def read(self, name):
        with open(self.path(name), newline="", encoding="utf-8") as file:
            return file.read()

    def call(self, *lines, options=()):
        """The process, from a script in its folder."""
        text = "".join(line + "\n" for line in lines)
        return run("perform", "-", *options, input=text.encode(), cwd=self.folder)

    def perform(self, *lines, options=(), status=0):
        """What the lines send, in words, without loading and closing: `0.1 on 36`."""
        done = self.call(*lines, END + " end", options=options)
        self.assertEqual(done.returncode, status, done.stderr)
        printed = [line.split(" ", 1) for line in done.stdout.decode().splitlines()]
        self.assertEqual(printed[-1], [END + "00", "reset"])
        words = [f"{float(seconds):g} {reads(text)}" for seconds, text in printed if seconds != END + "00"]
        self.assertEqual(words[:3], ["0 program 0 @9", "0 control 7 127", "0 program 24"])
        return words[3:]

    def assertSends(self, lines, *wanted, options=()):
        self.assertEqual(self.perform(*lines, options=options), list(wanted))

    def take(self, *lines, status=0):
        """`List1` and `List3` as the lines leave them."""
        self.perform(*lines, options=("--take", "take"), status=status)
        rows = [line.split(" ") for line in self.read("take").splitlines()]
        return [a for a, _ in rows], [b for _, b in rows]

    def saved(self, *lines, status=0):
        """The note row of the score that the lines save as t.sng."""
        self.perform(*lines, status=status)
        return self.read("t.sng").split("\r\n")[0]


class PerformTest(PerformFixture):
    # Output

    def test_loading_comes_first_and_a_reset_last(self):
        self.assertEqual(self.call().stdout, b"0.000000 0x0000C9\n0.000000 0x7F07B0\n0.000000 0x0018C0\n0.000000 reset\n")
        self.assertEqual(self.call("# nothing", "", "2.5 end").stdout.splitlines()[3:], [b"2.500000 reset"])

    def test_a_script_is_a_file_or_standard_input(self):
        script = self.write("script", "0.25 mouse 0\n0.5 mouse-up\n")
        wanted = ["0.250000 0x642490", "0.500000 0x002480", "0.500000 reset"]
        self.assertEqual(run("perform", script).stdout.decode().splitlines()[3:], wanted)
        self.assertEqual(self.call("0.25 mouse 0", "0.5 mouse-up").stdout.decode().splitlines()[3:], wanted)

    def test_a_note_above_127_carries_into_bit_15(self):
        done = self.call("0 octaves 3", "0 set chord 8", "0 polynotes-always", "1 down ]", "2 panic")
        self.assertIn("1.000000 0x648190", done.stdout.decode().splitlines())

    def test_closing_ends_only_what_sounds(self):
        for lines in (("0 down z", "1 octaves 1"), ("0 down z", "1 panic"), ("0 polynotes-always", "0 set chord 4", "1 down z"),
                      ("0 mouse 3", "1 end"), ("0 metronome on", "0.6 end"), ("0 down z", "0.5 up z", "1 end")):
            done = self.call(*lines)
            self.assertIsNone(difference(Keyboard().perform([line.split(" ", 1) for line in lines]), done.stdout.decode()))

    def test_a_strum_is_let_end(self):
        lines = [line.split() for line in self.call("0 polynotes-always", "0 set strum 11", "0 set chord 1", "0 strum on",
                                                    "1 down z").stdout.decode().splitlines()]
        self.assertIn(["1.330000", "0x642490"], lines)
        self.assertEqual(lines[-1], ["1.330000", "reset"])

    def test_what_is_due_at_the_last_moment_still_happens(self):
        done = self.call("0 beats 1000", "0 metronome on", "0.3 end").stdout.decode().splitlines()
        self.assertIn("0.300000 0x64369E", done)
        self.call("0 record", "1 down z", options=("--take", "take"))
        self.assertEqual(self.read("take"), "1 91\n")

    # Computer keys

    def test_a_key_strikes_the_lowest_label_of_its_text(self):
        self.assertSends(["0 down z", "1 up z", "2 down G", "3 up g", "4 down ]", "5 up ]"],
                         "0 on 36", "1 off 36", "2 on 42", "3 off 42", "4 on 79", "5 off 79")

    def test_either_case_of_a_letter_is_one_key(self):
        self.assertSends(["0 down z", "1 down Z", "2 up Z", "3 up z"], "0 on 36", "2 off 36")

    def test_a_label_is_matched_by_the_code_first_and_then_as_typed(self):
        lines = ["0 edit on", "0 label 3 z", "0 edit off", "1 down z", "2 up z", "3 down Z", "4 up Z"]
        self.assertSends(lines, "1 on 36", "1 on 39", "2 off 36", "2 off 39", "3 on 36", "4 off 36")
        self.assertSends(["0 edit on", "0 label 0 z", "0 edit off", "1 down z", "2 up z", "3 down Z", "4 up Z"],
                         "1 on 36", "2 off 36")

    def test_a_key_without_a_code_is_known_by_its_character(self):
        self.assertSends(["0 edit on", "0 label 1 ä", "0 edit off", "1 down ä", "2 up ä", "3 down Ä", "4 down :", "5 up :"],
                         "1 on 37", "2 off 37", "4 on 55", "5 off 55")

    def test_an_auto_repeat_never_strikes(self):
        self.assertSends(["0 down z", "1 down x", "2 down z", "3 down x", "4 up z", "5 up x"],
                         "0 on 36", "1 on 38", "4 off 36", "5 off 38")

    def test_a_key_held_since_editing_repeats_in_silence(self):
        self.assertSends(["0 edit on", "1 down z", "2 edit off", "3 down z", "4 up z", "5 down z", "6 up z"],
                         "5 on 36", "6 off 36")
        self.assertSends(["0 down z", "1 edit on", "2 edit off", "3 down z", "4 up z"], "0 on 36", "1 off 36")

    def test_releases_of_keys_that_struck_nothing_send_nothing(self):
        self.assertSends(["0 up z", "1 down ?", "2 up ?", "3 down space", "4 up space", "5 down z", "6 up z", "7 up z"],
                         "5 on 36", "6 off 36")

    def test_a_release_is_of_the_key_that_its_own_press_struck(self):
        # The label is another's by then, and editing has released it.
        self.assertSends(["0 down z", "1 edit on", "1 label 0 X", "1 edit off", "2 up z", "3 down x", "4 up x"],
                         "0 on 36", "1 off 36", "3 on 36", "4 off 36")

    def test_editing_releases_and_silences_the_computer_keys_but_not_the_mouse(self):
        self.assertSends(["0 down z", "0 down c", "1 edit on", "2 down x", "3 mouse 5", "4 mouse-up", "5 up x", "6 up z"],
                         "0 on 36", "0 on 40", "1 off 36", "1 off 40", "3 on 41", "4 off 41")

    def test_labels_change_only_while_editing_and_may_be_anything(self):
        self.assertSends(["0 label 0 w", "1 down z", "2 up z"], "1 on 36", "2 off 36")
        self.assertSends(["0 edit on", "0 label 0", "0 label 2 long one", "0 edit off", "1 down z", "2 down x", "3 up x"])
        # A duplicate leaves the lower key in charge.
        self.assertSends(["0 edit on", "0 label 5 B", "0 edit off", "1 down b", "2 up b"], "1 on 41", "2 off 41")

    # Octave and channel

    def test_the_note_off_follows_the_octave_and_stays_on_the_channel_of_the_strike(self):
        self.assertSends(["0 set channel 3", "1 down z", "2 set octave 7", "2 set channel 5", "3 up z"],
                         "1 on 36 @3", "3 off 43 @3")

    def test_two_controls_write_the_octave_in_two_units(self):
        for words, note in (("octaves -2", 12), ("octaves 3", 72), ("set octave 10", 46), ("drag octave 1", 46),
                            ("drag octave 0.59", 41), ("right-click octave", 36)):
            self.assertSends(["0 octaves 1", "1 " + words, "2 mouse 0", "3 mouse-up"], f"2 on {note}", f"3 off {note}")

    def test_choosing_a_channel_sends_nothing_and_the_next_message_goes_there(self):
        self.assertSends(["0 set channel 8", "1 set volume 5", "2 drag channel 0.49", "3 instrument 7", "4 right-click channel",
                          "5 hold on"], "1 control 7 5 @8", "3 program 7 @3", "5 control 64 127")

    # Chords

    CHORDED = ["0 polynotes-always"]

    def test_every_chord_sounds_its_notes_at_once(self):
        for chord, up in {0: (), 1: (4, 7, 12), 2: (3, 7, 12), 3: (4, 7, 11), 4: (3, 7, 10), 5: (3, 6, 10), 6: (3, 6, 9),
                          7: (4, 7, 10), 8: (0, 4, 7, 11, 14), 9: (), 10: (12,)}.items():
            self.assertSends([*self.CHORDED, f"0 set chord {chord}", "1 down z"], "1 on 36", *(f"1 on {36 + n}" for n in up))

    def test_a_release_ends_every_note_of_every_chord(self):
        for chord, up in {0: (), 1: (0, 4, 7, 12), 2: (0, 3, 7, 12), 3: (0, 4, 7, 11), 4: (0, 3, 7, 10), 5: (0, 3, 6, 10),
                          6: (0, 3, 6, 9), 7: (0, 4, 7, 10), 8: (0, 4, 7, 11, 14), 9: (0, 3, 7, 10, 14), 10: (0, 12)}.items():
            sent = self.perform(*self.CHORDED, f"0 set chord {chord}", "1 down z", "2 up z")
            # Without the space bar the root gets its note-off twice.
            self.assertEqual([line for line in sent if line.startswith("2")], ["2 off 36"] + [f"2 off {36 + n}" for n in up])

    def test_the_space_bar_strums_from_the_top_down_and_strikes_the_root_again(self):
        self.assertSends(["0 polynotes-space", "0 set chord 1", "1 down space", "2 down z", "3 up z", "4 up space", "5 down z",
                          "6 up z"],
                         "2 on 36", "2 on 48", "2.01 on 43", "2.02 on 40", "2.03 on 36",
                         "3 off 36", "3 off 40", "3 off 43", "3 off 48", "5 on 36", "6 off 36")

    def test_an_octave_is_strummed_in_two_notes_and_a_ninth_without_its_top(self):
        self.assertSends([*self.CHORDED, "0 strum on", "0 set strum 3", "0 set chord 10", "1 down z"],
                         "1 on 36", "1 on 48", "1.03 on 36")
        self.assertSends([*self.CHORDED, "0 strum on", "0 set strum 3", "0 set chord 8", "1 down z"],
                         "1 on 36", "1 on 47", "1.03 on 43", "1.06 on 40", "1.09 on 36")

    def test_a_strum_whose_key_goes_up_strikes_no_more(self):
        sent = self.perform(*self.CHORDED, "0 strum on", "0 set strum 11", "0 set chord 1", "1 down z", "1.2 up z")
        self.assertEqual([line for line in sent if " on " in line], ["1 on 36", "1 on 48", "1.11 on 43"])
        sent = self.perform(*self.CHORDED, "0 strum on", "0 set strum 11", "0 set chord 1", "1 down z", "1.2 edit on")
        self.assertEqual([line for line in sent if " on " in line], ["1 on 36", "1 on 48", "1.11 on 43"])

    def test_a_strike_within_a_strum_lends_it_its_notes(self):
        sent = self.perform(*self.CHORDED, "0 strum on", "0 set strum 11", "0 set chord 1", "1 down z", "1.2 down x")
        self.assertEqual(sent, ["1 on 36", "1 on 48", "1.11 on 43", "1.2 on 38", "1.2 on 50", "1.22 on 42", "1.31 on 45",
                                "1.33 on 38", "1.42 on 42", "1.53 on 38"])

    def test_a_space_bar_that_goes_up_first_leaves_the_chord_sounding(self):
        self.assertSends(["0 polynotes-space", "0 set chord 10", "1 down space", "2 down z", "3 up space", "4 up z"],
                         "2 on 36", "2 on 48", "2.01 on 36", "4 off 36")

    def test_the_root_always_gets_its_note_off(self):
        self.assertSends(["0 polynotes-space", "1 down space", "2 down z", "3 up z"], "2 on 36", "3 off 36")
        self.assertSends(["0 polynotes-space", "0 set chord 10", "1 down space", "2 down z", "3 single", "4 up z"],
                         "2 on 36", "2 on 48", "2.01 on 36", "4 off 36")

    def test_the_kinds_of_notes_exclude_each_other(self):
        for words, sent in (("single", 1), ("polynotes-space", 1), ("polynotes-always", 2)):
            for before in ("single", "polynotes-space", "polynotes-always"):
                self.assertEqual(len(self.perform("0 set chord 10", "0 " + before, "0 " + words, "1 down z")), sent)

    def test_at_the_fastest_strum_a_release_cuts_all_sound(self):
        ready = [*self.CHORDED, "0 strum on", "0 set chord 10"]
        for words, cut in (("end", True), ("right-click strum", True), ("set strum 1", True), ("drag strum 0", True),
                           ("drag strum 0.05", False), ("set strum 2", False), ("strum off", False), ("single", False)):
            sent = self.perform(*ready, "0 drag strum 0.08" if "strum" in words else "0 end", "0 " + words, "1 down z", "2 up z")
            self.assertEqual("2 reset" in sent, cut, words)
        sent = self.perform("0 polynotes-space", "0 strum on", "0 down space", "1 down z", "2 up z")
        self.assertEqual(sent, ["1 on 36", "2 off 36", "2 reset"])

    # Mouse and panic

    def test_a_mouse_release_ends_the_note_that_the_mouse_struck(self):
        self.assertSends(["0 set channel 2", "0 mouse 43", "1 octaves 2", "1 right-click channel", "1 down z", "2 mouse-up",
                          "3 mouse-up"], "0 on 79 @2", "1 on 60", "2 off 79 @2")

    def test_the_mouse_plays_single_notes(self):
        self.assertSends(["0 polynotes-always", "0 set chord 1", "0 down space", "1 mouse 1", "2 mouse-up"],
                         "1 on 37", "2 off 37")

    def test_panic_is_a_reset_and_a_key_goes_up_as_ever(self):
        self.assertSends(["0 down z", "1 panic", "2 up z"], "0 on 36", "1 reset", "2 off 36")

    # Controls

    def test_each_sound_slider_sends_once(self):
        for name, number, cleared in (("volume", 7, 127), ("modulation", 1, 0), ("reverb", 91, 0), ("chorus", 93, 0)):
            self.assertSends([f"0 set {name} 0", f"1 set {name} 127", f"2 drag {name} 1", f"3 drag {name} 0", f"4 right-click {name}"],
                             *(f"{at} control {number} {value}" for at, value in enumerate((0, 127, 127, 0, cleared))))
        self.assertSends(["0 drag volume 0.5"], "0 control 7 63")

    def test_pan_is_sent_as_the_readout_and_64(self):
        self.assertSends(["0 set pan -64", "1 set pan 0", "2 set pan 63", "3 set pan 64", "4 drag pan 0.25", "5 drag pan 1",
                          "6 right-click pan"],
                         *(f"{at} control 10 {value}" for at, value in enumerate((0, 64, 127, 127, 32, 127, 64))))

    def test_hold_is_controller_64_and_mute_sends_nothing(self):
        self.assertSends(["0 hold on", "1 mute on", "2 hold off", "3 mute off"], "0 control 64 127", "2 control 64 0")

    def test_an_instrument_is_one_program_change(self):
        self.assertSends(["0 instrument 0", "1 set channel 4", "1 instrument 127"], "0 program 0", "1 program 127 @4")

    # Metronome

    def test_the_first_beat_comes_an_interval_after_the_start_and_each_ends_the_one_before(self):
        self.assertSends(["1 metronome on", "4 metronome off"],
                         "1.5 on 54 @14", "2 off 54 @14", "2 on 64 @14", "2.5 off 64 @14", "2.5 on 70 @14", "3 off 70 @14",
                         "3 on 72 @14", "3.5 off 72 @14", "3.5 on 54 @14", "4 off 54 @14")

    def test_beats_go_on_in_number_over_a_stop_and_follow_the_octave(self):
        self.assertSends(["0 metronome on", "1.2 metronome off", "2 octaves 1", "2 metronome on", "2.6 metronome off"],
                         "0.5 on 54 @14", "1 off 54 @14", "1 on 64 @14", "1.2 off 64 @14", "2.5 on 82 @14", "2.6 off 82 @14")

    def test_a_beat_falls_on_the_first_tick_at_or_after_its_moment(self):
        self.assertEqual([line for line in self.perform("0 beats 1000", "0.013 metronome on", "0.35 metronome off") if " on " in line],
                         ["0.088 on 54 @14", "0.138 on 64 @14", "0.213 on 70 @14", "0.263 on 72 @14", "0.313 on 54 @14"])
        # Three intervals of 60/144 seconds are a second and a quarter to the tick, however they are added up.
        beats = [line for line in self.perform("0 beats 144", "0 metronome on", "5.1 metronome off") if " on " in line]
        self.assertEqual([line.split()[0] for line in beats], ["0.425", "0.85", "1.25", "1.675", "2.1", "2.5", "2.925", "3.35",
                                                              "3.75", "4.175", "4.6", "5"])

    def test_a_rate_counts_from_the_next_start(self):
        self.assertEqual([line for line in self.perform("0 metronome on", "0.1 beats 60", "1.1 metronome off", "2 metronome on",
                                                        "3.1 metronome off") if " on " in line],
                         ["0.5 on 54 @14", "1 on 64 @14", "3 on 70 @14"])

    def test_without_tone_beats_are_counted_in_silence(self):
        self.assertSends(["0 metronome on", "0.6 tone off", "1.6 tone on", "2.1 metronome off"],
                         "0.5 on 54 @14", "2 off 54 @14", "2 on 72 @14", "2.1 off 72 @14")
        self.assertSends(["0 tone off", "0 metronome on", "1 metronome off"])

    # The take

    def test_the_first_sample_is_of_the_first_key_and_then_every_tick(self):
        self.assertEqual(self.take("0 record", "1.0005 down z", "1.02 down x", "1.0301 record"),
                         (["1", "2", "0"], ["91", "91", "89"]))

    def test_the_counter_starts_anew_at_each_strike_of_the_first_key(self):
        self.assertEqual(self.take("0 record", "1 down x", "1.015 up x", "1.035 down x", "1.055 up x", "1.065 record"),
                         (["1", "2", "0", "0", "1", "2", "0"], ["89"] * 7))

    def test_the_row_stays_through_the_silence(self):
        self.assertEqual(self.take("0 record", "0.1 down z", "0.1 up z", "0.125 record"), (["0", "0", "0"], ["91"] * 3))

    def test_other_keys_the_space_bar_and_the_mouse_do_not_begin_a_take(self):
        lines = ["0 record", "0.1 down ?", "0.2 down space", "0.3 mouse 3", "0.4 mouse-up", "0.5 up space", "0.6 down v"]
        self.assertEqual(self.take(*lines, "0.615 record"), (["1", "2"], ["86"] * 2))
        self.assertEqual(self.take("0 record", "1 mouse 3", "2 record"), ([], []))

    def test_a_key_held_before_does_not_begin_a_take(self):
        self.assertEqual(self.take("0 down z", "1 record", "2 down z", "3 down x", "3.005 record"), (["1"], ["89"]))

    def test_the_mouse_leaves_no_trace(self):
        self.assertEqual(self.take("0 record", "0.1 down z", "0.11 mouse 7", "0.13 mouse-up", "0.135 record")[1], ["91"] * 4)

    def test_playing_speed_is_the_tick(self):
        self.assertEqual(len(self.take("0 right-click speed", "0 record", "1 down z", "1.0901 record")[0]), 11)
        self.assertEqual(len(self.take("0 drag speed 1", "0 record", "1 down z", "1.0101 record")[0]), 11)
        self.assertEqual(len(self.take("0 set speed 12.5", "0 record", "1 down z", "1.125 record")[0]), 10)

    def test_samples_do_not_drift(self):
        self.assertEqual(len(self.take("0 set speed 3.3", "0 record", "1 down z", "34 record")[0]), 10000)

    def test_a_take_of_more_than_two_samples_is_asked_for(self):
        box = "2 box " + ERASE
        two, three = ["0 record", "1 down z", "1.015 record"], ["0 record", "1 down z", "1.025 record"]
        self.assertNotIn(box, self.perform(*two, "2 record"))
        self.assertIn(box, self.perform(*three, "2 record"))
        again = ["2 record", "3 down x", "3.005 record"]
        self.assertEqual(self.take(*three, *again), (["1"], ["89"]))
        self.assertEqual(self.take("0 answer no", *three, *again), (["1", "2", "3"], ["91"] * 3))
        self.assertEqual(self.take("0 answer no", *three, "1.5 answer yes", *again), (["1"], ["89"]))

    def test_a_take_that_still_runs_is_written_as_it_stands(self):
        self.call("0 record", "1 down z", "1.025 end", options=("--take", "take"))
        self.assertEqual(self.read("take"), "1 91\n2 91\n3 91\n")

    def test_play_does_nothing_while_recording_and_stop_and_pause_end_the_take(self):
        lines = ["0 record", "1 down z"]
        self.assertEqual(len(self.take(*lines, "1.015 play", "1.045 record")[0]), 5)
        for words in ("stop", "pause"):
            self.assertEqual(len(self.take(*lines, "1.015 " + words, "2 end")[0]), 2)
        self.assertEqual(self.take(*lines, "1.005 save t", "1.015 record")[0], ["1", "2"])
        self.assertFalse(os.path.exists(self.path("t.sng")))

    # Playing

    TWO = ["0 record", "0.1 down z", "0.13 up z", "0.14 down x", "0.165 up x", "0.165 record"]  # 91 four times, 89 three

    def test_a_tick_of_playing_is_1_2_ticks_of_the_take(self):
        # The first sample isn't used; a note of n items lasts n + 2 ticks, and one more follows.
        self.assertSends([*self.TWO, "1 play"], *self.sent_by_two(), "1 on 36", "1.06 off 36", "1.072 on 38", "1.132 off 38",
                         "1.144 reset")

    def sent_by_two(self):
        return "0.1 on 36", "0.13 off 36", "0.14 on 38", "0.165 off 38"

    def test_playing_follows_octave_and_channel(self):
        self.assertEqual(self.perform(*self.TWO, "0.5 set channel 4", "0.5 set octave 3", "1 play")[4:],
                         ["1 on 39 @4", "1.06 off 39 @4", "1.072 on 41 @4", "1.132 off 41 @4", "1.144 reset"])

    def test_two_strikes_of_the_first_key_are_parted_by_one_rest(self):
        lines = ["0 record", "0.1 down z", "0.115 up z", "0.13 down z", "0.155 up z", "0.155 record"]  # 1 2 0 1 2 3
        self.assertEqual(self.perform(*lines, "1 play")[4:],
                         ["1 on 36", "1.048 off 36", "1.072 on 36", "1.12 off 36", "1.132 reset"])

    def test_two_strikes_of_another_key_are_one_note(self):
        lines = ["0 record", "0.1 down z", "0.105 up z", "0.11 down x", "0.115 up x", "0.12 down x", "0.135 up x", "0.135 record"]
        self.assertEqual(self.perform(*lines, "1 play")[6:], ["1 on 38", "1.06 off 38", "1.072 reset"])

    def test_with_pauses_a_long_run_keeps_one_tick(self):
        lines = ["0 record", "0.1 down z", "0.195 up z", "0.205 down x", "0.255 up x", "0.255 record"]
        # 91 eleven times (ten used, nine in the list), 89 five times (four in the list, too short to be cut).
        self.assertEqual(self.perform(*lines, "0.5 insert-pauses on", "1 play")[4:],
                         ["1 on 36", "1.036 off 36", "1.144 on 38", "1.216 off 38", "1.228 reset"])
        self.assertEqual(self.perform(*lines, "0.5 insert-pauses on", "0.5 right-click pauses", "1 play")[5], "1.036 off 36")

    def test_a_key_held_and_released_is_one_note_whose_tail_is_rest(self):
        self.assertEqual(self.perform("0 record", "0.1 down z", "0.12 up z", "0.5 record", "1 insert-pauses on", "1 play")[2:],
                         ["1 on 36", "1.036 off 36", "1.492 reset"])

    def test_a_loop_begins_anew_one_tick_later_until_stopped(self):
        self.assertEqual(self.perform(*self.TWO, "0.5 loop on", "1 play", "1.3 stop")[4:],
                         ["1 on 36", "1.06 off 36", "1.072 on 38", "1.132 off 38", "1.156 on 36", "1.216 off 36", "1.228 on 38",
                          "1.288 off 38", "1.3 reset"])
        # Without the loop the pass at hand is the last.
        self.assertEqual(self.perform(*self.TWO, "0.5 loop on", "1 play", "1.1 loop off")[-1], "1.144 reset")

    def test_stop_ends_the_note_and_then_resets_within_a_tick(self):
        sent = self.perform(*self.TWO, "1 play", "1.03 stop")[4:]
        self.assertEqual([line.split(" ", 1)[1] for line in sent], ["on 36", "off 36", "reset"])
        self.assertLessEqual(float(sent[-1].split()[0]), 1.042)
        self.assertSends(["1 stop"])

    def test_play_after_stop_is_heard(self):
        for words in ("stop", "play"):
            self.assertEqual(self.perform(*self.TWO, "1 play", "1.03 " + words, "2 play")[-1], "2.144 reset")
        self.assertEqual(self.perform(*self.TWO, "0.5 stop", "2 play")[-1], "2.144 reset")

    def test_a_pause_waits_before_the_next_note(self):
        self.assertEqual(self.perform(*self.TWO, "1 play", "1.02 pause", "3.0005 pause")[4:],
                         ["1 on 36", "1.06 off 36", "3.0005 on 38", "3.0605 off 38", "3.0725 reset"])
        self.assertEqual(self.perform(*self.TWO, "1 play", "1.02 pause", "3.0005 stop")[4:],
                         ["1 on 36", "1.06 off 36", "3.0005 reset"])

    def test_nothing_to_play_is_a_reset(self):
        self.assertSends(["1 play"], "1 reset")
        self.assertEqual(self.perform(*self.TWO, "1 save t", "2 play")[4:], ["2 reset"])

    def test_playing_is_let_end_and_a_loop_is_not(self):
        done = self.call(*self.TWO, "1 play").stdout.decode().splitlines()
        self.assertEqual(done[-2:], ["1.144000 reset"] * 2)
        done = self.call(*self.TWO, "0.5 loop on", "1 play", "1.01 end").stdout.decode().splitlines()
        self.assertEqual(done[-1], "1.010000 reset")

    # Saving

    def test_less_than_two_samples_are_nothing_to_save(self):
        for lines in ([], ["0 record", "0.1 down z", "0.105 record"]):
            self.assertIn("1 box Nothing to save", self.perform(*lines, "1 save t"))
        self.assertEqual(os.listdir(self.folder), [])
        self.assertNotIn("1 box Nothing to save", self.perform("0 record", "0.1 down z", "0.115 record", "1 save t"))

    def test_a_saved_take_is_this_file(self):
        self.perform(*self.TWO, "0.5 instrument 40", "0.5 set tempo 360", "1 save a name.SNG")
        # The first sample and the last of each run fall away.
        none, rest = ["-1", "40"] * 12, [" 360 ", ",".join(["40"] * 13), "Polyphonics"] + ["0,0,0,0,0"] * 9
        for name, value in (("Volume", 127), ("Modulation_Change", 0), ("Pan_Change", 64), ("Reverb_Change", 0),
                            ("Chorus_Change", 0)):
            rest += [name] + [",".join([str(value)] * 4)] * 13
        self.assertEqual(self.read("a name.SNG").split("\r\n"), ["91,1091,89,1089", "40,40,40,40", *none, *rest, ""])

    def test_saving_leaves_nothing_of_the_take(self):
        self.assertEqual(self.take(*self.TWO, "1 save t", "2 save u"), ([], []))
        self.assertFalse(os.path.exists(self.path("u.sng")))

    def test_a_take_of_two_samples_has_no_position(self):
        self.perform("0 record", "0.1 down z", "0.115 record", "1 save t")
        lines = self.read("t.sng").split("\r\n")
        self.assertEqual((lines[:4], lines[29], len(lines)), (["", "", "-1", "24"], "0", 109))

    def test_a_long_run_keeps_the_part_that_compression_tells(self):
        lines = ["0 record", "0.1 down z", "0.195 up z", "0.195 down x", "0.22 up x", "0.225 record"]
        # Of a run of eight round(8 * 0.25) or round(8 * 0.7) stay; of rests as short as these nothing does.
        self.assertEqual(self.saved(*lines, "1 save t"), "91,1091,89,1089")
        self.assertEqual(self.saved("0 set compression 7", *lines, "1 save t"), "91,1091,1091,1091,1091,89,1089")

    def test_a_rest_at_the_start_takes_the_head_of_the_first_note(self):
        lines = ["0 record", "0.1 down z", "0.1 up z", "0.105 down z", "0.165 up z", "0.165 record"]
        self.assertEqual(self.take(*lines)[0], ["0", "1", "2", "3", "4", "5", "6"])
        self.assertEqual(self.saved(*lines, "1 save t"), "1091,1091")

    def test_the_octave_moves_what_is_saved(self):
        lines = ["0 record", "0.1 down z", "0.13 up z", "0.14 record"]  # 91 four times
        self.assertEqual(self.saved(*lines, "1 save t"), "91,1091")
        self.assertEqual(self.saved(*lines, "0.5 octaves -2", "1 save t"), "115,1115")
        self.assertEqual(self.saved(*lines, "0.5 set octave 10", "1 save t"), "81,1081")

    def test_a_score_opens_at_its_own_tempo_with_every_note_at_127_and_centred(self):
        self.perform("0 set tempo 300", *self.TWO, "1 save t")
        told = run("info", self.path("t.sng"))
        self.assertIn("Tempo: 300\n", told.stdout.decode())
        self.assertEqual(told.stderr, b"")
        traced = [line.split()[2] for line in run("trace", self.path("t.sng")).stdout.decode().splitlines()]
        self.assertEqual([word for word in traced if word.endswith(("0AB0", "90"))],
                         ["0x400AB0", "0x7F2490", "0x400AB0", "0x7F2690"])

    def test_a_score_that_cannot_be_written_is_named_and_the_take_stays(self):
        done = self.call(*self.TWO, "1 save absent/t", "2 play", options=("--take", "take"))
        self.assertEqual(done.returncode, 1)
        self.assertIn("absent/t.sng", done.stderr.decode())
        self.assertIn("2.000000 0x642490", done.stdout.decode().splitlines())
        self.assertEqual(len(self.read("take").splitlines()), 7)

    def test_random_takes_are_heard_from_their_scores_as_an_independent_player_plays_them(self):
        for case in range(25):
            rng = random.Random(case)
            script = Script(rng)
            script.take(rng.randint(5, 25), (rng.choice(["set tempo 500", "set tempo 60", "end"]), "save t"))
            run("perform", "-", input=script.text().encode(), cwd=self.folder)
            lines = self.read("t.sng").split("\r\n")
            row = [int(field) for field in lines[0].split(",") if field]
            score = Score(max(1000, len(row)))
            score.tempo = min(int(lines[26]), 400)  # which is as fast as this form of the file goes
            score.cell[0][: len(row)] = row
            score.instrument[0][: len(row)] = [24] * len(row)
            done = run("trace", self.path("t.sng"))
            self.assertEqual(done.stdout.decode().splitlines(), Player(score).play(), f"case {case}")
            self.assertIn(f"Tempo: {score.tempo}\n", run("info", self.path("t.sng")).stdout.decode())

    # Files and usage

    def test_files_that_cannot_be_used_are_named(self):
        done = self.call("0 end", options=("--take", "absent/take"))
        self.assertEqual(done.returncode, 1)
        self.assertIn("absent/take", done.stderr.decode())
        self.assertTrue(done.stdout)
        for words in (["perform", self.path("no script")], ["perform", self.folder],
                      ["perform", self.write("empty", ""), "--scheme", self.path("no.key")]):
            done = run(*words)
            self.assertEqual(done.returncode, 1, words)
            self.assertIn(words[-1], done.stderr.decode())

    def test_a_scheme_is_read_as_the_window_reads_it(self):
        self.write("three.key", "a\r\nB\r\nq\r\n")
        self.assertSends(["0 down b", "1 down q", "2 down z", "3 down a", "4 up q"], "0 on 37", "1 on 38", "3 on 36", "4 off 38",
                         options=("--scheme", "three.key"))
        self.write("old.key", b"1\n2\n\xe4\n")
        self.assertSends(["0 down ä", "1 up ä"], "0 on 38", "1 off 38", options=("--scheme", "old.key"))

    def test_a_line_that_is_not_as_told_is_a_usage_error(self):
        wrong = ["x end", "-1 end", "0", "0 sing", "0 end now", "0 single on", "0 down", "0 down zz", "0 down z x", "0 up", "0 up zz",
                 "0 mouse", "0 mouse 44", "0 mouse -1", "0 mouse a", "0 mouse 1 2", "0 mouse-up 1", "0 strum", "0 strum maybe",
                 "0 hold 1", "0 mute", "0 octaves 4", "0 octaves -3", "0 octaves", "0 octaves 1.5", "0 instrument 128", "0 instrument -1",
                 "0 instrument", "0 panic now", "0 set", "0 set volume", "0 set volume 128", "0 set volume -1", "0 set volume 1.5",
                 "0 set volume x", "0 set volume 1 2", "0 set loudness 1", "0 set channel 9", "0 set octave 11", "0 set octave -1",
                 "0 set chord 11", "0 set strum 0", "0 set strum 12", "0 set pan 65", "0 set pan -65", "0 set speed 0.9",
                 "0 set speed 13.1", "0 set speed x", "0 set pauses 0", "0 set compression 7.1", "0 set compression 0.9", "0 set tempo 201",
                 "0 set tempo 504", "0 set tempo -4", "0 drag volume", "0 drag volume 1.01", "0 drag volume -0.1", "0 drag volume x",
                 "0 drag loudness 0", "0 drag volume 0 1", "0 right-click", "0 right-click loudness", "0 right-click volume 1",
                 "0 metronome", "0 metronome 1", "0 beats 0", "0 beats 1001", "0 beats", "0 beats 1.5", "0 tone", "0 record now",
                 "0 play t", "0 stop 1", "0 pause on", "0 loop", "0 loop yes", "0 insert-pauses", "0 insert-pauses 1", "0 save",
                 "0 answer", "0 answer maybe", "0 answer on", "0 edit", "0 edit yes", "0 label", "0 label 44 a", "0 label -1 a",
                 "0 label a", "+1 end", "nan end", "inf end", "0x1 end", "1e0x end"]
        take = ["0 record", "0.1 down z", "0.2 up z", "0.3 record", "0.4 save t"]
        for line in wrong:
            done = self.call(*take, line if line[0] != "0" else "1" + line[1:], options=("--take", "take"))
            self.assertEqual((done.returncode, done.stdout), (2, b""), line)
            self.assertTrue(done.stderr.startswith(b"velmora-cli: "), line)
        self.assertEqual(os.listdir(self.folder), [])

    def test_seconds_never_fall(self):
        self.assertEqual(self.call("1 end", "1 end", "0.999 end").returncode, 2)
        self.assertEqual(self.call("1 end", "1.0 end", "1.00 end").returncode, 0)

    def test_wrong_words_are_usage_errors(self):
        script = self.write("script", "0 end\n")
        for words in ([], [script, script], [script, "--loud"], [script, "--take"], [script, "--scheme"]):
            done = run("perform", *words)
            self.assertEqual((done.returncode, done.stdout), (2, b""), words)

    # Everything at once

    def test_random_scripts_do_what_an_independent_keyboard_does(self):
        kinds = [lambda s, rng: s.mixed(rng.randint(5, 40), sliders=1, settings=1, commands=0, clicks=0),
                 lambda s, rng: s.mixed(rng.randint(5, 60), commands=0),
                 lambda s, rng: s.mixed(rng.randint(5, 60), sliders=0, settings=0, clicks=0, commands=2),
                 lambda s, rng: s.mixed(rng.randint(5, 80)),
                 lambda s, rng: s.take(rng.randint(1, 30), ("play", "save t")),
                 lambda s, rng: s.take(rng.randint(1, 30), ("save t",))]
        began, done = time.monotonic(), 0
        while done < 1500 and (done < 60 or time.monotonic() - began < 10):
            rng = random.Random(done)
            script = Script(rng)
            kinds[done % len(kinds)](script, rng)
            self.follow(script, rng, f"script {done}")
            done += 1

    def follow(self, script, rng, name):
        for left in os.listdir(self.folder):
            os.remove(self.path(left))
        options, labels = ["--take", "take"], None
        if rng.random() < 0.2:
            data = random_scheme(rng)
            options += ["--scheme", self.write("s.key", data)]
            labels = scheme_of(data)
        model = Keyboard(labels, writable=lambda name: not name.startswith("absent/"))
        model.perform(script.lines)
        done = run("perform", "-", *options, input=script.text().encode(), cwd=self.folder)
        told = f"{name}:\n{script.text()}"
        self.assertEqual(done.returncode, 1 if model.failed else 0, told)
        complaints = done.stderr.decode().splitlines()
        self.assertEqual(len(complaints), len(model.failed), told)
        for complaint, file in zip(complaints, model.failed):
            self.assertIn(file, complaint, told)
        self.assertIsNone(difference(model, done.stdout.decode()), told)
        self.assertEqual(self.read("take"), model.take(), told)
        for file, text in model.saved.items():
            self.assertEqual(self.read(file), text, told)


class KeysTest(PerformFixture):
    def keys(self, *words, status=0):
        done = run("keys", *words, cwd=self.folder)
        self.assertEqual(done.returncode, status, done.stderr)
        return done.stdout.decode()

    def labels(self, *words):
        lines = self.keys(*words).split("\n")
        self.assertEqual(lines.pop(), "")
        places = [line.split(" ", 2) for line in lines]
        self.assertEqual([place[:2] for place in places], [[str(key), str(36 + key)] for key in range(44)])
        return [place[2] for place in places]

    def test_the_built_in_scheme_is_shown_by_key_and_note(self):
        self.assertEqual(self.labels(), BUILT_IN)
        self.assertEqual(self.keys().splitlines()[13], "13 49 F")

    def test_the_last_line_stands_for_all_that_are_missing(self):
        for end in ("\r\n", "\n", ""):
            self.assertEqual(self.labels(self.write("k.key", "A\r\nB\nC" + end)), ["A", "B"] + ["C"] * 42)
        self.assertEqual(self.labels(self.write("k.key", "")), [""] * 44)
        self.assertEqual(self.labels(self.write("k.key", "A\n\n")), ["A"] + [""] * 43)

    def test_lines_45_to_50_are_ignored(self):
        self.assertEqual(self.labels(self.write("k.key", "".join(f"{n}\r\n" for n in range(50)))), [str(n) for n in range(44)])

    def test_labels_are_shown_whole_and_with_their_blanks(self):
        shown = self.labels(self.write("k.key", "  a b  \r\nlong\r\n\r\n"))
        self.assertEqual(shown[:3], ["  a b  ", "long", ""])

    def test_labels_are_utf_8_or_else_windows_1252(self):
        self.assertEqual(self.labels(self.write("k.key", "ä\n€\n"))[:2], ["ä", "€"])
        self.assertEqual(self.labels(self.write("k.key", "ä\n€\n".encode("cp1252")))[:2], ["ä", "€"])

    def test_labels_are_set_in_order_and_may_be_empty_or_hold_an_equals_sign(self):
        shown = self.labels("--set", "0=Q", "--set", "43==", "--set", "0=a=b", "--set", "1=")
        self.assertEqual((shown[0], shown[1], shown[43]), ("a=b", "", "="))
        self.assertEqual(self.labels(self.write("k.key", "A\n"), "--set", "5=ä")[4:7], ["A", "ä", "A"])

    def test_a_scheme_is_written_trimmed_with_cr_lf(self):
        self.assertEqual(self.keys("--set", "0= x ", "--set", "1=", "--set", "2=ä", "--out", "k.key"), "")
        self.assertEqual(self.read("k.key").split("\r\n"), ["x", "", "ä", *BUILT_IN[3:], ""])
        self.assertEqual(self.labels(self.path("k.key")), ["x", "", "ä", *BUILT_IN[3:]])

    def test_a_name_gains_its_extension_once(self):
        for name, wanted in (("plain", "plain.key"), ("a.KEY", "a.KEY"), ("b.Key", "b.Key"), ("c.keys", "c.keys.key"), ("key", "key.key")):
            self.keys("--out", name)
            self.assertTrue(os.path.exists(self.path(wanted)), wanted)
        self.assertEqual(len(os.listdir(self.folder)), 5)

    def test_a_scheme_may_be_written_over_the_file_that_it_came_from(self):
        file = self.write("k.key", "A\nB\n")
        self.keys(file, "--set", "43=Z", "--out", file)
        self.assertEqual(self.labels(file), ["A"] + ["B"] * 42 + ["Z"])
        self.assertEqual(os.listdir(self.folder), ["k.key"])

    def test_a_written_scheme_plays(self):
        self.keys("--set", "0=?", "--out", "k")
        self.assertSends(["0 down ?", "1 up ?", "2 down z"], "0 on 36", "1 off 36", options=("--scheme", "k.key"))

    def test_what_cannot_be_read_or_written_is_named(self):
        for words in (["absent.key"], ["."], ["absent.key", "--out", "new"]):
            done = run("keys", *words, cwd=self.folder)
            self.assertEqual((done.returncode, done.stdout), (1, b""), words)
            self.assertIn(words[0], done.stderr.decode())
        done = run("keys", "--out", "absent/k", cwd=self.folder)
        self.assertEqual(done.returncode, 1)
        self.assertIn("absent/k.key", done.stderr.decode())
        self.assertEqual(os.listdir(self.folder), [])

    def test_wrong_words_are_usage_errors_and_write_nothing(self):
        self.write("k.key", "A\n")
        for words in (["--set", "44=a"], ["--set", "-1=a"], ["--set", "3"], ["--set", "a=b"], ["--set", "=b"], ["--set"],
                      ["k.key", "k.key"], ["--out"], ["--loud"], ["k.key", "--set", "0=a", "--set", "x"]):
            done = run("keys", *words, *([] if words[-1] in ("--set", "--out") else ["--out", "out"]), cwd=self.folder)
            self.assertEqual((done.returncode, done.stdout), (2, b""), words)
        self.assertEqual(os.listdir(self.folder), ["k.key"])

    def test_random_files_are_read_by_the_rules(self):
        rng = random.Random(3)
        for case in range(40):
            data = random_scheme(rng)
            self.assertEqual(self.labels(self.write("k.key", data)), scheme_of(data), (case, data))


def random_scheme(rng):
    """The bytes of a key file: labels that are also typed, some twice, some long; its ends of lines either way."""
    labels = [rng.choice(KEYS[:-1] + ["", "A", "M", "zz"]) for _ in range(rng.choice([3, 20, 43, 44, 50]))]
    text = rng.choice(["\n", "\r\n"]).join(labels) + rng.choice(["", "\n"])
    return text.encode(rng.choice(["utf-8", "cp1252"]))


if __name__ == "__main__":
    CLI = os.path.abspath(sys.argv.pop(1))  # each script runs in a folder of its own
    unittest.main()
