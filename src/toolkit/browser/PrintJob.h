#pragma once

#include "toolkit/browser/PrintedPages.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class QPrinter;
class QProgressDialog;
class QThread;
class QWidget;
class TBrowserControl;
class WorkWatch;

/// A page to print: what a control showed when the reader asked, whatever it shows later.
struct PrintedPage
{
    explicit PrintedPage(TBrowserControl &shown);
    QPointer<TBrowserControl> control;
    QByteArray source;
    QString hostCss;
};

/// One page on its way to a PDF, a printer or the preview, while the window lives on. Chromium lays out in its own
/// process; what comes after is done in one thread that touches no window and no database, because the steps of the PDF
/// library and of a printer's driver are not ours to cut into turns of the event loop. A second after the start a bar
/// with a button to cancel shows. The job deletes itself at its end, and ends with its owner, which waits at most for
/// one step. Main thread only.
class PrintJob : public QObject
{
    Q_OBJECT
public:
    /// `window` is what the bar belongs to.
    PrintJob(QObject *owner, QWidget *window, const PageTexts &texts);
    ~PrintJob() override;

    /// Makes the page a finished PDF and gives it to `done`, which goes on with the job or ends it. Where the control
    /// does not show the page any more, or its process ends, the page is loaded once more and unseen.
    void LayOut(const PrintedPage &page, const QPageLayout &sheet, std::function<void(const QByteArray &pdf)> done);
    /// Prints the pages that the printer's ranges ask for, or writes them to its file, which is written whole or not at
    /// all; then ends the job. Nobody else may use the printer any more.
    void Print(const QByteArray &pdf, const std::shared_ptr<QPrinter> &printer);
    /// Ends the job wherever it is, and leaves nothing of it but pages that the printer already has.
    void End();

private:
    using Done = std::function<void(const QByteArray &pdf)>;
    using Work = std::function<QByteArray(WorkWatch &)>;
    void LayOutUnseen(const PrintedPage &page, const QPageLayout &sheet, const Done &done);
    void LaidOut(const QByteArray &pdf, const QPageLayout &sheet, const Done &done);
    void RunInThread(const Work &work, const Done &done);
    void StopThread();
    void Fail(const QString &text);

    PageTexts m_texts;
    QPointer<QProgressDialog> m_bar;
    std::unique_ptr<TBrowserControl> m_unseen;
    std::shared_ptr<WorkWatch> m_watch;
    std::unique_ptr<QThread> m_thread;
    bool m_isOver = false;
};
