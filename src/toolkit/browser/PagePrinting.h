#pragma once

#include <QString>

class QPrinter;
class QWidget;
class TBrowserControl;

/// Prints the control's page through the print dialog. `fallbackTitle` is for a document without a title.
void PrintPage(TBrowserControl &control, const QString &fallbackTitle);
/// Opens the preview window, named "frmPrintPreview", on the control's page as soon as that is laid out.
void PreviewPage(TBrowserControl &control, const QString &fallbackTitle);

/// Lets the reader set the printer in the print dialog, named "dlgPrint". False if the reader cancels, or the window is
/// destroyed meanwhile.
bool AskHowToPrint(QPrinter &printer, QWidget *window);
