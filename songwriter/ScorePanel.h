// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

#include <array>
#include <functional>

class QCheckBox;
class QComboBox;

namespace velmora {

class NumberField;
class ReadOut;
class Slider;
struct SongParts;

/// "Score Setup": what of the score is written, its key, and the measures of the page.
///
/// | Control                              | What it sets                                                   |
/// |--------------------------------------|----------------------------------------------------------------|
/// | `Check1`                             | "New Score": writing assigns the staves first                  |
/// | `Combo1`                             | "Key:"; the clean page has one more, "by itself"               |
/// | `Text4`, `Text5`                     | "Start" and "End", with `VScroll2` and `VScroll1`              |
/// | `HScroll1` to `HScroll3`             | "Bar Width", "Line Height", "Page Header", in tens of pixels   |
/// | `Lbar`, `Label3`, `Label2`           | their values; the pointers are parts of the bars               |
class ScorePanel : public QWidget {
public:
    ScorePanel(const SongParts& parts, QWidget* parent);
    void refresh();
    /// Chooses a key by its index in `kKeys`, or `kAutomaticKey`.
    void chooseKey(int key);

    std::function<void()> onKey; ///< another key was chosen

private:
    void addKey();
    void addLength();
    void addSizes();

    const SongParts& parts_;
    QCheckBox* Check1_ = nullptr;
    QComboBox* Combo1_ = nullptr;
    NumberField* Text4_ = nullptr;
    NumberField* Text5_ = nullptr;
    std::array<Slider*, 3> sliders_{};
    std::array<ReadOut*, 3> values_{};
};

} // namespace velmora
