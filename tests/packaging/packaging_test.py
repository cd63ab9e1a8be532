# SPDX-License-Identifier: GPL-2.0-or-later
"""What a user gets to install, under the eyes of the desktop's own validators; one that is missing is a failure.
Usage: packaging_test.py SOURCES BUILD VERSION CMAKE CPACK"""

import glob
import gzip
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml

SOURCES = BUILD = VERSION = CMAKE = CPACK = None
MIME = "{http://www.freedesktop.org/standards/shared-mime-info}"

# The executables of the package, the words each is called with once unpacked, and what it must print then.
CALLS = [
    ("velmora", ["--version"], "velmora {version}\n"),
    ("velmora-cli", ["--version"], "velmora-cli {version}\n"),
    ("velmora-cli", ["info", "{share}/velmora/demos/welcome.sng"], "126"),
    ("velmora-cli", ["info", "{share}/velmora/demos/104a.sng", "--form", "first"], "104a.sng"),
]

TYPES = {
    "application/x-velmora-score": "*.sng",
    "application/x-velmora-lyrics": "*.lyr",
    "application/x-velmora-keyboard": "*.key",
}

# What the program opens when a file manager hands it over. The windows of the other types are not built yet.
OPENED = ["application/x-velmora-score"]

# Below the prefix; demos and help are added from the sources.
FILES = [
    "share/applications/velmora.desktop",
    "share/doc/velmora/README.md",
    "share/icons/hicolor/scalable/apps/velmora.svg",
    "share/icons/hicolor/scalable/mimetypes/application-x-velmora-keyboard.svg",
    "share/icons/hicolor/scalable/mimetypes/application-x-velmora-lyrics.svg",
    "share/icons/hicolor/scalable/mimetypes/application-x-velmora-score.svg",
    "share/man/man1/velmora-cli.1.gz",
    "share/man/man1/velmora.1.gz",
    "share/metainfo/org.velmora.Velmora.metainfo.xml",
    "share/mime/packages/velmora.xml",
]
ONLY_WITHOUT_PACKAGE = ["share/doc/velmora/COPYING"]
ONLY_IN_PACKAGE = ["share/doc/velmora/changelog.gz", "share/doc/velmora/copyright"]

DEPENDS = ["fluid-soundfont-gm | timgm6mb-soundfont", "fonts-liberation", "fonts-noto-core", "libasound2", "libc6", "libfluidsynth3",
           "libjack-jackd2-0", "libmp3lame0", "libpulse0", "libqt6core6", "libqt6gui6", "libqt6svg6", "libqt6widgets6",
           "librtmidi6", "libsdl2-2.0-0", "libsndfile1", "libxcb-shape0", "libxcb1",
           "libxkbcommon-x11-0", "libxkbcommon0", "qt6-wayland"]


def source(*names):
    return os.path.join(SOURCES, *names)


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def files_below(folder):
    return sorted(os.path.relpath(os.path.join(place, name), folder)
                  for place, _, names in os.walk(folder) for name in names)


def shipped_files():
    demos = [f"share/velmora/demos/{os.path.basename(demo)}"
             for kind in ("sng", "mid") for demo in glob.glob(source("packaging", "demos", f"*.{kind}"))]
    pages = [f"share/velmora/help/{page}" for page in files_below(source("docs", "help"))]
    schemes = [f"share/velmora/schemes/{os.path.basename(scheme)}" for scheme in glob.glob(source("packaging", "schemes", "*.key"))]
    return FILES + demos + schemes + pages + sorted({f"bin/{call[0]}" for call in CALLS})


class PackagingTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def run_tool(self, *words, **more):
        """Standard output, with errors in it; the tool must be there and be content."""
        done = subprocess.run([*map(str, words)], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              timeout=300, **more)
        self.assertEqual(done.returncode, 0, f"{words}\n{done.stdout}")
        return done.stdout


class DesktopTest(PackagingTest):
    metainfo = property(lambda self: source("packaging", "desktop", "org.velmora.Velmora.metainfo.xml"))
    mime = property(lambda self: source("packaging", "desktop", "velmora-mime.xml"))
    entry = property(lambda self: source("packaging", "desktop", "velmora.desktop"))

    def entry_value(self, key):
        return re.search(f"^{key}=(.*)$", read(self.entry), re.M).group(1)

    def test_the_desktop_entry_is_valid(self):
        self.assertEqual(self.run_tool("desktop-file-validate", self.entry), "")

    def test_the_metainfo_is_valid_and_names_this_version_first(self):
        self.run_tool("appstreamcli", "validate", "--no-net", self.metainfo)
        self.assertEqual(xml.parse(self.metainfo).find("releases/release").get("version"), VERSION)

    def test_entry_metainfo_and_type_definitions_agree_on_the_types(self):
        self.run_tool("xmllint", "--noout", self.mime)
        defined = {kind.get("type"): kind.find(f"{MIME}glob").get("pattern") for kind in xml.parse(self.mime).getroot()}
        provided = [node.text for node in xml.parse(self.metainfo).findall("provides/mediatype")]
        self.assertEqual(defined, TYPES)
        self.assertEqual(sorted(provided), OPENED)
        self.assertEqual(sorted(self.entry_value("MimeType").strip(";").split(";")), OPENED)

    def test_metainfo_launches_the_entry_and_shares_its_categories(self):
        info = xml.parse(self.metainfo)
        self.assertEqual(info.find("launchable").text, os.path.basename(self.entry))
        categories = [node.text for node in info.findall("categories/category")]
        self.assertEqual(categories, self.entry_value("Categories").strip(";").split(";"))

    def resolve(self, name):
        """The type of the pattern with the greatest weight, among all that the desktop knows."""
        rows = [line.split(":")[:3] for line in read(self.path("mime", "globs2")).splitlines() if line[0] != "#"]
        found = [(int(weight), kind) for weight, kind, pattern in rows if pattern == "*" + os.path.splitext(name)[1]]
        best = max(weight for weight, _ in found)
        return [kind for weight, kind in found if weight == best]

    def test_file_names_resolve_to_types(self):
        os.makedirs(self.path("mime", "packages"))
        shutil.copy("/usr/share/mime/packages/freedesktop.org.xml", self.path("mime", "packages"))
        shutil.copy(self.mime, self.path("mime", "packages", "velmora.xml"))
        self.run_tool("update-mime-database", self.path("mime"))
        self.assertEqual(self.resolve("tune.sng"), ["application/x-velmora-score"])
        self.assertEqual(self.resolve("words.lyr"), ["application/x-velmora-lyrics"])
        self.assertNotIn("application/x-velmora-keyboard", self.resolve("server.key"))
        self.assertIn("application/x-velmora-keyboard *.key".replace(" ", ":"), read(self.path("mime", "globs2")))
        for kind in TYPES:
            self.assertIn(f"{kind} text/plain\n", read(self.path("mime", "subclasses")))
            self.assertIn(f"{kind}:{kind.replace('/', '-')}\n", read(self.path("mime", "icons")))


class IconTest(PackagingTest):
    def render(self, icon, size):
        image = self.path("image.png")
        self.run_tool("rsvg-convert", "-w", size, "-h", size, icon, "-o", image)
        with open(image, "rb") as file:
            return file.read()

    def test_every_icon_renders_to_a_picture_of_its_own(self):
        icons = sorted(glob.glob(source("packaging", "icons", "*", "*.svg")))
        wanted = ["velmora.svg"] + [kind.replace("/", "-") + ".svg" for kind in TYPES]
        self.assertEqual(sorted(map(os.path.basename, icons)), sorted(wanted))
        self.run_tool("xmllint", "--noout", *icons)
        blank = self.path("blank.svg")
        with open(blank, "w", encoding="utf-8") as file:
            file.write('<svg xmlns="http://www.w3.org/2000/svg" width="48" height="48"/>')
        for size in (16, 48, 256):
            pictures = {self.render(icon, size) for icon in [*icons, blank]}
            self.assertEqual(len(pictures), len(icons) + 1, size)


class ManualTest(PackagingTest):
    def test_the_manuals_have_no_faults(self):
        for page in ("velmora.1", "velmora-cli.1"):
            self.run_tool("mandoc", "-Tlint", "-Wwarning", source("packaging", "man", page))

    def test_the_companions_manual_has_its_options_and_no_others(self):
        companion = os.path.join(BUILD, "cli", "velmora-cli")
        told = set()
        for command in re.findall(r"^  velmora-cli (\w+)", self.run_tool(companion, "--help"), re.M):
            told |= set(re.findall(r"--([a-z-]+)", self.run_tool(companion, command, "--help")))
        self.assertGreater(len(told), 10)
        manual = read(source("packaging", "man", "velmora-cli.1"))
        options = set(re.findall(r"(?:Fl |, )-([a-z-]+)", manual)) - {"version"}
        self.assertEqual(options, told)


class InstallTest(PackagingTest):
    def test_install_puts_everything_in_place(self):
        self.run_tool(CMAKE, "--install", BUILD, "--prefix", self.folder)
        self.assertEqual(files_below(self.folder), sorted(shipped_files() + ONLY_WITHOUT_PACKAGE))


class DebianPackageTest(PackagingTest):
    @classmethod
    def setUpClass(cls):
        cls.made = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.made)
        done = subprocess.run([CPACK, "-G", "DEB", "-B", cls.made], cwd=BUILD, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, timeout=500, check=False)
        if done.returncode:
            raise AssertionError(done.stdout)
        (cls.package,) = glob.glob(os.path.join(cls.made, f"velmora_{VERSION}_*.deb"))

    def field(self, name):
        return self.run_tool("dpkg-deb", "-f", self.package, name).strip()

    def test_its_fields_say_what_it_is_and_needs(self):
        self.assertEqual(self.field("Package"), "velmora")
        self.assertEqual(self.field("Version"), VERSION)
        self.assertEqual(self.field("Section"), "sound")
        self.assertEqual(self.field("Maintainer"), "Velmora developers <velmora@example.org>")
        self.assertRegex(self.field("Description"), r"(?s)^compose music.*\n .*velmora-cli")
        depends = [re.split(r" [(|]", one)[0] if one.startswith("lib") else one
                   for one in self.field("Depends").split(", ")]
        # Distributions that went through a change of ABI add t64 to a library's name.
        self.assertEqual([one for one in DEPENDS if one not in depends and one + "t64" not in depends], [])

    def test_it_holds_the_files_readable_for_all_and_roots(self):
        rows = [row.split() for row in self.run_tool("dpkg-deb", "-c", self.package).splitlines()]
        listed = sorted(row[5].removeprefix("./usr/") for row in rows if not row[5].endswith("/"))
        self.assertEqual(listed, sorted(shipped_files() + ONLY_IN_PACKAGE))
        for mode, owner, *_, name in rows:
            program = name.endswith("/") or "/bin/" in name
            self.assertEqual((mode[1:], owner), ("rwxr-xr-x" if program else "rw-r--r--", "root/root"), name)

    def test_its_changelog_opens_with_this_version(self):
        self.run_tool("dpkg-deb", "-x", self.package, self.folder)
        with gzip.open(self.path("usr/share/doc/velmora/changelog.gz"), "rt", encoding="utf-8") as file:
            self.assertTrue(file.readline().startswith(f"velmora ({VERSION}) "))

    def test_lintian_finds_no_errors(self):
        self.run_tool("lintian", "--allow-root", "--fail-on", "error", self.package)

    def test_what_is_in_it_runs(self):
        self.run_tool("dpkg-deb", "-x", self.package, self.folder)
        clean = {name: value for name, value in os.environ.items() if not name.startswith("VELMORA_")}
        clean |= {"HOME": self.folder}
        for program, words, wanted in CALLS:
            words = [word.format(share=self.path("usr", "share")) for word in words]
            told = self.run_tool(self.path("usr", "bin", program), *words, env=clean, cwd=self.folder)
            self.assertIn(wanted.format(version=VERSION), told)


if __name__ == "__main__":
    SOURCES, BUILD, VERSION, CMAKE, CPACK = sys.argv[1:6]
    del sys.argv[1:6]
    unittest.main()
