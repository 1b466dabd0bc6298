#include "stores/data/FIBDataSet.h"

#include "stores/data/DataSource.h"
#include "stores/data/FIBCursor.h"
#include "stores/engine/Refusal.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool HoldsSurrogates(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isSurrogate(); });
}

} // namespace

void TpFIBDataSet::Change(const QStringList &sql, const QList<QVariant> &values, const QList<QVariant> &oldValues)
{
    const Statement::DatabaseHandle database = m_database ? m_database->Attachment() : nullptr;
    TpFIBTransaction *transaction = Transaction();
    if (!database || !transaction)
        throw DatabaseError(u"%1: no database is assigned"_s.arg(objectName()));
    m_cursor->database = database;
    m_cursor->transaction = transaction->Native();
    try {
        m_database->CheckFileInPlace();
        if (&sql != &m_insertSQL)
            LockOldRow(oldValues);
        Statement &statement = m_cursor->Prepared(sql.join(u'\n'));
        QList<QVariant> bound;
        for (const QString &name : statement.ParameterNames()) {
            const TField *old = name.startsWith(OldPrefix) ? FindField(name.mid(OldPrefix.size())) : nullptr;
            const TField *field = old ? old : FindField(name);
            if (!field)
                throw DatabaseError(u"%1: no field for parameter \"%2\""_s.arg(objectName(), name));
            QVariant value = (old ? oldValues : values).at(field->Index());
            // An untouched blob is not written again; its id is enough.
            if (value.canConvert<UnreadBlob>())
                value = m_cursor->rows.Value(m_current, m_cursor->columnOfField[static_cast<size_t>(field->Index())]);
            bound.append(value);
        }
        const quint64 changed = statement.Execute(m_cursor->transaction, bound);
        if (changed == 0)
            ThrowChangedElsewhere();
        if (changed > 1)
            throw Refusal(Refusal::Reason::KeyTwice, QString::number(changed));
        if (m_autoCommit) {
            // Again, as close to the write as possible.
            m_database->CheckFileInPlace();
            transaction->CommitRetaining();
        }
    } catch (...) {
        if (m_autoCommit) {
            // After a failed commit the transaction rejects everything until it is rolled back.
            try {
                transaction->RollbackRetaining();
            } catch (const std::exception &) {
                // The first failure is the one to report.
            }
        }
        throw;
    }
}

void TpFIBDataSet::ThrowChangedElsewhere() const
{
    throw Refusal(Refusal::Reason::ChangedElsewhere);
}

void TpFIBDataSet::LockOldRow(const QList<QVariant> &oldValues)
{
    if (m_lockSQL.isEmpty())
        return;
    Statement &lock = m_cursor->Prepared(m_lockSQL.join(u'\n'));
    QList<QVariant> bound;
    for (const QString &name : lock.ParameterNames()) {
        const TField *old = name.startsWith(OldPrefix) ? FindField(name.mid(OldPrefix.size())) : nullptr;
        if (!old)
            throw DatabaseError(u"%1: no field for parameter \"%2\""_s.arg(objectName(), name));
        bound.append(oldValues.at(old->Index()));
    }
    RowStore stored;
    stored.Clear(lock.Columns());
    if (lock.OpenCursor(m_cursor->transaction, bound) && lock.Fetch())
        stored.Append(lock.Message());
    lock.CloseCursor();
    if (stored.Count() == 0)
        ThrowChangedElsewhere();
    for (size_t column = 0; column < lock.Columns().size(); ++column) {
        const TField *field = FindField(lock.Columns()[column].name);
        if (!field)
            throw DatabaseError(u"%1: field \"%2\" not found"_s.arg(objectName(), lock.Columns()[column].name));
        if (stored.Value(0, static_cast<int>(column)) != oldValues.at(field->Index()))
            ThrowChangedElsewhere();
    }
}

void TpFIBDataSet::RefuseUnstorableText(const QList<QVariant> &values) const
{
    // On this connection a character above U+FFFF is garbled when stored in a column of another character set.
    for (const std::unique_ptr<TField> &field : m_fields) {
        const QVariant &value = values.at(field->Index());
        if (field->Type() != FieldType::WideString || !HoldsSurrogates(value.toString()))
            continue;
        const Column &column =
            m_cursor->columns[static_cast<size_t>(m_cursor->columnOfField[static_cast<size_t>(field->Index())])];
        Statement lookup(m_cursor->database, m_cursor->transaction,
                         u"select F.RDB$CHARACTER_SET_ID from RDB$RELATION_FIELDS R join RDB$FIELDS F "
                         "on F.RDB$FIELD_NAME = R.RDB$FIELD_SOURCE "
                         "where R.RDB$RELATION_NAME = :RELATION and R.RDB$FIELD_NAME = :FIELD"_s);
        constexpr qint64 unicodeFss = 3;
        RowStore answer;
        answer.Clear(lookup.Columns());
        if (lookup.OpenCursor(m_cursor->transaction, {column.relation, column.baseField}) && lookup.Fetch())
            answer.Append(lookup.Message());
        if (answer.Count() == 0 || answer.Number(0, 0) != unicodeFss)
            throw Refusal(Refusal::Reason::Unstorable);
    }
}

bool TpFIBDataSet::ReadBack(const QList<QVariant> &values)
{
    const QString sql = m_refreshSQL.join(u'\n');
    const QStringList names = ToPositional(sql).names;
    // Without the old row's key the statement does not identify one row.
    if (std::none_of(names.begin(), names.end(), [](const QString &name) { return name.startsWith(OldPrefix); }))
        return false;
    try {
        Statement &refresh = m_cursor->Prepared(sql);
        if (refresh.Columns().size() != m_cursor->columns.size())
            return false;
        const TDataSet *master = m_dataSource ? m_dataSource->DataSet() : nullptr;
        QList<QVariant> bound;
        for (const QString &name : refresh.ParameterNames()) {
            const TField *old = name.startsWith(OldPrefix) ? FindField(name.mid(OldPrefix.size())) : nullptr;
            const TField *fromMaster = !old && master ? master->FindField(name) : nullptr;
            const TField *field = old ? old : FindField(name);
            if (!field && !fromMaster)
                return false;
            bound.append(fromMaster ? fromMaster->Value() : values.at(field->Index()));
        }
        const bool found = refresh.OpenCursor(m_cursor->transaction, bound) && refresh.Fetch();
        refresh.CloseCursor();
        return found;
    } catch (const DatabaseError &) {
        return false; // the row is stored; the sent values are the best to show
    }
}

QList<QVariant> TpFIBDataSet::ByColumn(const QList<QVariant> &values, int row) const
{
    QList<QVariant> byColumn(static_cast<qsizetype>(m_cursor->columns.size()));
    for (int field = 0; field < values.size(); ++field) {
        const int column = m_cursor->columnOfField[static_cast<size_t>(field)];
        const bool untouched = values[field].canConvert<UnreadBlob>();
        byColumn[column] = untouched && row >= 0 ? m_cursor->rows.Value(row, column) : values[field];
    }
    return byColumn;
}

void TpFIBDataSet::DoInsertRow(const QList<QVariant> &values)
{
    RefuseUnstorableText(values);
    Change(m_insertSQL, values, values);
    if (ReadBack(values))
        m_cursor->rows.Append(m_cursor->Prepared(m_refreshSQL.join(u'\n')).Message());
    else
        m_cursor->rows.Append(ByColumn(values, -1));
}

void TpFIBDataSet::DoUpdateRow(int row, const QList<QVariant> &values, const QList<QVariant> &oldValues)
{
    RefuseUnstorableText(values);
    Change(m_updateSQL, values, oldValues);
    if (ReadBack(values))
        m_cursor->rows.Replace(row, m_cursor->Prepared(m_refreshSQL.join(u'\n')).Message());
    else
        m_cursor->rows.Replace(row, ByColumn(values, row));
}

void TpFIBDataSet::DoDeleteRow(int row)
{
    const QList<QVariant> values = RowValues(row);
    Change(m_deleteSQL, values, values);
    m_cursor->rows.Remove(row);
}
