// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <functional>
#include <map>
#include <stop_token>
#include <string>
#include <vector>

namespace velmora::notation {

/// A printer of the system.
struct Printer {
    std::string DeviceName;
    bool isDefault = false;
    std::map<std::string, std::string>
        options;                  ///< as the system tells them: "media", "printer-resolution" ...
    std::vector<int> resolutions; ///< dots an inch that it offers, rising; none where it doesn't say
};

/// The system's printers through CUPS; none where it is not installed or does not answer. A server that is
/// there and silent is waited for some seconds: not for a thread that serves a window. Thread-safe: yes.
/// @param problem a sentence, blank if it answered
[[nodiscard]] std::vector<Printer> systemPrinters(std::string& problem);

struct PrintJob {
    std::string printer;
    std::string title;
    std::string document;                       ///< the PDF's bytes
    std::map<std::string, std::string> options; ///< "media" = "iso_a4_210x297mm" ...
};
/// Hands the job to the printer, and waits as `systemPrinters` does. Nothing is left in the queue if it
/// fails or is cancelled. Thread-safe: yes.
/// @return a blank text, or why not, in a sentence that names it
[[nodiscard]] std::string print(const PrintJob& job, const std::stop_token& cancel = {});

/// Where jobs go: the system's printers, or those of a test.
struct PrintSystem {
    std::function<std::vector<Printer>(std::string& problem)> printers = systemPrinters;
    std::function<std::string(const PrintJob& job, const std::stop_token& cancel)> print = notation::print;
};

} // namespace velmora::notation
