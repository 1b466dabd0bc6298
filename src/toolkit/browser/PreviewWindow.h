#pragma once

#include "toolkit/browser/PrintJob.h"

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QPrinter>

#include <functional>
#include <memory>

class PreviewView;
class QActionGroup;
class QComboBox;
class QLabel;
class QLineEdit;
class QToolBar;

/// The print preview, named "frmPrintPreview": a finished PDF as it will come out, on other paper if the reader likes,
/// and from here to the printer. It deletes itself when closed and gives back what it took.
class PreviewWindow : public QDialog
{
    Q_OBJECT
public:
    /// Of a page that is laid out for the printer's sheet.
    PreviewWindow(const PrintedPage &page, const PageTexts &texts, const std::shared_ptr<QPrinter> &printer,
                  QWidget *parent);
    /// False if the bytes are not a PDF.
    bool Show(const QByteArray &pdf);

protected:
    void changeEvent(QEvent *event) override;

private:
    QAction *Add(const QString &name, const char *picture, const char *words, const std::function<void()> &execute);
    void AddToggle(QAction *action, QActionGroup *group);
    void MakeBar();
    void Retranslate();
    void ShowState();
    void ZoomBy(qreal factor);
    void ReadZoom();
    void ReadPage();
    void SetOrientation(QPageLayout::Orientation orientation);
    void SetUpPage();
    void LayOutAgain();
    void PrintPages();

    const PrintedPage m_source;
    const PageTexts m_texts;
    std::shared_ptr<QPrinter> m_printer;
    QPageLayout m_layout; ///< of the pages that are shown
    QByteArray m_pdf;
    QPointer<PrintJob> m_job; ///< that lays out again

    struct Command
    {
        QAction *action;
        const char *words; ///< in the context of the toolkit's own preview
    };
    QList<Command> m_commands;
    PreviewView *m_view;
    QToolBar *m_bar;
    QComboBox *m_zoom = nullptr;
    QLineEdit *m_page = nullptr;
    QLabel *m_count = nullptr;
};
