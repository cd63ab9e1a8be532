// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace velmora::notation {

/// A printer of the system, or "Print to file (PDF)".
struct Printer {
    std::string DeviceName;
    bool isDefault = false;
    std::map<std::string, std::string>
        options; ///< as the system tells them: "media", "printer-resolution" ...
};

/// The system's printers through CUPS; none where it is not installed or does not answer.
/// @param problem a sentence, blank if it answered
[[nodiscard]] std::vector<Printer> systemPrinters(std::string& problem);

struct PrintJob {
    std::string printer;
    std::string title;
    std::string document;                       ///< the PDF's bytes
    std::map<std::string, std::string> options; ///< "media" = "iso_a4_210x297mm" ...
};
/// Hands the job to the printer. @return a blank text, or why not, in a sentence that names it
[[nodiscard]] std::string print(const PrintJob& job);

} // namespace velmora::notation
