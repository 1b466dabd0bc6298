#pragma once

#include "lumivara-data/canon/Language.h"
#include "lumivara-data/canon/SegmentedText.h"

#include <QHash>
#include <QStringList>

/// What stands before the first words of a segmented text: its title, and above that what names the groups that it is
/// in.
struct SegmentedHead
{
    int title = -1;                                 ///< the segment that is the title, -1 for none
    std::array<QByteArray, LanguageCount> titles{}; ///< as in the files, trimmed
    QList<LanguageNames> above{};                   ///< from the outermost, without a number of the text itself
    QString number{};                               ///< the nearest one above the title
};

/// Segments numbered 0 are the head. With mark-up the title is the first heading of each language. Without it is the
/// last segment of the head that has words in Pāli, or in the first language that has a head.
SegmentedHead HeadOf(const std::vector<AlignedSegment> &segments);

/// True if the mark-up makes the segment a heading.
bool IsHeading(const AlignedSegment &segment);
/// True for a segment of the head.
bool IsOfHead(const QByteArray &id);

/// A text in its group, the folders parted by "/", with what stands above its title.
struct PlacedHead
{
    QString group;
    QList<LanguageNames> above;
};

/// Names of groups by what stands above the titles of all their texts, and not of all in the group around them. Where a
/// group holds nothing but one group the innermost of both takes the innermost name. `groups` are paths, parents before
/// their children; those without a name of their own are left out. A language without a name has that of Pāli.
QHash<QString, LanguageNames> GroupNames(const QStringList &groups, const QList<PlacedHead> &texts);
