// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Session.h"

#include "cli/Commands.h"
#include "cli/ScoreText.h"
#include "composition/Player.h"
#include "score/PlaybackEngine.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace velmora::cli {

namespace {

/// As if every channel that holds notes had been selected.
int topChannelOf(const Score& score) {
    const auto used = score.usedChannels();
    return used.empty() ? score.TopChannel : std::max(score.TopChannel, used.back());
}

} // namespace

Session::Session(const std::filesystem::path& file, const ScoreOptions& options)
    : manners(options.manners)
    , score(0) {
    const auto [text, reader] = readScoreText(file, options.reader);
    // The window drops what a row holds past NumNotes; here no one could add the notes that are missing.
    score.resizeNotes(static_cast<int>(std::clamp<std::size_t>(longestRow(text), kUsualNotes, kMostNotes)));
    parseSng(text, reader, score, setup);

    score.TopChannel = options.topChannel.value_or(topChannelOf(score));
    score.TopMelodyHint = options.topMelodyHint.value_or(score.TopMelodyHint);
    for (const int channel : options.mute)
        score.ChannelMuted[channel] = true;
    for (const int channel : options.strum)
        setup.Chkstrum[channel] = true;
    score.FindEndOfSong();
    segment_ = options.segment;
    if (segment_) {
        view.SelectStart = view.PlayMark = segment_->first;
        view.SelectEnd = state.SegmentEnd = segment_->last;
    }
}

void Session::refuseEmptySegment() const {
    if (segment_ && segment_->last < 1)
        throw Failure("there is nothing to play: a segment ends at position 1 or later");
}

void Session::perform(Player& player) {
    if (segment_)
        player.playSegment();
    else
        player.PlayAndStop_Click(false);
}

Performance Session::performance() const {
    return velmora::perform({score, setup, chords, manners}, segment_);
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

} // namespace velmora::cli
