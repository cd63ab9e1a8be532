// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/ProgramFolders.h"
#include "composition/Workspace.h"
#include "tests/support/MemorySettings.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

namespace velmora {

/// Notes of the given length on a channel, one after the other, with their instrument.
inline void putNotes(Score& score, int channel, int row, int notes, int length = 2) {
    for (int position = 0; position < notes * length; ++position) {
        const int cell = position % length == 0 ? row : 1000 + row;
        score.NoteCell.set(channel, position, static_cast<std::int16_t>(cell));
        score.NoteInstrument.set(channel, position, score.ChannelInstrument[channel]);
    }
    score.FindEndOfSong();
}

/// A user's folder that goes with the test, a store that forgets, and a workspace made from both.
class WorkspaceFixture : public testing::Test {
protected:
    /// In classic manners, unless the test calls `beCareful` first.
    WorkspaceFixture() { store("Classic", "1"); }
    void beCareful() { store("Classic", "0"); }
    Workspace& workspace() {
        if (!made_)
            made_ = std::make_unique<Workspace>(settings, folders);
        return *made_;
    }
    Score& score() { return workspace().score; }
    void store(std::string_view key, std::string_view value) { settings.SaveSetting("Settings", key, value); }

    QTemporaryDir home;
    ProgramFolders folders{std::filesystem::path(home.path().toStdString())};
    MemorySettings settings;

private:
    std::unique_ptr<Workspace> made_;
};

} // namespace velmora
