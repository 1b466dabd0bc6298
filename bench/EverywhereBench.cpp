#include "BenchCanon.h"
#include "Measures.h"
#include "RawStatement.h"
#include "Sample.h"
#include "Suites.h"

#include "everywhere/EverywhereScan.h"
#include "stores/KeloraDM.h"
#include "stores/engine/Scripter.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

// In three languages these are 40 MB.
constexpr int Texts = 135;
constexpr qsizetype PageBytes = 100'000;
constexpr double LongestBlock = 50; // ms

// Begins like much of the pages and stands in the last alone.
const QString RareWord = u"sikkhāgāra"_s;
// Stands in every sentence.
const QString Letter = u"a"_s;

/// A canon in a file and what searches it.
class EverywhereCanon
{
public:
    EverywhereCanon()
    {
        MakeCanon(ClientLibraryPath(Sample().Folder()), Path(), Texts, [](int text) {
            QByteArray page = PlainPage(text == 0 ? 0 : PageBytes);
            return text == Texts - 1 ? page + "<p>Sikkh\xC4\x81"
                                              "g<b>\xC4\x81ra</b></p>"
                                     : page;
        });
        PrepareConnection(m_database, m_transaction, Path(), Sample().Executable());
        m_database.SetCachePages(CanonCachePages);
        m_database.SetConnected(true);
        TpFIBScripter scripter;
        scripter.SetDatabase(&m_database);
        scripter.Script() = {u"update KELORA_CONTENT set CONTENT_VIC_PAL = CONTENT_VIC_VIE, "
                             "CONTENT_VIC_ENG = CONTENT_VIC_VIE;"_s,
                             u"commit work;"_s};
        scripter.ExecuteScript();
        m_transaction.SetActive(true);
        m_scan = std::make_unique<EverywhereScan>(m_database, nullptr);
        for (const QString &column : {u"PAL"_s, u"VIE"_s, u"ENG"_s}) {
            m_raw.push_back(std::make_unique<RawStatement>(
                ClientLibraryPath(Sample().Folder()), Path(),
                u"select CONTENT_VIC_%1 from KELORA_CONTENT order by ID_VIC"_s.arg(column)));
        }
    }

    /// A whole search; ends the process if it doesn't find so many texts.
    void Search(const QString &word, int texts)
    {
        m_scan->Begin(EverywhereQuery(word, {}));
        while (m_scan->Step()) {
        }
        if (m_scan->TextCount() != texts || m_scan->Failures() > 0)
            qFatal("the search finds something else");
    }
    /// Of a rare word, the pages read or kept.
    double SearchTime(bool isKept)
    {
        if (!isKept)
            m_scan->ForgetPages();
        else if (m_scan->KeptBytes() == 0)
            Search(RareWord, 1);
        QElapsedTimer clock;
        clock.start();
        Search(RareWord, 1);
        return Milliseconds(clock);
    }
    double FloorTime()
    {
        QElapsedTimer clock;
        clock.start();
        for (const auto &raw : m_raw) {
            if (raw->ReadBlobs() == 0)
                qFatal("there is nothing to read");
        }
        return Milliseconds(clock);
    }
    /// From a letter to its first line, nothing being kept.
    double FirstTime()
    {
        m_scan->ForgetPages();
        QElapsedTimer clock;
        clock.start();
        m_scan->Begin(EverywhereQuery(Letter, {}));
        while (m_scan->TextCount() == 0 && m_scan->Step(std::chrono::milliseconds(1))) {
        }
        if (m_scan->Hit(0, 0).hit.isEmpty())
            qFatal("the first line says nothing");
        const double time = Milliseconds(clock);
        m_scan->Stop();
        return time;
    }
    /// The longest step of three searches: a letter while pages are read, a rare word and the letter in kept ones.
    double BlockTime()
    {
        m_scan->ForgetPages();
        double worst = 0;
        for (const QString &word : {Letter, RareWord, Letter}) {
            m_scan->Begin(EverywhereQuery(word, {}));
            bool isMore = true;
            while (isMore) {
                QElapsedTimer clock;
                clock.start();
                isMore = m_scan->Step();
                worst = std::max(worst, Milliseconds(clock));
            }
        }
        return worst;
    }
    double MemoryGrowth()
    {
        m_scan->ForgetPages();
        return PeakGrowth([this] { Search(RareWord, 1); });
    }

private:
    QString Path() const { return m_folder.filePath(u"KELORA.FDB"_s); }

    QTemporaryDir m_folder;
    TpFIBDatabase m_database;
    TpFIBTransaction m_transaction;
    std::unique_ptr<EverywhereScan> m_scan;
    std::vector<std::unique_ptr<RawStatement>> m_raw;
};

} // namespace

void RegisterEverywhereMeasures()
{
    const auto add = [](const QString &name, const QString &unit, const QString &reach,
                        double (*ours)(EverywhereCanon &), double (*floor)(EverywhereCanon &)) {
        const Lazy<EverywhereCanon> canon{[] { return std::make_unique<EverywhereCanon>(); }};
        Register({.name = name,
                  .unit = unit,
                  .reach = reach,
                  .ours = [=] { return ours(canon()); },
                  .floor = [=] { return floor(canon()); },
                  .finish = canon.Finish(),
                  .repetitions = 9});
    };
    constexpr double megabyte = 1e6;
    const auto read = [](EverywhereCanon &canon) { return canon.FloorTime(); };
    const auto longestBlock = [](EverywhereCanon &) { return LongestBlock; };
    add(
        u"everywhere-cold"_s, u"ms"_s, u"at most 12 x"_s,
        [](EverywhereCanon &canon) { return canon.SearchTime(false); }, read);
    add(
        u"everywhere-warm"_s, u"ms"_s, u"at most 3 x"_s, [](EverywhereCanon &canon) { return canon.SearchTime(true); },
        read);
    add(
        u"everywhere-first"_s, u"ms"_s, u"at most 50 ms"_s, [](EverywhereCanon &canon) { return canon.FirstTime(); },
        longestBlock);
    add(
        u"everywhere-block"_s, u"ms"_s, u"at most 50 ms"_s, [](EverywhereCanon &canon) { return canon.BlockTime(); },
        longestBlock);
    add(
        u"everywhere-memory"_s, u"MB"_s, u"at most 1.2 x what is kept at most"_s,
        [](EverywhereCanon &canon) { return canon.MemoryGrowth(); },
        [](EverywhereCanon &) { return static_cast<double>(EverywhereScan::MostKept) / megabyte; });
}
