#pragma once

#include "stores/engine/Database.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

/// Runs a script of SQL statements in its own transaction. Comments and blank lines are skipped, "COMMIT WORK;"
/// commits, "SET TERM" changes the terminator as in Firebird's tools. Changes that are not committed when the run ends
/// or fails are rolled back.
class TpFIBScripter : public QObject
{
    Q_OBJECT
public:
    explicit TpFIBScripter(QObject *owner = nullptr);

    /// The connection, borrowed: once it is gone a run throws.
    TpFIBDatabase *Database() const { return m_database; }
    void SetDatabase(TpFIBDatabase *database) { m_database = database; }
    QStringList &Script() { return m_script; }

    /// Runs the statements from the 1-based number given, in order. The first failure stops the run and is thrown as
    /// DatabaseError.
    void ExecuteScript(int from = 1);

    /// The statements of a script without their terminators, in order; comments outside statements are left out.
    static QStringList SplitStatements(const QString &script);

private:
    QPointer<TpFIBDatabase> m_database;
    QStringList m_script;
};
