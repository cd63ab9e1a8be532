// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicValues.h"

#include <array>
#include <cmath>

namespace velmora::notation {

namespace {

/// Cuts `LO` from what is left to write of a note.
class Splitter {
public:
    Splitter(int steps, int M) : LO_(steps), M_(M) {}

    [[nodiscard]] std::vector<ClassicPiece> split() {
        if (LO_ >= M_) {
            take(NoteValue::Whole, LO_);
            return std::move(pieces_);
        }
        if (LO_ >= M_ / 2) {
            take(NoteValue::Half, M_ / 2);
            if (LO_ == M_ / 4)
                dot(LO_);
        }
        if (LO_ >= M_ / 4) {
            take(NoteValue::Quarter, M_ / 4);
            if (LO_ == M_ / 8)
                dot(LO_);
        }
        if (LO_ >= M_ / 8) {
            take(NoteValue::Eighth, M_ / 8);
            // Whatever is left becomes a dot: meant.
            if (LO_ > 0)
                dot(LO_);
        }
        while (LO_ >= 1)
            take(NoteValue::Sixteenth, M_ < 16 ? 1 : M_ / 16);
        return std::move(pieces_);
    }

private:
    void take(NoteValue value, double steps) {
        const int before = LO_;
        LO_ = toWhole(LO_ - steps);
        pieces_.push_back({{.value = value}, LO_ < 1 ? before : before - LO_});
    }
    void dot(int steps) {
        pieces_.back().value.dots = 1;
        pieces_.back().steps += steps;
        LO_ = 0;
    }

    int LO_;
    double M_;
    std::vector<ClassicPiece> pieces_;
};

constexpr std::array kRestParts{NoteValue::Whole, NoteValue::Half, NoteValue::Quarter, NoteValue::Eighth,
                                NoteValue::Sixteenth};

} // namespace

int toWhole(double value) {
    return static_cast<int>(std::lrint(value));
}

std::vector<ClassicPiece> splitNote(int steps, int M) {
    return Splitter(steps, M).split();
}

int restClass(int RestRun, int M) {
    return (16 * RestRun + M - 1) / M;
}

std::vector<Value> restValues(int restClass) {
    std::vector<Value> values;
    int share = 16;
    for (const NoteValue value : kRestParts) {
        if ((restClass & share) != 0)
            values.push_back({.value = value});
        share /= 2;
    }
    return values;
}

bool canJoin(const std::vector<Value>& values) {
    return values.size() == 1 && values.front().dots == 0 &&
           (values.front().value == NoteValue::Eighth || values.front().value == NoteValue::Sixteenth);
}

} // namespace velmora::notation
