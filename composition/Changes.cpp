// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/Changes.h"

#include "composition/Workspace.h"

#include <utility>

namespace velmora {

Changes changeOfNotes(int channel) {
    return channel < kFirstPercussion ? Change::Cells : Change::Beats;
}

/// What a watcher changes all the same is told in a round of its own.
void Watchers::tell() {
    while (pending_.any()) {
        const Changes told = std::exchange(pending_, {});
        ++edits_;
        guests_.tell(&Watcher::changed, told);
        --edits_;
    }
}

Edit::Edit(Workspace& workspace, Changes changes) : workspace_(workspace) {
    ++workspace.watchers.edits_;
    add(changes);
}

Edit::~Edit() {
    Watchers& watchers = workspace_.watchers;
    if (--watchers.edits_ > 0)
        return;
    if (watchers.pending_.any(kAnyNotes))
        workspace_.score.Isnotes();
    watchers.tell();
}

void Edit::add(Changes changes) {
    workspace_.watchers.pending_ |= changes;
}

void announce(Workspace& workspace, Changes changes) {
    const Edit edit(workspace, changes);
}

} // namespace velmora
