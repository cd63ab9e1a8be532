// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/CommandButton.h"

#include "WindowFixture.h"
#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"

#include <QtWidgets>

using namespace velmora;

class CommandButtonTest : public WindowFixture {
protected:
    CommandButtonTest() { button.setFace("loop", "Loop"); }
    QImage picture() {
        QImage image(button.size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        button.render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    }
    /// How many pixels the button paints.
    int painted() {
        const QImage image = picture();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
        return count;
    }
    QWidget ground;
    CommandButton button{skins->look(), ButtonForm::Icon, &ground};
};

TEST_F(CommandButtonTest, FormsHaveTheirSizes) {
    const int words = QFontMetrics(textFont()).horizontalAdvance("Loop");
    button.setForm(ButtonForm::Icon);
    EXPECT_EQ(button.sizeHint(), QSize(28, 28));
    button.setForm(ButtonForm::IconAndText);
    EXPECT_EQ(button.sizeHint().height(), 28);
    EXPECT_GE(button.sizeHint().width(), words + 38);
    button.setForm(ButtonForm::IconOverText);
    EXPECT_EQ(button.sizeHint(), QSize(48, 52));
    button.setForm(ButtonForm::Tab);
    EXPECT_EQ(button.sizeHint(), QSize(144, 20));
    button.setForm(ButtonForm::Text);
    EXPECT_EQ(button.sizeHint(), QSize(64, 24));
}

TEST_F(CommandButtonTest, ALabelUnderAnIconStandsEightFromTheFoot) {
    button.setForm(ButtonForm::IconOverText);
    button.setFace("loop", "Cut"); // nothing of it hangs under the line
    button.resize(button.sizeHint());
    const QImage image = picture();
    const auto isBare = [&](int y) {
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 64)
                return false;
        return true;
    };
    EXPECT_FALSE(isBare(52 - 8 - 1));
    for (int y = 52 - 8; y < 52; ++y)
        EXPECT_TRUE(isBare(y)) << y;
}

TEST_F(CommandButtonTest, ARoundFaceKeepsItsLabelInside) {
    skins->Btnstyle_Click(6);
    button.setForm(ButtonForm::IconOverText);
    for (const char* label : {"Cut", "Overwrite", "Duplicate", "Insert Spaces", "Undo Effects"}) {
        button.setFace("loop", label);
        const QSizeF size = button.sizeHint();
        const qreal radius = faceRadius(skins->look(), QRectF(QPointF(), size));
        const qreal rise = std::max(0.0, radius - 8); // from the label's line to where the sides begin
        const qreal inset = radius - std::sqrt(radius * radius - rise * rise);
        EXPECT_LE(QFontMetrics(textFont(10)).horizontalAdvance(label), size.width() - 2 * inset) << label;
    }
}

TEST_F(CommandButtonTest, LongerWordsWidenItInStepsOfFour) {
    for (const ButtonForm form : {ButtonForm::Text, ButtonForm::IconAndText, ButtonForm::IconOverText}) {
        button.setForm(form);
        int width = 0;
        for (QString words = "Loop"; words.size() < 40; words += 'm') {
            button.setFace("loop", words);
            EXPECT_EQ(button.sizeHint().width() % 4, 0) << qPrintable(words);
            EXPECT_GE(button.sizeHint().width(), width);
            width = button.sizeHint().width();
        }
        EXPECT_GT(width, 200);
    }
}

TEST_F(CommandButtonTest, EachStateLooksDifferent) {
    button.setForm(ButtonForm::Text);
    button.resize(68, 24);
    std::vector<QImage> seen{picture()};
    button.setAttribute(Qt::WA_UnderMouse);
    seen.push_back(picture());
    button.setAttribute(Qt::WA_UnderMouse, false);
    button.setDown(true);
    seen.push_back(picture());
    button.setDown(false);
    button.setCheckable(true);
    button.setChecked(true);
    seen.push_back(picture());
    button.setChecked(false);
    button.setEnabled(false);
    seen.push_back(picture());
    for (std::size_t i = 0; i < seen.size(); ++i)
        for (std::size_t j = i + 1; j < seen.size(); ++j)
            EXPECT_NE(seen[i], seen[j]) << i << " and " << j;
}

TEST_F(CommandButtonTest, HoverDoesNotHideThatItIsChecked) {
    button.resize(28, 28);
    button.setCheckable(true);
    button.setChecked(true);
    const QImage checked = picture();
    button.setAttribute(Qt::WA_UnderMouse);
    EXPECT_EQ(picture(), checked);
}

TEST_F(CommandButtonTest, ADisabledOneDoesNotAnswerTheMouse) {
    button.resize(28, 28);
    button.setEnabled(false);
    const QImage disabled = picture();
    button.setAttribute(Qt::WA_UnderMouse);
    EXPECT_EQ(picture(), disabled);
}

TEST_F(CommandButtonTest, InABarItHasAFaceOnlyInSomeStyles) {
    button.resize(28, 28);
    struct Row {
        int style;
        bool face;
    };
    for (const Row row : {Row{1, false}, {2, true}, {3, true}, {4, false}, {5, false}, {6, true}}) {
        skins->Btnstyle_Click(row.style);
        // An icon alone paints less than a third of its 28 by 28 pixels.
        EXPECT_EQ(painted() > 28 * 28 / 3, row.face) << row.style;
    }
}

TEST_F(CommandButtonTest, SizesAreTheSameInEverySkinAndStyle) {
    for (const ButtonForm form : {ButtonForm::Icon, ButtonForm::IconAndText, ButtonForm::IconOverText,
                                  ButtonForm::Text, ButtonForm::Tab}) {
        button.setForm(form);
        const QSize size = button.sizeHint();
        for (int skin = 1; skin <= kSkinCount; ++skin)
            for (int style = 1; style <= 6; ++style) {
                skins->Skintype_Click(skin);
                skins->Btnstyle_Click(style);
                EXPECT_EQ(button.sizeHint(), size);
            }
    }
}

TEST_F(CommandButtonTest, SpaceGoesToTheButtonThatTheKeyboardHasReachedBeforeAnyShortcut) {
    TestWindow window(*skins);
    CommandButton inside(skins->look(), ButtonForm::Text, window.Ibak5());
    int shortcuts = 0;
    int clicks = 0;
    QShortcut play(Qt::Key_Space, &window, [&] { ++shortcuts; });
    QObject::connect(&inside, &QAbstractButton::clicked, &inside, [&] { ++clicks; });
    open(window);
    QTest::keyClick(&window, Qt::Key_Space);
    EXPECT_EQ(shortcuts, 1) << "nothing has the focus";
    inside.setFocus();
    QTest::keyClick(&inside, Qt::Key_Space);
    EXPECT_EQ(clicks, 0) << "it has the focus by chance";
    EXPECT_EQ(shortcuts, 2);
    window.setAttribute(Qt::WA_KeyboardFocusChange); // as Tab leaves it
    QTest::keyClick(&inside, Qt::Key_Space);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(shortcuts, 2);
}

TEST_F(CommandButtonTest, EnterPressesTheButtonThatTabHasReached) {
    TestWindow window(*skins);
    CommandButton inside(skins->look(), ButtonForm::Text, window.Ibak5());
    int clicks = 0;
    QObject::connect(&inside, &QAbstractButton::clicked, &inside, [&] { ++clicks; });
    open(window);
    inside.setFocus();
    QTest::keyClick(&inside, Qt::Key_Return);
    EXPECT_EQ(clicks, 0) << "it has the focus by chance";
    window.setAttribute(Qt::WA_KeyboardFocusChange); // as Tab leaves it
    QTest::keyClick(&inside, Qt::Key_Return);
    QTest::keyClick(&inside, Qt::Key_Enter);
    EXPECT_EQ(clicks, 2);
    inside.setEnabled(false);
    QTest::keyClick(&inside, Qt::Key_Return);
    EXPECT_EQ(clicks, 2);
}

TEST_F(CommandButtonTest, APressOutsideGoesBack) {
    button.resize(28, 28);
    ground.show();
    int clicks = 0;
    QObject::connect(&button, &QAbstractButton::clicked, &button, [&] { ++clicks; });
    QTest::mousePress(&button, Qt::LeftButton, {}, QPoint(14, 14));
    EXPECT_TRUE(button.isDown());
    QTest::mouseMove(&button, QPoint(60, 60));
    QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(60, 60));
    EXPECT_FALSE(button.isDown());
    EXPECT_EQ(clicks, 0);
}
