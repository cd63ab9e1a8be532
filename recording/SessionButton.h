// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/CommandButton.h"

#include <string>

namespace velmora {

/// A tall button of a panel, an icon before its words. Held, it stays pressed and can't be pressed again.
class SessionButton : public CommandButton {
public:
    /// @param look is read at each painting and must outlive the button
    SessionButton(const Appearance& look, std::string icon, const QString& words, QWidget* parent);

    void setHeld(bool held);
    [[nodiscard]] bool isHeld() const { return held_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Appearance& look_;
    std::string icon_;
    bool held_ = false;
};

} // namespace velmora
