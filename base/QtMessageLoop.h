// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"

#include <memory>

namespace velmora {

/// The real clock and Qt's event loop. Waits may nest: an event served in a wait may wait itself, and the
/// outer wait then ends no earlier than the inner one. In a thread without an event loop it sleeps and serves
/// nothing.
class QtMessageLoop : public MessageLoop {
public:
    QtMessageLoop();
    ~QtMessageLoop() override;

    [[nodiscard]] double now() const override;
    void YieldIfInput() override;
    void serveUntil(double moment) override;
    void block(double seconds) override;
    [[nodiscard]] std::optional<double> nextDue() const override;
    /// The program is quitting: no serveUntil() lasts any longer, whatever it still waits for.
    void leave();

private:
    struct WakeUp;

    /// @param due what the wait is for, a little later
    void serveEventsUntil(double moment, double due);

    std::unique_ptr<WakeUp> wakeUp_; // made by the first wait that needs it
    double moment_ = 0;              // what the innermost wait waits for, 0 if there is none
    double due_ = 0;                 // the earliest of all waits, likewise
    bool left_ = false;
};

} // namespace velmora
