// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/TakePicture.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace velmora {

struct Appearance;

/// The picture of a sound file, with two marks that part its ends off. Places are shares of its length, from
/// 0 to 1.
///
/// A press on a mark drags it, a press elsewhere is a place to play from. With the keyboard the arrows move
/// the left mark and, with Shift, the right one; Enter plays from the left mark.
class Waveform : public QWidget {
public:
    /// @param look is read at each painting and must outlive the picture
    Waveform(const Appearance& look, QWidget* parent);

    /// @param columns of the whole file; those that aren't known yet are silent
    void setColumns(std::vector<WaveColumn> columns);
    /// Both marks back at the ends.
    void resetMarks() { setMarks(0, 1); }
    void setMarks(double begin, double end);
    [[nodiscard]] double begin() const { return begin_; }
    [[nodiscard]] double end() const { return end_; }
    /// Where it plays; below 0 for nowhere.
    void setPosition(double share);

    std::function<void(double share)> onPlay;
    std::function<void()> onMarks; ///< the user has moved one

    [[nodiscard]] double shareAt(double x) const;
    [[nodiscard]] double xAt(double share) const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Mark { None, Begin, End };
    [[nodiscard]] Mark markAt(double x) const;
    void drag(Mark mark, double share);
    void updateLine(double share);

    const Appearance& look_;
    std::vector<WaveColumn> columns_;
    double begin_ = 0;
    double end_ = 1;
    double position_ = -1;
    Mark dragged_ = Mark::None;
};

} // namespace velmora
