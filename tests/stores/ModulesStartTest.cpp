#include "dictionary/DictionaryDM.h"
#include "stores/ClientsDM.h"
#include "stores/KeloraDM.h"

#include "support/ModuleSupport.h"

namespace {

class ModulesStart : public ModuleTest
{
protected:
    void MakeDatabase(const QString &name)
    {
        TpFIBDatabase database;
        TpFIBTransaction transaction;
        PrepareConnection(database, transaction, Path(name), doors.exeName);
        database.CreateDatabase();
        database.SetConnected(false);
    }
    void Place(const QString &name, const QByteArray &bytes)
    {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
};

const QString CanonName = QStringLiteral("KELORA.FDB");

QString VietnameseFailure()
{
    return QStringLiteral("Kết nối dữ liệu không thành công!\r"
                          "Vào Control Panel -> System Security -> Change User Account Control Settings\r"
                          "-> Chọn mức Notyfi thấp hơn trong cửa sổ mới hiện ra (Never Notify)\r"
                          "-> OK và khởi động lại máy!");
}

QString EnglishFailure()
{
    return QStringLiteral("Can not connect to database!\r"
                          "(Control Panel -> System Security -> Change User Account Control Settings\r"
                          "-> Set lower notify (Never Notify)\r"
                          "-> OK and Restart operating system!)");
}

TEST_F(ModulesStart, CanonOpensAndStaysOpen)
{
    MakeDatabase(CanonName);
    TfrmKeloraDM module(doors);
    module.DataModuleCreate();
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(terminations, 0);
    EXPECT_TRUE(module.dbKelora.Connected());
    EXPECT_TRUE(module.trKelora.Active());
    EXPECT_EQ(AppPath, Path(QString()) + QLatin1Char('/'));
}

TEST_F(ModulesStart, CanonReadsTheOptionsOnlyOnceConnected)
{
    OpenOptions()->WriteInteger(QStringLiteral("InterfaceLang"), 1);
    TfrmKeloraDM failing(doors);
    failing.DataModuleCreate();
    EXPECT_EQ(failing.vOpenSutta, 0);
    EXPECT_EQ(messages, QStringList{VietnameseFailure()});
    MakeDatabase(CanonName);
    TfrmKeloraDM module(doors);
    module.DataModuleCreate();
    EXPECT_EQ(module.vOpenSutta, 1);
}

TEST_F(ModulesStart, CanonFailureSpeaksTheLanguageOrNothing)
{
    const struct
    {
        int language;
        QStringList texts;
    } cases[] = {{0, {VietnameseFailure()}}, {1, {EnglishFailure()}}, {2, {}}, {-1, {}}};
    for (const auto &row : cases) {
        messages.clear();
        terminations = 0;
        InterfaceLang = row.language;
        TfrmKeloraDM module(doors);
        module.DataModuleCreate();
        EXPECT_EQ(messages, row.texts) << row.language;
        EXPECT_EQ(terminations, 1) << row.language;
        EXPECT_FALSE(module.dbKelora.Connected());
    }
    EXPECT_FALSE(QFile::exists(Path(CanonName)));
}

TEST_F(ModulesStart, ConnectionsNameFileLoginAndLibraryBesideTheProgram)
{
    TfrmKeloraDM canon(doors);
    canon.DataModuleCreate();
    TfrmClientsDM clients(doors);
    clients.dbClientTarune.DBParams() = {QStringLiteral("left=over")};
    clients.DataModuleCreate();
    TfrmDictionaryDM dictionary(doors);
    dictionary.DataModuleCreate();
    const struct
    {
        TpFIBDatabase &database;
        TpFIBTransaction &transaction;
        QString file;
    } connections[] = {{canon.dbKelora, canon.trKelora, CanonName},
                       {clients.dbClientTarune, clients.trClientTarune, QStringLiteral("TARUNECLIENT.FDB")},
                       {dictionary.dbDictionary, dictionary.trDictionary, QStringLiteral("PALIDICT.FDB")}};
    const QStringList login{QStringLiteral("lc_ctype=UNICODE_FSS"), QStringLiteral("user_name=SYSDBA"),
                            QStringLiteral("password=lotuspond")};
    const QStringList mode{QStringLiteral("write"), QStringLiteral("isc_tpb_nowait"), QStringLiteral("read_committed"),
                           QStringLiteral("rec_version")};
    for (const auto &connection : connections) {
        EXPECT_EQ(connection.database.DBName(), Path(connection.file));
        EXPECT_EQ(connection.database.DBParams(), login);
        EXPECT_EQ(connection.database.SQLDialect(), 3);
        EXPECT_EQ(connection.database.CharSet(), QStringLiteral("UNICODE_FSS"));
        EXPECT_EQ(connection.database.LibraryName(), Path(QStringLiteral("libfbclient.so.2")));
        EXPECT_EQ(connection.database.DefaultTransaction(), &connection.transaction);
        EXPECT_EQ(connection.transaction.DefaultDatabase(), &connection.database);
        EXPECT_EQ(connection.transaction.TRParams(), mode);
    }
}

TEST_F(ModulesStart, ClientsAndDictionaryFailWithoutAWord)
{
    AppPath = Path(QString()) + QLatin1Char('/');
    for (const QByteArray &bytes : {QByteArray(), QByteArray("no database")}) {
        TfrmClientsDM clients(doors);
        clients.DataModuleCreate();
        EXPECT_FALSE(clients.vIsOKClients);
        TfrmDictionaryDM dictionary(doors);
        dictionary.DataModuleCreate();
        EXPECT_FALSE(dictionary.vIsOKDictionary);
        Place(QStringLiteral("TARUNECLIENT.FDB"), bytes);
        Place(QStringLiteral("PALIDICT.FDB"), bytes);
    }
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(terminations, 0);
}

TEST_F(ModulesStart, ClientsAndDictionaryOpenWhatIsThere)
{
    AppPath = Path(QString()) + QLatin1Char('/');
    MakeDatabase(QStringLiteral("TARUNECLIENT.FDB"));
    MakeDatabase(QStringLiteral("PALIDICT.FDB"));
    TfrmClientsDM clients(doors);
    clients.DataModuleCreate();
    EXPECT_TRUE(clients.vIsOKClients && clients.dbClientTarune.Connected() && clients.trClientTarune.Active());
    TfrmDictionaryDM dictionary(doors);
    dictionary.DataModuleCreate();
    EXPECT_TRUE(dictionary.vIsOKDictionary && dictionary.dbDictionary.Connected() && dictionary.trDictionary.Active());
}

TEST(FolderOfExecutable, EndsInOneSeparator)
{
    EXPECT_EQ(FolderOfExecutable(QStringLiteral("/opt/my app/Lumivara")), QStringLiteral("/opt/my app/"));
    EXPECT_EQ(FolderOfExecutable(QStringLiteral("/Lumivara")), QStringLiteral("/"));
}

} // namespace
