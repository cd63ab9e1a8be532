# SPDX-License-Identifier: GPL-2.0-or-later
"""The Songwriter: a tune as pages of music, with words, to a file and to paper."""

import os
import re
import subprocess

import desktop
import program as programs
from composing import Tableau
from desktop import wait_for
from journey import DEMOS, MARCH, Journey
from pages import (FONT, PRINT, ROOMY, SCREEN, Songwriter, Window, box_of_differences, drawn, engraved, item_line,
                   likeness)
from printers import PrintServer

SAVE_PDF, PRINTING_ERROR = "^Print to file$", "^Printing Error$"
SHARP = 4  # times as fine as the screen's are pages from paper looked at
OPEN_FILE, OPEN_LYRICS, SAVE_LYRICS = "^Open File", "^Open Lyrics", "^Save Text/Lyrics"
TITLE = "Über den Fluß nach Hause"
TUNE = ((67, 0, 3), (65, 4, 7), (63, 8, 11), (62, 12, 15), (60, 16, 23), (60, 24, 31))  # rows, first and last step


def made(path, *notes, shift=0, channel=0):
    """A score of these notes in a file."""
    steps = ["clear"] + [f"stroke {channel} {row} {first + shift} {last + shift}" for row, first, last in notes]
    subprocess.run([programs.cli, "edit", os.path.join(DEMOS, "welcome.sng"), path, "-"], input="\n".join(steps), text=True,
                   check=True, capture_output=True, timeout=60)
    return path


def items_of(path):
    """The texts that a lyrics file keeps: page, left, top, size, font, words."""
    pattern = re.compile(r" Page : (\d+) Left: (\S+) Top: (\S+) : Pic1\.CurrentY= (\S+) Pic1\.FontSize= (\S+) "
                         r"Pic1\.FontName= (.*?)  Text= (.*)")
    with open(path, "rb") as file:
        lines = file.read().decode().split("\r\n")
    return [(int(page), float(left), float(top), float(size), font, words)
            for page, left, top, y, size, font, words in (m.groups() for m in map(pattern.fullmatch, lines) if m)]


class SongwriterJourney(Journey):
    SIZE = SCREEN

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # A keyboard that has the letters that are typed here.
        subprocess.run(["setxkbmap", "de"], check=True, env=cls.screen.environment, capture_output=True)

    def open_songwriter(self, *words, user=None):
        user = user or self.user
        user.keep(**ROOMY)
        program = self.compose(*words, user=user)
        if words:
            program.title_becomes("Velmora - " + os.path.basename(words[0]))
        return program, Songwriter(program)

    def tune(self, name="tune.sng", notes=TUNE, shift=0):
        return made(self.user.path("home", name), *notes, shift=shift)

    def leave(self, program):
        """Ends the program, whatever is unsaved."""
        self.screen.do("windowactivate", program.window)
        program.focus(program.window)
        self.screen.key("ctrl+q")
        for _ in range(3):
            box = wait_for(lambda: not program.running() or program.question(), "the end or a question")
            if box is True:
                break
            program.focus(box)
            self.screen.key("alt+d")
            wait_for(lambda: not program.running() or program.question() != box, "the question's end")
        program.ends()

    def choose_file(self, program, path, dialog):
        """Under load Qt's dialog may go to the file's folder at Enter and forget the name, which is typed once more then."""
        self.screen.window(dialog)
        for _ in range(3):
            program.save_as(path, dialog)
            try:
                wait_for(lambda: not self.screen.windows(dialog), "", desktop.patience / 8)
                return
            except desktop.NotInTime:
                pass
        self.screen.gone(dialog)


class Writing(SongwriterJourney):
    def test_a_drawn_tune_becomes_a_page_with_its_title_and_words(self):
        self.user.keep(**ROOMY)
        program = self.compose()
        tableau = Tableau(program)
        tableau.top_row = 0  # on so high a screen
        for row, first, last in TUNE:
            tableau.note(first, row, last - first + 1)
        score = self.user.path("home", "drawn.sng")
        self.screen.key("ctrl+shift+s")
        program.save_as(score)
        program.title_becomes("Velmora - drawn.sng")
        song = Songwriter(program)
        song.button("Write")
        (plain,) = engraved(score)
        song.shows(plain)
        self.assertHasAStaff(plain)
        untitled = song.caption()

        song.show_texts()
        song.type_into("Title", TITLE)
        song.button("Write")
        (titled,) = engraved(score, title=TITLE)
        self.assertNotEqual(titled, plain)
        song.shows(titled)
        self.assertCaptions(untitled, song.caption())

        at, words = (120, 620), "Grüße, Mädchen: la la"
        song.place(at, words)
        (with_words,) = engraved(score, title=TITLE, lyrics=item_line(1, *at, 12, FONT, words))
        song.shows(with_words)
        left, top, right, bottom = box_of_differences(titled, song.shown())
        self.assertTrue(at[0] <= left < at[0] + 4 and at[1] <= top and bottom < at[1] + 24, (left, top, right, bottom))

        # A double press takes it up again.
        x, y = song.origin()
        song.focus()
        self.screen.double_click(*song.at((x + at[0] + 20, y + at[1] + 8)))
        song.away()
        self.assertEqual(song.words_of(), words)
        self.screen.type("Ärger")
        self.screen.key("Return")
        (other_words,) = engraved(score, title=TITLE, lyrics=item_line(1, *at, 12, FONT, "Ärger"))
        song.shows(other_words)
        self.leave(program)

    def assertHasAStaff(self, page):
        """Five long dark lines, one as far from the next as the others."""
        lines = [y for y, row in enumerate(page) if sum(value < 100 for value in row) > 300]
        self.assertEqual(len(lines), 5, lines)
        self.assertEqual({b - a for a, b in zip(lines, lines[1:])}, {8}, lines)

    def assertCaptions(self, untitled, titled):
        """Both are a name and, behind the same wide gap, "Page 1"."""
        names, gaps, pages = zip(*(self.parts_of(caption) for caption in (untitled, titled)))
        self.assertGreater(abs(names[0] - names[1]), 5)
        self.assertLessEqual(abs(gaps[0] - gaps[1]), 3)
        self.assertLessEqual(abs(pages[0] - pages[1]), 2)

    def parts_of(self, caption):
        """The widths of a caption's name, of the gap behind it, and of what follows."""
        gaps, begin = [], 0
        for at, column in enumerate(caption):
            if any(column):
                if at - begin > 15:
                    gaps.append((begin, at))
                begin = at + 1
        self.assertEqual(len(gaps), 1, gaps)
        (begin, end), = gaps
        return begin, end - begin, len(caption) - end

    def test_an_opened_score_is_written_and_its_pages_are_turned(self):
        program, song = self.open_songwriter()
        song.button("Open")
        self.choose_file(program, MARCH, OPEN_FILE)
        pages = engraved(MARCH)
        song.shows(pages[0], 1, len(pages))
        first = song.caption(1, len(pages))
        self.screen.key("ctrl+Next")
        song.shows(pages[1], 2, len(pages))
        second = song.caption(2, len(pages))
        differ = [at for at, (one, other) in enumerate(zip(first, second)) if one != other]
        self.assertTrue(differ and min(differ) > len(first) - 12, "only the number at the caption's end differs")
        self.screen.key("ctrl+Prior", "ctrl+Prior")
        self.assertEqual(len(pages), 10)
        song.shows(pages[9], 10, len(pages))
        song.closes("ctrl+w")
        song = Songwriter(program)  # its pages are still there
        song.shows(pages[9], 10, len(pages))
        song.button("Close")
        self.screen.gone(song.name)
        program.close()


class Rewriting(SongwriterJourney):
    def keep_is(self, *expected):
        """The words in the temporary store, whoever wrote them last."""
        store = self.user.path("data", "default.lyr")
        wait_for(lambda: os.path.exists(store) and items_of(store) == list(expected), "default.lyr with the texts")

    def test_texts_stay_on_their_pages_when_the_score_is_written_anew_and_another_is_opened(self):
        small = self.tune()
        program, song = self.open_songwriter(MARCH)
        song.button("Write")
        count = 10
        song.shows(engraved(MARCH)[0], 1, count)
        first, third = (60, 10), (330, 20)
        song.place(first, "stays", 1, count)
        self.screen.key("ctrl+Next", "ctrl+Next")
        items = [(1, *first, 12, FONT, "stays"), (3, *third, 12, FONT, "für später")]
        pages = engraved(MARCH, lyrics="\n".join(item_line(*item) for item in items))
        self.assertEqual(len(pages), count)
        song.shows(engraved(MARCH)[2], 3, count)
        song.place(third, "für später", 3, count)
        song.shows(pages[2], 3, count)

        for button in ("Write", "ReWrite"):
            song.button("Blank")  # which is gone once the score has been written
            wait_for(lambda: song.shown(3, count) != pages[2], "a page more")
            song.button(button)
            song.shows(pages[9], 10, count)
            self.screen.key("ctrl+Next")
            song.shows(pages[0], 1, count)
            self.screen.key("ctrl+Next", "ctrl+Next")
            song.shows(pages[2], 3, count)
            self.keep_is(*items)

        song.button("Open")
        self.choose_file(program, small, OPEN_FILE)
        song.shows(engraved(small, lyrics=item_line(*items[0]))[0])
        song.button("Open")
        self.choose_file(program, MARCH, OPEN_FILE)
        song.shows(pages[0], 1, count)
        self.screen.key("ctrl+Next", "ctrl+Next")
        song.shows(pages[2], 3, count)
        self.leave(program)

    def test_words_under_the_notes_go_with_their_notes(self):
        early, late = self.tune("early.sng"), self.tune("late.sng", shift=20)
        words = "Al-le Vö-gel sind da"
        program, song = self.open_songwriter(early)
        song.show_texts()
        song.type_into("Words", words)
        song.button("Write")
        lyrics = f"Words={words}\r\n"
        sung = [engraved(score, lyrics=lyrics) for score in (early, late)]
        bare = [engraved(score) for score in (early, late)]
        song.shows(sung[0][0])
        song.button("Open")
        self.choose_file(program, late, OPEN_FILE)
        song.shows(sung[1][0])
        places = [box_of_differences(one[0], other[0]) for one, other in zip(sung, bare)]
        self.assertGreater(places[1][0], places[0][0] + 40, "the notes have moved, and the words with them")
        for score in (early, late):
            self.assertSyllablesUnderHeads(score, lyrics)
        self.leave(program)

    def assertSyllablesUnderHeads(self, score, lyrics):
        """By the list of what is drawn: each syllable's middle is near a note's head."""
        words, listed = self.user.path("home", "words.lyr"), self.user.path("home", "listed.txt")
        with open(words, "w") as file:
            file.write(lyrics)
        subprocess.run([programs.cli, "engrave", score, listed, "--lyrics", words], check=True, capture_output=True)
        with open(listed) as file:
            lines = [line.split() for line in file]
        heads = [int(line[2]) for line in lines if line[0] == "glyph" and "head" in line[1].lower()]
        texts = {line[3]: int(line[1]) for line in lines if line[0] == "text" and len(line) == 4}
        self.assertEqual([text for text in texts if text in ("Al", "le", "Vö", "gel", "sind", "da")],
                         ["Al", "le", "Vö", "gel", "sind", "da"])
        for head, text in zip(heads, ("Al", "le", "Vö", "gel", "sind", "da")):
            self.assertLess(abs(texts[text] - head), 14, (text, texts, heads))


class Lyrics(SongwriterJourney):
    def test_words_are_saved_and_stand_on_the_same_pages_after_another_start(self):
        score = self.tune()
        program, song = self.open_songwriter(score)
        song.show_texts()
        song.type_into("Title", TITLE)
        song.type_into("Composer", "Jörg Müller")
        song.type_into("Words", "Al-le Vö-gel")
        song.button("Write")
        behind = "Composer=Jörg Müller\r\nWords=Al-le Vö-gel\r\n"
        song.shows(engraved(score, title=TITLE, lyrics=behind)[0])
        items = [(1, 150, 500, 12, FONT, "Grüße"), (1, 400, 620, 12, FONT, "Page : 2 und Text= so")]
        for page, left, top, _, _, words in items:
            song.place((left, top), words)
        lines = "".join(item_line(*item) + "\r\n" for item in items)
        (page,) = engraved(score, title=TITLE, lyrics=lines + behind)
        song.shows(page)

        song.choose("Save  Lyrics")
        self.choose_file(program, self.user.path("home", "words"), SAVE_LYRICS)  # the extension is added
        path = self.user.path("home", "words.lyr")
        wait_for(lambda: os.path.exists(path), path)
        _, _, width, _ = self.screen.geometry(song.window)
        sheet = 810 + 2 * 4
        with open(path, "rb") as file:
            saved = file.read().decode()
        self.assertEqual(saved, f"Title={TITLE}\r\nMDIScore.Width={15 * width}\r\nMDIScore.ActiveForm.Width={15 * sheet}\r\n"
                         f"Label3=60\r\nLbar= 60\r\nLabel2= 60\r\nCombo1.ListIndex= -1\r\ntext4=0\r\ntext1=\r\n" + lines + behind)
        self.assertEqual(items_of(path), items)
        self.screen.do("windowactivate", program.window)
        program.focus(program.window)
        self.screen.key("ctrl+q")  # nothing is unsaved
        program.ends()

        program, song = self.open_songwriter(score)
        song.choose("Open Lyrics")
        self.choose_file(program, path, OPEN_LYRICS)
        wait_for(lambda: min(map(min, song.shown())) < 80, "a page for the texts")
        song.button("Write")
        song.shows(page)
        self.screen.do("windowactivate", program.window)
        program.focus(program.window)
        self.screen.key("ctrl+q")
        program.ends()

    def test_words_that_are_in_no_file_are_asked_about(self):
        program, song = self.open_songwriter(self.tune())
        song.button("Write")
        song.shows(engraved(self.tune())[0])
        song.place((200, 600), "unsaved")
        self.screen.do("windowactivate", program.window)
        program.focus(program.window)
        self.screen.key("ctrl+q")
        program.focus(self.question_over(program))
        self.screen.key("Escape")
        wait_for(lambda: not self.boxes(), "the question's end")
        self.assertTrue(program.running())
        song.focus()
        self.assertTrue(self.screen.windows(song.name))
        self.leave(program)

    def boxes(self):
        return [w for w in self.screen.windows() if "DIALOG" in self.screen.property(w, "_NET_WM_WINDOW_TYPE")]

    def question_over(self, program):
        return wait_for(self.boxes, "a question")[0]


class PrintWindow(Window):
    """Its places are the same in every size of font."""
    PRINTERS, STATUS = (480, 134), (12, 540)
    LETTER, A4, PORTRAIT, LANDSCAPE = (375, 211), (587, 211), (375, 235), (587, 235)
    MARGINS = ((400, 324), (496, 324), (400, 370), (496, 370))
    FROM, TO, COPIES = (628, 324), (723, 324), (615, 370)
    PREVIEW, PRINT, CANCEL = (527, 552), (635, 552), (743, 552)
    UPRIGHT = ((31, 62), (286, 404))  # the paper on the preview: its place and size
    LYING = ((31, 163), (286, 202))

    def __init__(self, song, press=True):
        if press:
            song.button("Print")
        super().__init__(song.program, PRINT)
        self.program.focus(self.window)

    def type_into(self, field, number):
        self.press(field)
        self.screen.key("ctrl+a")
        self.screen.type(str(number))
        self.screen.key("Tab")

    def has_words(self):
        """Whether its status line says anything: dark dots on its light ground."""
        return not self.is_blank(self.STATUS, 440, 24)

    def paper(self, place):
        """The preview's picture, without the line around it."""
        (left, top), (width, height) = place
        self.screen.move(self.screen.size[0] - 1, self.screen.size[1] - 1)
        self.becomes_still((left, top), width, height)
        return self.greys((left + 2, top + 2), width - 4, height - 4)

    def turn(self, pages, place):
        """The preview's pages, by the wheel."""
        before = self.paper(place)
        self.screen.move(*self.at((170, 260)))
        self.screen.do("click", 5 if pages > 0 else 4)
        wait_for(lambda: self.paper(place) != before, "another page on the preview")

    def finds_printers(self):
        """The first of them is chosen then; its name is shorter than "Print to file (PDF)"."""
        wait_for(lambda: self.is_blank((440, 126), 50, 16) and not self.is_blank((372, 126), 50, 16), "the printers")

    def is_blank(self, place, width, height):
        return all(max(line[at:at + 3]) >= 150 for line in self.pixels(place, width, height)
                   for at in range(0, len(line), 4))


def page_sizes(document):
    """Width and height of each page in points."""
    told = subprocess.run(["pdfinfo", "-l", "1000", document], capture_output=True, text=True, check=True).stdout
    return [(round(float(width)), round(float(height)))
            for width, height in re.findall(r"^Page +\d+ size: +([\d.]+) x ([\d.]+)", told, re.M)]


def paper_of(document, page, place):
    """A page of a document, in each direction so many times as large as the paper of the preview, so that thin lines keep
    their weight. The print system turns landscape pages to the left, since the paper in a printer stands upright."""
    width, height = (SHARP * length for length in place[1])
    wide, high = page_sizes(document)[page - 1]
    if (wide > high) == (width > height):
        rows = drawn(document, page, width, height)
    else:
        rows = [bytes(column) for column in zip(*reversed(drawn(document, page, height, width)))]
    return [row[2 * SHARP:-2 * SHARP] for row in rows[2 * SHARP:-2 * SHARP]]


class Printing(SongwriterJourney):
    PAGES = 10

    def open_printing(self, *printers):
        """The march, written, and the print window over it."""
        self.server = PrintServer(*printers)
        self.addCleanup(self.server.remove)
        return self.open_march(self.server.address)

    def open_march(self, address):
        program, song = self.open_songwriter(MARCH, user=self.new_user(CUPS_SERVER=address))
        song.button("Write")
        song.shows(engraved(MARCH)[0], 1, self.PAGES)
        return program, song, PrintWindow(song)

    def companion(self, *words):
        path = self.user.path("home", "companion.pdf")
        subprocess.run([programs.cli, "engrave", MARCH, path, *words], check=True, capture_output=True)
        return path

    def assertPage(self, paper, shown, others):
        """A page of a document is what the preview has shown for it, and less like what it has shown for others."""
        likenesses = [likeness(picture, paper) for picture in (shown, *others)]
        self.assertGreater(likenesses[0], 0.92, likenesses)
        self.assertGreater(likenesses[0], max(likenesses[1:], default=0) + 0.03, likenesses)

    def test_what_the_printer_keeps_is_what_the_preview_shows(self):
        program, song, window = self.open_printing("Attic", "Kitchen")
        window.finds_printers()
        window.press(window.PRINTERS)
        self.screen.key("Down", "Return")  # the second one
        window.press(window.LANDSCAPE)
        window.type_into(window.FROM, 2)
        window.type_into(window.TO, 3)
        window.type_into(window.COPIES, 2)
        second = window.paper(window.LYING)
        window.turn(1, window.LYING)
        third = window.paper(window.LYING)
        window.press(window.PRINT)
        kept = self.server.kept(1)
        self.assertEqual((kept.printer, kept.copies), ("Kitchen", 1))
        self.assertIn("media=iso_a4_210x297mm", kept.options)
        self.assertIn("print-scaling=none", kept.options)
        self.assertEqual(sorted(page_sizes(kept.path)[0]), [595, 842])
        self.assertEqual(len(page_sizes(kept.path)), 4, "the copies stand in the document, one behind the other")
        for number, (shown, other) in enumerate([(second, third), (third, second)] * 2, 1):
            self.assertPage(paper_of(kept.path, number, window.LYING), shown, [other])
        self.assertIsWhatTheCompanionMakes(kept.path, window)
        wait_for(lambda: not window.has_words(), "the end of the status line's words")

        window.press(window.LETTER)
        window.press(window.PORTRAIT)
        window.type_into(window.TO, 2)
        window.type_into(window.COPIES, 1)
        self.screen.key("ctrl+p")
        kept = self.server.kept(2)
        self.assertIn("media=na_letter_8.5x11in", kept.options)
        self.assertEqual(page_sizes(kept.path), [(612, 792)])
        window.closes("Escape")
        self.leave(program)

    def assertIsWhatTheCompanionMakes(self, document, window):
        """The page's own part of the paper: as high as margins of 1.5 cm leave it, and in the middle."""
        paper = paper_of(document, 1, window.LYING)
        unit = SHARP * window.LYING[1][0] / 29.7  # pixels a centimetre
        high, wide = 18 * unit, 18 * unit * 794 / 1123
        left, top = (29.7 * unit - wide) / 2 - 2 * SHARP, 1.5 * unit - 2 * SHARP
        inside = [row[round(left):round(left + wide)] for row in paper[round(top):round(top + high)]]
        page = drawn(self.companion(), 2, len(inside[0]), len(inside))
        other = drawn(self.companion(), 3, len(inside[0]), len(inside))
        likenesses = [likeness(inside, picture, 4 * SHARP) for picture in (page, other)]
        self.assertGreater(likenesses[0], 0.92, likenesses)
        self.assertGreater(likenesses[0], likenesses[1] + 0.03, likenesses)

    def test_a_pdf_file_is_what_the_companion_makes(self):
        program, song, window = self.open_march("/nobody/is/there")
        wait_for(window.has_words, "words about printers")
        for margin in window.MARGINS:
            window.type_into(margin, 0)
        window.type_into(window.FROM, 9)
        window.type_into(window.TO, 40)  # there are ten
        window.press(window.PRINT)
        path = self.user.path("home", "march.pdf")
        self.choose_file(program, path, SAVE_PDF)
        wait_for(lambda: os.path.exists(path), path)
        expected = self.companion("--paper", "a4", "--from", "9", "--to", "40")
        self.assertEqual(page_sizes(path), page_sizes(expected))
        self.assertEqual(len(page_sizes(path)), 2)
        for number in (1, 2):
            self.assertEqual(drawn(path, number, 800, 1131), drawn(expected, number, 800, 1131))

        window.press(window.PRINT)  # and nothing is written if no file is chosen
        program.focus(self.screen.window(SAVE_PDF))
        self.screen.key("Escape")
        self.screen.gone(SAVE_PDF)
        program.focus(window.window)
        window.press(window.CANCEL)
        self.screen.gone(PRINT)
        self.leave(program)

    def test_cancel_in_the_midst_prints_nothing(self):
        program, song, window = self.open_printing("Attic")
        window.finds_printers()
        window.type_into(window.COPIES, 900)
        window.press(window.PRINT)
        wait_for(window.has_words, "words of what is printed")
        window.press(window.CANCEL)
        wait_for(lambda: not window.has_words(), "the end of the printing")
        window.type_into(window.COPIES, 1)
        window.type_into(window.TO, 1)
        window.press(window.PRINT)
        self.assertEqual(len(page_sizes(self.server.kept(1).path)), 1, "the first job is the one that was not cancelled")
        self.assertEqual(self.server.has_kept(), ["1.options", "1.pdf"])
        window.press(window.CANCEL)
        self.screen.gone(PRINT)
        self.leave(program)

    def test_a_printer_that_goes_in_the_middle_is_told_of_and_may_come_back(self):
        program, song, window = self.open_printing("Attic")
        window.finds_printers()
        window.type_into(window.COPIES, 30)
        window.press(window.PRINT)
        wait_for(window.has_words, "words of what is printed")
        self.server.stop()
        box = self.screen.window(PRINTING_ERROR)
        program.focus(box)
        self.screen.key("Return")
        self.screen.gone(PRINTING_ERROR)
        self.assertEqual(self.server.has_kept(), [])
        wait_for(lambda: not window.has_words(), "the end of the status line's words")

        self.server.start()
        window.type_into(window.COPIES, 1)
        window.type_into(window.TO, 1)
        window.press(window.PRINT)
        kept, = [wait_for(self.server.documents, "a document")]
        self.assertEqual(len(kept), 1)
        self.assertPage(paper_of(kept[0], 1, window.UPRIGHT), window.paper(window.UPRIGHT), [])
        window.press(window.CANCEL)
        self.screen.gone(PRINT)
        self.leave(program)

    def test_before_anything_is_written_there_is_nothing_to_print(self):
        program, song = self.open_songwriter(self.tune(), user=self.new_user(CUPS_SERVER="/nobody/is/there"))
        window = PrintWindow(song)
        wait_for(window.has_words, "words about printers")
        window.press(window.PRINT)
        program.focus(self.screen.window(PRINTING_ERROR))  # no name of a file is asked for
        self.screen.key("Return")
        self.screen.gone(PRINTING_ERROR)
        blank = window.paper(window.UPRIGHT)
        song.button("Write")
        song.away()
        window.focus()
        window.press(window.PREVIEW)
        wait_for(lambda: window.paper(window.UPRIGHT) != blank, "the page on the preview")
        self.leave(program)


class ByKeyboard(SongwriterJourney):
    OPENER = 22  # controls before the first one of the composing window, in the round

    def test_a_score_is_written_set_up_and_saved_without_the_mouse(self):
        score = self.tune()
        self.user.keep(**ROOMY)
        program = self.compose(score)
        program.title_becomes("Velmora - tune.sng")
        self.screen.key(*["shift+Tab"] * self.OPENER, "space")
        song = Songwriter(program, opened=True)
        self.screen.key("F5")
        song.shows(engraved(score)[0])

        # Behind New Score come the key, start, end, and the width of a bar and two heights.
        self.screen.key("alt+s", "Tab", "Up", "Tab", "Tab", "Tab", "Right", "Right", "Tab", "Tab", "Right", "F5")
        set_up = ("--key", "Gb", "--header", "70", "--bar-width", "80")
        song.shows(engraved(score, *set_up)[0])
        self.screen.key("alt+t")
        program.popup()
        self.screen.key("Escape")
        wait_for(lambda: not program.popups(), "the popup's end")
        self.screen.type(TITLE)
        self.screen.key("F5")
        titled = engraved(score, *set_up, title=TITLE)[0]
        song.shows(titled)

        self.screen.key("ctrl+t")
        wait_for(lambda: song.shown() != titled, "the field for a text")
        self.screen.key(*["alt+Down"] * 5)
        self.screen.type("Grüße")
        self.screen.key("Return")
        self.screen.key("ctrl+s")
        program.focus(self.screen.window(SAVE_LYRICS))
        self.screen.key("Return")  # the name that is proposed
        self.screen.gone(SAVE_LYRICS)
        path = self.user.path("home", "tune.lyr")
        wait_for(lambda: os.path.exists(path), path)
        (item,) = items_of(path)
        self.assertEqual(item[-1], "Grüße")
        with open(path, "rb") as file:
            saved = file.read()
        for line in (b"Lbar= 80\r\n", b"Label2= 70\r\n", b"Combo1.ListIndex= 11\r\n"):
            self.assertIn(line, saved)
        song.shows(engraved(score, lyrics=saved)[0])

        # What is saved is not asked about.
        song.closes("ctrl+w")
        program.focus(program.window)
        self.screen.key("ctrl+q")
        program.ends()
