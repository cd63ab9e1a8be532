// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/frmsynth.h"

#include "base/MessageLoop.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "base/Settings.h"
#include "base/SteadyClock.h"
#include "composition/Workspace.h"
#include "keyboard/PlayedLog.h"
#include "keyboard/TakeScore.h"
#include "parts/BringUp.h"
#include "parts/Desk.h"
#include "parts/SetupTab.h"
#include "shell/CommandButton.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "shell/KeymapInUse.h"
#include "shell/MessageBox.h"
#include "shell/WindowGeometry.h"
#include "sound/DeviceChooser.h"
#include "synth/Commands.h"
#include "synth/ComposePanel.h"
#include "synth/KeyArea.h"
#include "synth/PanicBar.h"
#include "synth/RecordLamp.h"
#include "synth/SchemePanel.h"
#include "synth/SoundOnePanel.h"
#include "synth/SoundTwoPanel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora {

namespace {
// Places count from the panel's top, under the title.
constexpr int kMargin = 12;
constexpr QSize kLeast(1000, 380);
constexpr int kHeight = 396;
constexpr int kTabsTop = 60;
constexpr int kPageTop = 84;
constexpr int kPanicTop = 196; ///< with the editing strip; without it stands where the tabs did
constexpr int kPanicHeight = 16;
constexpr int kKeysBelow = 24; ///< the top of the panic bar
constexpr int kFirstTab = 1;   ///< tabs are counted from 1
constexpr int kFirstPage = 4;

constexpr std::array<const char*, 7> kTabWords{"Setup", "Compose", "Sound 1", "Sound 2",
                                               "Tools", "Help",    "Close"};

constexpr int kSoftest = 40; ///< a press at a key's top
constexpr int kLoudest = 127;

int velocityAt(double height) {
    return kSoftest + static_cast<int>(std::lround(height * (kLoudest - kSoftest)));
}
} // namespace

/// What the window system says of keys, before any control hears of it: a box would take Space, and a list
/// letters.
class frmsynth::KeyWatch : public QObject {
public:
    explicit KeyWatch(frmsynth& window) : window_(window) { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
            return false;
        const auto* receiver = qobject_cast<QWidget*>(watched);
        if (!receiver || !window_.keyEvent(*static_cast<QKeyEvent*>(event), *receiver))
            return false;
        event->accept(); // or the window around the receiver would be told, too
        return true;
    }

private:
    frmsynth& window_;
};

frmsynth::frmsynth(Desk& desk, QWidget* composing)
    : SkinnedWindow(desk.skins, {.maximize = true, .minimize = true, .help = true})
    , keymap(keymapInUse)
    , desk_(desk)
    , composing_(composing)
    , keyboard_(desk.port, desk.loop, desk.workspace.setup.channels, desk.workspace.manners)
    , parts_{.desk = desk,
             .keyboard = keyboard_,
             .look = look(),
             .onUse = [this] { used(); },
             .onDone = [this] { Picture1_->setFocus(); }}
    , Lb1_("Lb1", kSynthLb1, look(), desk.tips, Ibak5())
    , lamp_(new RecordLamp(Ibak5()))
    , page_(new SetupPage(look(), Ibak5()))
    , scheme_(new SchemePanel(parts_, page_))
    , compose_(new ComposePanel(parts_, Lb1_[synthLb1("keep")], page_))
    , soundOne_(new SoundOnePanel(parts_, page_))
    , soundTwo_(new SoundTwoPanel(parts_, page_))
    , pages_{scheme_, compose_, soundOne_, soundTwo_}
    , panicBar_(new PanicBar(look(), Ibak5()))
    , overdub_(desk.workspace, desk.player, desk.loop)
    , played_(desk.played, overdub_)
    , docking_(composing, [this] { setGeometry(docking_.place(kLeast, height())); })
    , takes_(desk.folders.takes(), wallSeconds)
    , takesAlarm_([this] { lookAtTake(); })
    , Picture1_(new KeyArea(look(), Ibak5()))
    , alarm_([this] { runDue(); })
    , presses_(
          [this](const ComputerKey& key) {
              keyboard_.Form_KeyDown(key);
              arm();
          },
          [this](const ComputerKey& key) {
              keyboard_.Form_KeyUp(key);
              arm();
          })
    , KeyFilePath_("None")
    , schemeFolder_(desk.folders.songs())
    , scoreFolder_(desk.folders.songs())
    , watching_(desk.workspace.watchers.join(*this)) {
    setObjectName("frmsynth");
    setWindowTitle("Velmora  Keyboard");
    setMinimumSize(kLeast);
    setAttribute(Qt::WA_QuitOnClose, false);
    addTabs();
    addKeys();
    bindCommands();
    bindMenu();
    attachTips(desk_.tips);
    setHelp([this] { desk_.windows.help("keyboard"); });
    keyboard_.setView(this);
    keyboard_.setPlayedNotes(&played_);
    takes_.onTrouble = [this](const std::string& words) {
        QMetaObject::invokeMethod(
            this, [this, words] { tell(skins(), this, toQString(words)); }, Qt::QueuedConnection);
    };
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive)
            releaseKeys();
    });
    showPage(kFirstPage);
    resize(kLeast.width(), kHeight);
}

frmsynth::~frmsynth() {
    unload();
    keyboard_.setView(nullptr);
    keyboard_.setPlayedNotes(nullptr);
}

void frmsynth::addTabs() {
    for (int index = 0; index < kTabs; ++index) {
        const auto i = static_cast<std::size_t>(index);
        auto* tab = new SetupTab(look(), kTabWords[i], Ibak5());
        tab->setObjectName(QStringLiteral("Lmnu(%1)").arg(index + kFirstTab));
        tab->setCheckable(index < kPages);
        connect(tab, &QAbstractButton::clicked, this, [this, index] { Lmnu_Click(index + kFirstTab); });
        static constexpr std::array<const char*, kTabs> kTips{
            "Show this page",         "Show this page", "Show this page", "Show this page",
            "Which toolbars to show", "Open Help File", "Close Keyboard"};
        desk_.tips.SetToolTip(*tab, {kTabWords[i], kTips[i], ""});
        Lmnu_[i] = tab;
    }
}

void frmsynth::addKeys() {
    desk_.tips.SetToolTip(*panicBar_, {"Move cursor over Panic Bar to stop sound", "", ""});
    panicBar_->onMove = [this] { panic(true); };
    Picture1_->onBare = [this] { panic(false); };
    Picture1_->onPress = [this](int key, double height) {
        if (desk_.workspace.manners.playsByHeight)
            keyboard_.CmdKey_MouseDown(key, velocityAt(height));
        else
            keyboard_.CmdKey_MouseDown(key);
        arm();
    };
    Picture1_->onRelease = [this] {
        keyboard_.CmdKey_MouseUp();
        arm();
    };
    Picture1_->onLabel = [this](int key, const QString& text) {
        keyboard_.setLabel(key, text.toStdString());
        used();
    };
    Picture1_->setFocus();
}

// What the keyboard shows.

void frmsynth::showKey(int key, bool sounds) {
    Picture1_->showKey(key, sounds);
}

void frmsynth::showBeat(int number) {
    soundTwo_->showBeat(number);
    (void)countIn_.beat(desk_.loop.now(), keyboard_.metronome().beatInterval());
}

void frmsynth::showPosition(int position) {
    if (compose_->isVisible())
        compose_->showPosition(position);
}

/// The lamp, and which of the buttons from "Record/" to "Stop" can be pressed and are.
void frmsynth::showTransport() {
    const bool takes = keyboard_.recording() != TakeRecorder::State::Off;
    if (takes && (!recorded_ || std::isfinite(recorded_->last))) {
        recorded_ = {desk_.loop.now(), std::numeric_limits<double>::infinity()};
        desk_.played.holdFrom(recorded_->first); // however long it gets
    } else if (!takes && recorded_ && !std::isfinite(recorded_->last)) {
        recorded_->last = desk_.loop.now();
    }
    lookAtTake();
    const bool records = takes || countIn_.isRunning();
    lamp_->setOn(takes);
    CommandButton& record = Lb1_[synthLb1("record")];
    record.setFace("record", records ? "Stop" : "Record/");
    const QString words = records ? "Stop Keyboard Recording" : "Start Keyboard Recording";
    record.setAccessibleName(words);
    desk_.tips.SetToolTip(record, {words, "", "record"});
    Lb1_.setOn(synthLb1("record"), records);
    for (int index = synthLb1("saveRecording"); index <= synthLb1("stop"); ++index)
        Lb1_[index].setEnabled(!records);
    Lb1_.setOn(synthLb1("loop"), keyboard_.loops());
    Lb1_.setOn(synthLb1("play"), keyboard_.isPlaying());
    Lb1_.setOn(synthLb1("pause"), keyboard_.isPaused());
}

bool frmsynth::confirmOverwrite() {
    return std::exchange(mayOverwrite_, false) ||
           askYesNo(skins(), this, toQString(kOverwriteTake), toQString(kEraseRecording)) == Answer::Yes;
}

void frmsynth::changed(Changes changes) {
    if (changes.any(Change::Manners))
        releaseAll();
    if (changes.any(Change::Device) && scheme_->isVisible())
        scheme_->listDevices();
    if (isVisible())
        used();
}

void frmsynth::midiMessage(int /*source*/, std::uint32_t /*word*/, double /*moment*/) {
    arm();
}

void frmsynth::midiEnded(int /*source*/) {
    arm();
}

void frmsynth::midiSourcesChanged() {
    if (scheme_->isVisible())
        scheme_->listInputs();
}

void frmsynth::used() {
    for (SynthPanel* panel : pages_)
        panel->refresh();
    showTransport();
    Lb1_.setOn(synthLb1("edit"), keyboard_.controls().Check1);
    Lb1_.setOn(synthLb1("strip"), stripShown_);
    Picture1_->showLabels(keyboard_.scheme(), keyboard_.controls().OctaveShift);
    arm();
}

// Time.

/// The keyboard's clock is the loop's, and the alarm's the steady one; in the program they are the same.
void frmsynth::arm() {
    std::optional<double> due = keyboard_.nextDue();
    if (const auto begins = countIn_.nextDue(); begins && (!due || *begins < *due))
        due = begins;
    if (due == armedTo_)
        return;
    armedTo_ = due;
    if (due)
        alarm_.setTo(steadySeconds() + (*due - desk_.loop.now()));
    else
        alarm_.stop();
}

void frmsynth::runDue() {
    armedTo_.reset();
    keyboard_.runDue();
    if (countIn_.isOver(desk_.loop.now()))
        keyboard_.CmdRec_Click();
    arm();
}

// The keys of the computer.

bool frmsynth::takesKeys() const {
    if (!loaded_ || keyboard_.controls().Check1)
        return false;
    const auto* field = qobject_cast<QLineEdit*>(focusWidget());
    return !field || field->isReadOnly();
}

/// True if the keyboard took it. A release counts wherever it is told.
bool frmsynth::keyEvent(const QKeyEvent& event, const QWidget& receiver) {
    if (event.type() == QEvent::KeyRelease)
        return presses_.release(event) && receiver.window() == this;
    if (receiver.window() != this || !takesKeys())
        return false;
    const bool reached =
        testAttribute(Qt::WA_KeyboardFocusChange) && focusWidget() && focusWidget() != Picture1_;
    if (event.key() == Qt::Key_Space && reached) // which presses what the ring shows
        return false;
    return presses_.press(event);
}

/// The keys under the hand; those of MIDI keyboards don't depend on the focus.
void frmsynth::releaseKeys() {
    presses_.forget();
    keyboard_.releaseKeys();
    arm();
}

void frmsynth::releaseAll() {
    releaseKeys();
    keyboard_.releaseAll();
    arm();
}

bool frmsynth::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate)
        releaseKeys();
    return SkinnedWindow::event(event);
}

void frmsynth::hideEvent(QHideEvent* event) {
    releaseKeys();
    SkinnedWindow::hideEvent(event);
}

/// Esc goes back to the keys, and ends the editing of their labels.
void frmsynth::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) {
        SkinnedWindow::keyPressEvent(event);
        return;
    }
    setEditing(false);
    Picture1_->setFocus();
}

/// Where the keys have the focus nothing is to be pressed by Space.
QWidget* frmsynth::ringed(QWidget* focused) const {
    return focused == Picture1_ ? nullptr : SkinnedWindow::ringed(focused);
}

void frmsynth::panic(bool lit) {
    keyboard_.panic();
    panicBar_->setLit(lit);
    arm();
}

// Pages and layout.

void frmsynth::Lmnu_Click(int index) {
    switch (index) {
    case 5:
        popUpTools();
        break;
    case 6:
        imgTitleHelp_Click();
        break;
    case 7:
        close();
        break;
    default:
        showPage(index);
    }
}

void frmsynth::showPage(int page) {
    if (page < kFirstTab || page > kPages)
        return;
    for (int index = 0; index < kPages; ++index) {
        const auto i = static_cast<std::size_t>(index);
        const bool shown = index + kFirstTab == page;
        Lmnu_[i]->setChecked(shown);
        pages_[i]->setVisible(shown);
    }
}

void frmsynth::Command3_Click() {
    stripShown_ = !stripShown_;
    layOut();
    used();
}

void frmsynth::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    layOut();
}

void frmsynth::layOut() {
    const int inner = width() - 2 * kMargin;
    layOutStrip();
    page_->setGeometry(kMargin, kPageTop, inner, SynthPanel::kHeight);
    for (SynthPanel* panel : pages_)
        panel->setGeometry(page_->rect());
    int x = kMargin;
    for (QAbstractButton* tab : Lmnu_) {
        tab->setGeometry(QRect(QPoint(x, kTabsTop), tab->sizeHint()));
        x += tab->width();
        tab->setVisible(stripShown_);
        tab->raise(); // over the page's line
    }
    page_->setVisible(stripShown_);
    const int panic = stripShown_ ? kPanicTop : kTabsTop;
    panicBar_->setGeometry(kMargin, panic, inner, kPanicHeight);
    const int keys = panic + kKeysBelow;
    Picture1_->setGeometry(kMargin, keys, inner, height() - kTitleHeight - kMargin - keys);
}

// Its coming and going.

void frmsynth::open(Windows::Focus focus) {
    if (!loaded_)
        load();
    bringUp(*this, focus);
}

void frmsynth::load() {
    loaded_ = true;
    if (desk_.devices.reopenIfChanged() != DeviceChooser::Reopened::No)
        announce(desk_.workspace, Change::Device);
    loadScheme();
    openAtStoredPlace();
    docking_.setOn(settings::read(desk_.settings, settings::Synthup));
    InstrumentSelection& chosen = desk_.workspace.instruments;
    if (chosen.MelodyInstrumentName.empty()) {
        chosen.MelodyInstrument = settings::read(desk_.settings, settings::Intrumentval);
        chosen.MelodyInstrumentName = settings::read(desk_.settings, settings::Inst_Name, "Nylon Guitar");
    }
    keyboard_.load(settings::read(desk_.settings, settings::Volume), chosen.MelodyInstrument);
    soundOne_->showInstrument(toQString(chosen.MelodyInstrumentName), keyboard_.program());
    keyWatch_ = std::make_unique<KeyWatch>(*this);
    midi_.emplace(desk_.inputs, keyboard_);
    listening_ = desk_.inputs.join(*this);
    used();
}

void frmsynth::unload() {
    if (!std::exchange(loaded_, false))
        return;
    keyWatch_.reset();
    countIn_.cancel();
    listening_ = {};
    midi_.reset();
    presses_.forget();
    keyboard_.unload();
    takes_.finish();
    soundTwo_->showBeat(0);
    alarm_.stop();
    armedTo_.reset();
    saveSettings();
}

/// At the stored place on whichever screen that is; without one low on the screen, under the composing
/// window's grid. The width that was saved is not read back.
void frmsynth::openAtStoredPlace() {
    const auto twips = [](int length) { return static_cast<float>(length * kTwips); };
    const auto stored = [this](const settings::Float& key) {
        return pixelsOfTwips(settings::read(desk_.settings, key));
    };
    const bool isStored =
        knowsItsPlace() && !desk_.settings.GetSetting("Settings", settings::formS_left.key, "").empty();
    const QPoint corner(stored(settings::formS_left), stored(settings::formS_top));
    const QScreen* there = isStored ? QGuiApplication::screenAt(QRect(corner, kLeast).center()) : nullptr;
    const QRect screen = (there ? there : this->screen())->availableGeometry();
    const int around = composing_ ? composing_->width() : screen.width();
    const int width =
        pixelsOfTwips(settings::read(desk_.settings, settings::formS_width, twips(around) - 200));
    const QSize size = QSize(width, kHeight).expandedTo(kLeast).boundedTo(screen.size());
    const QPoint low(screen.center().x() - size.width() / 2, screen.bottom() + 1 - size.height() - 24);
    setGeometry(QRect(onScreen(isStored ? corner : low, size, screen), size));
    saveSettings();
}

void frmsynth::saveSettings() {
    const auto twips = [](int length) { return static_cast<float>(length * kTwips); };
    const QRect frame = isMaximized() ? normalGeometry() : geometry();
    SettingsBatch place(desk_.settings);
    if (knowsItsPlace()) {
        settings::save(place, settings::formS_left, twips(frame.x()));
        settings::save(place, settings::formS_top, twips(frame.y()));
    }
    settings::save(place, settings::formS_Width, twips(frame.width()));
    settings::save(place, settings::formS_Height, twips(frame.height()));
    settings::save(place, settings::keyfile, KeyFilePath_);
}

bool frmsynth::mayEnd() {
    const bool records = loaded_ && keyboard_.recording() == TakeRecorder::State::On;
    return !desk_.workspace.manners.asksBeforeLoss || !records ||
           askYesNo(skins(), this, "A recording goes on. Stop it and close the keyboard?") == Answer::Yes;
}

void frmsynth::closeEvent(QCloseEvent* event) {
    if (!mayEnd()) {
        event->ignore();
        return;
    }
    event->accept();
    if (!loaded_)
        return;
    unload();
    desk_.windows.open(Windows::Name::form1);
    if (composing_)
        composing_->activateWindow();
}

} // namespace velmora
