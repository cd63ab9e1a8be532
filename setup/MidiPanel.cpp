// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/MidiPanel.h"

#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "setup/SetupParts.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "sound/DeviceChooser.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>

namespace velmora {

namespace {
constexpr int kRelistMilliseconds = 2000;

/// A list that is brought up to date before it opens.
class LiveList : public QComboBox {
public:
    using QComboBox::QComboBox;

    std::function<void()> beforePopup;

    void showPopup() override {
        if (beforePopup)
            beforePopup();
        QComboBox::showPopup();
    }
};
} // namespace

MidiPanel::MidiPanel(Desk& desk, const Appearance& look, QWidget* parent) : QWidget(parent), desk_(desk) {
    setObjectName("midiPanel");
    addDevices(*addGroup(*this, "Midi Device", {8, 8, 480, 84}));
    addLength(*addGroup(*this, "Score Length", {8, 100, 480, 156}), look);
    relist_.setInterval(kRelistMilliseconds);
    connect(&relist_, &QTimer::timeout, this, [this] { listDevices(); });
}

void MidiPanel::addDevices(QGroupBox& group) {
    auto* list = new LiveList(&group);
    Combo2 = list;
    Combo2->setObjectName("Combo2");
    Combo2->setAccessibleName("Midi Device");
    Combo2->setGeometry(12, 42, 456, 24);
    list->beforePopup = [this] { listDevices(); };
    desk_.tips.SetToolTip(*Combo2, {"Midi Device", "The device through which everything sounds", ""});
    connect(Combo2, &QComboBox::activated, this, [this](int item) { Combo2_Click(item); });
}

void MidiPanel::addLength(QGroupBox& group, const Appearance& look) {
    const auto addField = [&](const char* name, const char* words, const char* tip, int y) {
        addWords(group, words, {12, y, 220, 24});
        auto* field = new QLineEdit(&group);
        field->setObjectName(name);
        field->setAccessibleName(words);
        field->setAlignment(Qt::AlignCenter);
        field->setGeometry(240, y, 88, 24);
        desk_.tips.SetToolTip(*field, {words, tip, ""});
        return field;
    };
    Text1 = addField("Text1", "Total notes currently available", "The columns of the Tableau", 42);
    Text1->setReadOnly(true);
    Text2 = addField("Text2", "Notes to add or subtract", "How many columns", 78);
    const auto addButton = [&](const char* name, const char* words, const char* tip, int x, int width) {
        auto* button = new CommandButton(look, ButtonForm::Text, &group);
        button->setObjectName(name);
        button->setFace("", words);
        button->setGeometry(x, 116, width, 24);
        desk_.tips.SetToolTip(*button, {words, tip, ""});
        return button;
    };
    const auto* add = addButton("Command1", "Add new notes", "Make the score longer by that many", 12, 132);
    const auto* subtract = addButton("Command4", "Subtract notes",
                                     "Make the score shorter by that many, from its end", 152, 132);
    connect(add, &QAbstractButton::clicked, this, [this] { Command1_Click(); });
    connect(subtract, &QAbstractButton::clicked, this, [this] { Command4_Click(); });
}

/// An open list stays as it is: the user is reading it.
void MidiPanel::listDevices() {
    if (Combo2->view()->isVisible())
        return;
    const DeviceChooser::List list = desk_.devices.list();
    if (list.texts != listed_) {
        listed_ = list.texts;
        Combo2->clear();
        for (const std::string& text : list.texts)
            Combo2->addItem(toQString(text));
    }
    desk_.workspace.setup.Combo2 = list.item;
    Combo2->setCurrentIndex(desk_.workspace.setup.Combo2);
}

void MidiPanel::Combo2_Click(int item) {
    const Edit edit(desk_.workspace, Change::Device);
    desk_.workspace.setup.Combo2 = desk_.devices.choose(item) ? 0 : item;
}

void MidiPanel::Command1_Click() {
    if (const auto count = fieldCount(Text2->text().toStdString()))
        setLength(std::int64_t{desk_.workspace.score.NumNotes} + *count);
}

void MidiPanel::Command4_Click() {
    if (const auto count = fieldCount(Text2->text().toStdString()))
        setLength(std::int64_t{desk_.workspace.score.NumNotes} - *count);
}

void MidiPanel::setLength(std::int64_t numNotes) {
    if (!setScoreLength(desk_.workspace, numNotes))
        return;
    settings::save(desk_.settings, settings::NumNotes, desk_.workspace.score.NumNotes);
}

void MidiPanel::refresh() {
    Text1->setText(QString::number(desk_.workspace.score.NumNotes));
    listDevices();
}

void MidiPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refresh();
    relist_.start();
}

void MidiPanel::hideEvent(QHideEvent* event) {
    relist_.stop();
    QWidget::hideEvent(event);
}

} // namespace velmora
