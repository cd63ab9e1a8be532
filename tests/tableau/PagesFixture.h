// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "form1Fixture.h"
#include "tableau/EditorPage.h"
#include "tableau/EffectsPage.h"
#include "tableau/MakerPage.h"
#include "tableau/ToolPanel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

namespace velmora {

/// The composing window with one page of its tool panel in front.
class PagesFixture : public form1Fixture {
protected:
    ToolPanel& panel() { return child<ToolPanel>("toolPanel"); }
    void open(ToolPanel::Page page) {
        shown();
        window().Lb1_Click(17 + page);
        QApplication::processEvents();
    }
    /// A part of the panel: the setup toolbar and the strips have parts of the same names.
    template<class Part = QWidget>
    Part& part(const std::string& name) {
        const auto found = panel().findChildren<Part*>(QString::fromStdString(name));
        if (found.size() != 1)
            throw std::runtime_error(name);
        return *found.front();
    }
    /// Types over what stands there.
    void type(const char* field, const char* text) {
        auto& edit = part<QLineEdit>(field);
        edit.setFocus();
        edit.selectAll();
        QTest::keyClicks(&edit, text);
    }
    std::string shownIn(const char* name) {
        if (auto* edit = panel().findChild<QLineEdit*>(name))
            return edit->text().toStdString();
        return part<QLabel>(name).text().toStdString();
    }
    void key(const std::string& name, Qt::Key which) { QTest::keyClick(&part(name), which); }
    /// Clicks at a place across a part, as a share of its width.
    void clickAt(const std::string& name, double share) {
        QWidget& at = part(name);
        QTest::mouseClick(&at, Qt::LeftButton, {},
                          QPoint(static_cast<int>(share * at.width()), at.height() / 2));
    }
    /// Clicks the square of a box.
    void tick(const std::string& name) {
        QWidget& box = part(name);
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(7, box.height() / 2));
    }
    bool isTicked(const std::string& name) { return part<QCheckBox>(name).isChecked(); }

    EditState& edit() { return workspace().edit; }
    EffectSelectors& effects() { return workspace().effects; }
};

} // namespace velmora
