// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PrintRun.h"

#include <algorithm>
#include <utility>

namespace velmora::notation {

namespace {
constexpr double kFirstWait = 4; ///< seconds
constexpr double kSheetWait = 1;

/// A page that was closed ejects nothing.
std::vector<PrintedSheet> sheetsOf(const PrintedScore& score, const PrintRequest& request) {
    const int first = score.placeOf(request.from);
    int last = score.count();
    if (request.to > 0 && last > 0 && request.to < score.number(last))
        last = score.placeOf(request.to + 1) - 1;
    return last < 1 ? std::vector<PrintedSheet>() : printOrder(score.count(), first, last, request.copies);
}

std::string nothingToPrint(const PrintRequest& request, const PrintedScore& score) {
    if (score.count() == 0)
        return "There is no page to print. Write the score first.";
    if (request.copies < 1)
        return "Nothing to print: the number of copies is 0.";
    if (request.to > 0 && request.from > request.to)
        return "Nothing to print: page " + std::to_string(request.from) + " comes after page " +
               std::to_string(request.to) + '.';
    const int last = score.number(score.count());
    if (request.from <= last)
        return "Nothing to print: what is there of those pages has been closed.";
    return "Nothing to print: the last page is page " + std::to_string(last) + '.';
}

} // namespace

std::string whyNotPrintable(const PrintedScore& score, const PrintRequest& request) {
    const std::size_t sheets = sheetsOf(score, request).size();
    if (sheets == 0)
        return nothingToPrint(request, score);
    if (sheets > kMostSheets)
        return "More than " + std::to_string(kMostSheets) +
               " sheets of paper can't be printed at a time. Choose fewer pages or copies.";
    if (!request.layout.hasRoom())
        return "The margins are larger than the paper: nothing is left between them.";
    return {};
}

int PrintedScore::number(int place) const {
    return numbers.empty() ? place : numbers.at(static_cast<std::size_t>(place - 1));
}

int PrintedScore::placeOf(int number) const {
    if (numbers.empty())
        return std::clamp(number, 1, count() + 1);
    return static_cast<int>(std::ranges::lower_bound(numbers, number) - numbers.begin()) + 1;
}

PrintOutcome printScore(const PrintedScore& score, const PrintRequest& request, PrintScreen& screen,
                        const DeliverPrint& deliver, const PaintPrint& paint) {
    if (std::string problem = whyNotPrintable(score, request); !problem.empty())
        return {.problem = std::move(problem)};
    const auto sheets = sheetsOf(score, request);
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
        screen.showStatus("Printing Page " + std::to_string(score.number(sheet.page)) + " Copy " +
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
