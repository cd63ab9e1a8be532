// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/MidiFileReader.h"

#include "base/Files.h"
#include "base/Text.h"
#include "sound/ShortMessage.h"

#include <QString>
#include <QUtf8StringView>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <system_error>
#include <utility>

namespace velmora {

namespace {
using namespace std::string_view_literals;

constexpr std::uintmax_t kLargestMidi = std::uintmax_t{64} << 20; ///< bytes
constexpr std::size_t kChunkHead = 8;                             ///< a name of four letters and a length
constexpr std::size_t kHeader = 6;                                ///< format, tracks, division
constexpr std::size_t kFarthestHeader = 256; ///< where it may stand, behind what a mail program put in front
constexpr double kUsualQuarter = 500'000;    ///< microseconds: 120 a minute

/// Reads bytes from the front. What isn't there reads as nothing.
class Bytes {
public:
    explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

    [[nodiscard]] std::size_t left() const { return bytes_.size(); }
    [[nodiscard]] std::optional<int> peek() const {
        return bytes_.empty() ? std::nullopt : std::optional<int>(static_cast<unsigned char>(bytes_[0]));
    }
    std::optional<int> byte() {
        const auto first = peek();
        if (first)
            bytes_.remove_prefix(1);
        return first;
    }
    /// As many as are there, of those that are wanted.
    std::string_view take(std::uint64_t count) {
        const auto taken = bytes_.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(count, left())));
        bytes_.remove_prefix(taken.size());
        return taken;
    }
    /// Seven bits a byte, four bytes at the most.
    std::optional<std::uint32_t> quantity() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const auto next = byte();
            if (!next)
                return std::nullopt;
            value = value << 7 | static_cast<std::uint32_t>(*next & 0x7F);
            if ((*next & 0x80) == 0)
                return value;
        }
        return std::nullopt;
    }

private:
    std::string_view bytes_;
};

std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (const char one : bytes)
        value = value << 8 | static_cast<unsigned char>(one);
    return value;
}

std::uint32_t littleEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

struct Event {
    std::int64_t tick;
    std::uint32_t word;
};
struct Tempo {
    std::int64_t tick;
    double quarter; ///< microseconds
};

/// What counts its ticks from one beginning: a file, or a pattern of it.
struct Piece {
    std::vector<Event> events;
    std::vector<Tempo> tempi;
    std::int64_t end = 0;
};

/// How long a tick lasts.
struct TimeBase {
    int ticksOfQuarter = 0;   ///< 0 for a base of film
    double secondsOfTick = 0; ///< for one of film

    [[nodiscard]] double tick(double quarter) const {
        return ticksOfQuarter > 0 ? quarter / 1e6 / ticksOfQuarter : secondsOfTick;
    }
};

std::optional<TimeBase> timeBaseOf(std::uint32_t division) {
    constexpr int kDropFrames = 29;
    constexpr double kDropRate = 30'000.0 / 1'001;
    if ((division & 0x8000U) == 0)
        return division == 0 ? std::nullopt : std::optional(TimeBase{static_cast<int>(division), 0});
    const int frames = 256 - static_cast<int>(division >> 8U);
    const int ticks = static_cast<int>(division & 0xFFU);
    if (ticks == 0)
        return std::nullopt;
    return TimeBase{0, 1 / ((frames == kDropFrames ? kDropRate : frames) * ticks)};
}

/// Titles say nothing of their alphabet: what is UTF-8 is taken for that, all else for Latin-1.
std::string titleOf(std::string_view text) {
    constexpr std::size_t kLongest = 1'000;
    text = text.substr(0, std::min(text.find('\0'), kLongest));
    const auto size = static_cast<qsizetype>(text.size());
    const QString title = QUtf8StringView(text.data(), size).isValidUtf8()
                              ? QString::fromUtf8(text.data(), size)
                              : QString::fromLatin1(text.data(), size);
    return title.simplified().toStdString();
}

/// Reads the events of a track.
class TrackReader {
public:
    TrackReader(std::string_view track, Piece& piece) : track_(track), piece_(piece) {}

    /// Reads to the end of the track, or as far as it can be read.
    void read() {
        while (!ended_) {
            const auto delta = track_.quantity();
            if (!delta || !event(*delta))
                break;
        }
        piece_.end = std::max(piece_.end, tick_);
    }
    [[nodiscard]] std::size_t left() const { return track_.left(); }
    [[nodiscard]] bool ended() const { return ended_; }
    [[nodiscard]] const std::string& title() const { return title_; }

private:
    /// A status that is left out is that of the last message, even with other events between: who writes by
    /// the rules doesn't leave it out there.
    bool event(std::uint32_t delta) {
        const auto first = track_.peek();
        if (!first)
            return false;
        tick_ += delta;
        if (*first < 0x80)
            return running_ == 0 ? track_.byte().has_value() : message(running_);
        track_.byte();
        if (*first < 0xF0)
            return message(running_ = *first);
        if (*first == 0xFF)
            return meta();
        return system(*first);
    }

    bool message(int status) {
        const int kind = status & 0xF0;
        const auto first = track_.byte();
        const auto second = kind == 0xC0 || kind == 0xD0 ? std::optional(0) : track_.byte();
        if (!first || !second)
            return false;
        const std::uint32_t word = shortmessage::pack(kind, status & 0x0F, *first, *second);
        if (shortmessage::isValid(word))
            piece_.events.push_back({tick_, word});
        return true;
    }

    bool meta() {
        constexpr int kName = 0x03;
        constexpr int kEnd = 0x2F;
        constexpr int kTempo = 0x51;
        const auto type = track_.byte();
        const auto length = track_.quantity();
        if (!type || !length)
            return false;
        const std::string_view data = track_.take(*length);
        if (data.size() < *length)
            return false;
        if (*type == kTempo && data.size() == 3 && bigEndian(data) > 0)
            piece_.tempi.push_back({tick_, static_cast<double>(bigEndian(data))});
        if (*type == kName && title_.empty())
            title_ = titleOf(data);
        ended_ = *type == kEnd;
        return true;
    }

    /// Exclusive messages tell their length; the others have no place in a file and are passed over.
    bool system(int status) {
        if (status == 0xF0 || status == 0xF7) {
            const auto length = track_.quantity();
            return length && track_.take(*length).size() == *length;
        }
        const std::size_t length = status == 0xF2 ? 2 : status == 0xF1 || status == 0xF3 ? 1 : 0;
        return track_.take(length).size() == length;
    }

    Bytes track_;
    Piece& piece_;
    std::int64_t tick_ = 0;
    int running_ = 0;
    bool ended_ = false;
    std::string title_;
};

bool looksLikeChunk(std::string_view bytes) {
    return bytes.size() >= kChunkHead && std::ranges::all_of(bytes.substr(0, 4), [](char c) {
               return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
           });
}

/// The bytes of a chunk, from behind its head on: as many as it tells, if the file ends there or another
/// chunk begins. Otherwise the length is a lie, and the next track is looked for.
std::string_view bodyOf(std::string_view bytes, std::uint32_t length) {
    if (length >= bytes.size() || looksLikeChunk(bytes.substr(length)))
        return bytes.substr(0, length);
    return bytes.substr(0, bytes.find("MTrk"sv));
}

class FileReader {
public:
    MidiMusic read(std::string_view bytes) {
        bytes = unwrapped(bytes);
        const auto header = bytes.substr(0, kFarthestHeader).find("MThd"sv);
        if (header == bytes.npos)
            return {.error = "it is no MIDI file"};
        bytes.remove_prefix(header);
        const std::string_view fields = bytes.substr(std::min(bytes.size(), kChunkHead), kHeader);
        if (fields.size() < kHeader)
            return {.error = "it is cut short"};
        const auto base = timeBaseOf(bigEndian(fields.substr(4, 2)));
        if (!base)
            return {.error = "its header doesn't say how long a note lasts"};
        base_ = *base;
        const bool isPatterns = bigEndian(fields.substr(0, 2)) == 2;
        const std::uint32_t length = std::max<std::uint32_t>(bigEndian(bytes.substr(4, 4)), kHeader);
        bytes.remove_prefix(kChunkHead);
        bytes.remove_prefix(bodyOf(bytes, length).size());
        readChunks(bytes, isPatterns);
        if (tracks_ == 0)
            return {.error = "it has no track"};
        append(piece_);
        return std::move(music_);
    }

private:
    /// The MIDI file within a RIFF file, or the bytes as they are.
    static std::string_view unwrapped(std::string_view bytes) {
        constexpr std::size_t kRiffHead = 12;
        if (!bytes.starts_with("RIFF"sv) || bytes.size() < kRiffHead || bytes.substr(8, 4) != "RMID"sv)
            return bytes;
        Bytes rest(bytes.substr(kRiffHead));
        while (rest.left() > kChunkHead) {
            const std::string_view name = rest.take(4);
            const std::uint32_t length = littleEndian(rest.take(4));
            const std::string_view body = rest.take(length);
            if (name == "data"sv)
                return body;
            rest.take(length % 2);
        }
        return bytes;
    }

    void readChunks(std::string_view bytes, bool isPatterns) {
        while (bytes.size() >= kChunkHead) {
            const bool isTrack = bytes.starts_with("MTrk"sv);
            if (!isTrack && !looksLikeChunk(bytes)) { // whatever it is, it isn't ours
                bytes = bytes.substr(std::min(bytes.find("MTrk"sv), bytes.size()));
                continue;
            }
            const std::uint32_t length = bigEndian(bytes.substr(4, 4));
            bytes.remove_prefix(kChunkHead);
            const std::string_view body = bodyOf(bytes, length);
            const std::size_t used = isTrack ? readTrack(body) : body.size();
            // A length that takes in the tracks behind.
            const bool isLie = used < body.size() && body.substr(used).starts_with("MTrk"sv);
            bytes.remove_prefix(isLie ? used : body.size());
            if (isTrack && isPatterns)
                append(std::exchange(piece_, {}));
        }
    }

    /// How many bytes it has.
    std::size_t readTrack(std::string_view track) {
        TrackReader reader(track, piece_);
        reader.read();
        if (tracks_++ == 0)
            music_.title = reader.title();
        return reader.ended() ? track.size() - reader.left() : track.size();
    }

    /// Puts a piece behind what there is.
    void append(Piece piece) {
        std::ranges::stable_sort(piece.events, {}, &Event::tick);
        std::ranges::stable_sort(piece.tempi, {}, &Tempo::tick);
        double since = music_.seconds;
        std::int64_t sinceTick = 0;
        double tick = base_.tick(kUsualQuarter);
        auto next = piece.tempi.begin();
        const auto secondsOf = [&](std::int64_t wanted) {
            for (; next != piece.tempi.end() && next->tick <= wanted; ++next) {
                since += static_cast<double>(next->tick - sinceTick) * tick;
                sinceTick = next->tick;
                tick = base_.tick(next->quarter);
            }
            return since + static_cast<double>(wanted - sinceTick) * tick;
        };
        if (music_.messages.empty()) // many short pieces must not each make it grow
            music_.messages.reserve(piece.events.size());
        for (const Event& event : piece.events) {
            const double seconds = secondsOf(event.tick);
            if (seconds > kLongestMidi)
                break;
            music_.messages.push_back({seconds, event.word});
        }
        music_.seconds = std::min(secondsOf(piece.end), kLongestMidi);
    }

    TimeBase base_;
    Piece piece_;
    MidiMusic music_;
    int tracks_ = 0;
};
} // namespace

MidiMusic readMidi(std::string_view bytes) {
    return FileReader().read(bytes);
}

MidiMusic readMidiFile(const std::filesystem::path& file) {
    const std::string name = "\"" + file.string() + "\"";
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (!error && size > kLargestMidi)
        return {.error = "The file " + name + " is too large for a MIDI file."};
    const auto bytes = readWholeFile(file);
    if (!bytes)
        return {.error = "The MIDI file " + name + " can't be read; is it there, a file, and yours to read?"};
    MidiMusic music = readMidi(*bytes);
    if (!music.error.empty())
        music.error = "The file " + name + " can't be played: " + music.error + ".";
    return music;
}

bool isMidiName(const std::filesystem::path& file) {
    const std::string extension = toLower(file.extension().string());
    return extension == ".mid" || extension == ".midi";
}

} // namespace velmora
