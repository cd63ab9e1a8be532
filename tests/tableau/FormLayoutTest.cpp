// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/FormLayout.h"

#include <gmock/gmock.h>

#include <ostream>

using namespace velmora;

namespace velmora {
void PrintTo(const FormLayout&, std::ostream*) {} // gtest would print bytes
} // namespace velmora

namespace {
struct NamedRect {
    const char* name;
    QRect rect;
};
std::vector<NamedRect> shownParts(const FormLayout& layout) {
    std::vector<NamedRect> parts;
    for (const NamedRect& part :
         {NamedRect{"menuStrip", layout.menuStrip}, NamedRect{"buttonBar", layout.buttonBar},
          NamedRect{"toolPanel", layout.toolPanel}, NamedRect{"channelStrip", layout.channelStrip},
          NamedRect{"readOuts", layout.readOuts}, NamedRect{"pic3", layout.pic3},
          NamedRect{"pic2a", layout.pic2a}, NamedRect{"beatbox", layout.beatbox},
          NamedRect{"splitter", layout.splitter}, NamedRect{"guide", layout.guide},
          NamedRect{"musicBox", layout.musicBox}, NamedRect{"horizontalBar", layout.horizontalBar},
          NamedRect{"verticalBar", layout.verticalBar}, NamedRect{"textLine", layout.textLine}})
        if (!part.rect.isEmpty())
            parts.push_back(part);
    return parts;
}

struct Size {
    int width, height;
    FormWidth across;
    int beatbox;
};
constexpr Size kSizes[]{
    {1366, 768, FormWidth::Full, 72},    {1233, 701, FormWidth::Compact, 72},
    {1024, 600, FormWidth::Compact, 48}, {891, 533, FormWidth::Small, 48},
    {880, 520, FormWidth::Small, 48},    {1920, 1080, FormWidth::Full, 72},
    {3840, 2160, FormWidth::Full, 72},
};

class FormLayoutTest : public testing::TestWithParam<Size> {
protected:
    QSize window{GetParam().width, GetParam().height};
};
INSTANTIATE_TEST_SUITE_P(Windows, FormLayoutTest, testing::ValuesIn(kSizes));
} // namespace

TEST(FormLayoutRowsTest, StandAsDrawnOnAWideScreen) {
    const FormLayout layout = formLayout({1366, 768}, {});
    struct Row {
        const char* name;
        QRect rect;
        int top, height;
    };
    for (const Row& row : {
             Row{"menuStrip", layout.menuStrip, 28, 24},
             Row{"buttonBar", layout.buttonBar, 52, 40},
             Row{"toolPanel", layout.toolPanel, 92, 60},
             Row{"channelStrip", layout.channelStrip, 156, 30},
             Row{"readOuts", layout.readOuts, 158, 24},
             Row{"pic3", layout.pic3, 187, 18},
             Row{"pic2a", layout.pic2a, 206, 26},
             Row{"beatbox", layout.beatbox, 236, 72},
             Row{"splitter", layout.splitter, 308, 3},
             Row{"musicBox", layout.musicBox, 311, 405},
             Row{"guide", layout.guide, 311, 405},
             Row{"horizontalBar", layout.horizontalBar, 720, 16},
             Row{"textLine", layout.textLine, 740, 24},
         }) {
        EXPECT_EQ(row.rect.top(), row.top) << row.name;
        EXPECT_EQ(row.rect.height(), row.height) << row.name;
    }
    EXPECT_EQ(layout.musicBox.left(), 48);
    EXPECT_EQ(layout.musicBox.width(), 1366 - 70);
}

TEST(FormLayoutRowsTest, WidthHasThreeForms) {
    EXPECT_EQ(formWidth(1280), FormWidth::Full);
    EXPECT_EQ(formWidth(1279), FormWidth::Compact);
    EXPECT_EQ(formWidth(1000), FormWidth::Compact);
    EXPECT_EQ(formWidth(999), FormWidth::Small);
}

TEST(FormLayoutRowsTest, BeatboxIsLowerInALowWindowAndAsHighAsTheUserMadeIt) {
    EXPECT_EQ(formLayout({1366, 700}, {}).beatbox.height(), 72);
    EXPECT_EQ(formLayout({1366, 699}, {}).beatbox.height(), 48);
    EXPECT_EQ(formLayout({1366, 699}, {.beatboxHeight = 96}).beatbox.height(), 96);
}

TEST(FormLayoutRowsTest, ABeatboxOfAHighWindowIsLowerInALowOne) {
    const FormLayout layout = formLayout({1366, 700}, {.beatboxHeight = 600});
    EXPECT_EQ(layout.beatbox.height() % 12, 0);
    EXPECT_GE(layout.musicBox.height(), 60);
    EXPECT_LT(layout.musicBox.height(), 60 + 12);
}

TEST_P(FormLayoutTest, NothingOverlapsAndNothingIsCut) {
    for (const FormParts& shown :
         {FormParts{}, FormParts{.beatboxHeight = 1200}, FormParts{.percussion = false},
          FormParts{.editingToolbar = false}, FormParts{.percussion = false, .editingToolbar = false}}) {
        const auto parts = shownParts(formLayout(window, shown));
        EXPECT_EQ(parts.size(), 14U - (shown.percussion ? 0 : 2) - (shown.editingToolbar ? 0 : 1));
        for (const NamedRect& part : parts) {
            EXPECT_TRUE(QRect(QPoint(), window).contains(part.rect)) << part.name;
            for (const NamedRect& other : parts)
                if (part.name != other.name) {
                    EXPECT_FALSE(part.rect.intersects(other.rect)) << part.name << " and " << other.name;
                }
        }
    }
}

TEST_P(FormLayoutTest, TheTableauxTakeWhatTheFormLeaves) {
    const FormLayout layout = formLayout(window, {});
    EXPECT_EQ(formWidth(window.width()), GetParam().across);
    EXPECT_EQ(layout.beatbox.height(), GetParam().beatbox);
    EXPECT_EQ(layout.beatbox.height() % 12, 0);
    EXPECT_EQ(layout.musicBox.width(), window.width() - 70);
    for (const QRect& same : {layout.pic3, layout.pic2a, layout.beatbox}) {
        EXPECT_EQ(same.left(), layout.musicBox.left());
        EXPECT_EQ(same.width(), layout.musicBox.width());
    }
    EXPECT_EQ(layout.musicBox.bottom() + 1, window.height() - 52);
    EXPECT_GE(layout.musicBox.height(), 12 * 8) << "an octave is always in view";
}

TEST_P(FormLayoutTest, HiddenPartsGiveTheirHeightToMusicBox) {
    const FormLayout all = formLayout(window, {});
    const FormLayout noToolbar = formLayout(window, {.editingToolbar = false});
    EXPECT_EQ(noToolbar.musicBox.height(), all.musicBox.height() + 64);
    EXPECT_TRUE(noToolbar.toolPanel.isEmpty());
    const FormLayout noPercussion = formLayout(window, {.percussion = false});
    EXPECT_EQ(noPercussion.musicBox.height(), all.musicBox.height() + all.beatbox.height() + 3);
    EXPECT_TRUE(noPercussion.beatbox.isEmpty());
    EXPECT_TRUE(noPercussion.splitter.isEmpty());
    EXPECT_EQ(noPercussion.musicBox.bottom(), all.musicBox.bottom());
}
