// SPDX-License-Identifier: GPL-2.0-or-later
#include "app/Program.h"

#include "app/Windows.h"
#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/Player.h"
#include "composition/RecoveryOffer.h"
#include "composition/RecoveryWatch.h"
#include "composition/Workspace.h"
#include "keyboard/PlayedLog.h"
#include "notation/SongDocument.h"
#include "parts/Desk.h"
#include "shell/FirstPaint.h"
#include "shell/MessageBox.h"
#include "sound/DeviceChooser.h"
#include "studio/ScorePlayer.h"
#include "studio/Studio.h"
#include "tableau/FirstPicture.h"
#include "tableau/form1.h"

#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include <chrono>
#include <optional>
#include <utility>

namespace velmora {

namespace {
constexpr std::chrono::milliseconds kForAnswer(100);

/// As far as the platform allows it.
void bringForward(QWidget& window, const std::string& activation) {
    // Qt shows a Wayland compositor the word from there, and takes it away again.
    if (!activation.empty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        qputenv(kActivationVariable, QByteArray::fromStdString(activation));
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.raise();
    window.activateWindow();
}

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
        , played(program.folders_.played(), program.loop_)
        , recorded(workspace, player, program.sound_->devices, devices)
        , studio(program.sound_->output, program.loop_, recorded, workspace.manners, program.folders_,
                 [] { return findSoundFont().value_or(std::filesystem::path()); })
        , song(workspace, program.folders_.home())
        , windows(desk, [&program] { program.end(); })
        , desk{.settings = program.settings_,
               .folders = program.folders_,
               .skins = program.skins_,
               .menu = *program.menu_,
               .tips = program.tips_,
               .dialogs = program.dialogs_,
               .loop = program.loop_,
               .port = program.sound_->devices,
               .inputs = program.inputs_,
               .devices = devices,
               .workspace = workspace,
               .player = player,
               .played = played,
               .studio = studio,
               .song = song,
               .windows = windows}
        , watch(program.recovery_, workspace, program.loop_, RecoveryWatch::periodOfUser()) {
        // Said by the thread that writes; the start window lives as long as the program does.
        played.onTrouble([this, &program](const std::string& words) {
            QMetaObject::invokeMethod(
                &program.opener_,
                [this, &program, words] {
                    showMessage(program.skins_, &windows.composing(), toQString(words));
                },
                Qt::QueuedConnection);
        });
    }

    DeviceChooser devices;
    Workspace workspace;
    Player player;
    PlayedLog played;
    ScorePlayer recorded;
    Studio studio;
    notation::SongDocument song;
    ProgramWindows windows;
    Desk desk;
    RecoveryWatch watch;
};

Program::Program(std::vector<std::unique_ptr<MidiBackend>> backends,
                 std::vector<std::unique_ptr<MidiInputBackend>> inputs, std::filesystem::path score,
                 std::filesystem::path socket)
    : backends_(std::move(backends))
    , settings_(settingsPath())
    , folders_(ProgramFolders::ofUser())
    , recovery_(folders_.recovery())
    , skins_(settings_)
    , tips_(settings_)
    , opener_(skins_, tips_)
    , inputs_(std::move(inputs))
    , dialogs_(skins_, tips_, folders_)
    , handOver_(std::make_unique<HandOverServer>(std::move(socket),
                                                 [this](const HandedOver& handed) { takeOver(handed); })) {
    if (!score.empty())
        waiting_.push_back(std::move(score));
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
    offerRecovery();
    if (settings::read(settings_, settings::frmsetup))
        composing_->windows.open(Windows::Name::frmsetup, Windows::Focus::Leave);
    seen_ = true;
    openWaiting();
    watchScoreIn(RecoveryWatch::periodOfUser());
}

void Program::offerRecovery() {
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
    const std::filesystem::path named = waiting_.empty() ? std::filesystem::path() : waiting_.front();
    const auto left = velmora::offerRecovery(recovery_, named, ask);
    if (left) {
        window.bringBack(*left);
        if (!named.empty())
            waiting_.pop_front(); // so the question said
    }
}

/// Again and again, as long as there is a composing window.
void Program::watchScoreIn(double seconds) {
    const std::chrono::duration<double> wait(seconds);
    QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(wait), Qt::PreciseTimer,
                       &composing_->windows.composing(), [this] { watchScoreIn(composing_->watch.look()); });
}

/// A second start wants a score opened here. While there is only the start window, that is as if the user had
/// pressed Start: who chose a score wants to see it.
void Program::takeOver(const HandedOver& handed) {
    waiting_.push_back(handed.file);
    if (!composing_)
        opener_.Command2_Click();
    if (!seen_)
        return;
    bringForward(composing_->windows.composing(), handed.activation);
    openWaiting();
}

/// What the user has been asked is answered first.
void Program::openWaiting() {
    if (waiting_.empty())
        return;
    form1& window = composing_->windows.composing();
    if (QApplication::activeModalWidget() || QApplication::activePopupWidget()) {
        QTimer::singleShot(kForAnswer, &window, [this] { openWaiting(); });
        return;
    }
    const std::filesystem::path score = std::move(waiting_.front());
    waiting_.pop_front();
    window.openScore(score);
    openWaiting();
}

void Program::end() {
    handOver_.reset();
    waiting_.clear();
    recovery_.remove();
    loop_.leave(); // a play that still waits its step out would keep the process alive
    QApplication::quit();
}

} // namespace velmora
