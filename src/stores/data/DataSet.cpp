#include "stores/data/DataSet.h"

#include "stores/data/DataSource.h"
#include "stores/engine/DatabaseError.h"

#include <QPointer>
#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Rows that a walk through all rows fetches at once.
constexpr int RowsAtOnce = 64;

} // namespace

// The protocol between TDataSet and its subclasses. DoOpen prepares the rows and may add fields; DoFetch then appends
// some rows at a time. Rows are identified by their index: DoInsertRow appends, DoUpdateRow replaces and DoDeleteRow
// removes one, each only after the change is stored. The values passed to them have an UnreadBlob for each blob that
// the edit did not touch. The base class does all counting, moving and notifying.

TDataSet::TDataSet(QObject *owner) : QObject(owner) {}

TDataSet::~TDataSet()
{
    m_state = DataSetState::Inactive;
    const QList<TDataSource *> sources = std::exchange(m_dataSources, {});
    for (TDataSource *source : sources)
        source->m_dataSet = nullptr;
}

TField &TDataSet::AddField(const QString &fieldName, FieldType type, int size, const QString &component)
{
    m_fields.push_back(std::make_unique<TField>(*this, fieldName, type, size, static_cast<int>(m_fields.size())));
    m_fields.back()->setObjectName(component.isEmpty() ? objectName() + fieldName : component);
    return *m_fields.back();
}

TField *TDataSet::FindField(const QString &name) const
{
    const auto found = std::find_if(m_fields.begin(), m_fields.end(), [&](const std::unique_ptr<TField> &field) {
        return field->FieldName().compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == m_fields.end() ? nullptr : found->get();
}

TField &TDataSet::FieldByName(const QString &name)
{
    TField *field = FindField(name);
    if (!field)
        throw DatabaseError(u"%1: field \"%2\" not found"_s.arg(objectName(), name));
    return *field;
}

void TDataSet::Open()
{
    if (Active())
        return;
    Call(BeforeOpen);
    ForgetRows();
    m_bof = m_eof = true;
    try {
        DoOpen();
        m_state = DataSetState::Browse;
        StandOnFirst();
    } catch (...) {
        Forget();
        throw;
    }
    Notify(TDataSource::Event::Active);
    if (!Active())
        return; // a listener closed it
    Call(AfterOpen);
    TellScrolled();
}

void TDataSet::Close()
{
    if (!Active())
        return;
    Call(BeforeClose);
    if (!Active())
        return;
    Forget();
    Notify(TDataSource::Event::Active);
    Call(AfterClose);
}

void TDataSet::Forget()
{
    m_state = DataSetState::Inactive;
    m_editBuffer.clear();
    m_modified = false;
    ForgetRows();
    m_allFetched = true;
    m_bof = m_eof = true;
    DoClose();
}

void TDataSet::ForgetRows()
{
    m_current = -1;
    m_rowCount = 0;
    m_allFetched = false;
    m_isPaused = false;
}

void TDataSet::StandOnFirst()
{
    m_current = FetchAhead(0) ? 0 : -1;
    m_bof = true;
    m_eof = m_current < 0 && !m_isPaused;
}

void TDataSet::NeedActive() const
{
    if (!Active())
        throw DatabaseError(u"%1: the dataset is closed"_s.arg(objectName()));
}

bool TDataSet::IsEmpty()
{
    return !Active() || !FetchUpTo(0);
}

bool TDataSet::FetchSome(int most)
{
    const int count = m_allFetched ? 0 : DoFetch(most);
    m_rowCount += std::max(count, 0);
    m_allFetched = count == 0;
    return count > 0;
}

bool TDataSet::FetchUpTo(int row)
{
    while (m_rowCount <= row && FetchSome(std::min(row - m_rowCount, RowsAtOnce - 1) + 1)) {
    }
    return row < m_rowCount;
}

bool TDataSet::FetchAhead(int row)
{
    if (m_isPaused) {
        m_awaited = std::max(m_awaited, row);
        return row < m_rowCount;
    }
    {
        const QScopedValueRollback mayPause(m_mayPause, static_cast<bool>(OnPause));
        m_isPaused = !FetchUpTo(row) && !m_allFetched;
    }
    if (m_isPaused) {
        m_awaited = row;
        Call(OnPause);
    }
    return row < m_rowCount;
}

void TDataSet::Resume()
{
    if (!std::exchange(m_isPaused, false))
        return;
    const int before = m_rowCount;
    FetchAhead(m_awaited);
    if (m_isPaused && m_rowCount == before)
        return;
    const bool hasFirst = m_current < 0 && m_rowCount > 0;
    m_current = hasFirst ? 0 : m_current;
    m_eof = m_rowCount == 0;
    if (!hasFirst || m_state != DataSetState::Browse) {
        Notify(TDataSource::Event::Fetched);
        return;
    }
    Notify(TDataSource::Event::DataSet);
    TellScrolled();
}

void TDataSet::FetchAll()
{
    NeedActive();
    while (FetchSome(RowsAtOnce)) {
    }
    m_isPaused = false; // there is nothing left to come back for
}

void TDataSet::GoTo(int row)
{
    if (row == m_current)
        return;
    m_current = row;
    Notify(TDataSource::Event::Scroll);
    TellScrolled();
}

void TDataSet::First()
{
    CheckBrowse();
    FetchUpTo(0);
    m_bof = true;
    m_eof = m_rowCount == 0;
    GoTo(m_rowCount == 0 ? -1 : 0);
}

void TDataSet::Last()
{
    CheckBrowse();
    FetchAll();
    m_eof = true;
    m_bof = m_rowCount == 0;
    GoTo(m_rowCount - 1);
}

void TDataSet::Next()
{
    CheckBrowse();
    if (!FetchAhead(m_current + 1)) {
        m_eof = !m_isPaused;
        return;
    }
    m_bof = m_eof = false;
    GoTo(m_current + 1);
}

void TDataSet::Prior()
{
    CheckBrowse();
    if (m_current <= 0) {
        m_bof = true;
        return;
    }
    m_bof = m_eof = false;
    GoTo(m_current - 1);
}

void TDataSet::MoveTo(int row)
{
    NeedActive();
    if (row == m_current && m_state == DataSetState::Edit)
        return; // not a move: the edit goes on
    CheckBrowse();
    row = std::max(row, 0);
    FetchUpTo(row);
    row = std::min(row, m_rowCount - 1);
    m_bof = m_eof = row < 0;
    GoTo(row);
}

bool TDataSet::Locate(const QString &field, const QVariant &value, LocateOptions options)
{
    const int index = FieldByName(field).Index();
    CheckBrowse();
    const LocateKey key(value, options);
    for (int row = 0; row < m_rowCount || FetchSome(RowsAtOnce); ++row) {
        if (!DoRowMatches(row, index, key))
            continue;
        m_bof = m_eof = false;
        GoTo(row);
        return true;
    }
    return false;
}

LocateKey::LocateKey(const QVariant &value, LocateOptions options)
    : value(value), options(options), isNull(value.isNull()), text(value.toString()), utf8(text.toUtf8())
{
    number = value.toLongLong(&isNumber);
}

bool TDataSet::DoRowMatches(int row, int field, const LocateKey &key) const
{
    const QVariant value = ValueAt(row, field);
    if (value.isNull() || key.isNull)
        return value.isNull() && key.isNull;
    const FieldType type = m_fields[static_cast<size_t>(field)]->Type();
    if (key.options == LocateOptions()) {
        if (type == FieldType::Integer || type == FieldType::SmallInt)
            return key.isNumber && value.toLongLong() == key.number;
        if (type == FieldType::DateTime)
            return value.toDateTime() == key.value.toDateTime();
        if (type == FieldType::Blob)
            return value.toByteArray() == key.utf8;
        return value.toString() == key.text;
    }
    const Qt::CaseSensitivity sensitivity =
        key.options.testFlag(LocateOption::CaseInsensitive) ? Qt::CaseInsensitive : Qt::CaseSensitive;
    const QString text = type == FieldType::Blob ? QString::fromUtf8(value.toByteArray()) : TextAt(row, field);
    return key.options.testFlag(LocateOption::PartialKey) ? text.startsWith(key.text, sensitivity)
                                                          : text.compare(key.text, sensitivity) == 0;
}

void TDataSet::CheckBrowse()
{
    NeedActive();
    if (m_state == DataSetState::Browse)
        return;
    if (m_modified)
        Post();
    else
        Cancel();
}

void TDataSet::Insert()
{
    CheckBrowse();
    m_editBuffer = QList<QVariant>(static_cast<qsizetype>(m_fields.size()));
    m_state = DataSetState::Insert;
    try {
        Call(OnNewRecord);
    } catch (...) {
        EndEdit();
        throw;
    }
    m_modified = false; // values set by the handler are not an edit of the user's
    Notify(TDataSource::Event::State);
}

void TDataSet::Append()
{
    Insert();
}

void TDataSet::Edit()
{
    NeedActive();
    if (m_state != DataSetState::Browse)
        return;
    if (m_current < 0) {
        Insert();
        return;
    }
    m_editBuffer = RowValues(m_current);
    m_state = DataSetState::Edit;
    m_modified = false;
    Notify(TDataSource::Event::State);
}

QList<QVariant> TDataSet::RowValues(int row) const
{
    QList<QVariant> values;
    values.reserve(static_cast<qsizetype>(m_fields.size()));
    for (const std::unique_ptr<TField> &field : m_fields) {
        values.append(field->Type() == FieldType::Blob ? QVariant::fromValue(UnreadBlob())
                                                       : ValueAt(row, field->Index()));
    }
    return values;
}

void TDataSet::Post()
{
    NeedActive();
    if (m_state == DataSetState::Browse)
        return;
    Call(BeforePost);
    if (m_state == DataSetState::Insert) {
        FetchAll(); // otherwise the cursor might return the new row again
        DoInsertRow(m_editBuffer);
        m_current = m_rowCount++;
    } else if (m_state == DataSetState::Edit) {
        DoUpdateRow(m_current, m_editBuffer, RowValues(m_current));
    } else {
        return; // the handler ended the edit itself
    }
    m_bof = m_eof = false;
    EndEdit();
    Notify(TDataSource::Event::State);
    Notify(TDataSource::Event::DataSet);
    Call(AfterPost);
}

void TDataSet::EndEdit()
{
    m_editBuffer.clear();
    m_modified = false;
    if (Active())
        m_state = DataSetState::Browse;
}

void TDataSet::Cancel()
{
    if (m_state != DataSetState::Edit && m_state != DataSetState::Insert)
        return;
    EndEdit();
    Notify(TDataSource::Event::State);
    Notify(TDataSource::Event::Record);
}

void TDataSet::Delete()
{
    NeedActive();
    if (m_state == DataSetState::Insert) {
        Cancel();
        return;
    }
    if (m_current < 0)
        throw DatabaseError(u"%1: there is no record to delete"_s.arg(objectName()));
    Call(BeforeDelete);
    if (!Active() || m_current < 0)
        return; // the handler closed it or took the row
    if (m_state == DataSetState::Edit)
        Cancel();
    DoDeleteRow(m_current);
    --m_rowCount;
    FetchUpTo(m_current);
    m_current = std::min(m_current, m_rowCount - 1);
    m_bof = m_eof = m_rowCount == 0;
    Notify(TDataSource::Event::DataSet);
    Call(AfterDelete);
    TellScrolled();
}

void TDataSet::DisableControls()
{
    ++m_controlsDisabled;
}

void TDataSet::EnableControls()
{
    if (m_controlsDisabled == 0 || --m_controlsDisabled > 0)
        return;
    const bool activeChanged = std::exchange(m_missedActive, false);
    if (std::exchange(m_missedAny, false))
        Notify(activeChanged ? TDataSource::Event::Active : TDataSource::Event::DataSet);
}

void TDataSet::DisableScrollEvents()
{
    ++m_scrollEventsDisabled;
}

void TDataSet::EnableScrollEvents()
{
    m_scrollEventsDisabled = std::max(0, m_scrollEventsDisabled - 1);
}

void TDataSet::Notify(TDataSource::Event event)
{
    if (m_controlsDisabled > 0) {
        m_missedAny = true;
        m_missedActive |= event == TDataSource::Event::Active;
        return;
    }
    const QPointer<TDataSet> self(this);
    std::exception_ptr failure;
    const QList<TDataSource *> sources = m_dataSources;
    for (TDataSource *source : sources) {
        if (!self)
            break;
        if (!m_dataSources.contains(source))
            continue;
        try {
            source->Notify(event);
        } catch (...) {
            if (!failure)
                failure = std::current_exception();
        }
    }
    if (failure)
        std::rethrow_exception(failure);
}

void TDataSet::TellScrolled()
{
    if (m_scrollEventsDisabled == 0 && Active())
        Call(AfterScroll);
}

void TDataSet::Call(const std::function<void()> &event)
{
    const std::function<void()> handler = event; // the handler may replace itself
    if (handler)
        handler();
}

QString TDataSet::TextAt(int row, int field) const
{
    return ValueText(ValueAt(row, field));
}

QString TDataSet::DisplayTextAt(int row, int field)
{
    if (row < 0 || row >= m_rowCount || field < 0 || static_cast<size_t>(field) >= m_fields.size())
        return {};
    const TField &shown = *m_fields[static_cast<size_t>(field)];
    const bool pending = m_state == DataSetState::Edit && row == m_current;
    if (!shown.OnGetText && !pending)
        return shown.Type() == FieldType::Blob ? QString() : TextAt(row, field);
    const int current = std::exchange(m_current, row);
    const bool ignored = std::exchange(m_ignoreEditBuffer, !pending);
    const auto restore = [&] {
        m_current = current;
        m_ignoreEditBuffer = ignored;
    };
    try {
        QString text = shown.DisplayText();
        restore();
        return text;
    } catch (...) {
        restore();
        throw;
    }
}

bool TDataSet::Editing() const
{
    return m_state == DataSetState::Edit || m_state == DataSetState::Insert;
}

QVariant TDataSet::CurrentValue(int field) const
{
    if (Editing() && !m_ignoreEditBuffer) {
        const QVariant &pending = m_editBuffer.at(field);
        if (!pending.canConvert<UnreadBlob>())
            return pending;
    }
    return m_current < 0 || m_current >= m_rowCount ? QVariant() : ValueAt(m_current, field);
}

QVariant TDataSet::DoOldValue(int field) const
{
    if (m_state == DataSetState::Insert || m_current < 0)
        return {};
    return ValueAt(m_current, field);
}

void TDataSet::SetPendingValue(int field, const QVariant &value)
{
    if (!Editing())
        throw DatabaseError(u"%1: the dataset is not in edit or insert state"_s.arg(objectName()));
    m_editBuffer[field] = value;
    m_modified = true;
    Notify(TDataSource::Event::Record);
}
