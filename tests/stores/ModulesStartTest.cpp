#include "stores/KeloraDM.h"

#include "base/InterfaceLanguage.h"
#include "support/ModuleSupport.h"

using namespace Qt::StringLiterals;

namespace {

using ModulesStart = ModuleTest;

const QString CanonName = u"KELORA.FDB"_s;

const QString VietnameseFailure = u"Kết nối dữ liệu không thành công!\r"
                                  "Vào Control Panel -> System Security -> Change User Account Control Settings\r"
                                  "-> Chọn mức Notyfi thấp hơn trong cửa sổ mới hiện ra (Never Notify)\r"
                                  "-> OK và khởi động lại máy!"_s;
const QString EnglishFailure = u"Can not connect to database!\r"
                               "(Control Panel -> System Security -> Change User Account Control Settings\r"
                               "-> Set lower notify (Never Notify)\r"
                               "-> OK and Restart operating system!)"_s;

TEST_F(ModulesStart, CanonFailureSpeaksTheLanguageOrNothing)
{
    const std::pair<int, QStringList> cases[]{{0, {VietnameseFailure}}, {1, {EnglishFailure}}, {2, {}}, {-1, {}}};
    OpenOptions();
    for (const auto &[language, texts] : cases) {
        messages.clear();
        terminations = 0;
        InterfaceLang = language;
        TfrmKeloraDM module(doors);
        module.DataModuleCreate();
        EXPECT_EQ(messages, texts) << language;
        EXPECT_EQ(terminations, 1) << language;
        EXPECT_EQ(module.vOpenSutta, 0) << "the options are not read";
    }
    EXPECT_FALSE(QFile::exists(Path(CanonName)));
}

TEST_F(ModulesStart, ConnectionsNameFileLoginAndLibraryBesideTheProgram)
{
    TpFIBDatabase database;
    TpFIBTransaction transaction;
    database.DBParams() = {u"left=over"_s};
    PrepareConnection(database, transaction, Path(CanonName), doors.exeName);
    EXPECT_EQ(database.DBParams(),
              (QStringList{u"lc_ctype=UNICODE_FSS"_s, u"user_name=SYSDBA"_s, u"password=lotuspond"_s}));
    EXPECT_EQ(database.LibraryName(), Path(u"libfbclient.so.2"_s));
    EXPECT_EQ(transaction.TRParams(),
              (QStringList{u"write"_s, u"isc_tpb_nowait"_s, u"read_committed"_s, u"rec_version"_s}));
}

} // namespace
