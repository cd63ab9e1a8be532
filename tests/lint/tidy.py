# SPDX-License-Identifier: GPL-2.0-or-later
"""clang-tidy over what has changed. A full run takes a quarter of an hour, so the file `clean` beside this one keeps, for
each source, a checksum of what was found clean: of the source, its header and the list of checks. What has another checksum
is looked at anew, and so is what is not in the list.

Usage: tidy.py SOURCES BUILD [--all] [--record]
BUILD has a compile_commands.json of clang. --all looks at every file, as is due after a change of a header that many
include; --record writes down what is clean now, for the commit that follows."""

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


def read_clean(path):
    try:
        with open(path, encoding="utf-8") as file:
            return dict(reversed(line.split()) for line in file if not line.startswith("#"))
    except OSError:
        return {}


def write_clean(path, clean):
    with open(path, "w", encoding="utf-8") as file:
        file.write("# What clang-tidy has found clean; written by tidy.py --record.\n")
        file.writelines(f"{total} {name}\n" for name, total in sorted(clean.items()))


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
    record = os.path.join(sources, "tests", "lint", "clean")
    clean = {} if "--all" in options else read_clean(record)
    wanted = [path for path in sorted(ours) if clean.get(path) != checksum(sources, path)]
    print(f"{len(wanted)} of {len(ours)} sources have changed since they were found clean", flush=True)
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
                clean[path] = checksum(sources, path)
                if "--record" in options:
                    write_clean(record, {name: total for name, total in clean.items() if name in ours})
    print(f"{len(bad)} sources with findings")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
