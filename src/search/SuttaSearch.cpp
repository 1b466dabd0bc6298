#include "search/SuttaSearch.h"

#include "search/SuttaScan.h"
#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"

namespace {

/// The column to search; empty if the language mode has none.
QString SearchedColumn(int language)
{
    // No search runs over the English pages.
    return language == PageMode::English ? QString() : ContentColumn(language);
}

} // namespace

int ScanSuttas(TpFIBDataSet &passages, const QString &word, int language, const SuttaSearchEvents &events)
{
    const SuttaScan scan(word);
    const QString column = SearchedColumn(language);
    QByteArray page;
    int hits = 0;
    for (; !passages.Eof(); passages.Next()) {
        try {
            if (!column.isEmpty())
                passages.BlobInto(passages.RecNo(), passages.FieldByName(column).Index(), page);
            if (const std::optional<QString> sample = scan.FirstHit(page)) {
                if (events.onHit)
                    events.onHit(*sample);
                ++hits;
            }
        } catch (...) {
            if (events.onFailure)
                events.onFailure();
        }
        if (events.onRow)
            events.onRow();
    }
    return hits;
}
