// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QTimer>
#include <QWidget>

#include <string>
#include <vector>

class QComboBox;
class QGroupBox;
class QLineEdit;

namespace velmora {

struct Appearance;
struct Desk;

/// The panel "Midi": the MIDI device, and the score's length.
class MidiPanel : public QWidget {
public:
    MidiPanel(Desk& desk, const Appearance& look, QWidget* parent);

    void refresh();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void addDevices(QGroupBox& group);
    void addLength(QGroupBox& group, const Appearance& look);
    void listDevices();
    void Combo2_Click(int item);
    void Command1_Click();
    void Command4_Click();
    void setLength(std::int64_t numNotes);

    Desk& desk_;
    QComboBox* Combo2 = nullptr;
    QLineEdit* Text1 = nullptr;
    QLineEdit* Text2 = nullptr;
    QTimer relist_;
    std::vector<std::string> listed_;
};

} // namespace velmora
