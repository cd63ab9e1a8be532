// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "recording/StudioParts.h"
#include "recording/TakeWork.h"
#include "studio/TakePicture.h"

#include <QBasicTimer>
#include <QGroupBox>

#include <filesystem>
#include <functional>
#include <memory>

class QCheckBox;
class QLineEdit;

namespace velmora {

class CommandButton;
class Studio;
class Waveform;
struct Tip;

/// "The Take": its picture, from which a part can be heard and cut out, and what stands in the tags of the
/// files that are made of it.
///
/// | Control            | The user sees                   | What it does                                  |
/// |--------------------|---------------------------------|-----------------------------------------------|
/// | `waveform`         | the picture                     | plays from where it is pressed                |
/// | `playPart`         | "Play Part"                     | plays what is between the marks               |
/// | `cut`, `fade`      | "Cut to Part", "Fade"           | makes a file of that part; `cut`              |
/// | `title`, `artist`, `cover` | "Title", "Artist", "Cover" | the fields of the same names of the session |
/// | `back`             | "Back"                          | shows the messages again                      |
class TakePanel : public QGroupBox {
public:
    TakePanel(const StudioParts& parts, QWidget* parent);
    ~TakePanel() override;

    std::function<void()> onBack;
    /// For what is to be said in the message box.
    std::function<void(const std::string& words)> onWords;

    void refresh();
    /// Work on the take that goes on; closing the window ends it.
    [[nodiscard]] bool isBusy() const { return work_.isRunning(); }
    void endWork() { work_.cancel(); }

    void playFrom(double share);
    void playPart();
    /// Makes a file of what is between the marks, beside the old one.
    void cut();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    [[nodiscard]] CommandButton* addButton(const char* name, const char* words, const Tip& tip);
    [[nodiscard]] QLineEdit* addField(const char* name, const char* words, const char* tip,
                                      std::string& value);
    void chooseCover();
    void showFile();
    void showPicture();
    void play(double from, double to);
    [[nodiscard]] std::filesystem::path file() const;

    StudioParts parts_;
    Studio& studio_;
    Waveform* waveform_;
    CommandButton* playPart_;
    CommandButton* cut_;
    QCheckBox* fade_;
    QLabel* words_;
    QLineEdit* title_;
    QLineEdit* artist_;
    CommandButton* cover_;
    CommandButton* back_;
    std::filesystem::path shown_;
    std::filesystem::file_time_type shownTime_;
    std::unique_ptr<TakePicture> picture_;
    bool isWhole_ = true; ///< all of it is shown
    QBasicTimer follows_;
    TakeWork work_;
};

} // namespace velmora
