// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractButton>
#include <QLabel>

#include <gtest/gtest.h>

namespace velmora {

/// What an open message says; for steps of `DialogDriver::in<QWidget>`.
inline QString wordsOf(const QWidget& message) {
    const auto* words = message.findChild<QLabel*>("words");
    return words ? words->text() : QString();
}
/// Presses "yes", "no" or "ok".
inline void pressIn(const QWidget& message, const char* button) {
    auto* found = message.findChild<QAbstractButton*>(button);
    ASSERT_TRUE(found) << button;
    found->click();
}

} // namespace velmora
