// SPDX-License-Identifier: GPL-2.0-or-later
// Drawing on the Tableau of the composing window, with the mouse.
#include "form1Fixture.h"
#include "score/SngFile.h"
#include "sound/ShortMessage.h"
#include "tableau/Picmain.h"
#include "tableau/ViewScroll.h"

#include <QLabel>
#include <QMouseEvent>

using namespace velmora;
using testing::ElementsAre;

namespace {
constexpr std::uint32_t noteOn(int row) {
    return 0x90U | static_cast<std::uint32_t>(127 - row) << 8;
}

class form1TableauTest : public form1Fixture {
protected:
    QPoint melody(int position, int row) {
        const ViewState& view = workspace().view;
        return {(position - view.ViewFirstColumn) * 12 + 5, (row - view.ViewTopRow) * view.Line_Height + 4};
    }
    void send(const char* box, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons down) {
        QWidget& widget = child(box);
        QMouseEvent event(type, at, widget.mapToGlobal(QPointF(at)), button, down, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
    void press(const char* box, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        send(box, QEvent::MouseButtonPress, at, button, button);
    }
    void drag(const char* box, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        send(box, QEvent::MouseMove, at, Qt::NoButton, button);
    }
    void release(const char* box, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        send(box, QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    void draw(int position, int row, int length) {
        press("MusicBox", melody(position, row));
        drag("MusicBox", melody(position + length - 1, row));
        release("MusicBox", melody(position + length - 1, row));
    }
    std::vector<int> cells(int channel, int count) {
        std::vector<int> found;
        for (int position = 0; position < count; ++position)
            found.push_back(score().NoteCell.valueOr(channel, position, -9));
        return found;
    }
    /// Whether every note-on was followed by its note-off or by silence.
    bool isSilent() {
        std::set<std::uint32_t> sounding;
        for (const auto& sent : port.sent) {
            const std::uint32_t pitch = sent.word & 0xFF0FU;
            if (sent.word == RecordingPort::kReset)
                sounding.clear();
            else if ((sent.word & 0xF0U) == 0x90U)
                sounding.insert(pitch);
            else if ((sent.word & 0xF0U) == 0x80U)
                sounding.erase(pitch);
        }
        return sounding.empty();
    }
    QImage picture(const char* box) { return static_cast<TableauBox&>(child(box)).picture().copy(); }
    QColor pixel(QPoint at) { return picture("MusicBox").pixelColor(at); }
};
} // namespace

TEST_F(form1TableauTest, ADraggedLineIsANoteOfThatLengthInTheChannelsColour) {
    shown();
    draw(2, 60, 3);
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, -1, 60, 1060, 1060, -1));
    EXPECT_EQ(score().NoteInstrument.valueOr(0, 3, -1), score().ChannelInstrument[0]);
    EXPECT_EQ(text("LblNumnotes"), "5 Notes");
    EXPECT_EQ(pixel(melody(3, 60) + QPoint(0, 1)), QColor(255, 0, 0));
}

TEST_F(form1TableauTest, TheViewKnowsWhetherThePointerRestsOnTheMelody) {
    const auto send = [](QWidget& box, QEvent&& event) { QApplication::sendEvent(&box, &event); };
    shown();
    send(child("MusicBox"), QEvent(QEvent::Leave)); // wherever the mouse was left
    EXPECT_FALSE(workspace().view.PointerInMusicBox);
    send(child("MusicBox"), QEnterEvent({5, 6}, {5, 6}, {5, 6}));
    EXPECT_TRUE(workspace().view.PointerInMusicBox);
    send(child("MusicBox"), QEvent(QEvent::Leave));
    send(child("Beatbox"), QEnterEvent({5, 6}, {5, 6}, {5, 6}));
    EXPECT_FALSE(workspace().view.PointerInMusicBox);
}

TEST_F(form1TableauTest, WithStepEntryTickedWhatIsPlayedIsWrittenAndComesIntoView) {
    store("Step length", "3");
    shown();
    EXPECT_FALSE(menu.item("mnuStepEntry").isChecked());
    menu.item("mnuStepEntry").trigger();
    EXPECT_TRUE(menu.item("mnuStepEntry").isChecked());
    EXPECT_EQ(stored("Step entry"), "True");
    const int keys = midi.plug("Keys:Out");
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&child("MusicBox"), &leave);
    midi.play(keys, shortmessage::noteOn(0, 60, 90));
    EXPECT_TRUE(score().usedChannels().empty()) << "the mouse is elsewhere";
    QEnterEvent enter({5, 6}, {5, 6}, {5, 6});
    QApplication::sendEvent(&child("MusicBox"), &enter);
    workspace().view.PlayMark = 400;
    midi.play(keys, shortmessage::noteOn(0, 61, 90));
    EXPECT_EQ(score().NoteCell.valueOr(0, 400, -1), 66);
    EXPECT_EQ(score().NoteCell.valueOr(0, 402, -1), 1066);
    EXPECT_EQ(workspace().view.PlayMark, 403);
    EXPECT_LE(workspace().view.ViewFirstColumn, 400);
    EXPECT_GE(workspace().view.ViewLastColumn, 402);
    menu.item("mnuStepEntry").trigger();
    EXPECT_EQ(stored("Step entry"), "False");
    midi.play(keys, shortmessage::noteOn(0, 62, 90));
    EXPECT_EQ(workspace().view.PlayMark, 403);
}

TEST_F(form1TableauTest, StepEntryIsAsItWasLeft) {
    store("Step entry", "True");
    shown();
    EXPECT_TRUE(menu.item("mnuStepEntry").isChecked());
    midi.plug("Keys:Out");
    EXPECT_EQ(midi.inputs.sources().size(), 1U);
}

TEST_F(form1TableauTest, ItSoundsWhileTheButtonIsDown) {
    shown();
    port.sent.clear();
    press("MusicBox", melody(2, 60));
    ASSERT_FALSE(port.notes().empty());
    EXPECT_EQ(port.notes().back().word & 0xFFFFU, noteOn(60));
    EXPECT_FALSE(isSilent());
    drag("MusicBox", melody(6, 60));
    release("MusicBox", melody(6, 60));
    EXPECT_TRUE(isSilent());
}

TEST_F(form1TableauTest, AStrokeThatLosesTheWindowEndsThereAndIsSilent) {
    shown();
    press("MusicBox", melody(2, 60));
    drag("MusicBox", melody(4, 60));
    QEvent event(QEvent::WindowDeactivate);
    QApplication::sendEvent(&child("MusicBox"), &event);
    EXPECT_TRUE(isSilent());
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, -1, 60, 1060, 1060, -1));
    release("MusicBox", melody(5, 60)); // which comes late, if at all
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, -1, 60, 1060, 1060, -1));
}

TEST_F(form1TableauTest, PlayingThatBeginsDuringAStrokeEndsIt) {
    shown();
    press("MusicBox", melody(2, 60));
    drag("MusicBox", melody(4, 60));
    QTest::keyClick(&window(), Qt::Key_Space);
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, -1, 60, 1060, 1060, -1));
    EXPECT_TRUE(isSilent());
}

TEST_F(form1TableauTest, WhilePlayingNothingIsDrawn) {
    putNotes(score(), 0, 60, 10);
    shown();
    bool tried = false;
    loop.onWait = [&](int waits) {
        if (waits != 3)
            return;
        tried = true;
        draw(30, 70, 4);
    };
    window().Cmd2_Click(3);
    EXPECT_TRUE(tried);
    EXPECT_EQ(score().NoteCell.valueOr(0, 30, -9), -1);
}

TEST_F(form1TableauTest, UndoTakesTheLastNoteBackAndOnlyThat) {
    shown();
    draw(0, 60, 2);
    draw(4, 62, 2);
    window().OpenforUndo();
    EXPECT_THAT(cells(0, 6), ElementsAre(60, 1060, -1, -1, -1, -1));
    window().OpenforUndo();
    EXPECT_THAT(cells(0, 6), ElementsAre(60, 1060, -1, -1, -1, -1)) << "there is one step";
}

TEST_F(form1TableauTest, UndoBringsBackAllOfTheScoreAfterASegmentHasPlayed) {
    putNotes(score(), 0, 60, 100);
    shown();
    workspace().play.SegmentEnd = 5;
    window().Cmd2_Click(4);
    const auto before = cells(0, 250);
    draw(20, 70, 2);
    window().OpenforUndo();
    EXPECT_EQ(cells(0, 250), before);
}

TEST_F(form1TableauTest, APressOnBeatboxGoesToPercussionAndBackAgain) {
    shown();
    QTest::mouseClick(&square(3), Qt::LeftButton);
    press("Beatbox", {30, 30});
    release("Beatbox", {30, 30});
    EXPECT_EQ(score().ActiveChannel, 8);
    EXPECT_EQ(score().NoteCell.valueOr(8, 2, -9), 42 + 2);
    EXPECT_TRUE(square(8).isChecked());
    draw(2, 60, 1);
    EXPECT_EQ(score().ActiveChannel, 3);
    EXPECT_EQ(score().NoteCell.valueOr(3, 2, -9), 60);
}

TEST_F(form1TableauTest, ARightClickErasesTheWholeNote) {
    shown();
    draw(2, 60, 4);
    press("MusicBox", melody(4, 60), Qt::RightButton);
    release("MusicBox", melody(4, 60), Qt::RightButton);
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, -1, -1, -1, -1, -1));
}

TEST_F(form1TableauTest, MutingTakesTheChannelOffTheTableau) {
    putNotes(score(), 0, 60, 2);
    shown();
    EXPECT_EQ(pixel(melody(1, 60) + QPoint(0, 1)), QColor(255, 0, 0));
    QTest::mousePress(&square(0), Qt::RightButton);
    EXPECT_NE(pixel(melody(1, 60) + QPoint(0, 1)), QColor(255, 0, 0));
}

TEST_F(form1TableauTest, TheHintGoesWithTheFirstNoteAndComesBackWithAnEmptyScore) {
    shown();
    auto& hint = child<QLabel>("hint");
    EXPECT_TRUE(hint.isVisible());
    draw(2, 60, 1);
    EXPECT_FALSE(hint.isVisible());
    window().ClearAll();
    EXPECT_TRUE(hint.isVisible());
}

TEST_F(form1TableauTest, AtTheRightEdgeTheNoteEndsAndTheViewMovesOn) {
    shown();
    const int width = child("MusicBox").width();
    press("MusicBox", melody(100, 60));
    drag("MusicBox", {width - 20, melody(100, 60).y()});
    EXPECT_EQ(workspace().view.ViewFirstColumn, 1);
    EXPECT_EQ(score().NoteCell.valueOr(0, 100, -9), 60);
    EXPECT_TRUE(isSilent());
    release("MusicBox", {width - 20, melody(100, 60).y()});
}

TEST_F(form1TableauTest, SelectingMarksASegmentThatPlays) {
    putNotes(score(), 0, 60, 10);
    shown().Cmd2_Click(10);
    EXPECT_EQ(workspace().view.MouseMode, Mouse::Select);
    EXPECT_FALSE(button("Cmd2", 10).isChecked());
    EXPECT_EQ(button("Lb1", 24).text(), "Select");
    press("MusicBox", {4 * 12 + 3, 100});
    drag("MusicBox", {9 * 12 + 3, 100});
    release("MusicBox", {9 * 12 + 3, 100});
    EXPECT_EQ(workspace().view.SelectStart, 4);
    EXPECT_EQ(workspace().view.SelectEnd, 9);
    port.sent.clear();
    window().Cmd2_Click(4);
    int ons = 0;
    for (const auto& sent : port.notes())
        ons += (sent.word & 0xF0U) == 0x90U && sent.word != RecordingPort::kReset ? 1 : 0;
    EXPECT_EQ(ons, 3) << "from position 4 on";
    EXPECT_EQ(workspace().view.SelectStart, 4) << "the marks stay";
    window().Lb1_Click(24);
    EXPECT_EQ(workspace().view.MouseMode, Mouse::Draw);
    EXPECT_EQ(button("Lb1", 24).text(), "Draw");
}

TEST_F(form1TableauTest, AStaticTestPlaysANoteAndDrawsNothing) {
    putNotes(score(), 0, 60, 2);
    shown().Lb1_Click(18);
    window().Lb1_Click(21);
    EXPECT_TRUE(button("Lb1", 21).isChecked());
    EXPECT_FALSE(workspace().view.NoteEffectsOn) << "the two exclude each other";
    const auto before = cells(0, 8);
    port.sent.clear();
    press("MusicBox", melody(1, 60));
    EXPECT_EQ(port.notes().back().word & 0xFFFFU, noteOn(60));
    release("MusicBox", melody(1, 60));
    EXPECT_EQ(cells(0, 8), before);
    EXPECT_TRUE(isSilent());
}

TEST_F(form1TableauTest, APressOnTheBarTellsAboutTheNote) {
    putNotes(score(), 0, 60, 2);
    shown();
    press("Pic2a", {12 + 3, 10});
    release("Pic2a", {12 + 3, 10});
    EXPECT_EQ(text("LblNote"), "2");
    EXPECT_EQ(text("LblNoteName"), NoteNames()[60]);
    EXPECT_EQ(text("LblInst"), nameOfCode(24));
    EXPECT_EQ(static_cast<TableauBox&>(child("Pic2a")).picture().pixelColor(12 + 5, 10), QColor(255, 0, 0));
}

TEST_F(form1TableauTest, ADragOverTheChordBarGivesTheSetupToolbarsChordInItsMode) {
    putNotes(score(), 0, 60, 4);
    shown();
    workspace().view.RightClickMode = RightClick::Polyphonic;
    workspace().setup.Combo3 = 3;
    press("Pic3", {5, 8});
    drag("Pic3", {29, 8});
    release("Pic3", {29, 8});
    EXPECT_EQ(score().Polyphonics.valueOr(1, 2, -1), 3);
    EXPECT_EQ(score().NoteCell.valueOr(0, 2, -1), 60) << "the note stays";
}

TEST_F(form1TableauTest, ARightPressThatAsksForATipChangesNoChord) {
    putNotes(score(), 0, 60, 4);
    shown();
    window().setRightClickMode(RightClick::Tips);
    workspace().effects.Combo3 = 3;
    press("Pic3", {5, 8}, Qt::RightButton);
    drag("Pic3", {29, 8}, Qt::RightButton);
    release("Pic3", {29, 8}, Qt::RightButton);
    EXPECT_EQ(score().Polyphonics.valueOr(1, 0, -1), 0);
    EXPECT_EQ(score().Polyphonics.valueOr(1, 2, -1), 0);
}

TEST_F(form1TableauTest, ADragThatLeavesABarChangesNothingOutOfView) {
    putNotes(score(), 0, 60, 150);
    shown();
    child<ViewScroll>("HScroll1").setValue(20 + workspace().view.ViewHalfColumns());
    ASSERT_EQ(workspace().view.ViewFirstColumn, 20);
    workspace().effects.Combo3 = 3;
    workspace().effects.vol3 = 50;
    for (const char* bar : {"Pic3", "Pic2a"})
        for (const int x : {-5, -30, child(bar).width() + 15}) {
            press(bar, {5, 8}, Qt::RightButton);
            const auto chords = score().Polyphonics;
            const auto volumes = score().Volume;
            drag(bar, {x, 8}, Qt::RightButton);
            release(bar, {x, 8}, Qt::RightButton);
            EXPECT_EQ(score().Polyphonics, chords) << bar << " " << x;
            EXPECT_EQ(score().Volume, volumes) << bar << " " << x;
            score().Polyphonics.fillRow(1, 0);
            score().Volume.fillRow(0, kClearedVolume);
        }
}

TEST_F(form1TableauTest, TheMouseOverANoteTellsItsName) {
    putNotes(score(), 0, 60, 2);
    shown();
    send("MusicBox", QEvent::MouseMove, melody(1, 60), Qt::NoButton, Qt::NoButton);
    EXPECT_NE(text("toolText").find(NoteNames()[60]), std::string::npos);
    send("MusicBox", QEvent::MouseMove, melody(40, 60), Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(text("toolText"), "");
}

TEST_F(form1TableauTest, ThePlayLineRunsAndLeavesThePictureAsItWas) {
    putNotes(score(), 0, 60, 6);
    shown();
    const QImage before = static_cast<TableauBox&>(child("MusicBox")).picture().copy();
    std::vector<int> columns;
    loop.onWait = [&](int) {
        for (int column = 0; column < 20; ++column)
            if (pixel({column * 12, 2}) == QColor(255, 192, 192))
                columns.push_back(column);
    };
    window().Cmd2_Click(3);
    ASSERT_GT(columns.size(), 10U);
    EXPECT_EQ(columns.front(), 0);
    EXPECT_TRUE(std::ranges::is_sorted(columns));
    EXPECT_EQ(static_cast<TableauBox&>(child("MusicBox")).picture(), before);
}

TEST_F(form1TableauTest, HoweverPlayingEndsNoPlayLineIsLeftBehind) {
    putNotes(score(), 0, 60, 6);
    shown();
    const QImage beat = picture("Beatbox");
    const std::vector<std::pair<const char*, std::function<void(int)>>> ends{
        {"the end", [](int) {}},
        {"stop", [this](int waits) { waits == 5 ? window().Cmd2_Click(6) : void(); }},
        {"pause", [this](int waits) { waits == 5 ? window().Cmd2_Click(5) : void(); }},
        {"the second round", [this](int waits) { waits == 20 ? window().Cmd2_Click(6) : void(); }},
        {"no line any more", [this](int waits) { waits == 5 ? window().Cmd2_Click(8) : void(); }},
    };
    for (const auto& [name, hand] : ends) {
        workspace().play.LoopOn = std::string_view(name) == "the second round";
        loop.waits = 0;
        loop.onWait = hand;
        window().Cmd2_Click(3);
        EXPECT_EQ(picture("Beatbox"), beat) << name;
    }
}

TEST_F(form1TableauTest, AViewThatPlayingMovesIsShownOnEveryPaper) {
    putNotes(score(), 0, 60, 80);
    putNotes(score(), 8, 44, 3);
    score().Polyphonics.set(1, 0, 2);
    score().ChannelInUse[8] = score().ChannelShown[8] = true;
    shown();
    const std::array papers{"MusicBox", "Beatbox", "Pic3", "Pic2a"};
    std::vector<QImage> beginning;
    for (const char* paper : papers)
        beginning.push_back(picture(paper));
    const std::vector<std::pair<const char*, std::function<void()>>> ways{
        {"return to start", [this] { window().Cmd2_Click(7); }},
        {"play and stop",
         [this] {
             loop.onWait = [this](int) { window().Cmd2_Click(6); };
             window().Cmd2_Click(3);
         }},
    };
    for (const auto& [name, way] : ways) {
        child<ViewScroll>("HScroll1").setValue(120);
        ASSERT_NE(workspace().view.ViewFirstColumn, 0);
        way();
        EXPECT_EQ(workspace().view.ViewFirstColumn, 0);
        for (std::size_t i = 0; i < papers.size(); ++i)
            EXPECT_EQ(picture(papers[i]), beginning[i]) << papers[i] << " after " << name;
    }
}

TEST_F(form1TableauTest, APageTurnIsShownByTheBarsToo) {
    putNotes(score(), 0, 60, 80);
    shown();
    const int page = workspace().view.ViewColumns + 1;
    child<ViewScroll>("HScroll1").setValue(page + workspace().view.ViewHalfColumns());
    const QImage chords = picture("Pic3");
    const QImage notes = picture("Pic2a");
    child<ViewScroll>("HScroll1").setValue(workspace().view.ViewHalfColumns());
    ASSERT_NE(picture("Pic2a"), notes);
    window().Cmd2_Click(3);
    ASSERT_EQ(workspace().view.ViewFirstColumn, page);
    EXPECT_EQ(picture("Pic3"), chords);
    EXPECT_EQ(picture("Pic2a"), notes);
}

TEST_F(form1TableauTest, WithoutThePlayLineNothingIsPainted) {
    putNotes(score(), 0, 60, 6);
    workspace().play.ShowPlayLine = false;
    shown();
    auto& box = static_cast<TableauBox&>(child("MusicBox"));
    qint64 key = 0;
    bool same = true;
    loop.onWait = [&](int waits) {
        if (waits == 1)
            key = box.picture().constBits() ? box.picture().cacheKey() : 0;
        else if (waits < 11)
            same = same && box.picture().cacheKey() == key;
    };
    window().Cmd2_Click(3);
    EXPECT_TRUE(same);
}

TEST_F(form1TableauTest, TheViewPagesWhereTheLineLeavesIt) {
    putNotes(score(), 0, 60, 80);
    shown();
    int widest = 0;
    loop.onWait = [&](int) { widest = std::max(widest, workspace().view.ViewFirstColumn); };
    window().Cmd2_Click(3);
    EXPECT_EQ(widest, workspace().view.ViewColumns + 1);
}

TEST_F(form1TableauTest, DraggingTheGapGivesBeatboxWholeRows) {
    shown();
    QWidget& grip = child("Label9");
    const int before = child("Beatbox").height();
    QTest::mousePress(&grip, Qt::RightButton, {}, {100, 4});
    QMouseEvent move(QEvent::MouseMove, QPointF(100, 35), grip.mapToGlobal(QPointF(100, 35)), Qt::NoButton,
                     Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(&grip, &move);
    QTest::mouseRelease(&grip, Qt::RightButton, {}, {100, 35});
    EXPECT_EQ(child("Beatbox").height(), before + 36);
    EXPECT_EQ(child("Beatbox").height() % 12, 0);
    window().showPercussion(false);
    EXPECT_FALSE(child("Label9").isVisible());
}

TEST_F(form1TableauTest, AnOpenedScoreIsShownFromItsBeginningWithItsPercussion) {
    putNotes(score(), 8, 44, 3);
    score().currentFile = (folders.home() / "beat.sng").string();
    ASSERT_EQ(SavePoliFile(score(), workspace().setup), "");
    store("Percussion", "0");
    shown();
    window().showPercussion(false);
    child<ViewScroll>("HScroll1").setValue(120);
    window().openScore(folders.home() / "beat.sng");
    EXPECT_EQ(workspace().view.ViewFirstColumn, 0);
    EXPECT_TRUE(child("Beatbox").isVisible()) << "notes that nobody sees would be a riddle";
}

TEST_F(form1TableauTest, HoweverPlayingEndsNoNoteIsLeftOn) {
    putNotes(score(), 0, 60, 2, 40);
    putNotes(score(), 8, 44, 20, 4);
    score().TopChannel = 12;
    shown();
    const std::vector<std::pair<const char*, std::function<void()>>> ends{
        {"stop", [this] { window().Cmd2_Click(6); }},
        {"pause", [this] { window().Cmd2_Click(5); }},
        {"clearing", [this] { window().ClearAll(); }},
        {"another device", [this] { std::ignore = devices.choose(1), window().Cmd2_Click(6); }},
        {"the window",
         [this] {
             score().ClearAll(); // no question
             window().close();
         }},
    };
    for (const auto& [name, end] : ends) {
        if (score().SongEnd == 0)
            putNotes(score(), 0, 60, 2, 40);
        bool sounded = false;
        port.sent.clear();
        loop.onWait = [&, end = end, waits = 0](int) mutable {
            if (++waits != 4)
                return;
            sounded = !isSilent();
            end();
        };
        window().Cmd2_Click(3);
        EXPECT_TRUE(sounded) << name;
        EXPECT_TRUE(isSilent()) << name;
        EXPECT_FALSE(workspace().play.Playing) << name;
    }
}

TEST_F(form1TableauTest, ALeftDragOfTheBareGroundMovesTheWindowAndOneOfTheGuideDoesNot) {
    const QPoint place = shown().pos();
    const QPoint guide = child("PicX").geometry().center();
    press("Picmain", guide);
    drag("Picmain", guide + QPoint(40, 30));
    release("Picmain", guide);
    EXPECT_EQ(window().pos(), place);
    press("Picmain", {20, 10});
    drag("Picmain", {60, 40});
    release("Picmain", {20, 10});
    EXPECT_EQ(window().pos(), place + QPoint(40, 30));
}

TEST_F(form1TableauTest, WhileItPlaysAPressOnATableauMovesNothingAndOpensNothing) {
    putNotes(score(), 0, 60, 4);
    const QPoint place = shown().pos();
    bool pressed = false;
    loop.onWait = [&](int waits) {
        if (waits != 2)
            return;
        pressed = true;
        press("MusicBox", melody(5, 60));
        drag("MusicBox", melody(15, 60));
        release("MusicBox", melody(15, 60));
        press("MusicBox", melody(5, 60), Qt::RightButton);
        EXPECT_FALSE(isOpen("mnupopup6"));
        release("MusicBox", melody(5, 60), Qt::RightButton);
    };
    window().Cmd2_Click(3);
    EXPECT_TRUE(pressed);
    EXPECT_EQ(window().pos(), place);
    menu.popup("mnupopup6").close();
}

TEST_F(form1TableauTest, AtTempoZeroNothingPlaysAndEverythingWorksAfterwards) {
    putNotes(score(), 0, 60, 2);
    score().Tempo = 0;
    shown();
    port.sent.clear();
    window().Cmd2_Click(3);
    EXPECT_TRUE(port.notes().empty());
    EXPECT_TRUE(child("MusicBox").isEnabled());
    draw(20, 70, 2);
    EXPECT_EQ(score().NoteCell.valueOr(0, 20, -9), 70);
}

TEST_F(form1TableauTest, SetupOpensItsToolbar) {
    shown().Lb1_Click(1);
    menu.item("mnuSetup").trigger();
    EXPECT_THAT(windows.opened, ElementsAre(Windows::Name::frmsetup, Windows::Name::frmsetup));
}
