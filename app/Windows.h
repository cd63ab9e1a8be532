// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/Windows.h"

#include <QPointer>

#include <array>
#include <memory>

namespace velmora {

class FrmInst;
class HelpWindow;
class KeepWindow;
class SkinnedWindow;
class form1;
struct Desk;

/// The windows of the program: a table in Windows.cpp, a row a window, and what has been made of it.
class ProgramWindows final : public Windows {
public:
    /// @param desk is whole by the time that the first window is asked for
    /// @param onQuit ends the program, after the windows have kept what they want to keep
    ProgramWindows(Desk& desk, std::function<void()> onQuit);
    ~ProgramWindows() override;
    ProgramWindows(const ProgramWindows&) = delete;
    ProgramWindows& operator=(const ProgramWindows&) = delete;

    [[nodiscard]] bool has(Name name) const override;
    void open(Name name, Focus focus = Focus::Take) override;
    void openScore(const std::filesystem::path& file) override;
    bool saveScore() override;
    bool saveScoreAs() override;
    void help(const QString& page) override;
    void pickInstrument(QWidget& over, std::function<void(PickedInstrument)> picked) override;
    void keepPlayed(QWidget& over) override;
    void quit() override;
    [[nodiscard]] bool mayQuit() override;

    /// The composing window, over which the others stand.
    [[nodiscard]] form1& composing();

private:
    static constexpr std::size_t kCount = static_cast<std::size_t>(Name::Wiz) + 1;

    SkinnedWindow& made(Name name);

    Desk& desk_;
    std::function<void()> onQuit_;
    std::array<std::unique_ptr<SkinnedWindow>, kCount> windows_; ///< the composing window goes last
    std::unique_ptr<HelpWindow> help_;
    QPointer<FrmInst> picker_;
    QPointer<KeepWindow> keep_;
};

} // namespace velmora
