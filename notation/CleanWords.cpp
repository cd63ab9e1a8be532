// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanWords.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr double kHeadHalf = 0.6;
constexpr double kWordGap = 0.8;
constexpr double kHyphenGap = 1.5;
constexpr double kHyphen = 0.55;
constexpr double kHyphensApart = 9;
constexpr double kShortestLine = 1.0; ///< of a held syllable
constexpr double kThinLine = 0.12;
constexpr double kVerseStep = 2.3;
constexpr double kBelowStaff = 1.1; ///< from what is lowest to the letters' tops
constexpr double kLetterHeight = 1.45;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

std::vector<Syllable> syllablesOf(std::string_view words) {
    std::vector<Syllable> syllables;
    int note = 0;
    std::string text;
    const auto close = [&](bool hyphen) {
        if (!text.empty()) {
            std::ranges::replace(text, '~', ' ');
            syllables.push_back({text, hyphen, note, note});
            ++note;
        }
        text.clear();
    };
    for (std::size_t i = 0; i < words.size(); ++i) {
        const char c = words[i];
        const bool alone = text.empty() && (i == 0 || isBlank(words[i - 1]));
        if (c == '_') {
            close(false);
            // Before the first word a note stays without one.
            if (!syllables.empty())
                syllables.back().to = note;
            ++note;
        } else if (isBlank(c)) {
            close(false);
        } else if (c == '-' && !alone) {
            if (!text.empty())
                close(true);
        } else {
            text += c;
        }
    }
    close(false);
    return syllables;
}

CleanWords::CleanWords(const CleanStyle& style) : style_(style) {
    for (const std::string& verse : style.setup.verses)
        if (auto syllables = syllablesOf(verse); !syllables.empty())
            verses_.push_back(std::move(syllables));
    if (!verses_.empty())
        for (const Syllable& syllable : verses_[0])
            if (syllable.to > syllable.from)
                slurs_.emplace_back(syllable.from, syllable.to);
    if (verses_.size() < 2)
        return;
    // Several verses are numbered.
    for (std::size_t i = 0; i < verses_.size(); ++i)
        verses_[i][0].text = std::to_string(i + 1) + ". " + verses_[i][0].text;
}

const Syllable* CleanWords::startingAt(std::size_t verse, int note) const {
    const auto found = std::ranges::lower_bound(verses_[verse], note, {}, &Syllable::from);
    return found != verses_[verse].end() && found->from == note ? &*found : nullptr;
}

double CleanWords::widthOf(const Syllable& syllable) const {
    return style_.extent(syllable.text, style_.words).width;
}

void CleanWords::addRods(Chain& chain, std::span<const CleanBar> bars, double lineStart) const {
    for (std::size_t verse = 0; verse < verses_.size(); ++verse) {
        int before = 0;
        double right = -lineStart;
        bool any = false;
        for (std::size_t i = 0; i < bars.size(); ++i)
            for (const CleanSign& sign : bars[i].signs) {
                const Syllable* syllable = sign.singing < 0 ? nullptr : startingAt(verse, sign.singing);
                if (syllable == nullptr)
                    continue;
                const double half = widthOf(*syllable) / style_.space / 2;
                const int node = chain.barLines[i] + 1 + sign.column;
                chain.rods.push_back({before, node, right + half - kHeadHalf});
                before = node;
                right = half + kHeadHalf + (syllable->hyphen ? kHyphenGap : kWordGap);
                any = true;
            }
        if (any)
            chain.rods.push_back({before, chain.barLines.back(), right - kWordGap});
    }
}

std::vector<CleanWords::Set> CleanWords::setIn(std::size_t verse, const CleanLine& line,
                                               const CleanMusic& music) const {
    std::vector<Set> row;
    const auto& syllables = verses_[verse];
    for (std::size_t i = 0; i < line.count(); ++i)
        for (const CleanSign& sign : line.bar(i).signs) {
            if (sign.sung < 0)
                continue;
            const auto after = std::ranges::upper_bound(syllables, sign.sung, {}, &Syllable::from);
            if (after == syllables.begin() || std::prev(after)->to < sign.sung)
                continue;
            const Syllable& own = *std::prev(after);
            const double x = line.xOf(i, sign.column);
            const double reach = x + music.headWidth(sign.heads[0].shape) * style_.space;
            if (!row.empty() && row.back().syllable == &own) {
                row.back().reach = reach;
                continue;
            }
            const double middle = x + kHeadHalf * style_.space;
            const double half = sign.singing == own.from ? widthOf(own) / 2 : 0;
            const double from = half > 0 ? middle - half : line.notesFrom;
            row.push_back({&own, from, half > 0 ? middle + half : line.notesFrom, reach, half > 0});
        }
    return row;
}

void CleanWords::drawHyphen(CleanInk& ink, const Set& left, double right, double y) const {
    const double space = style_.space;
    const double room = right - left.right;
    const int count = std::max(1, static_cast<int>(room / (kHyphensApart * space)));
    for (int i = 0; i < count; ++i) {
        const double middle = left.right + room * (i + 0.5) / count;
        const double half = std::min(kHyphen * space / 2, room * 0.3);
        if (half > 0)
            ink.line({middle - half, y}, {middle + half, y}, kThinLine * space, Role::Lyric);
    }
}

void CleanWords::drawVerse(CleanInk& ink, const std::vector<Set>& row, const CleanLine& line,
                           double y) const {
    const double space = style_.space;
    const double lineEnd = line.right - 0.3 * space;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const Set& own = row[i];
        const double next = i + 1 < row.size() ? row[i + 1].left : lineEnd;
        if (own.begins)
            ink.text(own.syllable->text, style_.words, {own.left, y}, Role::Lyric);
        if (own.syllable->hyphen) {
            drawHyphen(ink, own, next, y - 0.5 * space);
            continue;
        }
        const double from = own.right + (own.begins ? 0.25 * space : 0);
        const double to = std::min(own.reach, next - 0.3 * space);
        if (to - from > kShortestLine * space)
            ink.line({from, y}, {to, y}, kThinLine * space, Role::Lyric);
    }
}

void CleanWords::draw(CleanInk& ink, const CleanLine& line, const CleanMusic& music) const {
    const double space = style_.space;
    std::vector<std::vector<Set>> rows;
    double lowest = 4 * space;
    for (std::size_t verse = 0; verse < verses_.size(); ++verse) {
        rows.push_back(setIn(verse, line, music));
        if (rows.back().empty())
            continue;
        // Hyphens and lines stand between the syllables.
        double right = rows.back().back().syllable->hyphen ? line.right : 0;
        for (const Set& set : rows.back())
            right = std::max({right, set.right, set.reach});
        lowest = std::max(lowest, ink.sky.lowest(rows.back().front().left, right));
    }
    double y = lowest + (kBelowStaff + kLetterHeight) * space;
    for (const auto& row : rows) {
        drawVerse(ink, row, line, y);
        y += kVerseStep * space;
    }
}

} // namespace velmora::notation
