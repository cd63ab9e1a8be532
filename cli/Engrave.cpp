// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Text.h"
#include "cli/Commands.h"
#include "cli/FileSet.h"
#include "cli/Interrupt.h"
#include "cli/NotationOptions.h"
#include "cli/ProgressBar.h"
#include "cli/Words.h"
#include "notation/EngravedText.h"
#include "notation/Engraver.h"
#include "notation/PageFiles.h"
#include "notation/Sheets.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora::cli {

namespace {

namespace fs = std::filesystem;
using notation::EngravedScore;

constexpr int kMostPages = 1'000'000;
constexpr int kMostCopies = 10'000;
constexpr int kLargestScale = 8;
constexpr double kPointsAPixel = 0.75;

struct Paper {
    const char* name;
    double width, height; ///< points
};
constexpr std::array kPapers{Paper{"a4", 210 / 25.4 * 72, 297 / 25.4 * 72}, Paper{"letter", 612, 792}};

/// What only some formats take.
struct PageOptions {
    const Paper* paper = nullptr; ///< none: the page's own size
    bool landscape = false;
    int from = 1;
    int to = kMostPages;
    int copies = 1;
    int scale = 1;
};

struct Job {
    fs::path out;
    std::string title;
    PageOptions options;
};

[[noreturn]] void cancelled(const fs::path& out) {
    throw Failure("Writing \"" + out.string() + "\" was cancelled; what was there before still is.");
}

void check(const std::string& problem) {
    if (!problem.empty())
        throw Failure(problem);
}

/// Nothing takes the place of a file that could not be painted.
void checkPainted(const fs::path& out, std::string_view bytes) {
    if (bytes.empty())
        throw Failure("\"" + out.string() + "\" could not be painted; what was there before still is.");
}

void writeOne(const fs::path& out, std::string_view bytes) {
    FileSet files(1);
    files.add(out, bytes);
    files.commit();
}

void writeTxt(const EngravedScore& score, const Job& job) {
    writeOne(job.out, notation::engravedText(score));
}

notation::PagePlace placeOf(const EngravedScore& score, const PageOptions& options) {
    if (!options.paper && !options.landscape)
        return notation::ownPaper(score);
    double width = options.paper ? options.paper->width : score.width * kPointsAPixel;
    double height = options.paper ? options.paper->height : score.height * kPointsAPixel;
    if (options.landscape)
        std::swap(width, height);
    return notation::fitted(score, width, height);
}

void writePdf(const EngravedScore& score, const Job& job) {
    const PageOptions& options = job.options;
    const int last = std::min(options.to, static_cast<int>(score.pages.size()));
    std::vector<int> order;
    for (int copy = 0; copy < options.copies; ++copy)
        for (int page = options.from; page <= last; ++page)
            order.push_back(page - 1);
    if (order.empty())
        throw Failure("nothing to print");
    ProgressBar bar(job.out.filename().string());
    double done = 0;
    const auto goOn = [&](int) {
        bar.show(done++ / static_cast<double>(order.size()));
        return !interrupted();
    };
    const auto bytes = notation::pdfOf(score, order, placeOf(score, options), job.title, goOn);
    if (!bytes)
        cancelled(job.out);
    checkPainted(job.out, *bytes);
    writeOne(job.out, *bytes);
}

/// OUT itself for one page, NAME-1.png and so on for more.
fs::path pagePath(const fs::path& out, std::size_t index, std::size_t count) {
    if (count == 1)
        return out;
    fs::path path = out;
    path.replace_filename(out.stem().string() + '-' + std::to_string(index + 1) + out.extension().string());
    return path;
}

template<class BytesOf>
void writeSeries(const EngravedScore& score, const Job& job, BytesOf bytesOf) {
    ProgressBar bar(job.out.filename().string());
    const std::size_t count = score.pages.size();
    FileSet files(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (interrupted())
            cancelled(job.out);
        bar.show(static_cast<double>(i) / static_cast<double>(count));
        const std::string bytes = bytesOf(score.pages[i]);
        checkPainted(job.out, bytes);
        files.add(pagePath(job.out, i, count), bytes);
    }
    files.commit();
}

void writePng(const EngravedScore& score, const Job& job) {
    writeSeries(score, job, [&](const notation::EngravedPage& page) {
        return notation::pngOf(score, page, job.options.scale);
    });
}

void writeSvg(const EngravedScore& score, const Job& job) {
    writeSeries(score, job, [&](const notation::EngravedPage& page) { return notation::svgOf(score, page); });
}

struct Format {
    std::string_view extension;
    void (*write)(const EngravedScore&, const Job&);
    bool isPainted; ///< by fonts and outlines
};
constexpr std::array kFormats{
    Format{".pdf", writePdf, true},
    Format{".png", writePng, true},
    Format{".svg", writeSvg, true},
    Format{".txt", writeTxt, false},
};

const Format& formatOf(const fs::path& out) {
    const auto* const found =
        std::ranges::find(kFormats, toLower(out.extension().string()), &Format::extension);
    if (found == kFormats.end())
        throw UsageError("\"" + out.string() + "\" names no format; there are pdf, png, svg, txt");
    return *found;
}

struct FormatOption {
    const char* name;
    std::string_view extension; ///< of the one format that takes it
};
constexpr std::array kFormatOptions{FormatOption{"paper", ".pdf"},  FormatOption{"landscape", ".pdf"},
                                    FormatOption{"from", ".pdf"},   FormatOption{"to", ".pdf"},
                                    FormatOption{"copies", ".pdf"}, FormatOption{"scale", ".png"}};

const Paper* paperOption(const QCommandLineParser& parser) {
    if (!parser.isSet("paper"))
        return nullptr;
    const QString name = parser.value("paper");
    const auto* const found =
        std::ranges::find_if(kPapers, [&name](const Paper& paper) { return name == paper.name; });
    if (found == kPapers.end())
        throw UsageError("--paper takes a4 or letter, not \"" + toBytes(name) + "\"");
    return found;
}

PageOptions readPageOptions(const QCommandLineParser& parser, const Format& format) {
    for (const FormatOption& option : kFormatOptions)
        if (parser.isSet(option.name) && option.extension != format.extension)
            throw UsageError(std::string("--") + option.name + " is for " +
                             std::string(option.extension.substr(1)));
    PageOptions options;
    options.paper = paperOption(parser);
    options.landscape = parser.isSet("landscape");
    const auto number = [&parser](const char* option, int& value, int highest, const char* wanted) {
        if (parser.isSet(option))
            value = readNumber(parser, option, 1, highest, wanted);
    };
    number("from", options.from, kMostPages, "a page's number, from 1");
    number("to", options.to, kMostPages, "a page's number, from 1");
    number("copies", options.copies, kMostCopies, "a number, 1 to 10000");
    number("scale", options.scale, kLargestScale, "a number, 1 to 8");
    return options;
}

void checkSize(const notation::ScoreSetup& setup, int scale) {
    if (std::max(setup.pageWidth, setup.pageHeight) * scale > notation::kLargestPicture)
        throw UsageError("--scale " + std::to_string(scale) + " makes pictures of more than " +
                         std::to_string(notation::kLargestPicture) + " pixels a side of that page");
}

/// The pages, and on them the lyrics' items.
EngravedScore engrave(ReadMusic& music, const fs::path& out) {
    // About; only progress is reckoned by them.
    constexpr double kBarsAPage = 20;
    constexpr double kSignsAPage = 100;
    ProgressBar bar("Writing the score");
    const double pages = std::max(
        {music.score.bars() / kBarsAPage, static_cast<double>(music.score.items.size()) / kSignsAPage, 1.0});
    const auto measure = notation::fontMeasure();
    EngravedScore score = notation::WriteScore(music.score, music.setup, *measure, [&](int done) {
        bar.show(std::min(done / pages, 0.95));
        return !interrupted();
    });
    if (interrupted())
        cancelled(out);
    if (music.items.empty())
        return score;
    notation::Sheets sheets;
    sheets.setPages(std::move(score));
    sheets.setItems(std::move(music.items));
    std::vector<notation::EngravedPage> drawn;
    for (int page = 1; page <= sheets.count(); ++page)
        drawn.push_back(sheets.drawn(page));
    sheets.engraved().pages = std::move(drawn);
    return std::move(sheets.engraved());
}

int run(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.size() != 2)
        throw UsageError("IN.sng and OUT are wanted");
    const Format& format = formatOf(files[1]);
    const NotationOptions options = readNotationOptions(parser);
    Job job{.out = files[1], .title = {}, .options = readPageOptions(parser, format)};
    checkSize(options.setup, job.options.scale);
    catchInterrupts();
    ReadMusic music = readMusic(files[0], options);
    if (format.isPainted)
        check(notation::paintingProblem());
    job.title = music.setup.title;
    format.write(engrave(music, job.out), job);
    return 0;
}

void addOptions(QCommandLineParser& parser) {
    addNotationOptions(parser);
    parser.addOptions({
        {"paper", "Places each page on paper: a4, letter (pdf).", "paper"},
        {"landscape", "Turns the paper (pdf)."},
        {"from", "The first page (pdf).", "page"},
        {"to", "The last page (pdf).", "page"},
        {"copies", "How often all pages come, one after the other (pdf).", "number"},
        {"scale", "Pixels for each of the page's (png; default: 1).", "number"},
    });
}

} // namespace

const Command kEngrave{"engrave", " IN.sng OUT",
                       "Writes a score as pages of staff notation, by the extension of OUT: pdf, png, svg, "
                       "or txt, a list of what is drawn.",
                       addOptions, run};

} // namespace velmora::cli
