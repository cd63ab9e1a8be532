// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Engraver.h"

namespace velmora::notation {

EngravedScore WriteScore(const WrittenScore& score, const ScoreSetup& setup, TextMeasure& measure,
                         const std::function<bool(int pages)>& goOn) {
    return setup.classicPage ? engraveClassic(score, setup, goOn) : engraveClean(score, setup, measure, goOn);
}

EngravedPage DrawBlankPage(EngravedScore& into, const WrittenScore& score, const ScoreSetup& setup,
                           TextMeasure& measure, int number) {
    return setup.classicPage ? blankClassic(into, score, setup, number)
                             : blankClean(into, score, setup, measure, number);
}

} // namespace velmora::notation
