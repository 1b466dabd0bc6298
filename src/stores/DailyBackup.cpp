#include "stores/DailyBackup.h"

#include "stores/KeloraDM.h"

#include <QProcess>

void StartDailyBackup(const QString &exeName)
{
    QProcess tool;
    tool.setProgram(FolderOfExecutable(exeName) + QStringLiteral("lumivara-data"));
    tool.setArguments({QStringLiteral("backup"), QStringLiteral("--daily")});
    tool.setStandardInputFile(QProcess::nullDevice());
    tool.setStandardOutputFile(QProcess::nullDevice());
    tool.setStandardErrorFile(QProcess::nullDevice());
    tool.startDetached();
}
