// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/PlayedNotesFork.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using namespace velmora;
using testing::ElementsAre;

namespace {
struct Told final : PlayedNotes {
    std::vector<std::string> all;
    void add(const std::string& what, int one, int other, double moment) {
        all.push_back(what + " " + std::to_string(one) + " " + std::to_string(other) + " " +
                      std::to_string(static_cast<int>(moment)));
    }
    void struck(int channel, int note, int velocity, int program, double moment) override {
        add("struck", channel * 1000 + note, velocity * 1000 + program, moment);
    }
    void ended(int channel, int note, double moment) override { add("ended", channel, note, moment); }
    void pedal(int channel, bool down, double moment) override {
        add("pedal", channel, down ? 1 : 0, moment);
    }
    void silenced(double moment) override { add("silenced", 0, 0, moment); }
    void metronome(double start, double interval, int beatsPerMeasure) override {
        add("metronome", static_cast<int>(interval), beatsPerMeasure, start);
    }
};
} // namespace

TEST(PlayedNotesForkTest, BothAreToldOfEverything) {
    Told one;
    Told other;
    PlayedNotesFork fork(one, other);
    fork.struck(1, 60, 90, 24, 5);
    fork.pedal(1, true, 6);
    fork.ended(1, 60, 7);
    fork.metronome(8, 2, 3);
    fork.silenced(9);
    EXPECT_THAT(one.all, ElementsAre("struck 1060 90024 5", "pedal 1 1 6", "ended 1 60 7", "metronome 2 3 8",
                                     "silenced 0 0 9"));
    EXPECT_EQ(other.all, one.all);
}
