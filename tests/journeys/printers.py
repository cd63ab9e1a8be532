# SPDX-License-Identifier: GPL-2.0-or-later
"""A print server of a test's own on a socket of its own. What its printers get stays in a folder: the document, and the
options that it came with."""

import os
import shutil
import subprocess
import tempfile
from typing import NamedTuple

from desktop import wait_for

DRIVER = "/usr/share/ppd/cupsfilters/Generic-PDF_Printer-PDF.ppd"
# Called with the job's number, user, title, copies and options, and maybe a file.
BACK_END = """#!/bin/sh
[ $# -eq 0 ] && { echo 'direct keep "Unknown" "Keeps"'; exit 0; }
umask 022
printf '%%s\\n' "$PRINTER" "$3" "$4" "$5" >%(kept)s/$1.options
if [ -n "$6" ]; then cat "$6"; else cat; fi >%(kept)s/$1.part
mv %(kept)s/$1.part %(kept)s/$1.pdf
"""
SETTINGS = """LogLevel warn
Listen %s
Browsing Off
WebInterface No
DefaultAuthType None
<Location />
Order allow,deny
Allow all
</Location>
<Location /admin>
Order allow,deny
Allow all
</Location>
<Policy default>
JobPrivateAccess all
JobPrivateValues none
<Limit All>
Order allow,deny
Allow all
</Limit>
</Policy>
"""


class Kept(NamedTuple):
    path: str  # of the document
    printer: str
    title: str
    copies: int
    options: list


class PrintServer:
    def __init__(self, *printers):
        # A socket's path is short, and the server may become another user, who has to reach all of it.
        self.folder = tempfile.mkdtemp(prefix="cups", dir="/tmp")
        os.chmod(self.folder, 0o755)
        for name in ("bin/backend", "kept", "spool/tmp", "cache", "state", "root/ppd", "log"):
            os.makedirs(self.path(name))
        for name in ("kept", "spool", "spool/tmp", "cache", "state", "root", "root/ppd", "log"):
            os.chmod(self.path(name), 0o777)
        for name in ("filter", "daemon", "cgi-bin", "notifier", "monitor"):
            os.symlink("/usr/lib/cups/" + name, self.path("bin", name))
        self.address = self.path("s")
        self._write("bin/backend/keep", BACK_END % {"kept": self.path("kept")}, 0o755)
        self._write("cupsd.conf", SETTINGS % self.address)
        self._write("cups-files.conf", self._places())
        self.environment = dict(os.environ, CUPS_SERVER=self.address)
        self.process = None
        self.printers = printers
        self.start()

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def _write(self, name, text, mode=0o644):
        with open(self.path(name), "w") as file:
            file.write(text)
        os.chmod(self.path(name), mode)

    def _places(self):
        places = {"ServerRoot": "root", "ServerBin": "bin", "RequestRoot": "spool", "TempDir": "spool/tmp",
                  "CacheDir": "cache", "StateDir": "state", "AccessLog": "log/access", "ErrorLog": "log/error",
                  "PageLog": "log/page"}
        text = "".join(f"{key} {self.path(name)}\n" for key, name in places.items())
        text += "DataDir /usr/share/cups\nPrintcap\n"
        if os.geteuid() == 0:
            text += "User lp\nGroup lp\nSystemGroup root\nLogFileGroup lp\n"
        return text

    def start(self):
        if os.path.exists(self.address):  # of one that was stopped
            os.unlink(self.address)
        self.process = subprocess.Popen(["/usr/sbin/cupsd", "-f", "-c", self.path("cupsd.conf"), "-s",
                                         self.path("cups-files.conf")], stdin=subprocess.DEVNULL)
        wait_for(lambda: os.path.exists(self.address), "the print server's socket")
        wait_for(lambda: subprocess.run(["/usr/bin/lpstat", "-r"], env=self.environment,
                                        capture_output=True).returncode == 0, "the print server")
        for printer in self.printers:  # a server that was stopped in a hurry may have forgotten them
            self.administer("-p", printer, "-E", "-v", "keep:/x", "-P", DRIVER)

    def administer(self, *words):
        done = subprocess.run(["/usr/sbin/lpadmin", *words], env=self.environment, capture_output=True, text=True)
        if done.returncode != 0:
            raise AssertionError(done.stderr)

    def kept(self, number):
        """What was printed as that job, once it is whole."""
        document = self.path("kept", f"{number}.pdf")
        wait_for(lambda: os.path.exists(document), f"print job {number}")
        with open(self.path("kept", f"{number}.options")) as file:
            printer, title, copies, options = file.read().splitlines()
        return Kept(document, printer, title, int(copies), options.split())

    def documents(self):
        return [self.path("kept", name) for name in self.has_kept() if name.endswith(".pdf")]

    def has_kept(self):
        return sorted(os.listdir(self.path("kept")))

    def stop(self):
        """As if its plug were pulled."""
        if self.process and self.process.poll() is None:
            self.process.kill()
            self.process.wait()

    def remove(self):
        self.stop()
        shutil.rmtree(self.folder, ignore_errors=True)
