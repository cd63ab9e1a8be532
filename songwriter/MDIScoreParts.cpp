// SPDX-License-Identifier: GPL-2.0-or-later
// What the Songwriter's window is made of: bar, tabs, panels and pages, and where they stand.
#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/Workspace.h"
#include "notation/Keys.h"
#include "parts/CommandBinding.h"
#include "parts/Desk.h"
#include "parts/SetupTab.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "shell/SkinPainter.h"
#include "shell/WindowGeometry.h"
#include "songwriter/Commands.h"
#include "songwriter/MDIScore.h"
#include "songwriter/NotesPanel.h"
#include "songwriter/PageArea.h"
#include "songwriter/ScorePanel.h"
#include "songwriter/ScoreSheet.h"
#include "songwriter/StavesPanel.h"
#include "songwriter/TextsPanel.h"

#include <QAction>
#include <QComboBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QShortcut>

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
// Places count from the panel's top, under the title.
constexpr QSize kFirst(1024, 600);
constexpr QSize kLeast(1016, 420);
constexpr int kMargin = 12;
constexpr int kBarTop = 4;
constexpr int kButtonHeight = 48;
constexpr int kTabsTop = 56;
constexpr int kPanelTop = 80;
constexpr int kAreaTop = 156;
constexpr int kGroupGap = 14; ///< with a rule in it
constexpr int kRightTop = 18;
constexpr int kTitleWidth = 176;

/// What a tab shows: a popup, a panel, or both.
struct TabRow {
    const char* words;
    const char* popup;
    const char* tip;
    const char* key;
};
constexpr std::array kTabRows{
    TabRow{" Write ", "mnusngwriPopup2", "Notes, pages, key", "Alt+W"},
    TabRow{" Text ", "mnuTextSW", "Title, words and texts", "Alt+T"},
    TabRow{" File ", "mnusngwriPopup1", "Open, save, print", "Alt+F"},
    TabRow{" Channels ", "", "Which channels are written, and in which clef", "Alt+C"},
    TabRow{" Note Setup ", "", "How notes are written", "Alt+N"},
    TabRow{" Score Setup ", "", "Key, length and measures of the page", "Alt+S"},
};
constexpr std::array kZooms{50, 75, 100, 125, 150, 200, 300};

/// Behind these buttons stands a rule.
constexpr bool endsGroup(int index) {
    return index == songButton("save") || index == songButton("write") || index == songButton("loop") ||
           index == songButton("print");
}

/// The first control of a panel, for a hand that stays on the keys.
void focusFirst(QWidget& panel) {
    for (QWidget* next = panel.nextInFocusChain(); next != &panel; next = next->nextInFocusChain())
        if (panel.isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) && next->isEnabled())
            return next->setFocus(Qt::TabFocusReason);
}
} // namespace

void MDIScore::addBar() {
    int x = kMargin;
    for (int index = 0; index < Lb1_.size(); ++index) {
        CommandButton& button = Lb1_[index];
        const int width = std::max(button.sizeHint().width(), 48);
        button.setGeometry(x, kBarTop, width, kButtonHeight);
        x += width + 4;
        if (endsGroup(index)) {
            addRule(*Ibak5(), parts_, {x + kGroupGap / 2 - 1, kBarTop + 4, 2, kButtonHeight - 8});
            x += kGroupGap;
        }
    }
    const auto addStep = [this](const char* name, const char* icon, const char* title, const char* key,
                                int by) {
        auto* button = new CommandButton(look(), ButtonForm::Icon, Ibak5());
        button->setObjectName(name);
        button->setFace(icon);
        button->setAccessibleName(title);
        desk_.tips.SetToolTip(*button, {title, QStringLiteral("Keys: %1").arg(key), icon});
        connect(button, &QAbstractButton::clicked, this, [this, by] { area_->step(by); });
        return button;
    };
    back_ = addStep("pageBack", "back", "Page before", "Ctrl+Page Up", -1);
    place_ = new QLabel(Ibak5());
    place_->setObjectName("place");
    place_->setAlignment(Qt::AlignCenter);
    next_ = addStep("pageNext", "forward", "Next page", "Ctrl+Page Down", 1);
    zoom_ = new QComboBox(Ibak5());
    zoom_->setObjectName("zoom");
    zoom_->setAccessibleName("Zoom");
    for (const int zoom : kZooms)
        zoom_->addItem(QStringLiteral("%1 %").arg(zoom), zoom);
    desk_.tips.SetToolTip(*zoom_, {"Zoom", "How large pages are shown; also Ctrl with the wheel", ""});
    connect(zoom_, &QComboBox::activated, this,
            [this] { area_->setZoom(zoom_->currentData().toInt() / 100.0); });
    title_ = new QLabel(Ibak5());
    title_->setObjectName("songTitle");
    title_->setFont(textFont(12, true));
    title_->setForegroundRole(QPalette::PlaceholderText);
    title_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    title_->setTextFormat(Qt::PlainText);
}

void MDIScore::addTabs() {
    int x = kMargin;
    for (int index = 0; index < kTabs; ++index) {
        const TabRow& row = kTabRows[static_cast<std::size_t>(index)];
        auto* tab = new SetupTab(look(), row.words, Ibak5());
        tab->setObjectName(QStringLiteral("Lmnu(%1)").arg(index));
        tab->setAutoExclusive(false);
        tab->setGeometry(QRect(QPoint(x, kTabsTop), tab->sizeHint()));
        x += tab->width();
        connect(tab, &QAbstractButton::clicked, this, [this, index] { Lmnu_Click(index); });
        desk_.tips.SetToolTip(
            *tab, {tab->accessibleName(), QStringLiteral("%1. Keys: %2").arg(row.tip, row.key), ""});
        Lmnu_[static_cast<std::size_t>(index)] = tab;
    }
    page_ = new SetupPage(look(), Ibak5());
    staves_ = new StavesPanel(parts_, page_);
    notes_ = new NotesPanel(parts_, page_);
    score_ = new ScorePanel(parts_, page_);
    texts_ = new TextsPanel(parts_, page_);
    area_ = new PageArea(parts_, Ibak5());
    area_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(area_, &QWidget::customContextMenuRequested, this,
            [this](QPoint at) { desk_.menu.popup("mnusngwriSetup").popup(area_->mapToGlobal(at)); });
    for (SetupTab* tab : Lmnu_) // over the page's line
        tab->raise();
}

/// The panel of a tab; null for one that has a popup alone.
QWidget* MDIScore::panelOf(int index) const {
    const std::array<QWidget*, kTabs> panels{nullptr, texts_, nullptr, staves_, notes_, score_};
    return panels[static_cast<std::size_t>(index)];
}

void MDIScore::Lmnu_Click(int index) {
    if (index < 0 || index >= kTabs)
        return;
    QWidget* const panel = panelOf(index);
    const SetupTab& tab = *Lmnu_[static_cast<std::size_t>(index)];
    if (panel)
        showPanel(panel);
    else
        Lmnu_[static_cast<std::size_t>(index)]->setChecked(false); // it stands for its popup alone
    const std::string_view popup = kTabRows[static_cast<std::size_t>(index)].popup;
    if (!popup.empty())
        // Under the panel that it belongs to, so that both are seen.
        desk_.menu.popup(popup).popup(
            tab.mapToGlobal(QPoint(0, tab.height() + (panel ? kSongPanelHeight : 0))));
}

void MDIScore::showPanel(QWidget* panel) {
    for (int index = 0; index < kTabs; ++index) {
        QWidget* const each = panelOf(index);
        if (each)
            each->setVisible(each == panel);
        Lmnu_[static_cast<std::size_t>(index)]->setChecked(each && each == panel);
    }
    if (panel == texts_)
        texts_->showFonts();
}

/// Each command with its button, its menu item and its key.
void MDIScore::bindCommands() {
    constexpr CommandBank MDIScore::*Lb1 = &MDIScore::Lb1_;
    static constexpr auto kCommands = std::to_array<CommandBinding<MDIScore>>({
        {{Lb1, songButton("blank")}, [](MDIScore& form) { form.AddPage(); }, "mnuAddPageSW", "Ctrl+Shift+N"},
        {{Lb1, songButton("open")}, [](MDIScore& form) { form.OpenDocument(); }, "mnuOpenscoreSW", "Ctrl+O"},
        {{Lb1, songButton("save")}, [](MDIScore& form) { form.save(); }, "", "Ctrl+S"},
        {{Lb1, songButton("write")},
         [](MDIScore& form) { form.WriteFromNotes(); },
         "mnuCurrentNotesSW",
         "F5"},
        {{Lb1, songButton("loop")}, [](MDIScore& form) { form.playLoop(); }, "", "Ctrl+L"},
        {{Lb1, songButton("rewrite")}, [](MDIScore& form) { form.RewriteFromNotes(); }, "", "Shift+F5"},
        {{Lb1, songButton("close")}, [](MDIScore& form) { form.close(); }, "mnuCloseSW", "Ctrl+W"},
        {{}, [](MDIScore& form) { form.newScore(); }, "mnuNewscoreSW", "Ctrl+N"},
        {{}, [](MDIScore& form) { form.desk_.windows.saveScoreAs(); }, "mnuSavescoreASSW", "Ctrl+Shift+S"},
        {{}, [](MDIScore& form) { form.OpenLyrics(); }, "mnuOpenLyricsSW"},
        {{}, [](MDIScore& form) { form.SaveLyrics(); }, "mnuSaveLyricsSW"},
        {{}, [](MDIScore& form) { form.addText(); }, "mnuAddTextSW", "Ctrl+T"},
        {{},
         [](MDIScore& form) {
             if (ScoreSheet* const sheet = form.area_->frontSheet())
                 sheet->editTexts();
         },
         "mnuEditTextSW",
         "Ctrl+E"},
        {{}, [](MDIScore& form) { form.resetTexts(); }, "mnuResetTextSW"},
        {{}, [](MDIScore& form) { form.showPanel(form.score_); }, "mnuScoreSetup"},
        {{}, [](MDIScore& form) { form.showPanel(form.staves_); }, "mnuChannelSetup"},
        {{}, [](MDIScore& form) { form.showPanel(form.texts_); }, "mnuTextSetup"},
        {{}, [](MDIScore& form) { form.area_->step(1); }, "", "Ctrl+PgDown"},
        {{}, [](MDIScore& form) { form.area_->step(-1); }, "", "Ctrl+PgUp"},
        {{}, [](MDIScore& form) { form.area_->zoomBy(1); }, "", "Ctrl++"},
        {{}, [](MDIScore& form) { form.area_->zoomBy(1); }, "", "Ctrl+="},
        {{}, [](MDIScore& form) { form.area_->zoomBy(-1); }, "", "Ctrl+-"},
        {{}, [](MDIScore& form) { form.area_->setZoom(1); }, "", "Ctrl+0"},
        {{}, [](MDIScore& form) { form.imgTitleHelp_Click(); }, "", "F1"},
    });
    velmora::bindCommands<MDIScore>(*this, desk_.menu, kCommands);
    struct WindowRow {
        int button;
        std::string_view item;
        const char* key;
        Windows::Name name;
    };
    for (const auto& [button, item, key, name] :
         {WindowRow{songButton("edit"), "", nullptr, Windows::Name::frmsynth},
          WindowRow{songButton("print"), "mnuPrinttSW", "Ctrl+P", Windows::Name::fPrint}})
        if (desk_.windows.has(name))
            bindCommand(*this, desk_.menu, {&Lb1_, button, item, key},
                        [this, name = name] { desk_.windows.open(name); });
}

/// The key items, radios in step with `Combo1`, and the keys of the tabs.
void MDIScore::bindKeys() {
    for (int key = 0; key < static_cast<int>(notation::kKeys.size()); ++key)
        desk_.menu.bind(*this, notation::kKeys[static_cast<std::size_t>(key)].item,
                        [this, key] { score_->chooseKey(key); });
    desk_.menu.bind(*this, "mnuByItselfSW", [this] { score_->chooseKey(notation::kAutomaticKey); });
    desk_.menu.onPrepare(*this, [this] { showKey(); });
    for (int index = 0; index < kTabs; ++index) {
        const char* const key = kTabRows[static_cast<std::size_t>(index)].key;
        connect(new QShortcut(QKeySequence(key), this), &QShortcut::activated, this, [this, index] {
            Lmnu_Click(index);
            if (QWidget* const panel = panelOf(index))
                focusFirst(*panel);
        });
    }
}

void MDIScore::showKey() {
    for (int key = 0; key < static_cast<int>(notation::kKeys.size()); ++key)
        desk_.menu.item(notation::kKeys[static_cast<std::size_t>(key)].item)
            .setChecked(song_.setup.key == key);
    desk_.menu.item("mnuByItselfSW").setChecked(song_.setup.key == notation::kAutomaticKey);
}

/// The title, else the name of the score's file.
void MDIScore::showTitle() {
    std::string name = song_.setup.title;
    if (name.empty())
        name = std::filesystem::path(desk_.workspace.score.currentFile).stem().string();
    const QString words = toQString(name);
    title_->setText(title_->fontMetrics().elidedText(words, Qt::ElideRight, kTitleWidth));
    title_->setAccessibleName(words.isEmpty() ? QStringLiteral("Score without a title") : words);
}

void MDIScore::showFront() {
    const int front = area_->front();
    const bool several = song_.openPages().size() > 1;
    place_->setText(front == 0 ? QString() : QStringLiteral("Page %1 of %2").arg(front).arg(song_.count()));
    back_->setEnabled(several);
    next_->setEnabled(several);
    const int percent = static_cast<int>(std::lround(area_->zoom() * 100));
    zoom_->setCurrentIndex(zoom_->findData(percent));
    zoom_->setPlaceholderText(QStringLiteral("%1 %").arg(percent));
}

void MDIScore::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && area_->frontSheet())
        area_->frontSheet()->setFocus();
    else
        SkinnedWindow::keyPressEvent(event);
}

void MDIScore::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    if (!area_)
        return;
    const int edge = look().skin().edgeWidth;
    int right = width() - kMargin;
    const auto place = [&right](QWidget& part, int width, int height) {
        right -= width;
        part.setGeometry(right, kRightTop + (24 - height) / 2, width, height);
        right -= 4;
    };
    place(*title_, kTitleWidth, 24);
    right -= 8;
    place(*zoom_, 76, 24);
    right -= 8;
    place(*next_, 28, 28);
    place(*place_, 100, 24);
    place(*back_, 28, 28);
    page_->setGeometry(kMargin, kPanelTop, width() - 2 * kMargin, kSongPanelHeight);
    for (QWidget* panel : std::initializer_list<QWidget*>{staves_, notes_, score_, texts_})
        panel->setGeometry(page_->rect());
    area_->setGeometry(edge, kAreaTop, width() - 2 * edge,
                       std::max(height() - kTitleHeight - kAreaTop - edge, 1));
}

// Settings.

void MDIScore::loadSettings() {
    notation::ScoreSetup& setup = song_.setup;
    const auto size = [this](const settings::Int16& setting) {
        constexpr int kUnit = 10;
        return std::clamp<int>(settings::read(desk_.settings, setting), 1, 30) * kUnit;
    };
    setup.BarWidth = size(settings::BarWidth);
    setup.SpacerHeight = size(settings::SpacerHeight);
    setup.HeaderHeight = size(settings::HeaderHeight);
    setup.newScore = settings::read(desk_.settings, settings::NewScore) != 0;
    setup.joinNotes = settings::read(desk_.settings, settings::JoinNotes) != 0 ? 4 : 0;
    if (const int chosen = settings::read(desk_.settings, settings::ClassicPage); chosen >= 0)
        setup.classicPage = chosen != 0;
    setup.learnToRead = settings::read(desk_.settings, settings::LearnToRead);
    setup.twoVoices = settings::read(desk_.settings, settings::TwoVoices);
}

void MDIScore::saveSettings() {
    const notation::ScoreSetup& setup = song_.setup;
    SettingsBatch batch(desk_.settings);
    const auto save = [&batch](const settings::Int16& setting, int value) {
        settings::save(batch, setting, static_cast<std::int16_t>(value));
    };
    constexpr int kUnit = 10;
    save(settings::BarWidth, setup.BarWidth / kUnit);
    save(settings::SpacerHeight, setup.SpacerHeight / kUnit);
    save(settings::HeaderHeight, setup.HeaderHeight / kUnit);
    save(settings::NewScore, setup.newScore ? 1 : 0);
    save(settings::JoinNotes, setup.joinNotes > 0 ? 1 : 0);
    const bool followsManners = setup.classicPage == (desk_.workspace.manners == Manners::classic());
    save(settings::ClassicPage, followsManners ? -1 : setup.classicPage ? 1 : 0);
    settings::save(batch, settings::LearnToRead, setup.learnToRead);
    settings::save(batch, settings::TwoVoices, setup.twoVoices);
    if (!knowsItsPlace())
        return;
    const QRect frame = isMaximized() ? normalGeometry() : geometry();
    settings::save(batch, settings::frmscore_left, static_cast<float>(frame.x() * kTwips));
    settings::save(batch, settings::frmscore_top, static_cast<float>(frame.y() * kTwips));
    settings::save(batch, settings::frmscore_Width, static_cast<float>(frame.width() * kTwips));
    settings::save(batch, settings::frmscore_Height, static_cast<float>(frame.height() * kTwips));
}

/// At the stored place on whichever screen that is, no larger than the screen.
void MDIScore::openAtStoredPlace() {
    setMinimumSize(kLeast);
    const auto pixels = [this](const settings::Float& setting) {
        return pixelsOfTwips(settings::read(desk_.settings, setting));
    };
    const QPoint corner(pixels(settings::frmscore_left), pixels(settings::frmscore_top));
    QSize wanted(pixels(settings::frmscore_Width), pixels(settings::frmscore_Height));
    if (wanted.width() <= 0 || wanted.height() <= 0)
        wanted = kFirst;
    const QScreen* const there = QGuiApplication::screenAt(corner);
    const QRect room = (there ? there : screen())->availableGeometry();
    const QSize size = wanted.boundedTo(room.size()).expandedTo(kLeast);
    resize(size);
    if (knowsItsPlace())
        move(onScreen(corner, size, room));
}

} // namespace velmora
