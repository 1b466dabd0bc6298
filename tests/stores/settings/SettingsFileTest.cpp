#include "stores/settings/SettingsFile.h"

#include <gmock/gmock.h>

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
         {" \n"_ba, QByteArray(64, '\0'), whole.chopped(1), whole + "}", "[]"_ba, "{}"_ba, "{\"keys\":{\"A\":1}}"_ba,
          FileWith("1"), FileWith("{\"value\":1}"), FileWith("{\"type\":1,\"value\":1}"),
          FileWith("{\"type\":\"\xFF\"}"), FileWith("{\"type\":\"string\"}"),
          FileWith("{\"type\":\"integer\",\"value\":\"1\"}"), FileWith("{\"type\":\"integer\",\"value\":1.5}"),
          FileWith("{\"type\":\"integer\",\"value\":4294967296}"),
          FileWith("{\"type\":\"integer\",\"value\":-2147483649}"), FileWith("{\"type\":\"string\",\"value\":1}"),
          FileWith("{\"type\":\"binary\",\"value\":\"*\"}")})
        EXPECT_FALSE(SettingsFile::Parse(bytes).has_value()) << bytes.constData();
}

TEST(SettingsFile, ReadsIntegersOf32Bits)
{
    const std::pair<const char *, int> cases[]{{"2147483647", 2147483647},
                                               {"-2147483648", -2147483647 - 1},
                                               {"4278190085", static_cast<int>(0xFF000005)},
                                               {"1e2", 100}};
    for (const auto &[json, number] : cases) {
        const auto file = SettingsFile::Parse(FileWith(QByteArray("{\"type\":\"integer\",\"value\":") + json + '}'));
        EXPECT_TRUE(file && file->Value(Key, u"A"_s)->number == number) << json;
    }
}

TEST(SettingsFile, IgnoresCaseKeepsTheFirstSpellingAndHasTheKeysAbove)
{
    SettingsFile file;
    EXPECT_FALSE(file.HasKey(Key));
    file.SetValue(u"\\Software\\Melko\\Kelora\\"_s, u"FontName"_s, Integer(1));
    file.SetValue(u"SOFTWARE\\melko\\kelora"_s, u"FONTNAME"_s, Integer(2));
    EXPECT_EQ(file.Value(u"software\\MELKO\\Kelora"_s, u"fontname"_s)->number, 2);
    const QByteArray bytes = file.ToBytes();
    for (const QByteArray &spelling : {"Software\\\\Melko\\\\Kelora"_ba, "FontName"_ba}) {
        EXPECT_EQ(bytes.count(spelling), 1);
        EXPECT_EQ(bytes.toLower().count(spelling.toLower()), 1);
    }
    for (const QString &key : {u"software\\melko\\kelora\\"_s, Key, u"Software"_s, u"Soft"_s, u"Melko"_s})
        EXPECT_EQ(file.HasKey(key), key != u"Soft" && key != u"Melko") << key.toStdString();
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
