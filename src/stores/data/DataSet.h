#pragma once

#include "stores/data/DataSource.h"
#include "stores/data/Field.h"

#include <QList>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

enum class DataSetState { Inactive, Browse, Edit, Insert };

enum class LocateOption { CaseInsensitive = 1, PartialKey = 2 };
Q_DECLARE_FLAGS(LocateOptions, LocateOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(LocateOptions)

/// Placeholder among pending values for a blob that the edit has not touched.
struct UnreadBlob
{};
Q_DECLARE_METATYPE(UnreadBlob)

/// The value that Locate looks for, converted once and not for each row.
struct LocateKey
{
    LocateKey(const QVariant &value, LocateOptions options);

    QVariant value;
    LocateOptions options;
    bool isNull;
    bool isNumber = false;
    qlonglong number = 0;
    QString text;
    QByteArray utf8;
};

/// Rows with a cursor: the base of TpFIBDataSet (a statement) and TdxMemData (a table in memory), and the interface for
/// data sources and bound controls. Rows are counted from 0. Main thread only. Events are plain callbacks: their
/// exceptions pass through the call that triggered them.
class TDataSet : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool Active READ Active)
    Q_PROPERTY(int RecNo READ RecNo)
    Q_PROPERTY(int RecordCount READ RecordCount)
    Q_PROPERTY(bool Eof READ Eof)
    Q_PROPERTY(bool Bof READ Bof)
public:
    explicit TDataSet(QObject *owner = nullptr);
    ~TDataSet() override;

    /// Declares a persistent field; fields not declared are made at Open from the statement's columns.
    /// `component` is the object name, by default the dataset's name followed by the field's. Size in characters.
    TField &AddField(const QString &fieldName, FieldType type, int size = 0, const QString &component = {});
    /// Throws DatabaseError if there is none. Names ignore case.
    TField &FieldByName(const QString &name);
    TField *FindField(const QString &name) const;
    const std::vector<std::unique_ptr<TField>> &Fields() const { return m_fields; }

    bool Active() const { return m_state != DataSetState::Inactive; }
    DataSetState State() const { return m_state; }
    /// Opens on the first row; nothing happens if open. Throws DatabaseError, and the dataset stays closed.
    void Open();
    /// Drops a pending edit without asking, and all rows and field values. Does nothing if closed.
    void Close();

    /// Index of the current row, -1 if there is none.
    int RecNo() const { return m_current; }
    /// Number of rows fetched so far. FetchAll() makes it the number of all rows.
    int RecordCount() const { return m_rowCount; }
    bool IsEmpty();
    bool Eof() const { return m_eof; }
    bool Bof() const { return m_bof; }
    Q_INVOKABLE void First();
    Q_INVOKABLE void Last();
    Q_INVOKABLE void Next();
    Q_INVOKABLE void Prior();
    /// Moves the cursor to a row by index, fetching up to it; clamps to the existing rows.
    Q_INVOKABLE void MoveTo(int row);
    /// Fetches the remaining rows, without moving.
    void FetchAll();
    /// Fetches until `row` exists; false if the rows end before it.
    bool FetchUpTo(int row);
    bool AllFetched() const { return m_allFetched; }
    /// FetchUpTo() for callers that need not have the row now. With OnPause set, a dataset whose rows are hard to find
    /// stops after a while: false, IsPaused(), and OnPause is called, which arranges for Resume() in a later turn of
    /// the event loop. Next(), opening and refreshing fetch in this way.
    bool FetchAhead(int row);
    bool IsPaused() const { return m_isPaused; }
    /// Goes on with what FetchAhead() was asked for meanwhile, and tells data sources what has come. Does nothing if
    /// there is nothing to go on with.
    void Resume();

    /// Moves to the first row whose field equals the value; with no options the comparison is exact.
    /// False, and the current row stays, if there is none. Sends no event if the cursor is there already. Throws if the
    /// field does not exist.
    bool Locate(const QString &field, const QVariant &value, LocateOptions options = {});
    Q_INVOKABLE bool LocateExact(const QString &field, const QVariant &value) { return Locate(field, value); }

    /// The edit cycle. First, Next, Prior, Last, Locate, Insert and refreshes post a modified row and cancel an
    /// unmodified one. A failing post leaves cursor, state and values as they are.
    void Insert();
    void Append();
    void Edit();
    void Post();
    void Cancel();
    void Delete();
    bool Modified() const { return m_modified; }

    /// Nestable. While disabled, data sources and their controls get no events; the last EnableControls sends one.
    void DisableControls();
    void EnableControls();
    bool ControlsDisabled() const { return m_controlsDisabled > 0; }
    /// Nestable. While disabled, AfterScroll is not called.
    void DisableScrollEvents();
    void EnableScrollEvents();

    /// A value of any fetched row, without moving the cursor. Reads a blob from the database.
    virtual QVariant ValueAt(int row, int field) const = 0;
    /// Text of a wide string or number of any fetched row, without OnGetText.
    virtual QString TextAt(int row, int field) const;
    /// The text that a control shows for any fetched row; calls OnGetText with that row as the current one.
    QString DisplayTextAt(int row, int field);

    std::function<void()> BeforeOpen, AfterOpen, BeforeClose, AfterClose, OnNewRecord, BeforePost, AfterPost,
        BeforeDelete, AfterDelete, AfterScroll, OnPause;

protected:
    friend class TField;
    friend class TDataSource;
    // Implemented by subclasses. DataSet.cpp describes the protocol.
    virtual void DoOpen() = 0;
    virtual void DoClose() = 0;
    /// Fetches and appends one to `most` rows. Returns their number; 0 at the end. With MayPause() it may also give -1:
    /// it has looked for a while and found none.
    virtual int DoFetch(int most) = 0;
    bool MayPause() const { return m_mayPause; }
    virtual void DoInsertRow(const QList<QVariant> &values) = 0;
    virtual void DoUpdateRow(int row, const QList<QVariant> &values, const QList<QVariant> &oldValues) = 0;
    virtual void DoDeleteRow(int row) = 0;
    virtual QVariant DoOldValue(int field) const;
    virtual bool DoRowMatches(int row, int field, const LocateKey &key) const;

    /// Ends an edit as before a move: posts a modified row, cancels an unmodified one. Throws if closed.
    void CheckBrowse();
    void NeedActive() const;
    /// Before the rows are fetched anew.
    void ForgetRows();
    /// Makes the first row the current one after the rows were replaced.
    void StandOnFirst();
    void Notify(TDataSource::Event event);
    void TellScrolled();
    /// The pending value while editing, else the current row's.
    QVariant CurrentValue(int field) const;
    bool Editing() const;
    /// The fields' values of a row, an UnreadBlob for each blob.
    QList<QVariant> RowValues(int row) const;

    std::vector<std::unique_ptr<TField>> m_fields;
    DataSetState m_state = DataSetState::Inactive;
    int m_current = -1;
    int m_rowCount = 0;
    bool m_allFetched = false;
    bool m_eof = true;
    bool m_bof = true;
    bool m_modified = false;
    int m_controlsDisabled = 0;
    int m_scrollEventsDisabled = 0;
    QList<QVariant> m_editBuffer;
    QList<TDataSource *> m_dataSources;

private:
    static void Call(const std::function<void()> &event);
    void Forget();
    void GoTo(int row);
    /// Fetches up to `most` more rows; false if there are none.
    bool FetchSome(int most);
    void EndEdit();
    void SetPendingValue(int field, const QVariant &value);

    bool m_missedAny = false;
    bool m_missedActive = false;
    bool m_mayPause = false;
    bool m_isPaused = false;
    int m_awaited = 0; ///< the row to fetch up to when it goes on
    bool m_ignoreEditBuffer = false;
};
