#include "lumivara-data/dictionary/StarDictWriter.h"

#include "common/Tool.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/dictionary/StarDictReader.h"

#include <QtEndian>

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

template <typename Number>
QByteArray BigEndian(Number number)
{
    QByteArray bytes(sizeof number, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

/// Sorts as the form asks for: by letters without regard to the case of A to Z, then by bytes.
QByteArray SortedName(const QByteArray &name)
{
    QByteArray folded = name;
    for (char &c : folded)
        c = c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
    return folded + '\0' + name + '\0';
}

/// The name with its NUL, and what follows it.
struct SortedRecord
{
    explicit SortedRecord(QByteArrayView record)
    {
        const qsizetype start = record.indexOf('\0') + 1;
        const qsizetype end = record.indexOf('\0', start) + 1;
        name = record.sliced(start, end - start).toByteArray();
        rest = record.sliced(end);
    }
    QByteArray name;
    QByteArrayView rest;
};

QString BaseOf(const QString &ifoPath)
{
    if (!ifoPath.endsWith(u".ifo"_s))
        throw ToolError(u"%1: a StarDict dictionary is named by its file *.ifo"_s.arg(ifoPath));
    return ifoPath.chopped(4);
}

} // namespace

WrittenFile::WrittenFile(const QString &path) : m_making(path), m_file(m_making.Path())
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw ToolError(u"%1: %2"_s.arg(path, m_file.errorString()));
}

void WrittenFile::Write(const QByteArray &bytes)
{
    if (m_file.write(bytes) != bytes.size())
        throw ToolError(u"%1: %2"_s.arg(m_file.fileName(), WriteFault(m_file)));
    m_size += static_cast<quint64>(bytes.size());
}

void WrittenFile::Finish()
{
    if (!m_file.flush())
        throw ToolError(u"%1: %2"_s.arg(m_file.fileName(), m_file.errorString()));
    m_file.close();
    m_making.Finish();
}

StarDictWriter::StarDictWriter(const QString &ifoPath, int kind)
    : m_base(BaseOf(ifoPath)), m_kind(kind), m_texts(m_base + u".dict"_s), m_index(m_base + u".idx"_s),
      m_forms(m_base + u".syn"_s), m_description(m_base + u".ifo"_s)
{}

void StarDictWriter::Add(const QString &word, const QByteArray &content)
{
    const QByteArray name = SortedName(word.toUtf8());
    const int number = m_numbers.Number(content, m_lastNumber + 1);
    if (number <= m_lastNumber) {
        m_formWords.Add(name + BigEndian(number));
        return;
    }
    m_lastNumber = number;
    m_words.Add(name + BigEndian(m_texts.Size()) + BigEndian(static_cast<quint32>(content.size())) + BigEndian(number));
    m_texts.Write(content);
}

void StarDictWriter::Finish()
{
    const bool isLarge = m_texts.Size() > UINT32_MAX;
    std::vector<quint32> places(static_cast<size_t>(m_lastNumber) + 1); // in the index, by the entry's number
    QByteArrayView record;
    quint32 count = 0;
    constexpr qsizetype offsetSize = sizeof(quint64);
    m_words.Sort();
    while (m_words.Next(record)) {
        const SortedRecord word(record);
        const auto number = qFromBigEndian<qint32>(word.rest.data() + offsetSize + sizeof(quint32));
        places[static_cast<size_t>(number)] = count++;
        // A short offset is the lower half of a long one.
        const qsizetype from = isLarge ? 0 : offsetSize / 2;
        m_index.Write(word.name + word.rest.sliced(from, offsetSize - from + 4).toByteArray());
    }
    m_formWords.Sort();
    while (m_formWords.Next(record)) {
        const SortedRecord word(record);
        const auto number = qFromBigEndian<qint32>(word.rest.data());
        m_forms.Write(word.name + BigEndian(places[static_cast<size_t>(number)]));
    }
    m_description.Write("StarDict's dict ifo file\nversion=3.0.0\nbookname=" + DictionaryCaption(m_kind, 1).toUtf8() +
                        "\nwordcount=" + QByteArray::number(count) +
                        "\nsynwordcount=" + QByteArray::number(m_formWords.Count()) +
                        "\nidxfilesize=" + QByteArray::number(m_index.Size()) + (isLarge ? "\nidxoffsetbits=64" : "") +
                        "\nsametypesequence=m\n" + StarDictReader::MarkUpKey + "=1\n");
    m_texts.Finish();
    m_index.Finish();
    m_forms.Finish();
    // The last, so that no description stands without what it describes.
    m_description.Finish();
}
