# SPDX-License-Identifier: GPL-2.0-or-later
"""A screen of the tests' own: an X server without a screen, a window manager, a mouse and a keyboard.

The server keeps its screen in a file, so that looking at a pixel costs no process."""

import mmap
import os
import re
import select
import shutil
import struct
import subprocess
import tempfile
import time

from xwindows import XWindows

NEEDED = ("Xvfb", "openbox", "xdotool", "xprop", "xrandr")

# No resistance at the edges and no animation: a drag ends where the mouse is let go. No click to focus: it holds the
# mouse back until the manager has answered, and the server then gives all motions of a hand that was faster the last
# one's place.
MANAGER_SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <resistance><strength>0</strength><screen_edge_strength>0</screen_edge_strength></resistance>
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse><raiseOnFocus>no</raiseOnFocus></focus>
  <placement><policy>Smart</policy></placement>
  <theme><animateIconify>no</animateIconify></theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <resize><drawContents>yes</drawContents><popupShow>Never</popupShow></resize>
  <keyboard><keybind key="A-F4"><action name="Close"/></keybind></keyboard>
  <mouse/>
</openbox_config>
"""

patience = 10.0  # seconds that anything may take; longer under a sanitizer


class NotInTime(AssertionError):
    pass


def wait_for(condition, what, seconds=None):
    """The first true answer of the condition. What is asked for must come by itself: nobody sleeps as a proof."""
    end = time.monotonic() + (seconds or patience)
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise NotInTime(f"{what}: not within {seconds or patience:.0f} s")
        time.sleep(0.015)


class Desktop:
    def __init__(self, width=1366, height=768, manager=True):
        self.size = (width, height)
        self.with_manager = manager
        self.processes = []
        self.x = None

    def start(self):
        missing = [tool for tool in NEEDED if not shutil.which(tool)]
        if missing:
            raise RuntimeError("these journeys need " + ", ".join(missing))
        self.folder = tempfile.mkdtemp(prefix="journey")
        try:
            self._start_server()
            if self.with_manager:
                self._start_manager()
        except BaseException:
            self.stop()
            raise
        return self

    def stop(self):
        if self.x:
            self.x.close()
        for process in reversed(self.processes):
            process.terminate()
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        self.processes = []
        shutil.rmtree(self.folder, ignore_errors=True)

    def _spawn(self, *words, **more):
        log = open(os.path.join(self.folder, words[0] + ".log"), "w")
        process = subprocess.Popen(words, stdout=log, stderr=log, stdin=subprocess.DEVNULL, **more)
        log.close()
        self.processes.append(process)
        return process

    def _start_server(self):
        read, write = os.pipe()
        size = "{}x{}x24".format(*self.size)
        self._spawn("Xvfb", "-displayfd", str(write), "-screen", "0", size, "-nolisten", "tcp", "-noreset",
                    "-fbdir", self.folder, pass_fds=[write])
        os.close(write)
        if not select.select([read], [], [], 30)[0]:
            raise RuntimeError("Xvfb doesn't start")
        number = ""
        while not number.endswith("\n"):  # it ends if nobody reads the end of the line
            more = os.read(read, 64).decode()
            if not more:
                break
            number += more
        os.close(read)
        number = number.strip()
        if not number:
            raise RuntimeError("Xvfb doesn't start: " + open(self.folder + "/Xvfb.log").read())
        self.environment = dict(os.environ, DISPLAY=":" + number, HOME=self.folder)
        with open(os.path.join(self.folder, "Xvfb_screen0"), "rb") as screen:
            self.screen = mmap.mmap(screen.fileno(), 0, prot=mmap.PROT_READ)
        self.x = XWindows(":" + number)
        header = struct.unpack(">25I", self.screen[:100])
        self.first_pixel = header[0] + 12 * header[19]  # behind the header and the table of colours
        self.line = header[12]

    def _start_manager(self):
        settings = os.path.join(self.folder, "rc.xml")
        with open(settings, "w") as file:
            file.write(MANAGER_SETTINGS)
        self._spawn("openbox", "--sm-disable", "--config-file", settings, env=self.environment)
        wait_for(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                 "a window manager", 30)

    def split(self, first):
        """Makes two screens of the one, side by side; the left one is so wide."""
        width, height = self.size
        for monitor in (("one", f"{first}/361x{height}/529+0+0", "screen"),
                        ("two", f"{width - first}/375x{height}/265+{first}+0", "none")):
            subprocess.run(["xrandr", "--setmonitor", *monitor], check=True, env=self.environment, timeout=60,
                           capture_output=True)

    # What is on the screen.

    def run(self, *words):
        done = subprocess.run(words, capture_output=True, text=True, env=self.environment, timeout=60)
        return done.stdout

    def pixel(self, x, y):
        if not (0 <= x < self.size[0] and 0 <= y < self.size[1]):
            raise AssertionError(f"{x}, {y} is outside the screen")
        at = self.first_pixel + y * self.line + 4 * x
        blue, green, red = self.screen[at:at + 3]
        return red, green, blue

    def picture(self, x, y, width, height):
        """The lines of a part of the screen, to be compared."""
        x, y = max(0, x), max(0, y)
        starts = (self.first_pixel + line * self.line + 4 * x for line in range(y, min(y + height, self.size[1])))
        return [self.screen[start:start + 4 * width] for start in starts]

    def save(self, file):
        """The whole screen as a picture, for whoever asks why."""
        width, height = self.size
        with open(file, "wb") as out:
            out.write(b"P6 %d %d 255\n" % self.size)
            for line in self.picture(0, 0, width, height):
                pixels = bytearray(3 * width)
                pixels[0::3], pixels[1::3], pixels[2::3] = line[2::4], line[1::4], line[0::4]
                out.write(pixels)

    def windows(self, name=""):
        """The program's windows to be seen, by a pattern of their name."""
        return [seen.id for seen in self.x.visible("velmora") if re.search(name, seen.name)]

    def unmanaged(self, without):
        """What no window manager places, such as menus, from the lowest to the uppermost."""
        return [seen.id for seen in self.x.visible("velmora") if seen.unmanaged and seen.name != without]

    def window(self, name):
        return wait_for(lambda: self.windows(name), f"a window named {name}")[0]

    def gone(self, name):
        wait_for(lambda: not self.windows(name), f"the end of the window named {name}")

    def geometry(self, window):
        """Left, top, width and height; None for a window that is gone."""
        return self.x.geometry(window)

    def geometry_becomes(self, window, expected):
        last = [None]

        def there():
            last[0] = self.geometry(window)
            return last[0] == tuple(expected)
        try:
            wait_for(there, "")
        except NotInTime:
            raise AssertionError(f"the window stands at {last[0]}, not at {tuple(expected)}") from None

    def property(self, window, name):
        target = ("-root",) if window is None else ("-id", str(window))
        return self.run("xprop", *target, name).partition("=")[2].strip()

    def managed(self):
        """What the window manager lists, as a taskbar does."""
        line = self.run("xprop", "-root", "_NET_CLIENT_LIST").partition("#")[2]
        return [int(word, 16) for word in line.replace(",", " ").split()]

    def focused(self):
        return self.x.focused()

    def name(self, window):
        return self.x.name(window)

    # What a hand does.

    def do(self, *words):
        subprocess.run(["xdotool", *map(str, words)], check=True, env=self.environment, timeout=60,
                       capture_output=True)

    def move(self, x, y):
        self.do("mousemove", x, y)

    def click(self, x, y, button=1):
        self.do("mousemove", x, y, "click", button)

    def double_click(self, x, y):
        self.do("mousemove", x, y, "click", "--repeat", 2, "--delay", 40, 1)

    def drag(self, start, by, until):
        """Moves the mouse with its button held, and lets go once `until` is true."""
        self.do("mousemove", *start, "mousedown", 1)
        try:
            for part in (6, 3, 2, 1):
                self.do("mousemove", start[0] + by[0] // part, start[1] + by[1] // part)
            wait_for(until, "what a drag does")
        finally:
            self.do("mouseup", 1)

    def drag_window(self, window, start, by, expected):
        """Drags until the window stands as expected, and takes hold of it again if it doesn't follow."""
        for _ in range(3):
            if self._drag_once(window, start, by, expected):
                break
        self.geometry_becomes(window, expected)

    def _drag_once(self, window, start, by, expected):
        """False if the window hasn't moved in the time of 16 nudges. A manager may count from where the mouse was when
        it heard of the drag, so the hand follows what it sees, as anyone's does."""
        begun = self.geometry(window)
        left, top, width, height = expected
        hand, seen, nudges = [start[0] + by[0], start[1] + by[1]], [], 0

        def over():
            nonlocal nudges
            now = self.geometry(window)
            if now == tuple(expected):
                return True
            seen.append(now)
            if len(seen) < 12 or seen[-12:] != [now] * 12:
                return False
            seen.clear()
            if now == begun:  # the manager may not have heard of the drag yet
                step = -1 if nudges % 2 else 1
                hand[:] = hand[0] + step, hand[1] + step
                nudges += 1
            else:
                hand[0] += (left - now[0]) or (left + width - now[0] - now[2])
                hand[1] += (top - now[1]) or (top + height - now[1] - now[3])
            self.do("mousemove", *hand)
            return nudges == 16
        try:
            self.drag(start, by, over)
        except NotInTime:
            pass
        return nudges < 16

    def key(self, *keys):
        self.do("key", *keys)

    def type(self, text):
        self.do("type", "--delay", 2, "--", text)
