#include "BenchDictionary.h"
#include "Measures.h"
#include "Painted.h"
#include "RawStatement.h"
#include "Suites.h"

#include "dictionary/EntryFormatter.h"
#include "dictionary/WordRules.h"
#include "toolkit/browser/BrowserProfile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <algorithm>

namespace {

constexpr int Thousand = 1000;
constexpr int SomeWords = 10 * Thousand;
constexpr int ManyWords = 100 * Thousand;
constexpr int MostWords = 400 * Thousand;
constexpr qsizetype Megabyte = 1000 * 1000;
constexpr int WaitMilliseconds = 60000;
constexpr QSize EntrySize(532, 420);
// A word that no list holds, though parts of it are in every word.
const QString AbsentWord = QStringLiteral("saṃkaqka");

/// A bare view of the size of an entry, with the program's profile and scheme.
class BareEntry
{
public:
    BareEntry() : m_view(new QWebEnginePage(m_profile.get()), nullptr)
    {
        m_view.page()->setParent(&m_view);
        m_view.resize(EntrySize);
        m_view.move(800, 0);
        m_view.show();
        new PaintedProbe(&m_view, [this] {
            if (m_painted)
                m_painted();
        });
    }

    void Show(const QByteArray &page)
    {
        const QUrl address = m_profile->Pages().Publish(0, page);
        m_view.load(address);
        // A real event loop: the engine runs slowly under one that only polls.
        QEventLoop loop;
        QTimer::singleShot(WaitMilliseconds, &loop, [] { qFatal("a page was never painted"); });
        m_painted = [&loop] { loop.quit(); };
        loop.exec();
        m_painted = nullptr;
        m_profile->Pages().Withdraw(address);
    }

private:
    std::shared_ptr<BrowserProfile> m_profile = BrowserProfile::Shared();
    QWebEngineView m_view;
    std::function<void()> m_painted;
};

/// The window and, beside it, its statements and the page by themselves.
struct LookUp
{
    explicit LookUp(int words)
        : window(BenchDictionaryFile(words)), rows(window.RowsOnScreen()),
          list(window.ClientLibrary(), window.DatabasePath(), window.ListStatement(true)),
          entry(window.ClientLibrary(), window.DatabasePath(), window.EntryStatement()),
          check(window.ClientLibrary(), window.DatabasePath(), window.CheckStatement())
    {}

    /// A prefix with some words behind it, at a place of the order told in thousandths.
    QString PrefixAt(int words, int place)
    {
        window.SearchTime({});
        // Two short syllables or one long one and more: some hundred words, more than the screen holds.
        return window.WordAt(words / Thousand * place).left(4);
    }

    double SearchTime(const QString &prefix)
    {
        const double time = window.SearchTime(prefix);
        word = window.WordAt(0);
        return time;
    }
    double SearchFloor(const QString &prefix)
    {
        const QByteArray page = window.Page();
        QElapsedTimer clock;
        clock.start();
        list.Fetch({BenchKind, LowerForm(prefix), MixedForm(prefix)}, rows + 1);
        if (!word.isEmpty() && entry.ReadBlobs({BenchKind, word, 0}) == 0)
            qFatal("an entry is empty");
        bare.Show(page);
        return Milliseconds(clock);
    }
    double MissTime()
    {
        const double time = window.LookUpTime(AbsentWord);
        if (!window.WordAt(0).isEmpty())
            qFatal("a word that is not there was found");
        return time;
    }
    double MissFloor()
    {
        const QByteArray page = window.Page();
        QElapsedTimer clock;
        clock.start();
        for (const int kind : {BenchKind, BenchKind + 1})
            check.Fetch({kind, TestedForm(kind, AbsentWord)}, 1);
        list.Fetch({BenchKind, LowerForm(AbsentWord), MixedForm(AbsentWord)});
        bare.Show(page);
        return Milliseconds(clock);
    }

    BenchDictionary window;
    int rows;
    RawStatement list, entry, check;
    BareEntry bare;
    QString word;
};

void RegisterLookUps()
{
    const Lazy<LookUp> lookUp{[] { return std::make_unique<LookUp>(ManyWords); }};
    const struct
    {
        QString name;
        int place;
    } places[]{{QStringLiteral("front"), 5}, {QStringLiteral("middle"), 500}, {QStringLiteral("end"), 995}};
    for (const auto &row : places) {
        const auto prefix = std::make_shared<QString>();
        Register({.name = QStringLiteral("lookup-") + row.name,
                  .unit = QStringLiteral("ms"),
                  .reach = QStringLiteral("at most 1.2 x"),
                  .ours =
                      [=, place = row.place] {
                          if (prefix->isEmpty())
                              *prefix = lookUp().PrefixAt(ManyWords, place);
                          return lookUp().SearchTime(*prefix);
                      },
                  .floor = [=] { return lookUp().SearchFloor(*prefix); },
                  .finish = {},
                  .repetitions = 25});
    }
    Register({.name = QStringLiteral("lookup-none"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 1.2 x"),
              .ours = [=] { return lookUp().MissTime(); },
              .floor = [=] { return lookUp().MissFloor(); },
              .finish = lookUp.Finish(),
              .repetitions = 25});
}

void RegisterOpening()
{
    struct Opening
    {
        explicit Opening(int words)
            : window(BenchDictionaryFile(words)),
              statement(window.ClientLibrary(), window.DatabasePath(), window.ListStatement(false)),
              word(window.WordAt(words / 100 * 98))
        {}
        BenchDictionary window;
        RawStatement statement;
        QString word;
    };
    const Lazy<Opening> opening{[] { return std::make_unique<Opening>(ManyWords); }};
    Register({.name = QStringLiteral("open-last"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 1.2 x"),
              .ours = [=] { return opening().window.OpenTime(opening().word); },
              .floor =
                  [=] {
                      QElapsedTimer clock;
                      clock.start();
                      if (opening().statement.FetchTo({BenchKind}, opening().word) == 0)
                          qFatal("the last word is not there");
                      return Milliseconds(clock);
                  },
              .finish = opening.Finish(),
              .repetitions = 25});
}

void RegisterSteps()
{
    // Far down a long list, where the view holds the most.
    const Lazy<BenchDictionary> window{[] {
        auto made = std::make_unique<BenchDictionary>(BenchDictionaryFile(MostWords));
        made->OpenTime(made->WordAt(MostWords / 100 * 95));
        return made;
    }};
    const auto median = [window](const char *widget, Qt::Key key) {
        std::vector<double> times;
        for (int step = 0; step < 41; ++step)
            times.push_back(window().KeyTime(widget, key));
        std::nth_element(times.begin(), times.begin() + 20, times.end());
        return times[20];
    };
    Register({.name = QStringLiteral("page-down"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 16 ms"),
              .ours =
                  [=] {
                      return std::max({median("gtvWords", Qt::Key_PageDown), median("gtvWords", Qt::Key_Down),
                                       median("edSearchWord", Qt::Key_PageDown), median("edSearchWord", Qt::Key_Down)});
                  },
              .floor = [] { return 16.0; },
              .finish = window.Finish()});
}

void RegisterFormat()
{
    const QByteArray entry = BenchEntry(Megabyte);
    Register({.name = QStringLiteral("format-1m"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 50 x"),
              .ours =
                  [=] {
                      QElapsedTimer clock;
                      clock.start();
                      const QByteArray page = FormatEntry(entry, QStringLiteral("Segoe UI"));
                      const double time = Milliseconds(clock);
                      return page.isEmpty() ? -1 : time;
                  },
              .floor = [=] { return CopyTime(entry); },
              .finish = {},
              .repetitions = 51});
}

void RegisterMemory()
{
    // In a process of its own each, where no memory is free that others have left.
    const auto memoryAtEnd = [](int words) {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--list-memory"), BenchDictionaryFile(words)});
        process.waitForFinished(-1);
        return process.readAllStandardOutput().trimmed().toDouble();
    };
    Register({.name = QStringLiteral("list-memory"),
              .unit = QStringLiteral("MB"),
              .reach = QStringLiteral("at most 12 MB more"),
              .ours = [=] { return memoryAtEnd(MostWords); },
              .floor = [=] { return memoryAtEnd(Thousand); },
              .finish = {},
              .repetitions = 5});
}

void RegisterGrowth()
{
    const auto windowOf = [](int words) {
        return Lazy<BenchDictionary>{[=] { return std::make_unique<BenchDictionary>(BenchDictionaryFile(words)); }};
    };
    // A window each in turn: there is one dictionary in a process.
    const auto step = [=](const QString &name, int from, int to, const std::function<double(BenchDictionary &)> &work,
                          int factor) {
        const auto timed = [=](int words) {
            const Lazy<BenchDictionary> window = windowOf(words);
            double least = work(window());
            for (int turn = 0; turn < 4; ++turn)
                least = std::min(least, work(window()));
            return least;
        };
        Register({.name = name,
                  .unit = QStringLiteral("ms"),
                  .reach = factor == 1 ? QStringLiteral("flat: at most 1.2 x") : QStringLiteral("at most 1.2 x"),
                  .ours = [=] { return timed(to); },
                  .floor = [=] { return factor * timed(from); },
                  .finish = {},
                  .repetitions = 5});
    };
    const auto end = [](BenchDictionary &window) { return window.EndTime(); };
    const auto miss = [](BenchDictionary &window) { return window.LookUpTime(AbsentWord); };
    const auto open = [](BenchDictionary &window) { return window.OpenTime({}); };
    step(QStringLiteral("list-growth-100k"), SomeWords, ManyWords, end, ManyWords / SomeWords);
    step(QStringLiteral("list-growth-400k"), ManyWords, MostWords, end, MostWords / ManyWords);
    step(QStringLiteral("list-growth-miss"), ManyWords, MostWords, miss, MostWords / ManyWords);
    step(QStringLiteral("list-growth-open"), SomeWords, MostWords, open, 1);
}

} // namespace

void RegisterDictionaryMeasures()
{
    RegisterLookUps();
    RegisterOpening();
    RegisterSteps();
    RegisterFormat();
    RegisterMemory();
    RegisterGrowth();
}
