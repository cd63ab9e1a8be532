// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/TakePanel.h"

#include "base/Dialogs.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "base/Text.h"
#include "parts/Desk.h"
#include "recording/TakeLoudness.h"
#include "recording/Waveform.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"
#include "studio/Normalise.h"
#include "studio/OtherFormats.h"
#include "studio/Studio.h"
#include "studio/TrimTake.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora {

namespace {
namespace fs = std::filesystem;

constexpr int kPadding = 12;
constexpr int kPictureTop = 34;
constexpr int kRow = 24;
constexpr int kRowStep = 32;
constexpr int kLabel = 32;
constexpr int kFollowMilliseconds = 60;
constexpr int kWordsLeft = 84; ///< beside the panel's title
constexpr int kLouderWidth = 160;
constexpr int kCoverWidth = 60;
constexpr int kSaveAsWidth = 184;
constexpr double kFadeSeconds = 1;
constexpr const char* kCut = "Cut to Part";
constexpr const char* kLouder = "Make it as loud as others";
constexpr const char* kSaveAs = "Save As FLAC, Ogg or Opus...";

/// A name beside the file that no file has yet: "take cut.wav", "take cut 2.wav".
fs::path freeName(const fs::path& file, const std::string& word) {
    std::error_code ignored;
    fs::path name;
    int number = 1;
    do {
        name = file.parent_path() / file.stem();
        name += ' ' + word + (number > 1 ? ' ' + std::to_string(number) : std::string());
        name += file.extension();
        ++number;
    } while (fs::exists(name, ignored));
    return name;
}

/// Why there is no file; blank if there is one.
template<class Outcome>
std::string wordsOf(const Outcome& outcome) {
    using End = decltype(outcome.end);
    return outcome.end == End::Done        ? std::string()
           : outcome.end == End::Cancelled ? "Cancelled"
                                           : outcome.error;
}
} // namespace

TakePanel::TakePanel(const StudioParts& parts, TakeLoudness& loudness, QWidget* parent)
    : QGroupBox("The Take", parent)
    , parts_(parts)
    , studio_(parts.desk.studio)
    , loudness_(loudness)
    , waveform_(new Waveform(parts.look, this))
    , playPart_(addButton("playPart", "Play Part", {"Play Part", "Plays what is between the marks", "play"}))
    , cut_(addButton("cut", kCut,
                     {"Cut to Part",
                      "Makes a file of what is between the marks; the old one stays. "
                      "An MP3 file is encoded again for that, a WAV file isn't",
                      "cut"}))
    , fade_(new QCheckBox("Fade", this))
    , louder_(addButton("louder", kLouder,
                        {kLouder,
                         "Makes a file of -14 LUFS, limited where that would be too loud; the old one stays. "
                         "An MP3 file is encoded again for that",
                         ""}))
    , words_(new QLabel(this))
    , loudnessWords_(new QLabel(this))
    , title_(addField("title", "Title", "Stands in the files that are made of it, for music players",
                      studio_.state.title))
    , artist_(addField("artist", "Artist", "Stands in the files that are made of it, for music players",
                       studio_.state.artist))
    , cover_(addButton("cover", "Cover",
                       {"Cover", "A picture that stands in the MP3 file. Another press takes it away", ""}))
    , saveAs_(addButton("saveAs", kSaveAs,
                        {"Save As FLAC, Ogg or Opus",
                         "Makes such a file of the take, with its title and artist; the take stays", ""}))
    , back_(addButton("back", "Back", {"Back", "Shows the messages again", "back"})) {
    setObjectName("takePanel");
    fade_->setObjectName("fade");
    parts.desk.tips.SetToolTip(*fade_, {"Fade", "The part begins and ends softly, in a second each", ""});
    parts.desk.tips.SetToolTip(
        *waveform_,
        {"Picture of the take",
         "Press to play from there. Drag the marks at the ends to part something off. Keys: the arrows, "
         "with Shift for the right mark, and Enter",
         ""});
    words_->setObjectName("takeWords");
    words_->setTextFormat(Qt::PlainText);
    parts.desk.tips.SetToolTip(
        *words_,
        {"File", "Its name and its length, and from where to where the part between the marks lies", ""});
    words_->setFont(textFont(10));
    words_->setForegroundRole(QPalette::PlaceholderText);
    loudnessWords_->setObjectName("takeLoudness");
    loudnessWords_->setTextFormat(Qt::PlainText);
    loudnessWords_->setFont(textFont(10));
    loudnessWords_->setForegroundRole(QPalette::PlaceholderText);
    loudnessWords_->setAccessibleDescription("Loudness of the take");
    parts.desk.tips.SetToolTip(*loudnessWords_, loudnessTip());
    cover_->setCheckable(true);
    waveform_->onPlay = [this](double share) { playFrom(share); };
    waveform_->onMarks = [this] { showWords(); };
    connect(playPart_, &QAbstractButton::clicked, this, [this] { playPart(); });
    addMaker(*cut_, &TakePanel::cut);
    addMaker(*louder_, &TakePanel::makeLouder);
    addMaker(*saveAs_, &TakePanel::saveAs);
    connect(cover_, &QAbstractButton::clicked, this, [this] { chooseCover(); });
    connect(back_, &QAbstractButton::clicked, this, [this] {
        if (onBack)
            onBack();
    });
}

TakePanel::~TakePanel() = default;

CommandButton* TakePanel::addButton(const char* name, const char* words, const Tip& tip) {
    auto* button = new CommandButton(parts_.look, ButtonForm::Text, this);
    button->setObjectName(name);
    button->setFace("", words);
    parts_.desk.tips.SetToolTip(*button, tip);
    return button;
}

/// A button that makes a file; pressed while it does, it cancels that.
void TakePanel::addMaker(CommandButton& button, void (TakePanel::*press)()) {
    connect(&button, &QAbstractButton::clicked, this, [this, press] {
        if (work_.isRunning())
            work_.cancel();
        else
            (this->*press)();
    });
}

QLineEdit* TakePanel::addField(const char* name, const char* words, const char* tip, std::string& value) {
    auto* label = new QLabel(words, this);
    label->setObjectName(QLatin1String(name) + "Label");
    label->setFont(textFont(10));
    label->setForegroundRole(QPalette::PlaceholderText);
    auto* field = new QLineEdit(this);
    field->setObjectName(name);
    field->setAccessibleName(words);
    label->setBuddy(field);
    parts_.desk.tips.SetToolTip(*field, {words, tip, ""});
    connect(field, &QLineEdit::textEdited, this,
            [&value](const QString& text) { value = text.toStdString(); });
    return field;
}

void TakePanel::resizeEvent(QResizeEvent* event) {
    QGroupBox::resizeEvent(event);
    const int inner = width() - 2 * kPadding;
    const int lower = height() - kPadding - kRow;
    const int upper = lower - kRowStep;
    back_->setGeometry(width() - kPadding - 64, 2, 64, 22);
    waveform_->setGeometry(kPadding, kPictureTop, inner, upper - 8 - kPictureTop);
    int x = kPadding;
    const auto place = [&x](QWidget& part, int y, int width) {
        part.setGeometry(x, y, width, kRow);
        x += width + 8;
    };
    place(*playPart_, upper, 84);
    place(*cut_, upper, 92);
    place(*fade_, upper, fade_->sizeHint().width());
    place(*louder_, upper, kLouderWidth);
    loudnessWords_->setGeometry(x + 4, upper, width() - kPadding - x - 4, kRow);
    words_->setGeometry(kWordsLeft, 4, back_->x() - 8 - kWordsLeft, 22);
    showWords();
    x = kPadding;
    const int field = (inner - 2 * (kLabel + 8) - 2 * 8 - kCoverWidth - 8 - kSaveAsWidth) / 2;
    for (QLineEdit* one : {title_, artist_}) {
        if (auto* label = findChild<QLabel*>(one->objectName() + "Label"))
            place(*label, lower, kLabel);
        place(*one, lower, field);
    }
    place(*cover_, lower, kCoverWidth);
    place(*saveAs_, lower, kSaveAsWidth);
}

void TakePanel::showEvent(QShowEvent* event) {
    QGroupBox::showEvent(event);
    follows_.start(kFollowMilliseconds, this);
    refresh();
}

void TakePanel::hideEvent(QHideEvent* event) {
    follows_.stop();
    QGroupBox::hideEvent(event);
}

fs::path TakePanel::file() const {
    return trimmed(studio_.state.Text6);
}

void TakePanel::refresh() {
    if (!isVisible())
        return;
    showFile();
    const SessionState& state = studio_.state;
    const bool there = picture_ && picture_->problem().empty() && picture_->frames() > 0;
    const bool free = !state.isLocked && !state.isRecording && !work_.isRunning();
    waveform_->setEnabled(there);
    playPart_->setEnabled(there && free);
    refreshMaker(*cut_, kCut, there && free);
    refreshMaker(*louder_, kLouder, there && free);
    refreshMaker(*saveAs_, kSaveAs, there && free);
    fade_->setEnabled(there && free);
    for (const auto& [field, text] : {std::pair(title_, &state.title), std::pair(artist_, &state.artist)})
        if (const QString shown = toQString(*text); field->text() != shown)
            field->setText(shown);
    cover_->setChecked(!state.cover.empty());
    const MusicSession& music = studio_.music;
    const bool plays = music.isOpen() && music.file() == shown_ && (music.isPlaying() || music.isPaused());
    waveform_->setPosition(plays ? state.share : -1);
    if (there && isWhole_ && !state.isRecording)
        loudness_.follow(shown_);
    showLoudness();
}

void TakePanel::refreshMaker(CommandButton& button, const char* words, bool enabled) {
    const bool works = work_.isRunning() && maker_ == &button;
    if (const QString face = works ? "Cancel" : words; button.text() != face)
        button.setFace("", face);
    button.setEnabled(works || enabled);
}

void TakePanel::showLoudness() {
    showText(*loudnessWords_, work_.isRunning() ? std::to_string(std::lround(100 * work_.share())) + " % done"
                              : isWhole_        ? loudness_.words(shown_)
                                                : std::string());
}

/// Its picture, made anew where it is another file than is shown, or the same in another state.
void TakePanel::showFile() {
    const fs::path wanted = file();
    std::error_code error;
    const auto time = fs::last_write_time(wanted, error);
    if (wanted == shown_ && (error || time == shownTime_))
        return;
    shown_ = wanted;
    shownTime_ = time;
    waveform_->resetMarks();
    waveform_->setColumns({});
    picture_ = error ? nullptr : std::make_unique<TakePicture>(wanted);
    showPicture();
}

void TakePanel::showPicture() {
    isWhole_ = !picture_ || picture_->isDone(); // asked first: more may come meanwhile
    if (picture_)
        waveform_->setColumns(picture_->columns());
    showWords();
}

/// The name gives way where there is no room for all of it. Who reads by ear hears of the marks as they move.
void TakePanel::showWords() {
    QString name = "No recording yet";
    QString rest;
    QString part;
    if (picture_ && !picture_->problem().empty()) {
        name = toQString(picture_->problem());
    } else if (picture_) {
        const double seconds =
            picture_->rate() > 0 ? static_cast<double>(picture_->frames()) / picture_->rate() : 0;
        name = fileName(shown_.string());
        rest = QStringLiteral(", %1 seconds").arg(seconds, 0, 'f', 1);
        if (waveform_->begin() > 0 || waveform_->end() < 1)
            part = QStringLiteral(", part %1 to %2")
                       .arg(seconds * waveform_->begin(), 0, 'f', 1)
                       .arg(seconds * waveform_->end(), 0, 'f', 1);
        rest += part;
    }
    const QFontMetrics metrics = words_->fontMetrics();
    words_->setText(
        metrics.elidedText(name, Qt::ElideMiddle, words_->width() - metrics.horizontalAdvance(rest)) + rest);
    words_->setAccessibleName(name + rest);
    if (const QString heard = "Picture of the take" + part; waveform_->accessibleName() != heard)
        waveform_->setAccessibleName(heard);
}

void TakePanel::timerEvent(QTimerEvent* event) {
    if (event->timerId() != follows_.timerId())
        return QGroupBox::timerEvent(event);
    if (!isWhole_)
        showPicture();
    refresh();
}

// What it plays and makes.

void TakePanel::playFrom(double share) {
    play(share, 1);
}

void TakePanel::playPart() {
    play(waveform_->begin(), waveform_->end());
}

void TakePanel::play(double from, double to) {
    if (studio_.state.isLocked || studio_.state.isRecording)
        return;
    MusicSession& music = studio_.music;
    if ((!music.isOpen() || music.file() != shown_) && !music.OpenMP3(shown_))
        return;
    music.PlayPart(from, to);
}

void TakePanel::cut() {
    if (!picture_)
        return;
    const auto frameAt = [this](double share) {
        return static_cast<std::int64_t>(std::llround(share * static_cast<double>(picture_->frames())));
    };
    TrimJob job{.from = shown_,
                .to = freeName(shown_, "cut"),
                .begin = frameAt(waveform_->begin()),
                .end = frameAt(waveform_->end()),
                .mp3 = encodeSettings()};
    if (fade_->isChecked()) {
        const auto longest = (job.end - job.begin) / 2;
        job.fadeIn = job.fadeOut =
            std::min<std::int64_t>(std::llround(kFadeSeconds * picture_->rate()), longest);
    }
    make(
        *cut_, job.to,
        [job](const TakeWork::Progress& progress, const std::stop_token& cancel) {
            const TrimOutcome outcome = trimTake(job, progress, cancel);
            return Made{wordsOf(outcome), outcome.note};
        },
        Then::Show);
}

void TakePanel::makeLouder() {
    if (!picture_)
        return;
    const fs::path to = freeName(shown_, "loud");
    make(
        *louder_, to,
        [from = shown_, to, mp3 = encodeSettings()](const TakeWork::Progress& progress,
                                                    const std::stop_token& cancel) {
            const NormaliseOutcome outcome = normalise(from, to, kUsualLoudness, progress, cancel, mp3);
            return Made{wordsOf(outcome), outcome.note};
        },
        Then::Show);
}

void TakePanel::saveAs() {
    if (!picture_)
        return;
    std::string types;
    for (const OtherFormat& format : kOtherFormats)
        types.append(types.empty() ? "" : "|").append(format.filter);
    const fs::path proposed = parts_.desk.folders.songs() / fs::path(shown_).replace_extension(".flac");
    const ChosenFile chosen =
        parts_.desk.dialogs.SaveDialog("Save As FLAC, Ogg or Opus", types, proposed.string());
    if (chosen.path.empty())
        return;
    const auto type =
        static_cast<std::size_t>(std::clamp(chosen.filterIndex, 1, static_cast<int>(kOtherFormats.size())));
    const EncodeJob job{.wav = shown_,
                        .mp3 = withExtension(chosen.path, kOtherFormats[type - 1].extension),
                        .settings = {.title = studio_.state.title, .artist = studio_.state.artist}};
    make(
        *saveAs_, job.mp3,
        [job](const TakeWork::Progress& progress, const std::stop_token& cancel) {
            return Made{wordsOf(encodeByName(job, progress, cancel))};
        },
        Then::Keep);
}

/// As the panel and the formats are set, for what is made of an MP3 file.
EncodeSettings TakePanel::encodeSettings() const {
    const SessionState& state = studio_.state;
    return {.bitrate = kMp3Bitrates[std::min(state.Combo4, kMp3Bitrates.size() - 1)],
            .quality = std::min(state.Combo3, kEncoderQualities.size() - 1),
            .title = state.title,
            .artist = state.artist,
            .cover = state.cover};
}

/// @param then whether the new file takes the place of the one that is shown
void TakePanel::make(CommandButton& button, const fs::path& to, Making job, Then then) {
    maker_ = &button;
    const auto note = std::make_shared<std::string>();
    work_.start(
        [job = std::move(job), note](const TakeWork::Progress& progress, const std::stop_token& cancel) {
            Made made = job(progress, cancel);
            *note = std::move(made.note);
            return made.error;
        },
        [this, to, then, note, from = shown_](const std::string& words) {
            SessionState& state = studio_.state;
            if (words.empty() && then == Then::Show && !state.isRecording && file() == from)
                state.Text6 = to.string();
            onWords(words.empty() ? "File was saved as " + to.string() : words);
            if (words.empty() && !note->empty())
                onWords(*note);
            refresh();
        });
    refresh();
}

void TakePanel::chooseCover() {
    fs::path& cover = studio_.state.cover;
    cover = cover.empty()
                ? fs::path(parts_.desk.dialogs
                               .OpenDialog("Cover", "Pictures (*.jpg;*.jpeg;*.png)|*.jpg;*.jpeg;*.png",
                                           parts_.desk.folders.songs().string())
                               .path)
                : fs::path();
    refresh();
}

} // namespace velmora
