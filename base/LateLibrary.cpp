// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/LateLibrary.h"

#include <dlfcn.h>

namespace velmora {

LateLibrary::LateLibrary(const char* file) : file_(file), handle_(dlopen(file, RTLD_LAZY | RTLD_LOCAL)) {
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
