// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/TextsPanel.h"

#include "base/QtText.h"
#include "composition/Workspace.h"
#include "notation/LyricsExtras.h"
#include "notation/SongDocument.h"
#include "parts/Desk.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "songwriter/SongParts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>

#include <array>

namespace velmora {

namespace {
constexpr int kUpper = 6;
constexpr int kLower = 37;
constexpr const char* kFirstFont = "Times New Roman";
constexpr std::array kSizes{"8", "10", "12", "14", "18", "24", "36"};
constexpr int kFirstSize = 2; ///< "12"

/// Shows a text that came from elsewhere, and leaves what is being typed alone.
void showText(QLineEdit& field, const std::string& text) {
    if (const QString shown = toQString(text); field.text() != shown)
        field.setText(shown);
}
} // namespace

TextsPanel::TextsPanel(const SongParts& parts, QWidget* parent) : QWidget(parent), parts_(parts) {
    setObjectName("textsPanel");
    notation::SongDocument& song = parts_.song;
    Title_ = addField(*this, parts_, {"Title", "Title", "Stands over the first page", {12, kUpper}}, 64, 216,
                      [this, &song](const QString& text) {
                          song.setup.title = text.toStdString();
                          song.wordsTyped();
                          if (onTitle)
                              onTitle();
                      });
    addFonts();
    Check6_ = addCheck(
        *this, parts_,
        {"Check6", "Print Title and Page No. On Each Page", "Otherwise on the first alone", {608, kUpper}},
        [&song](bool ticked) { song.setup.titleEveryPage = ticked; });
    auto* Com1 = new CommandButton(parts_.look, ButtonForm::Text, this);
    Com1->setObjectName("Com1");
    Com1->setFace("", "Line Text");
    Com1->setGeometry(904, kUpper, 84, 24);
    parts_.desk.tips.SetToolTip(*Com1,
                                {"Line Text", "A text on the page; drag it to where it is to stand", ""});
    connect(Com1, &QAbstractButton::clicked, this, [this] {
        if (onLineText)
            onLineText();
    });
    const auto words = [&song](std::string& into) {
        return [&song, &into](const QString& text) {
            into = text.toStdString();
            song.wordsTyped();
        };
    };
    composer_ = addField(*this, parts_,
                         {"composer", "Composer", "Stands at the right of the clean page", {12, kLower}}, 64,
                         160, words(song.setup.composer));
    tempo_ =
        addField(*this, parts_,
                 {"tempoWords", "Tempo", "Over the first bar of the clean page: Lively, say", {248, kLower}},
                 44, 120, words(song.setup.tempoWords));
    verses_ = addField(*this, parts_,
                       {"verses",
                        "Words under the notes",
                        "A line of words, laid under the notes of the clean page. Hyphens part syllables: "
                        "Twin-kle twin-kle lit-tle star. A bar, |, begins another verse",
                        {424, kLower}},
                       140, 424, [&song](const QString& text) {
                           notation::setVersesLine(text.toStdString(), song.setup);
                           song.wordsTyped();
                       });
    refresh();
}

void TextsPanel::addFonts() {
    auto* words = new QLabel("Font", this);
    words->setGeometry(308, kUpper, 32, 24);
    lstFontName_ = new QComboBox(this);
    lstFontName_->setObjectName("lstFontName");
    lstFontName_->setAccessibleName("Font of texts");
    lstFontName_->addItem(kFirstFont);
    lstFontName_->setGeometry(340, kUpper, 184, 24);
    words->setBuddy(lstFontName_);
    parts_.desk.tips.SetToolTip(*lstFontName_,
                                {"Font", "Of the texts that are placed on the page from now on", ""});
    lstFontSize_ = new QComboBox(this);
    lstFontSize_->setObjectName("lstFontSize");
    lstFontSize_->setAccessibleName("Size of texts");
    for (const char* size : kSizes)
        lstFontSize_->addItem(size);
    lstFontSize_->setCurrentIndex(kFirstSize);
    lstFontSize_->setGeometry(532, kUpper, 60, 24);
    parts_.desk.tips.SetToolTip(*lstFontSize_,
                                {"Size", "In points, of the texts that are placed from now on", ""});
    for (QComboBox* list : {lstFontName_, lstFontSize_})
        connect(list, &QComboBox::activated, this, [this] {
            if (onStyle)
                onStyle();
        });
}

void TextsPanel::showFonts() {
    if (std::exchange(hasFonts_, true))
        return;
    QStringList families = QFontDatabase::families();
    families.removeAll(kFirstFont);
    families.removeIf([](const QString& family) { return QFontDatabase::isPrivateFamily(family); });
    lstFontName_->addItems(families);
}

/// Bold as the title in classic manners; otherwise as it will stand on the page.
notation::TextStyle TextsPanel::style() const {
    const bool isClassic = parts_.desk.workspace.manners == Manners::classic();
    return {.family = lstFontName_->currentText().toStdString(),
            .points = lstFontSize_->currentText().toDouble(),
            .bold = isClassic && parts_.song.setup.titleStyle.bold};
}

void TextsPanel::refresh() {
    const notation::ScoreSetup& setup = parts_.song.setup;
    showText(*Title_, setup.title);
    showText(*composer_, setup.composer);
    showText(*tempo_, setup.tempoWords);
    if (!verses_->hasFocus())
        showText(*verses_, notation::versesLine(setup));
    Check6_->setChecked(setup.titleEveryPage);
    for (QLineEdit* field : {composer_, tempo_, verses_})
        field->setEnabled(!setup.classicPage);
}

} // namespace velmora
