#include "fuzz/ToolInput.h"

#include "lumivara-data/marks/MarksReader.h"
#include "stores/Schema.h"

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
    for (MarkAtLine mark; source.Next(mark); ++marks) {
        REQUIRE(mark.line > 0 && mark.mark.collection > 0 && mark.mark.text > 0);
        REQUIRE(IsOneOf(Priority::All, *mark.mark.priority) && mark.mark.title.size() <= Length::Name);
        REQUIRE(mark.mark.keywords.size() <= Length::Keyword && mark.mark.note.size() <= Length::Desc);
    }
    REQUIRE(marks <= headings);
    // Nothing is lost silently.
    REQUIRE(marks == headings || silent.report.FindingCount() > 0 || headings == input.size());
}
