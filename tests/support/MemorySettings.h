// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/SettingsStore.h"

namespace velmora {

/// A store that forgets. What was saved may be looked at and set in `values`.
class MemorySettings : public SettingsStore {
public:
    [[nodiscard]] std::string GetSetting(std::string_view section, std::string_view key,
                                         std::string_view fallback) const override {
        const auto found = values.find({std::string(section), std::string(key)});
        return found == values.end() ? std::string(fallback) : found->second;
    }
    void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override {
        values.insert_or_assign({std::string(section), std::string(key)}, std::string(value));
    }

    SettingsMap values;
};

} // namespace velmora
