#include "presentation/Options.h"

#include "base/Messages.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/settings/Options.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_Options.h"

#include <QShowEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr Message fontName{u"Phông chữ", u"Font name"};
constexpr Message backgroundColour{u"Màu nền văn bản", u"Background color"};
constexpr Message highlightColour{u"Màu kết quả tìm kiếm", u"Highlight color"};
constexpr Message openWith{u"Mở ứng dụng theo", u"Open application with"};
constexpr Message versePopup{u"Hiển thị popup Pháp Cú", u"Dhammapada popup"};
constexpr Message popupTime{u"phút/1 lần", u"second/1"};
constexpr Message startWithSystem{u"Khởi động cùng Windows", u"Start with Windows"};

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
    const std::pair<TdxLayoutItem *, Message> captions[] = {
        {ui->lcFormatItemFontName, fontName},
        {ui->lcFormatItemBgColor, backgroundColour},
        {ui->lcFormatItemHighlightColor, highlightColour},
        {ui->lcSystemItemOpenAppWith, openWith},
        {ui->lcSystemItemDhammapadaPopup, versePopup},
        {ui->lcSystemItemSecondPerNo, popupTime},
        {ui->lcSystemItemStartWithWindows, startWithSystem},
    };
    for (const auto &[item, caption] : captions)
        item->SetCaption(TextOr(QString::fromUtf16(caption.vietnamese), caption));
    TdxLayoutItem::AlignCaptions({ui->lcFormatItemFontName, ui->lcFormatItemBgColor, ui->lcFormatItemHighlightColor});
    FitSize();
    CentreOnScreen(*this);
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
    const OptionValues stored = ReadDialogOptions(*frmKeloraDM->CreateRegistry());
    if (stored.contains(Option::OpenSutta)) {
        const int value = Get<int>(stored, Option::OpenSutta);
        ui->cbOpenSutta->setCurrentIndex(value >= 1 && value <= ui->cbOpenSutta->count() ? value - 1 : -1);
    }
    if (stored.contains(Option::PopupActive))
        ui->cbPopupActive->setChecked(Get<bool>(stored, Option::PopupActive));
    if (stored.contains(Option::PopupTime))
        ui->sePopupTime->setValue(Get<int>(stored, Option::PopupTime));
    if (stored.contains(Option::FontName))
        ui->cbFontName->SetText(Get<QString>(stored, Option::FontName));
    if (stored.contains(Option::BgColor))
        ui->ccbBgColor->SetColorValue(Get<Colour>(stored, Option::BgColor));
    if (stored.contains(Option::SeachHighlightColor))
        ui->ccbSeachHighlightColor->SetColorValue(Get<Colour>(stored, Option::SeachHighlightColor));
}

void TfrmOptions::acOKExecute()
{
    const OptionValues chosen{{Option::OpenSutta, ui->cbOpenSutta->currentIndex() + 1},
                              {Option::PopupActive, ui->cbPopupActive->isChecked()},
                              {Option::PopupTime, ui->sePopupTime->value()},
                              {Option::FontName, ui->cbFontName->Text()},
                              {Option::BgColor, ui->ccbBgColor->ColorValue()},
                              {Option::SeachHighlightColor, ui->ccbSeachHighlightColor->ColorValue()}};
    WriteDialogOptions(*frmKeloraDM->CreateRegistry(), [&](const OptionRow &row) -> OptionValue {
        // The store gets the list's name of the font, the program the text on show: a font that the system lacks can't
        // be stored, and the list says so.
        if (row.option == Option::FontName)
            return ui->cbFontName->Item(ui->cbFontName->ItemIndex());
        return chosen.at(row.option);
    });
    FontName = Get<QString>(chosen, Option::FontName);
    frmKeloraDM->vBgColor = Get<Colour>(chosen, Option::BgColor);
    frmKeloraDM->vHighlightColor = Get<Colour>(chosen, Option::SeachHighlightColor);
    frmKeloraDM->vOpenSutta = Get<int>(chosen, Option::OpenSutta);
    frmKeloraDM->vPopupTime = Get<int>(chosen, Option::PopupTime);
    frmKeloraDM->vPopupActive = Get<bool>(chosen, Option::PopupActive);
    done(Accepted);
}

void TfrmOptions::acDefaultExecute()
{
    WriteDialogOptions(*frmKeloraDM->CreateRegistry(), [](const OptionRow &row) { return row.byDefault; });
    LoadOptions();
}

void TfrmOptions::cbStartWinFocusChanged()
{
    const QString command =
        ui->cbStartWin->isChecked() ? u'"' + frmKeloraDM->ExeName() + u'"' : QString(); // empty switches it off
    try {
        frmKeloraDM->SetRegistryData(RegistryRoot::LocalMachine, QString::fromUtf16(RunKey), command,
                                     RegistryType::String, QString::fromUtf16(RunValue));
    } catch (const std::exception &) {
        // Not being able to write the start list is not reported.
    }
}
