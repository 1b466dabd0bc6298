#include "presentation/FontPolicy.h"
#include "reader/PageComposer.h"
#include "support/WaitFor.h"
#include "toolkit/BrowserTest.h"
#include "toolkit/Fonts.h"

#include <QFont>
#include <QGlyphRun>
#include <QLabel>
#include <QRawFont>
#include <QSet>
#include <QTextLayout>

using namespace Qt::StringLiterals;

namespace {

/// The letters of Pāli and the 134 of Vietnamese that ASCII lacks, small and capital, each in one character and in
/// parts.
QStringList Letters()
{
    QString small = u"āīūṅñṭḍṇḷṃṁđ"_s;
    for (const QChar vowel : u"aăâeêioôơuưy"_s) {
        if (vowel.unicode() > 0x7F)
            small += vowel;
        for (const QChar tone : u"\u0300\u0301\u0303\u0309\u0323"_s)
            small += (QString(vowel) + tone).normalized(QString::NormalizationForm_C);
    }
    EXPECT_EQ(small.size(), 11 + 134 / 2);
    QStringList letters;
    for (const QChar letter : small + small.toUpper())
        letters += {letter, QString(letter).normalized(QString::NormalizationForm_D)};
    return letters;
}

struct Drawn
{
    QSet<QByteArray> faces; ///< by what identifies a font file
    QStringList missing;
};

Drawn Draw(const QFont &font, const QStringList &letters)
{
    Drawn drawn;
    for (const QString &letter : letters) {
        QTextLayout layout(u"a"_s + letter + u"b"_s, font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        const QList<QGlyphRun> runs = layout.glyphRuns();
        for (const QGlyphRun &run : runs) {
            drawn.faces += run.rawFont().fontTable("head");
            if (run.glyphIndexes().contains(0))
                drawn.missing += letter;
        }
    }
    return drawn;
}

} // namespace

TEST(Glyphs, OfWindowsAreOfOneFamilyAndNoneIsMissing)
{
    QLabel window;
    SetWindowFont(window);
    QFont larger = window.font();
    SetFontHeight(larger, 24);
    SetFontQuality(larger);
    const QSet<QByteArray> face{QRawFont::fromFont(QFont(PageFontFamily())).fontTable("head")};
    for (const QFont &font : {window.font(), larger, QFont(u"Segoe UI Semibold"_s, 18),
                              QFont(u"No such \"font\" <b>"_s, 10), QFont(PageFontFamily(), 10)}) {
        const Drawn drawn = Draw(font, Letters());
        EXPECT_EQ(drawn.missing, QStringList()) << qPrintable(font.family());
        EXPECT_TRUE(drawn.faces == face) << qPrintable(font.family());
    }
    EXPECT_NE(Draw(window.font(), {u"\U0010FFFF"_s}).missing.size(), 0) << "what is missing is seen";
}

class PageGlyphs : public BrowserTest
{};

TEST_F(PageGlyphs, AreThoseOfTheOneFamilyThatHasThemAll)
{
    const auto composed = [](const QString &font) {
        return QString::fromUtf8(ComposePassage("<font face=\"Segoe UI\">", {PageMode::Pali, 0, font}));
    };
    const QString openings[]{u"<font>"_s,
                             u"<font face=\"Segoe UI\">"_s,
                             u"<font style=\"font-family:Segoe UI,'No such'\">"_s,
                             u"<font style=\"font-family:'Segoe UI',serif\">"_s,
                             u"<font style=\"font-family:'Segoe UI','DejaVu Serif'\">"_s,
                             u"<font style='font-family:&quot;Segoe UI&quot;,&quot;serif&quot;'>"_s,
                             composed(u"No such font"_s),
                             composed(u"it's"_s),
                             composed(u"a\"b"_s),
                             composed(u"a<b"_s),
                             composed(QString()),
                             composed(u"DejaVu Serif"_s)};
    constexpr int width = 600, height = 250;
    const auto block = [](const QString &opening, int top) {
        return u"<div style='position:absolute;left:0;top:%1px;width:%2px;height:%3px;overflow:hidden;font-size:16px'>"
               "%4%5</font></div>"_s.arg(top)
                   .arg(width)
                   .arg(height)
                   .arg(opening, Letters().join(u' '));
    };
    Control().resize(width + 20, 2 * height);
    for (const QString &opening : openings) {
        Load(u"<html><body style='background:white'>%1%2</body></html>"_s.arg(
            block(u"<font face=\"%1\">"_s.arg(PageFontFamily()), 0), block(opening, height)));
        // Painted some frames after the page is complete.
        EXPECT_TRUE(WaitFor([&] {
            const QImage page = Control().grab().toImage().convertToFormat(QImage::Format_Grayscale8);
            const QImage upper = page.copy(0, 0, width, height), lower = page.copy(0, height, width, height);
            const auto *pixels = upper.constBits();
            const bool isPainted =
                std::any_of(pixels, pixels + upper.sizeInBytes(), [](uchar grey) { return grey < 100; });
            return isPainted && (upper == lower) != opening.contains(u"DejaVu Serif\""_s);
        })) << qPrintable(opening);
    }
}
