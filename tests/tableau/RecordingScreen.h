// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/NoteReadout.h"
#include "composition/Workspace.h"
#include "tableau/TableauScreen.h"

#include <algorithm>
#include <array>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

/// A screen that keeps what it is asked and told, as words, and behaves like a window where a gesture depends
/// on it.
class RecordingScreen : public TableauScreen, private Watcher {
public:
    explicit RecordingScreen(Workspace& workspace)
        : workspace_(workspace)
        , watching_(workspace.watchers.join(*this)) {}

    int width(Box /*box*/) const override { return pixels; }
    void GetRow(Box box, int row) override { keep("GetRow", {index(box), row}); }
    void PutRow(Box box, int row) override { keep("PutRow", {index(box), row}); }
    void GetBox() override { keep("GetBox"); }
    void PutBox() override { keep("PutBox"); }
    void drawPressBall(int row, int column) override { keep("drawPressBall", {row, column}); }
    void drawBand(Box box, int row, int from, int to) override {
        keep("drawBand", {index(box), row, from, to});
    }
    void drawSelectEdge(int column) override { keep("drawSelectEdge", {column}); }
    void blendSelectStrip() override { keep("blendSelectStrip"); }
    void drawSelectDrag(int from, int to) override { keep("drawSelectDrag", {from, to}); }
    void setPointer(Box box, Pointer pointer) override {
        pointers[static_cast<std::size_t>(index(box))] = pointer;
    }
    void setToolText(std::string_view caption, std::string_view text) override {
        if (!quiet) {
            toolCaption = caption;
            toolText = text;
        }
    }
    void showEffects(int modulation, int pan, int reverb, int chorus) override {
        keep("showEffects", {modulation, pan, reverb, chorus});
    }
    void doNotemod(int position) override { keep("doNotemod", {position}); }
    void showNote(const NoteReadout& note, int column) override {
        shown = note;
        keep("showNote", {column});
    }
    void advanceScroll(int columns) override {
        workspace_.view.ViewFirstColumn += columns;
        keep("advanceScroll", {columns});
    }
    void setScrollMaximum(int maximum) override { keep("setScrollMaximum", {maximum}); }
    void openEditMenu() override {
        keep("openEditMenu");
        if (inMenu)
            inMenu();
    }
    void openFileMenu() override { keep("openFileMenu"); }
    void showTip(Box box) override { keep("showTip", {index(box)}); }

    [[nodiscard]] Pointer pointer(Box box) const { return pointers[static_cast<std::size_t>(index(box))]; }
    [[nodiscard]] long count(const std::string& call) const {
        return std::count(calls.begin(), calls.end(), call);
    }
    /// The calls of one kind, in order.
    [[nodiscard]] std::vector<std::string> callsOf(const std::string& name) const {
        std::vector<std::string> list;
        for (const std::string& call : calls)
            if (call == name || call.rfind(name + ' ', 0) == 0)
                list.push_back(call);
        return list;
    }

    int pixels = 1207; ///< a hundred columns and a bit
    bool quiet = false;
    std::vector<std::string> calls;
    std::array<Pointer, 2> pointers{};
    std::string toolCaption;
    std::string toolText;
    NoteReadout shown;
    std::function<void()> inMenu; ///< what the user does while the Edit menu is open

private:
    void changed(Changes changes) override {
        if (changes.any(Change::Channels))
            keep("channel", {workspace_.score.ActiveChannel});
        if (changes.any(Change::Cells))
            keep("melody");
        if (changes.any(Change::Beats))
            keep("beats");
        if (changes.any(Change::Marks))
            keep("marks");
    }
    static int index(Box box) { return static_cast<int>(box); }
    void keep(const char* name, std::initializer_list<int> numbers = {}) {
        if (quiet)
            return;
        std::string call = name;
        for (const int number : numbers)
            call.append(" ").append(std::to_string(number));
        calls.push_back(std::move(call));
    }

    Workspace& workspace_;
    Guests<Watcher>::Stay watching_;
};

} // namespace velmora
