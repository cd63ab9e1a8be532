// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"

#include <QApplication>
#include <QTemporaryDir>

#include <string_view>

#include <gmock/gmock.h>

/// With "--remake" the pictures are stored instead of compared.
int main(int argc, char* argv[]) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("FONTCONFIG_FILE", VELMORA_GOLDEN_DIR "/fonts.conf");
    for (const char* scaling : {"QT_SCALE_FACTOR", "QT_FONT_DPI", "QT_SCREEN_SCALE_FACTORS"})
        qunsetenv(scaling);
    const QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    const QApplication application(argc, argv);
    if (argc > 1 && std::string_view(argv[1]) == "--remake")
        velmora::remakeGolden();
    return RUN_ALL_TESTS();
}
