// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MediaDevices.h"

#include "base/Text.h"
#include "sound/AudioDriver.h"
#include "studio/MediaCommand.h"

#include <algorithm>
#include <array>
#include <limits>
#include <system_error>
#include <utility>
#include <vector>

namespace velmora {

/// A player or a recorder.
struct MediaDevices::Device {
    std::unique_ptr<MusicPlayer> player;
    std::unique_ptr<Capture> recorder;
    std::filesystem::path file; ///< that is played
    std::int64_t end = 0;       ///< of what was played last, in frames; may lie beyond the file's
    bool inMilliseconds = false;

    [[nodiscard]] int rate() const { return player ? player->rate() : recorder->format().rate; }
    [[nodiscard]] std::int64_t length() const { return player ? player->length() : recorder->frames(); }
    [[nodiscard]] std::int64_t position() const { return player ? player->position() : recorder->frames(); }
    [[nodiscard]] MediaMode mode() const {
        if (player)
            return player->mode();
        return recorder->isRecording() ? MediaMode::Recording : MediaMode::Stopped;
    }
    [[nodiscard]] std::string problem() const { return player ? player->problem() : recorder->problem(); }
};

namespace {

constexpr std::int64_t kHighestAnswer = std::numeric_limits<std::int32_t>::max();
constexpr std::array<std::string_view, 4> kModes{"stopped", "playing", "paused", "recording"};
constexpr double kFrameSeconds = 1.0 / kAudioRate;

/// How long to wait before the next look at a player.
struct LookTimes {
    double least;
    double most;
};
constexpr LookTimes kLiveLooks{0.005, 0.02};
/// Where time is told to pass, it passes to the very end, and no further.
constexpr LookTimes kVirtualLooks{kFrameSeconds, std::numeric_limits<double>::infinity()};
constexpr double kOverdueSeconds = 64 * kFrameSeconds; ///< where it should have ended, and rings out

MediaAnswer failure(std::string error) {
    return {std::move(error), {}};
}

MediaAnswer number(std::int64_t value) {
    return {{}, std::to_string(std::clamp<std::int64_t>(value, 0, kHighestAnswer))};
}

std::int64_t millisecondsOf(std::int64_t frames, int rate) {
    const std::int64_t whole = frames / rate; // so that nothing overflows on the way
    return whole * 1000 + ((frames % rate) * 1000 + rate / 2) / rate;
}

std::int64_t framesOf(std::int64_t milliseconds, int rate) {
    const std::int64_t whole = milliseconds / 1000;
    if (whole > std::numeric_limits<std::int64_t>::max() / rate - 1)
        return std::numeric_limits<std::int64_t>::max();
    return whole * rate + ((milliseconds % 1000) * rate + 500) / 1000;
}

/// Nothing where the numbers are none that a recorder takes, or contradict each other.
std::optional<WaveFormat> formatOf(const WaveNumbers& numbers) {
    constexpr std::int64_t kLowestRate = 8000;
    constexpr std::int64_t kHighestRate = 192000;
    if (numbers.rate < kLowestRate || numbers.rate > kHighestRate ||
        (numbers.channels != 1 && numbers.channels != 2) || (numbers.bits != 8 && numbers.bits != 16))
        return std::nullopt;
    const WaveFormat format{.rate = static_cast<int>(numbers.rate),
                            .bits = static_cast<int>(numbers.bits),
                            .channels = static_cast<int>(numbers.channels)};
    if (numbers.alignment != format.alignment() || numbers.bytesPerSecond != format.bytesPerSecond())
        return std::nullopt;
    return format;
}

/// What an act is done to.
enum class DeviceKind : std::uint8_t { Any, Player, Recorder };

constexpr DeviceKind kindFor(MediaAct act) {
    switch (act) {
    case MediaAct::Play:
    case MediaAct::Pause:
    case MediaAct::Resume:
    case MediaAct::WaitForPlayer:
        return DeviceKind::Player;
    case MediaAct::SetFormat:
    case MediaAct::Record:
    case MediaAct::Save:
    case MediaAct::Delete:
        return DeviceKind::Recorder;
    default:
        return DeviceKind::Any;
    }
}

MediaAnswer play(MusicPlayer& player, std::int64_t& end, bool inMilliseconds, const MediaCommand& command) {
    const std::int64_t length = player.length();
    const auto frames = [&player, inMilliseconds, length](std::int64_t value) {
        if (!inMilliseconds)
            return value;
        // The length in milliseconds means all of it, also the part of one that is no whole one.
        return value == millisecondsOf(length, player.rate()) ? length : framesOf(value, player.rate());
    };
    const std::int64_t from = command.from ? frames(*command.from) : player.position();
    // The end may move: what rings out is known late.
    std::int64_t to = std::numeric_limits<std::int64_t>::max();
    if (const auto wanted = command.to ? frames(*command.to) : length; wanted < length)
        to = wanted;
    if (from > length)
        return failure(mediaSentence(command.alias, "ends before that."));
    if (from < 0 || std::min(to, length) <= from)
        return failure(mediaSentence(command.alias, "has nothing to play there."));
    if (!player.play(from, to)) {
        const std::string problem = player.problem();
        return failure(problem.empty() ? mediaSentence(command.alias, "can't be played.")
                                       : mediaSentenceHolding(problem, command.alias));
    }
    end = to;
    return {};
}

MediaAnswer setFormat(Capture& recorder, const MediaCommand& command) {
    const auto format = formatOf(command.format);
    if (!format)
        return failure(mediaSentence(command.alias, "can't record so: these numbers don't go together."));
    if (*format == recorder.format() && !recorder.isRecording())
        return {}; // also where something is captured already
    if (!recorder.setFormat(*format))
        return failure(
            mediaSentence(command.alias, "keeps its format while it records or holds a recording."));
    return {};
}

MediaAnswer save(Capture& recorder, const MediaCommand& command) {
    if (recorder.isRecording())
        return failure(mediaSentence(command.alias, "still records; stop it before it is saved."));
    const std::string problem = recorder.save(command.path);
    return problem.empty() ? MediaAnswer() : failure(mediaSentenceHolding(problem, command.path));
}

MediaAnswer record(Capture& recorder, const MediaCommand& command) {
    if (recorder.isRecording())
        return failure(mediaSentence(command.alias, "records already."));
    const std::string problem = recorder.record();
    return problem.empty() ? MediaAnswer() : failure(mediaSentenceHolding(problem, command.alias));
}

/// Forgets what is captured; what goes on recording goes on.
MediaAnswer forget(Capture& recorder, const MediaCommand& command) {
    const bool goesOn = recorder.isRecording();
    if (goesOn)
        recorder.stop();
    recorder.forget();
    return goesOn ? record(recorder, command) : MediaAnswer();
}

} // namespace

MediaDevices::MediaDevices(Mix& mix, MessageLoop& loop, std::function<std::filesystem::path()> soundFont)
    : mix_(mix)
    , loop_(loop)
    , soundFont_(std::move(soundFont)) {}

MediaDevices::~MediaDevices() = default;

MediaAnswer MediaDevices::send(std::string_view command) {
    const MediaReading read = readMediaCommand(command);
    MediaAnswer answered = read.command ? answer(*read.command) : failure(read.error);
    if (onCommand)
        onCommand(command, answered);
    return answered;
}

void MediaDevices::keepNextTakeAt(std::filesystem::path place) {
    nextTake_ = std::move(place);
}

MediaDevices::Device* MediaDevices::find(std::string_view alias) const {
    const auto found = devices_.find(toLower(std::string(alias)));
    return found == devices_.end() ? nullptr : found->second.get();
}

Capture* MediaDevices::recorder(std::string_view alias) {
    const Device* const device = find(alias);
    return device ? device->recorder.get() : nullptr;
}

MusicPlayer* MediaDevices::player(std::string_view alias) {
    const Device* const device = find(alias);
    return device ? device->player.get() : nullptr;
}

MediaAnswer MediaDevices::answer(const MediaCommand& command) {
    switch (command.act) {
    case MediaAct::OpenPlayer:
        return openPlayer(command);
    case MediaAct::OpenRecorder:
        return openRecorder(command);
    case MediaAct::CloseAll:
        devices_.clear();
        return {};
    case MediaAct::WaitSeconds:
        return wait(command.seconds);
    default:
        break;
    }
    Device* const device = find(command.alias);
    if (!device)
        return failure(mediaSentence(command.alias, "isn't open."));
    const DeviceKind kind = kindFor(command.act);
    if (kind == DeviceKind::Player && !device->player)
        return failure(mediaSentence(command.alias, "is no player but a recorder."));
    if (kind == DeviceKind::Recorder && !device->recorder)
        return failure(mediaSentence(command.alias, "is no recorder but a player."));
    const auto inUnit = [device](std::int64_t frames) {
        return number(device->inMilliseconds ? millisecondsOf(frames, device->rate()) : frames);
    };
    switch (command.act) {
    case MediaAct::Play:
        return play(*device->player, device->end, device->inMilliseconds, command);
    case MediaAct::Pause:
        return device->player->pause() ? MediaAnswer()
                                       : failure(mediaSentence(command.alias, "has nothing to pause."));
    case MediaAct::Resume:
        return device->player->resume() ? MediaAnswer()
                                        : failure(mediaSentence(command.alias, "has nothing to resume."));
    case MediaAct::Stop:
        return stop(*device, command);
    case MediaAct::Close:
        devices_.erase(toLower(command.alias));
        return {};
    case MediaAct::CountFrames:
        device->inMilliseconds = false;
        return {};
    case MediaAct::CountMilliseconds:
        device->inMilliseconds = true;
        return {};
    case MediaAct::SetFormat:
        return setFormat(*device->recorder, command);
    case MediaAct::AskLength:
        return inUnit(device->length());
    case MediaAct::AskPosition:
        return inUnit(device->position());
    case MediaAct::AskMode:
        return {{}, std::string(kModes[static_cast<std::size_t>(device->mode())])};
    case MediaAct::Record:
        return record(*device->recorder, command);
    case MediaAct::AskWhetherItSaves:
        return {{}, device->recorder ? "true" : "false"};
    case MediaAct::Save:
        return save(*device->recorder, command);
    case MediaAct::Delete:
        return forget(*device->recorder, command);
    case MediaAct::WaitForPlayer:
        return waitFor(command);
    default: // answered above
        return {};
    }
}

MediaAnswer MediaDevices::stop(const Device& device, const MediaCommand& command) {
    if (device.player ? device.player->stop() : device.recorder->stop())
        return {};
    // It may have ended by itself.
    const std::string problem = device.problem();
    return failure(problem.empty() ? mediaSentence(command.alias, "has nothing to stop.")
                                   : mediaSentenceHolding(problem, command.alias));
}

MediaAnswer MediaDevices::openPlayer(const MediaCommand& command) {
    if (find(command.alias))
        return failure(mediaSentence(command.alias, "is in use."));
    if (command.path.empty())
        return failure(mediaSentence(command.alias, "needs a file to open."));
    std::error_code ignored;
    // A name may have quotes and blanks within, so a file of that name goes before a row of several.
    const bool isRow = !command.row.empty() && !std::filesystem::exists(command.path, ignored);
    OpenedMusic opened =
        isRow ? MusicPlayer::openRow({command.row.begin(), command.row.end()}, mix_)
              : MusicPlayer::open(command.path, mix_, soundFont_ ? soundFont_() : std::filesystem::path());
    if (!opened.player)
        return failure(mediaSentenceHolding(opened.error, isRow ? command.row.front() : command.path));
    auto device = std::make_unique<Device>();
    device->player = std::move(opened.player);
    device->file = command.path;
    devices_[toLower(command.alias)] = std::move(device);
    return {};
}

MediaAnswer MediaDevices::openRecorder(const MediaCommand& command) {
    const std::filesystem::path place = std::exchange(nextTake_, {});
    if (find(command.alias))
        return failure(mediaSentence(command.alias, "is in use."));
    auto device = std::make_unique<Device>();
    device->recorder = std::make_unique<Capture>(mix_, place);
    devices_[toLower(command.alias)] = std::move(device);
    return {};
}

MediaAnswer MediaDevices::wait(double seconds) {
    const double until = loop_.now() + seconds;
    loop_.serveUntil(until);
    // Who ends the program ends every wait before its time.
    return loop_.now() < until - kFrameSeconds ? failure("The wait was ended.") : MediaAnswer();
}

MediaAnswer MediaDevices::waitFor(const MediaCommand& command) {
    while (true) {
        // Looked for anew each time: what is served meanwhile may close it.
        const Device* const device = find(command.alias);
        if (!device || !device->player)
            return {};
        if (device->mode() != MediaMode::Playing) {
            const std::string problem = device->problem();
            return problem.empty() ? MediaAnswer()
                                   : failure(mediaSentenceHolding(problem, device->file.string()));
        }
        const std::int64_t end = std::min(device->end, device->length());
        const double left = static_cast<double>(end - device->position()) / device->rate();
        const LookTimes looks = mix_.isLive() ? kLiveLooks : kVirtualLooks;
        const double step = left > 0 ? std::clamp(left, looks.least, looks.most) : kOverdueSeconds;
        if (MediaAnswer waited = wait(std::max(step, looks.least)); !waited.succeeded())
            return waited;
    }
}

} // namespace velmora
