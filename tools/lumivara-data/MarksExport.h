#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

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

/// Every mark of an open file, also those that the program does not list, by text and key.
QList<ExportedMark> ReadMarks(DataFile &file);

/// A stored excerpt as text: blocks on lines of their own, without tags.
QString ExcerptText(const QString &html);

/// The three forms, as whole documents. HTML holds no mark-up of the excerpts. CSV has a header line, CR LF ends its
/// records, and times are local in ISO form.
QString MarksAsHtml(const QList<ExportedMark> &marks);
QString MarksAsMarkdown(const QList<ExportedMark> &marks);
QString MarksAsCsv(const QList<ExportedMark> &marks);
