// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>

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

/// Copying and pasting ask the boxes, cutting and inserting the mutes; that is meant.
inline constexpr std::array kBlockRules{
    BlockRules{BlockCommand::Copy, ChannelSet::Picked},
    BlockRules{BlockCommand::Cut, ChannelSet::NotMuted},
    BlockRules{BlockCommand::InsertSpaces, ChannelSet::NotMuted},
    BlockRules{BlockCommand::Paste, ChannelSet::Picked},
};
static_assert(kBlockRules.size() == 4);

/// Whether the command works on the channel.
[[nodiscard]] bool worksOn(const Workspace& workspace, BlockCommand command, int channel);

} // namespace velmora
