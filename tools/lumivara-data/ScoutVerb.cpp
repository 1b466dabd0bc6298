#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/sealed/Examination.h"
#include "stores/Schema.h"

#include <QFileInfo>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

/// Connects once, so that a file that does not answer holds this process up and not the program. How it fails is told
/// to the program by its own connection.
void TryToConnect(const QString &path)
{
    try {
        DataFile file;
        file.Open(path);
        file.Close();
    } catch (const std::exception &) {
    }
}

/// Our own connection writes to a file that is not read-only, and the file stays as examined by that.
void ConnectAndRemember(const QString &path, Verdict &verdict, ExaminedFiles &memory)
{
    const bool isKnown = memory.Find(path).has_value();
    TryToConnect(verdict.manner == Verdict::Manner::AsCopy ? verdict.copy : path);
    const FileStamp after = FileStamp::Of(path);
    if (after == verdict.stamp || !after.IsSameFile(verdict.stamp))
        return;
    verdict.stamp = after;
    if (isKnown)
        memory.Remember(path, verdict);
}

} // namespace

int RunScout(const QStringList &files, Console &console)
{
    console.SetShowsProgress(false);
    // The one that the program uses, also where a private copy is opened first.
    TpFIBDatabase::SetLockFolder(QFileInfo(files.value(0)).absolutePath() + u"/lock"_s);
    ExaminedFiles memory(ExaminedFiles::UsualFolder());
    for (const QString &path : files) {
        const bool isMarks = QFileInfo(path).fileName() == QString(DatabaseFile::Marks);
        Verdict verdict{Verdict::Manner::AsItIs}; // nothing there: the connection says so
        if (QFileInfo::exists(path)) {
            verdict = VerdictOn(path, !isMarks, memory, console);
            if (verdict.manner != Verdict::Manner::NotAtAll)
                ConnectAndRemember(path, verdict, memory);
        }
        console.Print(QString::fromUtf8(QJsonDocument(verdict.ToJson()).toJson(QJsonDocument::Compact)) + u'\n');
    }
    return ExitCode::Clean;
}
