// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <stdexcept>
#include <string>

class QCommandLineParser;

namespace velmora::cli {

/// The call's words are off: exit status 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};
/// It could not be done: exit status 1. The text names the file or device.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// One command of the companion: what `--help` says of it, its options, its doing.
struct Command {
    const char* name;
    const char* synopsis; ///< what stands behind the name, with the blank before it
    const char* summary;
    void (*addOptions)(QCommandLineParser&);
    /// Returns the exit status; throws UsageError or Failure.
    int (*run)(const QCommandLineParser&);
    std::string (*details)() = nullptr; ///< what the command's own help adds, if anything
};

extern const Command kInfo;
extern const Command kBurn;
extern const Command kConvert;
extern const Command kEdit;
extern const Command kPlay;
extern const Command kRecord;
extern const Command kEncode;
extern const Command kMedia;
extern const Command kNotation;
extern const Command kEngrave;
extern const Command kLyrics;
extern const Command kTrace;
extern const Command kPerform;
extern const Command kDevices;
extern const Command kKeys;

} // namespace velmora::cli
