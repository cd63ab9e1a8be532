// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/QtFileDialogs.h"

#include "shell/ExToolTip.h"
#include "tests/shell/DialogDriver.h"
#include "tests/shell/MessageHand.h"
#include "tests/support/MemorySettings.h"

#include <QFileSystemModel>
#include <QListView>
#include <QTemporaryDir>
#include <QTreeView>

#include <array>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

using namespace velmora;

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kSaveTypes = "Velmora Score(*.sng)|*.sng|Midi(*.mid)|*.mid";
constexpr std::string_view kOpenTypes = "Score Files (*.sng) |*.sng|";

/// What the windows ask for: the types shown, and for each what the name "tune" becomes when saved.
struct Caller {
    const char* title;
    const char* filterText;
    std::vector<QString> types;
    std::vector<std::string> saved;
};
const std::vector<Caller> kCallers{
    {"Open Score File", "Score Files (*.sng) |*.sng|", {"Score Files (*.sng)"}, {"tune.sng"}},
    {"Save music file",
     "Velmora Score(*.sng)|*.sng|Midi(*.mid)|*.mid",
     {"Velmora Score(*.sng)", "Midi(*.mid)"},
     {"tune.sng", "tune.mid"}},
    {"Open keyboard scheme", "Keys(*.key)|*.key", {"Keys(*.key)"}, {"tune.key"}},
    {"Save As SNG score", "SNG(*.sng)|*.sng", {"SNG(*.sng)"}, {"tune.sng"}},
    {"Open MIDI File", "Midi(*.mid)|*.mid", {"Midi(*.mid)"}, {"tune.mid"}},
    {"Open File",
     "Midi, score, wav, mp3(*.sng;*.mid;*.wav;*mp3)|*.sng;*.mid;*.wav;*mp3",
     {"Midi, score, wav, mp3(*.sng;*.mid;*.wav;*mp3)"},
     {"tune.sng"}},
    {"Save As", "Wave Audio (*.wav)|*.wav", {"Wave Audio (*.wav)"}, {"tune.wav"}},
    {"Save As", "MIDI (*.mid)|*.mid", {"MIDI (*.mid)"}, {"tune.mid"}},
    {"Save As", "MP3 (*.mp3)|*.mp3", {"MP3 (*.mp3)"}, {"tune.mp3"}},
    {"Save As", "SNG (*.sng)|*.sng", {"SNG (*.sng)"}, {"tune.sng"}},
    {"Add",
     "Supported (*.wav;*.mp3)|*.wav;*.mp3|MPEG-3 audio (*.mp3)|*.mp3|PCM WAV (*.wav)|*.wav",
     {"Supported (*.wav;*.mp3)", "MPEG-3 audio (*.mp3)", "PCM WAV (*.wav)"},
     {"tune.wav", "tune.mp3", "tune.wav"}},
    {"Open File",
     "Score Files, Lyrics(*.sng;*.lyr) |*.sng;*.lyr|",
     {"Score Files, Lyrics(*.sng;*.lyr)"},
     {"tune.sng"}},
    {"Save Text/Lyrics", "Velmora Text/Lyrics(*.lyr)|*.lyr", {"Velmora Text/Lyrics(*.lyr)"}, {"tune.lyr"}},
    {"Open Lyrics", "Lyrics (*.lyr) |*.lyr|", {"Lyrics (*.lyr)"}, {"tune.lyr"}},
};

class QtFileDialogsTest : public testing::Test {
protected:
    // Qt's own cleaning can't name all of our files.
    ~QtFileDialogsTest() override { fs::remove_all(folder_); }

    void touch(const std::string& name) { std::ofstream(folder_ / name).put('x'); }
    std::string in(const std::string& name) const { return (folder_ / name).string(); }
    std::string folder() const { return folder_.string(); }
    /// Answers the question about @p name, which has to come next, and goes on in the file dialog.
    void answer(const QString& name, const char* button, const std::function<void(QFileDialog&)>& then = {}) {
        driver_.in<QWidget>([=, this](QWidget& box) {
            EXPECT_EQ(wordsOf(box), name + " already exists.\nDo you want to replace it?");
            EXPECT_TRUE(part<QAbstractButton>(box, "no").hasFocus());
            if (then)
                driver_.in<QFileDialog>(then);
            pressIn(box, button);
        });
    }
    /// The names in the list of files.
    static std::vector<std::string> listed(QFileDialog& dialog) {
        const auto& view = part<QListView>(dialog, "listView");
        std::vector<std::string> names;
        for (int row = 0; row < view.model()->rowCount(view.rootIndex()); ++row)
            names.push_back(view.model()->index(row, 0, view.rootIndex()).data().toString().toStdString());
        return names;
    }

    QTemporaryDir dir_;
    fs::path folder_ = dir_.path().toStdString();
    DialogDriver driver_;
    MemorySettings settings_;
    frmskins skins_{settings_};
    ExToolTip tips_{settings_};
    QTemporaryDir home_;
    ProgramFolders folders_{fs::path(home_.path().toStdString())};
    QtFileDialogs dialogs_{skins_, tips_, folders_};
};
} // namespace

TEST_F(QtFileDialogsTest, EveryCallerIsShownItsTypesAndGetsTheChosenOne) {
    for (const Caller& caller : kCallers) {
        for (std::size_t type = 0; type < caller.types.size(); ++type) {
            driver_.in<QFileDialog>([&](QFileDialog& dialog) {
                EXPECT_EQ(dialog.windowTitle(), caller.title);
                EXPECT_EQ(shownTypes(dialog), QStringList(caller.types.begin(), caller.types.end()));
                nextType(dialog, static_cast<int>(type));
                typeAndConfirm(dialog, "tune");
            });
            const auto chosen = dialogs_.SaveDialog(caller.title, caller.filterText, folder());
            EXPECT_EQ(chosen.path, in(caller.saved[type]));
            EXPECT_EQ(chosen.filterIndex, static_cast<int>(type) + 1) << caller.filterText;
        }
    }
}

TEST_F(QtFileDialogsTest, OpeningGivesTheFileAndItsType) {
    touch("tune.mid");
    driver_.in<QFileDialog>([](QFileDialog& dialog) {
        nextType(dialog);
        typeAndConfirm(dialog, "tune.mid");
    });
    const auto chosen = dialogs_.OpenDialog("Open", kSaveTypes, folder());
    EXPECT_EQ(chosen.path, in("tune.mid"));
    EXPECT_EQ(chosen.filterIndex, 2);
}

TEST_F(QtFileDialogsTest, CapitalsAreListedAndOtherTypesAreNot) {
    for (const char* name : {"TUNE.SNG", "Tune.SnG", "tune.sng", "tune.mid"})
        touch(name);
    std::vector<std::string> names;
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.waitUntil([&] { return listed(dialog).size() >= 3; });
        names = listed(dialog);
        typeAndConfirm(dialog, "TUNE.SNG");
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open Score File", kOpenTypes, folder()).path, in("TUNE.SNG"));
    EXPECT_THAT(names, testing::UnorderedElementsAre("TUNE.SNG", "Tune.SnG", "tune.sng"));
}

TEST_F(QtFileDialogsTest, SizesAndDatesAreShownWhole) {
    std::ofstream(folder_ / "tune.sng") << std::string(123'456, '1');
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.waitUntil([&] { return listed(dialog).size() == 1; });
        const auto& list = part<QTreeView>(dialog, "treeView");
        const auto cutColumn = [&] {
            for (int column = 1; column < list.model()->columnCount(); ++column)
                if (!list.isColumnHidden(column) &&
                    list.columnWidth(column) <
                        static_cast<const QAbstractItemView&>(list).sizeHintForColumn(column))
                    return column;
            return 0;
        };
        driver_.waitUntil([&] { return cutColumn() == 0; }); // sizes are told after names
        EXPECT_EQ(cutColumn(), 0);
        dialog.reject();
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open Score File", kOpenTypes, folder()).path, "");
}

TEST_F(QtFileDialogsTest, AFilePickedFromTheListByKeyboardIsOpened) {
    touch("tune.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.waitUntil([&] { return listed(dialog).size() == 1; });
        auto& view = part<QTreeView>(dialog, "treeView");
        view.setFocus();
        QTest::keyClick(&view, Qt::Key_Down);
        QTest::keyClick(&view, Qt::Key_Return);
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open Score File", kOpenTypes, folder()).path, in("tune.sng"));
}

TEST_F(QtFileDialogsTest, AFileThatIsNotThereIsNotOpened) {
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.in<QWidget>([&, where = in("gone.sng")](QWidget& box) {
            EXPECT_EQ(wordsOf(box).remove('\n').toStdString(), "There is no \"" + where + "\".");
            driver_.in<QFileDialog>([](QFileDialog& again) { press(again, QDialogButtonBox::Cancel); });
            pressIn(box, "ok");
        });
        typeAndConfirm(dialog, "gone.sng");
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, folder()).path, "");
}

TEST_F(QtFileDialogsTest, CancelAndEscapeGiveNothing) {
    driver_.in<QFileDialog>([](QFileDialog& dialog) {
        nameEdit(dialog).setText("tune");
        press(dialog, QDialogButtonBox::Cancel);
    });
    const auto cancelled = dialogs_.SaveDialog("Save", kSaveTypes, folder());
    EXPECT_EQ(cancelled.path, "");
    EXPECT_EQ(cancelled.filterIndex, 0);

    driver_.in<QFileDialog>([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, folder()).path, "");
}

TEST_F(QtFileDialogsTest, ANameWithAnExtensionIsReturnedAsChosen) {
    for (const char* name : {"tune.SNG", "tune.mid", "my.song"}) {
        driver_.in<QFileDialog>([&](QFileDialog& dialog) { typeAndConfirm(dialog, name); });
        EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, in(name));
    }
}

TEST_F(QtFileDialogsTest, BlanksAroundTheNameAreNoPartOfIt) {
    driver_.in<QFileDialog>([&](QFileDialog& dialog) { typeAndConfirm(dialog, "my tune "); });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, in("my tune.sng"));
}

TEST_F(QtFileDialogsTest, WithoutTypesTheNameIsReturnedAsItIs) {
    driver_.in<QFileDialog>([&](QFileDialog& dialog) { typeAndConfirm(dialog, "tune"); });
    const auto chosen = dialogs_.SaveDialog("Save", "", folder());
    EXPECT_EQ(chosen.path, in("tune"));
    EXPECT_EQ(chosen.filterIndex, 0);
}

TEST_F(QtFileDialogsTest, TwinTypesAreToldApart) {
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        nextType(dialog);
        typeAndConfirm(dialog, "tune");
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", "A|*.a|A|*.a|", folder()).filterIndex, 2);
}

TEST_F(QtFileDialogsTest, ReplacingIsAskedAboutTheFileThatWillBeWritten) {
    touch("tune.sng");
    touch("my.song.sng");
    for (const auto& [typed, written, returned] :
         {std::array{"tune", "tune.sng", "tune.sng"}, std::array{"my.song", "my.song.sng", "my.song"}}) {
        driver_.in<QFileDialog>([&, typed = typed, written = written](QFileDialog& dialog) {
            answer(written, "yes");
            typeAndConfirm(dialog, typed);
        });
        EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, in(returned));
    }
}

TEST_F(QtFileDialogsTest, NotReplacingKeepsTheDialogForAnotherName) {
    touch("tune.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        answer("tune.sng", "no", [](QFileDialog& again) { typeAndConfirm(again, "other"); });
        typeAndConfirm(dialog, "tune");
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, in("other.sng"));
}

TEST_F(QtFileDialogsTest, AFileOfAnotherTypeIsNotAskedAbout) {
    touch("tune");
    touch("tune.mid");
    driver_.in<QFileDialog>([](QFileDialog& dialog) { typeAndConfirm(dialog, "tune"); });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, in("tune.sng"));
}

TEST_F(QtFileDialogsTest, ChangingTheTypeChangesTheExtensionOfTheName) {
    touch("tune.mid");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        nameEdit(dialog).setText("tune.SNG");
        nextType(dialog);
        EXPECT_EQ(nameEdit(dialog).text(), "tune.mid");
        answer("tune.mid", "no", [](QFileDialog& again) {
            QTest::keyClick(&part<QComboBox>(again, "fileTypeCombo"), Qt::Key_Up);
            EXPECT_EQ(nameEdit(again).text(), "tune.sng");
            confirm(again);
        });
        confirm(dialog);
    });
    const auto chosen = dialogs_.SaveDialog("Save", kSaveTypes, folder());
    EXPECT_EQ(chosen.path, in("tune.sng"));
    EXPECT_EQ(chosen.filterIndex, 1);
}

TEST_F(QtFileDialogsTest, ChangingTheTypeTakesTheNameAwayFromAMarkedFile) {
    touch("tune.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.waitUntil([&] { return listed(dialog).size() == 1; });
        auto& view = part<QListView>(dialog, "listView");
        nameEdit(dialog).setText("tune.sng");
        EXPECT_TRUE(view.selectionModel()->hasSelection()) << "a typed name marks its file";
        part<QComboBox>(dialog, "fileTypeCombo").setFocus();
        nextType(dialog);
        EXPECT_EQ(nameEdit(dialog).text(), "tune.mid");
        confirm(dialog);
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", "A|*.sng;*.mid|B|*.mid;*.sng", folder()).path, in("tune.mid"));
}

TEST_F(QtFileDialogsTest, ChangingTheTypeLeavesOtherEndsOfTheNameAlone) {
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        nameEdit(dialog).setText("opus.1");
        nextType(dialog);
        EXPECT_EQ(nameEdit(dialog).text(), "opus.1");
        confirm(dialog);
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, in("opus.1"));
}

TEST_F(QtFileDialogsTest, TheCallersExtensionStaysWhateverTheType) {
    const auto saveAs = [&](const char* name) {
        driver_.in<QFileDialog>([name](QFileDialog& dialog) {
            nextType(dialog);
            typeAndConfirm(dialog, name);
        });
        return dialogs_.SaveDialog1("Save", kSaveTypes, folder(), "key");
    };
    EXPECT_EQ(saveAs("tune").path, in("tune.key"));
    EXPECT_EQ(saveAs("tune.KEY").path, in("tune.KEY"));
    EXPECT_EQ(saveAs("tune.mid").path, in("tune.mid"));
    EXPECT_EQ(saveAs("tune").filterIndex, 2);
}

TEST_F(QtFileDialogsTest, WithTheCallersExtensionEitherFileIsAskedAbout) {
    touch("tune.key");
    touch("my.song");
    for (const auto& [typed, written] : {std::array{"tune", "tune.key"}, std::array{"my.song", "my.song"}}) {
        driver_.in<QFileDialog>([&, typed = typed, written = written](QFileDialog& dialog) {
            answer(written, "yes");
            typeAndConfirm(dialog, typed);
        });
        EXPECT_EQ(dialogs_.SaveDialog1("Save", "Keys(*.key)|*.key", folder(), ".key").path, in(written));
    }
}

TEST_F(QtFileDialogsTest, AMissingStartFolderStandsForItsParent) {
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.directory().absolutePath(), dir_.path());
        EXPECT_EQ(nameEdit(dialog).text(), "");
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, in("no/such/folder")).path, "");
}

TEST_F(QtFileDialogsTest, TheCurrentFileIsProposed) {
    touch("tune.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(nameEdit(dialog).text(), "tune.sng");
        answer("tune.sng", "yes");
        confirm(dialog);
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, in("tune.sng")).path, in("tune.sng"));
}

TEST_F(QtFileDialogsTest, TheRootIsAFolderLikeAnyOther) {
    driver_.in<QFileDialog>([](QFileDialog& dialog) {
        EXPECT_EQ(nameEdit(dialog).text(), "no such tune.sng");
        confirm(dialog);
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, "/no such tune.sng").path, "/no such tune.sng");
}

TEST_F(QtFileDialogsTest, ANameThatIsNoUtf8KeepsItsBytes) {
    touch("caf\xE9.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        answer(nameEdit(dialog).text(), "yes");
        confirm(dialog);
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, in("caf\xE9.sng")).path, in("caf\xE9.sng"));

    driver_.in<QFileDialog>([](QFileDialog& dialog) {
        nextType(dialog);
        confirm(dialog);
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, in("caf\xE9.sng")).path, in("caf\xE9.mid"));
}

TEST_F(QtFileDialogsTest, AClosedParentCancelsTheDialogAndItsQuestion) {
    touch("tune.sng");
    QWidget parent;
    parent.show();
    dialogs_.setParent(&parent);
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.window()->parentWidget(), &parent);
        parent.close();
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, "");

    parent.show();
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.in<QWidget>([&](QWidget&) { parent.close(); });
        typeAndConfirm(dialog, "tune");
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, "");
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(QtFileDialogsTest, AParentMayBeDestroyedUnderTheDialogAndItsQuestion) {
    touch("tune.sng");
    auto parent = std::make_unique<QWidget>();
    dialogs_.setParent(parent.get());
    driver_.in<QFileDialog>([&](QFileDialog&) { parent.reset(); });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, "");

    parent = std::make_unique<QWidget>();
    dialogs_.setParent(parent.get());
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.in<QWidget>([&](QWidget&) { parent.reset(); });
        typeAndConfirm(dialog, "tune");
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, "");
}

TEST_F(QtFileDialogsTest, QuittingTheApplicationEndsTheDialog) {
    ChosenFile chosen{.path = "not asked", .filterIndex = 0};
    QTimer::singleShot(0, [&] {
        driver_.in<QFileDialog>([](QFileDialog& dialog) {
            nameEdit(dialog).setText("tune");
            QCoreApplication::exit();
        });
        chosen = dialogs_.SaveDialog("Save", kSaveTypes, folder());
    });
    QApplication::exec();
    EXPECT_EQ(chosen.path, "");
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(QtFileDialogsTest, TheDialogStandsInTheProgramsFrameOverItsParent) {
    QWidget parent;
    parent.setGeometry(60, 40, 700, 500);
    parent.show();
    dialogs_.setParent(&parent);
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        auto* window = dynamic_cast<SkinnedWindow*>(dialog.window());
        ASSERT_TRUE(window);
        EXPECT_EQ(window->windowTitle(), "Open Score File");
        EXPECT_EQ(window->windowModality(), Qt::ApplicationModal);
        EXPECT_TRUE(window->Ibak5()->rect().contains(dialog.geometry()));
        EXPECT_TRUE(window->screen()->availableGeometry().contains(window->geometry()));
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open Score File", kOpenTypes, folder()).path, "");
}

TEST_F(QtFileDialogsTest, TheDialogStandsOverTheWindowThatAsks) {
    QWidget parent;
    parent.show();
    dialogs_.setParent(&parent);
    QWidget asking;
    asking.show();
    asking.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&asking));
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.window()->parentWidget(), &asking);
        dialog.reject();
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open", "", "").path, "");
}

TEST_F(QtFileDialogsTest, TheNextDialogIsAsLargeAsTheLastOne) {
    driver_.in<QFileDialog>([](QFileDialog& dialog) {
        dialog.window()->resize(640, 420);
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, folder()).path, "");
    driver_.in<QFileDialog>([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.window()->size(), QSize(640, 420));
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, "");
}

TEST_F(QtFileDialogsTest, TheFrameClosesTheDialogAsCancelDoes) {
    driver_.in<QFileDialog>([](QFileDialog& dialog) {
        nameEdit(dialog).setText("tune");
        part<QAbstractButton>(*dialog.window(), "imgTitleClose").click();
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, "");
}

TEST_F(QtFileDialogsTest, PlacesAtTheSideLeadToTheirFolders) {
    folders_.makeSongs();
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        auto& places = part<QListWidget>(dialog, "places");
        const auto place = [&](const char* name) {
            return places.findItems(name, Qt::MatchExactly).value(0);
        };
        ASSERT_TRUE(place("Songs"));
        ASSERT_TRUE(place("Home"));
        EXPECT_FALSE(places.currentItem()) << "this folder is none of the places";
        emit places.itemClicked(place("Songs"));
        EXPECT_EQ(dialog.directory().absolutePath().toStdString(), folders_.songs().string());
        EXPECT_EQ(places.currentItem(), place("Songs"));
        dialog.setDirectory(QDir::homePath());
        EXPECT_EQ(places.currentItem(), place("Home"));
        typeAndConfirm(dialog, dir_.path() + "/tune.sng");
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, in("tune.sng"));
}

TEST_F(QtFileDialogsTest, DemosAreThereToBeOpenedAndNotToBeReplaced) {
    const auto hasDemos = [](QFileDialog& dialog) {
        return !part<QListWidget>(dialog, "places").findItems("Demos", Qt::MatchExactly).isEmpty();
    };
    bool whenOpening = false;
    bool whenSaving = true;
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        whenOpening = hasDemos(dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, folder()).path, "");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        whenSaving = hasDemos(dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, "");
    EXPECT_TRUE(whenOpening);
    EXPECT_FALSE(whenSaving);
}

TEST_F(QtFileDialogsTest, NamesDatesAndSizesAreListedAndNothingHidden) {
    touch("tune.sng");
    touch(".hidden.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.waitUntil([&] { return !listed(dialog).empty(); });
        EXPECT_THAT(listed(dialog), testing::ElementsAre("tune.sng"));
        const auto& list = part<QTreeView>(dialog, "treeView");
        EXPECT_TRUE(list.isVisible());
        QStringList columns;
        for (int visual = 0; visual < list.header()->count(); ++visual)
            if (const int column = list.header()->logicalIndex(visual); !list.isColumnHidden(column))
                columns << list.model()->headerData(column, Qt::Horizontal).toString();
        EXPECT_EQ(columns, QStringList({"Name", "Date Modified", "Size"}));
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, folder()).path, "");
}

/// A slip of the hand where a file is chosen costs no music.
TEST_F(QtFileDialogsTest, FilesAreNeitherDeletedNorRenamed) {
    touch("tune.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.waitUntil([&] { return listed(dialog).size() == 1; });
        auto& list = part<QTreeView>(dialog, "treeView");
        list.setFocus();
        QTest::keyClick(&list, Qt::Key_Down);
        for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_F2})
            QTest::keyClick(&list, key);
        EXPECT_FALSE(list.findChild<QLineEdit*>());
        EXPECT_EQ(list.contextMenuPolicy(), Qt::NoContextMenu);
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, folder()).path, "");
    EXPECT_TRUE(fs::exists(folder_ / "tune.sng"));
}

TEST_F(QtFileDialogsTest, ANewFolderIsMadeAndItsNameAskedForInPlace) {
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        part<QAbstractButton>(dialog, "newFolderButton").click();
        EXPECT_TRUE(part<QTreeView>(dialog, "treeView").findChild<QLineEdit*>()) << "its name can be typed";
        QTest::keyClick(part<QTreeView>(dialog, "treeView").findChild<QLineEdit*>(), Qt::Key_Return);
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, "");
    EXPECT_TRUE(fs::is_directory(folder_ / "New Folder"));
}

TEST_F(QtFileDialogsTest, TypingOffersTheNamesThatBeginSo) {
    touch("march.sng");
    touch("waltz.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.waitUntil([&] { return listed(dialog).size() == 2; });
        QTest::keyClicks(&nameEdit(dialog), "wa");
        const QCompleter* completer = nameEdit(dialog).completer();
        ASSERT_TRUE(completer);
        EXPECT_EQ(completer->completionCount(), 1);
        EXPECT_EQ(completer->currentCompletion(), "waltz.sng");
        dialog.reject();
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, folder()).path, "");
}

TEST_F(QtFileDialogsTest, EveryControlTellsWhatItIsForAndHasAName) {
    for (const bool saving : {false, true}) {
        driver_.in<QFileDialog>([&](QFileDialog& dialog) {
            int controls = 0;
            for (const auto* control : dialog.findChildren<QWidget*>()) {
                const bool isControl = qobject_cast<const QAbstractButton*>(control) ||
                                       qobject_cast<const QComboBox*>(control) ||
                                       qobject_cast<const QLineEdit*>(control) ||
                                       qobject_cast<const QAbstractItemView*>(control);
                if (!isControl || !control->isVisible() || control->objectName().startsWith("qt_"))
                    continue;
                ++controls;
                const Tip* tip = tips_.toolTip(*control);
                EXPECT_TRUE(tip && !tip->text.isEmpty()) << control->objectName().toStdString();
                EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
                EXPECT_EQ(control->toolTip(), "") << "Qt's own tips look unlike all others";
            }
            EXPECT_EQ(controls, 12);
            press(dialog, QDialogButtonBox::Cancel);
        });
        if (saving)
            EXPECT_EQ(dialogs_.SaveDialog("Save", kSaveTypes, folder()).path, "");
        else
            EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, folder()).path, "");
    }
}

TEST_F(QtFileDialogsTest, IconsFollowTheSkinAlsoOfFilesThatAreListed) {
    touch("tune.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        driver_.waitUntil([&] { return listed(dialog).size() == 1; });
        const auto& list = part<QTreeView>(dialog, "treeView");
        const auto icon = [&list] {
            return list.model()->index(0, 0, list.rootIndex()).data(Qt::DecorationRole).value<QIcon>();
        };
        const QImage light = icon().pixmap(16).toImage();
        skins_.Skintype_Click(6);
        EXPECT_NE(icon().pixmap(16).toImage(), light);
        EXPECT_NE(icon().pixmap(16, QIcon::Selected).toImage(), icon().pixmap(16).toImage());
        press(dialog, QDialogButtonBox::Cancel);
    });
    EXPECT_EQ(dialogs_.OpenDialog("Open", kOpenTypes, folder()).path, "");
}
