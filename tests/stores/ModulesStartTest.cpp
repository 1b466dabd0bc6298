#include "dictionary/DictionaryDM.h"
#include "stores/ClientsDM.h"
#include "stores/KeloraDM.h"

#include "support/ModuleSupport.h"
#include "tools/ToolSupport.h"

using namespace Qt::StringLiterals;

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
};

const QString CanonName = u"KELORA.FDB"_s;

QString VietnameseFailure()
{
    return u"Kết nối dữ liệu không thành công!\r"
           "Vào Control Panel -> System Security -> Change User Account Control Settings\r"
           "-> Chọn mức Notyfi thấp hơn trong cửa sổ mới hiện ra (Never Notify)\r"
           "-> OK và khởi động lại máy!"_s;
}

QString EnglishFailure()
{
    return u"Can not connect to database!\r"
           "(Control Panel -> System Security -> Change User Account Control Settings\r"
           "-> Set lower notify (Never Notify)\r"
           "-> OK and Restart operating system!)"_s;
}

TEST_F(ModulesStart, WhatIsThereOpensAndStaysOpen)
{
    OpenOptions()->WriteInteger(u"InterfaceLang"_s, 1);
    MakeDatabase(CanonName);
    TfrmKeloraDM module(doors);
    module.DataModuleCreate();
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(terminations, 0);
    EXPECT_TRUE(module.dbKelora.Connected());
    EXPECT_TRUE(module.trKelora.Active());
    EXPECT_EQ(module.vOpenSutta, 1) << "the options are read";
    EXPECT_EQ(AppPath, Path(QString()) + u'/');
    MakeDatabase(u"TARUNECLIENT.FDB"_s);
    MakeDatabase(u"PALIDICT.FDB"_s);
    TfrmClientsDM clients(doors);
    clients.DataModuleCreate();
    EXPECT_TRUE(clients.vIsOKClients && clients.dbClientTarune.Connected() && clients.trClientTarune.Active());
    TfrmDictionaryDM dictionary(doors);
    dictionary.DataModuleCreate();
    EXPECT_TRUE(dictionary.vIsOKDictionary && dictionary.dbDictionary.Connected() && dictionary.trDictionary.Active());
}

TEST_F(ModulesStart, CanonFailureSpeaksTheLanguageOrNothing)
{
    const std::pair<int, QStringList> cases[]{{0, {VietnameseFailure()}}, {1, {EnglishFailure()}}, {2, {}}, {-1, {}}};
    OpenOptions();
    for (const auto &[language, texts] : cases) {
        messages.clear();
        terminations = 0;
        InterfaceLang = language;
        TfrmKeloraDM module(doors);
        module.DataModuleCreate();
        EXPECT_EQ(messages, texts) << language;
        EXPECT_EQ(terminations, 1) << language;
        EXPECT_FALSE(module.dbKelora.Connected());
        EXPECT_EQ(module.vOpenSutta, 0) << "the options are not read";
    }
    EXPECT_FALSE(QFile::exists(Path(CanonName)));
}

TEST_F(ModulesStart, ConnectionsNameFileLoginAndLibraryBesideTheProgram)
{
    TfrmKeloraDM canon(doors);
    canon.DataModuleCreate();
    TfrmClientsDM clients(doors);
    clients.dbClientTarune.DBParams() = {u"left=over"_s};
    clients.DataModuleCreate();
    TfrmDictionaryDM dictionary(doors);
    dictionary.DataModuleCreate();
    const std::tuple<TpFIBDatabase &, TpFIBTransaction &, QString> connections[]{
        {canon.dbKelora, canon.trKelora, CanonName},
        {clients.dbClientTarune, clients.trClientTarune, u"TARUNECLIENT.FDB"_s},
        {dictionary.dbDictionary, dictionary.trDictionary, u"PALIDICT.FDB"_s}};
    const QStringList login{u"lc_ctype=UNICODE_FSS"_s, u"user_name=SYSDBA"_s, u"password=lotuspond"_s};
    const QStringList mode{u"write"_s, u"isc_tpb_nowait"_s, u"read_committed"_s, u"rec_version"_s};
    for (const auto &[database, transaction, file] : connections) {
        EXPECT_EQ(database.DBName(), Path(file));
        EXPECT_EQ(database.DBParams(), login);
        EXPECT_EQ(database.SQLDialect(), 3);
        EXPECT_EQ(database.CharSet(), u"UNICODE_FSS"_s);
        EXPECT_EQ(database.LibraryName(), Path(u"libfbclient.so.2"_s));
        EXPECT_EQ(database.DefaultTransaction(), &transaction);
        EXPECT_EQ(transaction.DefaultDatabase(), &database);
        EXPECT_EQ(transaction.TRParams(), mode);
    }
}

TEST_F(ModulesStart, ClientsAndDictionaryFailWithoutAWord)
{
    AppPath = Path(QString()) + u'/';
    for (const QByteArray &bytes : {QByteArray(), QByteArray("no database")}) {
        TfrmClientsDM clients(doors);
        clients.DataModuleCreate();
        EXPECT_FALSE(clients.vIsOKClients);
        TfrmDictionaryDM dictionary(doors);
        dictionary.DataModuleCreate();
        EXPECT_FALSE(dictionary.vIsOKDictionary);
        WriteFile(Path(u"TARUNECLIENT.FDB"_s), bytes);
        WriteFile(Path(u"PALIDICT.FDB"_s), bytes);
    }
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(terminations, 0);
}

} // namespace
