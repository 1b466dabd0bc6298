#include "stores/settings/JsonRegistry.h"

#include "support/FailingDisk.h"
#include "support/FullDisk.h"
#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString Options = u"\\Software\\Melko\\Kelora\\Options\\"_s;
const QString StartList = u"\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run"_s;
const QString Kelora = u"Kelora"_s;
const QString A = u"A"_s;

class StoredSettings : public testing::Test
{
protected:
    JsonRegistry Make(SettingsDisk &disk = RealSettingsDisk())
    {
        return JsonRegistry(m_folder.Path(u"lumivara"_s), m_folder.Path(u"autostart"_s), disk);
    }
    JsonRegistry MakeOpen(SettingsDisk &disk = RealSettingsDisk())
    {
        JsonRegistry registry = Make(disk);
        EXPECT_TRUE(registry.OpenKey(Options, true));
        return registry;
    }
    QString File() const { return m_folder.Path(u"lumivara/registry.json"_s); }
    QStringList SetAside() const
    {
        return QDir(m_folder.Path(u"lumivara"_s)).entryList({u"registry.damaged-*.json"_s}, QDir::Files, QDir::Name);
    }
    /// Opens the options and writes; whether that went well.
    static bool Write(JsonRegistry registry, const QString &value)
    {
        try {
            const bool isOpen = registry.OpenKey(Options, true);
            if (isOpen)
                registry.WriteString(A, value);
            return isOpen;
        } catch (const RegistryError &error) {
            EXPECT_FALSE(error.Text().isEmpty());
            return false;
        }
    }

    ScratchFolder m_folder;
};

TEST_F(StoredSettings, TypesAreNotMixed)
{
    JsonRegistry registry = MakeOpen();
    registry.WriteString(u"I"_s, u"-5"_s);
    registry.WriteInteger(u"I"_s, -5);
    registry.WriteBinaryData(u"Y"_s, QByteArray("\0\xFF", 2));
    const auto read = [&registry](const QString &name) {
        const std::function<QString()> readers[]{
            [&] { return QString::number(static_cast<int>(registry.GetDataType(name))); },
            [&] { return QString::number(registry.GetDataSize(name)); },
            [&] { return QString::number(registry.ReadInteger(name)); }, [&] { return registry.ReadString(name); },
            [&] { return QString::fromLatin1(registry.ReadBinaryData(name).toHex()); }};
        std::string values;
        for (const auto &reader : readers) {
            try {
                values += reader().toStdString() + ' ';
            } catch (const RegistryError &) {
                values += "! ";
            }
        }
        return values;
    };
    // Type and size, then as integer, as text and as bytes; the case of a name does not count.
    EXPECT_EQ(read(u"i"_s), "3 -1 -5 ! ! ");
    EXPECT_EQ(read(u"Y"_s), "4 2 ! ! 00ff ");
    EXPECT_EQ(read(u"none"_s), "0 -1 !  ! ");
}

TEST_F(StoredSettings, ReadingMakesNoKeyAndOnlyAnOpenOneIsWritten)
{
    JsonRegistry registry = Make();
    EXPECT_FALSE(registry.OpenKeyReadOnly(Options));
    EXPECT_FALSE(registry.OpenKey(Options, false));
    EXPECT_FALSE(QDir(m_folder.Path(u"lumivara"_s)).exists());
    MakeOpen().WriteInteger(A, 1);
    EXPECT_TRUE(registry.OpenKeyReadOnly(Options));
    EXPECT_THROW(registry.WriteInteger(A, 2), RegistryError);
    EXPECT_EQ(registry.ReadInteger(A), 1);
    registry.CloseKey();
    EXPECT_THROW(registry.ReadInteger(A), RegistryError);
}

TEST_F(StoredSettings, TwoProcessesLoseNoWriteAndSeeThoseOfTheOther)
{
    constexpr int writes = 150;
    JsonRegistry registry = MakeOpen();
    const auto hammer = [&registry](const QString &prefix) {
        for (int i = 0; i < writes;) {
            try {
                registry.WriteInteger(prefix + QString::number(i), i);
                ++i;
            } catch (const RegistryError &error) { // the other one had the lock too long, on a slow disk
                if (error.Text() != qt_error_string(EBUSY))
                    throw;
            }
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
    for (int i = 0; i < writes; ++i)
        for (const QString &prefix : {u"child"_s, u"parent"_s})
            EXPECT_EQ(registry.ReadInteger(prefix + QString::number(i)), i);
}

TEST_F(StoredSettings, LockOfAStuckCopyFailsTheWriteAndNoReadAndThatOfADeadOneIsNone)
{
    JsonRegistry registry = MakeOpen();
    registry.WriteInteger(A, 1);
    QString error;
    const auto acquire = [&] {
        return RealSettingsDisk().Acquire(m_folder.Path(u"lumivara/registry.lock"_s), 0ms, error);
    };
    auto stuck = acquire();
    EXPECT_THROW(registry.WriteInteger(A, 2), RegistryError);
    EXPECT_EQ(registry.ReadInteger(A), 1);
    stuck.reset();
    const pid_t dead = ::fork();
    if (dead == 0)
        ::_exit(acquire().release() ? 0 : 1);
    int status = -1;
    ::waitpid(dead, &status, 0);
    EXPECT_EQ(status, 0);
    registry.WriteInteger(A, 3);
    EXPECT_EQ(registry.ReadInteger(A), 3);
}

TEST_F(StoredSettings, DamagedFilesAreKeptUnderNamesOfTheirOwn)
{
    FailingDisk disk;
    disk.now = QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7));
    JsonRegistry open = MakeOpen(disk);
    QString suffix;
    int number = 1;
    for (const QByteArray &bytes : {QByteArray(), "{\"keys\":{"_ba, QByteArray(1000, '\xA5'), "{\"keys\":7}"_ba}) {
        WriteFile(File(), bytes);
        EXPECT_FALSE(Make(disk).OpenKeyReadOnly(Options));
        EXPECT_FALSE(QFile::exists(File()));
        EXPECT_EQ(BytesOf(m_folder.Path(u"lumivara/registry.damaged-20260304-050607%1.json"_s.arg(suffix))), bytes);
        suffix = u"-%1"_s.arg(++number);
    }
    WriteFile(File(), "damaged while the key is open");
    open.WriteInteger(A, 1);
    EXPECT_EQ(open.ReadInteger(A), 1);
    EXPECT_EQ(SetAside().size(), number);
}

TEST_F(StoredSettings, AFullDiskFailsTheWriteAndLeavesTheOldContent)
{
    JsonRegistry registry = MakeOpen();
    registry.WriteString(A, u"old"_s);
    const QByteArray before = BytesOf(File());
    for (const auto &[room, size] : {std::pair(0, 700), {10, 700}, {10, 100'000}}) { // a file object buffers 16384
        const FullDisk full(static_cast<rlim_t>(room));
        EXPECT_THROW(registry.WriteString(A, QString(size, u'x')), RegistryError) << room;
    }
    EXPECT_EQ(BytesOf(File()), before);
}

TEST_F(StoredSettings, FailedWritesLeaveTheOldSettingsWholeOrADamagedFileKept)
{
    const QByteArray damaged = "{\"keys\": … cut";
    for (const auto &[isDamaged, lasting] : {std::pair(false, FailingDisk::Lasting::Once),
                                             {false, FailingDisk::Lasting::ForGood},
                                             {true, FailingDisk::Lasting::Once}}) {
        for (int n = 1, fired = 1; fired; ++n) {
            QDir(m_folder.Path(u"lumivara"_s)).removeRecursively();
            isDamaged ? WriteFile(File(), damaged) : MakeOpen().WriteString(A, u"old"_s);
            FailingDisk disk(n, lasting);
            const bool stored = Write(Make(disk), u"new"_s);
            fired = disk.Fired();
            EXPECT_TRUE(stored || fired) << n;
            const QStringList aside = SetAside();
            if (isDamaged)
                EXPECT_EQ(BytesOf(aside.isEmpty() ? File() : m_folder.Path(u"lumivara/"_s + aside[0])), damaged) << n;
            else
                EXPECT_EQ(MakeOpen().ReadString(A), stored ? u"new"_s : u"old"_s) << n;
        }
    }
}

TEST_F(StoredSettings, PermissionsThatAreMissingRefuseKeysAndChangeNothing)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may read and write everything";
    MakeOpen().WriteInteger(A, 1);
    const QByteArray before = BytesOf(File());
    const QString folder = m_folder.Path(u"lumivara"_s);
    QFile::setPermissions(File(), QFile::ReadOwner);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    JsonRegistry registry = Make();
    EXPECT_FALSE(registry.OpenKey(Options, true));
    EXPECT_TRUE(registry.OpenKeyReadOnly(Options));
    EXPECT_EQ(registry.ReadInteger(A), 1);
    QFile::setPermissions(File(), {});
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_FALSE(Make().OpenKey(Options, true));
    QFile::setPermissions(File(), QFile::ReadOwner);
    EXPECT_EQ(BytesOf(File()), before);
    EXPECT_TRUE(SetAside().isEmpty());
}

TEST_F(StoredSettings, FileThatBecomesUnreadableIsNotOverwritten)
{
    MakeOpen().WriteInteger(A, 1);
    FailingDisk disk;
    JsonRegistry registry = MakeOpen(disk);
    disk.isUnreadable = true;
    EXPECT_THROW(registry.WriteInteger(u"B"_s, 2), RegistryError);
    EXPECT_EQ(MakeOpen().ReadInteger(A), 1);
    EXPECT_TRUE(SetAside().isEmpty());
}

TEST_F(StoredSettings, PlacesThatCannotBeAreRefusedWithoutACrash)
{
    WriteFile(m_folder.Path(u"file"_s), "x");
    QDir().mkpath(m_folder.Path(u"busy/registry.json"_s));
    // No home; a folder below a file; a folder where the file should be.
    for (const QString &place : {QString(), m_folder.Path(u"file/lumivara"_s), m_folder.Path(u"busy"_s)}) {
        JsonRegistry registry(place, place);
        EXPECT_FALSE(registry.OpenKeyReadOnly(Options) || registry.OpenKey(Options, true)) << place.toStdString();
        EXPECT_FALSE(registry.LastErrorText().isEmpty()) << place.toStdString();
    }
}

TEST_F(StoredSettings, MachineHasTheStartListAlone)
{
    JsonRegistry registry = Make();
    registry.RootKey = RegistryRoot::LocalMachine;
    EXPECT_FALSE(registry.OpenKey(Options, true));
    EXPECT_TRUE(registry.OpenKeyReadOnly(StartList));
    EXPECT_EQ(registry.GetDataType(Kelora), RegistryType::Unknown);
    EXPECT_TRUE(registry.OpenKey(StartList.toLower(), false));
    EXPECT_THROW(registry.WriteInteger(Kelora, 1), RegistryError);
    for (const QString &name : {u"../outside"_s, QString()})
        EXPECT_THROW(registry.WriteString(name, A), RegistryError);
    EXPECT_FALSE(QFile::exists(m_folder.Path(u"outside.desktop"_s)));

    const QString command = u"\"%1\""_s.arg(m_folder.Path(u"a b/Lumivara"_s));
    for (const QByteArray &note : {""_ba, "/usr/bin/lumivara\n"_ba, "nonsense"_ba}) {
        WriteFile(m_folder.Path(u"a b/launcher"_s), note);
        registry.WriteString(Kelora, command);
        EXPECT_EQ(registry.ReadString(Kelora), command);
        const QByteArray exec = note.startsWith('/') ? "\nTryExec=/usr/bin/lumivara\nExec=\"/usr/bin/lumivara\"\n"
                                                     : "\nExec=" + command.toUtf8() + '\n';
        EXPECT_TRUE(BytesOf(m_folder.Path(u"autostart/Kelora.desktop"_s)).contains(exec)) << note.constData();
    }
    registry.WriteString(u"KELORA"_s, QString());
    EXPECT_EQ(registry.GetDataType(Kelora), RegistryType::String);
    EXPECT_EQ(registry.ReadString(Kelora), QString());
    EXPECT_EQ(QDir(m_folder.Path(u"autostart"_s)).entryList(QDir::Files), QStringList{u"Kelora.desktop"_s});
}

} // namespace
