#pragma once

#include "lumivara-data/canon/CanonWriter.h"
#include "stores/engine/RowStore.h"

#include <QHash>

/// Texts and sources that are read of a canon that anybody may have made, where they have to be kept in memory.
inline constexpr int MostKnownTexts = 100'000;

/// The sources of texts that an open canon names, with their keys; those of texts that it has no longer among them.
QList<std::pair<int, QString>> KnownSources(DataFile &file);

/// The rows of an open canon as they are stored, one after the other. Failures are thrown as DatabaseError.
class CanonRows
{
public:
    explicit CanonRows(DataFile &file);
    ~CanonRows();

    /// Reports and skips groups without a key.
    QList<CanonGroup> Groups(Report &report);
    qsizetype TextCount();
    /// The next text with its pages; false at the end. Reports and skips texts without keys.
    bool Next(CanonText &text, Report &report);

private:
    bool Fetch(Statement &select);
    std::optional<int> Number(int column) const;
    QString Name(int column) const;
    QByteArray Page(int column) const;

    DataFile &m_file;
    std::unique_ptr<Statement> m_texts;
    QHash<int, QString> m_sources; ///< by key
    RowStore m_row;                ///< one row
};
