#pragma once

#include "stores/KeloraSuttaList.h"
#include "toolkit/browser/PagePlace.h"

#include <QList>
#include <QString>

#include <optional>

/// A place as readers write it: the text's number, and behind a colon the id that the page has for the part, or the
/// block's place from 1, as "1101:12" or "1101:1.2".
QString ReferenceTo(int text, const PagePlace &place);

struct Reference
{
    int text = 0;
    std::optional<PagePlace> place; ///< empty for a number alone

    bool operator==(const Reference &) const = default;
};
/// Reads "1101:12" and "1101", blanks aside; empty for anything else.
std::optional<Reference> ReadReference(const QString &written);

/// A text that may be meant, and the name that says so; no name where the number does.
struct Candidate
{
    int number = 0;
    QString name;
};
/// The texts that what is typed may mean, at most so many: their number begins with it, or a name in any language holds
/// it without regard to case and marks. Those that begin with it come first. None for an empty text.
QList<Candidate> CandidatesFor(const QString &typed, const QList<KeloraText> &texts, qsizetype most);

/// What a copied passage bears behind it.
struct Source
{
    QString collection, name, reference, language;
};
/// The template with "{collection}", "{name}", "{reference}" and "{language}" replaced; other text stays.
QString SourceText(const QString &form, const Source &source);
