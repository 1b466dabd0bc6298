#include "stores/JsonRegistry.h"

#include "support/FailingDisk.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <csignal>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString Options = QStringLiteral("\\Software\\Melko\\Kelora\\Options\\");
const QString StartList = QStringLiteral("\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run");
const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");

void WriteFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()) << path.toStdString();
}

QByteArray ReadFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(none)");
}

class StoredSettings : public testing::Test
{
protected:
    JsonRegistry Make(SettingsDisk &disk = RealSettingsDisk())
    {
        return JsonRegistry(m_folder.Path(QStringLiteral("lumivara")), m_folder.Path(QStringLiteral("autostart")),
                            disk);
    }
    JsonRegistry MakeOpen()
    {
        JsonRegistry registry = Make();
        EXPECT_TRUE(registry.OpenKey(Options, true));
        return registry;
    }
    QString File() const { return m_folder.Path(QStringLiteral("lumivara/registry.json")); }
    QStringList SetAside() const
    {
        return QDir(m_folder.Path(QStringLiteral("lumivara")))
            .entryList({QStringLiteral("registry.damaged-*.json")}, QDir::Files, QDir::Name);
    }

    ScratchFolder m_folder;
};

TEST_F(StoredSettings, FirstRunHasNoKeyAndReadingMakesNone)
{
    JsonRegistry registry = Make();
    EXPECT_FALSE(registry.OpenKeyReadOnly(Options));
    EXPECT_FALSE(registry.LastErrorText().isEmpty());
    EXPECT_FALSE(registry.OpenKey(Options, false));
    EXPECT_FALSE(QDir(m_folder.Path(QStringLiteral("lumivara"))).exists());
    EXPECT_TRUE(registry.OpenKey(Options, true));
    EXPECT_TRUE(Make().OpenKeyReadOnly(Options));
}

TEST_F(StoredSettings, TypesAreNotMixed)
{
    JsonRegistry registry = MakeOpen();
    registry.WriteInteger(QStringLiteral("I"), -5);
    registry.WriteString(QStringLiteral("S"), QStringLiteral("5"));
    registry.WriteExpandString(QStringLiteral("E"), QStringLiteral("%x%"));
    registry.WriteBinaryData(QStringLiteral("Y"), QByteArray("\0\xFF", 2));

    const struct
    {
        QString name;
        RegistryType type;
        int size;
    } values[] = {{QStringLiteral("I"), RegistryType::Integer, -1},
                  {QStringLiteral("S"), RegistryType::String, -1},
                  {QStringLiteral("E"), RegistryType::ExpandString, -1},
                  {QStringLiteral("Y"), RegistryType::Binary, 2},
                  {QStringLiteral("none"), RegistryType::Unknown, -1}};
    for (const auto &value : values) {
        EXPECT_EQ(registry.GetDataType(value.name), value.type) << value.name.toStdString();
        EXPECT_EQ(registry.GetDataSize(value.name), value.size) << value.name.toStdString();
        if (value.type != RegistryType::Integer) {
            EXPECT_THROW(registry.ReadInteger(value.name), RegistryError) << value.name.toStdString();
        }
        if (value.type != RegistryType::Binary) {
            EXPECT_THROW(registry.ReadBinaryData(value.name), RegistryError) << value.name.toStdString();
        }
    }
    EXPECT_EQ(registry.ReadInteger(QStringLiteral("I")), -5);
    EXPECT_TRUE(registry.ReadBool(QStringLiteral("i")));
    EXPECT_EQ(registry.ReadString(QStringLiteral("s")), QStringLiteral("5"));
    EXPECT_EQ(registry.ReadString(QStringLiteral("E")), QStringLiteral("%x%"));
    EXPECT_EQ(registry.ReadString(QStringLiteral("none")), QString());
    EXPECT_EQ(registry.ReadBinaryData(QStringLiteral("Y")), QByteArray("\0\xFF", 2));
    EXPECT_THROW(registry.ReadString(QStringLiteral("I")), RegistryError);
    EXPECT_THROW(registry.ReadString(QStringLiteral("Y")), RegistryError);
}

TEST_F(StoredSettings, ReadOnlyKeyRefusesWritesAndClosedKeyReads)
{
    MakeOpen().WriteInteger(A, 1);
    JsonRegistry registry = Make();
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
            hammer(QStringLiteral("child"));
            ::_exit(0);
        } catch (...) {
            ::_exit(1);
        }
    }
    EXPECT_NO_THROW(hammer(QStringLiteral("parent")));
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    JsonRegistry registry = MakeOpen();
    for (int i = 0; i < writes; ++i) {
        EXPECT_EQ(registry.ReadInteger(QStringLiteral("child") + QString::number(i)), i);
        EXPECT_EQ(registry.ReadInteger(QStringLiteral("parent") + QString::number(i)), i);
    }
}

/// A process that holds the settings' lock until it is ended.
class LockHolder
{
public:
    explicit LockHolder(const QString &lockFile)
    {
        int ready[2];
        EXPECT_EQ(::pipe(ready), 0);
        m_process = ::fork();
        if (m_process == 0) {
            QString errorText;
            const auto lock = RealSettingsDisk().Acquire(lockFile, std::chrono::milliseconds(0), errorText);
            if (lock && ::write(ready[1], "x", 1) == 1)
                ::pause();
            ::_exit(1);
        }
        char byte = 0;
        EXPECT_EQ(::read(ready[0], &byte, 1), 1);
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~LockHolder() { Kill(); }
    void Kill()
    {
        if (m_process <= 0)
            return;
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        m_process = 0;
    }

private:
    pid_t m_process = 0;
};

TEST_F(StoredSettings, LockOfAKilledCopyIsNone)
{
    JsonRegistry registry = MakeOpen();
    LockHolder holder(m_folder.Path(QStringLiteral("lumivara/registry.lock")));
    holder.Kill();
    registry.WriteInteger(A, 1);
    EXPECT_EQ(registry.ReadInteger(A), 1);
}

TEST_F(StoredSettings, LockOfAStuckCopyFailsTheWriteAndNoRead)
{
    JsonRegistry registry = MakeOpen();
    registry.WriteInteger(A, 1);
    const LockHolder holder(m_folder.Path(QStringLiteral("lumivara/registry.lock")));
    EXPECT_THROW(registry.WriteInteger(A, 2), RegistryError);
    EXPECT_EQ(registry.ReadInteger(A), 1);
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
    const QStringList names{QStringLiteral("registry.damaged-20260304-050607.json"),
                            QStringLiteral("registry.damaged-20260304-050607-2.json"),
                            QStringLiteral("registry.damaged-20260304-050607-3.json"),
                            QStringLiteral("registry.damaged-20260304-050607-4.json")};
    EXPECT_THAT(SetAside(), testing::UnorderedElementsAreArray(names));
    for (qsizetype i = 0; i < names.size(); ++i)
        EXPECT_EQ(ReadFile(m_folder.Path(QStringLiteral("lumivara/") + names[i])), damaged[i]) << i;
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
            MakeOpen().WriteString(A, QStringLiteral("old"));
            FailingDisk disk(n, lasting);
            JsonRegistry registry = Make(disk);
            bool stored = registry.OpenKey(Options, true);
            try {
                if (stored)
                    registry.WriteString(A, QStringLiteral("new"));
            } catch (const RegistryError &error) {
                EXPECT_FALSE(error.Text().isEmpty());
                stored = false;
            }
            fired = disk.Fired();
            EXPECT_EQ(stored, !fired) << n;
            EXPECT_EQ(MakeOpen().ReadString(A), stored ? QStringLiteral("new") : QStringLiteral("old")) << n;
        }
    }
}

TEST_F(StoredSettings, FailuresNeverLoseADamagedFile)
{
    const QByteArray damaged = "{\"keys\": … cut";
    for (int n = 1, fired = 1; fired; ++n) {
        QDir(m_folder.Path(QStringLiteral("lumivara"))).removeRecursively();
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
        const QString kept = aside.isEmpty() ? File() : m_folder.Path(QStringLiteral("lumivara/") + aside.first());
        EXPECT_EQ(ReadFile(kept), damaged) << n;
    }
}

TEST_F(StoredSettings, FullDiskRefusesToMakeAKeyButFailsAWrite)
{
    FailingDisk full(1, FailingDisk::Lasting::ForGood);
    EXPECT_FALSE(Make(full).OpenKey(Options, true));
    JsonRegistry writer = MakeOpen();
    FailingDisk later(2, FailingDisk::Lasting::ForGood);
    JsonRegistry registry = Make(later);
    EXPECT_TRUE(registry.OpenKey(Options, true));
    EXPECT_THROW(registry.WriteInteger(A, 1), RegistryError);
    EXPECT_EQ(writer.GetDataType(A), RegistryType::Unknown);
}

TEST_F(StoredSettings, WritesOnlyWhatIsNotStoredYet)
{
    JsonRegistry registry = MakeOpen();
    registry.WriteInteger(A, 1);
    const QByteArray marked = ReadFile(File()) + ' ';
    WriteFile(File(), marked);
    registry.WriteInteger(A, 1);
    EXPECT_EQ(ReadFile(File()), marked);
    registry.WriteString(A, QStringLiteral("1"));
    EXPECT_NE(ReadFile(File()), marked) << "of another type";
}

/// Root may write everywhere; the rules of permission hold for others.
class AsOrdinaryUser
{
public:
    AsOrdinaryUser()
    {
        if (::geteuid() == 0) {
            EXPECT_EQ(::seteuid(65534), 0);
        }
    }
    ~AsOrdinaryUser()
    {
        if (::getuid() == 0) {
            EXPECT_EQ(::seteuid(0), 0);
        }
    }
};

QFile::Permissions Mode(int octal)
{
    // Qt's flags are the system's with four bits for each class.
    return QFile::Permissions(((octal & 0700) << 6) | ((octal & 0070) << 1) | (octal & 0007));
}

TEST_F(StoredSettings, UnwritableFolderIsReadAndRefusesWriting)
{
    MakeOpen().WriteInteger(A, 1);
    const QString top = m_folder.Path(QString());
    const QString folder = m_folder.Path(QStringLiteral("lumivara"));
    QFile::setPermissions(File(), Mode(0444));
    QFile::setPermissions(folder, Mode(0555));
    QFile::setPermissions(top, Mode(0555));
    {
        const AsOrdinaryUser user;
        JsonRegistry registry = Make();
        EXPECT_FALSE(registry.OpenKey(Options, true));
        EXPECT_FALSE(registry.LastErrorText().isEmpty());
        EXPECT_FALSE(registry.OpenKey(Options, false));
        EXPECT_TRUE(registry.OpenKeyReadOnly(Options));
        EXPECT_EQ(registry.ReadInteger(A), 1);
        registry.RootKey = RegistryRoot::LocalMachine;
        EXPECT_FALSE(registry.OpenKey(StartList, true));
    }
    QFile::setPermissions(top, Mode(0755));
    QFile::setPermissions(folder, Mode(0755));
}

TEST_F(StoredSettings, UnreadableFileStaysAndOpensNoKey)
{
    MakeOpen().WriteInteger(A, 1);
    const QByteArray before = ReadFile(File());
    QFile::setPermissions(m_folder.Path(QString()), Mode(0755));
    QFile::setPermissions(m_folder.Path(QStringLiteral("lumivara")), Mode(0777));
    QFile::setPermissions(File(), Mode(0000));
    {
        const AsOrdinaryUser user;
        EXPECT_FALSE(Make().OpenKeyReadOnly(Options));
        EXPECT_FALSE(Make().OpenKey(Options, true));
    }
    QFile::setPermissions(File(), Mode(0600));
    EXPECT_EQ(ReadFile(File()), before);
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
    WriteFile(folder.Path(QStringLiteral("file")), "x");
    QDir().mkpath(folder.Path(QStringLiteral("busy/registry.json")));
    // No home; a folder below a file; a folder where the file should be.
    for (const QString &place :
         {QString(), folder.Path(QStringLiteral("file/lumivara")), folder.Path(QStringLiteral("busy"))}) {
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
    EXPECT_EQ(registry.ReadString(QStringLiteral("Kelora")), QString());
    EXPECT_EQ(registry.GetDataType(QStringLiteral("Kelora")), RegistryType::Unknown);
    EXPECT_TRUE(registry.OpenKey(StartList.toLower(), false));

    const QString command = QStringLiteral("\"/opt/a b/Lumivara\"");
    registry.WriteString(QStringLiteral("Kelora"), command);
    EXPECT_EQ(registry.ReadString(QStringLiteral("Kelora")), command);
    EXPECT_TRUE(ReadFile(m_folder.Path(QStringLiteral("autostart/Kelora.desktop"))).contains("Exec=\"/opt/a b/"));
    registry.WriteString(QStringLiteral("KELORA"), QString());
    EXPECT_EQ(registry.GetDataType(QStringLiteral("Kelora")), RegistryType::String);
    EXPECT_EQ(registry.ReadString(QStringLiteral("Kelora")), QString());
    EXPECT_EQ(QDir(m_folder.Path(QStringLiteral("autostart"))).entryList(QDir::Files),
              QStringList{QStringLiteral("Kelora.desktop")});
    registry.WriteExpandString(QStringLiteral("Kelora"), QStringLiteral("$HOME/x"));
    EXPECT_EQ(registry.GetDataType(QStringLiteral("Kelora")), RegistryType::ExpandString);
}

TEST_F(StoredSettings, StartListRunsTheLauncherThatTheProgramsFolderNames)
{
    JsonRegistry registry = Make();
    registry.RootKey = RegistryRoot::LocalMachine;
    EXPECT_TRUE(registry.OpenKey(StartList, true));
    const QString command = QStringLiteral("\"%1\"").arg(m_folder.Path(QStringLiteral("Lumivara")));
    for (const QByteArray &note : {QByteArray("/usr/bin/lumivara\n"), QByteArray("nonsense")}) {
        WriteFile(m_folder.Path(QStringLiteral("launcher")), note);
        registry.WriteString(QStringLiteral("Kelora"), command);
        EXPECT_EQ(registry.ReadString(QStringLiteral("Kelora")), command);
        EXPECT_EQ(ReadFile(m_folder.Path(QStringLiteral("autostart/Kelora.desktop")))
                      .contains("\nTryExec=/usr/bin/lumivara\nExec=\"/usr/bin/lumivara\"\n"),
                  note.startsWith('/'));
    }
}

TEST_F(StoredSettings, StartListHoldsCommandsUnderFileNamesOnly)
{
    JsonRegistry registry = Make();
    registry.RootKey = RegistryRoot::LocalMachine;
    EXPECT_TRUE(registry.OpenKey(StartList, true));
    EXPECT_THROW(registry.WriteInteger(QStringLiteral("Kelora"), 1), RegistryError);
    EXPECT_THROW(registry.WriteBinaryData(QStringLiteral("Kelora"), "x"), RegistryError);
    EXPECT_THROW(registry.WriteString(QStringLiteral("../outside"), A), RegistryError);
    EXPECT_THROW(registry.WriteString(QString(), A), RegistryError);
    EXPECT_FALSE(QFile::exists(m_folder.Path(QStringLiteral("outside.desktop"))));
}

/// What the environment says, put back at the end.
class Environment
{
public:
    Environment(const char *name, const QByteArray &value)
        : m_name(name), m_was(qgetenv(name)), m_had(qEnvironmentVariableIsSet(name))
    {
        value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }
    ~Environment() { m_had ? qputenv(m_name, m_was) : qunsetenv(m_name); }

private:
    const char *m_name;
    QByteArray m_was;
    bool m_had;
};

TEST(SystemRegistry, StandsInTheUsersConfigurationFolder)
{
    ScratchFolder folder;
    const Environment place("XDG_CONFIG_HOME", folder.Path(QStringLiteral("c")).toUtf8());
    const auto registry = CreateSystemRegistry();
    EXPECT_TRUE(registry->OpenKey(Options, true));
    registry->WriteInteger(A, 1);
    EXPECT_TRUE(QFile::exists(folder.Path(QStringLiteral("c/lumivara/registry.json"))));
}

TEST(SystemRegistry, OfAUserWithoutAHomeIsRefused)
{
    const Environment home("HOME", QByteArray());
    const Environment place("XDG_CONFIG_HOME", QByteArray());
    const auto registry = CreateSystemRegistry();
    EXPECT_FALSE(registry->OpenKeyReadOnly(Options));
    EXPECT_FALSE(registry->OpenKey(Options, true));
    registry->RootKey = RegistryRoot::LocalMachine;
    EXPECT_FALSE(registry->OpenKey(StartList, true));
    EXPECT_FALSE(QFile::exists(QStringLiteral("/.config/lumivara")));
}

} // namespace
