// SPDX-License-Identifier: GPL-2.0-or-later
// An outside witness: the MIDI lister `midicsv` reads what we export. Its path is the program's one argument.
#include "score/MidiFile.h"

#include "RandomScore.h"
#include "sound/Chords.h"

#include <QProcess>
#include <QTemporaryDir>

#include <map>

using namespace velmora;
using namespace velmora::test;

namespace {
std::string midicsvPath;

struct Listing {
    std::vector<std::vector<std::string>> rows; ///< track, tick, event, values
    std::string complaints;
    int status = -1;
};

Listing list(Score score) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("export.mid"));
    ChordSteps steps;
    std::int32_t NumBytes = 10000;
    EXPECT_EQ(MidiFile(path.toStdString(), score, steps, NumBytes), "");
    QProcess lister;
    lister.start(QString::fromStdString(midicsvPath), {path});
    Listing listing;
    if (!lister.waitForFinished(60'000) || lister.exitStatus() != QProcess::NormalExit)
        return listing;
    listing.status = lister.exitCode();
    listing.complaints = lister.readAllStandardError().toStdString();
    for (const QByteArray& line : lister.readAllStandardOutput().split('\n')) {
        std::vector<std::string> row;
        for (const QByteArray& field : line.split(','))
            row.push_back(field.trimmed().toStdString());
        if (row.size() >= 3)
            listing.rows.push_back(row);
    }
    return listing;
}

std::string joined(const std::vector<std::string>& row) {
    std::string text;
    for (const std::string& field : row)
        text += (text.empty() ? "" : ",") + field;
    return text;
}
} // namespace

TEST(MidicsvReadsExportTest, ASmallScoreIsListedEventByEvent) {
    Score score(20);
    score.Tempo = 60;
    score.TopChannel = 9;
    for (const auto& [position, cell] : std::map<int, int>{{0, 60}, {1, 60}, {2, 1060}, {5, 61}})
        score.NoteCell.set(0, position, static_cast<std::int16_t>(cell));
    score.NoteInstrument.fillRow(0, 24);
    score.NoteCell.set(8, 1, 56);
    score.NoteInstrument.set(8, 1, 128);
    score.Volume.set(8, 2, 90);
    const Listing listing = list(score);
    ASSERT_EQ(listing.status, 0) << midicsvPath << " could not list the file: " << listing.complaints;
    EXPECT_EQ(listing.complaints, "");
    std::vector<std::string> got;
    for (const auto& row : listing.rows) {
        if (row[0] == "0" || row[0] == "1" || row[0] == "2" || row[0] == "10" || row[0] == "14")
            got.push_back(joined(row));
    }
    const std::vector<std::string> wanted{
        "0,0,Header,1,14,48",      "1,0,Start_track",
        "1,0,Tempo,1000000",       "1,0,Time_signature,4,4,24,8",
        "1,0,End_track",           "2,0,Start_track",
        "2,0,Program_c,0,24",      "2,0,Note_on_c,0,67,127",
        "2,12,Note_off_c,0,67,0",  "2,12,Note_on_c,0,67,127",
        "2,36,Note_off_c,0,67,0",  "2,60,Note_on_c,0,66,127",
        "2,72,Note_off_c,0,66,0",  "2,84,End_track",
        "10,0,Start_track",        "10,12,Note_on_c,9,35,90",
        "10,24,Note_off_c,9,35,0", "10,84,End_track",
        "14,0,Start_track",        "14,84,End_track",
        "0,0,End_of_file",
    };
    EXPECT_EQ(got, wanted);
}

TEST(MidicsvReadsExportTest, RandomScoresAreListedWithEveryHeadOnceAndEveryNoteEnded) {
    std::minstd_rand random(41);
    for (int i = 0; i < 12; ++i) {
        Score score = randomScore(random, i == 0 ? 32767 : 400);
        score.TopChannel = kUsedChannels; // no channel is emptied
        score.Polyphonics = ChannelGrid(score.NumNotes + 1, 0);
        std::map<std::string, int> heads, ons;
        for (int channel = 0; channel < kUsedChannels; ++channel) {
            for (int position = 0; position <= score.NumNotes; ++position) {
                if (const int cell = *score.NoteCell.at(channel, position);
                    cellClass(cell) == CellClass::Head) {
                    const int code = *score.NoteInstrument.at(channel, position);
                    ++heads[std::to_string(channel + 2) + "," + std::to_string(position * 12) + "," +
                            std::to_string(code >= 128 ? code - 93 : 127 - cell)];
                }
            }
        }
        const Listing listing = list(score);
        ASSERT_EQ(listing.status, 0) << midicsvPath << " could not list the file: " << listing.complaints;
        EXPECT_EQ(listing.complaints, "");
        std::size_t notesOn = 0, notesOff = 0;
        for (const auto& row : listing.rows) {
            if (row[2] == "Note_on_c" && row.size() == 6) {
                ++notesOn;
                ++ons[row[0] + "," + row[1] + "," + row[4]];
            }
            notesOff += row[2] == "Note_off_c" ? 1 : 0;
        }
        EXPECT_EQ(ons, heads);
        EXPECT_EQ(notesOn, notesOff);
        EXPECT_GT(notesOn, 100u);
    }
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    midicsvPath = argc > 1 ? argv[1] : "midicsv";
    return RUN_ALL_TESTS();
}
