// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/FormLayout.h"

#include <QWidget>

#include <array>

namespace velmora {

class CommandBank;
struct Appearance;

/// The tabs `Lb1`(17 to 19) and the page that the active one runs into: `TB1` Melody Maker, `TB2` Single Note
/// Effects, `TB4` Score Editor. `Lb1`(16) at the right hides the whole panel.
class ToolPanel : public QWidget {
public:
    enum Page { Maker, Effects, Editor };

    ToolPanel(const Appearance& look, const CommandBank& Lb1, QWidget* parent);

    void showPage(Page page);
    void layOut(FormWidth width);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// One page, with its buttons from left to right in groups.
    class ToolPage;

    const Appearance& look_;
    const CommandBank& Lb1_;
    std::array<ToolPage*, 3> pages_{};
    Page page_ = Editor;
    int tabWidth_ = 144;
};

} // namespace velmora
