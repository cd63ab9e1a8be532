// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace velmora {

struct Workspace;

/// The commands that ask which channels they work on.
enum class BlockCommand : std::uint8_t { Copy, Cut, InsertSpaces, Paste };

/// Channels of a command while `CopyonlyOneTrack` is off; while it is on, the active one alone.
enum class ChannelSet : std::uint8_t { Picked, NotMuted };

struct BlockRules {
    BlockCommand command;
    ChannelSet channels;
};

/// The rules of classic manners: copying and pasting ask the boxes, cutting and inserting the mutes; that is
/// meant.
inline constexpr std::array kBlockRules{
    BlockRules{BlockCommand::Copy, ChannelSet::Picked},
    BlockRules{BlockCommand::Cut, ChannelSet::NotMuted},
    BlockRules{BlockCommand::InsertSpaces, ChannelSet::NotMuted},
    BlockRules{BlockCommand::Paste, ChannelSet::Picked},
};
static_assert(kBlockRules.size() == 4);

/// Whether the command works on the channel. In careful manners all work on the same: with "Edit All Tracks"
/// on those that aren't muted, else on the ticked ones, and with none ticked on the active one.
[[nodiscard]] bool worksOn(const Workspace& workspace, BlockCommand command, int channel);
/// Whether it is the active channel alone, so that what was copied from one is pasted into another.
[[nodiscard]] bool worksOnOneTrack(const Workspace& workspace);

/// Which channels the commands of careful manners work on, for the user: "channels 1, 3 and 10".
[[nodiscard]] std::string blockChannelsInWords(const Workspace& workspace);
/// "12 columns", "1 column".
[[nodiscard]] std::string columnsInWords(int count);

} // namespace velmora
