# SPDX-License-Identifier: GPL-2.0-or-later
"""clang-tidy over what has changed. A full run takes a quarter of an hour, so the file `clean` beside this one keeps, for
each source, a checksum of what was found clean: of the source, its header and the list of checks. What has another checksum
is looked at anew, and so is what is not in the list.

Sources that nobody has looked at yet stand in `unseen`, with the checksum of today: they too are looked at as soon as they
change.

Usage: tidy.py SOURCES BUILD [--unseen | --all] [--record]
BUILD has a compile_commands.json of clang. --unseen looks at what was put off, --all at every file, as is due after a
change of a header that many include; --record writes down what is clean now, for the commit that follows.
tidy.py SOURCES BUILD --put-off puts off what is neither clean nor put off."""

import concurrent.futures
import hashlib
import json
import os
import re
import subprocess
import sys
import tempfile

TOOL = "clang-tidy-14"
FINDING = re.compile(r"^\S+:\d+:\d+: (warning|error): ")
# Precompiled headers hold all of Qt, and every check would walk through it once for each source.
WITH_VALUE = {"-include-pch", "-include"}


def checksum(sources, path):
    total = hashlib.sha256()
    for name in (".clang-tidy", path, os.path.splitext(path)[0] + ".h"):
        try:
            with open(os.path.join(sources, name), "rb") as file:
                total.update(file.read())
        except OSError:
            pass
        total.update(b"\0")
    return total.hexdigest()[:16]


def plain_command(command):
    """Without precompiled headers and sanitizers, which tell nothing more."""
    words, kept, skip = command.split(), [], 0
    for at, word in enumerate(words):
        if skip:
            skip -= 1
        elif word == "-Xclang":
            skip = 1
            if words[at + 1] in WITH_VALUE:
                skip = 3
        elif not word.startswith(("-fsanitize", "-fno-sanitize", "-Winvalid-pch")):
            kept.append(word)
    return " ".join(kept)


def read_list(path):
    try:
        with open(path, encoding="utf-8") as file:
            return dict(reversed(line.split()) for line in file if not line.startswith("#"))
    except OSError:
        return {}


def write_list(path, words, totals):
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"# {words}; written by tidy.py.\n")
        file.writelines(f"{total} {name}\n" for name, total in sorted(totals.items()))


def look_at(sources, database, path):
    """What is found in a file; the tool's own failure is a finding too."""
    done = subprocess.run([TOOL, "-p", database, "--quiet", os.path.join(sources, path)], capture_output=True, text=True)
    findings = any(FINDING.match(line) for line in done.stdout.splitlines())
    if done.returncode or findings:
        return done.stdout + (done.stderr if done.returncode else "")
    return ""


def main(sources, build, *options):
    sources = os.path.realpath(sources)
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        entries = json.load(file)
    ours = {}
    for entry in entries:
        path = os.path.relpath(os.path.realpath(entry["file"]), sources)
        if not path.startswith(("tests/", "build/", "..", "benchmarks/")) and not path.startswith("build-"):
            ours[path] = dict(entry, command=plain_command(entry["command"]))
    if not ours:
        print("there is nothing to look at")
        return 1
    record, later = (os.path.join(sources, "tests", "lint", name) for name in ("clean", "unseen"))
    totals = {path: checksum(sources, path) for path in ours}
    clean = {name: total for name, total in read_list(record).items() if totals.get(name) == total}
    unseen = {name: total for name, total in read_list(later).items() if totals.get(name) == total}

    def write():
        write_list(record, "What clang-tidy has found clean", clean)
        write_list(later, "What clang-tidy has not looked at yet", unseen)

    if "--put-off" in options:
        unseen |= {path: total for path, total in totals.items() if path not in clean}
        write()
        return 0
    skipped = {} if "--all" in options else clean if "--unseen" in options else clean | unseen
    wanted = [path for path in sorted(ours) if path not in skipped]
    print(f"{len(ours)} sources: {len(clean)} clean, {len(unseen)} not seen yet, {len(wanted)} looked at now", flush=True)
    bad = []
    with tempfile.TemporaryDirectory() as database:
        with open(os.path.join(database, "compile_commands.json"), "w", encoding="utf-8") as file:
            json.dump(list(ours.values()), file)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for path, found in zip(wanted, pool.map(lambda one: look_at(sources, database, one), wanted)):
                if found:
                    bad.append(path)
                    print(f"== {path}\n{found}", flush=True)
                    clean.pop(path, None)
                    continue
                clean[path] = totals[path]
                unseen.pop(path, None)
                if "--record" in options:
                    write()
    print(f"{len(bad)} sources with findings")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
