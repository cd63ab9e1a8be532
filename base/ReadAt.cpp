// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/ReadAt.h"

#include <cerrno>
#include <unistd.h>

namespace velmora {

std::size_t readAt(int descriptor, std::uint64_t offset, std::span<std::byte> to) {
    std::size_t done = 0;
    while (done < to.size()) {
        const ssize_t count =
            pread(descriptor, to.data() + done, to.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

} // namespace velmora
