#include "reader/Main.h"

#include "base/FilterKey.h"
#include "base/Texts.h"
#include "reader/ReaderRules.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "toolkit/controls/VelthuisTyping.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

#include <QScopedValueRollback>

#include <array>

namespace {

enum class OpenSutta { Last = 1, Random = 2 };

struct NameColumnField
{
    NameColumn column;
    SchemaName field;
};

/// The columns that hold names, in the order in which the filter looks for the one that shows.
constexpr std::array<NameColumnField, 3> NameColumns{{
    {NameColumn::Pali, Field::NameVicPal},
    {NameColumn::Vietnamese, Field::NameVicVie},
    {NameColumn::English, Field::NameVicEng},
}};

} // namespace

void TfrmMain::SetUpTree()
{
    const auto addColumn = [this](const QString &field, bool isVisible) {
        ui->dbtSutas->AddColumn(field, QStringLiteral("dbtSutas") + field, isVisible);
    };
    addColumn(Field::IdVic, false);
    addColumn(Field::TreeId, false);
    addColumn(Field::ParentTreeId, false);
    addColumn(Field::NameVicVie, true);
    addColumn(Field::NameVicPal, false);
    addColumn(Field::NameVicEng, false);
    ui->dbtSutas->SetDataSource(&dsTreeSutas);
    ConnectGuarded(ui->dbtSutas, &QWidget::customContextMenuRequested, this, [this](const QPoint &point) {
        ui->ppTreeKelora->popup(ui->dbtSutas->viewport()->mapToGlobal(point));
    });
    ui->edFilterSutta->OnKeyUp = [this](int key) { edFilterSuttaKeyUp(key); };
    const auto isMeant = [this] {
        const TDBTreeListColumn *shown = ShownNameColumn();
        return frmKeloraDM && frmKeloraDM->TypesPali() && shown && shown->FieldName() == Field::NameVicPal;
    };
    new VelthuisTyping(*ui->edFilterSutta, isMeant, [] { return frmKeloraDM->Niggahita(Field::NameVicPal); });
}

void TfrmMain::LoadContentData()
{
    const QScopedValueRollback reloading(m_isReloading, true);
    qryKeloraContent.Close();
    LoadKeloraTree();
    qryKeloraContent.Open();
}

void TfrmMain::OpenText(const QVariant &idVic)
{
    qryTreeSutas.Locate(Field::IdVic, idVic);
}

void TfrmMain::LoadKeloraTree()
{
    const QString text = TrimControls(ui->edFilterSutta->text());
    qryTreeSutas.Close();
    qryTreeSutas.SelectSQL() = vDefTreeKeloraSQL.split(QLatin1Char('\n'));
    if (!text.isEmpty()) {
        NameColumn column = NameColumn::None;
        const TDBTreeListColumn *shown = ShownNameColumn();
        for (const NameColumnField &name : NameColumns) {
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
        qryTreeSutas.Locate(Field::IdVic, frmKeloraDM->vLastKelora);
        break;
    case OpenSutta::Random:
        qryTreeSutas.Locate(Field::NumberVic, RandomSuttaNumber(Doors().drawNumber()));
        break;
    }
}

TDBTreeListColumn *TfrmMain::ShownNameColumn() const
{
    for (const NameColumnField &name : NameColumns) {
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
        OfferNames();
        break;
    }
}

void TfrmMain::ViewSuttaName(int mode)
{
    const NameView view = NameViewOfMode(mode);
    for (const NameColumnField &name : NameColumns)
        ui->dbtSutas->Column(name.field)->SetVisible(name.column == view.column);
    ui->bTreeNamePAL->setChecked(view.toggle == NameColumn::Pali);
    ui->bTreeNameVIE->setChecked(view.toggle == NameColumn::Vietnamese);
    EnableMargins(view.marginEnabled);
    UpdateFootText();
}
