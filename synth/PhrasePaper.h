// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/KeepPhrase.h"
#include "keyboard/Phrase.h"

#include <QWidget>

namespace velmora {

class PixelGrid;
struct Appearance;

/// Tableau paper with what would be kept, and over it when the keys were really down: what a grid changes is
/// seen.
class PhrasePaper : public QWidget {
public:
    PhrasePaper(const Appearance& look, QWidget* parent);

    /// @param notesPerMeasure positions of the Score, as it would be
    void show(const Phrase& phrase, const KeepPlan& plan, int notesPerMeasure);
    using QWidget::show;

    /// Where a position begins, in pixels; the phrase always fits.
    [[nodiscard]] double xOf(double position) const;
    /// The middle of a pitch's row.
    [[nodiscard]] double yOf(int note) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fit();
    void paintLines(QPainter& painter) const;
    void paintPlayed(QPainter& painter) const;
    void paintKept(QPainter& painter) const;

    const Appearance& look_;
    Phrase phrase_;
    KeepPlan plan_;
    int notesPerMeasure_ = 16;
    double cell_ = 12; ///< pixels of a position
    double row_ = 8;   ///< of a pitch
    int topNote_ = 84; ///< of the highest row
};

} // namespace velmora
