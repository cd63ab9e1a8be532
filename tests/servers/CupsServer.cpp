// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/servers/CupsServer.h"

#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr const char* kDriver = "/usr/share/ppd/cupsfilters/Generic-PDF_Printer-PDF.ppd";
constexpr int kToolTime = 10'000; ///< milliseconds

std::string textOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
} // namespace

CupsServer::CupsServer() : temporary_("/tmp/velmora-cups-XXXXXX"), folder_(temporary_.path().toStdString()) {
    fs::permissions(folder_, fs::perms(0755));
    for (const char* const name : {"bin/backend", "kept", "spool/tmp", "cache", "state", "root/ppd", "log"}) {
        fs::create_directories(folder_ / name);
        fs::permissions(folder_ / name, fs::perms(0777)); // the server may become another user
    }
    fs::permissions(folder_ / "bin", fs::perms(0755));
    fs::permissions(folder_ / "bin/backend", fs::perms(0755));
    fs::permissions(folder_ / "spool", fs::perms(0777));
    fs::permissions(folder_ / "root", fs::perms(0777));
    for (const char* const name : {"filter", "daemon", "cgi-bin", "notifier", "monitor"})
        fs::create_symlink(fs::path("/usr/lib/cups") / name, folder_ / "bin" / name);
    writeBackEnd();
    const std::string at = folder_.string();
    std::string files = "ServerRoot " + at + "/root\nServerBin " + at + "/bin\nDataDir /usr/share/cups\n" +
                        "RequestRoot " + at + "/spool\nTempDir " + at + "/spool/tmp\nCacheDir " + at +
                        "/cache\nStateDir " + at + "/state\nAccessLog " + at + "/log/access\nErrorLog " + at +
                        "/log/error\nPageLog " + at + "/log/page\nPrintcap\n";
    if (geteuid() == 0)
        files += "User lp\nGroup lp\nSystemGroup root\nLogFileGroup lp\n";
    writeFile("cups-files.conf", files);
    writeFile("cupsd.conf", "LogLevel warn\nListen " + address() +
                                "\nBrowsing Off\nWebInterface No\nDefaultAuthType None\n"
                                "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
                                "<Location /admin>\nOrder allow,deny\nAllow all\n</Location>\n"
                                "<Policy default>\nJobPrivateAccess all\nJobPrivateValues none\n"
                                "<Limit All>\nOrder allow,deny\nAllow all\n</Limit>\n</Policy>\n");
}

CupsServer::~CupsServer() {
    stop();
}

void CupsServer::writeFile(const char* name, const std::string& text) const {
    std::ofstream(folder_ / name) << text;
}

/// It is called with the job's number, user, title, copies and options, and maybe a file.
void CupsServer::writeBackEnd() const {
    const std::string kept = (folder_ / "kept").string() + "/$1";
    writeFile("bin/backend/keep",
              "#!/bin/sh\n[ $# -eq 0 ] && { echo 'direct keep \"Unknown\" \"Keeps\"'; exit 0; }\n"
              "umask 022\nprintf '%s\\n' \"$3\" \"$5\" >" +
                  kept +
                  ".options\n"
                  "if [ -n \"$6\" ]; then cat \"$6\"; else cat; fi >" +
                  kept +
                  ".part\n"
                  "mv " +
                  kept + ".part " + kept + ".pdf\n");
    fs::permissions(folder_ / "bin/backend/keep", fs::perms(0755));
}

bool CupsServer::start() {
    const QString at = temporary_.path();
    process_.setProcessChannelMode(QProcess::ForwardedChannels);
    process_.start("/usr/sbin/cupsd", {"-f", "-c", at + "/cupsd.conf", "-s", at + "/cups-files.conf"});
    return process_.waitForStarted(kToolTime) && within(5, [&] { return fs::exists(address()); }) &&
           within(10,
                  [&] {
                      return administer({"-p", "none", "-E", "-v", "keep:/none"});
                  }) &&
           administer({"-x", "none"});
}

void CupsServer::stop() {
    if (process_.state() == QProcess::NotRunning)
        return;
    process_.terminate();
    if (!process_.waitForFinished(kToolTime)) {
        process_.kill();
        process_.waitForFinished(kToolTime);
    }
}

bool CupsServer::administer(const QStringList& words) const {
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("CUPS_SERVER", QString::fromStdString(address()));
    tool.setProcessEnvironment(environment);
    tool.start("/usr/sbin/lpadmin", words);
    return tool.waitForFinished(kToolTime) && tool.exitCode() == 0;
}

bool CupsServer::addPrinter(const std::string& name) {
    return administer({"-p", QString::fromStdString(name), "-E", "-v", "keep:/x", "-P", kDriver});
}

std::optional<CupsServer::Kept> CupsServer::kept() const {
    const fs::path document = folder_ / "kept/1.pdf";
    if (!within(5, [&] { return fs::exists(document); }))
        return std::nullopt;
    const std::string options = textOf(folder_ / "kept/1.options");
    const std::size_t line = options.find('\n');
    return Kept{textOf(document), options.substr(0, line), options.substr(line + 1)};
}

bool CupsServer::hasKeptNothing() const {
    return fs::is_empty(folder_ / "kept");
}

void withServer(const std::string& address, const std::function<void()>& work) {
    const char* const before = std::getenv("CUPS_SERVER");
    const std::string old = before ? before : "";
    setenv("CUPS_SERVER", address.c_str(), 1);
    std::thread(work).join();
    setenv("CUPS_SERVER", old.c_str(), 1);
}

} // namespace velmora
