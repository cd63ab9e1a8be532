// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/MidiExport.h"

#include "base/Files.h"
#include "score/Manners.h"
#include "score/MidiFile.h"
#include "score/Score.h"
#include "sound/Chords.h"
#include "sound/ShortMessage.h"
#include "sound/SoundingNotes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

namespace velmora {

namespace {
using namespace std::string_view_literals;

constexpr double kMicro = 1e6;
constexpr std::int64_t kLongestQuarter = 0xFFFFFF; ///< microseconds
constexpr int kLeastDivision = 960;                ///< ticks a quarter
constexpr double kLongestTick = 0.0006;            ///< seconds; moments are off by one and a half at most
constexpr std::int64_t kLongestDelta = 0x0FFFFFFF; ///< ticks
/// Quarters that one tempo is kept for: it is off by half a microsecond at most, so by a quarter of a
/// millisecond at the end of them.
constexpr int kTempoQuarters = 512;
constexpr double kStepOfSilence = 0.138; ///< of a performance without a step: at tempo 100
constexpr int kUsualMeasure = 16;
constexpr int kTrackName = 0x03; // meta events
constexpr int kEndOfTrack = 0x2F;
constexpr int kTempo = 0x51;
constexpr int kMeter = 0x58;
constexpr int kMostBeats = 255; ///< that a meter can tell

/// How moments become ticks.
struct TickGrid {
    double step;             ///< seconds a position
    int positionsPerQuarter; ///< 4, 2 or 1
    int division;            ///< ticks a quarter

    explicit TickGrid(double seconds)
        : step(seconds > 0 ? seconds : kStepOfSilence)
        , positionsPerQuarter(4)
        , division(kLeastDivision) {
        while (positionsPerQuarter > 1 && std::ceil(kMicro * quarter()) > kLongestQuarter)
            positionsPerQuarter /= 2;
        while (quarter() > kLongestTick * division) // up to 30,720, which fits 15 bits
            division *= 2;
    }
    [[nodiscard]] double quarter() const { return step * positionsPerQuarter; }
    [[nodiscard]] int ticksPerPosition() const { return division / positionsPerQuarter; }
    [[nodiscard]] std::int64_t tick(double seconds) const {
        return std::llround(seconds / step * ticksPerPosition());
    }
};

/// The events of a track as they stand in the file.
class Track {
public:
    Track() { bytes_ = "MTrk\0\0\0\0"sv; }

    void message(std::int64_t tick, std::uint32_t word) {
        delta(tick);
        const int status = shortmessage::status(word);
        const std::array<char, 3> bytes{static_cast<char>(word), static_cast<char>(word >> 8U),
                                        static_cast<char>(word >> 16U)};
        bytes_.append(bytes.data(), status == 0xC0 || status == 0xD0 ? 2 : 3);
        sounding_.sent(word);
    }
    void meta(std::int64_t tick, int type, std::string_view data) {
        delta(tick);
        byte(0xFF);
        byte(static_cast<unsigned>(type));
        byte(static_cast<unsigned>(data.size())); // shorter than 128
        bytes_ += data;
    }
    void silence(std::int64_t tick) {
        for (const std::uint32_t word : sounding_.silencingWords())
            message(tick, word);
    }
    /// The whole chunk; nothing may follow.
    std::string_view end(std::int64_t tick) {
        meta(std::max(tick, last_), kEndOfTrack, {});
        const std::size_t length = bytes_.size() - 8;
        for (std::size_t i = 0; i < 4; ++i)
            bytes_[4 + i] = static_cast<char>(length >> (24 - 8 * i));
        return bytes_;
    }

private:
    void byte(std::uint32_t value) { bytes_ += static_cast<char>(value); }

    /// A pause that is longer than a delta can tell is cut by texts that say nothing.
    void delta(std::int64_t tick) {
        while (tick - last_ > kLongestDelta) {
            quantity(kLongestDelta);
            bytes_ += "\xFF\x01\0"sv;
            last_ += kLongestDelta;
        }
        quantity(tick - last_);
        last_ = tick;
    }
    void quantity(std::int64_t ticks) {
        if (ticks >= 0x80)
            for (int shift = 21; shift > 0; shift -= 7)
                if (ticks >> shift != 0)
                    byte(0x80U | static_cast<unsigned>(ticks >> shift & 0x7F));
        byte(static_cast<unsigned>(ticks & 0x7F));
    }

    std::string bytes_;
    std::int64_t last_ = 0; ///< tick of the last event
    SoundingNotes sounding_;
};

/// An event of the first track.
struct Sign {
    std::int64_t tick;
    int type;
    std::string data;
};

void addTempi(std::vector<Sign>& signs, const TickGrid& grid, std::int64_t endTick) {
    const double wanted = kMicro * grid.quarter();
    std::int64_t microseconds = 0;
    double passed = 0; // in the file
    for (std::int64_t quarter = 0; quarter == 0 || quarter * grid.division < endTick;
         quarter += kTempoQuarters) {
        const double due = wanted * static_cast<double>(quarter + kTempoQuarters);
        const std::int64_t next =
            std::clamp<std::int64_t>(std::llround((due - passed) / kTempoQuarters), 1, kLongestQuarter);
        passed += static_cast<double>(next * kTempoQuarters);
        if (next == microseconds)
            continue;
        microseconds = next;
        std::string data;
        for (const int shift : {16, 8, 0})
            data += static_cast<char>(microseconds >> shift & 0xFF);
        signs.push_back({quarter * grid.division, kTempo, data});
    }
}

struct Meter {
    int beats;
    int power; ///< of two, which gives the value of a beat
};

/// A measure of so many positions, in quarters if they fill it, otherwise in the longest notes that do.
std::optional<Meter> meterOf(int positions, const TickGrid& grid) {
    Meter meter{positions, 2};
    for (int inQuarter = grid.positionsPerQuarter; inQuarter > 1; inQuarter /= 2)
        ++meter.power;
    while (meter.beats % 2 == 0 && meter.power > 2) {
        meter.beats /= 2;
        --meter.power;
    }
    return meter.beats <= kMostBeats ? std::optional(meter) : std::nullopt;
}

/// What the user calls it, if that is as long.
std::optional<Meter> namedMeter(const Performance& performance, int measure, const TickGrid& grid) {
    const int value = performance.noteValue;
    int power = 0;
    while (power < 6 && 1 << power < value)
        ++power;
    const bool fits = performance.beatsPerMeasure > 0 && performance.beatsPerMeasure <= kMostBeats &&
                      1 << power == value &&
                      performance.beatsPerMeasure * 4 * grid.positionsPerQuarter == measure * value;
    return fits ? std::optional(Meter{performance.beatsPerMeasure, power}) : meterOf(measure, grid);
}

void addMeter(std::vector<Sign>& signs, std::int64_t tick, const std::optional<Meter>& meter) {
    if (!meter)
        return;
    constexpr int kClocksPerWhole = 96;
    const std::array<char, 4> data{static_cast<char>(meter->beats), static_cast<char>(meter->power),
                                   static_cast<char>(std::max(kClocksPerWhole >> meter->power, 1)), 8};
    signs.push_back({tick, kMeter, {data.data(), data.size()}});
}

void addMeters(std::vector<Sign>& signs, const Performance& performance, const TickGrid& grid,
               std::int64_t endTick) {
    const int measure = performance.notesPerMeasure > 0 ? performance.notesPerMeasure : kUsualMeasure;
    // The position that is waited at the beginning, and what a segment has left of its first measure.
    const int lead = 1 + (measure - performance.first % measure) % measure;
    const std::int64_t leadTick = std::int64_t{lead} * grid.ticksPerPosition();
    if (lead == measure || endTick == 0) {
        addMeter(signs, 0, namedMeter(performance, measure, grid));
        return;
    }
    addMeter(signs, 0, meterOf(lead, grid));
    if (leadTick < endTick)
        addMeter(signs, leadTick, namedMeter(performance, measure, grid));
}

Track signTrack(const Performance& performance, const TickGrid& grid, std::int64_t endTick) {
    std::vector<Sign> signs;
    addTempi(signs, grid, endTick);
    addMeters(signs, performance, grid, endTick);
    std::ranges::stable_sort(signs, {}, &Sign::tick);
    Track track;
    for (const Sign& sign : signs)
        track.meta(sign.tick, sign.type, sign.data);
    return track;
}

/// As the squares of the channels call them.
std::string trackName(int channel) {
    constexpr int kNone = kFirstPercussion + 1; // the drum channel of MIDI itself
    if (channel < kFirstPercussion)
        return "Channel " + std::to_string(channel + 1);
    return channel == kNone ? "Unused"
                            : "Percussion Channel " + std::to_string(channel < kNone ? channel + 1 : channel);
}

std::vector<Track> channelTracks(const Performance& performance, const TickGrid& grid) {
    std::vector<Track> tracks(kUsedChannels);
    for (int channel = 0; channel < kUsedChannels; ++channel)
        tracks[static_cast<std::size_t>(channel)].meta(0, kTrackName, trackName(channel));
    double seconds = -1;
    std::int64_t tick = 0;
    int before = -1;
    for (std::size_t i = 0; i < performance.messages.size(); ++i) {
        const TimedMessage& one = performance.messages[i];
        const int channel = performance.origins[i].channel;
        const std::int64_t last = tick;
        if (one.seconds != seconds) // most have the moment of the one before
            tick = std::max(tick, grid.tick(seconds = one.seconds));
        if (tick == last && channel < before && !one.reset)
            ++tick; // who merges the tracks takes the lower ones first
        before = channel;
        if (one.reset)
            for (Track& track : tracks)
                track.silence(tick);
        else if (channel >= 0 && channel < kUsedChannels && shortmessage::isValid(one.word))
            tracks[static_cast<std::size_t>(channel)].message(tick, one.word);
    }
    return tracks;
}
} // namespace

std::string midiFileOf(const Performance& performance) {
    const TickGrid grid(performance.step);
    const std::int64_t endTick = grid.tick(performance.seconds);
    Track signs = signTrack(performance, grid, endTick);
    std::vector<Track> tracks = channelTracks(performance, grid);

    std::string bytes("MThd\0\0\0\x06\0\x01\0"sv);
    bytes += static_cast<char>(tracks.size() + 1);
    bytes += static_cast<char>(grid.division >> 8);
    bytes += static_cast<char>(grid.division & 0xFF);
    bytes += signs.end(endTick);
    for (Track& track : tracks)
        bytes += track.end(endTick);
    return bytes;
}

std::string writeMidi(const std::filesystem::path& path, const PerformedScore& performed,
                      std::int32_t& NumBytes) {
    if (performed.manners.exportsWhatIsHeard)
        return replaceFile(path, midiFileOf(perform(performed)));
    Score copy = performed.score;
    ChordSteps steps = performed.chords;
    return MidiFile(path, copy, steps, NumBytes);
}

} // namespace velmora
