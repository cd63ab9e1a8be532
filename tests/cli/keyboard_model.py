# SPDX-License-Identifier: GPL-2.0-or-later
"""What the keyboard sends, records, plays and saves, worked out a second time from the rules alone: literally, one list
of texts after the other, on a clock of exact fractions."""

from fractions import Fraction

KEYS = 44
BUILT_IN = list("ZSXDCVGBHNJM,") + list('FGHJKL:"') + list("QWERTYUIOP{}") + list("1234567890]")
CHORDS = {1: (4, 7, 12), 2: (3, 7, 12), 3: (4, 7, 11), 4: (3, 7, 10), 5: (3, 6, 10), 6: (3, 6, 9), 7: (4, 7, 10),
          8: (4, 7, 11, 14), 9: (3, 7, 10, 14), 10: (12,)}
CONTROLLERS = {"volume": 7, "modulation": 1, "pan": 10, "reverb": 91, "chorus": 93}
REAL = {"speed": "Text2", "pauses": "Text11", "compression": "Text12"}
BEATS = {1: 54, 2: 64, 3: 70, 4: 72}
ERASE = "Recording has not been saved. Overwrite?"
PAUSED = None


def scheme_of(data):
    """The labels that a key file of these bytes gives."""
    try:
        text = data.decode("utf-8")
    except UnicodeDecodeError:
        text = data.decode("cp1252")
    lines = text.replace("\r\n", "\n").split("\n")
    if lines[-1] == "":
        lines.pop()
    buffer, labels = "", []
    for i in range(KEYS):
        if i < len(lines):
            buffer = lines[i]
        labels.append(buffer)
    return labels


def number(text):
    return int(text)


def item(items, index):
    """No list is read past its end."""
    return items[index] if 0 <= index < len(items) else None


# From a trace to a list that is played or saved


def with_pauses(list1, list3, length_of):
    """`BuildPlayList`, and the play command with "Insert pauses"; `length_of` a run is what is kept of it."""
    list4, run = [], 0

    def cut():
        if run > 4:
            length = max(1, length_of(run))
            for j in range(len(list4) - run + length, len(list4)):
                list4[j] = "-1"

    for n in range(1, len(list3)):
        if list1[n] == "1":
            cut()
            run = 0
            list4.append("-1")
        elif list3[n] == item(list3, n + 1):
            run += 1
            list4.append(list3[n])
        else:
            cut()
            run = 0
    return list4


def without_pauses(list1, list3):
    return ["-1" if list1[n] == "1" else list3[n] for n in range(1, len(list3))]


def continuation(text):
    return str(number(text) + 1000)


def spared(text):
    return number(text) < 1000


def convert_recording(list4, compression):
    list5 = []
    if not list4:
        return list5
    list5.append(list4[0])
    list5.append("-1" if list4[0] == "-1" else continuation(list4[0]))
    c, i, limit = 0, 2, len(list4) - 2
    while i <= limit:
        if list4[i] == item(list4, i + 1):
            if list4[i] == "-1":
                list5.append("-1")
            else:
                c += 1
                if list4[i] == list4[i - 1]:
                    list5.append(continuation(list4[i - 1]))
                else:
                    list5.append(list4[i])
                    row, j, last = list4[i], i, len(list4) - 1
                    i_after = None
                    while j <= last:
                        if list4[j] == "-1":
                            i_after = j
                            break
                        if list4[j] != row:
                            i_after = j - 1
                            break
                        if list4[j] == item(list4, j + 1):
                            list5.append(continuation(list4[j]))
                        j += 1
                    i = i_after if i_after is not None else j
        else:
            if c < 100:
                list5.append("-1")
            else:
                k = round(c * compression * 0.2)
                count = len(list5)
                j = count - 1 - k if count - 1 - c + k < 10 else count - 1 - c - k
                while j <= count - 1:
                    if 0 <= j < len(list5) and not spared(list5[j]):
                        del list5[j]
                    j += 1
                for j in range(max(0, round(len(list5) - 1 - k * 0.25)), len(list5)):
                    if not spared(list5[j]):
                        list5[j] = "-1"
            c = 0
        i += 1
    return list5


def shorten(list5, kept, step_back):
    """One walk over the rests; `kept` of a counted rest says how many positions of it are left alone."""
    c, i, limit = 0, 0, len(list5)
    while i <= limit:
        if item(list5, i) == "-1":
            start = i
            c += 1
            while item(list5, i) == "-1" and i < len(list5) - 1:
                i += 1
                c += 1
            end = i
            c = kept(c)
            j = start + c
            while j <= end:
                if item(list5, j) == "-1":
                    del list5[j]
                    end -= 1
                    if step_back:
                        j -= 1
                j += 1
            i = j + 2
            c = 0
        i += 1


def score_of_take(list4, compression, shift):
    """`List5` of a take: `ConvertRecording` and `ShortenPauses`."""
    list5 = convert_recording(list4, compression)
    shorten(list5, lambda c: int(c * 0.1), step_back=False)
    shorten(list5, lambda c: int(c * compression * 0.01), step_back=True)
    return [cell if cell == "-1" else str(number(cell) - shift) for cell in list5]


def sng_text(list5, instrument, tempo):
    count = len(list5)

    def row(value, fields):
        return ",".join([str(value)] * fields)

    lines = [",".join(list5), row(instrument, count)]
    lines += ["-1", str(instrument)] * 12
    lines += [f" {tempo} ", row(instrument, 13)]
    lines += ["Polyphonics"] + [row(0, count + 1)] * 9
    for name, value in (("Volume", 127), ("Modulation_Change", 0), ("Pan_Change", 64), ("Reverb_Change", 0),
                        ("Chorus_Change", 0)):
        lines += [name] + [row(value, count)] * 13
    return "".join(line + "\r\n" for line in lines)


# The keyboard itself


class Task:
    """A loop that waits: `due` is when it goes on, None while it looks at every moment."""

    def __init__(self, steps, due):
        self.steps, self.due = steps, due


class Keyboard:
    """`perform`: feed it script lines, then read `lines`, `saved` and `take()`.

    A line is (seconds, of the script, text): what a script event sent itself comes in order, what fell due comes in
    any order within its moment."""

    def __init__(self, labels=None, writable=lambda name: True):
        self.labels = list(labels or BUILT_IN)
        self.writable = writable
        self.now, self.scripted, self.lines = Fraction(0), True, []
        self.saved, self.failed = {}, []
        self.OctaveShift, self.SoundChannel, self.SpacebarDown = 0, 0, 0
        self.ChordNotes, self.Label5, self.Text7 = [0] * 5, "", "Text7"
        self.Text1, self.Text4, self.strum_left = 1, 0, True
        self.Text2, self.Text11, self.Text12, self.Text8 = "10", "13", "2.5", 200
        self.Check2 = self.Check8 = self.Check3 = self.Check5 = self.Check6 = False
        self.Chkstrum = self.hold = self.mute = self.editing = False
        self.answer, self.instrument = True, 24
        self.down, self.char = {}, "-1"  # what each computer key that is down has struck: (key, channel)
        self.mouse = None
        self.played = None  # note and channel that playing has on
        self.strums, self.player, self.recorder, self.ticks = [], None, None, None
        self.recording, self.waiting = False, False
        self.List1, self.List3, self.List4 = [], [], []
        self.BeatsPerMinute, self.tone, self.BeatNumber, self.beat_note = 120, True, 0, None
        self.send(201)
        self.controller(7, 127)
        self.send(0xC0 + (24 << 8))

    # Messages

    def emit(self, text):
        self.lines.append((self.now, self.scripted, text))

    def send(self, word):
        self.emit(f"0x{word & 0xFFFFFFFF:06X}")

    def controller(self, which, value):
        self.send(0xB0 + self.SoundChannel + (which << 8) + (value << 16))

    def on(self, note, channel):
        self.send(0x90 + channel + note * 256 + (100 << 16))

    def off(self, note, channel):
        self.send(0x80 + channel + note * 256)

    # The clock

    def tasks(self):
        return [task for task in (*self.strums, self.player, self.recorder, self.ticks) if task]

    def resume(self, task):
        try:
            wait = next(task.steps)
            task.due = None if wait is PAUSED else task.due + wait if task.due is not None else self.now + wait
        except StopIteration:
            self.drop(task)

    def drop(self, task):
        if task in self.strums:
            self.strums.remove(task)
        for name in ("player", "recorder", "ticks"):
            if getattr(self, name) is task:
                setattr(self, name, None)

    def run_dues(self, until, including):
        while True:
            dues = [t for t in self.tasks() if t.due is not None and (t.due < until or including and t.due == until)]
            if not dues:
                return
            task = min(dues, key=lambda t: t.due)
            self.now = task.due
            self.resume(task)

    def moment_ends(self):
        """What fell due at this moment, behind the events of the script."""
        self.scripted = False
        for task in self.tasks():
            if task.due is None:
                self.resume(task)
        self.run_dues(self.now, including=True)

    def perform(self, script):
        """`script`: (seconds as a text, the rest of the line)."""
        events = [(Fraction(seconds), words) for seconds, words in script]
        for at, (moment, words) in enumerate(events):
            if at == 0 or moment != events[at - 1][0]:
                if at:
                    self.moment_ends()
                self.run_dues(moment, including=False)
                self.now = moment
            self.scripted = True
            self.event(words)
        self.moment_ends()
        while self.strums or self.player and not self.Check5 and self.player.due is not None:
            due = min(t.due for t in self.tasks() if t.due is not None)
            self.run_dues(due, including=True)
            self.now = due
        return self

    def take(self):
        return "".join(f"{a} {b}\n" for a, b in zip(self.List1, self.List3))

    # The script

    def event(self, words):
        name, _, rest = words.partition(" ")
        getattr(self, "do_" + name.replace("-", "_"))(rest)

    def do_end(self, rest):
        pass

    def do_single(self, rest):
        self.Check2 = self.Check8 = False

    def do_polynotes_space(self, rest):
        self.Check2, self.Check8 = True, False

    def do_polynotes_always(self, rest):
        self.Check2, self.Check8 = False, True

    def do_strum(self, rest):
        self.Chkstrum = rest == "on"

    def do_hold(self, rest):
        if self.hold != (rest == "on"):
            self.hold = rest == "on"
            self.controller(64, 127 if self.hold else 0)

    def do_mute(self, rest):
        self.mute = rest == "on"

    def do_octaves(self, rest):
        self.OctaveShift = int(rest) * 12

    def do_instrument(self, rest):
        self.instrument = int(rest)
        self.send(0xC0 + self.SoundChannel + (self.instrument << 8))

    def do_panic(self, rest):
        self.emit("reset")

    def do_answer(self, rest):
        self.answer = rest == "yes"

    def do_loop(self, rest):
        self.Check5 = rest == "on"

    def do_insert_pauses(self, rest):
        self.Check3 = rest == "on"

    def do_label(self, rest):
        key, _, text = rest.partition(" ")
        if self.editing:
            self.labels[int(key)] = text

    # Sliders

    def do_set(self, rest):
        name, value = rest.split()
        if name in REAL:
            setattr(self, REAL[name], value)
            return
        self.slide(name, int(value), left_end=value == "1")

    def do_drag(self, rest):
        name, at = rest.split()
        x = Fraction(at)
        if name in ("speed", "pauses"):
            setattr(self, REAL[name], str(float(13 - 12 * x)))
        elif name == "compression":
            self.Text12 = str(float(6 * x + 1))
        else:
            steps = {"channel": 8, "octave": 10, "chord": 10, "strum": 10, "pan": 128, "tempo": 125}.get(name, 127)
            value = round(x * steps) * 4 if name == "tempo" else int(x * steps)
            value += {"strum": 1, "pan": -64}.get(name, 0)
            self.slide(name, value, left_end=x == 0)

    def do_right_click(self, name):
        if name in REAL:
            setattr(self, REAL[name], {"speed": "9", "pauses": "1", "compression": "2.5"}[name])
        else:
            self.slide(name, {"volume": 127, "strum": 1, "tempo": 200}.get(name, 0), left_end=True)

    def slide(self, name, value, left_end):
        if name == "channel":
            self.SoundChannel = value
        elif name == "octave":
            self.OctaveShift = value
        elif name == "chord":
            self.Text4 = value
        elif name == "strum":
            self.Text1, self.strum_left = value, left_end
        elif name == "tempo":
            self.Text8 = value
        else:
            self.controller(CONTROLLERS[name], min(value + 64, 127) if name == "pan" else value)

    # Computer keys and the mouse

    @staticmethod
    def place_of(k):
        if k == "space":
            return " ", " ", None
        coded = k.isascii() and k.isalnum()
        return (k.upper() if coded else k), k, (k.upper() if coded else None)

    def match(self, text):
        return self.labels.index(text) if text in self.labels else None

    def do_down(self, k):
        place, typed, code = self.place_of(k)
        repeated = place in self.down
        if self.editing:
            self.down.setdefault(place, [])
            return
        if place == " ":
            self.SpacebarDown = 32
            self.Label5 = "32" if self.Check2 else "1"
        if repeated:
            return
        struck = self.down[place] = []
        for text in ([code] if code else []) + [typed]:
            key = self.match(text)
            if key is None:
                if text == " ":
                    self.char = text
                continue
            if any(key == other for other, _ in struck):
                continue
            self.char = text
            struck.append((key, self.SoundChannel))
            self.note_down(key)
            if self.recording and self.waiting:
                self.waiting = False
                self.recorder = Task(self.samples(text), self.now)

    def do_up(self, k):
        place, _, _ = self.place_of(k)
        if self.editing:
            self.down.pop(place, None)
            return
        self.released(place)
        self.down.pop(place, None)

    def released(self, place):
        if place == " ":
            self.SpacebarDown = 0
            self.Label5 = "0" if self.Check2 else "1"
        self.char = "-1"
        struck = self.down.get(place, [])
        while struck:
            self.note_up(*struck.pop(0))

    def loses_focus(self):
        for place in [p for p in self.down if p != " "] + [p for p in self.down if p == " "]:
            self.released(place)

    def do_edit(self, rest):
        if rest == "on" and not self.editing:
            self.loses_focus()
        self.editing = rest == "on"

    def do_mouse(self, rest):
        note = int(rest) + 36 + self.OctaveShift
        self.ChordNotes[0] = note * 256
        self.mouse = (note, self.SoundChannel)
        self.on(*self.mouse)

    def do_mouse_up(self, rest):
        if self.mouse:
            self.off(*self.mouse)
        self.mouse = None

    # Notes

    def sound(self, index, channel):
        self.on(self.ChordNotes[index] // 256, channel)

    def fill(self, key, offsets):
        for n, offset in enumerate(offsets, 1):
            self.ChordNotes[n] = (key + 36 + offset + self.OctaveShift) * 256

    def note_down(self, key):
        self.Text7 = str(91 - key)
        self.ChordNotes[0] = (key + 36 + self.OctaveShift) * 256
        self.sound(0, self.SoundChannel)
        if not (self.Check8 or self.Check2 and self.Label5 == "32"):
            return
        chord = self.Text4
        if chord in (0, 9):
            return
        self.fill(key, CHORDS[chord])
        if self.SpacebarDown == 0 and not self.Chkstrum:
            for n in [1] if chord == 10 else range(5) if chord == 8 else (1, 2, 3):
                self.sound(n, self.SoundChannel)
            return
        steps = self.strum(chord, self.SoundChannel)
        task = Task(steps, self.now)
        task.key = key
        self.strums.append(task)
        self.resume(task)

    def strum(self, chord, channel):
        delay = Fraction(self.Text1 * 10, 1000)
        for n in (1, 0) if chord == 10 else (3, 2, 1, 0):
            self.sound(n, channel)
            if n:
                yield delay

    def note_up(self, key, channel):
        self.strums = [task for task in self.strums if task.key != key]
        root = key + 36 + self.OctaveShift
        ended = False
        if self.Label5 != "32":
            self.ChordNotes[0] = root * 256
            self.off(root, channel)
            ended = True
        chorded = self.Check8 or self.Check2 and self.Label5 == "32"
        if chorded and self.Text4 in CHORDS:
            self.ChordNotes[0] = root * 256
            self.fill(key, CHORDS[self.Text4])
            for n in range(len(CHORDS[self.Text4]) + 1):
                self.off(self.ChordNotes[n] // 256, channel)
            ended = True
        if not ended:
            self.off(root, channel)
        if not (self.Check2 or self.Check8):
            return
        if self.Chkstrum and self.strum_left and (self.Label5 == "32" or self.Check8):
            self.emit("reset")

    # The metronome

    def do_metronome(self, rest):
        if (rest == "on") == (self.ticks is not None):
            return
        if rest == "on":
            tick = Fraction(25, 1000)
            self.ticks = Task(self.beats(tick, Fraction(60, self.BeatsPerMinute)), self.now + tick)
        else:
            self.ticks = None
            self.end_beat()

    def do_beats(self, rest):
        self.BeatsPerMinute = int(rest)

    def do_tone(self, rest):
        self.tone = rest == "on"

    def end_beat(self):
        if self.beat_note is not None:
            self.off(self.beat_note, 14)
        self.beat_note = None

    def beats(self, tick, interval):
        elapsed, following = tick, interval
        while True:
            if following <= elapsed:
                self.BeatNumber = self.BeatNumber % 4 + 1
                if self.tone:
                    self.end_beat()
                    self.beat_note = self.OctaveShift + BEATS[self.BeatNumber]
                    self.on(self.beat_note, 14)
                following += interval
            elapsed += tick
            yield tick

    # The take

    def do_record(self, rest):
        if self.recording:
            self.end_take()
            return
        if len(self.List3) > 2:
            self.box(ERASE)
            if not self.answer:
                return
        if self.player:
            self.end_playing()
        for items in (self.List1, self.List3, self.List4):
            items.clear()
        self.recording = self.waiting = True

    def box(self, text):
        self.emit("box " + text)

    def end_take(self):
        self.recording = self.waiting = False
        self.recorder = None

    def samples(self, first):
        count = 0
        while True:
            count = count + 1 if self.char == first else 0
            self.List1.append(str(count))
            self.List3.append(self.Text7)
            yield Fraction(self.Text2) / 1000

    def do_save(self, name):
        if self.recording:
            return
        if len(self.List3) < 2:
            self.box("Nothing to save")
            return
        name = name.strip(" ")
        if not name.lower().endswith(".sng"):
            name += ".sng"
        compression = float(self.Text12)
        self.List4[:] = with_pauses(self.List1, self.List3, lambda run: round(run * compression * 0.1))
        if not self.writable(name):
            self.failed.append(name)
            return
        self.saved[name] = sng_text(score_of_take(self.List4, compression, self.OctaveShift), self.instrument, self.Text8)
        for items in (self.List1, self.List3, self.List4):
            items.clear()

    # Playing

    def do_play(self, rest):
        if self.recording:
            return
        if self.player:
            self.end_playing()
            return
        if self.Check3:
            length = round(float(self.Text11) * 0.1)
            self.List4[:] = with_pauses(self.List1, self.List3, lambda run: length)
        else:
            self.List4[:] = without_pauses(self.List1, self.List3)
        self.player = Task(self.steps(), self.now)

    def do_pause(self, rest):
        self.Check6 = not self.Check6
        if self.recording:
            self.end_take()

    def do_stop(self, rest):
        self.Check5 = self.Check6 = False
        if self.recording:
            self.end_take()
        if self.player:
            self.end_playing()

    def end_playing(self):
        """Note-off and reset, at the latest a tick after the press; here with it."""
        if self.played:
            self.off(*self.played)
        self.played = self.player = None
        self.Check6 = False
        self.emit("reset")

    def time_out(self):
        return Fraction(self.Text2) * 12 / 10 / 1000

    def steps(self):
        while True:
            yield from self.walk()
            if not self.Check5:
                break
            yield self.time_out()
        self.end_playing()

    def walk(self):
        i = 0
        while i < len(self.List4):
            while self.Check6:
                yield PAUSED
            if i >= len(self.List4):
                return
            was, row = i, self.List4[i]
            if number(row) > 0:
                self.played = (91 - number(row) + 36 + self.OctaveShift, self.SoundChannel)
                self.on(*self.played)
                yield self.time_out()
                while item(self.List4, i) == row:
                    i += 1
                    yield self.time_out()
                yield self.time_out()
                self.off(*self.played)
                self.played = None
            while item(self.List4, i) == "-1":
                yield self.time_out()
                i += 1
            yield self.time_out()
            if i == was:
                i += 1
