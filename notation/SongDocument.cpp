// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/SongDocument.h"

#include "base/Dialogs.h"
#include "base/Files.h"
#include "base/Text.h"
#include "composition/Changes.h"
#include "composition/Workspace.h"
#include "notation/Engraver.h"
#include "notation/Keys.h"
#include "notation/LyricsExtras.h"
#include "notation/ModScore.h"
#include "notation/PageFiles.h"
#include "notation/TextMeasure.h"

#include <algorithm>
#include <cmath>
#include <system_error>
#include <utility>

namespace velmora::notation {

namespace fs = std::filesystem;

namespace {
constexpr int kMelodyBoxes = 8;
constexpr int kBoxes = 12;
constexpr int kLeastSize = 10; ///< of the three heights and widths, in pixels
constexpr int kMostSize = 300;
constexpr int kMostPages = 1000; ///< that a lyrics file may ask for
constexpr const char* kNoMeasure = "A measure has no notes. Set the beats of a measure in the setup toolbar.";

/// A number of a lyrics file as one of the three sizes.
void take(const std::optional<double>& number, int& size) {
    if (number && std::isfinite(*number))
        size = static_cast<int>(std::lround(std::clamp<double>(*number, kLeastSize, kMostSize)));
}

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t end = std::min(text.find('\n', from), text.size());
        std::string line = text.substr(from, end - from);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty())
            lines.push_back(std::move(line));
        from = end + 1;
    }
    return lines;
}
} // namespace

std::string captionOf(const std::string& title, int page) {
    const std::string name = title.empty() ? " Untitled Score -           " : title + "         ";
    return name + "Page " + std::to_string(page);
}

SongDocument::SongDocument(Workspace& workspace, const fs::path& home)
    : workspace_(workspace)
    , default_(home / "default.lyr") {
    setup.classicPage = workspace.manners == Manners::classic();
    setup.key = setup.classicPage ? 0 : kAutomaticKey;
}

SongDocument::~SongDocument() = default;

TextMeasure& SongDocument::measure() {
    if (!measure_)
        measure_ = fontMeasure();
    return *measure_;
}

void SongDocument::tell() const {
    if (onPages)
        onPages();
}

// Pages.

std::vector<int> SongDocument::openPages() const {
    std::vector<int> pages;
    for (int page = 1; page <= count(); ++page)
        if (!closed_.contains(page))
            pages.push_back(page);
    return pages;
}

const std::string& SongDocument::caption(int page) const {
    return sheets_.engraved().pages.at(static_cast<std::size_t>(page - 1)).caption;
}

std::string SongDocument::pageInWords(int page) const {
    std::string words = "Page " + std::to_string(page) + " of " + std::to_string(count());
    if (bars_ > 0)
        words += ", " + std::to_string(bars_) + (bars_ == 1 ? " bar" : " bars") + " in all";
    return words;
}

void SongDocument::closePage(int page) {
    if (!isOpen(page))
        return;
    closed_.insert(page);
    tell();
}

void SongDocument::setPages(EngravedScore pages) {
    sheets_.setPages(std::move(pages));
    closed_.clear();
}

int SongDocument::AddPage() {
    addPages(count() + 1);
    tell();
    return count();
}

/// Blank ones, until there are @p wanted.
void SongDocument::addPages(int wanted) {
    const ScoreSetup used = writtenSetup();
    EngravedScore& engraved = sheets_.engraved();
    if (engraved.pages.empty()) {
        engraved.width = used.pageWidth;
        engraved.height = used.pageHeight;
    }
    WrittenScore written = workspace_.score.NotesPerMeasure < 1
                               ? WrittenScore{}
                               : readScore(workspace_.score, workspace_.setup, used);
    if (written.staves.empty())
        written.staves = stavesOf(used.staves);
    for (int page = count() + 1; page <= wanted; ++page) {
        EngravedPage blank = DrawBlankPage(engraved, written, used, measure(), page);
        blank.caption = captionOf(setup.title, page);
        sheets_.addPage(std::move(blank));
    }
}

SongDocument::Outcome SongDocument::WriteFromNotes(const GoOn& goOn) {
    if (workspace_.score.NotesPerMeasure < 1)
        return {false, kNoMeasure};
    Outcome kept{true};
    if (workspace_.manners.keepsPlacedTexts) {
        if (!sheets_.items().empty())
            kept = SaveDefaultLyrics();
    } else {
        sheets_.setItems({});
    }
    workspace_.score.FindEndOfSong();
    if (setup.newScore)
        setup.staves = AssignStaves(workspace_.score, workspace_.score.NotesPerMeasure);
    Outcome written = write(goOn);
    if (written.words.empty())
        written.words = kept.words;
    return written;
}

SongDocument::Outcome SongDocument::RewriteFromNotes(const GoOn& goOn) {
    if (workspace_.score.NotesPerMeasure < 1)
        return {false, kNoMeasure};
    const Outcome kept = SaveDefaultLyrics(); // what can't be kept there is still in memory
    workspace_.score.FindEndOfSong();
    Outcome written = write(goOn);
    if (!workspace_.manners.keepsPlacedTexts && kept.done)
        LoadDefaultLyrics(); // which takes the blanks before a text off
    if (written.words.empty())
        written.words = kept.words;
    return written;
}

/// What is read and engraved: the panels, less the staves that aren't wanted.
ScoreSetup SongDocument::writtenSetup() const {
    ScoreSetup written = setup;
    written.newScore = false; // the staves have been assigned, if they were to be
    if (written.classicPage && written.key == kAutomaticKey)
        written.key = 0;
    if (allChannels)
        return written;
    const std::vector<Staff> staves = stavesOf(setup.staves);
    const auto index = static_cast<std::size_t>(staff - 1);
    written.staves.chkChannel = {};
    if (index < staves.size())
        written.staves.chkChannel.at(static_cast<std::size_t>(boxOfChannel(staves[index].channel))) = true;
    return written;
}

/// A staff whose channel is not shown would stay empty.
void SongDocument::show(const StaffChoice& staves) {
    std::optional<Edit> edit;
    for (int box = 0; box < kBoxes; ++box) {
        const int channel = channelOfBox(box);
        if (!staves.chkChannel[static_cast<std::size_t>(box)] || workspace_.score.ChannelShown[channel])
            continue;
        if (!edit)
            edit.emplace(workspace_, Change::Channels);
        workspace_.score.ChannelShown[channel] = true;
    }
}

SongDocument::Outcome SongDocument::write(const GoOn& goOn) {
    const ScoreSetup written = writtenSetup();
    show(written.staves);
    const WrittenScore score = readScore(workspace_.score, workspace_.setup, written);
    bars_ = score.bars();
    bool whole = true;
    EngravedScore pages = WriteScore(score, written, measure(), [&](int done) {
        whole = !goOn || goOn(done);
        return whole;
    });
    setPages(std::move(pages));
    tell();
    return {whole};
}

void SongDocument::clear() {
    setPages({});
    bars_ = 0;
    sheets_.setItems({});
    setup.title = setup.composer = setup.tempoWords = {};
    setup.verses.clear();
    file_.clear();
    unsaved_ = false;
    tell();
}

// The channels' panel.

bool SongDocument::tick(int box, bool ticked) {
    StaffChoice choice = setup.staves;
    choice.chkChannel.at(static_cast<std::size_t>(box)) = ticked;
    if (ticked && choice.StaffCount() > kMostStaves)
        return false;
    setup.staves = choice;
    return true;
}

int SongDocument::staves(StaffClef clef) const {
    return clef == StaffClef::Treble ? setup.staves.TrebleStaves()
           : clef == StaffClef::Bass ? setup.staves.BassStaves()
                                     : setup.staves.DrumStaves();
}

bool SongDocument::changeStaves(StaffClef clef, int count) {
    const bool drums = clef == StaffClef::Percussion;
    const int first = drums ? kMelodyBoxes : 0;
    const int last = drums ? kBoxes : kMelodyBoxes;
    const auto box = [](int index) { return static_cast<std::size_t>(index); };
    const auto isOfClef = [&](int index) {
        return drums || setup.staves.ChkNotetype[box(index)] == (clef == StaffClef::Bass);
    };
    if (count < staves(clef)) {
        for (int index = last - 1; index >= first; --index)
            if (setup.staves.chkChannel[box(index)] && isOfClef(index))
                return tick(index, false);
        return false;
    }
    if (count == staves(clef))
        return true;
    int next = -1;
    for (int index = last - 1; index >= first; --index)
        if (!setup.staves.chkChannel[box(index)] &&
            (next < 0 || workspace_.score.ChannelInUse[channelOfBox(index)]))
            next = index;
    if (next < 0 || !tick(next, true))
        return false;
    if (!drums)
        setup.staves.ChkNotetype[box(next)] = clef == StaffClef::Bass;
    return true;
}

int SongDocument::end() const {
    return setup.end >= 0 ? setup.end : workspace_.score.SongEnd;
}

// Texts.

void SongDocument::place(LyricsItem item) {
    sheets_.place(std::move(item));
    unsaved_ = true;
    tell();
}

void SongDocument::setTexts(int page, std::vector<LyricsItem> items) {
    sheets_.setItemsOf(page, std::move(items));
    unsaved_ = true;
    tell();
}

int SongDocument::textAt(int page, Point at) const {
    const std::vector<LyricsItem> items = sheets_.itemsOf(page);
    for (std::size_t i = items.size(); i-- > 0;) { // what was placed later lies above
        const LyricsItem& item = items[i];
        PlainTextMeasure measure;
        const TextExtent room = measure.extent(item.text, {.family = item.font, .points = item.size});
        const double height = std::max(room.height, item.size * 1.5);
        const double width = std::max(room.width, item.size);
        if (at.x >= item.left && at.x < item.left + width && at.y >= item.top && at.y < item.top + height)
            return static_cast<int>(i);
    }
    return -1;
}

std::string SongDocument::linesOf(int page) const {
    std::string lines;
    for (const LyricsItem& item : sheets_.itemsOf(page))
        lines += (lines.empty() ? "" : "\r\n") + (item.line.empty() ? lineOf(item) : item.line);
    return lines;
}

void SongDocument::setLinesOf(int page, const std::string& lines) {
    std::vector<LyricsItem> items;
    std::vector<LyricsItem> elsewhere;
    for (const std::string& line : splitLines(lines))
        for (LyricsItem& item : parseLyrics(line + "\r\n").items)
            (item.page == page || item.page < 1 ? items : elsewhere).push_back(std::move(item));
    for (LyricsItem& item : elsewhere)
        sheets_.place(std::move(item));
    setTexts(page, std::move(items));
}

// Lyrics files.

LyricsFile SongDocument::values() const {
    LyricsFile file;
    file.width = frameWidth;
    file.sheetWidth = sheetWidth;
    file.SpacerHeight = setup.SpacerHeight;
    file.BarWidth = setup.BarWidth;
    file.HeaderHeight = setup.HeaderHeight;
    file.key = setup.key;
    file.start = setup.start;
    file.text1 = "";
    file.items = sheets_.items();
    return file;
}

void SongDocument::take(const LyricsFile& file) {
    if (file.title)
        setup.title = *file.title;
    notation::take(file.SpacerHeight, setup.SpacerHeight);
    notation::take(file.BarWidth, setup.BarWidth);
    notation::take(file.HeaderHeight, setup.HeaderHeight);
    if (file.key && *file.key >= kAutomaticKey && *file.key < static_cast<int>(kKeys.size()))
        setup.key = *file.key;
    if (file.start)
        setup.start = std::max(*file.start, 0);
    frameWidth = file.width.value_or(0);
    sheetWidth = file.sheetWidth.value_or(0);
}

SongDocument::Outcome SongDocument::OpenLyrics(const fs::path& file) {
    const TextFile read = readTextFile(file);
    if (read.problem != TextProblem::None)
        return {false, "\"" + file.string() + "\" is no lyrics file that can be read."};
    const LyricsFile lyrics = parseLyrics(read.text);
    take(lyrics);
    takeExtras(lyrics.extras, setup);
    // In classic manners a file's texts join those that are there.
    std::vector<LyricsItem> items;
    if (!workspace_.manners.keepsPlacedTexts)
        items = sheets_.items();
    items.insert(items.end(), lyrics.items.begin(), lyrics.items.end());
    sheets_.setItems(std::move(items));
    int last = 0;
    for (const LyricsItem& item : lyrics.items)
        last = std::max(last, item.page);
    if (openPages().empty()) {
        setPages({});
        addPages(std::min(last, kMostPages));
    }
    file_ = file;
    unsaved_ = false;
    tell();
    return {true};
}

SongDocument::Outcome SongDocument::SaveLyrics(const fs::path& file, double frame, double sheet) {
    LyricsFile lyrics = values();
    lyrics.title = setup.title;
    lyrics.width = frame;
    lyrics.sheetWidth = sheet;
    const fs::path named = withExtension(file.string(), ".lyr");
    lyrics.extras = extrasOf(setup);
    std::string problem = replaceFile(named, serializeLyrics(lyrics));
    if (!problem.empty())
        return {false, std::move(problem)};
    file_ = named;
    unsaved_ = false;
    return {true};
}

SongDocument::Outcome SongDocument::SaveDefaultLyrics() {
    std::error_code error;
    fs::create_directories(default_.parent_path(), error); // where it fails the write says so
    std::string problem = replaceFile(default_, serializeLyrics(values()));
    return {problem.empty(), std::move(problem)};
}

SongDocument::Outcome SongDocument::LoadDefaultLyrics() {
    const TextFile read = readTextFile(default_);
    if (read.problem != TextProblem::None)
        return {};
    const LyricsFile lyrics = parseLyrics(read.text);
    take(lyrics);
    sheets_.setItems(lyrics.items);
    unsaved_ = unsaved_ || !lyrics.items.empty();
    tell();
    return {true};
}

fs::path SongDocument::proposedLyrics() const {
    if (!file_.empty())
        return file_;
    if (workspace_.score.currentFile.empty())
        return {};
    return fs::path(workspace_.score.currentFile).replace_extension(".lyr");
}

bool SongDocument::hasLyrics() const {
    return !setup.title.empty() || !setup.composer.empty() || !setup.tempoWords.empty() ||
           !setup.verses.empty() || !sheets_.items().empty();
}

} // namespace velmora::notation
