// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/QtMessageLoop.h"
#include "composition/Player.h"
#include "score/Manners.h"
#include "score/PlayState.h"
#include "score/Score.h"
#include "score/ViewState.h"
#include "sound/Chords.h"
#include "sound/LiveSound.h"
#include "sound/SetupState.h"
#include "sound/ShortMessage.h"
#include "tests/servers/MonitorRecorder.h"
#include "tests/servers/PulseServer.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <numbers>
#include <thread>
#include <utility>
#include <vector>

using namespace velmora;

namespace {

constexpr const char* kSmallSoundFont = "/usr/share/sounds/sf2/TimGM6mb.sf2";
/// For a busy machine; the spacing of notes does not depend on it.
const AudioOutputSettings kLargeBuffer{.stream = {.buffer = 0.1}};
constexpr std::int16_t kXylophone = 13; // begins at once and dies away soon

/// Passes everything on and keeps the moments of the note-ons.
class WatchedPort : public MidiPort {
public:
    explicit WatchedPort(MidiPort& port) : port_(port) {}
    int deviceCount() override { return port_.deviceCount(); }
    std::string deviceName(int device) override { return port_.deviceName(device); }
    int open(int device) override { return port_.open(device); }
    int close() override { return port_.close(); }
    void reset() override { port_.reset(); }
    void send(std::uint32_t word) override {
        if (shortmessage::status(word) == 0x90)
            noteOns.push_back(steadySeconds());
        port_.send(word);
    }

    std::vector<double> noteOns;

private:
    MidiPort& port_;
};

/// A score that plays through the synthesizer and a real server, whose sink's monitor is recorded.
struct ScorePlayTest : testing::Test {
    PulseServer server;
    Score score{200};
    SetupState setup;
    ViewState view;
    PlayState state;
    ChordSteps chords;
    Manners manners = Manners::classic();
    QtMessageLoop loop;

    void note(int position, int midiNote, int length = 2) {
        for (int p = position; p < position + length; ++p) {
            const int row = 127 - midiNote;
            score.NoteCell.set(0, p, static_cast<std::int16_t>(p == position ? row : 1000 + row));
            score.NoteInstrument.set(0, p, kXylophone);
        }
    }

    std::vector<double> sentAt;
    std::vector<float> heard; // left channel
    bool ranDry = false;
    bool started = false;

    /// A machine that is busy elsewhere lets the stream run dry, which moves all that follows: then once
    /// more.
    void play() {
        hear([this](MidiPort& port) {
            Player player({score, setup, view, state, chords, manners}, port, loop);
            player.PlayAndStop_Click(false);
        });
    }

    template<class Perform>
    void hear(Perform perform) {
        if (!std::exchange(started, true))
            server.start();
        for (int attempt = 0; attempt < 20; ++attempt) {
            ASSERT_NO_FATAL_FAILURE(hearOnce(perform));
            if (!ranDry)
                return;
        }
        FAIL() << "the stream ran dry in every attempt";
    }

    template<class Perform>
    void hearOnce(Perform perform) {
        heard.clear();
        LiveSound sound(kSmallSoundFont, kLargeBuffer);
        ASSERT_TRUE(sound.synth.waitUntilReady(10)) << sound.synth.error();
        ASSERT_TRUE(within(5, [&] { return sound.output.figures().driver == "pulse"; }));
        ASSERT_EQ(sound.devices.open(MidiPort::kMapper), MidiPort::kOk);
        MonitorRecorder recorder;
        WatchedPort port(sound.devices);
        perform(port);
        sentAt = port.noteOns;
        ranDry = sound.output.figures().underruns > 0;
        const std::size_t end = recorder.frames() + AudioOutput::kRate / 4; // what is still on its way
        ASSERT_TRUE(within(3, [&] { return recorder.frames() > end; }));
        const auto samples = recorder.samples();
        for (std::size_t i = 0; i < samples.size(); i += 2)
            heard.push_back(samples[i]);
    }

    /// Frames at which sound begins after a silence.
    [[nodiscard]] std::vector<std::size_t> onsets() const {
        constexpr float kAudible = 0.002F;
        constexpr std::size_t kSilence = 1500; // frames
        std::vector<std::size_t> found;
        std::size_t quietSince = 0;
        for (std::size_t i = 0; i < heard.size(); ++i) {
            if (std::fabs(heard[i]) < kAudible)
                continue;
            if (i - quietSince > kSilence || found.empty())
                found.push_back(i);
            quietSince = i;
        }
        return found;
    }

    /// How strongly a frequency sounds in the tenth of a second from a frame on.
    [[nodiscard]] double strength(std::size_t from, double hertz) const {
        const std::size_t frames = AudioOutput::kRate / 10;
        const double step = 2 * std::numbers::pi * hertz / AudioOutput::kRate;
        double real = 0;
        double imaginary = 0;
        for (std::size_t i = 0; i < frames && from + i < heard.size(); ++i) {
            const double weight = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * double(i) / double(frames));
            real += weight * heard[from + i] * std::cos(step * double(i));
            imaginary += weight * heard[from + i] * std::sin(step * double(i));
        }
        return std::hypot(real, imaginary);
    }
};

double hertz(double midiNote) {
    return 440 * std::pow(2, (midiNote - 69) / 12);
}

} // namespace

TEST_F(ScorePlayTest, NotesAreHeardAtTheirTimes) {
    score.Tempo = 140; // 98.6 ms a position
    const std::vector<int> positions{0, 5, 9, 15, 19, 24};
    for (const int position : positions)
        note(position, 84);
    // A machine that stands still between the stamp of a note and its sending moves that note: then once
    // more.
    double largestShift = 1;
    for (int attempt = 0; attempt < 8 && largestShift > 0.0015; ++attempt) {
        ASSERT_NO_FATAL_FAILURE(play());
        const auto found = onsets();
        ASSERT_EQ(sentAt.size(), positions.size());
        ASSERT_EQ(found.size(), positions.size());
        double shift = 0;
        for (std::size_t i = 1; i < found.size(); ++i) {
            const double heardApart = double(found[i] - found[0]) / AudioOutput::kRate;
            shift = std::max(shift, std::fabs(heardApart - (sentAt[i] - sentAt[0])));
            EXPECT_NEAR(heardApart, positions[i] * 13.8 / 140, 0.5) << "note " << i; // tempo is a floor
        }
        largestShift = std::min(largestShift, shift);
    }
    EXPECT_LE(largestShift, 0.0015) << "in the best of all attempts";
}

TEST_F(ScorePlayTest, ANoteIsHeardNoLaterAfterTheSynthesizerHasRested) {
    const auto strike = [](MidiPort& port) {
        port.send(shortmessage::noteOn(0, 84, 100));
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        port.send(shortmessage::noteOff(0, 84));
    };
    double leastShift = 1;
    for (int attempt = 0; attempt < 4 && leastShift > 0.0015; ++attempt) {
        ASSERT_NO_FATAL_FAILURE(hear([&](MidiPort& port) {
            port.send(shortmessage::programChange(0, kXylophone));
            strike(port);
            constexpr double kDyingAway = 3;
            std::this_thread::sleep_for(
                std::chrono::duration<double>(kDyingAway + BuiltInSynth::kRestSeconds));
            strike(port);
        }));
        const auto found = onsets();
        ASSERT_EQ(sentAt.size(), 2U);
        ASSERT_EQ(found.size(), 2U);
        const double heardApart = double(found[1] - found[0]) / AudioOutput::kRate;
        leastShift = std::min(leastShift, std::fabs(heardApart - (sentAt[1] - sentAt[0])));
    }
    EXPECT_LE(leastShift, 0.0015) << "in the best of all attempts"; // a block of the synthesizer's grid
}

TEST_F(ScorePlayTest, NotesAreHeardAtTheirPitch) {
    score.Tempo = 140;
    const std::vector<int> tune{72, 76, 79, 83, 84};
    for (std::size_t i = 0; i < tune.size(); ++i)
        note(static_cast<int>(i) * 5, tune[i]);
    ASSERT_NO_FATAL_FAILURE(play());
    const auto found = onsets();
    ASSERT_EQ(found.size(), tune.size());
    for (std::size_t i = 0; i < tune.size(); ++i) {
        const double right = strength(found[i], hertz(tune[i]));
        for (const int wrong : {-2, -1, 1, 2})
            EXPECT_GT(right, 2 * strength(found[i], hertz(tune[i] + wrong))) << "note " << i << ", " << wrong;
    }
}

TEST_F(ScorePlayTest, AStopEndsInSilence) {
    note(0, 60, 100);
    for (int p = 0; p < 100; ++p)
        score.NoteInstrument.set(0, p, 19); // an organ holds for as long as its key
    server.start();
    LiveSound sound(kSmallSoundFont, kLargeBuffer);
    ASSERT_TRUE(sound.synth.waitUntilReady(10));
    ASSERT_TRUE(within(5, [&] { return sound.output.figures().driver == "pulse"; }));
    ASSERT_EQ(sound.devices.open(MidiPort::kMapper), MidiPort::kOk);
    MonitorRecorder recorder;
    const auto loudness = [&] { // of the last 50 ms
        const auto samples = recorder.samples();
        double sum = 0;
        const std::size_t count = std::min<std::size_t>(samples.size(), AudioOutput::kRate / 10);
        for (std::size_t i = samples.size() - count; i < samples.size(); ++i)
            sum += std::fabs(samples[i]);
        return count == 0 ? 0 : sum / double(count);
    };
    sound.devices.send(shortmessage::programChange(0, 19));
    sound.devices.send(shortmessage::noteOn(0, 60, 127));
    ASSERT_TRUE(within(3, [&] { return loudness() > 0.01; }));
    sound.devices.reset();
    EXPECT_TRUE(within(5, [&] { return loudness() < 1e-4; }));
}
