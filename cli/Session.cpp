// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Session.h"

#include "cli/Commands.h"
#include "cli/MessageListener.h"
#include "score/NotePlayer.h"
#include "score/PlaybackEngine.h"
#include "shell/Files.h"
#include "shell/VirtualLoop.h"

#include <algorithm>
#include <cstdio>

namespace velmora::cli {

namespace {

constexpr int kUsualNotes = 1000; // NumNotes where no file asks for more

std::string bytesOf(const std::filesystem::path& file) {
    if (auto bytes = readWholeFile(file))
        return *std::move(bytes);
    throw Failure(file.string() + ": can't be read; is it there, and a file?");
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
    if (options.segment)
        markSegment(*options.segment);
}

void Session::markSegment(ScoreOptions::Segment segment) {
    view.SelectStart = view.PlayMark = segment.first;
    view.SelectEnd = state.SegmentEnd = segment.last;
}

void Session::perform(MidiPort& port, MessageLoop& loop, PlaybackView& window) {
    RecordingProgress noRecording;
    NotePlayer player(score, setup, state, chords, port, loop);
    PlaybackEngine engine(score, view, state, player, port, loop, window, noRecording);
    if (state.SegmentEnd > 0)
        engine.PlaySegment_Click();
    else
        engine.PlayAndStop_Click(false);
}

double Session::seconds() const {
    return score.Tempo > 0 ? score.SongEnd * 13.8 / score.Tempo : 0;
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
