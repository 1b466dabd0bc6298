#include "toolkit/browser/PreviewWindow.h"

#include "toolkit/browser/PagePrinting.h"
#include "toolkit/browser/PreviewView.h"
#include "toolkit/browser/PrintJob.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QIcon>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPageSetupDialog>
#include <QToolBar>
#include <QVBoxLayout>

#include <cmath>

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitPreviewImages()
{
    Q_INIT_RESOURCE(preview);
}

namespace {

constexpr qreal zoomStep = 1.1;
constexpr QSize startSize(900, 700);

QString Word(const char *words)
{
    return QCoreApplication::translate("QPrintPreviewDialog", words);
}

} // namespace

PreviewWindow::PreviewWindow(const PrintedPage &page, const PageTexts &texts, const std::shared_ptr<QPrinter> &printer,
                             QWidget *parent)
    : QDialog(parent), m_source(page), m_texts(texts), m_printer(printer),
      m_layout(EngineLayout(printer->pageLayout())), m_view(new PreviewView(this)), m_bar(new QToolBar(this))
{
    InitPreviewImages();
    setObjectName(QStringLiteral("frmPrintPreview"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    setWindowTitle(texts.title);
    resize(startSize);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(0);
    rows->addWidget(m_bar);
    rows->addWidget(m_view);
    m_view->setObjectName(QStringLiteral("vwPages"));
    m_bar->setObjectName(QStringLiteral("barPreview"));
    MakeBar();
    Retranslate();
    ConnectGuarded(m_view, &PreviewView::Changed, this, [this] { ShowState(); });
    m_view->setFocus();
    KeepOnScreen(*this);
}

bool PreviewWindow::Show(const QByteArray &pdf)
{
    if (!m_view->SetPdf(pdf))
        return false;
    m_pdf = pdf;
    ShowState();
    return true;
}

QAction *PreviewWindow::Add(const QString &name, const char *picture, const char *words,
                            const std::function<void()> &execute)
{
    auto *action =
        m_bar->addAction(QIcon(QStringLiteral(":/preview/%1.picture").arg(QLatin1StringView(picture))), QString());
    action->setObjectName(name);
    m_commands.append({action, words});
    ConnectGuarded(action, &QAction::triggered, this, execute);
    // Reached by Tab, too; a bar's buttons are not by themselves.
    m_bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
    return action;
}

void PreviewWindow::AddToggle(QAction *action, QActionGroup *group)
{
    action->setCheckable(true);
    group->addAction(action);
}

void PreviewWindow::MakeBar()
{
    m_bar->setMovable(false);
    auto *fits = new QActionGroup(this), *sheets = new QActionGroup(this), *arrangements = new QActionGroup(this);
    fits->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    AddToggle(Add(QStringLiteral("acFitWidth"), "width", "Fit width",
                  [this] { m_view->SetFitting(PreviewView::Fit::Width); }),
              fits);
    AddToggle(
        Add(QStringLiteral("acFitPage"), "page", "Fit page", [this] { m_view->SetFitting(PreviewView::Fit::Page); }),
        fits);
    m_bar->addSeparator();
    m_zoom = new QComboBox(m_bar);
    m_zoom->setObjectName(QStringLiteral("cbZoom"));
    m_zoom->setEditable(true);
    m_zoom->setInsertPolicy(QComboBox::NoInsert);
    for (const int percent : {25, 50, 75, 100, 125, 150, 200, 400})
        m_zoom->addItem(QStringLiteral("%1%").arg(percent));
    m_bar->addWidget(m_zoom);
    ConnectGuarded(m_zoom, &QComboBox::textActivated, this, [this] { ReadZoom(); });
    ConnectGuarded(m_zoom->lineEdit(), &QLineEdit::editingFinished, this, [this] { ReadZoom(); });
    Add(QStringLiteral("acZoomOut"), "zoom-out", "Zoom out", [this] {
        ZoomBy(1 / zoomStep);
    })->setShortcut(QKeySequence::ZoomOut);
    Add(QStringLiteral("acZoomIn"), "zoom-in", "Zoom in", [this] {
        ZoomBy(zoomStep);
    })->setShortcuts({QKeySequence(QKeySequence::ZoomIn), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
    m_bar->addSeparator();
    AddToggle(
        Add(QStringLiteral("acPortrait"), "portrait", "Portrait", [this] { SetOrientation(QPageLayout::Portrait); }),
        sheets);
    AddToggle(Add(QStringLiteral("acLandscape"), "landscape", "Landscape",
                  [this] { SetOrientation(QPageLayout::Landscape); }),
              sheets);
    m_bar->addSeparator();
    Add(QStringLiteral("acFirstPage"), "first", "First page", [this] { m_view->GoTo(1); });
    Add(QStringLiteral("acPriorPage"), "prior", "Previous page", [this] { m_view->GoTo(m_view->CurrentPage() - 1); });
    m_page = new QLineEdit(m_bar);
    m_page->setObjectName(QStringLiteral("edPage"));
    m_page->setAlignment(Qt::AlignRight);
    m_page->setFixedWidth(m_page->fontMetrics().horizontalAdvance(QStringLiteral("000000")));
    m_page->setValidator(new QIntValidator(1, INT_MAX, m_page));
    m_count = new QLabel(m_bar);
    m_bar->addWidget(m_page);
    m_bar->addWidget(m_count);
    ConnectGuarded(m_page, &QLineEdit::editingFinished, this, [this] { ReadPage(); });
    Add(QStringLiteral("acNextPage"), "next", "Next page", [this] { m_view->GoTo(m_view->CurrentPage() + 1); });
    Add(QStringLiteral("acLastPage"), "last", "Last page", [this] { m_view->GoTo(m_view->PageCount()); });
    m_bar->addSeparator();
    const auto arrange = [this](PreviewView::Columns columns) {
        return [this, columns] { m_view->SetArrangement(columns); };
    };
    AddToggle(Add(QStringLiteral("acSinglePage"), "one", "Show single page", arrange(PreviewView::Columns::One)),
              arrangements);
    AddToggle(Add(QStringLiteral("acFacingPages"), "two", "Show facing pages", arrange(PreviewView::Columns::Two)),
              arrangements);
    AddToggle(
        Add(QStringLiteral("acAllPages"), "four", "Show overview of all pages", arrange(PreviewView::Columns::Many)),
        arrangements);
    m_bar->addSeparator();
    Add(QStringLiteral("acPageSetup"), "setup", "Page setup", [this] { SetUpPage(); });
    Add(QStringLiteral("acPrintPages"), "print", "Print", [this] { PrintPages(); })->setShortcut(QKeySequence::Print);
}

void PreviewWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        Retranslate();
    QDialog::changeEvent(event);
}

void PreviewWindow::Retranslate()
{
    for (const Command &command : std::as_const(m_commands)) {
        command.action->setText(Word(command.words));
        const QString key = command.action->shortcut().toString(QKeySequence::NativeText);
        command.action->setToolTip(key.isEmpty() ? Word(command.words)
                                                 : QStringLiteral("%1 (%2)").arg(Word(command.words), key));
    }
    m_view->setAccessibleName(Word("Print Preview"));
}

void PreviewWindow::ShowState()
{
    const auto action = [this](const char *name) { return m_bar->findChild<QAction *>(QLatin1StringView(name)); };
    const int page = m_view->CurrentPage(), count = m_view->PageCount();
    if (!m_page->hasFocus() || !m_page->isModified())
        m_page->setText(QString::number(page));
    m_count->setText(QStringLiteral(" / %1 ").arg(count));
    if (!m_zoom->lineEdit()->hasFocus() || !m_zoom->lineEdit()->isModified())
        m_zoom->setEditText(QStringLiteral("%1%").arg(std::lround(m_view->Zoom() * 100)));
    for (const char *name : {"acFirstPage", "acPriorPage"})
        action(name)->setEnabled(page > 1);
    for (const char *name : {"acNextPage", "acLastPage"})
        action(name)->setEnabled(page < count);
    action("acFitWidth")->setChecked(m_view->Fitting() == PreviewView::Fit::Width);
    action("acFitPage")->setChecked(m_view->Fitting() == PreviewView::Fit::Page);
    action("acSinglePage")->setChecked(m_view->Arrangement() == PreviewView::Columns::One);
    action("acFacingPages")->setChecked(m_view->Arrangement() == PreviewView::Columns::Two);
    action("acAllPages")->setChecked(m_view->Arrangement() == PreviewView::Columns::Many);
    const bool isPortrait = m_layout.orientation() == QPageLayout::Portrait;
    action(isPortrait ? "acPortrait" : "acLandscape")->setChecked(true);
}

void PreviewWindow::ZoomBy(qreal factor)
{
    m_view->SetZoom(m_view->Zoom() * factor);
}

void PreviewWindow::ReadZoom()
{
    bool isNumber = false;
    const int percent = m_zoom->currentText().remove(u'%').trimmed().toInt(&isNumber);
    m_zoom->lineEdit()->setModified(false);
    if (isNumber && percent != std::lround(m_view->Zoom() * 100))
        m_view->SetZoom(percent / 100.0);
    else
        ShowState();
}

void PreviewWindow::ReadPage()
{
    if (m_page->isModified())
        m_view->GoTo(m_page->text().toInt());
    m_page->setModified(false);
    ShowState();
}

void PreviewWindow::SetOrientation(QPageLayout::Orientation orientation)
{
    m_printer->setPageOrientation(orientation);
    LayOutAgain();
}

void PreviewWindow::SetUpPage()
{
    const QPointer<QPageSetupDialog> dialog = new QPageSetupDialog(m_printer.get(), this);
    dialog->setObjectName(QStringLiteral("dlgPageSetup"));
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return; // and this window is gone, too
    delete dialog;
    if (isAccepted)
        LayOutAgain();
}

void PreviewWindow::LayOutAgain()
{
    const QPageLayout sheet = m_printer->pageLayout();
    if (m_job)
        m_job->End(); // for paper that the reader has changed again
    if (EngineLayout(sheet) == m_layout)
        return;
    m_job = new PrintJob(this, this, m_texts);
    m_job->LayOut(m_source, sheet, [this, sheet](const QByteArray &pdf) {
        m_layout = EngineLayout(sheet);
        Show(pdf);
        m_job->End();
    });
}

void PreviewWindow::PrintPages()
{
    const QPointer<PreviewWindow> self = this;
    if (!AskHowToPrint(*m_printer, this) || !self)
        return;
    auto *job = new PrintJob(parentWidget(), parentWidget(), m_texts);
    if (EngineLayout(m_printer->pageLayout()) == m_layout)
        job->Print(m_pdf, m_printer);
    else
        job->LayOut(m_source, m_printer->pageLayout(),
                    [job, printer = m_printer](const QByteArray &pdf) { job->Print(pdf, printer); });
    m_printer.reset(); // the job's from now on
    close();
}
