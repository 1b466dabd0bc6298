#pragma once

#include "everywhere/EverywhereQuery.h"

#include <QByteArray>
#include <QString>

#include <vector>

/// Characters `begin` to before `end` of a text, in UTF-16 units.
struct EverywhereRange
{
    qsizetype begin = 0;
    qsizetype end = 0;

    bool operator==(const EverywhereRange &) const = default;
};

/// The hits in a text without mark-up, in order, by the same code that scans pages. Given the visible text of the page
/// on the screen, these are the places to mark. `visibleText` is the data of all text nodes of the body in order,
/// without those in script, style, template, textarea, select, title, object, iframe and noframes, and with a line feed
/// at each border of a block element; runs of blanks may be one blank. That is what PageText in the browser's scripts
/// reads with matchCase set, whose mapping leads from these ranges to the nodes. The page has hits here even if a word
/// of the query is only in another page of its text. A letter is whole: a range holds its combining characters too.
std::vector<EverywhereRange> EverywhereRanges(const EverywhereQuery &query, const QString &visibleText);

/// The visible text of a page in UTF-8 HTML, by the same rule: entities decoded, blanks and borders of blocks as single
/// blanks, no blank at the start. Soft hyphens and other characters without width are left out.
QString EverywhereVisibleText(const QByteArray &page);
