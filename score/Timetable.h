// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// When the steps of a play are due: step n at the start and n steps, from 1 on. The work of a step doesn't
/// shift those that follow, however long they go on.
///
/// A step that is late comes as soon as it can, but a quarter of a step after the one before at the earliest:
/// so steps that were missed are heard one after the other rather than as one crash, and the beat is caught
/// up with after a third more steps than were missed. What was lost in one step beyond a second is not caught
/// up with (the machine slept, or a question was asked meanwhile): who listened has lost the beat by then,
/// and the steps go on from there. Strummed chords never take a step that long.
class Timetable {
public:
    /// @param start seconds on the clock that `next` and `come` speak of
    Timetable(double start, double step) : start_(start), step_(step), last_(start) {}

    /// The moment to wait for before the next step is taken.
    [[nodiscard]] double next() const;
    /// The next step is taken, at @p now.
    void come(double now);
    /// Another one that begins when the last step was due.
    [[nodiscard]] Timetable following(double step) const;

private:
    [[nodiscard]] double due(int count) const { return start_ + step_ * count; }

    double start_;
    double step_;
    int count_ = 0;   ///< steps taken
    double last_;     ///< when the last one was
    double late_ = 0; ///< and how late
};

} // namespace velmora
