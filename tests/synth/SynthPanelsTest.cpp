// SPDX-License-Identifier: GPL-2.0-or-later
// The pages of the keyboard's toolbar.
#include "SynthFixture.h"
#include "composition/Workspace.h"
#include "keyboard/KeyboardLayout.h"
#include "parts/InstrumentField.h"

#include <QListWidget>
#include <QSlider>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

using SynthPanelsTest = SynthFixture;

// "Sound 1"

TEST_F(SynthPanelsTest, OneOfTheThreeWaysOfPlayingIsOn) {
    constexpr std::array kBoxes{"Check10", "Check2", "Check8"};
    constexpr std::array kCaptions{"Single Notes", "Polynotes on Spacebar down", "Always play polynotes"};
    constexpr std::array kMeant{Polynotes::Single, Polynotes::OnSpacebar, Polynotes::Always};
    opened(3);
    EXPECT_TRUE(control<QCheckBox>("Check10").isChecked());
    for (const std::size_t i : {1U, 2U, 0U, 1U}) {
        EXPECT_EQ(control<QCheckBox>(kBoxes[i]).text(), kCaptions[i]);
        click(control(kBoxes[i]));
        EXPECT_EQ(window().keyboard().controls().polynotes, kMeant[i]);
        for (std::size_t j = 0; j < kBoxes.size(); ++j)
            EXPECT_EQ(control<QCheckBox>(kBoxes[j]).isChecked(), i == j);
        EXPECT_TRUE(control("Picture1").hasFocus());
    }
    click(control("Check2"));
    EXPECT_TRUE(control<QCheckBox>("Check2").isChecked()) << "one is always on";
}

TEST_F(SynthPanelsTest, OptionsMoveTheKeysByWholeOctaves) {
    opened(3);
    for (int i = 0; i < 6; ++i) {
        auto& option = control<QRadioButton>("Option5", i);
        EXPECT_EQ(option.text(), QString::number(i - 2));
        click(option);
        EXPECT_EQ(window().keyboard().controls().OctaveShift, (i - 2) * 12);
        EXPECT_EQ(shownIn("LblOctave"), std::to_string(i - 2) + " Octave Shift ");
        for (int j = 0; j < 6; ++j)
            EXPECT_EQ(control<QRadioButton>("Option5", j).isChecked(), i == j);
    }
    dragTo(control("LblOct"), 0.5);
    EXPECT_EQ(shownIn("LblOctave"), "0") << "and the slider by semitones";
    EXPECT_EQ(window().keyboard().controls().OctaveShift, 5);
    EXPECT_FALSE(control<QRadioButton>("Option5", 5).isChecked());
}

TEST_F(SynthPanelsTest, TheStripOfOctavesOnlyHasTips) {
    opened(3);
    for (int i = 0; i < 8; ++i) {
        auto& dot = control<QRadioButton>("OptOct", i);
        ASSERT_TRUE(tips.toolTip(dot));
        EXPECT_EQ(tips.toolTip(dot)->title, i == 0 ? "Single Note" : "Octave");
        click(dot);
    }
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_EQ(window().keyboard().controls(), KeyboardControls());
}

TEST_F(SynthPanelsTest, StrumHasNotesOfAChordFollowEachOther) {
    opened(3);
    click(control("Chkstrum"));
    EXPECT_TRUE(window().keyboard().controls().Chkstrum);
    click(control("Check8"));
    dragTo(control("LblCrd"), 1);
    dragTo(control("LblStrum"), 1);
    down(kZ);
    EXPECT_EQ(sent().size(), 2U);
    pass(0.2);
    EXPECT_THAT(sent(), ElementsAre(on(36))) << "110 ms later the root again";
}

TEST_F(SynthPanelsTest, TheAlarmPlaysWhatIsDueByItself) {
    opened(3);
    click(control("Chkstrum"));
    click(control("Check8"));
    dragTo(control("LblCrd"), 1);
    down(kZ);
    sent();
    loop.serveUntil(loop.now() + 1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return port.sent.size() == 1; })) << "nobody called for it";
}

TEST_F(SynthPanelsTest, AnInstrumentIsPickedAndKept) {
    opened(3);
    const auto pick = [this] {
        driver.in<QWidget>([](QWidget& picker) {
            picker.findChild<QListWidget*>("LstInstruments")->setCurrentRow(56);
            picker.findChild<QAbstractButton*>("CmdOk")->click();
        });
        QCoreApplication::processEvents();
    };
    click(control("Command5"));
    pick();
    EXPECT_THAT(sent(), testing::Contains(shortmessage::programChange(0, 56)));
    EXPECT_EQ(control<QLineEdit>("LblInstrument").text(), "Trumpet");
    EXPECT_EQ(stored("Intrumentval"), "56");
    EXPECT_EQ(stored("Inst Name"), "Trumpet");
    EXPECT_EQ(workspace().setup.channels[0].instrument, 56);
    EXPECT_EQ(workspace().setup.channels[0].name, "Trumpet");
}

TEST_F(SynthPanelsTest, TheFieldOfTheInstrumentOpensThePickerToo) {
    int opened = 0;
    windows.makePicker = [&](QWidget& /*over*/, const std::function<void(PickedInstrument)>& /*picked*/) {
        ++opened;
    };
    this->opened(3);
    click(control("LblInstrument"));
    EXPECT_EQ(opened, 1);
}

TEST_F(SynthPanelsTest, APickOfPercussionAloneLeavesTheInstrument) {
    windows.makePicker = [](QWidget& /*over*/, const std::function<void(PickedInstrument)>& picked) {
        picked({.percussion = true});
    };
    opened(3);
    click(control("Command5"));
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_EQ(stored("Inst Name"), "none");
}

TEST_F(SynthPanelsTest, InCarefulMannersAChannelShowsTheInstrumentThatItSendsInClassicOnesItSendsNothing) {
    opened(4);
    dragTo(control("LblCh"), 0.3);
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_EQ(control<QLineEdit>("LblInstrument").text(), "Nylon Guitar");
    end();
    workspace().setManners(Manners::careful());
    opened(4);
    dragTo(control("LblCh"), 1);
    EXPECT_THAT(sent(), ElementsAre(shortmessage::programChange(8, 80)));
    EXPECT_EQ(control<QLineEdit>("LblInstrument").text(), "Lead 1 (square)");
}

// "Sound 2"

TEST_F(SynthPanelsTest, HoldAndMuteAreTheChannels) {
    opened(4);
    click(control("ChkSustain"));
    EXPECT_EQ(workspace().setup.channels[0].hold, 1);
    click(control("ChkSustain"));
    EXPECT_THAT(sent(),
                ElementsAre(shortmessage::controller(0, 64, 127), shortmessage::controller(0, 64, 0)));
    click(control("ChkMute"));
    EXPECT_EQ(workspace().setup.channels[0].mute, 1);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(SynthPanelsTest, TheTempoOfTheMetronomeIsChosenOrTyped) {
    constexpr std::array kBeats{180, 120, 60, 30};
    opened(4);
    EXPECT_EQ(control<QLineEdit>("txtValue").text(), "120");
    EXPECT_TRUE(control<QRadioButton>("Optbeat", 1).isChecked());
    for (int i = 0; i < 4; ++i) {
        auto& option = control<QRadioButton>("Optbeat", i);
        const int beats = kBeats[static_cast<std::size_t>(i)];
        EXPECT_EQ(option.text(), QString::number(beats) + " beats per minute");
        click(option);
        EXPECT_EQ(window().keyboard().metronome().BeatsPerMinute, beats);
        EXPECT_EQ(control<QLineEdit>("txtValue").text(), QString::number(beats));
    }
    auto& field = control<QLineEdit>("txtValue");
    field.setFocus();
    for (const auto& [typed, meant] :
         {std::pair{"90", 90}, {"1", 1}, {"1000", 1000}, {"0", 1000}, {"1001", 1000}, {"x", 100}}) {
        field.selectAll();
        QTest::keyClicks(&field, typed);
        const int beats = window().keyboard().metronome().BeatsPerMinute;
        EXPECT_EQ(beats, typed == std::string("1001") ? 100 : meant) << typed;
    }
    EXPECT_FALSE(control<QRadioButton>("Optbeat", 3).isChecked());
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(field.text(), QString::number(window().keyboard().metronome().BeatsPerMinute));
}

TEST_F(SynthPanelsTest, EachBeatLightsItsLampAndSoundsWithTone) {
    opened(4);
    click(control("chkRunning"));
    const auto lit = [this] {
        std::string lamps;
        for (int i = 0; i < 4; ++i)
            lamps += control("pctBeat", i).accessibleDescription() == "on" ? '*' : '.';
        return lamps;
    };
    EXPECT_EQ(lit(), "....");
    std::vector<std::string> seen;
    for (int beat = 0; beat < 5; ++beat) {
        pass(0.5);
        seen.push_back(lit());
    }
    EXPECT_THAT(seen, ElementsAre("*...", ".*..", "..*.", "...*", "*..."));
    EXPECT_THAT(sent(),
                ElementsAre(on(54, 100, 14), off(54, 14), on(64, 100, 14), off(64, 14), on(70, 100, 14),
                            off(70, 14), on(72, 100, 14), off(72, 14), on(54, 100, 14)));
    click(control("Check9"));
    pass(0.5);
    EXPECT_EQ(lit(), ".*..");
    sent();
    pass(0.5);
    EXPECT_THAT(sent(), IsEmpty());
    click(control("chkRunning"));
    EXPECT_EQ(lit(), "....");
    EXPECT_EQ(window().keyboard().nextDue(), std::nullopt) << "idle it costs nothing";
}

// "Setup"

TEST_F(SynthPanelsTest, TheListOfDevicesBeginsWithTheMapper) {
    opened(1);
    const auto& list = control<QComboBox>("Combo1");
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.itemText(0), "MIDI Mapper");
    EXPECT_EQ(list.itemText(2), "second");
}

TEST_F(SynthPanelsTest, AChosenDeviceIsOpenedAndGetsTheInstrumentAgain) {
    opened(1);
    down(kZ);
    port.opened.clear();
    sent();
    auto& list = control<QComboBox>("Combo1");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(port.opened.back(), list.currentIndex() - 1);
    EXPECT_EQ(stored("Devices"), std::to_string(list.currentIndex() - 1));
    const auto words = sent();
    EXPECT_EQ(words.front(), off(36)) << "keys go up first";
    ASSERT_GE(words.size(), 2U);
    EXPECT_EQ(words[words.size() - 2], shortmessage::kDrumBank);
    EXPECT_EQ(words.back(), shortmessage::programChange(0, 24));
}

TEST_F(SynthPanelsTest, WhereADeviceFailsTheNextIsTakenAndTheListMoves) {
    port.refused = {0};
    opened(1);
    auto& list = control<QComboBox>("Combo1");
    list.setCurrentIndex(1);
    emit list.activated(1);
    EXPECT_EQ(list.currentIndex(), 2);
    EXPECT_EQ(stored("Devices"), "1");
    window().Lmnu_Click(3);
    window().Lmnu_Click(1);
    port.refused = {0, 1};
    emit list.activated(1);
    EXPECT_EQ(list.currentIndex(), 0) << "silence would be worse than the mapper";
}

TEST_F(SynthPanelsTest, AfterTheDeviceTheInstrumentHasTheFocus) {
    opened(1);
    window().Lmnu_Click(3);
    emit control<QComboBox>("Combo1").activated(1);
    EXPECT_TRUE(control("Command5").hasFocus());
}

// "Compose"

TEST_F(SynthPanelsTest, LoopAndPausesAreTheKeyboards) {
    opened(2);
    EXPECT_EQ(control<QCheckBox>("Check3").text(), "Insert pauses");
    EXPECT_EQ(control<QCheckBox>("Check5").text(), "Loop Play");
    click(control("Check3"));
    EXPECT_TRUE(window().keyboard().controls().Check3);
    click(control("Check5"));
    EXPECT_TRUE(window().keyboard().loops());
    EXPECT_TRUE(button(6).isChecked()) << "the button says so, too";
    click(button(6));
    EXPECT_FALSE(control<QCheckBox>("Check5").isChecked());
}

// All of them

TEST_F(SynthPanelsTest, NothingIsCutOrCoveredAtAnyWidth) {
    for (const int width : {1000, 1024, 1159, 1160, 1192, 1366, 1920, 3840})
        for (const int page : {1, 2, 3, 4}) {
            opened(page);
            window().resize(width, 396);
            QCoreApplication::processEvents();
            const QWidget& panel = control(std::array{"Picture16", "Picture17", "Picture19",
                                                      "Picture4"}[static_cast<std::size_t>(page - 1)]);
            std::vector<const QWidget*> parts;
            for (const QObject* child : panel.children())
                if (const auto* part = qobject_cast<const QWidget*>(child); part && part->isVisible())
                    parts.push_back(part);
            for (const QWidget* part : parts) {
                const std::string what = part->objectName().toStdString() + " at " + std::to_string(width);
                EXPECT_TRUE(panel.rect().contains(part->geometry())) << what;
                if (const auto* words = qobject_cast<const QAbstractButton*>(part)) {
                    EXPECT_GE(words->width(), std::min(words->sizeHint().width(), 200)) << what;
                }
                for (const QWidget* other : parts) {
                    const bool covers = other != part && other->geometry().intersects(part->geometry());
                    EXPECT_FALSE(covers) << what << " and " << other->objectName().toStdString();
                }
            }
        }
}

TEST_F(SynthPanelsTest, BelowAWidthTheTemposStandInOneColumn) {
    opened(4);
    window().resize(1160, 396);
    EXPECT_GT(control("Optbeat", 1).x(), control("Optbeat", 0).x());
    window().resize(1159, 396);
    for (int i = 1; i < 4; ++i)
        EXPECT_EQ(control("Optbeat", i).x(), control("Optbeat", 0).x());
}

// Layouts and inputs

TEST_F(SynthPanelsTest, TheSchemesOfTheProgramAreChosenFromAList) {
    opened(1);
    auto& list = control<QComboBox>("schemes");
    const auto shipped = shippedSchemes();
    ASSERT_EQ(list.count(), static_cast<int>(shipped.size()));
    EXPECT_EQ(list.currentIndex(), 0) << "the built-in one";
    for (int index = list.count() - 1; index >= 0; --index) {
        emit list.activated(index);
        EXPECT_EQ(window().keyboard().scheme(), shipped[static_cast<std::size_t>(index)].scheme());
        EXPECT_EQ(list.currentIndex(), index);
        EXPECT_EQ(shownIn("Label3"), std::string(shipped[static_cast<std::size_t>(index)].file) + ".key");
    }
    window().keyboard().setLabel(0, "#");
    window().Lmnu_Click(4);
    click(control("ChkSustain"));
    EXPECT_EQ(list.currentIndex(), -1) << "an edited one is none of them";
}

TEST_F(SynthPanelsTest, OneClickFitsTheLabelsToTheLayoutInUse) {
    opened(1);
    window().keymap = [] { return Keymap::of({.layout = "de"}); };
    click(control("fitKeyboard"));
    const KeyScheme& scheme = window().keyboard().scheme();
    EXPECT_EQ(scheme.labels[0], "Y") << "where others have Z";
    EXPECT_EQ(std::ranges::count(scheme.labels, ""), 0);
    down({52, Qt::Key_Y, "y"});
    EXPECT_THAT(sent(), ElementsAre(on(36)));
    EXPECT_EQ(shownIn("Label3"), "My keyboard.key");
    const KeyScheme fitted = scheme;
    end();
    opened(1);
    EXPECT_EQ(window().keyboard().scheme(), fitted) << "the next start has it, too";
}

TEST_F(SynthPanelsTest, ALayoutThatCanNotBeReadIsSaidInWords) {
    opened(1);
    window().keymap = [] { return std::optional<Keymap>(); };
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_EQ(wordsOf(box), "The layout of your keyboard could not be read.");
        pressIn(box, "ok");
    });
    click(control("fitKeyboard"));
    EXPECT_EQ(window().keyboard().scheme(), KeyScheme::builtIn());
}

TEST_F(SynthPanelsTest, WhatIsPluggedInIsListedAndPlaysAtOnce) {
    opened(1);
    const auto& list = control<QListWidget>("inputs");
    EXPECT_EQ(list.item(0)->text(), "None plugged in");
    const int piano = midi.plug("Piano");
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(list.item(0)->text(), "Piano");
    midi.play(piano, shortmessage::noteOn(3, 60, 77));
    EXPECT_THAT(sent(), ElementsAre(on(60, 77)));
    EXPECT_TRUE(window().keyboard().sounds(24));
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_THAT(sent(), IsEmpty()) << "it doesn't depend on the focus";
    midi.unplug(piano);
    EXPECT_EQ(sent().front(), off(60));
    EXPECT_EQ(list.item(0)->text(), "None plugged in");
}

TEST_F(SynthPanelsTest, ClosedItHearsNoInput) {
    opened(1);
    const int piano = midi.plug("Piano");
    window().close();
    sent();
    midi.play(piano, shortmessage::noteOn(0, 60, 77));
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(SynthPanelsTest, TheTickOfStepEntryIsThatOfTheMenu) {
    opened(2);
    auto& tick = control<QCheckBox>("stepEntry");
    click(tick);
    EXPECT_FALSE(tick.isChecked()) << "nobody writes the notes";
    QObject composing;
    menu.bind(composing, "mnuStepEntry",
              [this] { store("Step entry", stored("Step entry") == "True" ? "False" : "True"); });
    click(tick);
    EXPECT_TRUE(tick.isChecked());
    EXPECT_EQ(stored("Step entry"), "True");
    click(tick);
    EXPECT_FALSE(tick.isChecked());
}

TEST_F(SynthPanelsTest, WhatWasPlayedIsKeptByTheButtonAndByItsKey) {
    opened(2);
    click(button(0));
    QTest::keyClick(&window(), Qt::Key_K, Qt::ControlModifier);
    EXPECT_THAT(windows.keptOver, ElementsAre(&window(), &window()));
}
