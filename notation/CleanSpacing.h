// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanMusic.h"

#include <vector>

namespace velmora::notation {

/// Gives every moment of a bar a column; the signs know theirs.
void findColumns(CleanBar& bar);

/// A bar's springs and rods: space grows with the logarithm of the duration, and no sign touches the next.
/// @param whole ticks of a whole note
void spaceColumns(CleanBar& bar, double whole);

/// Nodes in a row, bar lines and columns: springs between neighbours, and rods that hold nodes apart.
struct Chain {
    std::vector<double> springs;
    std::vector<Rod> rods;
    std::vector<int> barLines; ///< nodes

    void add(const CleanBar& bar, double stretch);
    /// Sorts the rods; before anything is asked.
    void close();
    [[nodiscard]] double width(double force) const;
    [[nodiscard]] std::vector<double> positions(double force) const;
    /// The nodes over exactly @p wanted; signs touch where there is no other way.
    [[nodiscard]] std::vector<double> fitted(double wanted) const;

private:
    void place(double force, std::vector<double>& x) const;
};

} // namespace velmora::notation
