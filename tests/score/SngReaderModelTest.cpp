// SPDX-License-Identifier: GPL-2.0-or-later
// The readers of score files against a second reader that follows the layout step by step, one cell at a time
// and with nothing shared, on thousands of damaged files.
#include "score/SngFile.h"

#include "RandomScore.h"
#include "tests/support/Walks.h"

#include <cmath>
#include <cstdlib>

using namespace velmora;
using namespace velmora::test;

namespace {
struct Model {
    Score& score;
    SetupState& setup;
    std::vector<std::string> lines;
    std::size_t next = 0;

    bool atEnd() const { return next >= lines.size(); }

    void splitLines(std::string_view bytes) {
        std::string current;
        bool open = false; // a last line without an end is a line, if it has a character
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            if (bytes[i] == '\r' || bytes[i] == '\n') {
                if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n')
                    ++i;
                lines.push_back(current);
                current.clear();
                open = false;
            } else {
                current += bytes[i];
                open = true;
            }
        }
        if (open)
            lines.push_back(current);
    }

    static std::optional<std::int16_t> number(const std::string& text) {
        std::string clean;
        std::size_t i = 0;
        const auto digits = [&] {
            std::size_t count = 0;
            for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i, ++count)
                clean += text[i];
            return count;
        };
        while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
            ++i;
        if (i < text.size() && (text[i] == '-' || text[i] == '+'))
            clean += text[i++];
        std::size_t count = digits();
        if (i < text.size() && text[i] == '.') {
            clean += text[i++];
            count += digits();
        }
        if (count == 0)
            return 0;
        if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
            const std::string mantissa = clean;
            clean += text[i++];
            if (i < text.size() && (text[i] == '-' || text[i] == '+'))
                clean += text[i++];
            if (digits() == 0)
                clean = mantissa;
        }
        const double value = std::rint(std::strtod(clean.c_str(), nullptr));
        if (value < -32768 || value > 32767)
            return std::nullopt;
        return static_cast<std::int16_t>(value);
    }

    std::vector<std::string> fields() {
        std::vector<std::string> out;
        if (atEnd())
            return out;
        const std::string line = lines[next++];
        if (line.empty())
            return out;
        out.emplace_back();
        for (const char c : line) {
            if (c == ',')
                out.emplace_back();
            else
                out.back() += c;
        }
        return out;
    }

    void gridRow(ChannelGrid& grid, int row, int shift) {
        int k = 0;
        for (const std::string& field : fields()) {
            if (const auto value = number(field))
                grid.set(row, k + shift, *value);
            ++k;
        }
    }

    void read(std::string_view bytes, SngReader reader) {
        const bool newest = reader == SngReader::OpenPoliFile;
        const bool second = reader == SngReader::OpenPoliFile2;
        splitLines(bytes);
        score.ClearNoteArrays();
        for (int c = 0; c <= 12; ++c) {
            gridRow(score.NoteCell, c, 0);
            gridRow(score.NoteInstrument, c, 0);
            for (int p = 0; p <= score.NumNotes; ++p) {
                if (score.NoteCell.at(c, p) >= 1)
                    score.ChannelInUse[c] = true;
                if (c >= 8 && score.NoteInstrument.at(c, p) >= 1) {
                    if (c <= 11 && p <= 14)
                        score.BeatMemo[static_cast<std::size_t>(c - 7)][static_cast<std::size_t>(p + 1)] =
                            *score.NoteInstrument.at(c, p);
                }
            }
        }
        if (!newest && !atEnd()) {
            if (const auto tempo = number(lines[next++]))
                score.Tempo = *tempo;
            if (reader != SngReader::OpenSegment && score.Tempo > 400)
                score.Tempo = 400;
        }
        if (atEnd()) {
            for (int c = 0; c <= 12; ++c)
                score.ChannelInstrument[c] = *score.NoteInstrument.at(c, 0);
        } else {
            const auto codes = fields();
            for (std::size_t c = 0; c <= 12 && c < codes.size(); ++c) {
                if (const auto code = number(codes[c]))
                    score.ChannelInstrument[c] = *code;
            }
        }
        if (newest || second) {
            section(score.Polyphonics, 9, 0);
            for (ChannelGrid* grid : {&score.Volume, &score.Modulation_Change, &score.Pan_Change,
                                      &score.Reverb_Change, &score.Chorus_Change})
                section(*grid, 13, 1);
        }
        if (newest)
            keys();
        score.FindEndOfSong();
    }

    void section(ChannelGrid& grid, int rows, int shift) {
        if (atEnd())
            return;
        ++next;
        for (int row = 0; row < rows; ++row)
            gridRow(grid, row, shift);
    }

    void keys() {
        int beats = 0, meter = 0, value = 0;
        for (int count = 0; count < score.NumNotes && !atEnd(); ++count) {
            const std::string line = lines[next++];
            const auto has = [&line](const char* key) { return line.find(key) != std::string::npos; };
            const auto number16 =
                number(line.find('=') == std::string::npos ? "" : line.substr(line.find('=') + 1));
            if (number16 && has("Notes per measure="))
                beats = score.NotesPerMeasure = setup.TxBeats = *number16;
            if (number16 && has("Beats per measure="))
                meter = setup.TxtMeter = *number16;
            if (number16 && has("Note Value="))
                value = setup.NoteX = *number16;
            if (number16 && has("Tempo="))
                score.Tempo = *number16;
            if (beats >= 1 && meter >= 1 && value >= 1)
                break;
        }
    }
};

/// A file of any generation.
std::string someFile(std::minstd_rand& random, int numNotes) {
    const Score score = randomScore(random, numNotes);
    if (below(random, 3) != 0)
        return serializePoliFile(score, SetupState{});
    std::string text = serializeRecording(score.NoteCell.row(0), 24, score.Tempo);
    if (below(random, 2) == 0)
        text.resize(text.find("Polyphonics"));
    return text;
}

void damage(std::string& text, std::minstd_rand& random) {
    static const std::string kPieces[] = {
        ",",
        "-",
        "0",
        "1",
        "7",
        "999999",
        ".",
        ".5",
        "e1",
        "E-1",
        " ",
        "\t",
        "\r",
        "\n",
        "\r\n",
        "\r\n\r\n",
        std::string(1, '\0'),
        "\xFF",
        "32767",
        "32768",
        "-32768",
        "-32769",
        "1e999",
        "Tempo=",
        "Note Value=3",
        "Notes per measure=0",
        "Beats per measure=",
        "=",
        "+5",
        "00000000012",
        "12345678",
        "inf",
        "0x1",
        "2.5,",
    };
    const auto place = static_cast<std::size_t>(below(random, static_cast<int>(text.size()) + 1));
    const std::string& piece =
        kPieces[static_cast<std::size_t>(below(random, static_cast<int>(std::size(kPieces))))];
    switch (below(random, 5)) {
    case 0:
        text.insert(place, piece);
        break;
    case 1:
        text.replace(place, piece.size(), piece);
        break;
    case 2:
        text.erase(place, static_cast<std::size_t>(1 + below(random, 20)));
        break;
    case 3:
        text.insert(place, text.substr(place / 2, 40));
        break;
    default:
        if (below(random, 4) == 0)
            text.resize(place);
    }
}
} // namespace

TEST(SngReaderModelTest, DamagedFilesOfEveryGenerationAreReadAsTheLayoutSays) {
    std::minstd_rand random(20);
    int different = 0;
    for (int i = 0; i < stepsOfWalk(3000); ++i) {
        const int numNotes = below(random, 30);
        std::string text = someFile(random, 1 + below(random, 40));
        if (below(random, 4) == 0)
            std::erase(text, below(random, 2) ? '\r' : '\n');
        for (int times = below(random, 12); times > 0; --times)
            damage(text, random);
        Score before = randomScore(random, numNotes);
        before.ActiveChannel = below(random, kUsedChannels);
        before.TopDrumHint = below(random, 5);
        before.ChannelMuted[below(random, 13)] = true;
        before.Tempo = 500;
        for (const SngRules& rules : kSngRules) {
            Score got = before, wanted = before;
            SetupState gotSetup, wantedSetup;
            parseSng(text, rules.reader, got, gotSetup);
            Model{wanted, wantedSetup, {}}.read(text, rules.reader);
            expectSameScore(got, wanted);
            EXPECT_EQ(gotSetup.TxBeats, wantedSetup.TxBeats);
            EXPECT_EQ(gotSetup.TxtMeter, wantedSetup.TxtMeter);
            EXPECT_EQ(gotSetup.NoteX, wantedSetup.NoteX);
            ASSERT_FALSE(testing::Test::HasFailure())
                << "file " << i << ", reader " << static_cast<int>(rules.reader) << ":\n"
                << text;
            different += got.NoteCell != before.NoteCell ? 1 : 0;
        }
    }
    EXPECT_GT(different, stepsOfWalk(9000)); // the files do say something
}
