#include "Measures.h"
#include "Processes.h"
#include "Sample.h"
#include "Suites.h"

#include <QCoreApplication>
#include <QThread>

namespace {

constexpr int SecondsToRest = 4;

double TimeToPaint(const QString &program, const QStringList &arguments)
{
    return ProbedProcess(program, arguments, Sample().ConfigFolder()).WaitPainted();
}

double MemoryAtRest(const QString &program, const QStringList &arguments)
{
    ProbedProcess process(program, arguments, Sample().ConfigFolder());
    process.WaitPainted();
    QThread::sleep(SecondsToRest);
    return process.Memory();
}

} // namespace

void RegisterProgramMeasures()
{
    const auto program = [] { return Sample().Executable(); };
    const auto floor = [] { return QCoreApplication::applicationDirPath() + QStringLiteral("/lumivara_floor"); };
    const auto page = [] { return QStringList{Sample().FirstPage()}; };

    Register({.name = QStringLiteral("start"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 1.25 x"),
              .ours = [=] { return TimeToPaint(program(), {}); },
              .floor = [=] { return TimeToPaint(floor(), page()); },
              .finish = {}});
    Register({.name = QStringLiteral("memory"),
              .unit = QStringLiteral("MB"),
              .reach = QStringLiteral("at most 40 MB more"),
              .ours = [=] { return MemoryAtRest(program(), {}); },
              .floor = [=] { return MemoryAtRest(floor(), page()); },
              .finish = {},
              .repetitions = 3});
}
