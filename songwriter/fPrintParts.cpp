// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/Desk.h"
#include "parts/SetupTab.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/ReadOut.h"
#include "shell/SkinPainter.h"
#include "songwriter/PrintPreview.h"
#include "songwriter/fPrint.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

namespace velmora {

namespace {
// Places count from the panel's top, under the title.
constexpr int kMargin = 12;
constexpr QRect kPreview(kMargin, 12, 324, 448);
constexpr int kUnderPreview = 472;
constexpr QRect kTabPage(348, 36, 440, 462);
constexpr int kGroupLeft = 8;
constexpr int kGroupWidth = 424;
constexpr int kHalfWidth = 208;
constexpr int kFieldHeight = 24;
constexpr int kNarrow = 88;
constexpr int kReadOut = 128;
constexpr int kButtonTop = 508;
constexpr int kButtonHeight = 32;
constexpr int kMostPage = 32767;

QLabel* addCaption(const char* words, QWidget* parent, const QRect& field) {
    constexpr int kSmall = 10;
    auto* caption = new QLabel(words, parent);
    caption->setFont(textFont(kSmall));
    caption->setForegroundRole(QPalette::PlaceholderText);
    caption->setGeometry(field.x(), field.y() - 16, field.width(), 14);
    return caption;
}

template<class Field>
Field* addField(const char* name, const char* words, QWidget* parent, const QRect& place) {
    auto* field = new Field(parent);
    field->setObjectName(name);
    field->setAccessibleName(words);
    field->setGeometry(place);
    addCaption(words, parent, place)->setBuddy(field);
    return field;
}

QRadioButton* addRadio(const char* name, const char* words, QWidget* parent, QPoint at) {
    auto* radio = new QRadioButton(words, parent);
    radio->setObjectName(name);
    radio->setGeometry({at, QSize(196, 20)});
    radio->setAutoExclusive(false);
    return radio;
}

QDoubleSpinBox* addLength(const char* name, const char* words, QWidget* parent, const QRect& place) {
    auto* length = addField<QDoubleSpinBox>(name, words, parent, place);
    length->setDecimals(1);
    length->setSingleStep(0.1);
    length->setAlignment(Qt::AlignCenter);
    length->setKeyboardTracking(false);
    return length;
}
} // namespace

QGroupBox* fPrint::addGroup(const char* words, QWidget* page, const QRect& place) {
    auto* group = new QGroupBox(words, page);
    group->setGeometry(place);
    return group;
}

ReadOut* fPrint::addReadOut(const char* name, const char* words, QGroupBox* group, QPoint at) {
    const QRect place(at, QSize(kReadOut, 20));
    auto* value = new ReadOut(look(), name, group);
    value->setGeometry(place);
    value->setAccessibleName(words);
    addCaption(words, group, place);
    return value;
}

void fPrint::addPreview() {
    preview_ = new PrintPreview(look(), Ibak5());
    preview_->setGeometry(kPreview);
    preview_->onDrag = [this](double x, double y) {
        layout_.drag(x, y);
        CmdSize();
    };
    preview_->onTurn = [this](int pages) { turnPages(pages); };
    chkFit_ = new QCheckBox("&Fit to page", Ibak5());
    chkFit_->setObjectName("chkFit");
    chkFit_->setGeometry(kMargin, kUnderPreview, 100, 18);
    chkCenter_ = new QCheckBox("&Center image", Ibak5());
    chkCenter_->setObjectName("chkCenter");
    chkCenter_->setGeometry(kMargin + 104, kUnderPreview, 112, 18);
    pageShown_ = new QLabel(Ibak5());
    pageShown_->setObjectName("pageShown");
    pageShown_->setForegroundRole(QPalette::PlaceholderText);
    pageShown_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    pageShown_->setGeometry(kMargin + 220, kUnderPreview, 104, 18);
    connect(chkFit_, &QCheckBox::clicked, this, [this](bool ticked) {
        layout_.percent = layout_.shownPercent() > 0 ? layout_.shownPercent() : layout_.percent;
        layout_.chkFit = ticked;
        CmdSize();
    });
    connect(chkCenter_, &QCheckBox::clicked, this, [this](bool ticked) {
        layout_.chkCenter = ticked;
        CmdSize();
    });
}

void fPrint::addTabs() {
    auto* frame = new SetupPage(look(), Ibak5());
    frame->setObjectName("SSTab1");
    frame->setGeometry(kTabPage);
    int x = kTabPage.x();
    const auto addTab = [&](const char* words, const char* tip, QWidget*& page) {
        page = new QWidget(frame);
        page->setGeometry(frame->rect());
        auto* tab = new SetupTab(look(), words, Ibak5());
        tab->setObjectName(QStringLiteral("SSTab1%1").arg(words));
        tab->setGeometry(QRect(QPoint(x, kTabPage.y() - tab->sizeHint().height() + 1), tab->sizeHint()));
        x += tab->width();
        desk_.tips.SetToolTip(*tab, {words, tip, ""});
        connect(tab, &QAbstractButton::toggled, this, [page](bool chosen) { page->setVisible(chosen); });
        return tab;
    };
    auto* first = addTab("Print", "Printer, paper and which pages", printPage_);
    addTab("Image", "How large the page stands on the paper", imagePage_);
    imagePage_->hide();
    first->setChecked(true);
    addPrinterGroup();
    addPaperGroup();
    addMarginGroup();
    addPagesGroup();
    addSummaryGroup();
    addImageTab();
}

void fPrint::addPrinterGroup() {
    auto* group = addGroup("Printer", printPage_, {kGroupLeft, 8, kGroupWidth, 86});
    cbPrinters_ = addField<QComboBox>("cbPrinters", "Printer", group, {12, 50, 264, kFieldHeight});
    cbQuality_ = addField<QComboBox>("cbQuality", "Quality (DPI)", group, {288, 50, 124, kFieldHeight});
    connect(cbPrinters_, &QComboBox::activated, this, [this] { cbPrinters_Click(); });
    connect(cbQuality_, &QComboBox::activated, this, [this] { CmdSize(); });
}

void fPrint::addPaperGroup() {
    using notation::PaperSize;
    using notation::PaperTurn;
    auto* group = addGroup("Paper", printPage_, {kGroupLeft, 102, kGroupWidth, 88});
    Option5_ = addRadio("Option5", "Letter (8.5\" x 11\")", group, {12, 35});
    Option6_ = addRadio("Option6", "A4 (210 x 297 mm.)", group, {224, 35});
    Option1_ = addRadio("Option1", "Portrait", group, {12, 59});
    Option2_ = addRadio("Option2", "Landscape", group, {224, 59});
    connect(Option5_, &QRadioButton::clicked, this, [this] { setPaper(PaperSize::Letter); });
    connect(Option6_, &QRadioButton::clicked, this, [this] { setPaper(PaperSize::A4); });
    connect(Option1_, &QRadioButton::clicked, this, [this] { setTurn(PaperTurn::Portrait); });
    connect(Option2_, &QRadioButton::clicked, this, [this] { setTurn(PaperTurn::Landscape); });
}

void fPrint::addMarginGroup() {
    struct MarginRow {
        const char* name;
        const char* words;
        QPoint at;
    };
    static const std::array<MarginRow, 4> kRows{{{"VScroll1", "Top Margin", {12, 50}},
                                                 {"VScroll2", "Left Margin", {108, 50}},
                                                 {"VScroll3", "Bottom  Margin", {12, 96}},
                                                 {"VScroll4", "Right Margin", {108, 96}}}};
    margins_ = addGroup("Margins (cm)", printPage_, {kGroupLeft, 198, kHalfWidth, 132});
    for (std::size_t i = 0; i < kRows.size(); ++i) {
        VScroll_[i] =
            addLength(kRows[i].name, kRows[i].words, margins_, {kRows[i].at, QSize(kNarrow, kFieldHeight)});
        connect(VScroll_[i], &QDoubleSpinBox::valueChanged, this, [this, i](double length) {
            if (showing_)
                return;
            layout_.setMargin(static_cast<notation::Margin>(i), length);
            CmdSize();
        });
    }
}

void fPrint::addPagesGroup() {
    auto* group = addGroup("Print Pages", printPage_, {kGroupLeft + kHalfWidth + 8, 198, kHalfWidth, 132});
    const auto addPageField = [&](const char* name, const char* words, int x) {
        auto* field = addField<QLineEdit>(name, words, group, {x, 50, kNarrow, kFieldHeight});
        field->setValidator(new QIntValidator(0, kMostPage, field));
        field->setAlignment(Qt::AlignCenter);
        return field;
    };
    Text3_ = addPageField("Text3", "From", 12);
    Text2_ = addPageField("Text2", "To", 108);
    txtCopies_ = addField<QSpinBox>("txtCopies", "Copies", group, {12, 96, kNarrow, kFieldHeight});
    txtCopies_->setRange(0, notation::kMostSheets);
    txtCopies_->setValue(1);
    txtCopies_->setAlignment(Qt::AlignCenter);
    connect(Text3_, &QLineEdit::textEdited, this, [this] {
        shown_ = score_.placeOf(Text3_->text().toInt());
        showShownPage();
    });
}

void fPrint::addSummaryGroup() {
    auto* group = addGroup("Printer summary", printPage_, {kGroupLeft, 338, kGroupWidth, 116});
    paper_ = addReadOut("Text1_4", "Paper", group, {12, 47});
    turn_ = addReadOut("Text1_5", "Orientation", group, {148, 47});
    scaleMode_ = addReadOut("Text1_6", "Scale", group, {284, 47});
    paperWidth_ = addReadOut("Text1_7", "Width", group, {12, 85});
    paperHeight_ = addReadOut("Text1_8", "Height", group, {148, 85});
    quality_ = addReadOut("Text1_9", "Quality (DPI)", group, {284, 85});
}

void fPrint::addImageTab() {
    constexpr double kLongest = 1000;
    auto* group = addGroup("Image", imagePage_, {kGroupLeft, 8, kGroupWidth, 86});
    imageWidth_ = addLength("Text1_0", "Width", group, {12, 50, kNarrow, kFieldHeight});
    imageHeight_ = addLength("Text1_1", "Height", group, {108, 50, kNarrow, kFieldHeight});
    imageScale_ = addLength("Text1_2", "Scale (%)", group, {204, 50, kNarrow, kFieldHeight});
    for (QDoubleSpinBox* length : {imageWidth_, imageHeight_, imageScale_})
        length->setRange(0, kLongest);
    const auto follow = [this](QDoubleSpinBox* field, void (notation::PrintLayout::*set)(double)) {
        connect(field, &QDoubleSpinBox::valueChanged, this, [this, set](double value) {
            if (showing_)
                return;
            (layout_.*set)(value);
            CmdSize();
        });
    };
    follow(imageWidth_, &notation::PrintLayout::setImageWidth);
    follow(imageHeight_, &notation::PrintLayout::setImageHeight);
    follow(imageScale_, &notation::PrintLayout::setPercent);
    auto* turn = addGroup("Paper", imagePage_, {kGroupLeft, 102, kGroupWidth, 86});
    cbOrientation_ = addField<QComboBox>("cbOrientation", "Orientation", turn, {12, 50, 212, kFieldHeight});
    cbOrientation_->addItems({"Portrait", "Landscape"});
    connect(cbOrientation_, &QComboBox::activated, this,
            [this](int index) { setTurn(static_cast<notation::PaperTurn>(index)); });
}

void fPrint::addButtons() {
    Label2_ = new QLabel(Ibak5());
    Label2_->setObjectName("Label2");
    Label2_->setTextFormat(Qt::PlainText);
    Label2_->setForegroundRole(QPalette::PlaceholderText);
    Label2_->setGeometry(kMargin, kButtonTop, 464, kButtonHeight);
    const auto add = [this](const char* name, const char* words, int x, int width) {
        auto* button = new CommandButton(look(), ButtonForm::Text, Ibak5());
        button->setObjectName(name);
        button->setFace("", words);
        button->setGeometry(x, kButtonTop, width, kButtonHeight);
        return button;
    };
    Command7_ = add("Command7", "Preview", 484, kNarrow);
    Command2_ = add("Command2", "Print", 580, 112);
    cmdCancel_ = add("cmdCancel", "Cancel", 700, kNarrow);
    connect(Command7_, &QAbstractButton::clicked, this, &fPrint::Command7_Click);
    connect(Command2_, &QAbstractButton::clicked, this, &fPrint::Command2_Click);
    connect(cmdCancel_, &QAbstractButton::clicked, this, &fPrint::cmdCancel_Click);
}

void fPrint::addTips() {
    ExToolTip& tips = desk_.tips;
    attachTips(tips);
    tips.SetToolTip(*preview_,
                    {"Preview", "The paper as it will be. Drag the page; turn pages with the wheel", ""});
    tips.SetToolTip(*chkFit_, {"Fit to page", "As large as the margins let it be", ""});
    tips.SetToolTip(*chkCenter_, {"Center image", "In the middle between the margins", ""});
    tips.SetToolTip(*cbPrinters_, {"Printer", "A printer of your system, or a PDF file", ""});
    tips.SetToolTip(*cbQuality_,
                    {"Quality (DPI)", "Dots an inch, as far as the printer offers a choice", ""});
    tips.SetToolTip(*Option5_, {Option5_->text(), "Paper as it is usual in America", ""});
    tips.SetToolTip(*Option6_, {Option6_->text(), "Paper as it is usual elsewhere", ""});
    tips.SetToolTip(*Option1_, {Option1_->text(), "The paper stands upright", ""});
    tips.SetToolTip(*Option2_, {Option2_->text(), "The paper lies on its long side", ""});
    tips.SetToolTip(*Text3_, {"From", "The first page to print. Blank: the first of all", ""});
    tips.SetToolTip(*Text2_, {"To", "The last page to print. Blank: the last of all", ""});
    tips.SetToolTip(*txtCopies_, {"Copies", "All pages come once, then once again for each copy", ""});
    tips.SetToolTip(*cbOrientation_, {"Orientation", "How the paper lies", ""});
    for (QDoubleSpinBox* field : VScroll_)
        tips.SetToolTip(*field, {field->accessibleName(), "Paper that stays free at this side", ""});
    tips.SetToolTip(*imageWidth_, {"Width", "Of the page's picture on the paper", ""});
    tips.SetToolTip(*imageHeight_, {"Height", "Of the page's picture on the paper", ""});
    tips.SetToolTip(*imageScale_, {"Scale", "100 is the page's own size", ""});
    tips.SetToolTip(*Command7_, {"Preview", "Shows the score as it is now", ""});
    tips.SetToolTip(*Command2_, {"Print", "Prints the chosen pages. Keys: Ctrl+P", ""});
    tips.SetToolTip(*cmdCancel_, {"Cancel", "Ends the printing; otherwise closes the window", ""});
}

} // namespace velmora
