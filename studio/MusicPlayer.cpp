// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MusicPlayer.h"

#include "score/MidiFileReader.h"
#include "sound/AudioDriver.h"
#include "studio/MixPlayer.h"
#include "studio/OfflineRender.h"
#include "studio/PerformedFrames.h"
#include "studio/SoundRow.h"

#include <utility>

namespace velmora {

OpenedMusic MusicPlayer::open(const std::filesystem::path& file, Mix& mix,
                              const std::filesystem::path& soundFont) {
    if (!isMidiName(file))
        return openRow({file}, mix);
    MidiMusic music = readMidiFile(file);
    if (!music.error.empty())
        return {nullptr, std::move(music.error)};
    music.messages.push_back({music.seconds, 0}); // no message, but the end of the file
    return perform(std::move(music.messages), mix, soundFont);
}

OpenedMusic MusicPlayer::openRow(const std::vector<std::filesystem::path>& files, Mix& mix) {
    auto row = std::make_unique<SoundRow>();
    if (std::string error = row->open(files); !error.empty())
        return {nullptr, std::move(error)};
    return {std::make_unique<MixPlayer>(std::move(row), mix), {}};
}

OpenedMusic MusicPlayer::perform(std::vector<TimedMessage> messages, Mix& mix,
                                 const std::filesystem::path& soundFont) {
    SynthOptions options{.soundFont = soundFont, .sampleRate = kAudioRate};
    if (!mix.isLive())
        options.cores = coresHere(); // beside a live mix, others want to get on, too
    SynthEngine::Created created = SynthEngine::create(options);
    if (!created.engine)
        return {nullptr, std::move(created.error)};
    auto frames = std::make_unique<PerformedFrames>(std::move(messages), std::move(created.engine), options);
    return {std::make_unique<MixPlayer>(std::move(frames), mix), {}};
}

} // namespace velmora
