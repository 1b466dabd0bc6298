#include "fuzz/ToolInput.h"

#include "lumivara-data/files/CsvTable.h"

FUZZ_TARGET(Csv)
{
    const QString name = QStringLiteral("table.csv");
    ReadOrRefuse(name, [&] {
        const CsvTable table(input, name);
        for (qsizetype row = 0; row < table.RowCount(); ++row) {
            table.Text(row, QStringLiteral("name"));
            table.Number(row, QStringLiteral("number"));
        }
    });
}
