#include "stores/KeloraDM.h"

#include "base/InterfaceLanguage.h"
#include "stores/Schema.h"
#include "stores/engine/Scripter.h"
#include "stores/settings/Options.h"
#include "support/ModuleSupport.h"

using namespace Qt::StringLiterals;

namespace {

class StoredOptions : public ModuleTest
{
protected:
    /// Stores every option but one.
    std::unique_ptr<TRegistry> StoreAllBut(const QString &missing = {})
    {
        QFile::remove(Path(u"lumivara/registry.json"_s));
        auto registry = OpenOptions();
        const std::pair<QString, int> numbers[]{
            {u"OpenSutta"_s, 2},      {u"LastKelora"_s, 1201}, {u"PopupActive"_s, 0},
            {u"PopupTime"_s, 7},      {u"InterfaceLang"_s, 1}, {u"BgColor"_s, 0x00102030},
            {u"LanguageSutta"_s, 10}, {u"MarginWidth"_s, 3},   {u"SeachHighlightColor"_s, static_cast<int>(0xFF000012)},
            {u"Dictionary"_s, 5}};
        for (const auto &[name, number] : numbers)
            if (name != missing)
                registry->WriteInteger(name, number);
        if (missing != u"FontName")
            registry->WriteString(u"FontName"_s, u"Noto Sans"_s);
        registry->WriteString(u"LastWord"_s, u"vinaya"_s);
        return registry;
    }
    /// All options after a start: start, last text, popup and its time, languages of interface and text, colours,
    /// margin, dictionary and whether there are several; font and last word.
    using All = std::tuple<int, int, bool, int, int, int, quint32, quint32, int, int, bool, QString, QString>;
    All Read()
    {
        ResetGlobals();
        TfrmKeloraDM module(doors);
        module.ReadSystemOptions();
        return {module.vOpenSutta, module.vLastKelora,     module.vPopupActive,
                module.vPopupTime, InterfaceLang,          module.vLanguageSutta,
                module.vBgColor,   module.vHighlightColor, module.vMarginWidth,
                DictionaryKind,    MultiDictionary,        FontName,
                LastWord};
    }
};

TEST_F(StoredOptions, AreReadTogetherOrNotAtAll)
{
    // Margin and dictionary are stored, and never read back.
    const All defaults{1, 1, true, 30, 0, 1, 0xFF000005, 0xFFFF, 0, 1, true, u"Segoe UI"_s, u""_s};
    EXPECT_EQ(Read(), All()) << "no key";
    const QString font = u"Noto Sans"_s, word = u"vinaya"_s;
    StoreAllBut();
    EXPECT_EQ(Read(), All(2, 1201, false, 7, 1, 10, 0x102030, 0xFF000012, 0, 0, false, font, word));
    for (const char *name : {"OpenSutta", "LastKelora", "PopupActive", "PopupTime", "InterfaceLang", "BgColor",
                             "SeachHighlightColor", "LanguageSutta"}) {
        StoreAllBut(QString::fromLatin1(name));
        EXPECT_EQ(Read(), defaults) << name << " is missing";
    }
    StoreAllBut()->WriteString(u"LanguageSutta"_s, u"1"_s);
    EXPECT_EQ(Read(), defaults) << "a text for a number";
    StoreAllBut()->WriteInteger(u"LastWord"_s, 1);
    EXPECT_EQ(Read(), defaults) << "a number for a text";
    const auto registry = StoreAllBut(u"FontName"_s);
    registry->WriteInteger(u"OpenSutta"_s, 5);
    registry->WriteInteger(u"PopupTime"_s, 0);
    EXPECT_EQ(Read(), All(5, 1201, false, 0, 1, 10, 0x102030, 0xFF000012, 0, 0, false, u""_s, word))
        << "beyond their range, and a text may be missing";
}

TEST_F(StoredOptions, StartWithTheDesktopOnlyByTheExactCommand)
{
    const QString exe = doors.exeName;
    TfrmKeloraDM module(doors);
    for (const QString &command :
         {u"\"%1\""_s.arg(exe), exe, u"\"%1\""_s.arg(exe.toUpper()), u"\"%1\" "_s.arg(exe), u""_s}) {
        module.SetRegistryData(RegistryRoot::LocalMachine, QString::fromUtf16(RunKey), command, RegistryType::String,
                               u"Kelora"_s);
        const bool starts = command == u'"' + exe + u'"';
        module.vStartWin = !starts;
        module.ReadSystemOptions();
        EXPECT_EQ(module.vStartWin, starts) << command.toStdString();
    }
}

class StoredStyle : public ModuleTest
{};

TEST_F(StoredStyle, ComesBackAsWrittenOrAsADefault)
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
    // Past the opening of the key, each of the two writes has a lock and a file that may fail.
    for (const int call : {0, 2, 3, 4, 5}) {
        GlobalActiveStyle = 3;
        GlobalActiveName = u"Black"_s;
        FailingDisk failing(call);
        disk = &failing;
        module.WirteActiveStyle();
        EXPECT_EQ(failing.Fired(), call > 0) << call;
        EXPECT_EQ(GlobalActiveStyle, 3) << call;
        EXPECT_EQ(read(), call > 0 ? u"16Office2007Blue"_s : u"3Black"_s) << call;
    }
}

TEST_F(StoredStyle, RegistryDataGoesInAndOutByTypeOrFailsWithTheSystemsText)
{
    TfrmKeloraDM module(doors);
    const QString place = u"Software\\Melko\\Trial"_s, name = u"V"_s;
    const auto get = [&]() -> QVariant {
        try {
            return module.GetRegistryData(RegistryRoot::CurrentUser, place, name);
        } catch (const RegistryError &error) {
            return error.Text();
        }
    };
    const auto set = [&](const QVariant &value, RegistryType type, RegistryRoot root = RegistryRoot::CurrentUser) {
        try {
            module.SetRegistryData(root, place, value, type, name);
        } catch (const RegistryError &error) {
            return error.Text();
        }
        return QString();
    };
    const QString unwritable = u"The configuration registry key could not be written."_s;
    EXPECT_EQ(get(), qt_error_string(ENOENT));
    EXPECT_EQ(set(1, RegistryType::Unknown), unwritable);
    EXPECT_EQ(get(), u"The configuration registry key could not be read."_s);
    EXPECT_EQ(set(u"no number"_s, RegistryType::Integer), unwritable);
    EXPECT_EQ(set(1, RegistryType::Integer, RegistryRoot::LocalMachine), qt_error_string(EACCES));
    const std::tuple<RegistryType, QVariant, QVariant> cases[]{
        {RegistryType::ExpandString, u"%x%"_s, u"%x%"_s},
        {RegistryType::String, 12, u"12"_s},
        {RegistryType::Integer, u"8"_s, 8},
        {RegistryType::Integer, 0xFF000005u, static_cast<int>(0xFF000005)},
        {RegistryType::Binary, QByteArray("\0\xFF", 2), QByteArray("\0\xFF", 2)}};
    for (const auto &[type, in, out] : cases) {
        for (const RegistryType asked : {type, RegistryType::Unknown}) { // none means that of the value that is there
            EXPECT_EQ(set(in, asked), QString());
            EXPECT_EQ(get(), out) << qPrintable(in.toString());
        }
    }
}

class CanonLetters : public ModuleTest
{
protected:
    /// A canon of one text: its name, its page in Pāli, no other.
    void Make(const QString &name, const QString &page)
    {
        TpFIBDatabase database;
        TpFIBTransaction transaction;
        QFile::remove(Path(u"KELORA.FDB"_s));
        PrepareConnection(database, transaction, Path(u"KELORA.FDB"_s), doors.exeName);
        database.CreateDatabase();
        TpFIBScripter scripter;
        scripter.SetDatabase(&database);
        scripter.Script() = {
            u"create table KELORA_CONTENT (ID_VIC integer, NAME_VIC_PAL varchar(127) character set unicode_fss,"_s,
            u"    CONTENT_VIC_PAL blob, CONTENT_VIC_PAL_VIE blob);"_s, u"commit work;"_s,
            u"insert into KELORA_CONTENT values (1101, '%1', '%2', null);"_s.arg(name, page), u"commit work;"_s};
        scripter.ExecuteScript();
        database.SetConnected(false);
    }
};

TEST_F(CanonLetters, AreThoseOfTheColumnUntilAnotherCanonIsOpened)
{
    TfrmKeloraDM module(doors);
    EXPECT_EQ(module.Niggahita(Field::NameVicPal), QChar(u'ṃ')) << "no canon";
    Make(u"Saṁyutta"_s, u"<p>evaŋ me sutaŋ</p>"_s);
    module.DataModuleCreate();
    const auto letters = [&] {
        QString found;
        for (const SchemaName &column : {Field::NameVicPal, Field::ContentVicPal, Field::ContentVicPalVie})
            found += module.Niggahita(column);
        return found;
    };
    EXPECT_EQ(letters(), u"ṁŋṃ"_s);
    module.dbKelora.SetConnected(false);
    EXPECT_EQ(letters(), u"ṁŋṃ"_s) << "not asked again";
    Make(u"Saṃyutta"_s, u"<p>evaṁ me sutaṁ</p>"_s);
    module.Open();
    EXPECT_EQ(letters(), u"ṃṁṃ"_s);
    EXPECT_EQ(messages, QStringList());
}

} // namespace
