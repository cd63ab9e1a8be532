// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>

namespace velmora {

/// A file on its way: written beside its place and moved there when it is whole, so that the old file stays
/// as it was until then, and for good if anything fails. What is no regular file (a device, a pipe) is
/// written directly. A link stays one: what it leads to is replaced, or made. Calls return blank, or in words
/// what went wrong and with which file. Thread-safe: no. Realtime-safe: no.
class PendingFile {
public:
    explicit PendingFile(std::filesystem::path path);
    /// Removes what was written, unless it was moved into place.
    ~PendingFile();
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    [[nodiscard]] std::string open();
    /// Appends.
    [[nodiscard]] std::string write(std::span<const std::byte> bytes);
    /// Has what was written so far set out for the disk, while more is made; `commit` then waits less. Does
    /// not wait itself, and cannot fail: whether all has arrived is seen at `commit`.
    void beginFlushing();
    /// Replaces bytes that were written before; nothing happens where there is no going back.
    [[nodiscard]] std::string overwrite(std::size_t offset, std::span<const std::byte> bytes);
    /// Flushes and moves the file into its place. Until then it has no name where the file system can do
    /// that, so that a program that is killed leaves nothing.
    [[nodiscard]] std::string commit();

    /// Whether `overwrite` can do anything; after `open`.
    [[nodiscard]] bool canBeRewound() const { return !isDirect_; }
    /// For libraries that write by themselves; -1 before `open`. Stays this object's.
    [[nodiscard]] int descriptor() const { return descriptor_; }
    /// The sentence for a failure: "Writing <file> failed: <reason>."
    [[nodiscard]] std::string failure(const std::string& reason) const;
    /// The same for a code as in errno.
    [[nodiscard]] std::string failure(int code) const;

private:
    [[nodiscard]] bool openNameless();
    [[nodiscard]] bool openBeside();
    [[nodiscard]] bool giveName();
    std::filesystem::path path_;   ///< as the user named it
    std::filesystem::path target_; ///< what it leads to
    bool isDirect_ = false;        ///< written where it is: no regular file
    std::string beside_;           ///< its name while it is written, where it has one
    int descriptor_ = -1;
};

} // namespace velmora
