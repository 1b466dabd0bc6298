#pragma once

#include "everywhere/EverywhereHit.h"

#include <QList>
#include <QString>

class EverywhereQuery;

/// What the search of everything tells the reader, in the interface's language; in English where that has no words.

/// A language mode of pages (see PageMode).
QString PageModeName(int mode);
/// What is sought, how and where, in one line; what is missing if nothing is.
QString SoughtText(const EverywhereQuery &query);
/// How many hits are in how many texts, and of the texts how many have been looked at while there is more to do.
struct EverywhereCounts
{
    qint64 hits = 0;
    int texts = 0;
    bool isRunning = false;
    int textsDone = 0;
    int textsInAll = 0;
    int failures = 0;       ///< pages that could not be read
    bool isListCut = false; ///< the list has only the first of them
};
/// "950 places in 55 texts", and what is still to do or went wrong.
QString CountsText(const EverywhereCounts &counts);
/// Where in its text a hit is, as "Pāli", or "Mark: note".
QString PlaceText(const EverywhereHit &hit);
/// The name that the interface's language shows; another one if that is missing.
QString ShownName(const EverywhereNames &names);

/// A line of the list: a text, or a hit in it.
struct EverywhereLine
{
    bool isText = false;
    QString text;
    QString group;
    int count = 0; ///< of a text: its hits
    QString place; ///< of a hit, as the rest
    QString before;
    QString hit;
    QString after;
};

/// The whole line as it is read aloud.
QString SpokenLine(const EverywhereLine &line);
/// The list as plain text, as a table with tabs and a line of captions, as a page. `title` tells what was sought.
QString ListAsText(const QList<EverywhereLine> &lines, const QString &title);
QString ListAsTable(const QList<EverywhereLine> &lines);
QString ListAsPage(const QList<EverywhereLine> &lines, const QString &title);
