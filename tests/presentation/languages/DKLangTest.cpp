#include "presentation/languages/DKLang.h"
#include "support/SkinSupport.h"
#include "support/TestSupport.h"

#include <QDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace testing;

namespace {

QStringList Numbers(const TDKLang_CompEntry &entry)
{
    QStringList numbers;
    if (entry.FPropEntries)
        for (const auto &property : *entry.FPropEntries)
            numbers << u"%1 %2.%3"_qs.arg(property.iID).arg(entry.NamePath(), property.wsPropName);
    if (entry.FOwnedCompEntries)
        for (const auto &owned : *entry.FOwnedCompEntries)
            numbers << Numbers(*owned);
    return numbers;
}

/// A window whose description is all dynamic properties: a caption, a button and a grid in a panel.
struct Window
{
    explicit Window(TDKLanguageManager &manager, const QString &name = u"frmMain"_qs, const QByteArray &table = {})
    {
        object.setObjectName(name);
        panel = Add(&object, {});
        button = Add(panel, u"btnOpen"_qs);
        grid = Add(panel, u"gSutas"_qs);
        Add(&object, u"qt_spacer"_qs)->setProperty("Caption", u"x"_qs);
        object.setProperty("Caption", u"Đọc kinh"_qs);
        button->setProperty("Hint", u"Mở"_qs);
        button->setProperty("Caption", u"&Mở\nkinh"_qs);
        grid->setProperty("OptionsView.NoDataToDisplayInfoText", u"Không có"_qs);
        grid->setProperty("SQL", u"select"_qs);
        grid->setProperty("Text", u"123 -"_qs);
        controller = new TDKLanguageController(&object, table, &manager);
    }
    static QObject *Add(QObject *parent, const QString &name)
    {
        auto *child = new QObject(parent);
        child->setObjectName(name);
        return child;
    }
    QString Caption() const { return object.property("Caption").toString(); }
    QString Texts() const
    {
        const char *const noData = "OptionsView.NoDataToDisplayInfoText";
        return u"%1|%2|%3|%4|%5"_qs.arg(Caption(), button->property("Caption").toString(),
                                        button->property("Hint").toString(), grid->property(noData).toString(),
                                        grid->property("Text").toString());
    }
    QStringList NumbersAtDesignTime(int highest = 0)
    {
        controller->UpdateEntries(UpdateMode::DesignTime, highest);
        return Numbers(controller->RootEntry());
    }

    QObject object;
    QObject *panel, *button, *grid;
    TDKLanguageController *controller;
};

const QString vietnamese = u"Đọc kinh|&Mở\nkinh|Mở|Không có|123 -"_qs;
const QString english = u"Reader|Open\npage||No data|123 -"_qs;

class Languages : public testing::Test
{
protected:
    Languages()
    {
        TDKLanguageManager designTime;
        Window designed(designTime);
        designed.NumbersAtDesignTime();
        table = SaveLangData(designed.controller->RootEntry());
        Write(u"English.lng"_qs, "LANGID=1033\n[FRMMAIN]\n1=Reader\n2=\n3=Open\\npage\n4=No data\n99=nobody\n");
        Write(u"French.LNG"_qs, "LANGID=1036\n[frmMain]\n1=Lecteur\n");
        manager.SetDefaultLanguage(1066);
    }
    void Write(const QString &name, const QByteArray &text) const { EXPECT_TRUE(WriteBytes(folder.Path(name), text)); }
    int Scan(bool recursive = false) { return manager.ScanLanguageFiles(folder.Path(u""_qs), u"*.lng"_qs, recursive); }

    const ScratchFolder folder;
    TDKLanguageManager manager;
    QByteArray table;
};

TEST_F(Languages, ScanRegistersByIdInTheOrderOfNames)
{
    EXPECT_TRUE(QDir(folder.Path(u""_qs)).mkpath(u"folder.lng/.deep.lng"_qs));
    for (const QString &file : u".Hidden.lng 1034|vietnam.lng 1066|zero.lng 0\n[x]\nLANGID=5|text.txt 1035|a.lng 65000|"
                               "english2.lng 1033\n[frmMain]\n1=Second|folder.lng/.deep.lng/x.lng 1036|"
                               "folder.lng/Finnish.lng 1035"_qs.split(u'|'))
        Write(file.section(u' ', 0, 0), "LANGID=" + file.section(u' ', 1).toUtf8());
    Write(u"none.lng"_qs, "\xFF\xFE[\n");
    EXPECT_EQ(::mkfifo(qPrintable(folder.Path(u"pipe.lng"_qs)), 0600), 0);
    EXPECT_EQ(Scan(), 6);
    QList<int> ids;
    for (int i = 0; i < manager.GetLanguageCount(); ++i)
        ids << manager.GetLanguageId(i);
    EXPECT_EQ(ids, QList<int>({1066, 1034, 65000, 1033, 1036}));
    EXPECT_EQ(manager.GetLanguageName(0) + manager.GetLanguageName(2), u"Vietnamese65000"_qs);
    EXPECT_THROW(manager.GetLanguageId(5), EDKLangError);
    EXPECT_EQ(Scan(true), 7);
    EXPECT_EQ(manager.GetLanguageId(5), 1035);
    EXPECT_FALSE(manager.AddLanguageFile(folder.Path(u"absent.lng"_qs)));

    Window window(manager, u"frmMain"_qs, table);
    window.controller->Loaded();
    manager.SetCurrentLanguage(1033);
    EXPECT_EQ(window.Caption(), u"Second"_qs);
}

TEST_F(Languages, SwitchThereAndBackRestoresEveryText)
{
    EXPECT_EQ(Scan(), 2);
    Window window(manager, u"frmMain"_qs, table), stranger(manager, u"frmOther"_qs, table);
    QStringList events;
    window.controller->FOnLanguageChanging = [&] { events << u"before "_qs + window.Texts(); };
    window.controller->FOnLanguageChanged = [&] { events << u"after "_qs + window.Texts(); };
    window.controller->Loaded();
    stranger.controller->Loaded();
    manager.SetCurrentLanguage(1033);
    EXPECT_EQ(events, QStringList({u"before "_qs + vietnamese, u"after "_qs + english}));
    EXPECT_EQ(stranger.Texts(), vietnamese);

    // Already current: nothing is read, so nothing fails.
    EXPECT_TRUE(QFile::remove(folder.Path(u"English.lng"_qs)));
    manager.SetCurrentLanguage(1033);
    EXPECT_EQ(events.size(), 2);
    manager.SetCurrentLanguage(1036); // only one text in it: the others are the default's
    EXPECT_EQ(window.Texts(), u"Lecteur"_qs + vietnamese.sliced(8));
    manager.SetCurrentLanguage(4711); // unknown: the default
    EXPECT_EQ(manager.CurrentLanguage(), 1066);
    EXPECT_EQ(window.Texts(), vietnamese);

    EXPECT_THAT(
        [&] { manager.SetCurrentLanguage(1033); },
        ThrowsMessage<EDKLangError>(StartsWith("Cannot open file \"" + folder.Path(u"English.lng"_qs).toStdString())));
    Write(u"English.lng"_qs, "LANGID=1033\n[frmMain]\n1=a\n1=b\n");
    EXPECT_THROW(manager.SetCurrentLanguage(1033), EDKLangError);
    EXPECT_EQ(manager.CurrentLanguage(), 1066);
    EXPECT_EQ(window.Texts(), vietnamese);
}

TEST_F(Languages, DesignTimeKeepsNumbersAndGivesTheNextOnes)
{
    Window window(manager), bound(manager, u"frmMain"_qs, table);
    const QStringList first{u"1 .Caption"_qs, u"3 btnOpen.Caption"_qs, u"2 btnOpen.Hint"_qs,
                            u"4 gSutas.OptionsView.NoDataToDisplayInfoText"_qs};
    EXPECT_EQ(window.NumbersAtDesignTime(), first);
    window.grid->setProperty("OptionsView.NoDataToDisplayInfoText", QVariant());
    window.grid->setProperty("Text", u"now words"_qs);
    EXPECT_EQ(window.NumbersAtDesignTime(), first.first(3) + QStringList{u"5 gSutas.Text"_qs});
    for (Window *changed : {&window, &bound}) {
        delete changed->button;
        Window::Add(&changed->object, u"lbNew"_qs)->setProperty("Caption", u"new"_qs);
    }
    EXPECT_EQ(window.NumbersAtDesignTime(40),
              QStringList({u"1 .Caption"_qs, u"5 gSutas.Text"_qs, u"41 lbNew.Caption"_qs}));
    // At run time nothing is added, and what the window has lost is dropped.
    bound.controller->Loaded();
    EXPECT_EQ(Numbers(bound.controller->RootEntry()), QStringList({first[0], first[3]}));
}

TEST_F(Languages, AHandlerMaySwitchAgainOrRemoveAWindow)
{
    Scan();
    Window window(manager, u"frmMain"_qs, table);
    auto other = std::make_unique<Window>(manager, u"frmMain"_qs, table);
    window.controller->Loaded();
    other->controller->Loaded();
    window.controller->FOnLanguageChanged = [&] {
        other.reset();
        manager.SetCurrentLanguage(1036);
    };
    manager.SetCurrentLanguage(1033);
    EXPECT_EQ(window.Caption(), u"Lecteur"_qs);
}

// Runs before main, while no application exists.
const bool isRefused =
    Value([] { LangManager(); }, ThrowsMessage<EDKLangError>("Call to LangManager() is allowed at runtime only"));

TEST(LangManager, IsForTheRunningProgram)
{
    EXPECT_TRUE(isRefused);
    EXPECT_EQ(LangManager().DefaultLanguage(), 1033);
}

} // namespace
