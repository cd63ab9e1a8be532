// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/BurnText.h"

#include "tests/support/DiscFiles.h"

#include <QTemporaryDir>

namespace velmora {

TEST(BurnTextTest, LettersOfWesternEuropeStayAndOthersBecomeQuestionMarks) {
    EXPECT_EQ(toLatin1("Für Elise, naïve 日本 𝄞"), "F\xfcr Elise, na\xefve ?? ?");
    EXPECT_EQ(toLatin1("\xff"), "?"); // a name that isn't UTF-8
}

TEST(BurnTextTest, TitlesAreCutToTheRoomThereIs) {
    const QTemporaryDir home;
    const std::filesystem::path folder = home.path().toStdString();
    const CdTracks two = tracksOf(
        {writeWav(folder / "A long way home.wav", noise(2, 1)), writeWav(folder / "B.wav", noise(2, 1))});
    const DiscText text = discText(two, 6);
    EXPECT_EQ(text.title, "Audio CD");
    EXPECT_EQ(text.tracks[0].title, "A long");
    EXPECT_EQ(text.tracks[1].title, "B");
    EXPECT_FALSE(text.hasPerformers);
    EXPECT_EQ(discText(tracksOf({folder / "B.wav"}), 6).title, "B");
}

} // namespace velmora
