#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-2.0-or-later
"""How much of what the sources say would a test miss?

Makes one small change at a time in a copy of the sources ("mutant"), builds the tests of the rooms, and runs them: a mutant
that no test notices is printed. It is not part of ./test, since each mutant costs a build.

    tests/mutate.py score/UndoHistory.cpp               # ten mutants of one file
    tests/mutate.py --count 40 --seed 7 score composition
    tests/mutate.py --at score/Numbers.cpp:52           # all mutants of one line

A mutant that lives either tells of a missing test or changes nothing that can be seen; only a reader knows which.
"""
import argparse
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

# What is found, and what takes its place: in code alone, not in comments, texts and preprocessor lines.
RULES = [
    (r"(?<![<>=!\-])<(?![<=])(?= )", "<="), (r"(?<![<>=!\-])>(?![>=])(?= )", ">="),
    (r"<=(?!>)", "<"), (r">=", ">"), (r"==", "!="), (r"!=", "=="),
    (r"&&", "||"), (r"\|\|", "&&"),
    (r" \+ 1\b", ""), (r" - 1\b", ""), (r" \+ (?!=)", " - "), (r" - (?!=|>)", " + "),
    (r"\bstd::min\b", "std::max"), (r"\bstd::max\b", "std::min"),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r"\bif \((?!const|auto|int|std)", "if (!("),  # closed again below
    (r"\b0\b(?![xX.])", "1"), (r"(?<![\w.])([2-9]|[1-9]\d+)\b(?![xX.U])", None),  # one more
    (r"\+\+(?=\w)", "--"),
]


def code_of(line):
    """The line with texts and comments blanked out, so that columns stay."""
    line = re.sub(r'"(\\.|[^"\\])*"', lambda found: " " * len(found.group()), line)
    line = re.sub(r"//.*", lambda found: " " * len(found.group()), line)
    return "" if line.lstrip().startswith(("#", "*", "/*")) else line


def closed(line, start):
    """The index behind the bracket that closes the one at `start`; None if it isn't on this line."""
    depth = 0
    for at in range(start, len(line)):
        depth += {"(": 1, ")": -1}.get(line[at], 0)
        if depth == 0:
            return at + 1
    return None


def mutants_of(path, only=None):
    with open(os.path.join(ROOT, path)) as file:
        lines = file.read().split("\n")
    for number, line in enumerate(lines, 1):
        if only and number != only or "static_assert" in line or "include" in line or "template" in line:
            continue
        for pattern, instead in RULES:
            for found in re.finditer(pattern, code_of(line)):
                if instead == "if (!(":
                    end = closed(line, found.end() - 1)
                    if end is None or ";" in line[found.end():end]:
                        continue
                    changed = line[:found.start()] + "if (!" + line[found.end() - 1:end] + ")" + line[end:]
                else:
                    new = instead if instead is not None else str(int(found.group()) + 1)
                    changed = line[:found.start()] + new + line[found.end():]
                yield path, number, line, changed


def sources(names):
    for name in names:
        if name.endswith(".cpp"):
            yield name
            continue
        for file in sorted(os.listdir(os.path.join(ROOT, name))):
            if file.endswith(".cpp"):
                yield os.path.join(name, file)


class Copy:
    """The sources and a build of the tests, elsewhere: what lies here is never touched."""

    def __init__(self, folder, filter_):
        self.folder, self.filter = folder, filter_
        if not os.path.exists(os.path.join(folder, ".git")):
            subprocess.run(["git", "clone", "--quiet", "--shared", ROOT, folder], check=True)
        environment = {**os.environ, "CCACHE_BASEDIR": folder, "CCACHE_NOHASHDIR": "1"}
        self.environment = {**environment, "QT_QPA_PLATFORM": "offscreen"}
        subprocess.run(["cmake", "--preset", "release", "-DVELMORA_TESTS=ON"], cwd=folder, check=True,
                       env=environment, stdout=subprocess.DEVNULL)

    def builds(self):
        done = subprocess.run(["cmake", "--build", "--preset", "release", "--target", "velmora_tests"],
                              cwd=self.folder, env=self.environment, capture_output=True)
        return done.returncode == 0

    def passes(self):
        tests = os.path.join(self.folder, "build", "release", "tests", "velmora_tests")
        command = [tests, "--gtest_brief=1", "--gtest_fail_fast", f"--gtest_filter={self.filter}"]
        try:
            done = subprocess.run(command, cwd=self.folder, env=self.environment, capture_output=True, timeout=300)
        except subprocess.TimeoutExpired:
            return False  # it hangs, which nobody overlooks
        return done.returncode == 0

    def write(self, path, number, text):
        place = os.path.join(self.folder, path)
        with open(place) as file:
            lines = file.read().split("\n")
        lines[number - 1] = text
        with open(place, "w") as file:
            file.write("\n".join(lines))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("names", nargs="*", help="folders or .cpp files, from the root")
    parser.add_argument("--at", help="FILE:LINE, all mutants of that line")
    parser.add_argument("--count", type=int, default=10, help="how many mutants at random (default: 10)")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--folder", help="where the copy is kept for the next run (default: a temporary one)")
    parser.add_argument("--filter", default="*", help="of the tests, as they take it")
    options = parser.parse_args()
    if options.at:
        path, line = options.at.rsplit(":", 1)
        chosen = list(mutants_of(path, int(line)))
    else:
        every = [mutant for path in sources(options.names) for mutant in mutants_of(path)]
        chosen = random.Random(options.seed).sample(every, min(options.count, len(every)))
    folder = options.folder or tempfile.mkdtemp()
    caught = lived = unbuilt = 0
    try:
        copy = Copy(folder, options.filter)
        if not copy.builds() or not copy.passes():
            sys.exit("The tests must pass before anything is changed.")
        for path, number, line, changed in chosen:
            copy.write(path, number, changed)
            if not copy.builds():
                unbuilt += 1
            elif copy.passes():
                lived += 1
                print(f"lives: {path}:{number}\n  - {line.strip()}\n  + {changed.strip()}", flush=True)
            else:
                caught += 1
            copy.write(path, number, line)
    finally:
        if not options.folder:
            shutil.rmtree(folder, ignore_errors=True)
    tried = caught + lived
    print(f"{caught} of {tried} caught{f' ({100 * caught // tried} %)' if tried else ''}, {unbuilt} did not compile")


if __name__ == "__main__":
    main()
