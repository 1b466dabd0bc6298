#include "fuzz/ToolInput.h"

#include "lumivara-data/MarksSource.h"

#include <QBuffer>

#include <algorithm>

namespace {

/// True if lines that are not empty follow the one of the column names.
bool HasRecords(const QByteArray &table)
{
    if (table.startsWith("\xFF\xFE") || table.startsWith("\xFE\xFF"))
        return false; // here line ends are not the bytes of line ends
    const QByteArrayList lines = table.split('\n');
    return !lines.first().contains('"') && std::any_of(lines.cbegin() + 1, lines.cend(), [](const QByteArray &line) {
        return !line.trimmed().isEmpty();
    }) && !lines.first().trimmed().isEmpty();
}

QList<ExportedMark> MarksOf(QByteArray table)
{
    QBuffer device(&table);
    device.open(QIODevice::ReadOnly);
    SilentReport silent;
    QList<ExportedMark> marks;
    ReadOrRefuse(QStringLiteral("marks.csv"), [&] {
        CsvMarks source(device, QStringLiteral("marks.csv"), silent.report);
        for (SourceMark mark; source.Next(mark);)
            marks.append(mark.mark);
        // Nothing is lost without a word.
        REQUIRE(!marks.isEmpty() || silent.report.FindingCount() > 0 || !HasRecords(table));
    });
    return marks;
}

} // namespace

FUZZ_TARGET(CsvMarks)
{
    for (const ExportedMark &mark : MarksOf(input)) {
        REQUIRE(mark.collection > 0 && mark.text > 0 && mark.priority >= 1 && mark.priority <= 4);
        REQUIRE(mark.title.size() <= 127 && mark.keywords.size() <= 127 && mark.note.size() <= 2047);
        const MarksForm form = MarksFormNamed(QStringLiteral("csv"));
        const QList<ExportedMark> again = MarksOf((form.head + form.mark(mark, nullptr)).toUtf8());
        REQUIRE(again.size() == 1 && again.first().title == mark.title && again.first().keywords == mark.keywords);
        REQUIRE(again.first().note == mark.note && again.first().excerptHtml == mark.excerptHtml);
        REQUIRE(again.first().priority == mark.priority && again.first().text == mark.text);
    }
}
