#pragma once

#include <QString>

/// Starts the tool beside the executable that saves the marks once a day, and leaves it to itself: it outlives this
/// process, writes to nobody's terminal, and its failure is nobody's concern.
void StartDailyBackup(const QString &exeName);
