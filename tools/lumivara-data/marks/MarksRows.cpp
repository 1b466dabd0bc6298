#include "lumivara-data/marks/MarksRows.h"

#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/StrangeThings.h"
#include "stores/Schema.h"
#include "stores/engine/Blobs.h"
#include "stores/engine/RowStore.h"
#include "stores/engine/Statement.h"

using namespace Qt::StringLiterals;

namespace {

const QString Tables[] = {Table::SuttaList, Table::SuttaTextFocus};

/// A value as a select gives it: a time goes as text, because its own form here has no more than milliseconds. A column
/// that is missing gives nulls.
QString Selected(const QString &column, const QStringList &existing)
{
    if (!existing.contains(column))
        return u"cast(null as varchar(1)) "_s + column;
    return column == QString(Field::DatetimeFoc) ? u"cast(%1 as varchar(30)) %1"_s.arg(column) : column;
}

QString Stored(const QString &column)
{
    return column == QString(Field::DatetimeFoc) ? u"cast(cast(:%1 as varchar(30)) as timestamp)"_s.arg(column)
                                                 : u':' + column;
}

template <typename Strings, typename Form>
QString Joined(const Strings &columns, Form form)
{
    QStringList all;
    for (const QString &column : columns)
        all.append(form(column));
    return all.join(u", "_s);
}

} // namespace

QStringList MarksColumns(const QString &table)
{
    if (table == QString(Table::SuttaList))
        return {Field::NikSut,     Field::NicSut,     Field::NameSutVie,
                Field::NameSutPal, Field::NameSutEng, Field::FavouriteSut};
    return {Field::IdFoc,  Field::NameFoc, Field::TextFoc,     Field::PriorityFoc, Field::DescFoc,
            Field::NikSut, Field::NicSut,  Field::DatetimeFoc, Field::KeywordFoc};
}

void EachMarksRow(DataFile &file, const std::function<void(const QString &, const QList<QVariant> &, qsizetype)> &take)
{
    for (const QString &table : Tables) {
        const QStringList columns = MarksColumns(table);
        const auto attachment = file.Database().Attachment();
        const auto transaction = file.Transaction().Native();
        const QStringList existing = file.Columns(table);
        const auto form = [&existing](const QString &column) { return Selected(column, existing); };
        Statement select(attachment, transaction, u"select %1 from %2"_s.arg(Joined(columns, form), table));
        select.OpenCursor(transaction, {});
        RowStore row;
        for (qsizetype done = 1; select.Fetch(); ++done) {
            row.Clear(select.Columns());
            row.Append(select.Message());
            QList<QVariant> values;
            for (int i = 0; i < columns.size(); ++i) {
                QVariant value = row.Value(0, i);
                if (value.canConvert<BlobId>()) {
                    QByteArray bytes("");
                    ReadBlob(attachment, transaction, value.value<BlobId>(), bytes);
                    value = bytes.isNull() ? QByteArray("") : bytes;
                }
                values.append(value);
            }
            take(table, values, done);
        }
    }
}

void MarksRowWriter::Append(const QString &table, const QList<QVariant> &row)
{
    if (!m_insert || m_table != table) {
        const QStringList columns = MarksColumns(table);
        m_table = table;
        m_insert = std::make_unique<Statement>(
            m_file.Database().Attachment(), m_file.Transaction().Native(),
            u"insert into %1 (%2) values (%3)"_s.arg(table, columns.join(u", "_s), Joined(columns, Stored)));
    }
    m_insert->Execute(m_file.Transaction().Native(), row);
}

MarksRowWriter::MarksRowWriter(DataFile &file) : m_file(file) {}

MarksRowWriter::~MarksRowWriter() = default;

QStringList StrangeInMarks(DataFile &file)
{
    // What a sync remembers is of that file alone; a restored one finds its marks again by what they hold.
    return StrangeThings(file, {{Table::SuttaList, MarksColumns(Table::SuttaList)},
                                {Table::SuttaTextFocus, MarksColumns(Table::SuttaTextFocus)},
                                {Table::MarkSync,
                                 {Field::VersionSyn, Field::MarkSyn, Field::IdFoc, Field::FaceSyn, Field::TimeSyn,
                                  Field::ExcerptSyn, Field::TraitsSyn}},
                                {Table::MarkSyncFile, {Field::NameSyf}}});
}
