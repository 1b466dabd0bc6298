#pragma once

#include <QByteArray>
#include <QPageLayout>
#include <QString>

class QPrinter;
class TBrowserControl;

/// The texts in the margins of a printed page.
struct PageTexts
{
    QString title;   ///< header, left; "Page p of P" is at its right
    QString address; ///< footer, left
    QString date;    ///< footer, right
};

/// Prints the control's page through the print dialog. `fallbackTitle` is for a document without a title.
void PrintPage(TBrowserControl &control, const QString &fallbackTitle);
/// Opens the preview window, named "frmPrintPreview", on the control's page.
void PreviewPage(TBrowserControl &control, const QString &fallbackTitle);

/// The layout that Chromium gets for a sheet: with margins wide enough for header and footer.
QPageLayout EngineLayout(const QPageLayout &sheet);
/// Draws Chromium's pages, each with header and footer, from page `first` to page `last` (counted from 1, limited to
/// those that exist). Images have at most `dotsPerInch`. False if the bytes are not a PDF.
bool PaintPages(QPrinter &printer, const QByteArray &pdf, const PageTexts &texts, int first, int last, int dotsPerInch);
