// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QPalette>
#include <QProxyStyle>

namespace velmora {

struct Appearance;
struct Skin;

/// The colours of a skin for whatever the style doesn't draw itself.
[[nodiscard]] QPalette skinPalette(const Skin& skin);

/// Draws Qt's controls in the chosen skin, so that menus, dialogs and message boxes look like the windows.
class SkinStyle : public QProxyStyle {
public:
    /// @param look is read at each painting; it must outlive the application's last window
    explicit SkinStyle(const Appearance& look);

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                       SubControl part, const QWidget* widget) const override;
    [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption* option,
                                       const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                         const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* data) const override;
    [[nodiscard]] QPalette standardPalette() const override;
    [[nodiscard]] QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                                     const QWidget* widget) const override;
    using QProxyStyle::polish;
    void polish(QWidget* widget) override;

private:
    void drawMenuItem(const QStyleOption* option, QPainter* painter) const;
    void drawMenuLabel(const QStyleOption* option, QPainter* painter, const QWidget* widget) const;
    void drawTab(const QStyleOption* option, QPainter* painter) const;
    void drawProgress(const QStyleOption* option, QPainter* painter) const;
    void drawFocusFrame(const QStyleOption* option, QPainter* painter, const QWidget* widget) const;
    void drawScrollBar(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const;
    void drawSlider(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const;
    void drawSpinBox(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const;
    void drawComboBox(const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const;

    const Appearance& look_;
};

} // namespace velmora
