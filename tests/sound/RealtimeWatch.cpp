// SPDX-License-Identifier: GPL-2.0-or-later
#include "RealtimeWatch.h"

#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>

#if VELMORA_SANITIZED
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*));
#endif

namespace {
thread_local bool watching = false;
thread_local std::size_t memoryCallCount = 0;
thread_local std::size_t lockCount = 0;

void countMemoryCall() {
    if (watching)
        ++memoryCallCount;
}
} // namespace

#if VELMORA_SANITIZED

namespace {
// The sanitizers' own allocators report each call.
void onMalloc(const volatile void* /*piece*/, std::size_t /*size*/) {
    countMemoryCall();
}
void onFree(const volatile void* /*piece*/) {
    countMemoryCall();
}
[[maybe_unused]] const int installed = __sanitizer_install_malloc_and_free_hooks(onMalloc, onFree);
} // namespace

#else

// The program's own malloc family is found before the C library's by everything in the process.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* piece, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* piece);

void* malloc(std::size_t size) {
    countMemoryCall();
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    countMemoryCall();
    return __libc_calloc(count, size);
}
void* realloc(void* piece, std::size_t size) {
    countMemoryCall();
    return __libc_realloc(piece, size);
}
void* memalign(std::size_t alignment, std::size_t size) {
    countMemoryCall();
    return __libc_memalign(alignment, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    countMemoryCall();
    return __libc_memalign(alignment, size);
}
int posix_memalign(void** piece, std::size_t alignment, std::size_t size) {
    countMemoryCall();
    *piece = __libc_memalign(alignment, size);
    return *piece ? 0 : ENOMEM;
}
void free(void* piece) {
    countMemoryCall();
    __libc_free(piece);
}
int pthread_mutex_lock(pthread_mutex_t* mutex) {
    static const auto real =
        reinterpret_cast<int (*)(pthread_mutex_t*)>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    if (watching)
        ++lockCount;
    return real(mutex);
}
} // extern "C"

#endif

namespace velmora {

RealtimeWatch::RealtimeWatch() {
    memoryCallCount = 0;
    lockCount = 0;
    watching = true;
}
RealtimeWatch::~RealtimeWatch() {
    watching = false;
}
std::size_t RealtimeWatch::memoryCalls() const {
    return memoryCallCount;
}
std::size_t RealtimeWatch::locks() const {
    return lockCount;
}
bool RealtimeWatch::countsLocks() {
    return !VELMORA_SANITIZED;
}

} // namespace velmora
