// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

class QGroupBox;
class QLineEdit;

namespace velmora {

class NumberField;
class Slider;
struct Appearance;
struct Application;
struct ComposingWindow;

/// The panel "Timing": the tempo, and the meter in three fields, which are the store of what a score file
/// says of it.
class TimingPanel : public QWidget {
public:
    TimingPanel(Application& application, const ComposingWindow& form, const Appearance& look,
                QWidget* parent);

    void refresh();

private:
    void addTempo(QGroupBox& group, const Appearance& look);
    NumberField* addField(QGroupBox& group, const char* arrows, const char* text, const char* caption,
                          const char* tip, int x);
    void setTempo(std::int16_t tempo);
    void TxtMeter_Change(std::int16_t value);
    void NoteX_Change(std::int16_t value);
    void TxBeats_Change(std::int16_t value);
    void meterChanged(bool beatsChanged);
    void showBeats();

    Application& app_;
    const ComposingWindow& form_;
    Slider* LblTempo = nullptr;
    QLineEdit* TempoLabel = nullptr;
    NumberField* TxtMeter = nullptr;
    NumberField* NoteX = nullptr;
    NumberField* TxBeats = nullptr;
};

} // namespace velmora
