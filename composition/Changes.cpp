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

Act::Act(Workspace& workspace) : workspace_(workspace) {
    Watchers& watchers = workspace.watchers;
    if (watchers.acts_++ == 0 && watchers.edits_ == 0)
        workspace.history.begin(workspace.score, workspace.setup);
}

Act::~Act() {
    Watchers& watchers = workspace_.watchers;
    if (--watchers.acts_ == 0 && watchers.edits_ == 0 &&
        workspace_.history.commit(workspace_.score, workspace_.setup))
        announce(workspace_, Change::Undo);
}

Edit::Edit(Workspace& workspace, Changes changes) : workspace_(workspace) {
    Watchers& watchers = workspace.watchers;
    if (watchers.edits_++ == 0 && watchers.acts_ == 0)
        workspace.history.begin(workspace.score, workspace.setup);
    add(changes);
}

Edit::~Edit() {
    Watchers& watchers = workspace_.watchers;
    if (--watchers.edits_ > 0)
        return;
    if (!std::exchange(watchers.keepsInUse_, false) && watchers.pending_.any(kAnyNotes))
        workspace_.score.Isnotes();
    if (watchers.acts_ == 0 && workspace_.history.commit(workspace_.score, workspace_.setup))
        watchers.pending_ |= Change::Undo;
    watchers.tell();
}

void Edit::add(Changes changes) {
    workspace_.watchers.pending_ |= changes;
}

void Edit::keepChannelsInUse() {
    workspace_.watchers.keepsInUse_ = true;
}

void announce(Workspace& workspace, Changes changes) {
    const Edit edit(workspace, changes);
}

} // namespace velmora
