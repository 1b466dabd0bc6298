#pragma once

#include <QString>

/// Starts the tool beside the executable that backs up the marks once a day, detached: it outlives this process, has no
/// terminal, and its failures are not reported.
void StartDailyBackup(const QString &exeName);
