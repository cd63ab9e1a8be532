// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/QtCommonDialogs.h"

#include "shell/ExToolTip.h"
#include "tests/shell/DialogDriver.h"
#include "tests/support/MemorySettings.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QFontDatabase>
#include <QFontDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QRadioButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeView>

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

using namespace velmora;
using testing::Contains;
using testing::ElementsAre;

namespace fs = std::filesystem;

namespace {
constexpr const char* kTypes = "Score|*.sng|Midi|*.mid|";

/// Writes down what it is told.
struct Owner : CDLGEvents {
    std::vector<std::string> told;
    void InitDialog() override { told.emplace_back("InitDialog"); }
    void DialogClose() override { told.emplace_back("DialogClose"); }
    void FileChange(const std::string& path) override { told.push_back("FileChange " + path); }
    void FolderChange(const std::string& folder) override { told.push_back("FolderChange " + folder); }
    void ConfirmOK() override { told.emplace_back("ConfirmOK"); }
    void TypeChange(int index) override { told.push_back("TypeChange " + std::to_string(index)); }
};

class QtCommonDialogsTest : public testing::Test {
protected:
    void touch(const std::string& name) { std::ofstream(folder_ / name).put('x'); }
    std::string in(const std::string& name) const { return (folder_ / name).string(); }
    template<class Dialog>
    void willCancel() {
        driver_.in<Dialog>([](Dialog& dialog) { dialog.reject(); });
    }
    static void toggle(QWidget& dialog, const QString& caption) {
        for (auto* box : dialog.findChildren<QCheckBox*>())
            if (QString(box->text()).remove('&') == caption)
                return box->click();
        ADD_FAILURE() << "no box " << caption.toStdString();
    }

    QTemporaryDir dir_;
    fs::path folder_ = dir_.path().toStdString();
    DialogDriver driver_;
    Owner owner_;
    MemorySettings settings_;
    frmskins skins_{settings_};
    ExToolTip tips_{settings_};
    QtCommonDialogs dialogs_{skins_, tips_, ProgramFolders(folder_)};
};
} // namespace

TEST_F(QtCommonDialogsTest, OpeningStartsWithThePropertiesAndWritesThemBack) {
    touch("one.mid");
    touch("two.sng");
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Pick one");
        EXPECT_EQ(dialog.directory().absolutePath(), dir_.path());
        EXPECT_EQ(nameEdit(dialog).text(), "one.mid");
        EXPECT_EQ(part<QComboBox>(dialog, "fileTypeCombo").currentText(), "Midi");
        QTest::keyClick(&part<QComboBox>(dialog, "fileTypeCombo"), Qt::Key_Up);
        typeAndConfirm(dialog, "two.sng");
    });
    CDLGProperties properties;
    properties.title = "Pick one";
    properties.fileName = "one.mid";
    properties.filterText = kTypes;
    properties.filterIndex = 2;
    properties.initialFolder = folder_.string();
    const auto end = dialogs_.ShowOpen(properties, owner_);
    EXPECT_TRUE(end.accepted);
    EXPECT_EQ(end.error, "");
    EXPECT_EQ(properties.fileName, in("two.sng"));
    EXPECT_EQ(properties.filterIndex, 1);
}

TEST_F(QtCommonDialogsTest, TheTypeOfThePropertiesChoosesTheFilesListed) {
    touch("one.mid");
    touch("two.sng");
    CDLGProperties properties;
    properties.filterText = kTypes;
    properties.filterIndex = 2;
    properties.initialFolder = folder_.string();
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        const auto& view = part<QTreeView>(dialog, "treeView");
        const auto rows = [&] { return view.model()->rowCount(view.rootIndex()); };
        driver_.waitUntil([&] { return rows() > 0; });
        EXPECT_EQ(rows(), 1);
        EXPECT_EQ(view.model()->index(0, 0, view.rootIndex()).data().toString(), "one.mid");
        dialog.reject();
    });
    EXPECT_FALSE(dialogs_.ShowOpen(properties, owner_).accepted);
}

TEST_F(QtCommonDialogsTest, AWholePathIsProposedInItsFolder) {
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.directory().absolutePath(), dir_.path());
        EXPECT_EQ(nameEdit(dialog).text(), "new score");
        confirm(dialog);
    });
    CDLGProperties properties;
    properties.fileName = in("new score");
    properties.filterText = kTypes;
    properties.initialFolder = "/";
    EXPECT_TRUE(dialogs_.ShowSave(properties, owner_).accepted);
    EXPECT_EQ(properties.fileName, in("new score.sng"));
}

TEST_F(QtCommonDialogsTest, TheDefaultExtensionHoldsUntilTheTypeIsChanged) {
    CDLGProperties properties;
    properties.filterText = kTypes;
    properties.initialFolder = folder_.string();
    properties.defaultExtension = "txt";
    driver_.in<QFileDialog>([](QFileDialog& dialog) { typeAndConfirm(dialog, "tune"); });
    EXPECT_TRUE(dialogs_.ShowSave(properties, owner_).accepted);
    EXPECT_EQ(properties.fileName, in("tune.txt"));

    properties.fileName.clear();
    driver_.in<QFileDialog>([](QFileDialog& dialog) {
        nextType(dialog);
        typeAndConfirm(dialog, "tune");
    });
    EXPECT_TRUE(dialogs_.ShowSave(properties, owner_).accepted);
    EXPECT_EQ(properties.fileName, in("tune.mid"));
}

TEST_F(QtCommonDialogsTest, ATypeThatDoesNotExistIsTheFirst) {
    for (const int index : {0, -1, 3}) {
        CDLGProperties properties;
        properties.filterText = kTypes;
        properties.filterIndex = index;
        properties.initialFolder = folder_.string();
        driver_.in<QFileDialog>([](QFileDialog& dialog) { typeAndConfirm(dialog, "tune"); });
        EXPECT_TRUE(dialogs_.ShowSave(properties, owner_).accepted);
        EXPECT_EQ(properties.fileName, in("tune.sng"));
        EXPECT_EQ(properties.filterIndex, 1);
    }
}

TEST_F(QtCommonDialogsTest, ACancelBlanksTheNameAndChangesNothingElse) {
    touch("tune.mid");
    CDLGProperties properties;
    properties.fileName = "tune.mid";
    properties.filterText = kTypes;
    properties.filterIndex = 2;
    properties.initialFolder = folder_.string();
    driver_.in<QFileDialog>([](QFileDialog& dialog) {
        QTest::keyClick(&part<QComboBox>(dialog, "fileTypeCombo"), Qt::Key_Up);
        press(dialog, QDialogButtonBox::Cancel);
    });
    const auto end = dialogs_.ShowOpen(properties, owner_);
    EXPECT_FALSE(end.accepted);
    EXPECT_EQ(end.error, "");
    EXPECT_EQ(properties.fileName, "");
    EXPECT_EQ(properties.filterIndex, 2);
}

TEST_F(QtCommonDialogsTest, ACancelIsAnErrorInEveryDialogIfAskedFor) {
    CDLGProperties properties;
    properties.errorOnCancel = true;
    willCancel<QFileDialog>();
    EXPECT_NE(dialogs_.ShowOpen(properties, owner_).error, "");
    willCancel<QFileDialog>();
    EXPECT_NE(dialogs_.ShowSave(properties, owner_).error, "");
    willCancel<QColorDialog>();
    EXPECT_NE(dialogs_.ShowColor(properties, owner_).error, "");
    willCancel<QFontDialog>();
    EXPECT_NE(dialogs_.ShowFont(properties, owner_).error, "");
    willCancel<QPrintDialog>();
    EXPECT_NE(dialogs_.ShowPrinter(properties, owner_).error, "");
}

TEST_F(QtCommonDialogsTest, TheOwnerIsToldInTheOrderOfEvents) {
    touch("tune.mid");
    fs::create_directory(folder_ / "inner");
    CDLGProperties properties;
    properties.filterText = kTypes;
    properties.initialFolder = folder_.string();
    driver_.in<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_THAT(owner_.told, ElementsAre("InitDialog"));
        nextType(dialog);
        typeAndConfirm(dialog, "inner");
        part<QToolButton>(dialog, "toParentButton").click();
        auto& view = part<QTreeView>(dialog, "treeView");
        const auto tune = [&] {
            const auto first = view.model()->index(0, 0, view.rootIndex());
            return view.model()->match(first, Qt::DisplayRole, "tune.mid").value(0);
        };
        driver_.waitUntil([&] { return tune().isValid(); });
        view.setCurrentIndex(tune());
        view.setFocus();
        QTest::keyClick(&view, Qt::Key_Return);
    });
    EXPECT_TRUE(dialogs_.ShowOpen(properties, owner_).accepted);
    EXPECT_THAT(owner_.told, ElementsAre("InitDialog", "TypeChange 2", "FolderChange " + in("inner"),
                                         "FolderChange " + folder_.string(), "FileChange " + in("tune.mid"),
                                         "ConfirmOK", "DialogClose"));
}

TEST_F(QtCommonDialogsTest, ACancelIsNoConfirmation) {
    CDLGProperties properties;
    willCancel<QColorDialog>();
    EXPECT_FALSE(dialogs_.ShowColor(properties, owner_).accepted);
    EXPECT_THAT(owner_.told, ElementsAre("InitDialog", "DialogClose"));
}

TEST_F(QtCommonDialogsTest, TheColourAndItsSixteenCustomOnesGoInAndOut) {
    CDLGProperties properties;
    properties.title = "Ink";
    properties.colour = 0x123456;
    for (std::uint32_t i = 0; i < 16; ++i)
        properties.customColours[i] = 0x010203 * (i + 1);
    driver_.in<QColorDialog>([&](QColorDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Ink");
        EXPECT_EQ(dialog.currentColor(), QColor(0x12, 0x34, 0x56));
        for (int i = 0; i < 16; ++i)
            EXPECT_EQ(QColorDialog::customColor(i), QColor(i + 1, 2 * i + 2, 3 * i + 3));
        dialog.setCurrentColor(QColor(1, 0, 255));
        for (auto* button : dialog.findChildren<QPushButton*>())
            if (button->text().remove('&').contains("Add to Custom"))
                button->click();
        press(dialog, QDialogButtonBox::Ok);
    });
    const auto before = properties.customColours;
    EXPECT_TRUE(dialogs_.ShowColor(properties, owner_).accepted);
    EXPECT_EQ(properties.colour, 0x0100FFu);
    int changed = 0;
    for (std::size_t i = 0; i < before.size(); ++i)
        changed += before[i] != properties.customColours[i] ? 1 : 0;
    EXPECT_EQ(changed, 1);
    EXPECT_THAT(properties.customColours, Contains(0x0100FFu));
}

TEST_F(QtCommonDialogsTest, CustomColoursBelongToTheirObject) {
    CDLGProperties one;
    one.customColours.fill(0x111111);
    willCancel<QColorDialog>();
    EXPECT_FALSE(dialogs_.ShowColor(one, owner_).accepted);

    CDLGProperties other;
    driver_.in<QColorDialog>([](QColorDialog& dialog) {
        EXPECT_EQ(QColorDialog::customColor(7), QColor(Qt::black));
        press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_TRUE(dialogs_.ShowColor(other, owner_).accepted);
    EXPECT_THAT(other.customColours, testing::Each(0u));
    EXPECT_THAT(one.customColours, testing::Each(0x111111u));
}

TEST_F(QtCommonDialogsTest, TheFontGoesInAndOut) {
    const QString family = QFontDatabase::families().last();
    CDLGProperties properties;
    properties.fontName = family.toStdString();
    properties.fontSize = 14;
    properties.strikeThrough = true;
    driver_.in<QFontDialog>([&](QFontDialog& dialog) {
        EXPECT_EQ(dialog.currentFont().family(), family);
        EXPECT_EQ(dialog.currentFont().pointSize(), 14);
        EXPECT_FALSE(dialog.currentFont().bold());
        EXPECT_TRUE(dialog.currentFont().strikeOut());
        toggle(dialog, "Underline");
        toggle(dialog, "Strikeout");
        press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_TRUE(dialogs_.ShowFont(properties, owner_).accepted);
    EXPECT_EQ(properties.fontName, family.toStdString());
    EXPECT_EQ(properties.fontSize, 14);
    EXPECT_TRUE(properties.underline);
    EXPECT_FALSE(properties.strikeThrough);
    EXPECT_THAT(owner_.told, ElementsAre("InitDialog", "ConfirmOK", "DialogClose"));
}

TEST_F(QtCommonDialogsTest, WeightSlantAndSizeComeFromTheFontDialog) {
    CDLGProperties properties;
    properties.fontName = "DejaVu Sans";
    properties.fontSize = 10;
    properties.bold = true;
    properties.italic = true;
    driver_.in<QFontDialog>([&](QFontDialog& dialog) {
        EXPECT_TRUE(dialog.currentFont().bold());
        EXPECT_TRUE(dialog.currentFont().italic());
        auto* styles = dialog.findChildren<QListView*>().value(1);
        styles->setCurrentIndex(styles->model()->match(styles->model()->index(0, 0), 0, "Book").value(0));
        auto* size = dialog.findChildren<QListView*>().value(2);
        size->setCurrentIndex(size->model()->match(size->model()->index(0, 0), 0, "24").value(0));
        press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_TRUE(dialogs_.ShowFont(properties, owner_).accepted);
    EXPECT_FALSE(properties.bold);
    EXPECT_FALSE(properties.italic);
    EXPECT_EQ(properties.fontSize, 24);
}

TEST_F(QtCommonDialogsTest, AnUntouchedFontKeepsAFractionOfItsSize) {
    CDLGProperties properties;
    properties.fontName = "DejaVu Sans";
    properties.fontSize = 8.25F;
    driver_.in<QFontDialog>([](QFontDialog& dialog) { press(dialog, QDialogButtonBox::Ok); });
    EXPECT_TRUE(dialogs_.ShowFont(properties, owner_).accepted);
    EXPECT_EQ(properties.fontSize, 8.25F);
}

TEST_F(QtCommonDialogsTest, ThePrinterFieldsGoInAndOutWithoutAPrinter) {
    CDLGProperties properties;
    properties.fileName = in("score.pdf");
    properties.Copies = 2;
    properties.Orientation = 2;
    properties.PaperSize = 8;
    properties.PrintQuality = 300;
    driver_.in<QPrintDialog>([&](QPrintDialog& dialog) {
        driver_.in<QDialog>([](QDialog& page) {
            EXPECT_TRUE(part<QRadioButton>(page, "landscape").isChecked());
            EXPECT_EQ(part<QComboBox>(page, "pageSizeCombo").currentText(), "A3");
            part<QRadioButton>(page, "portrait").click();
            QTest::keyClicks(&part<QComboBox>(page, "pageSizeCombo"), "A5");
            press(page, QDialogButtonBox::Ok);
        });
        EXPECT_EQ(dialog.printer()->copyCount(), 2);
        part<QSpinBox>(dialog, "copies").setValue(5);
        part<QPushButton>(dialog, "properties").click();
        press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_TRUE(dialogs_.ShowPrinter(properties, owner_).accepted);
    EXPECT_EQ(properties.fileName, in("score.pdf"));
    EXPECT_EQ(properties.DeviceName, "");
    EXPECT_EQ(properties.Copies, 5);
    EXPECT_EQ(properties.Orientation, 1);
    EXPECT_EQ(properties.PaperSize, 11);
    EXPECT_EQ(properties.PrintQuality, 300);
    EXPECT_THAT(owner_.told, ElementsAre("InitDialog", "ConfirmOK", "DialogClose"));
}

TEST_F(QtCommonDialogsTest, APlaceToPrintIsAlwaysOffered) {
    CDLGProperties properties;
    driver_.in<QPrintDialog>([&](QPrintDialog& dialog) {
        auto& printers = part<QComboBox>(dialog, "printers");
        const int pdf = printers.findText("PDF", Qt::MatchContains);
        ASSERT_GE(pdf, 0);
        printers.setCurrentIndex(pdf);
        part<QLineEdit>(dialog, "filename").setText(QString::fromStdString(in("other.pdf")));
        press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_TRUE(dialogs_.ShowPrinter(properties, owner_).accepted);
    EXPECT_EQ(properties.fileName, in("other.pdf"));
    EXPECT_GT(properties.PrintQuality, 0);
    EXPECT_NE(properties.PaperSize, 0);
}

TEST_F(QtCommonDialogsTest, HelpIsTheOwners) {
    CDLGProperties properties;
    properties.fileName = "kept";
    const auto none = dialogs_.ShowHelp(properties, owner_);
    EXPECT_FALSE(none.accepted);
    EXPECT_NE(none.error, "");

    dialogs_.setHelp([this] { owner_.told.emplace_back("help"); });
    EXPECT_TRUE(dialogs_.ShowHelp(properties, owner_).accepted);
    EXPECT_THAT(owner_.told, ElementsAre("InitDialog", "help", "DialogClose"));
    EXPECT_EQ(properties.fileName, "kept");
}

TEST_F(QtCommonDialogsTest, ADestroyedParentIsACancelThatTouchesNothing) {
    auto parent = std::make_unique<QWidget>();
    dialogs_.setParent(parent.get());
    CDLGProperties properties;
    properties.fileName = "kept";
    properties.errorOnCancel = true;
    driver_.in<QColorDialog>([&](QColorDialog&) { parent.reset(); });
    const auto end = dialogs_.ShowColor(properties, owner_);
    EXPECT_FALSE(end.accepted);
    EXPECT_NE(end.error, "");
    EXPECT_EQ(properties.fileName, "kept");
    EXPECT_THAT(owner_.told, ElementsAre("InitDialog"));
}
