// SPDX-License-Identifier: GPL-2.0-or-later
// What a printer got, drawn by a program that is not ours, beside the picture that the preview shows.
#include "notation/PrintRun.h"
#include "notation/Printers.h"
#include "tests/servers/CupsServer.h"

#include <QProcess>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace velmora::notation {
namespace {

constexpr int kDots = 100; ///< an inch
constexpr int kBlock = 8;  ///< pixels that are compared as one, as two painters smooth edges in two ways

/// 0 black to 255 white.
struct Grey {
    int width = 0, height = 0;
    std::vector<std::uint8_t> pixels;

    /// The mean darkness of a block, 0 to 1.
    [[nodiscard]] double ink(int column, int row) const {
        int sum = 0;
        for (int y = row * kBlock; y < (row + 1) * kBlock; ++y)
            for (int x = column * kBlock; x < (column + 1) * kBlock; ++x)
                sum += 255 - pixels[static_cast<std::size_t>(y * width + x)];
        return sum / (255.0 * kBlock * kBlock);
    }
};

EngravedScore twoPages() {
    EngravedScore score{.width = 794, .height = 1123, .styles = {}, .pages = {}};
    score.pages.resize(2);
    const int style = score.styleOf({.family = "Times New Roman", .points = 24});
    for (int page = 0; page < 2; ++page) {
        auto& marks = score.pages[static_cast<std::size_t>(page)].marks;
        for (int line = 0; line < 5; ++line) {
            const double y = 200 + 300 * page + 8 * line;
            marks.push_back({.shape = LineMark{{60, y}, {730, y}, 1}});
        }
        marks.push_back({.shape = LineMark{{400, 300}, {400, 800}, 6}});
        marks.push_back({.shape = EllipseMark{{200, 700}, 60, 0.5, true}});
        marks.push_back({.shape = TextMark{{300, 60}, style, page == 0 ? "First" : "Second page"}});
    }
    return score;
}

/// The page where the layout has it, painted as the preview paints it.
Grey preview(const EngravedScore& score, int page, const PrintLayout& layout) {
    const PagePlace place = layout.place();
    const double dotsAPoint = kDots / 72.0;
    Grey paper{.width = static_cast<int>(std::ceil(place.paperWidth * dotsAPoint)),
               .height = static_cast<int>(std::ceil(place.paperHeight * dotsAPoint)),
               .pixels = {}};
    paper.pixels.assign(static_cast<std::size_t>(paper.width * paper.height), 255);
    const double scale = place.scale * dotsAPoint;
    const int width = static_cast<int>(score.width * scale);
    const int height = static_cast<int>(score.height * scale);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height));
    paintPixels(score, score.pages[static_cast<std::size_t>(page)], scale, 0, 0, width, height,
                pixels.data());
    const int left = static_cast<int>(std::lround(place.left * dotsAPoint));
    const int top = static_cast<int>(std::lround(place.top * dotsAPoint));
    for (int y = 0; y < height && y + top < paper.height; ++y)
        for (int x = 0; x < width && x + left < paper.width; ++x)
            paper.pixels[static_cast<std::size_t>((y + top) * paper.width + x + left)] =
                static_cast<std::uint8_t>(pixels[static_cast<std::size_t>(y * width + x)]);
    return paper;
}

/// The pages of a document.
std::vector<Grey> drawn(const std::string& document) {
    const QTemporaryDir folder;
    const std::string pdf = folder.filePath("kept.pdf").toStdString();
    std::ofstream(pdf, std::ios::binary) << document;
    QProcess::execute("pdftoppm", {"-gray", "-r", QString::number(kDots), QString::fromStdString(pdf),
                                   folder.filePath("page")});
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path().toStdString()))
        if (entry.path().extension() == ".pgm")
            files.push_back(entry.path());
    std::ranges::sort(files);
    std::vector<Grey> pages;
    for (const auto& file : files) {
        std::ifstream in(file, std::ios::binary);
        std::string kind;
        int most = 0;
        Grey page;
        in >> kind >> page.width >> page.height >> most;
        in.get();
        page.pixels.assign(std::istreambuf_iterator<char>(in), {});
        pages.push_back(std::move(page));
    }
    return pages;
}

void expectAlike(const Grey& one, const Grey& other) {
    ASSERT_NEAR(one.width, other.width, 1);
    ASSERT_NEAR(one.height, other.height, 1);
    ASSERT_EQ(one.pixels.size(), static_cast<std::size_t>(one.width * one.height));
    double ink = 0;
    double difference = 0;
    for (int row = 0; row < std::min(one.height, other.height) / kBlock; ++row)
        for (int column = 0; column < std::min(one.width, other.width) / kBlock; ++column) {
            ink += other.ink(column, row);
            difference += std::abs(one.ink(column, row) - other.ink(column, row));
        }
    EXPECT_GT(ink, 50);
    EXPECT_LT(difference / ink, 0.15);
}

class PrintedPagesTest : public testing::Test, private PrintScreen {
protected:
    void SetUp() override {
        ASSERT_EQ(paintingProblem(), "");
        ASSERT_TRUE(server_.start());
        ASSERT_TRUE(server_.addPrinter("Office"));
        score_ = {.pages = twoPages(), .title = "The Song"};
    }
    std::vector<Grey> printed() {
        const auto deliver = [this](const std::string& document) {
            std::string problem;
            withServer(server_.address(), [&] {
                problem = print({.printer = "Office",
                                 .title = score_.title,
                                 .document = document,
                                 .options = jobOptions(request_.layout, 0)});
            });
            return problem;
        };
        EXPECT_EQ(printScore(score_, request_, *this, deliver).problem, "");
        const auto kept = server_.kept();
        EXPECT_TRUE(kept);
        return kept ? drawn(kept->document) : std::vector<Grey>();
    }
    void showStatus(const std::string& /*words*/) override {}
    bool pass(double /*seconds*/) override { return true; }

    CupsServer server_;
    PrintedScore score_;
    PrintRequest request_;
};

TEST_F(PrintedPagesTest, PaperShowsWhatThePreviewShows) {
    request_.layout.setMargin(Margin::Left, 3);
    request_.layout.chkCenter = false;
    request_.copies = 2;
    const auto pages = printed();
    ASSERT_EQ(pages.size(), 4U);
    for (std::size_t sheet = 0; sheet < pages.size(); ++sheet)
        expectAlike(pages[sheet], preview(score_.pages, static_cast<int>(sheet % 2), request_.layout));
}

TEST_F(PrintedPagesTest, OtherPagesAreTold) {
    request_.to = 1;
    const auto pages = printed();
    ASSERT_EQ(pages.size(), 1U);
    const Grey other = preview(score_.pages, 1, request_.layout);
    double difference = 0;
    for (int row = 0; row < std::min(pages[0].height, other.height) / kBlock; ++row)
        for (int column = 0; column < std::min(pages[0].width, other.width) / kBlock; ++column)
            difference += std::abs(pages[0].ink(column, row) - other.ink(column, row));
    EXPECT_GT(difference, 20);
}

TEST_F(PrintedPagesTest, LetterPaperIsLetter) {
    request_.layout.setPaper(PaperSize::Letter);
    request_.from = 2;
    const auto pages = printed();
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_EQ(pages[0].width, 850);
    EXPECT_EQ(pages[0].height, 1100);
    expectAlike(pages[0], preview(score_.pages, 1, request_.layout));
}

} // namespace
} // namespace velmora::notation
