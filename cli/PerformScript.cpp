// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/PerformScript.h"

#include "cli/Commands.h"
#include "cli/KeyboardPlayer.h"
#include "sound/Instruments.h"

#include <QUtf8StringView>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>

namespace velmora::cli {

namespace {

using Act = std::function<void(KeyboardPlayer&)>;

/// A text without its blanks in front.
std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    return first == text.npos ? std::string_view() : text.substr(first);
}

/// Takes the first word off @p text, and the one blank behind it.
std::string_view takeWord(std::string_view& text) {
    text = withoutBlanks(text);
    const auto end = std::min(text.find_first_of(" \t"), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return word;
}

/// What stands behind an event's name.
class Words {
public:
    explicit Words(std::string_view text) : text_(text) {}

    [[nodiscard]] std::string_view word() { return takeWord(text_); }
    [[nodiscard]] std::string_view rest() { return std::exchange(text_, {}); }
    [[nodiscard]] bool done() const { return withoutBlanks(text_).empty(); }

    /// Digits with a point at most; nothing for anything else.
    [[nodiscard]] static std::optional<double> decimalOf(std::string_view word) {
        const std::string_view digits = word.starts_with('-') ? word.substr(1) : word;
        if (digits.find_first_not_of("0123456789.") != digits.npos)
            return std::nullopt;
        double value = 0;
        const auto read = std::from_chars(word.data(), word.data() + word.size(), value);
        if (read.ec != std::errc() || read.ptr != word.data() + word.size() || !std::isfinite(value))
            return std::nullopt;
        return value;
    }
    [[nodiscard]] std::optional<double> decimal(double least, double most) {
        const auto value = decimalOf(word());
        return value && *value >= least && *value <= most ? value : std::nullopt;
    }
    [[nodiscard]] std::optional<int> whole(int least, int most) {
        const std::string_view text = word();
        int value = 0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
        if (text.empty() || read.ec != std::errc() || read.ptr != text.data() + text.size() ||
            value < least || value > most)
            return std::nullopt;
        return value;
    }
    [[nodiscard]] std::optional<bool> either(std::string_view yes, std::string_view no) {
        const std::string_view text = word();
        return text == yes ? std::optional(true) : text == no ? std::optional(false) : std::nullopt;
    }
    /// One character, or `space`.
    [[nodiscard]] std::optional<std::string> key() {
        const std::string_view text = word();
        if (text == "space")
            return " ";
        const auto isFurther = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
        const bool isOne =
            !text.empty() && !isFurther(text.front()) && std::ranges::all_of(text.substr(1), isFurther);
        return isOne ? std::optional<std::string>(text) : std::nullopt;
    }
    [[nodiscard]] const KeyboardSliderRow* slider() {
        const auto& rows = keyboardSliders();
        const auto* const row = std::ranges::find(rows, word(), &KeyboardSliderRow::name);
        return row == rows.end() ? nullptr : row;
    }

private:
    std::string_view text_;
};

/// An event: its words, and what it does; nothing where they are not as told.
struct EventRow {
    std::string_view name;
    std::string_view words;
    Act (*read)(Words& words);
};

template<void (KeyboardPlayer::*routine)(std::string_view)>
Act keyEvent(Words& words) {
    const auto key = words.key();
    if (!key)
        return {};
    return [key = *key](KeyboardPlayer& player) { (player.*routine)(key); };
}

template<void (Keyboard::*routine)(bool)>
Act switchEvent(Words& words) {
    const auto on = words.either("on", "off");
    if (!on)
        return {};
    return [on = *on](KeyboardPlayer& player) { (player.keyboard.*routine)(on); };
}

template<void (KeyboardPlayer::*routine)(bool)>
Act tickEvent(Words& words) {
    const auto on = words.either("on", "off");
    if (!on)
        return {};
    return [on = *on](KeyboardPlayer& player) { (player.*routine)(on); };
}

template<void (Keyboard::*routine)()>
Act press(Words& /*words*/) {
    return [](KeyboardPlayer& player) { (player.keyboard.*routine)(); };
}

template<Polynotes polynotes>
Act polynotesEvent(Words& /*words*/) {
    return [](KeyboardPlayer& player) { player.keyboard.setPolynotes(polynotes); };
}

/// A whole number for a routine.
template<void (Keyboard::*routine)(int), int least, int most>
Act numberEvent(Words& words) {
    const auto number = words.whole(least, most);
    if (!number)
        return {};
    return [number = *number](KeyboardPlayer& player) { (player.keyboard.*routine)(number); };
}

Act mouse(Words& words) {
    const auto key = words.whole(0, kPianoKeys - 1);
    if (!key)
        return {};
    return [key = *key](KeyboardPlayer& player) { player.keyboard.CmdKey_MouseDown(key); };
}

Act instrument(Words& words) {
    const auto code = words.whole(0, 127);
    if (!code)
        return {};
    return
        [code = *code](KeyboardPlayer& player) { player.keyboard.chooseInstrument(code, nameOfCode(code)); };
}

Act setSlider(Words& words) {
    const KeyboardSliderRow* const row = words.slider();
    if (!row)
        return {};
    const auto value = words.decimal(row->least, row->most);
    constexpr int kTempoStep = 4;
    if (!value || (row->whole && *value != std::trunc(*value)) ||
        (row->slider == KeyboardSlider::Tempo && std::fmod(*value, kTempoStep) != 0))
        return {};
    return [slider = row->slider, value = *value](KeyboardPlayer& player) {
        player.keyboard.set(slider, value);
    };
}

Act dragSlider(Words& words) {
    const KeyboardSliderRow* const row = words.slider();
    const auto share = row ? words.decimal(0, 1) : std::nullopt;
    if (!share)
        return {};
    return [slider = row->slider, share = *share](KeyboardPlayer& player) {
        player.keyboard.drag(slider, share);
    };
}

Act rightClick(Words& words) {
    const KeyboardSliderRow* const row = words.slider();
    if (!row)
        return {};
    return [slider = row->slider](KeyboardPlayer& player) { player.keyboard.rightClick(slider); };
}

Act save(Words& words) {
    const std::string_view name = words.rest();
    if (withoutBlanks(name).empty())
        return {};
    return [name = std::string(name)](KeyboardPlayer& player) { player.save(name); };
}

Act answer(Words& words) {
    const auto yes = words.either("yes", "no");
    if (!yes)
        return {};
    return [yes = *yes](KeyboardPlayer& player) { player.setAnswer(yes); };
}

Act label(Words& words) {
    const auto key = words.whole(0, kPianoKeys - 1);
    if (!key)
        return {};
    return
        [key = *key, text = std::string(words.rest())](KeyboardPlayer& player) { player.label(key, text); };
}

Act nothing(Words& /*words*/) {
    return [](KeyboardPlayer&) {};
}

constexpr auto kEvents = std::to_array<EventRow>({
    {"down", "K", keyEvent<&KeyboardPlayer::down>},
    {"up", "K", keyEvent<&KeyboardPlayer::up>},
    {"mouse", "KEY", mouse},
    {"mouse-up", "", press<&Keyboard::CmdKey_MouseUp>},
    {"single", "", polynotesEvent<Polynotes::Single>},
    {"polynotes-space", "", polynotesEvent<Polynotes::OnSpacebar>},
    {"polynotes-always", "", polynotesEvent<Polynotes::Always>},
    {"strum", "on|off", switchEvent<&Keyboard::setStrum>},
    {"hold", "on|off", tickEvent<&KeyboardPlayer::tickHold>},
    {"mute", "on|off", tickEvent<&KeyboardPlayer::tickMute>},
    {"octaves", "-2...3", numberEvent<&Keyboard::Option5_Click, -2, 3>},
    {"instrument", "CODE", instrument},
    {"panic", "", press<&Keyboard::panic>},
    {"set", "SLIDER VALUE", setSlider},
    {"drag", "SLIDER 0...1", dragSlider},
    {"right-click", "SLIDER", rightClick},
    {"metronome", "on|off", switchEvent<&Keyboard::chkRunning_Click>},
    {"beats", "1...1000", numberEvent<&Keyboard::setBeatsPerMinute, 1, 1000>},
    {"tone", "on|off", switchEvent<&Keyboard::setTone>},
    {"record", "", press<&Keyboard::CmdRec_Click>},
    {"play", "", press<&Keyboard::Check7_Click>},
    {"stop", "", press<&Keyboard::Check4_Click>},
    {"pause", "", press<&Keyboard::Check6_Click>},
    {"loop", "on|off", switchEvent<&Keyboard::setLoop>},
    {"insert-pauses", "on|off", switchEvent<&Keyboard::setInsertPauses>},
    {"save", "NAME", save},
    {"answer", "yes|no", answer},
    {"edit", "on|off", switchEvent<&Keyboard::setEditing>},
    {"label", "KEY TEXT", label},
    {"end", "", nothing},
});
static_assert(kEvents.size() == 30);

[[noreturn]] void refuse(std::size_t number, const std::string& problem) {
    throw UsageError("line " + std::to_string(number) + ": " + problem);
}

PerformEvent eventOf(std::string_view line, std::size_t number) {
    const std::string_view moment = takeWord(line);
    const auto seconds = Words::decimalOf(moment);
    if (!seconds || *seconds < 0 || moment.starts_with('-'))
        refuse(number, "\"" + std::string(moment) + "\" is no number of seconds");
    const std::string_view name = takeWord(line);
    const auto* const row = std::ranges::find(kEvents, name, &EventRow::name);
    if (row == kEvents.end())
        refuse(number, "there is no event \"" + std::string(name) + "\"");
    Words words(line);
    Act act = row->read(words);
    if (!act || !words.done())
        refuse(number, "wanted is: " + std::string(row->name) + " " + std::string(row->words));
    return {*seconds, std::move(act)};
}

} // namespace

std::vector<PerformEvent> parsePerformScript(std::string_view text) {
    if (!QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8())
        throw UsageError("the script is no UTF-8 text");
    std::vector<PerformEvent> events;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const auto end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (withoutBlanks(line).empty() || line.starts_with('#'))
            continue;
        PerformEvent event = eventOf(line, number);
        if (!events.empty() && event.seconds < events.back().seconds)
            refuse(number, "time goes backwards");
        events.push_back(std::move(event));
    }
    return events;
}

std::string performEvents() {
    std::string text = "A line of the script is SECONDS EVENT WORD...; the events:\n";
    for (const EventRow& row : kEvents)
        text += "  " + std::string(row.name) + (row.words.empty() ? "" : " ") + std::string(row.words) + "\n";
    text += "Sliders:";
    for (const KeyboardSliderRow& row : keyboardSliders())
        text += " " + std::string(row.name);
    return text + "\n";
}

} // namespace velmora::cli
