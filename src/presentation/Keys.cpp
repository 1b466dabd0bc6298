#include "presentation/Keys.h"

#include "base/Messages.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_Keys.h"

#include <QAction>
#include <QHeaderView>
#include <QShortcut>
#include <QShowEvent>

#include <algorithm>

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitKeysTexts()
{
    Q_INIT_RESOURCE(presentation);
}

namespace {

constexpr Message keyHeader{u"Phím", u"Key"};
constexpr Message commandHeader{u"Việc", u"Does"};
constexpr Message placeHeader{u"Ở đâu", u"Where"};
constexpr Message mainWindow{u"cửa sổ chính", u"main window"};
constexpr Message otherWindows{u"các cửa sổ khác", u"other windows"};

enum Column { Key, Command, Place };

QString KeysOf(const QAction &action)
{
    QStringList keys;
    const QList<QKeySequence> shortcuts = action.shortcuts();
    for (const QKeySequence &shortcut : shortcuts)
        keys.append(shortcut.toString(QKeySequence::NativeText));
    return keys.join(QStringLiteral(", "));
}

QString CaptionOf(const QAction &action)
{
    return action.text().trimmed().remove(u'&');
}

} // namespace

TfrmKeys::TfrmKeys(QWidget &main, QWidget *parent) : QWidget(parent), m_main(main), ui(std::make_unique<Ui::frmKeys>())
{
    InitKeysTexts();
    SetWindowFont(*this);
    ui->setupUi(this);
    GrowWithText(*this);
    TranslateForm(*this);
    ui->tblKeys->setColumnCount(Place + 1);
    ui->tblKeys->verticalHeader()->hide();
    ui->tblKeys->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    ui->tblKeys->horizontalHeader()->setSectionResizeMode(Command, QHeaderView::Stretch);
    CentreOnScreen(*this);
    // A table takes every key that has a character.
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    ui->tblKeys->setFocus();
}

TfrmKeys::~TfrmKeys() = default;

void TfrmKeys::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        RunGuarded([this] { ShowKeys(); });
}

bool TfrmKeys::event(QEvent *event)
{
    const bool isTaken = QWidget::event(event);
    // The actions of both windows have their new texts by the next turn.
    if (event->type() == QEvent::LanguageChange)
        QMetaObject::invokeMethod(this, [this] { RunGuarded([this] { ShowKeys(); }); }, Qt::QueuedConnection);
    return isTaken;
}

void TfrmKeys::ShowKeys()
{
    const int current = ui->tblKeys->currentRow();
    ui->tblKeys->setHorizontalHeaderLabels(
        {TextOrEnglish(keyHeader), TextOrEnglish(commandHeader), TextOrEnglish(placeHeader)});
    ui->tblKeys->setRowCount(0);
    AddKeysOf(m_main, TextOrEnglish(mainWindow));
    AddKeysOf(*this, TextOrEnglish(otherWindows));
    ui->tblKeys->setCurrentCell(std::max(current, 0), Key);
}

void TfrmKeys::AddKeysOf(QWidget &window, const QString &place)
{
    const QList<QAction *> actions = window.findChildren<QAction *>();
    for (const QAction *action : actions) {
        if (action->shortcuts().isEmpty())
            continue;
        const int row = ui->tblKeys->rowCount();
        ui->tblKeys->insertRow(row);
        ui->tblKeys->setItem(row, Key, new QTableWidgetItem(KeysOf(*action)));
        ui->tblKeys->setItem(row, Command, new QTableWidgetItem(CaptionOf(*action)));
        ui->tblKeys->setItem(row, Place, new QTableWidgetItem(place));
    }
}
