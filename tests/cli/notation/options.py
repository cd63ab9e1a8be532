# SPDX-License-Identifier: GPL-2.0-or-later
"""Options and exit statuses of notation and engrave: what is wrong usage, what can't be done, what then stays."""

import os
import signal
import time

from notation.case import NotationCase, tune
from notation.lyrics_model import item_line
from player_model import Score
from studio.case import wait_until

QUARTERS = tune(*[(60, 4)] * 40)
WRONG = [("--loud",), ("--header",), ("--header", "9"), ("--header", "301"), ("--header", "x"), ("--header", ""),
         ("--header", "60x"), ("--spacer", "9"), ("--spacer", "301"), ("--spacer", "-60"), ("--bar-width", "9"),
         ("--bar-width", "301"), ("--bar-width", "6 0"), ("--key", "H"), ("--key", "Cb"), ("--key", ""), ("--key", "C Major"),
         ("--join", "1"), ("--join", "5"), ("--join", "-2"), ("--join", "x"), ("--spacing", "even"), ("--spacing", ""),
         ("--start", "-1"), ("--start", "x"), ("--end", "-1"), ("--end", "x"), ("--start", "1.5"), ("--channels", ""),
         ("--channels", "0"), ("--channels", "8t"), ("--channels", "9"), ("--channels", "13"), ("--channels", "0x"),
         ("--channels", "0t,"), ("--channels", "8b"), ("--channels", "0t,1t,2t,3t,4t,5t"),
         ("--channels", "0t,1t,2t,3b,4b,8"), ("--mute", "x"), ("--page", "a5"), ("--page", "199x500"),
         ("--page", "500x199"), ("--page", "500x10001"), ("--page", "10001x500"), ("--page", "500"), ("--page", "500x"),
         ("--page", "500x500x500"), ("--title",), ("--lyrics",), ("--form", "none")]
RIGHT = [("--header", "10"), ("--header", "300"), ("--spacer", "10"), ("--spacer", "300"), ("--bar-width", "10"),
         ("--bar-width", "300"), ("--join", "0"), ("--start", "0"), ("--start", "159"), ("--end", "16"),
         ("--channels", "0t"), ("--channels", "7b,0b,8,11,12"), ("--mute", "7"), ("--page", "a4"), ("--page", "letter"),
         ("--page", "200x200"), ("--page", "10000x10000"), ("--title", ""), ("--title", "Ö two words"), ("--numbers",),
         ("--repeat-signs",), ("--title-every-page",), ("--spacing", "symmetrical"), ("--spacing", "proportional")]


class OptionsTest(NotationCase):
    def setUp(self):
        super().setUp()
        self.score_file(QUARTERS)

    def test_wrong_words_are_found_before_anything_is_read_or_written(self):
        self.save("out.txt", b"old")
        for k, words in enumerate(WRONG):
            manner = ("--classic",) if k % 2 else ()
            file = "in.sng" if k % 3 else "none.sng"
            self.misuse("engrave", file, "out.txt", *manner, *words)
            self.misuse("notation", file, *manner, *words)
        for words in ((), ("in.sng", "more.sng"), ("in.sng", "--classic=yes")):
            self.misuse("notation", *words)
        for words in ((), ("in.sng",), ("in.sng", "out.txt", "more.txt")):
            self.misuse("engrave", *words)
        self.assertEqual(self.read("out.txt"), b"old")

    def test_every_value_of_the_table_is_taken_in_both_manners(self):
        for words in (*RIGHT, *((("--key", key)) for key in "C G D A E B F Bb Eb Ab Db Gb".split())):
            self.succeed("notation", "in.sng", "--classic", *words)
            self.succeed("engrave", "in.sng", "out.txt", *words)
        for name in ("2", "3", "4"):
            self.succeed("engrave", "in.sng", "out.txt", "--classic", "--join", name)

    def test_the_extension_decides_and_another_is_wrong(self):
        for name in ("out.gif", "out", "out.txt.ps", "out.", "txt", "out.jpg"):
            self.misuse("engrave", "in.sng", name)
            self.misuse("engrave", "none.sng", name)

    def test_paper_pages_and_copies_belong_to_pdf(self):
        for words in (("--paper", "a4"), ("--landscape",), ("--from", "1"), ("--to", "1"), ("--copies", "2")):
            for extension in ("txt", "png", "svg"):
                self.misuse("engrave", "in.sng", "out." + extension, *words)
            self.misuse("notation", "in.sng", *words)
        for words in (("--paper", "a5"), ("--paper", ""), ("--from", "x"), ("--to", "x"), ("--copies", "x"), ("--copies", "-1"),
                      ("--from", "1.5"), ("--scale", "x")):
            self.misuse("engrave", "in.sng", "out.pdf", *words)

    def test_what_cannot_be_done_leaves_the_old_file(self):
        broken = tune((60, 4), meter=(0, 4, 4))
        self.save("broken.sng", broken.text().encode())
        self.save("negative.sng", broken.text().replace("measure=0", "measure=-3", 1).encode())
        for extension in ("txt", "pdf", "png", "svg"):
            name = "out." + extension
            self.save(name, b"old")
            for manner in ((), ("--classic",)):
                self.fail_naming("none.sng", "engrave", "none.sng", name, *manner)
                for file in ("broken.sng", "negative.sng"):
                    self.fail_naming("", "engrave", file, name, *manner)
                    self.assertEqual(self.fail_naming("", "notation", file, *manner).stdout, "")
            self.fail_naming("none.lyr", "engrave", "in.sng", name, "--lyrics", "none.lyr")
            self.fail_naming("nowhere", "engrave", "in.sng", "nowhere/" + name)
            self.assertEqual(self.read(name), b"old")
        self.fail_naming("none.sng", "notation", "none.sng")
        self.assertEqual(self.names(), sorted(["in.sng", "broken.sng", "negative.sng"] + ["out." + e for e in
                                                                                          ("txt", "pdf", "png", "svg")]))

    def test_an_empty_range_of_pages_is_nothing_to_print(self):
        self.save("out.pdf", b"old")
        done = self.fail_naming("nothing to print", "engrave", "in.sng", "out.pdf", "--from", 2, "--to", 1)
        self.assertEqual(done.stdout, "")
        for words in (("--copies", 0), ("--to", 0)):
            self.assertIn(self.run_cli("engrave", "in.sng", "out.pdf", *words).returncode, (1, 2), words)
        self.assertEqual(self.read("out.pdf"), b"old")

    def test_a_picture_that_would_be_too_large_is_wrong_usage(self):
        self.save("out.png", b"old")
        for words in (("--page", "10000x200", "--scale", 4), ("--page", "200x4096", "--scale", 8)):
            self.misuse("engrave", "none.sng", "out.png", *words)
        self.assertEqual(self.read("out.png"), b"old")
        self.succeed("engrave", "in.sng", "out.png", "--page", "4095x200", "--scale", 8)

    def test_a_full_disk_leaves_the_old_file(self):
        for manner in ((), ("--classic",)):
            for extension in ("txt", "pdf", "png", "svg"):
                name = "out." + extension
                self.save(name, b"old")
                done = self.run_cli("engrave", "in.sng", name, *manner, file_size=64)
                self.assertEqual(done.returncode, 1, (extension, manner))
                self.assertEqual(self.read(name), b"old", (extension, manner))

    def test_both_commands_are_the_same_each_time(self):
        for manner in ((), ("--classic",)):
            self.assertEqual(self.succeed("notation", "in.sng", *manner).stdout,
                             self.succeed("notation", "in.sng", *manner).stdout)
            for extension in ("txt", "svg", "png"):
                self.succeed("engrave", "in.sng", "a." + extension, *manner)
                self.succeed("engrave", "in.sng", "b." + extension, *manner)
                self.assertEqual(self.read("a." + extension), self.read("b." + extension), (manner, extension))


    def test_what_is_in_the_way_of_one_page_costs_no_other(self):
        for extension in ("png", "svg"):
            os.mkdir(self.path("out-2." + extension))
            self.save("out-1." + extension, b"old")
            self.fail_naming("out-2." + extension, "engrave", "in.sng", "out." + extension, "--classic", "--page", "500x300")
            self.assertEqual(self.read("out-1." + extension), b"old")
            self.assertFalse(os.path.exists(self.path("out-3." + extension)))

    def test_a_signal_ends_it_soon_and_leaves_the_old_file(self):
        score = Score(40000)
        for channel in range(5):
            tune(*[(60 + channel, 3), (64, 1)] * 10000, channel=channel, score=score)
        self.score_file(score, "long.sng")
        before = self.names()
        for number, manner in ((signal.SIGINT, ()), (signal.SIGTERM, ("--classic",))):
            for extension in ("pdf", "svg"):
                name = "out." + extension
                self.save(name, b"old")
                running = self.start("engrave", "long.sng", name, *manner)
                wait_until(lambda: catches(running.process.pid, number), "it listens to signals")
                sent = time.monotonic()
                running.send(number)
                done = running.wait(20)
                self.assertLess(time.monotonic() - sent, 5)
                self.assertEqual(done.returncode, 1, (number, done.stderr))
                self.assertIn("cancelled", done.stderr)
                self.assertEqual(self.read(name), b"old")
        self.assertEqual(self.names(), sorted(before + ["out.pdf", "out.svg"]))


def catches(pid, number):
    """Whether a process sees to a signal by itself."""
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        caught = next(line for line in status if line.startswith("SigCgt:"))
    return int(caught.split()[1], 16) >> (number - 1) & 1


class WithLyricsTest(NotationCase):
    """`--lyrics`: the panel as the file has it, and its items on their pages."""

    def setUp(self):
        super().setUp()
        self.score_file(QUARTERS)
        items = (item_line(1, 100, 200, 12, "Arial", "la la"), item_line(1, 33.5, 34.5, 8, "Arial", "lu"),
                 item_line(7, 1, 1, 8, "Arial", "nowhere"))
        self.save("words.lyr", ("Title=hymn\nLabel3=70\nLbar= 90\nLabel2= 50\nCombo1.ListIndex= 7\ntext4=20\n"
                                + "\n".join(items) + "\n").encode())

    def page(self, *words):
        self.succeed("engrave", "in.sng", "out.txt", "--classic", *words)
        return self.listed("out.txt")

    def test_the_file_sets_title_layout_key_and_start(self):
        words = ("--title", "hymn", "--spacer", 70, "--bar-width", 90, "--header", 50, "--key", "Bb", "--start", 20)
        plain = self.page(*words)
        self.assertEqual(self.page("--lyrics", "words.lyr"), plain + ["text 100 200 la la", "text 34 34 lu"])
        reading = self.succeed("notation", "in.sng", "--classic", "--lyrics", "words.lyr").stdout
        self.assertEqual(reading, self.succeed("notation", "in.sng", "--classic", *words).stdout)

    def test_an_option_on_the_line_wins(self):
        for words in (("--title", "song"), ("--spacer", 60), ("--bar-width", 60), ("--header", 60), ("--key", "C"),
                      ("--start", 0)):
            every = {"--title": "hymn", "--spacer": 70, "--bar-width": 90, "--header": 50, "--key": "Bb", "--start": 20}
            every[words[0]] = words[1]
            plain = self.page(*(word for pair in every.items() for word in pair))
            for order in ((*words, "--lyrics", "words.lyr"), ("--lyrics", "words.lyr", *words)):
                self.assertEqual(self.page(*order)[: len(plain)], plain, order)

    def test_items_stand_on_their_pages(self):
        small = ("--page", "500x300")
        self.save("two.lyr", (item_line(2, 10, 20, 8, "Arial", "second") + "\r\n"
                              + item_line(1, 30, 40, 8, "Arial", "first") + "\r\n").encode())
        plain, lines = self.page(*small), self.page(*small, "--lyrics", "two.lyr")
        pages = lambda lines: [k for k, line in enumerate(lines) if line.startswith("page ")]
        self.assertGreater(len(pages(plain)), 2)
        turn = pages(plain)
        self.assertEqual(lines, plain[: turn[1]] + ["text 30 40 first"] + plain[turn[1] : turn[2]] + ["text 10 20 second"]
                         + plain[turn[2]:])

    def test_composer_and_verses_of_the_file_stand_on_the_clean_page_alone(self):
        self.save("more.lyr", b"Composer=A. Walker\nWords=Twin-kle lit-tle star\n")
        self.assertEqual(self.page("--lyrics", "more.lyr"), self.page())
        self.succeed("engrave", "in.sng", "out.txt", "--lyrics", "more.lyr")
        words = [line.split(" ", 3)[3] for line in self.listed("out.txt") if line.startswith("text ")]
        for word in ("A. Walker", "Twin", "kle", "star"):
            self.assertIn(word, words)

    def test_the_clean_page_has_the_words_too(self):
        self.succeed("engrave", "in.sng", "out.txt", "--lyrics", "words.lyr")
        lines = self.listed("out.txt")
        self.assertIn("text 100 200 la la", lines)
        self.assertIn("text 34 34 lu", lines)
        head = self.succeed("notation", "in.sng", "--lyrics", "words.lyr").stdout.splitlines()[0]
        self.assertEqual(head, "score 16 160 16 4 4 B flat Major")

    def test_the_clean_page_has_composer_tempo_and_the_words_under_the_notes(self):
        behind = "Composer=A. Nobody\r\nTempoWords=Lively\r\nWords=Ron-di la\r\n"
        self.save("words.lyr", self.read("words.lyr") + behind.encode())
        self.succeed("engrave", "in.sng", "out.txt", "--lyrics", "words.lyr")
        texts = [line.split(" ", 3)[3] for line in self.listed("out.txt") if line.startswith("text ")]
        for words in ("A. Nobody", "Lively", "Ron", "di", "la"):
            self.assertIn(words, texts)
        plain = self.page("--lyrics", "words.lyr")
        self.assertFalse([line for line in plain if line.endswith(("A. Nobody", "Lively", "Ron"))])


class BoundsTest(NotationCase):
    """Large and odd scores end soon and in words."""

    def test_bars_of_one_and_of_512_steps(self):
        for measure in (1, 512):
            score = tune(*[(60, 3), (None, 2), (57, 1)] * 100, meter=(measure, 4, 4))
            for manner in ((), ("--classic",)):
                self.notated(score, *manner)
                self.engraved(score, *manner)

    def test_rows_out_of_range_are_written_somewhere(self):
        score = tune((60, 4), (60, 4), (60, 4))
        score.cell[0][4:8] = [999, 1999, 1999, 1999]
        score.cell[0][8:12] = [128, 1128, 1128, 1128]
        lines = self.notated(score, "--classic", "--channels", "0t")
        self.assertEqual([line.split()[9] for line in lines[2:5]], ["59", "135", "135"])
        self.notated(score)
        self.engraved(score)

    def test_a_range_without_a_bar_is_one_page(self):
        score = tune(*[(60, 4)] * 8)
        self.assertEqual(len(self.notated(score, "--classic", "--end", 0)), 1)
        self.assertEqual(self.engraved(score, "--classic", "--end", 0),
                         ["page 1 794 1123", "text 32 20 Untitled Score", "text 30 98 4", "text 30 110 4"])

    def test_a_long_score_takes_little_time(self):
        score = tune(*[(60, 4), (62, 2), (63, 1), (64, 9)] * 1000, positions=20000)
        for manner in ((), ("--classic",)):
            done = self.succeed("engrave", self.score_file(score), "out.txt", *manner)
            self.assertLess(done.processor, 20)
            last = [line for line in self.listed("out.txt") if line.startswith("page ")][-1]
            self.assertGreater(int(last.split()[1]), 20)
