#pragma once

#include <QByteArray>

class Report;

/// What was taken out of pages.
struct CleaningCounts
{
    qsizetype scripts = 0;
    qsizetype handlers = 0;   ///< attributes that hold script
    qsizetype references = 0; ///< to what does not stand in the page itself
    qsizetype frames = 0;
    qsizetype forms = 0; ///< forms and what they are made of
    qsizetype refreshes = 0;

    CleaningCounts &operator+=(const CleaningCounts &other);
    /// Adds what is not zero to a report's counts.
    void Tell(Report &report) const;
};

/// A page without what the reader shuts out anyway, so that a stored page is closed by itself.
struct CleanedHtml
{
    QByteArray html;
    /// Offsets in it: behind the tags of head and html, and of the body's tag; -1 where there is no such tag.
    qsizetype headStart = -1;
    qsizetype htmlStart = -1;
    qsizetype bodyTag = -1;
};

/// Takes out scripts, handlers, frames, forms, refreshes, declarations of a charset, comments, and each reference but
/// links of anchors and pictures inside the page. Reads tags, attributes and raw text as browsers do; everything else
/// stays as it is. UTF-8 in and out, in linear time.
CleanedHtml CleanHtml(const QByteArray &html, CleaningCounts &counts);
