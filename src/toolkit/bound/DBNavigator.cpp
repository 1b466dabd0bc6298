#include "toolkit/bound/DBNavigator.h"

#include "stores/data/FIBDataSet.h"
#include "toolkit/program/Guard.h"

#include <QHBoxLayout>
#include <QToolButton>

using namespace Qt::StringLiterals;

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitNavigatorImages()
{
    Q_INIT_RESOURCE(navigator);
}

namespace {

constexpr int PictureSize = 14;
constexpr int LeastSide = 24; // the smallest button that is easy to hit

} // namespace

TDBNavigator::TDBNavigator(QWidget *parent) : QFrame(parent)
{
    InitNavigatorImages();
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(0);
    const std::array<QString, ButtonCount> names{u"first"_s, u"prior"_s, u"next"_s, u"last"_s, u"refresh"_s};
    for (int button = 0; button < ButtonCount; ++button) {
        auto *tool = new QToolButton(this);
        tool->setIcon(QIcon(u":/navigator/%1.picture"_s.arg(names[static_cast<size_t>(button)])));
        tool->setIconSize({PictureSize, PictureSize});
        tool->setMinimumSize(LeastSide, LeastSide);
        tool->setAutoRaise(true);
        tool->setFocusPolicy(Qt::TabFocus);
        ConnectGuarded(tool, &QToolButton::clicked, this, [this, button] { Press(static_cast<Button>(button)); });
        layout->addWidget(tool);
        m_buttons[static_cast<size_t>(button)] = tool;
    }
    layout->addStretch();
    ShowState();
}

QStringList TDBNavigator::Hints() const
{
    QStringList hints;
    for (const QToolButton *button : m_buttons)
        hints.append(button->toolTip());
    return hints;
}

void TDBNavigator::SetHints(const QStringList &hints)
{
    for (size_t button = 0; button < m_buttons.size(); ++button) {
        m_buttons[button]->setToolTip(hints.value(static_cast<qsizetype>(button)));
        m_buttons[button]->setAccessibleName(m_buttons[button]->toolTip());
    }
}

void TDBNavigator::FollowInTabOrder(QWidget &control)
{
    QWidget *last = &control;
    for (QToolButton *button : m_buttons) {
        setTabOrder(last, button);
        last = button;
    }
}

void TDBNavigator::SetDataSource(TDataSource *dataSource)
{
    SourceLink::SetDataSource(dataSource);
    if (dataSource)
        ShowState();
}

void TDBNavigator::ShowState()
{
    TDataSet *dataSet = OpenDataSet();
    const bool isOpen = dataSet;
    const int row = isOpen ? dataSet->RecNo() : -1;
    const bool isPending = isOpen && dataSet->State() == DataSetState::Insert;
    const bool hasBefore = row > 0 || (isPending && row >= 0);
    const bool hasAfter = row >= 0 && !isPending && dataSet->FetchAhead(row + 1);
    m_buttons[First]->setEnabled(hasBefore);
    m_buttons[Prior]->setEnabled(hasBefore);
    m_buttons[Next]->setEnabled(hasAfter);
    m_buttons[Last]->setEnabled(hasAfter);
    m_buttons[Refresh]->setEnabled(isOpen);
}

void TDBNavigator::Press(Button button)
{
    TDataSet *dataSet = DataSet();
    if (!dataSet)
        return;
    switch (button) {
    case First:
        return dataSet->First();
    case Prior:
        return dataSet->Prior();
    case Next:
        return dataSet->Next();
    case Last:
        return dataSet->Last();
    case Refresh:
        if (auto *query = qobject_cast<TpFIBDataSet *>(dataSet))
            query->FullRefresh();
        return;
    case ButtonCount:
        break;
    }
}
