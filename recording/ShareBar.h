// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QProgressBar>

namespace velmora {

struct Appearance;

/// How much of something is done: a thin bar.
class ShareBar : public QProgressBar {
public:
    /// @param look is read at each painting and must outlive the bar
    ShareBar(const Appearance& look, QWidget* parent);

    void setShare(double share); ///< 0 to 1
    [[nodiscard]] int percent() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Appearance& look_;
};

} // namespace velmora
