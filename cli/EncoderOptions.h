// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Encoder.h"

#include <cstddef>
#include <optional>

class QCommandLineParser;

namespace velmora::cli {

/// `--bitrate` and `--quality`, which every command that encodes has.
void addEncoderOptions(QCommandLineParser& parser);
/// Throws UsageError for what the tables lack.
[[nodiscard]] EncodeSettings readEncoderOptions(const QCommandLineParser& parser);
/// `--format` as a row of the encoder's table that the window reaches; none where it isn't given.
[[nodiscard]] std::optional<std::size_t> formatRow(const QCommandLineParser& parser);
/// One of kMp3Bitrates; throws UsageError for any other word.
[[nodiscard]] int readBitrate(const QCommandLineParser& parser);

} // namespace velmora::cli
