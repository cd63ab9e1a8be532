// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/CDWriter.h"

#include "recording/CdTrackList.h"
#include "recording/ShareBar.h"
#include "shell/ReadOut.h"
#include "tests/support/DiscFiles.h"
#include "tests/support/TestDesk.h"

#include <QtTest>
#include <QtWidgets>

#include <algorithm>
#include <deque>

namespace velmora {

namespace {
constexpr auto kControls = std::to_array<const char*>(
    {"lstTracks", "cmdAddFile", "cmdRemFile", "cmdMoveUp", "cmdMoveDown", "cboDrv", "cboSpeed", "cmdBurn"});

/// Drives of the test's own.
class FakeAudio : public cAudio {
public:
    std::vector<CdDrive> drives() override {
        ++looks;
        return list;
    }
    Disc disc(const CdDrive& drive) override {
        return drive.isImage ? Disc{DiscState::Blank, kLongestDisc} : inDrive;
    }
    std::string blank(const CdDrive& /*drive*/, BurnEvents& events) override {
        ++blanked;
        events.Blanking(1);
        inDrive.state = DiscState::Blank;
        return blankProblem;
    }
    bool setSpeed(const CdDrive& /*drive*/, std::size_t row) override {
        speed = row;
        return takesSpeed;
    }
    BurnOutcome burn(const CdDrive& drive, const CdTracks& tracks, const std::filesystem::path& file,
                     BurnEvents& events, const std::stop_token& cancel) override {
        burnt.push_back(drive.name);
        titles.clear();
        for (const CdTrack& track : tracks.list())
            titles += track.title;
        image = file;
        if (during)
            during(events);
        return cancel.stop_requested() ? BurnOutcome{BurnCode::WriteError, "", true} : outcome;
    }

    std::vector<CdDrive> list{
        {.name = "Optical drive 1", .address = "/dev/x", .isImage = false, .speeds = {7056, 706}},
        {.name = std::string(kImageDrive), .address = {}, .isImage = true, .speeds = {}}};
    Disc inDrive{DiscState::Blank, kDiscOf80Minutes};
    bool takesSpeed = true;
    std::string blankProblem;
    BurnOutcome outcome{BurnCode::Finished};
    std::function<void(BurnEvents&)> during;
    int looks = 0;
    int blanked = 0;
    std::size_t speed = 99;
    std::string titles;
    std::filesystem::path image;
    std::vector<std::string> burnt;
};

class CDWriterTest : public testing::Test {
protected:
    CDWriterTest() {
        auto audio = std::make_unique<FakeAudio>();
        audio_ = audio.get();
        window_ = std::make_unique<CDWriter>(desk_.desk(), nullptr, std::move(audio));
    }
    /// Answers the boxes that come, "y" or "n" or "ok", and keeps their texts.
    void answer(std::deque<std::string> answers) {
        answers_ = std::move(answers);
        if (!hand_.isActive()) {
            QObject::connect(&hand_, &QTimer::timeout, &hand_, [this] { answerOne(); });
            hand_.start(5);
        }
    }
    void open() {
        answer({"y"});
        window_->open();
        QTest::qWait(20);
        ASSERT_EQ(audio_->looks, 1);
    }
    void addThree() {
        for (const char* name : {"a", "b", "c"}) {
            desk_.dialogs.answers.push_back(
                {writeWav(at(std::string(name) + ".wav"), noise(588 * 75 * 5, 1)).string(), 1});
            window_->cmdAddFile_Click();
        }
    }
    [[nodiscard]] std::filesystem::path at(const std::string& name) const {
        return std::filesystem::path(home_.path().toStdString()) / name;
    }
    template<class Control>
    Control& control(const char* name) {
        auto* found = window_->findChild<Control*>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    [[nodiscard]] bool isEnabled(const char* name) { return control<QWidget>(name).isEnabled(); }
    void choose(int row) {
        auto& list = control<CdTrackList>("lstTracks");
        list.setCurrentItem(list.topLevelItem(row));
    }
    [[nodiscard]] std::string names() const {
        std::string all;
        for (const CdTrack& track : window_->tracks().list())
            all += track.title;
        return all;
    }
    [[nodiscard]] std::string state() { return control<QLabel>("sbar").text().toStdString(); }

    QTemporaryDir home_;
    TestDesk desk_;
    FakeAudio* audio_ = nullptr;
    std::unique_ptr<CDWriter> window_;
    std::deque<std::string> answers_;
    std::vector<std::string> boxes_; ///< title and text of each that came

private:
    void answerOne() {
        QWidget* box = QApplication::activeModalWidget();
        if (!box || (box != box_ && answers_.empty()))
            return;
        if (box != box_) {
            std::string text = box->windowTitle().toStdString() + ":";
            for (const QLabel* label : box->findChildren<QLabel*>())
                if (!label->text().isEmpty())
                    text += " " + label->text().simplified().toStdString();
            boxes_.push_back(text);
            answer_ = answers_.front();
            answers_.pop_front();
            box_ = box;
        }
        QTest::keyClick(box, answer_ == "y" ? Qt::Key_Y : answer_ == "n" ? Qt::Key_N : Qt::Key_Escape);
    }
    QTimer hand_;
    QPointer<QWidget> box_; ///< that was answered last
    std::string answer_;
};
} // namespace

TEST_F(CDWriterTest, ItWarnsOnceForEachStartAndComesUpAfterAYes) {
    answer({"n", "y"});
    window_->open();
    EXPECT_FALSE(window_->isVisible());
    window_->open();
    EXPECT_TRUE(window_->isVisible());
    window_->close();
    window_->open();
    EXPECT_TRUE(window_->isVisible());
    ASSERT_EQ(boxes_.size(), 2U);
    EXPECT_THAT(boxes_[0], testing::HasSubstr("Audio CD Writer"));
    EXPECT_THAT(boxes_[0],
                testing::HasSubstr("This is an Alpha Release component and carries no warranties."));
    EXPECT_THAT(boxes_[0], testing::HasSubstr("The user assumes full responsibility for its use."));
    EXPECT_THAT(boxes_[0], testing::HasSubstr("Continue?"));
}

TEST_F(CDWriterTest, TheImageIsADriveLikeAnyOther) {
    EXPECT_EQ(control<QComboBox>("cboDrv").count(), 1);
    open();
    auto& drives = control<QComboBox>("cboDrv");
    EXPECT_EQ(drives.itemText(0), "Optical drive 1");
    EXPECT_EQ(drives.itemText(1), "Disc image (CUE and BIN file)");
    auto& speeds = control<QComboBox>("cboSpeed");
    EXPECT_EQ(speeds.count(), 3);
    EXPECT_EQ(speeds.itemText(2), "706 KB/s (4x)");
    drives.setCurrentIndex(1);
    EXPECT_EQ(speeds.count(), 1);
}

TEST_F(CDWriterTest, WithoutABurnerTheImageStaysAndTheFootSaysSo) {
    audio_->list.erase(audio_->list.begin());
    open();
    EXPECT_EQ(control<QComboBox>("cboDrv").count(), 1);
    EXPECT_THAT(state(), testing::StartsWith("No CD Burner Hardware was found on your computer"));
    addThree();
    EXPECT_TRUE(isEnabled("cmdBurn"));
}

TEST_F(CDWriterTest, RowsTellNumberFileFormatAndLength) {
    addThree();
    const auto& list = control<CdTrackList>("lstTracks");
    ASSERT_EQ(list.topLevelItemCount(), 3);
    const QTreeWidgetItem* row = list.topLevelItem(1);
    EXPECT_EQ(row->text(0), "2");
    EXPECT_EQ(row->text(1), "b.wav");
    EXPECT_EQ(row->text(2), "PCM WAV");
    EXPECT_EQ(row->text(3), "0:05");
    EXPECT_EQ(control<ReadOut>("lblTotal").text(), "0:15 min");
    EXPECT_EQ(state(), "3 tracks");
    EXPECT_EQ(desk_.dialogs.asked.front().filters,
              "Supported (*.wav;*.mp3)|*.wav;*.mp3|MPEG-3 audio (*.mp3)|*.mp3|PCM WAV (*.wav)|*.wav");
}

TEST_F(CDWriterTest, ButtonsFollowTheChosenRow) {
    struct Row {
        int chosen;
        bool up;
        bool down;
    };
    EXPECT_FALSE(isEnabled("cmdRemFile"));
    EXPECT_FALSE(isEnabled("cmdBurn"));
    addThree();
    for (const Row row : {Row{0, false, true}, Row{1, true, true}, Row{2, true, false}}) {
        choose(row.chosen);
        EXPECT_EQ(isEnabled("cmdMoveUp"), row.up) << row.chosen;
        EXPECT_EQ(isEnabled("cmdMoveDown"), row.down) << row.chosen;
        EXPECT_TRUE(isEnabled("cmdRemFile"));
    }
    EXPECT_TRUE(isEnabled("cmdBurn"));
}

TEST_F(CDWriterTest, TracksAreMovedAndRemovedByButtonsAndKeys) {
    addThree();
    choose(2);
    window_->cmdMoveUp_Click();
    EXPECT_EQ(names(), "acb");
    QTest::keyClick(&control<QWidget>("lstTracks"), Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(names(), "cab");
    QTest::keyClick(&control<QWidget>("lstTracks"), Qt::Key_Down, Qt::ControlModifier);
    window_->cmdMoveDown_Click();
    EXPECT_EQ(names(), "abc");
    choose(1);
    QTest::keyClick(&control<QWidget>("lstTracks"), Qt::Key_Delete);
    EXPECT_EQ(names(), "ac");
    EXPECT_EQ(control<ReadOut>("lblTotal").text(), "0:10 min");
    window_->cmdRemFile_Click();
    window_->cmdRemFile_Click();
    EXPECT_EQ(names(), "");
    EXPECT_FALSE(isEnabled("cmdBurn"));
}

TEST_F(CDWriterTest, ARefusedFileLeavesTheListAsItWas) {
    addThree();
    writeFile(at("text.mp3"), "no sound");
    desk_.dialogs.answers.push_back({at("text.mp3").string(), 1});
    answer({"ok"});
    window_->cmdAddFile_Click();
    ASSERT_EQ(boxes_.size(), 1U);
    EXPECT_THAT(boxes_[0], testing::HasSubstr("text.mp3 is not supported."));
    EXPECT_EQ(names(), "abc");
}

TEST_F(CDWriterTest, TheHundredthTrackIsRefused) {
    const auto file = writeWav(at("a.wav"), noise(9, 1)).string();
    for (int i = 0; i < 100; ++i)
        desk_.dialogs.answers.push_back({file, 1});
    for (int i = 0; i < 99; ++i)
        window_->cmdAddFile_Click();
    answer({"ok"});
    window_->cmdAddFile_Click();
    ASSERT_EQ(boxes_.size(), 1U);
    EXPECT_THAT(boxes_[0], testing::HasSubstr("Only 99 tracks allowed!"));
    EXPECT_EQ(window_->tracks().list().size(), 99U);
}

TEST_F(CDWriterTest, FilesAreDroppedOnTheWindow) {
    const QString one = QString::fromStdString(writeWav(at("a.wav"), noise(9, 1)).string());
    const QString two = QString::fromStdString(writeWav(at("b.wav"), noise(9, 1)).string());
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(one), QUrl::fromLocalFile(two)});
    QDropEvent drop(QPointF(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    static_cast<QObject&>(*window_).event(&drop);
    EXPECT_TRUE(drop.isAccepted());
    QTest::qWait(10);
    EXPECT_EQ(names(), "ab");
}

TEST_F(CDWriterTest, BurningDisablesAllAndShowsWhatGoesOn) {
    open();
    addThree();
    control<QComboBox>("cboSpeed").setCurrentIndex(2);
    std::vector<std::string> states;
    audio_->during = [&](BurnEvents& events) {
        for (const char* name : kControls)
            if (std::string_view(name) != "lstTracks") {
                EXPECT_FALSE(isEnabled(name)) << name;
            }
        const auto keep = [&] { states.push_back(state()); };
        events.StartCaching(0), keep();
        events.StartWriting(1), keep();
        events.WriteProgress(0.4, 0.33);
        EXPECT_EQ(control<QLabel>("lblTrack").text(), "Track 2");
        EXPECT_EQ(control<ShareBar>("prgTrack").accessibleName(), "Track 2");
        EXPECT_EQ(control<ShareBar>("prgTrack").percent(), 40);
        EXPECT_EQ(control<ShareBar>("prgTotal").percent(), 33);
        events.ClosingTrack(), keep();
        events.ClosingSession(), keep();
        events.Comparing(0.5), keep();
        EXPECT_EQ(control<QLabel>("lblTrack").text(), "Track") << "it compares all of them";
        EXPECT_EQ(control<ShareBar>("prgTrack").accessibleName(), "Track");
        events.Finished(), keep();
        EXPECT_EQ(control<ShareBar>("prgTotal").percent(), 100);
    };
    answer({"ok"});
    window_->cmdBurn_Click();
    EXPECT_THAT(states, testing::ElementsAre("Caching track...", "Writing track...", "Closing track...",
                                             "Closing session...", "Comparing...", "Finished."));
    EXPECT_THAT(boxes_.back(), testing::HasSubstr("Finished."));
    EXPECT_EQ(audio_->speed, 2U);
    EXPECT_EQ(audio_->titles, "abc");
    for (const char* name : {"cmdAddFile", "cmdBurn", "cboDrv", "cboSpeed"})
        EXPECT_TRUE(isEnabled(name)) << name;
}

TEST_F(CDWriterTest, EveryCodeIsToldAndTheWindowCanBurnAgain) {
    open();
    addThree();
    for (const auto& [code, text] : kBurnTexts) {
        audio_->outcome = {code, "More words."};
        answer({"ok"});
        window_->cmdBurn_Click();
        EXPECT_THAT(boxes_.back(), testing::HasSubstr(std::string(text) + " More words."));
        EXPECT_TRUE(isEnabled("cmdBurn"));
    }
    EXPECT_EQ(audio_->burnt.size(), kBurnTexts.size());
}

TEST_F(CDWriterTest, ASpeedThatIsRefusedIsAskedAbout) {
    open();
    addThree();
    audio_->takesSpeed = false;
    answer({"n"});
    window_->cmdBurn_Click();
    EXPECT_THAT(boxes_.back(), testing::HasSubstr("Could not set writing speed. Continue?"));
    EXPECT_TRUE(audio_->burnt.empty());
    EXPECT_TRUE(isEnabled("cmdBurn"));
    answer({"y", "ok"});
    window_->cmdBurn_Click();
    EXPECT_EQ(audio_->burnt.size(), 1U);
}

TEST_F(CDWriterTest, TooLongIsToldBeforeAnythingIsWritten) {
    open();
    addThree();
    audio_->inDrive.sectors = 1000;
    answer({"ok"});
    window_->cmdBurn_Click();
    EXPECT_THAT(boxes_.back(), testing::HasSubstr("00:01:50 too long"));
    EXPECT_TRUE(audio_->burnt.empty());
}

TEST_F(CDWriterTest, ARewritableDiscIsBlankedAfterAYesAlone) {
    open();
    addThree();
    audio_->inDrive.state = DiscState::Rewritable;
    answer({"n"});
    window_->cmdBurn_Click();
    EXPECT_EQ(audio_->blanked, 0);
    EXPECT_TRUE(audio_->burnt.empty());
    audio_->blankProblem = "The drive is stuck.";
    answer({"y", "ok"});
    window_->cmdBurn_Click();
    EXPECT_THAT(boxes_.back(), testing::HasSubstr("The drive is stuck."));
    EXPECT_TRUE(audio_->burnt.empty());
    audio_->inDrive.state = DiscState::Rewritable;
    audio_->blankProblem.clear();
    answer({"y", "ok"});
    window_->cmdBurn_Click();
    EXPECT_EQ(audio_->blanked, 2);
    EXPECT_EQ(audio_->burnt.size(), 1U);
}

TEST_F(CDWriterTest, AnImageAsksForItsFile) {
    open();
    addThree();
    control<QComboBox>("cboDrv").setCurrentIndex(1);
    window_->cmdBurn_Click(); // the dialog is cancelled
    EXPECT_TRUE(audio_->burnt.empty());
    EXPECT_TRUE(isEnabled("cmdBurn"));
    desk_.dialogs.answers.push_back({at("out.cue").string(), 1});
    answer({"ok"});
    window_->cmdBurn_Click();
    EXPECT_EQ(audio_->image, at("out.cue"));
}

TEST_F(CDWriterTest, ClosingWhileItBurnsAsksFirst) {
    open();
    addThree();
    int rounds = 0;
    audio_->during = [&](BurnEvents& events) {
        events.StartWriting(0);
        answer({"n"});
        window_->close();
        EXPECT_TRUE(window_->isVisible());
        EXPECT_EQ(state(), "Writing track...");
        answer({"y"});
        EXPECT_FALSE(window_->close());
        EXPECT_TRUE(window_->isVisible()); // until the drive has come to rest
        ++rounds;
    };
    window_->cmdBurn_Click();
    EXPECT_EQ(rounds, 1);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_TRUE(window_->mayEnd());
}

TEST_F(CDWriterTest, EachControlHasItsNameAndItsTip) {
    open();
    for (const char* name : kControls) {
        EXPECT_FALSE(
            QAccessible::queryAccessibleInterface(&control<QWidget>(name))->text(QAccessible::Name).isEmpty())
            << name;
        EXPECT_NE(control<QWidget>(name).focusPolicy(), Qt::NoFocus) << name;
        ASSERT_NE(desk_.tips.toolTip(control<QWidget>(name)), nullptr) << name;
        EXPECT_FALSE(desk_.tips.toolTip(control<QWidget>(name))->title.isEmpty()) << name;
    }
}

TEST_F(CDWriterTest, TabGoesThroughItInTheOrderOfReading) {
    open();
    addThree();
    choose(1);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    control<QWidget>("lstTracks").setFocus();
    for (const bool back : {false, true}) {
        std::vector<std::string> order;
        for (std::size_t i = 0; i < kControls.size(); ++i) {
            order.push_back(QApplication::focusWidget()->objectName().toStdString());
            QTest::keyClick(QApplication::focusWidget(), back ? Qt::Key_Backtab : Qt::Key_Tab);
        }
        EXPECT_EQ(QApplication::focusWidget()->objectName(), "lstTracks") << "once around";
        if (back)
            std::reverse(order.begin() + 1, order.end());
        EXPECT_THAT(order, testing::ElementsAreArray(kControls));
    }
}

TEST_F(CDWriterTest, TheFocusIsOnBurnAgainAfterADisc) {
    open();
    addThree();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    auto& burn = control<QWidget>("cmdBurn");
    burn.setFocus();
    audio_->during = [&](BurnEvents&) { EXPECT_FALSE(burn.hasFocus()); };
    answer({"ok"});
    window_->cmdBurn_Click();
    EXPECT_EQ(window_->focusWidget(), &burn);
}

TEST_F(CDWriterTest, BarsAndTheChosenRowStandOutInEverySkin) {
    constexpr double kStandsOut = 1.2;
    open();
    addThree();
    choose(1);
    auto& list = control<CdTrackList>("lstTracks");
    auto& group = control<QWidget>("frmPrg");
    const QRect bar = control<QWidget>("prgTotal").geometry();
    const QRect row = list.visualItemRect(list.topLevelItem(1));
    const auto rgb = [](const QImage& picture, int x, int y) {
        const QColor colour = picture.pixelColor(x, y);
        return Rgb{static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
                   static_cast<std::uint8_t>(colour.blue())};
    };
    for (int skin = 1; skin <= kSkinCount; ++skin) {
        desk_.skins.Skintype_Click(skin);
        const QImage progress = group.grab().toImage();
        const int y = bar.center().y();
        EXPECT_GT(contrast(rgb(progress, bar.right() - 8, y), rgb(progress, bar.right() + 4, y)), kStandsOut)
            << "the bar in skin " << skin;
        const QImage rows = list.viewport()->grab().toImage();
        double most = 0;
        for (const int inside : {row.top(), row.center().y()})
            most = std::max(most, contrast(rgb(rows, row.center().x(), inside),
                                           rgb(rows, row.center().x(), row.bottom() + row.height())));
        EXPECT_GT(most, kStandsOut) << "the row in skin " << skin;
    }
}

TEST_F(CDWriterTest, F1ShowsItsPage) {
    QTest::keyClick(window_.get(), Qt::Key_F1);
    EXPECT_THAT(desk_.windows.pages, testing::ElementsAre("audio-cd"));
}

} // namespace velmora
