#pragma once

#include <QByteArray>
#include <QPageLayout>
#include <QString>

class QPrinter;
class TBrowserControl;

/// What stands in the margins of a printed page.
struct PageTexts
{
    QString title;   ///< header, left; "Page p of P" stands at its right
    QString address; ///< footer, left
    QString date;    ///< footer, right
};

/// Prints the control's page by the print dialog. `fallbackTitle` serves a document without a title.
void PrintPage(TBrowserControl &control, const QString &fallbackTitle);
/// Opens the preview window, named "frmPrintPreview", on the control's page.
void PreviewPage(TBrowserControl &control, const QString &fallbackTitle);

/// The layout that the engine gets for a sheet: margins wide enough for header and footer.
QPageLayout EngineLayout(const QPageLayout &sheet);
/// Draws the pages that the engine laid out, each with header and footer, from page `first` to page `last` (counted
/// from 1, cut to those that exist). Images have `dotsPerInch` at most. False if the bytes are no document.
bool PaintPages(QPrinter &printer, const QByteArray &pdf, const PageTexts &texts, int first, int last, int dotsPerInch);
