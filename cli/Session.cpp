// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Session.h"

#include "cli/Commands.h"
#include "cli/MessageListener.h"
#include "score/NotePlayer.h"
#include "score/PlaybackEngine.h"
#include "score/PlaybackView.h"
#include "shell/Files.h"
#include "shell/VirtualLoop.h"
#include "sound/MidiPort.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

namespace velmora::cli {

namespace {

constexpr int kUsualNotes = 1000; // NumNotes where no file asks for more

std::string bytesOf(const std::filesystem::path& file) {
    auto bytes = readWholeFile(file);
    if (!bytes)
        throw Failure("The score \"" + file.string() +
                      "\" can't be read; is it there, a file, and yours to read?");
    // The window takes any bytes for a score. Here what comes of them could take the place of a good one.
    if (bytes->find('\0') != bytes->npos)
        throw Failure("The file \"" + file.string() + "\" is no score: it isn't text.");
    return *std::move(bytes);
}

/// A score in the newest form names its chord types in line 28, an older one doesn't.
bool looksOlder(std::string_view bytes) {
    constexpr int kLinesBefore = 27;
    for (int line = 0; line < kLinesBefore; ++line) {
        const auto end = bytes.find('\n');
        if (end == bytes.npos)
            return false;
        bytes.remove_prefix(end + 1);
    }
    return !bytes.starts_with("Polyphonics");
}

/// As if every channel that holds notes had been selected.
int topChannelOf(const Score& score) {
    const auto used = score.usedChannels();
    return used.empty() ? score.TopChannel : std::max(score.TopChannel, used.back());
}

} // namespace

Session::Session(const std::filesystem::path& file, const ScoreOptions& options) : score(0) {
    const std::string bytes = bytesOf(file);
    // The window drops what a row holds past NumNotes; here no one could add the notes that are missing.
    const auto longest = longestRow(bytes);
    score.resizeNotes(static_cast<int>(std::clamp<std::size_t>(longest, kUsualNotes, kMostNotes)));
    parseSng(bytes, options.reader, score, setup);
    if (options.reader == SngReader::OpenPoliFile && looksOlder(bytes))
        std::fprintf(stderr, "velmora-cli: the score \"%s\" looks like an older form; see --form\n",
                     file.c_str());
    if (longest > static_cast<std::size_t>(kMostNotes) + 1)
        std::fprintf(stderr, "velmora-cli: %s: only the first %d positions are read\n", file.c_str(),
                     kMostNotes + 1);

    score.TopChannel = options.topChannel.value_or(topChannelOf(score));
    score.TopMelodyHint = options.topMelodyHint.value_or(score.TopMelodyHint);
    for (const int channel : options.mute)
        score.ChannelMuted[static_cast<std::size_t>(channel)] = true;
    for (const int channel : options.strum)
        setup.Chkstrum[static_cast<std::size_t>(channel)] = true;
    score.FindEndOfSong();
    segment_ = options.segment;
    if (segment_) {
        view.SelectStart = view.PlayMark = segment_->first;
        view.SelectEnd = state.SegmentEnd = segment_->last;
    }
}

void Session::perform(MidiPort& port, MessageLoop& loop, PlaybackView& window) {
    RecordingProgress noRecording;
    NotePlayer player(score, setup, state, chords, port, loop);
    PlaybackEngine engine(score, view, state, player, port, loop, window, noRecording);
    if (segment_)
        engine.playSegment();
    else
        engine.PlayAndStop_Click(false);
}

double Session::seconds() const {
    const float step =
        segment_ ? PlaybackEngine::segmentStep(score.Tempo) : PlaybackEngine::songStep(score.Tempo);
    const int positions = segment_ ? segment_->last - segment_->first + 1 : score.SongEnd;
    return PlaybackEngine::isPlayable(step) ? positions * static_cast<double>(step) : 0;
}

void warnOfSilence(const std::filesystem::path& file, const Session& session) {
    const char* reason = nullptr;
    if (session.score.usedChannels().empty())
        reason = "holds no notes";
    else if (!PlaybackEngine::isPlayable(PlaybackEngine::songStep(session.score.Tempo)))
        reason = "has a tempo that nothing is played at; 2 to 1380 are played";
    if (reason)
        std::fprintf(stderr, "velmora-cli: the score \"%s\" %s\n", file.c_str(), reason);
}

std::vector<TimedMessage> performedMessages(Session& session) {
    std::vector<TimedMessage> messages;
    VirtualLoop loop;
    MessageListener port(loop, [&messages](const TimedMessage& one) { messages.push_back(one); });
    PlaybackView noWindow;
    session.perform(port, loop, noWindow);
    return messages;
}

} // namespace velmora::cli
