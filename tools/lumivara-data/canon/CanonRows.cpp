#include "lumivara-data/canon/CanonRows.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "stores/Schema.h"
#include "stores/engine/Blobs.h"
#include "stores/engine/Statement.h"

using namespace Qt::StringLiterals;

QList<std::pair<int, QString>> KnownSources(DataFile &file)
{
    const QStringList columns = file.Columns(Table::KeloraSource);
    for (const QString &column : SourceColumns()) {
        if (!columns.contains(column))
            return {};
    }
    QList<std::pair<int, QString>> sources;
    for (const QList<QVariant> &row :
         file.Rows(u"select first %1 S.ID_VIC, S.ID_SOURCE from KELORA_SOURCE S"_s.arg(MostKnownTexts))) {
        if (!row[0].isNull() && !row[1].toString().isEmpty())
            sources.append({row[0].toInt(), row[1].toString().left(Length::Source)});
    }
    return sources;
}

CanonRows::CanonRows(DataFile &file) : m_file(file) {}

CanonRows::~CanonRows() = default;

QList<CanonGroup> CanonRows::Groups(Report &report)
{
    Statement select(
        m_file.Database().Attachment(), m_file.Transaction().Native(),
        u"select T.ID_VIT, T.P_ID_VIT, T.NAME_VIT_VIE, T.NAME_VIT_PAL, T.NAME_VIT_ENG from KELORA_TREE T"_s);
    select.OpenCursor(m_file.Transaction().Native(), {});
    QList<CanonGroup> groups;
    while (Fetch(select)) {
        const auto key = Number(0), parent = Number(1);
        if (key && parent)
            groups.append({*key, *parent, Name(2), Name(3), Name(4)});
        else
            report.Find(
                Sentence({u"nhóm \"%1\"", u"group \"%1\""}).arg(Name(2)),
                Sentence({u"không có khóa hoặc không có nhóm cha; không nhập", u"has no key or no parent; not taken"}));
    }
    return groups;
}

qsizetype CanonRows::TextCount()
{
    return m_file.Rows(u"select count(*) from KELORA_CONTENT"_s)[0][0].toLongLong();
}

bool CanonRows::Next(CanonText &text, Report &report)
{
    if (!m_texts) {
        for (const auto &[key, source] : KnownSources(m_file))
            m_sources.insert(key, source);
        // In the order of storing: no sort has to move the rows.
        m_texts = std::make_unique<Statement>(
            m_file.Database().Attachment(), m_file.Transaction().Native(),
            u"select N.ID_VIT, N.ID_VIC, N.NUMBER_VIC, N.NAME_VIC_PAL, N.NAME_VIC_VIE, N.NAME_VIC_ENG, N.%1 from "
            u"KELORA_CONTENT N"_s.arg(PageColumns().join(u", N."_s)));
        m_texts->OpenCursor(m_file.Transaction().Native(), {});
    }
    while (Fetch(*m_texts)) {
        const auto group = Number(0), key = Number(1);
        if (!group || !key) {
            report.Find(
                Sentence({u"bài \"%1\"", u"text \"%1\""}).arg(Name(4)),
                Sentence({u"không có khóa hoặc không có nhóm; không nhập", u"has no key or no group; not taken"}));
            continue;
        }
        text = {*group, *key, Number(2), Name(3), Name(4), Name(5), {}};
        text.source = m_sources.value(*key);
        for (int i = 0; i < CanonText::Pages; ++i)
            text.pages[i] = Page(6 + i);
        return true;
    }
    return false;
}

bool CanonRows::Fetch(Statement &select)
{
    if (!select.Fetch())
        return false;
    m_row.Clear(select.Columns());
    m_row.Append(select.Message());
    return true;
}

std::optional<int> CanonRows::Number(int column) const
{
    return m_row.IsNull(0, column) ? std::nullopt : std::optional(static_cast<int>(m_row.Number(0, column)));
}

QString CanonRows::Name(int column) const
{
    if (m_row.IsNull(0, column))
        return {};
    const std::string_view text = m_row.Text(0, column);
    return text.empty() ? u""_s : QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QByteArray CanonRows::Page(int column) const
{
    if (m_row.IsNull(0, column))
        return {};
    QByteArray bytes;
    ReadBlob(m_file.Database().Attachment(), m_file.Transaction().Native(), m_row.Value(0, column).value<BlobId>(),
             bytes);
    if (m_texts->Columns()[static_cast<size_t>(column)].isText)
        JoinSurrogates(bytes);
    return bytes.isNull() ? QByteArray("") : bytes;
}
