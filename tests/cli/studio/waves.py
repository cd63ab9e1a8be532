# SPDX-License-Identifier: GPL-2.0-or-later
"""Wave files of every kind, byte for byte, and what their samples are worth."""

import array
import math
import struct
import sys
from typing import NamedTuple

PCM, FLOAT, ALAW, MULAW, EXTENSIBLE = 1, 3, 6, 7, 0xFFFE
GUID_TAIL = bytes.fromhex("800000aa00389b71")  # behind the format and two fixed numbers
UNKNOWN = 0xFFFFFFFF


def _alaw(code):
    code ^= 0x55
    step, segment = (code & 0xF) << 4, (code & 0x70) >> 4
    value = step + 8 if segment == 0 else (step + 0x108) << (segment - 1)
    return value if code & 0x80 else -value


def _mulaw(code):
    code = ~code & 0xFF
    value = ((((code & 0xF) << 3) + 0x84) << ((code & 0x70) >> 4)) - 0x84
    return -value if code & 0x80 else value


class Coding(NamedTuple):
    name: str
    kind: int
    bits: int

    def pack(self, value, order):
        """A raw sample: an integer of the coding's width, or a float."""
        if self.kind == FLOAT:
            return struct.pack(order + ("f" if self.bits == 32 else "d"), value)
        if self.bits == 8:
            return bytes([value])
        if self.bits == 24:
            data = struct.pack(order + "i", value)
            return data[:3] if order == "<" else data[1:]
        return struct.pack(order + ("h" if self.bits == 16 else "i"), value)

    def worth(self, value):
        """On the scale of 16 bits, exact."""
        if self.kind == FLOAT:
            return (struct.unpack("<f", struct.pack("<f", value))[0] if self.bits == 32 else value) * 32768
        if self.kind == ALAW:
            return _alaw(value)
        if self.kind == MULAW:
            return _mulaw(value)
        return (value - 128) * 256 if self.bits == 8 else value / 2 ** (self.bits - 16)

    def draw(self, rng):
        """A raw sample, often one at an edge."""
        if self.kind == FLOAT:
            edges = (0.0, 1.0, -1.0, 1.5, -7.0, 32767 / 32768, 0.5 / 32768, -0.5 / 32768, 1e-30)
            return rng.choice(edges) if rng.random() < 0.1 else rng.uniform(-1, 1)
        if self.bits == 8:
            return rng.randrange(256)
        top = 1 << (self.bits - 1)
        near = rng.choice([-top, top - 1, 0, -1, 1, top - (top >> 15), 1 << max(0, self.bits - 17)])
        return near if rng.random() < 0.1 else rng.randrange(-top, top)


CODINGS = (Coding("u8", PCM, 8), Coding("s16", PCM, 16), Coding("s24", PCM, 24), Coding("s32", PCM, 32),
           Coding("f32", FLOAT, 32), Coding("f64", FLOAT, 64), Coding("alaw", ALAW, 8), Coding("mulaw", MULAW, 8))
S16 = CODINGS[1]


def nearest(worth):
    """The 16-bit values that are nearest: two where it lies right between them."""
    return tuple(max(-32768, min(32767, math.floor(end))) for end in (math.ceil(worth - 0.5), math.floor(worth + 0.5)))


def chunk(name, data, order="<", length=None):
    padded = data + b"\0" * (len(data) % 2)
    return name + struct.pack(order + "I", len(data) if length is None else length) + padded


class Header(NamedTuple):
    """What a wave file says of its samples; None is what is true."""

    coding: Coding = S16
    rate: int = 44100
    channels: int = 2
    container: bytes = b"RIFF"
    extensible: bool = False
    alignment: int = None
    byte_rate: int = None
    bits: int = None
    kind: int = None
    data_length: int = None
    riff_length: int = None
    extra: bytes = None  # behind the 16 bytes of a plain `fmt `
    before: bytes = b""  # chunks in front of `fmt `
    between: bytes = b""
    behind: bytes = b""
    fmt_behind: bool = False

    @property
    def order(self):
        return ">" if self.container == b"RIFX" else "<"

    def fmt(self):
        order, coding = self.order, self.coding
        bits = coding.bits if self.bits is None else self.bits
        alignment = coding.bits // 8 * self.channels if self.alignment is None else self.alignment
        byte_rate = coding.bits // 8 * self.channels * self.rate if self.byte_rate is None else self.byte_rate
        kind = coding.kind if self.kind is None else self.kind
        fields = struct.pack(order + "HIIHH", self.channels, self.rate, byte_rate & UNKNOWN, alignment & 0xFFFF, bits)
        if self.extensible:
            mask = {1: 4, 2: 3}.get(self.channels, (1 << self.channels) - 1)
            more = struct.pack(order + "HHI", 22, bits, mask) + struct.pack(order + "IHH", kind, 0, 16) + GUID_TAIL
            return chunk(b"fmt ", struct.pack(order + "H", EXTENSIBLE) + fields + more, order)
        return chunk(b"fmt ", struct.pack(order + "H", kind) + fields + (self.extra or b""), order)

    def file(self, samples):
        """The file of these bytes of samples."""
        order, large = self.order, self.container == b"RF64"
        length = len(samples) if self.data_length is None else self.data_length
        data = chunk(b"data", samples, order, UNKNOWN if large else length)
        body = self.before + self.between + data + self.fmt() + self.behind if self.fmt_behind else \
            self.before + self.fmt() + self.between + data + self.behind
        riff = len(body) + 4 + (36 if large else 0) if self.riff_length is None else self.riff_length
        if not large:
            return self.container + struct.pack(order + "I", riff) + b"WAVE" + body
        sizes = chunk(b"ds64", struct.pack("<QQQI", riff, length, length // max(1, self.channels * 2), 0))
        return b"RF64" + struct.pack("<I", UNKNOWN) + b"WAVE" + sizes + body


def little(values):
    """16-bit values as bytes."""
    values = array.array("h", values)
    if sys.byteorder == "big":
        values.byteswap()
    return values.tobytes()


def values_of(data):
    values = array.array("h", data[: len(data) // 2 * 2])
    if sys.byteorder == "big":
        values.byteswap()
    return values


def wave(values, rate=44100, channels=2, **more):
    """The plain file of 16-bit values, interleaved."""
    return Header(rate=rate, channels=channels, **more).file(little(values))


def text_chunk(**texts):
    """The titles that a wave file tells: INAM="...", IART="..."."""
    rows = b"".join(chunk(name.encode(), text.encode() + b"\0") for name, text in texts.items())
    return chunk(b"LIST", b"INFO" + rows)


class Plain(NamedTuple):
    """A take: a header of 44 bytes and samples."""

    rate: int
    channels: int
    bits: int
    data: bytes

    @property
    def frames(self):
        return len(self.data) // (self.channels * self.bits // 8)

    @property
    def values(self):
        """On the scale of 16 bits."""
        return values_of(self.data) if self.bits == 16 else array.array("h", [(v - 128) * 256 for v in self.data])


def read_plain(data):
    """Reads what must have the layout of 44 bytes, and tells in words what hasn't."""
    if len(data) < 44:
        raise AssertionError(f"{len(data)} bytes are no wave file")
    riff, length, form, fmt, sixteen, kind, channels, rate, bytes_per_second, alignment, bits, name, size = \
        struct.unpack("<4sI4s4sIHHIIHH4sI", data[:44])
    if (riff, form, fmt, sixteen, kind, name) != (b"RIFF", b"WAVE", b"fmt ", 16, 1, b"data"):
        raise AssertionError(f"not the layout of 44 bytes: {data[:44]!r}")
    if (alignment, bytes_per_second) != (channels * bits // 8, rate * (channels * bits // 8)):
        raise AssertionError(f"alignment {alignment}, bytes per second {bytes_per_second}")
    if length != size + 36 + size % 2 and length != size + 36:
        raise AssertionError(f"a RIFF length of {length} about data of {size}")
    return Plain(rate, channels, bits, data[44:44 + size]), size
