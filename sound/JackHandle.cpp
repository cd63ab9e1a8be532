// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/JackHandle.h"

#include "LateNames.h"
#include "base/LateLibrary.h"

#include <jack/jack.h>

#include <algorithm>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace velmora {

struct JackHandle::Library : LateLibrary {
    Library() : LateLibrary(kJackLibrary) {}
    VELMORA_LATE_CALL(jack_client_close);
    VELMORA_LATE_CALL(jack_client_open);
    VELMORA_LATE_CALL(jack_on_shutdown);
    VELMORA_LATE_CALL(jack_set_error_function);
    VELMORA_LATE_CALL(jack_set_info_function);
};

/// What the library knows of this process.
struct JackHandle::Clients {
    std::mutex mutex; ///< held while one is opened or closed
    std::vector<JackHandle*> open;
};

/// Loaded where it is first called: on the thread of a back end.
const JackHandle::Library& JackHandle::library() {
    static const Library only;
    return only;
}

/// Never destroyed: at the process's end the thread of a back end that was left behind may still be in a
/// call.
JackHandle::Clients& JackHandle::clients() {
    static auto* const all = new Clients;
    return *all;
}

/// Where one has lost the server all have, though they may not have been told yet.
void JackHandle::closeLost(Clients& all) {
    if (std::ranges::none_of(all.open, [](const JackHandle* one) { return one->serverLost(); }))
        return;
    for (JackHandle* one : all.open)
        if (!one->lost_.exchange(true) && one->tellLost_)
            one->tellLost_();
    for (JackHandle* one : all.open) {
        // A call that began before ends first; none waits for a server that is dead.
        const std::lock_guard lock(one->use_);
        library().jack_client_close(one->client_);
    }
    all.open.clear();
}

std::unique_ptr<JackHandle> JackHandle::open(const char* name) {
    if (!library().complete())
        return nullptr;
    Clients& all = clients();
    const std::lock_guard lock(all.mutex);
    closeLost(all);
    library().jack_set_error_function([](const char*) {});
    library().jack_set_info_function([](const char*) {});
    jack_client_t* const client = library().jack_client_open(name, JackNoStartServer, nullptr);
    if (client == nullptr)
        return nullptr;
    std::unique_ptr<JackHandle> handle(new JackHandle(client));
    all.open.push_back(handle.get());
    library().jack_on_shutdown(
        client,
        [](void* self) {
            uncancelled([lost = static_cast<JackHandle*>(self)] {
                lost->lost_ = true;
                if (lost->tellLost_)
                    lost->tellLost_();
            });
        },
        handle.get());
    return handle;
}

void JackHandle::onLost(std::function<void()> tell) {
    const std::lock_guard lock(clients().mutex);
    tellLost_ = std::move(tell);
}

JackHandle::~JackHandle() {
    Clients& all = clients();
    const std::lock_guard lock(all.mutex);
    closeLost(all); // the others may be told of it only after the next is opened, which would delete them
    if (std::erase(all.open, this) > 0)
        library().jack_client_close(client_);
}

} // namespace velmora
