#pragma once

#include "everywhere/EverywhereHit.h"
#include "stores/data/FIBDataSet.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <vector>

/// The texts of the canon in reading order. Their list is read in pieces and kept, their pages are read when asked for.
/// All may throw DatabaseError.
class EverywhereCanon
{
public:
    /// Borrows the database, which has a default transaction.
    explicit EverywhereCanon(TpFIBDatabase &canon);

    /// Goes on reading the list; false when it is complete.
    bool ReadSome();
    bool IsComplete() const { return m_isComplete; }
    /// Forgets the list; the database may be closed then.
    void Close();

    int Count() const { return static_cast<int>(m_rows.size()); }
    /// The number of texts known so far.
    int CountSoFar() { return m_texts.RecordCount(); }
    /// The text at a place of the reading order, without what is found in it.
    EverywhereText Describe(int place);
    /// Its place, or Count().
    int PlaceOf(int idVic) const { return m_places.value(idVic, Count()); }
    /// A name in the language of a PageMode.
    QString Name(int place, int language);
    /// The page of a PageMode, as stored.
    void PageInto(int place, int language, QByteArray &page);

private:
    void Arrange();

    TpFIBDataSet m_groups;
    TpFIBDataSet m_texts;
    bool m_isComplete = false;
    std::vector<int> m_rows; ///< of m_texts, by place
    QHash<int, int> m_places;
    QHash<int, int> m_groupRows;
};

/// The marks in the order of their texts, those of one text by key. Read like the texts.
class EverywhereMarks
{
public:
    /// Null for none.
    explicit EverywhereMarks(TpFIBDatabase *marks);

    /// The list of texts must be complete.
    bool ReadSome(const EverywhereCanon &canon);
    /// Forgets the list; the database may be closed then.
    void Close();

    int Count() const { return static_cast<int>(m_order.size()); }
    int CountSoFar() { return m_marks.RecordCount(); }
    int IdFoc(int place) const { return m_order[static_cast<std::size_t>(place)].idFoc; }
    /// True if both are of one text.
    bool IsOfSameText(int place, int other) const;
    /// Its text, without what is found in its marks.
    EverywhereText Describe(int place, EverywhereCanon &canon);
    /// Title, keywords and note are plain text, the excerpt is a page; all in UTF-8.
    void FieldInto(int place, EverywhereField field, QByteArray &bytes);

private:
    struct Mark
    {
        int textPlace; ///< in the reading order; beyond all for other collections
        int collection;
        int idVic;
        int idFoc;
        int row;

        auto operator<=>(const Mark &) const = default;
    };

    TpFIBDataSet m_marks;
    bool m_hasMarks;
    std::vector<Mark> m_order;
};
