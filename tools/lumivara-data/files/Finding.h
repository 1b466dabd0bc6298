#pragma once

#include <QList>
#include <QString>

/// One finding: the row, and a description of the fault.
struct Finding
{
    QString row;
    QString fault;
    bool mayStay = false; ///< the program works with such a row all the same
};
