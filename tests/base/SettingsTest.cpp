// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Settings.h"

#include "tests/support/MemorySettings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

using namespace velmora;

namespace {
/// An end of a range, and what a stored value one beyond it reads as. Blank for the end of the type itself.
struct End {
    std::string value;
    std::string beyond;
    bool operator==(const End&) const = default;
};

struct Row {
    std::string key;
    std::string type;
    std::string fallback;
    std::string section = "Settings";
    End least{};
    End most{};
    bool operator==(const Row&) const = default;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.section << '/' << row.key << " (" << row.type << ") " << row.fallback << ", "
         << row.least.value << " (" << row.least.beyond << ") to " << row.most.value << " ("
         << row.most.beyond << ')';
}

const std::vector<Row> kRows{
    {"Intrumentval", "i16", "24"},
    {"Intrumentval2", "i16", "128"},
    {"Inst Name", "text", ""},
    {"Volume", "i16", "127", "Settings", {"0", "0"}, {"127", "127"}},
    {"CopyonlyOneTrack", "Boolean", "False"},
    {"NumNotes", "i32", "1000", "Settings", {"1", "1000"}, {"200000", "200000"}},
    {"Notes per measure", "i16", "16", "Settings", {"1", "16"}},
    {"Beats per measure", "i16", "4", "Settings", {"1", "4"}},
    {"Type of note", "i16", "4", "Settings", {"1", "4"}},
    {"Line_Height", "i16", "8", "Settings", {"4", "4"}, {"40", "40"}},
    {"Show_Sharp_guides", "i16", "1"},
    {"Show Bass staff", "i16", "1"},
    {"Show Treble staff", "i16", "1"},
    {"Notationstyle", "i16", "0"},
    {"Accidentals", "Boolean", "True"},
    {"Percussion", "Boolean", "True"},
    {"Playing position", "Boolean", "True"},
    {"Classic", "i16", "0"},
    {"Devices", "i16", "-1"},
    {"Skin type", "i16", "1", "Settings", {"1", "1"}, {"8", "8"}},
    {"Skin buttons", "i16", "1", "Settings", {"1", "1"}, {"6", "1"}},
    {"ToolText type", "i16", "1"},
    {"Editing Toolbar", "Boolean", "False"},
    {"Synthup", "Boolean", "False"},
    {"frmsetup", "Boolean", "True"},
    {"form1 left", "f32", "100"},
    {"form1 top", "f32", "200"},
    {"form1 width", "f32", "0"},
    {"form1 Width", "f32", "0"},
    {"form1 Height", "f32", "0"},
    {"frmsetup left", "f32", "0"},
    {"frmsetup top", "f32", "0"},
    {"frmsetup folded", "Boolean", "False"},
    {"help left", "f32", "0"},
    {"help top", "f32", "0"},
    {"help Width", "f32", "0"},
    {"help Height", "f32", "0"},
    {"record left", "f32", "0"},
    {"record top", "f32", "0"},
    {"formS left", "f32", "0"},
    {"formS top", "f32", "0"},
    {"formS width", "f32", "0"},
    {"formS Width", "f32", "0"},
    {"formS Height", "f32", "0"},
    {"keyfile", "text", ""},
    {"frmscore left", "f32", "100"},
    {"frmscore top", "f32", "200"},
    {"frmscore Width", "f32", "0"},
    {"frmscore Height", "f32", "0"},
    {"Wiz left", "f32", "0"},
    {"Wiz top", "f32", "0"},
    {"Show tips", "text", "1"},
    {"NumBytes", "i32", "10000"},
    {"Delete WAV", "text", "1"},
    {"autoencode", "text", "1"},
    {"Show note position", "text", "1"},
    {"MP3 bitrate", "text", "11"},
    {"MP3 quality", "text", "9"},
    {"WAV format", "text", ""},
    {"Recent file 1", "text", ""},
    {"Recent file 2", "text", ""},
    {"Recent file 3", "text", ""},
    {"Recent file 4", "text", ""},
    {"Recent file 5", "text", ""},
    {"Recent file 6", "text", ""},
    {"Recent file 7", "text", ""},
    {"Recent file 8", "text", ""},
    {"BarWidth", "i16", "6", "ScoreSettings"},
    {"HeaderHeight", "i16", "6", "ScoreSettings"},
    {"SpacerHeight", "i16", "6", "ScoreSettings"},
    {"JoinNotes", "i16", "0", "ScoreSettings"},
    {"NewScore", "i16", "1", "ScoreSettings"},
    {"NumDrums", "i16", "0", "ScoreSettings"},
    {"ClassicPage", "i16", "-1", "ScoreSettings"},
    {"LearnToRead", "Boolean", "False", "ScoreSettings"},
    {"TwoVoices", "Boolean", "False", "ScoreSettings"},
    {"Step entry", "Boolean", "False"},
    {"Step length", "i16", "0", "Settings", {"0", "0"}, {"64", "64"}},
};

std::string typeName(const settings::Int16&) {
    return "i16";
}
std::string typeName(const settings::Int32&) {
    return "i32";
}
std::string typeName(const settings::Float&) {
    return "f32";
}
std::string typeName(const settings::Boolean&) {
    return "Boolean";
}
std::string typeName(const settings::Text&) {
    return "text";
}

/// What a setting saves of a value that it has read from @p text.
template<class T>
std::string throughStore(const settings::Setting<T>& setting, std::string_view text) {
    MemorySettings store;
    store.SaveSetting(setting.section, setting.key, text);
    save(store, setting, read(store, setting));
    return store.values.begin()->second;
}

template<class T>
End endOf(const settings::Setting<T>& setting, T end, T endOfType, int step) {
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        if (end != endOfType)
            return {throughStore(setting, std::to_string(end)),
                    throughStore(setting, std::to_string(std::int64_t{end} + step))};
    }
    EXPECT_EQ(end, endOfType) << setting.key;
    return {};
}

struct SettingsTest : testing::Test {
    MemorySettings store;

    template<class T>
    auto readFrom(const settings::Setting<T>& setting, std::string_view text) {
        store.SaveSetting(setting.section, setting.key, text);
        return read(store, setting);
    }
};
} // namespace

TEST_F(SettingsTest, EveryRowHasItsFallbackAndItsRange) {
    // Saving what an empty store gives writes the fallback down as text.
    std::vector<Row> rows;
    for (const settings::AnySetting& any : settings::kAll)
        std::visit(
            [&](const auto& setting) {
                MemorySettings written;
                save(written, setting, read(store, setting));
                ASSERT_EQ(written.values.size(), 1u);
                const auto& [place, value] = *written.values.begin();
                using Limits = std::numeric_limits<std::remove_const_t<decltype(setting.fallback)>>;
                rows.push_back({place.second, typeName(setting), value, place.first,
                                endOf(setting, setting.range.least, Limits::lowest(), -1),
                                endOf(setting, setting.range.most, Limits::max(), +1)});
            },
            any);
    EXPECT_EQ(rows, kRows);
}

TEST_F(SettingsTest, EveryRowReadsWhatWasSavedForIt) {
    for (const settings::AnySetting& any : settings::kAll)
        std::visit(
            [&](const auto& setting) {
                const std::string text = typeName(setting) == "Boolean" ? "True" : "5";
                store.SaveSetting(setting.section, setting.key, text);
                MemorySettings written;
                save(written, setting, read(store, setting));
                EXPECT_EQ(written.values.begin()->second, text) << setting.key;
            },
            any);
    EXPECT_EQ(store.values.size(), settings::kAll.size()) << "no two rows share a place";
}

TEST_F(SettingsTest, WhatLiesFarBeyondARangeIsAsWhatLiesJustBeyond) {
    EXPECT_EQ(readFrom(settings::NumNotes, "-2147483648"), 1000);
    EXPECT_EQ(readFrom(settings::NumNotes, "2147483647"), 200'000);
    EXPECT_EQ(readFrom(settings::Line_Height, "-32768"), 4);
    EXPECT_EQ(readFrom(settings::Line_Height, "32767"), 40);
    EXPECT_EQ(readFrom(settings::Skin_buttons, "999"), 1);
}

TEST_F(SettingsTest, WhatIsStoredCanBeReadBeyondItsRange) {
    store.SaveSetting("Settings", "Skin type", "9");
    EXPECT_EQ(stored(store, settings::Skin_type), 9);
    EXPECT_EQ(read(store, settings::Skin_type), 8);
}

TEST_F(SettingsTest, AFallbackOfTheCallerGoesBeforeTheTables) {
    EXPECT_EQ(read(store, settings::form1_width, 1720), 1720);
    EXPECT_EQ(readFrom(settings::form1_width, "800"), 800);
    EXPECT_EQ(read(store, settings::form1_width, 1720), 800);
}

TEST_F(SettingsTest, AStoredWidthUnderTheWrittenKeyIsNotReadBack) {
    save(store, settings::form1_Width, 640);
    EXPECT_EQ(read(store, settings::form1_width, 1720), 1720);
}

TEST_F(SettingsTest, WholeNumbersOutOfTheirTypeGiveTheFallback) {
    EXPECT_EQ(readFrom(settings::Devices, "32767"), 32767);
    EXPECT_EQ(readFrom(settings::Devices, "-32768"), -32768);
    EXPECT_EQ(readFrom(settings::Devices, "32768"), -1);
    EXPECT_EQ(readFrom(settings::Devices, "-32769"), -1);
    EXPECT_EQ(readFrom(settings::NumBytes, "2147483647"), 2147483647);
    EXPECT_EQ(readFrom(settings::NumBytes, "2147483648"), 10000);
    EXPECT_EQ(readFrom(settings::NumBytes, "-2147483649"), 10000);
}

TEST_F(SettingsTest, TextThatIsNoNumberGivesTheFallback) {
    for (const char* text :
         {"", " ", "abc", "12x", "1,5", "0x10", "nan", "inf", "+-3", "- 3", "1e999", "True"}) {
        EXPECT_EQ(readFrom(settings::NumNotes, text), 1000) << text;
        EXPECT_EQ(readFrom(settings::form1_top, text), 200) << text;
    }
    EXPECT_EQ(readFrom(settings::form1_top, "1e39"), 200) << "beyond a 32-bit float";
}

TEST_F(SettingsTest, BlanksSignsAndFractionsAreNumbers) {
    EXPECT_EQ(readFrom(settings::NumNotes, " 12 "), 12);
    EXPECT_EQ(readFrom(settings::NumNotes, "+12"), 12);
    EXPECT_EQ(readFrom(settings::NumNotes, "2.5"), 2);
    EXPECT_EQ(readFrom(settings::NumNotes, "3.5"), 4);
    EXPECT_EQ(readFrom(settings::form1_top, "-187.5"), -187.5F);
}

TEST_F(SettingsTest, BooleansAreWordsInAnyCaseOrNumbers) {
    for (const char* text : {"True", "true", "TRUE", "-1", "1", "0.5", " true "})
        EXPECT_TRUE(readFrom(settings::Synthup, text)) << text;
    for (const char* text : {"False", "false", "FALSE", "0", "-0"})
        EXPECT_FALSE(readFrom(settings::frmsetup, text)) << text;
    for (const char* text : {"", "yes", "Tru", "Truely"}) {
        EXPECT_TRUE(readFrom(settings::frmsetup, text)) << text;
        EXPECT_FALSE(readFrom(settings::Synthup, text)) << text;
    }
}

TEST_F(SettingsTest, ATextIsReadAsItIs) {
    EXPECT_EQ(readFrom(settings::autoencode, ""), "");
    EXPECT_EQ(readFrom(settings::autoencode, " 0 "), " 0 ");
}

TEST_F(SettingsTest, NumbersAreWrittenInDecimalAndBooleansAsWords) {
    const auto written = [&](const auto& setting, auto value) {
        save(store, setting, value);
        return store.GetSetting(setting.section, setting.key, "none");
    };
    EXPECT_EQ(written(settings::Devices, std::int16_t{-1}), "-1");
    EXPECT_EQ(written(settings::NumNotes, 123456), "123456");
    EXPECT_EQ(written(settings::form1_top, 187.5F), "187.5");
    EXPECT_EQ(written(settings::frmsetup, true), "True");
    EXPECT_EQ(written(settings::frmsetup, false), "False");
    EXPECT_EQ(written(settings::keyfile, "a b.key"), "a b.key");
}
