#include "search/SuttaScan.h"

#include "base/PlainText.h"

#include <gmock/gmock.h>

#include <QList>

#include <random>

using namespace Qt::StringLiterals;

namespace {

QString Lowered(QString text)
{
    for (QChar &c : text)
        c = c >= u'A' && c <= u'Z' ? c.toLower() : c;
    return text;
}

// Pages of few and awkward pieces, so that words are found and nearly found all the time.
TEST(SuttaScan, FindsWhatIsInThePlainText)
{
    const QList<QByteArray> pieces =
        ("a|A|n|ng|l|t;|;|amp;|&|&l|&lt;|&gt;|&amp;|&quot;|&apos;|&nbsp;|&LT;|\"|'|[|\0| |\t|\n|\r|\r\n|<b>|</b>|"
         "<p a='>' n=\"<\">|<|>|<a href=\"some/rather/long/address/of/n/A.html\">|đ|Đ|ạ|ṭ|\xCC\xA3|\xF0\x9F\x98\x80|"
         "\xEF\xBF\xBD|\xEF\xBB\xBF|\xC4|\x91|\xE1\xBA|\xA1|\xF0\x9F|\x98\x80|\xED\xA0\x80|\xC0\xBC|\xFF|"
         "\xF4\x90\x80\x80|"
         "running text of some length, wherein nothing happens to annoy anybody "_ba)
            .split('|');
    std::mt19937 random(1);
    const auto number = [&](qsizetype least, qsizetype most) {
        return std::uniform_int_distribution<qsizetype>(least, most)(random);
    };
    const auto piece = [&] { return pieces[number(0, pieces.size() - 1)]; };
    int hits = 0;
    for (int round = 0; round < 40'000 && !HasFailure(); ++round) {
        QByteArray page;
        for (qsizetype left = number(0, 40); left > 0; --left) {
            const QByteArray next = piece();
            page += number(0, 2) ? next : next + page.left(9);
        }
        const QString text = QString::fromUtf8(page), plain = StripHtml(text);
        QString word = number(0, 4) ? plain.mid(number(0, plain.size()), number(1, number(0, 9) ? 8 : 200))
                                    : QString::fromUtf8(piece());
        word += number(0, 5) ? QString() : QString::fromUtf8(piece());
        for (QChar &c : word)
            c = c == u'a' || c == u'N' ? QChar(c.unicode() ^ 0x20) : c;
        const qsizetype at = text.isEmpty() ? -1 : Lowered(plain).indexOf(Lowered(word));
        hits += at >= 0;
        EXPECT_EQ(SuttaScan(word).FirstHit(page), at < 0 ? std::nullopt : std::make_optional(plain.mid(at, 127)))
            << page.toPercentEncoding().data() << '\n'
            << word.toUtf8().toPercentEncoding().data();
    }
    EXPECT_TRUE(hits > 10'000 && hits < 35'000) << "both have to happen often";
}

TEST(SuttaScan, GivesTheSample)
{
    const QString x125(125, u'x'), dot(QChar(0x323)), half(QChar(0xDE00));
    const std::tuple<const char *, QByteArray, QString, std::optional<QString>> rows[]{
        {"bare byte order mark", "\xEF\xBB\xBF", u""_qs, {}},
        {"not inside an entity", "1&lt;2", u"lt"_qs, {}},
        {"one combining mark", "a<i>\xCC\xA3</i>b", dot, dot + u'b'},
        {"half a pair", "a\xF0\x9F\x98\x80", half, half},
        {"character torn by a tag", "\xC4<b>\x91</b>", u"đ"_qs, {}},
        {"sample ends inside a pair", (u'a' + x125 + u"\xD83D\xDE00"_qs).toUtf8(), u"ax"_qs,
         u'a' + x125 + QChar(0xD83D)}};
    for (const auto &[rule, page, word, sample] : rows)
        EXPECT_EQ(SuttaScan(word).FirstHit(page), sample) << rule;
}

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
