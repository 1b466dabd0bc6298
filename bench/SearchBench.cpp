#include "BenchCanon.h"
#include "Measures.h"
#include "RawStatement.h"
#include "Sample.h"
#include "Suites.h"

#include "base/PlainText.h"
#include "search/SuttaScan.h"
#include "search/SuttaSearch.h"
#include "stores/KeloraDM.h"
#include "stores/data/FIBDataSet.h"
#include "stores/data/MemData.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

constexpr qsizetype Megabyte = 1000 * 1000;
constexpr int Vietnamese = 1;

// Begins like much of the pages and is in none of them.
const QString AbsentWord = QStringLiteral("tỳ khưu lặng thinh bên suối");
// Stands at the end of every page, so that all of it is read.
const QString EverywhereWord = QStringLiteral("hết quyển này");
constexpr char EverywhereMark[] = "<p>HếT qu<b>yển</b> này</p>";

/// A connection with its transaction, open.
struct OpenCanon
{
    explicit OpenCanon(const QString &path)
    {
        PrepareConnection(database, transaction, path, Sample().Executable());
        database.SetCachePages(CanonCachePages);
        database.SetConnected(true);
        transaction.SetActive(true);
    }
    TpFIBDatabase database;
    TpFIBTransaction transaction;
};

/// The Vietnamese pages of the sample canon, as stored.
const QList<QByteArray> &StoredPages()
{
    static const QList<QByteArray> pages = [] {
        OpenCanon canon(Sample().Folder() + QStringLiteral("KELORA.FDB"));
        TpFIBDataSet texts;
        texts.SetDatabase(&canon.database);
        texts.SelectSQL() = QStringList{QStringLiteral("select CONTENT_VIC_VIE from KELORA_CONTENT order by ID_VIC")};
        QList<QByteArray> read;
        for (texts.Open(); !texts.Eof(); texts.Next()) {
            const QByteArray page = texts.Fields().front()->AsBytes();
            if (!page.isEmpty())
                read.append(page);
        }
        return read;
    }();
    return pages;
}

/// A page of about `bytes` bytes, put together of stored ones from the given one on.
QByteArray LongPage(int first, qsizetype bytes)
{
    QByteArray page;
    for (qsizetype i = first; page.size() < bytes; ++i)
        page += StoredPages()[i % StoredPages().size()];
    return page + EverywhereMark;
}

/// A canon in a file, with what the search window has for it: the list of passages and the table of results.
class SearchedCanon
{
public:
    SearchedCanon(int texts, const std::function<QByteArray(int)> &page)
    {
        MakeCanon(ClientLibraryPath(Sample().Folder()), Path(), texts, page);
        m_canon = std::make_unique<OpenCanon>(Path());
        m_passages.SetDatabase(&m_canon->database);
        m_passages.SelectSQL() =
            QStringList{QStringLiteral("select N.ID_VIT, N.ID_VIC, N.NAME_VIC_PAL, N.NAME_VIC_ENG, N.NAME_VIC_VIE, "
                                       "N.CONTENT_VIC_PAL, N.CONTENT_VIC_ENG, N.CONTENT_VIC_VIE, N.CONTENT_VIC_PAL_VIE "
                                       "from KELORA_CONTENT N order by N.ID_VIC")};
        m_results.AddField(QStringLiteral("ID_VIC"), FieldType::Integer);
        m_results.AddField(QStringLiteral("SAMPLE_TEXT"), FieldType::WideString, SuttaScan::SampleLength);
        m_raw = std::make_unique<RawStatement>(
            ClientLibraryPath(Sample().Folder()), Path(),
            QStringLiteral("select CONTENT_VIC_VIE from KELORA_CONTENT order by ID_VIC"));
    }

    QString Path() const { return m_folder.filePath(QStringLiteral("KELORA.FDB")); }

    /// A whole search; ends the process if it doesn't find so many.
    void Scan(const QString &word, int hits)
    {
        m_results.Close();
        m_results.Open();
        m_results.DisableControls();
        m_passages.Close();
        m_passages.Open();
        m_passages.First();
        SuttaSearchEvents events;
        events.onHit = [this](const QString &sample) {
            m_results.Append();
            m_results.FieldByName(QStringLiteral("ID_VIC"))
                .SetAsInteger(m_passages.FieldByName(QStringLiteral("ID_VIC")).AsInteger());
            m_results.FieldByName(QStringLiteral("SAMPLE_TEXT")).SetAsString(sample);
            m_results.Post();
        };
        events.onFailure = [] { qFatal("a page can't be read"); };
        if (ScanSuttas(m_passages, word, Vietnamese, events) != hits)
            qFatal("the search finds something else");
        m_results.EnableControls();
    }
    double ScanTime(const QString &word, int hits)
    {
        QElapsedTimer clock;
        clock.start();
        Scan(word, hits);
        return Milliseconds(clock);
    }
    double FloorTime()
    {
        QElapsedTimer clock;
        clock.start();
        return m_raw->ReadBlobs() > 0 ? Milliseconds(clock) : 0;
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<OpenCanon> m_canon;
    TpFIBDataSet m_passages;
    TdxMemData m_results;
    std::unique_ptr<RawStatement> m_raw;
};

constexpr int LongTexts = 272;
constexpr qsizetype LongPageBytes = 100'000;

std::unique_ptr<SearchedCanon> LongCanon()
{
    return std::make_unique<SearchedCanon>(LongTexts, [](int text) { return LongPage(text, LongPageBytes); });
}

/// For information: bytes searched, and what a search tool needs for the same bytes as files.
void TellSearchTool(const QString &word)
{
    QTemporaryDir folder;
    qint64 bytes = 0;
    for (int text = 0; text < LongTexts; ++text) {
        QFile file(folder.filePath(QString::number(text)));
        if (file.open(QIODevice::WriteOnly))
            bytes += file.write(LongPage(text, LongPageBytes));
    }
    const bool hasRipgrep = !QStandardPaths::findExecutable(QStringLiteral("rg")).isEmpty();
    const QString tool = hasRipgrep ? QStringLiteral("rg") : QStringLiteral("grep");
    QStringList options = hasRipgrep ? QStringList{QStringLiteral("-j1")} : QStringList{QStringLiteral("-r")};
    options += {QStringLiteral("-F"), QStringLiteral("-i"), QStringLiteral("-l"), word, folder.path()};
    double time = 0;
    for (int turn = 0; turn < 2; ++turn) {
        QElapsedTimer clock;
        clock.start();
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        process.setProcessEnvironment(environment);
        process.start(tool, options);
        process.waitForFinished(-1);
        time = Milliseconds(clock);
    }
    std::fprintf(stderr, "  for information: %s over the same %.1f MB as files: %.1f ms\n", qUtf8Printable(tool),
                 static_cast<double>(bytes) / Megabyte, time);
}

void RegisterScan(const QString &name, const QString &word, int hits)
{
    const Lazy<SearchedCanon> canon{[word] {
        TellSearchTool(word);
        return LongCanon();
    }};
    Register({.name = name,
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 4 x"),
              .ours = [=] { return canon().ScanTime(word, hits); },
              .floor = [=] { return canon().FloorTime(); },
              .finish = canon.Finish(),
              .repetitions = 15});
}

void RegisterGrowth()
{
    const auto canonOf = [](int times) {
        return Lazy<SearchedCanon>{[=] {
            const int texts = times * static_cast<int>(StoredPages().size());
            return std::make_unique<SearchedCanon>(texts,
                                                   [](int text) { return StoredPages()[text % StoredPages().size()]; });
        }};
    };
    const Lazy<SearchedCanon> once = canonOf(1);
    const Lazy<SearchedCanon> tenfold = canonOf(10);
    Register({.name = QStringLiteral("scan-growth"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 12 x"),
              .ours = [=] { return tenfold().ScanTime(AbsentWord, 0); },
              .floor =
                  [=] {
                      // Ten of them, so that both samples last alike and are interrupted alike.
                      double sum = 0;
                      for (int turn = 0; turn < 10; ++turn)
                          sum += once().ScanTime(AbsentWord, 0);
                      return sum / 10;
                  },
              .finish =
                  [=] {
                      once.Finish()();
                      tenfold.Finish()();
                  },
              .repetitions = 15});
}

void RegisterMemory()
{
    // One page of 3 MB among short ones.
    constexpr qsizetype longest = 3 * Megabyte;
    const Lazy<SearchedCanon> canon{[] {
        const auto page = [](int text) { return LongPage(text, text == 200 ? longest : LongPageBytes); };
        auto made = std::make_unique<SearchedCanon>(LongTexts, page);
        made->Scan(AbsentWord, 0);
        return made;
    }};
    Register({.name = QStringLiteral("scan-memory"),
              .unit = QStringLiteral("MB"),
              .reach = QStringLiteral("at most 3 x the longest page"),
              .ours =
                  [=] {
                      SearchedCanon &searched = canon();
                      return PeakGrowth([&] { searched.Scan(AbsentWord, 0); });
                  },
              .floor = [] { return static_cast<double>(longest) / Megabyte; },
              .finish = canon.Finish(),
              .repetitions = 5});
}

void RegisterStrip()
{
    struct Texts
    {
        QList<QString> pages;
    };
    const Lazy<Texts> texts{[] {
        auto made = std::make_unique<Texts>();
        for (const QByteArray &page : StoredPages())
            made->pages.append(QString::fromUtf8(page));
        return made;
    }};
    const auto timeOf = [texts](QString (*make)(const QString &)) {
        const QList<QString> &pages = texts().pages;
        qsizetype units = 0;
        QElapsedTimer clock;
        clock.start();
        for (const QString &page : pages)
            units += make(page).size();
        const double time = Milliseconds(clock);
        return units > 0 ? time : 0;
    };
    Register({.name = QStringLiteral("strip"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 10 x"),
              .ours = [=] { return timeOf(StripHtml); },
              .floor =
                  [=] {
                      return timeOf([](const QString &page) {
                          QString copy(page.size(), Qt::Uninitialized);
                          std::memcpy(copy.data(), page.constData(),
                                      static_cast<std::size_t>(page.size()) * sizeof(QChar));
                          return copy;
                      });
                  },
              .finish = texts.Finish(),
              .repetitions = 51});
}

} // namespace

void RegisterSearchMeasures()
{
    RegisterScan(QStringLiteral("scan-absent"), AbsentWord, 0);
    RegisterScan(QStringLiteral("scan-everywhere"), EverywhereWord, LongTexts);
    RegisterStrip();
    RegisterMemory();
    RegisterGrowth();
}
