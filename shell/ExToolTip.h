// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/TipPainter.h"
#include "shell/TipTimer.h"

#include <QBasicTimer>
#include <QHash>
#include <QObject>
#include <QPointer>

#include <memory>
#include <string_view>

class QWidget;

namespace velmora {

class SettingsStore;
class TipWindow;

/// The tool text of a control.
struct Tip {
    QString title;
    QString text;
    std::string icon; ///< a name of the icon set, or blank
    bool operator==(const Tip&) const = default;
};

/// A colour is 0x00bbggrr, or with the top bit set one of the system's, which have fixed values here: tips
/// look alike in every skin.
using TipColour = std::uint32_t;
inline constexpr TipColour kButtonText = 0x80000012;
inline constexpr TipColour kTipBackground = 0x80000018;
inline constexpr TipColour kDesktop = 0x80000001;
[[nodiscard]] QColor tipColour(TipColour colour, TipStyle style);
/// The line around a tip.
[[nodiscard]] QColor tipEdge(TipStyle style);

/// What the text of the setting "ToolText type" makes of @p before: "0", "1" and "2" set it.
[[nodiscard]] std::int16_t toolTextStyle(std::string_view setting, std::int16_t before);

/// How a tip looks, as it starts.
struct TipProperties {
    int Shadow = 0; ///< a flag: 0 or -1
    QString Font;
    int IconSize = 16;
    std::int16_t ToolTipStyle = 0;
    TipColour TextColor = kButtonText;
    TipColour GradientColorStart = kTipBackground;
    TipColour GradientColorEnd = kDesktop;
    TipColour BackColor = kTipBackground;
    int BackStyle = 1; ///< 1 the gradient, 0 `BackColor` alone
    QPixmap Picture;
};

/// The application's tool tips: one object, one small window that never takes the focus.
///
/// A window is attached once, a control is given its words once; the rest happens as the mouse moves.
class ExToolTip : public QObject {
public:
    /// @p settings has the style and outlives this object.
    explicit ExToolTip(const SettingsStore& settings, QObject* parent = nullptr);
    ~ExToolTip() override;

    /// Follows the mouse in the window, until that is destroyed.
    void Attach(QWidget& window);
    /// The words that the control shows in an attached window, enabled or not, and those that a screen reader
    /// says: the title is its name unless it has one of its own, the text its description. Later words
    /// replace earlier ones; a control without words shows those of what it stands in.
    void SetToolTip(QWidget& control, const Tip& tip);
    /// The words of this very control; null if it has none.
    [[nodiscard]] const Tip* toolTip(const QWidget& control) const;

    /// Gives the properties the values that every tip is shown with, and the style that the user chose.
    void ConfigureToolTip();
    /// Has the tip shown when the mouse has rested on the window. One that stands goes.
    void ShowToolTip(QWidget& window, const QString& text, const QString& title, const QPixmap& picture,
                     const std::string& icon);
    /// The mouse came upon the control, or upon nothing that has words; a repeat is ignored.
    void hover(QWidget& window, QWidget* control);
    /// One tick of the clock with the mouse at a place on the screen. 10 ms in the program.
    void tick(QPoint mouse);

    // clang-format off
    [[nodiscard]] int Alive() const { return timer_.isAlive() ? -1 : 0; }
    void SetAlive(int flag) { timer_.setAlive(flag != 0); }
    [[nodiscard]] int Shadow() const { return look_.Shadow; }
    void SetShadow(int flag) { look_.Shadow = flag; }
    [[nodiscard]] QString Font() const { return look_.Font; }
    void SetFont(const QString& family) { look_.Font = family; }
    [[nodiscard]] int IconSize() const { return look_.IconSize; }
    void SetIconSize(int pixels) { look_.IconSize = pixels; }
    [[nodiscard]] std::int16_t ToolTipStyle() const { return look_.ToolTipStyle; }
    void SetToolTipStyle(std::int16_t style) { look_.ToolTipStyle = style; }
    [[nodiscard]] TipColour TextColor() const { return look_.TextColor; }
    void SetTextColor(TipColour colour) { look_.TextColor = colour; }
    [[nodiscard]] TipColour GradientColorStart() const { return look_.GradientColorStart; }
    void SetGradientColorStart(TipColour colour) { look_.GradientColorStart = colour; }
    [[nodiscard]] TipColour GradientColorEnd() const { return look_.GradientColorEnd; }
    void SetGradientColorEnd(TipColour colour) { look_.GradientColorEnd = colour; }
    [[nodiscard]] TipColour BackColor() const { return look_.BackColor; }
    void SetBackColor(TipColour colour) { look_.BackColor = colour; }
    [[nodiscard]] int BackStyle() const { return look_.BackStyle; }
    void SetBackStyle(int style) { look_.BackStyle = style; }
    [[nodiscard]] int DelayTime() const { return timer_.delayTime(); }
    void SetDelayTime(int ticks) { timer_.setDelayTime(ticks); }
    [[nodiscard]] int KillTime() const { return timer_.killTime(); }
    void SetKillTime(int ticks) { timer_.setKillTime(ticks); }
    [[nodiscard]] QPixmap Picture() const { return look_.Picture; }
    void SetPicture(const QPixmap& picture) { look_.Picture = picture; }
    // clang-format on
    /// The application's own value, which `ConfigureToolTip` gives to `ToolTipStyle`.
    [[nodiscard]] std::int16_t ToolTextStyle() const { return toolTextStyle_; }

    /// What is shown or about to be, its size, and the window that shows it.
    [[nodiscard]] const TipContent& content() const { return content_; }
    [[nodiscard]] QSize size() const { return size_; }
    [[nodiscard]] const QWidget& tipWindow() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    [[nodiscard]] bool isAttached(const QWidget& window) const;
    [[nodiscard]] QWidget* controlAt(QWidget& window, QPoint mouse) const;
    [[nodiscard]] bool mayShow() const;
    [[nodiscard]] TipColours colours() const;
    void controlEvent(QWidget& window, const QEvent& event);
    void windowEvent(QWidget& window, const QEvent& event);
    void mouseMoved(QWidget& window, QPoint mouse, Qt::MouseButtons buttons);
    void mouseLeft(const QWidget& window);
    void activated(QWidget& window);
    void follow(QWidget& window);
    void showTip(QPoint mouse);
    /// No tip stands and there are no words to show.
    void reset();
    /// The clock runs only while a tick could be seen.
    void runClock();

    const SettingsStore& settings_;
    TipProperties look_;
    std::int16_t toolTextStyle_ = 0;
    TipTimer timer_;
    QBasicTimer clock_;
    QList<QPointer<QWidget>> attached_;
    QHash<const QWidget*, Tip> tips_;
    QPointer<QWidget> window_;       ///< the attached window that the mouse is in
    const QWidget* shown_ = nullptr; ///< the control that was hovered last; compared only
    QPoint mouse_;
    TipContent content_;
    QSize size_;
    std::unique_ptr<TipWindow> tip_;
};

} // namespace velmora
