# SPDX-License-Identifier: GPL-2.0-or-later
"""The program, as one user starts it: with folders of its own and without a sound server."""

import os
import re
import shutil
import subprocess
import tempfile

import desktop
from desktop import wait_for

path = None  # of the program
cli = None  # of its headless companion
START = r"^Velmora $"
FORM1 = r"^Velmora( - .*)?\*?$"  # an asterisk while something is unsaved
LABELS = {"File": 35, "Edit": 79, "Tools": 128, "Help": 178}
# The rows of the menus that journeys choose from; None is a line.
TOOLS = ("Play", None, "Setup Toolbar", "Editing Toolbar", "Recording Toolbar", "Percussion Tableau",
         "Classic behaviour", None, "Notation Style", "Appearance", "Button Styles", "Tooltext Style")
EDIT_HEIGHT, FILE_HEIGHT = 288, 272  # of 11 items with two lines, and of 10 with three
SAVE_DIALOG = "^Save music file"
TIP = "NQV-EXTOOLTIP"
SMALL_SOUNDFONT = "/usr/share/sounds/sf2/TimGM6mb.sf2"
REPORTS = re.compile(r"Sanitizer|runtime error|ASSERT|QPainter::|QObject::|terminate called")


class User:
    """Folders and environment; several programs of one user follow each other."""

    def __init__(self, **more):
        self.folder = tempfile.mkdtemp(prefix="user")
        self.more = more
        for name in ("home", "data", "config", "runtime"):
            os.mkdir(self.path(name), 0o700)
        self.keep()

    def path(self, *names):
        return os.path.join(self.folder, *names)

    @property
    def settings_path(self):
        return self.path("config", "velmora", "settings")

    def settings(self):
        try:
            with open(self.settings_path, encoding="utf-8", errors="replace") as file:
                lines = [line.rstrip("\n") for line in file if not line.startswith("#")]
        except OSError:
            return {}
        return {line.partition("=")[0].removeprefix("Settings/"): line.partition("=")[2] for line in lines}

    def keep(self, **values):
        """Settings of an earlier day; blanks in keys are given as underscores. The setup toolbar was closed, so that
        nothing lies over the composing window."""
        values = {"frmsetup": 0, **values}
        self.write_settings("".join(f"Settings/{key.replace('_', ' ')}={value}\n" for key, value in values.items()))

    def write_settings(self, text):
        os.makedirs(os.path.dirname(self.settings_path), exist_ok=True)
        with open(self.settings_path, "wb") as file:
            file.write(text if isinstance(text, bytes) else text.encode())

    def forget(self):
        """No settings at all, as before the first start."""
        shutil.rmtree(self.path("config", "velmora"))

    def setting_becomes(self, key, value):
        try:
            wait_for(lambda: self.settings().get(key) == value, "")
        except desktop.NotInTime:
            raise AssertionError(f"{key} is {self.settings().get(key)!r}, not {value!r}") from None

    def environment(self, screen):
        env = dict(screen.environment)
        for name in ("WAYLAND_DISPLAY", "QT_SCALE_FACTOR", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS", "TMPDIR"):
            env.pop(name, None)
        env.update(HOME=self.path("home"), VELMORA_HOME=self.path("data"), XDG_CONFIG_HOME=self.path("config"),
                   XDG_RUNTIME_DIR=self.path("runtime"), PULSE_SERVER="unix:" + self.path("no server"),
                   SDL_AUDIODRIVER="none of them", VELMORA_SOUNDFONT=SMALL_SOUNDFONT, JACK_DEFAULT_SERVER="no_such_server",
                   QT_QPA_PLATFORM="xcb", LC_ALL="C.UTF-8")
        env.update({key: value for key, value in self.more.items() if value is not None})
        for key in (key for key, value in self.more.items() if value is None):
            env.pop(key, None)
        return env

    def remove(self):
        shutil.rmtree(self.folder, ignore_errors=True)


class Program:
    def __init__(self, screen, user, *words):
        self.screen = screen
        self.user = user
        self.log = tempfile.TemporaryFile("w+")
        self.process = subprocess.Popen([path, *words], env=user.environment(screen), cwd=user.folder,
                                        stdin=subprocess.DEVNULL, stdout=self.log, stderr=self.log)

    def said(self):
        self.log.seek(0)
        return self.log.read()

    def running(self):
        return self.process.poll() is None

    def start_composing(self):
        """Presses Enter in the start window; the composing window's id."""
        start = self.screen.window(START)
        self.focus(start)
        self.screen.key("Return")
        return self.form1()

    def focus(self, window):
        if self.screen.with_manager:
            wait_for(lambda: self.screen.focused() == window, "the focus")
        else:
            self.screen.do("windowfocus", window)

    def form1(self):
        self.window = wait_for(lambda: self._composing_window(), "the composing window")
        if self.screen.with_manager:  # words may stand before it
            wait_for(lambda: self.screen.focused() == self.window or self.question(), "the focus")
        else:
            self.focus(self.window)
        return self.window

    def title_becomes(self, title):
        wait_for(lambda: self.screen.name(self.window) == title, "the title " + title)

    def save_as(self, path, dialog=SAVE_DIALOG):
        """Types the name into the dialog that asks for it. Under load Qt's dialog may only go to the file's folder, and
        Enter has to be pressed once more; and its list of names, which holds the mouse, may be seen longer than the
        dialog: a click at that moment would be the list's."""
        self.focus(self.screen.window(dialog))
        self.screen.key("ctrl+a")
        self.screen.type(path)
        self.screen.key("Return")
        try:
            wait_for(lambda: self.question() or not self.screen.windows(dialog), "an answer to Enter",
                     desktop.patience / 8)
        except desktop.NotInTime:
            self.screen.key("Return")
        wait_for(lambda: not self.popups(), "the end of the list of names")

    def _composing_window(self):
        if not self.running():
            raise AssertionError("the program has ended: " + self.said())
        if self.screen.windows(START):
            return None
        found = [w for w in self.screen.windows(FORM1)
                 if (self.screen.geometry(w) or (0, 0, 0, 0))[2] >= 600]
        return found[0] if found else None

    def place(self):
        return self.screen.geometry(self.window)

    def at(self, x, y):
        """A place in the composing window, on the screen. Negative ones count from the right and the foot."""
        left, top, width, height = self.place()
        return left + (x if x >= 0 else width + x), top + (y if y >= 0 else height + y)

    def laid_out(self):
        """Gives the program time to draw its title as wide as the window is now, which the server knows earlier: the last
        button is red then, in all skins but one. What follows shows whether it was enough."""
        def red():
            r, g, b = self.screen.pixel(*self.at(-27, 8))
            return r > 140 and g < 100 and b < 90
        try:
            wait_for(red, "the title at the window's new size", desktop.patience / 8)
        except desktop.NotInTime:
            pass

    def click(self, x, y, button=1):
        if y < 28:
            self.laid_out()
        self.screen.click(*self.at(x, y), button)

    def popup(self, count=1):
        """The innermost of the open menus once so many are open."""
        return wait_for(lambda: len(found := self.popups()) == count and found[-1], f"{count} open menus")

    def open_menu(self, label):
        self.click(LABELS[label], 40)
        return self.popup()

    def row(self, menu, rows, wanted):
        """Where a row of a menu stands on the screen."""
        left, top, width, _ = self.screen.geometry(menu)
        before = rows[:rows.index(wanted)]
        return left + width // 2, top + 4 + sum(24 if row else 8 for row in before) + 12

    def choose_from_tools(self, submenu, rows=(), wanted=None):
        """Tools > submenu > wanted, by the mouse."""
        tools = self.open_menu("Tools")
        self.screen.click(*self.row(tools, TOOLS, submenu))
        if wanted:
            self.screen.click(*self.row(self.popup(2), rows, wanted))
        wait_for(lambda: not self.popups(), "the menus' end")

    def popups(self):
        """The open menus, outermost first."""
        return self.screen.unmanaged(without=TIP)

    def ends(self, status=0):
        try:
            code = self.process.wait(desktop.patience)
        except subprocess.TimeoutExpired:
            raise AssertionError("the program doesn't end") from None
        said = self.said()
        if code != status:
            raise AssertionError(f"the program ended with {code}, not {status}:\n{said}")
        if REPORTS.search(said):
            raise AssertionError("the program reports:\n" + said)

    def close(self):
        """By its title button, with the answer Discard if it asks."""
        answered = lambda: not self.running() or self.question()
        for _ in range(3):  # the window may still be changing its size, and its button its place
            self.click(-19, 14)
            try:
                wait_for(answered, "", desktop.patience / 3)
                break
            except desktop.NotInTime:
                pass
        wait_for(answered, "the end or the question")
        if self.running():
            self.screen.key("alt+d")
        self.ends()

    def question(self):
        """The message box, if one is open."""
        for window in self.screen.windows(r"^Velmora$"):
            if window != getattr(self, "window", None) and "DIALOG" in self.screen.property(window, "_NET_WM_WINDOW_TYPE"):
                return window
        return None

    def stop(self):
        if self.running():
            self.process.kill()
            self.process.wait()
        self.log.close()
