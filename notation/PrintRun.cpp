// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PrintRun.h"

#include <utility>

namespace velmora::notation {

namespace {
constexpr double kFirstWait = 4; ///< seconds
constexpr double kSheetWait = 1;

std::string nothingToPrint(const PrintRequest& request, int pages) {
    if (pages == 0)
        return "There is no page to print. Write the score first.";
    if (request.copies < 1)
        return "Nothing to print: the number of copies is 0.";
    if (request.to > 0 && request.from > request.to)
        return "Nothing to print: page " + std::to_string(request.from) + " comes after page " +
               std::to_string(request.to) + '.';
    return "Nothing to print: the last page is page " + std::to_string(pages) + '.';
}

/// Why this can't be printed; blank if it can.
std::string problemOf(const PrintRequest& request, std::size_t sheets, int pages) {
    if (sheets == 0)
        return nothingToPrint(request, pages);
    if (sheets > kMostSheets)
        return "More than " + std::to_string(kMostSheets) +
               " sheets of paper can't be printed at a time. Choose fewer pages or copies.";
    if (!request.layout.hasRoom())
        return "The margins are larger than the paper: nothing is left between them.";
    return {};
}
} // namespace

PrintOutcome printScore(const PrintedScore& score, const PrintRequest& request, PrintScreen& screen,
                        const DeliverPrint& deliver, const PaintPrint& paint) {
    const int pages = static_cast<int>(score.pages.pages.size());
    const auto sheets = printOrder(pages, request.from, request.to, request.copies);
    if (std::string problem = problemOf(request, sheets.size(), pages); !problem.empty())
        return {.problem = std::move(problem)};
    screen.showStatus("Preparing to print");
    if (!screen.pass(request.waits ? kFirstWait : 0))
        return {.cancelled = true};
    std::vector<int> order;
    order.reserve(sheets.size());
    for (const PrintedSheet& sheet : sheets)
        order.push_back(sheet.page - 1);
    std::size_t next = 0;
    bool cancelled = false;
    const auto goOn = [&](int /*page*/) {
        if (next >= sheets.size())
            return !cancelled;
        const PrintedSheet sheet = sheets[next++];
        screen.showStatus("Printing Page " + std::to_string(sheet.page) + " Copy " +
                          std::to_string(sheet.copy));
        cancelled = !screen.pass(request.waits ? kSheetWait : 0);
        return !cancelled;
    };
    const auto document = paint(score.pages, order, request.layout.place(), score.title, goOn);
    if (cancelled)
        return {.cancelled = true};
    if (!document || document->empty()) {
        const std::string reason = paintingProblem();
        return {.problem = reason.empty() ? "The pages could not be painted." : reason};
    }
    screen.showStatus("Printing");
    if (!screen.pass(0))
        return {.cancelled = true};
    return {.problem = deliver(*document)};
}

std::map<std::string, std::string> jobOptions(const PrintLayout& layout, int resolution) {
    std::map<std::string, std::string> options;
    options["media"] = rowOf(layout.paper()).media;
    options["print-scaling"] = "none"; // the page is placed already
    if (resolution > 0)
        options["printer-resolution"] = std::to_string(resolution) + "dpi";
    return options;
}

} // namespace velmora::notation
