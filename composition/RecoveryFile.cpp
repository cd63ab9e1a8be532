// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/RecoveryFile.h"

#include "base/Files.h"
#include "composition/OpenedScore.h"
#include "composition/Workspace.h"
#include "score/SngFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <exception>
#include <functional>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kLastLine = "Recovery=";
constexpr std::size_t kSumDigits = 16;
constexpr std::string_view kNameStart = "score-";
constexpr std::string_view kNameEnd = ".sng";
constexpr std::string_view kAside = ".damaged";
constexpr std::string_view kHalfWritten = ".velmora-"; ///< what a kill leaves beside a file

/// FNV-1a of 64 bits over both texts.
std::uint64_t checksum(std::string_view score, std::string_view currentFile) {
    std::uint64_t sum = 0xcbf29ce484222325U;
    for (const std::string_view text : {score, currentFile})
        for (const char byte : text)
            sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
    return sum;
}

int numberOf(const fs::path& file) {
    const std::string name = file.filename().string();
    int number = 0;
    if (name.starts_with(kNameStart))
        std::from_chars(name.data() + kNameStart.size(), name.data() + name.size(), number);
    return number;
}

bool isKept(const fs::path& file) {
    const std::string name = file.filename().string();
    return name.starts_with(kNameStart) && name.ends_with(kNameEnd);
}

std::vector<fs::path> filesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator at(folder, error); !error && at != fs::directory_iterator();
         at.increment(error))
        files.push_back(at->path());
    return files;
}

/// The folder as well, if it was the last file.
void removeFile(const fs::path& file) {
    std::error_code ignored;
    fs::remove(file, ignored);
    fs::remove(file.parent_path(), ignored);
}

/// Whether opening the score's own file gives the same: then a crash has cost nothing.
bool isSaved(const LeftScore& left) {
    if (left.currentFile.empty())
        return false;
    const TextFile file = readTextFile(left.currentFile);
    if (file.problem != TextProblem::None)
        return false;
    if (file.text == left.score)
        return true;
    Score score(static_cast<int>(std::min<std::size_t>(longestRow(file.text), kMostNotes)));
    SetupState setup;
    parseSng(file.text, openingReader(file.text), score, setup);
    return serializePoliFile(score, setup) == left.score;
}

bool write(const fs::path& file, const ScoreImage& image) {
    std::error_code ignored;
    fs::create_directories(file.parent_path(), ignored);
    return replaceFile(file, recoveryText(image.text(), image.currentFile)).empty();
}
} // namespace

std::string recoveryText(std::string_view score, std::string_view currentFile) {
    std::array<char, kSumDigits> digits{};
    const char* end = std::to_chars(digits.begin(), digits.end(), checksum(score, currentFile), 16).ptr;
    const auto count = static_cast<std::size_t>(end - digits.data());
    std::string text;
    text.reserve(score.size() + kLastLine.size() + kSumDigits + 1 + currentFile.size());
    text.append(score).append(kLastLine).append(kSumDigits - count, '0').append(digits.data(), count);
    return text.append(" ").append(currentFile);
}

std::optional<LeftScore> parseRecovery(std::string_view text) {
    const std::size_t at = text.find(kLastLine); // the first: the name behind it may be any
    if (at == text.npos || text.size() - at < kLastLine.size() + kSumDigits + 1)
        return std::nullopt;
    const std::string_view digits = text.substr(at + kLastLine.size(), kSumDigits);
    const std::string_view currentFile = text.substr(at + kLastLine.size() + kSumDigits + 1);
    std::uint64_t sum = 0;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), sum, 16).ptr;
    if (end != digits.data() + digits.size() || sum != checksum(text.substr(0, at), currentFile))
        return std::nullopt;
    return LeftScore{{}, std::string(text.substr(0, at)), std::string(currentFile)};
}

void restore(const LeftScore& left, Workspace& workspace) {
    const Edit edit(workspace, kAnotherScore);
    workspace.history.name("Bring a score back");
    const int wanted = static_cast<int>(std::min<std::size_t>(longestRow(left.score), kMostNotes));
    if (wanted > workspace.score.NumNotes)
        workspace.score.resizeNotes(wanted);
    parseSng(left.score, SngReader::OpenPoliFile, workspace.score, workspace.setup);
    workspace.score.currentFile = left.currentFile;
    hearUsedChannels(workspace);
    workspace.showFromStart();
}

RecoveryFile::RecoveryFile(fs::path folder) : folder_(std::move(folder)) {}

RecoveryFile::~RecoveryFile() {
    finish();
}

std::vector<LeftScore> RecoveryFile::left() const {
    std::vector<std::pair<fs::file_time_type, LeftScore>> found;
    std::error_code ignored;
    for (const fs::path& file : filesIn(folder_)) {
        if (file.filename().string().starts_with(kHalfWritten))
            fs::remove(file, ignored);
        if (!isKept(file))
            continue;
        const auto text = readWholeFile(file);
        auto left = text ? parseRecovery(*text) : std::nullopt;
        if (!left) {
            fs::rename(file, file.string() + std::string(kAside), ignored);
            continue;
        }
        left->file = file;
        if (isSaved(*left))
            removeFile(file);
        else
            found.emplace_back(fs::last_write_time(file, ignored), std::move(*left));
    }
    std::ranges::sort(found, std::greater(), [](const auto& entry) { return entry.first; });
    std::vector<LeftScore> scores;
    scores.reserve(found.size());
    for (auto& entry : found)
        scores.push_back(std::move(entry.second));
    return scores;
}

void RecoveryFile::adopt(const LeftScore& left) {
    own_ = left.file;
}

void RecoveryFile::drop(const LeftScore& left) const {
    removeFile(left.file);
}

RecoveryFile::Kept RecoveryFile::keep(const Score& score, const SetupState& setup) {
    if (isWriting())
        return Kept::Busy;
    if (!image_.take(score, setup) && written_)
        return Kept::Unchanged;
    if (image_.positions == 0) {
        removeOwn();
        written_ = true;
        return Kept::Unchanged;
    }
    begin();
    return Kept::Begun;
}

void RecoveryFile::begin() {
    if (own_.empty())
        own_ = newPath();
    written_ = false;
    try {
        writing_ = std::async(std::launch::async, [this] { return write(own_, image_); });
    } catch (const std::exception&) { // no thread to be had now
    }
}

bool RecoveryFile::isWriting() {
    if (writing_.valid() && writing_.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return true;
    finish();
    return false;
}

void RecoveryFile::finish() {
    if (!writing_.valid())
        return;
    try {
        written_ = writing_.get();
    } catch (const std::exception&) { // no memory for the text
        written_ = false;
    }
}

void RecoveryFile::remove() {
    finish();
    removeOwn();
}

void RecoveryFile::removeOwn() {
    if (!own_.empty())
        removeFile(std::exchange(own_, {}));
}

fs::path RecoveryFile::newPath() const {
    int number = 0;
    for (const fs::path& file : filesIn(folder_))
        number = std::max(number, numberOf(file));
    return folder_ / std::string(kNameStart).append(std::to_string(number + 1)).append(kNameEnd);
}

} // namespace velmora
