#include "lumivara-data/canon/CanonWriter.h"

#include "common/Report.h"
#include "stores/Schema.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int FirstTextKey = 10'000'000, TextKeyCount = 90'000'000;

QVariant OrNull(const QString &text)
{
    return text.isNull() ? QVariant() : QVariant(text);
}

QVariant OrNull(const QByteArray &bytes)
{
    return bytes.isNull() ? QVariant() : QVariant(bytes);
}

} // namespace

void CanonWriter::Open()
{
    if (m_texts)
        return;
    constexpr int pageSize = 16384;
    m_data.Create(m_file.Path(), pageSize, false);
    m_data.RunSchema(u"canon"_s);
    m_groups.emplace(m_data, Table::KeloraTree, GroupColumns());
    m_texts.emplace(m_data, Table::KeloraContent, TextColumns());
}

void CanonWriter::Add(const CanonGroup &group)
{
    Open();
    m_groups->Append(
        {group.idVit, group.parent, OrNull(group.nameVietnamese), OrNull(group.namePali), OrNull(group.nameEnglish)});
    m_rows.groups.append({group.idVit, group.parent, group.nameVietnamese, group.namePali, group.nameEnglish});
}

void CanonWriter::Add(const CanonText &text, bool isFinished)
{
    Open();
    QList<QVariant> values{text.idVit,
                           text.idVic,
                           text.number ? QVariant(*text.number) : QVariant(),
                           OrNull(text.nameVietnamese),
                           OrNull(text.namePali),
                           OrNull(text.nameEnglish)};
    CheckedText row{text.idVit, text.idVic, text.number, text.nameVietnamese, text.namePali, text.nameEnglish, {}};
    for (int i = 0; i < CanonText::Pages; ++i) {
        const QByteArray &page = text.pages[i];
        values.append(OrNull(page));
        m_pageCount += page.isEmpty() ? 0 : 1;
        if (isFinished && !page.isEmpty())
            row.pages.append({PageColumns()[i], InspectPage(page)});
    }
    m_texts->Append(values);
    m_rows.texts.append(row);
}

void CanonWriter::Finish(Report &report)
{
    Open();
    m_groups.reset();
    m_texts.reset();
    m_data.Finish(true);
    for (const Finding &finding : CheckCanon(m_rows))
        report.Find(finding.row, finding.fault);
    report.Count(u"groups"_s, m_rows.groups.size());
    report.Count(u"texts"_s, m_rows.texts.size());
    report.Count(u"pages"_s, m_pageCount);
    m_file.Finish();
}

int TextKeys::After(int key)
{
    return key >= FirstTextKey && key + 1 < FirstTextKey + TextKeyCount ? key + 1 : FirstTextKey;
}

int TextKeys::For(const QString &name)
{
    // FNV-1a: the same on every machine and in every version, as keys in readers' files must be.
    quint64 hash = 14695981039346656037ULL;
    for (const char byte : name.toUtf8())
        hash = (hash ^ uchar(byte)) * 1099511628211ULL;
    const int start = FirstTextKey + int(hash % TextKeyCount);
    int key = start;
    for (auto used = m_next.constFind(key); used != m_next.cend(); used = m_next.constFind(key))
        key = *used;
    const int after = After(key);
    m_next.insert(key, after);
    // The whole way leads here now.
    for (int passed = start; passed != key;)
        passed = std::exchange(m_next[passed], after);
    return key;
}

QString FittingName(const QString &name, const QString &place, Report &report)
{
    QString fitting = name;
    fitting.removeIf([](QChar c) { return c.category() == QChar::Other_Control && !c.isSpace(); });
    fitting = fitting.simplified();
    if (fitting.size() <= Length::Name)
        return fitting;
    report.Note(place, u"the name \"%1…\" is cut to %2 characters"_s.arg(fitting.left(40)).arg(Length::Name));
    return fitting.left(fitting[Length::Name - 1].isHighSurrogate() ? Length::Name - 1 : Length::Name).trimmed();
}
