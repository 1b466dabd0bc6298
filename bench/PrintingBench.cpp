#include "BenchCanon.h"
#include "Heartbeat.h"
#include "Measures.h"
#include "Suites.h"

#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/PreviewView.h"
#include "toolkit/browser/PrintJob.h"
#include "toolkit/browser/PrintedPages.h"
#include "toolkit/browser/WorkWatch.h"

#include <QDialog>
#include <QFile>
#include <QPointer>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTimer>
#include <QWebEnginePage>

#include <algorithm>
#include <functional>
#include <malloc.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype Kilobyte = 1000;
constexpr double KeptMegabytes = 48 * 1.048576;

QPageLayout Sheet()
{
    return QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, {});
}

/// Two columns, as a parallel text has them.
QByteArray ParallelPage(qsizetype bytes)
{
    const QByteArray side = QByteArray("tỳ khưu giữ gìn học giới, ").repeated(12);
    QByteArray page = "<html><head><meta charset=utf-8></head><body><table>";
    while (page.size() < bytes)
        page += "<tr><td valign=top>" + side + "</td><td valign=top>" + side + "</td></tr>\n";
    return page + "</table></body></html>";
}

/// A control on the screen, and what is printed from it.
class Desk
{
public:
    Desk() : pages{PlainPage(11 * Kilobyte), PlainPage(485 * Kilobyte), ParallelPage(908 * Kilobyte)}
    {
        m_control.resize(760, 900);
        m_control.show();
    }

    const QList<QByteArray> pages;

    void Load(const QByteArray &page)
    {
        m_control.LoadFromString(page, u"Kinh"_s);
        m_control.WaitComplete();
    }
    QByteArray LaidOut()
    {
        QByteArray result;
        m_control.page()->printToPdf([&](const QByteArray &pdf) { result = pdf; }, EngineLayout(Sheet()));
        WaitUntil([&] { return !result.isEmpty(); });
        return result;
    }
    void PrintToFile()
    {
        const auto printer = std::make_shared<QPrinter>();
        printer->setOutputFileName(m_folder.filePath(u"printed.pdf"_s));
        const QPointer<PrintJob> job = new PrintJob(&m_control, &m_control, texts);
        job->LayOut(PrintedPage(m_control), Sheet(),
                    [job, printer](const QByteArray &pdf) { job->Print(pdf, printer); });
        WaitUntil([&] { return !job; });
    }
    PreviewView &OpenPreview()
    {
        m_control.PrintPreview();
        const auto view = [this] { return m_control.findChild<PreviewView *>(); };
        WaitUntil([&] { return view() && view()->IsDrawn(); });
        return *view();
    }
    void ClosePreview()
    {
        // From within the loop, where the window's deletion belongs.
        QTimer::singleShot(0, m_control.findChild<QDialog *>(u"frmPrintPreview"_s), &QWidget::close);
        WaitUntil([&] { return !m_control.findChild<PreviewView *>(); });
    }
    /// The worst block of the work on each of the pages.
    double WorstBlock(const std::function<void()> &work)
    {
        double worst = 0;
        for (const QByteArray &page : pages) {
            Load(page);
            Heartbeat heartbeat;
            work();
            worst = std::max(worst, heartbeat.Worst());
        }
        return worst;
    }

    static inline const PageTexts texts{u"Kinh"_s, u"lumivara://text/1101"_s, u"1/2/26"_s, u"vi"_s};

private:
    TBrowserControl m_control;
    QTemporaryDir m_folder;
};

double ResidentMegabytes()
{
    malloc_trim(0); // what is free is not in use
    QFile account(u"/proc/self/smaps_rollup"_s);
    if (!account.open(QIODevice::ReadOnly))
        qFatal("the use of memory can't be read");
    for (const QByteArray &line : account.readAll().split('\n')) {
        if (line.startsWith("Private_Dirty:"))
            return static_cast<double>(line.mid(14).simplified().split(' ').front().toLongLong()) / 1000;
    }
    return 0;
}

/// Growth of this process with the preview walked through, and after it closed.
double PreviewGrowth(Desk &desk, bool isClosed)
{
    desk.Load(desk.pages.back());
    desk.LaidOut(); // what Chromium itself takes for its first PDF is not the preview's
    const double before = ResidentMegabytes();
    PreviewView &view = desk.OpenPreview();
    for (int page = 1; page <= view.PageCount(); page += 4) {
        view.GoTo(page);
        WaitUntil([&] { return view.IsDrawn(); });
    }
    const double open = ResidentMegabytes();
    desk.ClosePreview();
    return (isClosed ? ResidentMegabytes() : open) - before;
}

} // namespace

void RegisterPrintingMeasures()
{
    const Lazy<Desk> desk{[] { return std::make_unique<Desk>(); }};
    const auto layOut = [desk] { return desk().WorstBlock([desk] { desk().LaidOut(); }); };
    const auto add = [&](const QString &name, const QString &unit, const QString &reach,
                         const std::function<double()> &ours, const std::function<double()> &floor) {
        Register({.name = name,
                  .unit = unit,
                  .reach = reach,
                  .ours = ours,
                  .floor = floor,
                  .finish = desk.Finish(),
                  .repetitions = 3});
    };
    add(
        u"print-block"_s, u"ms"_s, u"at most 50 ms more"_s,
        [desk] { return desk().WorstBlock([desk] { desk().PrintToFile(); }); }, layOut);
    add(
        u"preview-block"_s, u"ms"_s, u"at most 50 ms more"_s,
        [desk] {
            return desk().WorstBlock([desk] {
                desk().OpenPreview();
                desk().ClosePreview();
            });
        },
        layOut);
    const auto laidOut = std::make_shared<QByteArray>();
    add(
        u"print-size"_s, u"MB"_s, u"at most 1.3 x plus 40 KB"_s,
        [desk, laidOut] {
            desk().Load(desk().pages[1]);
            *laidOut = desk().LaidOut();
            WorkWatch watch;
            return static_cast<double>(FinishedPdf(*laidOut, Desk::texts, Sheet(), watch).size()) / 1e6;
        },
        [laidOut] { return static_cast<double>(laidOut->size()) / 1e6; });
    add(
        u"preview-memory"_s, u"MB"_s, u"at most 20 MB more"_s, [desk] { return PreviewGrowth(desk(), false); },
        [] { return KeptMegabytes; });
    add(
        u"preview-left"_s, u"MB"_s, u"at most 8 MB"_s, [desk] { return PreviewGrowth(desk(), true); },
        [] { return 0.0; });
}
