# SPDX-License-Identifier: GPL-2.0-or-later
"""What is read of MP3 files: exact frames behind tags and junk, and as much as can be of damaged ones."""

import math
import os
import random

from studio import disc, measure, mp3s
from studio.case import StudioCase
from studio.waves import values_of, wave


class Mp3Case(StudioCase):
    def source(self, frames, rate=44100, channels=2, name="in.wav", amplitude=0.7):
        """A tune of two tones a side."""
        left = measure.rounded(measure.tones(frames, rate, [(440, 2, 0), (1234, 1, 1)], amplitude))
        right = measure.rounded(measure.tones(frames, rate, [(660, 2, 0), (987, 1, 2)], amplitude))
        self.save(name, wave(measure.stereo(left, right) if channels == 2 else left, rate, channels))
        return self.path(name)

    def lame(self, *options, name="in.mp3", **what):
        return mp3s.lame(self.source(**what), self.path(name), *options)

    def peak_of(self, name):
        values = values_of(mp3s.decoded(self.path(name)))
        return max(max(values), -min(values)) / 32768


class ExactTest(Mp3Case):
    def test_an_mp3_file_is_told_a_line_a_fact_in_their_order(self):
        self.lame("-b", "192", frames=50000)
        lines = self.succeed("info", "in.mp3").stdout.splitlines()
        self.assertEqual(lines[:7], ["File: in.mp3", "Kind: MP3", "Rate: 44100", "Channels: 2", "Bitrate: 192",
                                     "Frames: 50000",
                                     "Seconds: 1.134"])
        self.assertTrue(lines[7].startswith("Peak: "), lines)

    def test_delay_and_padding_are_heeded_to_the_frame(self):
        for frames in (1, 575, 576, 577, 1151, 1152, 1153, 10000, 44100, 44101):
            self.lame("-b", "128", frames=frames)
            self.assertEqual(self.frames("in.mp3"), frames)

    def test_every_rate_mode_and_bitrate_is_told(self):
        for rate in (8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000):
            for channels, options in ((1, []), (2, ["-m", "j"]), (2, ["-m", "s"]), (2, ["-m", "d"])):
                bitrate = 32 if rate <= 12000 else 64 if rate <= 24000 else 128
                self.lame("-b", str(bitrate), "--resample", str(rate / 1000), *options, frames=9000, rate=rate,
                          channels=channels)
                facts = self.facts("in.mp3")
                self.assertEqual([facts[f] for f in ("Rate", "Channels", "Bitrate", "Frames")],
                                 [str(rate), str(channels), str(bitrate), "9000"], options)
                self.assertNear(float(facts["Seconds"]), 9000 / rate, 0.00051)

    def test_the_bitrate_of_a_varying_stream_is_the_mean_of_its_sound(self):
        for options in (["-V", "2"], ["-V", "9"], ["--abr", "150"], ["-V", "0", "-t"]):
            data = self.lame(*options, frames=100000)
            rates = [frame.bitrate for frame in mp3s.Stream(data).sound]
            self.assertGreater(len(set(rates)), 1, options)
            self.assertNear(int(self.facts("in.mp3")["Bitrate"]), sum(rates) / len(rates), 0.51, options)

    def test_the_peak_is_that_of_the_sound(self):
        for amplitude in (0.9, 0.2):
            self.lame("-b", "256", frames=30000, amplitude=amplitude)
            self.assertNear(float(self.facts("in.mp3")["Peak"].split()[0]), 20 * math.log10(self.peak_of("in.mp3")), 0.02)

    def test_without_an_info_frame_all_that_a_decoder_yields_counts(self):
        data = self.lame("-b", "128", "-t", frames=20000)
        self.assertIsNone(mp3s.Stream(data).info)
        self.assertEqual(self.frames("in.mp3"), len(mp3s.decoded(self.path("in.mp3"))) // 4)

    def test_the_frames_sound_as_another_decoder_yields_them(self):
        self.lame("-b", "192", frames=60000)
        self.succeed("burn", "in.mp3", "--image", "i.cue")
        ours = disc.Image(self.folder, "i.cue").tracks()[0][:120000]
        theirs = values_of(mp3s.decoded(self.path("in.mp3")))
        self.assertEqual(len(theirs), 120000)
        # One of the two may round, the other dither or cut: a step at most.
        self.assertLessEqual(max(abs(a - b) for a, b in zip(ours, theirs)), 1)

    def test_mono_sounds_alike_on_both_sides(self):
        self.lame("-b", "96", frames=30000, channels=1)
        self.succeed("burn", "in.mp3", "--image", "i.cue")
        ours = disc.Image(self.folder, "i.cue").tracks()[0]
        self.assertEqual(ours[0::2], ours[1::2])
        self.assertGreater(max(ours), 10000)


class TagTest(Mp3Case):
    FRAMES = 25000

    def setUp(self):
        super().setUp()
        self.clean = self.lame("-b", "128", frames=self.FRAMES)
        self.peak = self.facts("in.mp3")["Peak"]

    def assertReads(self, data, note):
        self.save("t.mp3", data)
        facts = self.facts("t.mp3")
        self.assertEqual((facts["Frames"], facts["Bitrate"], facts["Peak"]), (str(self.FRAMES), "128", self.peak), note)

    def test_tags_and_pictures_in_front_and_behind_do_no_harm(self):
        rng = random.Random(1)
        picture = mp3s.id3v2_picture(b"\xff\xd8" + rng.randbytes(300000) + self.clean[:20000])
        small = mp3s.id3v2(mp3s.id3v2_text(b"TIT2", "A title"))
        ape = b"APETAGEX" + (2000).to_bytes(4, "little") + (32).to_bytes(4, "little") + bytes(16)
        tags = {
            "a small tag": (small, b""), "padding": (mp3s.id3v2(padding=70000), b""),
            "a picture": (mp3s.id3v2(picture), b""),
            "three megabytes": (mp3s.id3v2(mp3s.id3v2_picture(bytes(3 << 20))), b""),
            "two tags": (small + mp3s.id3v2(picture), b""),
            "an old tag": (b"", mp3s.id3v1(b"Title", b"Artist")), "all of them": (mp3s.id3v2(picture),
                                                                                  mp3s.id3v1(b"T", b"A")),
            "an APE tag": (b"", ape[:8] + ape[8:] + b"Title\0" * 40 + ape),
            "lyrics": (b"", b"LYRICSBEGIN" + b"a" * 500 + b"LYRICS200"),
            "an odd end": (b"", b"\0" * 3000), "text behind": (b"", b"the end\n" * 50),
        }
        for note, (front, behind) in tags.items():
            self.assertReads(front + self.clean + behind, note)

    def test_junk_in_front_does_no_harm(self):
        rng = random.Random(2)
        for size in (1, 3, 100, 1000, 5000, 60000):
            for kind, junk in {"bytes": rng.randbytes(size), "nothing": bytes(size), "all ones": b"\xff" * size,
                               "half a frame": self.clean[417:417 + min(size, 300)],
                               "false heads": b"\xff\xfb\x90\x64junk" * (size // 8)}.items():
                self.assertReads(junk + self.clean, (size, kind))

    def test_a_cut_end_does_no_harm(self):
        stream = mp3s.Stream(self.clean)
        for gone in (1, 100, 417, 1000, 4000):
            self.save("t.mp3", self.clean[:-gone])
            lost = sum(frame.at + frame.size > len(self.clean) - gone for frame in stream.frames)
            self.assertNear(self.frames("t.mp3"), self.FRAMES - 1152 * lost, 1152 * 2, gone)
        self.save("t.mp3", self.clean[:len(self.clean) // 2])
        self.assertNear(self.frames("t.mp3"), self.FRAMES / 2, 1152 * 3)

    def test_damage_in_the_middle_costs_little(self):
        data = self.lame("-b", "128", frames=200000)
        whole = self.frames("in.mp3")
        rng = random.Random(3)
        for kind, damage in {"zeros": bytes(2000), "noise": rng.randbytes(2000), "ones": b"\xff" * 2000,
                             "nothing": b""}.items():
            for at in (len(data) // 3, len(data) // 2, len(data) - 9000):
                self.save("t.mp3", data[:at] + damage + data[at + 2000:])
                heard = self.frames("t.mp3")
                self.assertGreater(heard, 0.95 * whole, (kind, at))
                self.assertLess(heard, 1.05 * whole, (kind, at))
        self.save("t.mp3", data[:30000] + bytes(2000) + data[32000:])
        self.succeed("burn", "t.mp3", "--image", "t.cue")
        track = disc.Image(self.folder, "t.cue").tracks()[0]
        tenths = [measure.level_db(track[n:n + 8820]) for n in range(0, 2 * whole - 8820, 8820)]
        self.assertGreater(sum(level > -20 for level in tenths), 0.95 * len(tenths) - 1)

    def test_a_file_in_which_no_two_frames_follow_each_other_is_refused(self):
        stream = mp3s.Stream(self.clean)
        one = self.clean[stream.frames[3].at:stream.frames[4].at]
        rng = random.Random(4)
        refused = {
            "nothing": b"", "a tag alone": mp3s.id3v2(mp3s.id3v2_text(b"TIT2", "x")), "zeros": bytes(50000),
            "text": b"This is no music. " * 2000, "one frame": one, "one frame and junk": one + b"no other frame" * 400,
            "frames with gaps": b"".join(self.clean[f.at:f.at + f.size] + b"\0\1\2" * 11 for f in stream.frames[3:40]),
            "heads alone": b"\xff\xfb\x90\x64" + bytes(9000),
            "an old tag": mp3s.id3v1(b"T", b"A"), "noise": bytes(b & 0x7F for b in rng.randbytes(40000)),
        }
        for note, data in refused.items():
            self.save("t.mp3", data)
            self.fail_naming("t.mp3", "info", "t.mp3")
            done = self.run_cli("burn", "t.mp3", "--image", "t.cue")
            self.assertEqual(done.returncode, 1, note)
            self.assertIn("t.mp3 is not supported.", done.stderr, note)
            self.assertNotIn("t.cue", self.names(), note)

    def test_a_tag_may_claim_what_it_likes(self):
        plain = self.run_cli("info", "in.mp3").memory
        for note, head in {"256 MB": b"ID3\3\0\0\x7f\x7f\x7f\x7f", "no end": b"ID3\xff\xff\xff\xff\xff\xff\xff"}.items():
            self.save("t.mp3", head + self.clean)
            done = self.run_cli("info", "t.mp3", patience=20)
            self.assertIn(done.returncode, (0, 1))
            self.assertLittleMemory(done, plain, note)

    def test_an_info_frame_that_lies_is_not_believed_with_memory_or_time(self):
        info = mp3s.Stream(self.clean).info
        at = mp3s.Stream(self.clean).frames[0].at + mp3s.Stream(self.clean).frames[0].info_at
        self.assertEqual(self.clean[at:at + 4], info.name)
        for count in (b"\0\0\0\0", b"\xff\xff\xff\xff", b"\x7f\xff\xff\xff", b"\0\0\0\1"):
            data = self.clean[:at + 8] + count + self.clean[at + 12:]
            self.save("t.mp3", data)
            done = self.run_cli("info", "t.mp3", patience=20)
            if done.returncode == 0:
                self.assertLess(self.frames("t.mp3"), self.FRAMES + 3 * 1152)
        os.remove(self.path("t.mp3"))
