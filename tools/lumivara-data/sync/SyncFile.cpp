#include "lumivara-data/sync/SyncFile.h"

#include "common/Interrupt.h"
#include "common/Tool.h"
#include "lumivara-data/marks/MarksReader.h"

#include <QDateTime>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 Version = 1;
constexpr qsizetype PastOfLine = 1000;

/// Members of the lines.
namespace Key {
constexpr QLatin1StringView Format("lumivara-marks"), Marks("marks"), PastCount("past"), Name("mark"),
    Version("version"), Collection("nik"), Text("nic"), Names("names"), Title("title"), Keywords("keywords"),
    Note("note"), Priority("priority"), Time("time"), Excerpt("excerpt"), Past("past"), Checksum("sha256");
} // namespace Key

/// Characters of the base64 of so many bytes.
qsizetype EncodedSize(qsizetype bytes)
{
    return (bytes + 2) / 3 * 4;
}

bool HoldsPairs(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar unit) { return unit.isSurrogate(); });
}

bool IsMoment(const QString &time)
{
    // As Firebird writes it: what stands otherwise would come back from it as another text.
    static const QRegularExpression form(uR"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{4}\z)"_s);
    return form.match(time).hasMatch() && !time.startsWith(u"0000"_s) &&
           QDate::fromString(time.left(10), u"yyyy-MM-dd"_s).isValid() &&
           QTime::fromString(time.mid(11, 8), u"HH:mm:ss"_s).isValid();
}

/// Without null texts, which have no member.
void PutText(QJsonObject &line, QLatin1StringView key, const QString &text)
{
    if (!text.isNull())
        line[key] = text.isEmpty() ? u""_s : text;
}

std::optional<SyncId> IdOf(const QJsonValue &value)
{
    return SyncId::FromHex(value.toString().toLatin1());
}

} // namespace

bool SyncFile::CanTake(const Mark &mark)
{
    const auto fits = [](const QString &name) { return name.size() <= Length::Name; };
    return mark.collection > 0 && mark.text > 0 && fits(mark.title) && mark.keywords.size() <= Length::Keyword &&
           mark.note.size() <= Length::Desc && fits(mark.nameVietnamese) && fits(mark.namePali) &&
           fits(mark.nameEnglish) && mark.excerpt.size() <= MarksReader::LargestMark &&
           (mark.time.isEmpty() || IsMoment(mark.time));
}

SyncFileWriter::SyncFileWriter(QIODevice &device, const QString &name) : m_device(device), m_name(name) {}

void SyncFileWriter::Line(const QByteArray &line)
{
    for (const QByteArray &part : {line, QByteArray("\n")}) {
        if (m_device.write(part) != part.size())
            throw ToolError(u"%1: cannot be written: %2"_s.arg(m_name, m_device.errorString()));
        m_hash.addData(part);
    }
}

void SyncFileWriter::Head(size_t marks, size_t past)
{
    const QJsonObject head{
        {Key::Format, Version}, {Key::Marks, static_cast<qint64>(marks)}, {Key::PastCount, static_cast<qint64>(past)}};
    Line(QJsonDocument(head).toJson(QJsonDocument::Compact));
}

void SyncFileWriter::Put(const SyncId &version, const SyncId &name, const Mark &mark)
{
    QJsonObject line{{Key::Version, QString::fromLatin1(version.Hex())},
                     {Key::Name, QString::fromLatin1(name.Hex())},
                     {Key::Collection, mark.collection},
                     {Key::Text, mark.text},
                     {Key::Names, QJsonArray{mark.nameVietnamese, mark.namePali, mark.nameEnglish}}};
    PutText(line, Key::Title, mark.title);
    PutText(line, Key::Keywords, mark.keywords);
    PutText(line, Key::Note, mark.note);
    if (mark.priority)
        line[Key::Priority] = *mark.priority;
    if (!mark.time.isEmpty())
        line[Key::Time] = mark.time;
    if (!mark.excerpt.isNull())
        line[Key::Excerpt] = mark.excerpt.size();
    Line(QJsonDocument(line).toJson(QJsonDocument::Compact));
    if (!mark.excerpt.isNull())
        Line(mark.excerpt.toBase64());
}

QByteArray SyncFileWriter::Finish(const std::set<SyncId> &past)
{
    QByteArray names;
    const auto end = [&] {
        if (!names.isEmpty())
            Line(QJsonDocument(QJsonObject{{Key::Past, QString::fromLatin1(names)}}).toJson(QJsonDocument::Compact));
        names.clear();
    };
    for (const SyncId &version : past) {
        names += version.Hex();
        if (names.size() == PastOfLine * SyncId::HexLength)
            end();
    }
    end();
    const QByteArray checksum = m_hash.result().toHex();
    Line(QJsonDocument(QJsonObject{{Key::Checksum, QString::fromLatin1(checksum)}}).toJson(QJsonDocument::Compact));
    return checksum;
}

SyncFileReader::SyncFileReader(QIODevice &device, const QString &name) : m_device(device), m_name(name)
{
    if (!m_device.seek(0))
        Fail(m_device.errorString());
    ReadAll();
}

void SyncFileReader::Fail(const QString &why) const
{
    throw ToolError(u"%1: %2"_s.arg(m_name, why));
}

QByteArray SyncFileReader::NextLine(qsizetype longest) const
{
    QByteArray line = m_device.readLine(longest + 2); // and its end
    if (!line.endsWith('\n'))
        Fail(line.size() > longest ? u"has a line that is too long"_s : u"is not whole; it may still be on its way"_s);
    line.chop(1);
    return line;
}

QJsonObject SyncFileReader::NextObject() const
{
    const QByteArray line = NextLine(SyncFile::LongestLine);
    const QJsonDocument document = QJsonDocument::fromJson(line);
    if (!document.isObject())
        Fail(u"has a line that is none of such a file"_s);
    const QJsonObject object = document.object();
    if (!object.contains(Key::Checksum)) {
        m_hash.addData(line);
        m_hash.addData("\n");
    }
    return object;
}

void SyncFileReader::ReadHead()
{
    const QJsonObject head = NextObject();
    const qint64 version = head[Key::Format].toInteger();
    if (version < Version)
        Fail(u"is no file of a sync"_s);
    if (version > Version)
        Fail(u"was made by a later version of this tool"_s);
    m_markCount = head[Key::Marks].toInteger(-1);
    m_pastCount = head[Key::PastCount].toInteger(-1);
    if (m_markCount < 0 || m_markCount > SyncFile::MostMarks || m_pastCount < 0 || m_pastCount > SyncFile::MostPast)
        Fail(u"has more marks than are taken"_s);
}

void SyncFileReader::ReadAll()
{
    ReadHead();
    for (;;) {
        ThrowIfInterrupted();
        const qint64 place = m_device.pos();
        const QJsonObject line = NextObject();
        if (line.contains(Key::Checksum)) {
            m_checksum = m_hash.result().toHex();
            if (line[Key::Checksum].toString().toLatin1() != m_checksum || !m_device.readLine(1 + 1).isEmpty())
                Fail(u"is damaged, its checksum is another one"_s);
            break;
        }
        if (line.contains(Key::Version))
            TakeMark(line, place);
        else
            TakePast(line[Key::Past].toString().toLatin1());
    }
    const auto standing = [this](const SyncId &version) { return m_state.live.contains(version); };
    if (static_cast<qint64>(m_state.live.size()) != m_markCount ||
        static_cast<qint64>(m_state.past.size()) != m_pastCount ||
        std::any_of(m_state.past.begin(), m_state.past.end(), standing))
        Fail(u"does not hold what it says"_s);
}

void SyncFileReader::TakeMark(const QJsonObject &line, qint64 place)
{
    const auto [version, name, mark] = EntryOf(line);
    if (static_cast<qint64>(m_state.live.size()) >= m_markCount ||
        !m_state.live.emplace(version, SyncVersion{name, FactsOf(mark)}).second)
        Fail(u"does not hold what it says"_s);
    m_places.emplace(version, place);
    m_hasPairs = m_hasPairs || HoldsPairs(mark.title + mark.keywords + mark.note + mark.nameVietnamese + mark.namePali +
                                          mark.nameEnglish);
}

void SyncFileReader::TakePast(const QByteArray &names)
{
    if (names.isEmpty() || names.size() % SyncId::HexLength != 0)
        Fail(u"has a line that is none of such a file"_s);
    for (qsizetype at = 0; at < names.size(); at += SyncId::HexLength) {
        const auto version = SyncId::FromHex(QByteArrayView(names).sliced(at, SyncId::HexLength));
        if (!version || static_cast<qint64>(m_state.past.size()) >= m_pastCount)
            Fail(u"does not hold what it says"_s);
        m_state.past.insert(*version);
    }
}

SyncFileReader::Entry SyncFileReader::EntryOf(const QJsonObject &line) const
{
    const auto number = [&](QLatin1StringView key, qint64 least) {
        const qint64 value = line[key].toInteger(std::numeric_limits<qint64>::min());
        if (value < least || value > std::numeric_limits<int>::max())
            Fail(u"has a mark with a number that cannot be"_s);
        return static_cast<int>(value);
    };
    const auto version = IdOf(line[Key::Version]), name = IdOf(line[Key::Name]);
    if (!version || !name)
        Fail(u"has a mark without a name"_s);
    const auto text = [](const QJsonValue &value) {
        // Null where there is none.
        return value.isString() ? (value.toString().isEmpty() ? u""_s : value.toString()) : QString();
    };
    Entry entry{*version, *name, {}};
    Mark &mark = entry.mark;
    mark.collection = number(Key::Collection, 1);
    mark.text = number(Key::Text, 1);
    const QJsonArray names = line[Key::Names].toArray();
    mark.nameVietnamese = names.at(0).toString();
    mark.namePali = names.at(1).toString();
    mark.nameEnglish = names.at(2).toString();
    mark.title = text(line[Key::Title]);
    mark.keywords = text(line[Key::Keywords]);
    mark.note = text(line[Key::Note]);
    if (line.contains(Key::Priority))
        mark.priority = number(Key::Priority, std::numeric_limits<int>::min());
    mark.time = line[Key::Time].toString();
    if (line.contains(Key::Excerpt)) {
        const int size = number(Key::Excerpt, 0);
        if (size > MarksReader::LargestMark)
            Fail(u"has a mark that is too large"_s);
        const QByteArray encoded = NextLine(EncodedSize(size));
        const auto decoded = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded || decoded.decoded.size() != size)
            Fail(u"has an excerpt that is damaged"_s);
        mark.excerpt = decoded.decoded.isNull() ? QByteArray("") : decoded.decoded;
        m_hash.addData(encoded);
        m_hash.addData("\n");
    }
    if (!SyncFile::CanTake(mark))
        Fail(u"has a mark that no file of marks can hold"_s);
    return entry;
}

Mark SyncFileReader::Read(const SyncId &version) const
{
    const auto place = m_places.find(version);
    if (place == m_places.end() || !m_device.seek(place->second))
        Fail(u"has changed while it was read"_s);
    const Entry entry = EntryOf(NextObject());
    if (entry.version != version || FactsOf(entry.mark) != m_state.live.at(version).facts)
        Fail(u"has changed while it was read"_s);
    return entry.mark;
}
