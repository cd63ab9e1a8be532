// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/ReadBack.h"

#include "studio/CdTracks.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <set>

namespace velmora {

namespace {
using End = ReadBackOutcome::End;

constexpr int kFrameBytes = 4;
constexpr std::int64_t kStep = 75; ///< sectors read at a time
constexpr int kTrials = 3;
constexpr int kMostShifts = 8; ///< tried one after the other

/// One way through all runs with one shift.
class Pass {
public:
    Pass(const std::vector<SectorRun>& runs, int written, const SectorsOfDisc& read, int shift)
        : runs_(runs)
        , written_(written)
        , read_(read)
        , shift_(shift)
        , stored_(static_cast<std::size_t>(kStep) * kSectorBytes)
        , expected_(stored_.size()) {}

    ReadBackOutcome run(const std::function<void(double)>& progress, const std::stop_token& cancel) {
        std::int64_t all = 0;
        for (const SectorRun& run : runs_)
            all += run.sectors;
        std::int64_t done = 0;
        for (const SectorRun& run : runs_) {
            for (std::int64_t at = 0; at < run.sectors; at += kStep) {
                if (cancel.stop_requested())
                    return {End::Cancelled, run.inFile + at, shift_};
                const std::int64_t sectors = std::min(kStep, run.sectors - at);
                if (const End end = compare(run, at, sectors); end != End::Same)
                    return {end, run.inFile + at, shift_};
                done += sectors;
                if (progress)
                    progress(static_cast<double>(done) / static_cast<double>(all));
            }
        }
        return {End::Same, 0, shift_};
    }

    /// Other shifts by which the step at that sector would be right, the smallest first.
    std::vector<int> shiftsAt(std::int64_t sectorInFile) {
        for (const SectorRun& run : runs_) {
            const std::int64_t at = sectorInFile - run.inFile;
            if (at < 0 || at >= run.sectors)
                continue;
            const std::int64_t sectors = std::min(kStep, run.sectors - at);
            if (!read_(run.first + at, bytesOf(stored_, sectors)))
                return {};
            std::vector<int> fitting;
            for (int size = 0; size <= kMostShift; ++size) {
                if (size != shift_ && fits(run, at, sectors, size))
                    fitting.push_back(size);
                if (size > 0 && -size != shift_ && fits(run, at, sectors, -size))
                    fitting.push_back(-size);
            }
            return fitting;
        }
        return {};
    }

private:
    static std::span<std::byte> bytesOf(std::vector<std::byte>& buffer, std::int64_t sectors) {
        return std::span(buffer).first(static_cast<std::size_t>(sectors * kSectorBytes));
    }

    /// What the drive has read against the file, moved by a shift.
    bool fits(const SectorRun& run, std::int64_t at, std::int64_t sectors, int shift) {
        const std::int64_t runBytes = run.sectors * kSectorBytes;
        const std::int64_t begin = at * kSectorBytes + std::int64_t{shift} * kFrameBytes;
        const std::int64_t from = std::max<std::int64_t>(begin, 0);
        const std::int64_t to = std::min(begin + sectors * kSectorBytes, runBytes);
        if (to <= from)
            return true;
        const auto length = static_cast<std::size_t>(to - from);
        if (pread(written_, expected_.data(), length, run.inFile * kSectorBytes + from) !=
            static_cast<ssize_t>(length))
            return false;
        return std::memcmp(expected_.data(), stored_.data() + (from - begin), length) == 0;
    }

    End compare(const SectorRun& run, std::int64_t at, std::int64_t sectors) {
        End end = End::Unreadable;
        for (int trial = 0; trial < kTrials; ++trial) {
            if (!read_(run.first + at, bytesOf(stored_, sectors)))
                continue;
            if (fits(run, at, sectors, shift_))
                return End::Same;
            end = End::Different;
        }
        return end;
    }

    const std::vector<SectorRun>& runs_;
    int written_;
    const SectorsOfDisc& read_;
    int shift_;
    std::vector<std::byte> stored_;
    std::vector<std::byte> expected_;
};
} // namespace

ReadBackOutcome readBack(const std::vector<SectorRun>& runs, int written, const SectorsOfDisc& read,
                         const std::function<void(double share)>& progress, const std::stop_token& cancel) {
    double shown = 0;
    const auto rising = [&](double share) {
        shown = std::max(shown, share);
        if (progress)
            progress(shown);
    };
    std::set<int> tried;
    std::optional<ReadBackOutcome> best;
    std::vector<int> toTry{0};
    while (!toTry.empty() && static_cast<int>(tried.size()) < kMostShifts) {
        const int shift = toTry.front();
        toTry.erase(toTry.begin());
        if (!tried.insert(shift).second)
            continue;
        Pass pass(runs, written, read, shift);
        const ReadBackOutcome outcome = pass.run(rising, cancel);
        if (outcome.end != End::Different)
            return outcome;
        if (!best || outcome.sector > best->sector)
            best = outcome; // the shift that went furthest is the drive's
        const std::vector<int> others = pass.shiftsAt(outcome.sector);
        toTry.insert(toTry.end(), others.begin(), others.end());
    }
    return *best;
}

} // namespace velmora
