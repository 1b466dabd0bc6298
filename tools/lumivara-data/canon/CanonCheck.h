#pragma once

#include "lumivara-data/files/Finding.h"
#include "lumivara-data/files/PageFacts.h"

#include <QList>
#include <QString>

#include <optional>

/// A row of KELORA_TREE as found, whatever is in it. Null names are null strings.
struct CheckedGroup
{
    std::optional<int> idVit;
    std::optional<int> parent;
    QString nameVietnamese;
    QString namePali;
    QString nameEnglish;
};

/// One stored page of a text. REQUIRES: not empty; empty pages are not faults and not listed.
struct CheckedPage
{
    QString column;
    PageFacts facts;
};

/// A row of KELORA_CONTENT as found.
struct CheckedText
{
    std::optional<int> idVit;
    std::optional<int> idVic;
    std::optional<int> number;
    QString nameVietnamese;
    QString namePali;
    QString nameEnglish;
    QList<CheckedPage> pages;
};

struct CheckedCanon
{
    QList<CheckedGroup> groups;
    QList<CheckedText> texts;
    QList<Finding> unreadable = {}; ///< pages and rows that Firebird could not read
};

/// Everything that keeps the reader from showing a canon correctly: clashing keys of the tree, groups whose number in
/// the tree is a text's, missing parents and cycles, numbers that are not unique or do not run from 1, names that are
/// missing or too long, pages that are not UTF-8 or declare no charset. Ordered by kind of fault, then by row.
QList<Finding> CheckCanon(const CheckedCanon &canon);
/// True if the program shows a canon correctly with all of these: only names are missing.
bool MayStay(const QList<Finding> &findings);
