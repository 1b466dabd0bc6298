#include "lumivara-data/files/DictZip.h"

#include "base/Messages.h"
#include "common/Interrupt.h"
#include "common/Tool.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QFileInfo>
#include <QTemporaryFile>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString BeyondTheEnd()
{
    return Sentence({u"nằm ngoài phần cuối của văn bản", u"lies beyond the end of the texts"});
}

class PlainTexts : public DictTexts
{
public:
    explicit PlainTexts(std::unique_ptr<QFile> file)
        : m_file(std::move(file)), m_size(static_cast<quint64>(m_file->size()))
    {}

    quint64 Size() const override { return m_size; }
    bool Read(quint64 offset, qsizetype size, QByteArray &bytes, QString &fault) override
    {
        if (offset > m_size || static_cast<quint64>(size) > m_size - offset) {
            fault = BeyondTheEnd();
            return false;
        }
        bytes.resize(size);
        if (!m_file->seek(static_cast<qint64>(offset)) || m_file->read(bytes.data(), size) != size) {
            fault = m_file->errorString();
            return false;
        }
        return true;
    }

private:
    std::unique_ptr<QFile> m_file;
    quint64 m_size;
};

/// Raw deflated data, expanded chunk by chunk.
class ChunkedTexts : public DictTexts
{
public:
    ChunkedTexts(std::unique_ptr<QFile> file, qint64 start, quint32 chunkSize, const std::vector<quint16> &sizes)
        : m_file(std::move(file)), m_chunkSize(chunkSize)
    {
        for (const quint16 size : sizes) {
            m_starts.push_back(start);
            start += size;
        }
        m_starts.push_back(start);
    }
    ~ChunkedTexts() override
    {
        if (m_isReady)
            inflateEnd(&m_stream);
    }
    Q_DISABLE_COPY_MOVE(ChunkedTexts)

    quint64 Size() const override { return static_cast<quint64>(m_starts.size() - 1) * m_chunkSize; }
    bool Read(quint64 offset, qsizetype size, QByteArray &bytes, QString &fault) override
    {
        if (offset > Size() || static_cast<quint64>(size) > Size() - offset) {
            fault = BeyondTheEnd();
            return false;
        }
        bytes.clear();
        bytes.reserve(size);
        while (bytes.size() < size) {
            const auto number = static_cast<size_t>(offset / m_chunkSize);
            const auto from = static_cast<qsizetype>(offset % m_chunkSize);
            if (number + 1 >= m_starts.size() || !Expand(number, fault)) {
                fault = fault.isEmpty() ? BeyondTheEnd() : fault;
                return false;
            }
            const qsizetype part = std::min(size - bytes.size(), m_chunk.size() - from);
            if (part <= 0) {
                fault = BeyondTheEnd();
                return false;
            }
            bytes.append(m_chunk.constData() + from, part);
            offset += static_cast<quint64>(part);
        }
        return true;
    }

private:
    bool Expand(size_t number, QString &fault)
    {
        if (m_expanded == number)
            return true;
        m_expanded = SIZE_MAX;
        const qint64 size = m_starts[number + 1] - m_starts[number];
        if (!m_file->seek(m_starts[number])) {
            fault = m_file->errorString();
            return false;
        }
        m_packed = m_file->read(size);
        if (!m_isReady && inflateInit2(&m_stream, -MAX_WBITS) != Z_OK) {
            fault = Sentence({u"không đủ bộ nhớ để giải nén văn bản", u"there is no memory to expand the texts"});
            return false;
        }
        m_isReady = true;
        inflateReset(&m_stream);
        m_chunk.resize(m_chunkSize);
        m_stream.next_in = reinterpret_cast<Bytef *>(m_packed.data());
        m_stream.avail_in = static_cast<uInt>(m_packed.size());
        m_stream.next_out = reinterpret_cast<Bytef *>(m_chunk.data());
        m_stream.avail_out = m_chunkSize;
        const int result = inflate(&m_stream, Z_SYNC_FLUSH);
        m_chunk.resize(m_chunk.size() - static_cast<qsizetype>(m_stream.avail_out));
        if (m_packed.size() != size || (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)) {
            fault = Sentence({u"khối %1 của văn bản nén bị hỏng", u"chunk %1 of the compressed texts is damaged"})
                        .arg(number + 1);
            return false;
        }
        m_expanded = number;
        return true;
    }

    std::unique_ptr<QFile> m_file;
    quint32 m_chunkSize;
    std::vector<qint64> m_starts; ///< in the file, and the end of the last
    z_stream m_stream = {};
    bool m_isReady = false;
    size_t m_expanded = SIZE_MAX;
    QByteArray m_packed;
    QByteArray m_chunk;
};

/// The header of a gzip file, as far as a dictzip table may be in it.
struct GzipHead
{
    static constexpr char HasHeadSum = 2, HasExtra = 4, HasName = 8, HasComment = 16;

    qint64 size = 0;
    quint32 chunkSize = 0; ///< 0 if there is no table
    std::vector<quint16> sizes;
};

quint16 NumberAt(const QByteArray &bytes, qsizetype at)
{
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

/// Reads the account out of the extra field; false if it does not fit.
bool ReadAccount(const QByteArray &extra, GzipHead &head)
{
    for (qsizetype at = 0; at + 4 <= extra.size();) {
        const qsizetype length = NumberAt(extra, at + 2);
        if (at + 4 + length > extra.size())
            return false;
        if (extra[at] == 'R' && extra[at + 1] == 'A') {
            if (length < 6)
                return false;
            const qsizetype count = NumberAt(extra, at + 8);
            head.chunkSize = NumberAt(extra, at + 6);
            if (NumberAt(extra, at + 4) != 1 || head.chunkSize == 0 || length < 6 + 2 * count)
                return false;
            for (qsizetype chunk = 0; chunk < count; ++chunk)
                head.sizes.push_back(NumberAt(extra, at + 10 + 2 * chunk));
            return true;
        }
        at += 4 + length;
    }
    return true;
}

GzipHead ReadHead(QFile &file, const QString &path)
{
    const auto fail = [&] {
        throw ToolError(
            Sentence({u"%1: phần đầu của tệp nén bị hỏng", u"%1: the head of the compressed file is damaged"})
                .arg(path));
    };
    GzipHead head;
    constexpr qint64 fixedSize = 10;
    const QByteArray fixed = file.read(fixedSize);
    if (fixed.size() != fixedSize || !fixed.startsWith("\x1F\x8B\x08"))
        fail();
    const char flags = fixed[3];
    if (flags & GzipHead::HasExtra) {
        const QByteArray length = file.read(2);
        const qint64 size = length.size() == 2 ? NumberAt(length, 0) : 0;
        const QByteArray extra = file.read(size);
        if (length.size() != 2 || extra.size() != size || !ReadAccount(extra, head))
            fail();
    }
    for (const char text : {GzipHead::HasName, GzipHead::HasComment}) {
        char c = (flags & text) ? '\1' : '\0';
        while (c != '\0') {
            if (!file.getChar(&c))
                fail();
        }
    }
    if (flags & GzipHead::HasHeadSum)
        file.skip(2);
    head.size = file.pos();
    return head;
}

/// The size that the end of a gzip file tells, of which only the lower half is known.
quint64 ToldSize(QFile &file)
{
    constexpr qint64 width = sizeof(quint32);
    char bytes[width] = {};
    if (!file.seek(file.size() - width) || file.read(bytes, width) != width)
        return 0;
    return qFromLittleEndian<quint32>(bytes);
}

std::unique_ptr<DictTexts> Expanded(QFile &file, const QString &path)
{
    const quint64 mostBytes = MostExpanded(static_cast<quint64>(file.size()));
    if (ToldSize(file) > mostBytes)
        throw ToolError(GrowsTooMuch(path));
    auto expanded = std::make_unique<QTemporaryFile>();
    const std::unique_ptr<gzFile_s, decltype(&gzclose)> packed(gzopen(QFile::encodeName(path).constData(), "rb"),
                                                               gzclose);
    if (!packed || !expanded->open())
        throw ToolError(Sentence({u"%1: không giải nén được", u"%1: cannot be expanded"}).arg(path));
    QByteArray block(1 << 18, Qt::Uninitialized);
    quint64 total = 0;
    for (;;) {
        ThrowIfInterrupted();
        const int got = gzread(packed.get(), block.data(), static_cast<unsigned>(block.size()));
        if (got < 0)
            throw ToolError(Sentence({u"%1: bị hỏng sau byte %2 của văn bản đã giải nén",
                                      u"%1: is damaged behind byte %2 of the expanded text"})
                                .arg(path)
                                .arg(total));
        if (got == 0)
            break;
        if (total + static_cast<quint64>(got) > mostBytes)
            throw ToolError(GrowsTooMuch(path));
        if (expanded->write(block.constData(), got) != got)
            throw ToolError(Sentence({u"không còn chỗ để giải nén %1: %2", u"there is no room to expand %1: %2"})
                                .arg(path, WriteFault(*expanded)));
        total += static_cast<quint64>(got);
    }
    expanded->flush();
    return std::make_unique<PlainTexts>(std::move(expanded));
}

} // namespace

QString GrowsTooMuch(const QString &path)
{
    return Sentence({u"%1: khi giải nén lớn hơn %2 lần số byte của nó",
                     u"%1: grows to more than %2 times its bytes when it is expanded"})
        .arg(path)
        .arg(MostTimesPacked);
}

std::unique_ptr<DictTexts> DictTexts::Open(const QString &path)
{
    auto file = std::make_unique<QFile>(path);
    if (!file->open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, file->errorString()));
    if (!path.endsWith(u".dz"_s))
        return std::make_unique<PlainTexts>(std::move(file));
    const GzipHead head = ReadHead(*file, path);
    if (head.chunkSize == 0)
        return Expanded(*file, path);
    if (head.sizes.size() * quint64(head.chunkSize) > MostExpanded(static_cast<quint64>(file->size())))
        throw ToolError(GrowsTooMuch(path));
    return std::make_unique<ChunkedTexts>(std::move(file), head.size, head.chunkSize, head.sizes);
}
