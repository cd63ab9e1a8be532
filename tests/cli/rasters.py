# SPDX-License-Identifier: GPL-2.0-or-later
"""Pictures of pages as rows of lightness, 0 to 255: PNG read by its chunks, and what other programs paint."""

import struct
import zlib


def chunks(data):
    """A PNG's chunks, each with its sum checked."""
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    at = 8
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at : at + 8])
        body = data[at + 8 : at + 8 + size]
        assert zlib.crc32(kind + body) == struct.unpack(">I", data[at + 8 + size : at + 12 + size])[0], kind
        yield kind, body
        at += 12 + size


class Picture:
    """An 8-bit grey or palette PNG as rows of lightness, 0 to 255."""

    def __init__(self, data):
        packed, palette = b"", None
        for kind, body in chunks(data):
            if kind == b"IHDR":
                self.width, self.height, self.depth, self.colour, *rest = struct.unpack(">IIBBBBB", body)
                assert rest == [0, 0, 0], rest
            elif kind == b"PLTE":
                palette = [sum(body[k : k + 3]) // 3 for k in range(0, len(body), 3)]
            elif kind == b"IDAT":
                packed += body
        raw = zlib.decompress(packed)
        stride = self.width + 1
        assert len(raw) == stride * self.height
        self.rows, before = [], bytearray(self.width)
        for y in range(self.height):
            before = self._unfilter(raw[y * stride], bytearray(raw[y * stride + 1 : (y + 1) * stride]), before)
            self.rows.append(bytes(palette[value] for value in before) if palette else bytes(before))

    @staticmethod
    def _unfilter(kind, row, above):
        if kind == 2:
            return bytearray((a + b) & 255 for a, b in zip(row, above))
        left = corner = 0
        for k, value in enumerate(row if kind else ()):
            up = above[k]
            if kind == 1:
                guess = left
            elif kind == 3:
                guess = (left + up) // 2
            else:
                p = left + up - corner
                guess = min((left, up, corner), key=lambda n: abs(p - n))
            left, corner = (value + guess) & 255, up
            row[k] = left
        return row


def grey_map(data):
    """A binary PGM as rows of lightness."""
    kind, width, height, most = data.split(maxsplit=4)[:4]
    assert (kind, most) == (b"P5", b"255"), data[:20]
    width, height = int(width), int(height)
    body = data[len(data) - width * height:]
    return [body[y * width : (y + 1) * width] for y in range(height)]
