#include "toolkit/browser/FindBar.h"

#include "presentation/languages/DKLang.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "ui_FindBar.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>

#include <algorithm>

namespace {

constexpr int longerEdit = 100; // pixels at 96 dpi, with the gaps between the parts

} // namespace

FindBar::FindBar(QWidget *parent) : QFrame(parent), m_ui(std::make_unique<Ui::FindBar>())
{
    m_ui->setupUi(this);
    GrowWithText(*this);
    setObjectName(QStringLiteral("dlgFind"));
    TranslateForm(*this)->FOnLanguageChanged = [this] {
        if (!m_ui->lbNotFound->text().isEmpty())
            ShowResult(0, 0); // translates the message on show
        Arrange();
    };
    setAutoFillBackground(true);
    FollowSkin();
    ConnectGuarded(m_ui->btnFindNext, &QPushButton::clicked, this, [this] { Step(false); });
    ConnectGuarded(m_ui->btnFindPrior, &QPushButton::clicked, this, [this] { Step(true); });
    ConnectGuarded(m_ui->btnFindClose, &QToolButton::clicked, this, [this] {
        if (OnClose)
            OnClose();
    });
    ConnectGuarded(m_ui->edFindText, &QLineEdit::textChanged, this, [this] { Change(); });
    for (const QCheckBox *box : {m_ui->cbMatchCase, m_ui->cbWholeWord})
        ConnectGuarded(box, &QCheckBox::toggled, this, [this] { Change(); });
    ClearResult();
}

FindBar::~FindBar() = default;

void FindBar::Open(const QString &selection)
{
    show();
    m_ui->edFindText->setFocus();
    if (!selection.isEmpty() && !selection.contains(QLatin1Char('\n')))
        m_ui->edFindText->setText(selection);
    m_ui->edFindText->selectAll();
}

QString FindBar::Text() const
{
    return m_ui->edFindText->text();
}

bool FindBar::IsCaseMatched() const
{
    return m_ui->cbMatchCase->isChecked();
}

bool FindBar::IsWholeWord() const
{
    return m_ui->cbWholeWord->isChecked();
}

void FindBar::ShowResult(int at, int count)
{
    TellResult(QStringLiteral("%1/%2").arg(at).arg(count),
               count == 0 ? m_ui->lbNotFound->property("notFoundText").toString() : QString());
}

void FindBar::ClearResult()
{
    TellResult({}, {});
}

void FindBar::TellResult(const QString &places, const QString &message)
{
    m_ui->lbFindCount->setText(places);
    m_ui->lbNotFound->setText(message);
    m_ui->lbNotFound->setVisible(!message.isEmpty());
    // The focus stays in the edit, so a screen reader tells what belongs to that.
    const QString spoken = message.isEmpty() ? places : message;
    if (m_ui->edFindText->accessibleDescription() == spoken)
        return;
    m_ui->edFindText->setAccessibleDescription(spoken);
    QAccessibleEvent told(message.isEmpty() ? m_ui->lbFindCount : m_ui->lbNotFound, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

int FindBar::Frame() const
{
    const QMargins margins = layout()->contentsMargins();
    return margins.left() + m_ui->layFindBar->spacing() + m_ui->btnFindClose->sizeHint().width() + margins.right();
}

QSize FindBar::minimumSizeHint() const
{
    // That of the parts one below the other, or the window could not get narrow again.
    const int parts = std::max(m_ui->layFindText->minimumSize().width(), m_ui->layFindRules->minimumSize().width());
    return {parts + Frame(), QFrame::minimumSizeHint().height()};
}

void FindBar::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    Arrange();
}

void FindBar::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        FollowSkin();
}

void FindBar::FollowSkin()
{
    // The panel around may have a colour of its own, on which the skin's text can't be read.
    QPalette own;
    own.setBrush(QPalette::Window, QApplication::palette().brush(QPalette::Window));
    if (own.brush(QPalette::Window) != palette().brush(QPalette::Window))
        setPalette(own);
}

void FindBar::Arrange()
{
    // With room for the message, even while there is none: the parts must not jump when it comes.
    const QFontMetrics metrics = m_ui->lbNotFound->fontMetrics();
    const int message = metrics.horizontalAdvance(m_ui->lbNotFound->property("notFoundText").toString());
    const int needed = m_ui->layFindText->minimumSize().width() + m_ui->layFindRules->minimumSize().width() + message +
                       Frame() + GrownPixels(longerEdit);
    const auto direction = width() >= needed ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom;
    if (m_ui->layFind->direction() == direction)
        return;
    m_ui->layFind->setDirection(direction);
    updateGeometry();
}

void FindBar::keyPressEvent(QKeyEvent *event)
{
    const bool isBackward = event->modifiers().testFlag(Qt::ShiftModifier);
    auto *button = qobject_cast<QAbstractButton *>(focusWidget());
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (button && button->hasFocus() && !button->isCheckable())
            button->click();
        else
            Step(isBackward);
        break;
    case Qt::Key_Escape:
        m_ui->btnFindClose->click();
        break;
    default:
        QFrame::keyPressEvent(event);
    }
}

void FindBar::Step(bool isBackward)
{
    RunGuarded([&] {
        if (OnStep)
            OnStep(isBackward);
    });
}

void FindBar::Change()
{
    m_ui->btnFindNext->setEnabled(!Text().isEmpty());
    m_ui->btnFindPrior->setEnabled(!Text().isEmpty());
    ClearResult();
    if (OnChange)
        OnChange();
}
