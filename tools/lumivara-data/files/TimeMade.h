#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

/// What the file's makers ask for by SOURCE_DATE_EPOCH (seconds since 1970), so that the same sources give the same
/// bytes; none if it is not set or no number.
std::optional<QDateTime> WantedTimeMade();

/// Writes into a closed database when it was made, in UTC. The engine notes that in the header and nowhere else, and
/// never reads it again but to tell it. Leaves a file alone whose header is not laid out as known. Throws ToolError.
void SetTimeMade(const QString &path, const QDateTime &time);
