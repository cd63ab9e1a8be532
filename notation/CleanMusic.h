// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanOctaves.h"
#include "notation/Marks.h"
#include "notation/MusicOutlines.h"
#include "notation/ScoreSetup.h"
#include "notation/WrittenScore.h"

#include <map>
#include <utility>
#include <vector>

namespace velmora::notation {

/// The clean page reckons in staff spaces, from the left of a column (the left edge of a usual head) and from
/// the top line of a staff, downwards. Places are counted in steps of the scale from the middle line,
/// upwards.
[[nodiscard]] constexpr double heightOfPlace(int place) {
    return 2.0 - place * 0.5;
}

/// Moments within a bar are parts of a step, so that triplets have theirs.
inline constexpr int kStepTicks = 960;

inline constexpr double kHeadGap = 0.15; ///< between a head and what stands beside it
inline constexpr double kStemLength = 3.5;
inline constexpr double kStemWidth = 0.13;
inline constexpr double kBeamWidth = 0.5;
inline constexpr double kBeamStep = 0.75; ///< from a beam to the next below it
inline constexpr double kDotStep = 0.55;  ///< from a dot to the second

/// What a sign covers about its origin, in staff spaces: the page's own table, so that pages are the same on
/// every machine.
[[nodiscard]] const Box& roomOf(MusicGlyph glyph);

/// Of a note with a pitch, or of a drum with a skin.
[[nodiscard]] constexpr bool isOval(MusicGlyph head) {
    return head == MusicGlyph::HeadWhole || head == MusicGlyph::HeadHalf || head == MusicGlyph::HeadBlack;
}

/// One head, and what stands beside it.
struct CleanHead {
    int place = 0;
    int row = 0;
    Sign sign = Sign::None;
    bool courtesy = false;
    bool tieIn = false;
    bool tieOut = false;
    bool shared = false; ///< the other voice draws it
    char letter = ' ';   ///< of its name
    MusicGlyph shape = MusicGlyph::HeadBlack;
    double left = 0;       ///< of the head
    double signMiddle = 0; ///< of its accidental
    int dotPlace = 0;
};

/// One written value: a note, a chord or a rest.
struct CleanSign {
    const Written* from = nullptr;
    Value value;
    int at = 0; ///< ticks from the bar's begin
    int length = 0;
    int column = 0; ///< index in `CleanBar::times`
    bool stemUp = true;
    bool struck = false; ///< begins a note, and takes a syllable
    int singing = -1;    ///< the number of the struck note in the first staff's first voice
    int sung = -1;       ///< the one that goes on sounding here
    int beam = -1;       ///< index in `CleanBar::beams`
    int restPlace = 0;
    bool merged = false; ///< a rest that the other voice has, too, and draws
    int octaves = 0;     ///< that it is written nearer the staff: 1 under "8va"
    int id = 0;          ///< `Mark::note`
    double stemEnd = 0;  ///< its height
    double dotsLeft = 0;
    double left = 0; ///< what it takes to the left of its column, as a positive number
    double right = 0;
    std::vector<CleanHead> heads; ///< from below

    [[nodiscard]] bool isRest() const { return from->isRest; }
    [[nodiscard]] bool hasStem() const { return !isRest() && value.value != NoteValue::Whole; }
    /// How many flags or beams its value has.
    [[nodiscard]] int flags() const {
        return isRest() ? 0 : static_cast<int>(value.value) - static_cast<int>(NoteValue::Quarter);
    }
    [[nodiscard]] bool hasFlag() const { return flags() > 0 && beam < 0; }
    /// The head at the end of the stem.
    [[nodiscard]] const CleanHead& outer() const { return stemUp ? heads.back() : heads.front(); }
    [[nodiscard]] const CleanHead& inner() const { return stemUp ? heads.front() : heads.back(); }
};

/// No two columns may be nearer than this.
struct Rod {
    int from, to;
    double length;
};

struct CleanBar {
    int number = 1;
    int ticks = 0;
    std::vector<CleanSign> signs;          ///< staff by staff, voice by voice, in the order of time
    std::vector<std::vector<int>> beams;   ///< signs under one beam
    std::vector<std::vector<int>> tuplets; ///< signs under one 3
    std::vector<int> times;                ///< of the columns
    std::vector<double> springs;           ///< from each column to the next, the last to the bar line
    std::vector<Rod> rods; ///< between columns; -1 is the bar line before, `times.size()` the one after
    double natural = 0;    ///< its width where nothing is stretched
    double least = 0;      ///< where signs stand as near as they may
};

/// The clean page's second view of a score: bar by bar, every value with its moment, heads on their places.
class CleanMusic {
public:
    CleanMusic(const WrittenScore& score, const ScoreSetup& setup);

    [[nodiscard]] CleanBar bar(int index);
    [[nodiscard]] const std::vector<OctaveRange>& octaves(int staff) const {
        return octaves_[static_cast<std::size_t>(staff)];
    }
    [[nodiscard]] int bars() const { return static_cast<int>(firstOf_.size()) - 1; }
    [[nodiscard]] const WrittenScore& score() const { return score_; }
    /// Ticks of a whole note.
    [[nodiscard]] double whole() const { return whole_; }
    /// The width of a head: wider where letters stand in them.
    [[nodiscard]] double headWidth(MusicGlyph shape) const;
    /// Whether a drum comes up here for the first time on its staff.
    [[nodiscard]] bool isFirstOfDrum(const Written& note) const;
    /// Columns of the fullest bar.
    [[nodiscard]] int mostSigns() const { return mostSigns_; }

private:
    void addSigns(CleanBar& bar, std::size_t item, bool twoVoices);
    void addHeads(CleanSign& sign, const Written& item) const;
    void numberSinging();
    void joinTies(CleanBar& bar, std::size_t begin, std::size_t item);
    [[nodiscard]] const Written* neighbour(std::size_t item, int direction) const;
    [[nodiscard]] int octavesAt(int staff, int position) const;
    void findDrums(int staff, const std::vector<std::size_t>& items);
    void findOctavesOf(int staff, const std::vector<std::size_t>& items);

    const WrittenScore& score_;
    bool letters_;
    double whole_;
    int nextId_ = 1;
    int mostSigns_ = 0;
    std::vector<std::size_t> firstOf_; ///< the first item of each bar, and one behind the last
    std::vector<int> singing_;         ///< for each item, the number of its struck note, or -1
    std::vector<int> sung_;
    std::vector<std::vector<OctaveRange>> octaves_;
    std::map<std::pair<int, int>, const Written*> firstOfDrum_; ///< by staff and key
};

} // namespace velmora::notation
