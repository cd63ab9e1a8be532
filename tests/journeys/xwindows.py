# SPDX-License-Identifier: GPL-2.0-or-later
"""Which windows are on a screen: asked of the X server directly, since a process a question takes too long."""

import ctypes
from typing import NamedTuple

VIEWABLE = 2
DEEPEST = 3  # a manager's frames stand between the root and a program's windows

_x = ctypes.CDLL("libX11.so.6")
_Window = ctypes.c_ulong
_Handler = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)
_ignore = _Handler(lambda display, error: 0)  # a window may go while we ask


class _Attributes(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int) for name in ("x", "y", "width", "height", "border", "depth")] + [
        ("visual", ctypes.c_void_p), ("root", _Window), ("kind", ctypes.c_int), ("bit_gravity", ctypes.c_int),
        ("win_gravity", ctypes.c_int), ("backing_store", ctypes.c_int), ("planes", ctypes.c_ulong),
        ("pixel", ctypes.c_ulong), ("save_under", ctypes.c_int), ("colormap", ctypes.c_ulong),
        ("map_installed", ctypes.c_int), ("map_state", ctypes.c_int), ("all_events", ctypes.c_long),
        ("your_events", ctypes.c_long), ("no_propagate", ctypes.c_long), ("override", ctypes.c_int),
        ("screen", ctypes.c_void_p)]


class _ClassHint(ctypes.Structure):
    _fields_ = [("name", ctypes.c_void_p), ("of_class", ctypes.c_void_p)]


for _name, _answer in (("XOpenDisplay", ctypes.c_void_p), ("XDefaultRootWindow", _Window)):
    getattr(_x, _name).restype = _answer


class Seen(NamedTuple):
    id: int
    name: str
    unmanaged: bool  # a menu or a tip, which no window manager places


class XWindows:
    def __init__(self, display):
        _x.XSetErrorHandler(_ignore)
        self._display = ctypes.c_void_p(_x.XOpenDisplay(display.encode()))
        if not self._display:
            raise RuntimeError("no X server at " + display)
        self._root = _Window(_x.XDefaultRootWindow(self._display))

    def close(self):
        _x.XCloseDisplay(self._display)

    def visible(self, of_class):
        """Those that can be seen, from the lowest to the uppermost."""
        found = []
        self._visit(self._root, of_class, 0, found)
        return found

    def geometry(self, window):
        """Left, top, width and height on the screen; None for a window that is gone."""
        attributes = _Attributes()
        if not _x.XGetWindowAttributes(self._display, _Window(window), ctypes.byref(attributes)):
            return None
        left, top, child = ctypes.c_int(), ctypes.c_int(), _Window()
        _x.XTranslateCoordinates(self._display, _Window(window), self._root, 0, 0, ctypes.byref(left),
                                 ctypes.byref(top), ctypes.byref(child))
        return left.value, top.value, attributes.width, attributes.height

    def focused(self):
        """The window that the keyboard's keys go to."""
        window, revert = _Window(), ctypes.c_int()
        _x.XGetInputFocus(self._display, ctypes.byref(window), ctypes.byref(revert))
        return window.value

    def name(self, window):
        return self._name_of(_Window(window))

    def _visit(self, window, of_class, depth, found):
        root, parent, count = _Window(), _Window(), ctypes.c_uint()
        children = ctypes.POINTER(_Window)()
        if not _x.XQueryTree(self._display, window, ctypes.byref(root), ctypes.byref(parent),
                             ctypes.byref(children), ctypes.byref(count)):
            return
        ids = children[:count.value] if children else []
        if children:
            _x.XFree(children)
        for id_ in ids:
            child = _Window(id_)
            attributes = _Attributes()
            if not _x.XGetWindowAttributes(self._display, child, ctypes.byref(attributes)) or \
                    attributes.map_state != VIEWABLE:
                continue
            if self._class_of(child) == of_class:
                found.append(Seen(id_, self._name_of(child), bool(attributes.override)))
            elif depth + 1 < DEEPEST:
                self._visit(child, of_class, depth + 1, found)

    def _class_of(self, window):
        hint = _ClassHint()
        if not _x.XGetClassHint(self._display, window, ctypes.byref(hint)):
            return None
        return [self._taken(text) for text in (hint.name, hint.of_class)][1]

    def _name_of(self, window):
        name = ctypes.c_void_p()
        return self._taken(name.value) if _x.XFetchName(self._display, window, ctypes.byref(name)) else ""

    @staticmethod
    def _taken(text):
        if not text:
            return ""
        value = ctypes.string_at(text).decode("utf-8", "replace")
        _x.XFree(ctypes.c_void_p(text))
        return value
