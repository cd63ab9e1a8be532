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

std::span<const unsigned char> bytesOf(const std::string& text) {
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
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
    CoverPicture cover = options_.front.empty() ? readCover(options_.cover) : CoverPicture{};
    if (!cover.error.empty())
        return cover.error;
    if (std::string error = file_.open(); !error.empty())
        return error;
    writer_.OpenFile(file_.descriptor(), path_);
    const std::string tag = !options_.front.empty()
                                ? std::move(options_.front)
                                : id3Bytes({options_.title, options_.artist, std::move(cover.bytes)});
    tagSize_ = tag.size();
    if (!keep(bytesOf(tag)))
        return file_.failure(writer_.lastResult());
    EncoderRecord record = recordOf(options_);
    record.hasInfoFrame = file_.canBeRewound();
    stream_.emplace(record, [this](std::span<const unsigned char> bytes) { return keep(bytes); });
    return told(stream_->open());
}

std::string Mp3File::write(std::span<const float> interleaved) {
    return told(stream_->write(interleaved));
}

std::string Mp3File::finish() {
    if (std::string error = told(stream_->finish()); !error.empty())
        return error;
    if (std::string error = file_.overwrite(tagSize_, std::as_bytes(std::span(stream_->info())));
        !error.empty())
        return error;
    if (!keep(bytesOf(options_.behind)))
        return file_.failure(writer_.lastResult());
    writer_.CloseFile();
    return file_.commit();
}

std::string Mp3File::told(int code) {
    if (stream_->isRefused())
        return file_.failure(writer_.lastResult());
    return code == kBeSuccessful ? std::string() : file_.failure("Lame: " + std::string(beErrorText(code)));
}

bool Mp3File::keep(std::span<const unsigned char> bytes) {
    if (writer_.WriteBytes(bytes.data(), bytes.size()) != clsFileIo::kDone)
        return false;
    unflushed_ += bytes.size();
    if (unflushed_ >= kFlushBytes) {
        file_.beginFlushing();
        unflushed_ = 0;
    }
    return true;
}

} // namespace velmora
