// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/TeamOfOne.h"

#include <dlfcn.h>

namespace {
constexpr const char* kEntryPoint = "GOMP_parallel";
using Body = void (*)(void*);
using Parallel = void (*)(Body, void*, unsigned, unsigned);

/// The library's own entry point. It may have come with the program, or later with FluidSynth alone.
Parallel ofLibrary() {
    void* found = dlsym(RTLD_NEXT, kEntryPoint);
    if (found == nullptr) {
        if (void* const openMp = dlopen("libgomp.so.1", RTLD_LAZY | RTLD_NOLOAD))
            found = dlsym(openMp, kEntryPoint);
    }
    return reinterpret_cast<Parallel>(found);
}
} // namespace

extern "C" __attribute__((used, visibility("default"))) void GOMP_parallel(Body body, void* data,
                                                                           unsigned threads, unsigned flags) {
    // Outside a team, the library's other calls answer as in a team of one: one thread, number 0, no barrier.
    if (threads == 1)
        return body(data);
    static const Parallel library = ofLibrary();
    library(body, data, threads, flags);
}

namespace velmora {

bool teamsOfOneArePlainCalls() {
    return dlsym(RTLD_DEFAULT, kEntryPoint) == reinterpret_cast<void*>(&GOMP_parallel);
}

} // namespace velmora
