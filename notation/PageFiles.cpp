// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PageFiles.h"

namespace velmora::notation {

std::unique_ptr<TextMeasure> fontMeasure() {
    return std::make_unique<PlainTextMeasure>();
}
std::string paintingProblem() {
    return {};
}
void paintPixels(const EngravedScore&, const EngravedPage&, double, int, int, int, int, std::uint32_t*) {}
std::string pngOf(const EngravedScore&, const EngravedPage&, double) {
    return {};
}
std::string svgOf(const EngravedScore&, const EngravedPage&) {
    return {};
}
PagePlace ownPaper(const EngravedScore&) {
    return {};
}
PagePlace fitted(const EngravedScore&, double, double) {
    return {};
}
std::optional<std::string> pdfOf(const EngravedScore&, std::span<const int>, const PagePlace&,
                                 const std::string&, const std::function<bool(int)>&) {
    return {};
}

} // namespace velmora::notation
