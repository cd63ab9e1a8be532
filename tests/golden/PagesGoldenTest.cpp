// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "parts/CommandBank.h"
#include "shell/SkinPainter.h"
#include "tableau/Commands.h"
#include "tableau/EffectsPage.h"
#include "tableau/ToolPanel.h"

#include <QCoreApplication>
#include <QPainter>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr int kHeight = 68;

/// The panel of a window, as wide as that.
class Ground : public QWidget {
public:
    explicit Ground(const Appearance& look) : look_(look) {}

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        paintPanel(painter, look_.skin(), rect());
    }

private:
    const Appearance& look_;
};

/// Something is chosen on every page.
void choose(Workspace& workspace) {
    EditState& edit = workspace.edit;
    edit.TotalNotes = 60;
    edit.CycleBeats = 12;
    edit.CycleNotes = 8;
    edit.Txtspc = 4;
    edit.ChannelPicked[0] = edit.ChannelPicked[1] = true;
    for (const std::size_t channel : {8, 10, 11, 12})
        edit.ChannelPicked[channel] = true;
    edit.Check5 = edit.Check2 = true;
    workspace.effects = {
        .NoteInstrumentPick = 48, .Combo3 = 5, .vol3 = 96, .T1 = 24, .T2 = -12, .T3 = 64, .T4 = 0};
    workspace.view.NoteEffectsOn = true;
}

/// The three pages under each other.
QImage pictureOfPages(GoldenProgram& program, int width) {
    choose(program.workspace());
    Ground ground(program.skins.look());
    ground.resize(width, kHeight);
    CommandBank Lb1("Lb1", kLb1, program.skins.look(), program.tips, &ground);
    for (int index = 0; index < Lb1.size(); ++index) {
        Lb1.bind(index, [] {});
        Lb1[index].setVisible(index == lb1("clear") || (index >= lb1("hide") && index != lb1("chord")));
    }
    Lb1.setOn(lb1("mode"), true);
    ToolPanel panel(program.skins.look(), Lb1, program.tips, program.workspace(), &ground);
    panel.setGeometry(12, 4, width - 24, 60);
    panel.layOut(formWidth(width));
    panel.effects().showEffects(24, -12, 100, 0);
    QImage all(width, 3 * kHeight, QImage::Format_RGB32);
    QPainter painter(&all);
    ground.show();
    for (const ToolPanel::Page page : {ToolPanel::Maker, ToolPanel::Effects, ToolPanel::Editor}) {
        panel.showPage(page);
        QCoreApplication::processEvents();
        painter.drawImage(0, page * kHeight, pictureOf(ground, 1));
    }
    return all;
}
} // namespace

class PagesInSomeSkins : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Golden, PagesInSomeSkins, testing::Values(1, 6, 7));

TEST_P(PagesInSomeSkins, TheyLookAsKept) {
    for (const int width : {1366, 1024, 880}) {
        GoldenProgram program(GetParam());
        const QString name = QStringLiteral("pages-%1-skin%2-x1").arg(width).arg(GetParam());
        const QString wrong = checkAgainstGolden(name, pictureOfPages(program, width), 1);
        EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
    }
}
