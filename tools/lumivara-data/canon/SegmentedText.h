#pragma once

#include <QByteArray>
#include <QString>

#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <vector>

/// An invalid file of segments: the line, from 1, and the fault.
class SegmentFault : public std::runtime_error
{
public:
    SegmentFault(int line, const QString &fault)
        : std::runtime_error(fault.toUtf8().constData()), m_line(line), m_fault(fault)
    {}
    int Line() const { return m_line; }
    const QString &Fault() const { return m_fault; }

private:
    int m_line;
    QString m_fault;
};

/// One piece of a text: its id ("dn1:1.1") and its value, both UTF-8.
struct TextSegment
{
    QByteArray id;
    QByteArray value;
};

/// Segments of one text; long ones have a tenth of that.
inline constexpr size_t MostSegments = 150'000;

/// The segments of one JSON object whose values are all strings, in the order of the file, repeated ids included.
/// `json` is UTF-8 without a byte order mark. Throws SegmentFault, for more than MostSegments
/// too; never recurses, so deep nesting is harmless.
std::vector<TextSegment> ParseSegments(const QByteArray &json);

/// One segment of a text: its forms by column and its mark-up.
struct AlignedSegment
{
    static constexpr int Columns = 3;

    QByteArray id;
    QByteArray text[Columns];
    /// "{}" where the text goes; null if the mark-up lacks the segment.
    QByteArray markup;
};

/// Merges the files of one text by segment id. The first file gives the order; an id that it lacks comes after its
/// predecessor in its own file.
class Alignment
{
public:
    /// Ids that a file has twice go into `repeated`; their first value stays. Throws SegmentFault if the files together
    /// have more than MostSegments.
    void AddText(int column, const std::vector<TextSegment> &segments, std::vector<QByteArray> &repeated);
    void AddMarkup(const std::vector<TextSegment> &segments, std::vector<QByteArray> &repeated);
    /// The segments in order; leaves the object empty.
    std::vector<AlignedSegment> Take();

private:
    /// One that nobody can know beforehand: ids are a stranger's, and could all have the same.
    struct SeededHash
    {
        size_t operator()(std::string_view id) const;
    };

    template <typename Place>
    void Add(const std::vector<TextSegment> &segments, std::vector<QByteArray> &repeated, Place place);

    std::vector<AlignedSegment> m_segments;
    std::vector<int> m_next; ///< of each segment, -1 at the end
    std::vector<int> m_lastFile;
    std::unordered_map<std::string_view, int, SeededHash> m_places;
    int m_first = -1;
    int m_files = 0;
};
