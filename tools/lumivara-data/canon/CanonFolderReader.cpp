#include "lumivara-data/canon/CanonFolderReader.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/canon/ImportedPage.h"
#include "lumivara-data/canon/NamesTable.h"
#include "lumivara-data/canon/ReadingOrder.h"
#include "stores/Schema.h"

#include <QFileInfo>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

/// The folder's own table, empty if it has none.
QString OwnTable(const SourceFolder &folder)
{
    for (const char16_t *name : {CanonTable::FileName, CanonTable::JsonFileName}) {
        const QString path = folder.Path() + u'/' + QString::fromUtf16(name);
        if (QFileInfo::exists(path))
            return path;
    }
    return {};
}

/// A name as its row wants it: a finished one is left alone as long as the column can take it.
QString NameFor(const QString &name, const CanonTableRow &row, Report &report)
{
    if (name.isNull() || (row.isFinished && name.size() <= Length::Name))
        return name;
    const QString fitting = FittingName(name, row.place, report);
    return fitting.isEmpty() ? QString() : fitting;
}

/// The key behind the last one, or the first free one where that is the last of all; the tree adds 1000 to it.
int FreeKey(const QSet<int> &keys, int last)
{
    constexpr int largest = 1'000'000'000;
    int key = last < largest ? last + 1 : 1;
    while (keys.contains(key))
        ++key;
    return key;
}

/// The first of names that is one.
QString FirstOf(std::initializer_list<QString> names)
{
    for (const QString &name : names) {
        if (!name.isEmpty())
            return name;
    }
    return {};
}

/// What the collection calls a text that has no id: its first page.
QString SourceOf(const CanonTableRow &row)
{
    return FirstOf({row.pages[0], row.pages[2], row.pages[1], row.pages[3], row.pali, row.vietnamese, row.english});
}

QString WithoutEnding(const QString &file)
{
    const qsizetype dot = file.lastIndexOf(u'.');
    return dot > file.lastIndexOf(u'/') ? file.left(dot) : file;
}

} // namespace

CanonFolderReader::CanonFolderReader(const SourceFolder &folder, const QString &table, Report &report)
    : m_folder(folder), m_report(report)
{
    const QString path = table.isEmpty() ? OwnTable(folder) : table;
    if (path.isEmpty()) {
        throw ToolError(
            Sentence({u"%1: không có root/, translation/, cũng không có bảng canon.csv hay canon.json; xem --table",
                      u"%1: has neither root/, nor translation/, nor a table canon.csv or canon.json; see --table"})
                .arg(folder.Path()));
    }
    QList<CanonTableRow> rows = CanonTable::Read(CanonTable::BytesOf(path, report), path, report, &m_rowCount);
    for (CanonTableRow &row : rows)
        (row.isGroup ? m_groups : m_texts).append(std::move(row));
}

bool CanonFolderReader::HasTable(const SourceFolder &folder)
{
    return !OwnTable(folder).isEmpty();
}

void CanonFolderReader::WriteTo(CanonWriter &writer, TextKeys &keys, NamesTable &names, Console &console)
{
    WriteGroups(writer);
    PutInReadingOrder();
    GiveKeys(keys);
    GiveNumbers();
    qsizetype done = 0;
    for (const CanonTableRow &row : std::as_const(m_texts)) {
        m_takenCount += WriteText(writer, row, names) ? 1 : 0;
        console.Progress(u"texts"_s, ++done, m_texts.size());
    }
    console.EndProgress();
    m_report.Count(Sentence({u"dòng đã đọc", u"rows read"}), m_rowCount);
    if (m_rowCount > m_takenCount)
        m_report.Count(Sentence({u"dòng bị bỏ", u"rows left out"}), m_rowCount - m_takenCount);
    m_counts.Tell(m_report);
}

void CanonFolderReader::WriteGroups(CanonWriter &writer)
{
    constexpr int root = -1;
    QSet<int> keys;
    int last = 0;
    const auto write = [&](const CanonGroup &group) {
        keys.insert(group.idVit);
        last = qMax(last, group.idVit);
        m_parents.insert(group.idVit, group.parent);
        writer.Add(group);
    };
    for (const CanonTableRow &row : std::as_const(m_groups)) {
        if (!row.key) {
            m_report.Find(row.place, Sentence({u"nhóm không có khóa; không nhập", u"the group has no key; not taken"}));
        } else if (keys.contains(*row.key)) {
            m_report.Find(row.place, Sentence({u"khóa %1 là của một nhóm khác; không nhập",
                                               u"the key %1 is that of another group; not taken"})
                                         .arg(*row.key));
        } else {
            CanonGroup group{*row.key, row.group.value_or(root), NameFor(row.vietnamese, row, m_report),
                             NameFor(row.pali, row, m_report), NameFor(row.english, row, m_report)};
            if (!row.isFinished) {
                const QString name = FirstOf({group.namePali, group.nameVietnamese, group.nameEnglish});
                group.namePali = FirstOf({group.namePali, name});
                group.nameVietnamese = FirstOf({group.nameVietnamese, name});
            }
            write(group);
            ++m_takenCount;
        }
    }
    // Texts of no group need one, or the tree does not show them.
    std::optional<int> common;
    for (CanonTableRow &row : m_texts) {
        if (row.group)
            continue;
        if (!common) {
            common = FreeKey(keys, last);
            const QString name = FittingName(m_folder.Name(), m_folder.Path(), m_report);
            write({*common, root, name, name, name});
        }
        row.group = *common;
    }
}

void CanonFolderReader::PutInReadingOrder()
{
    // The tree shows the groups by their keys.
    const QList<int> keys = m_parents.keys();
    const auto place = [&keys](int key) {
        const auto found = std::lower_bound(keys.cbegin(), keys.cend(), key);
        return found != keys.cend() && *found == key ? found - keys.cbegin() : -1;
    };
    QList<qsizetype> parents;
    for (const int parent : std::as_const(m_parents))
        parents.append(place(parent));
    QList<ReadingOrder::Text> texts;
    for (const CanonTableRow &row : std::as_const(m_texts)) {
        const QString file = row.source.isEmpty() ? SourceOf(row) : row.source;
        texts.append({place(*row.group), row.number, {WithoutEnding(file), row.pali, row.vietnamese, row.english}});
    }
    QList<CanonTableRow> ordered;
    for (const qsizetype at : ReadingOrder::Of(parents, texts, true))
        ordered.append(std::move(m_texts[at]));
    m_texts = std::move(ordered);
}

void CanonFolderReader::GiveKeys(TextKeys &keys)
{
    for (auto group = m_parents.keyBegin(); group != m_parents.keyEnd(); ++group)
        keys.ReserveForGroup(*group);
    QList<TextKeys::Text> wanted;
    for (CanonTableRow &row : m_texts) {
        // The pages of an export are called after its keys.
        if (row.source.isEmpty() && !(row.isFinished && row.key))
            row.source = SourceOf(row);
        row.source = KeptSource(row.source);
        wanted.append({row.source, row.key});
    }
    const QList<int> found = keys.For(wanted);
    for (qsizetype at = 0; at < m_texts.size(); ++at)
        m_texts[at].key = found[at];
}

void CanonFolderReader::GiveNumbers()
{
    QSet<int> numbers;
    for (const CanonTableRow &row : std::as_const(m_texts)) {
        if (row.number)
            numbers.insert(*row.number);
    }
    int next = 1;
    for (CanonTableRow &row : m_texts) {
        if (row.number || row.isFinished)
            continue;
        while (numbers.contains(next))
            ++next;
        row.number = next++;
    }
}

bool CanonFolderReader::WriteText(CanonWriter &writer, const CanonTableRow &row, NamesTable &names)
{
    const qint64 place = qint64(*row.group) << 32 | quint32(*row.key);
    if (m_written.contains(place)) {
        m_report.Find(row.place, Sentence({u"khóa %1 là của một bài khác trong nhóm; không nhập",
                                           u"the key %1 is that of another text of the group; not taken"})
                                     .arg(*row.key));
        return false;
    }
    CanonText text{*row.group,
                   *row.key,
                   row.number,
                   NameFor(row.pali, row, m_report),
                   NameFor(row.vietnamese, row, m_report),
                   NameFor(row.english, row, m_report),
                   {},
                   row.source};
    if (!row.isFinished) {
        LanguageNames own{text.namePali, text.nameVietnamese, text.nameEnglish};
        names.Apply(row.source, own);
        std::tie(text.namePali, text.nameVietnamese, text.nameEnglish) = std::tie(own[0], own[1], own[2]);
        const QString file = FirstOf({row.pages[0], row.pages[2], row.pages[1]}).section(u'/', -1).section(u'.', 0, -2);
        const QString name =
            FirstOf({text.namePali, text.nameVietnamese, text.nameEnglish, FittingName(file, file, m_report)});
        text.namePali = FirstOf({text.namePali, name});
        text.nameVietnamese = FirstOf({text.nameVietnamese, name});
    }
    const QString titles[] = {text.namePali, FirstOf({text.nameEnglish, text.namePali}), text.nameVietnamese,
                              text.namePali};
    for (int i = 0; i < CanonText::Pages; ++i)
        text.pages[i] = Page(row, i, titles[i]);
    m_written.insert(place);
    writer.Add(text, row.isFinished);
    return true;
}

QByteArray CanonFolderReader::Page(const CanonTableRow &row, int page, const QString &title)
{
    constexpr Language languages[] = {Language::Pali, Language::English, Language::Vietnamese, Language::Pali};
    const QString &file = row.pages[page];
    if (file.isNull())
        return {};
    if (file.isEmpty())
        return QByteArray("");
    if (row.isFinished)
        return m_folder.Read(file, m_report).value_or(QByteArray());
    const QString ending = file.section(u'.', -1).toLower();
    const bool isText = ending == "txt"_L1, isMarkdown = ending == "md"_L1 || ending == "markdown"_L1;
    if (!isText && !isMarkdown && ending != "html"_L1 && ending != "htm"_L1 && ending != "xhtml"_L1) {
        m_report.Find(file, Sentence({u"không phải .html, .txt hay .md; không nhập",
                                      u"is neither .html, .txt nor .md; not taken"}));
        return {};
    }
    const std::optional<QByteArray> bytes = m_folder.ReadText(file, m_report);
    if (!bytes)
        return {};
    try {
        if (isText)
            return ImportedPage::FromText(*bytes, title.toUtf8(), languages[page]);
        return isMarkdown ? ImportedPage::FromMarkdown(*bytes, title.toUtf8(), languages[page], m_counts)
                          : ImportedPage::FromHtml(*bytes, title.toUtf8(), languages[page], m_counts);
    } catch (const PageFault &fault) {
        m_report.Find(fault.Place(file), fault.Fault() + Sentence({u"; không nhập", u"; not taken"}));
        return {};
    }
}
