// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/MidiFile.h"

#include "base/PendingFile.h"
#include "score/Numbers.h"
#include "score/Score.h"
#include "sound/Chords.h"
#include "sound/Instruments.h"
#include "sound/ShortMessage.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

namespace velmora {

namespace {
using namespace std::string_view_literals;

constexpr int kTicksPerPosition = 12;
constexpr std::int32_t kRoomToGrow = 1000;
constexpr std::size_t kChunkHead = 8; ///< id and length
/// The most that a position takes: program change 6, note off 7, zero delta 1, note on 3.
constexpr std::size_t kLongestPosition = 17;
constexpr std::size_t kUsualPosition = 8; ///< note off and note on
constexpr std::size_t kTrackRest = 32;    ///< chunk head, closing note off, end of track
/// Smaller pieces take a busy disk more time than they spare.
constexpr std::size_t kFlushBytes = std::size_t{1} << 20;
constexpr int kProgramChange = 0xC0;
constexpr int kNoteOn = 0x90;
constexpr int kNoteOff = 0x80;
/// What an effect array's index is ahead of its position.
constexpr int kEffectShift = 1;
constexpr double kChordVolume = 0.65; ///< of the written note's

int dataByte(int value) {
    return std::clamp(value, 0, 127);
}

char denominatorPower(int notesPerMeasure) {
    if (notesPerMeasure >= 4 && notesPerMeasure <= 7)
        return 2;
    if (notesPerMeasure >= 8 && notesPerMeasure <= 15)
        return 3;
    return notesPerMeasure >= 16 && notesPerMeasure <= 20 ? 4 : 0;
}

/// Microseconds a quarter in three bytes: as many as fit, and 0 for a tempo that has none.
void WriteTempoBytes(std::string& to, int tempo) {
    const int microseconds = tempo < 1 ? 0 : std::min(60'000'000 / tempo, 0xFFFFFF);
    for (const int shift : {16, 8, 0})
        to += static_cast<char>(microseconds >> shift & 0xFF);
}

/// Header, and the track of tempo and meter. The meter's numerator is always 4.
std::string fileHead(const Score& score, int channelTracks) {
    std::string head("MThd\0\0\0\x06\0\x01\0"sv);
    head += static_cast<char>(channelTracks + 1);
    head += "\0\x30MTrk\0\0\0\x13\0\xFF\x51\x03"sv;
    WriteTempoBytes(head, score.Tempo);
    head += "\0\xFF\x58\x04\x04"sv;
    head += denominatorPower(score.NotesPerMeasure);
    head += "\x18\x08\0\xFF\x2F\0"sv;
    return head;
}

/// Notes of a chord go to three channels further up, a head and its continuations alike. Each step is added
/// to the row, so the notes lie below the written one, unlike those of the live chords.
void spreadChord(Score& score, ChordSteps& steps, int channel, int position) {
    const int type = score.Polyphonics.valueOr(channel + 1, position + 1, 0);
    if (type < 1)
        return;
    steps.SelectChord(type);
    const int cell = score.NoteCell.valueOr(channel, position, kEmptyCell);
    const auto instrument = score.NoteInstrument.at(channel, position);
    const auto volume = score.Volume.at(channel, position + kEffectShift);
    int target = channel + score.TopChannel;
    for (const int step : {steps.ChordStep1, steps.ChordStep2, steps.ChordStep3}) {
        if (const auto note = toInt16(cell + step))
            score.NoteCell.set(target, position, *note);
        if (instrument)
            score.NoteInstrument.set(target, position, *instrument);
        if (volume)
            score.Volume.set(target, position + kEffectShift,
                             static_cast<std::int16_t>(roundHalfEven(*volume * kChordVolume)));
        ++target;
    }
}

/// Empties every channel that chords may have been spread over.
void clearSpreadChords(Score& score) {
    const int last = std::min(score.TopChannel + score.TopMelodyHint + 2, ChannelGrid::kChannels - 1);
    for (int channel = score.TopChannel; channel <= last; ++channel) {
        for (int position = 0; position <= score.SongEnd; ++position) {
            score.NoteCell.set(channel, position, kEmptyCell);
            score.NoteInstrument.set(channel, position, 0);
            score.Volume.set(channel, position + kEffectShift, kClearedVolume);
        }
    }
}

/// Where the next byte goes. It is handed on by value, so that it stays in a register.
class ByteCursor {
public:
    explicit ByteCursor(std::uint8_t* at) : at_(at) {}
    [[nodiscard]] ByteCursor NextByte(int byte) const {
        *at_ = static_cast<std::uint8_t>(byte);
        return ByteCursor(at_ + 1);
    }
    [[nodiscard]] std::uint8_t* at() const { return at_; }

private:
    std::uint8_t* at_;
};

std::int16_t valueOr(std::span<const std::int16_t> row, int position, std::int16_t otherwise) {
    const auto i = static_cast<std::size_t>(position);
    return i < row.size() ? row[i] : otherwise;
}

inline ByteCursor writeEvent(ByteCursor to, int status, int data1, int data2) {
    return to.NextByte(status).NextByte(dataByte(data1)).NextByte(dataByte(data2));
}

/// Builds the channel tracks one after the other in a buffer that is large enough for any of them.
class TrackWriter {
public:
    TrackWriter(Score& score, ChordSteps& steps)
        : score_(score)
        , steps_(steps)
        , bytes_(std::make_unique_for_overwrite<std::uint8_t[]>(
              kLongestPosition * static_cast<std::size_t>(score.SongEnd) + kTrackRest)) {}

    /// The whole chunk of a channel, valid until the next.
    std::string_view track(int channel);

private:
    ByteCursor WriteDelta(ByteCursor to, int position);
    ByteCursor WriteNoteOn(ByteCursor to, int cell, int position);
    ByteCursor WriteNoteOff(ByteCursor to);
    ByteCursor writePosition(ByteCursor to, int position, std::int16_t cell);
    ByteCursor changeInstrument(ByteCursor to, std::int16_t code, int position);
    void WriteTrackLength(std::size_t length);

    [[nodiscard]] int EventChannel() const { return NoteIsDrum ? shortmessage::kDrumChannel : channel_; }
    [[nodiscard]] int EventNote(int row) const { return NoteIsDrum ? DrumKey : RowToNote(row); }

    Score& score_;
    ChordSteps& steps_;
    std::span<const std::int16_t> instruments_; // rows of the channel, so that a cell costs one look
    std::span<const std::int16_t> volumes_;
    std::unique_ptr<std::uint8_t[]> bytes_;
    int channel_ = 0;
    int LastEventPosition = 0;
    // These two stay as they are from track to track; the first head of a track sets them.
    bool NoteIsDrum = false;
    int DrumKey = 0;
};

std::string_view TrackWriter::track(int channel) {
    channel_ = channel;
    score_.PlayedCell[channel_] = kEmptyCell;
    score_.PlayedInstrument[channel_] = -1;
    LastEventPosition = 0;
    ByteCursor to(std::ranges::copy("MTrk\0\0\0\0"sv, bytes_.get()).out);
    if (!score_.ChannelMuted[channel_]) {
        const int songEnd = score_.SongEnd;
        const bool mayHaveChords = channel <= score_.TopMelodyHint;
        const auto cells = std::as_const(score_.NoteCell).row(channel);
        instruments_ = score_.NoteInstrument.row(channel);
        volumes_ = score_.Volume.row(channel);
        for (int position = 0; position < songEnd; ++position) {
            if (mayHaveChords)
                spreadChord(score_, steps_, channel, position);
            to = writePosition(to, position, valueOr(cells, position, kEmptyCell));
        }
        to = writePosition(to, score_.SongEnd, kEmptyCell); // what still sounds ends with the song
    }
    to = WriteDelta(to, score_.SongEnd).NextByte(0xFF).NextByte(0x2F).NextByte(0x00);
    const auto size = static_cast<std::size_t>(to.at() - bytes_.get());
    WriteTrackLength(size - kChunkHead);
    return {reinterpret_cast<const char*>(bytes_.get()), size};
}

/// What playing the position would send, the old cell being that of the position before.
ByteCursor TrackWriter::writePosition(ByteCursor to, int position, std::int16_t cell) {
    const bool sounding = cellClass(score_.PlayedCell[channel_]) != CellClass::Empty;
    const CellClass next = cellClass(cell);
    if (next == CellClass::Head)
        to = changeInstrument(to, valueOr(instruments_, position, 0), position);
    if (sounding && next != CellClass::Continuation)
        to = WriteNoteOff(WriteDelta(to, position));
    if (next == CellClass::Head)
        to = WriteNoteOn(WriteDelta(to, position), cell, position);
    score_.PlayedCell[channel_] = cell;
    return to;
}

/// A percussion key is remembered and nothing is written for it.
ByteCursor TrackWriter::changeInstrument(ByteCursor to, std::int16_t code, int position) {
    if (code == score_.PlayedInstrument[channel_])
        return to;
    score_.PlayedInstrument[channel_] = code;
    NoteIsDrum = code >= kFirstPercussionCode;
    if (NoteIsDrum) {
        DrumKey = code - kKeyToCode;
        return to;
    }
    return WriteDelta(to, position).NextByte(kProgramChange + channel_).NextByte(dataByte(code));
}

/// The ticks since the last event, which now is the one at @p position, in groups of seven bits.
ByteCursor TrackWriter::WriteDelta(ByteCursor to, int position) {
    const int ticks = (position - LastEventPosition) * kTicksPerPosition;
    LastEventPosition = position;
    for (int shift = ticks < 0x80 ? 0 : 21; shift > 0; shift -= 7) {
        if (ticks >> shift != 0)
            to = to.NextByte(0x80 | (ticks >> shift & 0x7F));
    }
    return to.NextByte(ticks & 0x7F);
}

void TrackWriter::WriteTrackLength(std::size_t length) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes_[4 + i] = static_cast<std::uint8_t>(length >> (24 - 8 * i));
}

ByteCursor TrackWriter::WriteNoteOn(ByteCursor to, int cell, int position) {
    std::int16_t& velocity = score_.ChannelVelocity[channel_]; // stays where the array has no volume
    velocity = valueOr(volumes_, position + kEffectShift, velocity);
    return writeEvent(to, kNoteOn + EventChannel(), EventNote(cell), velocity);
}

ByteCursor TrackWriter::WriteNoteOff(ByteCursor to) {
    return writeEvent(to, kNoteOff + EventChannel(), EventNote(cellRow(score_.PlayedCell[channel_])), 0);
}

/// Gives the file to @p take chunk by chunk, each valid until the next, with the size of all as far as it can
/// be told.
template<class Take>
void forEachChunk(Score& score, ChordSteps& steps, std::int32_t& NumBytes, Take&& take) {
    // One channel more in a state that editing can only reach by accident; never fewer than the thirteen.
    const int extraTracks = score.TopMelodyHint >= 4 && score.TopChannel <= score.TopMelodyHint
                                ? std::max(score.TopChannel - score.TopMelodyHint + 1, 0)
                                : 0;
    const int tracks = kUsedChannels + extraTracks;
    const std::string head = fileHead(score, tracks);
    std::size_t size = head.size();
    score.FindEndOfSong();
    ++score.SongEnd;
    const std::size_t expected = static_cast<std::size_t>(tracks) *
                                 (kUsualPosition * static_cast<std::size_t>(score.SongEnd) + kTrackRest);
    take(head, expected);
    TrackWriter writer(score, steps);
    for (int channel = 0; channel < tracks; ++channel) {
        const std::string_view track = writer.track(channel);
        take(track, expected);
        size += track.size();
        if (static_cast<std::size_t>(std::max(NumBytes, 0)) < size)
            NumBytes = static_cast<std::int32_t>(track.size() - kChunkHead) + kRoomToGrow;
    }
    clearSpreadChords(score);
}
} // namespace

std::string buildMidiFile(Score& score, ChordSteps& steps, std::int32_t& NumBytes) {
    std::string bytes;
    forEachChunk(score, steps, NumBytes, [&](std::string_view chunk, std::size_t expected) {
        bytes.reserve(expected);
        bytes += chunk;
    });
    return bytes;
}

std::string buildMidiFile(Score& score, ChordSteps& steps) {
    std::int32_t ignored = 0;
    return buildMidiFile(score, steps, ignored);
}

std::string MidiFile(const std::filesystem::path& path, Score& score, ChordSteps& steps,
                     std::int32_t& NumBytes) {
    PendingFile file(path);
    std::string problem = file.open();
    std::size_t unflushed = 0;
    forEachChunk(score, steps, NumBytes, [&](std::string_view chunk, std::size_t /*expected*/) {
        if (!problem.empty())
            return; // the score is left as after a success all the same
        problem = file.write(std::as_bytes(std::span(chunk)));
        unflushed += chunk.size();
        if (unflushed >= kFlushBytes) {
            file.beginFlushing();
            unflushed = 0;
        }
    });
    return problem.empty() ? file.commit() : problem;
}

} // namespace velmora
