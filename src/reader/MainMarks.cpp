#include "reader/Main.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"

#include "base/InterfaceLanguage.h"
#include "marks/Excerpt.h"
#include "marks/FocusEdit.h"
#include "marks/FocusHighlight.h"
#include "reader/MarksInText.h"
#include "reader/ReaderRules.h"
#include "stores/ClientsDM.h"
#include "stores/KeloraDM.h"
#include "stores/KeloraSuttaList.h"
#include "stores/Modules.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Forms.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

#include <QAction>
#include <QScopeGuard>
#include <QScopedValueRollback>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

void TfrmMain::DeclareSuttaListScript()
{
    scInsKelora.setObjectName(u"scInsKelora"_s);
    if (frmClientsDM)
        scInsKelora.SetDatabase(&frmClientsDM->dbClientTarune);
}

void TfrmMain::acFocusHighlightExecute()
{
    // Getting the selection processes events.
    if (std::exchange(m_isMarking, true))
        return;
    const auto end = qScopeGuard([this] { m_isMarking = false; });
    const int number = qryTreeSutas.FieldByName(Field::IdVic).AsInteger();
    TfrmFocusEdit editor(this);
    const QString selection = ui->ebContent->GetSelectedHtml();
    if (selection.isEmpty())
        return; // the page was destroyed meanwhile
    editor.vFocusS = ExcerptPage(selection);
    editor.excerptFile.Save(ExcerptFileBytes(editor.vFocusS));
    FillSuttaList();
    TpFIBDataSet &qryFocus = frmClientsDM->qryFocus;
    qryFocus.Open();
    qryFocus.Insert();
    qryFocus.FieldByName(Field::NikSut).SetAsInteger(Collection::Kelora);
    qryFocus.FieldByName(Field::NicSut).SetAsInteger(number);
    editor.exec();
}

void TfrmMain::FillSuttaList()
{
    TpFIBDataSet &qryTemp = frmClientsDM->qryTemp;
    qryTemp.Close();
    qryTemp.SelectSQL() = QStringList{u"select count(s.nik_sut) CNT_KELORA from sutta_list s where s.nik_sut = 6"_s};
    qryTemp.Open();
    const int count = qryTemp.FieldByName(u"CNT_KELORA"_s).AsInteger();
    qryTemp.Close();
    if (count > 0)
        return;
    try {
        scInsKelora.Script() = KeloraSuttaListScript(KeloraTexts(frmKeloraDM->dbKelora, frmKeloraDM->trKelora));
        scInsKelora.ExecuteScript();
    } catch (const std::exception &) {
        // The mark is kept anyway, but not listed until its text is.
    }
}

void TfrmMain::OpenMarkedText(int collection, int number)
{
    const QScopedValueRollback ownPlace(m_hasOwnPlace, true);
    if (CollectionMode == 1)
        OpenText(number);
    if (CollectionMode != 2)
        return;
    static const std::array commands{u"acDN"_s, u"acMN"_s, u"acAN"_s, u"acSN"_s, u"acKN"_s};
    const bool isKnown = collection >= Collection::Digha && collection <= Collection::Khuddaka;
    if (isKnown && vTaruneBook != collection) {
        if (auto *command = findChild<QAction *>(commands[static_cast<size_t>(collection - Collection::Digha)]))
            command->trigger();
    }
    qryTreeSutas.Locate(u"ID_NIC"_s, number);
}

void TfrmMain::SetUpMarks()
{
    m_marks = std::make_unique<MarksInText>(*ui->ebContent, *ui->stripMarks);
    ui->ebContent->OnPlacesChange = [this] { m_marks->PlacesChanged(); };
    m_marks->OnCount = [this] { RunGuarded([this] { UpdateFootText(); }); };
    m_marks->OnGo = [this](const PagePlace &place) { GoToReference(TextOnShow(), place); };
    m_marks->OnOpen = [this](int key) {
        if (TfrmFocusHighlight *form = acOrganizationExecute())
            form->ShowMark(key);
    };
    if (frmClientsDM)
        frmClientsDM->OnMarksChange = [this] { m_marks->MarksChanged(); };
}

MarksInText &TfrmMain::Marks()
{
    return *m_marks;
}

TfrmFocusHighlight *TfrmMain::acOrganizationExecute()
{
    if (!frmClientsDM || !frmClientsDM->vIsOKClients) {
        const QString text = ClientDatabaseNotOpenText(InterfaceLang);
        if (!text.isEmpty())
            Doors().messageBox(u"Lumivara 1.0"_s, text, BoxButtons::Ok, BoxIcon::None);
        return nullptr;
    }
    try {
        return static_cast<TfrmFocusHighlight *>(
            OpenForm(u"frmFocusHighlight"_s, [this] { return new TfrmFocusHighlight(*this); }));
    } catch (const std::exception &) {
        return nullptr;
    }
}
