#include "BenchReader.h"

#include "Heartbeat.h"
#include "Measures.h"
#include "Painted.h"
#include "Sample.h"

#include "base/InterfaceLanguage.h"

#include "dictionary/DictionaryDM.h"
#include "reader/ExcerptPlaces.h"
#include "reader/Main.h"
#include "reader/MarksInText.h"
#include "stores/ClientsDM.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/engine/Scripter.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/controls/MarkStrip.h"

#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <ctime>

namespace {

constexpr int WaitMilliseconds = 60000;

/// A program folder whose canon is its own; the rest leads to the product folder.
QString MakeProgramFolder(const QString &folder)
{
    for (const QString &name : {QStringLiteral("firebird"), QFileInfo(ClientLibraryPath({})).fileName(),
                                QStringLiteral("English.lng"), QStringLiteral("AllSkins.skinres")})
        QFile::link(Sample().Folder() + name, folder + QLatin1Char('/') + name);
    return folder + QStringLiteral("/Lumivara");
}

} // namespace

BenchReader::BenchReader(int texts, const QByteArray &page)
{
    qputenv("XDG_CONFIG_HOME", Sample().ConfigFolder().toLocal8Bit());
    ModuleDoors doors;
    doors.exeName = MakeProgramFolder(m_folder.path());
    doors.showMessage = [](const QString &text) { qWarning("%s", qUtf8Printable(text)); };
    doors.terminate = [] {};
    MakeCanon(ClientLibrary(), CanonPath(), texts, page);

    m_kelora = std::make_unique<TfrmKeloraDM>(doors);
    frmKeloraDM = m_kelora.get();
    m_kelora->DataModuleCreate();
    InterfaceLang = 0; // whatever language this machine has
    m_clients = std::make_unique<TfrmClientsDM>(doors);
    frmClientsDM = m_clients.get();
    m_dictionary = std::make_unique<TfrmDictionaryDM>(doors);
    frmDictionaryDM = m_dictionary.get();
    m_window = std::make_unique<TfrmMain>();
    new PaintedProbe(m_window->findChild<TBrowserControl *>(QStringLiteral("ebContent")), [this] {
        ++m_painted;
        if (m_quitWhenPainted)
            m_quitWhenPainted();
    });
    WaitPainted();

    QFile file(ComposedPageFile());
    if (file.open(QIODevice::WriteOnly)) {
        m_window->qryTreeSutas.LocateExact(QStringLiteral("ID_VIC"), FirstBenchText + 1);
        file.write(m_window->findChild<TBrowserControl *>(QStringLiteral("ebContent"))->Source());
        WaitPainted();
    }
}

BenchReader::~BenchReader()
{
    m_window.reset();
    m_dictionary.reset();
    m_clients.reset();
    m_kelora.reset();
    frmDictionaryDM = nullptr;
    frmClientsDM = nullptr;
    frmKeloraDM = nullptr;
}

QString BenchReader::CanonPath() const
{
    return m_folder.filePath(QStringLiteral("KELORA.FDB"));
}

QString BenchReader::ClientLibrary() const
{
    return ClientLibraryPath(m_folder.path() + QLatin1Char('/'));
}

QString BenchReader::TreeStatement() const
{
    return m_window->qryTreeSutas.SelectSQL().join(u'\n');
}

QString BenchReader::ComposedPageFile() const
{
    return m_folder.filePath(QStringLiteral("composed.html"));
}

void BenchReader::WaitPainted()
{
    ++m_seen;
    // A real event loop: the engine runs slowly under one that only polls.
    QEventLoop loop;
    m_quitWhenPainted = [this, &loop] {
        if (m_painted >= m_seen)
            loop.quit();
    };
    QTimer::singleShot(WaitMilliseconds, &loop, [] { qFatal("a page was never painted"); });
    if (m_painted < m_seen)
        loop.exec();
    m_quitWhenPainted = nullptr;
    m_seen = m_painted;
}

double BenchReader::FilterKeyTime(const QString &text)
{
    auto *filter = m_window->findChild<QLineEdit *>(QStringLiteral("edFilterSutta"));
    auto *tree = m_window->findChild<QTreeView *>(QStringLiteral("dbtSutas"));
    filter->setFocus();
    filter->setText(text);
    QElapsedTimer clock;
    clock.start();
    QTest::sendKeyEvent(QTest::Release, filter, Qt::Key_Shift, QString(), Qt::NoModifier);
    tree->viewport()->repaint();
    const double time = Milliseconds(clock);
    WaitPainted();
    return time;
}

double BenchReader::MoveTime()
{
    auto *tree = m_window->findChild<QTreeView *>(QStringLiteral("dbtSutas"));
    m_window->qryTreeSutas.LocateExact(QStringLiteral("ID_VIC"), FirstBenchText);
    WaitPainted();
    tree->setFocus();
    QElapsedTimer clock;
    clock.start();
    QTest::keyClick(tree, Qt::Key_Down);
    WaitPainted();
    return Milliseconds(clock);
}

double BenchReader::BackTime()
{
    // Each call begins and ends with the long page, whose middle is read.
    auto *page = m_window->findChild<TBrowserControl *>(QStringLiteral("ebContent"));
    const QString block = QStringLiteral("lumivara.placeAtTop().block");
    const int middle = page->Evaluate(QStringLiteral("document.querySelectorAll('p').length >> 1")).toInt();
    page->GoToPlace({middle, 0, 0.5, {}});
    page->Evaluate(block);
    m_window->qryTreeSutas.LocateExact(QStringLiteral("ID_VIC"), FirstBenchText);
    WaitPainted();
    QElapsedTimer clock;
    clock.start();
    m_window->findChild<QAction *>(QStringLiteral("acBack"))->trigger();
    WaitPainted();
    const double time = Milliseconds(clock);
    return page->Evaluate(block).toInt() == middle ? time : -time;
}

void BenchReader::MarkLongPage(int marks)
{
    QFile::copy(Sample().Folder() + QStringLiteral("TARUNECLIENT.FDB"),
                m_folder.filePath(QStringLiteral("TARUNECLIENT.FDB")));
    m_clients->DataModuleCreate();
    if (!m_clients->vIsOKClients)
        qFatal("the client database does not open");
    QFile file(ComposedPageFile());
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the composed page is missing");
    const QString page = LettersOfExcerpt(file.readAll());
    constexpr int words = 500; // letters
    TpFIBScripter script;
    script.SetDatabase(&m_clients->dbClientTarune);
    const int text = FirstBenchText + 1;
    script.Script() =
        QStringList{QStringLiteral("insert into SUTTA_LIST values (6, %1, 'Chương', 'Kaṇḍaṃ', null, null);").arg(text)};
    for (int mark = 0; mark < marks; ++mark) {
        const QString excerpt =
            page.mid(mark * (page.size() - words) / marks, words).replace(u'\'', QStringLiteral("''"));
        script.Script() +=
            QStringLiteral("insert into SUTTA_TEXT_FOCUS values (%1, 'kinh %1', '<p>%2</p>', %3, 'note', 6, "
                           "%4, current_timestamp, null);")
                .arg(mark + 1)
                .arg(excerpt.toHtmlEscaped())
                .arg(mark % 4 + 1)
                .arg(text);
    }
    script.Script() += QStringLiteral("commit work;");
    script.ExecuteScript();
    m_marks = marks;
}

BenchReader::StripTimes BenchReader::ShowStrip()
{
    const auto workOfThread = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    };
    MarksInText &marks = m_window->Marks();
    QEventLoop loop;
    marks.OnShow = [&] { loop.quit(); };
    QTimer::singleShot(WaitMilliseconds, &loop, [] { qFatal("the strip never got its lines"); });
    Heartbeat heartbeat;
    const double before = workOfThread();
    QElapsedTimer clock;
    clock.start();
    marks.MarksChanged();
    marks.PageCame();
    loop.exec();
    const StripTimes times{Milliseconds(clock), workOfThread() - before, heartbeat.Worst()};
    marks.OnShow = nullptr;
    const auto *strip = m_window->findChild<TMarkStrip *>(QStringLiteral("stripMarks"));
    if (strip->Lines().size() < m_marks)
        qFatal("marks are missing in the strip");
    return times;
}

double BenchReader::TextTime()
{
    QElapsedTimer clock;
    clock.start();
    m_window->Content().Evaluate(QStringLiteral("document.body.textContent"));
    return Milliseconds(clock);
}
