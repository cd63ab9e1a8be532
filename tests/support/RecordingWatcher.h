// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Workspace.h"

#include <vector>

namespace velmora {

/// Keeps what it is told of a composition, an entry a telling.
class RecordingWatcher final : private Watcher {
public:
    explicit RecordingWatcher(Workspace& workspace) : watching_(workspace.watchers.join(*this)) {}

    std::vector<Changes> told;
    /// All of it since the last call.
    [[nodiscard]] Changes take() {
        Changes all;
        for (const Changes changes : told)
            all |= changes;
        told.clear();
        return all;
    }

private:
    void changed(Changes changes) override { told.push_back(changes); }

    Guests<Watcher>::Stay watching_;
};

} // namespace velmora
