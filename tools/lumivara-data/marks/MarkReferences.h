#pragma once

#include "lumivara-data/marks/MarksForms.h"

#include <QByteArray>
#include <QList>
#include <QString>

class DataFile;

/// A page of a canon by its letters, without blanks and what nobody sees, and the parts that references name.
class ReferencedPage
{
public:
    /// The page is UTF-8 HTML.
    explicit ReferencedPage(const QByteArray &page);

    const QString &Letters() const { return m_letters; }
    /// The part in which such letters begin first: the id that the page has for it, as "1.2", else its block's place
    /// from 1, as the program counts blocks. Empty if they do not stand there.
    QString PartWith(const QString &letters) const;

private:
    class Reader;
    struct Part
    {
        qsizetype begin; ///< in the letters
        QString name;
    };

    QString m_letters;
    QList<Part> m_parts;
};

/// The references of marks. A mark is no place but words, so these are sought in the pages of its text.
class MarkReferences
{
public:
    /// Borrows the open canon; without one a reference is the number of the text. Remembers the text asked for last.
    explicit MarkReferences(DataFile *canon) : m_canon(canon) {}

    /// "1101:12", or "1101" if the words do not stand in the text; empty for a text of another collection. Throws
    /// DatabaseError.
    QString Of(const Mark &mark);

private:
    void ReadPages(int text);

    DataFile *m_canon;
    int m_text = 0;
    QList<ReferencedPage> m_pages;
};
