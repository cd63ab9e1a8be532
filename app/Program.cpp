// SPDX-License-Identifier: GPL-2.0-or-later
#include "app/Program.h"

#include "base/Settings.h"
#include "parts/FrmInst.h"
#include "shell/FirstPaint.h"
#include "shell/HelpLibrary.h"
#include "shell/MessageBox.h"
#include "tableau/FirstPicture.h"
#include "tableau/RecoveryOffer.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>

#include <chrono>
#include <utility>

namespace velmora {

namespace {
DevicesKey devicesKey(SettingsStore& settings) {
    return {.read = [&settings]() -> std::optional<int> {
                const bool stored = !settings.GetSetting("Settings", settings::Devices.key, "").empty();
                return stored ? std::optional<int>(settings::read(settings, settings::Devices))
                              : std::nullopt;
            },
            .write =
                [&settings](int device) {
                    settings::save(settings, settings::Devices, static_cast<std::int16_t>(device));
                }};
}
} // namespace

Program::Program(std::vector<std::unique_ptr<MidiBackend>> backends, std::filesystem::path score)
    : backends_(std::move(backends))
    , score_(std::move(score))
    , settings_(settingsPath())
    , folders_(ProgramFolders::ofUser())
    , recovery_(folders_.recovery())
    , skins_(settings_)
    , tips_(settings_)
    , opener_(skins_, tips_) {
    opener_.onStart = [this] { startComposing(); };
    opener_.onExit = [] { QApplication::quit(); };
}

void Program::start() {
    opener_.move(opener_.screen()->availableGeometry().center() - opener_.rect().center());
    opener_.show();
    // The first picture waits for nothing that makes sound, nor for what another window shows.
    const auto prepare = [this] {
        prepareComposing();
        prepareFirstPicture(skins_.look(), opener_.devicePixelRatioF());
    };
    afterFirstPaint(opener_, prepare);
}

/// What the composing window needs and can be had before it; the user may be quicker than the first picture.
void Program::prepareComposing() {
    if (sound_)
        return;
    sound_ =
        std::make_unique<LiveSound>(std::move(backends_), findSoundFont().value_or(std::filesystem::path()));
    menu_ = std::make_unique<Frmmenu>();
}

void Program::startComposing() {
    prepareComposing();
    devices_ = std::make_unique<DeviceChooser>(sound_->devices, devicesKey(settings_));
    if (const auto message = devices_->startUpCheck()) {
        tell(skins_, &opener_, QString::fromStdString(message->text), QString::fromStdString(message->title));
        QApplication::quit();
        return;
    }
    workspace_ = std::make_unique<Workspace>(settings_, folders_);
    application_.emplace(Application{.settings = settings_,
                                     .folders = folders_,
                                     .skins = skins_,
                                     .menu = *menu_,
                                     .tips = tips_,
                                     .dialogs = dialogs_,
                                     .loop = loop_,
                                     .port = sound_->devices,
                                     .devices = *devices_,
                                     .workspace = *workspace_,
                                     .openHelp = [this](const QString& page) { openHelp(page); },
                                     .setup = setupToolbar(),
                                     .quit = [this] { end(); }});
    form1_ = std::make_unique<form1>(*application_);
    dialogs_.setParent(form1_.get());
    form1_->show();
    afterFirstPaint(*form1_, [this] {
        // Before anything takes the place of what a crash has left.
        const bool recovered = offerRecovery(skins_, *form1_, recovery_, score_);
        if (settings::read(settings_, settings::frmsetup))
            openSetup(frmsetup::Focus::Leave);
        if (!recovered && !score_.empty())
            form1_->openScore(score_);
        const double period = RecoveryWatch::periodOfUser();
        watch_.emplace(recovery_, *workspace_, loop_, period);
        watchScoreIn(period);
    });
}

/// Again and again, as long as there is a composing window.
void Program::watchScoreIn(double seconds) {
    const std::chrono::duration<double> wait(seconds);
    QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(wait), Qt::PreciseTimer, form1_.get(),
                       [this] { watchScoreIn(watch_->look()); });
}

/// What the composing window asks of the toolbar, which may never have been opened.
SetupToolbar Program::setupToolbar() {
    const auto ofToolbar = [this](void (frmsetup::*routine)()) {
        return [this, routine] {
            if (frmsetup_)
                (frmsetup_.get()->*routine)();
        };
    };
    return {.open = [this] { openSetup(frmsetup::Focus::Take); },
            .channelChanged = ofToolbar(&frmsetup::channelChanged),
            .refresh = ofToolbar(&frmsetup::refresh),
            .pickInstrument = [this](auto picked) { pickInstrument(std::move(picked)); },
            .showMapper = ofToolbar(&frmsetup::showMapper)};
}

/// And what the toolbar asks of the composing window.
ComposingWindow Program::composingWindow() {
    form1& form = *form1_;
    return {.TrackSel_Click = [&form](int channel) { form.TrackSel_Click(channel); },
            .DrawNoteArray = [&form] { form.DrawNoteArray(); },
            .DrawBeatArray = [&form] { form.DrawBeatArray(); },
            .PrintTopBar = [&form] { form.PrintTopBar(); },
            .drawChordMarks = [&form](int /*channel*/) { form.DrawPolynote(); },
            .layOut = [&form] { form.layOut(); },
            .NumNotesChanged = [&form] { form.showLength(); },
            .setRightClickMode = [&form](RightClick mode) { form.setRightClickMode(mode); },
            .toggleMuted = [&form](int channel) { form.toggleMuted(channel); },
            .showInstruments = [&form] { form.showNextNote(); },
            .showChannels = [&form] { form.showChannels(); },
            .showUndo = [&form] { form.showUndo(); }};
}

void Program::pickInstrument(std::function<void(std::int16_t code)> picked) {
    auto* picker = new FrmInst(*application_, form1_.get());
    picker->setAttribute(Qt::WA_DeleteOnClose);
    picker->onPicked = [this, picked = std::move(picked)](FrmInst::Picked which) {
        if (frmsetup_)
            frmsetup_->showInstrumentNames();
        if (which.melody || which.percussion)
            picked(FrmInst::codeFor(which, workspace_->score.ActiveChannel, workspace_->instruments));
    };
    picker->open();
}

void Program::openSetup(frmsetup::Focus focus) {
    if (!frmsetup_)
        frmsetup_ = std::make_unique<frmsetup>(*application_, composingWindow(), form1_.get());
    frmsetup_->open(focus);
}

void Program::end() {
    if (frmsetup_)
        frmsetup_->unload();
    recovery_.remove();
    loop_.leave(); // a play that still waits its step out would keep the process alive
    QApplication::quit();
}

void Program::openHelp(const QString& page) {
    if (!help_) {
        const auto folder = helpFolder();
        help_ = std::make_unique<HelpWindow>(skins_, tips_, folder ? HelpLibrary(*folder) : HelpLibrary());
    }
    help_->open(page);
}

} // namespace velmora
