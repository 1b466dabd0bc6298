#pragma once

#include <QList>
#include <QString>

/// One finding: the row, and a description of the fault.
struct Finding
{
    QString row;
    QString fault;
};
