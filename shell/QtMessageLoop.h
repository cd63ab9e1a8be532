// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/MessageLoop.h"

namespace velmora {

/// The real clock and Qt's event loop. Waits may nest: an event served in a wait may wait itself, and the
/// outer wait then ends no earlier than the inner one. In a thread without an event loop it sleeps and serves
/// nothing.
class QtMessageLoop : public MessageLoop {
public:
    [[nodiscard]] double now() const override;
    void yieldIfInput() override;
    void serveUntil(double moment) override;
    void block(double seconds) override;
};

} // namespace velmora
