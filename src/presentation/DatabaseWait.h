#pragma once

#include <QString>

class QIODevice;

/// Tells that a database file does not answer, and asks whether to wait for it or to leave the program. Ends by itself,
/// with true, when something comes on `answers` or that is closed. True to wait, false to leave.
bool WaitForDatabase(const QString &file, QIODevice &answers);
