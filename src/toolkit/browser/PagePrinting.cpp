#include "toolkit/browser/PagePrinting.h"

#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/PreviewWindow.h"
#include "toolkit/browser/PrintJob.h"

#include <QDate>
#include <QLocale>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>

#include <memory>

namespace {

PageTexts TextsOf(TBrowserControl &control, const QString &fallbackTitle)
{
    const TBrowserControl::Identity identity = control.PrintedIdentity();
    const QString title = control.Evaluate(QStringLiteral("document.title")).toString().trimmed();
    return {title.isEmpty() ? fallbackTitle : title, identity.address,
            QLocale().toString(QDate::currentDate(), QLocale::ShortFormat), identity.language};
}

} // namespace

bool AskHowToPrint(QPrinter &printer, QWidget *window)
{
    // The window may be destroyed while the dialog is open, and the dialog with it.
    const QPointer<QPrintDialog> dialog = new QPrintDialog(&printer, window);
    dialog->setObjectName(QStringLiteral("dlgPrint"));
    dialog->setOption(QAbstractPrintDialog::PrintPageRange);
    const bool isAccepted = dialog->exec() == QDialog::Accepted && dialog;
    delete dialog;
    return isAccepted;
}

void PrintPage(TBrowserControl &control, const QString &fallbackTitle)
{
    const QPointer<TBrowserControl> self = &control;
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setPageOrientation(QPageLayout::Portrait);
    const PageTexts texts = TextsOf(control, fallbackTitle);
    if (!self)
        return;
    printer->setDocName(texts.title);
    const PrintedPage page(control); // what the reader sees behind the dialog
    if (!AskHowToPrint(*printer, control.window()) || !self)
        return;
    auto *job = new PrintJob(&control, control.window(), texts);
    job->LayOut(page, printer->pageLayout(), [job, printer](const QByteArray &pdf) { job->Print(pdf, printer); });
}

void PreviewPage(TBrowserControl &control, const QString &fallbackTitle)
{
    static const QString jobName = QStringLiteral("jobPreview");
    // A held key asks many times before the window is there.
    if (control.findChild<PrintJob *>(jobName))
        return;
    const QPointer<TBrowserControl> self = &control;
    const PageTexts texts = TextsOf(control, fallbackTitle);
    if (!self || control.findChild<PrintJob *>(jobName))
        return;
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setPageOrientation(QPageLayout::Portrait);
    printer->setDocName(texts.title);
    auto *job = new PrintJob(&control, control.window(), texts);
    job->setObjectName(jobName);
    const PrintedPage page(control);
    job->LayOut(page, printer->pageLayout(), [job, printer, texts, self, page](const QByteArray &pdf) {
        job->End();
        auto *window = new PreviewWindow(page, texts, printer, self->window());
        if (window->Show(pdf))
            window->show();
        else
            delete window;
    });
}
