#pragma once

#include <QByteArray>
#include <QString>

#include <stdexcept>

class Report;

/// The largest page, in bytes, of a source and as it is stored. Large texts have a tenth of that.
inline constexpr qsizetype LargestPage = 16 << 20;

/// A page beyond a limit.
class PageFault : public std::runtime_error
{
public:
    /// `line` is that of the source, from 1; 0 where the page as a whole is meant.
    PageFault(qsizetype line, const QString &fault)
        : std::runtime_error(fault.toUtf8().constData()), m_line(line), m_fault(fault)
    {}
    /// The file with the line, and the fault.
    QString Place(const QString &file) const { return m_line == 0 ? file : file + u':' + QString::number(m_line); }
    const QString &Fault() const { return m_fault; }
    /// One for a page of more than LargestPage bytes.
    static PageFault TooLarge(qsizetype line = 0);

private:
    qsizetype m_line;
    QString m_fault;
};

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
    qsizetype titleEnd = -1; ///< behind the words of the first title that has any
};

/// Removes scripts, handlers, frames, forms, refreshes, charset declarations, comments, and all references except links
/// of anchors and pictures inside the page. Parses tags, attributes and raw text as browsers do; everything else is
/// unchanged. UTF-8 in and out, in linear time. Throws PageFault for a page that is or becomes larger than LargestPage,
/// or has a tag of more than TagReader::MostAttributes.
CleanedHtml CleanHtml(const QByteArray &html, CleaningCounts &counts);
