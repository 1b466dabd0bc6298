#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

class DataFile;

/// A mark as it leaves the file. Null texts are empty, and so are the names of a text that the list does not have.
struct ExportedMark
{
    int key = 0;
    int collection = 0;
    int text = 0;
    QString nameVietnamese, namePali, nameEnglish;
    QString title, keywords, note;
    int priority = 0;
    QDateTime time;
    QString excerptHtml; ///< the stored page, without a byte order mark
};

/// Gives every mark of an open file, also those that the program does not list, by text and key.
void VisitMarks(DataFile &file, const std::function<void(const ExportedMark &)> &visit);

/// The title that documents show: one line, "#" and the key where there is none.
QString ShownTitle(const ExportedMark &mark);
/// "Cao" for 2; the number itself if it is not a priority.
QString PriorityName(int priority);

/// A document made mark by mark. HTML holds no mark-up of the excerpts. CSV has a header line, CR LF ends its
/// records, and times are local in ISO form.
struct MarksForm
{
    const char16_t *name;
    QString head;
    /// `previous` is the mark before, null for the first.
    QString (*mark)(const ExportedMark &mark, const ExportedMark *previous);
    QString tail;
};
/// "html", "markdown", "md" or "csv". Throws ToolError for another name.
MarksForm MarksFormNamed(const QString &name);
