// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/SoundReader.h"

#include "base/Text.h"
#include "studio/Mp3Reader.h"
#include "studio/WavReader.h"

namespace velmora {

namespace {
OpenedSound opened(std::unique_ptr<ByteSource> bytes) {
    ByteWindow beginning(*bytes);
    if (isWav(beginning)) {
        WavHeader header = readWavHeader(*bytes);
        if (!header.problem.empty())
            return {nullptr, header.problem};
        return {std::make_unique<WavReader>(std::move(bytes), std::move(header)), {}};
    }
    auto reader = std::make_unique<Mp3Reader>(std::move(bytes));
    if (!reader->problem().empty())
        return {nullptr, reader->problem()};
    return {std::move(reader), {}};
}
} // namespace

OpenedSound openSound(const std::filesystem::path& file) {
    OpenedBytes bytes = openBytes(file);
    OpenedSound sound{nullptr, bytes.error};
    if (bytes.bytes)
        sound = opened(std::move(bytes.bytes));
    if (!sound.reader)
        sound.error = "Reading \"" + file.string() + "\" failed: " + sound.error + ".";
    return sound;
}

bool isSoundName(const std::filesystem::path& file) {
    const std::string extension = toLower(file.extension().string());
    return extension == ".wav" || extension == ".mp3";
}

} // namespace velmora
