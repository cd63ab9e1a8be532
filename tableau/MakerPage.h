// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/ToolPage.h"

#include <array>
#include <functional>
#include <optional>

namespace velmora {

class ChannelSquare;
class Slider;
class StepMark;
struct Workspace;

/// `TB1` "Melody Maker". A field, its arrows and its slider picture are three ways to one number.
///
// clang-format off
/// | Control                           | The user sees                  | What it sets                                    |
/// |-----------------------------------|--------------------------------|-------------------------------------------------|
/// | `txtStart`, `vcrStart`, `IStart1` | "Start at X"                   | `txtStart`, `SelectStart`                       |
/// | `Txtlen`, `VSLen`, `ILength`      | "Total Length"                 | `TotalNotes`                                    |
/// | `TxtRep`, `VSrep`, `IRepeat`      | "Cycle Length"                 | `CycleBeats`                                    |
/// | `TxtNt`, `VSnt`, `INotes`         | "Notes in cycle"               | `CycleNotes`                                    |
/// | `Chkmelody`, `Chkperc`            | "Melody", "Percussion"         | all boxes of the melody, or percussion channels |
/// | `chkChannel`(0 to 11)             | a box by each channel          | `ChannelPicked`                                 |
/// | `Lb1`(22), (23)                   | "Create Melody", "Undo Melody" |                                                 |
// clang-format on
class MakerPage : public ToolPage {
public:
    MakerPage(const ToolPageParts& parts, Workspace& workspace, QWidget* parent);

    std::function<void()> onCycle; ///< one of the values that the Score Editor shows, too, has changed

    void layOut(FormWidth width) override;
    void refresh() override;

private:
    struct Form;

    static constexpr std::size_t kNumbers = 4;
    static constexpr std::size_t kChannels = 12;

    /// A number with its slider picture.
    struct Number {
        Value value;
        Field field;
        Slider* picture = nullptr;
        StepMark* mark = nullptr;
    };

    void addNumbers();
    void addPicture(Number& number, const char* name, const FieldRow& row);
    void addChannels();
    void setNumber(std::size_t index, std::int16_t value);
    [[nodiscard]] std::optional<int> blankOf(std::size_t index) const;
    int place(const Form& form);
    int placeNumbers(int x, const Form& form) const;
    int placeChannels(int x, const Form& form) const;
    [[nodiscard]] bool isPicked(std::size_t box) const;

    Workspace& workspace_;
    std::array<Number, kNumbers> numbers_;
    QCheckBox* Chkmelody = nullptr;
    QCheckBox* Chkperc = nullptr;
    std::array<QCheckBox*, kChannels> chkChannel{};
    std::array<ChannelSquare*, kChannels> squares_{};
};

} // namespace velmora
