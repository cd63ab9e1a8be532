// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/FormLayout.h"

#include <QWidget>

#include <array>

namespace velmora {

class CommandBank;
class EditorPage;
class EffectsPage;
class ExToolTip;
class MakerPage;
class ToolPage;
struct Appearance;
struct Workspace;

/// The tabs `Lb1`(17 to 19) and the page that the active one runs into: `TB1` Melody Maker, `TB2` Single Note
/// Effects, `TB4` Score Editor. `Lb1`(16) at the right hides the whole panel.
class ToolPanel : public QWidget {
public:
    enum Page { Maker, Effects, Editor };

    /// The pages read and set the workspace's records `edit` and `effects`.
    ToolPanel(const Appearance& look, const CommandBank& Lb1, ExToolTip& tips, Workspace& workspace,
              QWidget* parent);

    void showPage(Page page);
    void layOut(FormWidth width);
    /// Shows what the records hold, on every page.
    void refresh();

    [[nodiscard]] MakerPage& maker() const { return *maker_; }
    [[nodiscard]] EffectsPage& effects() const { return *effects_; }
    [[nodiscard]] EditorPage& editor() const { return *editor_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void setOrder();

    const Appearance& look_;
    const CommandBank& Lb1_;
    MakerPage* maker_;
    EffectsPage* effects_;
    EditorPage* editor_;
    std::array<ToolPage*, 3> pages_;
    Page page_ = Editor;
    FormWidth width_ = FormWidth::Full;
    int tabWidth_ = 144;
};

} // namespace velmora
