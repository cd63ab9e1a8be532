# SPDX-License-Identifier: GPL-2.0-or-later
"""What ./run tells while it installs and builds, with programs of the test's own in the place of the real ones.
Usage: run_test.py SOURCES"""

import os
import pty
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

SOURCES = None

CMAKE = """#!/bin/sh
case "$1" in
--preset) echo "-- Configuring done"; exit 0 ;;
esac
echo "$*" >targets
{build}
mkdir -p build/release/app build/release/cli
printf '#!/bin/sh\\necho "started $*"\\n' >build/release/app/velmora
printf '#!/bin/sh\\necho "companion $*"\\n' >build/release/cli/velmora-cli
chmod +x build/release/app/velmora build/release/cli/velmora-cli
"""
STEPS = 'i=0; while [ $i -lt 40 ]; do i=$((i + 1)); echo "[$i/40] Building CXX object $i.o"; done'
FAILS = 'echo "[1/40] Building a.o"; echo "a.cpp:3: error: no such thing"; exit 1'
HANGS = 'echo "[1/40] Building a.o"; touch building; exec sleep 60'
APT = """#!/bin/sh
echo "$*" >>{folder}/apt
case "$*" in
*update*) echo "Hit:1 somewhere"; exit 0 ;;
esac
{install}
"""


class RunTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.tree = os.path.join(self.folder, "tree")
        os.makedirs(os.path.join(self.tree, "packaging"))
        for name in ("run", "packaging/install-packages", "packaging/progress", "packaging/apt-packages"):
            shutil.copy(os.path.join(SOURCES, name), os.path.join(self.tree, name))
        self.bin = os.path.join(self.folder, "bin")
        os.mkdir(self.bin)
        self.tool("dpkg-query", "#!/bin/sh\necho install ok installed\n")
        self.tool("sudo", '#!/bin/sh\nexec "$@"\n')
        self.builds(STEPS)

    def tool(self, name, text):
        path = os.path.join(self.bin, name)
        with open(path, "w") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def builds(self, words):
        self.tool("cmake", CMAKE.format(build=words))

    def misses_packages(self, install):
        self.tool("dpkg-query", "#!/bin/sh\ncase $3 in cmake | ccache) exit 1 ;; esac\necho install ok installed\n")
        self.tool("apt-get", APT.format(folder=self.folder, install=install))

    def environment(self):
        return dict(os.environ, PATH=self.bin + ":" + os.environ["PATH"], DISPLAY=":0")

    def run_it(self, *words):
        done = subprocess.run([os.path.join(self.tree, "run"), *words], env=self.environment(), cwd=self.folder,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)
        return done.returncode, done.stdout, done.stderr

    def read(self, *names):
        with open(os.path.join(self.tree, *names), encoding="utf-8") as file:
            return file.read()

    def test_into_a_pipe_it_tells_now_and_then_how_far_it_is_and_starts_the_program(self):
        status, said, errors = self.run_it("tune.sng")
        self.assertEqual((status, errors), (0, ""))
        lines = said.splitlines()
        self.assertEqual(lines[-1], "started tune.sng")
        self.assertEqual(lines[0], f"The log is {self.tree}/build.log.")
        counted = [line for line in lines if line.startswith("Building ")]
        self.assertTrue(8 <= len(counted) <= 12, said)
        self.assertTrue(counted[-1].startswith("Building 40 of 40"), said)
        self.assertEqual(self.read("build.log").count("Building CXX object"), 40)

    def test_only_the_program_and_its_companion_are_built(self):
        self.run_it()
        self.assertTrue(self.read("targets").endswith("--target velmora velmora-cli\n"))

    def test_a_build_with_nothing_to_do_says_nothing(self):
        self.builds('echo "ninja: no work to do."')
        self.assertEqual(self.run_it()[1], "started \n")

    def test_on_a_terminal_one_line_is_rewritten(self):
        ours, theirs = pty.openpty()
        process = subprocess.Popen([os.path.join(self.tree, "run")], env=self.environment(), cwd=self.folder,
                                   stdin=theirs, stdout=theirs, stderr=theirs)
        os.close(theirs)
        said = b""
        while True:
            try:
                part = os.read(ours, 4096)
            except OSError:  # the other end is closed
                break
            if not part:
                break
            said += part
        os.close(ours)
        self.assertEqual(process.wait(30), 0)
        self.assertEqual(said.count(b"\rBuilding "), 40)
        self.assertEqual(said.count(b"\n"), 3, said)  # the log's name, the counter's end, the program

    def test_a_build_that_fails_shows_why_and_starts_nothing(self):
        self.builds(FAILS)
        status, said, errors = self.run_it()
        self.assertEqual(status, 1)
        self.assertIn("error: no such thing", errors)
        self.assertIn(f"all of it in {self.tree}/build.log.", errors)
        self.assertNotIn("started", said)

    def test_ctrl_c_ends_it_with_a_word(self):
        self.builds(HANGS)
        process = subprocess.Popen([os.path.join(self.tree, "run")], env=self.environment(), cwd=self.folder,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                   start_new_session=True)
        end = time.monotonic() + 30
        while not os.path.exists(os.path.join(self.tree, "building")):
            self.assertLess(time.monotonic(), end)
            time.sleep(0.02)
        os.killpg(process.pid, signal.SIGINT)
        said, errors = process.communicate(timeout=30)
        self.assertEqual(process.returncode, 130)
        self.assertIn("Stopped.", errors)
        self.assertNotIn("failed", errors)
        self.assertNotIn("started", said)

    def test_missing_packages_are_named_in_a_line_and_the_rest_goes_to_a_log(self):
        self.misses_packages("echo pmstatus:cmake:50.0:Unpacking; echo 650 lines of it")
        status, said, errors = self.run_it()
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(said.splitlines()[0], "Installing 2 packages that are missing: ccache cmake")
        self.assertNotIn("650 lines", said)
        self.assertIn("650 lines", self.read("packages.log"))
        with open(os.path.join(self.folder, "apt")) as file:
            self.assertIn("ccache cmake\n", file.read())

    def test_packages_that_cannot_be_had_end_it(self):
        self.misses_packages('echo "E: Unable to locate package" >&2; exit 100')
        status, said, errors = self.run_it()
        self.assertEqual(status, 1)
        self.assertIn("E: Unable to locate package", errors)
        self.assertIn("could not be installed", errors)
        self.assertNotIn("started", said)

    def test_with_demo_it_plays_and_converts(self):
        status, said, _ = self.run_it("--demo")
        self.assertEqual(status, 0)
        self.assertIn("companion play " + self.tree + "/packaging/demos/welcome.sng", said)
        for name in ("demo.wav", "demo.mid", "demo.mp3"):
            self.assertIn(f"Wrote {self.folder}/{name}", said)


if __name__ == "__main__":
    SOURCES = sys.argv.pop(1)
    unittest.main(verbosity=2)
