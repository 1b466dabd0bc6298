#include "presentation/FontPolicy.h"
#include "reader/PageComposer.h"
#include "stores/Schema.h"
#include "support/WaitFor.h"
#include "toolkit/browser/BrowserTest.h"
#include "toolkit/program/Fonts.h"

#include <QGlyphRun>
#include <QRawFont>
#include <QSet>
#include <QTextLayout>

using namespace Qt::StringLiterals;

namespace {

/// The letters of Pāli and the 134 of Vietnamese that ASCII lacks, small and capital, each in one character and in
/// parts.
QStringList Letters()
{
    const QString small = u"āīūṅñṭḍṇḷṃṁđàáãảạăằắẵẳặâầấẫẩậèéẽẻẹêềếễểệìíĩỉịòóõỏọôồốỗổộơờớỡởợùúũủụưừứữửựỳýỹỷỵ"_s;
    EXPECT_EQ(small.size(), 11 + 134 / 2);
    QStringList letters;
    for (const QChar letter : small + small.toUpper())
        letters += {letter, QString(letter).normalized(QString::NormalizationForm_D)};
    return letters;
}

/// By what identifies a font file, the faces that draw the letters; "" if one has no glyph.
QSet<QByteArray> Faces(const QFont &font, const QStringList &letters)
{
    QSet<QByteArray> faces;
    for (const QString &letter : letters) {
        QTextLayout layout(u"a"_s + letter + u"b"_s, font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        const QList<QGlyphRun> runs = layout.glyphRuns();
        for (const QGlyphRun &run : runs)
            faces += run.glyphIndexes().contains(0) ? QByteArray() : run.rawFont().fontTable("head");
    }
    return faces;
}

} // namespace

TEST(Glyphs, OfWindowsAreOfOneFamilyAndNoneIsMissing)
{
    QWidget window;
    SetWindowFont(window);
    const QSet<QByteArray> face{QRawFont::fromFont(QFont(PageFontFamily())).fontTable("head")};
    for (const QFont &font : {window.font(), QFont(u"Segoe UI Semibold"_s, 18), QFont(u"No such \"font\" <b>"_s, 10),
                              QFont(PageFontFamily(), 10)})
        EXPECT_TRUE(Faces(font, Letters()) == face) << qPrintable(font.family());
    EXPECT_TRUE(Faces(window.font(), {u"\U0010FFFF"_s}).contains(QByteArray())) << "what is missing is seen";
}

class PageGlyphs : public BrowserTest
{};

TEST_F(PageGlyphs, AreThoseOfTheOneFamilyThatHasThemAll)
{
    QStringList openings =
        uR"(<font>|<font face="Segoe UI">|<font style="font-family:Segoe UI,'No such'">|<font style="font-family:
'Segoe UI',serif">|<font style="font-family:'Segoe UI','DejaVu Serif'">|<font style='font-family:&quot;Segoe UI&quot;,
&quot;serif&quot;'>)"_s.split(u'|');
    for (const char *font : {"No such font", "it's", "a\"b", "a<b", "", "DejaVu Serif"})
        openings += QString::fromUtf8(
            ComposePassage("<font face=\"Segoe UI\">", {PageMode::Pali, 0, QString::fromLatin1(font)}));
    constexpr int width = 600, height = 250;
    const auto block = [](const QString &opening, const char *top) {
        return QLatin1StringView("<div style='position:absolute;left:0;top:%1;width:600px;height:250px;overflow:hidden;"
                                 "font-size:16px'>%2%3</font></div>")
            .arg(QLatin1StringView(top), opening, Letters().join(u' '));
    };
    Control().resize(width + 20, 2 * height);
    for (const QString &opening : std::as_const(openings)) {
        Load(u"<html><body style='background:white'>%1%2</body></html>"_s.arg(
            block(u"<font face=\"%1\">"_s.arg(PageFontFamily()), "0"), block(opening, "250px")));
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
