#pragma once

#include "lumivara-data/CanonWriter.h"
#include "lumivara-data/HtmlCleaner.h"
#include "lumivara-data/SegmentedText.h"
#include "lumivara-data/SourceFolder.h"

#include <array>
#include <map>

class Console;

/// A collection of segmented texts: root/, translation/LANGUAGE/AUTHOR/ and html/, one JSON object a text. Only the
/// names of the files are kept; a text's files are read when its turn comes.
class SegmentedCanon
{
public:
    /// `authors` are preferred to others, in this order. What is not taken is told.
    SegmentedCanon(const SourceFolder &folder, const QStringList &authors, Report &report);

    static bool IsOne(const SourceFolder &folder);
    /// Composes and writes everything.
    void WriteTo(CanonWriter &writer, Console &console);

private:
    /// The files of one text, by their names in the folder. Empty where there is none.
    struct Files
    {
        QString group; ///< folders below the language, parted by "/"
        std::array<QString, LanguageCount> text;
        std::array<QString, LanguageCount> author;
        QString markup;
    };

    void ListRoot();
    void ListTranslations();
    void ListMarkup();
    void Take(const QString &id, Language language, const QString &author, const QString &group, const QString &file);
    void ShortenGroups();
    bool IsJson(const QString &file);
    int Rank(const QString &author) const;
    QHash<QString, int> WriteGroups(CanonWriter &writer);
    std::optional<std::vector<TextSegment>> Read(const QString &file);
    std::vector<AlignedSegment> Align(const Files &files, bool &hasMarkup);
    /// None if no page is left.
    std::optional<CanonText> Compose(const QString &id, const Files &files, int group, int number);

    const SourceFolder &m_folder;
    QStringList m_authors;
    Report &m_report;
    std::map<QString, Files> m_texts; ///< by id
    std::map<QString, qsizetype> m_otherAuthors;
    TextKeys m_keys;
    CleaningCounts m_counts;
};

/// Pages of aligned segments.
namespace SegmentedPage {

/// The first heading of the text in a language, else nothing.
QByteArray Title(const std::vector<AlignedSegment> &segments, Language language);
/// The page of one language, of texts that are escaped already; null if it has none of the text. Without mark-up
/// segments of one part of the text make a paragraph.
QByteArray Single(const std::vector<AlignedSegment> &segments, Language language, bool hasMarkup,
                  const QByteArray &title, CleaningCounts &counts);
/// Pāli and another language side by side, a row a segment, likewise; null unless both have some of the text.
QByteArray Parallel(const std::vector<AlignedSegment> &segments, Language other, const QByteArray &title);

} // namespace SegmentedPage
