#include "toolkit/browser/PrintJob.h"

#include "base/Messages.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/PageSaving.h"
#include "toolkit/browser/PdfRequests.h"
#include "toolkit/browser/WorkWatch.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/Guard.h"

#include <QDir>
#include <QPrinter>
#include <QProgressDialog>
#include <QThread>

#include <exception>
#include <utility>

namespace {

constexpr Message notLaidOut{u"Không dàn được trang để in.", u"The page could not be laid out for printing."};
constexpr Message fileCut{u"Không ghi được trọn tập tin:\r%1", u"The file could not be written whole:\r%1"};
constexpr Message notPrinted{u"Không in được.", u"The page could not be printed."};
constexpr Message preparing{u"Đang dàn trang…", u"Laying out the pages…"};
constexpr Message printing{u"Đang in…", u"Printing…"};
constexpr Message cancelWord{u"&Bỏ qua", u"Cancel"};

constexpr int barDelay = 1000; // milliseconds

} // namespace

PrintedPage::PrintedPage(TBrowserControl &shown) : control(&shown), source(shown.Source()), hostCss(shown.HostCSS()) {}

PrintJob::PrintJob(QObject *owner, QWidget *window, const PageTexts &texts) : QObject(owner), m_texts(texts)
{
    m_bar = new QProgressDialog(TextOrEnglish(preparing), TextOrEnglish(cancelWord), 0, 0, window);
    m_bar->setObjectName(QStringLiteral("dlgPrinting"));
    m_bar->setWindowTitle(texts.title);
    m_bar->setAutoReset(false);
    m_bar->setAutoClose(false);
    m_bar->setMinimumDuration(barDelay);
    SetWindowFont(*m_bar);
    ConnectGuarded(m_bar.data(), &QProgressDialog::canceled, this, [this] { End(); });
}

PrintJob::~PrintJob()
{
    m_isOver = true; // what the end of the unseen control lets happen finds nothing to do
    StopThread();
    m_unseen.reset();
    delete m_bar;
}

void PrintJob::End()
{
    m_isOver = true;
    if (m_bar) {
        m_bar->reset(); // else it would still come after its second
        m_bar->hide();
    }
    if (!m_thread) {
        deleteLater();
        return;
    }
    // A driver may take long to end; only the end of the owner waits for it.
    m_watch->Cancel();
    connect(m_thread.get(), &QThread::finished, this, &QObject::deleteLater);
    if (m_thread->isFinished())
        deleteLater();
}

void PrintJob::LayOut(const PrintedPage &page, const QPageLayout &sheet,
                      std::function<void(const QByteArray &pdf)> done)
{
    if (!page.control || !page.control->IsComplete() || page.control->Source() != page.source) {
        LayOutUnseen(page, sheet, done);
        return;
    }
    const auto answer = [this, page, sheet, done](const QByteArray &pdf) {
        if (pdf.isEmpty() && !m_isOver)
            LayOutUnseen(page, sheet, done);
        else
            LaidOut(pdf, sheet, done);
    };
    PdfRequests::Of(*page.control->page()).Ask(EngineLayout(sheet), this, answer);
}

void PrintJob::LayOutUnseen(const PrintedPage &page, const QPageLayout &sheet, const Done &done)
{
    m_unseen = std::make_unique<TBrowserControl>();
    m_unseen->SetHostCSS(page.hostCss);
    m_unseen->OnDocumentComplete = [this, sheet, done] {
        PdfRequests::Of(*m_unseen->page()).Ask(EngineLayout(sheet), this, [this, sheet, done](const QByteArray &pdf) {
            LaidOut(pdf, sheet, done);
        });
    };
    m_unseen->LoadFromString(page.source);
}

void PrintJob::LaidOut(const QByteArray &pdf, const QPageLayout &sheet, const Done &done)
{
    if (m_isOver)
        return;
    if (pdf.isEmpty()) {
        Fail(TextOrEnglish(notLaidOut));
        return;
    }
    RunInThread([pdf, sheet, texts = m_texts](WorkWatch &watch) { return FinishedPdf(pdf, texts, sheet, watch); },
                [this, done](const QByteArray &finished) {
                    if (finished.isEmpty())
                        Fail(TextOrEnglish(notLaidOut));
                    else
                        done(finished);
                });
}

void PrintJob::Print(const QByteArray &pdf, const std::shared_ptr<QPrinter> &printer)
{
    if (m_bar)
        m_bar->setLabelText(TextOrEnglish(printing));
    const QPageRanges ranges = printer->printRange() == QPrinter::PageRange ? printer->pageRanges() : QPageRanges();
    const bool isFile = printer->outputFormat() == QPrinter::PdfFormat && !printer->outputFileName().isEmpty();
    // Tells what the reader gets to see of a failure; Qt's own words are in the language of the interface.
    const QString failure = isFile ? TextOrEnglish(fileCut).arg(QDir::toNativeSeparators(printer->outputFileName()))
                                   : TextOrEnglish(notPrinted);
    const auto work = [pdf, printer, ranges, isFile](WorkWatch &watch) {
        const QByteArray chosen = ranges.isEmpty() ? pdf : PagesOf(pdf, ranges, watch);
        if (chosen.isEmpty())
            return QByteArray();
        if (!isFile) {
            PaintPages(*printer, chosen, watch);
            return QByteArrayLiteral("printed");
        }
        watch.Step(1, 1);
        return WriteWhole(printer->outputFileName(), chosen).isEmpty() ? QByteArrayLiteral("written") : QByteArray();
    };
    RunInThread(work, [this, failure](const QByteArray &result) {
        if (result.isEmpty())
            Fail(failure);
        else
            End();
    });
}

void PrintJob::RunInThread(const Work &work, const Done &done)
{
    StopThread();
    m_watch = std::make_shared<WorkWatch>();
    m_watch->OnPercent = [this](int percent) {
        QMetaObject::invokeMethod(this, [this, percent] {
            if (!m_bar)
                return;
            m_bar->setMaximum(100);
            m_bar->setValue(percent);
        });
    };
    m_thread.reset(QThread::create([this, work, done, watch = m_watch] {
        QByteArray result;
        try {
            result = work(*watch);
        } catch (const WorkCancelled &) {
            return;
        } catch (const std::exception &failure) {
            qWarning("printing: %s", failure.what());
        }
        QMetaObject::invokeMethod(this, [this, done, result] {
            if (!m_isOver)
                RunGuarded([&] { done(result); });
        });
    }));
    m_thread->start(QThread::LowPriority);
}

void PrintJob::StopThread()
{
    if (!m_thread)
        return;
    m_watch->Cancel();
    m_thread->wait();
    m_thread.reset();
}

void PrintJob::Fail(const QString &text)
{
    End();
    Doors().messageBox(QStringLiteral("Lumivara 1.0"), text, BoxButtons::Ok, BoxIcon::Error);
}
