#include "lumivara-data/files/DataFile.h"

#include "base/Messages.h"
#include "common/Tool.h"
#include "stores/KeloraDM.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/Scripter.h"
#include "stores/engine/Statement.h"

#include <QCoreApplication>
#include <QFile>

using namespace Qt::StringLiterals;

void DataFile::Configure(const QString &path)
{
    m_database.SetDBName(path);
    m_database.SetSQLDialect(3);
    m_database.DBParams() = {u"lc_ctype=UNICODE_FSS"_s, u"user_name=SYSDBA"_s, u"password=lotuspond"_s};
    m_database.SetCharSet(u"UNICODE_FSS"_s);
    m_database.SetLibraryName(ClientLibraryPath(QCoreApplication::applicationDirPath() + u'/'));
    m_database.SetDefaultTransaction(&m_transaction);
    m_transaction.SetDefaultDatabase(&m_database);
    m_transaction.TRParams() = {u"write"_s, u"isc_tpb_nowait"_s, u"read_committed"_s, u"rec_version"_s};
}

void DataFile::Create(const QString &path, int pageSize, bool forcedWrites)
{
    Configure(path);
    m_database.CreateDatabase(pageSize, forcedWrites);
}

void DataFile::Open(const QString &path)
{
    Configure(path);
    m_database.SetConnected(true);
    m_transaction.SetActive(true);
}

void DataFile::Close()
{
    m_transaction.SetActive(false);
    m_database.SetConnected(false);
}

void DataFile::RunSchema(const QString &name)
{
    QFile script(u":/schema/%1.sql"_s.arg(name));
    if (!script.open(QIODevice::ReadOnly))
        throw ToolError(
            Sentence({u"chương trình không có lược đồ \"%1\"", u"the schema \"%1\" is not in this program"}).arg(name));
    TpFIBScripter scripter;
    scripter.SetDatabase(&m_database);
    scripter.Script() = QString::fromUtf8(script.readAll()).split(u'\n');
    scripter.ExecuteScript();
}

bool DataFile::HasTable(const QString &table)
{
    return !Rows(u"select R.RDB$RELATION_ID from RDB$RELATIONS R where trim(R.RDB$RELATION_NAME) = '%1'"_s.arg(table))
                .isEmpty();
}

QStringList DataFile::Columns(const QString &table)
{
    QStringList columns;
    for (const QList<QVariant> &row :
         Rows(u"select RDB$FIELD_NAME from RDB$RELATION_FIELDS where RDB$RELATION_NAME = '%1'"_s.arg(table)))
        columns.append(row[0].toString().trimmed());
    return columns;
}

QList<QList<QVariant>> DataFile::Rows(const QString &select)
{
    TpFIBDataSet query;
    query.SetDatabase(&m_database);
    query.SetTransaction(&m_transaction);
    query.SelectSQL() = QStringList{select};
    QList<QList<QVariant>> rows;
    for (query.Open(); !query.Eof(); query.Next()) {
        QList<QVariant> row;
        for (const std::unique_ptr<TField> &field : query.Fields())
            row.append(field->Value());
        rows.append(row);
    }
    return rows;
}

void DataFile::Finish(bool readOnly)
{
    if (m_transaction.Active())
        m_transaction.Commit();
    m_transaction.SetActive(false);
    if (readOnly)
        m_database.SetReadOnlyMode(true);
    m_database.SetConnected(false);
}

RowWriter::RowWriter(DataFile &file, const QString &table, const QStringList &columns) : m_file(file)
{
    if (!file.Transaction().Active())
        file.Transaction().SetActive(true);
    m_insert = std::make_unique<Statement>(
        file.Database().Attachment(), file.Transaction().Native(),
        u"insert into %1 (%2) values (:%3)"_s.arg(table, columns.join(u", "_s), columns.join(u", :"_s)));
}

RowWriter::~RowWriter() = default;

void RowWriter::Append(const QList<QVariant> &values)
{
    m_insert->Execute(m_file.Transaction().Native(), values);
}
