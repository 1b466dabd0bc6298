#pragma once

#include "lumivara-data/files/Finding.h"

class DataFile;

/// What a check of a file of marks found.
struct MarksReport
{
    qsizetype textCount = 0;
    qsizetype markCount = 0;
    QList<Finding> findings;
};

/// True if an open file has the list of texts and the marked passages.
bool IsMarks(DataFile &file);

/// What puts marks at risk or out of sight: writes that are not forced to the disk, keys that come twice or are null,
/// marks whose text is missing in the list.
MarksReport CheckMarks(DataFile &file);
