#include "reader/ReaderWindow.h"

#include "marks/ConfirmDelete.h"
#include "presentation/languages/DKLang.h"
#include "stores/Modules.h"
#include "stores/engine/Scripter.h"
#include "stores/settings/JsonRegistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const char canonScript[] = R"(
create table KELORA_TREE (ID_VIT integer not null, P_ID_VIT integer, NAME_VIT_VIE varchar(127) character set unicode_fss,
    NAME_VIT_PAL varchar(127) character set unicode_fss, NAME_VIT_ENG varchar(127) character set unicode_fss);
create table KELORA_CONTENT (ID_VIT integer not null, ID_VIC integer not null,
    NAME_VIC_PAL varchar(127) character set unicode_fss, NAME_VIC_ENG varchar(127) character set unicode_fss,
    NAME_VIC_VIE varchar(127) character set unicode_fss, NUMBER_VIC integer,
    CONTENT_VIC_PAL blob, CONTENT_VIC_ENG blob, CONTENT_VIC_VIE blob, CONTENT_VIC_PAL_VIE blob);
commit work;
insert into KELORA_TREE values (1, -1, 'Phân tích giới', 'Suttavibhaṅga', 'Analysis of rules');
insert into KELORA_TREE values (2, 1, 'Bất cộng trụ', 'Pārājika', 'Defeats');
insert into KELORA_TREE values (3, -1, 'Đại phẩm', 'Mahāvagga', null);
insert into KELORA_CONTENT values (2, 1101, 'Paṭhama', 'First defeat', 'Giới thứ nhất', 1,
    '<p>pali 1101</p>', '<p>english 1101</p>', '<p style="font-size:150%">viet 1101 <a href="https://example.org/x">ngoài</a></p>',
    '<p>parallel 1101</p>');
insert into KELORA_CONTENT values (2, 1102, 'Dutiya', null, 'Giới thứ nhì', 2,
    '<p>pali 1102</p>', 'Segoe UI', '<p>viet 1102</p>', '<p>parallel 1102</p>');
insert into KELORA_CONTENT values (3, 1201, 'Mahākhandhaka', 'Great chapter', 'Chương lớn', 204,
    '<p>pali 1201</p>', null, '<p>viet 1201 kinh kinh kinh</p>', null);
insert into KELORA_CONTENT values (3, 9971, 'Uposatha', null, 'Chương lễ 100%', 205, '<p>pali 9971</p>', null, null, null);
commit work;
)";

/// Where the one canon of all tests is: nothing writes to it.
const ScratchFolder &CanonFolderReader()
{
    static const ScratchFolder folder;
    static const bool isMade = [] {
        QFile::link(ProductFolder() + u"libfbclient.so.2"_s, folder.Path(u"libfbclient.so.2"_s));
        QFile::link(ProductFolder() + u"firebird"_s, folder.Path(u"firebird"_s));
        MakeDatabase(folder.Path(u"KELORA.FDB"_s), folder.Path(u"Lumivara"_s), canonScript);
        return true;
    }();
    EXPECT_TRUE(isMade);
    return folder;
}

} // namespace

void MakeDatabase(const QString &path, const QString &program, const char *script)
{
    TpFIBDatabase database;
    TpFIBTransaction transaction;
    PrepareConnection(database, transaction, path, program);
    database.CreateDatabase();
    TpFIBScripter scripter;
    scripter.SetDatabase(&database);
    scripter.Script() = QString::fromUtf8(script).split(u'\n');
    scripter.ExecuteScript();
    database.SetConnected(false);
}

ReaderWindow::ReaderWindow() : program(CanonFolderReader().Path(u"Lumivara"_s)), m_realDoors(Doors())
{
    Doors().messageBox = [this](const QString &title, const QString &text, BoxButtons, BoxIcon) {
        boxes.append({title, text});
        return !answers.isEmpty() && answers.takeFirst();
    };
    Doors().openDocument = [this](const QString &target) {
        opened.append(target);
        return true;
    };
    Doors().drawNumber = [this] { return drawn; };
    InterfaceLang = 0;
    FontName.clear();
    CollectionMode = 0;
    GlobalActiveStyle = 0;
    GlobalActiveName.clear();
    skinFile = CanonFolderReader().Path(u"AllSkins.skinres"_s);
    SetSkins({});
}

ReaderWindow::~ReaderWindow()
{
    End();
    Doors() = m_realDoors;
    for (const QString &file : m_languageFiles)
        QFile::remove(file);
    LangManager().ForgetLanguages();
}

void ReaderWindow::AddLanguage(const QString &fileName, const QByteArray &content)
{
    m_languageFiles.append(QFileInfo(program).dir().filePath(fileName));
    EXPECT_TRUE(WriteBytes(m_languageFiles.last(), content));
}

void ReaderWindow::AddEnglish()
{
    m_languageFiles.append(QFileInfo(program).dir().filePath(u"English.lng"_s));
    EXPECT_TRUE(QFile::copy(ProductFolder() + u"English.lng"_s, m_languageFiles.last()));
}

ModuleDoors ReaderWindow::Modules()
{
    ModuleDoors doors;
    doors.exeName = program;
    doors.showMessage = [this](const QString &text) { boxes.append({QString(), text}); };
    doors.terminate = [] { ADD_FAILURE() << "ended"; };
    doors.confirmDelete = ConfirmDelete;
    doors.createRegistry = [this]() -> std::unique_ptr<TRegistry> {
        return std::make_unique<JsonRegistry>(settings.Path(u"config"_s), settings.Path(u"autostart"_s), *disk);
    };
    return doors;
}

void ReaderWindow::Start()
{
    kelora = std::make_unique<TfrmKeloraDM>(Modules());
    frmKeloraDM = kelora.get();
    kelora->DataModuleCreate();
    clients = std::make_unique<TfrmClientsDM>(Modules());
    frmClientsDM = clients.get();
    dictionary = std::make_unique<TfrmDictionaryDM>(Modules());
    frmDictionaryDM = dictionary.get();
    dictionary->DataModuleCreate();
    window = std::make_unique<TfrmMain>();
}

void ReaderWindow::End()
{
    window.reset();
    frmDictionaryDM = nullptr;
    dictionary.reset();
    frmClientsDM = nullptr;
    clients.reset();
    frmKeloraDM = nullptr;
    kelora.reset();
}

void ReaderWindow::Store(const QString &name, const QVariant &value)
{
    TfrmKeloraDM writer(Modules());
    const auto type = value.typeId() == QMetaType::QString ? RegistryType::String : RegistryType::Integer;
    writer.SetRegistryData(RegistryRoot::CurrentUser, QString::fromUtf16(OptionsKey), value, type, name);
}

QVariant ReaderWindow::Stored(const QString &name)
{
    TfrmKeloraDM reader(Modules());
    try {
        return reader.GetRegistryData(RegistryRoot::CurrentUser, QString::fromUtf16(OptionsKey), name);
    } catch (const RegistryError &) {
        return {};
    }
}

void ReaderWindow::StartOn(int idVic, int languageSutta, int interfaceLang)
{
    StoreDefaults(1, idVic, languageSutta, interfaceLang);
    Start();
}

void ReaderWindow::StoreDefaults(int openSutta, int lastKelora, int languageSutta, int interfaceLang)
{
    const std::pair<const char *, int> numbers[]{{"OpenSutta", openSutta},
                                                 {"LastKelora", lastKelora},
                                                 {"PopupActive", 1},
                                                 {"PopupTime", 30},
                                                 {"InterfaceLang", interfaceLang},
                                                 {"BgColor", 0x00FFFFFF},
                                                 {"SeachHighlightColor", 65535},
                                                 {"LanguageSutta", languageSutta}};
    for (const auto &[name, value] : numbers)
        Store(QLatin1StringView(name), value);
    Store(u"FontName"_s, u"Segoe UI"_s);
    Store(u"LastWord"_s, QString());
}

QStringList ReaderWindow::PassageNames()
{
    TpFIBDataSet &tree = window->qryTreeSutas;
    const int number = tree.FieldByName(u"NUMBER_VIC"_s).Index();
    const int name = tree.FieldByName(u"NAME_VIC_VIE"_s).Index();
    QStringList names;
    for (int row = 0; row < tree.RecordCount(); ++row) {
        if (tree.ValueAt(row, number).toInt() > 0)
            names.append(tree.TextAt(row, name));
    }
    return names;
}

void ReaderWindow::Type(QWidget &widget, const QString &text)
{
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, &widget, Qt::Key_unknown, letter, Qt::NoModifier);
}

QString ReaderWindow::Coloured(const char *ground)
{
    return Browser()
        .Evaluate(u"[...document.querySelectorAll('font')].filter((e) => "
                  "getComputedStyle(e).backgroundColor == '%1').map((e) => e.textContent).join('|')"_s.arg(
                      QLatin1StringView(ground)))
        .toString();
}

void ReaderWindow::Activate()
{
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

void ReaderWindow::CheckBoxes(const QList<Box> &expected)
{
    const auto texts = [](const QList<Box> &list) {
        QStringList lines;
        for (const Box &box : list)
            lines.append(box.title + u'|' + box.text);
        return lines.join(u'\n');
    };
    EXPECT_EQ(texts(boxes).toStdString(), texts(expected).toStdString());
    boxes.clear();
    EXPECT_TRUE(answers.isEmpty());
}

std::string ReaderWindow::TakeBox()
{
    EXPECT_EQ(boxes.size(), 1);
    return std::exchange(boxes, {}).value(0).text.toStdString();
}
