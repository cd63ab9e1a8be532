// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/Mix.h"
#include "studio/Levels.h"
#include "studio/SampleSink.h"
#include "studio/WaveFormat.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace velmora {

/// What a take is made of.
enum class CaptureSource : std::uint8_t {
    Own,       ///< the program's own mix, before any volume of the desktop
    Everything ///< what all programs play: the monitor of the default sink
};

/// Records what sounds, to a WAV file that grows beside it: 44 bytes of header and the samples; from 4 GiB on
/// RF64. Its header tells the true length at least once a second, so that what a killed program leaves opens
/// in others. Memory doesn't grow with the take. A thread of its own writes where the mix is live.
/// Thread-safe: no.
class Capture {
public:
    /// @param place the file to grow in, which an old one is written over; blank for a hidden one of its own
    explicit Capture(Mix& mix, std::filesystem::path place = {});
    /// Stops. A take that wasn't saved goes, unless it grew in a place of the user's.
    ~Capture();
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    [[nodiscard]] WaveFormat format() const;
    /// False while it records or when something is captured already: nothing changes then.
    bool setFormat(WaveFormat format);
    /// Before the first `record`.
    void setSource(CaptureSource source);
    /// Has what is captured go to this sink, too, as it comes (interleaved, `format().channels` values a
    /// frame, as they stand in the file): an encoder beside the recording, which may take its time. It is not
    /// opened yet. A sink that fails is let go, and the take goes on. Before `record`.
    void copyTo(std::unique_ptr<SampleSink> sink);

    /// Captures from now on, behind what is captured already. Blank, or why not, in words. The first one puts
    /// a file without sound in place; an old one goes only when that stands.
    [[nodiscard]] std::string record();
    /// False if it doesn't record, or had ended by itself. What the mix has given until now is in the take
    /// when this returns.
    bool stop();
    /// False from the moment on at which it ended by itself.
    [[nodiscard]] bool isRecording() const;
    [[nodiscard]] std::int64_t frames() const; ///< captured, at `format().rate`
    /// Why the take ended by itself (a full disk, a sound server that is gone), in a sentence that names the
    /// file; blank while all is well.
    [[nodiscard]] std::string problem() const;
    /// What the take lacks though it goes on, in a sentence: sound that a disk was too slow for, with silence
    /// in its place. Blank as a rule.
    [[nodiscard]] std::string warning() const;

    /// Puts what is captured (none: a header and no sample) in place as a whole file; where it grew in that
    /// place it is there already. Not while it records. Blank, or why not.
    [[nodiscard]] std::string save(const std::filesystem::path& file);
    /// The sink of `copyTo`, after `stop`, with all that was captured: to be finished or let go. None if it
    /// failed or there was none.
    [[nodiscard]] std::unique_ptr<SampleSink> takeSink();
    /// Forgets what is captured, not while it records. A file that was saved stays, and so does one in a
    /// place of the user's: what is captured next grows in a hidden file.
    void forget();

    /// Of what it would capture, from its construction on; lamps are out again at the next `record`.
    /// Thread-safe: yes.
    [[nodiscard]] Levels levels() const;
    /// Seconds since the last sound within the take (more than half of a 16-bit step).
    [[nodiscard]] double silentSeconds() const;
    /// True if the whole take was silent so far.
    [[nodiscard]] bool isSilent() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace velmora
