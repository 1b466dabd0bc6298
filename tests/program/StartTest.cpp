#include "program/ProgramRun.h"
#include "strangers/StrangersFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <csignal>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

void Overwrite(const QString &path, const QByteArray &bytes)
{
    QFile::remove(path);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

TEST(Start, WithoutACanonShowsTheFixedMessageThenTheReportAndEnds)
{
    const std::pair<const char *, void (*)(const QString &)> rows[]{
        {"KELORA.FDB", [](const QString &) {}},
        {"KELORA.FDB", [](const QString &canon) { Overwrite(canon, QByteArray(99999, 'x')); }},
        {"KELORA.FDB", [](const QString &canon) { QDir().mkpath(canon); }},
        {"libfbclient.so.2", [](const QString &) {}}};
    for (const auto &[file, damage] : rows) {
        SCOPED_TRACE(file);
        ProductCopy product;
        const QString path = product.File(QString::fromLatin1(file));
        QFile::remove(path);
        damage(path);
        ProgramRun program(product);
        program.Start();
        program.Do({u"wait msgBox"_s});
        EXPECT_TRUE(program.Send(u"get msgBox text"_s).startsWith(u"Kết nối dữ liệu không thành công!"_s));
        // A failed start leaves the lock folder open to other users.
        for (const QFileInfo &lock : QDir(product.File(u"lock"_s)).entryInfoList(QDir::Files | QDir::System)) {
            struct stat status = {};
            EXPECT_EQ(::stat(QFile::encodeName(lock.filePath()).constData(), &status), 0);
            EXPECT_EQ(status.st_mode & 0777, 0666U) << lock.fileName().toStdString();
        }
        program.Do({u"answer ok"_s, u"wait msgBox"_s});
        EXPECT_FALSE(program.Send(u"get msgBox text"_s).startsWith(u"Kết nối"_s));
        program.Do({u"answer ok"_s});
        EXPECT_GT(program.ExitCode(), 0);
    }
}

TEST(Start, CanonWithoutItsTablesIsReportedAndTheWindowStands)
{
    ProductCopy product;
    QFile::remove(product.File(u"KELORA.FDB"_s));
    QFile::copy(product.File(u"TARUNECLIENT.FDB"_s), product.File(u"KELORA.FDB"_s));
    ProgramRun program(product);
    program.Start();
    program.Do({u"wait msgBox"_s});
    EXPECT_THAT(program.Send(u"get msgBox text"_s).toStdString(), testing::HasSubstr("KELORA_TREE"));
    program.Do({u"answer ok"_s, u"wait frmMain"_s});
    EXPECT_EQ(program.Quit(), 0);
}

TEST(Start, RunsWithoutMarksAndDictionaryAndTakesNoArguments)
{
    ProductCopy product;
    QFile::remove(product.File(u"TARUNECLIENT.FDB"_s));
    Overwrite(product.File(u"PALIDICT.FDB"_s), "not a database");
    ProgramRun program(product);
    program.arguments = QStringList{u"-reverse"_s}; // Qt would lay out everything from right to left
    program.Open();
    EXPECT_EQ(program.Send(u"get frmMain layoutDirection"_s), u"LeftToRight"_s);
    EXPECT_EQ(program.Send(u"get acFocusHighlight enabled"_s), u"false"_s);
    EXPECT_EQ(program.Send(u"get acGetWord enabled"_s), u"false"_s);
    EXPECT_EQ(program.Quit(), 0);
    EXPECT_FALSE(QFile::exists(product.File(u"TARUNECLIENT.FDB"_s)));
}

TEST(Start, FromAnUnusualPlaceOpensTheCanonAndLeaves)
{
    using Environment = QProcessEnvironment;
    const std::tuple<const char *, QString, void (*)(const ProductCopy &, Environment &)> rows[]{
        {"Quotes", u"it's \"Tạng ṭīkā 経\" & 100%"_s, [](const auto &, auto &) {}},
        {"PlainLocale", u"Tạng Luật"_s, [](const auto &, Environment &all) { all.insert(u"LC_ALL"_s, u"C"_s); }},
        {"LocaleNotInstalled", u"ṭīkā"_s, [](const auto &, Environment &all) { all.insert(u"LC_ALL"_s, u"xx_YY"_s); }},
        {"NoHome", u"nohome"_s,
         [](const auto &, Environment &all) { all.remove(u"HOME"_s), all.remove(u"XDG_CONFIG_HOME"_s); }},
        {"ReadOnlySettings", u"rosettings"_s,
         [](const auto &product, auto &) {
             QDir().mkpath(product.ConfigFolder());
             QFile::setPermissions(product.ConfigFolder(), QFile::ReadOwner | QFile::ExeOwner);
         }},
        {"ReadOnlyFolder", u"readonly"_s, [](const auto &product, auto &) {
             for (const QString &name : {u"KELORA.FDB"_s, u"PALIDICT.FDB"_s, u"TARUNECLIENT.FDB"_s, QString()})
                 QFile::setPermissions(product.File(name), QFile::ReadOwner | QFile::ExeOwner);
         }}};
    for (const auto &[name, folder, arrange] : rows) {
        SCOPED_TRACE(name);
        ProductCopy product(folder);
        ProgramRun program(product);
        arrange(product, program.environment);
        program.Open();
        EXPECT_GT(program.Send(u"get qryTreeSutas RecordCount"_s).toInt(), 200);
        EXPECT_EQ(program.Quit(), 0);
        QFile::setPermissions(product.Folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

TEST(Start, SavesTheMarksOnceADay)
{
    ProductCopy product;
    const QString tool = product.File(u"lumivara-data"_s), moved = product.File(u"lumivara-saver"_s);
    EXPECT_TRUE(QFile::rename(tool, moved));
    StandIn saver(tool, '"' + QFile::encodeName(moved) + "\" \"$@\"");
    // Where it is noon, so that no day ends meanwhile.
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const int behind = now.time().hour() - 12;
    const QString day = now.addSecs(-3600 * behind).date().toString(Qt::ISODate);
    QByteArray saved;
    for (const char *start : {"first", "second"}) {
        SCOPED_TRACE(start);
        ProgramRun program(product);
        program.environment.insert(u"TZ"_s, u"NOON%1"_s.arg(behind));
        program.Open();
        EXPECT_THAT(saver.NextCall(), testing::StartsWith("0 scout "));
        EXPECT_EQ(saver.NextCall(), "0 backup --daily");
        EXPECT_EQ(QDir(product.File(u"backup"_s)).entryList(QDir::Files | QDir::Hidden).join(u' ').toStdString(),
                  "TARUNECLIENT-" + day.toStdString() + ".fbk");
        QFile backup(product.File(u"backup/TARUNECLIENT-%1.fbk"_s.arg(day)));
        EXPECT_TRUE(backup.open(QIODevice::ReadOnly));
        const QByteArray content = backup.readAll();
        EXPECT_FALSE(content.isEmpty());
        EXPECT_TRUE(saved.isEmpty() || content == saved) << "made anew";
        saved = content;
        EXPECT_EQ(program.Quit(), 0);
    }
}

TEST(Start, ReadsAStrangersCanonWithoutRunningIt)
{
    ProductCopy product;
    const QByteArray notes = BytesOf(product.File(u"TARUNECLIENT.FDB"_s));
    QFile::remove(product.File(u"TARUNECLIENT.FDB"_s)); // whatever is there later, the canon has made
    Overwrite(product.File(u"NOTES.FDB"_s), notes);
    Overwrite(product.File(u"KELORA.FDB"_s), StrangersCanon(QString(uR"(set term ^ ;
create trigger T on connect as begin
  execute statement 'drop table SUTTA_LIST' on external '%1/NOTES.FDB' as user 'SYSDBA' password 'x';
end^
create trigger U on transaction start as begin execute statement 'create shadow 1 ''%1/PREY'''; end^
set term ; ^
)"_s)
                                                                .replace(u"%1"_s, product.Folder())));
    ProgramRun program(product);
    program.Open();
    EXPECT_EQ(program.Send(u"get qryTreeSutas RecordCount"_s), u"3"_s);
    EXPECT_EQ(program.Quit(), 0);
    EXPECT_EQ(BytesOf(product.File(u"NOTES.FDB"_s)), notes);
    EXPECT_FALSE(QFile::exists(product.File(u"PREY"_s)));
}

TEST(TwoCopies, ToldWhichFileDoesNotAnswerWhileTheFirstIsStopped)
{
    ProductCopy product;
    ProgramRun first(product), second(product);
    first.Open();
    ::kill(static_cast<pid_t>(first.ProcessId()), SIGSTOP);
    second.Start();
    second.Do({u"wait frmDatabaseWait"_s});
    EXPECT_THAT(second.Send(u"get lbDatabaseWait text"_s).toStdString(), testing::HasSubstr("KELORA.FDB"));
    ::kill(static_cast<pid_t>(first.ProcessId()), SIGCONT);
    second.Do({u"wait-gone frmDatabaseWait"_s, u"wait frmMain"_s});
    EXPECT_EQ(second.Quit(), 0);
    EXPECT_EQ(first.Quit(), 0);
}

TEST(TwoCopies, ReadKeepTheirSettingsAndEnd)
{
    ProductCopy product;
    ProgramRun first(product), second(product);
    first.Open();
    second.Open();
    EXPECT_GT(second.Send(u"get qryTreeSutas RecordCount"_s).toInt(), 200);
    first.Do({u"click btnVietPali"_s, u"wait-page ebContent"_s});
    second.Do({u"trigger acMarginWidth2"_s, u"wait-page ebContent"_s});
    EXPECT_EQ(product.StoredOption(u"LanguageSutta"_s), 10);
    EXPECT_EQ(product.StoredOption(u"MarginWidth"_s), 2);
    EXPECT_EQ(first.Quit(), 0);
    ::kill(static_cast<pid_t>(second.ProcessId()), SIGTERM);
    EXPECT_NE(second.ExitCode(10000), -2) << "still running after a signal";
}

TEST(Leaving, WithAnOpenDialogEndsCleanly)
{
    for (const auto &[action, window] : {std::pair(u"acFindDialog"_s, u"dlgFind"_s),
                                         {u"acPrintPreview"_s, u"frmPrintPreview"_s},
                                         {u"acPrint"_s, u"dlgPrint"_s},
                                         {u"acSave"_s, u"dlgSave"_s}}) {
        ProductCopy product;
        ProgramRun program(product);
        program.Open();
        program.Do({u"trigger "_s + action, u"wait "_s + window});
        EXPECT_EQ(program.Quit(), 0) << program.ErrorOutput().constData();
    }
}

} // namespace
