# SPDX-License-Identifier: GPL-2.0-or-later
"""Whether clang-format would change any C++ file that is tracked. Usage: format.py SOURCES"""

import subprocess
import sys

TOOL = "clang-format-14"


def main(sources):
    listed = subprocess.run(["git", "ls-files", "-z", "*.cpp", "*.h"], cwd=sources, check=True, capture_output=True)
    files = [name.decode() for name in listed.stdout.split(b"\0") if name]
    if not files:
        print("there is nothing to look at")
        return 1
    return subprocess.run([TOOL, "--dry-run", "-Werror", *files], cwd=sources).returncode


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
