// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/Windows.h"
#include "shell/SkinnedWindow.h"
#include "studio/CdTracks.h"
#include "studio/cAudio.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

class QAbstractButton;
class QComboBox;
class QGroupBox;
class QLabel;

namespace velmora {

class CdTrackList;
class ReadOut;
class SessionButton;
class ShareBar;
struct Desk;

/// "Audio CD Writer": lists sound files as tracks and burns them, or writes an image of the disc.
///
// clang-format off
/// | Control                    | The user sees                             | What it presses          |
/// |----------------------------|-------------------------------------------|--------------------------|
/// | `lstTracks`                | number, file, format and length           | takes files that are dropped |
/// | `cmdAddFile`               | "Add"                                     | `cmdAddFile_Click`       |
/// | `cmdRemFile`               | "Remove"                                  | `cmdRemFile_Click`       |
/// | `cmdMoveUp`, `cmdMoveDown` | "Move up", "Move down"                    | `cmdMoveUp_Click`, `cmdMoveDown_Click` |
/// | `lblTotal`                 | "Total length", "12:48 min"               |                          |
/// | `cboDrv`, `cboSpeed`       | "Drive", "Speed"; the image is a drive    |                          |
/// | `frmPrg`                   | "Progress"                                |                          |
/// | `lblTrack`, `prgTrack`     | "Track 2", how far it has come            |                          |
/// | `prgTotal`                 | "Total", how far all has come             |                          |
/// | `cmdBurn`                  | "Burn"                                    | `cmdBurn_Click`          |
/// | `sbar`                     | what goes on                              |                          |
// clang-format on
///
/// While it burns all of them are disabled; who closes the window then is asked whether that is to be ended.
class CDWriter : public SkinnedWindow, private BurnEvents {
public:
    /// @param composing over which it comes up for the first time; it may be null
    /// @param audio other drives than the machine's
    CDWriter(Desk& desk, QWidget* composing, std::unique_ptr<cAudio> audio = nullptr);
    ~CDWriter() override;

    /// Once for each start of the program it warns first; without a "Yes" it doesn't come up.
    void open(Windows::Focus focus = Windows::Focus::Take);
    void unload();
    /// Asks where a disc would be cut off.
    [[nodiscard]] bool mayEnd();

    void cmdAddFile_Click();
    void cmdRemFile_Click();
    void cmdMoveUp_Click();
    void cmdMoveDown_Click();
    void cmdBurn_Click();

    [[nodiscard]] const CdTracks& tracks() const { return tracks_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Work : std::uint8_t { None, Looking, Burning };

    void StartCaching(std::size_t track) override;
    void CacheProgress(double trackShare, double totalShare) override;
    void StartWriting(std::size_t track) override;
    void WriteProgress(double trackShare, double totalShare) override;
    void ClosingTrack() override;
    void ClosingSession() override;
    void Comparing(double share) override;
    void Blanking(double share) override;
    void Finished() override;

    [[nodiscard]] SessionButton* addButton(const char* name, const char* icon, const char* words,
                                           const QRect& place);
    void addCaption(const char* words, int x, int y);
    void addControls();
    void addProgress();
    void addTips();
    void lookForDrives();
    void showDrives();
    void showSpeeds();
    void showTracks(std::optional<std::size_t> chosen);
    void showCommands();
    void showState(const QString& words);
    void showRest();
    void showShares(double track, double total);
    void beginTrack(std::size_t track, const QString& state);
    void endTracks();
    void add(const std::vector<std::filesystem::path>& files);
    void burn();
    [[nodiscard]] bool fits(const CdDrive& drive, const Disc& disc);
    [[nodiscard]] bool makesBlank(const CdDrive& drive, const Disc& disc);
    [[nodiscard]] bool asks(const QString& question);
    void say(const QString& words);
    [[nodiscard]] const CdDrive& drive() const;

    Desk& desk_;
    std::unique_ptr<cAudio> audio_;
    CdTracks tracks_;
    std::vector<CdDrive> drives_;
    Work work_ = Work::None;
    bool warned_ = false;
    bool looked_ = false;
    bool asking_ = false;
    bool closes_ = false; ///< as soon as the work has ended
    std::stop_source cancel_;

    CdTrackList* lstTracks_ = nullptr;
    SessionButton* cmdAddFile_ = nullptr;
    SessionButton* cmdRemFile_ = nullptr;
    SessionButton* cmdMoveUp_ = nullptr;
    SessionButton* cmdMoveDown_ = nullptr;
    ReadOut* lblTotal_ = nullptr;
    QComboBox* cboDrv_ = nullptr;
    QComboBox* cboSpeed_ = nullptr;
    QGroupBox* frmPrg_ = nullptr;
    QLabel* lblTrack_ = nullptr;
    ShareBar* prgTrack_ = nullptr;
    ShareBar* prgTotal_ = nullptr;
    QLabel* lblTrackShare_ = nullptr;
    QLabel* lblTotalShare_ = nullptr;
    SessionButton* cmdBurn_ = nullptr;
    QLabel* sbar_ = nullptr;
};

} // namespace velmora
