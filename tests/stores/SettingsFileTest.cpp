#include "stores/SettingsFile.h"

#include <gmock/gmock.h>

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

const QString Key = u"Software\\Melko"_s;

SettingsValue Integer(int number)
{
    SettingsValue value;
    value.type = RegistryType::Integer;
    value.number = number;
    return value;
}

/// A file of one key with one value, given as JSON.
QByteArray FileWith(const QByteArray &entry)
{
    return "{\"format\":1,\"keys\":{\"Software\\\\Melko\":{\"A\":"_ba + entry + "}}}"_ba;
}

TEST(SettingsFile, OfAnotherShapeIsDamaged)
{
    const QByteArray whole = FileWith("{\"type\":\"integer\",\"value\":1}");
    EXPECT_TRUE(SettingsFile::Parse(whole).has_value());
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray(" \n"), QByteArray("BgColor=1"), QByteArray(64, '\0'), whole.chopped(1), whole + "}",
          QByteArray("[]"), QByteArray("{}"), QByteArray("{\"keys\":[]}"), QByteArray("{\"keys\":{\"A\":1}}")})
        EXPECT_FALSE(SettingsFile::Parse(bytes).has_value()) << bytes.constData();
    for (const char *value :
         {"1", "{\"value\":1}", "{\"type\":1,\"value\":1}", "{\"type\":\"\xFF\"}", "{\"type\":\"string\"}",
          "{\"type\":\"integer\",\"value\":\"1\"}", "{\"type\":\"integer\",\"value\":1.5}",
          "{\"type\":\"integer\",\"value\":4294967296}", "{\"type\":\"integer\",\"value\":-2147483649}",
          "{\"type\":\"string\",\"value\":1}", "{\"type\":\"binary\",\"value\":\"*\"}"})
        EXPECT_FALSE(SettingsFile::Parse(FileWith(value)).has_value()) << value;
}

TEST(SettingsFile, ReadsIntegersOf32Bits)
{
    const std::pair<const char *, int> cases[]{{"2147483647", 2147483647},
                                               {"-2147483648", -2147483647 - 1},
                                               {"4278190085", static_cast<int>(0xFF000005)},
                                               {"4294967295", -1},
                                               {"1e2", 100}};
    for (const auto &[json, number] : cases) {
        const auto file = SettingsFile::Parse(FileWith(QByteArray("{\"type\":\"integer\",\"value\":") + json + '}'));
        EXPECT_TRUE(file && file->Value(Key, u"A"_s)->number == number) << json;
    }
}

TEST(SettingsFile, BringsEveryTypeBackExactly)
{
    const QStringList texts{QString(), u"\"C:\\x\" \r\n\t"_s, u"Phẩm ṭ \U0001F600"_s, QString(QChar(u'\0')) + u"a"_s,
                            QString(100000, u'x')};
    for (const QString &text : texts) {
        for (const RegistryType type : {RegistryType::String, RegistryType::ExpandString, RegistryType::Binary}) {
            SettingsValue value;
            value.type = type;
            if (type == RegistryType::Binary)
                value.bytes = text.toUtf8() + '\xFF';
            else
                value.text = text;
            SettingsFile file;
            file.SetValue(Key, u"A"_s, value);
            const auto read = SettingsFile::Parse(file.ToBytes());
            EXPECT_TRUE(read.has_value());
            const auto back = read ? read->Value(Key, u"A"_s) : std::nullopt;
            EXPECT_TRUE(back && back->type == type && back->text == value.text && back->bytes == value.bytes)
                << text.left(20).toStdString();
        }
    }
}

TEST(SettingsFile, IgnoresCaseAndKeepsTheFirstSpelling)
{
    SettingsFile file;
    file.SetValue(u"\\Software\\Melko\\"_s, u"FontName"_s, Integer(1));
    file.SetValue(u"SOFTWARE\\melko"_s, u"FONTNAME"_s, Integer(2));
    EXPECT_EQ(file.Value(u"software\\MELKO\\"_s, u"fontname"_s)->number, 2);
    const QByteArray bytes = file.ToBytes();
    EXPECT_EQ(bytes.count("Software\\\\Melko"), 1);
    EXPECT_EQ(bytes.toLower().count("melko"), 1);
    EXPECT_EQ(bytes.count("\"FontName\""), 1);
    EXPECT_EQ(bytes.toLower().count("fontname"), 1);
}

TEST(SettingsFile, HasTheKeysAboveAKeyAndNoOthers)
{
    SettingsFile file;
    EXPECT_FALSE(file.HasKey(Key));
    file.AddKey(u"Software\\Melko\\Kelora"_s);
    for (const QString &key : {u"software\\melko\\kelora\\"_s, Key, u"Software"_s})
        EXPECT_TRUE(file.HasKey(key)) << key.toStdString();
    for (const QString &key : {u"Soft"_s, u"Software\\Melk"_s, u"Melko"_s})
        EXPECT_FALSE(file.HasKey(key)) << key.toStdString();
}

TEST(SettingsFile, LeavesWhatItDoesNotKnow)
{
    auto file = SettingsFile::Parse(
        "{\"format\":2,\"later\":[1],\"keys\":{\"Software\\\\Melko\":{\"Q\":{\"type\":\"quad\",\"value\":[7]}}}}");
    EXPECT_TRUE(file.has_value());
    EXPECT_EQ(file->Value(Key, u"Q"_s)->type, RegistryType::Unknown);
    file->SetValue(Key, u"A"_s, Integer(1));
    const QByteArray bytes = file->ToBytes().simplified().replace(' ', "");
    EXPECT_TRUE(bytes.contains("\"later\":[1]"));
    EXPECT_TRUE(bytes.contains("\"format\":2"));
    EXPECT_TRUE(bytes.contains("\"Q\":{\"type\":\"quad\",\"value\":[7]}"));
    file->SetValue(Key, u"q"_s, Integer(3));
    EXPECT_EQ(file->Value(Key, u"Q"_s)->number, 3);
}

} // namespace
