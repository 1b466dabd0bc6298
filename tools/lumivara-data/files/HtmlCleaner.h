#pragma once

#include <QByteArray>

class Report;

/// The numbers of things removed from pages.
struct CleaningCounts
{
    qsizetype scripts = 0;
    qsizetype handlers = 0;   ///< attributes that hold script
    qsizetype references = 0; ///< to anything outside the page
    qsizetype frames = 0;
    qsizetype forms = 0; ///< forms and what they are made of
    qsizetype refreshes = 0;

    CleaningCounts &operator+=(const CleaningCounts &other);
    /// Adds what is not zero to a report's counts.
    void Tell(Report &report) const;
};

/// A cleaned page: without everything that the reader blocks anyway, so that the stored page is closed.
struct CleanedHtml
{
    QByteArray html;
    /// Offsets in it: behind the tags of head and html, and of the body's tag; -1 where there is no such tag.
    qsizetype headStart = -1;
    qsizetype htmlStart = -1;
    qsizetype bodyTag = -1;
};

/// Removes scripts, handlers, frames, forms, refreshes, charset declarations, comments, and all references except links
/// of anchors and pictures inside the page. Parses tags, attributes and raw text as browsers do; everything else is
/// unchanged. UTF-8 in and out, in linear time.
CleanedHtml CleanHtml(const QByteArray &html, CleaningCounts &counts);
