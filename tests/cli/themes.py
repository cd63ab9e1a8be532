# SPDX-License-Identifier: GPL-2.0-or-later
"""Runs cases by theme against one velmora-cli: what the tests that have themes share."""

import argparse
import importlib
import os
import re
import unittest

from studio import case


def main(doc, folder, themes):
    """Runs the themes, modules of the folder, or the cases that the command line names. The exit status."""
    parser = argparse.ArgumentParser(description=doc, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("cli")
    parser.add_argument("names", nargs="*", metavar="THEME or CASE")
    parser.add_argument("--random", type=int)
    parser.add_argument("--seed", type=int)
    parser.add_argument("-v", "--verbose", action="store_true")
    words = parser.parse_args()
    case.cli, case.rounds, case.seed = os.path.abspath(words.cli), words.random, words.seed
    with open(case.cli, "rb") as program:
        case.sanitized = re.search(rb"__[at]san_init", program.read()) is not None
    modules = {theme: importlib.import_module(f"{folder}.{theme}") for theme in themes}
    loader, suite = unittest.TestLoader(), unittest.TestSuite()
    for theme, module in modules.items():
        if not words.names or theme in words.names:
            suite.addTest(loader.loadTestsFromModule(module))
    for name in words.names:
        if name not in themes:
            holder = next((m for m in modules.values() if hasattr(m, name.split(".")[0])), None)
            if holder is None:
                parser.error(f"there is neither a theme nor a case {name}; the themes are {' '.join(themes)}")
            suite.addTest(loader.loadTestsFromName(name, holder))
    return 0 if unittest.TextTestRunner(verbosity=2 if words.verbose else 1).run(suite).wasSuccessful() else 1
