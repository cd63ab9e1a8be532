# SPDX-License-Identifier: GPL-2.0-or-later
"""A lyrics file read and written a second time from its rules."""

from typing import NamedTuple

# The word `lyrics` prints, the key in the file, what the writer puts before the value, the value of a fresh panel.
FIELDS = (("title", "Title=", "Title=", ""), ("width", "MDIScore.Width=", "MDIScore.Width=", 0),
          ("sheet-width", "MDIScore.ActiveForm.Width=", "MDIScore.ActiveForm.Width=", 0),
          ("spacer", "Label3=", "Label3=", 60), ("bar-width", "Lbar=", "Lbar= ", 60),
          ("header", "Label2=", "Label2= ", 60), ("key", "Combo1.ListIndex=", "Combo1.ListIndex= ", 0),
          ("start", "text4=", "text4=", 0), ("text", "text1=", "text1=", ""))


class Item(NamedTuple):
    page: int
    left: float
    top: float
    size: float
    font: str
    text: str
    line: str

    def told(self):
        return f"item {self.page} {short(self.left)} {short(self.top)} {short(self.size)} {self.font}\t{self.text}"


def short(number):
    return str(int(number)) if number == int(number) else repr(number)


def number(text):
    try:
        return float(text)
    except ValueError:
        return 0


def item_line(page, left, top, size, font, text, y=None):
    """An item as the writer puts it."""
    y = top if y is None else y
    return (f" Page : {page} Left: {short(left)} Top: {short(top)} : Pic1.CurrentY= {short(y)} "
            f"Pic1.FontSize= {short(size)} Pic1.FontName= {font}  Text= {text}")


def _item(line):
    def between(first, second):
        nonlocal rest
        rest = rest.split(first, 1)[1]
        return rest.split(second, 1)[0]
    rest = line
    page = int(number(between("Page :", "Left:")))
    left, top = number(between("Left:", "Top:")), number(between("Top:", ":"))
    size = number(between("Pic1.FontSize=", "Pic1.FontName="))
    font = between("Pic1.FontName=", "Text=").strip(" ")
    return Item(page, left, top, size, font, rest.split("Text=", 1)[1].strip(" "), line)


class Lyrics:
    def __init__(self, data, sheets=None):
        try:
            text = data.decode("utf-8")
        except UnicodeDecodeError:
            text = data.decode("cp1252")
        lines = [line.removesuffix("\r") for line in text.split("\n")]
        self.items = [_item(line) for line in lines if "Page :" in line]
        last = max((item.page for item in self.items), default=0) if sheets is None else sheets
        self.items = sorted((item for item in self.items if 1 <= item.page <= last), key=lambda item: item.page)
        self.values = {}
        for word, key, _, plain in FIELDS:
            found = next((line.split(key, 1)[1] for line in lines if key in line and "Page :" not in line), None)
            if found is not None:
                self.values[word] = found if plain == "" else number(found)

    def told(self):
        lines = [f"{word} {self.values[word] if plain == '' else short(self.values[word])}"
                 for word, _, _, plain in FIELDS if word in self.values]
        return lines + [item.told() for item in self.items]

    def saved(self):
        lines = []
        for word, _, written, plain in FIELDS:
            value = self.values.get(word, plain)
            lines.append(written + (value if plain == "" else short(value)))
        return "".join(line + "\r\n" for line in [*lines, *(item.line for item in self.items)]).encode()
