// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/TakeText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <system_error>

namespace velmora {

namespace {
constexpr std::string_view kHeading = "Velmora take";
constexpr std::string_view kWhen = "When=";
constexpr std::string_view kLength = "Length=";
constexpr std::string_view kSum = "Sum=";
constexpr std::size_t kSumLine = 4 + 16 + 1; ///< with its 16 digits and its end
constexpr std::int64_t kMostMoment = 1'000'000'000'000'000;
constexpr std::int32_t kMostItem = 1 << 30;

/// FNV-1a of 64 bits.
std::uint64_t checksum(std::string_view text) {
    std::uint64_t sum = 0xcbf29ce484222325U;
    for (const char byte : text)
        sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
    return sum;
}

/// Walks the lines of a text; each has an end.
class Lines {
public:
    explicit Lines(std::string_view text) : text_(text) {}

    [[nodiscard]] bool atEnd() const { return text_.empty(); }
    std::optional<std::string_view> next() {
        const std::size_t end = text_.find('\n');
        if (end == text_.npos)
            return std::nullopt;
        const std::string_view line = text_.substr(0, end);
        text_.remove_prefix(end + 1);
        return line;
    }

private:
    std::string_view text_;
};

template<typename Number>
std::optional<Number> numberOf(std::string_view word, Number least, Number most) {
    Number number = 0;
    const char* const wordEnd = word.data() + word.size();
    const auto [end, error] = std::from_chars(word.data(), wordEnd, number);
    if (error != std::errc() || end != wordEnd || number < least || number > most)
        return std::nullopt;
    return number;
}

std::optional<std::int64_t> momentOf(std::optional<std::string_view> line, std::string_view name) {
    if (!line || !line->starts_with(name))
        return std::nullopt;
    return numberOf<std::int64_t>(line->substr(name.size()), 0, kMostMoment);
}

/// What a line says before its next blank, which is taken away with that.
std::string_view word(std::string_view& line) {
    const std::string_view first = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(line.size(), first.size() + 1));
    return first;
}

/// Appends "LENGTH ROW" or "LENGTH ROW COUNT"; false for any other line.
bool addRun(Take& take, std::string_view line) {
    if (line.ends_with(' '))
        return false;
    const auto length = numberOf(word(line), 1, kMostTakeTicks - take.size());
    const auto row = numberOf(word(line), -kMostItem, kMostItem);
    const bool counts = !line.empty();
    const auto count = counts ? numberOf(word(line), -kMostItem, kMostItem) : 0;
    if (!length || !row || !count || !line.empty())
        return false;
    for (int tick = 0; tick < *length; ++tick) {
        take.List1.push_back(counts ? *count + tick : 0);
        take.List3.push_back(*row);
    }
    return true;
}
} // namespace

void TakeRuns::extend(const Take& take) {
    for (const int size = std::min(take.size(), kMostTakeTicks); ticks_ < size; ++ticks_) {
        const std::int32_t row = take.List3[static_cast<std::size_t>(ticks_)];
        const std::int32_t count = take.List1[static_cast<std::size_t>(ticks_)];
        const std::int32_t goesOn = run_.count == 0 ? 0 : run_.count + run_.length;
        if (run_.length > 0 && row == run_.row && count == goesOn) {
            ++run_.length;
            continue;
        }
        append(ended_, run_);
        run_ = {1, row, count};
    }
}

std::string TakeRuns::lines() const {
    std::string all = ended_;
    append(all, run_);
    return all;
}

void TakeRuns::append(std::string& lines, const Run& run) {
    if (run.length == 0)
        return;
    lines += std::to_string(run.length) + " " + std::to_string(run.row);
    if (run.count != 0)
        lines += " " + std::to_string(run.count);
    lines += '\n';
}

std::string takeText(std::int64_t when, std::int64_t length, const TakeRuns& runs) {
    std::string text(kHeading);
    text.append("\n").append(kWhen).append(std::to_string(when));
    text.append("\n").append(kLength).append(std::to_string(length)).append("\n");
    text += runs.lines();
    return text += takeChecksumLine(text);
}

std::string takeChecksumLine(std::string_view text) {
    std::array<char, kSumLine + 1> line{};
    std::snprintf(line.data(), line.size(), "Sum=%016llx\n", static_cast<unsigned long long>(checksum(text)));
    return line.data();
}

std::optional<KeptTake> parseTakeText(std::string_view text) {
    if (text.size() < kSumLine)
        return std::nullopt;
    const std::string_view sum = text.substr(text.size() - kSumLine);
    text.remove_suffix(kSumLine);
    if (!sum.starts_with(kSum) || sum != takeChecksumLine(text))
        return std::nullopt;
    Lines lines(text);
    if (lines.next() != kHeading)
        return std::nullopt;
    const auto when = momentOf(lines.next(), kWhen);
    const auto length = momentOf(lines.next(), kLength);
    if (!when || !length)
        return std::nullopt;
    KeptTake kept{*when, *length, {}};
    while (!lines.atEnd()) {
        const auto line = lines.next();
        if (!line || !addRun(kept.take, *line))
            return std::nullopt;
    }
    return kept;
}

} // namespace velmora
