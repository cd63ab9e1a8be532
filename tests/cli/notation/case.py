# SPDX-License-Identifier: GPL-2.0-or-later
"""What every case of the notation's commands stands on: scores as files, what the commands print of them."""

import random

from player_model import Score
from studio import case
from studio.case import StudioCase

SEED = 20


def rng(name):
    """Random numbers that are the same each time, unless another seed was asked for."""
    return random.Random(f"{name} {SEED if case.seed is None else case.seed}")


def rounds(usual):
    """How many random cases to try."""
    if case.rounds is not None:
        return case.rounds
    return max(1, usual // 8) if case.sanitized else usual


def tune(*notes, channel=0, score=None, meter=(16, 4, 4), positions=1000):
    """A score of one channel: notes are (row, steps), a row of None is rest."""
    score = score or Score(positions)
    score.meter = meter
    at = 0
    for row, steps in notes:
        for k in range(steps):
            score.cell[channel][at + k] = -1 if row is None else row + 1000 * (k > 0)
        at += steps
    return score


class NotationCase(StudioCase):
    maxDiff = 1500

    def score_file(self, score, name="in.sng"):
        return self.save(name, score.text().encode())

    def notated(self, score, *words):
        """What `notation` prints, as lines."""
        return self.succeed("notation", self.score_file(score), *words).stdout.splitlines()

    def engraved(self, score, *words):
        """What `engrave` lists, as lines."""
        self.succeed("engrave", self.score_file(score), "page.txt", *words)
        return self.listed("page.txt")

    def listed(self, name):
        text = self.read(name).decode("utf-8")
        self.assertTrue(text.endswith("\n"))
        return text[:-1].split("\n")

    def assertSameLines(self, got, wanted, about):
        if got == wanted:
            return
        at = next((k for k, pair in enumerate(zip(got, wanted)) if pair[0] != pair[1]), min(len(got), len(wanted)))
        show = lambda lines: "\n".join(f"  {k}: {line}" for k, line in list(enumerate(lines))[max(0, at - 6) : at + 8])
        self.fail(f"{about}\nline {at} of {len(got)}, {len(wanted)} wanted\ngot\n{show(got)}\nwanted\n{show(wanted)}")
