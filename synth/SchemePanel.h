// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "synth/SynthPanel.h"

#include <string>
#include <vector>

class QComboBox;
class QListWidget;

namespace velmora {

class ReadOut;

/// `Picture16`, the page "Setup": which computer key plays which key, and where the sound goes.
class SchemePanel : public SynthPanel {
public:
    SchemePanel(const SynthParts& parts, QWidget* parent);

    std::function<void()> onOpen;              ///< `Command1`
    std::function<void()> onSave;              ///< `Command6`
    std::function<void(bool on)> Check1_Click; ///< "Edit"
    std::function<void(int item)> onDevice;    ///< `Combo1`

    void refresh() override;
    std::function<void(int index)> onScheme; ///< one that comes with the program
    std::function<void()> onFit;             ///< "Fit my keyboard"

    /// `Label3`.
    void showFile(const QString& name);
    void showEditing(bool on);
    /// Lists the devices anew, unless the list is open.
    void listDevices();
    void listInputs();

protected:
    void layOut(int width) override;
    void showEvent(QShowEvent* event) override;

private:
    void addDevices();
    void addSchemes();
    void addInputs();

    QLabel* Label7;
    ReadOut* Label3;
    CommandButton* Command1;
    CommandButton* Command6;
    QCheckBox* Check1;
    CommandButton* fit_ = nullptr;
    QLabel* schemeWords_ = nullptr;
    QComboBox* schemes_ = nullptr;
    QLabel* deviceWords_ = nullptr;
    QComboBox* Combo1 = nullptr;
    QLabel* inputWords_ = nullptr;
    QListWidget* inputs_ = nullptr;
    std::vector<std::string> listed_;
};

} // namespace velmora
