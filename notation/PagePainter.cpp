// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PagePainter.h"

namespace velmora::notation {

void paintPage(const EngravedScore&, const EngravedPage&, PagePainter&) {}

} // namespace velmora::notation
