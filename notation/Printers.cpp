// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Printers.h"

namespace velmora::notation {

std::vector<Printer> systemPrinters(std::string&) {
    return {};
}
std::string print(const PrintJob&) {
    return {};
}

} // namespace velmora::notation
