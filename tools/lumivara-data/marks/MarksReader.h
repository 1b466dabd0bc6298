#pragma once

#include "lumivara-data/files/CsvRecords.h"
#include "lumivara-data/marks/MarksForms.h"

#include <QHash>

class Report;

/// A mark as an open format has it, and the line where it begins.
struct MarkAtLine
{
    qsizetype line = 0;
    Mark mark;
    /// What an export wrote byte for byte: what it lacks is null, and one is there for each that is read.
    bool isExact = false;
};

/// The marks of a file in an open format, one by one. Incomplete or unstorable marks are reported with file name and
/// line, and skipped.
class MarksReader
{
public:
    MarksReader(QIODevice &device, const QString &fileName, Report &report);
    virtual ~MarksReader() = default;
    Q_DISABLE_COPY_MOVE(MarksReader)

    /// Marks of one file; years of a reader's work are a few thousand.
    static constexpr qsizetype MostMarks = 200'000;
    /// The largest mark in bytes. The excerpt of a whole long text has 23 MB.
    static constexpr qsizetype LargestMark = 64 << 20;

    /// False at the end. Throws ToolError behind MostMarks.
    bool Next(MarkAtLine &mark);

protected:
    virtual bool ReadNext(MarkAtLine &mark) = 0;
    /// What is said of a mark that is larger than LargestMark, or becomes so as a page.
    static QString TooLarge();
    QString Place(qsizetype line) const { return m_fileName + u':' + QString::number(line); }
    /// True if the file can hold the mark.
    bool IsStorable(const MarkAtLine &mark);

    QString m_fileName;
    Report &m_report;
    TextLines m_lines;

private:
    qsizetype m_count = 0;
};

/// A table with the columns of the export, in any order. The excerpt is TEXT_FOC in the form that TEXT_FORM says. In
/// rows without such a form it is text behind a byte order mark, or a fresh page around TEXT where it is empty.
class CsvMarks : public MarksReader
{
public:
    /// Throws ToolError if the columns are not those of marks.
    CsvMarks(QIODevice &device, const QString &fileName, Report &report);

private:
    bool ReadNext(MarkAtLine &mark) override;
    /// Why the record is no mark; empty if it is one.
    QString Take(const CsvRecord &record, MarkAtLine &source) const;
    /// Numbers and time. An export may have written a mark without priority or time.
    QString TakeFacts(const CsvRecord &record, MarkAtLine &source) const;
    QString TakeExcerpt(const CsvRecord &record, Mark &mark) const;
    QString Cell(const CsvRecord &record, const QString &column) const;

    CsvRecords m_records;
    QHash<QString, qsizetype> m_columns;
};

/// What the names of texts stand for.
class KnownTexts
{
public:
    void Add(int collection, int text, const QStringList &names);
    /// Sets the mark's text by a name, all of its names or "6-1101". False if it is none or not the only one.
    bool Find(const QString &name, Mark &mark) const;

private:
    void Enter(const QString &name, std::pair<int, int> text);

    QHash<QString, std::pair<int, int>> m_texts; ///< zeros where a name is that of several
};

/// A document as the export writes it: a heading for each text, one below it for each mark, a line with priority, date
/// and keywords, the excerpt as a quotation, the note. The mark gets a fresh page around its excerpt.
class MarkdownMarks : public MarksReader
{
public:
    /// `texts` must outlive this.
    MarkdownMarks(QIODevice &device, const QString &fileName, Report &report, const KnownTexts &texts);

private:
    bool ReadNext(MarkAtLine &mark) override;
    void TakeText(const QByteArray &heading);
    bool TakeMark(const QByteArray &heading, MarkAtLine &mark);
    /// The lines up to the next heading; false if they are no text or too many.
    bool ReadBody(QStringList &lines);
    bool Leave(qsizetype line, const QString &fault);

    const KnownTexts &m_texts;
    Mark m_text; ///< with the names and numbers of the last text's heading
    bool m_isText = false;
    bool m_strayIsTold = false;
};

/// The characters of a fresh page around a plain text, or a few more.
qsizetype FreshExcerptSize(const QString &text);
/// A fresh page around a plain text, one paragraph for each line; null for nothing.
QByteArray FreshExcerpt(const QString &text);
