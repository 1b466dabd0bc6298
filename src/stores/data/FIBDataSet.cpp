#include "stores/data/FIBDataSet.h"

#include "base/Texts.h"
#include "stores/data/DataSource.h"
#include "stores/data/FIBCursor.h"
#include "stores/engine/Blobs.h"

#include <algorithm>
#include <exception>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Rows that only show that the search goes on, before a dataset pauses.
constexpr int SignsOfAPiece = 32;

} // namespace

/// Runs the detail again when its master moves.
class TpFIBDataSet::MasterLink : public DataLink
{
public:
    explicit MasterLink(TpFIBDataSet &detail) : m_detail(detail) {}
    void ActiveChanged() override { m_detail.FollowMaster(false); }
    void DataSetChanged() override { m_detail.FollowMaster(false); }
    void DataSetScrolled() override { m_detail.FollowMaster(false); }
    void RecordChanged() override { m_detail.FollowMaster(true); }

private:
    TpFIBDataSet &m_detail;
};

TpFIBDataSet::TpFIBDataSet(QObject *owner)
    : TDataSet(owner), m_masterLink(std::make_unique<MasterLink>(*this)), m_cursor(std::make_unique<Cursor>())
{}

TpFIBDataSet::~TpFIBDataSet()
{
    if (m_dataSource)
        m_dataSource->RemoveLink(m_masterLink.get());
    m_state = DataSetState::Inactive;
}

TpFIBDatabase *TpFIBDataSet::Database() const
{
    return m_database;
}

void TpFIBDataSet::SetDatabase(TpFIBDatabase *database)
{
    m_database = database;
}

TpFIBTransaction *TpFIBDataSet::Transaction() const
{
    if (m_transaction)
        return m_transaction;
    return m_database ? m_database->DefaultTransaction() : nullptr;
}

void TpFIBDataSet::SetTransaction(TpFIBTransaction *transaction)
{
    m_transaction = transaction;
}

TDataSource *TpFIBDataSet::DataSource() const
{
    return m_dataSource;
}

void TpFIBDataSet::SetDataSource(TDataSource *master)
{
    if (master == m_dataSource)
        return;
    if (m_dataSource)
        m_dataSource->RemoveLink(m_masterLink.get());
    m_dataSource = master;
    if (m_dataSource)
        m_dataSource->AddLink(m_masterLink.get());
    FollowMaster(false);
}

void TpFIBDataSet::SearchInPieces(const QString &sql)
{
    m_piecesSQL = sql;
    m_piecesOf = m_selectSQL.join(u'\n');
}

TParam &TpFIBDataSet::ParamByName(const QString &name)
{
    const QString upper = name.toUpper();
    if (!ToPositional(m_selectSQL.join(u'\n')).names.contains(upper))
        throw DatabaseError(u"%1: parameter \"%2\" not found"_s.arg(objectName(), name));
    return m_params[upper];
}

void TpFIBDataSet::DoOpen()
{
    if (!m_database)
        throw DatabaseError(u"%1: no database is assigned"_s.arg(objectName()));
    TpFIBTransaction *transaction = Transaction();
    m_cursor->database = m_database->Attachment();
    if (!transaction)
        throw DatabaseError(u"%1: no transaction is assigned"_s.arg(objectName()));
    m_cursor->transaction = transaction->Native();

    QString sql = m_selectSQL.join(u'\n');
    const bool inPieces = !m_piecesSQL.isEmpty() && m_piecesOf == sql;
    if (inPieces)
        sql = m_piecesSQL;
    std::unique_ptr<Statement> &select = m_cursor->select;
    if (!select || select->Sql() != sql || !select->BelongsTo(m_cursor->database)) {
        select.reset();
        select = std::make_unique<Statement>(m_cursor->database, m_cursor->transaction, sql);
    }
    m_cursor->columns = select->Columns();
    if (inPieces)
        m_cursor->columns.pop_back();
    MatchFieldsToColumns();
    m_cursor->rows.Clear(m_cursor->columns);
    m_cursor->failure = nullptr;
    m_cursor->signs = 0;
    m_cursor->boundValues = SelectValues();
    // Without a cursor there are no rows: a detail without its master, or a text too long for any row.
    if (!MasterIsMissing())
        select->OpenCursor(m_cursor->transaction, m_cursor->boundValues);
}

void TpFIBDataSet::MatchFieldsToColumns()
{
    const std::vector<Column> &columns = m_cursor->columns;
    if (columns.empty())
        throw DatabaseError(u"%1: the statement returns no rows"_s.arg(objectName()));
    if (!m_cursor->hasDynamicFields)
        m_cursor->declaredFields = m_fields.size();
    std::vector<int> columnOfField;
    std::vector<bool> taken(columns.size());
    const auto match = [&](const TField &field) {
        for (size_t i = 0; i < columns.size(); ++i) {
            if (!taken[i] && columns[i].name.compare(field.FieldName(), Qt::CaseInsensitive) == 0) {
                taken[i] = true;
                columnOfField.push_back(static_cast<int>(i));
                return true;
            }
        }
        return false;
    };
    for (size_t i = 0; i < m_cursor->declaredFields; ++i) {
        if (!match(*m_fields[i]))
            throw DatabaseError(u"%1: field \"%2\" not found"_s.arg(objectName(), m_fields[i]->FieldName()));
    }
    // Fields made for the last statement are kept as long as they fit.
    size_t kept = m_cursor->declaredFields;
    for (; kept < m_fields.size(); ++kept) {
        if (!match(*m_fields[kept]))
            break;
        const Column &column = columns[static_cast<size_t>(columnOfField.back())];
        if (column.fieldType != m_fields[kept]->Type() || column.size != m_fields[kept]->Size()) {
            taken[static_cast<size_t>(columnOfField.back())] = false;
            columnOfField.pop_back();
            break;
        }
    }
    m_fields.resize(kept);
    for (size_t i = 0; i < columns.size(); ++i) {
        if (taken[i])
            continue;
        AddField(columns[i].name, columns[i].fieldType, columns[i].size);
        columnOfField.push_back(static_cast<int>(i));
    }
    m_cursor->hasDynamicFields = true;
    m_cursor->columnOfField = std::move(columnOfField);
}

void TpFIBDataSet::DoClose()
{
    if (!m_cursor->select)
        return;
    m_cursor->select->CloseCursor();
    m_cursor->rows.Clear(m_cursor->columns);
}

int TpFIBDataSet::DoFetch(int most)
{
    Statement &select = *m_cursor->select;
    // Firebird's code and ours evict each other from the processor's caches at each switch.
    constexpr qsizetype mostBytes = 1 << 16;
    const qsizetype size = select.MessageSize();
    const int count = static_cast<int>(std::clamp<qsizetype>(mostBytes / std::max<qsizetype>(size, 1), 1, most));
    m_cursor->messages.resize(static_cast<size_t>(size * count));
    for (;;) {
        if (m_cursor->failure)
            std::rethrow_exception(std::exchange(m_cursor->failure, nullptr));
        if (MayPause() && m_cursor->signs >= SignsOfAPiece) {
            m_cursor->signs = 0;
            return -1;
        }
        unsigned char *end = m_cursor->messages.data();
        int fetched = 0;
        try {
            for (; fetched < count && select.Fetch(end); ++fetched)
                end += size;
        } catch (const DatabaseError &) {
            if (fetched == 0)
                throw;
            // Reported after the rows before it.
            m_cursor->failure = std::current_exception();
        }
        if (fetched == 0)
            return 0;
        if (const int taken = TakeFetched(fetched); taken > 0)
            return taken;
    }
}

int TpFIBDataSet::TakeFetched(int count)
{
    const auto size = static_cast<size_t>(m_cursor->select->MessageSize());
    int taken = 0;
    for (int row = 0; row < count; ++row) {
        const unsigned char *message = m_cursor->messages.data() + static_cast<size_t>(row) * size;
        if (!m_cursor->Belongs(message))
            continue;
        m_cursor->rows.Append(message);
        ++taken;
    }
    m_cursor->signs += count - taken;
    return taken;
}

bool TpFIBDataSet::MasterIsMissing() const
{
    if (!m_dataSource)
        return false;
    const TDataSet *master = m_dataSource->DataSet();
    return !master || !master->Active() || (master->RecNo() < 0 && master->State() != DataSetState::Insert);
}

QList<QVariant> TpFIBDataSet::SelectValues() const
{
    const TDataSet *master = m_dataSource ? m_dataSource->DataSet() : nullptr;
    QList<QVariant> values;
    for (const QString &name : m_cursor->select->ParameterNames()) {
        const TField *field = master ? master->FindField(name) : nullptr;
        const auto param = m_params.find(name);
        if (field)
            values.append(master->Active() ? field->Value() : QVariant());
        else
            values.append(param == m_params.end() ? QVariant() : param->second.Value());
    }
    return values;
}

void TpFIBDataSet::FollowMaster(bool onlyIfValuesChanged)
{
    if (!Active() || m_rerunning)
        return;
    if (onlyIfValuesChanged && SelectValues() == m_cursor->boundValues)
        return;
    CheckBrowse();
    Rerun();
    Notify(TDataSource::Event::DataSet);
    TellScrolled();
}

void TpFIBDataSet::Rerun()
{
    struct Flag
    {
        bool &on;
        explicit Flag(bool &flag) : on(flag) { on = true; }
        ~Flag() { on = false; }
    } flag(m_rerunning);
    ForgetRows();
    try {
        DoClose();
        DoOpen();
        StandOnFirst();
    } catch (...) {
        const std::exception_ptr failure = std::current_exception();
        ForgetRows();
        m_bof = m_eof = m_allFetched = true;
        DoClose();
        Notify(TDataSource::Event::DataSet);
        std::rethrow_exception(failure);
    }
}

QList<int> TpFIBDataSet::KeyFields() const
{
    QList<int> fields;
    for (const QString &name : ToPositional(m_refreshSQL.join(u'\n')).names) {
        const TField *field = name.startsWith(OldPrefix) ? FindField(name.mid(OldPrefix.size())) : nullptr;
        if (field && !fields.contains(field->Index()))
            fields.append(field->Index());
    }
    if (!fields.isEmpty())
        return fields;
    for (const std::unique_ptr<TField> &field : m_fields) {
        if (field->Type() != FieldType::Blob)
            fields.append(field->Index());
    }
    return fields;
}

int TpFIBDataSet::FindSameRecord(const QList<int> &fields, const QList<QVariant> &key)
{
    QList<LocateKey> wanted;
    for (const QVariant &value : key)
        wanted.append(LocateKey(value, {}));
    for (int row = 0; FetchUpTo(row); ++row) {
        bool same = true;
        for (int i = 0; same && i < fields.size(); ++i)
            same = DoRowMatches(row, fields[i], wanted[i]);
        if (same)
            return row;
    }
    return -1;
}

void TpFIBDataSet::FullRefresh()
{
    CheckBrowse();
    const int row = m_current;
    const QList<int> fields = KeyFields();
    QList<QVariant> key;
    for (int field : fields)
        key.append(row < 0 ? QVariant() : ValueAt(row, field));
    Rerun();
    if (row >= 0) {
        const int found = FindSameRecord(fields, key);
        m_current = found >= 0 ? found : std::min(row, m_rowCount - 1);
        m_bof = m_eof = m_current < 0;
    }
    Notify(TDataSource::Event::DataSet);
    TellScrolled();
}

void TpFIBDataSet::BlobInto(int row, int field, QByteArray &buffer) const
{
    buffer.resize(0); // keeps its capacity
    if (row < 0 || row >= m_cursor->rows.Count())
        return;
    const int column = m_cursor->columnOfField[static_cast<size_t>(field)];
    const QVariant value = m_cursor->rows.Value(row, column);
    if (value.canConvert<BlobId>())
        ReadStored(value.value<BlobId>(), column, buffer);
    else
        buffer = value.typeId() == QMetaType::QByteArray ? value.toByteArray() : ValueText(value).toUtf8();
}

void TpFIBDataSet::ReadStored(const BlobId &id, int column, QByteArray &buffer) const
{
    if (!m_cursor->database->attachment || !m_cursor->transaction->transaction)
        throw DatabaseError(u"%1: the transaction has ended"_s.arg(objectName()));
    ReadBlob(m_cursor->database, m_cursor->transaction, id, buffer);
    if (m_cursor->columns[static_cast<size_t>(column)].isText)
        JoinSurrogates(buffer);
}

QVariant TpFIBDataSet::ValueAt(int row, int field) const
{
    if (row < 0 || row >= m_cursor->rows.Count())
        return {};
    const int column = m_cursor->columnOfField[static_cast<size_t>(field)];
    QVariant value = m_cursor->rows.Value(row, column);
    if (value.canConvert<BlobId>()) {
        QByteArray bytes;
        ReadStored(value.value<BlobId>(), column, bytes);
        value = bytes;
    }
    if (!value.isValid())
        return value;
    const FieldType type = m_fields[static_cast<size_t>(field)]->Type();
    if (type == FieldType::WideString && value.typeId() != QMetaType::QString)
        return ValueText(value);
    if (type == FieldType::Blob && value.typeId() != QMetaType::QByteArray)
        return ValueText(value).toUtf8();
    return value;
}

QString TpFIBDataSet::TextAt(int row, int field) const
{
    if (row < 0 || row >= m_cursor->rows.Count())
        return {};
    const int column = m_cursor->columnOfField[static_cast<size_t>(field)];
    if (m_cursor->columns[static_cast<size_t>(column)].kind != ColumnKind::Text)
        return TDataSet::TextAt(row, field);
    const std::string_view text = m_cursor->rows.Text(row, column);
    return FromUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

bool TpFIBDataSet::DoRowMatches(int row, int field, const LocateKey &key) const
{
    const int column = m_cursor->columnOfField[static_cast<size_t>(field)];
    if (key.isNull || m_cursor->rows.IsNull(row, column))
        return key.isNull && m_cursor->rows.IsNull(row, column);
    if (key.options != LocateOptions())
        return TDataSet::DoRowMatches(row, field, key);
    const FieldType type = m_fields[static_cast<size_t>(field)]->Type();
    switch (m_cursor->columns[static_cast<size_t>(column)].kind) {
    case ColumnKind::Text:
        if (type != FieldType::WideString)
            break;
        return m_cursor->rows.Text(row, column) ==
               std::string_view(key.utf8.constData(), static_cast<size_t>(key.utf8.size()));
    case ColumnKind::Small:
    case ColumnKind::Long:
    case ColumnKind::Big:
        if (type == FieldType::WideString)
            break;
        return key.isNumber && m_cursor->rows.Number(row, column) == key.number;
    default:
        break;
    }
    return TDataSet::DoRowMatches(row, field, key);
}
