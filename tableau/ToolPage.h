// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/FormLayout.h"

#include <QWidget>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <vector>

class QCheckBox;
class QLabel;

namespace velmora {

class CommandBank;
class CommandButton;
class ExToolTip;
class NumberField;
struct Appearance;

/// What every page of the tool panel is made with.
struct ToolPageParts {
    const Appearance& look;
    const CommandBank& Lb1;
    ExToolTip& tips;
};

/// A page of the tool panel: controls from left to right, in groups with a line between them.
class ToolPage : public QWidget {
public:
    static constexpr int kHeight = 52;

    /// Places everything; where the window has more room than the page, in a closer form.
    virtual void layOut(FormWidth width) = 0;
    /// Shows what the records hold.
    virtual void refresh() = 0;

    /// The controls in the order in which Tab reaches them.
    [[nodiscard]] const std::vector<QWidget*>& order() const { return order_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    ToolPage(const char* name, const ToolPageParts& parts, QWidget* parent);

    void paintEvent(QPaintEvent* event) override;

    /// A field's names, its caption and its tool text.
    struct FieldRow {
        const char* arrows;
        const char* text;
        const char* caption;
        const char* title;
        const char* tip;
    };
    struct Field {
        QLabel* caption = nullptr;
        NumberField* number = nullptr;
    };
    /// What a field stands for: the value, what a change of it does, how far an arrow goes and how low.
    struct Value {
        std::function<int()> get;
        std::function<void(std::int16_t)> set;
        std::function<int()> step = [] { return 1; };
        int least = 0;
        /// What a blank field, which is the value 0, stands for; nothing where it is an ordinary 0.
        std::function<std::optional<int>()> blank = [] { return std::nullopt; };

        /// What the value counts as, from which an arrow starts.
        [[nodiscard]] int counted() const;
        /// Sets what is so much above (or below, if negative), within bounds.
        void move(int by) const;
        /// Likewise for a click in the lower half (-1) or the upper half (1) of its picture.
        void stepHalf(int direction) const;

    private:
        [[nodiscard]] int lowest() const { return blank() ? std::max(least, 1) : least; }
    };
    [[nodiscard]] Field addField(const FieldRow& row, const Value& value);
    /// Shows the value of a field, or what stands for it.
    static void showValue(NumberField& number, const Value& value);
    [[nodiscard]] QLabel* addCaption(const char* words);
    [[nodiscard]] QCheckBox* addBox(const QString& name, const char* words, const char* title,
                                    const char* tip);
    /// The keys that a control needs are its own while it has the focus, whatever else they are shortcuts of.
    void keepKeys(QWidget& control);
    // Each returns the place to the right of what it has placed.
    int placeField(const Field& field, int x, int y, int width, int room) const;
    int placeButtons(int x, std::initializer_list<int> indices, bool iconsAlone) const;
    int placeBoxes(int x, const std::vector<QCheckBox*>& boxes, int y, int pitch) const;
    int placeSeparator(int x);
    void clearSeparators() { separators_.clear(); }

    [[nodiscard]] CommandButton& button(int index) const;

    const ToolPageParts parts_;
    std::vector<QWidget*> order_;

private:
    std::vector<int> separators_;
};

/// Places a page in the first of its forms that fits, from one that is meant for that width on.
template<class Forms, class Place>
void placeInFirstForm(const Forms& forms, FormWidth width, int room, const Place& place) {
    for (const auto& form : forms)
        if (form.from >= width && (place(form) <= room || &form == &forms.back()))
            return;
}

} // namespace velmora
