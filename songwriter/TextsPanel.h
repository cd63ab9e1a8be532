// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <QWidget>

#include <functional>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace velmora {

struct SongParts;

/// "Text": the title, and what other words stand on the pages.
///
/// | Control                      | What it sets                                                         |
/// |------------------------------|----------------------------------------------------------------------|
/// | `Title`, `Check6`            | the title, and whether each page has it with its number              |
/// | `lstFontName`, `lstFontSize` | how texts are set that are placed on pages                           |
/// | `Com1`                       | "Line Text": a text on the page                                      |
/// | `composer`, `tempoWords`     | words at the head of the clean page                                  |
/// | `verses`                     | "Words under the notes", syllables parted by hyphens                 |
class TextsPanel : public QWidget {
public:
    TextsPanel(const SongParts& parts, QWidget* parent);
    void refresh();
    /// Fills the list of fonts, which takes its time, when it is to be seen.
    void showFonts();
    [[nodiscard]] notation::TextStyle style() const;

    std::function<void()> onStyle;
    std::function<void()> onLineText;
    std::function<void()> onTitle;

private:
    void addFonts();

    const SongParts& parts_;
    QLineEdit* Title_ = nullptr;
    QComboBox* lstFontName_ = nullptr;
    QComboBox* lstFontSize_ = nullptr;
    QCheckBox* Check6_ = nullptr;
    QLineEdit* composer_ = nullptr;
    QLineEdit* tempo_ = nullptr;
    QLineEdit* verses_ = nullptr;
    bool hasFonts_ = false;
};

} // namespace velmora
