// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/PrintLayout.h"

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmora::notation {

/// The document of a score that goes to paper: its pages with all that stands on them.
struct PrintedScore {
    EngravedScore pages{};
    std::string title{};
    /// Of each page, rising, where pages between were closed; blank for 1, 2 and so on.
    std::vector<int> numbers{};

    [[nodiscard]] int count() const { return static_cast<int>(pages.pages.size()); }
    /// @param place from 1, among the pages that are there
    [[nodiscard]] int number(int place) const;
    /// The place of the first page of that number or a higher one; one behind the last for none.
    [[nodiscard]] int placeOf(int number) const;
};

struct PrintRequest {
    PrintLayout layout;
    int from = 0; ///< a page's number; 0 for the first
    int to = 0;   ///< likewise; 0 for the last
    int copies = 1;
    bool waits = false; ///< 4 seconds first, and one before each sheet
};

/// Where a printing shows how far it is.
class PrintScreen {
public:
    virtual ~PrintScreen() = default;
    /// "Printing Page 2 Copy 1"; blank at the end.
    virtual void showStatus(const std::string& words) = 0;
    /// Lets the user act for so long; false once the user has cancelled.
    virtual bool pass(double seconds) = 0;
};

struct PrintOutcome {
    bool cancelled = false;
    std::string problem{}; ///< in words; blank if all went well
};

/// Takes the finished document to a printer or a file, and says what went wrong.
using DeliverPrint = std::function<std::string(const std::string& document)>;
/// Makes a PDF of pages, as `pdfOf` does.
using PaintPrint = std::function<std::optional<std::string>(
    const EngravedScore& score, std::span<const int> order, const PagePlace& place, const std::string& title,
    const std::function<bool(int page)>& goOn)>;

/// Why this can't be printed, whatever the printer; blank if it can.
[[nodiscard]] std::string whyNotPrintable(const PrintedScore& score, const PrintRequest& request);

/// Prints: paints sheet by sheet, then hands the document over, once.
[[nodiscard]] PrintOutcome printScore(const PrintedScore& score, const PrintRequest& request,
                                      PrintScreen& screen, const DeliverPrint& deliver,
                                      const PaintPrint& paint = pdfOf);

/// What a printer is told beside the document.
[[nodiscard]] std::map<std::string, std::string> jobOptions(const PrintLayout& layout, int resolution);

} // namespace velmora::notation
