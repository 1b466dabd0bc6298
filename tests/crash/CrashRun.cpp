#include "crash/CrashRun.h"

#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QFile>

using namespace Qt::StringLiterals;

QString WorkerPath()
{
    return QCoreApplication::applicationDirPath() + u"/crash_worker"_s;
}

void MakeMarks(const QString &folder, bool withTexts)
{
    QFile::remove(folder + u"/TARUNECLIENT.FDB"_s);
    EXPECT_EQ(QProcess::execute(ProductFolder() + u"lumivara-data"_s, {u"build"_s, u"marks"_s, u"--out"_s, folder}), 0);
    EXPECT_TRUE(!withTexts || QProcess::execute(WorkerPath(), {folder, u"seed"_s}) == 0);
}

std::optional<StoredRows> ReadStored(const QString &folder)
{
    QProcess reader;
    reader.start(WorkerPath(), {folder, u"dump"_s});
    if (!reader.waitForFinished(StallMilliseconds)) {
        reader.kill();
        reader.waitForFinished();
        return {};
    }
    if (reader.exitStatus() != QProcess::NormalExit)
        return {};
    EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().constData();
    StoredRows rows;
    for (const QByteArray &line : reader.readAllStandardOutput().split('\n')) {
        if (line.isEmpty())
            continue;
        const QString title = QString::fromUtf8(line.left(line.indexOf(' ')));
        EXPECT_FALSE(rows.contains(title)) << "twice: " << qPrintable(title);
        rows[title] = line.mid(line.indexOf(' ') + 1);
    }
    return rows;
}

int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
