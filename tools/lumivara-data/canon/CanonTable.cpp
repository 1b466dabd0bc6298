#include "lumivara-data/canon/CanonTable.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/files/CsvRecords.h"
#include "lumivara-data/files/SourceFolder.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

enum Column {
    Kind,
    Key,
    Source,
    Group,
    Number,
    Pali,
    Vietnamese,
    English,
    FirstPage,
    Finished = FirstPage + CanonText::Pages
};
constexpr int ColumnCount = Finished + 1;
constexpr const char *ColumnNames[ColumnCount] = {
    "kind",    "key",       "id",           "group",           "number",        "pali",    "vietnamese",
    "english", "page_pali", "page_english", "page_vietnamese", "page_parallel", "finished"};

/// A null string for a cell that is not there.
using Cells = QString[ColumnCount];

int ColumnNamed(const QString &name)
{
    for (int i = 0; i < ColumnCount; ++i) {
        if (name.compare(QLatin1StringView(ColumnNames[i]), Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

/// Makes a row of its cells; false, and told, if one of them can't be what it should.
bool MakeRow(const Cells &cells, CanonTableRow &row, Report &report)
{
    const QString kind = cells[Kind].trimmed().toLower(), finished = cells[Finished].trimmed().toLower();
    if (kind != "group"_L1 && kind != "text"_L1) {
        report.Find(row.place, Sentence({u"kind là \"%1\", không phải group hay text; không nhập",
                                         u"kind is \"%1\", neither group nor text; not taken"})
                                   .arg(cells[Kind].left(40)));
        return false;
    }
    row.isGroup = kind == "group"_L1;
    row.isFinished = finished == "1"_L1 || finished == "yes"_L1 || finished == "true"_L1;
    for (const auto &[column, number] : {std::pair(Key, &row.key), {Group, &row.group}, {Number, &row.number}}) {
        const QString cell = cells[column].trimmed();
        bool isNumber = false;
        if (!cell.isEmpty())
            *number = cell.toInt(&isNumber);
        if (!cell.isEmpty() && !isNumber) {
            report.Find(row.place,
                        Sentence({u"%1 là \"%2\", không phải là số; không nhập", u"%1 is \"%2\", no number; not taken"})
                            .arg(QLatin1StringView(ColumnNames[column]), cell.left(40)));
            return false;
        }
    }
    const auto text = [&](int column) {
        return cells[column].isEmpty() && !row.isFinished ? QString() : cells[column];
    };
    row.source = cells[Source].trimmed();
    row.pali = text(Pali);
    row.vietnamese = text(Vietnamese);
    row.english = text(English);
    for (int i = 0; i < CanonText::Pages; ++i)
        row.pages[i] = text(FirstPage + i);
    return true;
}

QString TooMany()
{
    return Sentence({u"bảng có hơn %1 dòng", u"the table has more than %1 rows"}).arg(CanonTable::MostRows);
}

QList<CanonTableRow> ReadCsv(const QByteArray &bytes, const QString &fileName, Report &report, qsizetype &count)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    TextLines lines(device, fileName);
    CsvRecords records(lines);
    const auto placeOf = [&](const CsvRecord &record) { return u"%1:%2"_s.arg(fileName).arg(record.line); };
    CsvRecord record;
    if (!records.Next(record))
        throw ToolError(fileName + Sentence({u": tệp trống", u": the file is empty"}));
    if (!record.fault.isEmpty())
        throw ToolError(placeOf(record) + u": "_s + record.fault);
    QList<int> columns;
    for (qsizetype i = 0; i < record.cells.size(); ++i) {
        const QString name = record.Text(i);
        const int column = ColumnNamed(name.trimmed());
        if (column < 0)
            report.Note(placeOf(record),
                        Sentence({u"cột \"%1\" không có nghĩa ở đây", u"the column \"%1\" means nothing here"})
                            .arg(name.left(40)));
        else if (columns.contains(column))
            throw ToolError(Sentence({u"%1: cột \"%2\" có hai lần", u"%1: the column \"%2\" comes twice"})
                                .arg(placeOf(record), name));
        columns.append(column);
    }
    if (!columns.contains(Kind))
        throw ToolError(placeOf(record) + Sentence({u": không có cột \"kind\"", u": there is no column \"kind\""}));
    QList<CanonTableRow> rows;
    while (records.Next(record)) {
        CanonTableRow row;
        row.place = placeOf(record);
        if (++count > CanonTable::MostRows)
            throw ToolError(row.place + u": "_s + TooMany());
        // Behind an open quote no row is sure.
        if (record.isOpen)
            throw ToolError(row.place + u": "_s + record.fault);
        if (!record.fault.isEmpty()) {
            report.Find(row.place, record.fault + Sentence({u"; không nhập", u"; not taken"}));
            continue;
        }
        Cells known;
        for (qsizetype i = 0; i < record.cells.size(); ++i) {
            if (columns[i] >= 0)
                known[columns[i]] = record.Text(i);
        }
        if (MakeRow(known, row, report))
            rows.append(row);
    }
    return rows;
}

/// A null string for null and for what is neither a text nor a whole number.
QString CellOf(const QJsonValue &value)
{
    if (value.isDouble() && std::trunc(value.toDouble()) == value.toDouble())
        return QString::number(value.toDouble(), 'f', 0);
    if (value.isBool())
        return value.toBool() ? u"1"_s : u"0"_s;
    return value.isString() ? value.toString() + u""_s : QString();
}

QList<CanonTableRow> ReadJson(const QByteArray &bytes, const QString &fileName, Report &report, qsizetype &count)
{
    constexpr qsizetype largest = 16 * 1024 * 1024;
    if (bytes.size() > largest)
        throw ToolError(Sentence({u"%1: có %2 byte, nhiều hơn %3; bảng lớn hơn phải là bảng phân cách bằng dấu phẩy",
                                  u"%1: has %2 bytes, more than %3; larger tables are comma separated ones"})
                            .arg(fileName)
                            .arg(bytes.size())
                            .arg(largest));
    // Before it is read: what a document holds takes many times its bytes.
    constexpr qsizetype mostValues = CanonTable::MostRows * (ColumnCount + 1);
    const auto beginsValue = [](char c) { return c == '{' || c == '[' || c == ','; };
    qsizetype rowCount = 0, valueCount = 0, line = 1;
    for (const char c : bytes) {
        line += c == '\n';
        valueCount += beginsValue(c);
        rowCount += c == '{';
        // The whole is an object too.
        if (rowCount > CanonTable::MostRows + 1 || valueCount > mostValues)
            throw ToolError(u"%1:%2: "_s.arg(fileName).arg(line) + TooMany());
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (document.isNull())
        throw ToolError(
            Sentence({u"%1: %2 ở byte %3", u"%1: %2 at byte %3"}).arg(fileName, error.errorString()).arg(error.offset));
    QList<CanonTableRow> rows;
    for (const auto &[list, kind] : {std::pair(u"groups"_s, u"group"_s), {u"texts"_s, u"text"_s}}) {
        const QJsonValue value = document.object().value(list);
        if (!value.isArray() && !value.isUndefined())
            report.Find(fileName,
                        Sentence({u"%1 không phải là danh sách; không nhập", u"%1 is no list; not taken"}).arg(list));
        const QJsonArray items = value.toArray();
        for (qsizetype i = 0; i < items.size(); ++i) {
            CanonTableRow row;
            ++count;
            row.place = (kind == u"group"_s ? Sentence({u"%1: nhóm %2", u"%1: group %2"})
                                            : Sentence({u"%1: bài %2", u"%1: text %2"}))
                            .arg(fileName)
                            .arg(i + 1);
            if (!items[i].isObject()) {
                report.Find(row.place, Sentence({u"không phải là đối tượng; không nhập", u"is no object; not taken"}));
                continue;
            }
            const QJsonObject item = items[i].toObject();
            Cells cells;
            for (auto member = item.constBegin(); member != item.constEnd(); ++member) {
                const int column = ColumnNamed(member.key());
                const QString cell = CellOf(*member);
                if (column < 0)
                    report.Note(row.place, Sentence({u"\"%1\" không có nghĩa ở đây", u"\"%1\" means nothing here"})
                                               .arg(member.key().left(40)));
                else if (cell.isNull() && !member->isNull())
                    report.Find(row.place, Sentence({u"%1 không phải là văn bản hay số nguyên",
                                                     u"%1 is neither a text nor a whole number"})
                                               .arg(member.key()));
                else
                    cells[column] = cell;
            }
            cells[Kind] = kind;
            if (MakeRow(cells, row, report))
                rows.append(row);
        }
    }
    if (rows.isEmpty())
        throw ToolError(Sentence({u"%1: không phải là bảng: cần một đối tượng có hai danh sách \"groups\" và \"texts\"",
                                  u"%1: no table: an object with the lists \"groups\" and \"texts\" is expected"})
                            .arg(fileName));
    return rows;
}

QByteArray CellFor(const QString &text)
{
    if (text.isNull())
        return {};
    QByteArray bytes = text.toUtf8();
    const bool isPlain = std::none_of(bytes.cbegin(), bytes.cend(),
                                      [](char c) { return c == ',' || c == '"' || c == '\n' || c == '\r'; });
    if (isPlain && !bytes.isEmpty())
        return bytes;
    return '"' + bytes.replace('"', "\"\"") + '"';
}

QByteArray CellFor(const std::optional<int> &number)
{
    return number ? QByteArray::number(*number) : QByteArray();
}

} // namespace

QByteArray CanonTable::BytesOf(const QString &path, Report &report)
{
    QFile file(path);
    const QFileInfo info(path);
    if (!info.isFile())
        throw ToolError(Sentence({u"%1: không có tệp này", u"%1: there is no such file"}).arg(path));
    if (info.size() > LargestSourceFile)
        throw ToolError(Sentence({u"%1: có %2 byte, nhiều hơn %3", u"%1: has %2 bytes, more than %3"})
                            .arg(path)
                            .arg(info.size())
                            .arg(LargestSourceFile));
    if (!file.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, file.errorString()));
    const auto bytes = TextAsUtf8(file.readAll(), path, report);
    if (!bytes)
        throw ToolError(Sentence({u"%1: không phải là UTF-8", u"%1: is not UTF-8"}).arg(path));
    return *bytes;
}

QList<CanonTableRow> CanonTable::Read(const QByteArray &bytes, const QString &fileName, Report &report,
                                      qsizetype *count)
{
    qsizetype all = 0;
    const bool isJson = fileName.endsWith(u".json"_s, Qt::CaseInsensitive);
    QList<CanonTableRow> rows = isJson ? ReadJson(bytes, fileName, report, all) : ReadCsv(bytes, fileName, report, all);
    if (count)
        *count = all;
    return rows;
}

QByteArray CanonTable::Header()
{
    QByteArray line;
    for (const char *name : ColumnNames)
        line += QByteArray(line.isEmpty() ? "" : ",") + name;
    return line + "\r\n";
}

QByteArray CanonTable::Line(const CanonTableRow &row)
{
    QByteArray line = row.isGroup ? "group" : "text";
    line += ',' + CellFor(row.key) + ',' + CellFor(row.source.isEmpty() ? QString() : row.source);
    for (const auto &number : {row.group, row.number})
        line += ',' + CellFor(number);
    for (const QString &name : {row.pali, row.vietnamese, row.english})
        line += ',' + CellFor(name);
    for (const QString &page : row.pages)
        line += ',' + CellFor(page);
    return line + (row.isFinished ? ",1\r\n" : ",\r\n");
}
