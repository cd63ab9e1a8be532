# SPDX-License-Identifier: GPL-2.0-or-later
"""A JACK server without hardware, and a keyboard plugged into it.

Started as a program, with a client's name, it is that keyboard, and plays the messages that it reads, of three bytes
each."""

import ctypes
import ctypes.util
import os
import subprocess
import sys


# One name for all: JACK counts the servers that were killed, and takes a place back only for one of the same name.
NAME = "velmora-journey"


class JackServer:
    def __init__(self):
        self.environment = {**os.environ, "JACK_DEFAULT_SERVER": NAME, "JACK_NO_START_SERVER": "1",
                            "JACK_NO_AUDIO_RESERVATION": "1"}
        self.process = subprocess.Popen(
            ["jackd", "--name", NAME, "--no-realtime", "--no-mlock", "--sync", "--timeout", "500", "-d", "dummy",
             "-r", "44100", "-p", "256"], env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)

    def stop(self):
        self.process.terminate()
        self.process.wait(20)

    def plug_in(self, name):
        return JackKeys(self, name)


class JackKeys:
    """A process of its own, which a person may pull out."""

    def __init__(self, server, name):
        for _ in range(40):  # the server may be starting
            self.process = subprocess.Popen([sys.executable, "-B", __file__, name], env=server.environment,
                                            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            if self.process.stdout.read(1):
                return
            self.process.wait()
        raise AssertionError("no JACK server")

    def play(self, *message):
        self.process.stdin.write(bytes(message))
        self.process.stdin.flush()

    def pull_out(self):
        if self.process.poll() is None:
            self.process.stdin.close()
            self.process.stdout.close()
            self.process.wait(20)


def be_a_keyboard(name):
    jack = ctypes.CDLL(ctypes.util.find_library("jack"))
    for call in ("jack_client_open", "jack_port_register", "jack_port_get_buffer", "jack_midi_event_reserve"):
        getattr(jack, call).restype = ctypes.c_void_p
    client = jack.jack_client_open(name.encode(), 1, None)  # which starts no server
    if not client:
        return 1
    client = ctypes.c_void_p(client)
    port = ctypes.c_void_p(jack.jack_port_register(client, b"Out", b"8 bit raw midi", 2, 0))
    waiting = []

    @ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_uint32, ctypes.c_void_p)
    def process(frames, _):
        buffer = ctypes.c_void_p(jack.jack_port_get_buffer(port, frames))
        jack.jack_midi_clear_buffer(buffer)
        while waiting:
            event = jack.jack_midi_event_reserve(buffer, 0, ctypes.c_size_t(3))
            if not event:
                break
            ctypes.memmove(event, waiting.pop(0), 3)
        return 0

    jack.jack_set_process_callback(client, process, None)
    jack.jack_activate(client)
    sys.stdout.write(".")
    sys.stdout.flush()
    while message := sys.stdin.buffer.raw.read(3):
        waiting.append(message)
    jack.jack_deactivate(client)
    jack.jack_client_close(client)
    return 0


if __name__ == "__main__":
    sys.exit(be_a_keyboard(sys.argv[1]))
