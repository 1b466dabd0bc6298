#include "stores/JsonRegistry.h"

#include "support/FailingDisk.h"
#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QScopeGuard>

#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString Options = u"\\Software\\Melko\\Kelora\\Options\\"_s;
const QString StartList = u"\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run"_s;
const QString A = u"A"_s;
const QString B = u"B"_s;

class StoredSettings : public testing::Test
{
protected:
    JsonRegistry Make(SettingsDisk &disk = RealSettingsDisk())
    {
        return JsonRegistry(m_folder.Path(u"lumivara"_s), m_folder.Path(u"autostart"_s), disk);
    }
    JsonRegistry MakeOpen()
    {
        JsonRegistry registry = Make();
        EXPECT_TRUE(registry.OpenKey(Options, true));
        return registry;
    }
    QString File() const { return m_folder.Path(u"lumivara/registry.json"_s); }
    QStringList SetAside() const
    {
        return QDir(m_folder.Path(u"lumivara"_s)).entryList({u"registry.damaged-*.json"_s}, QDir::Files, QDir::Name);
    }

    ScratchFolder m_folder;
};

TEST_F(StoredSettings, TypesAreNotMixed)
{
    JsonRegistry registry = MakeOpen();
    registry.WriteInteger(u"I"_s, -5);
    registry.WriteString(u"S"_s, u"5"_s);
    registry.WriteExpandString(u"E"_s, u"%x%"_s);
    registry.WriteBinaryData(u"Y"_s, QByteArray("\0\xFF", 2));
    const auto read = [&registry](const QString &name) {
        QStringList values{QString::number(static_cast<int>(registry.GetDataType(name))),
                           QString::number(registry.GetDataSize(name))};
        const std::function<QString()> readers[]{
            [&] { return QString::number(registry.ReadInteger(name)); }, [&] { return registry.ReadString(name); },
            [&] { return QString::fromLatin1(registry.ReadBinaryData(name).toHex()); }};
        for (const auto &reader : readers) {
            try {
                values.append(reader());
            } catch (const RegistryError &) {
                values.append(u"!"_s);
            }
        }
        return values.join(u' ').toStdString();
    };
    // Type and size, then as integer, as text and as bytes; the case of a name does not count.
    EXPECT_EQ(read(u"i"_s), "3 -1 -5 ! !");
    EXPECT_EQ(read(u"s"_s), "1 -1 ! 5 !");
    EXPECT_EQ(read(u"E"_s), "2 -1 ! %x% !");
    EXPECT_EQ(read(u"Y"_s), "4 2 ! ! 00ff");
    EXPECT_EQ(read(u"none"_s), "0 -1 !  !");
    EXPECT_TRUE(registry.ReadBool(u"i"_s));
}

TEST_F(StoredSettings, ReadingMakesNoKeyAndOnlyAnOpenOneIsWritten)
{
    JsonRegistry registry = Make();
    EXPECT_FALSE(registry.OpenKeyReadOnly(Options));
    EXPECT_FALSE(registry.LastErrorText().isEmpty());
    EXPECT_FALSE(registry.OpenKey(Options, false));
    EXPECT_FALSE(QDir(m_folder.Path(u"lumivara"_s)).exists());
    MakeOpen().WriteInteger(A, 1);
    EXPECT_TRUE(registry.OpenKeyReadOnly(Options));
    EXPECT_THROW(registry.WriteInteger(A, 2), RegistryError);
    EXPECT_EQ(registry.ReadInteger(A), 1);
    registry.CloseKey();
    EXPECT_THROW(registry.ReadInteger(A), RegistryError);
}

TEST_F(StoredSettings, TwoCopiesSeeEachOtherAndUndoNothing)
{
    JsonRegistry one = MakeOpen();
    JsonRegistry two = MakeOpen();
    one.WriteInteger(A, 1);
    two.WriteInteger(B, 2);
    EXPECT_EQ(two.ReadInteger(A), 1);
    one.WriteInteger(A, 3);
    EXPECT_EQ(one.ReadInteger(B), 2);
    EXPECT_EQ(two.ReadInteger(A), 3);
}

TEST_F(StoredSettings, TwoProcessesLoseNoWrite)
{
    constexpr int writes = 150;
    MakeOpen();
    const auto hammer = [this](const QString &prefix) {
        JsonRegistry registry = Make();
        if (!registry.OpenKey(Options, true))
            throw RegistryError(registry.LastErrorText());
        for (int i = 0; i < writes; ++i) {
            registry.WriteInteger(prefix + QString::number(i), i);
            // The lock is not fair: who takes it again at once can keep the other out for longer than that waits.
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    };
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            hammer(u"child"_s);
            ::_exit(0);
        } catch (...) {
            ::_exit(1);
        }
    }
    EXPECT_NO_THROW(hammer(u"parent"_s));
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    JsonRegistry registry = MakeOpen();
    for (int i = 0; i < writes; ++i) {
        EXPECT_EQ(registry.ReadInteger(u"child"_s + QString::number(i)), i);
        EXPECT_EQ(registry.ReadInteger(u"parent"_s + QString::number(i)), i);
    }
}

TEST_F(StoredSettings, LockOfAStuckCopyFailsTheWriteAndNoReadAndThatOfAKilledOneIsNone)
{
    JsonRegistry registry = MakeOpen();
    registry.WriteInteger(A, 1);
    int ready[2];
    EXPECT_EQ(::pipe(ready), 0);
    const pid_t holder = ::fork();
    if (holder == 0) {
        QString errorText;
        const auto lock = RealSettingsDisk().Acquire(m_folder.Path(u"lumivara/registry.lock"_s),
                                                     std::chrono::milliseconds(0), errorText);
        if (lock && ::write(ready[1], "x", 1) == 1)
            ::pause();
        ::_exit(1);
    }
    char byte = 0;
    ::close(ready[1]);
    EXPECT_EQ(::read(ready[0], &byte, 1), 1);
    ::close(ready[0]);
    EXPECT_THROW(registry.WriteInteger(A, 2), RegistryError);
    EXPECT_EQ(registry.ReadInteger(A), 1);
    ::kill(holder, SIGKILL);
    ::waitpid(holder, nullptr, 0);
    registry.WriteInteger(A, 3);
    EXPECT_EQ(registry.ReadInteger(A), 3);
}

TEST_F(StoredSettings, DamagedFilesAreKeptUnderNamesOfTheirOwn)
{
    FailingDisk disk;
    disk.now = QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7));
    const QList<QByteArray> damaged{QByteArray(), "{\"keys\":{", QByteArray(1000, '\xA5'), "{\"keys\":7}"};
    for (const QByteArray &bytes : damaged) {
        WriteFile(File(), bytes);
        JsonRegistry registry = Make(disk);
        EXPECT_FALSE(registry.OpenKeyReadOnly(Options));
        EXPECT_FALSE(QFile::exists(File()));
    }
    const QStringList names{u"registry.damaged-20260304-050607.json"_s, u"registry.damaged-20260304-050607-2.json"_s,
                            u"registry.damaged-20260304-050607-3.json"_s, u"registry.damaged-20260304-050607-4.json"_s};
    EXPECT_THAT(SetAside(), testing::UnorderedElementsAreArray(names));
    for (qsizetype i = 0; i < names.size(); ++i)
        EXPECT_EQ(BytesOf(m_folder.Path(u"lumivara/"_s + names[i])), damaged[i]) << i;
    EXPECT_TRUE(Make(disk).OpenKey(Options, true));
    EXPECT_EQ(SetAside().size(), names.size());
}

TEST_F(StoredSettings, FileDamagedUnderAnOpenKeyIsKeptBeforeTheNextWrite)
{
    JsonRegistry registry = MakeOpen();
    WriteFile(File(), "garbage");
    registry.WriteInteger(A, 1);
    EXPECT_EQ(registry.ReadInteger(A), 1);
    EXPECT_EQ(SetAside().size(), 1);
}

TEST_F(StoredSettings, FailedWriteLeavesTheOldSettingsWhole)
{
    for (const auto lasting : {FailingDisk::Lasting::Once, FailingDisk::Lasting::ForGood}) {
        for (int n = 1, fired = 1; fired; ++n) {
            QFile::remove(File());
            MakeOpen().WriteString(A, u"old"_s);
            FailingDisk disk(n, lasting);
            JsonRegistry registry = Make(disk);
            bool stored = registry.OpenKey(Options, true);
            try {
                if (stored)
                    registry.WriteString(A, u"new"_s);
            } catch (const RegistryError &error) {
                EXPECT_FALSE(error.Text().isEmpty());
                stored = false;
            }
            fired = disk.Fired();
            EXPECT_EQ(stored, !fired) << n;
            EXPECT_EQ(MakeOpen().ReadString(A), stored ? u"new"_s : u"old"_s) << n;
        }
    }
}

TEST_F(StoredSettings, FailuresNeverLoseADamagedFile)
{
    const QByteArray damaged = "{\"keys\": … cut";
    for (int n = 1, fired = 1; fired; ++n) {
        QDir(m_folder.Path(u"lumivara"_s)).removeRecursively();
        WriteFile(File(), damaged);
        FailingDisk disk(n);
        JsonRegistry registry = Make(disk);
        try {
            if (registry.OpenKey(Options, true))
                registry.WriteInteger(A, 1);
        } catch (const RegistryError &) {
            EXPECT_TRUE(disk.Fired());
        }
        fired = disk.Fired();
        const QStringList aside = SetAside();
        const QString kept = aside.isEmpty() ? File() : m_folder.Path(u"lumivara/"_s + aside.first());
        EXPECT_EQ(BytesOf(kept), damaged) << n;
    }
}

TEST_F(StoredSettings, WritesOnlyWhatIsNotStoredYet)
{
    JsonRegistry registry = MakeOpen();
    registry.WriteInteger(A, 1);
    const QByteArray marked = BytesOf(File()) + ' ';
    WriteFile(File(), marked);
    registry.WriteInteger(A, 1);
    EXPECT_EQ(BytesOf(File()), marked);
    registry.WriteString(A, u"1"_s);
    EXPECT_NE(BytesOf(File()), marked) << "of another type";
}

TEST_F(StoredSettings, PermissionsThatAreMissingRefuseKeysAndChangeNothing)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may read and write everything";
    MakeOpen().WriteInteger(A, 1);
    const QByteArray before = BytesOf(File());
    const QStringList places{File(), m_folder.Path(u"lumivara"_s), m_folder.Path(QString())};
    for (const QString &place : places)
        QFile::setPermissions(place, QFile::ReadOwner | QFile::ExeOwner);
    JsonRegistry registry = Make();
    EXPECT_FALSE(registry.OpenKey(Options, true));
    EXPECT_FALSE(registry.LastErrorText().isEmpty());
    EXPECT_FALSE(registry.OpenKey(Options, false));
    EXPECT_TRUE(registry.OpenKeyReadOnly(Options));
    EXPECT_EQ(registry.ReadInteger(A), 1);
    registry.RootKey = RegistryRoot::LocalMachine;
    EXPECT_FALSE(registry.OpenKey(StartList, true));
    for (auto place = places.crbegin(); place != places.crend(); ++place)
        QFile::setPermissions(*place, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    QFile::setPermissions(File(), {});
    EXPECT_FALSE(Make().OpenKeyReadOnly(Options));
    EXPECT_FALSE(Make().OpenKey(Options, true));
    QFile::setPermissions(File(), QFile::ReadOwner);
    EXPECT_EQ(BytesOf(File()), before);
    EXPECT_TRUE(SetAside().isEmpty());
}

TEST_F(StoredSettings, FileThatBecomesUnreadableIsNotOverwritten)
{
    class FadingDisk : public FailingDisk
    {
    public:
        bool isUnreadable = false;
        ReadResult Read(const QString &path, QByteArray &bytes, QString &errorText) override
        {
            return isUnreadable ? ReadResult::Failed : FailingDisk::Read(path, bytes, errorText);
        }
    } disk;
    MakeOpen().WriteInteger(A, 1);
    JsonRegistry registry = Make(disk);
    EXPECT_TRUE(registry.OpenKey(Options, true));
    disk.isUnreadable = true;
    EXPECT_THROW(registry.WriteInteger(B, 2), RegistryError);
    EXPECT_EQ(MakeOpen().ReadInteger(A), 1);
    EXPECT_TRUE(SetAside().isEmpty());
}

TEST(RegistryPlaces, ThatCannotBeAreRefusedWithoutACrash)
{
    ScratchFolder folder;
    WriteFile(folder.Path(u"file"_s), "x");
    QDir().mkpath(folder.Path(u"busy/registry.json"_s));
    // No home; a folder below a file; a folder where the file should be.
    for (const QString &place : {QString(), folder.Path(u"file/lumivara"_s), folder.Path(u"busy"_s)}) {
        JsonRegistry registry(place, place);
        EXPECT_FALSE(registry.OpenKeyReadOnly(Options)) << place.toStdString();
        EXPECT_FALSE(registry.OpenKey(Options, true)) << place.toStdString();
        EXPECT_FALSE(registry.LastErrorText().isEmpty()) << place.toStdString();
    }
}

TEST_F(StoredSettings, MachineHasTheStartListAlone)
{
    JsonRegistry registry = Make();
    registry.RootKey = RegistryRoot::LocalMachine;
    EXPECT_FALSE(registry.OpenKey(Options, true));
    EXPECT_FALSE(registry.OpenKeyReadOnly(Options));
    EXPECT_TRUE(registry.OpenKeyReadOnly(StartList));
    EXPECT_EQ(registry.ReadString(u"Kelora"_s), QString());
    EXPECT_EQ(registry.GetDataType(u"Kelora"_s), RegistryType::Unknown);
    EXPECT_TRUE(registry.OpenKey(StartList.toLower(), false));
    EXPECT_THROW(registry.WriteInteger(u"Kelora"_s, 1), RegistryError);
    EXPECT_THROW(registry.WriteBinaryData(u"Kelora"_s, "x"), RegistryError);
    EXPECT_THROW(registry.WriteString(u"../outside"_s, A), RegistryError);
    EXPECT_THROW(registry.WriteString(QString(), A), RegistryError);
    EXPECT_FALSE(QFile::exists(m_folder.Path(u"outside.desktop"_s)));

    const QString command = u"\"/opt/a b/Lumivara\""_s;
    registry.WriteString(u"Kelora"_s, command);
    EXPECT_EQ(registry.ReadString(u"Kelora"_s), command);
    EXPECT_TRUE(BytesOf(m_folder.Path(u"autostart/Kelora.desktop"_s)).contains("Exec=\"/opt/a b/"));
    registry.WriteString(u"KELORA"_s, QString());
    EXPECT_EQ(registry.GetDataType(u"Kelora"_s), RegistryType::String);
    EXPECT_EQ(registry.ReadString(u"Kelora"_s), QString());
    EXPECT_EQ(QDir(m_folder.Path(u"autostart"_s)).entryList(QDir::Files), QStringList{u"Kelora.desktop"_s});
    registry.WriteExpandString(u"Kelora"_s, u"$HOME/x"_s);
    EXPECT_EQ(registry.GetDataType(u"Kelora"_s), RegistryType::ExpandString);
}

TEST_F(StoredSettings, StartListRunsTheLauncherThatTheProgramsFolderNames)
{
    JsonRegistry registry = Make();
    registry.RootKey = RegistryRoot::LocalMachine;
    EXPECT_TRUE(registry.OpenKey(StartList, true));
    const QString command = u"\"%1\""_s.arg(m_folder.Path(u"Lumivara"_s));
    for (const QByteArray &note : {QByteArray("/usr/bin/lumivara\n"), QByteArray("nonsense")}) {
        WriteFile(m_folder.Path(u"launcher"_s), note);
        registry.WriteString(u"Kelora"_s, command);
        EXPECT_EQ(registry.ReadString(u"Kelora"_s), command);
        EXPECT_EQ(BytesOf(m_folder.Path(u"autostart/Kelora.desktop"_s))
                      .contains("\nTryExec=/usr/bin/lumivara\nExec=\"/usr/bin/lumivara\"\n"),
                  note.startsWith('/'));
    }
}

TEST(SystemRegistry, StandsInTheUsersConfigurationFolderAndNowhereWithoutOne)
{
    const ScratchFolder folder;
    const auto restore = qScopeGuard([home = qgetenv("HOME"), place = qgetenv("XDG_CONFIG_HOME")] {
        qputenv("HOME", home);
        qputenv("XDG_CONFIG_HOME", place);
    });
    qputenv("XDG_CONFIG_HOME", folder.Path(u"c"_s).toUtf8());
    auto registry = CreateSystemRegistry();
    EXPECT_TRUE(registry->OpenKey(Options, true));
    registry->WriteInteger(A, 1);
    EXPECT_TRUE(QFile::exists(folder.Path(u"c/lumivara/registry.json"_s)));
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("HOME");
    registry = CreateSystemRegistry();
    EXPECT_FALSE(registry->OpenKeyReadOnly(Options));
    EXPECT_FALSE(registry->OpenKey(Options, true));
    registry->RootKey = RegistryRoot::LocalMachine;
    EXPECT_FALSE(registry->OpenKey(StartList, true));
    EXPECT_FALSE(QFile::exists(u"/.config/lumivara"_s));
}

} // namespace
