// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3File.h"

#include "studio/Id3Tag.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr std::size_t kFlushBytes = std::size_t{1} << 20;

template<typename Table>
std::string listOf(const Table& table) {
    std::string text;
    for (const int value : table)
        text += (text.empty() ? "" : ", ") + std::to_string(value);
    return text;
}

std::string whyNot(const Mp3Options& options) {
    if (std::ranges::find(kMp3Bitrates, options.bitrate) == kMp3Bitrates.end())
        return "MP3 has no bitrate of " + std::to_string(options.bitrate) + " kbit/s; it has " +
               listOf(kMp3Bitrates) + ".";
    if (std::ranges::find(kMp3Rates, options.sampleRate) == kMp3Rates.end())
        return "MP3 has no rate of " + std::to_string(options.sampleRate) + " Hz; it has " +
               listOf(kMp3Rates) + ".";
    return {};
}

EncoderRecord recordOf(const Mp3Options& options) {
    EncoderRecord record;
    record.dwSampleRate = static_cast<std::uint32_t>(options.sampleRate);
    record.nMode = options.mode;
    record.dwBitrate = static_cast<std::uint32_t>(bitrateAt(options.sampleRate, options.bitrate));
    record.nPreset = options.preset;
    return record;
}
} // namespace

Mp3File::Mp3File(std::filesystem::path path, Mp3Options options)
    : path_(path)
    , file_(std::move(path))
    , options_(std::move(options)) {}
Mp3File::~Mp3File() = default;

std::string Mp3File::open() {
    if (std::string error = whyNot(options_); !error.empty())
        return error;
    if (!lameProblem().empty())
        return file_.failure(lameProblem());
    CoverPicture cover = readCover(options_.cover);
    if (!cover.error.empty())
        return cover.error;
    if (std::string error = file_.open(); !error.empty())
        return error;
    writer_.OpenFile(file_.descriptor(), path_);
    return start(id3Bytes({options_.title, options_.artist, std::move(cover.bytes)}));
}

std::string Mp3File::start(const std::string& tag) {
    EncoderRecord record = recordOf(options_);
    record.hasInfoFrame = file_.canBeRewound();
    std::uint32_t outputSize = 0;
    if (const int code = beInitStream(record, samples_, outputSize, stream_); code != kBeSuccessful)
        return file_.failure("Lame: " + std::string(beErrorText(code)));
    encoded_.resize(outputSize);
    waiting_.reserve(samples_);
    tagSize_ = tag.size();
    return writer_.WriteBytes(tag.data(), tag.size()) == clsFileIo::kDone
               ? ""
               : file_.failure(writer_.lastResult());
}

std::string Mp3File::write(std::span<const float> interleaved) {
    while (!interleaved.empty()) {
        if (waiting_.empty() && interleaved.size() >= samples_) {
            if (std::string error = encode(interleaved.first(samples_)); !error.empty())
                return error;
            interleaved = interleaved.subspan(samples_);
            continue;
        }
        const auto taken = interleaved.first(std::min(interleaved.size(), samples_ - waiting_.size()));
        waiting_.insert(waiting_.end(), taken.begin(), taken.end());
        interleaved = interleaved.subspan(taken.size());
        if (waiting_.size() < samples_)
            break;
        if (std::string error = encode(waiting_); !error.empty())
            return error;
        waiting_.clear();
    }
    return {};
}

std::string Mp3File::encode(std::span<const float> block) {
    std::uint32_t written = 0;
    const int code = beEncodeChunk(stream_, block, encoded_, written);
    return keep(code, written);
}

std::string Mp3File::keep(int code, std::uint32_t written) {
    if (code != kBeSuccessful)
        return file_.failure("Lame: " + std::string(beErrorText(code)));
    if (written > 0 && writer_.WriteBytes(encoded_.data(), written) != clsFileIo::kDone)
        return file_.failure(writer_.lastResult());
    unflushed_ += written;
    if (unflushed_ >= kFlushBytes) {
        file_.beginFlushing();
        unflushed_ = 0;
    }
    return {};
}

std::string Mp3File::finish() {
    if (std::string error = encode(waiting_); !error.empty())
        return error;
    std::uint32_t written = 0;
    const int code = beDeinitStream(stream_, encoded_, written);
    if (std::string error = keep(code, written); !error.empty())
        return error;
    const std::size_t size = infoFrame(stream_, encoded_);
    const auto info = std::as_bytes(std::span(encoded_).first(size));
    if (std::string error = file_.overwrite(tagSize_, info); !error.empty())
        return error;
    writer_.CloseFile();
    return file_.commit();
}

} // namespace velmora
