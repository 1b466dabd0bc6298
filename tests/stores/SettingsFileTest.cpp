#include "stores/SettingsFile.h"

#include <gmock/gmock.h>

#include <QStringList>

#include <string>

namespace {

const QString Key = QStringLiteral("Software\\Melko");

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
    return QByteArrayLiteral("{\"format\":1,\"keys\":{\"Software\\\\Melko\":{\"A\":") + entry +
           QByteArrayLiteral("}}}");
}

struct DamagedCase
{
    const char *rule;
    QByteArray bytes;
};

class DamagedTable : public testing::TestWithParam<DamagedCase>
{};

TEST_P(DamagedTable, IsNoSettingsFile)
{
    EXPECT_FALSE(SettingsFile::Parse(GetParam().bytes).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Rules, DamagedTable,
    testing::Values(DamagedCase{"Empty", ""}, DamagedCase{"Blank", " \n"}, DamagedCase{"NoJson", "BgColor=1"},
                    DamagedCase{"Nul", QByteArray(64, '\0')},
                    DamagedCase{"InvalidUtf8", FileWith("{\"type\":\"\xFF\"}")},
                    DamagedCase{"CutShort", FileWith("{\"type\":\"integer\",\"value\":1}").chopped(1)},
                    DamagedCase{"TrailingText", FileWith("{\"type\":\"integer\",\"value\":1}") + "}"},
                    DamagedCase{"Array", "[]"}, DamagedCase{"NoKeys", "{}"},
                    DamagedCase{"KeysNoObject", "{\"keys\":[]}"}, DamagedCase{"KeyNoObject", "{\"keys\":{\"A\":1}}"},
                    DamagedCase{"ValueNoObject", FileWith("1")}, DamagedCase{"NoType", FileWith("{\"value\":1}")},
                    DamagedCase{"TypeNoString", FileWith("{\"type\":1,\"value\":1}")},
                    DamagedCase{"IntegerAsText", FileWith("{\"type\":\"integer\",\"value\":\"1\"}")},
                    DamagedCase{"IntegerWithFraction", FileWith("{\"type\":\"integer\",\"value\":1.5}")},
                    DamagedCase{"IntegerTooLarge", FileWith("{\"type\":\"integer\",\"value\":4294967296}")},
                    DamagedCase{"IntegerTooSmall", FileWith("{\"type\":\"integer\",\"value\":-2147483649}")},
                    DamagedCase{"StringAsNumber", FileWith("{\"type\":\"string\",\"value\":1}")},
                    DamagedCase{"StringMissing", FileWith("{\"type\":\"string\"}")},
                    DamagedCase{"BinaryNoBase64", FileWith("{\"type\":\"binary\",\"value\":\"*\"}")}),
    [](const auto &row) { return std::string(row.param.rule); });

TEST(SettingsFile, ReadsIntegersOf32Bits)
{
    const struct
    {
        const char *json;
        int number;
    } cases[] = {{"2147483647", 2147483647},
                 {"-2147483648", -2147483647 - 1},
                 {"4278190085", static_cast<int>(0xFF000005)},
                 {"4294967295", -1},
                 {"1e2", 100}};
    for (const auto &row : cases) {
        const auto file =
            SettingsFile::Parse(FileWith(QByteArray("{\"type\":\"integer\",\"value\":") + row.json + '}'));
        EXPECT_TRUE(file && file->Value(Key, QStringLiteral("A"))->number == row.number) << row.json;
    }
}

TEST(SettingsFile, BringsEveryTypeBackExactly)
{
    const QStringList texts{QString(), QStringLiteral("\"C:\\x\" \r\n\t"), QStringLiteral("Phẩm ṭ \U0001F600"),
                            QString(QChar(u'\0')) + QStringLiteral("a"), QString(100000, QLatin1Char('x'))};
    for (const QString &text : texts) {
        for (const RegistryType type : {RegistryType::String, RegistryType::ExpandString, RegistryType::Binary}) {
            SettingsValue value;
            value.type = type;
            if (type == RegistryType::Binary)
                value.bytes = text.toUtf8() + '\xFF';
            else
                value.text = text;
            SettingsFile file;
            file.SetValue(Key, QStringLiteral("A"), value);
            const auto read = SettingsFile::Parse(file.ToBytes());
            EXPECT_TRUE(read.has_value());
            const auto back = read ? read->Value(Key, QStringLiteral("A")) : std::nullopt;
            EXPECT_TRUE(back && back->type == type && back->text == value.text && back->bytes == value.bytes)
                << text.left(20).toStdString();
        }
    }
}

TEST(SettingsFile, IgnoresCaseAndKeepsTheFirstSpelling)
{
    SettingsFile file;
    file.SetValue(QStringLiteral("\\Software\\Melko\\"), QStringLiteral("FontName"), Integer(1));
    file.SetValue(QStringLiteral("SOFTWARE\\melko"), QStringLiteral("FONTNAME"), Integer(2));
    EXPECT_EQ(file.Value(QStringLiteral("software\\MELKO\\"), QStringLiteral("fontname"))->number, 2);
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
    file.AddKey(QStringLiteral("Software\\Melko\\Kelora"));
    for (const QString &key : {QStringLiteral("software\\melko\\kelora\\"), Key, QStringLiteral("Software")})
        EXPECT_TRUE(file.HasKey(key)) << key.toStdString();
    for (const QString &key : {QStringLiteral("Soft"), QStringLiteral("Software\\Melk"), QStringLiteral("Melko")})
        EXPECT_FALSE(file.HasKey(key)) << key.toStdString();
}

TEST(SettingsFile, LeavesWhatItDoesNotKnow)
{
    auto file = SettingsFile::Parse(
        "{\"format\":2,\"later\":[1],\"keys\":{\"Software\\\\Melko\":{\"Q\":{\"type\":\"quad\",\"value\":[7]}}}}");
    EXPECT_TRUE(file.has_value());
    EXPECT_EQ(file->Value(Key, QStringLiteral("Q"))->type, RegistryType::Unknown);
    file->SetValue(Key, QStringLiteral("A"), Integer(1));
    const QByteArray bytes = file->ToBytes().simplified().replace(' ', "");
    EXPECT_TRUE(bytes.contains("\"later\":[1]"));
    EXPECT_TRUE(bytes.contains("\"format\":2"));
    EXPECT_TRUE(bytes.contains("\"Q\":{\"type\":\"quad\",\"value\":[7]}"));
    file->SetValue(Key, QStringLiteral("q"), Integer(3));
    EXPECT_EQ(file->Value(Key, QStringLiteral("Q"))->number, 3);
}

} // namespace
