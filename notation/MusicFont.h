// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/PagePainter.h"

namespace velmora::notation {

/// The installed music font's own shapes.
class MusicFont {
public:
    MusicFont();
    MusicFont(const MusicFont&) = delete;
    MusicFont& operator=(const MusicFont&) = delete;
    ~MusicFont();

    [[nodiscard]] bool found() const { return face_ != nullptr; }
    /// In the font's units, a staff space `kFontSpace`, y downwards from the staff's lowest line; empty where
    /// the font hasn't got it.
    [[nodiscard]] Outline shape(char32_t character) const;

private:
    void* library_ = nullptr;
    void* face_ = nullptr;
};

inline constexpr double kFontSpace = 250;

} // namespace velmora::notation
