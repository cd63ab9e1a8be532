// SPDX-License-Identifier: GPL-2.0-or-later
#include "app/Windows.h"

#include "base/ProgramFolders.h"
#include "parts/Desk.h"
#include "parts/FrmInst.h"
#include "recording/CDWriter.h"
#include "recording/Record.h"
#include "recording/frmLog.h"
#include "setup/frmsetup.h"
#include "shell/HelpLibrary.h"
#include "shell/HelpWindow.h"
#include "songwriter/MDIScore.h"
#include "songwriter/fPrint.h"
#include "synth/KeepWindow.h"
#include "synth/frmsynth.h"
#include "tableau/form1.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {
/// A window by its name: how it is made over the composing window, how it comes up, and what it keeps when
/// the program ends. Without a maker it is still to come.
struct Row {
    Windows::Name name;
    std::unique_ptr<SkinnedWindow> (*make)(Desk&, QWidget* composing) = nullptr;
    void (*open)(SkinnedWindow&, Windows::Focus) = nullptr;
    void (*unload)(SkinnedWindow&) = nullptr;
    bool (*mayEnd)(SkinnedWindow&) = nullptr;
};

template<class Window>
constexpr Row rowOf(Windows::Name name) {
    return {name,
            [](Desk& desk, QWidget* composing) -> std::unique_ptr<SkinnedWindow> {
                if constexpr (std::is_constructible_v<Window, Desk&, QWidget*>)
                    return std::make_unique<Window>(desk, composing);
                else
                    return std::make_unique<Window>(desk);
            },
            [](SkinnedWindow& window, Windows::Focus focus) {
                if constexpr (requires(Window & own) { own.open(focus); })
                    static_cast<Window&>(window).open(focus);
                else
                    window.show();
            },
            [](SkinnedWindow& window) {
                if constexpr (requires(Window & own) { own.unload(); })
                    static_cast<Window&>(window).unload();
            },
            [](SkinnedWindow& window) {
                if constexpr (requires(Window & own) { own.mayEnd(); })
                    return static_cast<Window&>(window).mayEnd();
                else
                    return true;
            }};
}

// clang-format off
constexpr std::array kRows{
    rowOf<form1>(Windows::Name::form1), // first: the others stand over it
    rowOf<frmsetup>(Windows::Name::frmsetup),
    rowOf<frmsynth>(Windows::Name::frmsynth),
    rowOf<Record>(Windows::Name::Record),
    rowOf<frmLog>(Windows::Name::frmLog),
    rowOf<CDWriter>(Windows::Name::CDWriter),
    rowOf<MDIScore>(Windows::Name::MDIScore),
    rowOf<fPrint>(Windows::Name::fPrint),
    Row{Windows::Name::Wiz},
};
// clang-format on

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < kRows.size(); ++i)
        if (static_cast<std::size_t>(kRows[i].name) != i)
            return false;
    return true;
}
static_assert(isInOrder());

const Row& rowAt(Windows::Name name) {
    return kRows[static_cast<std::size_t>(name)];
}
} // namespace

ProgramWindows::ProgramWindows(Desk& desk, std::function<void()> onQuit)
    : desk_(desk)
    , onQuit_(std::move(onQuit)) {
    static_assert(kRows.size() == kCount);
}

ProgramWindows::~ProgramWindows() = default;

bool ProgramWindows::has(Name name) const {
    return rowAt(name).make != nullptr;
}

SkinnedWindow& ProgramWindows::made(Name name) {
    auto& window = windows_[static_cast<std::size_t>(name)];
    if (!window)
        window = rowAt(name).make(desk_, windows_[0].get());
    return *window;
}

form1& ProgramWindows::composing() {
    return static_cast<form1&>(made(Name::form1));
}

void ProgramWindows::open(Name name, Focus focus) {
    if (has(name))
        rowAt(name).open(made(name), focus);
}

void ProgramWindows::openScore(const std::filesystem::path& file) {
    composing().openScore(file);
}

bool ProgramWindows::saveScore() {
    return composing().save();
}

bool ProgramWindows::saveScoreAs() {
    return composing().mSaveAs_Click();
}

void ProgramWindows::help(const QString& page) {
    if (!help_) {
        const auto folder = helpFolder();
        help_ = std::make_unique<HelpWindow>(desk_.skins, desk_.tips, desk_.settings,
                                             folder ? HelpLibrary(*folder) : HelpLibrary());
    }
    help_->open(page, windows_[0].get());
}

void ProgramWindows::pickInstrument(QWidget& over, std::function<void(PickedInstrument)> picked) {
    if (picker_)
        return;
    picker_ = new FrmInst(desk_, &over);
    picker_->setAttribute(Qt::WA_DeleteOnClose);
    picker_->onPicked = std::move(picked);
    picker_->open();
}

void ProgramWindows::keepPlayed(QWidget& over) {
    if (keep_)
        return;
    keep_ = new KeepWindow(desk_, &over);
    keep_->setAttribute(Qt::WA_DeleteOnClose);
    keep_->open();
}

bool ProgramWindows::mayQuit() {
    return std::ranges::all_of(kRows, [this](const Row& row) {
        const auto& window = windows_[static_cast<std::size_t>(row.name)];
        return !window || row.mayEnd(*window);
    });
}

void ProgramWindows::quit() {
    for (const Row& row : kRows)
        if (const auto& window = windows_[static_cast<std::size_t>(row.name)])
            row.unload(*window);
    onQuit_();
}

} // namespace velmora
