#include "fuzz/Fuzz.h"

#include "base/PlainText.h"
#include "search/SuttaScan.h"

namespace {

QString Lowered(QString text)
{
    for (QChar &letter : text) {
        if (letter >= u'A' && letter <= u'Z')
            letter = letter.toLower();
    }
    return text;
}

} // namespace

/// The search reads stored bytes and never makes a page's plain text: it has to find just what is in that text.
FUZZ_TARGET(PlainText)
{
    const auto [wordBytes, page] = FuzzedPair(input);
    const QString word = QString::fromUtf8(wordBytes), html = QString::fromUtf8(page);
    const QString plain = StripHtml(html);
    REQUIRE(plain.size() <= html.size());

    const qsizetype at = html.isEmpty() ? -1 : Lowered(plain).indexOf(Lowered(word));
    const std::optional<QString> hit = SuttaScan(word).FirstHit(page);
    REQUIRE(hit.has_value() == (at >= 0) && (!hit || *hit == plain.mid(at, SuttaScan::SampleLength)));
}
