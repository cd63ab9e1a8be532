# SPDX-License-Identifier: GPL-2.0-or-later
"""The program under a real X server, with a mouse and a keyboard.

Usage: run_journeys.py PATH-OF-VELMORA PATH-OF-VELMORA-CLI [--patience SECONDS] THEME [THEME ...]
A theme is a file beside this one, or a class or a case in it: composing, composing.Stamping."""

import sys
import unittest

import desktop
import program

if __name__ == "__main__":
    program.path, program.cli = sys.argv[1:3]
    options = sys.argv[3:]
    if options[:1] == ["--patience"]:
        desktop.patience = float(options[1])
        options = options[2:]
    unittest.main(module=None, argv=[sys.argv[0], *options], verbosity=2)
