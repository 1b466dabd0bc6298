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
        QFile::remove(Path(QStringLiteral("lumivara/registry.json")));
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
    /// All options after a start, one text: start, last text, popup and its time, languages of interface and text,
    /// colours, margin, dictionary and whether there are several; font and last word.
    std::string Read()
    {
        ResetGlobals();
        TfrmKeloraDM module(doors);
        module.ReadSystemOptions();
        return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 ")
                   .arg(module.vOpenSutta)
                   .arg(module.vLastKelora)
                   .arg(module.vPopupActive)
                   .arg(module.vPopupTime)
                   .arg(InterfaceLang)
                   .arg(module.vLanguageSutta)
                   .arg(module.vBgColor, 0, 16)
                   .arg(module.vHighlightColor, 0, 16)
                   .toStdString() +
               QStringLiteral("%1 %2 %3 %4|%5")
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
    EXPECT_FALSE(QDir(Path(QStringLiteral("lumivara"))).exists());
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
        OpenOptions()->WriteString(QString::fromLatin1(name), QStringLiteral("1"));
        EXPECT_EQ(Read(), defaults) << name << " is a text";
    }
    for (const char *name : {"FontName", "LastWord"}) {
        StoreAll();
        OpenOptions()->WriteInteger(QString::fromLatin1(name), 1);
        EXPECT_EQ(Read(), defaults) << name << " is a number";
    }
    StoreAll();
    Drop(QStringLiteral("FontName"));
    EXPECT_EQ(Read(), "2 1201 0 7 1 10 102030 ff000012 0 0 0 |vinaya") << "a text may be missing";
    OpenOptions()->WriteInteger(QStringLiteral("OpenSutta"), 5);
    OpenOptions()->WriteInteger(QStringLiteral("PopupTime"), 0);
    EXPECT_EQ(Read(), "5 1201 0 0 1 10 102030 ff000012 0 0 0 |vinaya") << "beyond their range";
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
    EXPECT_THAT(Read(), testing::StartsWith("2 1201 "));
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

TEST_F(StoredStyle, ComesBackAsWrittenOrAsTheDefaultOfAnEmptyKey)
{
    TfrmKeloraDM module(doors);
    const auto read = [&] {
        ResetGlobals();
        module.ReadActiveStyle();
        return QString::number(GlobalActiveStyle) + GlobalActiveName;
    };
    EXPECT_EQ(read(), QStringLiteral("0")) << "no key";
    OpenOptions();
    EXPECT_EQ(read(), QStringLiteral("25Office2010Blue"));
    GlobalActiveStyle = 3;
    GlobalActiveName = QStringLiteral("Black");
    module.WirteActiveStyle();
    EXPECT_EQ(read(), QStringLiteral("3Black"));
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
