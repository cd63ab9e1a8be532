// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/PortNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velmora;
using testing::ElementsAre;

namespace {
std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}
} // namespace

TEST(PortNamesTest, AShortNameStaysAsItIs) {
    EXPECT_EQ(shortPortName("system:midi_playback_1"), "system:midi_playback_1");
    EXPECT_EQ(shortPortName(""), "");
    EXPECT_EQ(shortPortName(":x"), ":x");
}

TEST(PortNamesTest, AClientThatThePortRepeatsIsLeftOut) {
    EXPECT_EQ(shortPortName("USB Box:USB Box MIDI 2 20:1"), "USB Box MIDI 2 20:1");
    EXPECT_EQ(shortPortName("USB Box:Port 2 20:1"), "USB Box:Port 2 20:1");
}

TEST(PortNamesTest, ThirtyTwoCharactersAreKeptAndTheRestCutOff) {
    EXPECT_EQ(shortPortName(std::string(32, 'a')), std::string(32, 'a'));
    EXPECT_EQ(shortPortName(std::string(33, 'a')), std::string(32, 'a'));
    EXPECT_EQ(shortPortName(std::string(31, 'a') + " b"), std::string(31, 'a'));
}

TEST(PortNamesTest, ACharacterOfSeveralBytesIsNeverCutInTwo) {
    for (const std::string character : {"\u00e4", "\u266d", "\U0001F3B9"})
        EXPECT_EQ(shortPortName("x" + repeated(character, 40)), "x" + repeated(character, 31));
}

TEST(PortNamesTest, BrokenBytesAndControlCharactersAreReplaced) {
    EXPECT_EQ(shortPortName("caf\xE9"), "caf?");
    EXPECT_EQ(shortPortName("a\xE2\x99"), "a??");
    EXPECT_EQ(shortPortName("\xC0\xAF\xED\xA0\x80\xF4\x90\x80\x80\xE0\x80\x80z"), std::string(12, '?') + 'z');
    EXPECT_EQ(shortPortName("a\tb\x7F"
                            "c"),
              "a b c");
}

TEST(PortNamesTest, NamesThatWouldBeAlikeAreNumbered) {
    const std::string longName(40, 'n');
    const std::vector<std::string> full{longName + "1", "other", longName + "2", longName + "3"};
    EXPECT_THAT(shortPortNames(full), ElementsAre(std::string(32, 'n'), "other", std::string(30, 'n') + " 2",
                                                  std::string(30, 'n') + " 3"));
}

TEST(PortNamesTest, ANumberedNameNeverTakesThatOfAnother) {
    const std::vector<std::string> full{"box 2", "box", "box", "box"};
    EXPECT_THAT(shortPortNames(full), ElementsAre("box 2", "box", "box 3", "box 4"));
}

TEST(PortNamesTest, OnlyTheThroughPortIsALoopback) {
    EXPECT_TRUE(isLoopback("Midi Through:Midi Through Port-0 14:0"));
    EXPECT_TRUE(isLoopback("Midi-Bridge:Midi Through:(playback_0) Midi Through Port-0"));
    EXPECT_FALSE(isLoopback("USB Box:USB Box MIDI Thru 20:1"));
}

TEST(PortNamesTest, OurPortsAreThoseOfAnyVelmora) {
    for (const char* ours :
         {"Velmora:Output", "Velmora-01:Output", "Velmora Input:Input 1", "Velmora Input-01:Input 1"})
        EXPECT_TRUE(isOurPort(ours)) << ours;
    for (const char* other :
         {"Velmorana:Output", "Keys:Velmora:", "velmora:Output", "Velmora", "Velmora-x:Output", ""})
        EXPECT_FALSE(isOurPort(other)) << other;
}

TEST(PortNamesTest, TheSequencersPortsAreKnownAmongJacks) {
    EXPECT_TRUE(bridgesSequencer("Midi-Bridge:Keystation:(capture_0) Keystation MIDI 1", ""));
    EXPECT_TRUE(bridgesSequencer("a2j:Keystation [24] (capture): Keystation MIDI 1", ""));
    EXPECT_TRUE(bridgesSequencer("system:midi_capture_1", "alsa_pcm:Keystation/midi_capture_1"));
    EXPECT_FALSE(bridgesSequencer("system:midi_capture_1", "alsa_pcm:in-hw-1-0-0-Keystation"));
    EXPECT_FALSE(bridgesSequencer("Keys:Out", ""));
    EXPECT_FALSE(bridgesSequencer("system:capture_1", "alsa_pcm:capture_1"));
}

TEST(PortNamesTest, FiftyPortsOfOneNameKeepWithinTheLimitAndApart) {
    const std::vector<std::string> full(50, repeated("\u00e4", 60));
    auto names = shortPortNames(full);
    for (const auto& name : names)
        EXPECT_LE(std::ranges::count_if(name, [](char c) { return (c & 0xC0) != 0x80; }), 32);
    std::ranges::sort(names);
    EXPECT_EQ(std::ranges::adjacent_find(names), names.end());
}
