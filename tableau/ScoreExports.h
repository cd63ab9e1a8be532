// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/ScoreExport.h"

#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

class QWidget;

namespace velmora {

class ExportThread;
class ProgressWindow;
struct Desk;

/// Exports of the score that is open, over its window: asks for a name, makes the file beside everything
/// else, and tells how it went. What is made is the score of the moment of the command; it may change
/// meanwhile. One file of sound is made at a time.
class ScoreExports {
public:
    ScoreExports(Desk& desk, QWidget& window);
    ~ScoreExports();
    ScoreExports(const ScoreExports&) = delete;
    ScoreExports& operator=(const ScoreExports&) = delete;

    std::function<void(const QString&)> onWords; ///< for the line of tool text

    void start(ExportFormat format);
    [[nodiscard]] bool isBusy() const { return thread_ != nullptr; }
    /// Asks, if a file is being made, whether that is to be stopped.
    [[nodiscard]] bool mayLeave();
    /// Stops what goes on and waits for its end, which is near.
    void stop();

    /// How long a file may take before its window comes up, and how often it is looked at, in milliseconds.
    static constexpr int kPatience = 1000;
    static constexpr int kTick = 100;

private:
    [[nodiscard]] std::filesystem::path askForName(const ExportKind& kind) const;
    void makeSound(const ExportKind& kind, const std::filesystem::path& file);
    void look();
    void end();
    void say(const QString& words) const;

    Desk& desk_;
    QWidget& window_;
    std::unique_ptr<ExportThread> thread_;
    std::unique_ptr<ProgressWindow> progress_; ///< stays open after the end until the user has read it
    QTimer timer_;
    int ticks_ = 0; ///< since the file was begun
};

} // namespace velmora
