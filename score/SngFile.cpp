// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/SngFile.h"

#include "base/Files.h"
#include "score/Numbers.h"
#include "score/Score.h"
#include "score/SngContents.h"
#include "score/SngText.h"
#include "sound/SetupState.h"

#include <algorithm>

namespace velmora {

namespace {
void readNotes(SngLines& lines, Score& score) {
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        markInUse(score, channel, lines.row(score.NoteCell.row(channel)));
        rememberBeats(score, channel, lines.row(score.NoteInstrument.row(channel)));
    }
}

void readTempoLine(SngLines& lines, Score& score, std::optional<std::int16_t> cap) {
    if (const auto tempo = parseInt16(lines.line()))
        score.Tempo = *tempo;
    if (cap)
        score.Tempo = std::min(score.Tempo, *cap);
}

/// A text that ends here gives each channel the instrument of its first cell.
void readChannelInstruments(SngLines& lines, Score& score) {
    if (!lines.atEnd()) {
        lines.row(std::span(score.ChannelInstrument).first(kUsedChannels));
        return;
    }
    for (int channel = 0; channel < kUsedChannels; ++channel)
        score.ChannelInstrument[channel] = score.NoteInstrument.valueOr(channel, 0, 0);
}

void readSections(SngLines& lines, Score& score) {
    lines.line(); // taken for the keyword, whatever it says, as below
    for (int row = 0; row < kPolyphonicsRows; ++row)
        lines.row(score.Polyphonics.row(row));
    for (const EffectSection& section : kEffectSections) {
        lines.line();
        for (int channel = 0; channel < kUsedChannels; ++channel)
            lines.row((score.*section.grid).row(channel).subspan(1));
    }
}

/// The search ends when this text has named all three meter values, or after as many lines as there are
/// notes.
void readKeyLines(SngLines& lines, Score& score, SetupState& setup) {
    MeterFields read;
    for (int count = 0; count < score.NumNotes && !lines.atEnd() && !read.complete(); ++count)
        applyKeyLine(lines.line(), score, setup, read);
}

bool open(const std::filesystem::path& path, SngReader reader, Score& score, SetupState& setup) {
    // The whole file first: a score that can't be read must not cost the one in memory.
    const TextFile file = readTextFile(path);
    if (file.problem != TextProblem::None)
        return false;
    parseSng(file.text, reader, score, setup);
    return true;
}

std::size_t fieldCount(std::string_view line) {
    constexpr std::size_t kBlock = 32; // counted together
    std::size_t commas = 0;
    std::size_t at = 0;
    for (; at + kBlock <= line.size(); at += kBlock) {
        std::uint8_t found = 0;
        for (std::size_t i = 0; i < kBlock; ++i)
            found = static_cast<std::uint8_t>(found + (line[at + i] == ',' ? 1 : 0));
        commas += found;
    }
    commas += static_cast<std::size_t>(std::ranges::count(line.substr(at), ','));
    return line.empty() ? 0 : commas + 1;
}
} // namespace

SngForm formOf(std::string_view bytes) {
    SngLines lines(withoutByteOrderMark(bytes));
    for (int row = 0; row < 2 * kUsedChannels; ++row)
        lines.line();
    if (fieldCount(lines.line()) != 1)
        return SngForm::Newest;
    lines.line();
    return lines.line() == kPolyphonicsKeyword ? SngForm::Second : SngForm::First;
}

SngReader openingReader(std::string_view bytes) {
    return formOf(bytes) == SngForm::Second ? SngReader::OpenPoliFile2 : SngReader::OpenPoliFile;
}

void parseSng(std::string_view bytes, SngReader reader, Score& score, SetupState& setup) {
    const SngRules& rules = kSngRules[static_cast<std::size_t>(reader)];
    SngLines lines(withoutByteOrderMark(bytes));
    score.ClearNoteArrays();
    readNotes(lines, score);
    if (rules.form != SngForm::Newest && !lines.atEnd())
        readTempoLine(lines, score, rules.tempoCap);
    readChannelInstruments(lines, score);
    if (rules.form != SngForm::First)
        readSections(lines, score);
    if (rules.form == SngForm::Newest)
        readKeyLines(lines, score, setup);
    score.FindEndOfSong();
}

bool OpenPoliFile(const std::filesystem::path& path, Score& score, SetupState& setup) {
    return open(path, SngReader::OpenPoliFile, score, setup);
}

bool OpenFile(const std::filesystem::path& path, Score& score, SetupState& setup) {
    return open(path, SngReader::OpenFile, score, setup);
}

bool OpenPoliFile2(const std::filesystem::path& path, Score& score, SetupState& setup) {
    return open(path, SngReader::OpenPoliFile2, score, setup);
}

bool OpenSegment(const std::filesystem::path& path, Score& score, SetupState& setup) {
    return open(path, SngReader::OpenSegment, score, setup);
}

std::size_t longestRow(std::string_view bytes) {
    SngLines lines(withoutByteOrderMark(bytes));
    std::size_t longest = 0;
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        longest = std::max(longest, fieldCount(lines.line()));
        lines.line(); // the instruments
    }
    return longest;
}

std::string serializePoliFile(const Score& score, const SetupState& setup) {
    return serialize(sngContents(score, setup));
}

std::string SavePoliFile(const Score& score, const SetupState& setup) {
    if (score.currentFile.empty())
        return {};
    // The file is replaced in one step, so an old one needs no deleting and no wait until it is gone.
    return replaceFile(score.currentFile, serializePoliFile(score, setup));
}

std::string serializeRecording(std::span<const std::int16_t> cells, std::int16_t instrument,
                               std::int16_t tempo) {
    SngWriter out(100 * (cells.size() + 1));
    out.row(cells);
    out.row(instrument, cells.size());
    for (int channel = 1; channel < kUsedChannels; ++channel) {
        out.row(kEmptyCell, 1);
        out.row(instrument, 1);
    }
    out.line((tempo < 0 ? "" : " ") + std::to_string(tempo) + " "); // the sign takes the place of the blank
    out.row(instrument, kUsedChannels);
    out.line(kPolyphonicsKeyword);
    for (int row = 0; row < kPolyphonicsRows; ++row)
        out.row(0, cells.size() + 1);
    for (const EffectSection& section : kEffectSections) {
        out.line(section.keyword);
        for (int channel = 0; channel < kUsedChannels; ++channel)
            out.row(section.cleared, cells.size());
    }
    return out.take();
}

} // namespace velmora
