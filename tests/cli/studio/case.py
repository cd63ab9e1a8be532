# SPDX-License-Identifier: GPL-2.0-or-later
"""What every case of the studio's commands stands on: a folder of its own, no sound server, limits of time and memory."""

import os
import resource
import shutil
import signal
import subprocess
import tempfile
import time
import unittest
from typing import NamedTuple

SMALL_SOUNDFONT = "/usr/share/sounds/sf2/TimGM6mb.sf2"
PATIENCE = 120  # seconds that a command may take on a machine with other work

cli = None  # the path of velmora-cli
sanitized = False  # a sanitizer reserves memory by the terabyte and is slow
rounds = None  # how often random cases run, if more than usual
seed = None


class Done(NamedTuple):
    returncode: int
    stdout: str
    stderr: str
    memory: int  # most bytes resident
    processor: float  # seconds
    seconds: float


def _limited(file_size):
    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_DFL)
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if file_size is not None:
            resource.setrlimit(resource.RLIMIT_FSIZE, (file_size, file_size))
    return limit


def wait_until(condition, what, seconds=30):
    end = time.monotonic() + seconds
    while not (answer := condition()):
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not within {seconds} s")
        time.sleep(0.02)
    return answer


class Running:
    """A command at work."""

    def __init__(self, words, folder, environment, file_size=None, given=None):
        self.out, self.errors = tempfile.TemporaryFile(), tempfile.TemporaryFile()
        self.given = tempfile.TemporaryFile()
        self.given.write(given or b"")
        self.given.seek(0)
        self.began = time.monotonic()
        self.words = words
        self.process = subprocess.Popen(words, cwd=folder, env=environment, stdin=self.given, stdout=self.out,
                                        stderr=self.errors, preexec_fn=_limited(file_size))
        self.done = None

    def send(self, number):
        os.kill(self.process.pid, number)  # which, unlike Popen, doesn't reap it

    @staticmethod
    def _text(file):
        file.seek(0)
        with file:
            return file.read().decode("utf-8", "surrogateescape")

    def told(self):
        """Standard output until now."""
        return os.pread(self.out.fileno(), 1 << 20, 0).decode("utf-8", "surrogateescape")

    def wait(self, patience=PATIENCE):
        end = time.monotonic() + patience
        pause = 0.001
        while True:
            pid, status, usage = os.wait4(self.process.pid, os.WNOHANG)
            if pid:
                break
            if time.monotonic() > end:
                self.stop()
                raise AssertionError(f"{self.words}: not done within {patience} s; it said {self._text(self.errors)!r}")
            time.sleep(pause)
            pause = min(0.005, pause * 1.5)
        self.process.returncode = code = os.waitstatus_to_exitcode(status)
        self.given.close()
        self.done = Done(code, self._text(self.out), self._text(self.errors), usage.ru_maxrss * 1024,
                         usage.ru_utime + usage.ru_stime, time.monotonic() - self.began)
        return self.done

    def stop(self):
        if self.process.returncode is None:
            self.process.kill()
            self.process.wait()


class StudioCase(unittest.TestCase):
    maxDiff = 2000

    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.home = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.home)
        self.environment = {**os.environ, "HOME": self.home, "XDG_CONFIG_HOME": self.home, "XDG_DATA_HOME": self.home,
                            "PULSE_SERVER": "unix:" + os.path.join(self.home, "no server"),
                            "SDL_AUDIODRIVER": "none of them",
                            "JACK_DEFAULT_SERVER": "no_such_server", "LC_ALL": "C.UTF-8"}
        self.environment.pop("DISPLAY", None)

    # Files

    def path(self, name):
        return os.path.join(self.folder, name)

    def save(self, name, data):
        with open(self.path(name), "wb") as file:
            file.write(data)
        return name

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def names(self):
        return sorted(os.listdir(self.folder))

    # Commands, which run in the folder: files are named as they stand there

    def start(self, *words, **more):
        running = Running([cli, *map(str, words)], self.folder, {**self.environment, **more.pop("env", {})}, **more)
        self.addCleanup(running.stop)
        return running

    def run_cli(self, *words, patience=PATIENCE, **more):
        done = self.start(*words, **more).wait(patience)
        self.assertIn(done.returncode, (0, 1, 2), (words, done.stderr))
        return done

    def succeed(self, *words, **more):
        done = self.run_cli(*words, **more)
        self.assertEqual(done.returncode, 0, (words, done.stderr))
        return done

    def fail_naming(self, name, *words, **more):
        """Exit status 1, one line on standard error that names `name`, and no other word than the command's own."""
        done = self.run_cli(*words, **more)
        self.assertEqual(done.returncode, 1, (words, done.stdout, done.stderr))
        self.assertEqual(len(done.stderr.splitlines()), 1, (words, done.stderr))
        self.assertIn(name, done.stderr, words)
        return done

    def misuse(self, *words, **more):
        """Wrong usage: exit status 2, in words, and nothing on standard output."""
        before = self.names()
        done = self.run_cli(*words, **more)
        self.assertEqual((done.returncode, done.stdout), (2, ""), (words, done.stderr))
        self.assertTrue(done.stderr.strip(), words)
        self.assertEqual(self.names(), before, words)

    def facts(self, name):
        """What `info` tells of one file: {fact: text}."""
        lines = self.succeed("info", name).stdout.splitlines()
        return dict(line.split(": ", 1) for line in lines if line)

    def frames(self, name):
        return int(self.facts(name)["Frames"])

    def assertLittleMemory(self, done, plain, *more):
        """At most 32 MiB more than `plain` bytes; of a sanitizer's build nothing can be said."""
        if not sanitized:
            self.assertLess(done.memory, plain + (32 << 20), more)

    def assertNear(self, value, wanted, tolerance, *more):
        self.assertLessEqual(abs(value - wanted), tolerance, (value, wanted, *more))
