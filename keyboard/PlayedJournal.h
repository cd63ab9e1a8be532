// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PlayedEvent.h"

#include <condition_variable>
#include <filesystem>
#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace velmora {

/// Events as a journal has them: records of equal size, each with a checksum of its own.
[[nodiscard]] std::string journalBytes(std::span<const PlayedEvent> events);
/// The reverse. Any bytes will do: what is no whole record is passed over, wherever it stands.
[[nodiscard]] std::vector<PlayedEvent> parseJournal(std::string_view bytes);
/// Those of the last `PlayedJournal::kKept` seconds before @p now, in their order; none that is still to
/// come.
[[nodiscard]] std::vector<PlayedEvent> recentOf(std::vector<PlayedEvent> events, double now);

/// What is played, on the disk within a second: a file to which a thread of its own appends, and which it
/// writes anew with the last ten minutes when it has grown. Moments are those of the wall's clock.
///
/// Whoever appends waits for nothing. What could not be written is written with what comes next.
class PlayedJournal {
public:
    static constexpr double kKept = 600;      ///< seconds
    static constexpr double kGathered = 0.25; ///< seconds for which events wait for more

    /// Touches nothing yet: the thread begins with the first event, or when somebody asks for earlier ones.
    /// @param wall seconds on the wall's clock; called by the thread as well
    PlayedJournal(std::filesystem::path file, std::function<double()> wall);
    /// What was appended is on the disk.
    ~PlayedJournal();
    PlayedJournal(const PlayedJournal&) = delete;
    PlayedJournal& operator=(const PlayedJournal&) = delete;

    /// Called at the first failure, and for no later one, by the thread that writes; with the reason in
    /// words. To be set before the first event.
    std::function<void(const std::string&)> onTrouble;

    void append(const PlayedEvent& event);
    /// What an earlier run left. Waits for the first look at the file, though not for long: null while that
    /// goes on.
    [[nodiscard]] const std::vector<PlayedEvent>* earlier();
    /// Waits until what was appended has been written, or could not be.
    void finish();

private:
    void begin();
    void work();
    void write();
    void compact();
    bool open();
    void close();
    void fail(const std::string& words);

    std::filesystem::path file_;
    std::function<double()> wall_;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    std::vector<PlayedEvent> waiting_; ///< under the mutex, as the next two
    bool idle_ = true;                 ///< nothing waits or is being written
    bool ending_ = false;
    bool hurried_ = false;

    std::promise<std::vector<PlayedEvent>> found_; ///< set by the thread, once
    std::future<std::vector<PlayedEvent>> finding_;
    std::optional<std::vector<PlayedEvent>> earlier_;

    // The thread's own.
    int descriptor_ = -1;
    std::size_t size_ = 0; ///< bytes that are whole in the file
    std::vector<PlayedEvent> unwritten_;
    bool told_ = false;

    std::thread thread_; ///< last: it uses all of the above
};

} // namespace velmora
