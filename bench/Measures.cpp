#include "Measures.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <malloc.h>

namespace {

QList<Measure> registered;

constexpr char OursCounter[] = "ours";
constexpr char FloorCounter[] = "floor";

double Median(QList<double> values)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    const qsizetype middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// Gathers samples by benchmark; tells nothing itself.
class Collector : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            Pair &pair = samples[QString::fromStdString(run.run_name.function_name)];
            pair.ours.append(run.counters.at(OursCounter).value);
            pair.floor.append(run.counters.at(FloorCounter).value);
        }
    }

    struct Pair
    {
        QList<double> ours, floor;
    };
    QHash<QString, Pair> samples;
};

/// A name stands for all that go on from it, as "filter" for "filter-205".
bool IsAsked(const QString &measure, const QStringList &names)
{
    const auto covers = [&](const QString &name) {
        return measure == name || measure.startsWith(name + QLatin1Char('-'));
    };
    return names.isEmpty() || std::any_of(names.begin(), names.end(), covers);
}

QString Number(double value)
{
    return QString::number(value, 'f', value < 10 ? 2 : 1);
}

void PrintRow(const QStringList &cells)
{
    static constexpr int widths[] = {18, 12, 12, 9, 40};
    QString line;
    for (qsizetype i = 0; i < cells.size(); ++i)
        line += i == 0 || i == 4 ? cells[i].leftJustified(widths[i]) + QLatin1Char(' ')
                                 : cells[i].rightJustified(widths[i]) + QStringLiteral("  ");
    std::printf("%s\n", line.toUtf8().constData());
}

} // namespace

void Register(const Measure &measure)
{
    registered.append(measure);
    benchmark::RegisterBenchmark(measure.name.toUtf8().constData(),
                                 [measure](benchmark::State &state) {
                                     for ([[maybe_unused]] auto turn : state) {
                                         const double ours = measure.ours();
                                         state.counters[OursCounter] = ours;
                                         state.counters[FloorCounter] = measure.floor();
                                         state.SetIterationTime(ours / 1000);
                                     }
                                 })
        ->Iterations(1)
        ->Repetitions(measure.repetitions)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

bool RunMeasures(const QStringList &names, const QString &jsonPath)
{
    char program[] = "bench";
    char *arguments[] = {program, nullptr};
    int count = 1;
    benchmark::Initialize(&count, arguments);

    Collector collector;
    for (const Measure &measure : std::as_const(registered)) {
        if (!IsAsked(measure.name, names))
            continue;
        std::fprintf(stderr, "measuring %s\n", qUtf8Printable(measure.name));
        benchmark::RunSpecifiedBenchmarks(&collector, '^' + measure.name.toStdString() + "/");
        if (measure.finish)
            measure.finish();
    }

    QJsonArray rows;
    PrintRow({QStringLiteral("name"), QStringLiteral("figure"), QStringLiteral("floor"), QStringLiteral("ratio"),
              QStringLiteral("reach")});
    for (const Measure &measure : std::as_const(registered)) {
        const Collector::Pair pair = collector.samples.value(measure.name);
        if (pair.ours.isEmpty())
            continue;
        const double figure = Median(pair.ours);
        const double base = Median(pair.floor);
        const double ratio = base > 0 ? figure / base : 0;
        rows.append(QJsonObject{{QStringLiteral("name"), measure.name},
                                {QStringLiteral("figure"), figure},
                                {QStringLiteral("unit"), measure.unit},
                                {QStringLiteral("floor"), base},
                                {QStringLiteral("ratio"), ratio}});
        PrintRow({measure.name, Number(figure) + QLatin1Char(' ') + measure.unit,
                  Number(base) + QLatin1Char(' ') + measure.unit, QString::number(ratio, 'f', 2), measure.reach});
    }
    // Their windows have to go before the application does.
    benchmark::ClearRegisteredBenchmarks();
    registered.clear();
    if (jsonPath.isEmpty())
        return true;
    QFile file(jsonPath);
    const QByteArray json = QJsonDocument(rows).toJson();
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(json) == json.size();
}

double Milliseconds(const QElapsedTimer &clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

double CopyTime(const QByteArray &bytes)
{
    QElapsedTimer clock;
    clock.start();
    QByteArray copy(bytes.size(), Qt::Uninitialized);
    std::memcpy(copy.data(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const double time = Milliseconds(clock);
    return copy.isEmpty() ? -1 : time; // the copy is used, so that it is made
}

namespace {

/// Kilobytes of a line of the kernel's account of this process.
qint64 StatusLine(const QByteArray &name)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size() + 1).simplified().split(' ').front().toLongLong();
    }
    return 0;
}

} // namespace

double PeakGrowth(const std::function<void()> &action)
{
    malloc_trim(0); // what is free does not hide what is taken
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1 || !reset.flush())
        qFatal("the highest use of memory can't be measured here");
    const qint64 before = StatusLine("VmRSS");
    action();
    return static_cast<double>(StatusLine("VmHWM") - before) / 1000;
}
