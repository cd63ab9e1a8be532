// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/EncoderOptions.h"

#include "base/Text.h"
#include "cli/Commands.h"
#include "cli/Words.h"
#include "studio/WaveFormat.h"

#include <QCommandLineParser>

#include <algorithm>
#include <charconv>
#include <string>

namespace velmora::cli {

namespace {
/// A whole number of digits alone.
std::optional<std::size_t> numberOf(const std::string& word) {
    std::size_t value = 0;
    const char* const end = word.data() + word.size();
    const auto [stopped, code] = std::from_chars(word.data(), end, value);
    return code == std::errc() && stopped == end && !word.empty() ? std::optional(value) : std::nullopt;
}

std::size_t qualityOf(const std::string& word) {
    for (std::size_t row = 0; row < kEncoderQualities.size(); ++row) {
        if (toLower(std::string(kEncoderQualities[row].text)) == toLower(word))
            return row;
    }
    if (const auto row = numberOf(word); row && *row < kEncoderQualities.size())
        return *row;
    std::string known;
    for (const EncoderQuality& one : kEncoderQualities)
        known += " " + std::string(one.text);
    throw UsageError("--quality takes one of" + known + ", or 0 to 9, not \"" + word + "\"");
}
} // namespace

void addEncoderOptions(QCommandLineParser& parser) {
    parser.addOptions({
        {"bitrate", "Bitrate of MP3 (default: 224).", "kbit/s",
         QString::number(kMp3Bitrates[kDefaultBitrate])},
        {"quality", "How well the encoder searches: Low to Studio, or 0 to 9 (default: Studio).", "quality",
         QString::number(kDefaultQuality)},
    });
}

int readBitrate(const QCommandLineParser& parser) {
    const std::string word = toBytes(parser.value("bitrate"));
    const auto bitrate = numberOf(word);
    const auto* const found = std::ranges::find_if(
        kMp3Bitrates, [&](int one) { return bitrate && static_cast<std::size_t>(one) == *bitrate; });
    if (found != kMp3Bitrates.end())
        return *found;
    std::string known;
    for (const int one : kMp3Bitrates)
        known += " " + std::to_string(one);
    throw UsageError("--bitrate takes one of" + known + ", not \"" + word + "\"");
}

EncodeSettings readEncoderOptions(const QCommandLineParser& parser) {
    return {.bitrate = readBitrate(parser), .quality = qualityOf(toBytes(parser.value("quality")))};
}

std::optional<std::size_t> formatRow(const QCommandLineParser& parser) {
    if (!parser.isSet("format"))
        return std::nullopt;
    const std::string word = toBytes(parser.value("format"));
    const auto row = numberOf(word);
    if (!row || *row >= kOfferedFormats)
        throw UsageError("--format takes 0 to 4, not \"" + word + "\"");
    return row;
}

} // namespace velmora::cli
