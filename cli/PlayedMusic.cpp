// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/PlayedMusic.h"

#include "base/QtMessageLoop.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/ProgressBar.h"
#include "sound/AudioOutput.h"
#include "studio/MusicPlayer.h"
#include "studio/Resampler.h"
#include "studio/SoundReader.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>

namespace velmora::cli {

namespace {

namespace fs = std::filesystem;

constexpr double kLookSeconds = 0.05;
constexpr double kOpeningSeconds = 5; ///< that a sound server gets to answer

/// A part of what one player plays: a file.
struct Piece {
    fs::path file;
    double seconds;
    std::int64_t begin; ///< in the player's frames
    std::int64_t end;
};

/// Says what plays, with a bar below.
class Announcer {
public:
    explicit Announcer(const std::vector<Piece>& pieces) : pieces_(pieces) {}

    void show(std::int64_t position) {
        while (next_ < pieces_.size() && position >= pieces_[next_].begin) {
            const Piece& piece = pieces_[next_++];
            bar_.reset();
            std::printf("Playing %s (%.1f s)\n", piece.file.c_str(), piece.seconds);
            std::fflush(stdout);
            bar_.emplace(piece.file.filename().string(), 0);
        }
        if (next_ == 0)
            return;
        const Piece& piece = pieces_[next_ - 1];
        bar_->show(static_cast<double>(position - piece.begin) /
                   static_cast<double>(std::max<std::int64_t>(piece.end - piece.begin, 1)));
    }

private:
    const std::vector<Piece>& pieces_;
    std::size_t next_ = 0;
    std::optional<ProgressBar> bar_;
};

/// The first frames must find somebody who plays them.
void waitForDevice(AudioOutput& output, MessageLoop& loop) {
    const double begin = loop.now();
    while (output.figures().driver.empty() && loop.now() - begin < kOpeningSeconds && !interrupted())
        loop.block(0.005);
}

void playToTheEnd(MusicPlayer& player, AudioOutput& output, const std::vector<Piece>& pieces) {
    QtMessageLoop loop;
    waitForDevice(output, loop);
    player.play(0, player.length());
    {
        Announcer announcer(pieces);
        while (player.isSounding() && !interrupted()) {
            announcer.show(player.position());
            loop.serveUntil(loop.now() + kLookSeconds);
        }
        announcer.show(player.position());
    }
    player.stop();
    loop.block(output.figures().latency + kLookSeconds); // what is still on its way
    if (const std::string problem = player.problem(); !problem.empty())
        throw Failure(problem);
}

} // namespace

void playMidi(const fs::path& file, AudioOutput& output, const fs::path& soundFont) {
    const OpenedMusic opened = MusicPlayer::open(file, output, soundFont);
    if (!opened.player)
        throw Failure(opened.error);
    const std::int64_t length = opened.player->length();
    const double seconds = static_cast<double>(length) / opened.player->rate();
    playToTheEnd(*opened.player, output, {{file, seconds, 0, length}});
}

bool playSounds(const std::vector<fs::path>& files, AudioOutput& output) {
    std::vector<Piece> pieces;
    std::vector<fs::path> playable;
    std::int64_t begin = 0;
    for (const fs::path& file : files) {
        const OpenedSound opened = openSound(file);
        if (!opened.reader) {
            std::fprintf(stderr, "velmora-cli: %s\n", opened.error.c_str());
            continue;
        }
        const SoundInfo& info = opened.reader->info();
        const std::int64_t end = begin + framesAtRate(info.frames, info.rate, AudioOutput::kRate);
        pieces.push_back({file, info.seconds(), begin, end});
        playable.push_back(file);
        begin = end;
    }
    if (playable.empty())
        return false;
    const OpenedMusic opened = MusicPlayer::openRow(playable, output);
    if (!opened.player)
        throw Failure(opened.error);
    if (pieces.size() == 1)
        pieces.front().end = opened.player->length(); // one alone counts in frames of its own
    playToTheEnd(*opened.player, output, pieces);
    return playable.size() == files.size();
}

} // namespace velmora::cli
