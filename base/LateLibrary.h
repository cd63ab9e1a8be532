// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>

namespace velmora {

/// A shared library that is loaded when it is first needed, and not with the program: starting takes no time
/// for it, and where it is missing everything else works.
///
/// Derive a table of the functions that are called, a row a function, and keep one of it for the process:
///
///     struct Lame : LateLibrary {
///         Lame() : LateLibrary(kLameLibrary) {}
///         VELMORA_LATE_CALL(lame_init);
///     };
///
/// Unless `complete`, none of the functions may be called. Once loaded a library stays until the process
/// ends, as threads of its own may still run. Making one touches the disk. Thread-safe: all but making one,
/// yes. Realtime-safe: no; the calls themselves as far as the library's are.
class LateLibrary {
public:
    /// @param file the name by which the system's loader finds it, such as "libm.so.6"
    explicit LateLibrary(const char* file);
    LateLibrary(const LateLibrary&) = delete;
    LateLibrary& operator=(const LateLibrary&) = delete;

    /// True if the library is there with every function of the table.
    [[nodiscard]] bool complete() const { return problem_.empty(); }
    /// Why not, as the end of a sentence; blank if it is.
    [[nodiscard]] const std::string& problem() const { return problem_; }

protected:
    ~LateLibrary() = default;
    /// The address of a function; null if there is none.
    [[nodiscard]] void* function(const char* name);

private:
    std::string file_;
    void* handle_;
    std::string problem_;
};

} // namespace velmora

/// A row of the table: a pointer to the function of that name, of the type that the library's header tells.
#define VELMORA_LATE_CALL(name)                                                                              \
    decltype(&::name) const name = reinterpret_cast<decltype(&::name)>(function(#name))
