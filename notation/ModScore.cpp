// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ModScore.h"

#include "score/Score.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace velmora::notation {

namespace {

struct RowPlace {
    int lastRow; ///< the place holds from behind the row before up to this one
    int y;
};
/// 85, 110, 129 and 131 break the rhythm of four pixels: meant.
constexpr std::array kRowPlaces{
    RowPlace{38, 11},  RowPlace{40, 15},  RowPlace{43, 19},
    RowPlace{44, 23},  RowPlace{46, 27},  RowPlace{48, 31},
    RowPlace{50, 35},  RowPlace{51, 39},  RowPlace{53, 43},
    RowPlace{55, 47},  RowPlace{56, 51},  RowPlace{58, 55},
    RowPlace{60, 59},  RowPlace{62, 63},  RowPlace{63, 67},
    RowPlace{65, 71},  RowPlace{67, 75},  RowPlace{68, 79},
    RowPlace{70, 83},  RowPlace{72, 85},  RowPlace{74, 91},
    RowPlace{75, 95},  RowPlace{77, 99},  RowPlace{79, 103},
    RowPlace{80, 107}, RowPlace{82, 110}, RowPlace{84, 115},
    RowPlace{86, 119}, RowPlace{87, 123}, RowPlace{89, 127},
    RowPlace{91, 129}, RowPlace{92, 131}, RowPlace{std::numeric_limits<int>::max(), 135},
};
static_assert(kRowPlaces.size() == 33);

/// From `n` = 9 on.
struct Spelling {
    std::string_view sharp, flat;
};
constexpr int kFirstSpelled = 9;
constexpr std::array<Spelling, 12> kSpellings{{
    {"B", "B"},
    {"A#", "Bb"},
    {"A", "A"},
    {"G#", "Ab"},
    {"G", "G"},
    {"F#", "Gb"},
    {"F", "F"},
    {"E", "E"},
    {"D#", "Eb"},
    {"D", "D"},
    {"C#", "Db"},
    {"C", "C"},
}};

constexpr int kNotesOfMean = 10;
constexpr int kBassFrom = 91; ///< of the mean, which is not rounded

/// Of the channel's first notes before @p end; 0 for a channel without any.
double meanPlace(const Score& score, int channel, int end) {
    int sum = 0;
    int notes = 0;
    for (int position = 0; position < end && notes < kNotesOfMean; ++position) {
        const int cell = score.NoteCell.valueOr(channel, position, kEmptyCell);
        if (cellClass(cell) == CellClass::Head) {
            sum += RowToY(cellRow(cell));
            ++notes;
        }
    }
    return notes == 0 ? 0 : static_cast<double>(sum) / notes;
}

} // namespace

int RowToY(int row) {
    return std::ranges::find_if(kRowPlaces, [row](const RowPlace& place) { return row <= place.lastRow; })->y;
}

std::string SpellNote(int cell, bool KeyIsFlat) {
    const int n = cellRow(cell) + 1;
    // A step of 12 down or up to 9 to 20: the same as taking one after another off.
    const auto& spelling = kSpellings[static_cast<std::size_t>((n + 12 - kFirstSpelled) % 12)];
    return std::string(KeyIsFlat ? spelling.flat : spelling.sharp);
}

StaffChoice AssignStaves(const Score& score, int NotesPerMeasure) {
    StaffChoice choice;
    if (NotesPerMeasure < 1)
        return choice;
    const int LastStep = (score.SongEnd + NotesPerMeasure - 1) / NotesPerMeasure * NotesPerMeasure;
    for (std::size_t box = 0; box < choice.chkChannel.size() && choice.StaffCount() < kMostStaves; ++box) {
        const int channel = channelOfBox(static_cast<int>(box));
        if (!score.ChannelInUse[channel] || score.ChannelMuted[channel])
            continue;
        if (box < choice.ChkNotetype.size()) {
            const double mean = meanPlace(score, channel, LastStep);
            choice.chkChannel[box] = mean >= 1;
            choice.ChkNotetype[box] = mean >= kBassFrom;
        } else {
            choice.chkChannel[box] = true;
        }
    }
    return choice;
}

std::vector<Staff> stavesOf(const StaffChoice& choice) {
    std::vector<Staff> staves;
    const auto add = [&](StaffClef clef, std::size_t first, std::size_t end) {
        for (std::size_t box = first; box < end; ++box) {
            const bool isOther =
                clef != StaffClef::Percussion && choice.ChkNotetype[box] != (clef == StaffClef::Bass);
            if (choice.chkChannel[box] && !isOther && staves.size() < kMostStaves)
                staves.push_back({.channel = channelOfBox(static_cast<int>(box)), .clef = clef});
        }
    };
    const std::size_t melody = choice.ChkNotetype.size();
    add(StaffClef::Treble, 0, melody);
    add(StaffClef::Bass, 0, melody);
    add(StaffClef::Percussion, melody, choice.chkChannel.size());
    return staves;
}

WrittenScore readScore(const Score& score, const SetupState& meter, const ScoreSetup& setup) {
    return setup.classicPage ? readClassic(score, meter, setup) : readClean(score, meter, setup);
}

} // namespace velmora::notation
