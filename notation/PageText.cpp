// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PageText.h"

#include "notation/PrintableText.h"

#include <algorithm>

namespace velmora::notation {

namespace {
constexpr double kPixelsPerPoint = 96.0 / 72;
constexpr double kLargestPoints = 2000;

PangoLayout* newLayout() {
    if (!textProblem().empty() || !cairo().complete())
        return nullptr;
    PangoContext* const context =
        pango().pango_font_map_create_context(pangoCairo().pango_cairo_font_map_get_default());
    // Widths that a screen's pixels would round differ from those on paper.
    cairo_font_options_t* const options = cairo().cairo_font_options_create();
    cairo().cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo().cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo().cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    pangoCairo().pango_cairo_context_set_font_options(context, options);
    cairo().cairo_font_options_destroy(options);
    PangoLayout* const layout = pango().pango_layout_new(context);
    gobject().g_object_unref(context);
    pango().pango_layout_set_single_paragraph_mode(layout, TRUE);
    return layout;
}

void setStyle(PangoLayout* layout, const TextStyle& style) {
    PangoFontDescription* const font = pango().pango_font_description_new();
    pango().pango_font_description_set_family(font, printable(style.family).c_str());
    pango().pango_font_description_set_absolute_size(font, std::clamp(style.points, 0.1, kLargestPoints) *
                                                               kPixelsPerPoint * PANGO_SCALE);
    pango().pango_font_description_set_weight(font, style.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango().pango_font_description_set_style(font, style.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    pango().pango_layout_set_font_description(layout, font);
    pango().pango_font_description_free(font);
}
} // namespace

PageText::PageText() : layout_(newLayout()) {
    if (layout_ != nullptr)
        setStyle(layout_, style_);
}

PageText::~PageText() {
    if (layout_ != nullptr)
        gobject().g_object_unref(layout_);
}

void PageText::set(std::string_view text, const TextStyle& style) {
    if (!(style == style_)) {
        setStyle(layout_, style);
        style_ = style;
    }
    const std::string clean = printable(text);
    pango().pango_layout_set_text(layout_, clean.data(), static_cast<int>(clean.size()));
}

TextExtent PageText::extent(std::string_view text, const TextStyle& style) {
    if (layout_ == nullptr)
        return PlainTextMeasure().extent(text, style);
    set(text, style);
    int width = 0, height = 0;
    pango().pango_layout_get_size(layout_, &width, &height);
    const double unit = 1.0 / PANGO_SCALE;
    return {width * unit, height * unit, pango().pango_layout_get_baseline(layout_) * unit};
}

void PageText::show(cairo_t* on, Point at, std::string_view text, const TextStyle& style) {
    if (layout_ == nullptr || text.empty())
        return;
    set(text, style);
    cairo().cairo_move_to(on, at.x, at.y);
    pangoCairo().pango_cairo_show_layout(on, layout_);
    cairo().cairo_new_path(on);
}

} // namespace velmora::notation
