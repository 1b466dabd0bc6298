#pragma once

#include <QString>

/// A group of the tree. Null names stay null in the database.
struct CanonGroup
{
    int idVit = 0;
    int parent = 0;
    QString nameVietnamese;
    QString namePali;
    QString nameEnglish;
};
