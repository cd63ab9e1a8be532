// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/BuiltInSynth.h"

#include "sound/ShortMessage.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <span>

namespace velmora {

namespace {
constexpr int kGrid = SynthEngine::kGridFrames;

bool beginsNote(std::uint32_t word) {
    return shortmessage::status(word) == 0x90 && shortmessage::data2(word) != 0;
}

SynthOptions forLiveSound(SynthOptions options) {
    options.cores = 1; // more would make the audio thread wait for others
    options.presets = PresetLoading::Ahead;
    return options;
}

constexpr int roundUpToGrid(int frames) {
    return (frames + kGrid - 1) / kGrid * kGrid;
}
} // namespace

BuiltInSynth::BuiltInSynth(SynthOptions options)
    : sampleRate_(options.sampleRate)
    , loader_([this, live = forLiveSound(std::move(options))] { load(live); }) {}

BuiltInSynth::~BuiltInSynth() {
    loader_.join();
}

void BuiltInSynth::load(const SynthOptions& options) {
    SynthEngine::Created created = SynthEngine::create(options);
    const std::lock_guard lock(mutex_);
    engine_ = std::move(created.engine);
    error_ = std::move(created.error);
    if (engine_) {
        for (const Preset& preset : awaited_)
            engine_->prepare(preset.bank, preset.program);
    }
    audible_.store(engine_.get(), std::memory_order_release);
    failed_.store(!engine_, std::memory_order_release);
    loaded_.notify_all();
}

bool BuiltInSynth::waitUntilReady(double seconds) const {
    std::unique_lock lock(mutex_);
    loaded_.wait_for(lock, std::chrono::duration<double>(seconds),
                     [this] { return engine_ || !error_.empty(); });
    return engine_ != nullptr;
}

std::string BuiltInSynth::error() const {
    const std::lock_guard lock(mutex_);
    return error_;
}

void BuiltInSynth::send(std::uint32_t word, double moment) {
    if (!shortmessage::isValid(word))
        return;
    choosePreset(word);
    push({moment, word}, beginsNote(word) ? kPlacesForEnds : 0);
}

void BuiltInSynth::reset(double moment) {
    push({.moment = moment, .reset = true}, 0);
}

void BuiltInSynth::push(const Event& event, std::size_t spare) {
    if (!events_.push(event, spare) && spare == 0)
        endsLost_.store(true, std::memory_order_release);
    if (onMessage)
        onMessage();
}

/// Loads what a program change will ask for before the audio thread meets it. The rule for banks is
/// FluidSynth's own: controller 0 chooses the bank, except on the drum channel, and controller 32 has no part
/// in it.
void BuiltInSynth::choosePreset(std::uint32_t word) {
    const int channel = shortmessage::channel(word);
    int& bank = bank_[channel];
    if (shortmessage::status(word) == 0xB0 && shortmessage::data1(word) == 0)
        bank = shortmessage::data2(word);
    if (shortmessage::status(word) != 0xC0)
        return;
    const Preset preset{channel == shortmessage::kDrumChannel ? SynthEngine::kDrumBank : bank,
                        shortmessage::data1(word)};
    const std::lock_guard lock(mutex_);
    if (engine_)
        engine_->prepare(preset.bank, preset.program);
    else if (error_.empty())
        awaited_.push_back(preset);
}

void BuiltInSynth::render(const AudioBlock& block) noexcept {
    SynthEngine* engine = audible_.load(std::memory_order_acquire);
    if (!engine) {
        if (failed_.load(std::memory_order_acquire))
            discardEvents();
        return;
    }
    if (!started_) {
        started_ = true;
        staleBefore_ = block.moment - kStaleSeconds;
    }
    for (int done = 0; done < block.frames;) {
        if (spanAt_ == spanEnd_)
            refill(*engine, block, done);
        const int frames = std::min(spanEnd_ - spanAt_, block.frames - done);
        const float* from = span_.data() + std::ptrdiff_t{2} * spanAt_;
        float* to = block.samples + std::ptrdiff_t{2} * done;
        std::transform(from, from + std::ptrdiff_t{2} * frames, to, to, std::plus<>());
        spanAt_ += frames;
        done += frames;
    }
    voices_.store(engine->voicesSounding(), std::memory_order_relaxed);
}

void BuiltInSynth::discardEvents() noexcept {
    while (events_.front())
        events_.pop();
}

/// Renders the next grid blocks, of which the first begins at @p frame of the block: all that it needs up to
/// the next event, as far as the span has room.
void BuiltInSynth::refill(SynthEngine& engine, const AudioBlock& block, int frame) noexcept {
    int frames = std::min(roundUpToGrid(block.frames - frame), kSpanFrames);
    if (!applyDue(engine, block, frame)) {
        frames = kGrid;
    } else if (const Event* next = events_.front()) {
        const double ahead = framesAhead(*next, block) - frame;
        if (ahead < frames)
            frames = static_cast<int>(ahead) / kGrid * kGrid;
    }
    engine.render(span_.data(), frames);
    spanAt_ = 0;
    spanEnd_ = frames;
    listenForSilence(engine);
}

void BuiltInSynth::listenForSilence(SynthEngine& engine) noexcept {
    const std::span<const float> sound(span_.data(), std::size_t{2} * static_cast<std::size_t>(spanEnd_));
    const auto audible = [](float sample) { return !(std::fabs(sample) < kInaudible); };
    if (engine.voicesSounding() > 0 || std::ranges::any_of(sound, audible))
        quietFrames_ = 0;
    else if (quietFrames_ < kRestSeconds * sampleRate_)
        quietFrames_ += spanEnd_;
}

/// What is left of the span is silence, and would only hold up the next note.
bool BuiltInSynth::rests() noexcept {
    if (events_.front() || endsLost_.load(std::memory_order_relaxed))
        return false;
    if (failed_.load(std::memory_order_acquire))
        return true;
    if (quietFrames_ < kRestSeconds * sampleRate_)
        return false;
    spanAt_ = spanEnd_ = 0;
    return true;
}

/// Frames from the block's first to the one that the event belongs to.
double BuiltInSynth::framesAhead(const Event& event, const AudioBlock& block) const noexcept {
    return std::floor((event.moment - block.moment) * sampleRate_ + 0.5);
}

/// Applies what falls into the grid block that begins at @p frame, and what is late. False if a preset is
/// being loaded: then the rest of the queue waits for the next grid block, in its order.
bool BuiltInSynth::applyDue(SynthEngine& engine, const AudioBlock& block, int frame) noexcept {
    while (const Event* event = events_.front()) {
        if (framesAhead(*event, block) >= frame + kGrid)
            return true;
        if (!applyEvent(engine, *event))
            return false;
        events_.pop();
        quietFrames_ = 0;
    }
    if (endsLost_.load(std::memory_order_relaxed) && endsLost_.exchange(false, std::memory_order_acquire))
        engine.reset(); // the lost message may have been the end of a note
    return true;
}

bool BuiltInSynth::applyEvent(SynthEngine& engine, const Event& event) const noexcept {
    if (event.reset)
        engine.reset();
    else if (!beginsNote(event.word) || !(event.moment < staleBefore_))
        return engine.apply(event.word);
    return true;
}

} // namespace velmora
