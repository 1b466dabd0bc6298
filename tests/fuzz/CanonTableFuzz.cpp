#include "fuzz/ToolInput.h"

#include "lumivara-data/canon/CanonTable.h"

namespace {

bool IsSame(const QString &a, const QString &b)
{
    // Half a pair has no UTF-8.
    return (a == b && a.isNull() == b.isNull()) || !a.isValidUtf16();
}

/// A row that is written is read again as it was.
void CheckWrittenRow(const CanonTableRow &row)
{
    SilentReport silent;
    const QByteArray written = CanonTable::Header() + CanonTable::Line(row);
    const QList<CanonTableRow> rows = CanonTable::Read(written, QStringLiteral("written.csv"), silent.report);
    REQUIRE(rows.size() == 1 && silent.report.FindingCount() == 0);
    const CanonTableRow &again = rows.first();
    REQUIRE(again.isGroup == row.isGroup && again.isFinished == row.isFinished);
    REQUIRE(again.key == row.key && again.group == row.group && again.number == row.number);
    REQUIRE(again.source == row.source || !row.source.isValidUtf16());
    REQUIRE(IsSame(row.pali, again.pali) && IsSame(row.vietnamese, again.vietnamese) &&
            IsSame(row.english, again.english));
    for (int i = 0; i < CanonText::Pages; ++i)
        REQUIRE(IsSame(row.pages[i], again.pages[i]));
}

} // namespace

FUZZ_TARGET(CanonTable)
{
    for (const QString &name : {QStringLiteral("table.csv"), QStringLiteral("table.json")}) {
        ReadOrRefuse(name, [&] {
            SilentReport silent;
            for (const CanonTableRow &row : CanonTable::Read(input, name, silent.report))
                CheckWrittenRow(row);
        });
    }
}
