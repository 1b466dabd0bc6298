#include "lumivara-data/DictionaryWriter.h"

#include "common/Console.h"
#include "common/Report.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/DictionaryOrder.h"
#include "lumivara-data/DictionaryReader.h"
#include "lumivara-data/Verbs.h"
#include "stores/Blobs.h"
#include "stores/DatabaseError.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/// The engine keeps a number of pages in memory: small ones, because a walk through a list uses each only once.
constexpr int PageSize = 4096;
/// Rows of one transaction: the engine keeps an account of what an open one has changed.
constexpr qsizetype RowsOfTransaction = 100'000;

/// Kind, key, NUL, the word's units, the entry's number, the higher byte always first: in the order of their bytes the
/// records are in the order of the dictionary.
QByteArray RecordOf(int kind, const QByteArray &sortKey, const QString &word, int entry)
{
    QByteArray record;
    record.reserve(2 + sortKey.size() + 2 * word.size() + 4);
    record += char(kind);
    record += sortKey;
    record += '\0';
    for (const QChar unit : word) {
        record += char(unit.row());
        record += char(unit.cell());
    }
    char number[sizeof(qint32)];
    qToBigEndian<qint32>(entry, number);
    return record.append(number, sizeof number);
}

quint64 AddToDigest(quint64 digest, const QString &word)
{
    constexpr quint64 factor = 1'099'511'628'211ULL;
    for (const QChar unit : word)
        digest = (digest ^ unit.unicode()) * factor;
    return (digest ^ 0xFFFF'FFFFU) * factor;
}

} // namespace

int TextNumbers::Number(const QByteArray &text, int number)
{
    const QByteArray digest = QCryptographicHash::hash(text, QCryptographicHash::Blake2b_160);
    const auto high = qFromBigEndian<quint64>(digest.constData());
    const auto low = qFromBigEndian<quint64>(digest.constData() + sizeof high);
    if (3 * (m_used + 1) > 2 * m_slots.size()) {
        std::vector<Slot> old(std::max<size_t>(1024, 2 * m_slots.size()));
        old.swap(m_slots);
        for (const Slot &slot : old) {
            if (slot.number)
                Find(slot.high, slot.low) = slot;
        }
    }
    Slot &slot = Find(high, low);
    if (!slot.number) {
        slot = {high, low, number};
        ++m_used;
    }
    return slot.number;
}

TextNumbers::Slot &TextNumbers::Find(quint64 high, quint64 low)
{
    const size_t mask = m_slots.size() - 1;
    size_t at = low & mask;
    while (m_slots[at].number && (m_slots[at].high != high || m_slots[at].low != low))
        at = (at + 1) & mask;
    return m_slots[at];
}

DictionaryWriter::DictionaryWriter(const QString &path)
{
    m_file.Create(path, PageSize, false);
    m_file.RunSchema(u"dictionary"_s);
    m_entries =
        std::make_unique<RowWriter>(m_file, u"DICTIONARY_ENTRY"_s, QStringList{u"ID_ENTRY"_s, u"WORD_CONTENT"_s});
}

DictionaryWriter::~DictionaryWriter() = default;

int DictionaryWriter::AddEntry(const QByteArray &content)
{
    const int number = m_numbers.Number(content, m_lastEntry + 1);
    if (number > m_lastEntry) {
        m_entries->Append({number, content});
        m_lastEntry = number;
        if (number % RowsOfTransaction == 0)
            m_file.Transaction().CommitRetaining();
    }
    return number;
}

void DictionaryWriter::AddWord(int kind, const QString &word, int entry)
{
    m_words.Add(RecordOf(kind, DictionarySortKey(kind, word), word, entry));
}

bool DictionaryWriter::NextWord(Word &word)
{
    QByteArrayView record;
    if (!m_words.Next(record))
        return false;
    word.kind = record[0];
    const char *name = record.data() + 1 + std::strlen(record.data() + 1) + 1;
    const char *entry = record.end() - sizeof(qint32);
    word.sortKey = QByteArray(record.data() + 1, name - record.data() - 2);
    word.name.resize((entry - name) / 2);
    for (QChar &unit : word.name) {
        unit = QChar(qFromBigEndian<quint16>(name));
        name += sizeof(quint16);
    }
    word.entry = qFromBigEndian<qint32>(entry);
    return true;
}

QByteArray DictionaryWriter::Content(int entry)
{
    if (!m_content) {
        m_content =
            std::make_unique<Statement>(m_file.Database().Attachment(), m_file.Transaction().Native(),
                                        u"select E.WORD_CONTENT from DICTIONARY_ENTRY E where E.ID_ENTRY = :ID"_s);
    }
    QByteArray content;
    m_content->OpenCursor(m_file.Transaction().Native(), {entry});
    if (m_content->Fetch()) {
        BlobId id{};
        std::memcpy(&id.quad, m_content->Message() + m_content->Columns()[0].offset, sizeof id.quad);
        ReadBlob(m_file.Database().Attachment(), m_file.Transaction().Native(), id, content);
    }
    m_content->CloseCursor();
    return content;
}

int DictionaryWriter::Join(const Word &word, const std::vector<int> &entries, Report &report)
{
    const QString place = u"dictionary %1, \"%2\""_s.arg(word.kind).arg(word.name);
    QByteArray joined;
    for (const int entry : entries) {
        const QByteArray content = Content(entry);
        if (joined.size() + content.size() + 2 > LongestEntry) {
            report.Find(place, u"its entries are too long together; the last is left out"_s);
            break;
        }
        joined += (joined.isEmpty() ? QByteArray() : QByteArray("\n\n")) + content;
    }
    report.Count(u"entries joined"_s, static_cast<qsizetype>(entries.size()));
    report.Note(place, u"has %1 entries, joined"_s.arg(entries.size()));
    return AddEntry(joined);
}

void DictionaryWriter::StoreWords(Console &console, Report *report)
{
    RowWriter words(m_file, u"DICTIONARY_WORD"_s,
                    {u"DICT_TYPE"_s, u"SORT_KEY"_s, u"WORD_NAME"_s, u"WORD_FORM"_s, u"ID_ENTRY"_s});
    std::unique_ptr<RowWriter> list;
    int listedKind = 0;
    Word word;
    Word next;
    std::vector<int> entries;
    qsizetype done = 0;
    for (bool isThere = NextWord(next); isThere;) {
        std::swap(word, next);
        entries.assign(1, word.entry);
        for (++done; (isThere = NextWord(next)) && next.kind == word.kind && next.name == word.name; ++done) {
            if (!report)
                throw ToolError(u"\"%1\" has two entries in dictionary %2"_s.arg(word.name).arg(word.kind));
            if (next.entry != entries.back())
                entries.push_back(next.entry);
        }
        if (entries.size() > 1)
            word.entry = Join(word, entries, *report);
        if (word.kind != listedKind) {
            listedKind = word.kind;
            list = std::make_unique<RowWriter>(m_file, u"DICTIONARY_LIST_%1"_s.arg(listedKind),
                                               QStringList{u"WORD_NAME"_s});
        }
        list->Append({word.name});
        words.Append(
            {word.kind, QString::fromLatin1(word.sortKey), word.name, TestedForm(word.kind, word.name), word.entry});
        m_isUsed.resize(static_cast<size_t>(m_lastEntry) + 1);
        m_isUsed[static_cast<size_t>(word.entry)] = true;
        m_digests[word.kind] = AddToDigest(m_digests[word.kind], word.name);
        if (++m_storedWords[word.kind] % RowsOfTransaction == 0)
            m_file.Transaction().CommitRetaining();
        console.Progress(u"storing words"_s, done, m_words.Count());
    }
    console.EndProgress();
}

void DictionaryWriter::DropUnusedEntries()
{
    Statement remove(m_file.Database().Attachment(), m_file.Transaction().Native(),
                     u"delete from DICTIONARY_ENTRY E where E.ID_ENTRY = :ID"_s);
    m_isUsed.resize(static_cast<size_t>(m_lastEntry) + 1);
    for (int entry = 1; entry <= m_lastEntry; ++entry) {
        if (!m_isUsed[static_cast<size_t>(entry)])
            remove.Execute(m_file.Transaction().Native(), {entry});
    }
}

/// The natural order of the list tables is the order of storing; should an engine ever store otherwise, no file is
/// made.
void DictionaryWriter::ProveOrder()
{
    DictionaryReader reader(m_file);
    for (int kind = 1; kind <= LastKind; ++kind) {
        quint64 digest = 0;
        reader.EachWord(kind, [&](const QString &word) { digest = AddToDigest(digest, word); });
        if (digest != m_digests[kind])
            throw ToolError(u"the engine has not kept the order of dictionary %1"_s.arg(kind));
    }
}

void DictionaryWriter::Finish(Console &console, Report *report)
{
    m_entries.reset();
    m_file.Transaction().Commit();
    m_file.RunSchema(u"dictionary-entries"_s);
    m_file.Transaction().SetActive(true);
    // Joined entries are written on the way.
    m_entries =
        std::make_unique<RowWriter>(m_file, u"DICTIONARY_ENTRY"_s, QStringList{u"ID_ENTRY"_s, u"WORD_CONTENT"_s});
    console.Progress(u"sorting words"_s, 0, m_words.Count());
    m_words.Sort();
    StoreWords(console, report);
    DropUnusedEntries();
    m_entries.reset();
    m_content.reset();
    m_file.Transaction().Commit();
    console.Progress(u"making the indices"_s, 0, m_words.Count());
    m_file.RunSchema(u"dictionary-indices"_s);
    m_file.Transaction().SetActive(true);
    ProveOrder();
    console.EndProgress();
    m_file.Finish(true);
}
