// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

#include <array>
#include <functional>

class QCheckBox;
class QRadioButton;

namespace velmora {

struct SongParts;

/// "Note Setup": how notes are written.
///
/// | Control                         | What it sets                                                   |
/// |---------------------------------|----------------------------------------------------------------|
/// | `chkClassic`                    | "Classic page", in place of the clean one                      |
/// | `Check2`                        | "Join Notes", with `Option1` to `Option3`: 2, 3 or 4 of them   |
/// | `Optspc2`, `Optspc1`            | "Proportional" and "Symmetrical" spacing                       |
/// | `Check4`, `Check5`              | `Insert "Repeat"  Signs`, "Number Bars and Lines"              |
/// | `chkLearn`, `chkVoices`         | "Learn to read", "Two voices": of the clean page               |
class NotesPanel : public QWidget {
public:
    NotesPanel(const SongParts& parts, QWidget* parent);
    /// What has no effect on the page that is chosen is disabled.
    void refresh();

    std::function<void()> onClassic; ///< the other page was chosen

private:
    const SongParts& parts_;
    QCheckBox* classic_;
    QCheckBox* Check2_;
    std::array<QRadioButton*, 3> Option_{};
    int joined_ = 4; ///< what `Check2` joins
    QRadioButton* Optspc1_;
    QRadioButton* Optspc2_;
    QCheckBox* Check4_;
    QCheckBox* Check5_;
    QCheckBox* learn_;
    QCheckBox* voices_;
};

} // namespace velmora
