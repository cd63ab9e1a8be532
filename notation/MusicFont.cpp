// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/MusicFont.h"

#include "LateNames.h"
#include "base/LateLibrary.h"
#include "notation/OutlineShapes.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <filesystem>
#include <string>
#include <system_error>

namespace velmora::notation {

namespace {
constexpr const char* kFamily = "Noto Music";
/// Where its package puts it: fontconfig, which looks through all fonts first, is asked only if it isn't
/// there.
constexpr const char* kUsualFile = "/usr/share/fonts/truetype/noto/NotoMusic-Regular.ttf";
/// The units that the sizes here are told in.
constexpr double kUnits = 1000;

struct FreeTypeLibrary : LateLibrary {
    FreeTypeLibrary() : LateLibrary(kFreeTypeLibrary) {}
    VELMORA_LATE_CALL(FT_Done_Face);
    VELMORA_LATE_CALL(FT_Done_FreeType);
    VELMORA_LATE_CALL(FT_Get_Char_Index);
    VELMORA_LATE_CALL(FT_Init_FreeType);
    VELMORA_LATE_CALL(FT_Load_Glyph);
    VELMORA_LATE_CALL(FT_New_Face);
    VELMORA_LATE_CALL(FT_Outline_Decompose);
};
const FreeTypeLibrary& freeType() {
    static const FreeTypeLibrary only;
    return only;
}

struct FontConfigLibrary : LateLibrary {
    FontConfigLibrary() : LateLibrary(kFontConfigLibrary) {}
    VELMORA_LATE_CALL(FcConfigSubstitute);
    VELMORA_LATE_CALL(FcDefaultSubstitute);
    VELMORA_LATE_CALL(FcFontMatch);
    VELMORA_LATE_CALL(FcNameParse);
    VELMORA_LATE_CALL(FcPatternDestroy);
    VELMORA_LATE_CALL(FcPatternGetString);
};

/// The file of the family; blank if another one would stand in for it.
std::string fileByFontconfig() {
    static const FontConfigLibrary config;
    if (!config.complete())
        return {};
    FcPattern* const wanted = config.FcNameParse(reinterpret_cast<const FcChar8*>(kFamily));
    config.FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
    config.FcDefaultSubstitute(wanted);
    FcResult result = FcResultNoMatch;
    FcPattern* const match = config.FcFontMatch(nullptr, wanted, &result);
    std::string file;
    FcChar8* text = nullptr;
    if (match != nullptr && config.FcPatternGetString(match, FC_FAMILY, 0, &text) == FcResultMatch &&
        std::string(reinterpret_cast<const char*>(text)) == kFamily &&
        config.FcPatternGetString(match, FC_FILE, 0, &text) == FcResultMatch)
        file = reinterpret_cast<const char*>(text);
    if (match != nullptr)
        config.FcPatternDestroy(match);
    config.FcPatternDestroy(wanted);
    return file;
}

std::string fontFile() {
    std::error_code none;
    if (std::filesystem::is_regular_file(kUsualFile, none))
        return kUsualFile;
    return fileByFontconfig();
}

/// Takes what FreeType tells of an outline.
struct Taker {
    Outline outline;
    Point pen;
    double unit;

    [[nodiscard]] Point point(const FT_Vector* of) const {
        return {static_cast<double>(of->x) * unit, -static_cast<double>(of->y) * unit};
    }
    void close() {
        if (!outline.empty())
            outline.push_back({PathStep::Kind::Close, {}});
    }
    static Taker& of(void* self) { return *static_cast<Taker*>(self); }

    static int move(const FT_Vector* to, void* self) {
        Taker& taker = of(self);
        taker.close();
        taker.pen = taker.point(to);
        taker.outline.push_back({PathStep::Kind::Move, {taker.pen}});
        return 0;
    }
    static int line(const FT_Vector* to, void* self) {
        Taker& taker = of(self);
        taker.pen = taker.point(to);
        taker.outline.push_back({PathStep::Kind::Line, {taker.pen}});
        return 0;
    }
    /// The font's curves have one handle each.
    static int conic(const FT_Vector* handle, const FT_Vector* to, void* self) {
        Taker& taker = of(self);
        const Point middle = taker.point(handle), end = taker.point(to);
        const auto towards = [&](Point from) {
            return Point{from.x + (middle.x - from.x) * 2 / 3, from.y + (middle.y - from.y) * 2 / 3};
        };
        taker.outline.push_back({PathStep::Kind::Curve, {towards(taker.pen), towards(end), end}});
        taker.pen = end;
        return 0;
    }
    static int cubic(const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* self) {
        Taker& taker = of(self);
        taker.pen = taker.point(to);
        taker.outline.push_back(
            {PathStep::Kind::Curve, {taker.point(first), taker.point(second), taker.pen}});
        return 0;
    }
};
} // namespace

MusicFont::MusicFont() {
    if (!freeType().complete())
        return;
    FT_Library library = nullptr;
    if (freeType().FT_Init_FreeType(&library) != 0)
        return;
    library_ = library;
    FT_Face face = nullptr;
    const std::string file = fontFile();
    if (!file.empty() && freeType().FT_New_Face(library, file.c_str(), 0, &face) == 0 &&
        face->units_per_EM != 0)
        face_ = face;
}

MusicFont::~MusicFont() {
    if (face_ != nullptr)
        freeType().FT_Done_Face(static_cast<FT_Face>(face_));
    if (library_ != nullptr)
        freeType().FT_Done_FreeType(static_cast<FT_Library>(library_));
}

Outline MusicFont::shape(char32_t character) const {
    if (face_ == nullptr)
        return {};
    const auto face = static_cast<FT_Face>(face_);
    const FT_UInt index = freeType().FT_Get_Char_Index(face, character);
    if (index == 0 || freeType().FT_Load_Glyph(face, index, FT_LOAD_NO_SCALE) != 0 ||
        face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return {};
    Taker taker{{}, {}, kUnits / face->units_per_EM};
    const FT_Outline_Funcs funcs{Taker::move, Taker::line, Taker::conic, Taker::cubic, 0, 0};
    if (freeType().FT_Outline_Decompose(&face->glyph->outline, &funcs, &taker) != 0)
        return {};
    taker.close();
    return turnedRight(taker.outline);
}

} // namespace velmora::notation
