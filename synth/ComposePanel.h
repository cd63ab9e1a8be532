// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"
#include "synth/SynthPanel.h"

#include <optional>
#include <vector>

namespace velmora {

class KeyboardBar;
class ReadOut;

/// `Picture17`, the page "Compose": how a take is played back, and what becomes of it in a score.
class ComposePanel : public SynthPanel {
public:
    /// @param keep the button "Keep what I just played", which the panel gives its place
    ComposePanel(const SynthParts& parts, CommandButton& keep, QWidget* parent);

    /// The tick "Step entry" was pressed.
    std::function<void()> onStepEntry;

    void refresh() override;
    /// `Text9`.
    void showPosition(int position);

protected:
    void layOut(int width) override;

private:
    void storeTempo(double tempo);

    std::vector<KeyboardBar*> bars_;
    QCheckBox* Check3;
    QCheckBox* Check5;
    QLabel* positionWords_;
    ReadOut* Text9;
    CommandButton& keep_;
    QCheckBox* stepEntry_;
    std::optional<Act> act_; ///< a drag is one step of undo
};

} // namespace velmora
