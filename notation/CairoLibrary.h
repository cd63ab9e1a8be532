// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/LateLibrary.h"

#include <cairo-pdf.h>
#include <cairo.h>
#include <pango/pangocairo.h>

namespace velmora::notation {

/// What pages are painted with.
struct CairoLibrary : LateLibrary {
    CairoLibrary();
    VELMORA_LATE_CALL(cairo_append_path);
    VELMORA_LATE_CALL(cairo_close_path);
    VELMORA_LATE_CALL(cairo_create);
    VELMORA_LATE_CALL(cairo_curve_to);
    VELMORA_LATE_CALL(cairo_destroy);
    VELMORA_LATE_CALL(cairo_fill);
    VELMORA_LATE_CALL(cairo_font_options_create);
    VELMORA_LATE_CALL(cairo_font_options_destroy);
    VELMORA_LATE_CALL(cairo_font_options_set_antialias);
    VELMORA_LATE_CALL(cairo_font_options_set_hint_metrics);
    VELMORA_LATE_CALL(cairo_font_options_set_hint_style);
    VELMORA_LATE_CALL(cairo_identity_matrix);
    VELMORA_LATE_CALL(cairo_image_surface_create_for_data);
    VELMORA_LATE_CALL(cairo_line_to);
    VELMORA_LATE_CALL(cairo_move_to);
    VELMORA_LATE_CALL(cairo_new_path);
    VELMORA_LATE_CALL(cairo_paint);
    VELMORA_LATE_CALL(cairo_pdf_surface_create_for_stream);
    VELMORA_LATE_CALL(cairo_pdf_surface_set_metadata);
    VELMORA_LATE_CALL(cairo_recording_surface_create);
    VELMORA_LATE_CALL(cairo_rectangle);
    VELMORA_LATE_CALL(cairo_restore);
    VELMORA_LATE_CALL(cairo_save);
    VELMORA_LATE_CALL(cairo_scale);
    VELMORA_LATE_CALL(cairo_set_line_width);
    VELMORA_LATE_CALL(cairo_set_source_rgb);
    VELMORA_LATE_CALL(cairo_set_source_surface);
    VELMORA_LATE_CALL(cairo_show_page);
    VELMORA_LATE_CALL(cairo_status);
    VELMORA_LATE_CALL(cairo_stroke);
    VELMORA_LATE_CALL(cairo_surface_destroy);
    VELMORA_LATE_CALL(cairo_surface_finish);
    VELMORA_LATE_CALL(cairo_surface_flush);
    VELMORA_LATE_CALL(cairo_surface_status);
    VELMORA_LATE_CALL(cairo_translate);
};
[[nodiscard]] const CairoLibrary& cairo();

/// What sets texts, in whatever script. Pages without text never need it.
struct PangoLibrary : LateLibrary {
    PangoLibrary();
    VELMORA_LATE_CALL(pango_font_description_free);
    VELMORA_LATE_CALL(pango_font_description_new);
    VELMORA_LATE_CALL(pango_font_description_set_absolute_size);
    VELMORA_LATE_CALL(pango_font_description_set_family);
    VELMORA_LATE_CALL(pango_font_description_set_style);
    VELMORA_LATE_CALL(pango_font_description_set_weight);
    VELMORA_LATE_CALL(pango_font_map_create_context);
    VELMORA_LATE_CALL(pango_layout_get_baseline);
    VELMORA_LATE_CALL(pango_layout_get_size);
    VELMORA_LATE_CALL(pango_layout_new);
    VELMORA_LATE_CALL(pango_layout_set_font_description);
    VELMORA_LATE_CALL(pango_layout_set_single_paragraph_mode);
    VELMORA_LATE_CALL(pango_layout_set_text);
};
struct PangoCairoLibrary : LateLibrary {
    PangoCairoLibrary();
    VELMORA_LATE_CALL(pango_cairo_context_set_font_options);
    VELMORA_LATE_CALL(pango_cairo_font_map_get_default);
    VELMORA_LATE_CALL(pango_cairo_show_layout);
};
struct GObjectLibrary : LateLibrary {
    GObjectLibrary();
    VELMORA_LATE_CALL(g_object_unref);
};
[[nodiscard]] const PangoLibrary& pango();
[[nodiscard]] const PangoCairoLibrary& pangoCairo();
[[nodiscard]] const GObjectLibrary& gobject();

/// Why texts can't be set, as the end of a sentence; blank if they can.
[[nodiscard]] const std::string& textProblem();

} // namespace velmora::notation
