// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/CommandBank.h"
#include "recording/StudioParts.h"
#include "studio/SessionState.h"

#include <QWidget>

namespace velmora {

class ShareBar;

/// The five buttons of the player, and beside them the read-out: time, file, state, and how much of it is
/// done.
class PlayerStrip : public QWidget {
public:
    PlayerStrip(const StudioParts& parts, const CommandBank& buttons, SessionState& state, QWidget* parent);

    /// @param file what plays or is recorded
    void refresh(const QString& file);
    /// In record red under the bar; blank for none. The words of the MP3 header give way to it.
    void warn(const QString& words);
    /// In the same place, where neither stands.
    void showLoudness(const std::string& words);

    static constexpr int kHeight = 48;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QLabel* addLabel(const char* name, const char* words, int pixels, bool bold);
    [[nodiscard]] QRect readOut() const;
    void colour();
    void showFoot();

    const Appearance& look_;
    SessionState& state_;
    QLabel* lblTime;
    QLabel* file_;
    QLabel* Label8;
    ShareBar* L2;
    QLabel* Status;
    QLabel* lblKhz;
    QLabel* lblmode;
    QLabel* lblbitrate;
    QLabel* warning_;
    QLabel* loudness_;
};

} // namespace velmora
