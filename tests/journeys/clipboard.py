# SPDX-License-Identifier: GPL-2.0-or-later
"""What a program gives to whoever pastes: asked of the X server, as another program would."""

import ctypes

from desktop import wait_for

SELECTION_NOTIFY = 31

_x = ctypes.CDLL("libX11.so.6")
_Id = ctypes.c_ulong
for _name, _answer in (("XOpenDisplay", ctypes.c_void_p), ("XDefaultRootWindow", _Id), ("XInternAtom", _Id),
                       ("XCreateSimpleWindow", _Id), ("XGetSelectionOwner", _Id)):
    getattr(_x, _name).restype = _answer


class Clipboard:
    """A window that pastes, for as long as a `with` lasts."""

    def __init__(self, display):
        self._display = ctypes.c_void_p(_x.XOpenDisplay(display.encode()))
        if not self._display:
            raise RuntimeError("no X server at " + display)
        root = _Id(_x.XDefaultRootWindow(self._display))
        self._window = _Id(_x.XCreateSimpleWindow(self._display, root, 0, 0, 1, 1, 0, _Id(0), _Id(0)))

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        _x.XCloseDisplay(self._display)

    def forget(self):
        """What was copied before is no longer to be had."""
        _x.XSetSelectionOwner(self._display, self._atom("CLIPBOARD"), _Id(0), _Id(0))
        _x.XSync(self._display, 0)

    def is_filled(self):
        return bool(_x.XGetSelectionOwner(self._display, self._atom("CLIPBOARD")))

    def text(self):
        _x.XConvertSelection(self._display, self._atom("CLIPBOARD"), self._atom("UTF8_STRING"), self._atom("PASTED"),
                             self._window, _Id(0))
        event = (ctypes.c_long * 24)()
        wait_for(lambda: _x.XCheckTypedWindowEvent(self._display, self._window, SELECTION_NOTIFY, ctypes.byref(event)),
                 "the clipboard's text")
        kind, count, left = _Id(), _Id(), _Id()
        form = ctypes.c_int()
        data = ctypes.c_void_p()
        _x.XGetWindowProperty(self._display, self._window, self._atom("PASTED"), ctypes.c_long(0),
                              ctypes.c_long(1 << 20), 1, _Id(0), ctypes.byref(kind), ctypes.byref(form), ctypes.byref(count),
                              ctypes.byref(left), ctypes.byref(data))
        if not data.value:
            return ""
        text = ctypes.string_at(data.value, count.value).decode()
        _x.XFree(data)
        return text

    def _atom(self, name):
        return _Id(_x.XInternAtom(self._display, name.encode(), 0))
