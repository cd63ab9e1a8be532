# SPDX-License-Identifier: GPL-2.0-or-later
"""What a process writes that has no name of its own yet."""

import os


def count(pid, folder):
    """How many files of the folder the process has on their way: without a name, or with a hidden one."""
    folder = os.path.realpath(folder)
    found = 0
    try:
        descriptors = os.listdir(f"/proc/{pid}/fd")
    except OSError:
        return 0
    for descriptor in descriptors:
        try:
            file = os.readlink(f"/proc/{pid}/fd/{descriptor}")
        except OSError:
            continue
        found += file.startswith((folder + "/#", folder + "/.velmora-"))
    return found
