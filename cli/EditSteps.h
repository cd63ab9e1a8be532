// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora::cli {

struct EditStep;
class HeadlessWindow;

/// A step of an edit with the values of its words.
struct StepCall {
    const EditStep* step = nullptr;
    std::vector<int> values; ///< a number each, `on` 1 and `off` 0, channels as bits
    std::string text;        ///< as the user wrote it
};

/// Reads one step. Throws UsageError if there is none of its name, or a word is off.
[[nodiscard]] StepCall parseStep(std::string_view text);
/// Reads a step from each line; `#` begins a comment.
[[nodiscard]] std::vector<StepCall> parseLines(std::string_view text);
/// Throws UsageError if the step names a position that a score of @p numNotes does not have.
void checkPositions(const StepCall& call, int numNotes);
/// Carries a step out, as a user of the window would.
void perform(const StepCall& call, HeadlessWindow& window);

/// All steps with their words, each on a new line.
[[nodiscard]] std::string listOfSteps();

} // namespace velmora::cli
