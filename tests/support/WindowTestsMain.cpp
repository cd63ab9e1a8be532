// SPDX-License-Identifier: GPL-2.0-or-later
#include <QApplication>
#include <QTemporaryDir>

#include <gmock/gmock.h>

/// Windows are tested without a screen of the machine's: Qt's offscreen platform paints as the real ones do.
int main(int argc, char* argv[]) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt's dialogs keep the widths of their columns in a file of the user's.
    const QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
