#include "fuzz/ToolInput.h"

#include "lumivara-data/marks/MarksReader.h"

#include <QBuffer>

FUZZ_TARGET(MarkdownMarks)
{
    KnownTexts texts;
    texts.Add(6, 1101, {QStringLiteral("Một"), QStringLiteral("Eka")});
    QByteArray document = input;
    QBuffer device(&document);
    device.open(QIODevice::ReadOnly);
    SilentReport silent;
    qsizetype headings = input.startsWith("## ") + input.count("\n## "), marks = 0;
    if (input.startsWith("\xFF\xFE") || input.startsWith("\xFE\xFF") || input.startsWith("\xEF\xBB\xBF"))
        headings = input.size();
    MarkdownMarks source(device, QStringLiteral("marks.md"), silent.report, texts);
    for (MarkRecord mark; source.Next(mark); ++marks) {
        REQUIRE(mark.line > 0 && mark.mark.collection > 0 && mark.mark.text > 0);
        REQUIRE(mark.mark.priority >= 1 && mark.mark.priority <= 4 && mark.mark.title.size() <= 127);
        REQUIRE(mark.mark.keywords.size() <= 127 && mark.mark.note.size() <= 2047);
    }
    REQUIRE(marks <= headings);
    // Nothing is lost silently.
    REQUIRE(marks == headings || silent.report.FindingCount() > 0 || headings == input.size());
}
