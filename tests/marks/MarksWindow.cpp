#include "marks/MarksWindow.h"

#include "marks/FocusEdit.h"
#include "stores/KeloraSuttaList.h"

#include <QFile>

using namespace Qt::StringLiterals;

MarksWindow::~MarksWindow()
{
    End();
    QFile::remove(Beside(u"TARUNECLIENT.FDB"_s));
    QFile::remove(Beside(u"tmpfocus.html"_s));
}

void MarksWindow::Open(int idVic, int interfaceLang)
{
    EXPECT_TRUE(QFile::copy(ProductFolder() + u"TARUNECLIENT.FDB"_s, Beside(u"TARUNECLIENT.FDB"_s)));
    EXPECT_TRUE(QFile::setPermissions(Beside(u"TARUNECLIENT.FDB"_s), QFile::ReadOwner | QFile::WriteOwner));
    StartOn(idVic);
    InterfaceLang = interfaceLang;
    clients->DataModuleCreate();
    EXPECT_TRUE(clients->vIsOKClients);
    EXPECT_TRUE(WaitPage());
}

std::unique_ptr<TfrmClientsDM> MarksWindow::AnotherCopy()
{
    ModuleDoors doors;
    doors.exeName = program;
    auto copy = std::make_unique<TfrmClientsDM>(doors);
    copy->DataModuleCreate();
    EXPECT_TRUE(copy->vIsOKClients);
    window->scInsKelora.SetDatabase(&copy->dbClientTarune);
    if (Stored().isEmpty()) { // else the texts have been listed
        window->scInsKelora.Script() = KeloraSuttaListScript(KeloraTexts(kelora->dbKelora, kelora->trKelora));
        window->scInsKelora.ExecuteScript();
    }
    window->scInsKelora.SetDatabase(&clients->dbClientTarune);
    copy->qryFocus.Open();
    return copy;
}

void MarksWindow::AddMark(TfrmClientsDM &module, const QString &title, const QByteArray &excerpt, int number,
                          int collection)
{
    module.qryFocus.Insert();
    module.qryFocus.FieldByName(u"NAME_FOC"_s).SetAsString(title);
    module.qryFocus.FieldByName(u"TEXT_FOC"_s).SetAsBytes(excerpt);
    module.qryFocus.FieldByName(u"NIK_SUT"_s).SetAsInteger(collection);
    module.qryFocus.FieldByName(u"NIC_SUT"_s).SetAsInteger(number);
    module.qryFocus.Post();
}

QString MarksWindow::Stored()
{
    TpFIBDataSet rows;
    rows.SetDatabase(&clients->dbClientTarune);
    rows.SetTransaction(&clients->trClientTarune);
    rows.SelectSQL() = QStringList{u"select ID_FOC, NAME_FOC from SUTTA_TEXT_FOCUS order by ID_FOC"_s};
    QStringList marks;
    for (rows.Open(); !rows.Eof(); rows.Next()) {
        QString title = rows.FieldByName(u"NAME_FOC"_s).AsString();
        marks.append(rows.FieldByName(u"ID_FOC"_s).AsString() + u' ' + title.replace(u'\uFEFF', u'^'));
    }
    return marks.join(u'|');
}

void MarksWindow::MarkAll(const std::function<void(TfrmFocusEdit &)> &inside)
{
    Browser().SelectAll();
    EXPECT_TRUE(WaitFor([this] { return Action("acFocusHighlight").isEnabled(); }));
    if (inside)
        RunModal("acFocusHighlight", inside);
    else
        Trigger("acFocusHighlight");
}

void MarksWindow::OpenMarks()
{
    Trigger("acOrganization");
    form = FindForm(u"frmFocusHighlight"_s);
    ASSERT_TRUE(form);
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    EXPECT_TRUE(WaitFor([this] { return InMarks<TBrowserControl>("ebFocusText").IsComplete(); }));
}
