# SPDX-License-Identifier: GPL-2.0-or-later
"""The commands of the notation as their users call them: notation, engrave and lyrics.

Usage: notation_test.py PATH-OF-VELMORA-CLI [THEME...] [--random N] [--seed S] [CASE...]

A case is a class or one test of it, ReadingTest.test_one_step_of_twelve_is_a_sixteenth say. Without a word all of them
run. `--random` says how many random scores and files there are, for a longer run by hand, and `--seed` which ones."""

import argparse
import importlib
import os
import re
import sys
import unittest

from studio import case

THEMES = ("reading", "page", "clean", "cleanpage", "options", "pictures", "lyrics")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("cli")
    parser.add_argument("names", nargs="*", metavar="THEME or CASE")
    parser.add_argument("--random", type=int)
    parser.add_argument("--seed", type=int)
    parser.add_argument("-v", "--verbose", action="store_true")
    words = parser.parse_args()
    case.cli, case.rounds, case.seed = os.path.abspath(words.cli), words.random, words.seed
    with open(case.cli, "rb") as program:
        case.sanitized = re.search(rb"__[at]san_init", program.read()) is not None
    modules = {theme: importlib.import_module("notation." + theme) for theme in THEMES}
    loader, suite = unittest.TestLoader(), unittest.TestSuite()
    for theme, module in modules.items():
        if not words.names or theme in words.names:
            suite.addTest(loader.loadTestsFromModule(module))
    for name in words.names:
        if name not in THEMES:
            holder = next((m for m in modules.values() if hasattr(m, name.split(".")[0])), None)
            if holder is None:
                parser.error(f"there is neither a theme nor a case {name}; the themes are {' '.join(THEMES)}")
            suite.addTest(loader.loadTestsFromName(name, holder))
    return 0 if unittest.TextTestRunner(verbosity=2 if words.verbose else 1).run(suite).wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
