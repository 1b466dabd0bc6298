#include "fuzz/ToolInput.h"

#include "lumivara-data/marks/MarksReader.h"
#include "stores/Schema.h"

#include <QBuffer>

namespace {

/// True if anything follows the column names.
bool HasRecords(QByteArray table)
{
    QBuffer device(&table);
    device.open(QIODevice::ReadOnly);
    TextLines lines(device, QStringLiteral("marks.csv"));
    CsvRecords records(lines);
    CsvRecord record;
    return records.Next(record) && records.Next(record);
}

QList<Mark> MarksOf(QByteArray table)
{
    QBuffer device(&table);
    device.open(QIODevice::ReadOnly);
    SilentReport silent;
    QList<Mark> marks;
    ReadOrRefuse(QStringLiteral("marks.csv"), [&] {
        CsvMarks source(device, QStringLiteral("marks.csv"), silent.report);
        for (MarkAtLine mark; source.Next(mark);)
            marks.append(mark.mark);
        // Nothing is lost silently.
        REQUIRE(!marks.isEmpty() || silent.report.FindingCount() > 0 || !HasRecords(table));
    });
    return marks;
}

} // namespace

FUZZ_TARGET(CsvMarks)
{
    for (const Mark &mark : MarksOf(input)) {
        REQUIRE(mark.collection > 0 && mark.text > 0 && IsOneOf(Priority::All, mark.priority.value_or(Priority::High)));
        REQUIRE(mark.title.size() <= Length::Name && mark.keywords.size() <= Length::Keyword &&
                mark.note.size() <= Length::Desc);
        const MarksForm form = MarksFormNamed(QStringLiteral("csv"));
        const QList<Mark> again = MarksOf((form.head + form.mark(mark, nullptr)).toUtf8());
        REQUIRE(again.size() == 1 && again.first().title == mark.title && again.first().keywords == mark.keywords);
        REQUIRE(again.first().note == mark.note && again.first().excerpt == mark.excerpt);
        REQUIRE(again.first().priority == mark.priority && again.first().text == mark.text);
    }
}
