// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/MidiBackends.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmora {

/// Runs one MIDI back end on a thread of its own, so that a library that waits for another process never
/// holds up the interface thread. A back end that hangs has no destinations, opens nothing, and is left
/// behind at the end. All calls come from the interface thread; none waits longer than its docstring says.
class BackendThread {
public:
    static constexpr double kOpenSeconds = 0.5; ///< longest wait of `open`
    static constexpr double kHungSeconds = 2.0; ///< a job that takes longer counts as hanging
    static constexpr double kEndSeconds = 1.5;  ///< longest wait of the destructor

    /// Starts listing the destinations.
    explicit BackendThread(std::unique_ptr<MidiBackend> backend);
    /// Ends the thread after the jobs it has; one that hangs keeps what it holds and is left alone.
    ~BackendThread();
    BackendThread(const BackendThread&) = delete;
    BackendThread& operator=(const BackendThread&) = delete;

    /// Asks for a new list, unless one is asked for already. Never waits.
    void refresh();
    /// The newest list; none if the back end hangs. Never waits.
    [[nodiscard]] std::vector<std::string> destinations();
    /// Waits for the first list, at most until the moment (steadySeconds).
    void waitForFirstList(double moment);

    enum class Result { Opened, Refused, TimedOut };
    struct Opened {
        Result result;
        std::unique_ptr<MidiOutlet> outlet; ///< there if `Opened`
    };
    /// Opens a destination by its full name. Waits at most `kOpenSeconds`, and not at all for a back end that
    /// hangs; what is opened later than that is closed again.
    [[nodiscard]] Opened open(const std::string& destination);
    /// Has an outlet closed. Never waits.
    void release(std::unique_ptr<MidiOutlet> outlet);

private:
    struct Shared;
    static void run(const std::shared_ptr<Shared>& shared);
    void post(std::function<void(MidiBackend&)> job);

    std::shared_ptr<Shared> shared_;
};

} // namespace velmora
