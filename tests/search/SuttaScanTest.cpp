#include "search/SuttaScan.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QStringList>

#include <random>

using namespace Qt::StringLiterals;

namespace {

QString PlainByTheBook(const QString &html)
{
    QString plain;
    bool inTag = false;
    for (qsizetype i = 0; i < html.size(); ++i) {
        const QChar c = html[i];
        const QChar next = i + 1 < html.size() ? html[i + 1] : QChar();
        if (c == u'\n' || c == u'\r')
            continue;
        if (c == u'<' || c == u'>')
            inTag = c == u'<';
        else if (!inTag && !((c == u' ' || c == u'\t') && u"\t\n\r <"_qs.contains(next) && i + 1 < html.size()))
            plain += c;
    }
    return plain.replace(u"&quot;"_qs, u"\""_qs)
        .replace(u"&apos;"_qs, u"'"_qs)
        .replace(u"&gt;"_qs, u">"_qs)
        .replace(u"&lt;"_qs, u"<"_qs)
        .replace(u"&amp;"_qs, u"&"_qs);
}

QString Lowered(QString text)
{
    for (QChar &c : text) {
        if (c >= u'A' && c <= u'Z')
            c = c.toLower();
    }
    return text;
}

std::optional<QString> HitByTheBook(const QByteArray &page, const QString &word)
{
    const QString text = QString::fromUtf8(page);
    const QString plain = text.isEmpty() ? QString() : PlainByTheBook(text);
    const qsizetype at = text.isEmpty() ? -1 : Lowered(plain).indexOf(Lowered(word));
    return at < 0 ? std::nullopt : std::make_optional(plain.mid(at, 127));
}

/// Pages and words of few and awkward pieces, so that words are found and nearly found all the time.
class Generator
{
public:
    explicit Generator(unsigned seed) : m_random(seed) {}

    QByteArray Page()
    {
        // A page has a handful of pieces that it repeats, so that the rare ones meet.
        const int kinds = Number(1, 12);
        std::vector<QByteArray> chosen;
        for (int i = 0; i < kinds; ++i)
            chosen.push_back(Piece());
        QByteArray page = Number(0, 9) == 0 ? QByteArray("\xEF\xBB\xBF") : QByteArray();
        for (int left = Number(0, Number(0, 5) == 0 ? 400 : 40); left > 0; --left)
            page += chosen[static_cast<std::size_t>(Number(0, kinds - 1))];
        return page;
    }

    /// Most are cut out of the page's plain text, pairs and entities torn apart, and then spoilt a little.
    QString Word(const QByteArray &page)
    {
        const QString plain = PlainByTheBook(QString::fromUtf8(page));
        QString word;
        if (plain.isEmpty() || Number(0, 4) == 0) {
            for (int left = Number(1, 3); left > 0; --left)
                word += QString::fromUtf8(Piece());
        } else {
            const int length = Number(0, 9) == 0 ? 200 : Number(1, 8);
            word = plain.mid(Number(0, static_cast<int>(plain.size()) - 1), length);
        }
        for (QChar &c : word) {
            if (Number(0, 3) == 0 && c < QChar(0x80))
                c = Number(0, 1) ? c.toUpper() : c.toLower();
        }
        if (Number(0, 5) == 0)
            word += QString::fromUtf8(Piece());
        return word;
    }

private:
    int Number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(m_random); }

    QByteArray Piece()
    {
        static const QList<QByteArray> pieces =
            ("a|A|n|ng|l|t;|;|amp;|&|&l|&lt;|&gt;|&amp;|&quot;|&apos;|&nbsp;|&LT;|\"|'|[|\0| |\t|"
             "\n|\r|\r\n|<b>|</b>|<p a='>' n=\"<\">|<|>|"
             "<a href=\"some/rather/long/address/of/n/A.html\">|đ|Đ|ạ|ṭ|\xCC\xA3|\xF0\x9F\x98\x80|"
             "\xEF\xBF\xBD|\xEF\xBB\xBF|\xC4|\x91|\xE1\xBA|\xA1|\xF0\x9F|\x98\x80|\xED\xA0\x80|"
             "\xC0\xBC|\xE0\x80\xBC|\xFF|\xF4\x90\x80\x80|"
             "running text of some length, wherein nothing happens to annoy anybody "_ba)
                .split('|');
        return pieces[Number(0, int(pieces.size()) - 1)];
    }

    std::mt19937 m_random;
};

TEST(SuttaScan, FindsWhatThePlainScanFinds)
{
    constexpr unsigned seeds = 12000;
    int hits = 0;
    int misses = 0;
    for (unsigned seed = 0; seed < seeds && !testing::Test::HasFailure(); ++seed) {
        Generator generator(seed);
        const QByteArray page = generator.Page();
        for (int turn = 0; turn < 4; ++turn) {
            const QString word = generator.Word(page);
            const std::optional<QString> expected = HitByTheBook(page, word);
            ++(expected ? hits : misses);
            EXPECT_EQ(SuttaScan(word).FirstHit(page), expected)
                << "seed " << seed << "\npage " << page.toPercentEncoding().constData() << "\nword "
                << word.toUtf8().toPercentEncoding().constData();
        }
    }
    // The comparison is worth something only if both happen often.
    EXPECT_GT(hits, 10000);
    EXPECT_GT(misses, 5000);
}

struct HitCase
{
    const char *rule;
    QByteArray page;
    QString word;
    std::optional<QString> sample;
};

class HitTable : public testing::TestWithParam<HitCase>
{};

TEST_P(HitTable, GivesTheSample)
{
    EXPECT_EQ(SuttaScan(GetParam().word).FirstHit(GetParam().page), GetParam().sample);
}

const QString Long(200, u'x');

INSTANTIATE_TEST_SUITE_P(
    Rules, HitTable,
    testing::Values(HitCase{"EmptyPage", "", u"a"_qs, {}}, HitCase{"BareByteOrderMark", "\xEF\xBB\xBF", u""_qs, {}},
                    HitCase{"SampleKeepsItsCase", "Ngài BUDDHA dạy", u"buddha"_qs, u"BUDDHA dạy"_qs},
                    HitCase{"OtherLettersKeepTheirCase", "Đức Á", u"đức"_qs, {}},
                    HitCase{"InsideAWord", "dhamma", u"MA"_qs, u"ma"_qs},
                    HitCase{"AcrossTagsAndLines", "đi<b>ề\n</b>u", u"điều"_qs, u"điều"_qs},
                    HitCase{"NotInsideATag", "<a name='vinaya'>x</a>", u"vinaya"_qs, {}},
                    HitCase{"NotBehindAnUnclosedTag", "a <b vinaya", u"vinaya"_qs, {}},
                    HitCase{"NotInsideAnEntity", "1&lt;2", u"lt"_qs, {}},
                    HitCase{"MarkupInTheWord", "&lt;b&gt;", u"<B>"_qs, u"<b>"_qs},
                    HitCase{"OneCombiningMark", "a<i>\xCC\xA3</i>b", QString(QChar(0x323)),
                            QString(QChar(0x323)) + u'b'},
                    HitCase{"HalfAPair", "a\xF0\x9F\x98\x80", QString(QChar(0xDE00)), QString(QChar(0xDE00))},
                    HitCase{"CharacterTornByATag", "\xC4<b>\x91</b>", u"đ"_qs, {}},
                    HitCase{"SampleEndsInsideAPair", (u"a"_qs + Long.left(125) + u"\xD83D\xDE00"_qs).toUtf8(), u"ax"_qs,
                            u"a"_qs + Long.left(125) + QChar(0xD83D)},
                    HitCase{"WordLongerThanThePage", "xxx", Long, {}}),
    [](const auto &row) { return std::string(row.param.rule); });

// A word that nearly fits everywhere must not cost its length at each place: that would take hours here.
TEST(SuttaScan, EndsSoonOnPagesMadeToDelayIt)
{
    const QByteArray page(3'000'000, 'a');
    const QString word = QString(10'000, u'a');
    for (const QString &absent : {word + u'b', u'b' + word, word + u'b' + word}) {
        EXPECT_EQ(SuttaScan(absent).FirstHit(page), std::nullopt);
        EXPECT_EQ(SuttaScan(absent).FirstHit(page + absent.toUtf8()), absent.left(127));
    }
}

} // namespace
