// SPDX-License-Identifier: GPL-2.0-or-later
// Any text is read without harm, what was read is written so that it is read back alike, and every setting
// can be read from any text.
#include "base/Settings.h"

#include <cstdlib>

using namespace velmora;

namespace {
/// A store in which every key holds the same text.
class OneValueStore : public SettingsStore {
public:
    explicit OneValueStore(std::string_view value) : value_(value) {}
    std::string GetSetting(std::string_view, std::string_view, std::string_view) const override {
        return std::string(value_);
    }
    void SaveSetting(std::string_view, std::string_view, std::string_view) override {}

private:
    std::string_view value_;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const SettingsMap values = parseSettings(text);
    if (parseSettings(formatSettings(values)) != values)
        std::abort();
    const OneValueStore store(text);
    for (const settings::AnySetting& any : settings::kAll)
        std::visit(
            [&](const auto& setting) {
                const auto value = read(store, setting);
                if constexpr (std::is_arithmetic_v<decltype(setting.fallback)>) {
                    if (value < setting.range.least || value > setting.range.most)
                        std::abort();
                }
            },
            any);
    return 0;
}
