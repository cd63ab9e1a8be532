# SPDX-License-Identifier: GPL-2.0-or-later
"""The program where it can't open a window: it says why, and ends. Usage: platform_test.py PATH-OF-VELMORA

A copy of it has a file beside it that leads Qt to a folder without plug-ins."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = None


class PlatformTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.copy = os.path.join(cls.folder, "velmora")
        shutil.copy(PROGRAM, cls.copy)
        cls.plugins = os.path.join(cls.folder, "plugins")
        with open(os.path.join(cls.folder, "qt.conf"), "w") as file:
            file.write(f"[Paths]\nPlugins={cls.plugins}\n")

    def said(self, program, **variables):
        """On its standard error, at the end with status 1."""
        env = {key: value for key, value in os.environ.items()
               if not key.startswith("QT_") and key not in ("DISPLAY", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE")}
        env.update(variables, HOME=self.folder, XDG_CONFIG_HOME=self.folder, XDG_RUNTIME_DIR=self.folder,
                   JACK_DEFAULT_SERVER="no_such_server", PULSE_SERVER="unix:" + self.folder + "/none")
        done = subprocess.run([program], env=env, capture_output=True, text=True, timeout=60, stdin=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 1, done.stderr)
        return done.stderr

    def test_under_wayland_without_its_plug_in_the_package_is_named(self):
        said = self.said(self.copy, WAYLAND_DISPLAY="wayland-0", XDG_SESSION_TYPE="wayland")
        self.assertIn("Install the package qt6-wayland.\n", said)
        self.assertNotIn("libqt6gui6", said)

    def test_under_x11_without_its_plug_in_the_package_is_named(self):
        said = self.said(self.copy, DISPLAY=":77")
        self.assertIn("Install the package libqt6gui6.\n", said)
        self.assertNotIn("qt6-wayland", said)

    def test_a_platform_that_is_asked_for_by_name_is_the_one_that_is_missed(self):
        said = self.said(self.copy, QT_QPA_PLATFORM="wayland", DISPLAY=":77")
        self.assertIn("Install the package qt6-wayland.\n", said)
        self.assertNotIn("libqt6gui6", said)

    def test_a_plug_in_elsewhere_is_found(self):
        platforms = os.path.join(self.plugins, "platforms")
        os.makedirs(platforms)
        self.addCleanup(shutil.rmtree, self.plugins)
        with open(os.path.join(platforms, "libqxcb.so"), "w") as file:
            file.write("not a library")
        self.assertIn("Qt says:", self.said(self.copy, DISPLAY=":77"))

    def test_without_a_screen_the_companion_is_named(self):
        for program in (PROGRAM, self.copy):
            said = self.said(program)
            self.assertIn("neither WAYLAND_DISPLAY nor DISPLAY is set", said)
            self.assertIn("velmora-cli", said)

    def test_a_screen_that_does_not_answer_is_told_in_the_words_of_qt(self):
        said = self.said(PROGRAM, DISPLAY=":12345")
        self.assertIn("can't open a window here", said)
        self.assertIn("Qt says:", said)

    def test_a_platform_of_no_name_is_told_in_the_words_of_qt(self):
        self.assertIn("Qt says:", self.said(PROGRAM, QT_QPA_PLATFORM="abacus"))


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
