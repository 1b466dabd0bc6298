#pragma once

#include "stores/DataSet.h"

#include <QHash>

class TpFIBDatabase;
class TpFIBTransaction;

/// A parameter of a select. Its value is set before Open() and stays for the next one.
class TParam {
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
/// Owns statement and cursor; borrows database and transaction, which must outlive it.
/// A text longer than a parameter's declared size matches nothing: the select then has no rows, and nothing is raised.
class TpFIBDataSet : public TDataSet {
    Q_OBJECT
public:
    explicit TpFIBDataSet(QObject *owner = nullptr);
    ~TpFIBDataSet() override;

    QStringList &SelectSQL() { return m_selectSQL; }
    QStringList &RefreshSQL() { return m_refreshSQL; }
    QStringList &InsertSQL() { return m_insertSQL; }
    QStringList &UpdateSQL() { return m_updateSQL; }
    QStringList &DeleteSQL() { return m_deleteSQL; }

    TpFIBDatabase *Database() const { return m_database; }
    void SetDatabase(TpFIBDatabase *database) { m_database = database; }
    /// The database's default transaction where none is set.
    TpFIBTransaction *Transaction() const;
    void SetTransaction(TpFIBTransaction *transaction) { m_transaction = transaction; }
    TDataSource *DataSource() const { return m_dataSource; }
    void SetDataSource(TDataSource *master);
    /// With it on each Post and Delete is committed at once, retaining the transaction and all open cursors.
    bool AutoCommit() const { return m_autoCommit; }
    void SetAutoCommit(bool on) { m_autoCommit = on; }

    /// The parameter of that name in the select. Throws DatabaseError if the select has none of that name.
    TParam &ParamByName(const QString &name);

    /// Runs the select again and stays on the current record if it still exists (by the `:OLD_` columns of the refresh
    /// statement, else by every field but blobs), else on the row of the same number. Data sources hear of it.
    void FullRefresh();

    QVariant ValueAt(int row, int field) const override;
    QString TextAt(int row, int field) const override;

protected:
    void DoOpen() override;
    void DoClose() override;
    bool DoFetchNext() override;
    void DoInsertRow(const QList<QVariant> &values) override;
    void DoUpdateRow(int row, const QList<QVariant> &values, const QList<QVariant> &oldValues) override;
    void DoDeleteRow(int row) override;

private:
    struct Cursor;
    class MasterLink;

    QStringList m_selectSQL, m_refreshSQL, m_insertSQL, m_updateSQL, m_deleteSQL;
    TpFIBDatabase *m_database = nullptr;
    TpFIBTransaction *m_transaction = nullptr;
    TDataSource *m_dataSource = nullptr;
    bool m_autoCommit = false;
    QHash<QString, TParam> m_params;
    std::unique_ptr<MasterLink> m_masterLink;
    std::unique_ptr<Cursor> m_cursor;
};
