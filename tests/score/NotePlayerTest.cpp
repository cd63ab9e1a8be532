// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/NotePlayer.h"

#include "base/VirtualLoop.h"
#include "score/PlayState.h"
#include "score/Score.h"
#include "sound/Chords.h"
#include "sound/SetupState.h"
#include "sound/ShortMessage.h"
#include "tests/support/RecordingPort.h"

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {

struct NotePlayerTest : testing::Test {
    Score score{100};
    SetupState setup;
    PlayState state;
    ChordSteps chords;
    VirtualLoop loop;
    RecordingPort port{loop};
    NotePlayer player{score, setup, state, chords, port, loop};

    std::vector<std::uint32_t> start(int row, int channel) {
        port.sent.clear();
        player.Startnote(row, channel);
        return port.words();
    }
    std::vector<std::uint32_t> stop(int row, int channel) {
        port.sent.clear();
        player.CurrentChannel = channel;
        player.StopNote(row);
        return port.words();
    }
};

} // namespace

TEST_F(NotePlayerTest, ANoteIsFourControllersAndANoteOn) {
    state.PlayPosition = 4;
    score.Volume.set(3, 5, 90);
    score.Modulation_Change.set(3, 5, 1);
    score.Pan_Change.set(3, 5, 2);
    score.Reverb_Change.set(3, 5, 3);
    score.Chorus_Change.set(3, 5, 4);
    score.ActiveChannel = 3;
    EXPECT_THAT(start(60, 3), ElementsAre(0x0101B3U, 0x020AB3U, 0x035BB3U, 0x045DB3U, 0x5A4393U));
    EXPECT_THAT(stop(60, 3), ElementsAre(0x004383U));
}

TEST_F(NotePlayerTest, TheVolumeReachesTheSlotOfTheActiveChannelWhicheverSounds) {
    score.ActiveChannel = 0;
    score.ChannelVelocity[3] = 33;
    score.Volume.set(3, 1, 90);
    EXPECT_EQ(start(60, 3).back(), 0x214393U);
    EXPECT_EQ(score.ChannelVelocity[0], 90);
}

TEST_F(NotePlayerTest, PercussionSoundsItsKeyOnTheDrumChannelAndReadsTheEffectsOfRowNine) {
    player.ChangeInstrument(128, 8);
    score.Reverb_Change.set(9, 1, 40);
    score.Reverb_Change.set(8, 1, 99);
    score.ChannelVelocity[8] = 100;
    EXPECT_THAT(start(3, 8), ElementsAre(0x0001B9U, 0x400AB9U, 0x285BB9U, 0x005DB9U, 0x642399U));
    EXPECT_THAT(stop(3, 8), ElementsAre(0x002389U));
}

TEST_F(NotePlayerTest, AChannelAboveSevenIsForcedToPercussionByStartnoteButNotByAPress) {
    player.ChangeInstrument(5, 10);
    player.CurrentChannel = 10;
    port.sent.clear();
    player.StartNoteBtnDn(60, 0);
    EXPECT_EQ(shortmessage::channel(port.words().back()), 10);
    EXPECT_EQ(shortmessage::channel(start(60, 10).back()), 9);
}

TEST_F(NotePlayerTest, APressTakesItsEffectsFromTheClickedColumn) {
    score.Pan_Change.set(2, 31, 7);
    score.ActiveChannel = 2;
    score.Volume.set(2, 31, 11);
    player.CurrentChannel = 2;
    player.StartNoteBtnDn(60, 30);
    EXPECT_EQ(port.words()[1], 0x070AB2U);
    EXPECT_EQ(port.words().back(), 0x0B4392U);
    port.sent.clear();
    player.StopNoteBtnUp(60, 30);
    EXPECT_THAT(port.words(), ElementsAre(0x004382U));
}

TEST_F(NotePlayerTest, AChordIsPlayedSofterTwiceOver) {
    score.Polyphonics.set(1, 0, 1);
    EXPECT_THAT(start(67, 0), ElementsAre(0x0001B0U, 0x400AB0U, 0x005BB0U, 0x005DB0U, 0x663C90U, 0x524090U,
                                          0x524390U, 0x524890U));
    EXPECT_DOUBLE_EQ(loop.now(), 0);
    EXPECT_THAT(stop(67, 0), ElementsAre(0x003C80U, 0x004080U, 0x004380U, 0x004880U));
}

TEST_F(NotePlayerTest, TheChordOfANoteIsEndedFromThePositionAfterItToo) {
    score.Polyphonics.set(1, 4, 2);
    state.PlayPosition = 5;
    EXPECT_EQ(stop(67, 0).size(), 4U);
    state.PlayPosition = 6;
    EXPECT_EQ(stop(67, 0).size(), 1U);
    state.PlayPosition = 0;
    EXPECT_EQ(stop(67, 0).size(), 1U);
}

TEST_F(NotePlayerTest, AStepOfZeroIsNotStartedButEndsTheNoteAgain) {
    score.Polyphonics.set(1, 0, 6);
    const auto started = start(67, 0);
    EXPECT_EQ(started.size(), 6U);
    EXPECT_EQ(shortmessage::data1(started.back()), 48);
    EXPECT_THAT(stop(67, 0), ElementsAre(0x003C80U, 0x003080U, 0x003C80U, 0x003C80U));
}

TEST_F(NotePlayerTest, AChordStepAboveNote127CarriesBit15) {
    score.Polyphonics.set(1, 0, 1);
    const auto words = start(0, 0);
    EXPECT_EQ(words[5], 0x528390U);
    EXPECT_FALSE(shortmessage::isValid(words[5]));
    EXPECT_TRUE(shortmessage::isValid(words[4]));
}

TEST_F(NotePlayerTest, AStrummedChordTakes115Milliseconds) {
    score.Polyphonics.set(1, 0, 3);
    setup.Chkstrum[0] = true;
    start(67, 0);
    ASSERT_EQ(port.sent.size(), 8U);
    EXPECT_NEAR(port.sent[4].moment, 0, 1e-12);
    EXPECT_NEAR(port.sent[5].moment, 0.045, 1e-12);
    EXPECT_NEAR(port.sent[6].moment, 0.080, 1e-12);
    EXPECT_NEAR(port.sent[7].moment, 0.115, 1e-12);
}

TEST_F(NotePlayerTest, ATickedChSoftensAndEndsTheChordWithoutStartingOne) {
    setup.Ch[2] = true;
    score.ChannelVelocity[2] = 100;
    score.ActiveChannel = 5;
    const auto words = start(67, 2);
    EXPECT_EQ(words.size(), 5U);
    EXPECT_EQ(shortmessage::data2(words.back()), 80);
    EXPECT_EQ(stop(67, 2).size(), 4U);
}

TEST_F(NotePlayerTest, SofteningRoundsHalvesToEven) {
    score.Polyphonics.set(2, 0, 7);
    score.ActiveChannel = 5;
    score.ChannelVelocity[1] = 101; // 80.8, then 64.8
    const auto words = start(67, 1);
    EXPECT_EQ(shortmessage::data2(words[4]), 81);
    EXPECT_EQ(shortmessage::data2(words[5]), 65);
}

TEST_F(NotePlayerTest, AProgramIsSentWithItsBankAndAPercussionKeyIsKept) {
    player.ChangeInstrument(24, 3);
    EXPECT_THAT(port.words(), ElementsAre(0x0000B3U, 0x0020B3U, 0x0018C3U));
    port.sent.clear();
    player.ChangeInstrument(131, 12);
    EXPECT_TRUE(port.sent.empty());
    EXPECT_TRUE(score.ChannelIsDrum[12]);
    EXPECT_EQ(score.ChannelDrumKey[12], 38);
}

TEST_F(NotePlayerTest, APercussionCodeOnAMelodyChannelLeavesThePreviousProgramPlaying) {
    score.ChannelIsDrum[3] = true;
    player.ChangeInstrument(128, 3);
    EXPECT_TRUE(port.sent.empty());
    EXPECT_FALSE(score.ChannelIsDrum[3]);
}

TEST_F(NotePlayerTest, EffectsPastTheLastPositionAreNotSent) {
    state.PlayPosition = 100;
    EXPECT_EQ(start(60, 0).size(), 1U);
}

TEST_F(NotePlayerTest, AllPercussionChannelsShareMidiChannelIndexNine) {
    for (const int channel : {8, 10, 11, 12}) {
        player.ChangeInstrument(128 + channel, channel);
        EXPECT_EQ(shortmessage::channel(start(60, channel).back()), 9);
        EXPECT_EQ(shortmessage::data1(start(60, channel).back()), 35 + channel);
    }
}
