#pragma once

#include <QByteArray>
#include <QPageLayout>
#include <QPageRanges>
#include <QRect>
#include <QString>

class QPdfDocumentRenderOptions;
class QPrinter;
class WorkWatch;

// These functions touch no window and no database: they may run, and for long pages do run, in a thread of their own.
// All throw WorkCancelled, and an std::exception if the bytes are not a PDF.

/// The texts in the margins of a printed page, and what a printed file tells of itself.
struct PageTexts
{
    QString title;    ///< header, left; "Page p of P" is at its right
    QString address;  ///< footer, left
    QString date;     ///< footer, right
    QString language; ///< of the page, as "vi"; may be empty
};

/// The layout that Chromium gets for a sheet: with margins wide enough for header and footer.
QPageLayout EngineLayout(const QPageLayout &sheet);
/// Chromium's PDF for EngineLayout(sheet), with header and footer over each page as text, title, language, and without
/// links that lead nowhere outside of the program.
QByteArray FinishedPdf(const QByteArray &laidOut, const PageTexts &texts, const QPageLayout &sheet, WorkWatch &watch);
/// The pages of a PDF that are in the ranges, counted from 1; empty if there are none.
QByteArray PagesOf(const QByteArray &pdf, const QPageRanges &ranges, WorkWatch &watch);
/// What QPdfDocument is to be told to render a piece of a page; `points` is the page's size, `drawn` that of the whole
/// page.
QPdfDocumentRenderOptions PieceOptions(QSizeF points, QSize drawn, const QRect &piece);
/// Draws all pages of a PDF on a printer, in strips of at least 300 dots per inch that are freed at once.
void PaintPages(QPrinter &printer, const QByteArray &pdf, WorkWatch &watch);
