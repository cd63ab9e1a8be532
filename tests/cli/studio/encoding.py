# SPDX-License-Identifier: GPL-2.0-or-later
"""`encode`: the stream that is written, what it decodes to, and what stays when it fails."""

import array
import contextlib
import os
import random
import signal
import subprocess
import time

from studio import case, measure, mp3s
from studio.case import StudioCase
from studio.waves import CODINGS, Header, chunk, little, values_of, wave

QUALITIES = ("Low", "Normal", "High", "Voice", "Phone", "Radio", "Tape", "Hifi", "CD", "Studio")
FORMATS = ((22050, mp3s.JOINT_STEREO), (22050, mp3s.MONO), (22050, mp3s.JOINT_STEREO), (44100, mp3s.MONO),
           (44100, mp3s.JOINT_STEREO))
KEPT_RATES = (16000, 22050, 24000, 32000, 44100, 48000)
NO_ROOM = 200  # bytes of a frame: with fewer there may be no info frame


class EncodeCase(StudioCase):
    LEFT, RIGHT = [(400, 1, 0), (1100, 1, 1)], [(700, 1, 2), (1500, 1, 3)]

    def sound(self, frames, rate=44100, channels=2, name="in.wav"):
        left = measure.rounded(measure.tones(frames, rate, self.LEFT, 0.5))
        if channels == 1:
            self.save(name, wave(left, rate, 1))
            return left
        right = measure.rounded(measure.tones(frames, rate, self.RIGHT, 0.5))
        both = measure.stereo(left, right)
        self.save(name, wave(both, rate))
        return both

    def stream(self, name):
        """The stream of a file, each of whose promises is kept."""
        data = self.read(name)
        stream = mp3s.Stream(data)
        self.assertGreater(len(stream.frames), 0, name)
        if stream.begin:
            self.assertEqual(data[:3], b"ID3")
        self.assertIn(len(stream.rest), (0, 128), stream.rest[:40])
        if stream.rest:
            self.assertEqual(stream.rest[:3], b"TAG")
        first = stream.frames[0]
        for frame in stream.frames:
            self.assertEqual((frame.rate, frame.bitrate, frame.mode, frame.version),
                             (first.rate, first.bitrate, first.mode, first.version))
            self.assertEqual((frame.copyright, frame.original, frame.emphasis), (0, 1, 0))
        if info := stream.info:
            self.assertEqual(info.name, b"Info")
            self.assertEqual(info.flags & 3, 3)
            self.assertEqual(info.frames, len(stream.sound))
            self.assertEqual(info.bytes, stream.end - stream.begin)
            self.assertEqual(info.length, stream.end - stream.begin)
            self.assertEqual(info.music_crc, mp3s.crc16(data[stream.sound[0].at:stream.end]))
            self.assertEqual(info.crc, info.true_crc)
        else:
            self.assertLess(first.size, NO_ROOM, "there would be room for an info frame")
        return stream

    def decoded(self, name):
        return values_of(mp3s.decoded(self.path(name)))

    def assertExact(self, name, frames):
        """Delay and padding leave exactly so many frames, told by the stream and by a decoder that heeds it."""
        stream = self.stream(name)
        if stream.info:
            count = len(stream.sound) * stream.frames[0].samples - stream.info.delay - stream.info.padding
            self.assertEqual(count, frames)
            channels = 1 if stream.frames[0].mode == mp3s.MONO else 2
            self.assertEqual(len(self.decoded(name)) // channels, frames)
        return stream


class StreamTest(EncodeCase):
    def test_the_default_is_224_in_joint_stereo_of_the_file_s_own_rate(self):
        self.sound(44100)
        done = self.succeed("encode", "in.wav")
        self.assertEqual(done.stderr, "")
        self.assertEqual(self.names(), ["in.mp3", "in.wav"])
        first = self.assertExact("in.mp3", 44100).frames[0]
        self.assertEqual((first.rate, first.bitrate, first.mode), (44100, 224, mp3s.JOINT_STEREO))

    def test_every_bitrate_at_every_rate_in_mono_and_stereo(self):
        for rate in KEPT_RATES:
            for channels in (1, 2):
                frames = 9001
                self.sound(frames, rate, channels)
                for bitrate in mp3s.BITRATES[channels % 2::2] if rate in (16000, 24000, 32000, 48000) else mp3s.BITRATES:
                    done = self.succeed("encode", "in.wav", "o.mp3", "--bitrate", bitrate)
                    lowered = rate < 32000 and bitrate > 160
                    self.assertEqual(len(done.stderr.splitlines()), int(lowered), (rate, bitrate, done.stderr))
                    if lowered:
                        self.assertIn("160", done.stderr)
                    first = self.assertExact("o.mp3", frames).frames[0]
                    self.assertEqual((first.rate, first.bitrate, first.mode),
                                     (rate, 160 if lowered else bitrate, mp3s.MONO if channels == 1 else mp3s.JOINT_STEREO))

    def test_other_rates_become_44100_at_their_length(self):
        for rate in (8000, 11025, 12000, 37800, 88200, 96000, 192000):
            frames = rate // 2 + 17
            self.sound(frames, rate)
            for bitrate in (32, 224):
                self.succeed("encode", "in.wav", "--bitrate", bitrate)
                stream = self.stream("in.mp3")
                self.assertEqual((stream.frames[0].rate, stream.frames[0].bitrate), (44100, bitrate))
                if stream.info:
                    self.assertNear(len(self.decoded("in.mp3")) // 2, frames * 44100 / rate, 1.01)

    def test_what_is_decoded_begins_at_the_first_frame_of_the_file(self):
        for rate in (22050, 32000, 44100, 48000):
            for channels in (1, 2):
                values = self.sound(20000, rate, channels)
                self.succeed("encode", "in.wav", "--bitrate", 160 if rate < 32000 else 320)
                got = self.decoded("in.mp3")
                for side in range(channels):
                    wanted, heard = values[side::channels], got[side::channels]
                    self.assertEqual(measure.best_shift(wanted, heard, 30), 0, (rate, channels))
                    self.assertLess(measure.error_db(wanted[2000:-2000], heard[2000:-2000]), -25, (rate, channels))
                self.assertGreater(max(got[:200 * channels]), 1000, "the beginning is there")

    def test_short_files_are_exact_too(self):
        for frames in (1, 2, 575, 576, 577, 1104, 1105, 1151, 1152, 1153, 2000, 2303, 2304, 2305):
            self.sound(frames)
            self.succeed("encode", "in.wav")
            self.assertExact("in.mp3", frames)

    def test_every_coding_of_a_wave_file_is_encoded_as_its_sound(self):
        source = measure.tones(12000, 44100, self.LEFT, 0.5)
        for coding in CODINGS:
            if coding.name in ("alaw", "mulaw"):
                worth = [(coding.worth(code), code) for code in range(256)]
                table = {v: min(worth, key=lambda pair: abs(pair[0] - v))[1] for v in {round(x / 64) * 64 for x in source}}
                raw = [table[round(v / 64) * 64] for v in source]
            elif coding.bits == 8:
                raw = [round(v / 256) + 128 for v in source]
            elif coding.name.startswith("f"):
                raw = [v / 32768 for v in source]
            else:
                raw = [round(v * 2 ** (coding.bits - 16)) for v in source]
            for container in (b"RIFF", b"RIFX"):
                head = Header(coding=coding, channels=1, container=container, before=b"")
                self.save("c.wav", head.file(b"".join(coding.pack(v, head.order) for v in raw)))
                self.succeed("encode", "c.wav")
                got = self.decoded("c.mp3")
                self.assertEqual(len(got), 12000)
                self.assertLess(measure.error_db(source[2000:-2000], got[2000:-2000]), -20, coding.name)

    def test_header_bytes_and_chunks_are_never_sound(self):
        noise = random.Random(5).randbytes(60000)
        self.save("h.wav", Header(before=chunk(b"bext", noise), between=chunk(b"LIST", b"INFO" + noise), behind=chunk(
            b"junk", noise)).file(little([0] * 40000)))
        self.succeed("encode", "h.wav")
        self.assertExact("h.mp3", 20000)
        self.assertLessEqual(max(map(abs, self.decoded("h.mp3"))), 1)

    def test_the_sound_of_a_killed_recorder_s_file_is_encoded_whole(self):
        values = self.sound(20000)
        self.save("k.wav", Header(data_length=0, riff_length=36).file(little(values)))
        self.succeed("encode", "k.wav")
        self.assertExact("k.mp3", 20000)

    def test_more_than_two_channels_become_joint_stereo(self):
        left = measure.rounded(measure.tones(9000, 44100, self.LEFT, 0.3))
        frames = array.array("h", [v for value in left for v in (value, value, 0, 0, 0, 0)])
        self.save("six.wav", Header(channels=6).file(little(frames)))
        self.succeed("encode", "six.wav")
        first = self.assertExact("six.mp3", 9000).frames[0]
        self.assertEqual(first.mode, mp3s.JOINT_STEREO)


class ChoiceTest(EncodeCase):
    def test_a_row_of_the_format_table_gives_rate_and_mode_and_never_falsifies_the_sound(self):
        for rate, channels in ((44100, 2), (44100, 1), (22050, 2), (48000, 1), (48000, 2), (8000, 2)):
            frames = rate // 2
            self.sound(frames, rate, channels)
            for row, (wanted, mode) in enumerate(FORMATS):
                self.succeed("encode", "in.wav", "--format", row, "--bitrate", 160)
                stream = self.stream("in.mp3")
                self.assertEqual((stream.frames[0].rate, stream.frames[0].mode, stream.frames[0].bitrate),
                                 (wanted, mode, 160))
                got = self.decoded("in.mp3")
                sides = 1 if mode == mp3s.MONO else 2
                self.assertNear(len(got) // sides, frames * wanted / rate, 0 if wanted == rate else 1.01,
                                (rate, channels, row))
                left, right = (measure.tones(len(got) // sides, wanted, part, 0.5) for part in (self.LEFT, self.RIGHT))
                if channels == 1:
                    right = left
                wants = [left, right] if sides == 2 else [[(a + b) / 2 for a, b in zip(left, right)]]
                for side, want in enumerate(wants):
                    heard = got[side::sides]
                    self.assertLess(measure.error_db(want[2000:-2000], heard[2000:-2000]), -20, (rate, channels, row, side))

    def test_every_quality_is_known_by_its_text_in_any_case_and_by_its_index(self):
        self.sound(9000)
        for index, text in enumerate(QUALITIES):
            written = []
            for word in (text, text.lower(), text.upper(), str(index)):
                self.succeed("encode", "in.wav", "o.mp3", "--quality", word, "--bitrate", 128)
                self.assertEqual(self.assertExact("o.mp3", 9000).frames[0].bitrate, 128)
                written.append(self.read("o.mp3"))
            self.assertEqual(len(set(written)), 1, text)
            if text == "Studio":
                self.succeed("encode", "in.wav", "o.mp3", "--bitrate", 128)
                self.assertEqual(self.read("o.mp3"), written[0], "Studio is the default")

    def test_title_and_artist_hold_any_text(self):
        values = self.sound(9000)
        for title, artist in (("Lied", "Ich"), ("Für Elise – №1", "Ἀθηνᾶ"), ("音楽", "🎹 Klavier"),
                              ('"quoted"', "a" * 3000), ("x", None), (None, "y")):
            words = (["--title", title] if title else []) + (["--artist", artist] if artist else [])
            self.succeed("encode", "in.wav", *words)
            self.assertExact("in.mp3", 9000)
            texts = mp3s.texts_of(self.read("in.mp3"))
            self.assertEqual((texts.get("TIT2"), texts.get("TPE1")), (title, artist))
        self.assertEqual(len(values), 18000)
        self.succeed("encode", "in.wav")
        self.assertEqual(mp3s.texts_of(self.read("in.mp3")), {})

    def test_wrong_words_are_wrong_usage_and_write_nothing(self):
        self.sound(100)
        for words in (["--bitrate", "100"], ["--bitrate", "0"], ["--bitrate", "224k"], ["--bitrate", "-1"], ["--bitrate"],
                      ["--quality", "Best"], ["--quality", "10"], ["--quality", "-1"], ["--quality", ""], ["--format", "5"],
                      ["--format", "-1"], ["--format", "44.100"], ["--loud"], ["o.mp3", "p.mp3"]):
            self.misuse("encode", "in.wav", *words)
        self.misuse("encode")

    def test_a_name_without_a_target_gets_the_extension(self):
        for name, out in (("A.WAV", "A.mp3"), ("b.c.wav", "b.c.mp3"), ("with blank.wav", "with blank.mp3"),
                          ("ü.Wav", "ü.mp3")):
            self.sound(2000, name=name)
            self.succeed("encode", name)
            self.assertIn(out, self.names())
        os.mkdir(self.path("d.dir"))
        self.sound(2000, name="d.dir/x.wav")
        self.succeed("encode", "d.dir/x.wav")
        self.assertEqual(sorted(os.listdir(self.path("d.dir"))), ["x.mp3", "x.wav"])


class FailureTest(EncodeCase):
    def test_a_source_of_another_name_and_an_absent_one_are_told(self):
        self.sound(2000)
        os.rename(self.path("in.wav"), self.path("in.wave"))
        self.save("old.mp3", b"old")
        for name in ("in.wave", "absent.aiff", "wav"):
            done = self.fail_naming("The Source file is not a Wave file.", "encode", name, "old.mp3")
            self.assertNotIn("does not exist", done.stderr)
        self.fail_naming("The Source file is not a Wave file, or does not exist.", "encode", "absent.wav", "old.mp3")
        self.assertEqual((self.names(), self.read("old.mp3")), (["in.wave", "old.mp3"], b"old"))

    def test_what_cannot_be_read_leaves_the_old_file(self):
        self.save("old.mp3", b"old")
        for note, data in {"nothing": b"", "text": b"no sound " * 99,
                           "no fmt": wave([1, 2]).replace(b"fmt ", b"fmx ")}.items():
            self.save("bad.wav", data)
            self.fail_naming("bad.wav", "encode", "bad.wav", "old.mp3", "--delete-wav")
            self.assertEqual((self.names(), self.read("old.mp3")), (["bad.wav", "old.mp3"], b"old"), note)

    def test_the_old_file_is_replaced_by_a_whole_one(self):
        self.sound(5000)
        self.save("in.mp3", b"old")
        self.succeed("encode", "in.wav")
        self.assertExact("in.mp3", 5000)
        self.assertEqual(self.names(), ["in.mp3", "in.wav"])

    def test_the_wave_is_deleted_after_success_and_in_no_other_case(self):
        self.sound(5000)
        self.succeed("encode", "in.wav", "out.mp3", "--delete-wav")
        self.assertEqual(self.names(), ["out.mp3"])
        self.assertExact("out.mp3", 5000)
        os.remove(self.path("out.mp3"))
        self.sound(5000)
        self.save("file", b"")
        os.mkdir(self.path("folder.mp3"))
        for out in ("absent/out.mp3", "file/out.mp3", "folder.mp3", "/proc/out.mp3", "/dev/full/out.mp3"):
            self.fail_naming(os.path.basename(out), "encode", "in.wav", out, "--delete-wav")
            self.assertEqual(self.names(), ["file", "folder.mp3", "in.wav"], out)
        self.assertEqual(os.listdir(self.path("folder.mp3")), [])

    def test_a_source_that_is_its_own_target_is_never_lost(self):
        self.sound(5000)
        data = self.read("in.wav")
        os.symlink("in.wav", self.path("link.mp3"))
        for out in ("in.wav", "./in.wav", os.path.join(self.folder, "in.wav")):
            for more in ([], ["--delete-wav"]):
                done = self.run_cli("encode", "in.wav", out, *more)
                self.assertNotEqual(done.returncode, 0, out)
                self.assertEqual(self.read("in.wav"), data)
        self.run_cli("encode", "in.wav", "link.mp3", "--delete-wav")
        # Through the link the sound itself may have been replaced, or the link: one of the two still holds a whole file.
        left = [self.read(name) for name in self.names() if os.path.exists(self.path(name))]
        self.assertTrue(any(one == data or len(mp3s.Stream(one).frames) > 3 for one in left))

    def test_a_full_disk_is_told_and_leaves_what_was_there(self):
        self.sound(200000)
        self.save("in.mp3", b"old")
        for limit in (1000, 50000, 110000):
            for more in ([], ["--delete-wav"]):
                self.fail_naming("in.mp3", "encode", "in.wav", *more, file_size=limit)
                self.assertEqual((self.names(), self.read("in.mp3")), (["in.mp3", "in.wav"], b"old"), limit)

    def test_a_signal_leaves_the_old_file_and_nothing_else_at_once(self):
        block = little(measure.rounded(measure.tones(44100, 44100, self.LEFT, 0.5)))
        self.save("in.wav", Header(channels=1).file(block * 600))
        self.save("in.mp3", b"old")
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            for more in ([], ["--delete-wav"]):
                running = self.start("encode", "in.wav", *more)
                time.sleep(0.3)
                sent = time.monotonic()
                running.send(number)
                done = running.wait(20)
                self.assertLess(time.monotonic() - sent, 2)
                self.assertNotEqual(done.returncode, 0, number)
                self.assertEqual((self.names(), self.read("in.mp3")), (["in.mp3", "in.wav"], b"old"), number)

    def test_what_is_written_meanwhile_is_out_of_the_way_if_it_is_killed(self):
        block = little(measure.rounded(measure.tones(44100, 44100, self.LEFT, 0.5)))
        self.save("in.wav", Header(channels=1).file(block * 300))
        self.save("in.mp3", b"old")
        running = self.start("encode", "in.wav", "--delete-wav")
        time.sleep(0.3)
        running.send(signal.SIGKILL)
        self.assertEqual(running.process.wait(), -signal.SIGKILL)
        self.assertEqual(self.read("in.mp3"), b"old")
        self.assertIn("in.wav", self.names())

    def test_on_a_terminal_alone_what_lasts_is_shown_by_a_bar(self):
        block = little(measure.rounded(measure.tones(44100, 44100, self.LEFT, 0.5)))
        self.save("in.wav", Header(channels=1).file(block * 400))
        self.assertEqual(self.succeed("encode", "in.wav").stderr, "")
        screen, terminal = os.openpty()
        process = subprocess.Popen([case.cli, "encode", "in.wav"], cwd=self.folder, env=self.environment, stderr=terminal)
        os.close(terminal)
        shown = b""
        with contextlib.suppress(OSError):  # which a terminal whose last program has ended gives
            while data := os.read(screen, 4096):
                shown += data
        os.close(screen)
        self.assertEqual(process.wait(60), 0)
        self.assertGreater(shown.count(b"\r"), 1, shown[:200])

    def test_two_encodings_at_once_do_not_meet(self):
        self.sound(150000)
        alone = self.succeed("encode", "in.wav", "alone.mp3")
        self.assertEqual(alone.stderr, "")
        both = [self.start("encode", "in.wav", name) for name in ("a.mp3", "b.mp3", "same.mp3", "same.mp3")]
        for running in both:
            running.wait()
        for name in ("a.mp3", "b.mp3", "same.mp3"):
            self.assertEqual(self.read(name), self.read("alone.mp3"), name)
        self.assertEqual(self.names(), ["a.mp3", "alone.mp3", "b.mp3", "in.wav", "same.mp3"])
