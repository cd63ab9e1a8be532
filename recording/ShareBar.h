// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QProgressBar>

#include <cstdint>

namespace velmora {

struct Appearance;

/// How much of something is done: a thin bar.
class ShareBar : public QProgressBar {
public:
    /// What it lies on.
    enum class Ground : std::uint8_t { ReadOut, Panel };

    /// @param look is read at each painting and must outlive the bar
    ShareBar(const Appearance& look, Ground ground, QWidget* parent);

    void setShare(double share); ///< 0 to 1
    [[nodiscard]] int percent() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Appearance& look_;
    Ground ground_;
};

} // namespace velmora
