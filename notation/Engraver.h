// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"
#include "notation/ScoreSetup.h"
#include "notation/WrittenScore.h"

#include <functional>

namespace velmora::notation {

class TextMeasure;

/// Lays the score out over as many pages as it takes. The passes are named: group, space, break, mark.
/// @param goOn asked after each page if given; false ends with the pages so far
[[nodiscard]] EngravedScore WriteScore(const WrittenScore& score, const ScoreSetup& setup,
                                       TextMeasure& measure, const std::function<bool(int pages)>& goOn = {});

/// A page with title, key, time signature and empty staves.
/// @param number of the page, from 1
[[nodiscard]] EngravedPage DrawBlankPage(EngravedScore& into, const WrittenScore& score,
                                         const ScoreSetup& setup, TextMeasure& measure, int number);

// What these two choose from.
[[nodiscard]] EngravedScore engraveClassic(const WrittenScore& score, const ScoreSetup& setup,
                                           const std::function<bool(int pages)>& goOn = {});
[[nodiscard]] EngravedScore engraveClean(const WrittenScore& score, const ScoreSetup& setup,
                                         TextMeasure& measure,
                                         const std::function<bool(int pages)>& goOn = {});
[[nodiscard]] EngravedPage blankClassic(EngravedScore& into, const WrittenScore& score,
                                        const ScoreSetup& setup, int number);
/// Paper like that of the written pages: the same staves, from the head to the foot.
[[nodiscard]] EngravedPage blankClean(EngravedScore& into, const WrittenScore& score, const ScoreSetup& setup,
                                      TextMeasure& measure, int number);

} // namespace velmora::notation
