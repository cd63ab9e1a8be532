// SPDX-License-Identifier: GPL-2.0-or-later
// What is asked before something unsaved is lost, what the title and the tool text say of it, and the ways a
// score comes in: by the menus, and dropped.
#include "base/Files.h"
#include "form1Fixture.h"
#include "score/SngFile.h"

#include <QLineEdit>
#include <QMimeData>

#include <fstream>

using namespace velmora;
namespace fs = std::filesystem;
using testing::ElementsAre;

namespace {
class form1FilesTest : public form1Fixture {
protected:
    /// As a command changes it: kept for undo, and announced.
    void draw(int notes = 4) {
        const Edit edit(workspace(), Change::Cells);
        workspace().keepForUndo("a step");
        putNotes(score(), 0, 60, notes);
    }
    /// A score file of some notes.
    fs::path aScore(int notes, const char* name = "tune.sng", int length = 1) {
        Score made(notes * length);
        putNotes(made, 2, 50, notes, length);
        const fs::path file = folders.home() / name;
        EXPECT_EQ(replaceFile(file, serializePoliFile(made, {})), "");
        return file;
    }
    /// The next question is answered with a button, and the one after it confirmed.
    void answer(const char* which) {
        driver.in<QWidget>([this, which](QWidget& box) {
            questions.push_back(wordsOf(box).toStdString());
            pressIn(box, which);
        });
    }
    std::string title() { return window().windowTitle().toStdString(); }
    std::string toolText() { return text("toolText"); }
    QMenu& recent() { return menu.popup("mnuRecent"); }
    void openFileMenu() { emit menu.popup("mnupopup6").aboutToShow(); }

    std::vector<std::string> questions;
};

/// In careful manners.
class form1CarefulTest : public form1FilesTest {
protected:
    form1CarefulTest() { store("Classic", "0"); }
};

/// Every command that another score takes the place by, or the program ends by.
struct LossRow {
    const char* name;
    void (*press)(form1&, const fs::path&);
};
constexpr LossRow kLosses[]{
    {"Open", [](form1& form, const fs::path&) { form.Command33_Click(); }},
    {"OpenThis", [](form1& form, const fs::path& file) { form.openScore(file); }},
    {"OpenDemo", [](form1& form, const fs::path& file) { form.openDemo(file, "A piece"); }},
    {"OpenRecent", [](form1& form, const fs::path& file) { form.openRecent(file); }},
    {"Clear", [](form1& form, const fs::path&) { form.ClearAll(); }},
    {"Leave", [](form1& form, const fs::path&) { form.Command3_Click(); }},
};
class LossTest : public form1CarefulTest, public testing::WithParamInterface<LossRow> {
protected:
    LossTest() { file = aScore(9); }
    void press() {
        dialogs.answers.push_back({file.string(), 1});
        GetParam().press(window(), file);
    }
    bool isOpen(const char* what) {
        return std::ranges::any_of(dialogs.asked, [what](const auto& asked) { return asked.kind == what; });
    }
    void expectKept() {
        EXPECT_TRUE(window().isVisible());
        EXPECT_EQ(windows.quits, 0);
        EXPECT_EQ(score().usedChannels(), std::vector{0});
        EXPECT_FALSE(isOpen("open")) << "no name is asked for in vain";
    }
    void expectLost() {
        EXPECT_NE(score().usedChannels(), std::vector{0});
        EXPECT_EQ(windows.quits, GetParam().name == std::string("Leave") ? 1 : 0);
    }
    fs::path file;
};
INSTANTIATE_TEST_SUITE_P(Commands, LossTest, testing::ValuesIn(kLosses),
                         [](const auto& row) { return std::string(row.param.name); });
} // namespace

TEST_P(LossTest, WhatIsSavedIsNotAskedAbout) {
    shown();
    draw();
    workspace().markSaved();
    press();
    EXPECT_THAT(questions, ElementsAre());
    expectLost();
}

TEST_P(LossTest, CancelAndEscLoseNothing) {
    shown();
    draw();
    answer("cancel");
    press();
    EXPECT_THAT(questions, ElementsAre("The score is in no file yet.\n\nDo you want to save it first?"));
    expectKept();
    driver.in<QWidget>([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    press();
    expectKept();
    EXPECT_TRUE(workspace().isUnsaved());
}

TEST_P(LossTest, DiscardGoesOnWithoutSaving) {
    shown();
    draw();
    answer("discard");
    press();
    EXPECT_FALSE(isOpen("save"));
    expectLost();
}

TEST_P(LossTest, SaveGoesOnOnceItIsSaved) {
    shown();
    draw();
    const std::string text = serializePoliFile(score(), workspace().setup);
    dialogs.answers = {{(folders.home() / "kept").string(), 1}};
    answer("save");
    press();
    EXPECT_EQ(readWholeFile(folders.home() / "kept.sng"), text);
    expectLost();
}

TEST_P(LossTest, ASaveThatIsCancelledFailsOrExportsLosesNothing) {
    shown();
    draw();
    dialogs.answers = {{"", 0}};
    answer("save");
    press();
    expectKept();
    fs::create_directory(folders.home() / "full.sng");
    dialogs.answers = {{(folders.home() / "full").string(), 1}};
    driver.in<QWidget>([&](QWidget& box) {
        driver.in<QWidget>([](QWidget& failure) { pressIn(failure, "ok"); });
        pressIn(box, "save");
    });
    press();
    expectKept();
    dialogs.answers = {{(folders.home() / "tune").string(), 2}};
    answer("save");
    press();
    expectKept();
}

TEST_F(form1FilesTest, InClassicMannersOpenAndClearAskNothing) {
    const fs::path file = aScore(9);
    shown();
    draw();
    EXPECT_EQ(title(), "Velmora") << "and no mark is in the title";
    window().openScore(file);
    EXPECT_EQ(score().SongEnd, 9);
    window().ClearAll();
    EXPECT_TRUE(score().usedChannels().empty());
}

TEST_F(form1CarefulTest, TheTitleHasAMarkWhileSomethingIsUnsaved) {
    const fs::path file = aScore(9);
    shown();
    EXPECT_EQ(title(), "Velmora");
    draw();
    EXPECT_EQ(title(), "Velmora*");
    answer("discard");
    window().openScore(file);
    EXPECT_EQ(title(), "Velmora - tune.sng");
    draw();
    EXPECT_EQ(title(), "Velmora - tune.sng*");
    window().OpenforUndo();
    EXPECT_EQ(title(), "Velmora - tune.sng");
    draw();
    window().save();
    EXPECT_EQ(title(), "Velmora - tune.sng");
    draw(5);
    window().setClassic(true);
    EXPECT_EQ(title(), "Velmora - tune.sng") << "the old rules have no mark";
    window().setClassic(false);
    EXPECT_EQ(title(), "Velmora - tune.sng*");
}

TEST_F(form1CarefulTest, CtrlSWritesToTheOwnFileAndSaysSoUntilSomethingChanges) {
    const fs::path file = aScore(9);
    shown();
    window().openScore(file);
    draw();
    menu.item("mnuSave2").trigger();
    EXPECT_TRUE(dialogs.asked.empty());
    EXPECT_EQ(readWholeFile(file), serializePoliFile(score(), workspace().setup));
    EXPECT_EQ(toolText(), "Saved: " + file.string());
    draw(6);
    EXPECT_EQ(toolText(), "");
    menu.item("mnuSaveAs2").trigger();
    EXPECT_EQ(dialogs.asked.size(), 1U);
}

TEST_F(form1CarefulTest, TheToolTextSaysThatTheScoreHasGrownUntilSomethingChanges) {
    shown();
    window().openScore(aScore(1200, "long.sng", 2));
    EXPECT_EQ(toolText(), "The score is now 2,400 notes long, so that it holds all of long.sng");
    window().openScore(aScore(9));
    EXPECT_EQ(toolText(), "");
}

TEST_F(form1CarefulTest, WhatSaveHasNoNotesForIsSaidUntilThereAreSome) {
    shown();
    for (const char* item : {"mnuSave2", "mnuSaveAs2"}) {
        menu.item(item).trigger();
        EXPECT_EQ(toolText(), "There are no notes yet that could be saved");
        draw();
        EXPECT_EQ(toolText(), "");
        answer("discard");
        window().ClearAll();
    }
    EXPECT_TRUE(dialogs.asked.empty());
}

TEST_F(form1FilesTest, TheDemosAreOpenedByTheirTitles) {
    const fs::path demos = folders.home() / "data" / "demos";
    fs::create_directories(demos);
    shown();
    EXPECT_FALSE(menu.popup("mnuOpenDemo").menuAction()->isEnabled()) << "none has come with the program";
    fs::rename(aScore(9), demos / "march.sng");
    openFileMenu();
    const auto items = menu.popup("mnuOpenDemo").actions();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0]->text(), "The British Grenadiers");
    items[0]->trigger();
    EXPECT_EQ(score().SongEnd, 9);
    EXPECT_EQ(title(), "Velmora");
    EXPECT_EQ(toolText(), "A demo: The British Grenadiers");
    window().ClearAll();
    EXPECT_EQ(toolText(), "");
}

TEST_F(form1FilesTest, TheRecentFilesStandInTheMenuWithTheirFolders) {
    shown();
    EXPECT_FALSE(recent().menuAction()->isEnabled()) << "there are none";
    window().openScore(aScore(9));
    window().openScore(aScore(7, "a & b.sng"));
    openFileMenu();
    ASSERT_EQ(recent().actions().size(), 2);
    EXPECT_TRUE(recent().menuAction()->isEnabled());
    EXPECT_TRUE(recent().actions()[0]->text().startsWith("a && b.sng\t"));
    recent().actions()[1]->trigger();
    EXPECT_EQ(title(), "Velmora - tune.sng");
    fs::remove(folders.home() / "a & b.sng");
    openFileMenu();
    answer("ok");
    recent().actions()[1]->trigger();
    ASSERT_EQ(questions.size(), 1U);
    EXPECT_THAT(questions[0], testing::HasSubstr("is not there any more"));
    openFileMenu();
    EXPECT_EQ(recent().actions().size(), 1);
}

namespace {
class form1DropTest : public form1CarefulTest {
protected:
    static std::unique_ptr<QMimeData> dragged(const QList<QUrl>& urls) {
        auto data = std::make_unique<QMimeData>();
        data->setUrls(urls);
        return data;
    }
    static QUrl urlOf(const fs::path& file) {
        return QUrl::fromLocalFile(QString::fromStdString(file.string()));
    }
    /// Drags over the middle of a part of the window and lets go there, as Qt hands it to the innermost part
    /// that takes any. What the cursor says comes back.
    bool drop(
        QWidget& part, const QList<QUrl>& urls, const std::function<void()>& then = [] {}) {
        QWidget* taker = &part;
        while (!taker->acceptDrops())
            taker = taker->parentWidget();
        const auto data = dragged(urls);
        const QPoint at = taker->rect().center();
        QDragEnterEvent enter(at, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(taker, &enter);
        QDragMoveEvent move(at, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(taker, &move);
        EXPECT_EQ(enter.isAccepted(), move.isAccepted());
        QDropEvent drop(at, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, {});
        if (enter.isAccepted()) {
            QApplication::sendEvent(taker, &drop);
            EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the file stays where it is";
        }
        then();
        QApplication::processEvents();
        return enter.isAccepted();
    }
};
} // namespace

TEST_F(form1DropTest, ADroppedScoreOpensWhereverItIsDropped) {
    shown();
    std::vector<QWidget*> parts{&window()};
    for (const char* name : {"MusicBox", "Beatbox", "toolText", "lblTitle"})
        parts.push_back(&child(name));
    const auto fields = window().findChildren<QLineEdit*>();
    EXPECT_FALSE(fields.empty());
    parts.insert(parts.end(), fields.begin(), fields.end());
    int notes = 1;
    for (QWidget* part : parts) {
        ++notes;
        const fs::path file = aScore(notes, (std::to_string(notes) + ".SNG").c_str());
        EXPECT_TRUE(drop(*part, {urlOf(file)}));
        EXPECT_EQ(score().SongEnd, notes) << part->objectName().toStdString();
    }
}

TEST_F(form1DropTest, ADropAsksAsOpenDoes) {
    shown();
    draw();
    EXPECT_TRUE(drop(window(), {urlOf(aScore(9))}, [this] { answer("cancel"); }));
    EXPECT_EQ(questions.size(), 1U);
    EXPECT_EQ(score().SongEnd, 8);
    drop(window(), {urlOf(aScore(9))}, [this] { answer("discard"); });
    EXPECT_EQ(score().SongEnd, 9);
}

TEST_F(form1DropTest, OtherDropsAreRefused) {
    shown();
    const fs::path one = aScore(9);
    const fs::path two = aScore(9, "two.sng");
    EXPECT_FALSE(drop(window(), {}));
    EXPECT_FALSE(drop(window(), {urlOf(one), urlOf(two)}));
    EXPECT_FALSE(drop(window(), {urlOf(folders.home() / "tune.mid")}));
    EXPECT_FALSE(drop(window(), {QUrl("https://example.org/tune.sng")}));
    QMimeData text;
    text.setText(QString::fromStdString(one.string()));
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &text, Qt::LeftButton, {});
    QApplication::sendEvent(&window(), &enter);
    EXPECT_FALSE(enter.isAccepted());
    const auto data = dragged({urlOf(one)});
    QDragEnterEvent link({5, 5}, Qt::LinkAction, data.get(), Qt::LeftButton, {});
    QApplication::sendEvent(&window(), &link);
    EXPECT_FALSE(link.isAccepted());
    EXPECT_TRUE(score().usedChannels().empty());
}

TEST_F(form1DropTest, WhileAQuestionIsOpenADropIsRefused) {
    shown();
    draw();
    driver.in<QWidget>([this](QWidget& box) {
        EXPECT_FALSE(drop(window(), {urlOf(aScore(9))}));
        pressIn(box, "cancel");
    });
    window().ClearAll();
    EXPECT_EQ(score().SongEnd, 8);
}
