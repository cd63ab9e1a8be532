// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/LateLibrary.h"

#include <libburn/libburn.h>

#include <chrono>
#include <mutex>
#include <string>
#include <vector>

using namespace burn; // the library's own, where its header puts its functions for C++

namespace velmora::burner {

/// The library for burning, set up to keep quiet. For the sources of the burner alone.
struct BurnLibrary : LateLibrary {
    BurnLibrary();
    void start();
    /// Else it would look at no drive any more, once one has vanished.
    void restart();
    VELMORA_LATE_CALL(burn_cdtext_from_session);
    VELMORA_LATE_CALL(burn_disc_add_session);
    VELMORA_LATE_CALL(burn_disc_create);
    VELMORA_LATE_CALL(burn_disc_erasable);
    VELMORA_LATE_CALL(burn_disc_erase);
    VELMORA_LATE_CALL(burn_disc_free);
    VELMORA_LATE_CALL(burn_disc_get_profile);
    VELMORA_LATE_CALL(burn_disc_get_sessions);
    VELMORA_LATE_CALL(burn_disc_get_status);
    VELMORA_LATE_CALL(burn_disc_read_atip);
    VELMORA_LATE_CALL(burn_disc_write);
    VELMORA_LATE_CALL(burn_drive_cancel);
    VELMORA_LATE_CALL(burn_drive_clear_whitelist);
    VELMORA_LATE_CALL(burn_drive_d_get_adr);
    VELMORA_LATE_CALL(burn_drive_free_speedlist);
    VELMORA_LATE_CALL(burn_drive_get_disc);
    VELMORA_LATE_CALL(burn_drive_get_feature);
    VELMORA_LATE_CALL(burn_drive_get_speedlist);
    VELMORA_LATE_CALL(burn_drive_get_start_end_lba);
    VELMORA_LATE_CALL(burn_drive_get_status);
    VELMORA_LATE_CALL(burn_drive_info_free);
    VELMORA_LATE_CALL(burn_drive_release);
    VELMORA_LATE_CALL(burn_drive_scan);
    VELMORA_LATE_CALL(burn_drive_scan_and_grab);
    VELMORA_LATE_CALL(burn_drive_set_speed);
    VELMORA_LATE_CALL(burn_drive_wrote_well);
    VELMORA_LATE_CALL(burn_finish);
    VELMORA_LATE_CALL(burn_initialize);
    VELMORA_LATE_CALL(burn_msgs_obtain);
    VELMORA_LATE_CALL(burn_msgs_set_severities);
    VELMORA_LATE_CALL(burn_precheck_write);
    VELMORA_LATE_CALL(burn_read_audio);
    VELMORA_LATE_CALL(burn_session_add_track);
    VELMORA_LATE_CALL(burn_session_create);
    VELMORA_LATE_CALL(burn_session_free);
    VELMORA_LATE_CALL(burn_session_get_tracks);
    VELMORA_LATE_CALL(burn_session_set_cdtext);
    VELMORA_LATE_CALL(burn_source_free);
    VELMORA_LATE_CALL(burn_track_create);
    VELMORA_LATE_CALL(burn_track_define_data);
    VELMORA_LATE_CALL(burn_track_free);
    VELMORA_LATE_CALL(burn_track_get_entry);
    VELMORA_LATE_CALL(burn_track_set_cdtext);
    VELMORA_LATE_CALL(burn_track_set_source);
    VELMORA_LATE_CALL(burn_write_opts_free);
    VELMORA_LATE_CALL(burn_write_opts_new);
    VELMORA_LATE_CALL(burn_write_opts_set_multi);
    VELMORA_LATE_CALL(burn_write_opts_set_perform_opc);
    VELMORA_LATE_CALL(burn_write_opts_set_underrun_proof);
    VELMORA_LATE_CALL(burn_write_opts_set_write_type);

    bool ready = false;
};

[[nodiscard]] BurnLibrary& library();
[[nodiscard]] bool isThere();
/// The library knows one owner of drives in a process.
[[nodiscard]] std::mutex& oneAtATime();
/// What the library had to complain of since the last call.
std::vector<std::string> complaints();

inline constexpr auto kLook = std::chrono::milliseconds(20); ///< between two looks at what a drive does

} // namespace velmora::burner
