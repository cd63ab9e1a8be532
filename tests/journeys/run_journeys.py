# SPDX-License-Identifier: GPL-2.0-or-later
"""The program under a real X server, with a mouse and a keyboard.

Usage: run_journeys.py PATH-OF-VELMORA PATH-OF-VELMORA-CLI [--patience SECONDS] [unittest's options]"""

import sys
import unittest

import desktop
import program

THEMES = ("start_and_end", "looks", "frames", "tips", "scores", "composing", "setup", "recovery", "bad_input", "screens")

if __name__ == "__main__":
    program.path, program.cli = sys.argv[1:3]
    options = sys.argv[3:]
    if options[:1] == ["--patience"]:
        desktop.patience = float(options[1])
        options = options[2:]
    for theme in THEMES:
        __import__(theme)
    unittest.main(module=None, argv=[sys.argv[0], *(options or THEMES)], verbosity=2)
