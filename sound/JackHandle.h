// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <jack/types.h>

#include <pthread.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <shared_mutex>

namespace velmora {

/// What a call of the library does, whole. Where a client is closed the library cancels its threads, and they
/// may be cancelled at any instruction: in a function that must not throw, that is the end of the program.
template<typename Call>
void uncancelled(Call call) {
    int before = 0;
    ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
    call();
    // A thread that was cancelled meanwhile ends here, so no destructor may do this.
    ::pthread_setcancelstate(before, nullptr);
}

/// A client of a running JACK server.
///
/// The library keeps one state for all clients of a process: the first that is opened after a server has died
/// deletes those of before, whoever still holds them. So all of ours are opened here, and those that have
/// lost their server are closed first.
class JackHandle {
public:
    /// Null when no server runs, or JACK's library is not there. It may wait for the server.
    [[nodiscard]] static std::unique_ptr<JackHandle> open(const char* name);
    ~JackHandle();
    JackHandle(const JackHandle&) = delete;
    JackHandle& operator=(const JackHandle&) = delete;

    /// Keeps the client open while it is held, and is false once the server is lost. Every call of the
    /// library outside of the library's own threads needs it; it is not held twice by a thread.
    [[nodiscard]] std::shared_lock<std::shared_mutex> use() const {
        std::shared_lock lock(use_);
        if (lost_)
            lock.unlock();
        return lock;
    }
    [[nodiscard]] jack_client_t* get() const { return client_; }
    /// Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] bool serverLost() const noexcept { return lost_; }
    /// @param tell called on a thread of the library, or on one that finds another client lost; once or
    /// twice. To be set before the client is activated.
    void onLost(std::function<void()> tell);

private:
    struct Library;
    struct Clients;
    static const Library& library();
    static Clients& clients();
    static void closeLost(Clients& all);

    explicit JackHandle(jack_client_t* client) : client_(client) {}

    jack_client_t* client_;
    mutable std::shared_mutex use_; ///< held alone by who closes the client of another
    std::atomic<bool> lost_{false};
    std::function<void()> tellLost_;
};

} // namespace velmora
