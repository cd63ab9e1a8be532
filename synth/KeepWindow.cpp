// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeepWindow.h"

#include "base/QtText.h"
#include "composition/Workspace.h"
#include "keyboard/PlayedLog.h"
#include "parts/ChannelColours.h"
#include "parts/ChannelSquare.h"
#include "parts/Desk.h"
#include "parts/Windows.h"
#include "score/PlaybackEngine.h"
#include "score/Score.h"
#include "shell/ExToolTip.h"
#include "shell/ReadOut.h"
#include "shell/SkinIcon.h"
#include "shell/SkinPainter.h"
#include "synth/PhrasePaper.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>

#include <algorithm>

namespace velmora {

namespace {
constexpr int kMargin = 12;
constexpr int kWidth = 484;
constexpr int kInner = kWidth - 2 * kMargin;
constexpr QRect kWords(kMargin, 10, kInner, 18);
constexpr QRect kPaper(kMargin - 1, 31, kInner + 2, 122);
constexpr QRect kGrid(kMargin, 160, 224, 80);
constexpr QRect kLengths(kMargin + 232, 160, kInner - 232, 80);
constexpr int kNoticeTop = 246;
constexpr int kNoticeLine = 16;
constexpr int kNoticeLines = 2;
constexpr int kFoot = 252; ///< the buttons, where there is no notice
constexpr int kButton = 32;
constexpr int kSquare = 20;
} // namespace

/// The channel's square; the square itself takes no mouse.
class KeepWindow::SquareButton : public QAbstractButton {
public:
    explicit SquareButton(QWidget* parent) : QAbstractButton(parent), square_(new ChannelSquare(0, this)) {
        square_->setAttribute(Qt::WA_TransparentForMouseEvents);
        resize(kSquare, kSquare);
    }
    void setChannel(int channel) {
        square_->setChannel(channel);
        setAccessibleName("Goes to " + square_->accessibleName());
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {} // the square does

private:
    ChannelSquare* square_;
};

KeepWindow::KeepWindow(Desk& desk, QWidget* owner)
    : SkinnedWindow(desk.skins, {}, owner, Qt::Dialog)
    , desk_(desk)
    , phrase_(lastPhrase(desk.played, meterOf(desk.workspace.setup)))
    , grids_(gridsFor(desk.workspace))
    , choice_(firstChoice(desk.workspace, phrase_))
    , player_(desk.port)
    , words_(new QLabel(Ibak5()))
    , paper_(new PhrasePaper(look(), Ibak5())) {
    setObjectName("KeepWindow");
    setWindowTitle(toQString(kKeepName));
    setWindowModality(Qt::ApplicationModal);
    setAttribute(Qt::WA_QuitOnClose, false);
    words_->setObjectName("words");
    words_->setGeometry(kWords);
    words_->setText(toQString(phraseText(phrase_)));
    paper_->setObjectName("paper");
    paper_->setGeometry(kPaper);
    addGrid();
    addLengths();
    addFoot();
    addTips();
    player_.onEnd = [this] { showListening(false); };
    showPlan();
    const bool played = !phrase_.notes.empty();
    for (QWidget* control : std::initializer_list<QWidget*>{legato_, asPlayed_, listen_, channel_, keep_})
        control->setEnabled(played);
    (played ? keep_ : cancel_)->setDefault(true);
    (played ? keep_ : cancel_)->setFocus();
}

QPushButton* KeepWindow::addButton(QWidget& parent, const char* name, const char* caption,
                                   const QRect& place) {
    auto* button = new QPushButton(caption, &parent);
    button->setObjectName(name);
    button->setGeometry(place);
    return button;
}

void KeepWindow::addGrid() {
    auto* group = new QGroupBox("Grid", Ibak5());
    group->setGeometry(kGrid);
    coarser_ = addButton(*group, "coarser", "Coarser", {12, 40, 60, 24});
    grid_ = new ReadOut(look(), "grid", group);
    grid_->setGeometry(76, 42, 72, 20);
    grid_->setAlignment(Qt::AlignCenter);
    finer_ = addButton(*group, "finer", "Finer", {152, 40, 60, 24});
    connect(coarser_, &QPushButton::clicked, this, [this] { changeGrid(-1); });
    connect(finer_, &QPushButton::clicked, this, [this] { changeGrid(1); });
}

void KeepWindow::addLengths() {
    auto* group = new QGroupBox("Length of notes", Ibak5());
    group->setGeometry(kLengths);
    const auto add = [this, group](const char* name, const char* caption, int y, NoteLengths lengths) {
        auto* radio = new QRadioButton(caption, group);
        radio->setObjectName(name);
        radio->setGeometry(12, y, std::min(radio->sizeHint().width(), group->width() - 24), 20);
        radio->setChecked(lengths == choice_.lengths);
        connect(radio, &QRadioButton::clicked, this, [this, lengths] { setLengths(lengths); });
        return radio;
    };
    legato_ = add("legato", "Legato: each to the next", 33, NoteLengths::Legato);
    asPlayed_ = add("asPlayed", "As played", 55, NoteLengths::AsPlayed);
}

void KeepWindow::addFoot() {
    notice_ = new QLabel(Ibak5());
    notice_->setObjectName("notice");
    notice_->setFont(textFont(10));
    notice_->setWordWrap(true);
    notice_->setGeometry(kMargin, kNoticeTop, kInner, kNoticeLine * kNoticeLines);
    listen_ = addButton(*Ibak5(), "listen", "Listen", {kMargin, kFoot, 96, kButton});
    listen_->setIcon(skinIcon(look(), "play"));
    goesTo_ = new QLabel("goes to Channel", Ibak5());
    goesTo_->setForegroundRole(QPalette::PlaceholderText);
    goesTo_->setGeometry(kMargin + 108, kFoot, 92, kButton);
    channel_ = new SquareButton(Ibak5());
    channel_->setObjectName("channel");
    channel_->move(kMargin + 204, kFoot + (kButton - kSquare) / 2);
    keep_ = addButton(*Ibak5(), "keep", "Keep", {kWidth - kMargin - 196, kFoot, 100, kButton});
    keep_->setIcon(skinIcon(look(), "done"));
    cancel_ = addButton(*Ibak5(), "cancel", "Cancel", {kWidth - kMargin - 88, kFoot, 88, kButton});
    connect(listen_, &QPushButton::clicked, this, [this] { listen(); });
    connect(channel_, &QAbstractButton::clicked, this, [this] { popUpChannels(); });
    connect(keep_, &QPushButton::clicked, this, [this] { keep(); });
    connect(cancel_, &QPushButton::clicked, this, &QWidget::close);
}

void KeepWindow::addTips() {
    ExToolTip& tips = desk_.tips;
    attachTips(tips);
    tips.SetToolTip(*paper_, {"What would be kept",
                              "The grey bars show when the keys were really down, the notes under them what "
                              "would be kept",
                              ""});
    tips.SetToolTip(*coarser_, {"Coarser", "Notes begin on fewer places: simpler to read", ""});
    tips.SetToolTip(*finer_, {"Finer", "Notes begin on more places: closer to what was played", ""});
    tips.SetToolTip(*grid_, {"Grid", "Every note begins on a step of this length", ""});
    tips.SetToolTip(*legato_,
                    {"Legato", "Each note goes on to the next one. A rest of a beat or more stays", ""});
    tips.SetToolTip(*asPlayed_, {"As played", "Notes are as long as their keys were down", ""});
    tips.SetToolTip(*listen_, {"Listen", "Plays what would be kept. Another press ends it", ""});
    tips.SetToolTip(*channel_, {"Channel", "Click to choose the channel that it goes to", ""});
    tips.SetToolTip(*keep_, {"Keep", "Writes the notes into the score, from the play mark on", ""});
    tips.SetToolTip(*cancel_, {"Cancel", "Leaves the score as it is. What was played is not forgotten", ""});
}

void KeepWindow::open() {
    const QWidget* root = parentWidget();
    while (root && root->parentWidget())
        root = root->parentWidget();
    const QRect around = root ? root->geometry() : screen()->availableGeometry();
    move(around.center() - rect().center());
    show();
    activateWindow();
    showFocusRing();
}

void KeepWindow::changeGrid(int steps) {
    const auto at = std::ranges::find(grids_, choice_.grid) - grids_.begin();
    const auto wanted =
        std::clamp<std::ptrdiff_t>(at + steps, 0, static_cast<std::ptrdiff_t>(grids_.size()) - 1);
    choice_.grid = grids_[static_cast<std::size_t>(wanted)];
    showPlan();
}

void KeepWindow::setLengths(NoteLengths lengths) {
    choice_.lengths = lengths;
    showPlan();
}

void KeepWindow::setChannel(int channel) {
    choice_.channel = std::clamp(channel, 0, kMelodyChannels - 1);
    showPlan();
}

void KeepWindow::popUpChannels() {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int channel = 0; channel < kMelodyChannels; ++channel) {
        QPixmap chip(QSize(16, 16) * devicePixelRatioF());
        chip.setDevicePixelRatio(devicePixelRatioF());
        chip.fill(Qt::transparent);
        {
            QPainter painter(&chip);
            paintChip(painter, {0, 0}, channel);
        }
        QAction* action = menu->addAction(
            chip, QStringLiteral("Channel ") + QLatin1String(kChannelColours[channel].caption), this,
            [this, channel] { setChannel(channel); });
        if (channel == choice_.channel)
            menu->setActiveAction(action);
    }
    menu->popup(channel_->mapToGlobal(QPoint(0, channel_->height() + 2)));
}

/// Everything as it would be with what is chosen now. What plays is something else by then.
void KeepWindow::showPlan() {
    player_.stop();
    showListening(false);
    plan_ = planKeep(desk_.workspace, phrase_, choice_);
    paper_->show(phrase_, plan_,
                 plan_.steps ? plan_.steps->notesPerMeasure : desk_.workspace.score.NotesPerMeasure);
    const bool played = !phrase_.notes.empty();
    grid_->setText(toQString(rowOf(choice_.grid).caption));
    grid_->setAccessibleName("Grid: " + grid_->text());
    coarser_->setEnabled(played && choice_.grid != grids_.front());
    finer_->setEnabled(played && choice_.grid != grids_.back());
    channel_->setChannel(choice_.channel);
    notice_->setText(toQString(planText(plan_)));
    const bool noticed = !notice_->text().isEmpty();
    notice_->setVisible(noticed);
    const int drop = noticed ? kNoticeLine * kNoticeLines : 0;
    for (QWidget* control : std::initializer_list<QWidget*>{listen_, goesTo_, keep_, cancel_})
        control->move(control->x(), kFoot + drop);
    channel_->move(channel_->x(), kFoot + drop + (kButton - kSquare) / 2);
    setFixedSize(kWidth, kTitleHeight + kFoot + drop + kButton + kMargin);
}

void KeepWindow::showListening(bool on) {
    listen_->setText(on ? "Stop" : "Listen");
    listen_->setIcon(skinIcon(look(), on ? "stop" : "play"));
}

double KeepWindow::secondsOfPosition() const {
    return PlaybackEngine::songStep(plan_.steps ? plan_.steps->tempo : desk_.workspace.score.Tempo);
}

void KeepWindow::listen() {
    if (player_.isPlaying()) {
        player_.stop();
        return showListening(false);
    }
    player_.play(soundOf(plan_, secondsOfPosition(), PhrasePlayer::kChannel));
    showListening(true);
}

void KeepWindow::keep() {
    if (phrase_.notes.empty())
        return;
    keepPlan(desk_.workspace, plan_);
    desk_.played.markKept(phrase_.notes.back().onset);
    close();
}

/// The keys go on where it was asked for.
void KeepWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    if (parentWidget())
        parentWidget()->window()->activateWindow();
}

void KeepWindow::hideEvent(QHideEvent* event) {
    player_.stop();
    SkinnedWindow::hideEvent(event);
}

void KeepWindow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // Enter presses the button that has the focus, or else the chief one.
        if (auto* button = qobject_cast<QAbstractButton*>(focusWidget());
            button && !qobject_cast<QRadioButton*>(button))
            button->click();
        else
            keep();
        break;
    case Qt::Key_Escape:
        close();
        break;
    case Qt::Key_F1:
        desk_.windows.help("keep");
        break;
    default:
        SkinnedWindow::keyPressEvent(event);
    }
}

} // namespace velmora
