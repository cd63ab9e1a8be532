// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/Score.h"

#include <cstdio>

int main() {
    velmora::Score score;
    std::puts(velmora::noteCountText(score.SongEnd).c_str());
}
