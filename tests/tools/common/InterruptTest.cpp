#include "common/Interrupt.h"
#include "common/Console.h"
#include "common/Leftover.h"
#include "common/StalledLock.h"
#include "common/Tool.h"
#include "tools/ToolSupport.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString Folder = QDir::tempPath() + u"/lumivara-interrupt-test"_s;

void SendAndWait(int signal)
{
    ::kill(::getpid(), signal);
    while (!WasInterrupted())
        std::this_thread::yield();
}

/// Ends with 7 where it is let end by itself.
void Work(int signal, bool isHung, bool isFinished)
{
    NoteInterrupts();
    ThrowIfInterrupted(); // not yet
    WriteFile(Folder + u"/below/file"_s, "x");
    const Leftover leftover(Folder);
    if (isFinished)
        Leftover::Complete(u"result"_s, [] {});
    SendAndWait(signal);
    if (isHung) {
        ::kill(::getpid(), signal); // the second one does not wait
        for (;;)
            ::pause();
    }
    try {
        Console(u"tool"_s).Progress(u"work"_s, 0, 1);
    } catch (const ToolError &error) {
        std::fputs(error.what(), stderr);
        std::_Exit(7);
    }
}

/// Each in a process of its own, because an interrupt is remembered.
TEST(Interrupt, TheWorkEndsInOrderOrIsEndedWithNothingLeft)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        EXPECT_EXIT(Work(signal, false, false), testing::ExitedWithCode(7), "interrupted; the files are as they were");
        EXPECT_EXIT(Work(signal, true, false), testing::ExitedWithCode(2), "interrupted; the files are as they were");
        EXPECT_FALSE(QFileInfo::exists(Folder)) << signal;
    }
    EXPECT_EXIT(Work(SIGINT, true, true), testing::ExitedWithCode(2), "interrupted; finished before: result");
}

TEST(Interrupt, ASignalThatWasIgnoredFromTheStartStaysIgnored)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto work = [] {
        std::signal(SIGHUP, SIG_IGN);
        NoteInterrupts();
        ::kill(::getpid(), SIGHUP);
        SendAndWait(SIGINT);
        std::_Exit(7); // the first that was recorded
    };
    EXPECT_EXIT(work(), testing::ExitedWithCode(7), "");
}

TEST(Leftover, WhatAnotherHasPutInItsPlaceStays)
{
    const ScratchFolder scratch;
    const QString place = scratch.Path(u"place"_s), theirs = scratch.Path(u"theirs"_s);
    for (const bool isLink : {false, true}) {
        WriteFile(place + u"/mine"_s, "x");
        WriteFile(theirs + u"/notes"_s, "x");
        {
            const Leftover leftover(place);
            EXPECT_TRUE(QFile::rename(place, scratch.Path(isLink ? u"aside 2"_s : u"aside"_s)));
            EXPECT_TRUE(isLink ? QFile::link(theirs, place) : QFile::rename(theirs, place));
        }
        EXPECT_TRUE(QFileInfo::exists(place + u"/notes"_s)) << isLink;
        EXPECT_TRUE(isLink ? QFile::remove(place) : QDir(place).removeRecursively());
    }
    WriteFile(place + u"/mine"_s, "x");
    EXPECT_TRUE(QFile::link(theirs, place + u"/link"_s));
    {
        const Leftover leftover(place);
    }
    EXPECT_FALSE(QFileInfo::exists(place));
    EXPECT_TRUE(QFileInfo::exists(theirs + u"/notes"_s)) << "links in it are not followed";
}

TEST(StalledLock, TheFileThatAThreadWaitsForIsNamed)
{
    const ScratchFolder scratch;
    const QByteArray path = scratch.Path(u"fb_init"_s).toUtf8();
    const int held = ::open(path.constData(), O_RDWR | O_CREAT, 0600), wanted = ::open(path.constData(), O_RDWR);
    EXPECT_EQ(::flock(held, LOCK_EX), 0);
    EXPECT_EQ(LockWaitedFor(), QString());
    std::thread waiting([=] { ::flock(wanted, LOCK_EX); });
    while (LockWaitedFor().isEmpty())
        std::this_thread::yield();
    EXPECT_EQ(LockWaitedFor().toUtf8(), path);
    ::close(held);
    waiting.join();
    ::close(wanted);
}

} // namespace
