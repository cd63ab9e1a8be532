// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/ProgramFolders.h"
#include "base/QtMessageLoop.h"
#include "base/Text.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/PerformedNotes.h"
#include "cli/ScoreOptions.h"
#include "cli/Session.h"
#include "cli/SoundFont.h"
#include "cli/TakeLoop.h"
#include "cli/TakeReadout.h"
#include "cli/Words.h"
#include "score/MidiFileReader.h"
#include "sound/AudioOutput.h"
#include "sound/DeviceChooser.h"
#include "sound/MidiDevices.h"
#include "sound/VirtualMix.h"
#include "studio/MediaDevices.h"
#include "studio/MusicSession.h"
#include "studio/RecordingSession.h"
#include "studio/SessionScreen.h"
#include "studio/SoundReader.h"
#include "studio/modMultimedia.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace velmora::cli {

namespace {

namespace fs = std::filesystem;

bool hasExtension(const fs::path& file, std::string_view extension) {
    return toLower(file.extension().string()) == extension;
}

/// What is to be recorded, and where.
struct TakeJob {
    fs::path source; ///< blank for none
    fs::path wav;
    fs::path mp3; ///< blank if a WAV file is wanted
    ScoreOptions score;
    double seconds = 0; ///< 0 for no limit
    bool isVirtual = false;
    bool isReplacing = false;
    bool isLogged = false;
};

/// Prints the texts of the session as they come.
class PrintedSession : public SessionScreen {
public:
    void said(const std::string& text) override {
        std::printf("%s\n", text.c_str());
        std::fflush(stdout);
    }
};

template<typename Choose>
std::size_t indexOption(const QCommandLineParser& parser, const char* name, std::size_t count,
                        std::size_t otherwise, const Choose& textAt) {
    if (!parser.isSet(name))
        return otherwise;
    const std::string value = toBytes(parser.value(name));
    for (std::size_t i = 0; i < count; ++i)
        if (toLower(value) == toLower(std::string(textAt(i))) || value == std::to_string(i))
            return i;
    throw UsageError(std::string("--") + name + " does not take \"" + value + "\"");
}

std::size_t readBitrate(const QCommandLineParser& parser) {
    if (!parser.isSet("bitrate"))
        return kDefaultBitrate;
    const std::string value = toBytes(parser.value("bitrate"));
    for (std::size_t i = 0; i < kMp3Bitrates.size(); ++i)
        if (value == std::to_string(kMp3Bitrates[i]))
            return i;
    throw UsageError("--bitrate does not take \"" + value + "\"");
}

void readFormat(const QCommandLineParser& parser, SessionState& state) {
    if (!parser.isSet("format"))
        return;
    const std::string value = toBytes(parser.value("format"));
    if (waveFormat(value)) {
        state.otherFormat = value;
        for (std::size_t i = 0; i < kOfferedFormats; ++i)
            if (offeredFormat(i).text == value)
                state.cbxFormat = i;
        return;
    }
    state.cbxFormat = indexOption(parser, "format", kOfferedFormats, kDefaultOffer,
                                  [](std::size_t i) { return offeredFormat(i).text; });
}

double readSeconds(const QCommandLineParser& parser) {
    if (!parser.isSet("seconds"))
        return 0;
    bool isNumber = false;
    const double seconds = parser.value("seconds").toDouble(&isNumber);
    if (!isNumber || !std::isfinite(seconds) || seconds <= 0)
        throw UsageError("--seconds takes a length above 0");
    return seconds;
}

TakeJob readJob(const QCommandLineParser& parser, SessionState& state) {
    const auto files = fileArguments(parser);
    if (files.empty() || files.size() > 2)
        throw UsageError("takes a score, MIDI or sound file, if any, and the file to be made");
    TakeJob job;
    job.score = readScoreOptions(parser);
    const fs::path& out = files.back();
    if (files.size() == 2)
        job.source = files.front();
    const bool isMp3 = hasExtension(out, ".mp3");
    if (!isMp3 && !hasExtension(out, ".wav"))
        throw UsageError("\"" + out.string() + "\" is neither a .wav nor an .mp3 file");
    job.wav = isMp3 ? fs::path(out).replace_extension(".wav") : out;
    if (isMp3)
        job.mp3 = out;
    job.seconds = readSeconds(parser);
    job.isVirtual = parser.isSet("virtual");
    job.isReplacing = parser.isSet("replace");
    job.isLogged = parser.isSet("log");
    readFormat(parser, state);
    state.Combo4 = readBitrate(parser);
    state.Combo3 = indexOption(parser, "quality", kEncoderQualities.size(), kDefaultQuality,
                               [](std::size_t i) { return kEncoderQualities[i].text; });
    state.Check2 = isMp3;
    state.Check3 = !parser.isSet("keep-wav");
    const std::string from = toBytes(parser.value("from"));
    if (from != "own" && from != "everything")
        throw UsageError("--from takes own or everything, not \"" + from + "\"");
    state.capture = from == "own" ? CaptureSource::Own : CaptureSource::Everything;
    if (job.isVirtual && state.capture == CaptureSource::Everything)
        throw UsageError("--from everything records what really sounds; it has no --virtual form");
    if (job.isVirtual && job.source.empty() && job.seconds <= 0)
        throw UsageError("--virtual without a file to play needs --seconds");
    state.source = job.source.empty()                 ? RecordingSource::Keyboard
                   : hasExtension(job.source, ".sng") ? RecordingSource::Notes
                                                      : RecordingSource::MidiFile;
    return job;
}

void checkPlaces(const TakeJob& job) {
    for (const fs::path& place : {job.wav, job.mp3}) {
        std::error_code error;
        if (place.empty() || !fs::exists(fs::symlink_status(place, error)))
            continue;
        if (!job.source.empty() && fs::equivalent(place, job.source, error))
            throw Failure("\"" + place.string() + "\" would replace what is to be recorded.");
        if (!job.isReplacing)
            throw Failure("\"" + place.string() +
                          "\" is there already; choose another name, or --replace it.");
    }
}

/// Before anything is made: whether the source can be played at all.
void checkSource(const TakeJob& job) {
    std::string error;
    if (hasExtension(job.source, ".mid"))
        error = readMidiFile(job.source).error;
    else if (isSoundName(job.source))
        error = openSound(job.source).error;
    else if (!job.source.empty() && !hasExtension(job.source, ".sng"))
        error = "\"" + job.source.string() + "\" is neither a score, nor a MIDI or sound file.";
    if (!error.empty())
        throw Failure(error);
}

std::unique_ptr<MusicPlayer> performedNotes(const TakeJob& job, Mix& mix) {
    Session session(job.source, job.score);
    session.refuseEmptySegment();
    warnOfSilence(job.source, session);
    OpenedMusic opened =
        MusicPlayer::perform(session.performance().messages, mix, chosenSoundFont(job.score));
    if (!opened.player)
        throw Failure(opened.error);
    return std::move(opened.player);
}

/// Says so where a score would have gone to a device of its own.
void warnOfDevice(const std::string& device) {
    if (device != DeviceChooser::kMapperName && device != MidiDevices::kSynthName)
        std::fprintf(stderr,
                     "velmora-cli: the device \"%s\" is not part of the recording; the built-in synthesizer "
                     "plays instead\n",
                     device.c_str());
}

int recordIn(Mix& mix, MessageLoop& clock, const TakeJob& job, SessionState& state) {
    TakeLoop loop(clock);
    PerformedNotes notes(state.source == RecordingSource::Notes ? performedNotes(job, mix) : nullptr, loop);
    MediaDevices media(mix, loop, [&job] { return chosenSoundFont(job.score); });
    MusicSession music(state, media, loop);
    const ProgramFolders folders = ProgramFolders::ofUser();
    RecordingSession session(state, media, music, notes, job.score.manners, folders, loop);
    PrintedSession printed;
    if (job.isLogged) {
        media.onCommand = [](std::string_view command, const MediaAnswer& answer) {
            std::printf("> %.*s\n< %s%s%s\n", static_cast<int>(command.size()), command.data(),
                        answer.text().c_str(), answer.value.empty() ? "" : "\t", answer.value.c_str());
            std::fflush(stdout);
        };
        session.show(&printed);
        music.show(&printed);
    }
    TakeReadout readout(job.mp3.empty() ? job.wav : job.mp3);
    bool isInTake = false;
    loop.onTick = [&] {
        if (isInTake)
            session.update();
        if (const Capture* const taken = media.recorder(modMultimedia::kCapture))
            readout.show(state.lblTime, taken->levels());
    };
    loop.onEnd = [&] {
        if (state.isRecording)
            session.CmdStopRecording_Click();
    };
    if (job.seconds > 0)
        loop.endAt(loop.now() + job.seconds);
    isInTake = true;
    const bool began = session.record(job.wav, job.mp3, job.source);
    while (began && state.isRecording)
        loop.serveUntil(loop.now() + 1);
    readout.clear();
    if (began && session.wasSilent())
        std::fprintf(stderr, "velmora-cli: the take \"%s\" is silent\n",
                     (job.mp3.empty() ? job.wav : job.mp3).c_str());
    if (!session.failure().empty())
        throw Failure(session.failure());
    return 0;
}

int run(const QCommandLineParser& parser) {
    SessionState state;
    const TakeJob job = readJob(parser, state);
    checkPlaces(job);
    checkSource(job);
    warnOfDevice(toBytes(parser.value("device")));
    catchInterrupts();
    if (job.isVirtual) {
        VirtualMix mix;
        return recordIn(mix, mix, job, state);
    }
    AudioOutput output;
    QtMessageLoop clock;
    return recordIn(output, clock, job, state);
}

void addOptions(QCommandLineParser& parser) {
    addScoreOptions(parser);
    parser.addOptions({
        {"format", "The WAV file's format: a text of the Recording Studio's list, or its place from 0.",
         "format"},
        {"from", "own: what Velmora plays (default); everything: what all programs play.", "source", "own"},
        {"seconds", "Ends the take after so many seconds at the latest.", "seconds"},
        {"virtual", "Uses no sound device and no clock: as fast as it goes."},
        {"device", "Where the score would be played to.", "name", DeviceChooser::kMapperName},
        {"bitrate", "Bitrate of MP3 (default: 224).", "kbit/s"},
        {"quality", "Quality of MP3 (default: Studio).", "quality"},
        {"keep-wav", "Keeps the WAV file that an MP3 file is made from."},
        {"replace", "Writes over files that are there already."},
        {"log", "Prints each media command, its answer, and the messages of the session."},
    });
}

} // namespace

const Command kRecord{"record", " [SOURCE] OUT",
                      "Records what a score, MIDI or sound file sounds like, as .wav or .mp3.", addOptions,
                      run};

} // namespace velmora::cli
