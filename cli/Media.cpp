// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/ProgramFolders.h"
#include "base/QtMessageLoop.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/ScoreOptions.h"
#include "cli/Words.h"
#include "sound/AudioOutput.h"
#include "sound/VirtualMix.h"
#include "studio/MediaDevices.h"

#include <QCommandLineParser>

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace velmora::cli {

namespace {

/// Standard input line by line, until the user interrupts.
class Lines {
public:
    /// Without its end; none at the end of the input.
    std::optional<std::string> next() {
        while (!interrupted()) {
            if (const auto end = read_.find('\n', searched_); end != read_.npos)
                return take(end, 1);
            searched_ = read_.size();
            if (!isOpen_)
                return read_.empty() ? std::nullopt : std::optional(take(read_.size(), 0));
            readMore();
        }
        return std::nullopt;
    }

private:
    std::string take(std::size_t length, std::size_t behind) {
        std::string line = read_.substr(0, length);
        read_.erase(0, length + behind);
        searched_ = 0;
        return line;
    }

    void readMore() {
        constexpr int kNoticeMilliseconds = 50; ///< after which an interrupt is noticed
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (poll(&input, 1, kNoticeMilliseconds) <= 0)
            return;
        std::array<char, 4096> block{};
        const ssize_t count = ::read(STDIN_FILENO, block.data(), block.size());
        if (count > 0)
            read_.append(block.data(), static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            isOpen_ = false;
    }

    std::string read_;
    std::size_t searched_ = 0; ///< bytes of it that have no end of line
    bool isOpen_ = true;
};

/// Another loop, in which no wait lasts any longer once the user interrupts.
class InterruptibleLoop : public MessageLoop {
public:
    /// @param notice seconds of that loop after which an interrupt is noticed
    InterruptibleLoop(MessageLoop& loop, double notice) : loop_(loop), notice_(notice) {}

    [[nodiscard]] double now() const override { return loop_.now(); }
    void YieldIfInput() override { loop_.YieldIfInput(); }
    void serveUntil(double moment) override {
        for (double next = now(); next < moment && !interrupted();) {
            next = std::min(moment, now() + notice_);
            loop_.serveUntil(next);
        }
    }
    void block(double seconds) override { loop_.block(seconds); }

private:
    MessageLoop& loop_;
    double notice_;
};

bool asksNothing(std::string_view line) {
    return line.find_first_not_of(" \t\r\v\f") == line.npos || line.front() == '#';
}

/// Answers each line as it comes. False if any answer was an error.
bool answerAll(MediaDevices& media) {
    bool allSucceeded = true;
    Lines lines;
    while (const auto line = lines.next()) {
        if (asksNothing(*line))
            continue;
        const MediaAnswer answer = media.send(*line);
        allSucceeded = allSucceeded && answer.succeeded();
        std::string text = answer.text();
        if (!answer.value.empty())
            text += "\t" + answer.value;
        if (std::puts(text.c_str()) == EOF || std::fflush(stdout) != 0)
            break; // nobody listens
    }
    media.send("close all");
    return allSucceeded;
}

bool drive(Mix& mix, MessageLoop& loop, double notice, const QCommandLineParser& parser) {
    InterruptibleLoop waits(loop, notice);
    MediaDevices media(mix, waits, [&parser] {
        return parser.isSet("soundfont") ? std::filesystem::path(toBytes(parser.value("soundfont")))
                                         : findSoundFont().value_or(std::filesystem::path());
    });
    return answerAll(media);
}

int run(const QCommandLineParser& parser) {
    if (!fileArguments(parser).empty())
        throw UsageError("takes no file: commands come from standard input");
    catchInterrupts();
    std::signal(SIGPIPE, SIG_IGN); // an answer that nobody reads is an error like any other
    if (parser.isSet("virtual")) {
        VirtualMix mix;
        return drive(mix, mix, 1, parser) ? 0 : 1;
    }
    AudioOutput output;
    QtMessageLoop loop;
    return drive(output, loop, 0.05, parser) ? 0 : 1;
}

void addOptions(QCommandLineParser& parser) {
    parser.addOptions({
        {"virtual", "Uses no sound device and no clock: time passes in \"wait\" alone, and at once."},
        {"soundfont", "The SoundFont that plays MIDI files (default: the best one installed).", "file"},
    });
}

std::string details() {
    return "A command a line on standard input is answered by a line on standard output.\n"
           "  open PATH type MPEGVideo alias A         opens a .wav, .mp3 or .mid file\n"
           "  open new type waveaudio alias A          opens a recorder\n"
           "  play A [from X] [to Y], pause A, resume A, stop A\n"
           "  close A, close all\n"
           "  set A time format frames, set A time format ms\n"
           "  status A length, status A position, status A mode\n"
           "  set A samplespersec R channels C bitspersample B alignment L bytespersec S\n"
           "  record A, capability A can save, save A PATH, delete A\n"
           "  wait SECONDS, wait A\n";
}

} // namespace

const Command kMedia{"media",
                     " [--virtual] [--soundfont FILE]",
                     "Plays and records by media commands, a line each.",
                     addOptions,
                     run,
                     details};

} // namespace velmora::cli
