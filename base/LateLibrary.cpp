// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/LateLibrary.h"

#include <dlfcn.h>

#include <mutex>

namespace velmora {

namespace {
/// One after the other, as the system's loader would have it anyway: a library may bring another one along,
/// which a second thread asks for, and what that has set up is to be seen there.
void* load(const char* file) {
    static std::mutex loading;
    const std::lock_guard lock(loading);
    return dlopen(file, RTLD_LAZY | RTLD_LOCAL);
}
} // namespace

LateLibrary::LateLibrary(const char* file) : file_(file), handle_(load(file)) {
    if (handle_ == nullptr)
        problem_ = "the library " + file_ + " can't be loaded; is its package installed?";
}

void* LateLibrary::function(const char* name) {
    if (handle_ == nullptr)
        return nullptr;
    void* const found = dlsym(handle_, name);
    if (found == nullptr && problem_.empty())
        problem_ = "the library " + file_ + " has no " + name + "; is it too old?";
    return found;
}

} // namespace velmora
