#include "lumivara-data/files/RecordSorter.h"

#include "base/Messages.h"
#include "common/Tool.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype BlockSize = 1 << 18;

quint64 PrefixOf(QByteArrayView record)
{
    char first[sizeof(quint64)] = {};
    std::memcpy(first, record.data(), static_cast<size_t>(std::min<qsizetype>(record.size(), sizeof first)));
    return qFromBigEndian<quint64>(first);
}

bool Less(QByteArrayView a, QByteArrayView b)
{
    const int order = std::memcmp(a.data(), b.data(), static_cast<size_t>(std::min(a.size(), b.size())));
    return order != 0 ? order < 0 : a.size() < b.size();
}

} // namespace

/// Sorted records in a temporary file, each behind its length of two bytes.
class RecordSorter::Run
{
public:
    Run()
    {
        if (!m_file.open())
            Fail();
        m_block.reserve(BlockSize + LongestRecord + 2);
    }

    void Write(QByteArrayView record)
    {
        char length[2];
        qToLittleEndian(static_cast<quint16>(record.size()), length);
        m_block.append(length, sizeof length).append(record.data(), record.size());
        if (m_block.size() >= BlockSize)
            Flush();
    }
    void Rewind()
    {
        Flush();
        if (!m_file.seek(0))
            Fail();
    }
    /// False at the end.
    bool Advance()
    {
        if (!Has(2))
            return false;
        const qsizetype size = qFromLittleEndian<quint16>(m_block.constData() + m_at);
        if (!Has(2 + size))
            Fail();
        m_record = QByteArrayView(m_block).sliced(m_at + 2, size);
        m_at += 2 + size;
        return true;
    }
    QByteArrayView Record() const { return m_record; }

private:
    [[noreturn]] void Fail() const
    {
        throw ToolError(
            Sentence({u"không còn chỗ để sắp xếp: %1", u"there is no room to sort in: %1"}).arg(WriteFault(m_file)));
    }
    void Flush()
    {
        if (m_file.write(m_block) != m_block.size() || !m_file.flush())
            Fail();
        m_block.resize(0);
    }
    bool Has(qsizetype bytes)
    {
        if (m_block.size() - m_at >= bytes)
            return true;
        m_block.remove(0, m_at);
        m_at = 0;
        m_block.append(m_file.read(BlockSize));
        return m_block.size() >= bytes;
    }

    QTemporaryFile m_file;
    QByteArray m_block;
    qsizetype m_at = 0;
    QByteArrayView m_record;
};

RecordSorter::RecordSorter(qsizetype memory) : m_memory(memory) {}

RecordSorter::~RecordSorter() = default;

QByteArrayView RecordSorter::At(const Place &place) const
{
    return QByteArrayView(m_bytes.data() + place.offset, place.size);
}

void RecordSorter::Add(QByteArrayView record)
{
    const auto used = static_cast<qsizetype>(m_bytes.size() + m_places.size() * sizeof(Place));
    if (!m_places.empty() && used + record.size() > m_memory)
        WriteRun();
    if (m_bytes.capacity() == 0) {
        // Growing would hold the bytes twice for a moment; what is reserved and not used takes no memory.
        m_bytes.reserve(static_cast<size_t>(m_memory));
        m_places.reserve(static_cast<size_t>(m_memory) / sizeof(Place));
    }
    m_places.push_back({PrefixOf(record), static_cast<quint32>(m_bytes.size()), static_cast<quint32>(record.size())});
    m_bytes.insert(m_bytes.end(), record.begin(), record.end());
    ++m_count;
}

void RecordSorter::SortInMemory()
{
    std::sort(m_places.begin(), m_places.end(), [this](const Place &a, const Place &b) {
        return a.prefix != b.prefix ? a.prefix < b.prefix : Less(At(a), At(b));
    });
}

void RecordSorter::WriteRun()
{
    SortInMemory();
    auto run = std::make_unique<Run>();
    for (const Place &place : m_places)
        run->Write(At(place));
    run->Rewind();
    m_runs.push_back(std::move(run));
    m_places.clear();
    m_bytes.clear();
}

void RecordSorter::Sort()
{
    if (m_runs.empty()) {
        SortInMemory();
        return;
    }
    WriteRun();
    std::vector<char>().swap(m_bytes);
    std::vector<Place>().swap(m_places);
    std::erase_if(m_runs, [](const std::unique_ptr<Run> &run) { return !run->Advance(); });
}

bool RecordSorter::Next(QByteArrayView &record)
{
    if (m_runs.empty() && !m_given) {
        if (m_next == m_places.size())
            return false;
        record = At(m_places[m_next++]);
        return true;
    }
    if (m_given && !m_given->Advance())
        std::erase_if(m_runs, [this](const std::unique_ptr<Run> &run) { return run.get() == m_given; });
    const auto least = std::min_element(m_runs.begin(), m_runs.end(),
                                        [](const auto &a, const auto &b) { return Less(a->Record(), b->Record()); });
    m_given = least == m_runs.end() ? nullptr : least->get();
    if (!m_given)
        return false;
    record = m_given->Record();
    return true;
}
