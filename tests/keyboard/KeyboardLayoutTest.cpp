// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeyboardLayout.h"

#include "base/QtText.h"
#include "base/VirtualLoop.h"
#include "keyboard/KeyFile.h"
#include "keyboard/Keyboard.h"
#include "keyboard/Keymap.h"
#include "score/Manners.h"
#include "sound/ShortMessage.h"
#include "tests/support/Environment.h"
#include "tests/support/RecordingPort.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon.h>

#include <fstream>
#include <set>
#include <stdexcept>

using namespace velmora;
using testing::ElementsAre;
using testing::Not;

namespace {
/// A keyboard on which a hand types, as the window system sees it.
class Hand {
public:
    explicit Hand(const KeymapNames& names)
        : context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS))
        , keymap_(keymapOf(context_, names))
        , state_(xkb_state_new(keymap_)) {}
    ~Hand() {
        xkb_state_unref(state_);
        xkb_keymap_unref(keymap_);
        xkb_context_unref(context_);
    }
    Hand(const Hand&) = delete;
    Hand& operator=(const Hand&) = delete;

    /// What a press of the key types.
    std::string press(int position) {
        const auto code = static_cast<xkb_keycode_t>(position + 8);
        char text[16] = "";
        xkb_state_key_get_utf8(state_, code, text, sizeof text);
        xkb_state_update_key(state_, code, XKB_KEY_DOWN);
        xkb_state_update_key(state_, code, XKB_KEY_UP);
        return text;
    }

private:
    static xkb_keymap* keymapOf(xkb_context* context, const KeymapNames& names) {
        const xkb_rule_names rules{"evdev", "pc105", names.layout.c_str(), names.variant.c_str(), ""};
        return xkb_keymap_new_from_names(context, &rules, XKB_KEYMAP_COMPILE_NO_FLAGS);
    }

    xkb_context* context_;
    xkb_keymap* keymap_;
    xkb_state* state_;
};

/// The note that a keyboard with the scheme plays for what is typed; -1 for none.
int notePlayed(const KeyScheme& scheme, const std::string& typed) {
    VirtualLoop loop;
    RecordingPort port{loop};
    PerChannel<PlaybackChannelSetup> channels;
    const Manners manners = Manners::careful();
    Keyboard keyboard(port, loop, channels, manners);
    keyboard.setScheme(scheme);
    const QString text = toQString(typed);
    const QString upper = text.toUpper();
    const std::string other = (upper != text ? upper : text.toLower()).toStdString();
    const char first = upper.size() == 1 ? upper.front().toLatin1() : '\0';
    const bool hasCode = (first >= 'A' && first <= 'Z') || (first >= '0' && first <= '9');
    keyboard.Form_KeyDown({.position = 1,
                           .code = hasCode ? first : 0,
                           .text = typed,
                           .otherText = other == typed ? std::string_view() : std::string_view(other)});
    for (const auto word : port.words())
        if (shortmessage::status(word) == 0x90)
            return shortmessage::data1(word);
    return -1;
}

struct Layout {
    const char* test;
    const char* layout;
    const char* variant;
};
struct LayoutTest : testing::TestWithParam<Layout> {
    KeymapNames names{.layout = GetParam().layout, .variant = GetParam().variant};
};

FittedScheme fitOf(const KeymapNames& names) {
    const auto keymap = Keymap::of(names);
    if (!keymap)
        throw std::runtime_error("no layout " + names.layout);
    return fitScheme([&](int position) { return keymap->typedBy(position); });
}

KeyScheme shipped(std::string_view file) {
    return std::ranges::find(shippedSchemes(), file, &ShippedScheme::file)->scheme();
}
} // namespace

INSTANTIATE_TEST_SUITE_P(Layouts, LayoutTest,
                         testing::Values(Layout{"us", "us", ""}, Layout{"de", "de", ""},
                                         Layout{"fr", "fr", ""}, Layout{"es", "es", ""},
                                         Layout{"se", "se", ""}, Layout{"dvorak", "us", "dvorak"},
                                         Layout{"dk", "dk", ""}, Layout{"ch", "ch", ""},
                                         Layout{"pl", "pl", ""}, Layout{"ru", "ru", ""},
                                         Layout{"gr", "gr", ""}, Layout{"tr", "tr", ""}),
                         [](const auto& one) { return one.param.test; });

TEST_P(LayoutTest, EveryKeyHasALabelOfItsOwn) {
    const FittedScheme fitted = fitOf(names);
    std::set<std::string> labels(fitted.scheme.labels.begin(), fitted.scheme.labels.end());
    EXPECT_EQ(labels.size(), 44U);
    EXPECT_FALSE(labels.contains(""));
    const std::set<int> positions(fitted.positions.begin(), fitted.positions.end());
    EXPECT_EQ(positions.size(), 44U);
    for (const std::string& label : labels)
        EXPECT_EQ(toQString(label).size(), 1) << label;
}

TEST_P(LayoutTest, EveryKeyIsPlayedByThePlaceThatItsLabelStandsFor) {
    const FittedScheme fitted = fitOf(names);
    Hand hand(names);
    for (int key = 0; key < kPianoKeys; ++key) {
        const auto i = static_cast<std::size_t>(key);
        const std::string typed = hand.press(fitted.positions[i]);
        const QString text = toQString(typed);
        EXPECT_TRUE(fitted.scheme.labels[i] == typed || toQString(fitted.scheme.labels[i]) == text.toUpper())
            << fitted.scheme.labels[i] << " for " << typed;
        EXPECT_EQ(notePlayed(fitted.scheme, typed), kLowestNote + key) << typed;
    }
}

TEST_P(LayoutTest, TheLowestKeysLieAsAPianosOnTheLowerRows) {
    const FittedScheme fitted = fitOf(names);
    const std::vector<int> lowest(fitted.positions.begin(), fitted.positions.begin() + 13);
    EXPECT_THAT(lowest, ElementsAre(KEY_Z, KEY_S, KEY_X, KEY_D, KEY_C, KEY_V, KEY_G, KEY_B, KEY_H, KEY_N,
                                    KEY_J, KEY_M, KEY_COMMA));
    // The key that not every keyboard has is the last resort.
    EXPECT_THAT(fitted.positions, Not(testing::Contains(int{KEY_102ND})));
}

TEST(KeyboardLayoutTest, APlaceThatTypesNothingIsTakenByTheFirstSpareOne) {
    const auto typed = [](int position) {
        if (position == KEY_S || position == KEY_EQUAL)
            return TypedText();
        return TypedText{.plain = std::to_string(position), .capital = ""};
    };
    const FittedScheme fitted = fitScheme(typed);
    EXPECT_EQ(fitted.positions[1], KEY_BACKSLASH);
    EXPECT_EQ(fitted.positions[2], KEY_X);
}

TEST(KeyboardLayoutTest, OfTwoLettersWithOneCapitalOneCounts) {
    const FittedScheme fitted = fitOf({.layout = "tr"});
    EXPECT_EQ(std::ranges::count(fitted.scheme.labels, "I"), 1);
    EXPECT_EQ(std::ranges::count(fitted.scheme.labels, "ı") + std::ranges::count(fitted.scheme.labels, "i"),
              0);
}

TEST(KeyboardLayoutTest, WhereNoPlaceIsLeftALabelStaysBlank) {
    const auto typed = [](int position) {
        return position == KEY_Z ? TypedText{"z", "Z"} : TypedText{"x", "X"};
    };
    const FittedScheme fitted = fitScheme(typed);
    EXPECT_EQ(fitted.scheme.labels[0], "Z");
    EXPECT_EQ(fitted.scheme.labels[1], "X");
    for (std::size_t key = 2; key < 44; ++key) {
        EXPECT_EQ(fitted.scheme.labels[key], "");
        EXPECT_EQ(fitted.positions[key], 0);
    }
}

TEST(KeyboardLayoutTest, TheBuiltInSchemeIsShippedFirst) {
    EXPECT_EQ(shippedSchemes().front().scheme(), KeyScheme::builtIn());
}

TEST(KeyboardLayoutTest, TheSchemesOfLayoutsAreWhatTheirLayoutsType) {
    EXPECT_EQ(shipped("german"), fitOf({.layout = "de"}).scheme);
    EXPECT_EQ(shipped("french"), fitOf({.layout = "fr"}).scheme);
    EXPECT_EQ(shipped("spanish"), fitOf({.layout = "es"}).scheme);
    EXPECT_EQ(shipped("nordic"), fitOf({.layout = "se"}).scheme);
    EXPECT_EQ(shipped("nordic"), fitOf({.layout = "fi"}).scheme);
    EXPECT_EQ(shipped("dvorak"), fitOf({.layout = "us", .variant = "dvorak"}).scheme);
}

TEST(KeyboardLayoutTest, TheTwoRowPianoHasBlackKeysInTheUpperOfTwoRowsEach) {
    const KeyScheme piano = shipped("two-row-piano");
    const std::string whiteRows = "ZXCVBNMQWERTYUIOP[]";
    for (int key = 0; key < 32; ++key) {
        const std::string& label = piano.labels[static_cast<std::size_t>(key)];
        ASSERT_EQ(label.size(), 1U);
        EXPECT_EQ(whiteRows.find(label) == std::string::npos, isBlackKey(key)) << label;
        EXPECT_EQ(piano.keyOf(label), key);
    }
    for (std::size_t key = 32; key < 44; ++key)
        EXPECT_EQ(piano.labels[key], "");
}

TEST(KeyboardLayoutTest, EachShippedSchemeIsAFileToo) {
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_SCHEMES_DIR)) {
        static_cast<void>(entry);
        ++files;
    }
    EXPECT_EQ(files, shippedSchemes().size());
    for (const ShippedScheme& one : shippedSchemes()) {
        const auto path = std::filesystem::path(VELMORA_SCHEMES_DIR) / (std::string(one.file) + ".key");
        std::ifstream file(path, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        EXPECT_EQ(bytes, formatKeyFile(one.scheme())) << path;
        KeyScheme read;
        EXPECT_EQ(OpenKeyScheme(path, read), "");
        EXPECT_EQ(read, one.scheme());
    }
}

TEST(KeymapTest, AKeyTypesItsCharacterWithItsCapital) {
    const auto german = Keymap::of({.layout = "de"});
    ASSERT_TRUE(german);
    EXPECT_EQ(german->typedBy(KEY_SEMICOLON), (TypedText{"ö", "Ö"}));
    EXPECT_EQ(german->typedBy(KEY_1), (TypedText{"1", "1"}));
    EXPECT_EQ(german->typedBy(KEY_MINUS), (TypedText{"ß", ""})) << "its capital is of two letters";
}

TEST(KeymapTest, WhatTypesNoCharacterIsBlank) {
    const auto german = Keymap::of({.layout = "de"});
    ASSERT_TRUE(german);
    for (const int position :
         {KEY_EQUAL, KEY_GRAVE, KEY_LEFTSHIFT, KEY_F1, KEY_ENTER, KEY_SPACE, KEY_ESC, KEY_BACKSPACE, 700, 0})
        EXPECT_EQ(german->typedBy(position), TypedText()) << position;
}

TEST(KeymapTest, ALayoutThatThereIsNotIsNone) {
    EXPECT_FALSE(Keymap::of({.layout = "no such layout"}));
}

TEST(KeymapTest, OfSeveralLayoutsTheFirstCounts) {
    const auto both = Keymap::of({.layout = "fr,us"});
    ASSERT_TRUE(both);
    EXPECT_EQ(both->typedBy(KEY_Q), (TypedText{"a", "A"}));
}

TEST(KeymapNamesTest, TheEnvironmentComesFirstAndThenTheFileOfTheSystem) {
    Environment environment;
    for (const char* name : {"XKB_DEFAULT_LAYOUT", "XKB_DEFAULT_VARIANT", "XKB_DEFAULT_MODEL"})
        environment.unset(name);
    const QTemporaryDir folder;
    const std::filesystem::path file = std::filesystem::path(folder.path().toStdString()) / "keyboard";
    EXPECT_EQ(KeymapNames::ofSystem(file), KeymapNames());
    std::ofstream(file) << "# a comment\nXKBMODEL=\"pc105\"\nXKBLAYOUT=\"us,de\"\nXKBVARIANT='dvorak,'\n"
                           "XKBOPTIONS=compose:ralt\nBACKSPACE=\"guess\"\n";
    EXPECT_EQ(
        KeymapNames::ofSystem(file),
        (KeymapNames{.model = "pc105", .layout = "us,de", .variant = "dvorak,", .options = "compose:ralt"}));
    const auto dvorak = Keymap::of(KeymapNames::ofSystem(file));
    ASSERT_TRUE(dvorak);
    EXPECT_EQ(dvorak->typedBy(KEY_S).plain, "o");
    environment.set("XKB_DEFAULT_LAYOUT", "fr");
    EXPECT_EQ(KeymapNames::ofSystem(file), KeymapNames());
    const auto french = Keymap::of(KeymapNames::ofSystem(file));
    ASSERT_TRUE(french);
    EXPECT_EQ(french->typedBy(KEY_Q).plain, "a");
}
