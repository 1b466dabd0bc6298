#pragma once

#include "lumivara-data/files/Finding.h"

class DataFile;

/// What a check of a file of marks found.
struct MarksReport
{
    qsizetype textCount = 0;
    qsizetype markCount = 0;
    QList<Finding> columnFaults;
    QList<Finding> findings;
    QList<Finding> remarks = {}; ///< what is unusual, and no fault
};

/// True if an open file has the list of texts and the marked passages.
bool IsMarks(DataFile &file);

/// What puts marks at risk or out of sight: columns that are missing or hold too little, writes that are not forced to
/// the disk, keys that come twice or are null, marks whose text is missing in the list. Tables without a key are
/// remarks.
MarksReport CheckMarks(DataFile &file);
