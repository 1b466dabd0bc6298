#include "lumivara-data/dictionary/StarDictReader.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/InOrder.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/dictionary/DictionaryWriter.h"
#include "lumivara-data/dictionary/EntryIntake.h"
#include "lumivara-data/files/DictZip.h"
#include "lumivara-data/files/PageFacts.h"
#include "lumivara-data/files/RecordSorter.h"

#include <QDir>
#include <QFileInfo>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 LongestDescription = 1 << 20;
/// A word of the form has fewer than 256 bytes; some dictionaries pass that.
constexpr qsizetype LongestName = 4096;
/// After so many broken words in a row the file is not an index.
constexpr qsizetype MostBroken = 10'000;
/// Sizes, or entries, that add up to more than so many times the texts are lies.
constexpr quint64 MostTimesTheTexts = 4;
constexpr qsizetype MostFields = 32;

/// A row of names, each ended by NUL and followed by a fixed number of bytes, out of a plain or compressed file.
class NameRows
{
public:
    NameRows(const QString &path, qsizetype tailSize)
        : m_path(path), m_tailSize(tailSize), m_mostBytes(MostExpanded(static_cast<quint64>(QFileInfo(path).size()))),
          m_file(gzopen(QFile::encodeName(path).constData(), "rb"), gzclose)
    {
        if (!m_file)
            throw ToolError(Sentence({u"%1: không mở được", u"%1: cannot be opened"}).arg(path));
        constexpr unsigned buffer = 1 << 17;
        gzbuffer(m_file.get(), buffer);
    }

    /// False at the end. `name` is cut where it is longer than LongestName; `tail` is what follows.
    bool Next(QByteArray &name, const char *&tail)
    {
        name.clear();
        for (;;) {
            const char *begin = m_block.constData() + m_at;
            const auto *end = static_cast<const char *>(memchr(begin, '\0', static_cast<size_t>(Held())));
            const qsizetype part = end ? end - begin : Held();
            name.append(begin, std::min(part, LongestName + 1 - name.size()));
            m_at += part;
            if (end) {
                ++m_at;
                break;
            }
            if (!Fill()) {
                m_isCut = !name.isEmpty();
                return false;
            }
        }
        while (Held() < m_tailSize) {
            if (!Fill()) {
                m_isCut = true;
                return false;
            }
        }
        tail = m_block.constData() + m_at;
        m_at += m_tailSize;
        return true;
    }
    /// The file ends inside of a row.
    bool IsCut() const { return m_isCut; }
    /// Bytes so far, expanded.
    quint64 BytesRead() const { return m_read; }

private:
    qsizetype Held() const { return m_block.size() - m_at; }
    bool Fill()
    {
        m_block.remove(0, m_at);
        m_at = 0;
        constexpr unsigned piece = 1 << 17;
        const qsizetype held = m_block.size();
        m_block.resize(held + piece);
        const int got = gzread(m_file.get(), m_block.data() + held, piece);
        if (got < 0)
            throw ToolError(
                Sentence({u"%1: bị hỏng sau byte %2", u"%1: is damaged behind byte %2"}).arg(m_path).arg(m_read));
        m_block.resize(held + got);
        m_read += static_cast<quint64>(got);
        if (m_read > m_mostBytes)
            throw ToolError(GrowsTooMuch(m_path));
        return got > 0;
    }

    QString m_path;
    qsizetype m_tailSize;
    quint64 m_mostBytes;
    quint64 m_read = 0;
    std::unique_ptr<gzFile_s, decltype(&gzclose)> m_file;
    QByteArray m_block;
    qsizetype m_at = 0;
    bool m_isCut = false;
};

/// Offset, size and number of a word, high bytes first, and its name: in the order of the bytes that of the texts.
struct IndexRecord
{
    static constexpr qsizetype HeadSize = 16;

    static QByteArray Made(quint64 offset, quint32 size, quint32 number, const QByteArray &name)
    {
        QByteArray record(HeadSize, Qt::Uninitialized);
        qToBigEndian(offset, record.data());
        qToBigEndian(size, record.data() + 8);
        qToBigEndian(number, record.data() + 12);
        return record + name;
    }
    explicit IndexRecord(QByteArrayView record)
        : offset(qFromBigEndian<quint64>(record.data())), size(qFromBigEndian<quint32>(record.data() + 8)),
          number(qFromBigEndian<quint32>(record.data() + 12)), name(record.sliced(HeadSize).toByteArray())
    {}

    quint64 offset;
    quint32 size;
    quint32 number; ///< from 0
    QByteArray name;
};

/// Number of the word, number of the form, high bytes first, and the form: in the order of the bytes that of the words.
struct FormRecord
{
    static constexpr qsizetype HeadSize = 8;

    static QByteArray Made(quint32 word, quint32 number, const QByteArray &name)
    {
        QByteArray record(HeadSize, Qt::Uninitialized);
        qToBigEndian(word, record.data());
        qToBigEndian(number, record.data() + 4);
        return record + name;
    }
    explicit FormRecord(QByteArrayView record)
        : word(qFromBigEndian<quint32>(record.data())), number(qFromBigEndian<quint32>(record.data() + 4)),
          name(record.sliced(HeadSize).toByteArray())
    {}

    quint32 word;   ///< from 0
    quint32 number; ///< from 0
    QByteArray name;
};

/// Bytes behind a form: the number of its word.
constexpr qsizetype FormTail = 4;
/// What forms may take before they are sorted on disk.
constexpr qsizetype FormMemory = 16 << 20;

/// The forms that are there, whatever the description tells.
quint64 CountedForms(const QString &path)
{
    NameRows rows(path, FormTail);
    QByteArray name;
    const char *tail = nullptr;
    quint64 count = 0;
    while (rows.Next(name, tail))
        ++count;
    return count;
}

QString FileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

/// A word of the index with its entry, unless it shares that of the word before it.
struct ReadWord
{
    QByteArray name;
    quint32 number = 0;
    bool beginsEntry = false;
    bool overlaps = false;
    QString fault; ///< of the entry's place; empty for none
    CheckedEntry entry;
};

/// Reads the entries of words, which come in the order of their texts, and makes them ready to be taken.
class TextReader
{
public:
    using Form = std::function<QByteArray(const QByteArray &word, const QByteArray &text)>;
    static constexpr qsizetype MostBytes = 1 << 20;

    TextReader(RecordSorter &words, DictTexts &texts, const QString &indexPath, Form form)
        : m_words(words), m_texts(texts), m_indexPath(indexPath), m_form(std::move(form))
    {}

    /// The next words, about MostBytes of texts; none at the end.
    std::vector<ReadWord> Next()
    {
        constexpr size_t mostWords = 1024;
        std::vector<ReadWord> batch;
        QByteArrayView bytes;
        for (qsizetype held = 0; batch.size() < mostWords && held < MostBytes && m_words.Next(bytes);) {
            batch.push_back(Read(IndexRecord(bytes)));
            held += batch.back().entry.content.size();
        }
        return batch;
    }

private:
    ReadWord Read(const IndexRecord &record)
    {
        ReadWord word;
        word.name = record.name;
        word.number = record.number;
        // Words that have the same text share its entry.
        word.beginsEntry = m_isFirst || record.offset != m_begin || record.offset + record.size != m_end;
        if (!word.beginsEntry)
            return word;
        m_isFirst = false;
        Weigh(record, record.size);
        word.overlaps = record.offset < m_reached;
        if (m_texts.Read(record.offset, record.size, m_text, word.fault))
            word.entry = EntryIntake::Check(m_form(record.name, m_text));
        // Marks make an entry larger than its text, a small one more so.
        constexpr qsizetype usualGrowth = 4096;
        if (const qsizetype grown = word.entry.content.size() - record.size - record.name.size(); grown > usualGrowth)
            Weigh(record, static_cast<quint64>(grown));
        m_begin = record.offset;
        m_end = record.offset + record.size;
        m_reached = std::max(m_reached, m_end);
        return word;
    }

    void Weigh(const IndexRecord &record, quint64 bytes)
    {
        m_total += bytes;
        if (m_total > MostTimesTheTexts * m_texts.Size() + DictionaryWriter::LongestEntry)
            throw ToolError(Sentence({u"%1: các mục từ lớn hơn %2 lần số byte của mọi văn bản",
                                      u"%1: the entries have more than %2 times the bytes of all texts"})
                                .arg(SourcePlace{m_indexPath, static_cast<qsizetype>(record.number) + 1}.Text(),
                                     QString::number(MostTimesTheTexts)));
    }

    RecordSorter &m_words;
    DictTexts &m_texts;
    QString m_indexPath;
    Form m_form;
    QByteArray m_text;
    bool m_isFirst = true;
    quint64 m_begin = 0; ///< of the entry before
    quint64 m_end = 0;
    quint64 m_reached = 0;
    quint64 m_total = 0;
};

} // namespace

StarDictReader::StarDictReader(const QString &ifoPath, Report &report) : m_report(report)
{
    QString path = ifoPath;
    if (QFileInfo(path).isDir()) {
        const QStringList found = QDir(path).entryList({u"*.ifo"_s}, QDir::Files);
        if (found.size() != 1)
            throw ToolError(Sentence({u"%1: có %2 tệp *.ifo; hãy chọn một tệp", u"%1: holds %2 files *.ifo; name one"})
                                .arg(path)
                                .arg(found.size()));
        path = QDir(path).filePath(found.first());
    }
    if (!path.endsWith(u".ifo"_s))
        throw ToolError(Sentence({u"%1: từ điển StarDict được chọn bằng tệp *.ifo của nó",
                                  u"%1: a StarDict dictionary is named by its file *.ifo"})
                            .arg(path));
    m_base = path.chopped(4);
    m_folder = QFileInfo(QFileInfo(path).absolutePath()).canonicalFilePath();
    ReadDescription();
}

StarDictReader::~StarDictReader() = default;

/// A file of the dictionary; empty if there is none.
QString StarDictReader::Beside(const QString &ending) const
{
    const QFileInfo info(m_base + ending);
    if (!info.exists() && !info.isSymLink())
        return {};
    if (info.isSymLink() && QFileInfo(info.canonicalFilePath()).absolutePath() != m_folder)
        throw ToolError(
            Sentence({u"%1: là liên kết dẫn ra ngoài thư mục", u"%1: is a link that leads out of the folder"})
                .arg(info.filePath()));
    if (!info.isFile())
        throw ToolError(Sentence({u"%1: không phải là tệp thường", u"%1: is no regular file"}).arg(info.filePath()));
    return info.filePath();
}

/// A number of the description; nothing, and told, where it is none.
std::optional<quint64> StarDictReader::Told(const QHash<QByteArray, QByteArray> &values, const char *key)
{
    bool isNumber = false;
    const quint64 number = values.value(key).toULongLong(&isNumber);
    if (isNumber)
        return number;
    m_report.Find(FileName(m_base + u".ifo"_s),
                  Sentence({u"%1 không phải là số: \"%2\"", u"%1 is no number: \"%2\""})
                      .arg(QLatin1StringView(key), QString::fromUtf8(values.value(key).left(64))));
    return std::nullopt;
}

void StarDictReader::ReadDescription()
{
    const QString path = Beside(u".ifo"_s);
    if (path.isEmpty())
        throw ToolError(Sentence({u"%1.ifo: không có tệp này", u"%1.ifo: there is no such file"}).arg(m_base));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, file.errorString()));
    QByteArray text = file.read(std::min(file.size(), LongestDescription));
    if (text.startsWith("\xEF\xBB\xBF"))
        text.remove(0, 3);
    const QByteArrayList lines = text.split('\n');
    if (lines.first().trimmed() != "StarDict's dict ifo file")
        throw ToolError(Sentence({u"%1:1: không bắt đầu bằng \"StarDict's dict ifo file\"",
                                  u"%1:1: does not begin with \"StarDict's dict ifo file\""})
                            .arg(path));
    QHash<QByteArray, QByteArray> values;
    for (const QByteArray &line : lines) {
        if (const qsizetype equals = line.indexOf('='); equals > 0)
            values.insert(line.first(equals).trimmed(), line.mid(equals + 1).trimmed());
    }
    const QByteArray version = values.value("version");
    if (version != "2.4.2" && version != "3.0.0")
        throw ToolError(Sentence({u"%1: không biết phiên bản \"%2\"", u"%1: version \"%2\" is not known"})
                            .arg(path, QString::fromUtf8(version.left(64))));
    m_report.Tell(u"name"_s, QString::fromUtf8(values.value("bookname")));
    m_wordCount = Told(values, "wordcount");
    m_indexSize = Told(values, "idxfilesize");
    m_formCount = values.contains("synwordcount") ? Told(values, "synwordcount") : 0;
    if (values.contains("idxoffsetbits")) {
        const QByteArray bits = values.value("idxoffsetbits");
        if (bits != "32" && bits != "64")
            throw ToolError(Sentence({u"%1: không biết vị trí \"%2\" bit", u"%1: offsets of \"%2\" bits are not known"})
                                .arg(path, QString::fromUtf8(bits.left(64))));
        m_offsetBytes = bits == "64" ? 8 : 4;
    }
    const QByteArray types = values.value("sametypesequence");
    if (types.size() > MostFields)
        throw ToolError(
            Sentence({u"%1: sametypesequence có hơn %2 kiểu", u"%1: sametypesequence has more than %2 types"})
                .arg(path)
                .arg(MostFields));
    m_isMarkedUp = values.value(MarkUpKey) == "1" && types == "m";
    m_entryTexts = StarDictEntries(types);
}

QString StarDictReader::IndexPath() const
{
    QString path = Beside(u".idx"_s);
    if (path.isEmpty())
        path = Beside(u".idx.gz"_s);
    if (path.isEmpty())
        throw ToolError(Sentence({u"%1.idx: không có tệp này, cũng không có %1.idx.gz",
                                  u"%1.idx: there is no such file, nor %1.idx.gz"})
                            .arg(m_base));
    return path;
}

QString StarDictReader::TextsPath() const
{
    QString path = Beside(u".dict"_s);
    if (path.isEmpty())
        path = Beside(u".dict.dz"_s);
    if (path.isEmpty())
        throw ToolError(Sentence({u"%1.dict: không có tệp này, cũng không có %1.dict.dz",
                                  u"%1.dict: there is no such file, nor %1.dict.dz"})
                            .arg(m_base));
    return path;
}

void StarDictReader::Open()
{
    m_index = IndexPath();
    m_texts = DictTexts::Open(TextsPath());
}

/// Puts the words of the index whose entries lie inside of the texts among `words`.
void StarDictReader::ReadIndex(const QString &path, RecordSorter &words, quint64 textSize, Console &console)
{
    const QString fileName = FileName(path);
    NameRows rows(path, m_offsetBytes + 4);
    QByteArray name;
    const char *tail = nullptr;
    qsizetype broken = 0;
    quint32 number = 0;
    for (; rows.Next(name, tail); ++number) {
        const SourcePlace place{fileName, static_cast<qsizetype>(number) + 1};
        const quint64 offset = m_offsetBytes == 8 ? qFromBigEndian<quint64>(tail) : qFromBigEndian<quint32>(tail);
        const auto size = qFromBigEndian<quint32>(tail + m_offsetBytes);
        console.Progress(u"reading the index"_s, number + 1, static_cast<qsizetype>(m_wordCount.value_or(0)));
        if (number >= EntryIntake::MostWords)
            throw ToolError(Sentence({u"%1:%2: nhiều hơn %3 từ", u"%1:%2: more than %3 words"})
                                .arg(path)
                                .arg(place.number)
                                .arg(EntryIntake::MostWords));
        if (name.isEmpty() || name.size() > LongestName) {
            m_report.Find(place.Text(),
                          (name.isEmpty() ? Sentence({u"từ trống", u"the word is empty"})
                                          : Sentence({u"từ không có chỗ kết thúc", u"the word has no end"})) +
                              Sentence({u"; bị bỏ", u"; left out"}));
            if (++broken > MostBroken)
                throw ToolError(Sentence({u"%1: hơn %2 từ bị hỏng; đây không phải là bảng chỉ mục từ",
                                          u"%1: more than %2 words are broken; this is no index of words"})
                                    .arg(path)
                                    .arg(MostBroken));
        } else if (!name.isValidUtf8()) {
            m_report.Find(place.Text(),
                          Sentence({u"từ không phải là UTF-8; bị bỏ", u"the word is not UTF-8; left out"}));
        } else if (size > DictionaryWriter::LongestEntry) {
            m_report.Find(place.Text(), Sentence({u"mục từ có %1 byte, nhiều hơn %2; bị bỏ",
                                                  u"the entry has %1 bytes, more than %2; left out"})
                                            .arg(size)
                                            .arg(DictionaryWriter::LongestEntry));
        } else if (offset > textSize || size > textSize - offset) {
            m_report.Find(place.Text(), Sentence({u"mục từ nằm ngoài phần cuối của văn bản; bị bỏ",
                                                  u"the entry lies beyond the end of the texts; left out"}));
        } else {
            words.Add(IndexRecord::Made(offset, size, number, name));
        }
    }
    console.EndProgress();
    if (rows.IsCut())
        m_report.Find(fileName, Sentence({u"bị cắt ngang sau từ %1", u"is cut short behind word %1"}).arg(number));
    if (m_indexSize && rows.BytesRead() != *m_indexSize)
        m_report.Find(fileName, Sentence({u"có %1 byte, trong khi phần mô tả ghi %2",
                                          u"has %1 bytes where the description tells %2"})
                                    .arg(rows.BytesRead())
                                    .arg(*m_indexSize));
    if (m_wordCount && number != *m_wordCount)
        m_report.Find(fileName, Sentence({u"có %1 từ, trong khi phần mô tả ghi %2",
                                          u"has %1 words where the description tells %2"})
                                    .arg(number)
                                    .arg(*m_wordCount));
    m_entries.assign(number, 0);
}

void StarDictReader::TakeWords(RecordSorter &words, DictTexts &texts, EntryIntake &intake, Console &console)
{
    const QString fileName = FileName(m_base + u".idx"_s);
    words.Sort();
    TextReader reader(words, texts, m_base + u".idx"_s, [this](const QByteArray &word, const QByteArray &text) {
        return m_isMarkedUp ? text : m_entryTexts.Of(word, text);
    });
    int entry = 0;
    qsizetype done = 0;
    // While the engine stores some words the next ones are read.
    InOrder<std::vector<ReadWord>> batches(1);
    const auto readOn = [&] { batches.Put(TextReader::MostBytes, [&reader] { return reader.Next(); }); };
    readOn();
    for (std::vector<ReadWord> batch = batches.Take(); !batch.empty(); batch = batches.Take()) {
        readOn();
        for (const ReadWord &word : batch) {
            const SourcePlace place{fileName, static_cast<qsizetype>(word.number) + 1};
            console.Progress(u"reading words"_s, ++done, words.Count());
            if (word.overlaps)
                m_report.Note(place.Text(), Sentence({u"mục từ chồng lên một mục khác; được nhập nguyên như vậy",
                                                      u"the entry overlaps another one; taken as it stands"}));
            if (!word.fault.isEmpty())
                m_report.Find(place.Text(), Sentence({u"mục từ %1; bị bỏ", u"the entry %1; left out"}).arg(word.fault));
            if (word.beginsEntry)
                entry = word.fault.isEmpty() ? intake.TakeEntry(word.entry, place) : 0;
            else if (!entry)
                m_report.Find(place.Text(),
                              Sentence({u"dùng mục từ của một từ đã bị bỏ; cũng bị bỏ",
                                        u"has the entry of another word that was left out; left out too"}));
            if (entry && intake.TakeWord(word.name, entry, place))
                m_entries[word.number] = entry;
        }
    }
    console.EndProgress();
}

void StarDictReader::TakeForms(EntryIntake &intake, Console &console, FormPlace forms)
{
    const QString path = Beside(u".syn"_s);
    if (path.isEmpty()) {
        if (m_formCount.value_or(0) > 0)
            m_report.Find(
                FileName(m_base + u".syn"_s),
                Sentence({u"không có; %1 dạng từ bị bỏ", u"is missing; %1 forms are left out"}).arg(*m_formCount));
        return;
    }
    const QString fileName = FileName(path);
    const bool isBeside = forms == FormPlace::Beside ||
                          (forms == FormPlace::Fitting && CountedForms(path) > static_cast<quint64>(m_entries.size()));
    RecordSorter beside(FormMemory);
    NameRows rows(path, FormTail);
    QByteArray name;
    const char *tail = nullptr;
    qsizetype number = 0;
    qsizetype taken = 0;
    for (; rows.Next(name, tail); ++number) {
        console.Progress(u"reading forms"_s, number + 1, static_cast<qsizetype>(m_formCount.value_or(0)));
        const SourcePlace place{fileName, number + 1};
        const auto word = qFromBigEndian<quint32>(tail);
        if (word >= m_entries.size())
            m_report.Find(place.Text(), Sentence({u"không có từ %1; bị bỏ", u"there is no word %1; left out"})
                                            .arg(static_cast<quint64>(word) + 1));
        else if (m_entries[word] == 0)
            m_report.Find(place.Text(), Sentence({u"từ %1 đã bị bỏ, nên dạng từ này cũng bị bỏ",
                                                  u"the word %1 was left out, and so is this form"})
                                            .arg(word + 1));
        else if (isBeside)
            beside.Add(FormRecord::Made(word, static_cast<quint32>(number), name));
        else if (intake.TakeWord(name, m_entries[word], place))
            ++taken;
    }
    console.EndProgress();
    if (isBeside) {
        intake.CountFormsRead(number);
        PutFormsBeside(beside, fileName, intake, console);
    } else {
        intake.CountRead(number);
        m_report.Count(Sentence({u"dạng từ", u"forms"}), taken);
    }
    if (rows.IsCut())
        m_report.Find(fileName, Sentence({u"bị cắt ngang sau dạng từ %1", u"is cut short behind form %1"}).arg(number));
    if (m_formCount && static_cast<quint64>(number) != *m_formCount)
        m_report.Find(fileName, Sentence({u"có %1 dạng từ, trong khi phần mô tả ghi %2",
                                          u"has %1 forms where the description tells %2"})
                                    .arg(number)
                                    .arg(*m_formCount));
}

/// A form tells its word by a number, which the index, read once more, turns into a name.
void StarDictReader::PutFormsBeside(RecordSorter &forms, const QString &fileName, EntryIntake &intake, Console &console)
{
    forms.Sort();
    NameRows index(m_index, m_offsetBytes + 4);
    QByteArray word;
    const char *tail = nullptr;
    quint64 read = 0;
    qsizetype done = 0;
    for (QByteArrayView bytes; forms.Next(bytes);) {
        const FormRecord form(bytes);
        while (read <= form.word && index.Next(word, tail))
            ++read;
        intake.TakeForm(form.name, word, {fileName, static_cast<qsizetype>(form.number) + 1});
        console.Progress(u"keeping forms"_s, ++done, forms.Count());
    }
    console.EndProgress();
}

void StarDictReader::TakeAll(EntryIntake &intake, Console &console, FormPlace forms)
{
    if (!m_texts)
        Open();
    // A record takes less than four times its bytes in the index, so that what fits is sorted without the disk.
    constexpr quint64 least = 1 << 16;
    const auto indexBytes = static_cast<quint64>(QFileInfo(m_index).size());
    const quint64 memory = m_index.endsWith(u".gz"_s) ? RecordSorter::UsualMemory : 4 * indexBytes;
    RecordSorter words(static_cast<qsizetype>(std::clamp<quint64>(memory, least, RecordSorter::UsualMemory)));
    ReadIndex(m_index, words, m_texts->Size(), console);
    intake.CountRead(static_cast<qsizetype>(m_entries.size()));
    TakeWords(words, *m_texts, intake, console);
    TakeForms(intake, console, forms);
    m_entryTexts.TellSkipped(FileName(m_base + u".dict"_s), m_report);
}
