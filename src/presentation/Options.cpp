#include "presentation/Options.h"

#include "base/InterfaceLanguage.h"
#include "presentation/OptionValues.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/settings/Options.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "ui_Options.h"

#include <QScreen>
#include <QShowEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize DesignSize(394, 372); // with letters of DesignHeight
constexpr qreal DesignHeight = 13;    // pixels

} // namespace

TfrmOptions::TfrmOptions(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::frmOptions>())
{
    SetWindowFont(*this);
    ui->setupUi(this);
    TranslateForm(*this);

    const auto wire = [this](QAction *action, QPushButton *button, void (TfrmOptions::*execute)()) {
        button->setText(action->text());
        addAction(action);
        connect(button, &QPushButton::clicked, action, &QAction::trigger);
        ConnectGuarded(action, &QAction::triggered, this, [this, execute] { (this->*execute)(); });
    };
    wire(ui->acDefault, ui->btnDefault, &TfrmOptions::acDefaultExecute);
    wire(ui->acOK, ui->btnOK, &TfrmOptions::acOKExecute);
    connect(ui->btnCancel, &QPushButton::clicked, this, &TfrmOptions::reject);
    ui->cbStartWin->installEventFilter(this);
    RunGuarded([this] { FormCreate(); });
}

TfrmOptions::~TfrmOptions() = default;

void TfrmOptions::FormCreate()
{
    ui->cbOpenSutta->setCurrentIndex(-1); // filling it has chosen the first item
    LoadOptions();
    ui->cbStartWin->setChecked(frmKeloraDM->vStartWin);
}

void TfrmOptions::FormShow()
{
    const struct
    {
        TdxLayoutItem *item;
        QString vietnamese, english;
    } captions[] = {
        {ui->lcFormatItemFontName, u"Phông chữ"_s, u"Font name"_s},
        {ui->lcFormatItemBgColor, u"Màu nền văn bản"_s, u"Background color"_s},
        {ui->lcFormatItemHighlightColor, u"Màu kết quả tìm kiếm"_s, u"Highlight color"_s},
        {ui->lcSystemItemOpenAppWith, u"Mở ứng dụng theo"_s, u"Open application with"_s},
        {ui->lcSystemItemDhammapadaPopup, u"Hiển thị popup Pháp Cú"_s, u"Dhammapada popup"_s},
        {ui->lcSystemItemSecondPerNo, u"phút/1 lần"_s, u"second/1"_s},
        {ui->lcSystemItemStartWithWindows, u"Khởi động cùng Windows"_s, u"Start with Windows"_s},
    };
    for (const auto &caption : captions)
        caption.item->SetCaption(InterfaceLang == 1 ? caption.english : caption.vietnamese);
    TdxLayoutItem::AlignCaptions({ui->lcFormatItemFontName, ui->lcFormatItemBgColor, ui->lcFormatItemHighlightColor});
    FitSize();
    move(screen()->availableGeometry().center() - rect().center());
    ui->cbFontName->setFocus();
}

void TfrmOptions::FitSize()
{
    const QSizeF size = QSizeF(DesignSize) * (QFontInfo(font()).pixelSize() / DesignHeight);
    setFixedSize(size.toSize().expandedTo(layout()->totalMinimumSize()));
}

void TfrmOptions::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        RunGuarded([this] { FormShow(); });
    QDialog::showEvent(event);
}

void TfrmOptions::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (isVisible() && (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange))
        FitSize();
}

bool TfrmOptions::eventFilter(QObject *watched, QEvent *event)
{
    // Hiding the dialog also takes the focus away, whatever key or button closed it.
    if (watched == ui->cbStartWin && (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut))
        cbStartWinFocusChanged();
    return QDialog::eventFilter(watched, event);
}

void TfrmOptions::LoadOptions()
{
    const StoredOptions stored = ReadStoredOptions(*frmKeloraDM->CreateRegistry());
    if (stored.openSutta) {
        const int value = *stored.openSutta;
        ui->cbOpenSutta->setCurrentIndex(value >= 1 && value <= ui->cbOpenSutta->count() ? value - 1 : -1);
    }
    if (stored.popupActive)
        ui->cbPopupActive->setChecked(*stored.popupActive);
    if (stored.popupTime)
        ui->sePopupTime->setValue(*stored.popupTime);
    if (stored.fontName)
        ui->cbFontName->SetText(*stored.fontName);
    if (stored.bgColor)
        ui->ccbBgColor->SetColorValue(*stored.bgColor);
    if (stored.seachHighlightColor)
        ui->ccbSeachHighlightColor->SetColorValue(*stored.seachHighlightColor);
}

void TfrmOptions::acOKExecute()
{
    const OptionValues values{.openSutta = ui->cbOpenSutta->currentIndex() + 1,
                              .popupActive = ui->cbPopupActive->isChecked(),
                              .popupTime = ui->sePopupTime->value(),
                              .fontName = ui->cbFontName->Text(),
                              .bgColor = ui->ccbBgColor->ColorValue(),
                              .seachHighlightColor = ui->ccbSeachHighlightColor->ColorValue()};
    // The store gets the font's name from the list, the program the text on show: the name of a missing font can't be
    // stored, and the list throws.
    WriteOptions(*frmKeloraDM->CreateRegistry(), values,
                 [this] { return ui->cbFontName->Item(ui->cbFontName->ItemIndex()); });
    FontName = values.fontName;
    frmKeloraDM->vBgColor = values.bgColor;
    frmKeloraDM->vHighlightColor = values.seachHighlightColor;
    frmKeloraDM->vOpenSutta = values.openSutta;
    frmKeloraDM->vPopupTime = values.popupTime;
    frmKeloraDM->vPopupActive = values.popupActive;
    done(Accepted);
}

void TfrmOptions::acDefaultExecute()
{
    const OptionValues defaults;
    WriteOptions(*frmKeloraDM->CreateRegistry(), defaults, [&defaults] { return defaults.fontName; });
    LoadOptions();
}

void TfrmOptions::cbStartWinFocusChanged()
{
    const QString command =
        ui->cbStartWin->isChecked() ? u'"' + frmKeloraDM->ExeName() + u'"' : QString(); // empty switches it off
    try {
        frmKeloraDM->SetRegistryData(RegistryRoot::LocalMachine, QString::fromUtf16(RunKey), command,
                                     RegistryType::String, u"Kelora"_s);
    } catch (const std::exception &) {
        // Not being able to write the start list is not reported.
    }
}
