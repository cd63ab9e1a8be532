// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MusicSession.h"

#include "base/Dialogs.h"
#include "base/Text.h"
#include "studio/FileCopy.h"
#include "studio/MediaDevices.h"
#include "studio/Mp3Labels.h"
#include "studio/SessionMessages.h"
#include "studio/SessionScreen.h"
#include "studio/modMultimedia.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmora {

namespace {
namespace fs = std::filesystem;
using modMultimedia::kMusic;
using modMultimedia::kSuccess;

constexpr double kStepSeconds = 0.05;  ///< between two looks at what plays
constexpr double kEarlySeconds = 0.01; ///< a wait that ends before its time is one that was ended
constexpr const char* kOpenTitle = "Open File";
/// The point is missing in "*mp3", and that is meant.
constexpr const char* kOpenFilter = "Midi, score, wav, mp3(*.sng;*.mid;*.wav;*mp3)|*.sng;*.mid;*.wav;*mp3";
constexpr const char* kSaveTitle = "Save As";

/// How a file is saved under another name, by its extension.
struct SaveType {
    std::string_view extension;
    const char* proposed;
    const char* filter;
};
constexpr std::array kSaveTypes{
    SaveType{".wav", "", "Wave Audio (*.wav)|*.wav"},
    SaveType{".mid", "audio.mid", "MIDI (*.mid)|*.mid"},
    SaveType{".mp3", "audio.mp3", "MP3 (*.mp3)|*.mp3"},
    SaveType{".sng", "audio.sng", "SNG (*.sng)|*.sng"},
};

std::string extensionOf(const fs::path& file) {
    return toLower(file.extension().string());
}

/// The percentage as "##" shows it: nothing for 0.
std::string percentText(double share) {
    const long percent = std::lround(share * 100);
    return (percent == 0 ? std::string() : std::to_string(percent)) + " %";
}

std::string timeText(double seconds) {
    const auto whole = static_cast<long>(std::max(seconds, 0.0));
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02ld:%02ld", whole / 60, whole % 60);
    return text.data();
}
} // namespace

// Opening

void MusicSession::open_Click() {
    if (!screen_)
        return;
    const fs::path chosen = screen_->askOpen(kOpenTitle, kOpenFilter);
    if (chosen.empty())
        return;
    if (extensionOf(chosen) == ".sng") {
        if (isOpen())
            CloseMP3();
        screen_->openScore(chosen);
    } else if (OpenMP3(chosen) && extensionOf(chosen) == ".mid") {
        PlayMP3();
    }
}

bool MusicSession::OpenMP3(const fs::path& file) {
    return openFiles({file}, file.string());
}

bool MusicSession::openRow(const std::vector<fs::path>& files) {
    if (files.size() == 1)
        return OpenMP3(files.front());
    std::string words;
    for (const fs::path& file : files)
        words += (words.empty() ? "\"" : " \"") + file.string() + "\"";
    return openFiles(files, words);
}

/// @param words the path, or several, as the command has them
bool MusicSession::openFiles(std::vector<fs::path> files, const std::string& words) {
    if (isOpen())
        CloseMP3();
    files_.clear();
    file_.clear();
    state_.Text6 = files.empty() ? std::string() : files.front().string();
    const std::string answer = modMultimedia::openMedia(media_, words, modMultimedia::kMusicType, kMusic);
    if (answer != kSuccess) {
        say("Error: Can't open this file. Try another file.");
        say("Check the filename for errors: " + state_.Text6 + " Try using a short filename instead.");
        logLine(state_, answer);
        return false;
    }
    files_ = std::move(files);
    file_ = files_.front();
    showHeader();
    say("File Opened");
    return true;
}

// Playing

void MusicSession::PlayMP3() {
    if (isPlaying())
        return;
    if (isPaused())
        return ResumeMP3();
    if (!isOpen() && !files_.empty() && !openRow(std::vector(files_)))
        return;
    start(0, 0);
}

void MusicSession::PlayPart(double from, double to) {
    const std::int32_t length = modMultimedia::lengthInFrames(media_, kMusic);
    const auto frameAt = [length](double share) {
        return static_cast<std::int32_t>(std::lround(std::clamp(share, 0.0, 1.0) * length));
    };
    if (length > 0)
        start(frameAt(from), frameAt(to));
}

/// @param to at or below 0 is the end
void MusicSession::start(std::int32_t from, std::int32_t to) {
    state_.Status.clear();
    state_.share = 0;
    const Turn turn(plays_);
    if (modMultimedia::play(media_, kMusic, from, to) != kSuccess) {
        say("Error: Can't play this file. Try another file.");
        return;
    }
    PlaybackCancelled_ = false;
    showHeader();
    say("Playing");
    followPlay(turn);
}

/// Serves events until playing has ended.
void MusicSession::followPlay(const Turn& turn) {
    while (const MusicPlayer* const playing = player()) {
        showProgress(*playing);
        if (playing->mode() == MediaMode::Stopped && !playing->isSounding())
            return closeAtEnd(playing->problem());
        const double moment = loop_.now() + kStepSeconds;
        loop_.serveUntil(moment);
        if (turn.isOver())
            return;
        if (PlaybackCancelled_ || loop_.now() < moment - kEarlySeconds) {
            modMultimedia::stop(media_, kMusic);
            say("Cancelled");
            return;
        }
    }
}

/// What stands still is closed, unless it was stopped on the way.
void MusicSession::closeAtEnd(const std::string& problem) {
    if (!problem.empty())
        say(problem);
    std::int32_t length = 0; // that of a MIDI file has moved while it rang out
    if (!problem.empty() || modMultimedia::isAtEnd(media_, kMusic, length))
        CloseMP3();
}

void MusicSession::PauseMP3() {
    const bool paused = modMultimedia::pause(media_, kMusic) == kSuccess;
    if (paused)
        say("Paused");
    else
        ResumeMP3();
}

void MusicSession::ResumeMP3() {
    modMultimedia::resume(media_, kMusic);
    say("Playing");
}

void MusicSession::StopMP3() {
    clearProgress();
    const bool stopped = modMultimedia::stop(media_, kMusic) == kSuccess;
    say(stopped ? "Music Stopped" : "Music File was previously stopped.");
}

void MusicSession::CloseMP3() {
    const bool closed = modMultimedia::close(media_, kMusic) == kSuccess;
    say(closed ? "Music File closed." : "Music File was previously closed.");
}

void MusicSession::showProgress(const MusicPlayer& player) {
    const std::int64_t length = player.length();
    const double share =
        length > 0 ? std::min(static_cast<double>(player.position()) / static_cast<double>(length), 1.0) : 0;
    state_.share = share;
    state_.Status = percentText(share);
    state_.lblTime = timeText(static_cast<double>(player.position()) / player.rate());
    if (screen_)
        screen_->sessionChanged();
}

void MusicSession::clearProgress() {
    state_.Status.clear();
    state_.share = 0;
    state_.lblKhz.clear();
    state_.lblmode.clear();
    state_.lblbitrate.clear();
}

void MusicSession::showHeader() {
    std::optional<Mp3Labels> labels;
    if (extensionOf(file_) == ".mp3") // another may be long, and is no MP3 file to its end
        labels = ReadMp3Header(file_);
    state_.lblKhz = labels ? labels->khz : "";
    state_.lblmode = labels ? labels->mode : "";
    state_.lblbitrate = labels ? labels->bitrate : "";
}

// Saving

void MusicSession::RenameFile() {
    const auto* const type = std::ranges::find(kSaveTypes, extensionOf(file_), &SaveType::extension);
    if (type == kSaveTypes.end()) {
        say("Invalid source file");
        return;
    }
    std::error_code ignored;
    while (true) {
        const fs::path chosen =
            screen_ ? screen_->askSave(kSaveTitle, type->filter, type->proposed) : fs::path();
        if (chosen.empty()) {
            say("Cancelled");
            return;
        }
        // Who shows has asked about the name itself.
        const fs::path target = withExtension(chosen.string(), type->extension);
        if (target == chosen || !fs::exists(target, ignored) ||
            screen_->ask(target.string() + " already exists. Do you want to replace the file?"))
            return copyTo(target);
    }
}

void MusicSession::copyTo(const fs::path& target) {
    std::error_code ignored;
    if (fs::is_directory(target, ignored) || fs::equivalent(target, file_, ignored)) {
        say("Can't use the name " + target.string());
        return;
    }
    const fs::path source = file_;
    if (const std::string error = copyFile(source, target, [this] { loop_.YieldIfInput(); });
        !error.empty()) {
        say("Can't rename as " + target.string());
        logLine(state_, error);
        return;
    }
    say(source.string() + " has been saved as " + target.string());
}

// State

MusicPlayer* MusicSession::player() const {
    return media_.player(kMusic);
}

bool MusicSession::isOpen() const {
    return player() != nullptr;
}

bool MusicSession::isPlaying() const {
    return isOpen() && player()->mode() == MediaMode::Playing;
}

bool MusicSession::isPaused() const {
    return isOpen() && player()->mode() == MediaMode::Paused;
}

void MusicSession::say(const std::string& text) {
    velmora::say(state_, screen_, text);
}

} // namespace velmora
