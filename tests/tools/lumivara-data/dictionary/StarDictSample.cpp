#include "tools/lumivara-data/dictionary/StarDictSample.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <zlib.h>

using namespace Qt::StringLiterals;

namespace {

void Put(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("no room for a dictionary");
}

template <typename Number>
QByteArray Raw(Number number)
{
    return QByteArray(reinterpret_cast<const char *>(&number), sizeof number);
}

template <typename Number>
QByteArray Little(Number number)
{
    return Raw(qToLittleEndian(number));
}

QByteArray Deflated(const QByteArray &bytes, int windowBits, int flush)
{
    z_stream stream = {};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
    QByteArray packed(qsizetype(deflateBound(&stream, uLong(bytes.size()))) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.constData()));
    stream.avail_in = uInt(bytes.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = uInt(packed.size());
    deflate(&stream, flush);
    packed.chop(stream.avail_out);
    deflateEnd(&stream);
    return packed;
}

QByteArray DictZip(const QByteArray &bytes, int chunkSize)
{
    QByteArray sizes, chunks;
    const auto sum = quint32(crc32(0, reinterpret_cast<const Bytef *>(bytes.constData()), uInt(bytes.size())));
    for (qsizetype at = 0; at < bytes.size(); at += chunkSize) {
        const QByteArray chunk = Deflated(bytes.mid(at, chunkSize), -MAX_WBITS, Z_FULL_FLUSH);
        sizes += Little(quint16(chunk.size()));
        chunks += chunk;
    }
    const QByteArray account =
        Little(quint16(1)) + Little(quint16(chunkSize)) + Little(quint16(sizes.size() / 2)) + sizes;
    const QByteArray extra = "RA" + Little(quint16(account.size())) + account;
    // Extra field and name; what stands behind the chunks is for whole readers.
    return QByteArray("\x1F\x8B\x08\x0C\0\0\0\0\0\x03", 10) + Little(quint16(extra.size())) + extra +
           QByteArray("name\0", 5) + chunks + QByteArray("\x03\0", 2) + Little(sum) + Little(quint32(bytes.size()));
}

} // namespace

void StarDictSample::Write(const QString &base) const
{
    QByteArray texts, index, synonyms;
    for (const Word &word : words) {
        const quint64 offset = word.offset < 0 ? quint64(texts.size()) : quint64(word.offset);
        const auto size = quint32(word.size < 0 ? word.text.size() : word.size);
        index += word.name + '\0' +
                 (offsetBits == 64 ? Raw(qToBigEndian(offset)) : Raw(qToBigEndian(quint32(offset)))) +
                 Raw(qToBigEndian(size));
        texts += word.text;
    }
    for (const Form &form : forms)
        synonyms += form.name + '\0' + Raw(qToBigEndian(form.word));
    Put(base + u".ifo"_s,
        "StarDict's dict ifo file\nversion=" + version + "\nbookname=Sample\nwordcount=" +
            QByteArray::number(words.size()) + "\nidxfilesize=" + QByteArray::number(index.size()) + '\n' +
            (forms.isEmpty() ? QByteArray() : "synwordcount=" + QByteArray::number(forms.size()) + '\n') +
            (offsetBits == 64 ? "idxoffsetbits=64\n" : "") +
            (types.isEmpty() ? QByteArray() : "sametypesequence=" + types + '\n') + moreDescription);
    Put(base + (hasPackedIndex ? u".idx.gz"_s : u".idx"_s),
        hasPackedIndex ? Deflated(index, MAX_WBITS + 16, Z_FINISH) : index);
    if (!forms.isEmpty())
        Put(base + u".syn"_s, synonyms);
    if (packing == Packing::Plain)
        Put(base + u".dict"_s, texts);
    else
        Put(base + u".dict.dz"_s,
            packing == Packing::Gzip ? Deflated(texts, MAX_WBITS + 16, Z_FINISH) : DictZip(texts, chunkSize));
}
