// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/CommandBank.h"
#include "parts/Windows.h"
#include "recording/StudioParts.h"
#include "recording/TakeLoudness.h"
#include "shell/SkinnedWindow.h"
#include "studio/SessionScreen.h"

#include <QBasicTimer>
#include <QElapsedTimer>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class AfterPanel;
class FormatPanel;
class MenuStrip;
class MessagePanel;
class PlayerStrip;
class SourcePanel;
class TakePanel;
class Studio;
struct CommandWays;

/// The Recording Studio: it sets and shows a `SessionState`, and presses `RecordingSession` and
/// `MusicSession`, which do the rest.
///
// clang-format off
/// | Control                              | The user sees                         | What it presses                     |
/// |--------------------------------------|---------------------------------------|-------------------------------------|
/// | `cmdRecord1`, `cmdRecord2`           | "File", "Recording", and "Help"       | their popups                        |
/// | `player`(0 to 4)                     | "Open", "Play", "Pause", "Stop", "Save" | `MusicSession`                    |
/// | `lblTime`, `Label8`, `Status`, `L2`  | the read-out: time, state, progress   |                                     |
/// | `lblKhz`, `lblmode`, `lblbitrate`    | what the header of an MP3 file says   |                                     |
/// | `loudness`                           | in their place, peak and loudness of a take |                               |
/// | `Optsourcesng`, `Optsourcemid`, `Optsourcekeyboard` | "Recording Source"     | `SessionState::source`              |
/// | `capture`                            | what of all that sounds is taken      | `SessionState::capture`             |
/// | `levels`, `warning`                  | how loud the take is; that it is silent |                                   |
/// | `CmdrecordSNG`, `CmdStopRecording`   | "Start Recording", "Stop Recording"   | the routines of these names         |
/// | `cbxFormat`, `Combo3`, `Combo4`      | formats of the WAV and the MP3 file   | the fields of these names           |
/// | `Command20`                          | "Encode File" or "Stop Encoding"      | `Command20_Click`                   |
/// | `Check2`, `Check3`, `Check4`         | what happens with a take              | the fields of these names           |
/// | `Command1`, `showLog`, `LBLBtnCDw`   | "Volume Control", "Show Log", "Burn CD" | the desktop's mixer; windows      |
/// | `Text6`, `Erbox`                     | the file, and the messages            |                                     |
/// | `showTake`                           | "The Take"                            | shows `TakePanel` in their place    |
// clang-format on
///
/// While it records, all but "Pause", "Stop" and "Stop Recording" is disabled.
class Record : public SkinnedWindow, public SessionScreen {
public:
    /// @param composing beside which it comes up for the first time; it may be null
    Record(Desk& desk, QWidget* composing);
    ~Record() override;

    void open(Windows::Focus focus = Windows::Focus::Take);
    /// What goes on is ended, and the settings are written.
    void unload();
    /// Asks where a recording, an encoding or a piece of music would be cut off.
    [[nodiscard]] bool mayEnd();

    void appearanceChanged() override;

    void Pause_Click(); ///< the music, or the score that is recorded; another press goes on
    void Stop_Click();
    void Command1_Click(); ///< "Volume Control"
    /// The picture of the take in place of what happens with it and the messages, or these again.
    void showTake(bool shown);

    // SessionScreen
    void sessionChanged() override;
    void tell(const std::string& title, const std::string& text) override;
    bool ask(const std::string& question) override;
    std::filesystem::path askOpen(const std::string& title, const std::string& filter) override;
    std::filesystem::path askSave(const std::string& title, const std::string& filter,
                                  const std::string& proposed) override;
    void showKeyboard() override;
    void openScore(const std::filesystem::path& file) override;

protected:
    void timerEvent(QTimerEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// Sound files are played one after the other, with nothing between them; a MIDI file plays, a score is
    /// opened.
    void dropEvent(QDropEvent* event) override;

private:
    void playDropped(const std::vector<std::filesystem::path>& files);
    void bindCommands();
    void bindButton(QAbstractButton& button, std::string_view item, const char* key, void (*press)(Record&));
    void openAtStoredPlace();
    void saveSettings();
    void endWork();
    void showCommands();
    void followTake();
    void followLoudness();
    [[nodiscard]] bool recordsNotes() const;
    [[nodiscard]] QString shownFile() const;

    Desk& desk_;
    Studio& studio_;
    StudioParts parts_;
    CommandBank player_;
    MenuStrip* menus_;
    PlayerStrip* strip_;
    SourcePanel* source_;
    FormatPanel* format_;
    AfterPanel* after_;
    MessagePanel* messages_;
    TakePanel* take_ = nullptr; ///< made when it is first shown
    TakeLoudness loudness_;
    bool isMeasured_ = true; ///< the last take, or what it was encoded to
    QBasicTimer meter_;      ///< runs while it records
    QElapsedTimer updated_;
};

} // namespace velmora
