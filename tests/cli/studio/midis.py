# SPDX-License-Identifier: GPL-2.0-or-later
"""Standard MIDI files, byte for byte."""

import struct


def number(value):
    """Of variable length."""
    out = [value & 127]
    while value := value >> 7:
        out.insert(0, value & 127 | 128)
    return bytes(out)


def track(*events, end=0):
    """Of (ticks since the one before, bytes of the message)."""
    body = b"".join(number(ticks) + message for ticks, message in events) + number(end) + b"\xff\x2f\0"
    return b"MTrk" + struct.pack(">I", len(body)) + body


def midi(*tracks, division=480, form=None):
    form = (1 if len(tracks) > 1 else 0) if form is None else form
    return b"MThd" + struct.pack(">IHHH", 6, form, len(tracks), division & 0xFFFF) + b"".join(tracks)


def tempo(microseconds):
    return b"\xff\x51\3" + microseconds.to_bytes(3, "big")


def note(key, ticks, velocity=100, channel=0):
    """A note and its end `ticks` later: two events."""
    return (0, bytes([0x90 | channel, key, velocity])), (ticks, bytes([0x80 | channel, key, 0]))


def scale(keys=(60, 62, 64, 65), ticks=240, division=480):
    """A tune at 120 quarters a minute."""
    return midi(track(*(event for key in keys for event in note(key, ticks))), division=division)
