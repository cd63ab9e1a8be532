// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavTwin.h"

#include "studio/WavHeaderBytes.h"
#include "studio/WavSamples.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr std::uint64_t kAllOnes = 0xFFFFFFFF;
constexpr std::size_t kExtended = 40; ///< bytes of a format that tells more than the plain one
constexpr std::uint64_t kLargestTelling = 16U << 20U; ///< bytes: a cover, and no more by chance
constexpr std::size_t kPiece = std::size_t{64} * 1024;

/// Writes one field behind the other, in one order of bytes or the other.
class Fields {
public:
    explicit Fields(bool isBigEndian) : isBigEndian_(isBigEndian) {}
    Fields& name(std::string_view letters) {
        bytes_.insert(bytes_.end(), letters.begin(), letters.end());
        return *this;
    }
    Fields& number(std::uint64_t value, int bytes) {
        bytes_.resize(bytes_.size() + static_cast<std::size_t>(bytes));
        put(bytes_.size() - static_cast<std::size_t>(bytes), value, bytes);
        return *this;
    }
    Fields& raw(std::span<const std::uint8_t> bytes) {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }
    void put(std::size_t at, std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i, value >>= 8)
            bytes_[at + static_cast<std::size_t>(isBigEndian_ ? bytes - 1 - i : i)] =
                static_cast<std::uint8_t>(value & 0xFFU);
    }
    [[nodiscard]] std::vector<std::uint8_t>& bytes() { return bytes_; }

private:
    bool isBigEndian_;
    std::vector<std::uint8_t> bytes_;
};

bool isLogarithmic(const WavHeader& header) {
    return header.encoding == WavEncoding::ALaw || header.encoding == WavEncoding::MuLaw;
}

std::uint64_t padded(std::uint64_t length) {
    return length + padOf(length);
}
} // namespace

WavTwin::WavTwin(ByteSource& model, const WavHeader& header, fs::path file, std::uint64_t frames,
                 TwinSamples samples, std::uint64_t longest)
    : model_(model)
    , model_header_(header)
    , format_(header)
    , file_(std::move(file))
    , frames_(frames)
    , longest_(longest) {
    if (samples == TwinSamples::Written && isLogarithmic(header)) {
        format_.encoding = WavEncoding::Plain;
        format_.bits = 16;
    }
    std::erase_if(format_.tellings, [](const WavStretch& one) { return one.length > kLargestTelling; });
}

/// What stands in the chunk: that of the model, with the numbers that follow from others as they should be.
std::vector<std::uint8_t> WavTwin::formatChunk() {
    constexpr std::uint64_t kMost = 4096; // many times what any format tells
    constexpr std::size_t kPlain = 16;
    Fields fields(format_.isBigEndian);
    std::vector<std::uint8_t>& chunk = fields.bytes();
    chunk.resize(static_cast<std::size_t>(std::min(format_.format.length, kMost)));
    chunk.resize(std::max(kPlain, model_.read(format_.format.at, chunk)));
    if (format_.encoding != model_header_.encoding) {
        const bool isExtended = chunk.size() >= kExtended && chunk[0] + chunk[1] == 0xFF + 0xFE;
        if (!isExtended)
            chunk.resize(kPlain);
        fields.put(isExtended ? 24 : 0, 1, isExtended ? 4 : 2);
        if (isExtended)
            fields.put(18, static_cast<std::uint64_t>(format_.bits), 2);
        fields.put(14, static_cast<std::uint64_t>(format_.bits), 2);
    }
    fields.put(8, static_cast<std::uint64_t>(format_.rate) * format_.frameBytes(), 4);
    fields.put(12, format_.frameBytes(), 2);
    return std::move(chunk);
}

std::string WavTwin::open() {
    const std::vector<std::uint8_t> chunk = formatChunk();
    const std::size_t codeAt = format_.isBigEndian ? 1 : 0;
    const bool isPlain = chunk[codeAt] == 1 && chunk[1 - codeAt] == 0;
    constexpr std::uint64_t kHead = 8;
    std::uint64_t length =
        4 + kHead + padded(chunk.size()) + (isPlain ? 0 : kHead + 4) + kHead + padded(soundBytes());
    for (const WavStretch& one : format_.tellings)
        length += kHead + padded(one.length);
    const bool isLong = length > longest_;
    if (isLong && format_.isBigEndian)
        return file_.failure("a WAV file whose numbers begin with the highest byte can't tell that length");
    constexpr std::uint64_t kLengthBytes = 28; // three lengths, and that no other chunk is long
    Fields fields(format_.isBigEndian);
    fields.name(isLong                ? "RF64"
                : format_.isBigEndian ? "RIFX"
                                      : "RIFF")
        .number(isLong ? kAllOnes : length, 4)
        .name("WAVE");
    if (isLong) {
        fields.name("ds64")
            .number(kLengthBytes, 4)
            .number(length + kHead + kLengthBytes, 8)
            .number(soundBytes(), 8)
            .number(frames_, 8)
            .number(0, 4);
    }
    fields.name("fmt ").number(chunk.size(), 4).raw(chunk).number(0, static_cast<int>(padOf(chunk.size())));
    if (!isPlain)
        fields.name("fact").number(4, 4).number(std::min(frames_, kAllOnes), 4);
    fields.name("data").number(isLong ? kAllOnes : soundBytes(), 4);
    if (std::string error = file_.open(); !error.empty())
        return error;
    return file_.write(std::as_bytes(std::span(fields.bytes())));
}

std::string WavTwin::write(std::span<const float> interleaved) {
    const auto bytes = static_cast<std::size_t>(format_.sampleBytes());
    block_.resize(interleaved.size() * bytes);
    std::uint8_t* at = block_.data();
    for (const float value : interleaved) {
        putSample(format_, value, at);
        at += bytes;
    }
    return writeBytes(block_);
}

std::string WavTwin::writeBytes(std::span<const std::uint8_t> bytes) {
    written_ += bytes.size();
    return file_.write(std::as_bytes(bytes));
}

std::string WavTwin::finish() {
    if (written_ != soundBytes())
        return file_.failure("it has become another length than it was to have");
    constexpr std::byte kPad{};
    if (std::string error = padOf(written_) != 0 ? file_.write({&kPad, 1}) : ""; !error.empty())
        return error;
    if (std::string error = copyTellings(); !error.empty())
        return error;
    return file_.commit();
}

std::string WavTwin::copyTellings() {
    for (const WavStretch& one : format_.tellings) {
        Fields head(format_.isBigEndian);
        head.name(one.name).number(one.length, 4);
        if (std::string error = file_.write(std::as_bytes(std::span(head.bytes()))); !error.empty())
            return error;
        const std::uint64_t whole = padded(one.length);
        for (std::uint64_t done = 0; done < whole; done += block_.size()) {
            block_.assign(static_cast<std::size_t>(std::min<std::uint64_t>(kPiece, whole - done)), 0);
            const auto there = std::min<std::uint64_t>(block_.size(), one.length - done);
            static_cast<void>(
                model_.read(one.at + done, std::span(block_).first(static_cast<std::size_t>(there))));
            if (std::string error = file_.write(std::as_bytes(std::span(block_))); !error.empty())
                return error;
        }
    }
    return {};
}

} // namespace velmora
