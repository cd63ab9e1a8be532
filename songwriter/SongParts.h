// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/Appearance.h"

#include <QColor>
#include <QRect>

#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QWidget;

namespace velmora {

struct Desk;
namespace notation {
class SongDocument;
} // namespace notation

/// What the panels of the Songwriter are made with.
struct SongParts {
    Desk& desk;
    const Appearance& look;
    notation::SongDocument& song;
};

/// The ground on which pages lie: the panel's second tone, darker.
[[nodiscard]] QColor deskColour(const Appearance& look);

/// A control with its words and its tool text.
struct SongControl {
    const char* name;
    const char* words;
    const char* tip;
    QPoint place; ///< upper left; its width is that of its words
};
[[nodiscard]] QCheckBox* addCheck(QWidget& panel, const SongParts& parts, const SongControl& control,
                                  std::function<void(bool ticked)> onTick);
[[nodiscard]] QRadioButton* addChoice(QWidget& panel, const SongParts& parts, const SongControl& control,
                                      std::function<void()> onChosen);
/// Words before a field, and the field; at each typing, @p onTyped is told.
[[nodiscard]] QLineEdit* addField(QWidget& panel, const SongParts& parts, const SongControl& control,
                                  int wordsWidth, int fieldWidth,
                                  std::function<void(const QString& text)> onTyped);
/// Small words over a control.
QLabel* addCaption(QWidget& panel, const char* words, const QRect& place);
/// A rule between the parts of a panel or bar.
void addRule(QWidget& panel, const SongParts& parts, const QRect& place);

inline constexpr int kSongPanelHeight = 68;

} // namespace velmora
