# SPDX-License-Identifier: GPL-2.0-or-later
"""What all journeys share: a desktop a class, a user and their programs a case."""

import os
import subprocess
import unittest

from desktop import Desktop
from program import Program, User

DEMOS = os.path.join(os.path.dirname(__file__), "..", "..", "packaging", "demos")
MARCH = os.path.abspath(os.path.join(DEMOS, "march.sng"))


class Journey(unittest.TestCase):
    SIZE = (1366, 768)
    MANAGER = True

    @classmethod
    def setUpClass(cls):
        cls.screen = Desktop(*cls.SIZE, manager=cls.MANAGER).start()
        cls.addClassCleanup(cls.screen.stop)

    def setUp(self):
        self.user = self.new_user()
        self.screen.move(self.SIZE[0] - 1, self.SIZE[1] - 1)

    def new_user(self, **environment):
        user = User(**environment)
        self.addCleanup(user.remove)
        return user

    def start(self, *words, user=None):
        program = Program(self.screen, user or self.user, *words)
        self.addCleanup(program.stop)
        self.addCleanup(self._keep_picture)  # while the program still runs
        return program

    def compose(self, *words, user=None):
        """A program whose composing window is open."""
        program = self.start(*words, user=user)
        program.start_composing()
        return program

    def small_disk(self, folder, size):
        """A file system that is soon full. Mounting one takes root's rights, which the tests' machines give."""
        done = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=" + size, "none", folder], capture_output=True,
                              text=True)
        self.assertEqual(done.returncode, 0, "a small file system is needed for this: " + done.stderr)
        self.addCleanup(subprocess.run, ["umount", "-l", folder], check=True)

    def _keep_picture(self):
        result = self._outcome.result
        if any(test is self for test, _ in result.failures + result.errors) or \
                any(error and test is self for test, error in getattr(self._outcome, "errors", [])):
            self.screen.save(f"journey-{self.id().rpartition('.')[2]}.ppm")

    def assertNear(self, colour, expected, slack=6):
        far = max(abs(a - b) for a, b in zip(colour, expected))
        self.assertLessEqual(far, slack, f"{colour} is not {expected}")
