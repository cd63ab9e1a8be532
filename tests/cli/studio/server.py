# SPDX-License-Identifier: GPL-2.0-or-later
"""A sound server of the tests' own, heard at its full rate, bit for bit; and a JACK server beside it."""

import os
import subprocess
import sys

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "journeys"))
from desktop import wait_for  # noqa: E402
from jack import JackServer  # noqa: E402, F401
from sound import SoundServer  # noqa: E402


class Server(SoundServer):
    def control(self, *words):
        return subprocess.run(["pactl", *words], env=self.environment, check=True, capture_output=True, text=True).stdout

    def __enter__(self):
        wait_for(self._answers, "the sound server's answer")
        self.control("set-default-sink", "out")
        return self

    def __exit__(self, *failure):
        self.stop()

    def _answers(self):
        return subprocess.run(["pactl", "info"], env=self.environment, capture_output=True).returncode == 0

    def listen_to(self, work, device="out.monitor"):
        """The 16-bit samples that the sink gives while `work()` runs."""
        with open(os.path.join(self.environment["PULSE_RUNTIME_PATH"], "heard"), "w+b") as file:
            ear = subprocess.Popen(["parec", "--device=" + device, "--format=s16le", "--rate=44100", "--channels=2",
                                    "--raw",
                                    "--latency-msec=50"], env=self.environment, stdout=file)
            try:
                wait_for(lambda: os.fstat(file.fileno()).st_size > 0, "what the sound server gives, silence at least")
                work()
                size = os.fstat(file.fileno()).st_size
                wait_for(lambda: os.fstat(file.fileno()).st_size > size + 4 * 22050, "half a second more")
            finally:
                ear.terminate()
                ear.wait(10)
            file.seek(0)
            return file.read()
