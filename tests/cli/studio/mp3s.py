# SPDX-License-Identifier: GPL-2.0-or-later
"""Streams of MPEG layer III taken apart, tagged and damaged."""

import struct
import subprocess
from typing import NamedTuple

RATES = {3: (44100, 48000, 32000), 2: (22050, 24000, 16000), 0: (11025, 12000, 8000)}
ONE = (0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320)
TWO = (0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160)
BITRATES = ONE[1:]
JOINT_STEREO, MONO = 1, 3


class Frame(NamedTuple):
    at: int
    size: int
    version: int
    rate: int
    bitrate: int
    mode: int
    copyright: int
    original: int
    emphasis: int

    @property
    def samples(self):
        return 1152 if self.version == 3 else 576

    @property
    def info_at(self):
        """Where an info tag stands in the frame."""
        return 4 + ((17 if self.mode == MONO else 32) if self.version == 3 else (9 if self.mode == MONO else 17))


def frame_at(data, at):
    if at + 4 > len(data):
        return None
    word, = struct.unpack(">I", data[at:at + 4])
    version, layer, rate, rating = word >> 19 & 3, word >> 17 & 3, word >> 10 & 3, word >> 12 & 15
    if word >> 21 != 0x7FF or version == 1 or layer != 1 or rate == 3 or rating in (0, 15):
        return None
    bitrate = (ONE if version == 3 else TWO)[rating]
    rate = RATES[version][rate]
    size = (144000 if version == 3 else 72000) * bitrate // rate + (word >> 9 & 1)
    return Frame(at, size, version, rate, bitrate, word >> 6 & 3, word >> 3 & 1, word >> 2 & 1, word & 3)


def tag_length(data):
    """Of an ID3v2 tag in front, 0 if there is none."""
    if data[:3] != b"ID3":
        return 0
    a, b, c, d = data[6:10]
    return 10 + (a << 21 | b << 14 | c << 7 | d) + (10 if data[5] & 0x10 else 0)


class Stream:
    """A clean stream: perhaps a tag in front, then frame after frame, perhaps a tag of 128 bytes behind."""

    def __init__(self, data):
        self.data, at, self.frames = data, tag_length(data), []
        self.begin = at
        while (frame := frame_at(data, at)) is not None and at + frame.size <= len(data):
            self.frames.append(frame)
            at += frame.size
        self.end = at
        self.rest = data[at:]
        self.info = Info(data, self.frames[0]) if self.frames and Info.stands_in(data, self.frames[0]) else None

    @property
    def sound(self):
        return self.frames[1:] if self.info else self.frames


def crc16(data, crc=0):
    for byte in data:
        crc = crc >> 8 ^ _CRC[(crc ^ byte) & 0xFF]
    return crc


def _crc_row(n):
    for _ in range(8):
        n = n >> 1 ^ (0xA001 if n & 1 else 0)
    return n


_CRC = [_crc_row(n) for n in range(256)]


class Info:
    """What an info frame says."""

    @staticmethod
    def stands_in(data, frame):
        return data[frame.at + frame.info_at:][:4] in (b"Info", b"Xing")

    def __init__(self, data, frame):
        at = frame.at + frame.info_at
        self.name = data[at:at + 4]
        self.flags, = struct.unpack(">I", data[at + 4:at + 8])
        at += 8
        self.frames = self.bytes = None
        if self.flags & 1:
            self.frames, at = struct.unpack(">I", data[at:at + 4])[0], at + 4
        if self.flags & 2:
            self.bytes, at = struct.unpack(">I", data[at:at + 4])[0], at + 4
        at += (100 if self.flags & 4 else 0) + (4 if self.flags & 8 else 0)
        both = int.from_bytes(data[at + 21:at + 24], "big")
        self.delay, self.padding = both >> 12, both & 0xFFF
        self.length, self.music_crc, self.crc = struct.unpack(">IHH", data[at + 28:at + 36])
        self.true_crc = crc16(data[frame.at:at + 34])


def decoded(path):
    """The 16-bit samples that another decoder yields, heeding delay and padding."""
    return subprocess.run(["mpg123", "-q", "-s", "-e", "s16", path], capture_output=True, timeout=60, check=True).stdout


def lame(source, target, *options):
    subprocess.run(["lame", "--quiet", *options, source, target], check=True, timeout=60)
    with open(target, "rb") as file:
        return file.read()


# Tags and junk

def _safe(length):
    return bytes([length >> 21 & 127, length >> 14 & 127, length >> 7 & 127, length & 127])


def id3v2(*frames, padding=0):
    body = b"".join(frames) + b"\0" * padding
    return b"ID3\3\0\0" + _safe(len(body)) + body


def id3v2_text(name, text):
    body = b"\1" + text.encode("utf-16")
    return name + struct.pack(">I", len(body)) + b"\0\0" + body


def id3v2_picture(picture):
    body = b"\0image/jpeg\0\3\0" + picture
    return b"APIC" + struct.pack(">I", len(body)) + b"\0\0" + body


def id3v1(title, artist):
    return b"TAG" + title.ljust(30, b"\0") + artist.ljust(30, b"\0") + b"\0" * 30 + b"2001" + b"\0" * 30 + b"\1"


def texts_of(data):
    """The text frames of an ID3v2 tag in front: {name: text}."""
    end, at, found = tag_length(data), 10, {}
    if not end:
        return found
    major = data[3]
    while at + 10 <= end and data[at:at + 4].strip(b"\0"):
        name = data[at:at + 4].decode("latin1")
        raw = data[at + 4:at + 8]
        size = struct.unpack(">I", raw)[0] if major == 3 else raw[0] << 21 | raw[1] << 14 | raw[2] << 7 | raw[3]
        body = data[at + 10:at + 10 + size]
        if name.startswith("T") and body:
            coding = ("latin1", "utf-16", "utf-16-be", "utf-8")[body[0]]
            found[name] = body[1:].decode(coding).rstrip("\0")
        at += 10 + size
    return found
