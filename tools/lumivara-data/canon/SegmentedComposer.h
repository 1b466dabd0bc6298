#pragma once

#include "common/Report.h"
#include "lumivara-data/canon/CanonWriter.h"
#include "lumivara-data/canon/SegmentedText.h"
#include "lumivara-data/files/HtmlCleaner.h"
#include "lumivara-data/files/SourceFolder.h"

#include <array>
#include <optional>
#include <vector>

/// Bytes of all files of one text; those of long texts have a tenth of that.
inline constexpr qsizetype LargestSegmentedText = 32 << 20;

/// The files of one segmented text, by their names in the folder. Empty where there is none.
struct SegmentedFiles
{
    QString group; ///< folders below the language, parted by "/"
    std::array<QString, LanguageCount> text;
    std::array<QString, LanguageCount> author;
    QString markup;

    /// Of all of them.
    qsizetype Bytes(const SourceFolder &folder) const;
};

/// A text with its names and pages, without keys and number, and the findings about it.
struct ComposedText
{
    std::optional<CanonText> text; ///< none if no page is left
    QList<LanguageNames> above;    ///< what stands above its title
    QString number;                ///< the one before its title
    Report told;
    CleaningCounts counts;
};

/// Reads a text's files and composes its pages. Several threads may do so at once, for different texts.
ComposedText ComposeSegmented(const SourceFolder &folder, const QString &id, const SegmentedFiles &files);
