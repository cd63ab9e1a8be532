# SPDX-License-Identifier: GPL-2.0-or-later
"""Runs a program of tests whose cases wait most of the time, in so many processes that share its cases and nothing else.

Usage: side_by_side.py COUNT PROGRAM [WORD ...]"""

import os
import subprocess
import sys
import tempfile


def main(count, *command):
    logs = [tempfile.TemporaryFile() for _ in range(count)]
    shards = [subprocess.Popen(command, stdout=log, stderr=log,
                               env={**os.environ, "GTEST_TOTAL_SHARDS": str(count), "GTEST_SHARD_INDEX": str(index)})
              for index, log in enumerate(logs)]
    codes = [shard.wait() for shard in shards]
    for log in logs:
        log.seek(0)
        sys.stdout.buffer.write(log.read())
    return any(codes)


if __name__ == "__main__":
    sys.exit(main(int(sys.argv[1]), *sys.argv[2:]))
