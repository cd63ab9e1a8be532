// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace velmora {

/// A print server of the test's own on a socket of its own. What a printer gets stays in a folder: the
/// document, and the options that it came with.
class CupsServer {
public:
    CupsServer();
    ~CupsServer();
    CupsServer(const CupsServer&) = delete;
    CupsServer& operator=(const CupsServer&) = delete;

    [[nodiscard]] bool start();
    void stop();
    /// A printer by the generic driver for PDF.
    [[nodiscard]] bool addPrinter(const std::string& name);
    [[nodiscard]] bool administer(const QStringList& words) const;
    [[nodiscard]] std::string address() const { return (folder_ / "s").string(); }

    struct Kept {
        std::string document;
        std::string title;
        std::string options;
    };
    /// The first thing that was printed, as soon as it is whole; nothing if none comes for a while.
    [[nodiscard]] std::optional<Kept> kept() const;
    [[nodiscard]] bool hasKeptNothing() const;

private:
    void writeFile(const char* name, const std::string& text) const;
    void writeBackEnd() const;

    QTemporaryDir temporary_;
    std::filesystem::path folder_;
    QProcess process_;
};

/// Runs @p work where the library has not been told of another server yet: it knows one a thread.
void withServer(const std::string& address, const std::function<void()>& work);

} // namespace velmora
