// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/QtMessageLoop.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/ProgressBar.h"
#include "cli/ScoreOptions.h"
#include "cli/Session.h"
#include "cli/SoundFont.h"
#include "cli/Words.h"
#include "composition/Player.h"
#include "score/PlaybackView.h"
#include "sound/DeviceChooser.h"
#include "sound/LiveSound.h"
#include "sound/ShortMessage.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>

namespace velmora::cli {

namespace {

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

int run(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    if (files.size() != 1)
        throw UsageError("takes exactly one score");
    const ScoreOptions options = readScoreOptions(parser);
    const std::string device = toBytes(parser.value("device"));
    Session session(files.front(), options);
    session.refuseEmptySegment();

    const bool throughSynth = device == DeviceChooser::kMapperName || device == MidiDevices::kSynthName;
    LiveSound sound(throughSynth ? chosenSoundFont(options) : options.soundFont);
    if (throughSynth)
        waitForSynth(sound);
    openDevice(sound.devices, device);
    warnOfSilence(files.front(), session);
    catchInterrupts();
    InterruptibleLoop loop(sound.devices, session.state);
    Player player(session.played(), sound.devices, loop);
    player.setLoop(parser.isSet("loop"));
    std::printf("Playing %s (%.1f s)\n", files.front().c_str(), session.seconds());
    std::fflush(stdout);
    {
        ProgressView progress(session, files.front().filename().string());
        const auto shown = player.show(progress);
        session.perform(player);
    }
    ringOut(sound, loop);
    return 0;
}

void addPlayOptions(QCommandLineParser& parser) {
    addScoreOptions(parser);
    parser.addOptions({
        {"device", "Plays to this device, as \"devices\" names it.", "name", DeviceChooser::kMapperName},
        {"loop", "Plays over and over, until Ctrl-C."},
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

const Command kPlay{"play", " IN.sng", "Plays a score; Ctrl-C stops it.", addPlayOptions, run};
const Command kDevices{"devices", "", "Lists where scores can be played to.", [](QCommandLineParser&) {},
                       listDevices};

} // namespace velmora::cli
