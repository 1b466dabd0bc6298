#include "stores/SettingsDisk.h"
#include "support/FullDisk.h"
#include "support/TestSupport.h"
#include "support/WaitFor.h"

#include <QDir>

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

TEST(SettingsDiskWrite, OnAFullDiskFailsAndLeavesTheOldContent)
{
    const ScratchFolder scratch;
    const QString path = scratch.Path(u"registry.json"_s);
    SettingsDisk &disk = RealSettingsDisk();
    QString error;
    EXPECT_TRUE(disk.WriteAtomically(path, "old", error)) << error.toStdString();
    for (const auto &[room, size] : {std::pair(0, 700), {10, 700}, {10, 100'000}}) { // a file object buffers 16384
        const FullDisk full(static_cast<rlim_t>(room));
        error.clear();
        EXPECT_FALSE(disk.WriteAtomically(path, QByteArray(size, 'x'), error)) << room;
        EXPECT_FALSE(error.isEmpty()) << room;
    }
    QByteArray bytes;
    EXPECT_EQ(disk.Read(path, bytes, error), SettingsDisk::ReadResult::Read);
    EXPECT_EQ(bytes, "old");
    EXPECT_EQ(QDir(scratch.Path(u""_s)).entryList(QDir::Files), QStringList{u"registry.json"_s});
}

TEST(SettingsDiskLock, IsHandedToAWaiterThoughItsHolderTakesItAgainAtOnce)
{
    const ScratchFolder scratch;
    const QString path = scratch.Path(u"registry.lock"_s);
    std::atomic_bool isOver = false;
    std::atomic_int taken = 0;
    std::thread greedy([&] {
        QString error;
        while (!isOver) {
            const auto lock = RealSettingsDisk().Acquire(path, 10s, error);
            EXPECT_TRUE(lock) << error.toStdString();
            ++taken;
            std::this_thread::sleep_for(20ms);
        }
    });
    EXPECT_TRUE(WaitFor([&] { return taken > 0; }));
    QString error;
    for (int turn = 0; turn < 5; ++turn)
        EXPECT_TRUE(RealSettingsDisk().Acquire(path, 500ms, error)) << turn << ' ' << error.toStdString();
    isOver = true;
    greedy.join();
}

} // namespace
