// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpView.h"

#include "shell/HelpDocument.h"
#include "shell/HelpListDelegate.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBrowser>
#include <QTextFrame>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace velmora {

namespace {

constexpr int kGap = 8;
constexpr int kListWidth = 232;
constexpr int kPageMargin = 16;
constexpr int kWidestText = 640; ///< longer lines are tiring to read
constexpr int kNameRole = Qt::UserRole;

QPushButton* makeButton(const char* name, const QString& text, const QString& toolText) {
    auto* const button = new QPushButton(text);
    button->setObjectName(name);
    button->setAccessibleName(text);
    button->setToolTip(toolText);
    button->setAutoDefault(false);
    return button;
}

QListWidgetItem* makeItem(const HelpPage& page, const std::string& excerpt) {
    auto* const item = new QListWidgetItem(QString::fromStdString(page.title));
    item->setData(kNameRole, QString::fromStdString(page.name));
    item->setData(HelpListDelegate::kExcerptRole, QString::fromStdString(excerpt));
    return item;
}

QListWidgetItem* makeNotice(const QString& text) {
    auto* const item = new QListWidgetItem(text);
    item->setFlags(Qt::NoItemFlags);
    return item;
}

/// Keeps the text's column narrow enough to read, and away from the edges.
void fitColumn(QTextBrowser& browser) {
    QTextFrame* const root = browser.document()->rootFrame();
    QTextFrameFormat format = root->frameFormat();
    const int spare = browser.viewport()->width() - kPageMargin - kWidestText;
    format.setMargin(kPageMargin);
    format.setRightMargin(std::max(kPageMargin, spare));
    root->setFrameFormat(format);
}

} // namespace

HelpView::HelpView(HelpLibrary library, QWidget* parent)
    : QWidget(parent)
    , library_(std::move(library))
    , search_(new QLineEdit)
    , list_(new QListWidget)
    , back_(makeButton("btnHelpBack", "Back", "Back to the page before (Alt+Left)"))
    , forward_(makeButton("btnHelpForward", "Forward", "Forward again (Alt+Right)"))
    , home_(makeButton("btnHelpHome", "Home", "The first page, with the contents (Alt+Home)"))
    , text_(new QTextBrowser) {
    build();
    connectControls();
    connectKeys();
    listPages();
    goHome();
}

void HelpView::build() {
    search_->setObjectName("txtHelpSearch");
    search_->setPlaceholderText("Search help");
    search_->setAccessibleName("Search help");
    search_->setToolTip("Type words to find the pages that have them (Ctrl+F)");
    search_->setClearButtonEnabled(true);
    if (auto* clear = search_->findChild<QAbstractButton*>())
        clear->setAccessibleName("Clear search");
    list_->setObjectName("lstHelpPages");
    list_->setAccessibleName("Help pages");
    list_->setAccessibleDescription("All pages, or those that were found; Enter shows one");
    list_->setItemDelegate(new HelpListDelegate(list_));
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    text_->setObjectName("txtHelpPage");
    text_->setAccessibleName("Help page");
    text_->setAccessibleDescription("Arrows scroll, Tab goes from link to link");
    text_->setOpenLinks(false); // links are ours to follow; none of them starts another program

    auto* const left = new QVBoxLayout;
    left->setSpacing(kGap);
    left->addWidget(search_);
    left->addWidget(list_);
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(kGap);
    for (auto* const button : {back_, forward_, home_})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* const right = new QVBoxLayout;
    right->setSpacing(kGap);
    right->addLayout(buttons);
    right->addWidget(text_);
    auto* const columns = new QHBoxLayout(this);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(kGap);
    columns->addLayout(left);
    columns->addLayout(right, 1);
    search_->setFixedWidth(kListWidth);
    list_->setFixedWidth(kListWidth);
    setFocusProxy(search_);
}

void HelpView::connectControls() {
    const auto open = [this](const QListWidgetItem* item) {
        if (item != nullptr && (item->flags() & Qt::ItemIsEnabled) != 0)
            showPage(item->data(kNameRole).toString());
    };
    connect(list_, &QListWidget::itemClicked, this, open);
    connect(list_, &QListWidget::itemActivated, this, open);
    connect(search_, &QLineEdit::textChanged, this, &HelpView::listPages);
    connect(search_, &QLineEdit::returnPressed, this, [this, open] { open(list_->item(0)); });
    connect(back_, &QPushButton::clicked, this, &HelpView::goBack);
    connect(forward_, &QPushButton::clicked, this, &HelpView::goForward);
    connect(home_, &QPushButton::clicked, this, &HelpView::goHome);
    connect(text_, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& link) { followLink(link.toString()); });
    search_->installEventFilter(this);
    text_->installEventFilter(this);
    text_->viewport()->installEventFilter(this);
}

void HelpView::connectKeys() {
    const auto bind = [this](const QKeySequence& keys, auto act) {
        auto* const shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, act);
    };
    bind(QKeySequence("Alt+Left"), &HelpView::goBack);
    bind(QKeySequence("Alt+Right"), &HelpView::goForward);
    bind(QKeySequence("Alt+Home"), &HelpView::goHome);
    bind(QKeySequence("Ctrl+F"), [this] {
        search_->setFocus(Qt::ShortcutFocusReason);
        search_->selectAll();
    });
}

void HelpView::listPages() {
    list_->clear();
    const QString query = search_->text().trimmed();
    if (query.isEmpty())
        for (const auto& page : library_.pages())
            list_->addItem(makeItem(page, {}));
    else
        for (const auto& hit : library_.search(query.toStdString()))
            list_->addItem(makeItem(*hit.page, hit.excerpt));
    if (list_->count() == 0 && !query.isEmpty())
        list_->addItem(makeNotice("No page has all these words."));
    markShownPage();
}

bool HelpView::showPage(const QString& name) {
    if (library_.pages().empty()) {
        showMissing();
        return false;
    }
    const HelpPage* const wanted = library_.find(name.toStdString());
    const QString shown = wanted != nullptr ? name : QString::fromStdString(library_.pages().front().name);
    if (page() != shown) {
        visits_.resize(static_cast<std::size_t>(visited_ + 1)); // a new way leads nowhere forward
        visits_.push_back({.name = shown});
        visit(visited_ + 1);
    }
    return wanted != nullptr;
}

QString HelpView::page() const {
    return visited_ < 0 ? QString() : visits_[static_cast<std::size_t>(visited_)].name;
}

void HelpView::goBack() {
    visit(visited_ - 1);
}

void HelpView::goForward() {
    visit(visited_ + 1);
}

void HelpView::goHome() {
    showPage(QString::fromUtf8(HelpLibrary::kHome));
}

void HelpView::visit(int index) {
    if (index < 0 || index >= static_cast<int>(visits_.size()))
        return;
    if (visited_ >= 0)
        visits_[static_cast<std::size_t>(visited_)].scroll = text_->verticalScrollBar()->value();
    visited_ = index;
    showVisited();
}

void HelpView::showVisited() {
    const Visit& shown = visits_[static_cast<std::size_t>(visited_)];
    const HelpPage* const found = library_.find(shown.name.toStdString());
    loadHelpPage(*text_->document(), found != nullptr ? QString::fromStdString(found->markdown) : QString());
    styleHelpPage(*text_->document(), text_->palette());
    fitColumn(*text_);
    text_->moveCursor(QTextCursor::Start); // a resize keeps the cursor in view
    text_->verticalScrollBar()->setValue(shown.scroll);
    back_->setEnabled(visited_ > 0);
    forward_->setEnabled(visited_ + 1 < static_cast<int>(visits_.size()));
    markShownPage();
}

void HelpView::showMissing() {
    const auto folder = QString::fromStdString(library_.folder().string());
    const QString place =
        folder.isEmpty() ? QString() : "\n\nThey should be in this folder: **" + folder + "**";
    loadHelpPage(
        *text_->document(),
        "# The help pages are missing\n\nThey are a part of Velmora, and this copy came without them. "
        "Please install Velmora again; your scores and settings stay as they are." +
            place);
    styleHelpPage(*text_->document(), text_->palette());
    fitColumn(*text_);
    for (QWidget* const control : std::array<QWidget*, 5>{search_, list_, back_, forward_, home_})
        control->setEnabled(false);
}

void HelpView::markShownPage() {
    list_->setCurrentItem(nullptr);
    for (int row = 0; row < list_->count(); ++row)
        if (list_->item(row)->data(kNameRole).toString() == page() && !page().isEmpty())
            list_->setCurrentRow(row);
}

void HelpView::followLink(const QString& target) {
    const auto name = linkedPage(target.toStdString());
    if (library_.find(name) != nullptr)
        showPage(QString::fromStdString(name));
}

/// Esc clears a search, and Down goes to what it found; whether the key was used.
bool HelpView::searchKey(int key) {
    if (key == Qt::Key_Escape && !search_->text().isEmpty()) {
        search_->clear();
        return true;
    }
    if (key != Qt::Key_Down)
        return false;
    list_->setFocus(Qt::OtherFocusReason);
    if (list_->currentRow() < 0)
        list_->setCurrentRow(0);
    return true;
}

bool HelpView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == text_->viewport() && event->type() == QEvent::Resize)
        fitColumn(*text_);
    if (watched == text_ && event->type() == QEvent::PaletteChange)
        styleHelpPage(*text_->document(), text_->palette());
    if (watched != search_)
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress)
        return searchKey(static_cast<QKeyEvent*>(event)->key());
    // Esc is the search's before it is the window's.
    if (event->type() == QEvent::ShortcutOverride && !search_->text().isEmpty() &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        event->accept();
    return QWidget::eventFilter(watched, event);
}

} // namespace velmora
