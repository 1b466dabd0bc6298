#include "toolkit/browser/FindDialog.h"

#include "presentation/languages/DKLang.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "ui_FindDialog.h"

#include <QKeyEvent>

FindDialog::FindDialog(QWidget *parent) : QDialog(parent), m_ui(std::make_unique<Ui::FindDialog>())
{
    m_ui->setupUi(this);
    GrowWithText(*this);
    setObjectName(QStringLiteral("dlgFind"));
    TranslateForm(*this)->FOnLanguageChanged = [this] {
        if (!m_ui->lbNotFound->text().isEmpty())
            ShowResult(false); // translates the message on show
    };
    ConnectGuarded(m_ui->btnFindNext, &QPushButton::clicked, this, [this] { Find(false); });
    ConnectGuarded(m_ui->btnFindPrior, &QPushButton::clicked, this, [this] { Find(true); });
    ConnectGuarded(m_ui->edFindText, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_ui->lbNotFound->clear();
        m_ui->btnFindNext->setEnabled(!text.isEmpty());
        m_ui->btnFindPrior->setEnabled(!text.isEmpty());
    });
    m_ui->lbNotFound->clear();
}

FindDialog::~FindDialog() = default;

void FindDialog::Open(const QString &selection)
{
    if (!selection.isEmpty() && !selection.contains(QLatin1Char('\n')))
        m_ui->edFindText->setText(selection);
    show();
    raise();
    activateWindow();
    m_ui->edFindText->setFocus();
    m_ui->edFindText->selectAll();
}

QString FindDialog::Text() const
{
    return m_ui->edFindText->text();
}

bool FindDialog::IsCaseMatched() const
{
    return m_ui->cbMatchCase->isChecked();
}

bool FindDialog::IsWholeWord() const
{
    return m_ui->cbWholeWord->isChecked();
}

void FindDialog::ShowResult(bool isFound)
{
    m_ui->lbNotFound->setText(isFound ? QString() : m_ui->lbNotFound->property("notFoundText").toString());
}

void FindDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F3)
        Find(event->modifiers().testFlag(Qt::ShiftModifier));
    else
        QDialog::keyPressEvent(event);
}

void FindDialog::Find(bool isBackward)
{
    if (OnFind && !Text().isEmpty())
        OnFind(isBackward);
}
