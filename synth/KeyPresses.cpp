// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeyPresses.h"

#include "keyboard/Keyboard.h"

#include <QKeyEvent>

#include <utility>

namespace velmora {

namespace {
/// How long the press of a repeat may take to follow its release. On a busy machine the thread that reads
/// what the window system tells may rest between the two for some turns of the scheduler; nobody hears a note
/// end so much later.
constexpr int kLookMilliseconds = 12;
/// Of keys whose place is unknown; above the places that there are.
constexpr int kByKey = 1 << 16;
constexpr quint32 kLevel3 = 0x80; ///< of the window system's modifiers: the one that AltGr sets

int positionOf(const QKeyEvent& event) {
    return event.nativeScanCode() ? static_cast<int>(event.nativeScanCode()) : kByKey + event.key();
}

bool isAltGr(const QKeyEvent& event) {
    return event.key() == Qt::Key_AltGr || event.key() == Qt::Key_Mode_switch;
}

bool isLetterOrDigit(int key) {
    return (key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9);
}

/// The same character as a capital, or as a small letter; blank if there is none.
QString otherCase(const QString& text) {
    const QString upper = text.toUpper();
    const QString other = upper != text ? upper : text.toLower();
    return other != text && other.size() == text.size() ? other : QString();
}
} // namespace

KeyPresses::KeyPresses(std::function<void(const ComputerKey&)> down,
                       std::function<void(const ComputerKey&)> up)
    : down_(std::move(down))
    , up_(std::move(up)) {
    settling_.setSingleShot(true);
    settling_.setTimerType(Qt::PreciseTimer);
    settling_.setInterval(kLookMilliseconds);
    QObject::connect(&settling_, &QTimer::timeout, &settling_, [this] { settle(); });
}

bool KeyPresses::isAltGrDown(const QKeyEvent& event) const {
    return !altGrs_.empty() || (event.nativeModifiers() & kLevel3) != 0 ||
           event.modifiers().testFlag(Qt::GroupSwitchModifier);
}

bool KeyPresses::plays(const QKeyEvent& event) const {
    // Some window systems tell AltGr as Ctrl and Alt.
    if (!isAltGrDown(event) &&
        (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
        return false;
    const QString text = event.text();
    return event.key() == Qt::Key_Space || (!text.isEmpty() && text.front().isPrint());
}

KeyPresses::Held KeyPresses::heldOf(const QKeyEvent& event) const {
    Held held{.position = positionOf(event)};
    if (event.key() == Qt::Key_Space)
        held.code = ComputerKey::kSpace;
    else if (isLetterOrDigit(event.key()) && !isAltGrDown(event) && !(event.modifiers() & Qt::KeypadModifier))
        held.code = event.key();
    held.text = event.text().toStdString();
    held.otherText = otherCase(event.text()).toStdString();
    return held;
}

ComputerKey KeyPresses::keyOf(const Held& held) {
    return {.position = held.position, .code = held.code, .text = held.text, .otherText = held.otherText};
}

bool KeyPresses::press(const QKeyEvent& event) {
    if (isAltGr(event)) {
        altGrs_.insert(positionOf(event));
        return false;
    }
    if (looksAt_ && releasedAt_ == event.timestamp() && released_.position == positionOf(event)) {
        settling_.stop();
        looksAt_ = false; // it has been down all the time
        return true;
    }
    settle();
    if (held_.contains({.position = positionOf(event)}))
        return true;
    if (!plays(event))
        return false;
    if (event.isAutoRepeat()) // of a press that went elsewhere
        return true;
    const Held held = heldOf(event);
    held_.insert(held);
    down_(keyOf(held));
    return true;
}

bool KeyPresses::release(const QKeyEvent& event) {
    if (isAltGr(event)) {
        altGrs_.erase(positionOf(event));
        return false;
    }
    const auto held = held_.find({.position = positionOf(event)});
    if (held == held_.end())
        return false;
    if (event.isAutoRepeat())
        return true;
    settle();
    released_ = *held;
    releasedAt_ = event.timestamp();
    looksAt_ = true;
    if (releasedAt_ == 0) // without a stamp there is nothing to compare
        settle();
    else
        settling_.start();
    return true;
}

/// No press has followed: the key is up.
void KeyPresses::settle() {
    settling_.stop();
    if (!std::exchange(looksAt_, false))
        return;
    const Held up = std::exchange(released_, {});
    held_.erase(up);
    up_(keyOf(up));
}

void KeyPresses::forget() {
    settling_.stop();
    looksAt_ = false;
    held_.clear();
    altGrs_.clear();
}

} // namespace velmora
