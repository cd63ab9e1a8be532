// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/fPrint.h"

#include "base/Files.h"
#include "shell/ReadOut.h"
#include "tests/support/FullDisk.h"
#include "tests/support/TestDesk.h"

#include <QtTest>
#include <QtWidgets>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace velmora {

namespace {

/// A document as words: its title and the numbers of its pages.
std::optional<std::string> paintWords(const notation::EngravedScore& /*score*/, std::span<const int> order,
                                      const notation::PagePlace& /*place*/, const std::string& title,
                                      const std::function<bool(int)>& goOn) {
    std::string document = title;
    for (const int page : order) {
        if (!goOn(page))
            return std::nullopt;
        document += ' ' + std::to_string(page + 1);
    }
    return document;
}

class fPrintTest : public testing::Test {
protected:
    explicit fPrintTest(bool isClassic = false)
        : desk_([isClassic](SettingsStore& store) {
            store.SaveSetting("Settings", "Classic", isClassic ? "1" : "0");
        }) {
        score_.title = "The Song";
        score_.pages.width = 794;
        score_.pages.height = 1123;
        score_.pages.pages.resize(3);
        printers_ = {
            {"Attic", false, {{"media", "na_letter_8.5x11in"}, {"orientation-requested", "4"}}, {}},
            {"Office", true, {{"media", "iso_a4_210x297mm"}, {"printer-resolution", "600dpi"}}, {300, 600}},
            {"Cellar", false, {{"media", "na_legal_8.5x14in"}}, {}}};
        QObject::connect(&hand_, &QTimer::timeout, &hand_, [this] { closeBox(); });
        hand_.start(5);
    }
    void open() {
        notation::PrintSystem system;
        system.printers = [this](std::string& problem) {
            problem = lookProblem_;
            if (lookThrows_)
                throw std::runtime_error("no library");
            return printers_;
        };
        system.print = [this](const notation::PrintJob& job, const std::stop_token& /*cancel*/) {
            if (throws_)
                throw std::runtime_error("the paper is burning");
            jobs_.push_back(job);
            return printProblem_;
        };
        window_ = std::make_unique<fPrint>(
            desk_.desk(), nullptr, [this] { return score_; }, system);
        window_->paint = paintWords;
        window_->open();
        const int wanted = lookThrows_ ? 1 : static_cast<int>(printers_.size()) + 1;
        ASSERT_TRUE(QTest::qWaitFor([&] {
            return control<QComboBox>("cbPrinters").count() == wanted &&
                   (wanted > 1 || !control<QLabel>("Label2").text().isEmpty());
        }));
    }
    template<class Control>
    Control& control(const char* name) {
        auto* found = window_->findChild<Control*>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    void choosePrinter(const char* name) {
        auto& list = control<QComboBox>("cbPrinters");
        list.setCurrentText(name);
        ASSERT_EQ(list.currentText(), name);
        window_->cbPrinters_Click();
    }
    [[nodiscard]] std::string shown(const char* name) { return control<ReadOut>(name).text().toStdString(); }
    [[nodiscard]] std::string status() { return control<QLabel>("Label2").text().toStdString(); }

    TestDesk desk_;
    notation::PrintedScore score_;
    std::vector<notation::Printer> printers_;
    std::string lookProblem_;
    bool lookThrows_ = false;
    std::string printProblem_;
    bool throws_ = false; ///< in the middle of printing
    std::vector<notation::PrintJob> jobs_;
    std::unique_ptr<fPrint> window_;
    std::vector<std::string> boxes_; ///< title and text of each message

private:
    void closeBox() {
        QWidget* const box = QApplication::activeModalWidget();
        auto* const ok = box ? box->findChild<QAbstractButton*>("ok") : nullptr;
        if (!ok)
            return;
        if (box != read_) {
            read_ = box;
            std::string text = box->windowTitle().toStdString() + ":";
            for (const QLabel* label : box->findChildren<QLabel*>())
                if (!label->text().isEmpty())
                    text += " " + label->text().simplified().toStdString();
            boxes_.push_back(text);
        }
        ok->click(); // again and again: one that comes too early does nothing
    }
    QPointer<QWidget> read_;
    QTimer hand_;
};

class fPrintClassicTest : public fPrintTest {
protected:
    fPrintClassicTest() : fPrintTest(true) {}
};

TEST_F(fPrintTest, EveryPrinterIsListedAndAFileToo) {
    open();
    auto& list = control<QComboBox>("cbPrinters");
    QStringList names;
    for (int i = 0; i < list.count(); ++i)
        names += list.itemText(i);
    EXPECT_EQ(names, QStringList({"Attic", "Office", "Cellar", "Print to file (PDF)"}));
    EXPECT_EQ(list.currentText(), "Office") << "the system's default";
    EXPECT_EQ(window_->windowTitle(), "Velmora  PRINT SCORE");
    EXPECT_EQ(status(), "");
}

TEST_F(fPrintTest, EveryControlHasAToolTextAndAName) {
    open();
    int controls = 0;
    for (QWidget* part : window_->findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<QAbstractButton*>(part) || qobject_cast<QComboBox*>(part) ||
                               qobject_cast<QLineEdit*>(part) || qobject_cast<QAbstractSpinBox*>(part);
        if (!isControl || part->objectName().startsWith("qt_") ||
            part->parentWidget()->objectName().startsWith("qt_") ||
            qobject_cast<QAbstractSpinBox*>(part->parentWidget()) ||
            qobject_cast<QComboBox*>(part->parentWidget()))
            continue;
        ++controls;
        EXPECT_TRUE(desk_.tips.toolTip(*part)) << qPrintable(part->objectName());
        const QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(part);
        EXPECT_FALSE(spoken->text(QAccessible::Name).trimmed().isEmpty()) << qPrintable(part->objectName());
    }
    EXPECT_GT(controls, 20);
}

TEST_F(fPrintTest, TabLeadsThroughAllControlsFromLeftToRightAndDown) {
    open();
    auto& print = control<QAbstractButton>("Command2");
    print.setFocus();
    QStringList order;
    for (int i = 0; i < 40; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        if (QApplication::focusWidget() == &print)
            break;
        order += QApplication::focusWidget()->objectName();
    }
    const QStringList expected{"cmdCancel", "Pic1",     "chkFit",  "chkCenter", "cbPrinters", "cbQuality",
                               "Option5",   "Option6",  "Option1", "Option2",   "VScroll1",   "VScroll2",
                               "VScroll3",  "VScroll4", "Text3",   "Text2",     "txtCopies",  "Command7"};
    order.removeIf([&](const QString& name) { return name.startsWith("SSTab1") || name.isEmpty(); });
    EXPECT_EQ(order, expected) << qPrintable(order.join(' '));
}

TEST_F(fPrintTest, WithoutAPrinterAFileIsLeft) {
    printers_.clear();
    lookProblem_ = "The print server does not answer.";
    open();
    EXPECT_EQ(status(), "Printer error. Check printer");
    EXPECT_EQ(control<QComboBox>("cbPrinters").currentText(), "Print to file (PDF)");
}

TEST_F(fPrintTest, AFailingLookIsNoPrinter) {
    lookThrows_ = true;
    open();
    EXPECT_EQ(status(), "Printer error. Check printer");
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(fPrintTest, TheSummaryIsThePrinters) {
    open();
    EXPECT_EQ(shown("Text1_4"), "A4 (197 x 210 mm.)");
    EXPECT_EQ(shown("Text1_5"), "Portrait");
    EXPECT_EQ(shown("Text1_6"), "Millimeters");
    EXPECT_EQ(shown("Text1_7"), "210");
    EXPECT_EQ(shown("Text1_8"), "297");
    EXPECT_EQ(shown("Text1_9"), "600");
    choosePrinter("Attic");
    EXPECT_EQ(shown("Text1_4"), "Letter (8.5 x 11 in.)");
    EXPECT_EQ(shown("Text1_5"), "Landscape");
    EXPECT_EQ(shown("Text1_6"), "Inches");
    EXPECT_TRUE(control<QRadioButton>("Option5").isChecked());
    EXPECT_TRUE(control<QRadioButton>("Option2").isChecked());
}

TEST_F(fPrintTest, OtherPaperLeavesTheOptionsAsTheyAre) {
    open();
    choosePrinter("Cellar");
    EXPECT_EQ(shown("Text1_4"), "");
    EXPECT_TRUE(control<QRadioButton>("Option6").isChecked());
}

TEST_F(fPrintTest, LandscapeSwapsThePaper) {
    open();
    control<QRadioButton>("Option2").click();
    EXPECT_EQ(window_->layout().PaperWidth(), 29.7);
    EXPECT_EQ(window_->layout().PaperHeight(), 21.0);
    EXPECT_FALSE(control<QRadioButton>("Option1").isChecked());
    EXPECT_EQ(control<QComboBox>("cbOrientation").currentText(), "Landscape");
    const QWidget& paper = control<QWidget>("Pic1");
    EXPECT_NEAR(paper.height(), paper.width() * 21.0 / 29.7, 0.5);
    control<QRadioButton>("Option1").click();
    EXPECT_NEAR(paper.height(), paper.width() * 29.7 / 21.0, 0.5);
}

TEST_F(fPrintTest, TheLinesFollowTheMargins) {
    open();
    control<QDoubleSpinBox>("VScroll2").setValue(10.5);
    control<QDoubleSpinBox>("VScroll3").setValue(29.7);
    const QWidget& paper = control<QWidget>("Pic1");
    EXPECT_NEAR(control<QWidget>("L2").x(), paper.width() / 2, 1);
    EXPECT_EQ(control<QWidget>("L3").y(), 0);
    control<QRadioButton>("Option5").click();
    EXPECT_EQ(control<QDoubleSpinBox>("VScroll2").value(), 4.1) << "10.5 cm in inches";
}

TEST_F(fPrintTest, AllIsPrintedInOneJobWithItsOptions) {
    open();
    control<QSpinBox>("txtCopies").setValue(2);
    control<QLineEdit>("Text3").setText("2");
    window_->Command2_Click();
    ASSERT_EQ(jobs_.size(), 1U);
    EXPECT_EQ(jobs_[0].printer, "Office");
    EXPECT_EQ(jobs_[0].title, "The Song");
    EXPECT_EQ(jobs_[0].document, "The Song 2 3 2 3");
    EXPECT_EQ(jobs_[0].options.at("media"), "iso_a4_210x297mm");
    EXPECT_EQ(jobs_[0].options.at("printer-resolution"), "600dpi");
    EXPECT_EQ(status(), "");
    EXPECT_EQ(desk_.loop.now() < 1, true) << "nothing is waited for";
}

TEST_F(fPrintClassicTest, ItWaitsFourSecondsAndOneBeforeEachSheet) {
    open();
    std::set<std::string> words;
    desk_.loop.onWait = [&](int) { words.insert(status()); };
    window_->Command2_Click();
    EXPECT_EQ(jobs_.size(), 1U);
    EXPECT_NEAR(desk_.loop.now(), 7, 0.5);
    for (const char* const text :
         {"Preparing to print", "Printing Page 1 Copy 1", "Printing Page 3 Copy 1", "Printing"})
        EXPECT_TRUE(words.contains(text)) << text;
}

TEST_F(fPrintClassicTest, CancelWorksDuringTheWaits) {
    open();
    for (const double at : {1.0, 4.5, 6.5}) {
        const double begun = desk_.loop.now();
        desk_.loop.onWait = [&](int) {
            if (desk_.loop.now() - begun > at)
                control<QAbstractButton>("cmdCancel").click();
        };
        window_->Command2_Click();
        EXPECT_NEAR(desk_.loop.now() - begun, at, 0.1);
        EXPECT_TRUE(window_->isVisible());
    }
    EXPECT_TRUE(jobs_.empty());
    EXPECT_TRUE(boxes_.empty());
    desk_.loop.onWait = nullptr;
    window_->cmdCancel_Click();
    EXPECT_FALSE(window_->isVisible()) << "at rest Cancel closes";
}

TEST_F(fPrintClassicTest, ClosingEndsThePrintingFirst) {
    open();
    desk_.loop.onWait = [&](int) {
        window_->close();
        EXPECT_TRUE(window_->isVisible());
    };
    window_->Command2_Click();
    EXPECT_FALSE(window_->isVisible());
    EXPECT_TRUE(jobs_.empty());
}

TEST_F(fPrintTest, WhatGoesWrongIsToldAndTheWindowStays) {
    open();
    printProblem_ = "The printer \"Office\" did not take the pages: it is gone.";
    window_->Command2_Click();
    EXPECT_EQ(boxes_, std::vector<std::string>{"Printing Error: " + printProblem_});
    EXPECT_TRUE(window_->isVisible());
    EXPECT_TRUE(control<QAbstractButton>("Command2").isEnabled());
    EXPECT_EQ(jobs_.size(), 1U) << "nothing is tried again";
}

TEST_F(fPrintTest, AFileIsWrittenWhereTheUserWants) {
    open();
    choosePrinter("Print to file (PDF)");
    const std::string file = (desk_.folders.home() / "out.pdf").string();
    desk_.dialogs.answers.push_back({file, 1});
    window_->Command2_Click();
    std::ifstream in(file);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "The Song 1 2 3");
    EXPECT_TRUE(jobs_.empty());
    window_->Command2_Click(); // without an answer the dialog is cancelled
    EXPECT_TRUE(boxes_.empty());
}

TEST_F(fPrintTest, AFullDiskIsToldInWords) {
    open();
    choosePrinter("Print to file (PDF)");
    desk_.dialogs.answers.push_back({"/dev/full", 1});
    window_->Command2_Click();
    ASSERT_EQ(boxes_.size(), 1U);
    EXPECT_THAT(boxes_[0], testing::StartsWith("Printing Error: "));
    EXPECT_THAT(boxes_[0], testing::HasSubstr("/dev/full"));
    EXPECT_THAT(boxes_[0], testing::HasSubstr("No space left"));
}

TEST_F(fPrintTest, ARangeWithoutPagesPrintsNothing) {
    open();
    control<QLineEdit>("Text3").setText("3");
    control<QLineEdit>("Text2").setText("1");
    window_->Command2_Click();
    EXPECT_TRUE(jobs_.empty());
    EXPECT_EQ(boxes_,
              std::vector<std::string>{"Printing Error: Nothing to print: page 3 comes after page 1."});
}

TEST_F(fPrintTest, NoNameIsAskedForWhereThereIsNothingToPrint) {
    open();
    choosePrinter("Print to file (PDF)");
    control<QLineEdit>("Text3").setText("9");
    window_->Command2_Click();
    EXPECT_TRUE(desk_.dialogs.asked.empty());
    EXPECT_EQ(boxes_, std::vector<std::string>{"Printing Error: Nothing to print: the last page is page 3."});
}

TEST_F(fPrintTest, ADragMovesThePage) {
    open();
    auto& paper = control<QWidget>("Pic1");
    const auto before = window_->layout().image();
    const QPointF from(100, 100);
    const auto send = [&](QEvent::Type type, QPointF at, Qt::MouseButtons held) {
        QMouseEvent event(type, at, paper.mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
        QApplication::sendEvent(&paper, &event);
    };
    send(QEvent::MouseButtonPress, from, Qt::LeftButton);
    send(QEvent::MouseMove, from + QPointF(10, 0), Qt::LeftButton);
    EXPECT_NEAR(window_->layout().image().left, before.left + 10 * 21.0 / paper.width(), 1e-9);
    EXPECT_FALSE(control<QCheckBox>("chkCenter").isChecked());
    send(QEvent::MouseMove, from, Qt::NoButton);
    EXPECT_NEAR(window_->layout().image().left, before.left + 10 * 21.0 / paper.width(), 1e-9);
}

TEST_F(fPrintTest, TheImagesSizeTakesTheFitAway) {
    open();
    control<QDoubleSpinBox>("Text1_2").setValue(50);
    EXPECT_FALSE(control<QCheckBox>("chkFit").isChecked());
    EXPECT_NEAR(window_->layout().image().width, 794 / 96.0 * 2.54 / 2, 1e-6);
    control<QCheckBox>("chkFit").click();
    EXPECT_NEAR(window_->layout().image().width, 18, 1e-6);
}

TEST_F(fPrintTest, TheWheelTurnsPages) {
    open();
    auto& paper = control<QWidget>("Pic1");
    EXPECT_EQ(control<QLabel>("pageShown").text(), "Page 1 of 3");
    QTest::keyClick(&paper, Qt::Key_PageDown);
    EXPECT_EQ(control<QLabel>("pageShown").text(), "Page 2 of 3");
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(&paper, Qt::Key_PageDown);
    EXPECT_EQ(control<QLabel>("pageShown").text(), "Page 3 of 3");
}

TEST_F(fPrintTest, PagesAreNamedByTheirNumbersWhereOthersWereClosed) {
    score_.numbers = {1, 3, 4};
    open();
    EXPECT_EQ(control<QLineEdit>("Text2").placeholderText(), "4");
    auto& from = control<QLineEdit>("Text3");
    QTest::keyClicks(&from, "3");
    EXPECT_EQ(control<QLabel>("pageShown").text(), "Page 3 of 4");
    window_->Command2_Click();
    ASSERT_EQ(jobs_.size(), 1U);
    EXPECT_EQ(jobs_[0].document, "The Song 2 3");
    QTest::keyClick(&from, Qt::Key_Backspace);
    QTest::keyClicks(&from, "9");
    EXPECT_EQ(control<QLabel>("pageShown").text(), "Page 4 of 4");
}

TEST_F(fPrintTest, ASheetThatWasClosedIsNotPrinted) {
    for (int page = 1; page <= 3; ++page)
        desk_.song().AddPage();
    desk_.song().closePage(2);
    fPrint window(desk_.desk(), nullptr);
    window.paint = paintWords;
    window.findChild<QComboBox*>("cbPrinters")->setCurrentText("Print to file (PDF)");
    window.Command7_Click();
    EXPECT_EQ(window.findChild<QLineEdit*>("Text2")->placeholderText(), "3");
    window.findChild<QLineEdit*>("Text3")->setText("2");
    const std::string file = (desk_.folders.home() / "out.pdf").string();
    desk_.dialogs.answers.push_back({file, 1});
    window.Command2_Click();
    EXPECT_EQ(readWholeFile(file).value_or(""), " 2") << "the second of those that are there";
}

TEST_F(fPrintTest, WhatIsPrintedIsTheScoreAsItIsThen) {
    open();
    score_.title = "Another Song";
    score_.pages.pages.resize(1);
    window_->Command2_Click();
    ASSERT_EQ(jobs_.size(), 1U);
    EXPECT_EQ(jobs_[0].document, "Another Song 1");
}

TEST_F(fPrintTest, AFullDiskLeavesTheOldFile) {
    open();
    choosePrinter("Print to file (PDF)");
    const std::string file = (desk_.folders.home() / "out.pdf").string();
    ASSERT_EQ(replaceFile(file, "old"), "");
    desk_.dialogs.answers.push_back({file, 1});
    {
        const FullDisk disk(4);
        window_->Command2_Click();
    }
    ASSERT_EQ(boxes_.size(), 1U);
    EXPECT_THAT(boxes_[0], testing::HasSubstr("out.pdf"));
    EXPECT_EQ(readWholeFile(file).value_or(""), "old");
}

TEST_F(fPrintTest, NoCopiesAndMarginsLargerThanThePaperAreToldInWords) {
    open();
    control<QSpinBox>("txtCopies").setValue(0);
    window_->Command2_Click();
    control<QSpinBox>("txtCopies").setValue(10'001);
    EXPECT_EQ(control<QSpinBox>("txtCopies").value(), 10'000);
    window_->Command2_Click();
    control<QSpinBox>("txtCopies").setValue(1);
    control<QDoubleSpinBox>("VScroll1").setValue(20);
    control<QDoubleSpinBox>("VScroll3").setValue(20);
    window_->Command2_Click();
    EXPECT_EQ(
        boxes_,
        (std::vector<std::string>{
            "Printing Error: Nothing to print: the number of copies is 0.",
            "Printing Error: More than 10000 sheets of paper can't be printed at a time. Choose fewer pages "
            "or copies.",
            "Printing Error: The margins are larger than the paper: nothing is left between them."}));
    EXPECT_TRUE(jobs_.empty());
}

TEST_F(fPrintTest, APrinterThatGoesInTheMiddleIsToldAndNothingIsTriedAgain) {
    open();
    throws_ = true;
    window_->Command2_Click();
    EXPECT_EQ(boxes_, std::vector<std::string>{"Printing Error: the paper is burning"});
    EXPECT_EQ(status(), "");
    EXPECT_TRUE(window_->isVisible());
    throws_ = false;
    window_->Command2_Click();
    EXPECT_EQ(jobs_.size(), 1U);
}

TEST_F(fPrintTest, PreviewTakesTheScoreAsItIsNow) {
    open();
    score_.pages.pages.resize(1);
    window_->Command7_Click();
    EXPECT_EQ(control<QLabel>("pageShown").text(), "Page 1 of 1");
    score_.pages.pages.clear();
    window_->Command7_Click();
    window_->Command2_Click();
    EXPECT_TRUE(jobs_.empty());
    EXPECT_EQ(boxes_.size(), 1U);
}

} // namespace

} // namespace velmora
