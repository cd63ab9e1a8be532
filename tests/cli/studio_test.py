# SPDX-License-Identifier: GPL-2.0-or-later
"""The studio's commands as their users call them: info, encode, burn, play, record and media.

Usage: studio_test.py PATH-OF-VELMORA-CLI [THEME...] [--random N] [--seed S] [CASE...]

A case is a class or one test of it, StreamTest.test_short_files_are_exact_too say. Without a word all of them run.
`--random` says how many random scripts and damaged files there are, for a longer run by hand, and `--seed` which ones."""

import sys

import themes

THEMES = ("reading", "mp3reading", "encoding", "burning", "playing", "recording", "killing", "media", "scripts", "hostile",
          "figures")

if __name__ == "__main__":
    sys.exit(themes.main(__doc__, "studio", THEMES))
