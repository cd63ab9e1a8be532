#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-2.0-or-later
"""Write the demonstration scores beside this script, and print how long each one plays.

With --check, write nothing: say which files differ from what would be written, and fail if any does.
"""

import sys
from pathlib import Path

sys.dont_write_bytecode = True

from pieces import effects, entertainer, folksong, invention, lessons, march, welcome  # noqa: E402

NEWEST = {
    "welcome.sng": welcome.score,
    "invention.sng": invention.score,
    "folksong.sng": folksong.score,
    "march.sng": march.score,
    "effects.sng": effects.score,
    "333.sng": entertainer.score,
}
FIRST = {
    "104a.sng": lessons.ode_alone,
    "104b.sng": lessons.ode_for_two,
    "301.sng": lessons.susanna,
}


def compositions():
    """Name, length in seconds and bytes of every file."""
    for name, compose in NEWEST.items():
        score = compose()
        yield name, score.seconds(), score.newest_form()
    for name, compose in FIRST.items():
        score = compose()
        yield name, score.seconds(), score.first_form()


def main(arguments):
    folder = Path(__file__).resolve().parent
    checking = arguments == ["--check"]
    if arguments and not checking:
        sys.exit("usage: make_demos.py [--check]")
    stale = []
    for name, seconds, content in compositions():
        path = folder / name
        if not checking:
            path.write_bytes(content)
            print(f"{name:14} {seconds:6.1f} s")
        elif not path.is_file() or path.read_bytes() != content:
            stale.append(name)
    if stale:
        sys.exit("out of date: " + ", ".join(stale))


if __name__ == "__main__":
    main(sys.argv[1:])
