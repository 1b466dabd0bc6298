#pragma once

#include "lumivara-data/canon/CanonGroup.h"
#include "lumivara-data/sample/SamplePassage.h"

#include <QByteArray>
#include <QStringList>

class Console;

/// A text as the sources give it. A null name stays null in the database.
struct SampleText
{
    int number = 0;
    int idVic = 0;
    int idVit = 0;
    QString namePali;
    QString nameVietnamese;
    QString nameEnglish;
    /// Pages that are left empty: "pal", "vie", "eng", "par".
    QStringList without;
};

/// The readable sources of the canon: groups, texts, passages, formula sentences and pictures.
struct SampleCanon
{
    QList<CanonGroup> groups;
    QList<SampleText> texts;
    /// Passages of their own ("text 1101") and formula sentences ("form opening").
    QHash<QString, SamplePassage> passages;
    QHash<QString, QByteArray> pictures;
};

/// The four pages of a text; an empty one is stored as null.
struct TextPages
{
    QByteArray pali;
    QByteArray vietnamese;
    QByteArray english;
    QByteArray parallel;
};

/// Reads `folder` (data/canon). Throws ToolError, with file and line, for what is missing or wrong.
SampleCanon ReadSampleCanon(const QString &folder);

/// A text's whole passage: the label that calls it a sample, an opening, its own passage or else a story made of
/// formula sentences, then rule, analysis and close. The same sources always give the same passage.
SamplePassage AssemblePassage(const SampleCanon &source, const SampleText &text);

/// The pages of a text. English is written only for texts with an English title.
TextPages ComposePages(const SampleCanon &source, const SampleText &text);

/// A whole file as UTF-8 text. Throws ToolError if it cannot be read or is no UTF-8.
QString ReadTextFile(const QString &path);
