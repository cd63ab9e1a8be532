// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/fPrint.h"

#include "base/Dialogs.h"
#include "base/Files.h"
#include "base/MessageLoop.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "composition/Workspace.h"
#include "notation/PrinterSummary.h"
#include "notation/SongDocument.h"
#include "parts/Desk.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/MessageBox.h"
#include "shell/ReadOut.h"
#include "songwriter/PrintPreview.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <thread>
#include <utility>

namespace velmora {

namespace {
using notation::PaperSize;
using notation::PaperTurn;

constexpr QSize kSize(800, 580);
constexpr const char* kToFile = "Print to file (PDF)";
constexpr std::string_view kFilter = "PDF (*.pdf)|*.pdf";
constexpr const char* kPrinterError = "Printer error. Check printer";
constexpr const char* kPrintingError = "Printing Error";
constexpr const char* kNoChoice = "Automatic";
constexpr int kLookEvery = 30; ///< milliseconds
constexpr double kSlice = 0.02;

int pageOf(const QLineEdit& field) {
    return field.text().toInt(); // 0 for a blank one
}

/// A title that can be the name of a file.
std::string fileNameOf(const std::string& title) {
    std::string name = title;
    std::ranges::replace_if(
        name, [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' '; }, ' ');
    return name.empty() ? "Score" : name;
}

/// The open pages, with the texts on them.
notation::PrintedScore printedScore(notation::SongDocument& song) {
    notation::Sheets& sheets = song.sheets();
    notation::PrintedScore score{.title = song.setup.title, .numbers = song.openPages()};
    std::vector<notation::EngravedPage> pages;
    for (const int page : score.numbers)
        pages.push_back(sheets.drawn(page));
    score.pages.width = sheets.engraved().width;
    score.pages.height = sheets.engraved().height;
    score.pages.styles = sheets.engraved().styles; // drawing the texts has added theirs
    score.pages.pages = std::move(pages);
    return score;
}
} // namespace

struct fPrint::Look {
    std::vector<notation::Printer> printers{};
    std::string problem{};
    std::atomic<bool> done = false;
};

fPrint::fPrint(Desk& desk, QWidget* over) : fPrint(desk, over, [&desk] { return printedScore(desk.song); }) {}

fPrint::fPrint(Desk& desk, QWidget* over, Source source, notation::PrintSystem system)
    : SkinnedWindow(desk.skins, {.help = true})
    , paint(notation::pdfOf)
    , desk_(desk)
    , source_(std::move(source))
    , system_(std::move(system)) {
    setObjectName("fPrint");
    setWindowTitle("Velmora  PRINT SCORE");
    setAttribute(Qt::WA_QuitOnClose, false);
    setFixedSize(kSize);
    addPreview();
    addTabs();
    addButtons();
    addTips();
    setHelp([this] { desk_.windows.help("printing"); });
    lookTimer_.setInterval(kLookEvery);
    connect(&lookTimer_, &QTimer::timeout, this, [this] { takePrinters(); });
    showPrinters({});
    if (over)
        move(over->geometry().center() - rect().center());
}

fPrint::~fPrint() {
    cancel_.request_stop();
}

void fPrint::open(Windows::Focus focus) {
    if (!printing_) {
        Command7_Click();
        lookForPrinters();
    }
    setAttribute(Qt::WA_ShowWithoutActivating, focus == Windows::Focus::Leave);
    show();
    if (focus == Windows::Focus::Leave)
        return;
    raise();
    activateWindow();
    Command2_->setFocus();
    showFocusRing();
}

/// On a thread of its own, which may outlive the window: a server may take its time to answer.
void fPrint::lookForPrinters() {
    if (looking_)
        return;
    looking_ = std::make_shared<Look>();
    std::thread([found = looking_, printers = system_.printers] {
        try {
            found->printers = printers(found->problem);
        } catch (const std::exception& error) {
            found->problem = error.what();
        }
        found->done = true;
    }).detach();
    lookTimer_.start();
}

void fPrint::takePrinters() {
    if (!looking_ || !looking_->done || printing_)
        return;
    lookTimer_.stop();
    const auto found = std::exchange(looking_, nullptr);
    trouble_ = found->printers.empty() ? kPrinterError : "";
    desk_.tips.SetToolTip(*Label2_, {"State", toQString(found->problem), ""});
    showPrinters(found->printers);
    showStatus("");
}

void fPrint::showPrinters(const std::vector<notation::Printer>& printers) {
    const QString before = cbPrinters_->count() > 1 ? cbPrinters_->currentText() : QString();
    printers_ = printers;
    cbPrinters_->clear();
    int chosen = -1;
    for (const notation::Printer& one : printers_) {
        if (one.isDefault && chosen < 0)
            chosen = cbPrinters_->count();
        cbPrinters_->addItem(toQString(one.DeviceName));
    }
    cbPrinters_->addItem(kToFile);
    if (const int again = before.isEmpty() ? -1 : cbPrinters_->findText(before); again >= 0)
        chosen = again;
    cbPrinters_->setCurrentIndex(std::max(chosen, 0));
    cbPrinters_Click();
}

const notation::Printer* fPrint::printer() const {
    const auto row = static_cast<std::size_t>(std::max(cbPrinters_->currentIndex(), 0));
    return row < printers_.size() ? &printers_[row] : nullptr;
}

/// The paper of a printer that says which it has is chosen; that of another leaves the options as they are.
void fPrint::cbPrinters_Click() {
    const notation::Printer* const chosen = printer();
    const auto properties = chosen ? propertiesOf(*chosen) : notation::PrinterProperties();
    cbQuality_->clear();
    cbQuality_->addItem(kNoChoice, 0);
    if (chosen)
        for (const int dots : chosen->resolutions)
            cbQuality_->addItem(QString::number(dots), dots);
    if (properties.quality > 0) {
        if (cbQuality_->findData(properties.quality) < 0)
            cbQuality_->addItem(QString::number(properties.quality), properties.quality);
        cbQuality_->setCurrentIndex(cbQuality_->findData(properties.quality));
    }
    if (const auto paper = notation::paperOfCode(properties.PaperSize))
        layout_.setPaper(*paper);
    if (const auto turn = notation::turnOfCode(properties.Orientation))
        layout_.setTurn(*turn);
    CmdSize();
    if (chosen && properties.PaperSize != 0 && !notation::paperOfCode(properties.PaperSize))
        paper_->clear();
}

void fPrint::setPaper(PaperSize paper) {
    layout_.setPaper(paper);
    CmdSize();
}

void fPrint::setTurn(PaperTurn turn) {
    layout_.setTurn(turn);
    CmdSize();
}

void fPrint::CmdSize() {
    preview_->CmdSize(layout_);
    showing_ = true;
    showValues();
    showing_ = false;
}

void fPrint::showUnits() {
    const QString unit = toQString(std::string(rowOf(layout_.paper()).unit));
    margins_->setTitle("Margins (" + unit + ")");
    for (QDoubleSpinBox* length : {imageWidth_, imageHeight_})
        length->setSuffix(" " + unit);
}

void fPrint::showValues() {
    const bool isA4 = layout_.paper() == PaperSize::A4;
    const bool isUpright = layout_.turn() == PaperTurn::Portrait;
    showUnits();
    chkFit_->setChecked(layout_.chkFit);
    chkCenter_->setChecked(layout_.chkCenter);
    Option5_->setChecked(!isA4);
    Option6_->setChecked(isA4);
    Option1_->setChecked(isUpright);
    Option2_->setChecked(!isUpright);
    cbOrientation_->setCurrentIndex(static_cast<int>(layout_.turn()));
    for (std::size_t i = 0; i < VScroll_.size(); ++i) {
        VScroll_[i]->setRange(0, i % 2 == 0 ? layout_.PaperHeight() : layout_.PaperWidth());
        VScroll_[i]->setValue(layout_.margins[i]);
    }
    const auto image = layout_.image();
    imageWidth_->setValue(image.width);
    imageHeight_->setValue(image.height);
    imageScale_->setValue(layout_.shownPercent());
    constexpr int kInches = 5;
    constexpr int kMillimetres = 6;
    constexpr double kMillimetresAUnit = 10;
    const auto show = [](ReadOut* out, std::string_view text) { out->setText(toQString(std::string(text))); };
    show(paper_, rowOf(layout_.paper()).text);
    show(turn_, notation::turnText(isUpright ? 1 : 2));
    show(scaleMode_, notation::scaleModeText(isA4 ? kMillimetres : kInches));
    const double unit = isA4 ? kMillimetresAUnit : 1;
    paperWidth_->setText(QString::number(layout_.PaperWidth() * unit));
    paperHeight_->setText(QString::number(layout_.PaperHeight() * unit));
    quality_->setText(cbQuality_->currentText());
}

/// Takes the score as it is now.
void fPrint::Command7_Click() {
    if (printing_)
        return;
    preview_->showPage(score_.pages, nullptr);
    score_ = source_ ? source_() : notation::PrintedScore();
    if (score_.pages.width > 0 && score_.pages.height > 0) {
        layout_.pictureWidth = score_.pages.width;
        layout_.pictureHeight = score_.pages.height;
    }
    CmdSize();
    showShownPage();
    showCommands();
}

void fPrint::showShownPage() {
    const int count = score_.count();
    shown_ = std::clamp(shown_, 1, std::max(count, 1));
    const int last = count == 0 ? 0 : score_.number(count);
    Text3_->setPlaceholderText(QString::number(count == 0 ? 1 : score_.number(1)));
    Text2_->setPlaceholderText(QString::number(last));
    pageShown_->setText(count == 0 ? QStringLiteral("No pages")
                                   : QStringLiteral("Page %1 of %2").arg(score_.number(shown_)).arg(last));
    preview_->showPage(score_.pages,
                       count == 0 ? nullptr : &score_.pages.pages[static_cast<std::size_t>(shown_ - 1)]);
}

void fPrint::turnPages(int pages) {
    if (printing_)
        return;
    shown_ += pages;
    showShownPage();
}

/// While it prints only Cancel can be pressed.
void fPrint::showCommands() {
    Command7_->setEnabled(!printing_);
    Command2_->setEnabled(!printing_);
    printPage_->setEnabled(!printing_);
    imagePage_->setEnabled(!printing_);
    preview_->setEnabled(!printing_);
    chkFit_->setEnabled(!printing_);
    chkCenter_->setEnabled(!printing_);
}

void fPrint::showStatus(const std::string& words) {
    Label2_->setText(words.empty() ? trouble_ : toQString(words));
}

bool fPrint::pass(double seconds) {
    const double end = desk_.loop.now() + seconds;
    desk_.loop.YieldIfInput();
    while (!cancel_.stop_requested() && desk_.loop.now() < end)
        desk_.loop.serveUntil(std::min(end, desk_.loop.now() + kSlice));
    return !cancel_.stop_requested();
}

notation::PrintRequest fPrint::request() const {
    return {.layout = layout_,
            .from = pageOf(*Text3_),
            .to = pageOf(*Text2_),
            .copies = txtCopies_->value(),
            .waits = !desk_.workspace.manners.printsWithoutWaiting};
}

/// Blank if the user wants none.
std::filesystem::path fPrint::chooseFile() {
    return desk_.dialogs
        .SaveDialog1("Print to file", kFilter, (desk_.folders.media() / fileNameOf(score_.title)).string(),
                     ".pdf")
        .path;
}

/// By a thread, while the window goes on.
std::string fPrint::send(const notation::Printer& to, const std::string& document) {
    const notation::PrintJob job{.printer = to.DeviceName,
                                 .title = score_.title.empty() ? "Velmora" : score_.title,
                                 .document = document,
                                 .options = jobOptions(layout_, cbQuality_->currentData().toInt())};
    std::string problem;
    std::atomic<bool> done = false;
    std::thread sender([&, cancel = cancel_.get_token()] {
        try {
            problem = system_.print(job, cancel);
        } catch (const std::exception& error) {
            problem = error.what();
        }
        done = true;
    });
    while (!done) {
        desk_.loop.serveUntil(desk_.loop.now() + kSlice);
        if (!done) // a clock that jumps, or a program that ends, doesn't wait
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    sender.join();
    return problem;
}

notation::PrintOutcome fPrint::print() {
    if (std::string problem = whyNotPrintable(score_, request()); !problem.empty())
        return {.problem = std::move(problem)}; // before a name is asked for
    const notation::Printer* const chosen = printer();
    std::filesystem::path file;
    if (!chosen) {
        file = chooseFile();
        if (file.empty())
            return {.cancelled = true};
    }
    const auto deliver = [&](const std::string& document) {
        return chosen ? send(*chosen, document) : replaceFile(file, document);
    };
    try {
        return printScore(score_, request(), *this, deliver, paint);
    } catch (const std::exception& error) {
        return {.problem = error.what()};
    }
}

void fPrint::Command2_Click() {
    if (printing_)
        return;
    Command7_Click(); // pages may have been written anew since
    printing_ = true;
    cancel_ = {};
    const bool hadFocus = Command2_->hasFocus(); // which a disabled button loses
    showCommands();
    const notation::PrintOutcome outcome = print();
    printing_ = false;
    showCommands();
    showStatus("");
    if (hadFocus)
        Command2_->setFocus();
    if (!outcome.problem.empty() && !outcome.cancelled && !cancel_.stop_requested())
        tell(skins(), this, toQString(outcome.problem), kPrintingError);
    if (std::exchange(closes_, false))
        close();
}

void fPrint::cmdCancel_Click() {
    if (!printing_)
        return void(close());
    cancel_.request_stop();
}

void fPrint::closeEvent(QCloseEvent* event) {
    if (!printing_)
        return event->accept();
    event->ignore();
    closes_ = true;
    cancel_.request_stop();
}

void fPrint::keyPressEvent(QKeyEvent* event) {
    const bool prints = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                        (event->key() == Qt::Key_P && event->modifiers() == Qt::ControlModifier);
    if (event->key() == Qt::Key_Escape)
        cmdCancel_Click();
    else if (event->key() == Qt::Key_F1)
        desk_.windows.help("printing");
    else if (prints)
        Command2_->click();
    else
        SkinnedWindow::keyPressEvent(event);
}

} // namespace velmora
