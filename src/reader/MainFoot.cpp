#include "reader/Main.h"

#include "base/Messages.h"
#include "reader/MarksInText.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "toolkit/bound/DBTreeList.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

#include <QApplication>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr Message oneMark{u"1 dấu", u"1 mark"};
constexpr Message manyMarks{u"%1 dấu", u"%1 marks"};

QString MarksText(int count)
{
    return count == 1 ? TextOrEnglish(oneMark) : TextOrEnglish(manyMarks).arg(count);
}

} // namespace

void TfrmMain::SetUpFoot()
{
    ui->btnMore->setMenu(ui->ppMore);
    ui->barFoot->setVisible(Get<bool>(frmKeloraDM->vOurOptions, Option::FootBar));
    ui->acFoot->setChecked(!ui->barFoot->isHidden());
    ui->acVelthuis->setChecked(frmKeloraDM->TypesPali());
    ui->acFollowDesktop->setChecked(Get<bool>(frmKeloraDM->vOurOptions, Option::FollowDesktop));
    ConnectGuarded(ui->btnFootAction, &QToolButton::clicked, this, [this] {
        const auto act = m_foot.act;
        TellInFoot({});
        if (act)
            act();
    });
}

void TfrmMain::ShowFoot(bool shows)
{
    if (!shows && ui->barFoot->isAncestorOf(focusWidget()))
        ui->ebContent->setFocus();
    ui->barFoot->setVisible(shows);
    KeepChoice(Option::FootBar, shows);
}

void TfrmMain::KeepChoice(Option option, const OptionValue &value)
{
    frmKeloraDM->vOurOptions[option] = value;
    StoreSilently(option, value);
}

void TfrmMain::TellInFoot(const QString &message, const QString &action, std::function<void()> act)
{
    m_foot = {message, action, std::move(act)};
    m_footBeforeNames.reset();
    ui->lbFootMessage->setText(message);
    ui->btnFootAction->setText(action);
    ui->btnFootAction->setVisible(!action.isEmpty());
    ui->btnFootNames->hide();
}

void TfrmMain::UpdateFootText()
{
    // The names as the tree shows them, from the current node up to its highest group.
    QStringList names;
    if (ShownNameColumn()) {
        const QModelIndex current = ui->dbtSutas->NodeOf(qryTreeSutas.RecNo());
        for (QModelIndex node = current; node.isValid(); node = node.parent())
            names += node.siblingAtColumn(current.column()).data().toString();
    }
    const int number = qryTreeSutas.Active() ? qryTreeSutas.FieldByName(Field::IdVic).AsInteger() : 0;
    const bool isText = qryKeloraContent.Active() && qryKeloraContent.RecordCount() > 0;
    if (isText && !names.isEmpty())
        names.insert(1, QString::number(number));
    // Before the groups, which are cut off where there is no room.
    const QString marks = MarksText(m_marks->Count());
    if (m_marks->Count() > 0)
        names.insert(std::min<qsizetype>(2, names.size()), marks);
    ui->stripMarks->setAccessibleDescription(marks);
    ui->lbFootText->setText(names.join(u"  ·  "_s));
}

void TfrmMain::GoToArea(int step)
{
    const std::array<std::pair<QWidget *, QWidget *>, 3> areas{
        {{ui->lcTree, ui->dbtSutas}, {ui->lcContent, ui->ebContent}, {ui->barFoot, ui->btnMore}}};
    const int count = ui->barFoot->isVisible() ? 3 : 2;
    int at = step > 0 ? -1 : count;
    for (int index = 0; index < count; ++index)
        if (areas[size_t(index)].first->isAncestorOf(QApplication::focusWidget()))
            at = index;
    areas[size_t((at + step + count) % count)].second->setFocus(Qt::ShortcutFocusReason);
}
