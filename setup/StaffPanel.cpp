// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/StaffPanel.h"

#include "base/Settings.h"
#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "parts/NumberField.h"
#include "setup/SetupParts.h"
#include "shell/ExToolTip.h"

#include <QCheckBox>
#include <QGroupBox>

namespace velmora {

StaffPanel::StaffPanel(Desk& desk, QWidget* parent) : QWidget(parent), desk_(desk) {
    setObjectName("staffPanel");
    addBoxes(*addGroup(*this, "Staff", {8, 8, 480, 136}));
    addSpacing(*addGroup(*this, "Rows", {8, 152, 480, 104}));
}

void StaffPanel::addBoxes(QGroupBox& group) {
    struct BoxRow {
        QCheckBox** box;
        const char* name;
        const char* words;
        const char* tip;
        settings::Int16 key;
        bool* value;
    };
    Workspace& workspace = desk_.workspace;
    int y = 38;
    for (const BoxRow& row :
         {BoxRow{&ChTreble, "ChTreble", "Show Treble Staff", "The upper five lines and their clef",
                 settings::Show_Treble_staff, &workspace.setup.ChTreble},
          BoxRow{&ChBass, "ChBass", "Show Bass Staff", "The lower five lines and their clef",
                 settings::Show_Bass_staff, &workspace.setup.ChBass},
          BoxRow{&Check1, "Check1", "Show Sharp # Notes Guide", "A band on the rows of the black keys",
                 settings::Show_Sharp_guides, &workspace.view.Show_Sharp_guides}}) {
        auto* box = new QCheckBox(row.words, &group);
        box->setObjectName(row.name);
        box->setGeometry(12, y, box->sizeHint().width(), 20);
        desk_.tips.SetToolTip(*box, {row.words, row.tip, ""});
        connect(box, &QCheckBox::clicked, this, [this, key = row.key, value = row.value](bool ticked) {
            const Edit edit(desk_.workspace, Change::Looks);
            *value = ticked;
            settings::save(desk_.settings, key, ticked ? 1 : 0);
        });
        *row.box = box;
        y += 28;
    }
}

void StaffPanel::addSpacing(QGroupBox& group) {
    addWords(group, "Line spacing", {12, 44, 100, 24});
    Text3 = new NumberField("VScroll3", "Text3", &group);
    Text3->setAccessibleName("Line spacing");
    Text3->setGeometry(120, 44, 72, 24);
    desk_.tips.SetToolTip(*Text3,
                          {"Line spacing", "The height of a row of the Melody Tableau, in pixels", ""});
    const ViewState& view = desk_.workspace.view;
    Text3->number = [&view] { return view.Line_Height; };
    Text3->onNumber = [this](std::int16_t height) { Text3_Change(height); };
    Text3->onStep = [this, &view](int steps) {
        const int height = std::clamp<int>(view.Line_Height + steps, kLeastLineHeight, kMostLineHeight);
        Text3_Change(static_cast<std::int16_t>(height));
    };
}

void StaffPanel::Text3_Change(std::int16_t height) {
    velmora::Text3_Change(desk_.workspace, height);
    settings::save(desk_.settings, settings::Line_Height,
                   static_cast<std::int16_t>(desk_.workspace.view.Line_Height));
}

void StaffPanel::refresh() {
    const Workspace& workspace = desk_.workspace;
    ChTreble->setChecked(workspace.setup.ChTreble);
    ChBass->setChecked(workspace.setup.ChBass);
    Check1->setChecked(workspace.view.Show_Sharp_guides);
    Text3->showNumber(workspace.view.Line_Height);
}

} // namespace velmora
