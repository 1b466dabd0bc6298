#include "stores/KeloraDM.h"

#include "support/ModuleSupport.h"

#include <QDir>

namespace {

const QString StartListKey = QString::fromUtf16(RunKey);
const QString Kelora = QStringLiteral("Kelora");

class StoredOptions : public ModuleTest
{
protected:
    void StoreAll()
    {
        const auto registry = OpenOptions();
        registry->WriteInteger(QStringLiteral("OpenSutta"), 2);
        registry->WriteInteger(QStringLiteral("LastKelora"), 1201);
        registry->WriteBool(QStringLiteral("PopupActive"), false);
        registry->WriteInteger(QStringLiteral("PopupTime"), 7);
        registry->WriteInteger(QStringLiteral("InterfaceLang"), 1);
        registry->WriteString(QStringLiteral("FontName"), QStringLiteral("Noto Sans"));
        registry->WriteInteger(QStringLiteral("BgColor"), 0x00102030);
        registry->WriteInteger(QStringLiteral("SeachHighlightColor"), static_cast<int>(0xFF000012));
        registry->WriteString(QStringLiteral("LastWord"), QStringLiteral("vinaya"));
        registry->WriteInteger(QStringLiteral("LanguageSutta"), 10);
        registry->WriteInteger(QStringLiteral("MarginWidth"), 3);
        registry->WriteInteger(QStringLiteral("Dictionary"), 5);
    }
    /// Takes a value out of the settings file, as no operation of the registry does.
    void Drop(const QString &name)
    {
        QFile file(Path(QStringLiteral("lumivara/registry.json")));
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray bytes = file.readAll();
        EXPECT_EQ(bytes.count('"' + name.toUtf8() + '"'), 1) << name.toStdString();
        // Under another name, which nobody reads.
        bytes.replace('"' + name.toUtf8() + '"', "\"Other\"");
        file.resize(0);
        file.write(bytes);
    }
    static void ExpectDefaults(const TfrmKeloraDM &module, const std::string &rule)
    {
        EXPECT_EQ(module.vOpenSutta, 1) << rule;
        EXPECT_TRUE(module.vPopupActive) << rule;
        EXPECT_EQ(module.vPopupTime, 30) << rule;
        EXPECT_EQ(module.vLastKelora, 1) << rule;
        EXPECT_EQ(InterfaceLang, 0) << rule;
        EXPECT_EQ(FontName, QStringLiteral("Segoe UI")) << rule;
        EXPECT_EQ(module.vBgColor, 0xFF000005u) << rule;
        EXPECT_EQ(module.vHighlightColor, 65535u) << rule;
        EXPECT_EQ(LastWord, QString()) << rule;
        EXPECT_EQ(DictionaryKind, 1) << rule;
        EXPECT_TRUE(MultiDictionary) << rule;
        EXPECT_EQ(module.vLanguageSutta, 1) << rule;
        EXPECT_EQ(module.vMarginWidth, 0) << rule;
    }
};

TEST_F(StoredOptions, AreAllZeroWithoutTheKey)
{
    TfrmKeloraDM module(doors);
    module.ReadSystemOptions();
    EXPECT_EQ(module.vOpenSutta + module.vPopupTime + module.vLastKelora + module.vLanguageSutta, 0);
    EXPECT_EQ(module.vBgColor, 0u);
    EXPECT_EQ(module.vHighlightColor, 0u);
    EXPECT_FALSE(module.vPopupActive || module.vStartWin);
    EXPECT_EQ(FontName + LastWord, QString());
    EXPECT_EQ(DictionaryKind, 0);
    EXPECT_FALSE(MultiDictionary);
    EXPECT_FALSE(QDir(Path(QStringLiteral("lumivara"))).exists());
}

TEST_F(StoredOptions, AreWhatIsStoredWhenAllAreThere)
{
    StoreAll();
    TfrmKeloraDM module(doors);
    module.ReadSystemOptions();
    EXPECT_EQ(module.vOpenSutta, 2);
    EXPECT_EQ(module.vLastKelora, 1201);
    EXPECT_FALSE(module.vPopupActive);
    EXPECT_EQ(module.vPopupTime, 7);
    EXPECT_EQ(InterfaceLang, 1);
    EXPECT_EQ(FontName, QStringLiteral("Noto Sans"));
    EXPECT_EQ(module.vBgColor, 0x00102030u);
    EXPECT_EQ(module.vHighlightColor, 0xFF000012u);
    EXPECT_EQ(LastWord, QStringLiteral("vinaya"));
    EXPECT_EQ(module.vLanguageSutta, 10);
    // Stored, and never read back.
    EXPECT_EQ(module.vMarginWidth, 0);
    EXPECT_EQ(DictionaryKind, 0);
    EXPECT_FALSE(MultiDictionary);
}

TEST_F(StoredOptions, AreAllDefaultsWhenOneNumberIsMissing)
{
    for (const char *name : {"OpenSutta", "LastKelora", "PopupActive", "PopupTime", "InterfaceLang", "BgColor",
                             "SeachHighlightColor", "LanguageSutta"}) {
        QFile::remove(Path(QStringLiteral("lumivara/registry.json")));
        ResetGlobals();
        StoreAll();
        Drop(QString::fromLatin1(name));
        TfrmKeloraDM module(doors);
        module.ReadSystemOptions();
        ExpectDefaults(module, name);
    }
}

TEST_F(StoredOptions, AreAllDefaultsWhenOneIsOfAnotherType)
{
    for (const char *name : {"BgColor", "LanguageSutta"}) {
        StoreAll();
        OpenOptions()->WriteString(QString::fromLatin1(name), QStringLiteral("1"));
        TfrmKeloraDM module(doors);
        module.ReadSystemOptions();
        ExpectDefaults(module, name);
    }
    for (const char *name : {"FontName", "LastWord"}) {
        StoreAll();
        OpenOptions()->WriteInteger(QString::fromLatin1(name), 1);
        TfrmKeloraDM module(doors);
        module.ReadSystemOptions();
        ExpectDefaults(module, name);
    }
}

TEST_F(StoredOptions, MayLackTheirTexts)
{
    StoreAll();
    Drop(QStringLiteral("FontName"));
    TfrmKeloraDM module(doors);
    module.ReadSystemOptions();
    EXPECT_EQ(FontName, QString());
    EXPECT_EQ(module.vOpenSutta, 2);
    EXPECT_EQ(DictionaryKind, 0);
}

TEST_F(StoredOptions, AreTakenBeyondTheirRange)
{
    StoreAll();
    OpenOptions()->WriteInteger(QStringLiteral("OpenSutta"), 5);
    OpenOptions()->WriteInteger(QStringLiteral("PopupTime"), 0);
    TfrmKeloraDM module(doors);
    module.ReadSystemOptions();
    EXPECT_EQ(module.vOpenSutta, 5);
    EXPECT_EQ(module.vPopupTime, 0);
    EXPECT_EQ(module.vLastKelora, 1201);
}

TEST_F(StoredOptions, CountInAStoreThatCannotBeWritten)
{
    StoreAll();
    class ReadOnlyDisk : public FailingDisk
    {
    public:
        bool MayWrite(const QString &, QString &) override { return false; }
    } readOnly;
    disk = &readOnly;
    TfrmKeloraDM module(doors);
    module.ReadSystemOptions();
    EXPECT_EQ(module.vLastKelora, 1201);
}

TEST_F(StoredOptions, StartWithTheDesktopOnlyByTheExactCommand)
{
    const QString exe = doors.exeName;
    const struct
    {
        QString command;
        bool starts;
    } cases[] = {{QLatin1Char('"') + exe + QLatin1Char('"'), true},
                 {exe, false},
                 {QStringLiteral("\"/elsewhere/Lumivara\""), false},
                 {QLatin1Char('"') + exe.toUpper() + QLatin1Char('"'), false},
                 {QLatin1Char('"') + exe + QStringLiteral("\" "), false},
                 {QString(), false}};
    TfrmKeloraDM module(doors);
    for (const auto &row : cases) {
        module.SetRegistryData(RegistryRoot::LocalMachine, StartListKey, row.command, RegistryType::String, Kelora);
        module.vStartWin = !row.starts;
        module.ReadSystemOptions();
        EXPECT_EQ(module.vStartWin, row.starts) << row.command.toStdString();
    }
}

TEST_F(StoredOptions, AreWrittenOneByOneAndMakeTheKey)
{
    TfrmKeloraDM module(doors);
    module.WriteOption(QStringLiteral("InterfaceLang"), 1);
    module.WriteOption(QStringLiteral("LastWord"), QStringLiteral("sīla"));
    EXPECT_EQ(OpenOptions()->ReadInteger(QStringLiteral("InterfaceLang")), 1);
    EXPECT_EQ(OpenOptions()->ReadString(QStringLiteral("LastWord")), QStringLiteral("sīla"));
}

TEST_F(StoredOptions, AreLostSilentlyWithoutAPlaceAndLoudlyOnAFullDisk)
{
    TfrmKeloraDM module(doors);
    FailingDisk noPlace(1, FailingDisk::Lasting::ForGood);
    disk = &noPlace;
    EXPECT_NO_THROW(module.WriteOption(QStringLiteral("MarginWidth"), 1));
    EXPECT_TRUE(noPlace.Fired());
    OpenOptions();
    FailingDisk full(2, FailingDisk::Lasting::ForGood);
    disk = &full;
    EXPECT_THROW(module.WriteOption(QStringLiteral("MarginWidth"), 1), RegistryError);
}

class StoredStyle : public ModuleTest
{};

TEST_F(StoredStyle, IsUntouchedWithoutTheKeyAndDefaultWithAnEmptyOne)
{
    TfrmKeloraDM module(doors);
    module.ReadActiveStyle();
    EXPECT_EQ(GlobalActiveStyle, 0);
    EXPECT_EQ(GlobalActiveName, QString());
    OpenOptions();
    module.ReadActiveStyle();
    EXPECT_EQ(GlobalActiveStyle, 25);
    EXPECT_EQ(GlobalActiveName, QStringLiteral("Office2010Blue"));
}

TEST_F(StoredStyle, ComesBackAsWritten)
{
    TfrmKeloraDM module(doors);
    GlobalActiveStyle = 3;
    GlobalActiveName = QStringLiteral("Black");
    module.WirteActiveStyle();
    ResetGlobals();
    module.ReadActiveStyle();
    EXPECT_EQ(GlobalActiveStyle, 3);
    EXPECT_EQ(GlobalActiveName, QStringLiteral("Black"));
}

TEST_F(StoredStyle, FallsBackToAnotherOneWhenAWriteFails)
{
    OpenOptions();
    // Past the opening of the key, each of the two writes has a lock and a file that may fail.
    for (const int call : {2, 3, 4, 5}) {
        GlobalActiveStyle = 3;
        GlobalActiveName = QStringLiteral("Black");
        FailingDisk failing(call);
        disk = &failing;
        TfrmKeloraDM(doors).WirteActiveStyle();
        EXPECT_TRUE(failing.Fired()) << call;
        EXPECT_EQ(OpenOptions()->ReadInteger(QStringLiteral("GlobalActiveStyle")), 16) << call;
        EXPECT_EQ(OpenOptions()->ReadString(QStringLiteral("GlobalActiveName")), QStringLiteral("Office2007Blue"))
            << call;
        EXPECT_EQ(GlobalActiveStyle, 3) << call;
    }
}

class RegistryData : public ModuleTest
{
protected:
    const QString Place = QStringLiteral("Software\\Melko\\Trial");
    const QString Name = QStringLiteral("V");
    QString Failure(const std::function<void()> &action)
    {
        try {
            action();
        } catch (const RegistryError &error) {
            return error.Text();
        }
        return QStringLiteral("(no failure)");
    }
};

TEST_F(RegistryData, GoesInAndOutByType)
{
    TfrmKeloraDM module(doors);
    const struct
    {
        RegistryType type;
        QVariant in, out;
    } cases[] = {{RegistryType::String, QStringLiteral("ṭ"), QStringLiteral("ṭ")},
                 {RegistryType::String, 12, QStringLiteral("12")},
                 {RegistryType::ExpandString, QStringLiteral("%x%"), QStringLiteral("%x%")},
                 {RegistryType::Integer, 7, 7},
                 {RegistryType::Integer, QStringLiteral("8"), 8},
                 {RegistryType::Integer, 0xFF000005u, static_cast<int>(0xFF000005)},
                 {RegistryType::Binary, QByteArray("\0\xFF", 2), QByteArray("\0\xFF", 2)},
                 {RegistryType::Binary, QStringLiteral("ab"), QByteArray("ab")}};
    for (const auto &row : cases) {
        module.SetRegistryData(RegistryRoot::CurrentUser, Place, row.in, row.type, Name);
        EXPECT_EQ(module.GetRegistryData(RegistryRoot::CurrentUser, Place, Name), row.out)
            << row.in.toString().toStdString();
        // No type means that of the value that is there.
        module.SetRegistryData(RegistryRoot::CurrentUser, Place, row.in, RegistryType::Unknown, Name);
        EXPECT_EQ(module.GetRegistryData(RegistryRoot::CurrentUser, Place, Name), row.out)
            << row.in.toString().toStdString();
    }
}

TEST_F(RegistryData, FailsWithTheSystemsText)
{
    TfrmKeloraDM module(doors);
    const QString unreadable = QStringLiteral("The configuration registry key could not be read.");
    const QString unwritable = QStringLiteral("The configuration registry key could not be written.");
    const auto get = [&] { module.GetRegistryData(RegistryRoot::CurrentUser, Place, Name); };
    const auto set = [&](const QVariant &value, RegistryType type) {
        return Failure([&] { module.SetRegistryData(RegistryRoot::CurrentUser, Place, value, type, Name); });
    };
    EXPECT_EQ(Failure(get), qt_error_string(ENOENT));
    EXPECT_EQ(set(1, RegistryType::Unknown), unwritable);
    EXPECT_EQ(Failure(get), unreadable);
    EXPECT_EQ(set(1, static_cast<RegistryType>(9)), unwritable);
    EXPECT_EQ(set(QStringLiteral("no number"), RegistryType::Integer), unwritable);
    EXPECT_EQ(
        Failure([&] { module.SetRegistryData(RegistryRoot::LocalMachine, Place, 1, RegistryType::Integer, Name); }),
        qt_error_string(EACCES));
}

} // namespace
