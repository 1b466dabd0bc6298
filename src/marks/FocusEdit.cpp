#include "marks/FocusEdit.h"

#include "base/Texts.h"
#include "marks/Excerpt.h"
#include "marks/MarkCaptions.h"
#include "stores/ClientsDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_FocusEdit.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr MarkCaptions captions{u"Tiêu đề", u"Mức quan tâm", u"Từ khóa", u"Ghi chú"};

} // namespace

TfrmFocusEdit::TfrmFocusEdit(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      excerptFile(AppPath), ui(std::make_unique<Ui::frmFocusEdit>())
{
    SetWindowFont(*this);
    ui->setupUi(this);
    GrowWithText(*this);
    TranslateForm(*this);
    ui->ebContentFocus->SetFollowsSkin(true);
    for (const int priority : Priority::All)
        ui->edPriority->AddItem(priority);
    ui->edNameFocus->SetDataSource(&frmClientsDM->dsFocus);
    ui->edPriority->SetDataSource(&frmClientsDM->dsFocus);
    ui->edKeyWord->SetDataSource(&frmClientsDM->dsFocus);
    ui->mmDesc->SetDataSource(&frmClientsDM->dsFocus);

    const auto wire = [this](QAction *action, QPushButton *button, void (TfrmFocusEdit::*execute)()) {
        button->setText(action->text());
        addAction(action);
        connect(button, &QPushButton::clicked, action, &QAction::trigger);
        ConnectGuarded(action, &QAction::triggered, this, [this, execute] { (this->*execute)(); });
    };
    wire(ui->acOK, ui->btnOK, &TfrmFocusEdit::acOKExecute);
    wire(ui->acCancel, ui->btnCancel, &TfrmFocusEdit::acCancelExecute);
}

TfrmFocusEdit::~TfrmFocusEdit() = default;

void TfrmFocusEdit::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        CentreOnOwner(*this);
    QDialog::showEvent(event);
    if (!event->spontaneous())
        RunGuarded([this] { FormShow(); });
}

void TfrmFocusEdit::keyPressEvent(QKeyEvent *event)
{
    // No key closes the window: Escape would leave the row pending like the close box, Enter would store it.
    // On a button Enter presses that button.
    auto *button = qobject_cast<QPushButton *>(focusWidget());
    if (button && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        button->click();
    else
        event->ignore();
}

void TfrmFocusEdit::FormShow()
{
    vFocusS = TrimControls(vFocusS);
    if (!vFocusS.isEmpty()) {
        try {
            ShowExcerpt();
        } catch (const std::exception &) {
            // The window opens anyway; an unreadable file is reported when the mark is stored.
        }
    }
    ShowMarkCaptions(
        {ui->lcFocusItemTitle, ui->lcFocusItemPriority, ui->lcFocusItemKeyword, ui->lcFocusItemDescription}, captions,
        captions);
    ui->edNameFocus->setFocus();
}

void TfrmFocusEdit::ShowExcerpt()
{
    const QByteArray excerpt = excerptFile.Load();
    ui->ebContentFocus->LoadFromString(ShownExcerpt(excerpt));
    TpFIBDataSet &qryFocus = frmClientsDM->qryFocus;
    qryFocus.FieldByName(Field::TextFoc).SetAsBytes(excerpt);
    qryFocus.FieldByName(Field::NameFoc).SetAsString(DefaultTitle(qryFocus.FieldByName(Field::TextFoc).AsBytes()));
}

void TfrmFocusEdit::acOKExecute()
{
    // Text that the input method has not committed yet is part of the mark.
    QGuiApplication::inputMethod()->commit();
    frmClientsDM->qryFocus.FieldByName(Field::TextFoc).SetAsBytes(excerptFile.Load());
    frmClientsDM->qryFocus.Post();
    done(Accepted);
}

void TfrmFocusEdit::acCancelExecute()
{
    frmClientsDM->qryFocus.Cancel();
    done(Rejected);
}
