// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/KeyboardLayout.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

struct xkb_context;
struct xkb_keymap;

namespace velmora {

/// A layout of the computer keyboard by its names, as XKB knows them; blank ones are the system's defaults.
struct KeymapNames {
    std::string rules{};
    std::string model{};
    std::string layout{}; ///< several with commas between; the first counts
    std::string variant{};
    std::string options{};
    bool operator==(const KeymapNames&) const = default;

    /// Those of the environment, `XKB_DEFAULT_LAYOUT` and so on; where it names no layout, those of a file as
    /// `/etc/default/keyboard` is. All are blank where that can't be read.
    [[nodiscard]] static KeymapNames ofSystem(const std::filesystem::path& file = "/etc/default/keyboard");
};

/// What each key of the computer types, by libxkbcommon.
class Keymap {
public:
    /// Nothing if there is no such layout, or the library is not there.
    [[nodiscard]] static std::optional<Keymap> of(const KeymapNames& names);
    struct Made {
        xkb_keymap* keymap = nullptr; ///< null for none; it is ours then
        unsigned group = 0;           ///< of the layouts in it, the one in use
    };
    /// The same of what another library makes within a context of ours.
    [[nodiscard]] static std::optional<Keymap> madeBy(const std::function<Made(xkb_context*)>& make);

    /// What the key at a position (Linux's code of it) types without Shift.
    [[nodiscard]] TypedText typedBy(int position) const;

private:
    struct Freed {
        void operator()(xkb_keymap* keymap) const;
    };
    explicit Keymap(Made made) : keymap_(made.keymap), group_(made.group) {}

    std::unique_ptr<xkb_keymap, Freed> keymap_;
    unsigned group_;
};

} // namespace velmora
