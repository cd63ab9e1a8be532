// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/SkinStyle.h"

#include "shell/Compositor.h"
#include "shell/ControlPainter.h"
#include "shell/MenuStrip.h"
#include "shell/PixelGrid.h"
#include "shell/SkinIcon.h"
#include "shell/SkinPainter.h"
#include "shell/StyleState.h"

#include <QtWidgets>

namespace velmora {

namespace {
constexpr int kMenuRow = 24;
constexpr int kMenuSeparator = 8;
constexpr int kCheckColumn = 24;
constexpr int kFieldHeight = 24;
constexpr int kListRow = 20;
constexpr int kFocusMargin = 2;

/// Dialogs have no focus frame: there a button shows by itself that a key has reached it.
bool showsFocusItself(const QStyleOption& option, const QWidget* widget) {
    return widget && qobject_cast<const QDialog*>(widget->window()) &&
           option.state.testFlag(QStyle::State_HasFocus) &&
           option.state.testFlag(QStyle::State_KeyboardFocusChange);
}

QColor mixed(Rgb one, Rgb other, double share) {
    return toQColor(mix(one, other, share));
}
} // namespace

QPalette skinPalette(const Skin& skin) {
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, const QColor& colour) {
        palette.setColor(role, colour);
    };
    set(QPalette::Window, toQColor(skin.panel.from));
    set(QPalette::WindowText, toQColor(skin.text));
    set(QPalette::Base, toQColor(skin.field));
    set(QPalette::AlternateBase, mixed(skin.field, skin.panel.from, 0.5));
    set(QPalette::Text, toQColor(skin.fieldText));
    set(QPalette::PlaceholderText, toQColor(skin.dim));
    set(QPalette::Button, toQColor(skin.face.to));
    set(QPalette::ButtonText, toQColor(skin.text));
    set(QPalette::BrightText, toQColor(recordRed(skin)));
    set(QPalette::Highlight, toQColor(skin.accent));
    set(QPalette::HighlightedText, toQColor(isDark(skin) ? kBlack : kWhite));
    set(QPalette::Link, toQColor(skin.accent));
    set(QPalette::LinkVisited, toQColor(skin.accent));
    set(QPalette::ToolTipBase, QColor(255, 253, 236));
    set(QPalette::ToolTipText, QColor(32, 30, 24));
    set(QPalette::Light, mixed(skin.face.from, kWhite, 0.5));
    set(QPalette::Midlight, toQColor(skin.face.from));
    set(QPalette::Mid, toQColor(skin.line));
    set(QPalette::Dark, mixed(skin.line, kBlack, 0.3));
    set(QPalette::Shadow, mixed(skin.line, kBlack, 0.6));
    const QColor pale = toQColor(mix(skin.text, skin.panel.from, 0.62));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, pale);
    palette.setColor(QPalette::Disabled, QPalette::Base, mixed(skin.field, skin.panel.from, 0.7));
    return palette;
}

SkinStyle::SkinStyle(const Appearance& look) : QProxyStyle(QStringLiteral("Fusion")), look_(look) {}

QPalette SkinStyle::standardPalette() const {
    return skinPalette(look_.skin());
}

/// Ours where we have one. That of the menus that find no room in a bar is asked for with each bar, and
/// reading Qt's picture loads all there is for pictures of other kinds.
QIcon SkinStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const {
    struct Row {
        StandardPixmap icon;
        std::string_view name;
    };
    static constexpr std::array kIcons{
        Row{SP_ToolBarHorizontalExtensionButton, "more"},
        Row{SP_ArrowBack, "back"},
        Row{SP_ArrowForward, "forward"},
        Row{SP_FileDialogToParent, "up"},
        Row{SP_FileDialogNewFolder, "newfolder"},
    };
    for (const Row& row : kIcons)
        if (row.icon == icon)
            return skinIcon(look_, row.name);
    return QProxyStyle::standardIcon(icon, option, widget);
}

void SkinStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (!widget->inherits("QMenu"))
        return;
    widget->setAttribute(Qt::WA_StyledBackground, true);
    if (windowsShineThrough()) // its corners are round
        widget->setAttribute(Qt::WA_TranslucentBackground, true);
}

void SkinStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    const Skin& skin = look_.skin();
    switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        paintCheckBox(*painter, skin, option->rect, stateOf(*option));
        return;
    case PE_IndicatorRadioButton:
        paintRadio(*painter, skin, option->rect, stateOf(*option));
        return;
    case PE_PanelLineEdit:
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            frame && frame->lineWidth > 0)
            paintField(*painter, skin, option->rect, option->state.testFlag(State_Enabled));
        return;
    case PE_Frame:
        if (qobject_cast<const QAbstractScrollArea*>(widget)) {
            strokeRounded(*painter, option->rect, fieldRadius(skin), toQColor(skin.fieldEdge));
            return;
        }
        break;
    case PE_PanelButtonCommand:
        paintFace(*painter, look_, option->rect, ButtonPlace::Panel, stateOf(*option));
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
            button && button->features.testFlag(QStyleOptionButton::DefaultButton))
            strokeRounded(*painter, option->rect, faceRadius(look_, option->rect), toQColor(skin.accent));
        if (showsFocusItself(*option, widget))
            strokeRounded(*painter, option->rect.adjusted(2, 2, -2, -2), fieldRadius(skin),
                          toQColor(skin.focus), kFocusMargin);
        return;
    case PE_PanelButtonTool:
        paintFace(*painter, look_, option->rect, ButtonPlace::Bar, stateOf(*option));
        return;
    case PE_PanelMenu:
    case PE_FrameMenu:
        fillRounded(*painter, option->rect, groupRadius(skin), toQColor(skin.panel.from),
                    toQColor(mix(skin.line, skin.text, 0.25)));
        if (isBevelled(skin))
            paintBevel(*painter, option->rect, false);
        return;
    case PE_FrameTabWidget:
        fillRounded(*painter, option->rect, 0, toQColor(skin.readOut), toQColor(skin.line));
        return;
    case PE_FrameGroupBox:
        paintGroup(*painter, skin, option->rect);
        return;
    case PE_FrameFocusRect: // windows of the program have a focus frame; dialogs have none
        if (qobject_cast<const QAbstractButton*>(widget) && !qobject_cast<const QPushButton*>(widget) &&
            showsFocusItself(*option, widget))
            strokeRounded(*painter, option->rect, fieldRadius(skin), toQColor(skin.focus));
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void SkinStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    switch (element) {
    case CE_MenuItem:
        drawMenuItem(option, painter);
        return;
    case CE_MenuBarItem:
        drawMenuLabel(option, painter, widget);
        return;
    case CE_MenuBarEmptyArea:
        painter->fillRect(option->rect, lightening(look_.skin()));
        horizontalLine(*painter, option->rect.left(), option->rect.bottom(), option->rect.width(),
                       toQColor(look_.skin().line));
        return;
    case CE_MenuEmptyArea:
    case CE_MenuTearoff:
        return;
    case CE_TabBarTabShape:
        drawTab(option, painter);
        return;
    case CE_ProgressBarGroove:
        paintReadOut(*painter, look_.skin(), option->rect);
        return;
    case CE_ProgressBarContents:
        drawProgress(option, painter);
        return;
    case CE_ProgressBarLabel: // the line at the foot never lies under the words
        if (const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
            bar && bar->textVisible) {
            painter->setPen(toQColor(look_.skin().text));
            painter->drawText(bar->rect, Qt::AlignCenter | Qt::TextSingleLine, bar->text);
        }
        return;
    case CE_FocusFrame:
        drawFocusFrame(option, painter, widget);
        return;
    case CE_PushButtonLabel: {
        // Pressed text moves with its face.
        const int shift = option->state.testFlag(State_Sunken) ? 1 : 0;
        painter->translate(shift, shift);
        QProxyStyle::drawControl(element, option, painter, widget);
        painter->translate(-shift, -shift);
        return;
    }
    default:
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void SkinStyle::drawMenuItem(const QStyleOption* option, QPainter* painter) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (!item)
        return;
    const Skin& skin = look_.skin();
    const QRect row = item->rect;
    if (item->menuItemType == QStyleOptionMenuItem::Separator) {
        horizontalLine(*painter, row.left() + kCheckColumn + 4, row.center().y(),
                       row.width() - kCheckColumn - 12, toQColor(skin.line));
        return;
    }
    const bool enabled = item->state.testFlag(State_Enabled);
    const bool selected = item->state.testFlag(State_Selected);
    if (selected && enabled)
        fillRounded(*painter, row.adjusted(1, 1, -1, -1), fieldRadius(skin), downwards(skin.hot, row),
                    toQColor(skin.buttonEdge));
    else if (selected) // the arrows stop here, too, so that a screen reader can tell of it
        strokeRounded(*painter, row.adjusted(1, 1, -1, -1), fieldRadius(skin), toQColor(skin.line));
    if (item->checked) {
        const QRectF box(row.left() + 5, row.center().y() - 6.5, 14, 14);
        if (item->checkType == QStyleOptionMenuItem::Exclusive)
            paintRadio(*painter, skin, box, {.enabled = enabled, .checked = true});
        else
            paintCheckBox(*painter, skin, box, {.enabled = enabled, .checked = true});
    }
    painter->setPen(inkOn(skin, {.enabled = enabled}));
    painter->setFont(item->font);
    const QRect words = row.adjusted(kCheckColumn + 4, 0, -24, 0);
    const QString text = item->text.section(QLatin1Char('\t'), 0, 0);
    const QString shortcut = item->text.section(QLatin1Char('\t'), 1);
    painter->drawText(words, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextHideMnemonic | Qt::TextSingleLine,
                      text);
    if (!shortcut.isEmpty()) {
        if (enabled)
            painter->setPen(toQColor(skin.dim));
        painter->drawText(words.adjusted(0, 0, 12, 0), Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                          shortcut);
    }
    if (item->menuItemType == QStyleOptionMenuItem::SubMenu)
        paintChevron(*painter, QRectF(row.right() - 19, row.top(), 16, row.height()),
                     item->direction == Qt::RightToLeft ? Direction::Left : Direction::Right,
                     inkOn(skin, {.enabled = enabled}));
}

void SkinStyle::drawMenuLabel(const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (!item)
        return;
    const Skin& skin = look_.skin();
    const bool pressed = item->state.testFlag(State_Sunken);
    painter->fillRect(item->rect, lightening(skin));
    if (pressed || item->state.testFlag(State_Selected))
        fillRounded(*painter, item->rect, fieldRadius(skin),
                    downwards(pressed ? skin.pressed : skin.hot, item->rect), toQColor(skin.buttonEdge));
    painter->setPen(toQColor(skin.text));
    const auto* strip = dynamic_cast<const MenuStrip*>(widget);
    const int letters = strip && strip->showsLetters() ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
    painter->drawText(item->rect, Qt::AlignCenter | Qt::TextSingleLine | letters, item->text);
}

void SkinStyle::drawTab(const QStyleOption* option, QPainter* painter) const {
    const Skin& skin = look_.skin();
    const bool active = option->state.testFlag(State_Selected);
    const QRectF tab = QRectF(option->rect).adjusted(0, active ? 0 : 2, -2, 0);
    painter->save();
    painter->setClipRect(tab);
    fillRounded(*painter, tab.adjusted(0, 0, 0, 8), groupRadius(skin),
                active ? QBrush(toQColor(skin.readOut))
                       : downwards(stateOf(*option).hot ? skin.hot : skin.face, tab),
                toQColor(skin.line));
    if (active)
        painter->fillRect(QRectF(tab.left() + 2, tab.top(), tab.width() - 4, 2), toQColor(skin.accent));
    else
        horizontalLine(*painter, tab.left(), tab.bottom() - 1, tab.width(), toQColor(skin.line));
    painter->restore();
}

/// A line at the foot, so that the words over it read as on any read-out.
void SkinStyle::drawProgress(const QStyleOption* option, QPainter* painter) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    if (!bar || bar->maximum <= bar->minimum)
        return;
    const double share = static_cast<double>(bar->progress - bar->minimum) / (bar->maximum - bar->minimum);
    const QRectF all(bar->rect);
    painter->fillRect(PixelGrid(*painter).rect({all.left() + 1, all.bottom() - 4,
                                                (all.width() - 2) * std::clamp(share, 0.0, 1.0), 3}),
                      toQColor(look_.skin().accent));
}

void SkinStyle::drawFocusFrame(const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
    const auto* frame = qobject_cast<const QFocusFrame*>(widget);
    const QRectF ring = option->rect;
    qreal radius = fieldRadius(look_.skin());
    if (frame && qobject_cast<const QAbstractButton*>(frame->widget()))
        radius = faceRadius(look_, ring.adjusted(kFocusMargin, kFocusMargin, -kFocusMargin, -kFocusMargin));
    strokeRounded(*painter, ring, radius > 0 ? radius + kFocusMargin : 0, toQColor(look_.skin().focus),
                  kFocusMargin);
}

QRect SkinStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
    if (element == SE_LineEditContents)
        return option->rect.adjusted(6, 1, -6, -1);
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize SkinStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
    const QSize base = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_PushButton: {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        const int text = button ? button->fontMetrics.horizontalAdvance(button->text) : size.width();
        return {std::max(64, (text + 24 + 3) / 4 * 4), kFieldHeight};
    }
    case CT_LineEdit:
    case CT_ComboBox:
        return {base.width(), std::max(kFieldHeight, size.height() + 6)};
    case CT_SpinBox: // its line edit has that margin already
        return {base.width(), std::max(kFieldHeight, size.height())};
    case CT_MenuItem: {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (item && item->menuItemType == QStyleOptionMenuItem::Separator)
            return {10, kMenuSeparator};
        const int words =
            item ? item->fontMetrics.horizontalAdvance(item->text.section(QLatin1Char('\t'), 0, 0)) : 0;
        const int shortcut =
            item && item->text.contains(QLatin1Char('\t')) ? item->reservedShortcutWidth + 24 : 0;
        return {kCheckColumn + 4 + words + shortcut + 32, kMenuRow};
    }
    case CT_MenuBarItem: {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        const QString words = item ? QString(item->text).remove(u'&') : QString();
        return {(item ? item->fontMetrics.horizontalAdvance(words) : size.width()) + 20, 20};
    }
    case CT_MenuBar:
        return {base.width(), 24};
    case CT_ItemViewItem:
        return {base.width(), std::max(kListRow, base.height())};
    case CT_TabBarTab:
        return {base.width() + 4, kFieldHeight};
    default:
        return base;
    }
}

int SkinStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return 14;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return 6;
    case PM_ScrollBarExtent:
        return 16;
    case PM_ScrollBarSliderMin:
        return 28;
    case PM_SliderLength:
        return 12;
    case PM_SliderThickness:
    case PM_SliderControlThickness:
        return 20;
    case PM_MenuPanelWidth:
        return 1;
    case PM_MenuBarItemSpacing:
        return 4;
    case PM_MenuBarHMargin:
        return 8;
    case PM_MenuBarVMargin:
        return 2;
    case PM_MenuBarPanelWidth:
        return 0;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return 3;
    case PM_FocusFrameHMargin:
    case PM_FocusFrameVMargin:
        return kFocusMargin;
    case PM_TabBarBaseOverlap:
        return 1;
    case PM_SmallIconSize:
        return 16;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int SkinStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* data) const {
    switch (hint) {
    case SH_Widget_Animation_Duration:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_ComboBox_Popup:
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    case SH_Menu_Mask:
        if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(data);
            mask && option && groupRadius(look_.skin()) > 0 && !windowsShineThrough()) {
            QPainterPath outline;
            outline.addRoundedRect(option->rect, groupRadius(look_.skin()), groupRadius(look_.skin()));
            mask->region = QRegion(outline.toFillPolygon().toPolygon());
            return 1;
        }
        return 0;
    case SH_FocusFrame_AboveWidget:
    case SH_MenuBar_AltKeyNavigation:
    case SH_MenuBar_MouseTracking:
    case SH_Menu_MouseTracking:
    case SH_Menu_AllowActiveAndDisabled:
        return 1;
    default:
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

} // namespace velmora
