// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/Score.h"

#include <algorithm>

namespace velmora {

namespace {
/// Whether no cell of a block is filled. Without a branch, so that many are looked at together.
template<std::size_t size>
bool isEmpty(const std::int16_t* cells) {
    std::int16_t all = -1;
    for (std::size_t i = 0; i < size; ++i)
        all = static_cast<std::int16_t>(all & cells[i]);
    return all < 0;
}
} // namespace

Score::Score(int numNotes)
    : NumNotes(std::max(numNotes, 0))
    , NoteCell(NumNotes + 1, kEmptyCell)
    , NoteInstrument(NumNotes + 1, 0)
    , Polyphonics(NumNotes + 1, 0)
    , Volume(NumNotes + 1, kClearedVolume)
    , Modulation_Change(NumNotes + 1, kClearedEffect)
    , Pan_Change(NumNotes + 1, kClearedPan)
    , Reverb_Change(NumNotes + 1, kClearedEffect)
    , Chorus_Change(NumNotes + 1, kClearedEffect)
    , ClipNoteCell(NumNotes + 1, kEmptyCell)
    , ClipNoteInstrument(NumNotes + 1, 0)
    , ClipPolyphonics(NumNotes + 1, 0)
    , ClipVolume(NumNotes + 1, kClearedVolume)
    , ClipModulation(NumNotes + 1, kClearedEffect)
    , ClipPan(NumNotes + 1, kClearedPan)
    , ClipReverb(NumNotes + 1, kClearedEffect)
    , ClipChorus(NumNotes + 1, kClearedEffect) {
    std::fill_n(ChannelVelocity.begin(), 12, std::int16_t{127});
    PlayedCell.fill(kEmptyCell);
    PlayedInstrument.fill(-1);
}

void Score::ClearThisArray(int channel) {
    if (channel < 0 || channel >= kUsedChannels)
        return;
    ChannelInUse[channel] = false;
    NoteCell.fillRow(channel, kEmptyCell);
    NoteInstrument.fillRow(channel, 0);
    Polyphonics.fillRow(channel + 1, 0);
}

void Score::ClearNoteArrays() {
    for (int channel = 0; channel < kUsedChannels; ++channel)
        ClearThisArray(channel);
    for (int channel = kFirstPercussion; channel <= kFirstPercussion + TopDrumHint; ++channel) {
        if (const auto entry = static_cast<std::size_t>(channel - 7); entry < BeatMemo.size())
            BeatMemo[entry].fill(0);
    }
}

void Score::ClearAll() {
    ActiveChannel = 0;
    currentFile.clear();
    ClearNoteArrays();
    TopChannel = 1;
    TopMelodyHint = 0;
    TopDrumHint = 0;
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        ChannelShown[channel] = false;
        Volume.fillRow(channel, kClearedVolume);
        Modulation_Change.fillRow(channel, kClearedEffect);
        Pan_Change.fillRow(channel, kClearedPan);
        Reverb_Change.fillRow(channel, kClearedEffect);
        Chorus_Change.fillRow(channel, kClearedEffect);
    }
    Tempo = 100;
    SongEnd = 0;
}

int Score::lastFilledPosition(int channel, int bound) const {
    const auto cells = NoteCell.row(channel);
    constexpr int kBlock = 64;
    int position = std::min(bound, static_cast<int>(cells.size()) - 1);
    while (position >= kBlock - 1 && isEmpty<kBlock>(&cells[static_cast<std::size_t>(position - kBlock + 1)]))
        position -= kBlock;
    while (position >= 0 && cells[static_cast<std::size_t>(position)] < 0)
        --position;
    return position;
}

std::vector<int> Score::usedChannels() const {
    std::vector<int> used;
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (lastFilledPosition(channel, NumNotes) >= 0)
            used.push_back(channel);
    }
    return used;
}

void Score::FindEndOfSong() {
    SongEnd = 0;
    ChannelInUse[ActiveChannel] = true;
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (ChannelMuted[channel])
            continue;
        // A single note in position 0 does not mark a channel as used; that is meant.
        if (const int last = lastFilledPosition(channel, NumNotes); last >= 1) {
            SongEnd = std::max(SongEnd, last + 1);
            ChannelInUse[channel] = ChannelShown[channel] = true;
        } else if (channel > 0) {
            ChannelInUse[channel] = ChannelShown[channel] = false;
        }
    }
}

void Score::Isnotes() {
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (ChannelInUse[channel] && channel != ActiveChannel &&
            lastFilledPosition(channel, NoteCell.positions() - 1) < 0)
            ChannelInUse[channel] = false;
    }
}

void Score::resizeNotes(int numNotes) {
    NumNotes = std::max(numNotes, 0);
    // The copy buffers of volume and of the four effects keep their old size; that is meant.
    for (ChannelGrid* grid :
         {&NoteCell, &NoteInstrument, &ClipNoteCell, &ClipNoteInstrument, &Volume, &Polyphonics,
          &ClipPolyphonics, &Modulation_Change, &Pan_Change, &Reverb_Change, &Chorus_Change})
        grid->resize(NumNotes + 1);
}

void Score::rememberBeat(int channel, int position, std::int16_t value) {
    const int entry = channel - 7;
    const int column = position + 1;
    if (entry >= 0 && entry < static_cast<int>(BeatMemo.size()) && column >= 0 &&
        column < static_cast<int>(BeatMemo[0].size()))
        BeatMemo[static_cast<std::size_t>(entry)][static_cast<std::size_t>(column)] = value;
}

std::string noteCountText(int songEnd) {
    return std::to_string(songEnd) + " Notes";
}

const std::array<std::string, 128>& NoteNames() {
    static const auto names = [] {
        constexpr std::array<const char*, 12> kSemitones{"C",  "C#", "D",  "Eb", "E",  "F",
                                                         "F#", "G",  "Ab", "A",  "Bb", "B"};
        std::array<std::string, 128> byRow;
        for (int note = 0; note < 128; ++note)
            byRow[static_cast<std::size_t>(RowToNote(note))] =
                std::to_string(note / 12) + kSemitones[static_cast<std::size_t>(note % 12)];
        return byRow;
    }();
    return names;
}

} // namespace velmora
