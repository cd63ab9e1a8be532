# SPDX-License-Identifier: GPL-2.0-or-later
"""What is read of wave files, told by `info` and heard through the image of a CD."""

import array
import os
import random
import signal
import struct
import time

from player_model import Score
from studio import disc, measure, mp3s
from studio.case import StudioCase
from studio.midis import midi, note, scale, tempo, track
from studio.waves import (CODINGS, FLOAT, UNKNOWN, Header, chunk, little, nearest, text_chunk, wave)

FACTS = ["File", "Kind", "Rate", "Channels", "Bits", "Frames", "Seconds", "Peak"]


class InfoTest(StudioCase):
    def test_a_wave_file_is_told_a_line_a_fact_in_their_order(self):
        values = array.array("h", [0, 100, -16621, 5, 3, -7, 16000, 1] * 22050)
        self.save("take.wav", wave(values))
        lines = self.succeed("info", "take.wav").stdout.splitlines()
        self.assertEqual(lines[:8], ["File: take.wav", "Kind: WAV", "Rate: 44100", "Channels: 2", "Bits: 16",
                                     "Frames: 88200",
                                     "Seconds: 2.000", "Peak: -5.90 dB"])

    def test_the_peak_is_that_of_the_higher_side_and_silence_has_none(self):
        for values, peak in (([0, 0, 0, 0], "-inf dB"), ([1, 0], "-90.31 dB"), ([0, -1], "-90.31 dB"),
                             ([-32768, 0], "0.00 dB"), ([3, 16384, -16384, 4], "-6.02 dB"), ([100, -8192], "-12.04 dB")):
            self.save("peak.wav", wave(values))
            self.assertEqual(self.facts("peak.wav")["Peak"], peak, values)

    def test_seconds_have_three_digits_at_any_rate(self):
        for rate, frames in ((8000, 1), (11025, 11025), (48000, 1234), (192000, 65), (44100, 44099), (37800, 50000)):
            self.save("s.wav", wave([1] * frames, rate, 1))
            facts = self.facts("s.wav")
            self.assertEqual((facts["Rate"], facts["Frames"], facts["Channels"]), (str(rate), str(frames), "1"))
            self.assertNear(float(facts["Seconds"]), frames / rate, 0.00051)
            self.assertRegex(facts["Seconds"], r"^\d+\.\d{3}$")

    def test_names_count_in_any_case_of_letters_and_with_blanks(self):
        for name in ("A.WAV", "b.Wav", "one two.wav", "été.wav", "-odd.wav"):
            self.save(name, wave([1, 2, 3, 4]))
            done = self.succeed("info", "--", name)
            self.assertEqual(done.stdout.splitlines()[:2], ["File: " + name, "Kind: WAV"])

    def test_several_files_are_told_and_one_that_fails_is_named(self):
        self.save("a.wav", wave([1, 2]))
        self.save("b.mid", scale())
        self.save("bad.wav", b"nothing of the kind")
        done = self.run_cli("info", "a.wav", "bad.wav", "absent.wav", "b.mid")
        self.assertEqual(done.returncode, 1)
        told = [line for line in done.stdout.splitlines() if line.startswith(("File", "Kind"))]
        self.assertEqual([t for t in told if "bad" not in t], ["File: a.wav", "Kind: WAV", "File: b.mid", "Kind: MIDI"])
        errors = done.stderr.splitlines()
        self.assertEqual(len(errors), 2, errors)
        self.assertIn("bad.wav", errors[0])
        self.assertIn("absent.wav", errors[1])

    def test_scores_are_told_as_ever_beside_sounds(self):
        self.save("a.wav", wave([1, 2]))
        with open(self.path("s.sng"), "wb") as file:
            file.write(self.score_bytes())
        done = self.succeed("info", "s.sng", "a.wav")
        for line in ("File: s.sng", "Tempo: 200", "File: a.wav", "Kind: WAV"):
            self.assertIn(line, done.stdout.splitlines())

    @staticmethod
    def score_bytes():
        score = Score()
        score.tempo = 200
        score.cell[0][0] = 60
        return score.text().encode()

    def test_a_midi_file_is_told_with_its_length(self):
        half = midi(track(*note(60, 480), (0, tempo(1000000)), *note(62, 480)))  # 0.5 s, then 1 s
        smpte = midi(track(*note(60, 100)), division=-25 * 256 | 40)  # 1000 ticks a second
        tempos = midi(track((480, tempo(250000)), (960, b"\xff\x01\0")), track(*note(60, 480), *note(60, 960)))
        for data, seconds in ((half, 1.5), (smpte, 0.1), (scale(), 1.0), (tempos, 0.5 + 0.5)):
            self.save("m.MID", data)
            lines = self.succeed("info", "m.MID").stdout.splitlines()
            self.assertEqual(lines[:2], ["File: m.MID", "Kind: MIDI"])
            self.assertEqual(lines[2].split(": ")[0], "Seconds")
            self.assertNear(float(lines[2].split(": ")[1]), seconds, 0.0011, lines)

    def test_without_a_file_or_with_unknown_words_it_is_wrong_usage(self):
        self.misuse("info")
        self.misuse("info", "--loud", "a.wav")


    def test_a_signal_ends_a_long_look_at_once(self):
        size = 3 << 30
        self.save("huge.wav", Header(data_length=size, riff_length=size + 36).file(b""))
        os.truncate(self.path("huge.wav"), size + 44)
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            running = self.start("info", "huge.wav")
            time.sleep(0.3)
            sent = time.monotonic()
            running.send(number)
            self.assertNotEqual(running.wait(20).returncode, 0)
            self.assertLess(time.monotonic() - sent, 2, number)


class WaveKindTest(StudioCase):
    """Every coding in every kind of header."""

    def draw(self, rng, coding, frames, channels):
        raw = [coding.draw(rng) for _ in range(frames * channels)]
        return raw, [coding.worth(value) for value in raw]

    def heads(self):
        for coding in CODINGS:
            for container in (b"RIFF", b"RIFX", b"RF64"):
                for extensible in (False, True):
                    for channels in (1, 2):
                        yield Header(coding=coding, container=container, extensible=extensible, channels=channels)

    def test_info_tells_every_kind(self):
        rng = random.Random(1)
        names, wanted = [], []
        for n, head in enumerate(self.heads()):
            raw, worth = self.draw(rng, head.coding, 300, head.channels)
            name = f"{n}.wav"
            self.save(name, head.file(b"".join(head.coding.pack(value, head.order) for value in raw)))
            names.append(name)
            peak = max(map(abs, worth)) / 32768
            wanted.append((head, {measure.peak_text(p) for p in (peak, min(1, peak))}))
        done = self.succeed("info", *names)
        told = [block.splitlines() for block in ("\n" + done.stdout).split("\nFile: ")[1:]]
        self.assertEqual([block[0] for block in told], names)
        for block, (head, peaks) in zip(told, wanted):
            facts = dict(line.split(": ", 1) for line in block[1:] if line)
            self.assertEqual(list(facts)[:7], FACTS[1:], head)
            self.assertEqual([facts[f] for f in ("Kind", "Rate", "Channels", "Bits", "Frames", "Seconds")],
                             ["WAV", "44100", str(head.channels), str(head.coding.bits), "300", "0.007"], head)
            self.assertIn(facts["Peak"], peaks, head)

    def test_every_kind_sounds_as_its_nearest_16_bit_values_on_both_sides(self):
        rng = random.Random(2)
        names, wanted = [], []
        for n, head in enumerate(self.heads()):
            raw, worth = self.draw(rng, head.coding, 700, head.channels)
            names.append(f"{n}.wav")
            self.save(names[-1], head.file(b"".join(head.coding.pack(value, head.order) for value in raw)))
            if head.channels == 1:
                worth = [value for value in worth for _ in range(2)]
            wanted.append((head, [nearest(value) for value in worth]))
        self.assertLess(len(names), 100)
        tracks = self.image(names)
        for track_values, (head, values) in zip(tracks, wanted):
            for at, (got, allowed) in enumerate(zip(track_values, values)):
                self.assertTrue(allowed[0] <= got <= allowed[1], (head, at, got, allowed))
            self.assertFalse(any(track_values[len(values):]), head)

    def image(self, names):
        """The samples of each track."""
        self.succeed("burn", *names, "--image", "i.cue")
        return disc.Image(self.folder, "i.cue").tracks()

    def test_a_float_that_is_no_number_does_no_harm(self):
        for values in ([float("nan")] * 400, [float("inf"), float("-inf")] * 200, [0.5, float("nan")] * 300):
            for bits, letter in ((32, "f"), (64, "d")):
                coding = next(c for c in CODINGS if c.kind == FLOAT and c.bits == bits)
                self.save("nan.wav", Header(coding=coding).file(struct.pack(f"<{len(values)}{letter}", *values)))
                self.assertEqual(self.facts("nan.wav")["Frames"], str(len(values) // 2))
                samples = self.image(["nan.wav"])[0]
                for got, value in zip(samples, values):
                    if value in (float("inf"), float("-inf"), 0.5):
                        self.assertIn(got, (32767,) if value > 1 else (-32768,) if value < 0 else (16384,))

    def test_of_many_channels_at_least_the_first_two_are_heard(self):
        for channels in (3, 4, 6, 8):
            for heard in (0, 1):
                frame = [0] * channels
                frame[heard] = 9000
                for extensible in (False, True):
                    self.save("c.wav", Header(channels=channels, extensible=extensible).file(little(frame * 2000)))
                    facts = self.facts("c.wav")
                    self.assertEqual((facts["Channels"], facts["Frames"]), (str(channels), "2000"))
                    samples = self.image(["c.wav"])[0]
                    side = samples[heard:4000:2]
                    self.assertGreater(min(side), 1000, (channels, heard, extensible))


class WaveShapeTest(StudioCase):
    """Chunks in any order and headers that lie."""

    FRAMES = 1000

    def setUp(self):
        super().setUp()
        rng = random.Random(3)
        self.values = array.array("h", [rng.randrange(-32768, 32768) for _ in range(2 * self.FRAMES)])

    def assertReads(self, data, frames=FRAMES, note=None):
        """That many frames of the values are there: told and heard."""
        self.save("x.wav", data)
        facts = self.facts("x.wav")
        self.assertEqual((facts["Frames"], facts["Channels"], facts["Bits"]), (str(frames), "2", "16"), note)
        self.succeed("burn", "x.wav", "--image", "x.cue")
        samples = disc.Image(self.folder, "x.cue").tracks()[0]
        self.assertEqual(samples[:2 * frames], self.values[:2 * frames], note)
        self.assertFalse(any(samples[2 * frames:]), note)

    def assertNoSound(self, data, note):
        """Refused, or told as empty, in words."""
        self.save("x.wav", data)
        done = self.run_cli("info", "x.wav")
        if done.returncode == 0:
            self.assertIn("Frames: 0", done.stdout.splitlines(), note)
        else:
            self.assertEqual((done.returncode, len(done.stderr.splitlines())), (1, 1), (note, done.stderr))
            self.assertIn("x.wav", done.stderr)
        for words in (["encode", "x.wav"], ["burn", "x.wav", "--image", "x.cue"]):
            done = self.run_cli(*words)
            self.assertTrue(done.returncode == 1 and "x.wav" in done.stderr or done.returncode == 0, (note, done))
            if done.returncode:
                self.assertEqual(self.names(), ["x.wav"], (note, words))
            for name in self.names():
                if name != "x.wav":
                    os.remove(self.path(name))

    def test_chunks_of_any_kind_and_order_stand_around_the_sound(self):
        for container in (b"RIFF", b"RIFX", b"RF64"):
            order = ">" if container == b"RIFX" else "<"
            samples = array.array("h", self.values)
            if order == ">":
                samples.byteswap()
            for note, shape in self.shapes(order).items():
                self.assertReads(Header(container=container, **shape).file(little(samples)), note=(note, container))

    @staticmethod
    def shapes(order):
        def piece(name, data):
            return chunk(name, data, order)

        junk, odd = piece(b"junk", b"\1" * 64), piece(b"oddy", b"RIFFdatafmt \1")
        return {
            "odd chunks in front": dict(before=odd), "in between": dict(between=odd + junk + odd),
            "behind": dict(behind=odd + junk), "everywhere": dict(before=junk + odd, between=odd, behind=odd),
            "an empty chunk": dict(before=piece(b"null", b""), between=piece(b"null", b"")),
            "a fact and a cue": dict(between=piece(b"fact", struct.pack("<I", 7)) + piece(b"cue ", bytes(28))),
            "a large one": dict(before=piece(b"bext", bytes(100001))),
            "fmt of 18": dict(extra=b"\0\0"), "fmt of 40": dict(extra=struct.pack(order + "H", 22) + bytes(22)),
            "an odd fmt": dict(extra=b"\0\0\0"),
            "fmt behind": dict(fmt_behind=True), "fmt behind with more": dict(fmt_behind=True, before=odd, behind=junk),
            "fmt twice": dict(between=Header(container=b"RIFX" if order == ">" else b"RIFF").fmt()),
            "a name of no letters": dict(before=piece(b"\0\1\xff ", b"abc")),
        }

    def test_odd_sound_has_a_pad_byte_in_front_of_the_next_chunk(self):
        coding = CODINGS[0]
        for frames in (999, 1000):
            raw = bytes(n * 7 % 256 for n in range(frames))
            self.save("o.wav", Header(coding=coding, channels=1, behind=text_chunk(INAM="Behind the pad")).file(raw))
            self.assertEqual(self.facts("o.wav")["Frames"], str(frames))
            self.succeed("burn", "o.wav", "--image", "o.cue")
            self.assertIn("Behind the pad", self.read("o.cue").decode())

    def test_a_length_beyond_the_end_means_up_to_the_end(self):
        data = little(self.values)
        size = len(data)
        lies = [(size + 5000, None), (UNKNOWN, UNKNOWN), (0x7FFFF000, 0x7FFFF024), (UNKNOWN, 36), (0x80000000, 0),
                (size + 1, size + 37), (size, 0), (size, UNKNOWN), (size, 8), (size, size * 2), (UNKNOWN - 1, 0)]
        for data_length, riff_length in lies:
            self.assertReads(Header(data_length=data_length, riff_length=riff_length).file(data),
                             note=(data_length, riff_length))
        self.assertReads(Header(container=b"RF64", data_length=1 << 40).file(data), note="RF64 beyond")
        self.assertReads(Header(container=b"RF64", data_length=(1 << 63) + 9, riff_length=(1 << 64) - 1).file(data),
                         note="RF64")

    def test_a_killed_recorder_s_length_of_nothing_means_up_to_the_end(self):
        data = little(self.values)
        for riff_length in (36, 0, 8, 4):
            self.assertReads(Header(data_length=0, riff_length=riff_length).file(data), note=riff_length)
        junk = chunk(b"JUNK", bytes(28))
        self.assertReads(Header(data_length=0, riff_length=36 + len(junk), before=junk).file(data), note="behind junk")
        self.assertReads(Header(data_length=0, riff_length=60, extensible=True).file(data), note="extensible")

    def test_sound_of_length_nothing_with_chunks_behind_it_is_none(self):
        self.assertNoSound(Header(behind=text_chunk(INAM="x")).file(b""), "empty, with a title behind")

    def test_an_incomplete_last_frame_is_dropped(self):
        data = little(self.values)
        for missing in (1, 2, 3, 4, 5):
            for length in (None, len(data)):
                cut = data[:-missing]
                frames = self.FRAMES - (missing + 3) // 4
                self.assertReads(Header(data_length=length).file(cut)[:44 + len(cut)], frames, (missing, length))

    def test_a_wrong_alignment_or_byte_rate_of_plain_samples_is_corrected(self):
        data = little(self.values)
        for alignment, byte_rate in ((2, None), (0, None), (7, None), (65535, None), (None, 0), (None, 1), (8, UNKNOWN)):
            for extensible in (False, True):
                self.assertReads(Header(alignment=alignment, byte_rate=byte_rate, extensible=extensible).file(data),
                                 note=(alignment, byte_rate, extensible))
        coding = CODINGS[2]
        raw = [random.Random(4).randrange(-2 ** 23, 2 ** 23) for _ in range(600)]
        self.save("w.wav", Header(coding=coding, alignment=8).file(b"".join(coding.pack(v, "<") for v in raw)))
        self.assertEqual(self.facts("w.wav")["Frames"], "300")

    def test_what_holds_no_sound_is_refused_or_told_as_empty(self):
        data = little(self.values)
        whole = Header().file(data)
        empties = {
            "no frame": Header().file(b""), "less than a frame": Header().file(b"abc"),
            "no channel": Header(channels=0).file(data),
            "a rate of 0": Header(rate=0).file(data), "no fmt": whole.replace(b"fmt ", b"fmx "), "no data": whole[:36],
            "no bits": Header(bits=0).file(data), "only a container": whole[:12], "cut in the fmt": whole[:30],
            "nothing": b"",
            "one byte": b"R", "text": b"Not a wave file at all, however long it may be." * 100,
            "another form": whole.replace(b"WAVE", b"AVI "), "a fmt of 4": Header().file(data).replace(
                b"fmt \x10\0\0\0", b"fmt \x04\0\0\0"), "strange bits": Header(bits=13).file(data)[:44],
            "zeros": bytes(5000), "float of 24": Header(kind=FLOAT, bits=24).file(data)[:44],
        }
        for note, file in empties.items():
            self.assertNoSound(file, note)

    def test_folders_and_what_is_absent_are_named(self):
        os.mkdir(self.path("folder.wav"))
        for name in ("folder.wav", "absent.wav", "absent.mp3", "absent.mid"):
            self.fail_naming(name, "info", name)

    def test_a_header_may_claim_what_it_likes_without_taking_memory(self):
        plain = self.succeed("info", self.save("p.wav", wave(self.values))).memory
        for note, head in {
                "RF64 of exabytes": Header(container=b"RF64", data_length=1 << 60),
                "65535 channels": Header(channels=65535),
                "a large rate": Header(rate=UNKNOWN), "4 GiB in front": Header(before=chunk(b"junk", b"",
                                                                                            length=0xFFFFFFF0)),
                "a fmt of 4 GiB": None}.items():
            data = head.file(little(self.values)) if head else Header().file(little(self.values)).replace(
                b"fmt \x10\0\0\0", b"fmt \xf0\xff\xff\xff")
            self.save("big.wav", data)
            done = self.run_cli("info", "big.wav", patience=20)
            self.assertLittleMemory(done, plain, note)


class RateTest(StudioCase):
    """Other rates reach 44,100 with an error of -60 dB for what both rates can hold."""

    def converted(self, rate, sound):
        self.save("r.wav", wave(measure.stereo(sound, sound), rate))
        self.succeed("burn", "r.wav", "--image", "r.cue")
        return disc.Image(self.folder, "r.cue").tracks()[0]

    def test_tones_stand_where_they_stood(self):
        for rate in (8000, 11025, 16000, 22050, 24000, 32000, 37800, 48000, 88200, 96000, 176400, 192000):
            high = min(rate, 44100) / 2
            parts = [(high * share, 1, share * 9) for share in (0.011, 0.07, 0.31, 0.55, 0.83)]
            seconds = 0.4
            got = self.converted(rate, measure.rounded(measure.tones(int(rate * seconds), rate, parts)))
            frames = int(44100 * seconds)
            wanted = measure.tones(frames, 44100, parts)
            inner = slice(4000, frames - 4000)
            for side in (got[0::2], got[1::2]):
                # In 16 bits of a soft conversion, the steps of the values themselves lie at about -90 dB.
                self.assertLess(measure.error_db(wanted[inner], side[inner]), -60, rate)
                self.assertFalse(any(side[frames + 2:]), rate)
                self.assertTrue(any(side[:100]), rate)
                self.assertTrue(any(side[frames - 100:frames]), rate)

    def test_what_only_the_higher_rate_holds_does_not_fold_down(self):
        for rate, frequency in ((96000, 30000), (96000, 41000), (192000, 26000), (192000, 80000), (48000, 23700)):
            sound = measure.rounded(measure.tones(rate // 2, rate, [(frequency, 1, 0)]))
            got = self.converted(rate, sound)
            self.assertLess(measure.level_db(got[4000:36000]), -60, (rate, frequency))


class FormTest(StudioCase):
    def test_a_file_of_its_contents_is_not_held_to_its_name_by_a_crash(self):
        """A sound file is one by its name; one whose contents are of the other kind is read or refused in words."""
        self.save("tone.wav", wave(measure.rounded(measure.tones(20000, 44100, [(440, 1, 0)])), 44100, 1))
        data = mp3s.lame(self.path("tone.wav"), self.path("tone.mp3"))
        for name, contents in (("really.wav", data), ("really.mp3", self.read("tone.wav")), ("m.wav", scale()),
                               ("w.mid", data)):
            self.save(name, contents)
            done = self.run_cli("info", name)
            self.assertIn(done.returncode, (0, 1))
            if done.returncode:
                self.assertIn(name, done.stderr)
