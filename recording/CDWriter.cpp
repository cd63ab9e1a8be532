// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/CDWriter.h"

#include "base/DialogNames.h"
#include "base/Dialogs.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "parts/Desk.h"
#include "recording/CdTrackList.h"
#include "recording/SessionButton.h"
#include "recording/ShareBar.h"
#include "shell/ExToolTip.h"
#include "shell/MessageBox.h"
#include "shell/ReadOut.h"
#include "shell/SkinIcon.h"
#include "shell/SkinPainter.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace velmora {

namespace {
constexpr const char* kTitle = "Audio CD Writer";
constexpr std::string_view kFilter = "Supported (*.wav;*.mp3)|*.wav;*.mp3|MPEG-3 audio (*.mp3)|*.mp3|"
                                     "PCM WAV (*.wav)|*.wav";
constexpr std::string_view kImageFilter = "Disc image (*.cue)|*.cue";
constexpr const char* kWarning = "This is an Alpha Release component and carries no warranties.  \n"
                                 "The user assumes full responsibility for its use. \nContinue?";
constexpr const char* kNoHardware = "No CD Burner Hardware was found on your computer";

// Places count from the panel's top, under the title.
constexpr QSize kSize(640, 452);
constexpr int kMargin = 12;
constexpr int kListWidth = 488;
constexpr int kRight = 508;
constexpr int kRightWidth = 120;
constexpr QRect kHeading(kMargin, 13, kListWidth, 18);
constexpr QRect kList(kMargin, 32, kListWidth, 180);
constexpr int kButtonStep = 36;
constexpr int kButtonHeight = 28;
constexpr QRect kTotal(kRight, 192, kRightWidth, 20);
constexpr int kFieldTop = 238;
constexpr int kFieldHeight = 24;
constexpr int kDriveWidth = 332;
constexpr int kSpeedLeft = 356;
constexpr int kSpeedWidth = 144;
constexpr QRect kProgress(kMargin, 276, kListWidth, 96);
constexpr QRect kBurn(kRight, 336, kRightWidth, 36);
constexpr int kStatusTop = 392;
constexpr int kStatusHeight = 32;
constexpr int kCaption = 10; ///< pixels of small words

/// A line across the window, over its foot.
class Rule : public QWidget {
public:
    Rule(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {}

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        horizontalLine(painter, 0, 0, width(), toQColor(look_.skin().line));
    }

private:
    const Appearance& look_;
};

QString percent(const ShareBar& bar) {
    return QStringLiteral("%1 %").arg(bar.percent());
}
} // namespace

CDWriter::CDWriter(Desk& desk, QWidget* composing, std::unique_ptr<cAudio> audio)
    : SkinnedWindow(desk.skins, {.minimize = true, .help = true})
    , desk_(desk)
    , audio_(audio ? std::move(audio) : std::make_unique<cAudio>(&desk.loop))
    , drives_{{.name = std::string(kImageDrive), .address = {}, .isImage = true, .speeds = {}}} {
    setObjectName("CDWriter");
    setWindowTitle(kTitle);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAcceptDrops(true);
    setFixedSize(kSize);
    addControls();
    addProgress();
    addTips();
    setHelp([this] { desk_.windows.help("audio-cd"); });
    showDrives();
    showTracks(std::nullopt);
    if (composing)
        move(composing->geometry().center() - rect().center());
}

CDWriter::~CDWriter() {
    cancel_.request_stop();
}

SessionButton* CDWriter::addButton(const char* name, const char* icon, const char* words,
                                   const QRect& place) {
    auto* button = new SessionButton(look(), icon, words, Ibak5());
    button->setObjectName(name);
    button->setGeometry(place);
    return button;
}

void CDWriter::addCaption(const char* words, int x, int y) {
    constexpr int kHeight = 13;
    auto* caption = new QLabel(words, Ibak5());
    caption->setFont(textFont(kCaption));
    caption->setForegroundRole(QPalette::PlaceholderText);
    caption->setGeometry(x, y - kHeight - 1, kRightWidth, kHeight);
}

void CDWriter::addControls() {
    auto* heading = new QLabel("Audio CD Writer Alpha 1", Ibak5());
    heading->setFont(textFont(12, true));
    heading->setGeometry(kHeading);
    lstTracks_ = new CdTrackList(look(), Ibak5());
    lstTracks_->setObjectName("lstTracks");
    lstTracks_->setGeometry(kList);
    lstTracks_->installEventFilter(this);
    const auto place = [](int row) {
        return QRect(kRight, kList.top() + row * kButtonStep, kRightWidth, kButtonHeight);
    };
    cmdAddFile_ = addButton("cmdAddFile", "add", "Add", place(0));
    cmdRemFile_ = addButton("cmdRemFile", "remove", "Remove", place(1));
    cmdMoveUp_ = addButton("cmdMoveUp", "up", "Move up", place(2));
    cmdMoveDown_ = addButton("cmdMoveDown", "down", "Move down", place(3));
    addCaption("Total length", kRight, kTotal.top());
    lblTotal_ = new ReadOut(look(), "lblTotal", Ibak5());
    lblTotal_->setGeometry(kTotal);
    lblTotal_->setAlignment(Qt::AlignCenter);
    addCaption("Drive", kMargin, kFieldTop);
    cboDrv_ = new QComboBox(Ibak5());
    cboDrv_->setObjectName("cboDrv");
    cboDrv_->setAccessibleName("Drive");
    cboDrv_->setGeometry(kMargin, kFieldTop, kDriveWidth, kFieldHeight);
    addCaption("Speed", kSpeedLeft, kFieldTop);
    cboSpeed_ = new QComboBox(Ibak5());
    cboSpeed_->setObjectName("cboSpeed");
    cboSpeed_->setAccessibleName("Speed");
    cboSpeed_->setGeometry(kSpeedLeft, kFieldTop, kSpeedWidth, kFieldHeight);
    connect(lstTracks_, &QTreeWidget::currentItemChanged, this, [this] { showCommands(); });
    connect(cmdAddFile_, &QAbstractButton::clicked, this, &CDWriter::cmdAddFile_Click);
    connect(cmdRemFile_, &QAbstractButton::clicked, this, &CDWriter::cmdRemFile_Click);
    connect(cmdMoveUp_, &QAbstractButton::clicked, this, &CDWriter::cmdMoveUp_Click);
    connect(cmdMoveDown_, &QAbstractButton::clicked, this, &CDWriter::cmdMoveDown_Click);
    connect(cboDrv_, &QComboBox::currentIndexChanged, this, [this] { showSpeeds(); });
}

void CDWriter::addProgress() {
    frmPrg_ = new QGroupBox("Progress", Ibak5());
    frmPrg_->setObjectName("frmPrg");
    frmPrg_->setGeometry(kProgress);
    const auto addRow = [this](int row, const char* words, const char* name, ShareBar*& bar, QLabel*& share) {
        constexpr int kRowStep = 28;
        constexpr int kBarLeft = 72;
        constexpr int kBarHeight = 12;
        const int y = 40 + row * kRowStep;
        auto* label = new QLabel(words, frmPrg_);
        label->setGeometry(kMargin, y - 2, kBarLeft - kMargin, 18);
        bar = new ShareBar(look(), ShareBar::Ground::Panel, frmPrg_);
        bar->setObjectName(name);
        bar->setAccessibleName(words);
        bar->setGeometry(kBarLeft, y + 1, kListWidth - 136, kBarHeight);
        share = new QLabel(percent(*bar), frmPrg_);
        share->setFont(textFont(12, true));
        share->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        share->setGeometry(kListWidth - 60, y - 2, 48, 18);
        return label;
    };
    lblTrack_ = addRow(0, "Track", "prgTrack", prgTrack_, lblTrackShare_);
    lblTrack_->setObjectName("lblTrack");
    addRow(1, "Total", "prgTotal", prgTotal_, lblTotalShare_);
    cmdBurn_ = addButton("cmdBurn", "disc", "Burn", kBurn);
    connect(cmdBurn_, &QAbstractButton::clicked, this, &CDWriter::cmdBurn_Click);
    sbar_ = new QLabel(Ibak5());
    sbar_->setObjectName("sbar");
    sbar_->setTextFormat(Qt::PlainText);
    sbar_->setGeometry(14, kStatusTop, kSize.width() - 28, kStatusHeight);
    (new Rule(look(), Ibak5()))->setGeometry(0, kStatusTop - 1, kSize.width(), 1);
    QWidget* last = lstTracks_;
    for (QWidget* next : std::initializer_list<QWidget*>{cmdAddFile_, cmdRemFile_, cmdMoveUp_, cmdMoveDown_,
                                                         cboDrv_, cboSpeed_, cmdBurn_})
        setTabOrder(std::exchange(last, next), next);
}

void CDWriter::addTips() {
    ExToolTip& tips = desk_.tips;
    attachTips(tips);
    tips.SetToolTip(*lstTracks_, {"Tracks", "In the order of the disc. Files can be dropped here", ""});
    tips.SetToolTip(*cmdAddFile_, {"Add", "Chooses a sound file as the next track. Key: Insert", ""});
    tips.SetToolTip(*cmdRemFile_, {"Remove", "Takes the chosen track from the list. Key: Delete", ""});
    tips.SetToolTip(*cmdMoveUp_, {"Move up", "One place to the front. Keys: Ctrl and Up", ""});
    tips.SetToolTip(*cmdMoveDown_, {"Move down", "One place to the back. Keys: Ctrl and Down", ""});
    tips.SetToolTip(*lblTotal_, {"Total length", "A disc holds 80 minutes, less some seconds", ""});
    tips.SetToolTip(*cboDrv_, {"Drive", "What writes the disc. An image needs no burner", ""});
    tips.SetToolTip(*cboSpeed_, {"Speed", "How fast the drive writes. Slower is safer", ""});
    tips.SetToolTip(*frmPrg_, {"Progress", "How much is written", ""});
    tips.SetToolTip(*prgTrack_, {"Track", "How far this track has come", ""});
    tips.SetToolTip(*prgTotal_, {"Total", "How far the whole disc has come", ""});
    tips.SetToolTip(*cmdBurn_, {"Burn", "Writes the tracks, reads them back and compares. Keys: Ctrl+B", ""});
    tips.SetToolTip(*sbar_, {"State", "What goes on", ""});
}

void CDWriter::open(Windows::Focus focus) {
    if (!warned_) {
        if (std::exchange(asking_, true))
            return;
        const Answer answer = askYesNo(skins(), nullptr, kWarning, kTitle);
        asking_ = false;
        if (answer != Answer::Yes)
            return;
        warned_ = true;
    }
    setAttribute(Qt::WA_ShowWithoutActivating, focus == Windows::Focus::Leave);
    closes_ = false;
    show();
    if (focus == Windows::Focus::Take) {
        raise();
        activateWindow();
    }
    if (!std::exchange(looked_, true))
        QTimer::singleShot(0, this, [this] { lookForDrives(); });
}

void CDWriter::unload() {
    cancel_.request_stop();
}

bool CDWriter::mayEnd() {
    if (work_ != Work::Burning)
        return true;
    return asks("The disc is not finished yet. What is written so far would be lost.\n"
                "Stop burning?");
}

/// The image is there while others are looked for.
void CDWriter::lookForDrives() {
    if (work_ != Work::None)
        return;
    work_ = Work::Looking;
    showCommands();
    showState("Looking for drives...");
    drives_ = audio_->drives();
    work_ = Work::None;
    showDrives();
    showRest();
}

void CDWriter::showDrives() {
    cboDrv_->clear();
    for (const CdDrive& one : drives_)
        cboDrv_->addItem(skinIcon(look(), one.isImage ? "save" : "disc", IconGround::Field),
                         toQString(one.name));
    showSpeeds();
}

void CDWriter::showSpeeds() {
    cboSpeed_->clear();
    for (const std::string& text : drive().speedTexts())
        cboSpeed_->addItem(toQString(text));
    showCommands();
}

const CdDrive& CDWriter::drive() const {
    const auto row = static_cast<std::size_t>(std::max(cboDrv_->currentIndex(), 0));
    return drives_[std::min(row, drives_.size() - 1)];
}

void CDWriter::showTracks(std::optional<std::size_t> chosen) {
    lstTracks_->show(tracks_, chosen);
    const auto seconds = tracks_.sectors() / kSectorsPerSecond;
    lblTotal_->setText(
        QStringLiteral("%1:%2 min").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0')));
    lblTotal_->setAccessibleName("Total length: " + lblTotal_->text());
    showRest();
}

void CDWriter::showCommands() {
    const bool free = work_ == Work::None;
    const auto chosen = lstTracks_->chosen();
    cmdAddFile_->setEnabled(work_ != Work::Burning);
    cmdRemFile_->setEnabled(work_ != Work::Burning && chosen);
    cmdMoveUp_->setEnabled(work_ != Work::Burning && chosen && *chosen > 0);
    cmdMoveDown_->setEnabled(work_ != Work::Burning && chosen && *chosen + 1 < tracks_.list().size());
    cboDrv_->setEnabled(free);
    cboSpeed_->setEnabled(free);
    cmdBurn_->setEnabled(free && !tracks_.list().empty());
}

void CDWriter::showState(const QString& words) {
    sbar_->setForegroundRole(work_ == Work::None ? QPalette::PlaceholderText : QPalette::WindowText);
    if (sbar_->text() != words)
        sbar_->setText(words);
    sbar_->setAccessibleName(words);
}

void CDWriter::showRest() {
    showCommands();
    if (work_ != Work::None)
        return;
    const auto count = tracks_.list().size();
    if (count > 0)
        showState(count == 1 ? QStringLiteral("1 track") : QStringLiteral("%1 tracks").arg(count));
    else if (looked_ && drives_.size() == 1)
        showState(QLatin1String(kNoHardware) + "; a disc image can be written.");
    else
        showState("Add sound files, or drop them on the list.");
}

void CDWriter::showShares(double track, double total) {
    prgTrack_->setShare(track);
    prgTotal_->setShare(total);
    lblTrackShare_->setText(percent(*prgTrack_));
    lblTotalShare_->setText(percent(*prgTotal_));
}

bool CDWriter::asks(const QString& question) {
    if (std::exchange(asking_, true))
        return false;
    const Answer answer = askYesNo(skins(), this, question, kTitle);
    asking_ = false;
    return answer == Answer::Yes;
}

void CDWriter::say(const QString& words) {
    tell(skins(), this, words, kTitle);
}

void CDWriter::add(const std::vector<std::filesystem::path>& files) {
    if (work_ == Work::Burning)
        return;
    QStringList problems;
    for (const std::filesystem::path& file : files) {
        const std::string problem = tracks_.add(file);
        if (problem == kTooManyTracks) {
            problems << toQString(problem);
            break;
        }
        if (!problem.empty())
            problems << textOfBytes(file.filename().string()) + "\n" + toQString(kNotSupported);
    }
    showTracks(tracks_.list().empty() ? std::nullopt : std::optional(tracks_.list().size() - 1));
    if (!problems.isEmpty())
        say(problems.join("\n"));
}

void CDWriter::cmdAddFile_Click() {
    const ChosenFile chosen =
        desk_.dialogs.OpenDialog("Add a track", kFilter, desk_.folders.media().string());
    if (!chosen.path.empty())
        add({chosen.path});
}

void CDWriter::cmdRemFile_Click() {
    const auto chosen = lstTracks_->chosen();
    if (!chosen || work_ == Work::Burning)
        return;
    tracks_.remove(*chosen);
    const std::size_t left = tracks_.list().size();
    showTracks(left == 0 ? std::nullopt : std::optional(std::min(*chosen, left - 1)));
}

void CDWriter::cmdMoveUp_Click() {
    if (const auto chosen = lstTracks_->chosen(); chosen && work_ != Work::Burning && tracks_.moveUp(*chosen))
        showTracks(*chosen - 1);
}

void CDWriter::cmdMoveDown_Click() {
    if (const auto chosen = lstTracks_->chosen();
        chosen && work_ != Work::Burning && tracks_.moveDown(*chosen))
        showTracks(*chosen + 1);
}

void CDWriter::cmdBurn_Click() {
    if (work_ != Work::None || tracks_.list().empty())
        return;
    work_ = Work::Burning;
    cancel_ = {};
    const bool hadFocus = cmdBurn_->hasFocus(); // which a disabled button loses
    showCommands();
    showShares(0, 0);
    burn();
    work_ = Work::None;
    endTracks();
    showCommands();
    if (hadFocus)
        cmdBurn_->setFocus();
    if (std::exchange(closes_, false))
        close();
}

/// Whether the tracks have room, told before anything is written.
bool CDWriter::fits(const CdDrive& drive, const Disc& disc) {
    const std::int64_t room = disc.sectors > 0 ? disc.sectors : kDiscOf80Minutes;
    const std::int64_t sectors = tracks_.sectors();
    if (sectors > room) {
        say(QStringLiteral("The tracks are %1 too long for this disc.")
                .arg(toQString(discTime(sectors - room))));
        return false;
    }
    return !drive.isImage || sectors <= kDiscOf80Minutes ||
           asks(QStringLiteral("The tracks are %1 too long for a disc of 80 minutes.\nContinue?")
                    .arg(toQString(discTime(sectors - kDiscOf80Minutes))));
}

bool CDWriter::makesBlank(const CdDrive& drive, const Disc& disc) {
    if (disc.state != DiscState::Rewritable)
        return true; // what else is wrong with it, burning tells
    if (!asks(QStringLiteral("The disc in %1 isn't empty. All that is on it would be erased.\nContinue?")
                  .arg(toQString(drive.name))))
        return false;
    showState("Blanking disc...");
    const std::string problem = audio_->blank(drive, *this);
    if (!problem.empty())
        say(toQString(problem));
    showShares(0, 0);
    return problem.empty();
}

void CDWriter::burn() {
    const CdDrive drive = this->drive();
    std::filesystem::path image;
    if (drive.isImage) {
        image = desk_.dialogs
                    .SaveDialog1("Write a disc image", kImageFilter, desk_.folders.media().string(), ".cue")
                    .path;
        if (image.empty())
            return showState("");
    }
    showState("Looking at the disc...");
    const Disc disc = audio_->disc(drive);
    if (!fits(drive, disc) || !makesBlank(drive, disc) ||
        (!audio_->setSpeed(drive, static_cast<std::size_t>(std::max(cboSpeed_->currentIndex(), 0))) &&
         !asks("Could not set writing speed.\nContinue?")))
        return showState("");
    const BurnOutcome outcome = audio_->burn(drive, tracks_, image, *this, cancel_.get_token());
    if (outcome.cancelled) {
        showState("Stopped.");
        if (!outcome.detail.empty() && !closes_)
            say(toQString(outcome.detail));
        return;
    }
    const QString text = toQString(burnText(outcome.code));
    showState(text);
    say(outcome.detail.empty() ? text : text + "\n" + toQString(outcome.detail));
}

void CDWriter::beginTrack(std::size_t track, const QString& state) {
    lstTracks_->setAtWork(track);
    lblTrack_->setText(QStringLiteral("Track %1").arg(track + 1));
    prgTrack_->setAccessibleName(lblTrack_->text());
    showState(state);
}

/// What follows is about all of them.
void CDWriter::endTracks() {
    lstTracks_->setAtWork(std::nullopt);
    lblTrack_->setText("Track");
    if (prgTrack_->accessibleName() != lblTrack_->text())
        prgTrack_->setAccessibleName(lblTrack_->text());
}

void CDWriter::StartCaching(std::size_t track) {
    beginTrack(track, "Caching track...");
}

void CDWriter::CacheProgress(double trackShare, double totalShare) {
    showShares(trackShare, totalShare);
}

void CDWriter::StartWriting(std::size_t track) {
    beginTrack(track, "Writing track...");
}

void CDWriter::WriteProgress(double trackShare, double totalShare) {
    showShares(trackShare, totalShare);
}

void CDWriter::ClosingTrack() {
    showState("Closing track...");
}

void CDWriter::ClosingSession() {
    showState("Closing session...");
}

void CDWriter::Comparing(double share) {
    endTracks();
    showState("Comparing...");
    showShares(share, share);
}

void CDWriter::Blanking(double share) {
    showShares(share, share);
}

void CDWriter::Finished() {
    endTracks();
    showState("Finished.");
    showShares(1, 1);
}

void CDWriter::closeEvent(QCloseEvent* event) {
    if (work_ != Work::Burning)
        return event->accept();
    event->ignore();
    if (mayEnd()) {
        if (work_ != Work::Burning) { // it ended while the question stood
            event->accept();
            return;
        }
        closes_ = true;
        cancel_.request_stop();
        showState("Stopping...");
    }
}

void CDWriter::keyPressEvent(QKeyEvent* event) {
    const bool ctrl = event->modifiers() == Qt::ControlModifier;
    switch (event->key()) {
    case Qt::Key_Escape:
        close();
        break;
    case Qt::Key_F1:
        desk_.windows.help("audio-cd");
        break;
    case Qt::Key_Insert:
        cmdAddFile_->click();
        break;
    case Qt::Key_B:
        if (ctrl)
            cmdBurn_->click();
        break;
    default:
        SkinnedWindow::keyPressEvent(event);
    }
}

/// The list's own keys are ours where they move or remove tracks.
bool CDWriter::eventFilter(QObject* watched, QEvent* event) {
    if (watched == lstTracks_ && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool ctrl = key->modifiers() == Qt::ControlModifier;
        SessionButton* button = nullptr;
        if (key->key() == Qt::Key_Delete)
            button = cmdRemFile_;
        else if (ctrl && key->key() == Qt::Key_Up)
            button = cmdMoveUp_;
        else if (ctrl && key->key() == Qt::Key_Down)
            button = cmdMoveDown_;
        if (button) {
            button->click();
            return true;
        }
    }
    return SkinnedWindow::eventFilter(watched, event);
}

void CDWriter::dragEnterEvent(QDragEnterEvent* event) {
    if (work_ != Work::Burning && event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void CDWriter::dropEvent(QDropEvent* event) {
    std::vector<std::filesystem::path> files;
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile())
            files.emplace_back(bytesOfText(url.toLocalFile()));
    if (files.empty())
        return;
    event->acceptProposedAction();
    // After the drag has ended: a box would hold the other program.
    QTimer::singleShot(0, this, [this, files] { add(files); });
}

} // namespace velmora
