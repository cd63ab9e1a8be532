# SPDX-License-Identifier: GPL-2.0-or-later
"""Scores and options by chance: tunes over bar lines, rests, percussion, stray cells, every length of a bar."""

from notation.reading_model import KEYS, MELODY, PERCUSSION, Options
from player_model import Score

MEASURES = (16, 16, 16, 16, 8, 12, 12, 24, 32, 4, 3, 6, 1, 2, 5, 7, 9, 10, 15, 20, 48, 64, 96, 100, 192, 256, 511, 512)


def lengths(rng, measure):
    """A length as tunes have it: a share of the bar, now and then any."""
    kind = rng.random()
    if kind < 0.65:
        share = rng.choice((measure // 2, measure // 4, measure // 4, measure // 8, measure // 8, measure // 16,
                            measure // 16, 3 * measure // 8, 3 * measure // 16, 3 * measure // 4, measure))
        return max(1, share)
    if kind < 0.9:
        return rng.randint(1, max(1, measure // 2))
    return rng.randint(1, 2 * measure + 3)


def fill(rng, cells, measure, end, centre, odd):
    p = 0
    row = centre
    resting = rng.choice((0.1, 0.3, 0.6))
    while p < end:
        steps = min(lengths(rng, measure), end - p)
        if rng.random() < resting:
            for k in range(steps if odd and rng.random() < 0.1 else 0):
                cells[p + k] = rng.choice((-1, -1, -2, 1000 + row))  # no note: nothing has begun
        else:
            row = min(127, max(0, row + rng.choice((-7, -4, -3, -2, -1, -1, 0, 0, 1, 1, 2, 3, 5, 7))))
            if odd and rng.random() < 0.05:
                row = rng.randint(0, 127)
            for k in range(steps):
                cells[p + k] = row + 1000 * (k > 0)
                if k and odd and rng.random() < 0.02:
                    cells[p + k] = 1000 + rng.randint(0, 127)
            if rng.random() < 0.05:
                row = centre
        p += steps


def score_of(rng, odd=True, measures=MEASURES):
    measure = rng.choice(measures) if rng.random() < 0.9 else rng.randint(1, 512)
    bars = rng.randint(1, 3 if measure > 100 else 12)
    end = bars * measure - rng.choice((0, 0, rng.randint(0, measure - 1)))
    score = Score(max(1000, end + 600))
    score.meter = (measure, rng.choice((1, 2, 3, 4, 4, 4, 5, 6, 9, 12, 16)), rng.choice((1, 2, 4, 4, 8, 16, 32)))
    channels = rng.sample(range(8), rng.choice((1, 1, 2, 3, 4, 6))) + rng.sample(PERCUSSION, rng.choice((0, 0, 0, 1, 2)))
    for channel in channels:
        if channel in MELODY:
            fill(rng, score.cell[channel], measure, end, rng.choice((40, 55, 60, 67, 70, 80, 90)), odd)
        else:
            fill(rng, score.cell[channel], measure, end, rng.randint(40, 60), False)
            for p, cell in enumerate(score.cell[channel]):
                if cell >= 0:
                    score.instrument[channel][p] = rng.randint(128, 174)
        if rng.random() < 0.2:  # begins late or ends early
            cut = rng.randint(0, end)
            keep = range(cut) if rng.random() < 0.5 else range(cut, end)
            for p in keep:
                score.cell[channel][p] = -1
    for cells in score.cell:  # a file keeps nothing behind the last note
        last = max((p for p, cell in enumerate(cells) if cell >= 0), default=-1)
        cells[last + 1 :] = [-1] * (len(cells) - last - 1)
    return score


def options_of(rng, score):
    options = Options()
    one_in = lambda n: rng.random() < 1 / n
    for size in ("header", "spacer", "bar_width"):
        if one_in(2):
            setattr(options, size, rng.choice((10, 20, 30, 60, 100, 300, rng.randint(10, 300), rng.randint(10, 120))))
    options.key = rng.choice(list(KEYS))
    options.join = rng.choice((0, 2, 3, 4, 4))
    options.spacing = rng.choice(("proportional", "symmetrical"))
    options.title = rng.choice(("", "", "waltz", "Song of two words", "élan", "3 Blind mice"))
    options.title_every_page, options.numbers, options.repeat_signs = one_in(3), one_in(2), one_in(3)
    if one_in(2):
        options.page = rng.choice(((794, 1123), (816, 1056), (rng.randint(200, 2000), rng.randint(200, 2000)),
                                   (rng.randint(400, 1000), rng.randint(200, 600)), (10000, 10000)))
    if one_in(5):
        options.mute = tuple(sorted(rng.sample(range(8), rng.randint(1, 3))))
    if one_in(4):
        some = rng.sample(range(8), rng.randint(0, 4)) + rng.sample(PERCUSSION, rng.randint(0, 1))
        options.channels = [(c, "percussion" if c > 7 else rng.choice(("treble", "bass"))) for c in some] or None
    end = score.song_end(options.mute)
    if one_in(6) and end:
        options.start = rng.randint(0, end - 1)
    if one_in(6) and end:
        options.end = rng.randint(options.start + 1, end + score.meter[0])
    return options
