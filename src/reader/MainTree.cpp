#include "reader/Main.h"

#include "base/FilterKey.h"
#include "base/Texts.h"
#include "reader/ReaderRules.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

#include <array>

namespace {

enum class OpenSutta { Last = 1, Random = 2 };

struct NameColumnField
{
    NameColumn column;
    QString field;
};

/// The columns with names, in the order in which the filter looks for the visible one.
const std::array<NameColumnField, 3> &NameColumns()
{
    static const std::array<NameColumnField, 3> columns{{
        {NameColumn::Pali, QStringLiteral("NAME_VIC_PAL")},
        {NameColumn::Vietnamese, QStringLiteral("NAME_VIC_VIE")},
        {NameColumn::English, QStringLiteral("NAME_VIC_ENG")},
    }};
    return columns;
}

} // namespace

void TfrmMain::SetUpTree()
{
    const auto addColumn = [this](const QString &field, bool isVisible) {
        ui->dbtSutas->AddColumn(field, QStringLiteral("dbtSutas") + field, isVisible);
    };
    addColumn(QStringLiteral("ID_VIC"), false);
    addColumn(QStringLiteral("TREE_ID"), false);
    addColumn(QStringLiteral("P_TREE_ID"), false);
    addColumn(QStringLiteral("NAME_VIC_VIE"), true);
    addColumn(QStringLiteral("NAME_VIC_PAL"), false);
    addColumn(QStringLiteral("NAME_VIC_ENG"), false);
    ui->dbtSutas->SetDataSource(&dsTreeSutas);
    ConnectGuarded(ui->dbtSutas, &QWidget::customContextMenuRequested, this, [this](const QPoint &point) {
        ui->ppTreeKelora->popup(ui->dbtSutas->viewport()->mapToGlobal(point));
    });
    ui->edFilterSutta->OnKeyUp = [this](int key) { edFilterSuttaKeyUp(key); };
}

void TfrmMain::LoadContentData()
{
    qryKeloraContent.Close();
    LoadKeloraTree();
    qryKeloraContent.Open();
}

void TfrmMain::OpenText(const QVariant &idVic)
{
    qryTreeSutas.Locate(QStringLiteral("ID_VIC"), idVic);
}

void TfrmMain::LoadKeloraTree()
{
    const QString text = TrimControls(ui->edFilterSutta->text());
    qryTreeSutas.Close();
    qryTreeSutas.SelectSQL() = vDefTreeKeloraSQL.split(QLatin1Char('\n'));
    if (!text.isEmpty()) {
        NameColumn column = NameColumn::None;
        const TDBTreeListColumn *shown = ShownNameColumn();
        for (const NameColumnField &name : NameColumns()) {
            if (shown && shown->FieldName() == name.field)
                column = name.column;
        }
        if (column != NameColumn::None) {
            qryTreeSutas.SelectSQL().append(TreeFilterClause(column));
            qryTreeSutas.ParamByName(QStringLiteral("SEARCH_TEXT")).SetAsString(TreeFilterValue(text));
        }
    }
    qryTreeSutas.Open();
    if (vIsInit)
        LocateOpeningPassage();
    ui->dbtSutas->FullExpand();
}

void TfrmMain::LocateOpeningPassage()
{
    // If no row has the number, the cursor stays on the first row.
    switch (static_cast<OpenSutta>(frmKeloraDM->vOpenSutta)) {
    case OpenSutta::Last:
        qryTreeSutas.Locate(QStringLiteral("ID_VIC"), frmKeloraDM->vLastKelora);
        break;
    case OpenSutta::Random:
        qryTreeSutas.Locate(QStringLiteral("NUMBER_VIC"), RandomSuttaNumber(Doors().drawNumber()));
        break;
    }
}

TDBTreeListColumn *TfrmMain::ShownNameColumn() const
{
    for (const NameColumnField &name : NameColumns()) {
        TDBTreeListColumn *column = ui->dbtSutas->Column(name.field);
        if (column->Visible())
            return column;
    }
    return nullptr;
}

void TfrmMain::edFilterSuttaKeyUp(int key)
{
    switch (MeaningOfFilterKey(key)) {
    case FilterKey::Nothing:
        break;
    case FilterKey::NextRow:
        if (!qryTreeSutas.Eof())
            qryTreeSutas.Next();
        break;
    case FilterKey::PriorRow:
        if (!qryTreeSutas.Bof())
            qryTreeSutas.Prior();
        break;
    case FilterKey::Reload:
        LoadContentData();
        break;
    }
}

void TfrmMain::ViewSuttaName(int mode)
{
    const NameView view = NameViewOfMode(mode);
    for (const NameColumnField &name : NameColumns())
        ui->dbtSutas->Column(name.field)->SetVisible(name.column == view.column);
    ui->bTreeNamePAL->setChecked(view.toggle == NameColumn::Pali);
    ui->bTreeNameVIE->setChecked(view.toggle == NameColumn::Vietnamese);
    EnableMargins(view.marginEnabled);
}
