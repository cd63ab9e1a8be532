// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/KeepPhrase.h"
#include "keyboard/Phrase.h"
#include "shell/SkinnedWindow.h"
#include "synth/PhrasePlayer.h"

#include <vector>

class QAbstractButton;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;

namespace velmora {

class ChannelSquare;
class PhrasePaper;
class ReadOut;
struct Desk;

/// "Keep what I just played": the last phrase, as it would stand in the score.
///
/// | Control              | The user sees                              | What it does |
/// |----------------------|--------------------------------------------|--------------------------------------|
/// | `words`              | "The last phrase: 13 notes, ..."           | | | `paper`              | what
/// would be kept under what was played   |                                      | | `coarser`, `finer`   |
/// "Grid", its value between the two          | another grid: `changeGrid`           | | `legato`, `asPlayed`
/// | "Length of notes"                          | how long notes are                   | | `listen` |
/// "Listen"                                   | plays what would be kept, or ends it | | `channel` | the
/// square of the channel it goes to       | a menu of the melody channels        | | `notice`             |
/// what is replaced or finds no room, if any  |                                      | | `keep`, `cancel` |
/// "Keep", "Cancel"                           | `keep`, as is Enter; Esc             |
class KeepWindow : public SkinnedWindow {
public:
    /// @param owner the window over which it stands, in the middle
    KeepWindow(Desk& desk, QWidget* owner);

    /// Comes up with what was played last. Other windows wait until it is closed.
    void open();

    /// @param steps 1 for the next finer grid that there is, -1 for the next coarser one
    void changeGrid(int steps);
    void setLengths(NoteLengths lengths);
    void setChannel(int channel);
    void listen();
    void keep();

    [[nodiscard]] const KeepPlan& plan() const { return plan_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    class SquareButton;

    [[nodiscard]] QPushButton* addButton(QWidget& parent, const char* name, const char* caption,
                                         const QRect& place);
    void addGrid();
    void addLengths();
    void addFoot();
    void addTips();
    void popUpChannels();
    void showPlan();
    void showListening(bool on);
    [[nodiscard]] double secondsOfPosition() const;

    Desk& desk_;
    Phrase phrase_;
    std::vector<NoteGrid> grids_;
    KeepChoice choice_;
    KeepPlan plan_;
    PhrasePlayer player_;

    QLabel* words_;
    PhrasePaper* paper_;
    QPushButton* coarser_ = nullptr;
    ReadOut* grid_ = nullptr;
    QPushButton* finer_ = nullptr;
    QRadioButton* legato_ = nullptr;
    QRadioButton* asPlayed_ = nullptr;
    QLabel* notice_ = nullptr;
    QPushButton* listen_ = nullptr;
    QLabel* goesTo_ = nullptr;
    SquareButton* channel_ = nullptr;
    QPushButton* keep_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

} // namespace velmora
