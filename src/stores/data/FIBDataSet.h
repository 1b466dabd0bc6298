#pragma once

#include "stores/data/DataSet.h"

#include "stores/engine/Database.h"

#include <QPointer>

#include <map>

struct BlobId;

/// A parameter of a select. Its value is set before Open() and kept for the next Open().
class TParam
{
public:
    void SetAsInteger(int value) { m_value = value; }
    void SetAsString(const QString &value) { m_value = value; }
    void SetAsBoolean(bool value) { m_value = value ? 1 : 0; }
    void SetValue(const QVariant &value) { m_value = value; }
    const QVariant &Value() const { return m_value; }

private:
    QVariant m_value;
};

/// A cursor over one select, with the statements that insert, update, delete and refresh its rows. Parameters are
/// named: `:NAME` takes the field NAME's current value, `:OLD_NAME` the value it had when the row was read; a name used
/// twice takes one value. With DataSource set, each parameter of the select is bound to the field of that name of the
/// master's current row, and the dataset runs again when that row changes.
/// Owns statement and cursor; borrows database and transaction: when one of them ends first, the rows fetched stay and
/// every other call throws. A text longer than a parameter's declared size matches nothing: the select then has no
/// rows, and nothing is raised.
class TpFIBDataSet : public TDataSet
{
    Q_OBJECT
public:
    explicit TpFIBDataSet(QObject *owner = nullptr);
    ~TpFIBDataSet() override;

    QStringList &SelectSQL() { return m_selectSQL; }
    QStringList &RefreshSQL() { return m_refreshSQL; }
    QStringList &InsertSQL() { return m_insertSQL; }
    QStringList &UpdateSQL() { return m_updateSQL; }
    QStringList &DeleteSQL() { return m_deleteSQL; }
    /// A select that finds and locks the row before it is updated or deleted, by its `:OLD_` values and in the same
    /// transaction. The change fails if it finds no row, or if a column differs from the field of the same name as it
    /// was read. Empty: no such test.
    QStringList &LockSQL() { return m_lockSQL; }
    /// For a select that Firebird may search for long before it returns a row: the same rows as the select that is set
    /// now, in the same order, and one column more at their end, a number; and now and then another row, with 0 there,
    /// which only shows that the search goes on. Runs in place of the select as long as that stays the same. With
    /// OnPause set the dataset pauses after a number of such rows. Empty for none.
    void SearchInPieces(const QString &sql);

    TpFIBDatabase *Database() const;
    void SetDatabase(TpFIBDatabase *database);
    /// The transaction; by default the database's.
    TpFIBTransaction *Transaction() const;
    void SetTransaction(TpFIBTransaction *transaction);
    TDataSource *DataSource() const;
    void SetDataSource(TDataSource *master);
    /// If true, each Post and Delete is committed at once, retaining the transaction and all open cursors.
    bool AutoCommit() const { return m_autoCommit; }
    void SetAutoCommit(bool on) { m_autoCommit = on; }

    /// The parameter of that name in the select. Throws DatabaseError if the select has none of that name.
    TParam &ParamByName(const QString &name);

    /// Runs the select again and stays on the current record if it still exists (by the `:OLD_` columns of the refresh
    /// statement, else by every field but blobs), else on the row of the same number. Notifies data sources.
    void FullRefresh();

    QVariant ValueAt(int row, int field) const override;
    QString TextAt(int row, int field) const override;
    /// Reads a blob into the caller's buffer and reuses its memory if it suffices; for scans.
    void BlobInto(int row, int field, QByteArray &buffer) const;

protected:
    void DoOpen() override;
    void DoClose() override;
    int DoFetch(int most) override;
    void DoInsertRow(const QList<QVariant> &values) override;
    void DoUpdateRow(int row, const QList<QVariant> &values, const QList<QVariant> &oldValues) override;
    void DoDeleteRow(int row) override;
    bool DoRowMatches(int row, int field, const LocateKey &key) const override;

private:
    struct Cursor;
    class MasterLink;

    int TakeFetched(int count);
    void ReadStored(const BlobId &id, int column, QByteArray &buffer) const;
    void MatchFieldsToColumns();
    QList<QVariant> SelectValues() const;
    bool MasterIsMissing() const;
    /// Runs the select again for a changed master or a refresh; the rows are gone if that fails.
    void Rerun();
    void FollowMaster(bool onlyIfValuesChanged);
    /// Runs a statement that must change a row; with AutoCommit commits, or rolls back after a failure.
    void Change(const QStringList &sql, const QList<QVariant> &values, const QList<QVariant> &oldValues);
    /// Checks that the row is still as it was read, and locks it against others.
    void LockOldRow(const QList<QVariant> &oldValues);
    [[noreturn]] void ThrowChangedElsewhere() const;
    void RefuseUnstorableText(const QList<QVariant> &values) const;
    /// Reads the posted row back into the message buffer; false if it can't be identified.
    bool ReadBack(const QList<QVariant> &values);
    QList<QVariant> ByColumn(const QList<QVariant> &values, int row) const;
    QList<int> KeyFields() const;
    int FindSameRecord(const QList<int> &fields, const QList<QVariant> &key);

    QStringList m_selectSQL, m_refreshSQL, m_insertSQL, m_updateSQL, m_deleteSQL, m_lockSQL;
    QString m_piecesSQL;
    QString m_piecesOf; ///< the select whose rows that has
    QPointer<TpFIBDatabase> m_database;
    QPointer<TpFIBTransaction> m_transaction;
    QPointer<TDataSource> m_dataSource;
    bool m_autoCommit = false;
    bool m_rerunning = false;
    std::map<QString, TParam> m_params;
    std::unique_ptr<MasterLink> m_masterLink;
    std::unique_ptr<Cursor> m_cursor;
};
