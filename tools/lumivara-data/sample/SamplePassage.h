#pragma once

#include "lumivara-data/canon/Language.h"

#include <QHash>
#include <QList>
#include <QString>

#include <array>

/// One aligned piece of a passage: the same thing said in up to three languages.
struct Segment
{
    enum class Kind { Heading, Paragraph, Item, Verse, Row, Picture, Note };

    Kind kind = Kind::Paragraph;
    /// Picture: file name. Note: the mark that refers to it. Else empty.
    QString argument;
    /// Empty where the language has no such piece.
    std::array<QString, LanguageCount> text;

    const QString &In(Language language) const { return text[size_t(language)]; }
};
using SamplePassage = QList<Segment>;

/// The sections of a passage source by key: "text 1101", "form opening". The mark-up is told in data/README.md.
/// Throws ToolError with `fileName` and line for what it does not know, for a section that comes twice and for text
/// outside of sections.
QHash<QString, SamplePassage> ParsePassages(const QString &source, const QString &fileName);
