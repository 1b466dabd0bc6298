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
    const QString pali = u"āīūṅñṭḍṇḷṃṁ"_s;
    const QString vowels = u"aăâeêioôơuưy"_s;
    const QString tones = u"\u0300\u0301\u0303\u0309\u0323"_s;
    QStringList small{u"đ"_s};
    for (const QChar letter : pali)
        small += letter;
    for (const QChar vowel : vowels) {
        if (vowel.unicode() > 0x7F)
            small += vowel;
        for (const QChar tone : tones)
            small += (QString(vowel) + tone).normalized(QString::NormalizationForm_C);
    }
    EXPECT_EQ(small.size(), pali.size() + 134 / 2);
    QStringList letters;
    for (const QString &letter : small) {
        for (const QString &one : {letter, letter.toUpper()}) {
            EXPECT_EQ(one.size(), 1);
            letters += {one, one.normalized(QString::NormalizationForm_D)};
        }
    }
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

constexpr int Width = 600;
constexpr int BlockHeight = 250;
constexpr int LowerTop = 260;

int Darkest(const QImage &image)
{
    int darkest = 255;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            darkest = std::min(darkest, qGray(image.pixel(x, y)));
    return darkest;
}

/// As many lines of letters as make a block, in an element that chooses a font.
QString Block(const QString &opening, int top)
{
    const QString page = u"<div style='position:absolute;left:0;top:%1px;width:%2px;height:%3px;overflow:hidden;"
                         u"font-size:16px'>%4%5</font></div>"_s;
    return page.arg(top).arg(Width).arg(BlockHeight).arg(opening, Letters().join(u' '));
}

} // namespace

TEST(Glyphs, OfWindowsAreOfOneFamilyAndNoneIsMissing)
{
    QLabel window;
    SetWindowFont(window);
    QFont larger = window.font();
    SetFontHeight(larger, 24);
    SetFontQuality(larger);
    const QStringList letters = Letters();
    const QSet<QByteArray> face{QRawFont::fromFont(QFont(PageFontFamily())).fontTable("head")};
    for (const QFont &font : {window.font(), larger, QFont(u"Segoe UI"_s, 10), QFont(u"Segoe UI Semibold"_s, 18),
                              QFont(u"No such \"font\" <b>"_s, 10), QFont(u"it's"_s, 10)}) {
        const Drawn drawn = Draw(font, letters);
        EXPECT_EQ(drawn.missing, QStringList()) << qPrintable(font.family());
        EXPECT_TRUE(drawn.faces == face) << qPrintable(font.family());
    }
    EXPECT_NE(Draw(window.font(), {u"\U0010FFFF"_s}).missing.size(), 0) << "what is missing is seen";
}

class PageGlyphs : public BrowserTest
{};

TEST_F(PageGlyphs, AreThoseOfTheOneFamilyThatHasThemAll)
{
    const QString family = PageFontFamily();
    EXPECT_EQ(Draw(QFont(family, 10), Letters()).missing, QStringList());
    const auto composed = [](const QString &opening, const QString &font) {
        return QString::fromUtf8(ComposePassage(opening.toUtf8(), {PageMode::Pali, 0, font}));
    };
    const QString stored = u"<font face=\"Segoe UI\">"_s;
    const struct
    {
        QString opening;
        bool isStandIn;
    } rows[]{
        {stored, true},
        {u"<font style=\"font-family:'Segoe UI'\">"_s, true},
        {u"<font style=\"font-family:Segoe UI,'No such'\">"_s, true},
        {u"<font style=\"font-family:'Segoe UI',sans-serif\">"_s, true},
        {u"<font style=\"font-family:'Segoe UI',serif\">"_s, true},
        {u"<font style=\"font-family:'Segoe UI','DejaVu Serif'\">"_s, true},
        {u"<font style='font-family:&quot;Segoe UI&quot;,&quot;serif&quot;'>"_s, true},
        {u"<font>"_s, true},
        {composed(stored, u"No such font"_s), true},
        {composed(stored, u"it's"_s), true},
        {composed(stored, u"a\"b"_s), true},
        {composed(stored, u"a<b"_s), true},
        {composed(stored, QString()), true},
        {composed(stored, u"DejaVu Serif"_s), false},
    };
    Control().resize(Width + 20, LowerTop + BlockHeight);
    for (const auto &row : rows) {
        Load(u"<html><body style='background:white'>%1%2</body></html>"_s.arg(
            Block(u"<font face=\"%1\">"_s.arg(family), 0), Block(row.opening, LowerTop)));
        QImage upper;
        const auto isEqual = [&] {
            const QImage page = Control().grab().toImage().convertToFormat(QImage::Format_RGB32);
            upper = page.copy(0, 0, Width, BlockHeight);
            return upper == page.copy(0, LowerTop, Width, BlockHeight);
        };
        // Painted some frames after the page is complete.
        EXPECT_TRUE(WaitFor([&] { return isEqual() == row.isStandIn && Darkest(upper) < 100; }))
            << qPrintable(row.opening);
    }
}
