// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/MessageBox.h"

#include "DialogDriver.h"
#include "MessageHand.h"
#include "WindowFixture.h"
#include "shell/CommandButton.h"
#include "shell/SkinPainter.h"

#include <QFocusFrame>
#include <QScrollArea>
#include <QScrollBar>

using namespace velmora;

class MessageBoxTest : public WindowFixture {
protected:
    void tells(const QString& text) { tell(*skins, nullptr, text); }
    [[nodiscard]] Answer asked() {
        return askYesNo(*skins, nullptr, "Do you want to save your composition?");
    }

    DialogDriver hand;
};

TEST_F(MessageBoxTest, AMessageHasTheProgramsTitleAndOneButton) {
    hand.in<QWidget>([](QWidget& box) {
        EXPECT_EQ(box.windowTitle(), "Velmora");
        EXPECT_EQ(wordsOf(box), "Velmora is already running.");
        EXPECT_FALSE(box.findChild<QAbstractButton*>("no"));
        pressIn(box, "ok");
    });
    tells("Velmora is already running.");
}

TEST_F(MessageBoxTest, AMessageMayHaveATitleOfItsOwnAndEscConfirmsIt) {
    hand.in<QWidget>([](QWidget& box) {
        EXPECT_EQ(box.windowTitle(), "Velmora - Error");
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    tell(*skins, nullptr, "Unable to detect any midi output devices.\nTerminating...", "Velmora - Error");
}

TEST_F(MessageBoxTest, AShortMessageIsAsWideAsItsTitle) {
    for (int skin = 1; skin <= kSkinCount; ++skin) {
        skins->Skintype_Click(skin);
        hand.in<QWidget>([](QWidget& box) {
            EXPECT_GE(part<QWidget>(box, "lblTitle").width(),
                      QFontMetrics(titleFont()).horizontalAdvance(box.windowTitle()));
            pressIn(box, "ok");
        });
        tell(*skins, nullptr, "Finished.", "Audio CD Writer");
    }
}

TEST_F(MessageBoxTest, AScreenReaderSaysTheMessageWithItsButtons) {
    hand.in<QWidget>([](QWidget& box) {
        for (const char* name : {"yes", "no"})
            EXPECT_EQ(part<QWidget>(box, name).accessibleDescription(),
                      "Do you want to save your composition?");
        pressIn(box, "no");
    });
    EXPECT_EQ(asked(), Answer::No);
}

TEST_F(MessageBoxTest, MarksInATextAreShownAsTheyAre) {
    hand.in<QWidget>([](QWidget& box) {
        EXPECT_EQ(part<QLabel>(box, "words").textFormat(), Qt::PlainText);
        pressIn(box, "ok");
    });
    tells("<b>bold.sng</b>");
}

TEST_F(MessageBoxTest, ALongTextWrapsAndIsShownWhole) {
    hand.in<QWidget>([](QWidget& box) {
        const auto& words = part<QLabel>(box, "words");
        EXPECT_LE(words.width(), 400);
        EXPECT_GE(words.height(), words.heightForWidth(words.width()));
        EXPECT_TRUE(box.rect().contains(words.geometry().translated(words.parentWidget()->pos())));
        pressIn(box, "ok");
    });
    tells(QString("The score \"/home/me/a long way down/tune.sng\" can't be read. ").repeated(12));
}

TEST_F(MessageBoxTest, ANameThatIsLongerThanALineIsShownWhole) {
    const QString text = "The score \"" + QString(90, 'm') + "\" can't be read.";
    hand.in<QWidget>([&text](QWidget& box) {
        const auto& words = part<QLabel>(box, "words");
        const QRect room(0, 0, words.width(), 1000);
        const QRect taken = words.fontMetrics().boundingRect(room, Qt::TextWordWrap, words.text());
        EXPECT_LE(taken.width(), words.width());
        EXPECT_LE(taken.height(), words.height());
        EXPECT_EQ(QString(words.text()).remove('\n'), text);
        pressIn(box, "ok");
    });
    tells(text);
}

TEST_F(MessageBoxTest, WhatIsHigherThanTheScreenIsScrolled) {
    hand.in<QWidget>([](QWidget& box) {
        EXPECT_LE(box.height(), box.screen()->availableGeometry().height());
        EXPECT_TRUE(box.screen()->availableGeometry().contains(box.geometry()));
        const auto& pane = part<QScrollArea>(box, "pane");
        const auto& words = part<QLabel>(box, "words");
        EXPECT_GE(words.height(), words.heightForWidth(words.width()));
        EXPECT_LE(words.width(), pane.viewport()->width()) << "nothing is under the bar";
        const QScrollBar& bar = *pane.verticalScrollBar();
        ASSERT_GT(bar.maximum(), 0);
        QTest::keyClick(&box, Qt::Key_PageDown);
        EXPECT_GT(bar.value(), 0);
        const auto& ok = part<QWidget>(box, "ok");
        EXPECT_TRUE(ok.hasFocus()) << "what Enter presses";
        EXPECT_TRUE(ok.parentWidget()->rect().contains(ok.geometry()));
        QTest::keyClick(&box, Qt::Key_Return);
    });
    tells(QString("notes.txt\n is not supported.\n").repeated(60));
}

TEST_F(MessageBoxTest, YesAndNoAreAnswersByMouseAndByLetter) {
    for (const auto& [name, key, answer] :
         {std::tuple("yes", Qt::Key_Y, Answer::Yes), std::tuple("no", Qt::Key_N, Answer::No)}) {
        hand.in<QWidget>([name = name](QWidget& box) { pressIn(box, name); });
        EXPECT_EQ(asked(), answer);
        hand.in<QWidget>([key = key](QWidget& box) { QTest::keyClick(&box, key); });
        EXPECT_EQ(asked(), answer);
    }
}

TEST_F(MessageBoxTest, EscAndTheCloseButtonAreNoAnswer) {
    hand.in<QWidget>([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(asked(), Answer::None);
    hand.in<QWidget>([](QWidget& box) { pressIn(box, "imgTitleClose"); });
    EXPECT_EQ(asked(), Answer::None);
}

TEST_F(MessageBoxTest, EnterIsTheButtonThatHasTheFocusWhichIsYesAtFirst) {
    hand.in<QWidget>([](QWidget& box) { QTest::keyClick(&part(box, "yes"), Qt::Key_Return); });
    EXPECT_EQ(asked(), Answer::Yes);
    hand.in<QWidget>([](QWidget& box) {
        part(box, "no").setFocus();
        QTest::keyClick(&part(box, "no"), Qt::Key_Return);
    });
    EXPECT_EQ(asked(), Answer::No);
}

TEST_F(MessageBoxTest, ARingShowsWhatEnterPresses) {
    hand.in<QWidget>([](QWidget& box) {
        const auto* ring = box.findChild<QFocusFrame*>();
        ASSERT_TRUE(ring);
        EXPECT_EQ(ring->widget(), &part(box, "save"));
        pressIn(box, "cancel");
    });
    EXPECT_EQ(askSave(*skins, nullptr, "Do you want to save it first?"), SaveAnswer::Cancel);
}

TEST_F(MessageBoxTest, AMessageStandsOverItsWindow) {
    TestWindow window(*skins);
    window.setGeometry(100, 80, 400, 300);
    open(window);
    hand.in<QWidget>([&window](QWidget& box) {
        EXPECT_EQ(box.geometry().center(), window.geometry().center());
        EXPECT_EQ(box.windowModality(), Qt::ApplicationModal);
        pressIn(box, "ok");
    });
    tell(*skins, &window, "It stands here.");
}

TEST_F(MessageBoxTest, AQuestionThatNobodyWaitsForAnswersLaterAndGoes) {
    TestWindow window(*skins);
    open(window);
    std::optional<Answer> answer;
    ask(*skins, &window, "Replace it?", Answer::No, [&answer](Answer given) { answer = given; });
    auto* box = window.findChild<QWidget*>("message");
    ASSERT_TRUE(box);
    EXPECT_FALSE(answer);
    EXPECT_EQ(box->focusWidget(), &part(*box, "no"));
    const QPointer<QWidget> guard(box);
    pressIn(*box, "yes");
    EXPECT_EQ(answer, Answer::Yes);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(guard);
}

TEST_F(MessageBoxTest, AMessageThatNobodyWaitsForStandsOverItsWindowAndGoesWithIt) {
    auto window = std::make_unique<TestWindow>(*skins);
    open(*window);
    showMessage(*skins, window.get(), "There is none.");
    const QPointer<QWidget> box = window->findChild<QWidget*>("message");
    ASSERT_TRUE(box);
    EXPECT_EQ(wordsOf(*box), "There is none.");
    EXPECT_EQ(box->windowModality(), Qt::ApplicationModal);
    window.reset();
    EXPECT_FALSE(box);
}

TEST_F(MessageBoxTest, WhatIsUnsavedCanBeSavedOrDiscardedByMouseAndByLetter) {
    const auto answered = [this] { return askSave(*skins, nullptr, "Do you want to save it first?"); };
    struct Row {
        const char* name;
        const char* caption;
        Qt::Key key;
        SaveAnswer answer;
    };
    for (const Row& row : {Row{"save", "Save", Qt::Key_S, SaveAnswer::Save},
                           Row{"discard", "Discard", Qt::Key_D, SaveAnswer::Discard},
                           Row{"cancel", "Cancel", Qt::Key_Escape, SaveAnswer::Cancel}}) {
        hand.in<QWidget>([&row](QWidget& box) {
            EXPECT_EQ(part<QAbstractButton>(box, row.name).text().toStdString(), row.caption);
            EXPECT_EQ(box.findChildren<QAbstractButton*>().size(), 3 + 1) << "with that of the title";
            pressIn(box, row.name);
        });
        EXPECT_EQ(answered(), row.answer);
        hand.in<QWidget>([&row](QWidget& box) { QTest::keyClick(&box, row.key); });
        EXPECT_EQ(answered(), row.answer);
    }
    hand.in<QWidget>([](QWidget& box) { pressIn(box, "imgTitleClose"); });
    EXPECT_EQ(answered(), SaveAnswer::Cancel);
    hand.in<QWidget>([](QWidget& box) { QTest::keyClick(&part(box, "save"), Qt::Key_Return); });
    EXPECT_EQ(answered(), SaveAnswer::Save) << "what Enter presses at first";
}
