// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Keymap.h"

#include "LateNames.h"
#include "base/LateLibrary.h"
#include "base/QtText.h"

#include <xkbcommon/xkbcommon.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <string_view>
#include <utility>

namespace velmora {

namespace {
/// XKB counts keys from the lowest code of the X protocol.
constexpr int kFirstKeycode = 8;

struct XkbLibrary : LateLibrary {
    XkbLibrary() : LateLibrary(kXkbLibrary) {}
    VELMORA_LATE_CALL(xkb_context_new);
    VELMORA_LATE_CALL(xkb_context_set_log_level);
    VELMORA_LATE_CALL(xkb_context_unref);
    VELMORA_LATE_CALL(xkb_keymap_key_get_syms_by_level);
    VELMORA_LATE_CALL(xkb_keymap_new_from_names);
    VELMORA_LATE_CALL(xkb_keymap_num_layouts_for_key);
    VELMORA_LATE_CALL(xkb_keymap_unref);
    VELMORA_LATE_CALL(xkb_keysym_to_utf8);
};

/// Loaded where it is first called.
const XkbLibrary& xkb() {
    static const XkbLibrary library;
    return library;
}

struct ContextFreed {
    void operator()(xkb_context* context) const { xkb().xkb_context_unref(context); }
};

/// Blank for a key that types no character that can be seen: a dead one, say.
std::string characterOf(xkb_keysym_t symbol) {
    std::array<char, 8> bytes{};
    if (xkb().xkb_keysym_to_utf8(symbol, bytes.data(), bytes.size()) <= 0)
        return {};
    const std::string text(bytes.data());
    const bool isSeen = text.size() > 1 || (text[0] > ' ' && text[0] < 0x7F);
    return isSeen ? text : std::string();
}

/// As the window finds the other case of what is typed: a sharp s has none.
std::string capitalOf(const std::string& text) {
    const QString plain = toQString(text);
    const QString capital = plain.toUpper();
    return capital.size() == plain.size() ? capital.toStdString() : std::string();
}

std::string withoutQuotes(std::string_view text) {
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front())
        text = text.substr(1, text.size() - 2);
    return std::string(text);
}
} // namespace

KeymapNames KeymapNames::ofSystem(const std::filesystem::path& file) {
    // Blank fields are filled in from the environment by the library.
    if (const char* layout = std::getenv("XKB_DEFAULT_LAYOUT"); layout != nullptr && *layout != '\0')
        return {};
    KeymapNames names;
    const std::array<std::pair<std::string_view, std::string*>, 4> fields{{
        {"XKBMODEL=", &names.model},
        {"XKBLAYOUT=", &names.layout},
        {"XKBVARIANT=", &names.variant},
        {"XKBOPTIONS=", &names.options},
    }};
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);)
        for (const auto& [key, field] : fields)
            if (line.starts_with(key))
                *field = withoutQuotes(std::string_view(line).substr(key.size()));
    return names;
}

void Keymap::Freed::operator()(xkb_keymap* keymap) const {
    xkb().xkb_keymap_unref(keymap);
}

std::optional<Keymap> Keymap::madeBy(const std::function<Made(xkb_context*)>& make) {
    if (!xkb().complete())
        return std::nullopt;
    const std::unique_ptr<xkb_context, ContextFreed> context(xkb().xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context)
        return std::nullopt;
    // A layout that there is not is said by giving nothing.
    xkb().xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    const Made made = make(context.get());
    if (made.keymap == nullptr)
        return std::nullopt;
    return Keymap(made);
}

std::optional<Keymap> Keymap::of(const KeymapNames& names) {
    const auto make = [&](xkb_context* context) {
        const auto text = [](const std::string& name) { return name.empty() ? nullptr : name.c_str(); };
        const xkb_rule_names rules{.rules = text(names.rules),
                                   .model = text(names.model),
                                   .layout = text(names.layout),
                                   .variant = text(names.variant),
                                   .options = text(names.options)};
        return Made{xkb().xkb_keymap_new_from_names(context, &rules, XKB_KEYMAP_COMPILE_NO_FLAGS)};
    };
    return madeBy(make);
}

TypedText Keymap::typedBy(int position) const {
    const auto code = static_cast<xkb_keycode_t>(position + kFirstKeycode);
    // Keys that are alike in all layouts have one.
    const auto layouts = xkb().xkb_keymap_num_layouts_for_key(keymap_.get(), code);
    if (layouts == 0)
        return {};
    const xkb_keysym_t* symbols = nullptr;
    const int count =
        xkb().xkb_keymap_key_get_syms_by_level(keymap_.get(), code, group_ % layouts, 0, &symbols);
    if (count != 1)
        return {};
    const std::string plain = characterOf(symbols[0]);
    return {.plain = plain, .capital = capitalOf(plain)};
}

} // namespace velmora
