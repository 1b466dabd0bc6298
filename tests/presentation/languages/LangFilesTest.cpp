#include "presentation/languages/LangData.h"
#include "presentation/languages/LangError.h"
#include "presentation/languages/LangText.h"
#include "presentation/languages/MaskList.h"
#include "presentation/languages/Translations.h"
#include "support/SkinSupport.h"
#include "support/TestSupport.h"

#include <QFile>

#include <gmock/gmock.h>

#include <malloc.h>
#include <sys/resource.h>

using testing::ThrowsMessage;

namespace {

// With the zeros inside, which a plain literal would end at.
QByteArray operator""_ba(const char *text, size_t size)
{
    return QByteArray(text, qsizetype(size));
}

/// What was read, one line for each parameter, value and constant.
QStringList Listing(const TDKLang_CompTranslations &translations)
{
    QStringList lines;
    for (const auto &param : translations.FParams)
        lines << u"param %1=%2"_qs.arg(param.name, param.value);
    for (const auto &section : translations.Sections())
        for (const auto &value : *section)
            lines << u"%1 %2=%3"_qs.arg(section->FComponentName).arg(value.iID).arg(value.wsValue);
    for (const auto &constant : translations.FConstants.Items())
        lines << u"const %1=%2"_qs.arg(constant.wsName, constant.wsValue);
    return lines;
}

TEST(LangFile, IsReadByRules)
{
    const std::pair<QByteArray, QStringList> rows[]{
        {" LANGID = 1033 \r\nName=a\\nb\nnone\n=x\n"_ba, {u"param LANGID=1033"_qs, u"param Name=a\\nb"_qs}},
        {"[a]\n1= b = c \n2=\n"_ba, {u"a 1=b = c"_qs, u"a 2="_qs}},
        {"[a]\n;1=x\n0=x\n-1=x\nx=x\n1.5=x\n99999999999=x\n00000002=y"_ba, {u"a 2=y"_qs}},
        {"[a]\n3=x\n[b]\n1=y\n[ A ]\n2=z\n"_ba, {u"a 2=z"_qs, u"a 3=x"_qs, u"b 1=y"_qs}},
        {"k=v\n[\n[]\n[a\nl=w\n[a]\n1=x\n[b\n[]\n2=y"_ba, {u"param k=v"_qs, u"param l=w"_qs, u"a 1=x"_qs, u"a 2=y"_qs}},
        {"[$constants]\nB=\\n\nA=2\n[a]\n1=x\n"_ba, {u"a 1=x"_qs, u"const A=2"_qs, u"const B=\r\n"_qs}},
        {"[a]\r1=x\r\r\n2=y\n\r3=z"_ba, {u"a 1=x"_qs, u"a 2=y"_qs, u"a 3=z"_qs}},
        {"\xFF\xFE[\0a\0]\0\n\0\x31\0=\0\xA1\x1E"_ba, {u"a 1=\u1EA1"_qs}},
        {"\xFE\xFF\0[\0a\0]\0\n\0\x31\0=\x1E\xA1\0"_ba, {u"a 1=\u1EA1"_qs}}, // and half a unit
        {"\xEF\xBB\xBF[a]\n1=\xE1\xBA\xA1"_ba, {u"a 1=\u1EA1"_qs}},
        {"[a]\n1=\xE1\xBA\xA1"_ba, {u"a 1=\u1EA1"_qs}},
        {"[a]\n1=\xE9\x80\x9F\x81"_ba, {u"a 1=\u00E9\u20AC\u0178\x81"_qs}}};
    for (const auto &[file, read] : rows) {
        TDKLang_CompTranslations translations;
        translations.LoadFromBytes(file);
        EXPECT_EQ(Listing(translations), read) << file.constData();
    }
}

TEST(LangFile, ErrorsNameTheLineFromZeroAndChangeNothing)
{
    const std::pair<QByteArray, std::string> rows[]{
        {"[a]\r\n3=x\r\n1=y\r\n\r\n;\r\n[b]\r\n3=z\r\n[A]\r\n03=x"_ba,
         "8: Duplicate property value translation ID (3)"},
        // The first of several failures, whichever section it is in.
        {"[a]\n7=x\n[b]\n2=x\n2=y\n[a]\n7=y\n"_ba, "4: Duplicate property value translation ID (2)"},
        {"[$CONSTANTS]\n1a=x\n[a]\n7=x\n7=x"_ba, "1: Invalid constant name (\"1a\")"},
        {"[$CONSTANTS]\na=x\n[b]\n[$Constants]\na=y\n"_ba, "4: Duplicate constant name (\"a\")"}};
    TDKLang_CompTranslations translations;
    translations.LoadFromBytes("[a]\n1=kept"_ba);
    for (const auto &[file, text] : rows) {
        EXPECT_THAT([&] { translations.LoadFromBytes(file); },
                    ThrowsMessage<EDKLangError>("Loading translations failed.\r\nLine " + text));
        EXPECT_EQ(Listing(translations), QStringList{u"a 1=kept"_qs});
    }
}

TEST(LangFile, ReadsParametersUpToTheFirstBracketOnly)
{
    const ScratchFolder folder;
    const QByteArray sections = "[$CONSTANTS]\n1=x\n"_ba.repeated(200'000); // would fail if it were read
    const auto read = [&](const QByteArray &bytes) {
        EXPECT_TRUE(WriteBytes(folder.Path(u"x.lng"_qs), bytes));
        TDKLang_CompTranslations translations;
        translations.LoadFromFile(folder.Path(u"x.lng"_qs), true);
        EXPECT_TRUE(translations.Sections().empty() && translations.FConstants.Count() == 0);
        return translations;
    };
    const std::pair<QByteArray, int> rows[]{
        {"\xEF\xBB\xBFlangid=1066\n" + sections, 1066},
        {EncodeLangText(u"LANGID=1036\r\n[a]\r\n"_qs), 1036},
        {";" + QByteArray(10'000'000, 'x') + "\nLANGID=1033\n [a", 1033},
        {"[\nLANGID=1033\n", 0},
        {"LANGID=0\n", 0},
        {"LANGID=65536\n", 0},
        {"LANGID=x\nLANGID=1033\n", 0},
        {QByteArray(30'000'000, 'x') + "\nLANGID=1033\n", 0}}; // no header goes on for so long
    for (const auto &[file, id] : rows)
        EXPECT_EQ(read(file).LangId(), id) << file.left(40).constData();
    // A character that the read piece cuts in half must not change the encoding.
    const QByteArray letter = "\xE1\xBA\xA1"_ba;
    for (int padding = 65'530; padding < 65'540; ++padding)
        EXPECT_EQ(read("A=" + letter + "\n[a]\n" + QByteArray(padding, 'x') + letter.repeated(9)).ParamValue(u"A"_qs),
                  u"\u1EA1"_qs);
}

TEST(LangFile, IsWrittenAsItIsRead)
{
    TDKLang_CompTranslations translations;
    translations.FParams = {{u"LANGID"_qs, u"1033"_qs}};
    translations.Section(u"frmMain"_qs).Add(15, u"a\r\nb\\n\t\u1EA1\x01"_qs);
    translations.Section(u"FRMMAIN"_qs).Add(2, u"x"_qs);
    translations.FConstants.Add(u"c"_qs, u"\n\r"_qs);
    EXPECT_EQ(translations.SaveToBytes(),
              EncodeLangText(u"LANGID=1033\r\n\r\n[frmMain]\r\n00000002=x\r\n00000015=a\\nb\\\\n\\09\u1EA1\\01\r\n\r\n"
                             u"[$CONSTANTS]\r\nc=\\n\r\n"_qs));
    EXPECT_EQ(DecodeLangValue(u"a\\nb\\t\\\\n\\07\\31x"_qs), u"a\r\nb\t\\n\a\x1Fx"_qs);
    EXPECT_EQ(DecodeLangValue(u"\\x\\1\\1x\\N\\ \\"_qs), u"\\x\\1\\1x\\N\\ \\"_qs) << "no escapes";
    EXPECT_EQ(EncodeLangValue(u"\r\n\n\r\r\r\n\n\x1F\t"_qs), u"\\n\\n\\n\\n\\n\\31\\09"_qs);
}

TEST(LangConstants, ReadEveryVersionOfTheirStream)
{
    const QByteArray rows[]{"\x00\x01\0\0\0\x01\0a\x03\0\xE1\xBA\xA1"_ba, "\x01\x01\0\0\0\x01\0a\x03\0\xE1\xBA\xA1"_ba,
                            "\x02\x00\x01\0\0\0\x01\0a\x01\0\xA1\x1E"_ba,
                            "\x03\x01\x01\0\0\0\x01\0a\0\x01\0\xA1\x1E"_ba};
    TDKLang_Constants constants;
    for (const QByteArray &stream : rows) {
        constants.LoadFromBytes(stream);
        EXPECT_EQ(constants.Find(u"a"_qs)->wsValue, u"\u1EA1"_qs);
        EXPECT_THROW(constants.LoadFromBytes(stream.chopped(1)), EDKLangError);
    }
    EXPECT_EQ(constants.SaveToBytes(), rows[3]);
    EXPECT_THAT([&] { constants.LoadFromBytes("\x04"_ba); },
                ThrowsMessage<EDKLangError>("Stream version (4) is greater than the current one (3)"));

    TDKLang_Constants translated;
    translated.Add(u"a"_qs, u"x"_qs);
    constants.Add(u"b"_qs, u"stays"_qs);
    constants.Translate(&translated);
    EXPECT_EQ(constants.Find(u"a"_qs)->wsValue, u"x"_qs);
    EXPECT_EQ(constants.Find(u"b"_qs)->wsValue, u"stays"_qs);
}

TEST(MaskList, MatchesWholeTextsIgnoringCase)
{
    const auto matches = [](const QString &row) { // mask and text, parted by "|"
        return TDKLang_MaskList({u"nothing"_qs, row.section(u'|', 0, 0)}).Matches(row.section(u'|', 1));
    };
    for (const QString &row :
         {u"*.SQL|a.b/c.Sql"_qs, u"*[0].?ext|x[0].Text"_qs, u"*a*b*|xxaxxaxb"_qs, u"*|"_qs, u"\u0110*|\u0111\u1EA1"_qs})
        EXPECT_TRUE(matches(row)) << qPrintable(row);
    for (const QString &row : {u"*.SQL|a.SQLText"_qs, u"*.SQL|aSQL"_qs, u"a?|a"_qs, u"*a*b|abba"_qs})
        EXPECT_FALSE(matches(row)) << qPrintable(row);
}

const QByteArray optionsTable = "\x0A\0frmOptions\x01\x01\0\0\0\x01\0\0\0\x07\0Caption"
                                "\x01\x02\0\0\0"
                                "\x02\0lc\0\0"
                                "\x05\0btnOK\x01\x02\0\0\0\x03\0\0\0\x07\0Caption\x02\0\0\0\x04\0Hint\0"_ba;

TEST(LangData, HoldsATreeOfNumbersAndRefusesDamage)
{
    const auto root = LoadLangData(optionsTable);
    const auto &button = *root->FOwnedCompEntries->at(1);
    EXPECT_EQ(button.NamePath(), u"btnOK"_qs);
    EXPECT_EQ(button.FPropEntries->FindByName(u"Hint"_qs)->iID, 2);
    EXPECT_EQ(root->HighestId(), 3);
    EXPECT_EQ(SaveLangData(*root), optionsTable);
    for (qsizetype length = 0; length < optionsTable.size(); ++length)
        EXPECT_THROW(LoadLangData(optionsTable.first(length)), EDKLangError) << length;
    const QByteArray nested = "\x01\0a\0\x01\x01\0\0\0"_ba;
    EXPECT_NO_THROW(LoadLangData(nested.repeated(63) + "\x01\0a\0\0"_ba));
    for (const QByteArray &bytes :
         {optionsTable + "x", nested.repeated(64) + "\x01\0a\0\0"_ba, nested.repeated(1'000'000),
          "\0\0\x01\xFF\xFF\xFF\xFF"_ba, "\0\0\x01\xFF\xFF\xFF\x7F"_ba, "\0\0\0\x01\xFF\xFF\xFF\x7F"_ba,
          "\x02\0\xC3\x28\0\0"_ba, "\x01\0\xC3\0\0"_ba})
        EXPECT_THROW(LoadLangData(bytes), EDKLangError) << bytes.left(20).toHex().constData();
}

// The most memory that was in use at once while `action` ran, beyond what was before.
template <typename Action>
qint64 PeakGrowth(Action action)
{
    malloc_trim(0);
    QFile reset(u"/proc/self/clear_refs"_qs); // the most so far is then what is in use now
    EXPECT_TRUE(reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && reset.write("5") == 1);
    rusage before = {}, after = {};
    ::getrusage(RUSAGE_SELF, &before);
    try {
        action();
    } catch (const EDKLangError &) { // refused in time
    }
    ::getrusage(RUSAGE_SELF, &after);
    return (after.ru_maxrss - before.ru_maxrss) * 1024;
}

TEST(HostileLanguages, TakeNoMoreThanTenTimesTheirSize)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer's own memory would be counted";
#endif
    QByteArray sections, values = "[a]\n", constants = "[$CONSTANTS]\n";
    for (int i = 0; i < 300'000; ++i) {
        const QByteArray number = QByteArray::number(i, 36);
        sections += '[' + number + "]\n";
        values += QByteArray::number(300'000 - i) + "=a\n";
        constants += '_' + number + "=a\n";
    }
    for (const QByteArray &file : {sections, values, constants, QByteArray("a=\n").repeated(900'000),
                                   QByteArray(3'000'000, '\n'), "[a]\n1=" + QByteArray(3'000'000, '\\')})
        EXPECT_LT(PeakGrowth([&] { TDKLang_CompTranslations().LoadFromBytes(file); }), file.size() * 9 + 6'000'000)
            << file.left(40).constData();
    const QByteArray many = "\x40\x0D\x03\0"_ba; // 200,000
    for (const QByteArray &table :
         {"\0\0\0\x01"_ba + many + "\0\0\0\0"_ba.repeated(200'000),
          "\0\0\x01"_ba + many + "\0\0\0\0\0\0"_ba.repeated(200'000) + '\0',
          "\0\0\0\x01"_ba + many + "\x01\0a\x01\x01\0\0\0\0\0\0\0\0\0\0"_ba.repeated(200'000)})
        EXPECT_LT(PeakGrowth([&] { LoadLangData(table); }), table.size() * 9 + 4'000'000);
}

} // namespace
