// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/TakeLoudness.h"

#include "studio/Loudness.h"

#include <QString>

#include <cmath>

namespace velmora {

namespace fs = std::filesystem;

namespace {
std::string wordsOf(const MeasuredLoudness& measured) {
    if (!measured.error.empty())
        return "Its loudness can't be told";
    const auto [integrated, peak] = measured.loudness;
    if (!std::isfinite(peak))
        return "Silent";
    const QString peakWords = QStringLiteral("Peak %1 dB").arg(peak, 0, 'f', 1);
    if (!std::isfinite(integrated))
        return peakWords.toStdString();
    return QStringLiteral("%1, loudness %2 LUFS").arg(peakWords).arg(integrated, 0, 'f', 1).toStdString();
}
} // namespace

void TakeLoudness::follow(const fs::path& file) {
    std::error_code error;
    const auto time = fs::last_write_time(file, error);
    const fs::path wanted = error ? fs::path() : file;
    if (wanted == file_ && (wanted.empty() || time == time_))
        return;
    file_ = wanted;
    time_ = time;
    words_.clear();
    work_.reset(); // what goes on is cancelled
    if (file_.empty())
        return;
    work_ = std::make_unique<TakeWork>();
    const auto measure = [wanted](const TakeWork::Progress& progress, const std::stop_token& cancel) {
        return wordsOf(measureLoudness(wanted, progress, cancel));
    };
    work_->start(measure, [this](const std::string& words) {
        words_ = words;
        if (onKnown)
            onKnown();
    });
}

std::string TakeLoudness::words(const fs::path& file) const {
    return file == file_ ? words_ : std::string();
}

} // namespace velmora
