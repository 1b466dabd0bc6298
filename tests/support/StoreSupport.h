#pragma once

#include "stores/KeloraDM.h"
#include "stores/data/DataSource.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/Database.h"
#include "stores/engine/DatabaseError.h"
#include "stores/engine/Scripter.h"
#include "support/TestSupport.h"

#include <QFile>

#include <gmock/gmock.h>

/// Prepares an unopened connection with its transaction, as the program's modules do.
inline void Prepare(TpFIBDatabase &database, TpFIBTransaction &transaction, const QString &path)
{
    PrepareConnection(database, transaction, path, ProductFolder() + u"Lumivara"_qs);
}

/// Runs a script and commits it.
inline void RunScript(TpFIBDatabase &database, const QString &script)
{
    TpFIBScripter scripter;
    scripter.SetDatabase(&database);
    scripter.Script() = QStringList{script, u"commit work;"_qs};
    scripter.ExecuteScript();
}

/// The text of the failure that `action` throws; empty if it throws none.
template <typename Action>
QString FailureOf(Action action)
{
    try {
        action();
    } catch (const DatabaseError &error) {
        return error.Text();
    }
    return {};
}

/// A file without tables, made once and copied for each test, because making one takes half a second.
inline QString EmptyDatabase()
{
    static const ScratchFolder folder;
    const QString path = folder.Path(u"EMPTY.FDB"_qs);
    if (!QFile::exists(path)) {
        TpFIBDatabase database;
        TpFIBTransaction transaction;
        Prepare(database, transaction, path);
        database.CreateDatabase();
    }
    return path;
}

/// Gives each test its own database file, open, with a transaction.
class StoreTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const QString path = scratch.Path(u"TEST.FDB"_qs);
        EXPECT_TRUE(QFile::copy(EmptyDatabase(), path));
        Prepare(database, transaction, path);
        database.SetConnected(true);
        transaction.SetActive(true);
    }
    void Use(TpFIBDataSet &dataSet, const QString &select)
    {
        dataSet.SetDatabase(&database);
        dataSet.SelectSQL() = QStringList{select};
    }
    /// The first value of a select's first row.
    QVariant Ask(const QString &select)
    {
        TpFIBDataSet query;
        Use(query, select);
        query.Open();
        return query.Fields().front()->Value();
    }

    ScratchFolder scratch;
    TpFIBDatabase database;
    TpFIBTransaction transaction;
};
