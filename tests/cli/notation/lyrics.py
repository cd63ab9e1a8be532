# SPDX-License-Identifier: GPL-2.0-or-later
"""Lyrics files read, told and saved, beside a second reader and writer."""

from notation.case import NotationCase, rng, rounds
from notation.lyrics_model import FIELDS, Lyrics, item_line

WHOLE = ("Title=The Song\r\nMDIScore.Width=12000\r\nMDIScore.ActiveForm.Width=9000.5\r\nLabel3=70\r\nLbar= 80\r\n"
         "Label2= 50\r\nCombo1.ListIndex= 3\r\ntext4=32\r\ntext1=some words\r\n"
         + item_line(1, 100, 200.5, 12, "Times New Roman", "la la") + "\r\n"
         + item_line(2, 10, 20, 8, "Arial", "lu") + "\r\n")
TOLD = ["title The Song", "width 12000", "sheet-width 9000.5", "spacer 70", "bar-width 80", "header 50", "key 3", "start 32",
        "text some words", "item 1 100 200.5 12 Times New Roman\tla la", "item 2 10 20 8 Arial\tlu"]
PLAIN = ("Title=\r\nMDIScore.Width=0\r\nMDIScore.ActiveForm.Width=0\r\nLabel3=60\r\nLbar= 60\r\nLabel2= 60\r\n"
         "Combo1.ListIndex= 0\r\ntext4=0\r\ntext1=\r\n")


class LyricsTest(NotationCase):
    def told(self, data, *words):
        self.save("in.lyr", data if isinstance(data, bytes) else data.encode())
        lines = self.succeed("lyrics", "in.lyr", *words).stdout.split("\n")
        self.assertEqual(lines[-1], "")
        return lines[:-1]

    def saved(self, data, *words):
        self.save("in.lyr", data if isinstance(data, bytes) else data.encode())
        self.assertEqual(self.succeed("lyrics", "in.lyr", "out.lyr", *words).stdout, "")
        return self.read("out.lyr")

    def test_a_whole_file_is_told_in_its_order_and_saved_as_it_stands(self):
        self.assertEqual(self.told(WHOLE), TOLD)
        self.assertEqual(self.saved(WHOLE), WHOLE.encode())

    def test_keys_may_stand_in_any_order_and_anywhere_in_a_line(self):
        lines = WHOLE.split("\r\n")[:-1]
        shuffled = [lines[k] for k in (10, 8, 4, 2, 0, 9, 7, 1, 6, 3, 5)]
        self.assertEqual(self.told("\r\n".join(shuffled) + "\r\n"), TOLD)
        self.assertEqual(self.told("  so: Label2= 50\r\n\tLbar=80\r\n"), ["bar-width 80", "header 50"])

    def test_line_ends_may_be_lf_and_the_last_may_lack(self):
        self.assertEqual(self.told(WHOLE.replace("\r\n", "\n")), TOLD)
        self.assertEqual(self.told(WHOLE[:-2]), TOLD)
        self.assertEqual(self.saved(WHOLE.replace("\r\n", "\n")[:-1]), WHOLE.encode())

    def test_an_empty_file_tells_nothing_and_is_saved_as_a_fresh_panel(self):
        self.assertEqual(self.told(""), [])
        self.assertEqual(self.saved("").decode(), PLAIN)
        self.assertEqual(self.saved("nothing of ours\r\n\r\n").decode(), PLAIN)

    def test_a_file_of_only_a_title_changes_only_the_title(self):
        self.assertEqual(self.told("Title=Alone\r\n"), ["title Alone"])
        self.assertEqual(self.saved("Title=Alone\r\n").decode(), PLAIN.replace("Title=", "Title=Alone", 1))

    def test_each_key_alone_is_read_alone(self):
        for word, key, _, plain in FIELDS:
            value = "words" if plain == "" else "77"
            self.assertEqual(self.told(f"{key}{value}\n"), [f"{word} {value}"])

    def test_numbers_may_have_blanks_and_count_as_0_if_they_are_none(self):
        self.assertEqual(self.told("Lbar=   90  \nLabel2=\nLabel3=high\nMDIScore.Width= 1200.25\n"),
                         ["width 1200.25", "spacer 0", "bar-width 90", "header 0"])

    def test_a_text_is_trimmed_when_told_and_kept_as_it_stands_in_the_file(self):
        line = item_line(1, 5, 6, 10, "DejaVu Sans Mono", "   far in   ")
        self.assertEqual(self.told(line + "\r\n"), ["item 1 5 6 10 DejaVu Sans Mono\tfar in"])
        self.assertEqual(self.saved(line + "\r\n").decode(), PLAIN + line + "\r\n")

    def test_words_of_the_format_within_a_text_do_no_harm(self):
        lines = [item_line(1, 1, 2, 10, "Arial", "see Page : 7 Left: 3 Top: 4 : Text= none"),
                 item_line(2, 3, 4, 10, "Arial", "Page :"), item_line(1, 5, 6, 10, "Arial", "Text=Text=")]
        self.assertEqual(self.told("\r\n".join(lines) + "\r\n"), [
            "item 1 1 2 10 Arial\tsee Page : 7 Left: 3 Top: 4 : Text= none", "item 1 5 6 10 Arial\tText=Text=",
            "item 2 3 4 10 Arial\tPage :"])

    def test_items_stand_sheet_by_sheet_in_the_order_they_were_placed(self):
        lines = [item_line(page, k, 0, 10, "Arial", f"text {k}") for k, page in enumerate((3, 1, 2, 1, 3, 2, 1))]
        order = [lines[k] for k in (1, 3, 6, 2, 5, 0, 4)]
        self.assertEqual(self.saved("\n".join(lines)).decode(), PLAIN + "".join(line + "\r\n" for line in order))

    def test_an_item_of_a_page_without_a_sheet_is_skipped(self):
        self.assertEqual(self.told(WHOLE, "--sheets", 1), TOLD[:-1])
        self.assertEqual(self.told(WHOLE, "--sheets", 2), TOLD)
        self.assertEqual(self.told(WHOLE, "--sheets", 9), TOLD)
        self.assertEqual(self.told(item_line(0, 1, 1, 8, "Arial", "nowhere") + "\n"), [])

    def test_utf_8_and_windows_1252_are_both_read_and_utf_8_is_written(self):
        text = "Title=Für Élise – “song” €\r\n" + item_line(1, 2, 3, 9, "Arial", "señor, œuvre") + "\r\n"
        for coding in ("utf-8", "cp1252"):
            told = self.told(text.encode(coding))
            self.assertEqual(told, ["title Für Élise – “song” €", "item 1 2 3 9 Arial\tseñor, œuvre"], coding)
            self.assertEqual(self.saved(text.encode(coding)), PLAIN.replace("Title=", "", 1).join(
                ("Title=Für Élise – “song” €", item_line(1, 2, 3, 9, "Arial", "señor, œuvre") + "\r\n")).encode(), coding)
        self.assertEqual(self.told("Title=日本語 ♪\n".encode()), ["title 日本語 ♪"])

    def test_random_files_are_told_and_saved_the_same_twice(self):
        numbers = rng("lyrics")
        for k in range(rounds(40)):
            data = random_file(numbers)
            sheets = numbers.choice((None, None, 1, 2, 5))
            words = () if sheets is None else ("--sheets", sheets)
            model = Lyrics(data, sheets)
            told = self.told(data, *words)
            self.assertEqual([line.rstrip() for line in told], [line.rstrip() for line in model.told()], (k, data))
            saved = self.saved(data, *words)
            self.assertEqual(saved, model.saved(), (k, data))
            self.assertEqual(self.saved(saved), saved)  # and so it stays

    def test_damaged_files_never_do_harm(self):
        numbers = rng("damaged lyrics")
        for k in range(rounds(40)):
            data = bytearray(random_file(numbers) or b"Page :")
            for _ in range(numbers.randint(1, 12)):
                at, kind = numbers.randrange(len(data) + 1), numbers.random()
                if kind < 0.4:
                    data[at:at] = numbers.choice((b"Page :", b"\0", b"\xff", b"\r", b"\n", b"Text=", b"Left:", b"=", b"9" * 40,
                                                  b"-", b"1e999", b"nan", b"\xe2\x82", b":", b"Pic1.FontSize="))
                elif kind < 0.7:
                    del data[at : at + numbers.randint(1, 30)]
                elif at < len(data):
                    data[at] = numbers.randrange(256)
            self.save("in.lyr", bytes(data))
            done = self.run_cli("lyrics", "in.lyr", *numbers.choice(((), ("out.lyr",), ("out.lyr", "--sheets", 2))))
            self.assertEqual(done.returncode, 0, (k, bytes(data), done.stderr))  # there is nothing that is no lyrics file

    def test_what_cannot_be_done_leaves_the_old_file(self):
        self.save("out.lyr", b"old")
        self.fail_naming("none.lyr", "lyrics", "none.lyr", "out.lyr")
        self.misuse("lyrics")
        self.misuse("lyrics", "in.lyr", "out.lyr", "more.lyr")
        for number in ("x", "-1", "1.5", ""):
            self.misuse("lyrics", "none.lyr", "out.lyr", "--sheets", number)
        self.misuse("lyrics", "none.lyr", "--loud")
        self.save("in.lyr", WHOLE.encode())
        self.fail_naming("nowhere", "lyrics", "in.lyr", "nowhere/out.lyr")
        self.assertEqual(self.read("out.lyr"), b"old")

    def test_a_full_disk_leaves_the_old_file(self):
        self.save("in.lyr", WHOLE.encode())
        self.save("out.lyr", b"old")
        self.assertEqual(self.run_cli("lyrics", "in.lyr", "out.lyr", file_size=64).returncode, 1)
        self.assertEqual(self.read("out.lyr"), b"old")

    def test_words_of_the_clean_page_are_kept_and_not_told(self):
        extras = "Composer=Lbar=3\r\nTempoWords=Lively\r\nWords=Twin-kle lit-tle\r\n"
        self.assertEqual(self.told(WHOLE + extras), TOLD)
        self.assertEqual(self.saved(extras + WHOLE), (WHOLE + extras).encode())

    def test_a_file_may_be_saved_over_itself(self):
        self.save("in.lyr", WHOLE.replace("\r\n", "\n").encode())
        self.succeed("lyrics", "in.lyr", "in.lyr")
        self.assertEqual(self.read("in.lyr"), WHOLE.encode())


def random_file(numbers):
    """Lyrics as people save them, and as they edit them by hand."""
    word = lambda: "".join(numbers.choice("abcdefgh ijklmnöüé-,.!") for _ in range(numbers.randint(0, 12)))
    lines = []
    for _, key, written, plain in FIELDS:
        if numbers.random() < 0.7:
            value = word() if plain == "" else numbers.choice(("60", "100", "10", " 45 ", "12", "0", "7"))
            if key == "MDIScore.Width=":
                value = numbers.choice(("12000", "1234.5", "0.25"))
            lines.append(numbers.choice((key, written, written)) + value)
    for _ in range(numbers.randint(0, 6)):
        lines.append(item_line(numbers.randint(1, 6), numbers.choice((0, 3, 120.5, 700)), numbers.randint(0, 1000),
                               numbers.choice((8, 10, 12.5, 36)), numbers.choice(("Arial", "Times New Roman", "Noto Sans")),
                               word() + numbers.choice(("", " ", " Page : 3", "Left: 2"))))
    if numbers.random() < 0.4:
        numbers.shuffle(lines)
    end = numbers.choice(("\r\n", "\n"))
    text = end.join(lines) + (end if numbers.random() < 0.8 else "")
    return text.encode(numbers.choice(("utf-8", "cp1252")))
