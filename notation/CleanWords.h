// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanInk.h"

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora::notation {

/// One syllable under the notes it is sung on, by their numbers.
struct Syllable {
    std::string text;
    bool hyphen = false; ///< its word goes on
    int from = 0;
    int to = 0; ///< the last
};

/// Lays a line of words under notes: blanks part words, hyphens syllables; `_` lets the one before go on, and
/// `~` is a blank within a syllable.
[[nodiscard]] std::vector<Syllable> syllablesOf(std::string_view words);

/// The verses under the first staff.
class CleanWords {
public:
    explicit CleanWords(const CleanStyle& style);

    /// The first and the last note of each syllable of the first verse that is sung on several.
    [[nodiscard]] const std::vector<std::pair<int, int>>& slurs() const { return slurs_; }
    [[nodiscard]] bool empty() const { return verses_.empty(); }
    /// Holds the syllables of these bars apart.
    void addRods(Chain& chain, std::span<const CleanBar> bars, double lineStart) const;
    /// Sets the verses below all that the staff holds.
    void draw(CleanInk& ink, const CleanLine& line, const CleanMusic& music) const;

private:
    /// A syllable in a line of music.
    struct Set {
        const Syllable* syllable;
        double left, right, reach; ///< of its letters, and how far its last head goes
        bool begins;               ///< in this line; else it only goes on
    };
    [[nodiscard]] const Syllable* startingAt(std::size_t verse, int note) const;
    [[nodiscard]] std::vector<Set> setIn(std::size_t verse, const CleanLine& line,
                                         const CleanMusic& music) const;
    void drawVerse(CleanInk& ink, const std::vector<Set>& row, const CleanLine& line, double y) const;
    void drawHyphen(CleanInk& ink, const Set& left, double right, double y) const;
    [[nodiscard]] double widthOf(const Syllable& syllable) const;

    const CleanStyle& style_;
    std::vector<std::vector<Syllable>> verses_;
    std::vector<std::pair<int, int>> slurs_;
};

} // namespace velmora::notation
