#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

/// The numbers that texts have been given, for good: a text file that only grows, one line a number: section, number
/// and component.property, parted by tabs. Language files everywhere depend on them, so a number never passes on to
/// another text; one whose text is gone is retired by a second line with "-" in place of the text.
class NumberLedger
{
public:
    /// Reads the file; one that does not exist is empty. Throws ToolError for what is no such file.
    static NumberLedger Read(const QString &path);

    /// Numbers of a section's texts that live, by component.property.
    QHash<QString, int> Numbers(const QString &section) const;
    /// The highest number that a section ever gave out.
    int Highest(const QString &section) const;
    QStringList Sections() const { return m_rows.keys(); }
    /// What is wrong in itself: numbers given twice, missing between 1 and the highest, or two for one text.
    QStringList Problems() const;

    void Add(const QString &section, int number, const QString &text);
    void Retire(const QString &section, int number);
    /// Appends what was added since the file was read.
    void Append(const QString &path) const;

private:
    struct Row
    {
        int number;
        QString text;
        bool isRetired = false;
    };

    void Take(const QString &section, int number, const QString &text, const QString &place);

    QMap<QString, QList<Row>> m_rows;
    QStringList m_added;
    QStringList m_problems;
};
