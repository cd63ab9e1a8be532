// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Capture.h"

#include "sound/AudioDriver.h"
#include "studio/GrowingWav.h"
#include "studio/LevelMeter.h"
#include "studio/MonitorSource.h"
#include "studio/TakeFollower.h"
#include "studio/TakeRun.h"

#include <cmath>
#include <cstdio>
#include <mutex>
#include <utility>

namespace velmora {

namespace {
constexpr double kServersAnswer = 3; ///< seconds

struct MeterTap : AudioTap {
    explicit MeterTap(LevelMeter& shown) : meter(shown) {}
    void tapped(const AudioBlock& block) noexcept override {
        meter.hear({block.samples, static_cast<std::size_t>(kAudioChannels * block.frames)});
    }
    LevelMeter& meter;
};
} // namespace

struct Capture::Parts {
    Parts(Mix& whole, std::filesystem::path where) : mix(whole), place(std::move(where)) {
        mix.addTap(meterTap);
    }
    ~Parts() {
        stop();
        mix.removeTap(meterTap);
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    void listenToMonitor();
    [[nodiscard]] std::string prepareSource();
    [[nodiscard]] std::string prepareFile();
    [[nodiscard]] std::string begin();
    void stop();
    void attach(TakeRun* to);
    [[nodiscard]] std::string problemNow() const;
    [[nodiscard]] std::int64_t heard() const { return heardBefore + (run ? run->heard() : 0); }
    [[nodiscard]] std::int64_t soundEnd() const {
        const std::int64_t here = run ? run->soundEnd() : 0;
        return here > 0 ? heardBefore + here : soundEndBefore;
    }
    [[nodiscard]] std::int64_t lost() const { return lostBefore + (run ? run->lost() : 0); }

    Mix& mix;
    std::filesystem::path place;
    WaveFormat format;
    CaptureSource source = CaptureSource::Own;
    LevelMeter meter;
    MeterTap meterTap{meter};
    std::unique_ptr<SampleSink> sink; ///< until the first `record`
    std::unique_ptr<GrowingWav> file;
    std::unique_ptr<TakeFollower> follower;
    std::unique_ptr<TakeRun> run;  ///< from `record` to `stop`
    std::int64_t framesBefore = 0; ///< of the file, before the run
    std::int64_t heardBefore = 0;  ///< frames of the mix, as are the next two
    std::int64_t soundEndBefore = 0;
    std::int64_t lostBefore = 0;
    std::string problem; ///< of runs that are over
    std::mutex hearing;
    TakeRun* hears = nullptr;               ///< whom the monitor's sound goes to
    std::unique_ptr<MonitorSource> monitor; ///< last: it calls into the above
};

void Capture::Parts::listenToMonitor() {
    monitor = std::make_unique<MonitorSource>([this](std::span<const float> stereo) {
        meter.hear(stereo);
        const std::lock_guard lock(hearing);
        if (hears != nullptr)
            hears->hear(stereo);
    });
}

std::string Capture::Parts::prepareSource() {
    if (source == CaptureSource::Own)
        return {};
    if (!mix.isLive())
        return "What all programs play can't be recorded without a clock.";
    if (!monitor || !monitor->problem().empty())
        listenToMonitor();
    return monitor->waitUntilItListens(kServersAnswer);
}

std::string Capture::Parts::prepareFile() {
    if (file)
        return {};
    const std::string reason = TakeConverter(format).problem();
    if (!reason.empty())
        return "Recording at " + std::to_string(format.rate) + " Hz failed: " + reason + ".";
    auto made = std::make_unique<GrowingWav>(place, format);
    std::string failure = made->open();
    if (failure.empty())
        file = std::move(made);
    return failure;
}

std::string Capture::Parts::begin() {
    if (std::string failure = prepareSource(); !failure.empty())
        return failure;
    if (std::string failure = prepareFile(); !failure.empty())
        return failure;
    if (sink)
        follower = std::make_unique<TakeFollower>(std::move(sink), *file);
    problem.clear();
    meter.putOutLamps();
    framesBefore = file->frames();
    run =
        std::make_unique<TakeRun>(*file, mix.isLive() ? TakeRun::Pace::Live : TakeRun::Pace::AtOnce, [this] {
            if (follower)
                follower->grown();
        });
    if (source == CaptureSource::Everything) {
        attach(run.get());
    } else if (!mix.addTap(*run)) {
        run.reset();
        return "Too many listen to the sound already.";
    }
    return {};
}

void Capture::Parts::attach(TakeRun* to) {
    const std::lock_guard lock(hearing);
    hears = to;
}

void Capture::Parts::stop() {
    if (!run)
        return;
    if (source == CaptureSource::Everything)
        attach(nullptr);
    else
        mix.removeTap(*run);
    run->end();
    problem = problemNow();
    soundEndBefore = soundEnd();
    heardBefore = heard();
    lostBefore = lost();
    run.reset();
}

std::string Capture::Parts::problemNow() const {
    if (!run)
        return problem;
    if (std::string failure = run->problem(); !failure.empty())
        return failure;
    return source == CaptureSource::Everything ? monitor->problem() : std::string();
}

Capture::Capture(Mix& mix, std::filesystem::path place)
    : parts_(std::make_unique<Parts>(mix, std::move(place))) {}
Capture::~Capture() = default;

WaveFormat Capture::format() const {
    return parts_->format;
}

bool Capture::setFormat(WaveFormat format) {
    if (parts_->run || frames() > 0)
        return false;
    parts_->file.reset(); // one without a sample, of another format
    parts_->format = format;
    return true;
}

void Capture::setSource(CaptureSource source) {
    if (parts_->run || source == parts_->source)
        return;
    parts_->source = source;
    parts_->monitor.reset();
    if (source == CaptureSource::Own) {
        parts_->mix.addTap(parts_->meterTap);
    } else {
        parts_->mix.removeTap(parts_->meterTap);
        if (parts_->mix.isLive())
            parts_->listenToMonitor();
    }
}

void Capture::copyTo(std::unique_ptr<SampleSink> sink) {
    parts_->sink = std::move(sink);
}

std::string Capture::record() {
    if (isRecording())
        return "It records already.";
    parts_->stop(); // what had ended by itself
    return parts_->begin();
}

bool Capture::stop() {
    const bool recorded = isRecording();
    parts_->stop();
    return recorded;
}

bool Capture::isRecording() const {
    return parts_->run && parts_->problemNow().empty();
}

std::int64_t Capture::frames() const {
    if (parts_->run && !parts_->run->hasFailed())
        return parts_->framesBefore +
               std::llround(static_cast<double>(parts_->run->heard()) * parts_->format.rate / kAudioRate);
    return parts_->file ? parts_->file->frames() : 0;
}

std::string Capture::problem() const {
    return parts_->problemNow();
}

std::string Capture::warning() const {
    const std::int64_t lost = parts_->lost();
    if (lost == 0)
        return {};
    std::array<char, 32> seconds{};
    std::snprintf(seconds.data(), seconds.size(), "%.3f", static_cast<double>(lost) / kAudioRate);
    const std::string name = parts_->place.empty() ? "the recording" : "\"" + parts_->place.string() + "\"";
    return std::string(seconds.data()) + " seconds of sound are silent in " + name +
           ", since the disk was too slow.";
}

std::string Capture::save(const std::filesystem::path& file) {
    if (isRecording())
        return "Writing \"" + file.string() + "\" failed: it is being recorded.";
    parts_->stop();
    return parts_->file ? parts_->file->saveTo(file) : GrowingWav({}, parts_->format).saveTo(file);
}

std::unique_ptr<SampleSink> Capture::takeSink() {
    if (parts_->run || !parts_->follower)
        return nullptr;
    return std::exchange(parts_->follower, nullptr)->takeSink();
}

void Capture::forget() {
    if (isRecording())
        return;
    parts_->stop();
    parts_->follower.reset();
    parts_->sink.reset();
    if (parts_->file)
        parts_->place.clear();
    parts_->file.reset();
    parts_->heardBefore = parts_->soundEndBefore = parts_->lostBefore = 0;
    parts_->problem.clear();
    parts_->meter.putOutLamps();
}

Levels Capture::levels() const {
    return parts_->meter.levels();
}

double Capture::silentSeconds() const {
    return static_cast<double>(parts_->heard() - parts_->soundEnd()) / kAudioRate;
}

bool Capture::isSilent() const {
    return parts_->soundEnd() == 0;
}

} // namespace velmora
