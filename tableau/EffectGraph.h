// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

namespace velmora {

struct Appearance;

/// A graph box of Single Note Effects: how high an effect stands where the score plays.
class EffectGraph : public QWidget {
public:
    EffectGraph(const Appearance& look, const QString& name, QWidget* parent);

    /// 0 to 127.
    void showValue(int value);
    [[nodiscard]] int value() const { return value_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Appearance& look_;
    int value_ = 0;
};

} // namespace velmora
