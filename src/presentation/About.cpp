#include "presentation/About.h"

#include "presentation/FontPolicy.h"
#include "presentation/ProductAddresses.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_About.h"

#include <QFontInfo>
#include <QShortcut>
#include <QWebEngineSettings>

using namespace Qt::StringLiterals;

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitAboutTexts()
{
    Q_INIT_RESOURCE(presentation);
}

namespace {

constexpr int windowFontHeight = 13; // pixels, at which the sizes below hold
constexpr QSize boxSize(444, 528);
constexpr QSize pageSize(390, 342);
constexpr int markSize = 32;
constexpr int nameHeight = 24;
constexpr int versionHeight = 13;
constexpr int smallHeight = 12;

// The page's text is black by its own rule, so the background must not follow the skin.
const QString pageGround = u"html { background: #ffffff; color-scheme: light }"_s;

void SetHeight(QWidget &label, int pixels)
{
    QFont font = label.font();
    font.setPixelSize(pixels);
    label.setFont(font);
}

} // namespace

TfrmGioithieu::TfrmGioithieu(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::frmGioithieu>())
{
    InitAboutTexts();
    SetWindowFont(*this);
    ui->setupUi(this);
    TranslateForm(*this);
    ui->wbAbout->settings()->setAttribute(QWebEngineSettings::ShowScrollBars, false);
    ui->wbAbout->SetHostCSS(pageGround);
    ui->wbAbout->OnBeforeNavigate2 = [this](const QUrl &url) { return wbAboutBeforeNavigate2(url); };
    ConnectGuarded(ui->lbFernwhistle, &TcxLinkLabel::Click, this, [this] { lbFernwhistleClick(); });
    ConnectGuarded(ui->btnClose, &QPushButton::clicked, this, [this] { accept(); });
    // A focused page would consume the key.
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QDialog::reject);
    RunGuarded([this] { FormCreate(); });
}

TfrmGioithieu::~TfrmGioithieu() = default;

void TfrmGioithieu::FormCreate()
{
    QFont nameFont = ui->lbTarune->font();
    nameFont.setFamilies({u"Segoe UI Semibold"_s, nameFont.family()});
    nameFont.setBold(true);
    ui->lbTarune->setFont(nameFont);
    QFont linkFont = ui->lbFernwhistle->font();
    linkFont.setUnderline(true);
    ui->lbFernwhistle->setFont(linkFont);
    ApplyFontSize();
    for (QWidget *smoothed : {static_cast<QWidget *>(ui->lbTarune), static_cast<QWidget *>(ui->lbVersion),
                              static_cast<QWidget *>(ui->lbCopyright), static_cast<QWidget *>(ui->btnClose)})
        SetFontQuality(*smoothed);
    ui->btnClose->setFocus();
    FIsStartPage = true;
    ui->wbAbout->LoadFromString(ui->mmAbout->toPlainText().toUtf8(), windowTitle());
    FIsStartPage = false;
}

void TfrmGioithieu::ApplyFontSize()
{
    const int height = QFontInfo(font()).pixelSize();
    const auto grown = [height](int told) { return (told * height + windowFontHeight / 2) / windowFontHeight; };
    SetHeight(*ui->lbTarune, grown(nameHeight));
    SetHeight(*ui->lbVersion, grown(versionHeight));
    SetHeight(*ui->lbCopyright, grown(smallHeight));
    SetHeight(*ui->lbFernwhistle, grown(smallHeight));
    const QSize mark(grown(markSize), grown(markSize));
    ui->Image1->setFixedSize(mark);
    ui->Image1->setPixmap(QIcon(u":/images/lumivara.svg"_s).pixmap(mark, devicePixelRatioF()));
    ui->wbAbout->SetZoomPercent(grown(100));
    ui->pnAboutContent->setFixedSize(grown(pageSize.width()), grown(pageSize.height()));
    const QSize wanted(grown(boxSize.width()), grown(boxSize.height()));
    // No text is cut off in any language and font.
    setFixedSize(wanted.expandedTo(minimumSizeHint()));
}

void TfrmGioithieu::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        CentreOnScreen(*this);
    QDialog::showEvent(event);
}

void TfrmGioithieu::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange && ui->btnClose)
        ApplyFontSize();
}

bool TfrmGioithieu::wbAboutBeforeNavigate2(const QUrl &url)
{
    const QString address = url.toString(QUrl::FullyEncoded);
    if (FIsStartPage || !address.contains("http"_L1))
        return false; // so a mail link goes to the system's mail program
    OpenDocumentLater(address);
    return true;
}

void TfrmGioithieu::lbFernwhistleClick()
{
    Doors().openDocument(QString::fromUtf16(InformationPage));
}
