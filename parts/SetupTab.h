// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractButton>

namespace velmora {

struct Appearance;

/// A tab over the page of the setup toolbar: one of `Lmnu`. Its last pixel covers the page's line.
class SetupTab : public QAbstractButton {
public:
    SetupTab(const Appearance& look, const QString& words, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Appearance& look_;
};

/// The page that the active tab runs into.
class SetupPage : public QWidget {
public:
    SetupPage(const Appearance& look, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Appearance& look_;
};

} // namespace velmora
