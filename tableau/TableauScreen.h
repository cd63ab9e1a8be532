// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <string_view>

namespace velmora {

struct NoteReadout;

/// The two Tableaux: melody above, percussion below.
enum class Box : std::uint8_t { MusicBox, Beatbox };
enum class MouseButton : std::uint8_t { None = 0, Left = 1, Right = 2 };
/// The arrow at rest, a pencil while a note is drawn, and one each for the modes Cursor and Select.
enum class Pointer : std::uint8_t { Arrow, Pencil, Cursor, Select };

/// What gestures ask of the composing window, beside what it learns as a watcher of the composition. Columns
/// and rows are those of the view, positions are the Score's.
class TableauScreen {
public:
    virtual ~TableauScreen() = default;

    [[nodiscard]] virtual int width(Box box) const = 0; ///< pixels

    virtual void GetRow(Box box, int row) = 0; ///< saves the strip of a row
    virtual void PutRow(Box box, int row) = 0; ///< puts it back: the rubber band is gone
    virtual void GetBox() = 0;                 ///< saves the whole of `MusicBox`
    virtual void PutBox() = 0;
    virtual void drawPressBall(int row, int column) = 0;
    virtual void drawBand(Box box, int row, int fromColumn, int toColumn) = 0;
    virtual void drawSelectEdge(int column) = 0; ///< a blue box 4 wide, full height
    virtual void blendSelectStrip() = 0;         ///< `BlueBox` over the strip of the last paint
    /// A filled box over full height; @p toColumn may lie before @p fromColumn.
    virtual void drawSelectDrag(int fromColumn, int toColumn) = 0;

    virtual void setPointer(Box box, Pointer pointer) = 0;
    virtual void setToolText(std::string_view caption, std::string_view text) = 0;
    virtual void showEffects(int modulation, int pan, int reverb, int chorus) = 0; ///< `L1a` to `L4a`
    virtual void doNotemod(int position) = 0;
    virtual void showNote(const NoteReadout& note, int column) = 0; ///< `Pic2a` and its labels

    virtual void advanceScroll(int columns) = 0;    ///< `HScroll1` + columns
    virtual void setScrollMaximum(int maximum) = 0; ///< of `HScroll1`
    virtual void openEditMenu() = 0;                ///< at the mouse; returns when it is closed
    virtual void openFileMenu() = 0;                ///< likewise
    virtual void showTip(Box box) = 0;              ///< about the Tableau
};

} // namespace velmora
