// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeyFile.h"

#include "base/Files.h"
#include "keyboard/KeyScheme.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <vector>

using namespace velmora;
using testing::Each;
using testing::HasSubstr;

namespace {
using namespace std::string_literals;

/// The labels of the first keys, and what all further keys have.
void expectLabels(const KeyScheme& scheme, const std::vector<std::string>& first,
                  const std::string& further) {
    for (std::size_t key = 0; key < scheme.labels.size(); ++key)
        EXPECT_EQ(scheme.labels[key], key < first.size() ? first[key] : further) << "key " << key;
}

struct KeyFileTest : testing::Test {
    QTemporaryDir folder;
    std::filesystem::path path = folder.filePath("my.key").toStdString();
    KeyScheme scheme = KeyScheme::builtIn();

    std::string open(std::string_view bytes) {
        EXPECT_EQ(replaceFile(path, bytes), "");
        return OpenKeyScheme(path, scheme);
    }
};
} // namespace

TEST_F(KeyFileTest, AShorterFileRepeatsItsLastLine) {
    expectLabels(parseKeyFile("A\r\nB\r\nC\r\n"), {"A", "B"}, "C");
    expectLabels(parseKeyFile("A\r\nB\r\nC"), {"A", "B"}, "C");
    expectLabels(parseKeyFile("A"), {}, "A");
}

TEST_F(KeyFileTest, AnEmptyFileEmptiesEveryLabel) {
    expectLabels(parseKeyFile(""), {}, "");
    expectLabels(parseKeyFile("\xEF\xBB\xBF"), {}, "");
}

TEST_F(KeyFileTest, AnEmptyLastLineIsALabelToo) {
    expectLabels(parseKeyFile("A\r\n\r\n"), {"A"}, "");
    expectLabels(parseKeyFile("\nB"), {""}, "B");
}

TEST_F(KeyFileTest, LinesBehindTheLastKeyAreIgnored) {
    std::string text;
    for (int line = 1; line <= 50; ++line)
        text += std::to_string(line) + "\r\n";
    const KeyScheme read = parseKeyFile(text);
    EXPECT_EQ(read.labels.front(), "1");
    EXPECT_EQ(read.labels.back(), "44");
}

TEST_F(KeyFileTest, ALineEndsWithEitherEnd) {
    expectLabels(parseKeyFile("A\nB\r\nC\n"), {"A", "B"}, "C");
    expectLabels(parseKeyFile("A\rB\r\r\nC\r"), {"A\rB\r"}, "C\r"); // a single CR ends none
}

TEST_F(KeyFileTest, LinesAreNotTrimmedAndMayBeLong) {
    expectLabels(parseKeyFile(" A \r\n\tB\r\nspace bar"), {" A ", "\tB"}, "space bar");
}

TEST_F(KeyFileTest, TheMarkOfUtf8IsNoLabel) {
    expectLabels(parseKeyFile("\xEF\xBB\xBF\xC3\xB6\nB"), {"\xC3\xB6"}, "B");
}

TEST_F(KeyFileTest, WhatIsNotUtf8IsWindows1252AsAWhole) {
    // An o umlaut, a euro sign, and what would be well-formed by itself.
    expectLabels(parseKeyFile("\xF6\n\x80\n\xC3\xB6\nZ"), {"\xC3\xB6", "\xE2\x82\xAC", "\xC3\x83\xC2\xB6"},
                 "Z");
    // One byte far behind the last key is enough.
    std::string text = "\xC3\xB6\n";
    for (int line = 0; line < 60; ++line)
        text += "A\n";
    EXPECT_EQ(parseKeyFile(text).labels[0], "\xC3\xB6");
    EXPECT_EQ(parseKeyFile(text + "\xFF").labels[0], "\xC3\x83\xC2\xB6");
}

TEST_F(KeyFileTest, EveryByteOfWindows1252IsACharacterOfItsOwn) {
    std::vector<std::string> seen;
    for (int byte = 0x80; byte < 0x100; ++byte) {
        // Alone it is no UTF-8.
        const std::string label = textOfLabel(std::string(1, static_cast<char>(byte)));
        EXPECT_EQ(textOfLabel(label), label) << byte; // so it has become UTF-8
        EXPECT_EQ(std::ranges::count(seen, label), 0) << byte;
        seen.push_back(label);
    }
    EXPECT_EQ(textOfLabel("\xDF"), "\xC3\x9F");
    EXPECT_EQ(textOfLabel("\x81"), "\xC2\x81");
    EXPECT_EQ(textOfLabel("\x9F"), "\xC5\xB8");
    EXPECT_EQ(textOfLabel("\x94"), "\xE2\x80\x9D");
}

TEST_F(KeyFileTest, OnlyTheWriterTrims) {
    KeyScheme read = parseKeyFile("A\n");
    read.labels[0] = "  B  C ";
    read.labels[1] = "";
    read.labels[2] = "   ";
    read.labels[3] = "\tD";
    const std::string written = formatKeyFile(read);
    EXPECT_TRUE(written.starts_with("B  C\r\n\r\n\r\n\tD\r\nA\r\n"));
    EXPECT_EQ(std::ranges::count(written, '\n'), kPianoKeys);
    EXPECT_TRUE(written.ends_with("A\r\n"));
}

TEST_F(KeyFileTest, AnEmptyLabelStaysEmptyAfterSaveAndLoad) {
    scheme.labels[0] = "";
    scheme.labels[43] = "";
    const KeyScheme kept = scheme;
    EXPECT_EQ(SaveKeyScheme(path, scheme), "");
    scheme = {};
    EXPECT_EQ(OpenKeyScheme(path, scheme), "");
    EXPECT_EQ(scheme, kept);
}

TEST_F(KeyFileTest, SavingReplacesAFileAndSaysWhatIsInItsWay) {
    EXPECT_EQ(replaceFile(path, std::string(10'000, 'x')), "");
    EXPECT_EQ(SaveKeyScheme(path, scheme), "");
    EXPECT_EQ(readWholeFile(path), formatKeyFile(scheme));
    EXPECT_THAT(SaveKeyScheme(path / "below.key", scheme), HasSubstr("below.key"));
    EXPECT_EQ(readWholeFile(path), formatKeyFile(scheme));
}

TEST_F(KeyFileTest, WhatIsNoSchemeIsRefusedInWordsAndChangesNothing) {
    struct Row {
        std::string bytes;
        const char* why;
    };
    const std::string lines = "A\nB\n";
    for (const Row& row : {
             Row{"\xFF\xFE"
                 "A\0\r\0\n\0"s,
                 "UTF-16"},
             Row{"\xFE\xFF\0A"s, "UTF-16"},
             Row{"A\0\r\0\n\0"s, "is no text"},
             Row{std::string("\x7F"
                             "ELF\2\1\1\0\0"s),
                 "is no text"},
             Row{lines + std::string(200'000, 'x') + '\0', "is no text"},
             Row{std::string(100'000'000, 'x'), "too long"},
             Row{lines + std::string(4097, 'x') + "\nD\n", "too long"},
         }) {
        const std::string problem = open(row.bytes);
        EXPECT_THAT(problem, HasSubstr(row.why));
        EXPECT_THAT(problem, HasSubstr("my.key"));
        EXPECT_EQ(scheme, KeyScheme::builtIn());
    }
}

TEST_F(KeyFileTest, ALongLabelIsReadWholeAndALongFileToo) {
    const std::string label(4096, 'x');
    EXPECT_EQ(open("A\n" + label + "\nC\n"), "");
    expectLabels(scheme, {"A", label}, "C");
    std::string text;
    for (int line = 0; line < 44; ++line)
        text += "K\r\n";
    EXPECT_EQ(open(text + std::string(5'000'000, 'x')), ""); // no label stands there
    EXPECT_THAT(scheme.labels, Each("K"s));
}

TEST_F(KeyFileTest, AFolderOrAnAbsentFileCannotBeRead) {
    for (const std::filesystem::path& other :
         {std::filesystem::path(folder.path().toStdString()), path / "below", path}) {
        EXPECT_THAT(OpenKeyScheme(other, scheme), HasSubstr("\"" + other.string() + "\" can't be read"));
        EXPECT_EQ(scheme, KeyScheme::builtIn());
    }
}

TEST_F(KeyFileTest, ANameGainsTheExtensionUnlessItHasIt) {
    EXPECT_EQ(keyFileName("piano"), "piano.key");
    EXPECT_EQ(keyFileName("piano.key"), "piano.key");
    EXPECT_EQ(keyFileName("PIANO.KEY"), "PIANO.KEY");
    EXPECT_EQ(keyFileName("piano.kEy"), "piano.kEy");
    EXPECT_EQ(keyFileName("piano.keys"), "piano.keys.key");
    EXPECT_EQ(keyFileName("key"), "key.key");
    EXPECT_EQ(keyFileName("  a piano "), "a piano.key");
    EXPECT_EQ(keyFileName("piano.key\0"s), "piano.key");
    EXPECT_EQ(keyFileName("piano\0"s), "piano.key");
}
