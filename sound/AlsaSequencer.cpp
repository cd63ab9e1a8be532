// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/AlsaSequencer.h"

#include <fcntl.h>
#include <unistd.h>

namespace velmora {

bool sequencerAnswers() {
    const int file = ::open("/dev/snd/seq", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return false;
    ::close(file);
    return true;
}

} // namespace velmora
