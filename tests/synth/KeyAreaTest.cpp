// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeyArea.h"

#include "keyboard/KeyScheme.h"
#include "shell/Appearance.h"
#include "shell/SkinPainter.h"
#include "synth/KeyPainter.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QTest>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
/// Keeps what was painted since the last call.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget& of) { of.installEventFilter(this); }
    QRegion take() { return std::exchange(region_, {}); }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            region_ += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

private:
    QRegion region_;
};

class KeyAreaTest : public testing::Test {
protected:
    KeyAreaTest() {
        area.resize(1168, 136);
        area.showLabels(KeyScheme::builtIn(), 0);
        area.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&area));
        QCoreApplication::processEvents();
        watch.take();
    }
    QColor colourOf(int key, double height) {
        const QRectF face = area.layout().key(key);
        const QPointF at(isBlackKey(key) ? face.right() - 5 : face.left() + 3, face.bottom() * height);
        return area.grab().toImage().pixelColor(at.toPoint());
    }

    Appearance look;
    KeyArea area{look, nullptr};
    PaintWatch watch{area};
};
} // namespace

TEST_F(KeyAreaTest, AKeyIsRedWhileItSounds) {
    EXPECT_EQ(colourOf(0, 0.7), Qt::white);
    EXPECT_EQ(colourOf(1, 0.3), Qt::black);
    area.showKey(0, true);
    area.showKey(1, true);
    EXPECT_EQ(colourOf(0, 0.7), QColor(255, 0, 0));
    EXPECT_EQ(colourOf(1, 0.3), QColor(255, 0, 0));
    area.showKey(0, false);
    area.showKey(1, false);
    EXPECT_EQ(colourOf(0, 0.7), Qt::white);
    EXPECT_EQ(colourOf(1, 0.3), Qt::black);
}

TEST_F(KeyAreaTest, OnlyTheKeyThatChangesIsPainted) {
    for (const int key : {0, 1, 20, 43}) {
        area.showKey(key, true);
        QCoreApplication::processEvents();
        const QRegion painted = watch.take();
        EXPECT_FALSE(painted.isEmpty());
        EXPECT_TRUE((painted - area.placeOf(key)).isEmpty()) << key;
    }
}

TEST_F(KeyAreaTest, AKeyThatIsToldTwiceIsPaintedOnce) {
    area.showKey(3, true);
    QCoreApplication::processEvents();
    watch.take();
    area.showKey(3, true);
    area.showKey(-1, true);
    area.showKey(kPianoKeys, true);
    QCoreApplication::processEvents();
    EXPECT_TRUE(watch.take().isEmpty());
}

TEST_F(KeyAreaTest, PaintedKeyByKeyItLooksAsPaintedWhole) {
    for (int key = 0; key < kPianoKeys; ++key) {
        area.showKey(key, true);
        QCoreApplication::processEvents();
        area.showKey(key, key % 5 == 0);
        QCoreApplication::processEvents();
    }
    QImage once(area.size(), QImage::Format_ARGB32_Premultiplied);
    area.render(&once);
    KeyArea fresh(look, nullptr);
    fresh.resize(area.size());
    fresh.showLabels(KeyScheme::builtIn(), 0);
    for (int key = 0; key < kPianoKeys; key += 5)
        fresh.showKey(key, true);
    QImage other(area.size(), QImage::Format_ARGB32_Premultiplied);
    fresh.render(&other);
    EXPECT_EQ(once, other);
}

TEST(KeyPainterTest, LabelsAreWholeWhereTheyFitAndSmallerOrCutWhereTheyDoNot) {
    EXPECT_EQ(fittedLabel("Z", 24).pixels, 12);
    EXPECT_EQ(fittedLabel("Z", 24).text, "Z");
    for (const char* label : {"W", "{", "\"", "Ñ", "F12", "Shift", "a long name of a key", ""})
        for (const double width : {16.0, 24.0, 34.0, 60.0}) {
            const FittedLabel fitted = fittedLabel(label, width);
            EXPECT_GE(fitted.pixels, 8);
            EXPECT_LE(QFontMetricsF(textFont(fitted.pixels, true)).horizontalAdvance(fitted.text),
                      width + 0.5)
                << label << " in " << width;
        }
    EXPECT_EQ(fittedLabel("W", 16).text, "W") << "a single character is always whole";
}
