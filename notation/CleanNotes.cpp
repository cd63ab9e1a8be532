// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanNotes.h"

#include "notation/CleanChords.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr double kLedgerOverhang = 0.32;
constexpr double kLedgerWidth = 0.15;
constexpr double kDotRadius = 0.2;
/// From the middle of a head to where its side is widest.
constexpr double kStemInHead = 0.17;
constexpr double kStemAtCross = 0.36;
constexpr double kStemAtFoot = 0.42;
constexpr double kSmall = 0.8;       ///< a reminding accidental beside a usual one
constexpr double kLettersFrom = 7;   ///< staff spaces below this have no letters
constexpr double kLetterHalf = 0.64; ///< half a lettered head's height
constexpr double kLetterLine = 0.07; ///< its black line
constexpr Colour kWhite = 0xFFFFFF;

/// Draws the parts of one sign at its column.
class SignPen {
public:
    SignPen(CleanInk& ink, const CleanMusic& music, const CleanSign& sign, double x)
        : ink_(ink)
        , music_(music)
        , sign_(sign)
        , x_(x)
        , space_(ink.style().space) {}

    void note() {
        if (!sign_.heads.front().shared)
            ledgers();
        for (const CleanHead& head : sign_.heads) {
            if (head.sign != Sign::None)
                accidental(head);
            if (!head.shared)
                drawHead(head);
            if (!head.shared)
                dots(head.dotPlace);
        }
        for (const CleanHead& head : sign_.heads)
            if (hasLetter(head))
                letter(head);
        if (sign_.hasStem())
            stem();
    }

    void rest(double x) {
        x_ = x;
        const MusicGlyph glyph = restGlyph(sign_.value);
        const double y = heightOfPlace(sign_.restPlace);
        ink_.glyph(glyph, at(0, y), Role::Rest, sign_.id);
        // Outside of the staff a whole or half rest has a line of its own.
        const int line = sign_.restPlace + (glyph == MusicGlyph::RestWhole ? 2 : 0);
        if (std::abs(line) > 4 && (glyph == MusicGlyph::RestWhole || glyph == MusicGlyph::RestHalf)) {
            const double own = heightOfPlace(line);
            ink_.line(at(-0.3, own), at(1.8, own), kLedgerWidth * space_, Role::Rest, sign_.id);
        }
        dots(sign_.restPlace + 1);
    }

private:
    [[nodiscard]] Point at(double x, double y) const { return {x_ + x * space_, y * space_}; }

    void ledgers() {
        for (const int side : {1, -1}) {
            const CleanHead& far = side > 0 ? sign_.heads.back() : sign_.heads.front();
            for (int place = 6; place <= far.place * side; place += 2) {
                double left = 100;
                double right = -100;
                for (const CleanHead& head : sign_.heads)
                    if (head.place * side >= place - 1) {
                        left = std::min(left, head.left);
                        right = std::max(right, head.left + music_.headWidth(head.shape));
                    }
                const double y = heightOfPlace(place * side);
                ink_.line(at(left - kLedgerOverhang, y), at(right + kLedgerOverhang, y),
                          kLedgerWidth * space_, Role::Ledger, sign_.id);
            }
        }
    }

    void accidental(const CleanHead& head) {
        const double y = heightOfPlace(head.place);
        const MusicGlyph glyph = accidentalGlyph(head.sign);
        ink_.glyph(glyph, at(head.signMiddle, y), Role::Accidental, sign_.id, head.courtesy ? kSmall : 1);
        if (!head.courtesy)
            return;
        for (const double side : {-1.0, 1.0}) {
            const double x = head.signMiddle + side * (roomOf(glyph).right * kSmall + 0.12);
            const double bulge = x + side * 0.35;
            ink_.add({CurveMark{{at(x, y - 1), at(bulge, y - 0.5), at(bulge, y + 0.5), at(x, y + 1)},
                                0.12 * space_},
                      Role::Accidental, sign_.id, kBlack});
        }
    }

    [[nodiscard]] bool hasOval(const CleanHead& head) const {
        return ink_.style().setup.learnToRead && isOval(head.shape);
    }
    [[nodiscard]] bool hasLetter(const CleanHead& head) const {
        return hasOval(head) && head.letter != ' ' && !head.shared && space_ >= kLettersFrom;
    }
    [[nodiscard]] static bool isHollow(const CleanHead& head) {
        return head.shape == MusicGlyph::HeadHalf || head.shape == MusicGlyph::HeadWhole;
    }
    [[nodiscard]] Point middleOf(const CleanHead& head) const {
        return at(head.left + music_.headWidth(head.shape) / 2, heightOfPlace(head.place));
    }
    [[nodiscard]] Colour colour() const {
        const Staff& staff = music_.score().staves[static_cast<std::size_t>(sign_.from->staff)];
        const int channel = sign_.from->voice > 0 ? staff.secondChannel : staff.channel;
        return ink_.style().setup.channelColours.at(
            static_cast<std::size_t>(std::clamp(channel, 0, kLastColour)));
    }

    void drawHead(const CleanHead& head) {
        if (!hasOval(head)) {
            const bool coloured = ink_.style().setup.learnToRead;
            ink_.add({GlyphMark{head.shape, middleOf(head), space_}, Role::Head, sign_.id,
                      coloured ? colour() : kBlack});
            return;
        }
        const double half = music_.headWidth(head.shape) / 2;
        oval(middleOf(head), half, kLetterHalf, kBlack);
        oval(middleOf(head), half - kLetterLine, kLetterHalf - kLetterLine, colour());
        if (isHollow(head))
            oval(middleOf(head), half - 0.24, kLetterHalf - 0.17, kWhite);
    }

    void oval(Point middle, double width, double height, Colour colour) {
        ink_.oval(middle, width * space_, height * space_, Role::Head, sign_.id, colour);
    }

    /// After all heads: those of a third lie over each other, their letters don't.
    void letter(const CleanHead& head) {
        const std::string text(1, head.letter);
        const int style = ink_.style().letters;
        const double points = ink_.style().into.styles[static_cast<std::size_t>(style)].points;
        const double capital = points * 4 / 3 * 0.72;
        const Point middle = middleOf(head);
        const double left = middle.x - ink_.style().extent(text, style).width / 2;
        ink_.text(text, style, {left, middle.y + capital / 2}, Role::Head, sign_.id,
                  isHollow(head) ? kBlack : inkOn(colour()));
    }

    /// Black or white, whichever stands out more.
    static Colour inkOn(Colour ground) {
        const auto linear = [&](int shift) {
            const double part = static_cast<double>(ground >> shift & 0xFF) / 255;
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        const double light = 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
        return (light + 0.05) / 0.05 >= 1.05 / (light + 0.05) ? kBlack : kWhite;
    }

    void dots(int place) {
        for (int dot = 0; dot < sign_.value.dots; ++dot) {
            const Point middle = at(sign_.dotsLeft + kDotRadius + dot * kDotStep, heightOfPlace(place));
            ink_.oval(middle, kDotRadius * space_, kDotRadius * space_, Role::Dot, sign_.id);
        }
    }

    /// How far beyond the head's middle, towards the stem's end, its stem begins.
    static double stemInHead(MusicGlyph shape) {
        switch (shape) {
        case MusicGlyph::HeadBlack:
        case MusicGlyph::HeadHalf:
            return kStemInHead;
        case MusicGlyph::HeadCross: // at its corner
            return kStemAtCross;
        case MusicGlyph::HeadTriangle:
        case MusicGlyph::HeadTriangleOpen: // of stems that point up: at its foot
            return -kStemAtFoot;
        default:
            return 0;
        }
    }

    void stem() {
        const double x = stemOf(sign_, music_);
        const CleanHead& head = sign_.inner();
        const double inHead = (sign_.stemUp ? -1 : 1) * stemInHead(head.shape);
        const double from = heightOfPlace(head.place) + inHead;
        ink_.line(at(x, from), at(x, sign_.stemEnd), kStemWidth * space_, Role::Stem, sign_.id);
        if (!sign_.hasFlag())
            return;
        for (int flag = 0; flag < sign_.flags(); ++flag) {
            const double y = sign_.stemEnd + (sign_.stemUp ? 1 : -1) * flag * kBeamStep;
            ink_.glyph(sign_.stemUp ? MusicGlyph::FlagUp : MusicGlyph::FlagDown, at(x, y), Role::Flag,
                       sign_.id);
        }
    }

    CleanInk& ink_;
    const CleanMusic& music_;
    const CleanSign& sign_;
    double x_;
    double space_;
};

void endSingleStem(CleanSign& sign) {
    const double length = kStemLength + std::max(0, sign.flags() - 2) * kBeamStep;
    const double outer = heightOfPlace(sign.outer().place);
    // A stem from far away reaches the middle line.
    sign.stemEnd =
        sign.stemUp ? std::min(outer - length, heightOfPlace(0)) : std::max(outer + length, heightOfPlace(0));
}

} // namespace

double stemOf(const CleanSign& sign, const CleanMusic& music) {
    const CleanHead& own = sign.inner();
    return own.left + (sign.stemUp ? music.headWidth(own.shape) - kStemWidth / 2 : kStemWidth / 2);
}

void drawNotes(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music) {
    const double space = ink.style().space;
    for (std::size_t i = 0; i < line.count(); ++i)
        for (CleanSign& sign : line.bar(i).signs) {
            if (sign.from->staff != staff)
                continue;
            if (sign.merged)
                continue;
            const double x = line.xOf(i, sign.column);
            SignPen pen(ink, music, sign, x);
            if (sign.isRest()) {
                const double from = i == 0 ? line.notesFrom : line.barLine(i);
                const double half = roomOf(MusicGlyph::RestWhole).right * space / 2;
                pen.rest(sign.value.wholeBar ? (from + line.barLine(i + 1)) / 2 - half : x);
                continue;
            }
            if (sign.beam < 0)
                endSingleStem(sign);
            pen.note();
        }
}

} // namespace velmora::notation
