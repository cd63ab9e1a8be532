// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"

#include <QWidget>

#include <optional>

class QGroupBox;
class QLineEdit;

namespace velmora {

class NumberField;
class Slider;
struct Appearance;
struct Desk;

/// The panel "Timing": the tempo, and the meter in three fields, which are the store of what a score file
/// says of it.
class TimingPanel : public QWidget {
public:
    TimingPanel(Desk& desk, const Appearance& look, QWidget* parent);

    void refresh();

private:
    /// A drag, or the typing of a number, is one step of undo.
    void goOn();
    void addTempo(QGroupBox& group, const Appearance& look);
    NumberField* addField(QGroupBox& group, const char* arrows, const char* text, const char* caption,
                          const char* tip, int x);

    Desk& desk_;
    bool dragging_ = false;  ///< `LblTempo` stays where the user has it
    std::optional<Act> act_; ///< from the first move or letter to the release or the last
    Slider* LblTempo = nullptr;
    QLineEdit* TempoLabel = nullptr;
    NumberField* TxtMeter = nullptr;
    NumberField* NoteX = nullptr;
    NumberField* TxBeats = nullptr;
};

} // namespace velmora
