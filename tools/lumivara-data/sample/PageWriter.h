#pragma once

#include "lumivara-data/sample/SamplePassage.h"

#include <QByteArray>

/// The stored form of passages: pages in the manner of a word processor, with the font "Segoe UI" and sizes of "150%"
/// in their mark-up for the reader to exchange, and with their charset named.
class PageWriter
{
public:
    /// Pictures by file name, as bytes.
    explicit PageWriter(QHash<QString, QByteArray> pictures);

    /// The page of one language, UTF-8. Segments without text in that language are left out; empty if none is left.
    /// Throws ToolError for a picture or footnote that is not there.
    QByteArray Page(const QString &title, const SamplePassage &passage, Language language) const;
    /// Pāli and Vietnamese side by side.
    QByteArray ParallelPage(const QString &paliTitle, const QString &vietnameseTitle,
                            const SamplePassage &passage) const;

private:
    QString Blocks(const SamplePassage &group, Language language) const;
    QString Picture(const Segment &segment, Language language) const;

    QHash<QString, QByteArray> m_pictures;
};

/// Source text as HTML: angle brackets escaped, ampersands unless they begin an entity; "[label](address)" becomes a
/// link, "[^1]" a reference to footnote 1, " // " a line break.
QString InlineHtml(const QString &text, Language language);
