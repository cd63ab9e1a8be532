// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/BurnFailure.h"

#include <array>

namespace velmora::burner {

namespace {
/// Where a command of the drive stands in a complaint, and what came of the disc then.
struct FailedCommand {
    std::string_view words;
    BurnCode code;
};
constexpr std::array kFailedCommands{
    FailedCommand{"command 5Dh", BurnCode::ParametersRefused}, // send cue sheet
    FailedCommand{"synchronize drive cache", BurnCode::Cache},
    FailedCommand{"SCSI error on write", BurnCode::WriteError},
    FailedCommand{kVanished, BurnCode::WriteError},
};
} // namespace

BurnFailure failureOf(const std::vector<std::string>& complaints) {
    for (const std::string& text : complaints)
        for (const FailedCommand& row : kFailedCommands)
            if (text.find(row.words) != text.npos)
                return {row.code, text};
    return {BurnCode::WriteError,
            complaints.empty() ? std::string("the drive does not say why.") : complaints.front()};
}

} // namespace velmora::burner
