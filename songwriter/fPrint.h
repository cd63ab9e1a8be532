// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/PrintRun.h"
#include "notation/Printers.h"
#include "parts/Windows.h"
#include "shell/SkinnedWindow.h"

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSpinBox;

namespace velmora {

class CommandButton;
class PrintPreview;
class ReadOut;
class SetupPage;
class SetupTab;
struct Desk;

/// "Velmora  PRINT SCORE": prints the score's pages, on paper or to a PDF file.
///
// clang-format off
/// | Control                 | The user sees                              | What it presses         |
/// |-------------------------|--------------------------------------------|-------------------------|
/// | `Pic1`, `L1` to `L4`    | the paper, a page on it, the margins       | `PrintPreview`          |
/// | `chkFit`, `chkCenter`   | "Fit to page", "Center image"              | `CmdSize`               |
/// | `SSTab1`                | the tabs "Print" and "Image"               |                         |
/// | `cbPrinters`            | the printers, and "Print to file (PDF)"    | `cbPrinters_Click`      |
/// | `cbQuality`             | "Quality (DPI)"                            |                         |
/// | `Option5`, `Option6`    | paper: Letter, A4                          | `setPaper`              |
/// | `Option1`, `Option2`    | "Portrait", "Landscape"                    | `setTurn`               |
/// | `VScroll1` to `VScroll4` | the margins: top, left, bottom, right     | `CmdSize`               |
/// | `Text3`, `Text2`        | "Print Pages": from, to; blank for all     |                         |
/// | `txtCopies`, `sbCopies` | copies, and their arrows                   |                         |
/// | `Text1`                 | the summary; width, height, scale of the image |                     |
/// | `cbOrientation`         | the same as `Option1` and `Option2`        | `setTurn`               |
/// | `Label2`                | what goes on                               |                         |
/// | `Command7`              | "Preview"                                  | `Command7_Click`        |
/// | `Command2`              | "Print"                                    | `Command2_Click`        |
/// | `cmdCancel`             | "Cancel"                                   | `cmdCancel_Click`       |
// clang-format on
///
/// Printing ends where Cancel is pressed; at other times that closes the window.
class fPrint : public SkinnedWindow, private notation::PrintScreen {
public:
    using Source = std::function<notation::PrintedScore()>;

    /// Prints the pages of the Songwriter that are open.
    /// @param over where it comes up for the first time; it may be null
    fPrint(Desk& desk, QWidget* over);
    /// @param source gives the score that is to be printed, whenever it is asked
    /// @param system other printers than the machine's
    fPrint(Desk& desk, QWidget* over, Source source, notation::PrintSystem system = {});
    ~fPrint() override;

    /// Shows the score as it is now, and looks for printers meanwhile.
    void open(Windows::Focus focus = Windows::Focus::Take);
    void unload() { cancel_.request_stop(); }

    void Command7_Click();
    void Command2_Click();
    void cmdCancel_Click();
    void cbPrinters_Click();
    /// Has paper, lines, image and texts follow what was chosen.
    void CmdSize();
    void setPaper(notation::PaperSize paper);
    void setTurn(notation::PaperTurn turn);

    [[nodiscard]] const notation::PrintLayout& layout() const { return layout_; }

    notation::PaintPrint paint; ///< what makes the document

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Look; ///< what the thread that looks for printers has found

    void showStatus(const std::string& words) override;
    bool pass(double seconds) override;

    void addPreview();
    void addTabs();
    void addPrinterGroup();
    void addPaperGroup();
    void addMarginGroup();
    void addPagesGroup();
    void addSummaryGroup();
    void addImageTab();
    void addButtons();
    void addTips();
    [[nodiscard]] QGroupBox* addGroup(const char* words, QWidget* page, const QRect& place);
    [[nodiscard]] ReadOut* addReadOut(const char* name, const char* words, QGroupBox* group, QPoint at);

    void lookForPrinters();
    void takePrinters();
    void showPrinters(const std::vector<notation::Printer>& printers);
    void showUnits();
    void showValues();
    void showShownPage();
    void turnPages(int pages);
    void showCommands();
    [[nodiscard]] const notation::Printer* printer() const;
    [[nodiscard]] notation::PrintRequest request() const;
    [[nodiscard]] std::filesystem::path chooseFile();
    [[nodiscard]] notation::PrintOutcome print();
    [[nodiscard]] std::string send(const notation::Printer& to, const std::string& document);

    Desk& desk_;
    Source source_;
    notation::PrintSystem system_;
    notation::PrintedScore score_;
    notation::PrintLayout layout_;
    std::vector<notation::Printer> printers_;
    std::shared_ptr<Look> looking_; ///< none while nobody looks
    QTimer lookTimer_;
    QString trouble_; ///< with the printers, shown while nothing else is
    int shown_ = 1;   ///< page, from 1
    bool printing_ = false;
    bool showing_ = false; ///< values are set by the program
    bool closes_ = false;  ///< as soon as the printing has ended
    std::stop_source cancel_;

    PrintPreview* preview_ = nullptr;
    QCheckBox* chkFit_ = nullptr;
    QCheckBox* chkCenter_ = nullptr;
    QLabel* pageShown_ = nullptr;
    QWidget* printPage_ = nullptr;
    QWidget* imagePage_ = nullptr;
    QComboBox* cbPrinters_ = nullptr;
    QComboBox* cbQuality_ = nullptr;
    QComboBox* cbOrientation_ = nullptr;
    QRadioButton* Option1_ = nullptr;
    QRadioButton* Option2_ = nullptr;
    QRadioButton* Option5_ = nullptr;
    QRadioButton* Option6_ = nullptr;
    QGroupBox* margins_ = nullptr;
    std::array<QDoubleSpinBox*, 4> VScroll_{}; ///< by `Margin`
    QLineEdit* Text3_ = nullptr;
    QLineEdit* Text2_ = nullptr;
    QSpinBox* txtCopies_ = nullptr;
    ReadOut* paper_ = nullptr;
    ReadOut* turn_ = nullptr;
    ReadOut* scaleMode_ = nullptr;
    ReadOut* paperWidth_ = nullptr;
    ReadOut* paperHeight_ = nullptr;
    ReadOut* quality_ = nullptr;
    QDoubleSpinBox* imageWidth_ = nullptr;
    QDoubleSpinBox* imageHeight_ = nullptr;
    QDoubleSpinBox* imageScale_ = nullptr;
    QLabel* Label2_ = nullptr;
    CommandButton* Command7_ = nullptr;
    CommandButton* Command2_ = nullptr;
    CommandButton* cmdCancel_ = nullptr;
};

} // namespace velmora
