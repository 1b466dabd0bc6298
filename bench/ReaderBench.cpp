#include "BenchReader.h"
#include "Measures.h"
#include "Processes.h"
#include "RawStatement.h"
#include "Sample.h"
#include "Suites.h"
#include "stores/Schema.h"

#include "reader/PageComposer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

#include <memory>

namespace {

constexpr qsizetype Kilobyte = 1000;
constexpr qsizetype Megabyte = 1000 * Kilobyte;

// What the filter box appends for the letters that every passage of a measured canon holds.
const QString FilterText = QStringLiteral("đi");

void RegisterFilter(int texts, const QString &reach)
{
    struct State
    {
        explicit State(int texts)
            : reader(texts, PlainPage(Kilobyte)),
              statement(reader.ClientLibrary(), reader.CanonPath(),
                        reader.TreeStatement() + QStringLiteral(" where (lower(n.name_vic_vie) like ?)"))
        {}
        BenchReader reader;
        RawStatement statement;
    };
    const auto state = std::make_shared<std::unique_ptr<State>>();
    const auto made = [state, texts]() -> State & {
        if (!*state)
            *state = std::make_unique<State>(texts);
        return **state;
    };
    Register({.name = QStringLiteral("filter-%1").arg(texts),
              .unit = QStringLiteral("ms"),
              .reach = reach,
              .ours = [made] { return made().reader.FilterKeyTime(FilterText); },
              .floor =
                  [made] {
                      QElapsedTimer clock;
                      clock.start();
                      made().statement.Fetch({QString(u'%' + FilterText + u'%')});
                      return Milliseconds(clock);
                  },
              .finish = [state] { state->reset(); },
              .repetitions = 15});
}

void RegisterMove(const QString &name, qsizetype bytes, const QString &reach,
                  double (BenchReader::*move)() = &BenchReader::MoveTime, int repetitions = 9)
{
    struct State
    {
        explicit State(qsizetype bytes)
            : reader(2, PlainPage(bytes)),
              floor(QCoreApplication::applicationDirPath() + QStringLiteral("/lumivara_floor"), {Sample().FirstPage()},
                    Sample().ConfigFolder())
        {
            floor.WaitPainted();
        }
        BenchReader reader;
        ProbedProcess floor;
    };
    const auto state = std::make_shared<std::unique_ptr<State>>();
    const auto made = [state, bytes]() -> State & {
        if (!*state)
            *state = std::make_unique<State>(bytes);
        return **state;
    };
    Register({.name = name,
              .unit = QStringLiteral("ms"),
              .reach = reach,
              .ours = [made, move] { return (made().reader.*move)(); },
              .floor =
                  [made] {
                      State &state = made();
                      state.floor.WriteLine(Sample().FirstPage());
                      state.floor.ReadLine();
                      state.floor.WriteLine(state.reader.ComposedPageFile());
                      return state.floor.ReadLine().toDouble();
                  },
              .finish = [state] { state->reset(); },
              .repetitions = repetitions});
}

void RegisterMarks()
{
    constexpr int marks = 500;
    const Lazy<BenchReader> reader{[] {
        auto made = std::make_unique<BenchReader>(2, PlainPage(900 * Kilobyte));
        made->MarkLongPage(marks);
        return made;
    }};
    const auto add = [&](const char *name, double BenchReader::StripTimes::*time, const char *reach) {
        Register({.name = QString::fromLatin1(name),
                  .unit = QStringLiteral("ms"),
                  .reach = QString::fromLatin1(reach),
                  .ours = [reader, time] { return reader().ShowStrip().*time; },
                  .floor = [reader] { return reader().TextTime(); },
                  .finish = reader.Finish(),
                  .repetitions = 21});
    };
    add("marks-900k", &BenchReader::StripTimes::work, "at most 100 ms");
    add("marks-900k-shown", &BenchReader::StripTimes::shown, "");
    add("marks-900k-block", &BenchReader::StripTimes::block, "");
}

void RegisterCompose()
{
    const QByteArray content = PlainPage(3 * Megabyte);
    const PageOptions options{
        .mode = PageMode::Vietnamese, .marginWidth = 0, .fontName = QStringLiteral("Noto Serif Display")};
    Register({.name = QStringLiteral("compose-3m"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 10 x"),
              .ours =
                  [=] {
                      QElapsedTimer clock;
                      clock.start();
                      const QByteArray page = ComposePassage(content, options);
                      const double time = Milliseconds(clock);
                      return page.isEmpty() ? -1 : time;
                  },
              .floor = [=] { return CopyTime(content); },
              .finish = {},
              .repetitions = 51});
}

} // namespace

void RegisterReaderMeasures()
{
    RegisterCompose();
    RegisterFilter(205, QStringLiteral("at most 1.5 x plus 5 ms"));
    RegisterFilter(2050, QStringLiteral("at most 1.5 x plus 5 ms, 12 x filter-205"));
    RegisterFilter(20500, QStringLiteral("at most 1.5 x plus 5 ms, 12 x filter-2050"));
    RegisterMove(QStringLiteral("move-100k"), 100 * Kilobyte, QStringLiteral("at most 1.2 x"));
    RegisterMove(QStringLiteral("move-3m"), 3 * Megabyte, QStringLiteral("at most 0.6 x"));
    RegisterMove(QStringLiteral("back-900k"), 900 * Kilobyte, QStringLiteral("at most 1.2 x"), &BenchReader::BackTime,
                 50);
    RegisterMarks();
}
