// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PrintRun.h"

#include <gtest/gtest.h>

namespace velmora::notation {
namespace {

class Screen : public PrintScreen {
public:
    void showStatus(const std::string& words) override { shown += words + '\n'; }
    bool pass(double seconds) override {
        waited += seconds;
        return ++passes != cancelAt;
    }
    std::string shown;
    double waited = 0;
    int passes = 0;
    int cancelAt = 0;
};

class PrintRunTest : public testing::Test {
protected:
    PrintRunTest() {
        score_.title = "The Song";
        score_.pages.pages.resize(3);
    }
    PrintOutcome run() {
        return printScore(
            score_, request_, screen_,
            [this](const std::string& document) {
                delivered_.push_back(document);
                return problem_;
            },
            [](const EngravedScore&, std::span<const int> order, const PagePlace&, const std::string& title,
               const std::function<bool(int)>& goOn) -> std::optional<std::string> {
                std::string document = title;
                for (const int page : order) {
                    if (!goOn(page))
                        return std::nullopt;
                    document += ' ' + std::to_string(page + 1);
                }
                return document;
            });
    }
    PrintedScore score_;
    PrintRequest request_;
    Screen screen_;
    std::string problem_;
    std::vector<std::string> delivered_;
};

TEST_F(PrintRunTest, CopiesArePrintedOneAfterTheOtherInOneDocument) {
    request_.copies = 2;
    EXPECT_EQ(run().problem, "");
    EXPECT_EQ(delivered_, std::vector<std::string>{"The Song 1 2 3 1 2 3"});
    EXPECT_EQ(screen_.shown, "Preparing to print\nPrinting Page 1 Copy 1\nPrinting Page 2 Copy 1\n"
                             "Printing Page 3 Copy 1\nPrinting Page 1 Copy 2\nPrinting Page 2 Copy 2\n"
                             "Printing Page 3 Copy 2\nPrinting\n");
}

TEST_F(PrintRunTest, ItWaitsOnlyWhereThatIsAskedFor) {
    request_.copies = 2;
    EXPECT_EQ(run().problem, "");
    EXPECT_EQ(screen_.waited, 0);
    request_.waits = true;
    EXPECT_EQ(run().problem, "");
    EXPECT_EQ(screen_.waited, 4 + 6);
}

TEST_F(PrintRunTest, CancelEndsItWhereverItIs) {
    for (int at = 1; at <= 5; ++at) {
        screen_ = {};
        screen_.cancelAt = at;
        EXPECT_TRUE(run().cancelled) << at;
    }
    EXPECT_TRUE(delivered_.empty());
    screen_ = {};
    screen_.cancelAt = 6;
    EXPECT_FALSE(run().cancelled);
    EXPECT_EQ(delivered_.size(), 1U);
}

TEST_F(PrintRunTest, WhatCannotBePrintedIsToldInWords) {
    const auto problemOf = [this](int from, int to, int copies) {
        request_.from = from;
        request_.to = to;
        request_.copies = copies;
        return run().problem;
    };
    EXPECT_EQ(problemOf(3, 2, 1), "Nothing to print: page 3 comes after page 2.");
    EXPECT_EQ(problemOf(9, 0, 1), "Nothing to print: the last page is page 3.");
    EXPECT_EQ(problemOf(0, 0, 0), "Nothing to print: the number of copies is 0.");
    EXPECT_EQ(problemOf(0, 0, 10'000), "More than 10000 sheets of paper can't be printed at a time. Choose "
                                       "fewer pages or copies.");
    request_.layout.setMargin(Margin::Top, 29.7);
    EXPECT_EQ(problemOf(0, 0, 1), "The margins are larger than the paper: nothing is left between them.");
    score_.pages.pages.clear();
    EXPECT_EQ(problemOf(0, 0, 1), "There is no page to print. Write the score first.");
    EXPECT_TRUE(delivered_.empty());
    EXPECT_EQ(screen_.shown, "");
}

TEST_F(PrintRunTest, PagesKeepTheirNumbersWhereOthersWereClosed) {
    score_.numbers = {2, 5, 6}; // 1, 3 and 4 were closed
    const auto printed = [this](int from, int to) {
        request_.from = from;
        request_.to = to;
        delivered_.clear();
        screen_ = {};
        const std::string problem = run().problem;
        return delivered_.empty() ? problem : delivered_.front();
    };
    EXPECT_EQ(printed(0, 0), "The Song 1 2 3");
    EXPECT_EQ(printed(5, 0), "The Song 2 3");
    EXPECT_EQ(screen_.shown,
              "Preparing to print\nPrinting Page 5 Copy 1\nPrinting Page 6 Copy 1\nPrinting\n");
    EXPECT_EQ(printed(1, 5), "The Song 1 2");
    EXPECT_EQ(printed(6, 32767), "The Song 3");
    EXPECT_EQ(printed(3, 4), "Nothing to print: what is there of those pages has been closed.");
    EXPECT_EQ(printed(0, 1), "Nothing to print: what is there of those pages has been closed.");
    EXPECT_EQ(printed(7, 0), "Nothing to print: the last page is page 6.");
}

TEST_F(PrintRunTest, TenThousandSheetsArePrinted) {
    request_.from = request_.to = 2;
    request_.copies = 10'000;
    EXPECT_EQ(run().problem, "");
    EXPECT_EQ(screen_.passes, 10'002);
}

TEST_F(PrintRunTest, WhatThePrinterSaysComesBack) {
    problem_ = "The printer is gone.";
    EXPECT_EQ(run().problem, "The printer is gone.");
}

TEST_F(PrintRunTest, AJobNamesPaperAndResolution) {
    PrintLayout layout;
    EXPECT_EQ(jobOptions(layout, 0),
              (std::map<std::string, std::string>{{"media", "iso_a4_210x297mm"}, {"print-scaling", "none"}}));
    layout.setPaper(PaperSize::Letter);
    const auto options = jobOptions(layout, 600);
    EXPECT_EQ(options.at("media"), "na_letter_8.5x11in");
    EXPECT_EQ(options.at("printer-resolution"), "600dpi");
}

} // namespace
} // namespace velmora::notation
