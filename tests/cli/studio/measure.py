# SPDX-License-Identifier: GPL-2.0-or-later
"""What sounds are alike, how loud they are and where one begins in another."""

import array
import math
import operator


def tones(count, rate, parts, amplitude=0.8):
    """The sum of sines (frequency, share of the amplitude, phase), on the scale of 16 bits, not rounded."""
    total = sum(share for _, share, _ in parts)
    sound = [0.0] * count
    for frequency, share, phase in parts:
        turn, most = 2 * math.pi * frequency / rate, 32767 * amplitude * share / total
        for n in range(count):
            sound[n] += most * math.sin(turn * n + phase)
    return sound


def rounded(sound):
    return array.array("h", [max(-32768, min(32767, round(v))) for v in sound])


def stereo(left, right):
    both = array.array("h", bytes(4 * len(left)))
    both[0::2], both[1::2] = array.array("h", left), array.array("h", right)
    return both


def power(values):
    return sum(map(operator.mul, values, values))


def error_db(wanted, got):
    """How far below what is wanted the difference lies; 0 and more if they have nothing in common."""
    if len(wanted) != len(got):
        raise AssertionError(f"{len(wanted)} samples against {len(got)}")
    difference = list(map(operator.sub, wanted, got))
    wrong, right = power(difference), power(wanted)
    return -200.0 if wrong == 0 else 200.0 if right == 0 else 10 * math.log10(wrong / right)


def level_db(values):
    """The mean loudness against full scale."""
    mean = power(values) / max(1, len(values))
    return -200.0 if mean == 0 else 10 * math.log10(mean / 32768 ** 2)


def best_shift(wanted, got, most, stretch=4000):
    """How many samples later `got` has what stands in the middle of `wanted`, at the least difference."""
    at = max(0, (len(wanted) - stretch) // 2)
    piece = wanted[at:at + stretch]

    def wrong(shift):
        other = got[at + shift:at + shift + len(piece)]
        return power(list(map(operator.sub, piece, other))) if at + shift >= 0 and len(other) == len(piece) else math.inf

    return min(range(-most, most + 1), key=wrong)


def first_sound(frames, channels=2, above=0):
    """The first frame that isn't silent, the count of frames if all are."""
    at = next((n for n, v in enumerate(frames) if abs(v) > above), len(frames))
    return at // channels


def last_sound(frames, channels=2, above=0):
    """Behind the last frame that isn't silent."""
    at = next((n for n in range(len(frames) - 1, -1, -1) if abs(frames[n]) > above), -1)
    return at // channels + 1


def peak_text(peak):
    """As `info` tells it: of 1.0."""
    return "-inf dB" if peak == 0 else f"{20 * math.log10(peak):.2f} dB"
