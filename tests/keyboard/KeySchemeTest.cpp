// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeyScheme.h"

#include <gtest/gtest.h>

#include <string>

using namespace velmora;

TEST(KeySchemeTest, TheBuiltInOneLabelsEveryKey) {
    std::string all;
    for (const std::string& label : KeyScheme::builtIn().labels) {
        EXPECT_EQ(label.size(), 1U);
        all += label;
    }
    EXPECT_EQ(all, "ZSXDCVGBHNJM,FGHJKL:\"QWERTYUIOP{}1234567890]");
}

TEST(KeySchemeTest, TheLowestKeyWithALabelWins) {
    const KeyScheme& scheme = KeyScheme::builtIn();
    EXPECT_EQ(scheme.keyOf("Z"), 0);
    EXPECT_EQ(scheme.keyOf("G"), 6); // and not 14
    EXPECT_EQ(scheme.keyOf("H"), 8);
    EXPECT_EQ(scheme.keyOf("J"), 10);
    EXPECT_EQ(scheme.keyOf("\""), 20);
    EXPECT_EQ(scheme.keyOf("]"), 43);
}

TEST(KeySchemeTest, ALabelIsComparedAsItStands) {
    KeyScheme scheme = KeyScheme::builtIn();
    EXPECT_EQ(scheme.keyOf("z"), std::nullopt);
    EXPECT_EQ(scheme.keyOf("Z "), std::nullopt);
    EXPECT_EQ(scheme.keyOf("ZS"), std::nullopt);
    EXPECT_EQ(scheme.keyOf(""), std::nullopt);
    scheme.labels[30] = "\xC3\xB6";
    EXPECT_EQ(scheme.keyOf("\xC3\xB6"), 30);
}
