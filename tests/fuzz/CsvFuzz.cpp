#include "fuzz/Fuzz.h"

#include "common/Tool.h"
#include "lumivara-data/Csv.h"

FUZZ_TARGET(Csv)
{
    try {
        const CsvTable table(QString::fromUtf8(input), QStringLiteral("table.csv"));
        for (qsizetype row = 0; row < table.RowCount(); ++row) {
            table.Text(row, QStringLiteral("name"));
            table.Number(row, QStringLiteral("number"));
        }
    } catch (const ToolError &error) {
        REQUIRE(error.Text().startsWith(QLatin1StringView("table.csv")));
    }
}
