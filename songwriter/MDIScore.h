// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"
#include "notation/SongDocument.h"
#include "parts/CommandBank.h"
#include "parts/Windows.h"
#include "shell/SkinnedWindow.h"
#include "songwriter/SongParts.h"

#include <QPointer>

#include <array>
#include <filesystem>
#include <memory>

class QComboBox;
class QLabel;

namespace velmora {

class CommandButton;
class NotesPanel;
class PageArea;
class ProgressWindow;
class ScorePanel;
class SetupTab;
class StavesPanel;
class TextsPanel;

/// The Songwriter: the score as pages of music. It sets and shows a `SongDocument`, which does the rest.
///
// clang-format off
/// | Control                     | The user sees                              | What it presses                |
/// |-----------------------------|--------------------------------------------|--------------------------------|
/// | `Lb1`(0 to 8)               | the bar: `kSongButtons`                    | the routines of these names    |
/// | `Lmnu`(0, 1, 2)             | " Write ", " Text ", " File "              | their popups; the second its panel too |
/// | `Lmnu`(3, 4, 5)             | " Channels ", " Note Setup ", " Score Setup " | show their panels           |
/// | `pageBack`, `pageNext`      | with "Page 2 of 3" between them            | the page before, the next one  |
/// | `zoom`                      | how large pages are shown                  | `PageArea::setZoom`            |
/// | `PageArea` with `ScoreSheet`s | the pages                                |                                |
// clang-format on
class MDIScore : public SkinnedWindow, private Watcher {
public:
    explicit MDIScore(Desk& desk);
    ~MDIScore() override;

    void open(Windows::Focus focus = Windows::Focus::Take);
    /// The settings are written.
    void unload();
    /// Asks what becomes of words that are in no file.
    [[nodiscard]] bool mayEnd();
    void appearanceChanged() override;

    void Lb1_Click(int index) { Lb1_.press(index); }
    void Lmnu_Click(int index);
    void AddPage();
    /// Opens a score or lyrics that the user chooses.
    void OpenDocument();
    void openDocument(const std::filesystem::path& file);
    /// Saves the score, and then the words.
    void save();
    void WriteFromNotes();
    void RewriteFromNotes();
    void OpenLyrics();
    /// Asks for a name. @return whether they are saved
    bool SaveLyrics();
    void playLoop();

    [[nodiscard]] PageArea& pages() const { return *area_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// A score or lyrics are opened.
    void dropEvent(QDropEvent* event) override;

private:
    static constexpr int kTabs = 6;

    void changed(Changes changes) override;
    void bindCommands();
    void bindKeys();
    void bindPages();
    void addBar();
    void addTabs();
    void addKeys();
    [[nodiscard]] QWidget* panelOf(int index) const;
    void showPanel(QWidget* panel);
    void openAtStoredPlace();
    void loadSettings();
    void saveSettings();
    void refresh();
    void showTitle();
    void showFront();
    void showKey();
    void addText();
    void resetTexts();
    void newScore();
    bool saveLyricsTo(const std::filesystem::path& file);
    void showOpened(const notation::SongDocument::Outcome& opened);
    /// Presses a command that writes, with progress if that lasts.
    void write(notation::SongDocument::Outcome (notation::SongDocument::*command)(
        const notation::SongDocument::GoOn&));
    [[nodiscard]] bool goOn(double since, int pages);
    [[nodiscard]] bool mayLose();
    void say(const std::string& words);

    Desk& desk_;
    notation::SongDocument& song_;
    SongParts parts_;
    CommandBank Lb1_;
    std::array<SetupTab*, kTabs> Lmnu_{};
    QLabel* title_ = nullptr;
    CommandButton* back_ = nullptr;
    QLabel* place_ = nullptr;
    CommandButton* next_ = nullptr;
    QComboBox* zoom_ = nullptr;
    QWidget* page_ = nullptr; ///< that the panels stand on
    StavesPanel* staves_ = nullptr;
    NotesPanel* notes_ = nullptr;
    ScorePanel* score_ = nullptr;
    TextsPanel* texts_ = nullptr;
    PageArea* area_ = nullptr;
    Guests<Watcher>::Stay watching_;
    QPointer<ProgressWindow> progress_;
    bool writes_ = false;
    bool cancelled_ = false;
    bool opened_ = false; ///< another score has come
    bool loops_ = false;
};

} // namespace velmora
