// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeyboardLayout.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <cstddef>

namespace velmora {

namespace {
/// Of the keys 0 to 43. The names are those of the places on an American keyboard, whatever they type.
constexpr std::array<int, kPianoKeys> kPositions{
    KEY_Z, KEY_S,   KEY_X,         KEY_D,          KEY_C,     KEY_V, KEY_G, KEY_B,
    KEY_H, KEY_N,   KEY_J,         KEY_M,          KEY_COMMA,                               //
    KEY_L, KEY_DOT, KEY_SEMICOLON, KEY_SLASH,      KEY_A,     KEY_F, KEY_K, KEY_APOSTROPHE, //
    KEY_Q, KEY_W,   KEY_E,         KEY_R,          KEY_T,     KEY_Y, KEY_U, KEY_I,
    KEY_O, KEY_P,   KEY_LEFTBRACE, KEY_RIGHTBRACE, //
    KEY_1, KEY_2,   KEY_3,         KEY_4,          KEY_5,     KEY_6, KEY_7, KEY_8,
    KEY_9, KEY_0,   KEY_MINUS};
/// The last is not on every keyboard.
constexpr std::array kSparePositions{KEY_EQUAL, KEY_BACKSLASH, KEY_GRAVE, KEY_102ND};

/// But for the first and the last they are what `fitScheme` makes of that layout; Nordic is Swedish and
/// Finnish, of which Danish and Norwegian differ in two letters. The last leaves the keys above its two rows
/// to the mouse.
constexpr std::array kShipped{
    ShippedScheme{"Built-in",
                  "built-in",
                  {
                      "Z", "S", "X", "D", "C", "V", "G", "B",  "H", "N", "J", "M", ",", //
                      "F", "G", "H", "J", "K", "L", ":", "\"",                          //
                      "Q", "W", "E", "R", "T", "Y", "U", "I",  "O", "P", "{", "}",      //
                      "1", "2", "3", "4", "5", "6", "7", "8",  "9", "0", "]",           //
                  }},
    ShippedScheme{"German",
                  "german",
                  {
                      "Y", "S", "X", "D", "C", "V", "G", "B", "H", "N", "J", "M", ",", //
                      "L", ".", "Ö", "-", "A", "F", "K", "Ä",                          //
                      "Q", "W", "E", "R", "T", "Z", "U", "I", "O", "P", "Ü", "+",      //
                      "1", "2", "3", "4", "5", "6", "7", "8", "9", "0", "ß",           //
                  }},
    ShippedScheme{"French",
                  "french",
                  {
                      "W", "S", "X",  "D", "C", "V", "G", "B", "H", "N", "J", ",", ";", //
                      "L", ":", "M",  "!", "Q", "F", "K", "Ù",                          //
                      "A", "Z", "E",  "R", "T", "Y", "U", "I", "O", "P", "=", "$",      //
                      "&", "É", "\"", "'", "(", "-", "È", "_", "Ç", "À", ")",           //
                  }},
    ShippedScheme{"Spanish",
                  "spanish",
                  {
                      "Z", "S", "X", "D", "C", "V", "G", "B", "H", "N", "J", "M", ",", //
                      "L", ".", "Ñ", "-", "A", "F", "K", "¡",                          //
                      "Q", "W", "E", "R", "T", "Y", "U", "I", "O", "P", "Ç", "+",      //
                      "1", "2", "3", "4", "5", "6", "7", "8", "9", "0", "'",           //
                  }},
    ShippedScheme{"Nordic",
                  "nordic",
                  {
                      "Z", "S", "X", "D", "C", "V", "G", "B", "H", "N", "J", "M", ",", //
                      "L", ".", "Ö", "-", "A", "F", "K", "Ä",                          //
                      "Q", "W", "E", "R", "T", "Y", "U", "I", "O", "P", "Å", "'",      //
                      "1", "2", "3", "4", "5", "6", "7", "8", "9", "0", "+",           //
                  }},
    ShippedScheme{"Dvorak",
                  "dvorak",
                  {
                      ";", "O", "Q", "E", "J", "K", "I", "X", "D", "B", "H", "M", "W", //
                      "N", "V", "S", "Z", "A", "U", "T", "-",                          //
                      "'", ",", ".", "P", "Y", "F", "G", "C", "R", "L", "/", "=",      //
                      "1", "2", "3", "4", "5", "6", "7", "8", "9", "0", "[",           //
                  }},
    ShippedScheme{"Two-row piano",
                  "two-row-piano",
                  {
                      "Z", "S", "X", "D", "C", "V", "G", "B", "H", "N", "J", "M", "Q", //
                      "2", "W", "3", "E", "R", "5", "T", "6",                          //
                      "Y", "7", "U", "I", "9", "O", "0", "P", "[", "=", "]", "",       //
                      "",  "",  "",  "",  "",  "",  "",  "",  "",  "",  "",            //
                  }},
};
} // namespace

std::span<const ShippedScheme> shippedSchemes() {
    return kShipped;
}

KeyScheme ShippedScheme::scheme() const {
    KeyScheme made;
    std::ranges::copy(labels, made.labels.begin());
    return made;
}

FittedScheme fitScheme(const std::function<TypedText(int position)>& typedBy) {
    FittedScheme fitted{};
    auto& labels = fitted.scheme.labels;
    const auto isFree = [&](const std::string& label) {
        return !label.empty() && std::ranges::find(labels, label) == labels.end();
    };
    const auto take = [&](std::size_t key, int position) {
        const TypedText typed = typedBy(position);
        // Of two letters with one capital the window system may not tell which was typed.
        const std::string& label = typed.capital.empty() ? typed.plain : typed.capital;
        if (!isFree(label))
            return false;
        labels[key] = label;
        fitted.positions[key] = position;
        return true;
    };
    for (std::size_t key = 0; key < kPositions.size(); ++key)
        take(key, kPositions[key]);
    for (std::size_t key = 0; key < kPositions.size(); ++key)
        if (labels[key].empty())
            static_cast<void>(
                std::ranges::any_of(kSparePositions, [&](int position) { return take(key, position); }));
    return fitted;
}

} // namespace velmora
