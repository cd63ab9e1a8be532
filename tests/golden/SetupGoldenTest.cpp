// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "parts/FrmInst.h"
#include "setup/frmsetup.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr std::array kPanelNames{"polyphonics", "channels", "sound", "timing", "midi", "staff"};

void expectGolden(const char* window, int skin, int scale, QWidget& shown) {
    shown.show();
    QCoreApplication::processEvents();
    const QString name = QStringLiteral("%1-skin%2-x%3").arg(window).arg(skin).arg(scale);
    const QString wrong = checkAgainstGolden(name, pictureOf(shown, scale), scale);
    EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
}

/// Something is chosen on every panel.
void choose(Workspace& workspace) {
    SetupState& setup = workspace.setup;
    setup.Ch[1] = setup.Chkstrum[1] = setup.Chkstrum[4] = true;
    setup.Combo3 = 3;
    setup.channels[0].volume = 112;
    setup.channels[0].modulation = 16;
    setup.channels[0].pan = 44;
    setup.channels[0].reverb = 72;
    setup.channels[0].chorus = 24;
    workspace.score.ChannelMuted[5] = true;
    workspace.score.Tempo = 160;
}

void expectPanels(int skin, int scale, int first, int last) {
    GoldenProgram program(skin);
    choose(program.workspace());
    frmsetup window(program.desk(), nullptr);
    for (int panel = first; panel <= last; ++panel) {
        window.Lmnu_Click(panel);
        const std::string name = std::string("frmsetup-") + kPanelNames[static_cast<std::size_t>(panel)];
        expectGolden(name.c_str(), skin, scale, window);
    }
}
} // namespace

class SetupInSomeSkins : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Golden, SetupInSomeSkins, testing::Values(1, 6, 7));

TEST_P(SetupInSomeSkins, ThePanelsOfTheSetupToolbarLookAsKept) {
    expectPanels(GetParam(), 1, 0, 5);
}

TEST_P(SetupInSomeSkins, TheInstrumentPickerLooksAsKept) {
    GoldenProgram program(GetParam());
    FrmInst window(program.desk(), nullptr);
    expectGolden("FrmInst", GetParam(), 1, window);
}

TEST(SetupGoldenTest, TheSoundPanelOnALargeScreenLooksAsKept) {
    expectPanels(1, 2, 2, 2);
}
