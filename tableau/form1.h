// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"
#include "composition/ScoreFiles.h"
#include "composition/Workspace.h"
#include "parts/CommandBank.h"
#include "score/ViewState.h"
#include "shell/SkinnedWindow.h"
#include "tableau/FormLayout.h"
#include "tableau/TableauScreen.h"

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string_view>

class QLabel;

namespace velmora {

class ButtonBar;
class ChannelStrip;
class FormScreen;
class MenuStrip;
class Picmain;
class PlaybackView;
class PolynoteDrag;
class ScoreExports;
class StepEntry;
class TableauInput;
class TextLine;
class ToolPanel;
class TopBarOverlay;
class frminfo;
struct Desk;
struct LeftScore;
enum class ExportFormat : std::uint8_t;

/// The composing window: an assembly of strips. It hands every press on to the room that works it out.
///
// clang-format off
/// | Control             | What the user sees                              | Routine                               |
/// |---------------------|-------------------------------------------------|---------------------------------------|
/// | `toolbMenu`, `Lmnu` | "File", "Edit", "Tools", "Help"                 | popups of `Frmmenu`                   |
/// | `Cmd2`, `Lb1`       | the command buttons, see Commands.h             | `Cmd2_Click`, `Lb1_Click`             |
/// | `toolPanel`         | Melody Maker, Single Note Effects, Score Editor |                                       |
/// | `Label8`            | the squares of the channels                     | `Label8_Click`; a right press mutes   |
/// | `TopBarOverlay`     | read-outs of the note and the score             |                                       |
/// | `Picmain`           | the Tableau                                     | right press: see RightClick           |
/// | `textLine`          | tool text; what a right click does              | `Lb1_Click`(13 to 15)                 |
// clang-format on
class form1 : public SkinnedWindow, private Watcher {
public:
    explicit form1(Desk& desk);
    ~form1() override;

    void Cmd2_Click(int index) { Cmd2_.press(index); }
    void Lb1_Click(int index) { Lb1_.press(index); }
    void Label8_Click(int channel) { TrackSel_Click(channel); }
    /// The usual channel change.
    void TrackSel_Click(int channel);
    /// A press of the right button on a channel's square.
    void toggleMuted(int channel);
    void Lmnu_Click(int index);
    /// Ends the program, after the question whether to save.
    void Command3_Click() { close(); }
    /// Opens a score that the user chooses.
    void Command33_Click();
    /// Opens this one.
    void openScore(const std::filesystem::path& file);
    void openDemo(const std::filesystem::path& file, const std::string& title);
    /// Opens one of the last files.
    void openRecent(const std::filesystem::path& file);
    /// Shows a score that a crash left, under the name of its own file.
    void bringBack(const LeftScore& left);
    /// Saves under a name that the user chooses; false if nothing was saved.
    bool mSaveAs_Click();
    /// Saves to the score's own file; asks for a name if there is none, and in classic manners always.
    bool save();
    void Command34_Click() { mSaveAs_Click(); }
    /// Writes the score under a name that the user chooses, as others can play or hear it.
    void exportScore(ExportFormat format);
    void ClearAll();
    void OpenforUndo();
    void redo();
    void PlayAndStop_Click(bool stop);
    /// Plays what is selected.
    void PlaySelection_Click();
    void setMouseMode(Mouse mode);
    /// From drawing to selecting, and back.
    void FunctionBut_Click();
    /// What stands in the column of a press on the bar.
    void Pic2a_MouseDown(int x);
    void Pic3_MouseMove(MouseButton button, int x);
    void Check4_Click();

    // Block editing and the Melody Maker.
    void copyIt();
    void CutBut_Click();
    void PasteBut_Click();
    void PasteIntoBut_Click();
    void InsertColumnBut_Click();
    void CopyNotes_Click();
    void CopyMelody_Click();
    void Cmdo_Click();
    /// Picks the instrument of Single Note Effects.
    void CmdInst_Click();
    void ClearEffects();

    /// Silences everything that sounds.
    void Command32_Click();

    void setRightClickMode(RightClick mode);
    void mentionRightClick(RightClick mode);
    void showPercussion(bool shown);
    void showEditingToolbar(bool shown);
    void setNotationStyle(int style);
    /// Rows become higher by so many notches of the wheel, or lower; the row at @p y of `MusicBox`, in its
    /// middle if none is given, stays there. Nothing in the middle of a stroke.
    void zoomRows(int notches, std::optional<int> y = std::nullopt);
    /// Rows are as high as they are at first.
    void resetRows();
    void setAccidentals(bool shown);
    void showPlayLine(bool shown);
    void setLoop(bool on);
    /// Notes of MIDI inputs are written while the pointer rests in `MusicBox`.
    void setStepEntry(bool on);
    [[nodiscard]] bool isClassic() const;
    void setClassic(bool classic);

    void imgTitleHelp_Click();

    /// How often a Tableau has been painted anew.
    [[nodiscard]] int paintings(Box box) const;

protected:
    void moveEnded() override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;
    [[nodiscard]] QWidget* ringed(QWidget* focused) const override;

private:
    void bindCommands();
    void bindRightClick();
    void openAtStoredPlace();
    void setOrder();
    void Form_Activate();
    void bindTableau();
    void bindStepEntry();
    void bindEditing();
    void bindEffects();
    void bindBars();
    void applyAlong(int x);
    void noteInstrumentPicked(std::int16_t code);
    void clearMarks();
    void editNotes(const std::function<bool()>& command);
    void mentionBoxes();
    void mentionMarked(bool done, std::string_view verb);
    void rightPressOnSquare(int channel);
    void bindFiles();
    void fillFileMenu();
    void tellUser(const std::string& words);
    bool tellOutcome(const ScoreFiles::Outcome& outcome);
    [[nodiscard]] bool mayReplace();

    // What is shown of the composition.
    void changed(Changes changes) override;
    void showTitle();
    void showChannels();
    void showNextNote();
    void PrintTopBar();
    void showModes();
    void showMouseMode();
    void showTools();
    void showUndo();
    void showStep(std::initializer_list<int> buttons, const char* item, std::string_view step,
                  const QString& verb);
    void bringIntoView(const Workspace::Undone& undone);
    void showUsedPercussion();
    void paint(Changes changes);
    void place();
    void layOut();
    void setRowHeight(int height, std::optional<int> y);
    void showToolPage(int page);
    [[nodiscard]] bool mayClose();
    void unload();
    void saveAtEnd(const QRect& frame);

    Desk& desk_;
    CommandBank Cmd2_;
    CommandBank Lb1_;
    MenuStrip* toolbMenu_;
    QLabel* topBar_;
    ButtonBar* buttonBar_;
    ToolPanel* toolPanel_;
    ChannelStrip* channelStrip_;
    TopBarOverlay* TopBarOverlay_;
    Picmain* Picmain_;
    TextLine* textLine_;
    std::unique_ptr<frminfo> frminfo_;

    std::unique_ptr<ScoreFiles> files_;
    std::unique_ptr<ScoreExports> exports_;
    std::unique_ptr<FormScreen> screen_;
    Guests<PlaybackView>::Stay plays_;
    std::unique_ptr<TableauInput> input_;
    std::unique_ptr<PolynoteDrag> polynotes_;
    std::unique_ptr<StepEntry> stepEntry_;
    std::optional<Act> indicatorAct_; ///< a drag along `Pic2a`

    FormParts parts_;
    bool loading_ = true; ///< the start-up guard: nothing is laid out or painted
    /// What stays where it is while rows change their height.
    struct Kept {
        int row, y;
        int firstColumn, lastColumn;
    };
    std::optional<Kept> kept_;
    bool opened_ = false;    ///< a score was opened: its first notes are to come into sight
    bool activated_ = false; ///< the MIDI port has been opened
    RightClick shownRightClick_ = RightClick::Erase;
    bool closing_ = false;
    Guests<Watcher>::Stay watching_;
};

} // namespace velmora
