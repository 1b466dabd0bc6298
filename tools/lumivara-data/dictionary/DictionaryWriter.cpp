#include "lumivara-data/dictionary/DictionaryWriter.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/dictionary/DictionaryOrder.h"
#include "stores/engine/Blobs.h"
#include "stores/engine/DatabaseError.h"
#include "stores/engine/RepeatedStatement.h"
#include "stores/engine/Statement.h"

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

const QString InsertEntry = u"insert into DICTIONARY_ENTRY (ID_ENTRY, WORD_CONTENT) values (?, ?)"_s;
/// Both rows of a word of kind %1 in one call of the engine.
const QString InsertWord =
    u"execute block (NAME varchar(63) = ?, KEY varchar(190) character set ASCII = ?, FORM varchar(63) = ?, "
    "ID integer = ?) as begin "
    "insert into DICTIONARY_LIST_%1 (WORD_NAME) values (:NAME); "
    "insert into DICTIONARY_WORD (DICT_TYPE, SORT_KEY, WORD_NAME, WORD_FORM, ID_ENTRY) "
    "values (%1, :KEY, :NAME, :FORM, :ID); end"_s;

const QString InsertForm =
    u"insert into DICTIONARY_FORM (DICT_TYPE, FORM_NAME, PLACE, WORD_NAME) values (?, ?, ?, ?)"_s;

/// Ends a key, which holds none, and a word.
constexpr char End = '\0';
constexpr qsizetype TailSize = sizeof(qint32) + sizeof(quint16);

/// Kind, key, word, form, the entry's number and the word's length, of numbers the higher byte first: in the order of
/// their bytes the records are in the order of the dictionary.
void MakeRecord(QByteArray &record, int kind, const QString &word, int entry)
{
    const QByteArray name = word.toUtf8();
    record.resize(0);
    record += char(kind);
    record += DictionarySortKey(kind, word);
    record += End;
    record += name;
    record += End;
    record += TestedForm(kind, word).toUtf8();
    char tail[TailSize];
    qToBigEndian<qint32>(entry, tail);
    qToBigEndian<quint16>(static_cast<quint16>(name.size()), tail + sizeof(qint32));
    record.append(tail, TailSize);
}

void Assign(QByteArray &to, QByteArrayView bytes)
{
    to.resize(0);
    to.append(bytes);
}

quint64 AddToDigest(quint64 digest, QByteArrayView word)
{
    constexpr quint64 factor = 1'099'511'628'211ULL;
    for (const char c : word)
        digest = (digest ^ static_cast<unsigned char>(c)) * factor;
    return (digest ^ 0xFFU) * factor;
}

} // namespace

int TextNumbers::Number(const QByteArray &text, int number)
{
    const QByteArray digest = QCryptographicHash::hash(text, QCryptographicHash::Blake2b_160);
    const auto high = qFromBigEndian<quint64>(digest.constData());
    const auto low = qFromBigEndian<quint32>(digest.constData() + sizeof high);
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

TextNumbers::Slot &TextNumbers::Find(quint64 high, quint32 low)
{
    const size_t mask = m_slots.size() - 1;
    size_t at = high & mask;
    while (m_slots[at].number && (m_slots[at].high != high || m_slots[at].low != low))
        at = (at + 1) & mask;
    return m_slots[at];
}

DictionaryWriter::DictionaryWriter(const QString &path)
{
    m_file.Create(path, PageSize, false);
    m_file.RunSchema(u"dictionary"_s);
    m_file.Transaction().SetActive(true);
    m_entries = Prepared(InsertEntry);
}

DictionaryWriter::~DictionaryWriter() = default;

std::unique_ptr<RepeatedStatement> DictionaryWriter::Prepared(const QString &sql)
{
    return std::make_unique<RepeatedStatement>(m_file.Database().Attachment(), m_file.Transaction().Native(), sql);
}

int DictionaryWriter::AddEntry(const QByteArray &content)
{
    const int number = m_numbers.Number(content, m_lastEntry + 1);
    if (number > m_lastEntry) {
        m_entries->SetNumber(0, number);
        m_entries->SetBlob(1, content);
        m_entries->Run();
        m_lastEntry = number;
        m_sizes.push_back(static_cast<quint32>(content.size()));
        m_entryBytes += static_cast<quint64>(content.size());
        if (number % RowsOfTransaction == 0)
            m_file.Transaction().CommitRetaining();
    }
    return number;
}

void DictionaryWriter::AddWord(int kind, const QString &word, int entry)
{
    MakeRecord(m_record, kind, word, entry);
    m_words.Add(m_record);
    ++m_addedWords[kind];
}

bool DictionaryWriter::NextWord(Word &word)
{
    QByteArrayView record;
    if (!m_words.Next(record))
        return false;
    word.kind = static_cast<uchar>(record.front());
    const QByteArrayView tail = record.last(TailSize);
    const QByteArrayView texts = record.sliced(1).chopped(TailSize);
    const qsizetype name = texts.indexOf(End) + 1;
    const qsizetype form = name + qFromBigEndian<quint16>(tail.data() + sizeof(qint32)) + 1;
    Assign(word.sortKey, texts.first(name - 1));
    Assign(word.name, texts.sliced(name, form - 1 - name));
    Assign(word.form, texts.sliced(form));
    word.entry = qFromBigEndian<qint32>(tail.data());
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

/// True if there is room for one more joined entry: a few large ones could come in any number of pairs.
bool DictionaryWriter::MayJoin(const std::vector<int> &entries)
{
    constexpr quint64 costOfReading = 64;
    quint64 cost = 0;
    for (const int entry : entries)
        cost += m_sizes[static_cast<size_t>(entry) - 1] + costOfReading;
    m_joinedBytes += std::min<quint64>(cost, LongestEntry);
    return m_joinedBytes <= m_mostJoined;
}

int DictionaryWriter::Join(const Word &word, const std::vector<int> &entries, Report &report)
{
    const QString place =
        Sentence({u"từ điển %1, \"%2\"", u"dictionary %1, \"%2\""}).arg(word.kind).arg(QString::fromUtf8(word.name));
    if (!MayJoin(entries)) {
        report.Find(place, Sentence({u"chỉ lấy mục đầu trong %1 mục từ: gộp lại thì lớn hơn %2 lần số byte của tất cả",
                                     u"only the first of its %1 entries is taken: the joined ones have more than %2 "
                                     u"times the bytes of all"})
                               .arg(entries.size())
                               .arg(MostTimesJoined));
        m_unjoined += static_cast<qsizetype>(entries.size()) - 1;
        return entries.front();
    }
    QByteArray joined;
    qsizetype rest = static_cast<qsizetype>(entries.size());
    for (const int entry : entries) {
        const QByteArray content = Content(entry);
        if (joined.size() + content.size() + 2 > LongestEntry) {
            report.Find(place, Sentence({u"các mục từ gộp lại quá dài; %1 mục bị bỏ",
                                         u"its entries are too long together; %1 of them are left out"})
                                   .arg(rest));
            break;
        }
        joined += (joined.isEmpty() ? QByteArray() : QByteArray("\n\n")) + content;
        --rest;
    }
    m_unjoined += rest;
    report.Note(place, Sentence({u"có %1 mục từ, được gộp lại", u"has %1 entries, joined"}).arg(entries.size()));
    return AddEntry(joined);
}

void DictionaryWriter::StoreWords(Console &console, Report *report)
{
    std::unique_ptr<RepeatedStatement> insert;
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
                throw ToolError(
                    Sentence({u"\"%1\" có hai mục từ trong từ điển %2", u"\"%1\" has two entries in dictionary %2"})
                        .arg(QString::fromUtf8(word.name))
                        .arg(word.kind));
            if (next.entry != entries.back())
                entries.push_back(next.entry);
            else
                ++m_equalWords;
        }
        if (entries.size() > 1)
            word.entry = Join(word, entries, *report);
        if (word.kind != listedKind) {
            listedKind = word.kind;
            insert = Prepared(InsertWord.arg(listedKind));
        }
        insert->SetText(0, word.name);
        insert->SetText(1, word.sortKey);
        insert->SetText(2, word.form);
        insert->SetNumber(3, word.entry);
        insert->Run();
        m_forms.Meet(word.kind, word.sortKey, word.name, report);
        m_isUsed.resize(static_cast<size_t>(m_lastEntry) + 1);
        m_isUsed[static_cast<size_t>(word.entry)] = true;
        m_digests[word.kind] = AddToDigest(m_digests[word.kind], word.name);
        if (++m_storedWords[word.kind] % RowsOfTransaction == 0)
            m_file.Transaction().CommitRetaining();
        console.Progress(u"storing words"_s, done, m_words.Count());
    }
    console.EndProgress();
}

void DictionaryWriter::StoreForms(Console &console, Report *report)
{
    const std::unique_ptr<RepeatedStatement> insert = Prepared(InsertForm);
    FormSorter::Form form;
    for (qsizetype done = 1; m_forms.Next(form, report); ++done) {
        insert->SetNumber(0, form.kind);
        insert->SetText(1, form.form);
        insert->SetNumber(2, form.place);
        insert->SetText(3, form.word);
        insert->Run();
        ++m_storedForms[form.kind];
        if (done % RowsOfTransaction == 0)
            m_file.Transaction().CommitRetaining();
        console.Progress(u"storing forms"_s, done, m_forms.Count());
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
    for (const int kind : DictKind::All) {
        quint64 digest = 0;
        Statement words(m_file.Database().Attachment(), m_file.Transaction().Native(),
                        u"select L.WORD_NAME from DICTIONARY_LIST_%1 L"_s.arg(kind));
        words.OpenCursor(m_file.Transaction().Native(), {});
        while (words.Fetch()) {
            const unsigned char *text = words.Message() + words.Columns()[0].offset;
            quint16 size = 0;
            std::memcpy(&size, text, sizeof size);
            digest = AddToDigest(digest, QByteArrayView(text + sizeof size, size));
        }
        if (digest != m_digests[kind])
            throw ToolError(Sentence({u"bộ máy dữ liệu không giữ đúng thứ tự của từ điển %1",
                                      u"the engine has not kept the order of dictionary %1"})
                                .arg(kind));
    }
}

void DictionaryWriter::Finish(Console &console, Report *report)
{
    m_entries.reset();
    m_file.Transaction().Commit();
    m_file.RunSchema(u"dictionary-entries"_s);
    m_file.Transaction().SetActive(true);
    // Joined entries are written on the way.
    m_entries = Prepared(InsertEntry);
    constexpr quint64 alwaysJoined = 16 * LongestEntry;
    m_mostJoined = MostTimesJoined * m_entryBytes + alwaysJoined;
    console.Progress(u"sorting words"_s, 0, m_words.Count());
    m_words.Sort();
    m_forms.SortByWord();
    StoreWords(console, report);
    m_forms.SortByForm(report);
    StoreForms(console, report);
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
