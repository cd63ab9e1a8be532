// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace velmora {

inline constexpr std::string_view kApplicationName = "VelmoraRPT 3.0.0";

/// Values by section and key.
using SettingsMap = std::map<std::pair<std::string, std::string>, std::string>;

/// What the user chose last, kept between runs: any text under a section and a key. Case counts in both.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// The stored text, or @p fallback where there is none.
    [[nodiscard]] virtual std::string GetSetting(std::string_view section, std::string_view key,
                                                 std::string_view fallback) const = 0;
    /// Stores at once. A store that can't keep the value for the next run keeps it for this one.
    virtual void SaveSetting(std::string_view section, std::string_view key, std::string_view value) = 0;
    /// Stores several; here one after the other.
    virtual void SaveSettings(const SettingsMap& changes);
};

/// Values that belong together: what is saved here goes to the store in one step, when this ends. That costs
/// one writing of a file, and nobody finds half of them.
class SettingsBatch : public SettingsStore {
public:
    explicit SettingsBatch(SettingsStore& store) : store_(store) {}
    ~SettingsBatch() override { store_.SaveSettings(values_); }
    SettingsBatch(const SettingsBatch&) = delete;
    SettingsBatch& operator=(const SettingsBatch&) = delete;

    [[nodiscard]] std::string GetSetting(std::string_view section, std::string_view key,
                                         std::string_view fallback) const override;
    void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;

private:
    SettingsStore& store_;
    SettingsMap values_;
};

/// The text of a settings file: a line `section/key=value` each, in which `\hh` is the byte of that
/// hexadecimal number. As every line stands for itself, a damaged one costs no other.
[[nodiscard]] std::string formatSettings(const SettingsMap& values);
/// Reads it back. Lines that are no setting are passed over; blanks around key and value don't count; of two
/// lines for one key the later counts.
[[nodiscard]] SettingsMap parseSettings(std::string_view text);

/// The store in a text file. Other processes may write to the file as well: each save changes its own key
/// only.
class SettingsFile : public SettingsStore {
public:
    /// Reads the file; one that is missing holds nothing and is made by the first save, with its folder.
    explicit SettingsFile(std::filesystem::path path);

    [[nodiscard]] std::string GetSetting(std::string_view section, std::string_view key,
                                         std::string_view fallback) const override;
    /// After a failure the old file stands as it was, and the next save tries again with this value too.
    void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
    /// With one replacement of the file.
    void SaveSettings(const SettingsMap& changes) override;

private:
    bool readFile();

    std::filesystem::path path_;
    SettingsMap stored_;  // as last seen in the file
    SettingsMap unsaved_; // not yet in the file; goes before it
};

} // namespace velmora
