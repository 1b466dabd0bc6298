#include "BenchReader.h"
#include "Heartbeat.h"
#include "Measures.h"
#include "Painted.h"
#include "Processes.h"
#include "RawStatement.h"
#include "Sample.h"
#include "Suites.h"
#include "reader/Main.h"

#include "marks/Excerpt.h"
#include "marks/FocusHighlight.h"
#include "stores/ClientsDM.h"
#include "stores/KeloraSuttaList.h"
#include "stores/Modules.h"
#include "stores/engine/Scripter.h"
#include "toolkit/bound/CxGridDBTableView.h"
#include "toolkit/browser/BrowserControl.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int WaitMilliseconds = 60000;
constexpr int MarkBytes = 5000;
constexpr int Marks = 10'000;
constexpr int ManyMarks = 100'000;
constexpr int ShortMarkBytes = 500;
const QString FilterText = u"kinh"_s;
/// In no mark, in the last one, in few, in all.
const QStringList KeyTexts{u"chẳng có"_s, u"kinh 100000"_s, u"9999"_s, FilterText};

/// Tells when a widget is painted for the first time.
class FirstPaint : public QObject
{
public:
    explicit FirstPaint(QWidget *widget) { widget->installEventFilter(this); }
    void Wait()
    {
        QTimer::singleShot(WaitMilliseconds, &m_loop, [] { qFatal("a window was never painted"); });
        if (!m_isPainted)
            m_loop.exec();
    }

protected:
    bool eventFilter(QObject *widget, QEvent *event) override
    {
        if (event->type() != QEvent::Paint || m_isPainted)
            return false;
        m_isPainted = true;
        widget->removeEventFilter(this);
        // Behind the paint itself.
        QTimer::singleShot(0, &m_loop, &QEventLoop::quit);
        return false;
    }

private:
    QEventLoop m_loop;
    bool m_isPainted = false;
};

/// The reader with many marks.
class BenchMarks
{
public:
    BenchMarks(int count, int bytes) : m_reader(2, PlainPage(bytes))
    {
        QFile::copy(Sample().Folder() + u"TARUNECLIENT.FDB"_s, File());
        frmClientsDM->DataModuleCreate();
        if (!frmClientsDM->vIsOKClients)
            qFatal("the client database does not open");
        Run(KeloraSuttaListScript({{1101, u"Chương"_s, u"Kaṇḍaṃ"_s, {}}}));
        Run({u"SET TERM ^ ;"_s,
             u"execute block as declare I integer = 0; begin while (I < %1) do begin I = I + 1;"_s.arg(count),
             u"insert into SUTTA_TEXT_FOCUS values (:I, 'kinh ' || :I, rpad('<p>', %1, 'kinh luat '), 2, 'note', 6, "
             "1101, current_timestamp, 'luat'); end end^"_s.arg(bytes),
             u"COMMIT WORK^"_s});
        QFile excerpt(ExcerptFile());
        if (excerpt.open(QIODevice::WriteOnly))
            excerpt.write(QByteArray("<p>") + QByteArray("kinh luat ").repeated(bytes / 10));
    }

    QString File() const { return QFileInfo(m_reader.CanonPath()).path() + u"/TARUNECLIENT.FDB"_s; }
    QString ExcerptFile() const { return QFileInfo(m_reader.CanonPath()).path() + u"/excerpt.html"_s; }
    QString ClientLibrary() const { return m_reader.ClientLibrary(); }

    /// From the command to the list on the screen.
    double OpenTime()
    {
        m_form.reset();
        QElapsedTimer clock;
        clock.start();
        m_form = std::make_unique<TfrmFocusHighlight>(m_reader.Window());
        FirstPaint painted(List().viewport());
        m_form->show();
        painted.Wait();
        const double time = Milliseconds(clock);
        m_form->close();
        m_form.reset();
        return time;
    }
    /// From a key in the search box to the list painted.
    double FilterTime()
    {
        Show();
        auto *search = m_form->findChild<QLineEdit *>(u"edSearch"_s);
        search->setText(FilterText);
        QElapsedTimer clock;
        clock.start();
        QTest::sendKeyEvent(QTest::Release, search, Qt::Key_Shift, QString(), Qt::NoModifier);
        List().viewport()->repaint();
        const double time = Milliseconds(clock);
        WaitExcerpt();
        return time;
    }
    /// The longest time for which the window's thread is busy at a stretch, from a key in the search box until its rows
    /// are found and painted; the worst of the texts.
    double KeyBlock()
    {
        Show();
        double worst = 0;
        for (const QString &text : KeyTexts) {
            auto *search = m_form->findChild<QLineEdit *>(u"edSearch"_s);
            search->setText(text);
            Heartbeat heartbeat;
            QTest::sendKeyEvent(QTest::Release, search, Qt::Key_Shift, QString(), Qt::NoModifier);
            WaitUntil([] { return !frmClientsDM->qryFocus.IsPaused(); });
            List().viewport()->repaint();
            worst = std::max(worst, heartbeat.Worst());
        }
        return worst;
    }
    /// From a key in the list to the excerpt on the screen.
    double MoveTime()
    {
        Show();
        QElapsedTimer clock;
        clock.start();
        QTest::keyClick(&List(), Qt::Key_Down);
        WaitExcerpt();
        return Milliseconds(clock);
    }

private:
    static void Run(const QStringList &lines)
    {
        TpFIBScripter script;
        script.SetDatabase(&frmClientsDM->dbClientTarune);
        script.Script() = lines;
        script.ExecuteScript();
    }
    TcxGridDBTableView &List() { return *m_form->findChild<TcxGridDBTableView *>(u"gtvFocus"_s); }
    void Show()
    {
        if (m_form)
            return;
        m_form = std::make_unique<TfrmFocusHighlight>(m_reader.Window());
        new PaintedProbe(m_form->findChild<TBrowserControl *>(u"ebFocusText"_s), [this] {
            m_isPainted = true;
            m_loop.quit();
        });
        m_form->show();
        WaitExcerpt();
    }
    void WaitExcerpt()
    {
        QTimer deadline;
        QObject::connect(&deadline, &QTimer::timeout, [] { qFatal("an excerpt was never painted"); });
        deadline.start(WaitMilliseconds);
        if (!m_isPainted)
            m_loop.exec();
        m_isPainted = false;
    }

    BenchReader m_reader;
    QEventLoop m_loop;
    bool m_isPainted = false;
    std::unique_ptr<TfrmFocusHighlight> m_form;
};

} // namespace

void RegisterMarksMeasures()
{
    const Lazy<BenchMarks> made{[] { return std::make_unique<BenchMarks>(Marks, MarkBytes); }};
    const auto finish = made.Finish();
    Register({.name = u"marks-open"_s,
              .unit = u"ms"_s,
              .reach = u"at most 200 ms"_s,
              .ours = [made] { return made().OpenTime(); },
              .floor =
                  [] {
                      // A window with a browser control and nothing else.
                      QElapsedTimer clock;
                      clock.start();
                      QWidget window;
                      const TBrowserControl control(&window);
                      FirstPaint painted(&window);
                      window.show();
                      painted.Wait();
                      return Milliseconds(clock);
                  },
              .finish = finish});
    const auto statement = std::make_shared<std::unique_ptr<RawStatement>>();
    Register({.name = u"marks-filter"_s,
              .unit = u"ms"_s,
              .reach = u"at most 1.3 x plus 10 ms"_s,
              .ours = [made] { return made().FilterTime(); },
              .floor =
                  [made, statement] {
                      if (!*statement) {
                          *statement = std::make_unique<RawStatement>(
                              made().ClientLibrary(), made().File(),
                              u"select F.ID_FOC, F.NAME_FOC, F.PRIORITY_FOC, F.DESC_FOC, F.NIK_SUT, F.NIC_SUT, "
                              "S.NAME_SUT_VIE, S.NAME_SUT_PAL, S.NAME_SUT_ENG, S.FAVOURITE_SUT, F.DATETIME_FOC, "
                              "F.KEYWORD_FOC from SUTTA_TEXT_FOCUS F inner join SUTTA_LIST S on (S.NIK_SUT = F.NIK_SUT "
                              "and S.NIC_SUT = F.NIC_SUT) where F.NIK_SUT = 6 and upper(F.NAME_FOC) like ?"_s);
                      }
                      QElapsedTimer clock;
                      clock.start();
                      (*statement)->Fetch({u'%' + FilterText.toUpper() + u'%'});
                      return Milliseconds(clock);
                  },
              .finish =
                  [finish, statement] {
                      statement->reset();
                      finish();
                  },
              .repetitions = 15});
    const auto engine = std::make_shared<std::unique_ptr<ProbedProcess>>();
    Register({.name = u"marks-move"_s,
              .unit = u"ms"_s,
              .reach = u"at most 1.3 x"_s,
              .ours = [made] { return made().MoveTime(); },
              .floor =
                  [made, engine] {
                      if (!*engine) {
                          *engine = std::make_unique<ProbedProcess>(
                              QCoreApplication::applicationDirPath() + u"/lumivara_floor"_s,
                              QStringList{Sample().FirstPage()}, Sample().ConfigFolder());
                          (*engine)->WaitPainted();
                      }
                      (*engine)->WriteLine(made().ExcerptFile());
                      return (*engine)->ReadLine().toDouble();
                  },
              .finish =
                  [finish, engine] {
                      engine->reset();
                      finish();
                  },
              .repetitions = 25});
    const Lazy<BenchMarks> many{[] { return std::make_unique<BenchMarks>(ManyMarks, ShortMarkBytes); }};
    const auto whole = std::make_shared<std::unique_ptr<RawStatement>>();
    Register({.name = u"marks-key"_s,
              .unit = u"ms"_s,
              .reach = u"at most 50 ms"_s,
              .ours = [many] { return many().KeyBlock(); },
              .floor =
                  [many, whole] {
                      if (!*whole) {
                          *whole = std::make_unique<RawStatement>(
                              many().ClientLibrary(), many().File(),
                              u"select F.ID_FOC from SUTTA_TEXT_FOCUS F inner join SUTTA_LIST S on (S.NIK_SUT = "
                              "F.NIK_SUT and S.NIC_SUT = F.NIC_SUT) where F.NIK_SUT = 6 and ((upper(F.NAME_FOC) like "
                              "?) or (upper(F.KEYWORD_FOC) like ?))"_s);
                      }
                      QElapsedTimer clock;
                      clock.start();
                      const QString pattern = u'%' + KeyTexts.front().toUpper() + u'%';
                      (*whole)->Fetch({pattern, pattern});
                      return Milliseconds(clock);
                  },
              .finish =
                  [finish = many.Finish(), whole] {
                      whole->reset();
                      finish();
                  },
              .repetitions = 5});
}
