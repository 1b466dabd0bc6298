#pragma once

#include <QByteArray>
#include <QString>

/// The first sense of an entry as plain text on one line: of its first sense line, else of its first line without a
/// mark, else of its head. At most 200 characters; empty if the entry says nothing. The entry is UTF-8 in the line
/// mark-up.
QString FirstSense(const QByteArray &entry);
