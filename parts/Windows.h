// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <filesystem>
#include <functional>

class QWidget;

namespace velmora {

/// What the picker gave to new notes; neither, if it was the keyboard's second voice.
struct PickedInstrument {
    bool melody = false;
    bool percussion = false;
};

/// The program's windows, to be asked for by name: no window knows another.
class Windows {
public:
    enum class Name : std::uint8_t {
        form1,
        frmsetup,
        frmsynth,
        Record,
        frmLog,
        CDWriter,
        MDIScore,
        fPrint,
        Wiz
    };
    enum class Focus : std::uint8_t { Take, Leave };

    virtual ~Windows() = default;

    /// Whether there is such a window; what would open one that is still to come is disabled.
    [[nodiscard]] virtual bool has(Name name) const = 0;
    /// Brings the window up, made at the first call.
    virtual void open(Name name, Focus focus = Focus::Take) = 0;
    /// Opens a score in the composing window, which asks first where another would be lost.
    virtual void openScore(const std::filesystem::path& file) = 0;
    /// Saves the score as the composing window does, which may ask for a name. @return whether it is saved
    virtual bool saveScore() = 0;
    /// The same under a name that the user chooses.
    virtual bool saveScoreAs() = 0;
    /// Shows a page of the help.
    virtual void help(const QString& page) = 0;
    /// Opens the instrument picker over a window; @p picked runs when the choice is kept.
    virtual void pickInstrument(QWidget& over, std::function<void(PickedInstrument)> picked) = 0;
    /// Brings "Keep what I just played" up over a window.
    virtual void keepPlayed(QWidget& over) = 0;
    /// The composing window is gone: the program ends.
    virtual void quit() = 0;
    /// Whether every window lets the program end: one that records asks the user first.
    [[nodiscard]] virtual bool mayQuit() = 0;
};

} // namespace velmora
