#include "program/ProgramRun.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

// "\r" of the message is shown as a line break.
constexpr char16_t CanonMessageStart[] = u"Kết nối dữ liệu không thành công!";

void Overwrite(const QString &path, const QByteArray &bytes)
{
    QFile::remove(path);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

TEST(CanonThatCannotOpen, ShowsTheFixedMessageThenTheReportThenEnds)
{
    const std::pair<const char *, void (*)(const ProductCopy &)> rows[]{
        {"Missing", [](const auto &p) { QFile::remove(p.File(u"KELORA.FDB"_s)); }},
        {"NotADatabase", [](const auto &p) { Overwrite(p.File(u"KELORA.FDB"_s), QByteArray(99999, 'x')); }},
        {"Folder",
         [](const auto &p) {
             QFile::remove(p.File(u"KELORA.FDB"_s));
             QDir().mkpath(p.File(u"KELORA.FDB"_s));
         }},
        {"NoClientLibrary", [](const auto &p) { QFile::remove(p.File(u"libfbclient.so.2"_s)); }}};
    for (const auto &[name, damage] : rows) {
        SCOPED_TRACE(name);
        ProductCopy product;
        damage(product);
        ProgramRun program(product);
        program.Start();
        program.Do({u"wait msgBox"_s});
        EXPECT_TRUE(program.Send(u"get msgBox text"_s).startsWith(QStringView(CanonMessageStart)));
        program.Do({u"answer ok"_s, u"wait msgBox"_s});
        const QString report = program.Send(u"get msgBox text"_s);
        EXPECT_FALSE(report.isEmpty() || report.startsWith(QStringView(CanonMessageStart))) << report.toStdString();
        program.Do({u"answer ok"_s});
        EXPECT_GT(program.ExitCode(), 0);
    }
}

TEST(Start, CanonWithoutItsTablesIsReportedAndTheWindowStands)
{
    ProductCopy product;
    QFile::remove(product.File(u"KELORA.FDB"_s));
    QFile::copy(product.File(u"TARUNECLIENT.FDB"_s), product.File(u"KELORA.FDB"_s));
    ProgramRun program(product);
    program.Start();
    program.Do({u"wait msgBox"_s});
    EXPECT_THAT(program.Send(u"get msgBox text"_s).toStdString(), testing::HasSubstr("KELORA_TREE"));
    program.Do({u"answer ok"_s, u"wait frmMain"_s});
    EXPECT_EQ(program.Quit(), 0);
}

TEST(Start, RunsWithoutMarksAndDictionary)
{
    ProductCopy product;
    QFile::remove(product.File(u"TARUNECLIENT.FDB"_s));
    Overwrite(product.File(u"PALIDICT.FDB"_s), "not a database");
    ProgramRun program(product);
    program.Open();
    EXPECT_EQ(program.Send(u"get acFocusHighlight enabled"_s), u"false"_s);
    EXPECT_EQ(program.Send(u"get acGetWord enabled"_s), u"false"_s);
    EXPECT_EQ(program.Quit(), 0);
    EXPECT_FALSE(QFile::exists(product.File(u"TARUNECLIENT.FDB"_s)));
}

void SpeakOnly(const QString &locale, QProcessEnvironment &environment)
{
    environment.remove(u"LC_ALL"_s);
    environment.remove(u"LC_CTYPE"_s);
    environment.insert(u"LANG"_s, locale);
}

TEST(UnusualPlace, OpensTheCanonAndLeaves)
{
    const std::tuple<const char *, QString, void (*)(const ProductCopy &, QProcessEnvironment &)> rows[]{
        {"Quotes", u"it's \"Tạng ṭīkā 経\" & 100%"_s, [](const auto &, auto &) {}},
        {"PlainLocale", u"Tạng Luật"_s, [](const auto &, auto &environment) { SpeakOnly(u"C"_s, environment); }},
        {"LocaleNotInstalled", u"Tạng Luật ṭīkā"_s,
         [](const auto &, auto &environment) { SpeakOnly(u"xx_YY.UTF-8"_s, environment); }},
        {"NoHome", u"nohome"_s,
         [](const auto &, auto &environment) {
             environment.remove(u"HOME"_s);
             environment.remove(u"XDG_CONFIG_HOME"_s);
         }},
        {"ReadOnlySettings", u"rosettings"_s,
         [](const auto &product, auto &) {
             QDir().mkpath(product.ConfigFolder());
             QFile::setPermissions(product.ConfigFolder(), QFile::ReadOwner | QFile::ExeOwner);
         }},
        {"ReadOnlyFolder", u"readonly"_s, [](const auto &product, auto &) {
             for (const QString &name : {u"KELORA.FDB"_s, u"PALIDICT.FDB"_s, u"TARUNECLIENT.FDB"_s})
                 QFile::setPermissions(product.File(name), QFile::ReadOwner);
             QFile::setPermissions(product.Folder(), QFile::ReadOwner | QFile::ExeOwner);
         }}};
    for (const auto &[name, folder, arrange] : rows) {
        SCOPED_TRACE(name);
        ProductCopy product(folder);
        ProgramRun program(product);
        arrange(product, program.environment);
        program.Open();
        EXPECT_GT(program.Send(u"get qryTreeSutas RecordCount"_s).toInt(), 200);
        EXPECT_EQ(program.Quit(), 0);
        QFile::setPermissions(product.Folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

TEST(Start, TakesNoArguments)
{
    ProductCopy product;
    ProgramRun program(product);
    program.arguments = QStringList{u"-reverse"_s}; // the toolkit would lay out everything from right to left
    program.Start();
    program.Do({u"wait frmMain"_s});
    EXPECT_EQ(program.Send(u"get frmMain layoutDirection"_s), u"LeftToRight"_s);
    EXPECT_EQ(program.Quit(), 0);
}

TEST(TwoCopies, ReadAndKeepTheirSettings)
{
    ProductCopy product;
    ProgramRun first(product), second(product);
    first.Open();
    second.Open();
    EXPECT_GT(second.Send(u"get qryTreeSutas RecordCount"_s).toInt(), 200);
    first.Do({u"click btnVietPali"_s, u"wait-page ebContent"_s});
    second.Do({u"trigger acMarginWidth2"_s, u"wait-page ebContent"_s});
    EXPECT_EQ(product.StoredOption(u"LanguageSutta"_s), 10);
    EXPECT_EQ(product.StoredOption(u"MarginWidth"_s), 2);
    EXPECT_EQ(first.Quit(), 0);
    EXPECT_EQ(second.Quit(), 0);
}

} // namespace
