// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/Windows.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velmora {

/// The program's other windows: what is asked of them is written down.
class RecordingWindows : public Windows {
public:
    [[nodiscard]] bool has(Name name) const override { return present.contains(name); }
    void open(Name name, Focus /*focus*/ = Focus::Take) override { opened.push_back(name); }
    void openScore(const std::filesystem::path& file) override {
        scores.push_back(file);
        if (onOpenScore)
            onOpenScore();
    }
    bool saveScore() override {
        ++savedScores;
        return savesScores;
    }
    bool saveScoreAs() override {
        ++savedScoresAs;
        return savesScores;
    }
    void help(const QString& page) override { pages.push_back(page.toStdString()); }
    void pickInstrument(QWidget& over, std::function<void(PickedInstrument)> picked) override {
        if (makePicker)
            return makePicker(over, std::move(picked));
        onPick = std::move(picked);
    }
    void keepPlayed(QWidget& over) override { keptOver.push_back(&over); }
    void quit() override { ++quits; }
    [[nodiscard]] bool mayQuit() override { return letsQuit; }

    std::set<Name> present{Name::form1, Name::frmsetup};
    std::vector<Name> opened;
    std::vector<std::filesystem::path> scores; ///< to be opened by the composing window
    int savedScores = 0;                       ///< how often the composing window was to save
    int savedScoresAs = 0;
    bool savesScores = true;
    std::vector<std::string> pages;
    std::vector<QWidget*> keptOver; ///< windows over which to keep was asked for
    int quits = 0;
    bool letsQuit = true;
    std::function<void()> onOpenScore;            ///< what the composing window does
    std::function<void(PickedInstrument)> onPick; ///< to be called with what is picked
    /// Where a test wants a picker that can be pressed.
    std::function<void(QWidget& over, std::function<void(PickedInstrument)> picked)> makePicker;
};

} // namespace velmora
