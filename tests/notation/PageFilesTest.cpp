// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PageFiles.h"

#include "PageSheet.h"
#include "notation/PrintableText.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::notation;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {
/// What a program says of a file with these bytes; blank if it fails.
std::string said(const std::string& bytes, const QString& program, const QStringList& before,
                 const QStringList& behind = {}) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("page")));
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    file.close();
    QProcess process;
    process.start(program, before + QStringList(file.fileName()) + behind);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return {};
    return process.readAllStandardOutput().toStdString();
}

std::uint32_t numberAt(const std::string& bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4; ++i)
        number = number << 8 | static_cast<std::uint8_t>(bytes.at(i));
    return number;
}

/// A picture with three bytes a pixel, as programs hand it on.
struct Ppm {
    int width = 0, height = 0;
    std::string samples;
    [[nodiscard]] int red(int x, int y) const {
        return static_cast<std::uint8_t>(samples.at(static_cast<std::size_t>((y * width + x) * 3)));
    }
};
Ppm ppmOf(const std::string& bytes) {
    Ppm picture;
    int most = 0, used = 0;
    if (std::sscanf(bytes.c_str(), "P6 %d %d %d%n", &picture.width, &picture.height, &most, &used) == 3)
        picture.samples = bytes.substr(static_cast<std::size_t>(used) + 1);
    return picture;
}

PageSheet fullSheet() {
    PageSheet sheet(320, 200);
    for (int line = 0; line < 5; ++line)
        sheet.draw(LineMark{{3, 60.0 + line * 8}, {310, 60.0 + line * 8}, 1});
    sheet.draw(ImageMark{GlyphImage::Image14, {0, 55}}).draw(ImageMark{GlyphImage::Img8UP, {80, 52}});
    sheet.draw(GlyphMark{MusicGlyph::HeadBlack, {140, 76}, 8}).draw(EllipseMark{{180, 76}, 5, 0.63, false});
    sheet.draw(LineMark{{200, 50}, {250, 44}, 4});
    sheet.write({32, 20}, "Frère & <Jacques> \u03a9", {"Times New Roman", 14, true, false});
    sheet.score.pages[0].caption = "Frère & <Jacques>";
    return sheet;
}
const std::array<int, 1> kOnePage{0};
} // namespace

TEST(PageFiles, PagesCanBePaintedHere) {
    EXPECT_EQ(paintingProblem(), "");
}

TEST(PageFiles, APngIsGreyAndHasThePagesPixelsTimesTheScale) {
    const PageSheet sheet = fullSheet();
    for (const double scale : {1.0, 2.0}) {
        const std::string png = pngOf(sheet.score, sheet.page(), scale);
        ASSERT_THAT(png, StartsWith("\x89PNG\r\n\x1A\n"));
        EXPECT_EQ(numberAt(png, 16), static_cast<std::uint32_t>(320 * scale));
        EXPECT_EQ(numberAt(png, 20), static_cast<std::uint32_t>(200 * scale));
        EXPECT_EQ(png.at(24), 8); // bits
        EXPECT_EQ(png.at(25), 0); // grey
    }
}

TEST(PageFiles, APngIsReadByOthersAsItWasPainted) {
    PageSheet sheet = fullSheet();
    for (const bool coloured : {false, true}) {
        if (coloured)
            sheet.draw(EllipseMark{{280, 76}, 5, 1, true}, 0xD04010);
        sheet.paint();
        const std::string png = pngOf(sheet.score, sheet.page(), 1);
        EXPECT_EQ(png.at(25), coloured ? 2 : 0);
        // A reader of its own: Python unpacks, and takes the filter off.
        const std::string script =
            "import sys,zlib,struct\n"
            "d=open(sys.argv[1],'rb').read();p=8;z=b''\n"
            "while p<len(d):\n"
            " n,=struct.unpack('>I',d[p:p+4]);t=d[p+4:p+8];c=d[p+8:p+8+n]\n"
            " assert zlib.crc32(t+c)==struct.unpack('>I',d[p+8+n:p+12+n])[0]\n"
            " if t==b'IHDR': w,h,b,k=struct.unpack('>IIBB',c[:10])\n"
            " if t==b'IDAT': z+=c\n"
            " p+=12+n\n"
            "assert t==b'IEND'\n"
            "r=zlib.decompress(z);m=3 if k==2 else 1;s=w*m;a=bytes(s);o=b''\n"
            "assert len(r)==(s+1)*h\n"
            "for y in range(h):\n"
            " f=r[y*(s+1)];l=r[y*(s+1)+1:(y+1)*(s+1)];assert f==2\n"
            " a=bytes((i+j)&255 for i,j in zip(l,a));o+=a if m==3 else bytes(v for g in a for v in (g,g,g))\n"
            "sys.stdout.buffer.write(b'P6 %d %d 255\\n'%(w,h)+o)\n";
        const Ppm read = ppmOf(
            said(png, QStringLiteral("python3"), {QStringLiteral("-c"), QString::fromStdString(script)}));
        ASSERT_EQ(read.samples.size(), sheet.pixels.size() * 3);
        for (std::size_t i = 0; i < sheet.pixels.size(); ++i)
            for (std::size_t part = 0; part < 3; ++part)
                ASSERT_NEAR(static_cast<std::uint8_t>(read.samples[i * 3 + part]),
                            static_cast<int>(sheet.pixels[i] >> (16 - 8 * part) & 0xFF), 2)
                    << i;
    }
}

TEST(PageFiles, APictureTooLargeIsNone) {
    const PageSheet sheet(10000, 10000);
    EXPECT_EQ(pngOf(sheet.score, sheet.page(), 4), "");
    EXPECT_EQ(pngOf(sheet.score, sheet.page(), 0), "");
    EXPECT_EQ(pngOf(sheet.score, sheet.page(), -1), "");
}

TEST(PageFiles, AnSvgIsValidAndHasItsTextAsText) {
    const PageSheet sheet = fullSheet();
    const std::string svg = svgOf(sheet.score, sheet.page());
    EXPECT_THAT(svg, HasSubstr(">Frère &amp; &lt;Jacques&gt; \u03a9</text>"));
    EXPECT_THAT(svg, HasSubstr("width=\"320\" height=\"200\""));
    EXPECT_THAT(said(svg, QStringLiteral("xmllint"), {QStringLiteral("--nonet")}), HasSubstr("<svg"));
}

TEST(PageFiles, AnSvgShowsWhatThePixelsShow) {
    PageSheet sheet = fullSheet();
    sheet.paint();
    const std::string png = said(svgOf(sheet.score, sheet.page()), QStringLiteral("rsvg-convert"), {});
    ASSERT_THAT(png, StartsWith("\x89PNG"));
    EXPECT_EQ(numberAt(png, 16), 320U);
    EXPECT_EQ(numberAt(png, 20), 200U);
}

TEST(PageFiles, APdfHasItsTitleItsPaperAndItsText) {
    const PageSheet sheet = fullSheet();
    const std::optional<std::string> pdf =
        pdfOf(sheet.score, kOnePage, ownPaper(sheet.score), "Frère & <Jacques> \u03a9");
    ASSERT_TRUE(pdf);
    const std::string info = said(*pdf, QStringLiteral("pdfinfo"), {});
    EXPECT_THAT(info, HasSubstr("Frère & <Jacques> \u03a9"));
    EXPECT_THAT(info, HasSubstr("240 x 150 pts"));
    EXPECT_THAT(info, Not(HasSubstr("CreationDate")));
    EXPECT_THAT(said(*pdf, QStringLiteral("pdftotext"), {}, {QStringLiteral("-")}),
                HasSubstr("Frère & <Jacques> \u03a9"));
    EXPECT_THAT(said(*pdf, QStringLiteral("pdffonts"), {}), Not(HasSubstr("Music")));
}

TEST(PageFiles, APdfShowsWhatThePixelsShow) {
    PageSheet sheet = fullSheet();
    const auto pdf = pdfOf(sheet.score, kOnePage, ownPaper(sheet.score), "");
    ASSERT_TRUE(pdf);
    constexpr int kScale = 4;
    sheet.paint(kScale);
    const Ppm shown =
        ppmOf(said(*pdf, QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QString::number(96 * kScale)}));
    ASSERT_EQ(shown.width, 320 * kScale);
    ASSERT_EQ(shown.height, 200 * kScale);
    // Programs that show PDF move thin lines to whole pixels each in its own way: by one at most.
    const auto isNear = [&](int x, int y, bool inked) {
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                if ((shown.red(x + dx, y + dy) < 128) == inked)
                    return true;
        return false;
    };
    int different = 0, inked = 0;
    for (int y = 1; y < shown.height - 1; ++y)
        for (int x = 1; x < shown.width - 1; ++x) {
            inked += sheet.isInk(x, y) ? 1 : 0;
            different += isNear(x, y, sheet.isInk(x, y)) ? 0 : 1;
        }
    EXPECT_GT(inked, 10000);
    EXPECT_LT(different, inked / 1000);
}

TEST(PageFiles, PagesComeInTheOrderAskedForAndAsOftenAsAskedFor) {
    PageSheet sheet(200, 100);
    sheet.write({10, 10}, "first");
    sheet.score.pages.push_back({{{TextMark{{10, 10}, 0, "second"}, Role::Text}}, ""});
    const std::array order{1, 0, 1};
    std::vector<int> asked;
    const auto pdf = pdfOf(sheet.score, order, ownPaper(sheet.score), "", [&](int page) {
        asked.push_back(page);
        return true;
    });
    ASSERT_TRUE(pdf);
    EXPECT_EQ(asked, std::vector<int>(order.begin(), order.end()));
    EXPECT_EQ(said(*pdf, QStringLiteral("pdftotext"), {}, {QStringLiteral("-")}),
              "second\n\n\ffirst\n\n\fsecond\n\n\f");
}

TEST(PageFiles, StoppingEndsWithNoFile) {
    const PageSheet sheet = fullSheet();
    EXPECT_FALSE(pdfOf(sheet.score, kOnePage, ownPaper(sheet.score), "", [](int) { return false; }));
}

TEST(PageFiles, TheSamePagesAreTheSameFile) {
    const PageSheet sheet = fullSheet();
    const auto place = ownPaper(sheet.score);
    EXPECT_EQ(pdfOf(sheet.score, kOnePage, place, "Title"), pdfOf(sheet.score, kOnePage, place, "Title"));
}

TEST(PageFiles, APageIsFittedAndCentredInItsProportion) {
    EngravedScore score;
    score.width = 794;
    score.height = 1123;
    const PagePlace letter = fitted(score, 612, 792);
    EXPECT_NEAR(letter.scale, 792.0 / 1123, 1e-12);
    EXPECT_NEAR(letter.top, 0, 1e-9);
    EXPECT_NEAR(letter.left, (612 - 794 * letter.scale) / 2, 1e-9);
    const PagePlace wide = fitted(score, 100, 1000);
    EXPECT_NEAR(wide.left, 0, 1e-9);
    EXPECT_GT(wide.top, 0);
}

TEST(PageFiles, AnyScriptAndAnyFontIsRead) {
    PageSheet sheet(600, 120);
    sheet.write({10, 10}, "Ελληνικά Русский äöü", {"No Such Font At All", 12, false, true});
    sheet.write({10, 50}, std::string("broken \xFF bytes\nand\tcontrols\x01"), {});
    const auto pdf = pdfOf(sheet.score, kOnePage, ownPaper(sheet.score), "");
    ASSERT_TRUE(pdf);
    const std::string text = said(*pdf, QStringLiteral("pdftotext"), {}, {QStringLiteral("-")});
    EXPECT_THAT(text, HasSubstr("Ελληνικά Русский äöü"));
    EXPECT_THAT(text, HasSubstr("bytes and controls"));
    EXPECT_FALSE(said(svgOf(sheet.score, sheet.page()), QStringLiteral("xmllint"), {}).empty());
}

TEST(PageFiles, PrintableTextKeepsWhatItCan) {
    EXPECT_EQ(printable("Plain text"), "Plain text");
    EXPECT_EQ(printable("a\xFF"
                        "b"),
              "a\uFFFDb");
    EXPECT_EQ(printable("a\tb\nc"), "a b c");
    EXPECT_EQ(printable("日本 ä"), "日本 ä");
    EXPECT_EQ(printable("\xEF\xBF\xBF"), "\uFFFD");
}

TEST(PageFiles, WidthsByTableAreNearThoseOfTheFont) {
    const std::unique_ptr<TextMeasure> font = fontMeasure();
    PlainTextMeasure table;
    for (const std::string text : {"Frère Jacques, dormez-vous?", "The quick brown fox 0123456789", "ÄÖÜ"})
        for (const bool bold : {false, true}) {
            const TextStyle style{"Times New Roman", 12, bold, false};
            const TextExtent exact = font->extent(text, style), near = table.extent(text, style);
            EXPECT_NEAR(near.width, exact.width, exact.width * 0.06) << text << bold;
            EXPECT_NEAR(near.height, exact.height, 1) << text;
            EXPECT_NEAR(near.baseline, exact.baseline, 1) << text;
        }
}
