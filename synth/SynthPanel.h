// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

#include <functional>
#include <vector>

class QAbstractButton;
class QCheckBox;
class QLabel;
class QRadioButton;

namespace velmora {

class CommandButton;
class Keyboard;
struct Appearance;
struct Desk;

/// What the panels of the keyboard work with.
struct SynthParts {
    Desk& desk;
    Keyboard& keyboard;
    const Appearance& look;
    /// A control was used: everything that shows the keyboard is to show it anew.
    std::function<void()> onUse;
    /// The keys are to have the focus again.
    std::function<void()> onDone;
};

/// A page of the keyboard's toolbar, 104 high. It is laid out for its width.
class SynthPanel : public QWidget {
public:
    static constexpr int kHeight = 104;
    static constexpr int kMargin = 12;

    /// @param parts outlive the panel
    SynthPanel(const SynthParts& parts, const char* name, QWidget* parent);

    /// Shows what the keyboard stands on.
    virtual void refresh() = 0;

protected:
    /// Gives the controls their places.
    virtual void layOut(int width) = 0;

    [[nodiscard]] QCheckBox* addCheck(const char* name, const char* caption, const char* tip,
                                      std::function<void(bool on)> onClick);
    [[nodiscard]] QRadioButton* addRadio(const QString& name, const char* caption,
                                         std::function<void()> onClick);
    [[nodiscard]] CommandButton* addButton(const char* name, const char* caption, const char* tip,
                                           std::function<void()> onClick);
    [[nodiscard]] QLabel* addWords(const char* words);
    /// Where vertical rules stand.
    void setRules(std::vector<int> rules);

    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    const SynthParts& parts_;

private:
    std::vector<int> rules_;
};

/// Gives it the place, as wide as it wants to be and 20 high; returns what follows it.
int putAt(QWidget& control, int x, int y);

} // namespace velmora
