#include "Sample.h"

#include "reader/PageComposer.h"
#include "stores/KeloraDM.h"
#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/Database.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

SampleFiles::SampleFiles()
    : m_folder(QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Lumivara")) +
               QLatin1Char('/'))
{
    QProcess laying;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), ConfigFolder());
    laying.setProcessEnvironment(environment);
    laying.start(m_folder + QStringLiteral("../../../scripts/first-settings"), {m_folder});
    laying.waitForFinished();
    ComposeFirstPage();
}

void SampleFiles::ComposeFirstPage()
{
    TpFIBDatabase database;
    database.SetLibraryName(ClientLibraryPath(m_folder));
    database.SetDBName(m_folder + QStringLiteral("KELORA.FDB"));
    database.DBParams() = QStringList{QStringLiteral("lc_ctype=UNICODE_FSS"), QStringLiteral("user_name=SYSDBA"),
                                      QStringLiteral("password=lotuspond")};
    database.SetCharSet(QStringLiteral("UNICODE_FSS"));
    database.SetConnected(true);
    TpFIBTransaction transaction;
    transaction.SetDefaultDatabase(&database);
    database.SetDefaultTransaction(&transaction);
    transaction.SetActive(true);
    TpFIBDataSet text;
    text.SetDatabase(&database);
    text.SelectSQL() = QStringList{QStringLiteral("select CONTENT_VIC_VIE from KELORA_CONTENT where NUMBER_VIC = 1")};
    text.Open();
    QFile file(FirstPage());
    if (file.open(QIODevice::WriteOnly))
        file.write(
            ComposePassage(text.FieldByName(QStringLiteral("CONTENT_VIC_VIE")).AsBytes(),
                           {.mode = PageMode::Vietnamese, .marginWidth = 0, .fontName = QStringLiteral("Segoe UI")}));
}

const SampleFiles &Sample()
{
    static const SampleFiles files;
    return files;
}
