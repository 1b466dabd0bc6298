#include "reader/Main.h"

#include "presentation/Keys.h"
#include "reader/ReaderRules.h"
#include "stores/Schema.h"
#include "toolkit/program/Forms.h"
#include "ui_Main.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int WholeZoom = 100;

} // namespace

void TfrmMain::SetUpKeys()
{
    WireKey(ui->acKeyZoomIn, [this] { ui->acZoomIn->trigger(); });
    WireKey(ui->acKeyZoomOut, [this] { ui->acZoomOut->trigger(); });
    WireKey(ui->acZoomWhole, [this] { ui->ebContent->SetZoomPercent(WholeZoom); });
    WireKey(ui->acKeyPrint, [this] { ui->acPrint->trigger(); });
    WireKey(ui->acKeySave, [this] { ui->acSave->trigger(); });
    WireKey(ui->acKeyPali, [this] { ui->btnPali->click(); });
    WireKey(ui->acKeyViet, [this] { ui->btnViet->click(); });
    WireKey(ui->acKeyVietPali, [this] { ui->btnVietPali->click(); });
    WireKey(ui->acPriorText, [this] { GoToTextBeside(true); });
    WireKey(ui->acNextText, [this] { GoToTextBeside(false); });
    WireKey(ui->acKeyHelp, [this] { ui->acHelp->trigger(); });
    WireKey(ui->acFullScreen, [this] { ShowFullScreen(ui->acFullScreen->isChecked()); });
    WireKey(ui->acLeaveFullScreen, [this] { ShowFullScreen(false); });
    WireKey(ui->acKeyClose, [this] { close(); });
    WireKey(ui->acKeys, [this] { OpenKeys(); });
    // The same key without Shift, where "+" is its upper letter.
    ui->acKeyZoomIn->setShortcuts(ui->acKeyZoomIn->shortcuts() + QList<QKeySequence>{Qt::CTRL | Qt::Key_Equal});
}

void TfrmMain::WireKey(QAction *action, std::function<void()> execute)
{
    Wire(action, [this, execute = std::move(execute)] {
        if (ui->edFilterSutta->hasFocus())
            ui->ebContent->setFocus(Qt::ShortcutFocusReason);
        execute();
    });
}

void TfrmMain::ShowFullScreen(bool shows)
{
    setWindowState(windowState().setFlag(Qt::WindowFullScreen, shows));
}

void TfrmMain::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // The desktop has keys of its own for it.
    if (event->type() == QEvent::WindowStateChange)
        ui->acFullScreen->setChecked(isFullScreen());
}

bool TfrmMain::IsTextAt(int row) const
{
    const auto field = [this](const QString &name) { return qryTreeSutas.FindField(name)->Index(); };
    return !IsGroupRow(qryTreeSutas.ValueAt(row, field(Field::IdVic)).toInt(),
                       qryTreeSutas.TextAt(row, field(Field::TreeId)));
}

void TfrmMain::GoToTextBeside(bool isBefore)
{
    if (!qryTreeSutas.Active())
        return;
    const auto beside = [&](int row) { return ui->dbtSutas->RowBeside(row, isBefore); };
    int row = beside(qryTreeSutas.RecNo());
    while (row >= 0 && !IsTextAt(row))
        row = beside(row);
    if (row >= 0)
        qryTreeSutas.MoveTo(row);
}

void TfrmMain::OpenKeys()
{
    QWidget *form = OpenForm(u"frmKeys"_s, [this] { return new TfrmKeys(*this); });
    form->raise();
    form->activateWindow();
}
