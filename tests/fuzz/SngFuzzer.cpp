// SPDX-License-Identifier: GPL-2.0-or-later
// The four readers of score files: any bytes, into a score that is empty or holds something already.
#include "score/Score.h"
#include "score/SngFile.h"
#include "sound/SetupState.h"

#include <cstdlib>

using namespace velmora;

namespace {
void expect(bool holds) {
    if (!holds)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    // The first byte chooses the reader and the size of the score.
    const auto reader = static_cast<SngReader>(data[0] % kSngRules.size());
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    Score score(data[0] / 4);
    SetupState setup;
    const int topChannel = score.TopChannel;
    parseSng(bytes, reader, score, setup);

    expect(score.NoteCell.positions() == score.NumNotes + 1 &&
           score.Volume.positions() == score.NumNotes + 1);
    expect(score.SongEnd >= 0 && score.SongEnd <= score.NumNotes + 1 && score.TopChannel == topChannel);
    expect(longestRow(bytes) <= bytes.size() + 1);
    expect((formOf(bytes) == SngForm::Second) == (openingReader(bytes) == SngReader::OpenPoliFile2));
    if (reader == SngReader::OpenFile || reader == SngReader::OpenPoliFile2)
        expect(score.Tempo <= 400);
    // What was read is cut to rows that any score of this size takes in.
    expect(longestRow(serializePoliFile(score, setup)) <= static_cast<std::size_t>(score.NumNotes) + 1);
    return 0;
}
