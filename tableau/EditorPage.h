// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/ToolPage.h"

#include <array>
#include <functional>

namespace velmora {

struct EditState;
struct Workspace;

/// `TB4` "Score Editor".
///
// clang-format off
/// | Control                             | The user sees                                    | What it sets                             |
/// |-------------------------------------|--------------------------------------------------|------------------------------------------|
/// | `Lb1`(0), (24)                      | "Clear", "Draw" or "Select"                      |                                          |
/// | `Lb1`(25), (26), (27), (28)         | "Copy", "Cut", "Insert", "Overwrite"             |                                          |
/// | `Txtspc`, `Lb1`(29)                 | "Spaces", "Insert Spaces"                        | `Txtspc`                                 |
/// | `Txtnotes`, `Txtbeats`, `Txtrepeat` | "Total Length", "Cycle Length", "Notes in cycle" | `TotalNotes`, `CycleBeats`, `CycleNotes` |
/// | `Check5`, `Check3`, `Check2`        | "Melody", "Percussion", "Edit All Tracks"        | the boxes of that name                   |
/// | `Lb1`(30)                           | "Duplicate"                                      |                                          |
// clang-format on
class EditorPage : public ToolPage {
public:
    EditorPage(const ToolPageParts& parts, Workspace& workspace, QWidget* parent);

    std::function<void()> onCycle; ///< one of the values that the Melody Maker shows, too, has changed

    void layOut(FormWidth width) override;
    void refresh() override;

private:
    struct Form;

    void addFields();
    void addBoxes();
    int place(const Form& form);

    static constexpr std::size_t kCycleFields = 3;

    Workspace& workspace_;
    EditState& edit_;
    Field Txtspc;
    std::array<Field, kCycleFields> cycle_; ///< `Txtnotes`, `Txtbeats`, `Txtrepeat`
    std::array<Value, kCycleFields> values_;
    QCheckBox* Check5 = nullptr;
    QCheckBox* Check3 = nullptr;
    QCheckBox* Check2 = nullptr;
    QLabel* channels_ = nullptr; ///< which ones the commands work on, in words
};

} // namespace velmora
