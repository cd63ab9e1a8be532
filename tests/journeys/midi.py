# SPDX-License-Identifier: GPL-2.0-or-later
"""What a program that is not ours lists of a MIDI file."""


def channels_with_notes(listed):
    """MIDI channels that notes begin on, of midicsv's lines."""
    rows = (line.split(", ") for line in listed.splitlines())
    return {int(row[3]) for row in rows if row[2] == "Note_on_c" and row[5] != "0"}
