# SPDX-License-Identifier: GPL-2.0-or-later
"""Makes the seeds of the sound fuzzers anew, in corpus/Wav and corpus/Mp3: small files of every kind."""

import os
import struct

HERE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus")


def chunk(order, name, content, length=None):
    told = len(content) if length is None else length
    return name + struct.pack(order + "I", told) + content + b"\0" * (len(content) % 2)


def wav(kind=b"RIFF", code=1, channels=2, rate=44100, bits=16, extensible=False, front=b"", behind=b"", told=None, riff=None):
    order = ">" if kind == b"RIFX" else "<"
    align = channels * bits // 8
    fmt = struct.pack(order + "HHIIHH", 0xFFFE if extensible else code, channels, rate, rate * align, align, bits)
    if extensible:
        fmt += struct.pack(order + "HHII", 22, bits, 3, code) + bytes.fromhex("00001000800000aa00389b71")
    sound = bytes(i * 7 % 256 for i in range(align * 6))
    body = front + chunk(order, b"fmt ", fmt) + chunk(order, b"data", sound, told) + behind
    return kind + struct.pack(order + "I", len(body) + 4 if riff is None else riff) + b"WAVE" + body


def id3(frames, version=3, flags=0):
    size = len(frames)
    return b"ID3" + bytes([version, 0, flags] + [size >> s & 127 for s in (21, 14, 7, 0)]) + frames


def text(name, content):
    return name + struct.pack(">IH", len(content), 0) + content


def mp3(count, head=b"\xff\xfb\x90\x00", length=417):
    return (head + bytes(length - 4)) * count


def info_frame():
    info = b"Info" + struct.pack(">III", 15, 4, 2085) + bytes(104) + b"LAME3.100" + bytes(12) + b"\x24\x01\x0c"
    frame = bytearray(mp3(1))
    frame[36 : 36 + len(info)] = info
    return bytes(frame)


INFO = chunk("<", b"LIST", b"INFO" + chunk("<", b"INAM", b"Tune") + chunk("<", b"IART", b"J\xf6rg"))
TAG = id3(text(b"TIT2", b"\3Tune") + text(b"TPE1", b"\1\xff\xfeW\0h\0o\0"))
APE = b"APETAGEX" + struct.pack("<IIIIQ", 2000, 64, 1, 0, 0)
SEEDS = {
    "Wav": {
        "plain": wav(), "eight": wav(bits=8, channels=1), "twentyfour": wav(bits=24), "thirtytwo": wav(bits=32),
        "float": wav(code=3, bits=32), "double": wav(code=3, bits=64), "alaw": wav(code=6, bits=8), "mulaw": wav(code=7, bits=8),
        "extensible": wav(extensible=True), "big": wav(b"RIFX"), "bigextensible": wav(b"RIFX", extensible=True, code=3, bits=32),
        "long": wav(b"RF64", front=chunk("<", b"ds64", struct.pack("<QQQI", 100, 16, 4, 0)), told=0xFFFFFFFF, riff=0xFFFFFFFF),
        "killed": wav(told=0, riff=36), "ones": wav(told=0xFFFFFFFF, riff=0xFFFFFFFF), "listed": wav(front=INFO, behind=INFO),
        "tagged": wav(behind=chunk("<", b"id3 ", TAG)), "odd": wav(front=chunk("<", b"note", b"odd")), "six": wav(channels=6),
    },
    "Mp3": {
        "plain": mp3(4), "info": info_frame() + mp3(5), "tagged": TAG + mp3(3), "unsynchronised": id3(text(b"TIT2", b"\1\xff\0\xfeA\0"), 3, 128) + mp3(2),
        "newer": id3(text(b"TIT2", b"\3Tune"), 4) + mp3(2), "older": id3(b"TT2\0\0\5\3Tune", 2) + mp3(2),
        "old": mp3(3) + b"TAG" + b"Tune".ljust(125, b"\0"), "ape": mp3(3) + bytes(32) + APE, "mono": mp3(4, b"\xff\xfb\x90\xc0"),
        "low": mp3(9, b"\xff\xf3\x14\xc0", 24), "damaged": mp3(4) + bytes(1000) + mp3(4), "cut": mp3(4)[:-9], "two": mp3(2) + TAG + mp3(2),
        "junk": b"junk" * 30 + mp3(3),
    },
}

for folder, seeds in SEEDS.items():
    os.makedirs(os.path.join(HERE, folder), exist_ok=True)
    for name, content in seeds.items():
        with open(os.path.join(HERE, folder, name), "wb") as file:
            file.write(content)
