#include "presentation/Welcome.h"

#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_Welcome.h"

#include <QKeyEvent>

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitWelcomeTexts()
{
    Q_INIT_RESOURCE(presentation);
}

TfrmWelcome::TfrmWelcome(std::function<void()> import, std::function<void()> openGuide, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmWelcome>())
{
    InitWelcomeTexts();
    SetWindowFont(*this);
    ui->setupUi(this);
    GrowWithText(*this);
    TranslateForm(*this);
    CentreOnScreen(*this);
    ConnectGuarded(ui->btnWelcomeImport, &QPushButton::clicked, this, [this, import = std::move(import)] {
        close();
        import();
    });
    ConnectGuarded(ui->btnWelcomeGuide, &QPushButton::clicked, this, std::move(openGuide));
    ConnectGuarded(ui->btnWelcomeClose, &QPushButton::clicked, this, [this] { close(); });
    ui->btnWelcomeClose->setFocus();
}

TfrmWelcome::~TfrmWelcome() = default;

void TfrmWelcome::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}
