// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/AlsaInputRules.h"

#include "sound/ShortMessage.h"

#include <alsa/asoundlib.h>
#include <gtest/gtest.h>

using namespace velmora;
using namespace velmora::shortmessage;
using Kind = SequencerNews::Kind;

namespace {
constexpr unsigned kReadable = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
constexpr int kOurs = 129;

/// A keyboard on the USB, as the kernel presents it.
SequencerPort usbKeyboard() {
    return {.client = 24,
            .port = 0,
            .capability =
                kReadable | SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE | SND_SEQ_PORT_CAP_DUPLEX,
            .type = SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_HARDWARE | SND_SEQ_PORT_TYPE_PORT,
            .clientName = "Keystation",
            .portName = "Keystation MIDI 1"};
}

snd_seq_event announcement(snd_seq_event_type_t type, int client, int port) {
    snd_seq_event event{};
    event.type = type;
    event.source = {SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE};
    event.data.addr = {static_cast<unsigned char>(client), static_cast<unsigned char>(port)};
    return event;
}

snd_seq_event noteEvent(snd_seq_event_type_t type, int channel, int note, int velocity) {
    snd_seq_event event{};
    event.type = type;
    event.source = {24, 0};
    event.data.note.channel = static_cast<unsigned char>(channel);
    event.data.note.note = static_cast<unsigned char>(note);
    event.data.note.velocity = static_cast<unsigned char>(velocity);
    return event;
}

snd_seq_event controlEvent(snd_seq_event_type_t type, int channel, unsigned param, int value) {
    snd_seq_event event{};
    event.type = type;
    event.source = {24, 0};
    event.data.control.channel = static_cast<unsigned char>(channel);
    event.data.control.param = param;
    event.data.control.value = value;
    return event;
}
} // namespace

TEST(AlsaInputRulesTest, AKeyboardIsWanted) {
    EXPECT_TRUE(isWanted(usbKeyboard(), kOurs));
    EXPECT_EQ(usbKeyboard().fullName(), "Keystation:Keystation MIDI 1");
}

TEST(AlsaInputRulesTest, AnotherProgramThatPlaysIsWanted) {
    SequencerPort port = usbKeyboard();
    port.client = 130;
    port.type = SND_SEQ_PORT_TYPE_APPLICATION;
    EXPECT_TRUE(isWanted(port, kOurs));
}

TEST(AlsaInputRulesTest, WhatCannotBeReadIsNotWanted) {
    for (const unsigned missing : {SND_SEQ_PORT_CAP_READ, SND_SEQ_PORT_CAP_SUBS_READ}) {
        SequencerPort port = usbKeyboard();
        port.capability &= ~missing;
        EXPECT_FALSE(isWanted(port, kOurs));
    }
    SequencerPort port = usbKeyboard();
    port.capability |= SND_SEQ_PORT_CAP_NO_EXPORT;
    EXPECT_FALSE(isWanted(port, kOurs));
}

TEST(AlsaInputRulesTest, TheSystemsTimerAndAnnouncementsAreNotWanted) {
    for (const int number : {SND_SEQ_PORT_SYSTEM_TIMER, SND_SEQ_PORT_SYSTEM_ANNOUNCE}) {
        SequencerPort port = usbKeyboard();
        port.client = SND_SEQ_CLIENT_SYSTEM;
        port.port = number;
        EXPECT_FALSE(isWanted(port, kOurs));
    }
}

TEST(AlsaInputRulesTest, WhatPlaysNoMidiIsNotWanted) {
    SequencerPort port = usbKeyboard();
    port.type = SND_SEQ_PORT_TYPE_SPECIFIC;
    EXPECT_FALSE(isWanted(port, kOurs));
}

TEST(AlsaInputRulesTest, NothingOfOursIsWanted) {
    SequencerPort own = usbKeyboard();
    own.client = kOurs;
    EXPECT_FALSE(isWanted(own, kOurs));
    SequencerPort output = usbKeyboard();
    output.clientName = "Velmora";
    output.portName = "Output";
    EXPECT_FALSE(isWanted(output, kOurs));
}

TEST(AlsaInputRulesTest, ALoopbackIsNotWanted) {
    SequencerPort through = usbKeyboard();
    through.clientName = "Midi Through";
    through.portName = "Midi Through Port-0";
    EXPECT_FALSE(isWanted(through, kOurs));
}

TEST(AlsaInputRulesTest, AnnouncementsTellWhatHasComeAndGone) {
    EXPECT_EQ(newsOf(announcement(SND_SEQ_EVENT_PORT_START, 24, 1)), (SequencerNews{Kind::Port, 24, 1}));
    EXPECT_EQ(newsOf(announcement(SND_SEQ_EVENT_PORT_CHANGE, 24, 1)), (SequencerNews{Kind::Port, 24, 1}));
    EXPECT_EQ(newsOf(announcement(SND_SEQ_EVENT_PORT_EXIT, 24, 1)), (SequencerNews{Kind::NoPort, 24, 1}));
    EXPECT_EQ(newsOf(announcement(SND_SEQ_EVENT_CLIENT_EXIT, 24, 0)), (SequencerNews{Kind::NoClient, 24, 0}));
}

TEST(AlsaInputRulesTest, OtherAnnouncementsAreNoNews) {
    // A client has no ports yet when it comes; those are announced one by one.
    for (const int type : {SND_SEQ_EVENT_CLIENT_START, SND_SEQ_EVENT_CLIENT_CHANGE,
                           SND_SEQ_EVENT_PORT_SUBSCRIBED, SND_SEQ_EVENT_PORT_UNSUBSCRIBED})
        EXPECT_EQ(newsOf(announcement(static_cast<snd_seq_event_type_t>(type), 24, 0)), SequencerNews());
}

TEST(AlsaInputRulesTest, OnlyTheSystemAnnounces) {
    auto event = announcement(SND_SEQ_EVENT_PORT_EXIT, 24, 1);
    event.source = {24, 1};
    EXPECT_EQ(newsOf(event), SequencerNews());
}

TEST(AlsaInputRulesTest, EventsAreShortMessages) {
    EXPECT_EQ(wordOf(noteEvent(SND_SEQ_EVENT_NOTEON, 3, 60, 90)), noteOn(3, 60, 90));
    EXPECT_EQ(wordOf(noteEvent(SND_SEQ_EVENT_NOTEON, 3, 60, 0)), noteOn(3, 60, 0));
    EXPECT_EQ(wordOf(noteEvent(SND_SEQ_EVENT_NOTEOFF, 3, 60, 64)), pack(0x80, 3, 60, 64));
    EXPECT_EQ(wordOf(controlEvent(SND_SEQ_EVENT_CONTROLLER, 2, 64, 127)), controller(2, 64, 127));
    EXPECT_EQ(wordOf(controlEvent(SND_SEQ_EVENT_CHANPRESS, 2, 0, 99)), pack(0xD0, 2, 99));
}

TEST(AlsaInputRulesTest, APitchBendIsCountedFromItsLowest) {
    const auto bend = [](int value) { return wordOf(controlEvent(SND_SEQ_EVENT_PITCHBEND, 1, 0, value)); };
    EXPECT_EQ(bend(-8192), pack(0xE0, 1, 0, 0));
    EXPECT_EQ(bend(0), pack(0xE0, 1, 0, 64));
    EXPECT_EQ(bend(8191), pack(0xE0, 1, 127, 127));
    EXPECT_EQ(bend(-8191), pack(0xE0, 1, 1, 0));
    EXPECT_EQ(bend(100'000), pack(0xE0, 1, 127, 127));
}

TEST(AlsaInputRulesTest, WhatIsNoMessageOfAKeyboardIsPassedOver) {
    EXPECT_EQ(wordOf(controlEvent(SND_SEQ_EVENT_PGMCHANGE, 1, 0, 5)), std::nullopt);
    EXPECT_EQ(wordOf(controlEvent(SND_SEQ_EVENT_CONTROLLER, 1, 128, 5)), std::nullopt);
    EXPECT_EQ(wordOf(noteEvent(SND_SEQ_EVENT_NOTEON, 1, 128, 5)), std::nullopt);
    EXPECT_EQ(wordOf(announcement(SND_SEQ_EVENT_PORT_START, 24, 1)), std::nullopt);
    snd_seq_event clock{};
    clock.type = SND_SEQ_EVENT_CLOCK;
    EXPECT_EQ(wordOf(clock), std::nullopt);
}
