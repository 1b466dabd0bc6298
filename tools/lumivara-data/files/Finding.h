#pragma once

#include <QList>
#include <QString>

/// One thing that is wrong: the row that it was found in, and the fault in words.
struct Finding
{
    QString row;
    QString fault;
};
