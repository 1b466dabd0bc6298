#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QTemporaryFile>

#include <memory>
#include <vector>

/// Sorts any number of byte strings by their bytes, in fixed memory: what does not fit is sorted in runs on disk, which
/// are merged while they are read. Throws ToolError for failures of the disk.
class RecordSorter
{
public:
    static constexpr qsizetype LongestRecord = 65535;
    static constexpr qsizetype UsualMemory = 48 << 20;

    /// `memory`: bytes that records may take before a run is written.
    explicit RecordSorter(qsizetype memory = UsualMemory);
    ~RecordSorter();
    Q_DISABLE_COPY_MOVE(RecordSorter)

    void Add(QByteArrayView record);
    qsizetype Count() const { return m_count; }

    /// Ends the adding. Then Next() gives one record after the other, once; a view holds until the next call.
    void Sort();
    bool Next(QByteArrayView &record);

private:
    struct Place
    {
        quint64 prefix; ///< the first bytes as a number, which decide most comparisons
        quint32 offset;
        quint32 size;
    };
    class Run;

    QByteArrayView At(const Place &place) const;
    void SortInMemory();
    void WriteRun();

    qsizetype m_memory;
    qsizetype m_count = 0;
    std::vector<char> m_bytes;
    std::vector<Place> m_places;
    size_t m_next = 0;
    std::vector<std::unique_ptr<Run>> m_runs;
    Run *m_given = nullptr; ///< whose record the last view shows
};
