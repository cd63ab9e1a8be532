// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

class QCheckBox;
class QGroupBox;

namespace velmora {

class NumberField;
struct Desk;

/// The panel "Staff Configuration": what is drawn behind the notes of the Tableau, and how tall its rows are.
class StaffPanel : public QWidget {
public:
    StaffPanel(Desk& desk, QWidget* parent);

    void refresh();

private:
    void addBoxes(QGroupBox& group);
    void addSpacing(QGroupBox& group);
    void Text3_Change(std::int16_t height);

    Desk& desk_;
    QCheckBox* ChTreble = nullptr;
    QCheckBox* ChBass = nullptr;
    QCheckBox* Check1 = nullptr;
    NumberField* Text3 = nullptr;
};

} // namespace velmora
