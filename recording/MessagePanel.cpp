// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/MessagePanel.h"

#include "base/DialogNames.h"
#include "base/QtText.h"
#include "parts/Desk.h"
#include "shell/ExToolTip.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>

namespace velmora {

namespace {
constexpr int kPadding = 12;
constexpr int kFileTop = 36;
constexpr int kFileHeight = 24;
constexpr int kTextTop = 64;
constexpr int kInset = 6; ///< of the text, so that it begins under the file
} // namespace

MessagePanel::MessagePanel(const StudioParts& parts, SessionState& state, QWidget* parent)
    : QGroupBox("Recording Messages", parent)
    , state_(state)
    , Text6(new QLineEdit(this))
    , Erbox(new QPlainTextEdit(this)) {
    setObjectName("messagePanel");
    Text6->setObjectName("Text6");
    Text6->setAccessibleName("File");
    parts.desk.tips.SetToolTip(
        *Text6, {"File", "The file that was recorded or opened: what is encoded, and played by Record", ""});
    connect(Text6, &QLineEdit::textEdited, this,
            [this](const QString& text) { state_.Text6 = bytesOfText(text); });
    Erbox->setObjectName("Erbox");
    Erbox->setAccessibleName("Recording Messages");
    Erbox->setReadOnly(true);
    Erbox->setTabChangesFocus(true);
    Erbox->setUndoRedoEnabled(false);
    Erbox->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    Erbox->document()->setDocumentMargin(kInset);
    parts.desk.tips.SetToolTip(*Erbox, {"Recording Messages", "What the Recording Studio does", ""});
}

void MessagePanel::resizeEvent(QResizeEvent* event) {
    QGroupBox::resizeEvent(event);
    const int inner = width() - 2 * kPadding;
    Text6->setGeometry(kPadding, kFileTop, inner, kFileHeight);
    Erbox->setGeometry(kPadding, kTextTop, inner, height() - kTextTop - kPadding);
}

void MessagePanel::refresh() {
    Text6->setEnabled(!state_.isLocked && !state_.isRecording);
    if (const QString file = textOfBytes(state_.Text6); Text6->text() != file)
        Text6->setText(file);
    followText(*Erbox, shown_, state_.Erbox);
}

void followText(QPlainTextEdit& box, std::string& shown, const std::string& text) {
    if (text == shown)
        return;
    QScrollBar& bar = *box.verticalScrollBar();
    const bool atEnd = bar.value() == bar.maximum();
    const int before = bar.value();
    if (!shown.empty() && text.starts_with(shown)) {
        QTextCursor end(box.document());
        end.movePosition(QTextCursor::End);
        end.insertText(toQString(std::string_view(text).substr(shown.size())));
    } else {
        box.setPlainText(toQString(text));
    }
    shown = text;
    bar.setValue(atEnd ? bar.maximum() : before);
}

} // namespace velmora
