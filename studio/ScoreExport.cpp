// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/ScoreExport.h"

#include "composition/MidiExport.h"
#include "composition/Workspace.h"
#include "studio/WavFile.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <unistd.h>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr const char* kUnnamed = "Untitled";

std::unique_ptr<SampleSink> sinkOf(const SoundJob& job) {
    if (job.format == ExportFormat::Mp3)
        return std::make_unique<Mp3File>(job.file, job.mp3);
    return std::make_unique<WavFile>(job.file);
}

std::uintmax_t sizeOf(const fs::path& file) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    return error ? 0 : size;
}

/// As in "3:07".
std::string minutes(double seconds) {
    const long whole = std::lround(std::max(0.0, seconds));
    char text[32];
    std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    return text;
}

std::string readableSize(std::uintmax_t bytes) {
    constexpr double kStep = 1000;
    const double kilobytes = static_cast<double>(bytes) / kStep;
    char text[32];
    if (kilobytes < 1)
        std::snprintf(text, sizeof text, "%ju bytes", bytes);
    else if (kilobytes < kStep)
        std::snprintf(text, sizeof text, "%.0f kB", kilobytes);
    else
        std::snprintf(text, sizeof text, "%.1f MB", kilobytes / kStep);
    return text;
}

bool takesFiles(const fs::path& folder) {
    return !folder.empty() && access(folder.c_str(), W_OK | X_OK) == 0;
}
} // namespace

const ExportKind& exportKind(ExportFormat format) {
    return *std::ranges::find(kExportKinds, format, &ExportKind::format);
}

fs::path exportPlace(const fs::path& score, const fs::path& songs, ExportFormat format) {
    const fs::path folder = score.parent_path();
    fs::path name = score.stem();
    if (name.empty())
        name = kUnnamed;
    name += exportKind(format).extension;
    return (takesFiles(folder) ? folder : songs) / name;
}

ExportOutcome exportSound(const SoundJob& job, const std::function<void(double)>& progress,
                          const std::stop_token& cancel) {
    if (job.soundFont.empty())
        return {.end = ExportOutcome::End::Failed,
                .error = "Writing \"" + job.file.string() +
                         "\" failed: no SoundFont is installed. Install the package fluid-soundfont-gm."};
    const auto sink = sinkOf(job);
    const RenderResult made = renderOffline(
        job.messages, *sink,
        {.soundFont = job.soundFont, .cores = job.cores, .progress = progress, .cancel = cancel});
    switch (made.end) {
    case RenderResult::End::Done:
        break;
    case RenderResult::End::Cancelled:
        return {.end = ExportOutcome::End::Cancelled, .error = {}};
    case RenderResult::End::Failed:
        return {.end = ExportOutcome::End::Failed, .error = made.error};
    }
    return {.end = ExportOutcome::End::Done, .error = {}, .seconds = made.seconds, .size = sizeOf(job.file)};
}

ExportOutcome exportMidi(const Workspace& workspace, const fs::path& file) {
    std::int32_t numBytes = 0;
    std::string error = writeMidi(file, PerformedScore::of(workspace), numBytes);
    if (!error.empty())
        return {.end = ExportOutcome::End::Failed, .error = std::move(error)};
    return {.end = ExportOutcome::End::Done,
            .error = {},
            .seconds = perform(workspace).seconds,
            .size = sizeOf(file)};
}

std::string exportWords(const ExportOutcome& outcome, const fs::path& file) {
    switch (outcome.end) {
    case ExportOutcome::End::Done:
        return "\"" + file.filename().string() + "\" is written: " + minutes(outcome.seconds) + ", " +
               readableSize(outcome.size) + ", in " + file.parent_path().string();
    case ExportOutcome::End::Cancelled: {
        std::error_code ignored;
        return "Writing \"" + file.filename().string() + "\" was cancelled; " +
               (fs::exists(file, ignored) ? "the file of that name is as it was" : "no file was made");
    }
    case ExportOutcome::End::Failed:
        break;
    }
    return outcome.error + " Nothing is lost and nothing was replaced. Try another folder or another name.";
}

} // namespace velmora
