#include "everywhere/EverywhereRanges.h"
#include "everywhere/HitFinder.h"

#include <gmock/gmock.h>

#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace {

/// A piece of a page and what of it is visible.
struct Piece
{
    QByteArray bytes;
    QString visible;
};

const std::vector<Piece> &Pieces()
{
    static const std::vector<Piece> pieces = [] {
        std::vector<Piece> made;
        for (const QString &word :
             {u"a"_s,   u"na"_s, u"Ñā"_s, u"ṇa"_s,         u"ka"_s,      u"ṭhi"_s,     u"n"_s,
              u"A"_s,   u"ā"_s,  u"Đi"_s, u"di"_s,         u"ều"_s,      u"tỳ"_s,      u"khưu"_s,
              u"KHU"_s, u"ṃ"_s,  u"m"_s,  u"\U0001D11E"_s, u"n\u0303"_s, u"a\u0304"_s, u"o\u031B\u0309"_s,
              u"1"_s,   u"."_s,  u"한"_s})
            made.push_back({word.toUtf8(), word});
        const std::pair<const char *, QString> others[]{
            {" ", u" "_s},
            {"\r\n", u" "_s},
            {" \t ", u" "_s},
            {"&nbsp;", u" "_s},
            {"<p>", u" "_s},
            {"<BR/>", u" "_s},
            {"</td><td id='>'>", u" "_s},
            {"<b>", u""_s},
            {"</i >", u""_s},
            {"<a x=\"<\">", u""_s},
            {"<!-- na -->", u""_s},
            {"&shy;", u""_s},
            {"\xC2\xAD", u""_s},
            {"<style>na</style>", u""_s},
            {"&amacr;", u"ā"_s},
            {"&#x1E6D;", u"ṭ"_s},
            {"&ntilde;", u"ñ"_s},
            {"&#119070;", u"\U0001D11E"_s},
            {"&amp;", u"&"_s},
            {"&lt;", u"<"_s},
            {"\xFF", u"\uFFFD"_s},
            {"\xE1\xB9.", u"\uFFFD\uFFFD."_s},
            {"&#772;", u"\u0304"_s},
            {"<", u"<"_s},
        };
        for (const auto &[bytes, visible] : others)
            made.push_back({bytes, visible});
        made.back().bytes += ' '; // so that it begins no tag
        made.back().visible += u' ';
        return made;
    }();
    return pieces;
}

/// A page and its visible text with single blanks.
struct Page
{
    QByteArray bytes;
    QString visible;
};

bool IsAccent(QChar letter)
{
    return letter.unicode() >= 0x300 && letter.unicode() < 0x370;
}

Page MakePage(std::mt19937 &random, int pieces)
{
    Page page;
    std::uniform_int_distribution<std::size_t> any(0, Pieces().size() - 1);
    bool isAfterBlank = true;
    for (int i = 0; i < pieces; ++i) {
        const Piece &piece = Pieces()[any(random)];
        page.bytes += piece.bytes;
        for (const QChar letter : piece.visible) {
            if (letter != u' ' || !isAfterBlank)
                page.visible += letter;
            if (!IsAccent(letter))
                isAfterBlank = letter == u' ';
        }
    }
    return page;
}

/// What the rule says, as plainly as it can be written: letters with their accents, compared one after the other.
class PlainScan
{
public:
    PlainScan(const QString &visible, const EverywhereSwitches &switches) : m_switches(switches)
    {
        for (const QChar letter : visible) {
            if (!m_raw.isEmpty() && (IsAccent(letter) || letter.isLowSurrogate()))
                m_raw.back() += letter;
            else
                m_raw += QString(letter);
        }
        for (const QString &raw : std::as_const(m_raw)) {
            m_folded += Key(raw, false, false);
            m_exact += Key(raw, switches.exactCase, switches.exactMarks);
        }
    }
    /// The hits as they stand in the text.
    QStringList Hits(const QString &word) const
    {
        const QString sought = Key(word, m_switches.exactCase, m_switches.exactMarks);
        const QString soughtFolded = Key(word, false, false);
        QStringList hits;
        for (qsizetype at = 0; at < m_raw.size();) {
            const qsizetype end = m_folded[at].isEmpty() ? at : EndAt(at, sought, soughtFolded);
            if (end > at)
                hits += m_raw.sliced(at, end - at).join(QString());
            at = std::max(end, at + 1);
        }
        return hits;
    }

private:
    static QString Key(QString text, bool keepsCase, bool keepsMarks)
    {
        text = text.normalized(QString::NormalizationForm_D);
        if (!keepsMarks)
            text.removeIf(IsAccent).replace(u'đ', u'd').replace(u'Đ', u'D');
        return keepsCase ? text : text.toLower();
    }
    /// Where the word ends that begins at a letter; that letter if it does not.
    qsizetype EndAt(qsizetype at, const QString &sought, const QString &soughtFolded) const
    {
        QString folded, exact;
        qsizetype end = at;
        for (; end < m_raw.size() && folded.size() < soughtFolded.size(); ++end) {
            folded += m_folded[end];
            exact += m_exact[end];
            if (!soughtFolded.startsWith(folded))
                return at;
        }
        return folded == soughtFolded && exact == sought ? end : at;
    }

    EverywhereSwitches m_switches;
    QStringList m_raw, m_folded, m_exact;
};

/// Some words of the text, and some that are made up.
QString MakeWord(std::mt19937 &random, const QString &visible)
{
    const auto number = [&](qsizetype below) { return static_cast<qsizetype>(random()) % below; };
    if (number(5) == 0)
        return MakePage(random, 3).visible + u'n';
    QString word = visible.mid(number(visible.size()), 1 + number(9));
    if (word.front().isLowSurrogate())
        word.remove(0, 1);
    if (word.endsWith(u'\xD834'))
        word.chop(1);
    // An accent on a blank at the end is no letter to look for.
    while (!word.isEmpty() && IsAccent(word.back()))
        word.chop(1);
    return word;
}

TEST(PlainScan, FindsWhatTheSearchFinds)
{
    std::mt19937 random(20260101);
    const std::array<EverywhereSwitches, 4> kinds{EverywhereSwitches{}, EverywhereSwitches{.exactCase = true},
                                                  EverywhereSwitches{.exactMarks = true},
                                                  EverywhereSwitches{.exactCase = true, .exactMarks = true}};
    int found = 0;
    for (int turn = 0; turn < 10; ++turn) {
        const Page page = MakePage(random, 1500);
        const FoldedText text = Folded(page.bytes, Markup::Html);
        ASSERT_EQ(EverywhereVisibleText(page.bytes), page.visible);
        std::vector<PlainScan> plain;
        for (const EverywhereSwitches &switches : kinds)
            plain.emplace_back(page.visible, switches);
        for (int turnOfWord = 0; turnOfWord < 100; ++turnOfWord) {
            const QString typed = u'"' + MakeWord(random, page.visible) + u'"';
            for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
                const EverywhereQuery query(typed, kinds[kind]);
                if (query.Parts().isEmpty() || IsAccent(query.Parts()[0].typed.front()))
                    continue; // what begins with an accent begins no letter
                const QStringList expected = plain[kind].Hits(query.Parts()[0].typed);
                HitFinder finder(query, text, Markup::Html, [&] { return QByteArrayView(page.bytes); });
                while (finder.Find()) {
                }
                ASSERT_EQ(std::ssize(finder.Found().begins), expected.size()) << typed.toStdString() << kind;
                QStringList marked;
                for (const EverywhereRange &range : EverywhereRanges(query, page.visible))
                    marked += page.visible.sliced(range.begin, range.end - range.begin);
                ASSERT_EQ(marked, expected) << typed.toStdString() << kind;
                found += static_cast<int>(expected.size());
            }
        }
    }
    EXPECT_GT(found, 10'000);
}

} // namespace
