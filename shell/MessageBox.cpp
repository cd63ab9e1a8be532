// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/MessageBox.h"

#include "shell/CommandButton.h"
#include "shell/SkinPainter.h"
#include "shell/SkinnedWindow.h"
#include "shell/TipPainter.h"

#include <QtWidgets>

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

namespace velmora {

namespace {
constexpr int kMargin = 16;
constexpr int kSign = 32;
constexpr int kTextWidth = 400; ///< at most; longer texts wrap
constexpr int kButtonHeight = 32;
constexpr int kButtonWidth = 88;
constexpr int kGap = 8;
constexpr int kAroundTitle = 72; ///< picture, close button and edges beside it
constexpr int kWidestTitle = 400;
constexpr const char* kProgram = "Velmora";

struct Choice {
    const char* name;
    const char* caption;
    Qt::Key key; ///< answers without a press of the button
};

/// Words that are wider than a line, as names of files may be, broken where they must.
QString withinLines(const QString& text, const QFont& font) {
    constexpr int kLine = kTextWidth - 4;
    QStringList words = text.split(u' ');
    for (QString& word : words)
        if (QFontMetrics(font).horizontalAdvance(word) > kLine)
            word = tipLines(word, font, kLine).join(u'\n');
    return words.join(u' ');
}

/// Of a window that shows its title whole.
int widthOfTitle(const QString& title) {
    return std::min(QFontMetrics(titleFont()).horizontalAdvance(title), kWidestTitle) + kAroundTitle;
}

/// A disc in the accent with a letter: what kind of message it is.
class Sign : public QWidget {
public:
    Sign(const Appearance& look, QChar letter, QWidget* parent)
        : QWidget(parent)
        , look_(look)
        , letter_(letter) {
        setFixedSize(kSign, kSign);
        setAccessibleName(letter == QLatin1Char('?') ? "Question" : "Information");
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const Skin& skin = look_.skin();
        QPainter painter(this);
        fillRounded(painter, rect(), kSign / 2.0, toQColor(skin.accent));
        painter.setPen(toQColor(isDark(skin) ? kBlack : kWhite));
        painter.setFont(titleFont(20));
        painter.drawText(rect(), Qt::AlignCenter, letter_);
    }

private:
    const Appearance& look_;
    QChar letter_;
};

/// A message in the chosen skin, over its window until it is answered.
class MessageWindow : public SkinnedWindow {
public:
    MessageWindow(frmskins& skins, QWidget* parent, const QString& title, const QString& text, QChar sign,
                  std::span<const Choice> choices)
        : SkinnedWindow(skins, {}, parent, Qt::Dialog)
        , choices_(choices) {
        setObjectName("message");
        setWindowTitle(title);
        setWindowModality(Qt::ApplicationModal);
        auto* words = new QLabel(Ibak5());
        words->setObjectName("words");
        words->setText(withinLines(text, words->font()));
        words->setTextFormat(Qt::PlainText);
        words->setWordWrap(true);
        const int one = words->fontMetrics().size(0, words->text()).width() + 4;
        words->setFixedWidth(std::min(one, kTextWidth));
        const int whole = std::max(words->heightForWidth(words->width()), kSign);
        const int height = std::min(whole, heightForWords());
        QWidget* shown = height < whole ? scrolled(*words, whole) : words;
        const int buttons = static_cast<int>(choices.size()) * (kButtonWidth + kGap) - kGap;
        const int inner = std::max({kSign + 12 + shown->width(), buttons, widthOfTitle(title) - 2 * kMargin});
        setFixedSize(inner + 2 * kMargin,
                     kTitleHeight + kMargin + height + kMargin + kButtonHeight + kMargin);
        (new Sign(look(), sign, Ibak5()))->move(kMargin, kMargin);
        shown->setGeometry(kMargin + kSign + 12, kMargin, shown->width(), height);
        words->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        addButtons(this->height() - kTitleHeight - kMargin - kButtonHeight, text);
    }

    /// What Enter presses, if it is not the first; the ring shows it.
    void prefer(std::size_t index) { findChild<QWidget*>(choices_[index].name)->setFocus(); }

    /// The place of the choice in the list; nothing after Esc, and when the box was closed.
    std::optional<std::size_t> run() {
        QEventLoop loop;
        onEnd_ = [&loop](std::optional<std::size_t> /*answer*/) { loop.quit(); };
        place();
        loop.exec();
        return answer_;
    }

    void open(std::function<void(std::optional<std::size_t>)> answered) {
        setAttribute(Qt::WA_DeleteOnClose);
        onEnd_ = std::move(answered);
        place();
    }

protected:
    bool event(QEvent* event) override {
        const bool handled = SkinnedWindow::event(event);
        // Enter presses the button that has the focus: the ring shows it, as soon as keys reach the window.
        if (event->type() == QEvent::WindowActivate)
            showFocusRing();
        return handled;
    }
    void closeEvent(QCloseEvent* event) override {
        event->accept();
        if (const auto onEnd = std::exchange(onEnd_, {}))
            onEnd(answer_);
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape) {
            close();
            return;
        }
        for (const Choice& choice : choices_)
            if (event->key() == choice.key) {
                end(choice);
                return;
            }
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            for (const Choice& choice : choices_)
                if (findChild<QWidget*>(choice.name)->hasFocus()) {
                    end(choice);
                    return;
                }
        }
        if (pane_ && (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown))
            QCoreApplication::sendEvent(pane_->verticalScrollBar(), event);
        else
            SkinnedWindow::keyPressEvent(event);
    }

private:
    /// What the screen has for the words, with some of it left around the window.
    [[nodiscard]] int heightForWords() const {
        return screen()->availableGeometry().height() - kTitleHeight - kButtonHeight - 5 * kMargin;
    }
    /// The words on a pane that scrolls them.
    QWidget* scrolled(QLabel& words, int height) {
        words.resize(words.width(), height);
        pane_ = new QScrollArea(Ibak5());
        pane_->setObjectName("pane");
        pane_->setAccessibleName("Message");
        pane_->setFrameShape(QFrame::NoFrame);
        pane_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        pane_->setWidget(&words);
        for (QWidget* ground : {static_cast<QWidget*>(&words), pane_->viewport()})
            ground->setAutoFillBackground(false); // the panel's pattern shows
        pane_->resize(words.width() + pane_->verticalScrollBar()->sizeHint().width() + kGap, 0);
        return pane_;
    }
    void place() {
        if (const QWidget* owner = parentWidget())
            move(owner->frameGeometry().center() - rect().center());
        else
            move(screen()->availableGeometry().center() - rect().center());
        show();
        activateWindow();
    }

    /// A screen reader says with the button what it answers.
    void addButtons(int top, const QString& text) {
        int x = width() - kMargin - static_cast<int>(choices_.size()) * (kButtonWidth + kGap) + kGap;
        for (const Choice& choice : choices_) {
            auto* button = new CommandButton(look(), ButtonForm::Text, Ibak5());
            button->setObjectName(choice.name);
            button->setFace("", choice.caption);
            button->setAccessibleDescription(text);
            button->setGeometry(x, top, kButtonWidth, kButtonHeight);
            connect(button, &QAbstractButton::clicked, this, [this, &choice] { end(choice); });
            x += kButtonWidth + kGap;
            if (&choice == choices_.data()) // what Enter presses
                button->setFocus();
        }
    }
    void end(const Choice& choice) {
        answer_ = static_cast<std::size_t>(&choice - choices_.data());
        close();
    }

    std::span<const Choice> choices_;
    QScrollArea* pane_ = nullptr; ///< if there are more words than the screen has room for
    std::function<void(std::optional<std::size_t>)> onEnd_;
    std::optional<std::size_t> answer_;
};

constexpr Choice kConfirm[]{{"ok", "OK", Qt::Key_O}};
constexpr Choice kYesNo[]{{"yes", "Yes", Qt::Key_Y}, {"no", "No", Qt::Key_N}};
constexpr Choice kSave[]{
    {"save", "Save", Qt::Key_S}, {"discard", "Discard", Qt::Key_D}, {"cancel", "Cancel", Qt::Key_Escape}};

std::optional<std::size_t> answerOf(frmskins& skins, QWidget* parent, const QString& title,
                                    const QString& text, QChar sign, std::span<const Choice> choices) {
    MessageWindow box(skins, parent, title, text, sign, choices);
    return box.run();
}

Answer yesOrNo(std::optional<std::size_t> choice) {
    switch (choice.value_or(2)) {
    case 0:
        return Answer::Yes;
    case 1:
        return Answer::No;
    default:
        return Answer::None;
    }
}
} // namespace

void tell(frmskins& skins, QWidget* parent, const QString& text, const QString& title) {
    answerOf(skins, parent, title, text, QLatin1Char('i'), kConfirm);
}

Answer askYesNo(frmskins& skins, QWidget* parent, const QString& text, const QString& title) {
    return yesOrNo(answerOf(skins, parent, title, text, QLatin1Char('?'), kYesNo));
}

SaveAnswer askSave(frmskins& skins, QWidget* parent, const QString& text) {
    switch (answerOf(skins, parent, kProgram, text, QLatin1Char('?'), kSave).value_or(2)) {
    case 0:
        return SaveAnswer::Save;
    case 1:
        return SaveAnswer::Discard;
    default:
        return SaveAnswer::Cancel;
    }
}

void showMessage(frmskins& skins, QWidget* parent, const QString& text) {
    auto* box = new MessageWindow(skins, parent, kProgram, text, QLatin1Char('i'), kConfirm);
    box->open({});
}

void ask(frmskins& skins, QWidget* parent, const QString& text, Answer enter,
         std::function<void(Answer)> answered) {
    auto* box = new MessageWindow(skins, parent, kProgram, text, QLatin1Char('?'), kYesNo);
    box->prefer(enter == Answer::Yes ? 0 : 1);
    box->open(
        [answered = std::move(answered)](std::optional<std::size_t> choice) { answered(yesOrNo(choice)); });
}

} // namespace velmora
