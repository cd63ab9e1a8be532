// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/ScoreSetup.h"
#include "notation/Sheets.h"
#include "notation/WrittenScore.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmora {
struct Workspace;
} // namespace velmora

namespace velmora::notation {

class TextMeasure;

/// A score as pages: what the panels say, the pages that were made of it, and the words on them. There is one
/// in the program; the Songwriter shows it and the print window prints it. It reads the composition, and of
/// that it changes alone which channels are shown.
class SongDocument {
public:
    /// @param home the folder in which `default.lyr` stands
    SongDocument(Workspace& workspace, const std::filesystem::path& home);
    ~SongDocument();
    SongDocument(const SongDocument&) = delete;
    SongDocument& operator=(const SongDocument&) = delete;

    ScoreSetup setup;
    bool allChannels = true; ///< "Write all channels"; otherwise the one of the staff below alone
    int staff = 1;           ///< `Opt`(1 to 5)

    /// How a command ended. Words are for the user, and blank where there is nothing to say.
    struct Outcome {
        bool done = false;
        std::string words{};
    };
    using GoOn = std::function<bool(int pages)>;

    std::function<void()> onPages; ///< pages or texts have changed

    // Pages count from 1. A page that was closed keeps its place.
    [[nodiscard]] Sheets& sheets() { return sheets_; }
    [[nodiscard]] int count() const { return sheets_.count(); }
    [[nodiscard]] bool isOpen(int page) const {
        return page >= 1 && page <= count() && !closed_.contains(page);
    }
    [[nodiscard]] std::vector<int> openPages() const;
    [[nodiscard]] const std::string& caption(int page) const;
    /// "Page 2 of 3, 40 bars in all"; without the bars before anything was written.
    [[nodiscard]] std::string pageInWords(int page) const;
    void closePage(int page);
    /// A blank page behind the last. @return its number
    int AddPage();
    /// The score as pages, in place of those that are there. With `newScore` the staves are assigned first.
    /// Texts stay in careful manners, and go with their pages in classic ones.
    /// @param goOn asked after each page; false ends with the pages so far
    Outcome WriteFromNotes(const GoOn& goOn = {});
    /// The same with the staves as they are, and with all texts.
    Outcome RewriteFromNotes(const GoOn& goOn = {});
    /// "New Score": no pages, no texts, no words.
    void clear();

    /// Ticks a box of the channels, or takes the tick off; false if that would be one staff too many.
    bool tick(int box, bool ticked);
    /// One staff more or fewer of that clef, with the next channel that has notes.
    bool changeStaves(StaffClef clef, int count);
    [[nodiscard]] int staves(StaffClef clef) const;
    /// The last position written: `Text5`.
    [[nodiscard]] int end() const;

    // Texts. What is done with them is unsaved until they are saved.
    void place(LyricsItem item);
    /// Replaces a page's texts.
    void setTexts(int page, std::vector<LyricsItem> items);
    /// The text at a point of a page, by its index among the page's; -1 for none.
    [[nodiscard]] int textAt(int page, Point at) const;
    /// "Edit Text": the page's lines as one text with CR LF between them, and the way back. A line that is
    /// none of a text is left out; one with another page's number goes there.
    [[nodiscard]] std::string linesOf(int page) const;
    void setLinesOf(int page, const std::string& lines);

    /// @return the words if the file can't be read or written; nothing has changed then
    Outcome OpenLyrics(const std::filesystem::path& file);
    Outcome SaveLyrics(const std::filesystem::path& file, double frame, double sheet);
    /// The temporary store beside the user's scores; without a title.
    Outcome SaveDefaultLyrics();
    Outcome LoadDefaultLyrics();
    [[nodiscard]] const std::filesystem::path& lyricsFile() const { return file_; }
    /// A name for the lyrics: their own, or that of the score; blank for neither.
    [[nodiscard]] std::filesystem::path proposedLyrics() const;
    /// Whether there is anything that a lyrics file would keep, and whether it is not in one yet.
    [[nodiscard]] bool hasLyrics() const;
    [[nodiscard]] bool isUnsaved() const { return unsaved_ && hasLyrics(); }
    /// The title or other words have been typed.
    void wordsTyped() { unsaved_ = true; }

    /// `MDIScore.Width` and `MDIScore.ActiveForm.Width`, in twips, of the file opened last or of the windows
    /// as the score was written; 0 for none.
    double frameWidth = 0;
    double sheetWidth = 0;

private:
    Outcome write(const GoOn& goOn);
    [[nodiscard]] ScoreSetup writtenSetup() const;
    void show(const StaffChoice& staves);
    void setPages(EngravedScore pages);
    void addPages(int wanted);
    [[nodiscard]] LyricsFile values() const;
    void take(const LyricsFile& file);
    TextMeasure& measure();
    void tell() const;

    Workspace& workspace_;
    std::filesystem::path default_;
    std::filesystem::path file_;
    Sheets sheets_;
    std::set<int> closed_;
    std::unique_ptr<TextMeasure> measure_;
    int bars_ = 0; ///< of the score as it was written
    bool unsaved_ = false;
};

/// The caption of a page that is added by hand.
[[nodiscard]] std::string captionOf(const std::string& title, int page);

} // namespace velmora::notation
