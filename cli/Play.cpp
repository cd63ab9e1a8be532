// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/QtMessageLoop.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/PlayedMusic.h"
#include "cli/ProgressBar.h"
#include "cli/ScoreOptions.h"
#include "cli/Session.h"
#include "cli/SoundFont.h"
#include "cli/Words.h"
#include "composition/Player.h"
#include "score/MidiFileReader.h"
#include "score/PlaybackView.h"
#include "sound/DeviceChooser.h"
#include "sound/LiveSound.h"
#include "sound/ShortMessage.h"
#include "studio/SoundReader.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora::cli {

namespace {

namespace fs = std::filesystem;

constexpr double kLoadingSeconds = 20;
constexpr double kRingOutSeconds = 10;
constexpr double kInterruptedSeconds = 0.3; ///< of ringing out, after Ctrl-C

std::vector<std::string> deviceNames(MidiPort& port) {
    std::vector<std::string> names{DeviceChooser::kMapperName};
    const int count = port.deviceCount();
    for (int device = 0; device < count; ++device)
        names.push_back(port.deviceName(device));
    return names;
}

void openDevice(MidiPort& port, const std::string& name) {
    const auto names = deviceNames(port);
    const auto found = std::ranges::find(names, name);
    if (found == names.end()) {
        std::string known;
        for (const auto& one : names)
            known += "\n  " + one;
        throw Failure("there is no device \"" + name + "\"; there are:" + known);
    }
    const int device = static_cast<int>(found - names.begin()) - 1; // the mapper is -1
    if (port.open(device) != MidiPort::kOk)
        throw Failure("the device \"" + name + "\" can't be opened; is another program using it?");
    port.send(shortmessage::kDrumBank);
}

/// The real clock, and an end to it when the user interrupts: all sound stops, and no wait lasts any longer.
class InterruptibleLoop : public QtMessageLoop {
public:
    InterruptibleLoop(MidiPort& port, PlayState& state) : port_(port), state_(state) {}

    void serveUntil(double moment) override {
        constexpr double kNoticeSeconds = 0.1;
        while (now() < moment && !ended()) {
            const double next = std::min(moment, now() + kNoticeSeconds);
            QtMessageLoop::serveUntil(next);
        }
    }

private:
    bool ended() {
        if (interrupted() && !closed_) {
            closed_ = true;
            port_.close(); // silences, and keeps what the walk still sends from sounding
            state_.Playing = false;
        }
        return closed_;
    }

    MidiPort& port_;
    PlayState& state_;
    bool closed_ = false;
};

/// A bar that follows the play position.
class ProgressView : public PlaybackView {
public:
    ProgressView(const Session& session, std::string name) : session_(session), bar_(std::move(name), 0) {}
    void drawPlayLine(int /*column*/) override {
        const int first = session_.state.PlayingSegment ? session_.view.PlayMark : 0;
        const int last = session_.score.SongEnd;
        bar_.show(last > first ? static_cast<double>(session_.state.PlayPosition - first) / (last - first)
                               : 1);
    }

private:
    const Session& session_;
    ProgressBar bar_;
};

/// Lets the last notes die away.
void ringOut(LiveSound& sound, MessageLoop& loop) {
    loop.block(0.1); // what was sent last is still on its way
    const double begin = loop.now();
    while (sound.synth.sounding() &&
           loop.now() - begin < (interrupted() ? kInterruptedSeconds : kRingOutSeconds))
        loop.block(0.02);
}

void waitForSynth(LiveSound& sound) {
    if (sound.synth.waitUntilReady(kLoadingSeconds))
        return;
    const std::string error = sound.synth.error();
    throw Failure(error.empty() ? "The SoundFont takes too long to load." : error);
}

enum class Kind : std::uint8_t { Score, Midi, Sound };

Kind kindOf(const fs::path& file) {
    return isSoundName(file) ? Kind::Sound : isMidiName(file) ? Kind::Midi : Kind::Score;
}

/// Plays what comes, each in its way.
class Programme {
public:
    explicit Programme(const QCommandLineParser& parser)
        : options_(readScoreOptions(parser))
        , device_(toBytes(parser.value("device")))
        , isLooping_(parser.isSet("loop")) {}

    int play(const std::vector<fs::path>& files) {
        if (std::ranges::find(files, Kind::Score, kindOf) != files.end())
            openScores(); // before any other thread runs
        else
            music_.emplace();
        catchInterrupts();
        for (auto next = files.begin(); next != files.end() && !interrupted();) {
            auto end = next + 1;
            if (kindOf(*next) == Kind::Sound)
                end = std::ranges::find_if(next, files.end(),
                                           [](const auto& file) { return kindOf(file) != Kind::Sound; });
            try {
                isAllPlayed_ = playSome({next, end}) && isAllPlayed_;
            } catch (const Failure& failure) {
                std::fprintf(stderr, "velmora-cli: %s\n", failure.what());
                isAllPlayed_ = false;
            }
            next = end;
        }
        return isAllPlayed_ ? 0 : 1;
    }

private:
    /// False if the built-in synthesizer has no part in it.
    [[nodiscard]] bool isThroughSynth() const {
        return device_ == DeviceChooser::kMapperName || device_ == MidiDevices::kSynthName;
    }
    [[nodiscard]] AudioOutput& output() { return scores_ ? scores_->output : *music_; }

    /// Without a SoundFont each score says so when its turn comes.
    void openScores() {
        fs::path soundFont = options_.soundFont;
        if (isThroughSynth() && soundFont.empty())
            soundFont = findSoundFont().value_or(fs::path());
        scores_.emplace(soundFont);
    }

    /// One score or MIDI file, or a row of sound files. False if some of it was passed over.
    bool playSome(const std::vector<fs::path>& files) {
        const fs::path& first = files.front();
        switch (kindOf(first)) {
        case Kind::Sound:
            return playSounds(files, output());
        case Kind::Midi:
            playMidi(first, output(), chosenSoundFont(options_));
            return true;
        case Kind::Score:
            playScore(first);
            return true;
        }
        return false;
    }

    void playScore(const fs::path& file) {
        Session session(file, options_);
        session.refuseEmptySegment();
        if (isThroughSynth()) {
            (void)chosenSoundFont(options_);
            waitForSynth(*scores_);
        }
        openDevice(scores_->devices, device_);
        warnOfSilence(file, session);
        InterruptibleLoop loop(scores_->devices, session.state);
        Player player(session.played(), scores_->devices, loop);
        player.setLoop(isLooping_);
        std::printf("Playing %s (%.1f s)\n", file.c_str(), session.seconds());
        std::fflush(stdout);
        {
            ProgressView progress(session, file.filename().string());
            const auto shown = player.show(progress);
            session.perform(player);
        }
        ringOut(*scores_, loop);
    }

    ScoreOptions options_;
    std::string device_;
    bool isLooping_;
    bool isAllPlayed_ = true;
    std::optional<LiveSound> scores_;  ///< if there are any
    std::optional<AudioOutput> music_; ///< otherwise
};

int run(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.empty())
        throw UsageError("takes at least one score, MIDI or sound file");
    return Programme(parser).play(files);
}

void addPlayOptions(QCommandLineParser& parser) {
    addScoreOptions(parser);
    parser.addOptions({
        {"device", "Plays scores to this device, as \"devices\" names it.", "name",
         DeviceChooser::kMapperName},
        {"loop", "Plays a score over and over, until Ctrl-C."},
    });
}

int listDevices(const QCommandLineParser& parser) {
    if (!fileArguments(parser).empty())
        throw UsageError("takes no file");
    LiveSound sound(findSoundFont().value_or(std::filesystem::path()));
    for (const auto& name : deviceNames(sound.devices))
        std::puts(name.c_str());
    return 0;
}

} // namespace

const Command kPlay{"play", " FILE...",
                    "Plays scores, MIDI and sound files, one after the other; Ctrl-C stops it.",
                    addPlayOptions, run};
const Command kDevices{"devices", "", "Lists where scores can be played to.", [](QCommandLineParser&) {},
                       listDevices};

} // namespace velmora::cli
