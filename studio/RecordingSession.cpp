// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/RecordingSession.h"

#include "base/ProgramFolders.h"
#include "base/Text.h"
#include "score/Manners.h"
#include "sound/Mix.h"
#include "studio/Capture.h"
#include "studio/MediaDevices.h"
#include "studio/MusicSession.h"
#include "studio/SessionMessages.h"
#include "studio/SessionPlayer.h"
#include "studio/SessionScreen.h"
#include "studio/modMultimedia.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <thread>

namespace velmora {

namespace {
namespace fs = std::filesystem;

constexpr double kStepSeconds = 0.05;    ///< between two looks at what goes on
constexpr double kOnItsWaySeconds = 0.1; ///< what was sent last sounds by then
constexpr int kMostTakes = 99999;        ///< their names are numbers up to this

bool hasExtension(const fs::path& file, std::string_view extension) {
    return toLower(file.extension().string()) == extension;
}

bool isThere(const fs::path& file) {
    std::error_code error;
    return fs::exists(file, error);
}

std::string minutesAndSeconds(double seconds) {
    const int whole = static_cast<int>(seconds);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d", whole / 60, whole % 60);
    return text.data();
}
} // namespace

RecordingSession::RecordingSession(SessionState& state, MediaDevices& media, MusicSession& music,
                                   SessionPlayer& player, const Manners& manners,
                                   const ProgramFolders& folders, MessageLoop& loop)
    : state_(state)
    , media_(media)
    , music_(music)
    , player_(player)
    , manners_(manners)
    , folders_(folders)
    , loop_(loop) {
    player_.onEnded = [this] {
        ringOut();
        if (state_.isRecording)
            stopRecording(true);
    };
}

RecordingSession::~RecordingSession() {
    player_.onEnded = nullptr;
}

void RecordingSession::CmdrecordSNG_Click() {
    failure_.clear();
    switch (state_.source) {
    case RecordingSource::MidiFile:
        say("Recording source is 'File'. Opening File...");
        return RecordWavFromMid();
    case RecordingSource::Notes:
        say("Recording source is 'Notes'...");
        return RecordWav();
    case RecordingSource::Keyboard:
        return RecordWav();
    }
}

void RecordingSession::RecordWav() {
    if (nameTake())
        static_cast<void>(recordTake({}));
}

void RecordingSession::RecordWavFromMid() {
    fs::path midi = state_.Text6;
    if (toLower(state_.Text6).find(".mid") == std::string::npos)
        midi = screen_ ? screen_->askOpen("Open MIDI File", "Midi(*.mid)|*.mid") : fs::path();
    if (midi.empty() || !isThere(midi)) {
        say("You must enter a File Name to start recording");
        return;
    }
    if (nameTake())
        static_cast<void>(recordTake(midi));
}

bool RecordingSession::record(const fs::path& wav, const fs::path& mp3, const fs::path& music) {
    failure_.clear();
    nameFiles(wav, mp3);
    return recordTake(music);
}

void RecordingSession::nameFiles(const fs::path& wav, const fs::path& mp3) {
    say("Recording to a Temp file: " + wav.string());
    state_.InputPath = wav;
    state_.OutPutPath = mp3;
    state_.Text6 = wav.string();
    changed();
    loop_.YieldIfInput();
}

/// Draws a name that neither a take nor its MP3 file has.
bool RecordingSession::nameTake() {
    if (!folders_.makeSongs()) {
        failure_ = "The folder \"" + folders_.songs().string() + "\" can't be made.";
        say("Can't find input directory. Recording Cancelled");
        return false;
    }
    const int drawn = QRandomGenerator::global()->bounded(kMostTakes);
    fs::path wav;
    fs::path mp3;
    int tried = 0;
    do {
        wav = folders_.songs() / (std::to_string(1 + (drawn + tried) % kMostTakes) + ".wav");
        mp3 = fs::path(wav).replace_extension(".mp3");
    } while ((isThere(wav) || isThere(mp3)) && ++tried < kMostTakes);
    if (tried == kMostTakes) {
        failure_ = "The folder \"" + folders_.songs().string() + "\" is full of recordings.";
        say(failure_);
        return false;
    }
    nameFiles(wav, mp3);
    return true;
}

/// False if nothing is recorded.
bool RecordingSession::recordTake(const fs::path& music) {
    if (!StartTrackRecording())
        return false;
    state_.isRecording = state_.isLocked = true;
    state_.Label8 = "Recording";
    state_.Status.clear();
    state_.share = 0;
    toldSilence_ = toldProblem_ = false;
    startedAt_ = loop_.now();
    takes_.insert(state_.InputPath);
    say("Recording");
    if (state_.capture == CaptureSource::Own) {
        if (const std::string device = player_.soundWithin(); !device.empty())
            say("The device \"" + device +
                "\" is not part of the recording: the built-in synthesizer plays instead.");
    }
    switch (state_.source) {
    case RecordingSource::Keyboard:
        if (screen_)
            screen_->showKeyboard();
        return true; // until it is stopped
    case RecordingSource::Notes:
        if (!playNotes())
            return true; // until the song ends, after a pause
        break;
    case RecordingSource::MidiFile:
        if (!playMusic(music))
            return false;
        break;
    }
    ringOut();
    if (state_.isRecording) // nobody has stopped it meanwhile
        stopRecording(true);
    return true;
}

/// False if the song is paused.
bool RecordingSession::playNotes() {
    say("  Started playing notes");
    return player_.playNotes(state_.Check4, [this](double share) {
        state_.Status = std::to_string(std::lround(std::min(share, 1.0) * 100)) + " %";
        state_.share = share;
        update();
    }) == SessionPlayer::End::Over;
}

/// Without anything to play there is no take: what has been made of it goes.
bool RecordingSession::playMusic(const fs::path& music) {
    if (music_.OpenMP3(music)) {
        music_.PlayMP3();
        return true;
    }
    failure_ = "The file \"" + music.string() + "\" can't be played.";
    state_.isRecording = state_.isLocked = false;
    state_.Label8.clear();
    player_.soundAsBefore();
    send("stop capture");
    send("delete capture");
    send("close capture");
    std::error_code error;
    fs::remove(state_.InputPath, error);
    takes_.erase(state_.InputPath);
    say("An error occurred.");
    say("Recording Cancelled");
    return false;
}

bool RecordingSession::StartTrackRecording() {
    const WaveFormat format = waveFormat(state_.formatText()).value_or(WaveFormat{0, 0, 0});
    const std::string setting =
        "set capture samplespersec " + std::to_string(format.rate) + " channels " +
        std::to_string(format.channels) + " bitspersample " + std::to_string(format.bits) + " alignment " +
        std::to_string(format.alignment()) + " bytespersec " + std::to_string(format.bytesPerSecond());
    if (!state_.isRecording)
        media_.keepNextTakeAt(state_.InputPath);
    if (!start("open new type waveaudio alias capture", "Error opening waveaudio"))
        return false; // what records already goes on
    if (!start(setting, "Error setting recording paramaters")) {
        send("close capture");
        return false;
    }
    if (Capture* const taken = capture()) {
        taken->setSource(state_.capture);
        if (state_.Check2)
            taken->copyTo(makeMp3Sink(state_.OutPutPath, encodeSettings(), format.rate, format.channels));
    }
    if (!start("record capture", "Recording error")) {
        send("close capture");
        return false;
    }
    return true;
}

bool RecordingSession::start(const std::string& command, const std::string& otherwise) {
    const MediaAnswer answer = media_.send(command);
    if (!answer.succeeded()) {
        failure_ = answer.error;
        say(otherwise);
    }
    return answer.succeeded();
}

/// What the last notes leave sounding belongs to the take.
void RecordingSession::ringOut() {
    const double end = loop_.now();
    loop_.serveUntil(end + kOnItsWaySeconds);
    while (state_.isRecording && loop_.now() < end + kRingOutSeconds) {
        const Capture* const taken = capture();
        if (!taken || taken->isSilent() || taken->silentSeconds() >= kQuietSeconds)
            return;
        loop_.serveUntil(loop_.now() + kStepSeconds);
        update();
    }
}

void RecordingSession::CmdStopRecording_Click() {
    stopRecording(true);
}

/// A stop that fails goes on to save all the same.
void RecordingSession::stopRecording(bool encodes) {
    state_.isLocked = false;
    state_.isRecording = false;
    if (const Capture* const taken = capture()) {
        wasSilent_ = taken->isSilent();
        if (!taken->problem().empty() && !toldProblem_) {
            failure_ = taken->problem();
            say(failure_);
        }
    }
    const bool stopped = send(std::string("stop ") + modMultimedia::kCapture);
    say(stopped ? "Recording Stopped!" : "Stopping recording failed!");
    if (const Capture* const taken = capture(); taken && !taken->warning().empty())
        say(taken->warning());
    if (music_.isPlaying() && state_.source == RecordingSource::MidiFile) {
        music_.StopMP3();
        music_.CloseMP3();
    }
    player_.stopNotes();
    player_.soundAsBefore();
    Recordcontrol2();
    state_.Label8.clear();
    state_.Status.clear();
    state_.share = 0;
    changed();
    if (encodes && stopped && state_.Check2 && !state_.isEncoding)
        autoEncode();
    else
        encoded_.reset();
}

/// Saves the take as a WAV file and gives the device back.
void RecordingSession::Recordcontrol2() {
    const MediaAnswer answer = media_.send("capability capture can save");
    say(answer.value == "true" ? "File Can be saved" : "File Cannot be saved");
    if (!state_.InputPath.empty()) {
        const MediaAnswer saved = media_.send("save capture " + state_.InputPath.string());
        if (saved.succeeded()) {
            say("File was saved as " + state_.InputPath.string());
            state_.Text6 = state_.InputPath.string();
        } else {
            if (failure_.empty())
                failure_ = saved.error;
            say("File was NOT saved");
        }
    }
    if (Capture* const taken = capture())
        encoded_ = taken->takeSink();
    say(send("delete capture") ? "Recording buffer Deleted! " : "Deleting Recording buffer failed!");
    say(send("close capture") ? "Recording Closed " : "Closing Recording  failed! ");
}

/// The same in the "mp3" form: the file that was encoded beside the recording is whole now. False if there is
/// none.
bool RecordingSession::Recordcontrol3() {
    if (!encoded_)
        return false;
    const std::unique_ptr<SampleSink> sink = std::move(encoded_);
    if (const std::string error = sink->finish(); !error.empty()) {
        failure_ = error;
        say(error);
        return false;
    }
    return true;
}

void RecordingSession::StopCap() {
    say(modMultimedia::stopCapture(media_) == "Success" ? "Recording stopped"
                                                        : "Error: Can't stop recording. Try restarting.");
}

void RecordingSession::SaveCap() {
    const std::string file = state_.InputPath.string();
    say(modMultimedia::saveCapture(media_, file) == "Success"
            ? "File saved"
            : "Error: Can't save the recording. Try recording again.");
}

void RecordingSession::CloseCap() {
    say(modMultimedia::closeCapture(media_) == "Success"
            ? "Closed"
            : "Error: Can't close recording device. Try restarting Velmora");
}

void RecordingSession::autoEncode() {
    state_.isLocked = true;
    state_.Erbox.clear();
    state_.Label8 = "Encoding";
    changed();
    Command20_Click();
}

EncodeSettings RecordingSession::encodeSettings() const {
    EncodeSettings settings;
    settings.bitrate = kMp3Bitrates[std::min(state_.Combo4, kMp3Bitrates.size() - 1)];
    settings.quality = std::min(state_.Combo3, kEncoderQualities.size() - 1);
    if (!manners_.encodesAsRecorded)
        settings.format = state_.cbxFormat;
    settings.title = state_.title;
    settings.artist = state_.artist;
    settings.cover = state_.cover;
    return settings;
}

void RecordingSession::Command20_Click() {
    if (state_.isEncoding) {
        CancelEncoding_.request_stop();
        return;
    }
    CancelEncoding_ = {};
    const fs::path wav = trimmed(state_.Text6);
    if (wav.empty())
        return endEncoding();
    if (!hasExtension(wav, ".wav")) {
        failure_ = "The Source file is not a Wave file.";
        say(failure_);
        return endEncoding();
    }
    if (!isThere(wav)) {
        failure_ = "The Source file is not a Wave file, or does not exist.";
        say(failure_);
        return endEncoding();
    }
    state_.Text6 = wav.string();
    state_.InputPath = wav;
    state_.Label8 = "Encoding";
    state_.isEncoding = state_.isLocked = true;
    say("Encoding in progress");
    EncodeToMp3(wav);
    endEncoding();
}

/// What was encoded beside the recording has its place already; anything else is asked for its target.
void RecordingSession::EncodeToMp3(const fs::path& wav) {
    if (encoded_ && takes_.contains(wav) && Recordcontrol3())
        return encodingIsDone(wav, state_.OutPutPath);
    if (const fs::path mp3 = askTarget(wav); !mp3.empty())
        RunEncoder(wav, mp3);
}

/// Where the MP3 file goes; blank if the user doesn't say. No old file is touched before the new one is
/// whole.
fs::path RecordingSession::askTarget(const fs::path& wav) {
    fs::path mp3 = fs::path(wav).replace_extension(".mp3");
    while (isThere(mp3) && screen_ &&
           !screen_->ask(mp3.string() + " already exists. Do you want to replace the file?")) {
        mp3 = screen_->askSave("Save As", "MP3 (*.mp3)|*.mp3", (wav.parent_path() / "audio.mp3").string());
        if (!mp3.has_filename()) {
            if (!mp3.empty())
                say("Error in File name selection. Try another file name.");
            say("Encoding Cancelled ");
            return {};
        }
        if (hasExtension(mp3, ".mp3"))
            break; // the dialog has asked about a file of that name
        mp3 += ".mp3";
    }
    state_.OutPutPath = mp3;
    return mp3;
}

void RecordingSession::RunEncoder(const fs::path& wav, const fs::path& mp3) {
    if (!isThere(wav)) {
        failure_ = "Source File not found...";
        say(failure_);
        return;
    }
    if (state_.Combo3 >= kEncoderQualities.size() || state_.Combo4 >= kMp3Bitrates.size()) {
        failure_ = state_.Combo4 >= kMp3Bitrates.size() ? "You didn't select Bitrate..."
                                                        : "You didn't select quality...";
        if (screen_)
            screen_->tell("Velmora", failure_);
        return;
    }
    const EncodeJob job{.wav = wav, .mp3 = mp3, .settings = encodeSettings()};
    const std::stop_token cancel = CancelEncoding_.get_token();
    EncodeOutcome outcome;
    if (!media_.mix().isLive()) {
        outcome = encode(
            job, [this](double share) { showShare(share); }, cancel);
    } else {
        std::atomic<double> share = 0;
        std::atomic<bool> ended = false;
        std::jthread worker([&] {
            outcome = encode(
                job, [&share](double done) { share = done; }, cancel);
            ended = true;
        });
        while (!ended) {
            loop_.serveUntil(loop_.now() + kStepSeconds);
            showShare(share);
        }
    }
    switch (outcome.end) {
    case EncodeOutcome::End::Done:
        return encodingIsDone(wav, mp3);
    case EncodeOutcome::End::Failed:
        failure_ = outcome.error;
        say(outcome.error);
        return;
    case EncodeOutcome::End::Cancelled:
        failure_ = "Encoding Cancelled ";
        say(failure_);
        return;
    }
}

/// The MP3 file stands whole: only now may the take go.
void RecordingSession::encodingIsDone(const fs::path& wav, const fs::path& mp3) {
    say("Finished Encoding " + wav.string());
    state_.Text6 = mp3.string();
    if (!state_.Check3 || !takes_.contains(wav))
        return;
    std::error_code error;
    if (fs::remove(wav, error))
        takes_.erase(wav);
    else if (error)
        say("The file \"" + wav.string() + "\" can't be deleted: " + error.message() + ".");
}

void RecordingSession::endEncoding() {
    encoded_.reset();
    state_.isEncoding = state_.isLocked = false;
    state_.Label8.clear();
    state_.Status.clear();
    state_.share = 0;
    changed();
}

void RecordingSession::showShare(double share) {
    state_.share = share;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%05.2f%%", share * 100);
    state_.Status = text.data();
    changed();
}

void RecordingSession::update() {
    const Capture* const taken = capture();
    if (!state_.isRecording || !taken)
        return;
    state_.lblTime = minutesAndSeconds(loop_.now() - startedAt_);
    if (!toldSilence_ && loop_.now() - startedAt_ >= kSilenceToldSeconds &&
        taken->silentSeconds() >= kSilenceToldSeconds) {
        toldSilence_ = true;
        say("Nothing has sounded for 3 seconds.");
    } else if (toldSilence_ && taken->silentSeconds() < kSilenceToldSeconds) {
        toldSilence_ = false;
    }
    if (!toldProblem_ && !taken->problem().empty()) {
        toldProblem_ = true;
        failure_ = taken->problem();
        say(failure_);
        stopRecording(false);
        return;
    }
    changed();
}

bool RecordingSession::isBusy() const {
    return state_.isRecording || state_.isEncoding || music_.isPlaying();
}

void RecordingSession::endAll() {
    CancelEncoding_.request_stop();
    if (music_.isPlaying())
        music_.StopMP3();
    if (!state_.isRecording)
        return;
    state_.isRecording = state_.isLocked = false;
    player_.stopNotes();
    StopCap();
    SaveCap();
    CloseCap();
    player_.soundAsBefore();
    state_.Label8 = "Stopped";
    changed();
}

Capture* RecordingSession::capture() const {
    return media_.recorder(modMultimedia::kCapture);
}

bool RecordingSession::send(const std::string& command) {
    return media_.send(command).succeeded();
}

void RecordingSession::say(const std::string& text) {
    velmora::say(state_, screen_, text);
}

void RecordingSession::changed() {
    if (screen_)
        screen_->sessionChanged();
}

} // namespace velmora
