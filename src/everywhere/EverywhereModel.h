#pragma once

#include "everywhere/EverywhereTexts.h"

#include <QAbstractListModel>
#include <QCache>

#include <vector>

class EverywhereScan;

/// The result of a scan as rows: each text, and below it its hits, of which the words are read when a row is asked for.
/// Borrows the scan, and has to be told of what happens there.
class EverywhereModel : public QAbstractListModel
{
    Q_OBJECT
public:
    /// Views need time for each row; what is beyond is counted, but not listed.
    static constexpr int MostRows = 50'000;

    explicit EverywhereModel(EverywhereScan &scan, QObject *parent = nullptr);

    /// The result is about to be emptied.
    void Clear();
    /// A text has entered the result at that place.
    void TextCame(int text);
    bool IsCut() const { return m_inAll > m_shown; }

    /// Of a row that the model has: whether it is a hit or the head of its text, and the text that it belongs to.
    bool IsHit(int row) const;
    const EverywhereText &TextAt(int row) const;
    /// The hit of a row that has one. Throws DatabaseError.
    const EverywhereHit &HitAt(int row) const;
    /// The row as it is shown; with the reason in place of words that can't be read.
    EverywhereLine LineAt(int row) const;
    /// The first row with a hit behind `row`, or before it if backward; -1 if there is none.
    int NextHit(int row, bool isBackward) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    int TextOf(int row) const;
    /// The scan's number of a text of the rows.
    int InScan(int text) const;

    EverywhereScan &m_scan;
    int m_coming = -1;            ///< the text whose rows are about to come
    std::vector<qint64> m_starts; ///< by text: its row, were all of them shown
    qint64 m_inAll = 0;           ///< rows, were all of them shown
    int m_shown = 0;
    mutable QCache<int, EverywhereHit> m_hits; ///< by row
};
