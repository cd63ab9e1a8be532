// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/SkinIcon.h"

#include "shell/ControlPainter.h"
#include "shell/IconSet.h"
#include "shell/SkinPainter.h"

#include <QIconEngine>
#include <QPainter>

#include <algorithm>

namespace velmora {

namespace {
class OwnIcon : public QIconEngine {
public:
    OwnIcon(const Appearance& look, std::string_view name, IconGround ground)
        : look_(look)
        , name_(name)
        , ground_(ground) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        const int size = std::min(rect.width(), rect.height());
        const QPointF corner(rect.x() + (rect.width() - size) / 2.0, rect.y() + (rect.height() - size) / 2.0);
        paintIcon(*painter, corner, name_, colours(mode), size);
    }
    /// Views ask for pictures; one that is kept would be of an earlier skin.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
        return iconPixmap(name_, colours(mode), std::min(size.width(), size.height()), 1);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/, qreal scale) override {
        const int pixels = std::min(size.width(), size.height());
        return iconPixmap(name_, colours(mode), qRound(pixels / scale), scale);
    }
    [[nodiscard]] QIconEngine* clone() const override { return new OwnIcon(*this); }

private:
    [[nodiscard]] IconColours colours(QIcon::Mode mode) const {
        const ControlState state{.enabled = mode != QIcon::Disabled};
        IconColours colours = iconColoursOn(look_, ButtonPlace::Bar, state);
        if (ground_ == IconGround::Bar || !state.enabled)
            return colours;
        const Skin& skin = look_.skin();
        colours.ink = toQColor(skin.fieldText);
        if (mode == QIcon::Selected) // the row is in the accent
            colours.ink = colours.accent = toQColor(isDark(skin) ? kBlack : kWhite);
        return colours;
    }

    const Appearance& look_;
    std::string_view name_;
    IconGround ground_;
};
} // namespace

QIcon skinIcon(const Appearance& look, std::string_view name, IconGround ground) {
    return QIcon(new OwnIcon(look, name, ground));
}

} // namespace velmora
