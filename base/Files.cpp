// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Files.h"

#include "base/PendingFile.h"

#include <algorithm>
#include <fstream>
#include <span>

namespace velmora {

namespace {
constexpr std::size_t kFirstBlock = std::size_t{64} * 1024;

/// A file that is read from its beginning.
class Reading {
public:
    /// False for one that can't be read, or is too large.
    bool open(const std::filesystem::path& path) {
        std::error_code error;
        if (!std::filesystem::is_regular_file(path, error))
            return false; // a directory, a pipe or a device could block or never end
        const auto size = std::filesystem::file_size(path, error);
        file_.open(path, std::ios::binary);
        left_ = static_cast<std::size_t>(size);
        return !error && size <= kLargestFile && file_;
    }
    /// Appends up to @p most bytes of what is left.
    bool read(std::string& to, std::size_t most) {
        const std::size_t before = to.size();
        to.resize(before + std::min(most, left_));
        file_.read(to.data() + before, static_cast<std::streamsize>(to.size() - before));
        const auto count = static_cast<std::size_t>(file_.gcount());
        left_ = to.size() - before == count ? left_ - count : 0; // it has become shorter
        to.resize(before + count);
        return !file_.bad();
    }
    [[nodiscard]] std::size_t left() const { return left_; }

private:
    std::ifstream file_;
    std::size_t left_ = 0;
};
bool isText(std::string_view bytes) {
    return bytes.find('\0') == bytes.npos;
}
} // namespace

std::optional<std::string> readWholeFile(const std::filesystem::path& path) {
    Reading file;
    std::string bytes;
    if (!file.open(path) || !file.read(bytes, file.left()))
        return std::nullopt;
    return bytes;
}

TextFile readTextFile(const std::filesystem::path& path) {
    Reading file;
    TextFile found;
    if (!file.open(path) || !file.read(found.text, kFirstBlock))
        return {TextProblem::Unreadable, {}};
    if (!isText(found.text))
        return {TextProblem::NotText, {}};
    if (!file.read(found.text, file.left()))
        return {TextProblem::Unreadable, {}};
    if (!isText(found.text))
        return {TextProblem::NotText, {}};
    return found;
}

std::string replaceFile(const std::filesystem::path& path, std::string_view bytes) {
    PendingFile file(path);
    if (auto problem = file.open(); !problem.empty())
        return problem;
    if (auto problem = file.write(std::as_bytes(std::span(bytes))); !problem.empty())
        return problem;
    return file.commit();
}

} // namespace velmora
