#include "stores/KeloraDM.h"

#include "support/ModuleSupport.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

const QString StartListKey = QString::fromUtf16(RunKey);
const QString Kelora = u"Kelora"_s;

class StoredOptions : public ModuleTest
{
protected:
    void StoreAll()
    {
        QFile::remove(Path(u"lumivara/registry.json"_s));
        const auto registry = OpenOptions();
        registry->WriteInteger(u"OpenSutta"_s, 2);
        registry->WriteInteger(u"LastKelora"_s, 1201);
        registry->WriteBool(u"PopupActive"_s, false);
        registry->WriteInteger(u"PopupTime"_s, 7);
        registry->WriteInteger(u"InterfaceLang"_s, 1);
        registry->WriteInteger(u"BgColor"_s, 0x00102030);
        registry->WriteInteger(u"SeachHighlightColor"_s, static_cast<int>(0xFF000012));
        registry->WriteInteger(u"LanguageSutta"_s, 10);
        registry->WriteInteger(u"MarginWidth"_s, 3);
        registry->WriteInteger(u"Dictionary"_s, 5);
        registry->WriteString(u"FontName"_s, u"Noto Sans"_s);
        registry->WriteString(u"LastWord"_s, u"vinaya"_s);
    }
    /// Takes a value out of the settings file, as no operation of the registry does.
    void Drop(const QString &name)
    {
        QFile file(Path(u"lumivara/registry.json"_s));
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray bytes = file.readAll();
        EXPECT_EQ(bytes.count('"' + name.toUtf8() + '"'), 1) << name.toStdString();
        // Under another name, which nobody reads.
        bytes.replace('"' + name.toUtf8() + '"', "\"Other\"");
        file.resize(0);
        file.write(bytes);
    }
    /// All options after a start, one text: start, last text, popup and its time, languages of interface and text,
    /// colours, margin, dictionary and whether there are several; font and last word.
    std::string Read()
    {
        ResetGlobals();
        TfrmKeloraDM module(doors);
        module.ReadSystemOptions();
        return u"%1 %2 %3 %4 %5 %6 %7 "_s.arg(module.vOpenSutta)
                   .arg(module.vLastKelora)
                   .arg(module.vPopupActive)
                   .arg(module.vPopupTime)
                   .arg(InterfaceLang)
                   .arg(module.vLanguageSutta)
                   .arg(module.vBgColor, 0, 16)
                   .toStdString() +
               u"%1 %2 %3 %4 %5|%6"_s.arg(module.vHighlightColor, 0, 16)
                   .arg(module.vMarginWidth)
                   .arg(DictionaryKind)
                   .arg(MultiDictionary)
                   .arg(FontName, LastWord)
                   .toStdString();
    }
};

TEST_F(StoredOptions, AreReadTogetherOrNotAtAll)
{
    // Margin and dictionary are stored, and never read back.
    const std::string zero = "0 0 0 0 0 0 0 0 0 0 0 |", defaults = "1 1 1 30 0 1 ff000005 ffff 0 1 1 Segoe UI|",
                      stored = "2 1201 0 7 1 10 102030 ff000012 0 0 0 Noto Sans|vinaya";
    EXPECT_EQ(Read(), zero) << "no key";
    EXPECT_FALSE(QDir(Path(u"lumivara"_s)).exists());
    StoreAll();
    EXPECT_EQ(Read(), stored);
    for (const char *name : {"OpenSutta", "LastKelora", "PopupActive", "PopupTime", "InterfaceLang", "BgColor",
                             "SeachHighlightColor", "LanguageSutta"}) {
        StoreAll();
        Drop(QString::fromLatin1(name));
        EXPECT_EQ(Read(), defaults) << name << " is missing";
    }
    for (const char *name : {"BgColor", "LanguageSutta"}) {
        StoreAll();
        OpenOptions()->WriteString(QString::fromLatin1(name), u"1"_s);
        EXPECT_EQ(Read(), defaults) << name << " is a text";
    }
    for (const char *name : {"FontName", "LastWord"}) {
        StoreAll();
        OpenOptions()->WriteInteger(QString::fromLatin1(name), 1);
        EXPECT_EQ(Read(), defaults) << name << " is a number";
    }
    StoreAll();
    Drop(u"FontName"_s);
    EXPECT_EQ(Read(), "2 1201 0 7 1 10 102030 ff000012 0 0 0 |vinaya") << "a text may be missing";
    OpenOptions()->WriteInteger(u"OpenSutta"_s, 5);
    OpenOptions()->WriteInteger(u"PopupTime"_s, 0);
    EXPECT_EQ(Read(), "5 1201 0 0 1 10 102030 ff000012 0 0 0 |vinaya") << "beyond their range";
}

TEST_F(StoredOptions, StartWithTheDesktopOnlyByTheExactCommand)
{
    const QString exe = doors.exeName;
    const std::pair<QString, bool> cases[]{{u'"' + exe + u'"', true},
                                           {exe, false},
                                           {u"\"/elsewhere/Lumivara\""_s, false},
                                           {u'"' + exe.toUpper() + u'"', false},
                                           {u'"' + exe + u"\" "_s, false},
                                           {QString(), false}};
    TfrmKeloraDM module(doors);
    for (const auto &[command, starts] : cases) {
        module.SetRegistryData(RegistryRoot::LocalMachine, StartListKey, command, RegistryType::String, Kelora);
        module.vStartWin = !starts;
        module.ReadSystemOptions();
        EXPECT_EQ(module.vStartWin, starts) << command.toStdString();
    }
}

TEST_F(StoredOptions, AreWrittenOneByOneLostSilentlyWithoutAPlaceAndLoudlyOnAFullDisk)
{
    TfrmKeloraDM module(doors);
    module.WriteOption(u"InterfaceLang"_s, 1);
    module.WriteOption(u"LastWord"_s, u"sīla"_s);
    EXPECT_EQ(OpenOptions()->ReadInteger(u"InterfaceLang"_s), 1);
    EXPECT_EQ(OpenOptions()->ReadString(u"LastWord"_s), u"sīla"_s);
    QFile::remove(Path(u"lumivara/registry.json"_s));
    FailingDisk noPlace(1, FailingDisk::Lasting::ForGood);
    disk = &noPlace;
    EXPECT_NO_THROW(module.WriteOption(u"MarginWidth"_s, 1));
    EXPECT_TRUE(noPlace.Fired());
    OpenOptions();
    FailingDisk full(2, FailingDisk::Lasting::ForGood);
    disk = &full;
    EXPECT_THROW(module.WriteOption(u"MarginWidth"_s, 1), RegistryError);
}

class StoredStyle : public ModuleTest
{};

TEST_F(StoredStyle, ComesBackAsWrittenOrAsTheDefaultOfAnEmptyKey)
{
    TfrmKeloraDM module(doors);
    const auto read = [&] {
        ResetGlobals();
        module.ReadActiveStyle();
        return QString::number(GlobalActiveStyle) + GlobalActiveName;
    };
    EXPECT_EQ(read(), u"0"_s) << "no key";
    OpenOptions();
    EXPECT_EQ(read(), u"25Office2010Blue"_s);
    GlobalActiveStyle = 3;
    GlobalActiveName = u"Black"_s;
    module.WirteActiveStyle();
    EXPECT_EQ(read(), u"3Black"_s);
}

TEST_F(StoredStyle, FallsBackToAnotherOneWhenAWriteFails)
{
    OpenOptions();
    // Past the opening of the key, each of the two writes has a lock and a file that may fail.
    for (const int call : {2, 3, 4, 5}) {
        GlobalActiveStyle = 3;
        GlobalActiveName = u"Black"_s;
        FailingDisk failing(call);
        disk = &failing;
        TfrmKeloraDM(doors).WirteActiveStyle();
        EXPECT_TRUE(failing.Fired()) << call;
        EXPECT_EQ(OpenOptions()->ReadInteger(u"GlobalActiveStyle"_s), 16) << call;
        EXPECT_EQ(OpenOptions()->ReadString(u"GlobalActiveName"_s), u"Office2007Blue"_s) << call;
        EXPECT_EQ(GlobalActiveStyle, 3) << call;
    }
}

class RegistryData : public ModuleTest
{
protected:
    const QString Place = u"Software\\Melko\\Trial"_s;
    const QString Name = u"V"_s;
    QString Failure(const std::function<void()> &action)
    {
        try {
            action();
        } catch (const RegistryError &error) {
            return error.Text();
        }
        return u"(no failure)"_s;
    }
};

TEST_F(RegistryData, GoesInAndOutByType)
{
    TfrmKeloraDM module(doors);
    const std::tuple<RegistryType, QVariant, QVariant> cases[]{
        {RegistryType::String, u"ṭ"_s, u"ṭ"_s},
        {RegistryType::String, 12, u"12"_s},
        {RegistryType::ExpandString, u"%x%"_s, u"%x%"_s},
        {RegistryType::Integer, 7, 7},
        {RegistryType::Integer, u"8"_s, 8},
        {RegistryType::Integer, 0xFF000005u, static_cast<int>(0xFF000005)},
        {RegistryType::Binary, QByteArray("\0\xFF", 2), QByteArray("\0\xFF", 2)},
        {RegistryType::Binary, u"ab"_s, QByteArray("ab")}};
    for (const auto &[type, in, out] : cases) {
        for (const RegistryType asked : {type, RegistryType::Unknown}) { // none means that of the value that is there
            module.SetRegistryData(RegistryRoot::CurrentUser, Place, in, asked, Name);
            EXPECT_EQ(module.GetRegistryData(RegistryRoot::CurrentUser, Place, Name), out) << qPrintable(in.toString());
        }
    }
}

TEST_F(RegistryData, FailsWithTheSystemsText)
{
    TfrmKeloraDM module(doors);
    const QString unreadable = u"The configuration registry key could not be read."_s;
    const QString unwritable = u"The configuration registry key could not be written."_s;
    const auto get = [&] { module.GetRegistryData(RegistryRoot::CurrentUser, Place, Name); };
    const auto set = [&](const QVariant &value, RegistryType type) {
        return Failure([&] { module.SetRegistryData(RegistryRoot::CurrentUser, Place, value, type, Name); });
    };
    EXPECT_EQ(Failure(get), qt_error_string(ENOENT));
    EXPECT_EQ(set(1, RegistryType::Unknown), unwritable);
    EXPECT_EQ(Failure(get), unreadable);
    EXPECT_EQ(set(1, static_cast<RegistryType>(9)), unwritable);
    EXPECT_EQ(set(u"no number"_s, RegistryType::Integer), unwritable);
    EXPECT_EQ(
        Failure([&] { module.SetRegistryData(RegistryRoot::LocalMachine, Place, 1, RegistryType::Integer, Name); }),
        qt_error_string(EACCES));
}

} // namespace
