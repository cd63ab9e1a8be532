# SPDX-License-Identifier: GPL-2.0-or-later
"""The order of the folders, read from the sources: who may include whom. Usage: includes_test.py SOURCES"""

import os
import re
import sys
import unittest

SOURCES = None
# A folder includes itself and what stands before it; folders of one row know nothing of each other.
ORDER = (("base",), ("sound",), ("score",), ("composition",), ("studio",), ("keyboard", "notation"), ("shell",), ("parts",),
         ("tableau", "setup", "synth", "recording", "songwriter", "tutorial"), ("app",))
# The companion has no windows; of a window's folder it may include what is in the core.
COMPANION = "cli"
GENERATED = "LateNames.h"  # by the build, in the folder of those who include it
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def place(folder):
    return next((row for row, names in enumerate(ORDER) if folder in names), None)


def core_files():
    """What the lists of the core name, as paths with their folder."""
    found = set()
    for names in ORDER:
        for folder in names:
            try:
                with open(os.path.join(SOURCES, folder, "CMakeLists.txt"), encoding="utf-8") as file:
                    text = file.read()
            except OSError:
                continue
            for words in re.findall(r"target_sources\(velmora_core\s+PRIVATE([^)]*)\)", text):
                found |= {f"{folder}/{word}" for word in words.split()}
    return found


def sources():
    """Each file with what it includes of ours."""
    read = {}
    folders = [folder for names in ORDER for folder in names] + [COMPANION]
    for folder in folders:
        top = os.path.join(SOURCES, folder)
        for name in sorted(os.listdir(top)) if os.path.isdir(top) else []:
            if name.endswith((".cpp", ".h")):
                with open(os.path.join(top, name), encoding="utf-8") as file:
                    included = INCLUDE.findall(file.read())
                read[f"{folder}/{name}"] = [path if "/" in path else f"{folder}/{path}" for path in included]
    return read


class IncludesTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.files = sources()
        cls.core = core_files()

    def test_every_source_stands_in_a_folder_of_the_order(self):
        known = {folder for names in ORDER for folder in names} | {COMPANION}
        strangers = [folder for folder in sorted(os.listdir(SOURCES)) if folder not in known | {"tests", "benchmarks"}
                     and os.path.isdir(os.path.join(SOURCES, folder))
                     and any(name.endswith((".cpp", ".h")) for name in os.listdir(os.path.join(SOURCES, folder)))]
        self.assertEqual(strangers, [])
        self.assertGreater(len(self.files), 100)

    def test_each_include_is_a_file(self):
        missing = [f"{path} includes {other}" for path, included in self.files.items() for other in included
                   if other not in self.files and os.path.basename(other) != GENERATED]
        self.assertEqual(missing, [])

    def test_a_folder_includes_only_what_stands_before_it(self):
        wrong = []
        for path, included in self.files.items():
            folder = path.partition("/")[0]
            if folder == COMPANION:
                continue
            for other in included:
                to = other.partition("/")[0]
                if to == folder:
                    continue
                if to == COMPANION or place(to) is None or place(to) >= place(folder):
                    wrong.append(f"{path} includes {other}")
        self.assertEqual(wrong, [])

    def test_the_companion_includes_only_the_core(self):
        wrong = [f"{path} includes {other}" for path, included in self.files.items() if path.startswith(COMPANION + "/")
                 for other in included if not other.startswith(COMPANION + "/") and not self.is_core(other)]
        self.assertEqual(wrong, [])

    def is_core(self, header):
        """A header of a core source, or one without a source whose own includes are of the core."""
        source = header[:-2] + ".cpp"
        if source in self.files:
            return source in self.core
        return all(self.is_core(other) for other in self.files.get(header, []))

    def test_no_files_include_each_other_in_a_round(self):
        rounds = set()
        done = set()

        def visit(path, trail):
            if path in trail:
                rounds.add(" > ".join(trail[trail.index(path):] + [path]))
                return
            if path in done:
                return
            for other in self.files.get(path, []):
                visit(other, trail + [path])
            done.add(path)
        for path in self.files:
            visit(path, [])
        self.assertEqual(sorted(rounds), [])


if __name__ == "__main__":
    SOURCES = sys.argv.pop(1)
    unittest.main(verbosity=2)
