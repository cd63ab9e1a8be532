// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PageFiles.h"

#include "notation/CairoPainter.h"
#include "notation/PngFile.h"
#include "notation/PrintableText.h"
#include "notation/SvgPainter.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {
struct ContextDeleter {
    void operator()(cairo_t* made) const { cairo().cairo_destroy(made); }
};
struct SurfaceDeleter {
    void operator()(cairo_surface_t* made) const { cairo().cairo_surface_destroy(made); }
};
using Context = std::unique_ptr<cairo_t, ContextDeleter>;
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

class FontMeasure : public TextMeasure {
public:
    TextExtent extent(std::string_view text, const TextStyle& style) override {
        return text_.extent(text, style);
    }

private:
    PageText text_;
};

/// Paints on pixels that are the caller's; whether it went well.
bool paintOn(unsigned char* pixels, cairo_format_t format, int width, int height, int stride, double scale,
             Point origin, const EngravedScore& score, const EngravedPage& page) {
    const Surface surface(cairo().cairo_image_surface_create_for_data(pixels, format, width, height, stride));
    const Context context(cairo().cairo_create(surface.get()));
    cairo().cairo_translate(context.get(), -origin.x, -origin.y);
    CairoPainter painter(context.get(), CairoPainter::Surface::Pixels, scale);
    paintPage(score, page, painter);
    painter.flush();
    cairo().cairo_surface_flush(surface.get());
    return cairo().cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
}

bool isBlack(const EngravedPage& page) {
    return std::all_of(page.marks.begin(), page.marks.end(),
                       [](const Mark& mark) { return mark.colour == kBlack; });
}

/// Black ink as grey on white.
std::string greyPng(int width, int height, double scale, const EngravedScore& score,
                    const EngravedPage& page) {
    const int stride = (width + 3) / 4 * 4;
    const auto rowBytes = static_cast<std::size_t>(width), step = static_cast<std::size_t>(stride);
    std::vector<std::uint8_t> ink(step * static_cast<std::size_t>(height));
    if (!paintOn(ink.data(), CAIRO_FORMAT_A8, width, height, stride, scale, {}, score, page))
        return {};
    for (std::size_t row = 0; row < static_cast<std::size_t>(height); ++row)
        std::transform(ink.data() + row * step, ink.data() + row * step + rowBytes,
                       ink.data() + row * rowBytes,
                       [](std::uint8_t dark) { return static_cast<std::uint8_t>(255 - dark); });
    return pngOfGrey(width, height, ink);
}

std::string colouredPng(int width, int height, double scale, const EngravedScore& score,
                        const EngravedPage& page) {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    paintPixels(score, page, scale, 0, 0, width, height, pixels.data());
    std::vector<std::uint8_t> samples;
    samples.reserve(pixels.size() * 3);
    for (const std::uint32_t pixel : pixels)
        for (const int shift : {16, 8, 0})
            samples.push_back(static_cast<std::uint8_t>(pixel >> shift));
    return pngOfColours(width, height, samples);
}

cairo_status_t append(void* to, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(to)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}
} // namespace

std::unique_ptr<TextMeasure> fontMeasure() {
    return std::make_unique<FontMeasure>();
}

std::string paintingProblem() {
    const std::string& problem = cairo().complete() ? textProblem() : cairo().problem();
    return problem.empty() ? "" : "Pages can't be painted: " + problem + ".";
}

void paintPixels(const EngravedScore& score, const EngravedPage& page, double scale, int left, int top,
                 int width, int height, std::uint32_t* pixels) {
    if (width < 1 || height < 1)
        return;
    constexpr std::uint32_t white = 0xFFFFFFFF;
    std::fill_n(pixels, static_cast<std::size_t>(width) * static_cast<std::size_t>(height), white);
    if (cairo().complete() && scale > 0)
        paintOn(reinterpret_cast<unsigned char*>(pixels), CAIRO_FORMAT_ARGB32, width, height, width * 4,
                scale, {static_cast<double>(left), static_cast<double>(top)}, score, page);
}

std::string pngOf(const EngravedScore& score, const EngravedPage& page, double scale) {
    const double width = std::round(score.width * scale), height = std::round(score.height * scale);
    if (!paintingProblem().empty() || !(width >= 1 && height >= 1) || width > kLargestPicture ||
        height > kLargestPicture)
        return {};
    return (isBlack(page) ? greyPng : colouredPng)(static_cast<int>(width), static_cast<int>(height), scale,
                                                   score, page);
}

std::string svgOf(const EngravedScore& score, const EngravedPage& page) {
    FontMeasure measure;
    SvgPainter painter(score.width, score.height, page.caption, measure);
    paintPage(score, page, painter);
    return painter.document();
}

PagePlace ownPaper(const EngravedScore& score) {
    constexpr double points = 72.0 / 96;
    return {score.width * points, score.height * points, 0, 0, points};
}

PagePlace fitted(const EngravedScore& score, double paperWidth, double paperHeight) {
    if (score.width <= 0 || score.height <= 0)
        return {paperWidth, paperHeight, 0, 0};
    const double scale = std::min(paperWidth / score.width, paperHeight / score.height);
    return {paperWidth, paperHeight, (paperWidth - score.width * scale) / 2,
            (paperHeight - score.height * scale) / 2, scale};
}

std::optional<std::string> pdfOf(const EngravedScore& score, std::span<const int> order,
                                 const PagePlace& place, const std::string& title,
                                 const std::function<bool(int)>& goOn) {
    std::string file;
    if (!paintingProblem().empty())
        return file;
    const Surface surface(
        cairo().cairo_pdf_surface_create_for_stream(append, &file, place.paperWidth, place.paperHeight));
    cairo().cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, printable(title).c_str());
    // The same pages are the same file whenever it is made: a blank moment is left out.
    cairo().cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
    {
        const Context context(cairo().cairo_create(surface.get()));
        cairo().cairo_translate(context.get(), place.left, place.top);
        CairoPainter painter(context.get(), CairoPainter::Surface::Vectors, place.scale);
        for (const int page : order) {
            if (goOn && !goOn(page))
                return std::nullopt;
            paintPage(score, score.pages.at(static_cast<std::size_t>(page)), painter);
            painter.flush();
            cairo().cairo_show_page(context.get());
        }
    }
    cairo().cairo_surface_finish(surface.get());
    if (cairo().cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
        file.clear();
    return file;
}

} // namespace velmora::notation
