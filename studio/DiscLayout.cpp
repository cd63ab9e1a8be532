// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/DiscLayout.h"

#include "studio/BurnText.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace velmora::burner {

namespace {
/// Bytes of a file from one place to another, as the library takes them.
struct Stretch {
    int descriptor;
    off_t at;
    off_t end;
};

int readStretch(burn_source* source, unsigned char* buffer, int size) {
    auto& stretch = *static_cast<Stretch*>(source->data);
    int got = 0;
    while (got < size && stretch.at < stretch.end) {
        const auto wanted = std::min<off_t>(size - got, stretch.end - stretch.at);
        const ssize_t count =
            pread(stretch.descriptor, buffer + got, static_cast<std::size_t>(wanted), stretch.at);
        if (count <= 0)
            return -1;
        got += static_cast<int>(count);
        stretch.at += count;
    }
    return got;
}
off_t sizeOfStretch(burn_source* source) {
    const auto& stretch = *static_cast<Stretch*>(source->data);
    return stretch.end - stretch.at;
}
int keepSize(burn_source* /*source*/, off_t /*size*/) {
    return 1;
}
void freeStretch(burn_source* source) {
    delete static_cast<Stretch*>(source->data);
}

/// The library frees it as C does.
burn_source* newSource(Stretch stretch) {
    auto* source = static_cast<burn_source*>(std::calloc(1, sizeof(burn_source)));
    if (!source)
        return nullptr;
    source->refcount = 1;
    source->read = readStretch;
    source->get_size = sizeOfStretch;
    source->set_size = keepSize;
    source->free_data = freeStretch;
    source->data = new Stretch(stretch);
    return source;
}
} // namespace

DiscLayout::DiscLayout(const CdTracks& tracks, int spool)
    : disc_(library().burn_disc_create())
    , session_(library().burn_session_create()) {
    library().burn_disc_add_session(disc_, session_, BURN_POS_END);
    off_t at = 0;
    for (const CdTrack& row : tracks.list()) {
        burn_track* track = library().burn_track_create();
        tracks_.push_back(track);
        library().burn_track_define_data(track, 0, 0, 1, BURN_AUDIO);
        const off_t end = at + row.sectors * kSectorBytes;
        burn_source* source = newSource({spool, at, end});
        isWhole_ = isWhole_ && source && library().burn_track_set_source(track, source) == BURN_SOURCE_OK &&
                   library().burn_session_add_track(session_, track, BURN_POS_END) != 0;
        if (source)
            library().burn_source_free(source);
        at = end;
    }
}

DiscLayout::~DiscLayout() {
    for (burn_track* track : tracks_)
        library().burn_track_free(track);
    library().burn_session_free(session_);
    library().burn_disc_free(disc_);
}

void DiscLayout::addText(const CdTracks& tracks) {
    for (const std::size_t longest : {160, 64, 28, 14}) {
        setText(tracks, longest);
        unsigned char* packs = nullptr;
        int count = 0;
        const bool fits = library().burn_cdtext_from_session(session_, &packs, &count, 0) > 0;
        std::free(packs);
        if (fits)
            break;
    }
    complaints();
}

void DiscLayout::setText(const CdTracks& tracks, std::size_t longest) {
    constexpr int kTitle = 0x80;
    constexpr int kPerformer = 0x81;
    const auto put = [](auto set, auto* where, int kind, std::string text) {
        set(where, 0, kind, nullptr, reinterpret_cast<unsigned char*>(text.data()),
            static_cast<int>(text.size()) + 1, 0);
    };
    const DiscText text = discText(tracks, longest);
    put(library().burn_session_set_cdtext, session_, kTitle, text.title);
    if (text.hasPerformers)
        put(library().burn_session_set_cdtext, session_, kPerformer, text.performer);
    for (std::size_t i = 0; i < tracks_.size(); ++i) {
        put(library().burn_track_set_cdtext, tracks_[i], kTitle, text.tracks[i].title);
        if (text.hasPerformers)
            put(library().burn_track_set_cdtext, tracks_[i], kPerformer, text.tracks[i].performer);
    }
}

} // namespace velmora::burner
