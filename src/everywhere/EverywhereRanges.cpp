#include "everywhere/EverywhereRanges.h"

#include "everywhere/HitFinder.h"
#include "everywhere/Utf8.h"

namespace {

/// Turns ascending places in UTF-8 into places in UTF-16.
class UnitCounter
{
public:
    explicit UnitCounter(QByteArrayView bytes) : m_bytes(bytes) {}

    qsizetype At(qsizetype byte)
    {
        for (; m_byte < byte; ++m_byte) {
            const auto value = static_cast<unsigned char>(m_bytes[m_byte]);
            if (!Utf8::IsContinuation(m_bytes[m_byte]))
                m_units += value >= 0xF0 ? 2 : 1;
        }
        return m_units;
    }

private:
    QByteArrayView m_bytes;
    qsizetype m_byte = 0;
    qsizetype m_units = 0;
};

} // namespace

std::vector<EverywhereRange> EverywhereRanges(const EverywhereQuery &query, const QString &visibleText)
{
    std::vector<EverywhereRange> ranges;
    if (query.Parts().isEmpty())
        return ranges;
    const QByteArray source = visibleText.toUtf8();
    const FoldedText text = Folded(source, Markup::None);
    HitFinder finder(query, text, Markup::None, [&] { return QByteArrayView(source); });
    while (finder.Find()) {
    }
    const FoundHits &found = finder.Found();
    ranges.reserve(found.begins.size());
    UnitCounter units(source);
    FoldedStretch stretch;
    for (qsizetype hit = 0; hit < std::ssize(found.begins); ++hit) {
        const qsizetype begin = found.begins[static_cast<std::size_t>(hit)];
        const qsizetype end = begin + query.Parts()[found.PartOf(hit)].folded.size();
        if (!stretch.Holds(begin, end))
            stretch.Read(source, Markup::None, *text.places, begin, end);
        const auto &letters = stretch.Letters();
        const FoldedPageLetter &first = letters[static_cast<std::size_t>(stretch.IndexAt(begin))];
        const FoldedPageLetter &last = letters[static_cast<std::size_t>(stretch.IndexAt(end)) - 1];
        const qsizetype beginUnit = units.At(first.begin);
        ranges.push_back({beginUnit, units.At(last.end)});
    }
    return ranges;
}

QString EverywhereVisibleText(const QByteArray &page)
{
    FoldedStretch stretch;
    stretch.Read(page, Markup::Html, {}, 0, page.size());
    return stretch.Text(0, std::ssize(stretch.Letters()));
}
