// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/ExToolTip.h"

#include "base/Settings.h"
#include "shell/TipWindow.h"

#include <QApplication>
#include <QTimerEvent>
#include <QWidget>

#include <algorithm>
#include <array>

namespace velmora {

namespace {

constexpr int kTickMilliseconds = 10;
constexpr TipColour kSystemBit = 0x80000000;
const QColor kPlainBack(255, 255, 225);

struct SystemColour {
    TipColour number;
    QRgb value;
};
constexpr std::array<SystemColour, 3> kSystemColours{{
    {kButtonText, qRgb(32, 30, 24)},
    {kTipBackground, qRgb(255, 253, 236)},
    {kDesktop, qRgb(250, 240, 206)},
}};

TipStyle styleOf(int number) {
    return number == 1 ? TipStyle::Balloon : number == 2 ? TipStyle::Plain : TipStyle::Rectangular;
}

} // namespace

QColor tipColour(TipColour colour, TipStyle style) {
    if ((colour & kSystemBit) == 0)
        return {static_cast<int>(colour & 0xff), static_cast<int>(colour >> 8 & 0xff),
                static_cast<int>(colour >> 16 & 0xff)};
    if (colour == kTipBackground && style == TipStyle::Plain)
        return kPlainBack;
    const auto* const found = std::ranges::find(kSystemColours, colour, &SystemColour::number);
    // Of the system's other colours a tip knows none: it keeps its ground.
    return QColor::fromRgb(found != kSystemColours.end() ? found->value : kSystemColours[1].value);
}

QColor tipEdge(TipStyle style) {
    return style == TipStyle::Plain ? QColor(Qt::black) : QColor(132, 120, 84);
}

std::int16_t toolTextStyle(std::string_view setting, std::int16_t before) {
    if (setting.size() != 1 || setting[0] < '0' || setting[0] > '2')
        return before;
    return static_cast<std::int16_t>(setting[0] - '0');
}

ExToolTip::ExToolTip(const SettingsStore& settings, QObject* parent)
    : QObject(parent)
    , settings_(settings)
    , tip_(std::make_unique<TipWindow>()) {
    // Of the mouse over a disabled control only the application is told.
    qApp->installEventFilter(this);
}

ExToolTip::~ExToolTip() {
    if (qApp)
        qApp->removeEventFilter(this);
}

const QWidget& ExToolTip::tipWindow() const {
    return *tip_;
}

void ExToolTip::Attach(QWidget& window) {
    if (isAttached(window))
        return;
    attached_ += &window;
    connect(&window, &QObject::destroyed, this, [this](QObject* gone) {
        attached_.removeAll(QPointer<QWidget>());
        // Its pointers are null by now.
        if (!window_ || window_ == gone) {
            reset();
            shown_ = nullptr;
            timer_.windowDestroyed();
        }
    });
}

bool ExToolTip::isAttached(const QWidget& window) const {
    return std::ranges::find(attached_, &window, &QPointer<QWidget>::get) != attached_.end();
}

void ExToolTip::SetToolTip(QWidget& control, const Tip& tip) {
    const Tip* before = toolTip(control);
    if (before && *before == tip)
        return;
    const auto nameOf = [](const Tip& words) {
        return words.title.trimmed().isEmpty() ? words.text : words.title;
    };
    if (control.accessibleName().isEmpty() || (before && control.accessibleName() == nameOf(*before)))
        control.setAccessibleName(nameOf(tip));
    control.setAccessibleDescription(tip.text);
    if (!before)
        connect(&control, &QObject::destroyed, this, [this, key = &control] {
            tips_.remove(key);
            if (shown_ == key) {
                shown_ = nullptr;
                reset();
            }
        });
    tips_.insert(&control, tip);
    if (shown_ == &control) { // what stands is out of date
        shown_ = nullptr;
        reset();
    }
}

const Tip* ExToolTip::toolTip(const QWidget& control) const {
    const auto found = tips_.find(&control);
    return found == tips_.end() ? nullptr : &*found;
}

void ExToolTip::ConfigureToolTip() {
    const auto& setting = settings::ToolText_type;
    const std::string standard = std::to_string(setting.fallback);
    toolTextStyle_ =
        toolTextStyle(settings_.GetSetting(setting.section, setting.key, standard), toolTextStyle_);
    look_ = {.Shadow = -1,
             .Font = QStringLiteral("Arial"),
             .IconSize = look_.IconSize,
             .ToolTipStyle = toolTextStyle_,
             .Picture = look_.Picture};
    timer_.setDelayTime(15);
    timer_.setKillTime(200);
}

void ExToolTip::ShowToolTip(QWidget& window, const QString& text, const QString& title,
                            const QPixmap& picture, const std::string& icon) {
    reset();
    follow(window);
    content_ = {.title = title,
                .text = text,
                .icon = icon,
                .picture = picture,
                .style = styleOf(look_.ToolTipStyle),
                .family = look_.Font,
                .iconSize = look_.IconSize,
                .shadow = look_.Shadow != 0};
    size_ = tipSize(content_);
    timer_.arm();
    runClock();
}

void ExToolTip::hover(QWidget& window, QWidget* control) {
    if (control == shown_)
        return;
    shown_ = control;
    const Tip* tip = control ? toolTip(*control) : nullptr;
    if (!tip) {
        reset();
        return;
    }
    ConfigureToolTip();
    ShowToolTip(window, tip->text, tip->title, look_.Picture, tip->icon);
}

void ExToolTip::tick(QPoint mouse) {
    const bool inside =
        window_ && window_->isVisible() && window_->rect().contains(window_->mapFromGlobal(mouse));
    const auto where = inside ? TipTimer::Mouse::Inside : TipTimer::Mouse::Outside;
    const auto act = timer_.tick({mouse.x(), mouse.y()}, where);
    if (act == TipTimer::Act::Show)
        showTip(mouse);
    if (act == TipTimer::Act::Destroy) {
        reset();
        if (!inside)
            shown_ = nullptr;
    }
    runClock();
}

void ExToolTip::showTip(QPoint mouse) {
    if (size_.isEmpty())
        return;
    if (mayShow())
        tip_->showAt(mouse, content_, colours(), *window_);
    else
        reset();
}

/// Not over a menu, and not for a window that waits for a dialog's answer.
bool ExToolTip::mayShow() const {
    const QWidget* popup = QApplication::activePopupWidget();
    const QWidget* modal = QApplication::activeModalWidget();
    return window_ && (!popup || popup == window_) &&
           (!modal || modal == window_ || modal->isAncestorOf(window_));
}

TipColours ExToolTip::colours() const {
    const bool plain = content_.style == TipStyle::Plain;
    const auto value = [this](TipColour colour) { return tipColour(colour, content_.style); };
    const bool solid = plain || look_.BackStyle != 1;
    return {.ink = value(look_.TextColor),
            .from = value(solid ? look_.BackColor : look_.GradientColorStart),
            .to = value(solid ? look_.BackColor : look_.GradientColorEnd),
            .edge = tipEdge(content_.style)};
}

void ExToolTip::reset() {
    tip_->hide();
    timer_.dismiss();
    content_ = {};
    size_ = {};
    runClock();
}

void ExToolTip::runClock() {
    const bool needed = timer_.isRunning() && !size_.isEmpty();
    if (!needed)
        clock_.stop();
    else if (!clock_.isActive())
        clock_.start(kTickMilliseconds, Qt::PreciseTimer, this);
}

void ExToolTip::timerEvent(QTimerEvent* /*event*/) {
    tick(mouse_);
}

} // namespace velmora
