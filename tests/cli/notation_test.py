# SPDX-License-Identifier: GPL-2.0-or-later
"""The commands of the notation as their users call them: notation, engrave and lyrics.

Usage: notation_test.py PATH-OF-VELMORA-CLI [THEME...] [--random N] [--seed S] [CASE...]

A case is a class or one test of it, ReadingTest.test_one_step_of_twelve_is_a_sixteenth say. Without a word all of them
run. `--random` says how many random scores and files there are, for a longer run by hand, and `--seed` which ones."""

import sys

import themes

THEMES = ("reading", "page", "clean", "cleanpage", "options", "pictures", "lyrics")

if __name__ == "__main__":
    sys.exit(themes.main(__doc__, "notation", THEMES))
