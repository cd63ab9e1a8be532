// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/DiscWriting.h"

#include "studio/BurnFailure.h"
#include "studio/DiscLayout.h"
#include "studio/WriteWatch.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>

namespace velmora::burner {

namespace {
constexpr auto kLastWords = std::chrono::seconds(4);

/// Whether the drive says that it can write the lead-in's text.
bool takesText(burn_drive* drive) {
    constexpr unsigned kMastering = 0x2e;
    constexpr unsigned kSubchannels = 1;
    unsigned char flags = 0;
    unsigned char length = 0;
    unsigned char* data = nullptr;
    const bool takes =
        library().burn_drive_get_feature(drive, kMastering, &flags, &length, &data, nullptr) > 0 &&
        length > 0 && (data[0] & kSubchannels) != 0;
    std::free(data);
    return takes;
}
} // namespace

BurnOutcome write(const CdDrive& drive, const GrabbedDrive& grabbed, const CdTracks& tracks,
                  const BurnSpool& spool, BurnEvents& events, const std::stop_token& cancel) {
    DiscLayout layout(tracks, spool.descriptor());
    if (takesText(grabbed.drive()))
        layout.addText(tracks);
    struct FreeOptions {
        void operator()(burn_write_opts* one) const { library().burn_write_opts_free(one); }
    };
    const std::unique_ptr<burn_write_opts, FreeOptions> options(
        library().burn_write_opts_new(grabbed.drive()));
    if (!layout.isWhole() || !options)
        return {BurnCode::ParametersRefused, "There is not enough memory."};
    library().burn_write_opts_set_perform_opc(options.get(), 0);
    library().burn_write_opts_set_multi(options.get(), 0);
    library().burn_write_opts_set_underrun_proof(options.get(), 1);
    std::array<char, BURN_REASONS_LEN> reasons{};
    // All tracks at once, with nothing between them: no track is closed by itself, nor asked where it may
    // begin.
    if (library().burn_write_opts_set_write_type(options.get(), BURN_WRITE_SAO, BURN_BLOCK_SAO) == 0 ||
        library().burn_precheck_write(options.get(), layout.disc(), reasons.data(), 0) <= 0)
        return {BurnCode::ParametersRefused, drive.name + " can't write it: " + reasons.data()};
    complaints();
    WriteWatch watch(tracks, events);
    library().burn_disc_write(options.get(), layout.disc());
    burn_progress progress{};
    bool cancelled = false;
    for (;;) {
        const burn_drive_status status = library().burn_drive_get_status(grabbed.drive(), &progress);
        if (status == BURN_DRIVE_IDLE)
            break;
        if (status == BURN_DRIVE_WRITING)
            watch.look(progress);
        if (cancel.stop_requested() && !std::exchange(cancelled, true))
            library().burn_drive_cancel(grabbed.drive());
        std::this_thread::sleep_for(kLook);
    }
    if (library().burn_drive_wrote_well(grabbed.drive()) == 0) {
        BurnFailure failure = failureOf(complaints());
        if (failure.detail.find(kVanished) != std::string::npos)
            std::this_thread::sleep_for(kLastWords);
        if (cancelled)
            return {BurnCode::WriteError, "The disc in " + drive.name + " is not complete.", true};
        return {failure.code, drive.name + ": " + failure.detail};
    }
    watch.end();
    return {BurnCode::Finished};
}

} // namespace velmora::burner
