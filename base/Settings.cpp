// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Settings.h"

#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace velmora::settings {

namespace {
bool isWord(std::string_view text, std::string_view lowerCaseWord) {
    return std::ranges::equal(text, lowerCaseWord, {}, [](char c) { return toLower(c); });
}

/// The number that the whole text is; no locale has a say in it.
std::optional<double> number(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

template<class T>
std::optional<T> converted(std::string_view text) {
    const auto value = number(text);
    if (!value)
        return std::nullopt;
    const double rounded = std::is_integral_v<T> ? std::nearbyint(*value) : *value;
    if (rounded < std::numeric_limits<T>::lowest() || rounded > std::numeric_limits<T>::max())
        return std::nullopt;
    return static_cast<T>(rounded);
}

template<>
std::optional<bool> converted<bool>(std::string_view text) {
    if (isWord(text, "true") || isWord(text, "false"))
        return isWord(text, "true");
    const auto value = number(text);
    return value ? std::optional(*value != 0) : std::nullopt;
}

std::string textOf(std::string_view value) {
    return std::string(value);
}

std::string textOf(bool value) {
    return value ? "True" : "False";
}

template<class T>
std::string textOf(T value) {
    std::array<char, 48> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}
} // namespace

template<class T>
ValueOf<T> stored(const SettingsStore& store, const Setting<T>& setting) {
    if constexpr (std::is_same_v<T, std::string_view>)
        return store.GetSetting(setting.section, setting.key, setting.fallback);
    else
        return converted<T>(trimmed(store.GetSetting(setting.section, setting.key, "")))
            .value_or(setting.fallback);
}

template<class T>
ValueOf<T> read(const SettingsStore& store, const Setting<T>& setting) {
    ValueOf<T> value = stored(store, setting);
    if constexpr (!std::is_same_v<T, std::string_view>) {
        const Range<T>& range = setting.range;
        if (value < range.least)
            return range.below == Beyond::TheEnd ? range.least : setting.fallback;
        if (value > range.most)
            return range.above == Beyond::TheEnd ? range.most : setting.fallback;
    }
    return value;
}

template<class T>
void save(SettingsStore& store, const Setting<T>& setting, std::type_identity_t<T> value) {
    store.SaveSetting(setting.section, setting.key, textOf(value));
}

template std::int16_t stored(const SettingsStore&, const Int16&);
template std::int32_t stored(const SettingsStore&, const Int32&);
template float stored(const SettingsStore&, const Float&);
template bool stored(const SettingsStore&, const Boolean&);
template std::string stored(const SettingsStore&, const Text&);
template std::int16_t read(const SettingsStore&, const Int16&);
template std::int32_t read(const SettingsStore&, const Int32&);
template float read(const SettingsStore&, const Float&);
template bool read(const SettingsStore&, const Boolean&);
template std::string read(const SettingsStore&, const Text&);
template void save(SettingsStore&, const Int16&, std::int16_t);
template void save(SettingsStore&, const Int32&, std::int32_t);
template void save(SettingsStore&, const Float&, float);
template void save(SettingsStore&, const Boolean&, bool);
template void save(SettingsStore&, const Text&, std::string_view);

} // namespace velmora::settings
