// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/SettingsStore.h"

#include <array>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <variant>

/// The settings that the program keeps. `read(store, settings::NumNotes)`, `save(store, settings::NumNotes,
/// 1200)`.
namespace velmora::settings {

/// What a stored value beyond an end of its range counts as.
enum class Beyond : std::uint8_t { TheEnd, Nothing };

/// The values that a setting may have, both ends included; by default all of its type. Texts have none.
template<class T>
struct Range {
    T least = std::numeric_limits<T>::lowest();
    T most = std::numeric_limits<T>::max();
    Beyond below = Beyond::TheEnd;
    Beyond above = Beyond::TheEnd;
};

/// A key with the type of its value, the value to go by where there is none, and the values it may have.
template<class T>
struct Setting {
    std::string_view key;
    T fallback{};
    Range<T> range{};
    std::string_view section = "Settings";
};

/// What reading gives: text outlives the table.
template<class T>
using ValueOf = std::conditional_t<std::is_same_v<T, std::string_view>, std::string, T>;

/// The stored value, whatever the setting's range; the fallback if there is none, it isn't of the type, or it
/// is out of the type's range. Fractions of whole numbers are rounded, halves to even.
template<class T>
[[nodiscard]] ValueOf<T> stored(const SettingsStore& store, const Setting<T>& setting);
/// The same within the setting's range, a value beyond counting as the range says.
template<class T>
[[nodiscard]] ValueOf<T> read(const SettingsStore& store, const Setting<T>& setting);
/// For a setting whose fallback is known at run time only, such as a width that depends on the screen's.
template<class T>
[[nodiscard]] ValueOf<T> read(const SettingsStore& store, const Setting<T>& setting,
                              std::type_identity_t<T> fallback) {
    return read(store, Setting<T>{setting.key, fallback, setting.range, setting.section});
}
template<class T>
void save(SettingsStore& store, const Setting<T>& setting, std::type_identity_t<T> value);

using Int16 = Setting<std::int16_t>;
using Int32 = Setting<std::int32_t>;
using Float = Setting<float>;
using Boolean = Setting<bool>;
using Text = Setting<std::string_view>;

// A name is its key, with underscores for blanks. Those without a fallback read 0, false or blank.
inline constexpr Int16 Intrumentval{"Intrumentval", 24};
inline constexpr Int16 Intrumentval2{"Intrumentval2", 128};
inline constexpr Text Inst_Name{"Inst Name"};
inline constexpr Int16 Volume{"Volume", 127, {.least = 0, .most = 127}}; // of the keyboard
inline constexpr Boolean CopyonlyOneTrack{"CopyonlyOneTrack", false};
inline constexpr Int32 NumNotes{"NumNotes", 1000, {.least = 1, .most = 200'000, .below = Beyond::Nothing}};
inline constexpr Int16 Notes_per_measure{"Notes per measure", 16, {.least = 1, .below = Beyond::Nothing}};
inline constexpr Int16 Beats_per_measure{"Beats per measure", 4, {.least = 1, .below = Beyond::Nothing}};
inline constexpr Int16 Type_of_note{"Type of note", 4, {.least = 1, .below = Beyond::Nothing}};
inline constexpr Int16 Line_Height{"Line_Height", 8, {.least = 4, .most = 40}};
inline constexpr Int16 Show_Sharp_guides{"Show_Sharp_guides", 1};
inline constexpr Int16 Show_Bass_staff{"Show Bass staff", 1};
inline constexpr Int16 Show_Treble_staff{"Show Treble staff", 1};
inline constexpr Int16 Notationstyle{"Notationstyle", 0};
inline constexpr Boolean Accidentals{"Accidentals", true};
inline constexpr Boolean Percussion{"Percussion", true};
inline constexpr Boolean Playing_position{"Playing position", true};
inline constexpr Int16 Classic{"Classic", 0};
inline constexpr Int16 Devices{"Devices", -1};
inline constexpr Int16 Skin_type{"Skin type", 1, {.least = 1, .most = 8}};
inline constexpr Int16 Skin_buttons{
    "Skin buttons", 1, {.least = 1, .most = 6, .below = Beyond::Nothing, .above = Beyond::Nothing}};
inline constexpr Int16 ToolText_type{"ToolText type", 1};
inline constexpr Boolean Editing_Toolbar{"Editing Toolbar"};
inline constexpr Boolean Synthup{"Synthup"};
inline constexpr Boolean frmsetup{"frmsetup", true};
inline constexpr Float form1_left{"form1 left", 100};
inline constexpr Float form1_top{"form1 top", 200};
inline constexpr Float form1_width{"form1 width"};   // read: the screen's less 200
inline constexpr Float form1_Width{"form1 Width"};   // written and, deliberately, never read
inline constexpr Float form1_Height{"form1 Height"}; // the screen's less 400
inline constexpr Float frmsetup_left{"frmsetup left"};
inline constexpr Float frmsetup_top{"frmsetup top"};
inline constexpr Boolean frmsetup_folded{"frmsetup folded", false};
inline constexpr Float help_left{"help left"};
inline constexpr Float help_top{"help top"};
inline constexpr Float help_Width{"help Width"};
inline constexpr Float help_Height{"help Height"};
inline constexpr Float record_left{"record left"};
inline constexpr Float record_top{"record top"};
inline constexpr Float formS_left{"formS left"};
inline constexpr Float formS_top{"formS top"};
inline constexpr Float formS_width{"formS width"}; // read: the composing window's less 200
inline constexpr Float formS_Width{"formS Width"}; // written and, deliberately, never read
inline constexpr Float formS_Height{"formS Height"};
inline constexpr Text keyfile{"keyfile"};
inline constexpr Float frmscore_left{"frmscore left", 100};
inline constexpr Float frmscore_top{"frmscore top", 200};
inline constexpr Float frmscore_Width{"frmscore Width"};
inline constexpr Float frmscore_Height{"frmscore Height"};
inline constexpr Float Wiz_left{"Wiz left"};
inline constexpr Float Wiz_top{"Wiz top"};
inline constexpr Text Show_tips{"Show tips", "1"};
inline constexpr Int32 NumBytes{"NumBytes", 10000};
inline constexpr Text Delete_WAV{"Delete WAV", "1"};
inline constexpr Text autoencode{"autoencode", "1"};
inline constexpr Text Show_note_position{"Show note position", "1"};
inline constexpr Text MP3_bitrate{"MP3 bitrate", "11"};
inline constexpr Text MP3_quality{"MP3 quality", "9"};
inline constexpr Text WAV_format{"WAV format"};
/// The newest first.
inline constexpr auto kRecentFiles = std::to_array<Text>({
    {"Recent file 1"},
    {"Recent file 2"},
    {"Recent file 3"},
    {"Recent file 4"},
    {"Recent file 5"},
    {"Recent file 6"},
    {"Recent file 7"},
    {"Recent file 8"},
});
inline constexpr Int16 BarWidth{"BarWidth", 6, {}, "ScoreSettings"};
inline constexpr Int16 HeaderHeight{"HeaderHeight", 6, {}, "ScoreSettings"};
inline constexpr Int16 SpacerHeight{"SpacerHeight", 6, {}, "ScoreSettings"};
inline constexpr Int16 JoinNotes{"JoinNotes", 0, {}, "ScoreSettings"};
inline constexpr Int16 NewScore{"NewScore", 1, {}, "ScoreSettings"};
inline constexpr Int16 NumDrums{"NumDrums", 0, {}, "ScoreSettings"};
/// The page that was chosen by itself; negative while it is the one of the manners.
inline constexpr Int16 ClassicPage{"ClassicPage", -1, {}, "ScoreSettings"};
inline constexpr Boolean LearnToRead{"LearnToRead", false, {}, "ScoreSettings"};
inline constexpr Boolean TwoVoices{"TwoVoices", false, {}, "ScoreSettings"};
inline constexpr Boolean Step_entry{"Step entry", false};
inline constexpr Int16 Step_length{"Step length", 0, {.least = 0, .most = 64}}; // positions; 0 for a beat

using AnySetting = std::variant<Int16, Int32, Float, Boolean, Text>;

/// All of them, in the order above.
inline constexpr auto kAll = std::to_array<AnySetting>({
    Intrumentval,      Intrumentval2,   Inst_Name,         Volume,
    CopyonlyOneTrack,  NumNotes,        Notes_per_measure, Beats_per_measure,
    Type_of_note,      Line_Height,     Show_Sharp_guides, Show_Bass_staff,
    Show_Treble_staff, Notationstyle,   Accidentals,       Percussion,
    Playing_position,  Classic,         Devices,           Skin_type,
    Skin_buttons,      ToolText_type,   Editing_Toolbar,   Synthup,
    frmsetup,          form1_left,      form1_top,         form1_width,
    form1_Width,       form1_Height,    frmsetup_left,     frmsetup_top,
    frmsetup_folded,   help_left,       help_top,          help_Width,
    help_Height,       record_left,     record_top,        formS_left,
    formS_top,         formS_width,     formS_Width,       formS_Height,
    keyfile,           frmscore_left,   frmscore_top,      frmscore_Width,
    frmscore_Height,   Wiz_left,        Wiz_top,           Show_tips,
    NumBytes,          Delete_WAV,      autoencode,        Show_note_position,
    MP3_bitrate,       MP3_quality,     WAV_format,        kRecentFiles[0],
    kRecentFiles[1],   kRecentFiles[2], kRecentFiles[3],   kRecentFiles[4],
    kRecentFiles[5],   kRecentFiles[6], kRecentFiles[7],   BarWidth,
    HeaderHeight,      SpacerHeight,    JoinNotes,         NewScore,
    NumDrums,          ClassicPage,     LearnToRead,       TwoVoices,
    Step_entry,        Step_length,
});
static_assert(kAll.size() == 78);

} // namespace velmora::settings
