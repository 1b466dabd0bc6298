#pragma once

#include "lumivara-data/canon/SegmentedComposer.h"
#include "lumivara-data/canon/SegmentedHead.h"

#include <QSet>

#include <map>

class Console;
class NamesTable;

/// A collection of segmented texts: root/, translation/LANGUAGE/AUTHOR/ and html/, one JSON object for each text. Keeps
/// only file names; a text's files are read when it is composed.
class SegmentedCanon
{
public:
    /// `authors` are preferred to others, in this order. Reports what it skips.
    SegmentedCanon(const SourceFolder &folder, const QStringList &authors, Report &report);

    static bool IsOne(const SourceFolder &folder);
    /// Composes and writes everything.
    void WriteTo(CanonWriter &writer, TextKeys &keys, NamesTable &names, Console &console);

private:
    void ListRoot();
    void ListTranslations();
    void ListMarkup();
    void Take(const QString &id, Language language, const QString &author, const QString &group, const QString &file);
    void BringTogether();
    void ShortenGroups();
    bool IsJson(const QString &file);
    int Rank(const QString &author) const;
    /// Parents before their children.
    QStringList GroupPaths() const;
    using Texts = std::vector<std::map<QString, SegmentedFiles>::const_iterator>;
    Texts InReadingOrder(const QStringList &paths) const;
    void WriteGroups(const QStringList &paths, NamesTable &names, CanonWriter &writer);

    const SourceFolder &m_folder;
    QStringList m_authors;
    Report &m_report;
    std::map<QString, SegmentedFiles> m_texts; ///< by id
    std::map<QString, qsizetype> m_otherAuthors;
    QSet<QString> m_editions;     ///< folders that root/ has above those of translation/
    QStringList m_onlyTranslated; ///< ids
    QList<PlacedHead> m_heads;    ///< of the texts that were written
};
