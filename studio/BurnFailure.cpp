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
    FailedCommand{"command 55h", BurnCode::ParametersRefused}, // mode select
    FailedCommand{"command 5Dh", BurnCode::ParametersRefused}, // send cue sheet
    FailedCommand{"command 54h", BurnCode::ParametersRefused}, // send OPC information
    FailedCommand{"command 52h", BurnCode::NoAddress},         // read track information
    FailedCommand{"command 35h", BurnCode::Cache},             // synchronize cache
    FailedCommand{"synchronize drive cache", BurnCode::Cache},
    FailedCommand{"command 2Ah", BurnCode::WriteError}, // write
    FailedCommand{"SCSI error on write", BurnCode::WriteError},
    FailedCommand{kVanished, BurnCode::WriteError},
};
} // namespace

BurnFailure failureOf(const std::vector<std::string>& complaints, BurnCode atWork) {
    const bool closing = atWork != BurnCode::WriteError;
    for (const std::string& text : complaints) {
        if (text.find("command 5Bh") != text.npos) // close track or session
            return {closing ? atWork : BurnCode::ClosingSession, text};
        for (const FailedCommand& row : kFailedCommands)
            if (text.find(row.words) != text.npos)
                return {row.code, text};
    }
    return {atWork, complaints.empty() ? std::string("the drive does not say why.") : complaints.front()};
}

} // namespace velmora::burner
