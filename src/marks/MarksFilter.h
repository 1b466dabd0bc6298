#pragma once

#include <QString>

/// The filter of the browser of marks.
struct MarksFilter
{
    int collectionMode = 1; ///< 1: this program, 2: the sibling, which chooses a collection
    int suttaType = 0;      ///< collection code chosen in mode 2, 0 for all
    QString searchText;     ///< as typed

    /// The select statement, built from the unfiltered one. Its parameters: A_NIK, SEARCH_TEXT.
    QString Statement(const QString &baseSql) const;
    /// The same for TpFIBDataSet::SearchInPieces(); empty if nothing is searched for.
    QString StatementInPieces(const QString &baseSql) const;
    bool ChoosesCollection() const { return collectionMode == 2 && suttaType > 0; }
    bool Searches() const;
    /// Value of SEARCH_TEXT.
    QString SearchPattern() const;

private:
    QString CollectionClause() const;
};
