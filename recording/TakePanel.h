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
class TakeLoudness;
class Waveform;
struct EncodeSettings;
struct Tip;

/// "The Take": its picture, from which a part can be heard and cut out, and what stands in the tags of the
/// files that are made of it.
///
/// | Control            | The user sees                   | What it does                                  |
/// |--------------------|---------------------------------|-----------------------------------------------|
/// | `waveform`         | the picture                     | plays from where it is pressed                |
/// | `playPart`         | "Play Part"                     | plays what is between the marks               |
/// | `cut`, `fade`      | "Cut to Part", "Fade"           | makes a file of that part, of the same kind;
/// `cut` | | `louder`           | "Make it as loud as others"     | makes one of -14 LUFS; `makeLouder` | |
/// `saveAs`           | "Save As FLAC, Ogg or Opus..."  | asks for its name and makes it; `saveAs`      | |
/// `takeLoudness`     | peak and loudness, or how much is done |                                        | |
/// `title`, `artist`, `cover` | "Title", "Artist", "Cover" | the fields of the same names of the session | |
/// `back`             | "Back"                          | shows the messages again                      |
///
/// The button that makes a file reads "Cancel" meanwhile.
class TakePanel : public QGroupBox {
public:
    /// @param loudness of the file that is shown; it outlives the panel
    TakePanel(const StudioParts& parts, TakeLoudness& loudness, QWidget* parent);
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
    /// Makes a file that is as loud as what others publish, beside the old one.
    void makeLouder();
    /// Asks for a name, and makes a file of that type.
    void saveAs();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    [[nodiscard]] CommandButton* addButton(const char* name, const char* words, const Tip& tip);
    void addMaker(CommandButton& button, void (TakePanel::*press)());
    [[nodiscard]] QLineEdit* addField(const char* name, const char* words, const char* tip,
                                      std::string& value);
    void chooseCover();
    enum class Then { Show, Keep };
    /// What a job has come to.
    struct Made {
        std::string error = {}; ///< why there is no file; blank if there is one
        std::string note = {};  ///< what is to be said of it, in a sentence
    };
    using Making = std::function<Made(const TakeWork::Progress& progress, const std::stop_token& cancel)>;
    void make(CommandButton& button, const std::filesystem::path& to, Making job, Then then);
    [[nodiscard]] EncodeSettings encodeSettings() const;
    void refreshMaker(CommandButton& button, const char* words, bool enabled);
    void showLoudness();
    void showFile();
    void showPicture();
    void showWords();
    void play(double from, double to);
    [[nodiscard]] std::filesystem::path file() const;

    StudioParts parts_;
    Studio& studio_;
    TakeLoudness& loudness_;
    Waveform* waveform_;
    CommandButton* playPart_;
    CommandButton* cut_;
    QCheckBox* fade_;
    CommandButton* louder_;
    QLabel* words_;
    QLabel* loudnessWords_;
    QLineEdit* title_;
    QLineEdit* artist_;
    CommandButton* cover_;
    CommandButton* saveAs_;
    CommandButton* back_;
    std::filesystem::path shown_;
    std::filesystem::file_time_type shownTime_;
    std::unique_ptr<TakePicture> picture_;
    bool isWhole_ = true; ///< all of it is shown
    QBasicTimer follows_;
    CommandButton* maker_ = nullptr; ///< whose file is being made
    TakeWork work_;
};

} // namespace velmora
