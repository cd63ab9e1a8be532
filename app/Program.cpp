// SPDX-License-Identifier: GPL-2.0-or-later
#include "app/Program.h"

#include "app/Windows.h"
#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/Player.h"
#include "composition/RecoveryOffer.h"
#include "composition/RecoveryWatch.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "shell/FirstPaint.h"
#include "shell/MessageBox.h"
#include "sound/DeviceChooser.h"
#include "tableau/FirstPicture.h"
#include "tableau/form1.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>

#include <chrono>
#include <optional>
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

/// What there is once the user has started.
struct Program::Composing {
    explicit Composing(Program& program)
        : devices(program.sound_->devices, devicesKey(program.settings_))
        , workspace(program.settings_, program.folders_)
        , player(workspace, program.sound_->devices, program.loop_)
        , windows(desk, [&program] { program.end(); })
        , desk{.settings = program.settings_,
               .folders = program.folders_,
               .skins = program.skins_,
               .menu = *program.menu_,
               .tips = program.tips_,
               .dialogs = program.dialogs_,
               .loop = program.loop_,
               .port = program.sound_->devices,
               .devices = devices,
               .workspace = workspace,
               .player = player,
               .windows = windows}
        , watch(program.recovery_, workspace, program.loop_, RecoveryWatch::periodOfUser()) {}

    DeviceChooser devices;
    Workspace workspace;
    Player player;
    ProgramWindows windows;
    Desk desk;
    RecoveryWatch watch;
};

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

Program::~Program() = default;

void Program::start() {
    opener_.move(opener_.screen()->availableGeometry().center() - opener_.rect().center());
    opener_.show();
    // The first picture waits for nothing that makes sound, nor for what another window shows.
    const auto prepare = [this] {
        prepareComposing();
        prepareFirstPicture(opener_, skins_.look(), opener_.devicePixelRatioF());
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
    composing_ = std::make_unique<Composing>(*this);
    if (const auto message = composing_->devices.startUpCheck()) {
        tell(skins_, &opener_, QString::fromStdString(message->text), QString::fromStdString(message->title));
        QApplication::quit();
        return;
    }
    form1& window = composing_->windows.composing();
    dialogs_.setParent(&window);
    window.show();
    afterFirstPaint(window, [this] { composingIsSeen(); });
}

void Program::composingIsSeen() {
    // Before anything takes the place of what a crash has left.
    const bool recovered = offerRecovery();
    if (settings::read(settings_, settings::frmsetup))
        composing_->windows.open(Windows::Name::frmsetup, Windows::Focus::Leave);
    if (!recovered && !score_.empty())
        composing_->windows.composing().openScore(score_);
    watchScoreIn(RecoveryWatch::periodOfUser());
}

bool Program::offerRecovery() {
    form1& window = composing_->windows.composing();
    const auto ask = [this, &window](const std::string& question) {
        switch (askYesNo(skins_, &window, toQString(question))) {
        case Answer::Yes:
            return RecoveryAnswer::BringBack;
        case Answer::No:
            return RecoveryAnswer::Drop;
        case Answer::None:
            break;
        }
        return RecoveryAnswer::Later;
    };
    const auto left = velmora::offerRecovery(recovery_, score_, ask);
    if (left)
        window.bringBack(*left);
    return left.has_value();
}

/// Again and again, as long as there is a composing window.
void Program::watchScoreIn(double seconds) {
    const std::chrono::duration<double> wait(seconds);
    QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(wait), Qt::PreciseTimer,
                       &composing_->windows.composing(), [this] { watchScoreIn(composing_->watch.look()); });
}

void Program::end() {
    recovery_.remove();
    loop_.leave(); // a play that still waits its step out would keep the process alive
    QApplication::quit();
}

} // namespace velmora
