// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/ProgressWindow.h"

#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/FramePainter.h"
#include "shell/TipPainter.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr int kMargin = 16;
constexpr int kInner = 388;
constexpr int kLine = 18;
constexpr int kWordLines = 2;
constexpr int kSlack = 4; ///< letters may stand out
constexpr int kBar = 24;
constexpr int kButtonWidth = 88;
constexpr int kButtonHeight = 32;
constexpr int kWhole = 1000; ///< steps of the bar

constexpr int kWordsTop = kMargin;
constexpr int kBarTop = kWordsTop + kWordLines * kLine + 8;
constexpr int kButtonTop = kBarTop + kBar + kMargin;
constexpr int kHeight = kButtonTop + kButtonHeight + kMargin;
} // namespace

QString timeLeft(double seconds, double share) {
    constexpr double kTellingShare = 0.03; // before that a guess would leap about
    constexpr double kTellingSeconds = 1;
    constexpr int kMinute = 60;
    if (share < kTellingShare || seconds < kTellingSeconds || share >= 1)
        return {};
    const double left = seconds / share * (1 - share);
    if (left < 5)
        return QStringLiteral("A few seconds left");
    if (left < kMinute - 2.5)
        return QStringLiteral("About %1 seconds left").arg(std::lround(left / 5) * 5);
    const long minutes = std::lround(left / kMinute);
    return minutes <= 1 ? QStringLiteral("About a minute left")
                        : QStringLiteral("About %1 minutes left").arg(minutes);
}

ProgressWindow::ProgressWindow(frmskins& skins, ExToolTip& tips, QWidget* parent, const QString& title,
                               const QString& words)
    : SkinnedWindow(skins, {}, parent, Qt::Dialog)
    , tips_(tips)
    , words_(new QLabel(Ibak5()))
    , progress_(new QProgressBar(Ibak5()))
    , left_(new QLabel(Ibak5()))
    , cancel_(new CommandButton(look(), ButtonForm::Text, Ibak5())) {
    setObjectName("progressWindow");
    setWindowTitle(title);
    setFixedSize(kInner + 2 * kMargin, kTitleHeight + kHeight);
    words_->setObjectName("words");
    words_->setTextFormat(Qt::PlainText); // names may look like anything
    words_->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    words_->setGeometry(kMargin, kWordsTop, kInner, kWordLines * kLine);
    progress_->setObjectName("progress");
    progress_->setRange(0, kWhole);
    // Not the button: Space, which plays in the window below, would press it.
    progress_->setFocusPolicy(Qt::StrongFocus);
    progress_->setGeometry(kMargin, kBarTop, kInner, kBar);
    left_->setObjectName("left");
    left_->setForegroundRole(QPalette::PlaceholderText);
    left_->setGeometry(kMargin, kButtonTop, kInner - kButtonWidth - kMargin, kButtonHeight);
    cancel_->setObjectName("cancel");
    cancel_->setFace("", "Cancel");
    cancel_->setGeometry(kMargin + kInner - kButtonWidth, kButtonTop, kButtonWidth, kButtonHeight);
    connect(cancel_, &QAbstractButton::clicked, this, &QWidget::close);
    attachTips(tips_);
    tips_.SetToolTip(*progress_, {"Progress", "How much of the file is made", ""});
    tips_.SetToolTip(*cancel_, {"Cancel", "Stops it. A file that had the name before stays as it was.", ""});
    setWords(words);
    showShare(0);
    began_.start();
}

void ProgressWindow::setWords(const QString& words) {
    QStringList lines = tipLines(words, words_->font(), kInner - kSlack);
    if (lines.size() > kWordLines) {
        const QString rest = lines.mid(kWordLines - 1).join(u' ');
        lines = lines.mid(0, kWordLines - 1);
        lines << words_->fontMetrics().elidedText(rest, Qt::ElideMiddle, kInner - kSlack);
    }
    words_->setText(lines.join(u'\n'));
    words_->setAccessibleName(words);
    for (QWidget* control : {static_cast<QWidget*>(progress_), static_cast<QWidget*>(cancel_)})
        control->setAccessibleDescription(words); // what a screen reader says with what has the focus
}

void ProgressWindow::open() {
    const bool handIsFree = QGuiApplication::mouseButtons() == Qt::NoButton;
    setAttribute(Qt::WA_ShowWithoutActivating, !handIsFree);
    if (const QWidget* owner = parentWidget())
        move(owner->window()->frameGeometry().center() - rect().center());
    progress_->setFocus();
    show();
    if (handIsFree)
        activateWindow();
}

void ProgressWindow::showShare(double share) {
    if (done_)
        return;
    progress_->setValue(static_cast<int>(std::clamp(share, 0.0, 1.0) * kWhole));
    left_->setText(timeLeft(began_.isValid() ? static_cast<double>(began_.elapsed()) / 1000 : 0, share));
}

void ProgressWindow::finish(const QString& words) {
    progress_->setValue(kWhole);
    done_ = true;
    left_->clear();
    cancel_->setFace("", "OK");
    tips_.SetToolTip(*cancel_, {"OK", "Closes this window", ""});
    setWords(words);
    cancel_->setFocus();
    showFocusRing();
}

void ProgressWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    if (!done_ && onCancel)
        onCancel();
}

void ProgressWindow::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Escape || (done_ && (key == Qt::Key_Return || key == Qt::Key_Enter)))
        close();
    else
        SkinnedWindow::keyPressEvent(event);
}

} // namespace velmora
