#include "program/ProgramRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

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

struct BadCanon
{
    const char *name;
    void (*damage)(const ProductCopy &);
};

class CanonThatCannotOpen : public testing::TestWithParam<BadCanon>
{};

TEST_P(CanonThatCannotOpen, ShowsTheFixedMessageThenTheReportThenEnds)
{
    ProductCopy product;
    GetParam().damage(product);
    ProgramRun program(product);
    program.Start();
    EXPECT_EQ(program.Send(u"wait msgBox"_s), QString());
    EXPECT_TRUE(program.Send(u"get msgBox text"_s).startsWith(QStringView(CanonMessageStart)));
    EXPECT_EQ(program.Send(u"answer ok"_s), QString());
    EXPECT_EQ(program.Send(u"wait msgBox"_s), QString());
    const QString report = program.Send(u"get msgBox text"_s);
    EXPECT_FALSE(report.isEmpty() || report.startsWith(QStringView(CanonMessageStart))) << report.toStdString();
    EXPECT_EQ(program.Send(u"answer ok"_s), QString());
    EXPECT_GT(program.ExitCode(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Files, CanonThatCannotOpen,
    testing::Values(BadCanon{"Missing", [](const ProductCopy &p) { QFile::remove(p.File(u"KELORA.FDB"_s)); }},
                    BadCanon{"Empty", [](const ProductCopy &p) { Overwrite(p.File(u"KELORA.FDB"_s), {}); }},
                    BadCanon{"Truncated",
                             [](const ProductCopy &p) {
                                 QFile file(p.File(u"KELORA.FDB"_s));
                                 file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
                                 file.resize(3000);
                             }},
                    BadCanon{"NotADatabase",
                             [](const ProductCopy &p) { Overwrite(p.File(u"KELORA.FDB"_s), QByteArray(99999, 'x')); }},
                    BadCanon{"Folder",
                             [](const ProductCopy &p) {
                                 QFile::remove(p.File(u"KELORA.FDB"_s));
                                 QDir().mkpath(p.File(u"KELORA.FDB"_s));
                             }},
                    BadCanon{"NoClientLibrary",
                             [](const ProductCopy &p) { QFile::remove(p.File(u"libfbclient.so.2"_s)); }}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(Start, CanonWithoutItsTablesIsReportedAndTheWindowStands)
{
    ProductCopy product;
    QFile::remove(product.File(u"KELORA.FDB"_s));
    QFile::copy(product.File(u"TARUNECLIENT.FDB"_s), product.File(u"KELORA.FDB"_s));
    ProgramRun program(product);
    program.Start();
    EXPECT_EQ(program.Send(u"wait msgBox"_s), QString());
    EXPECT_THAT(program.Send(u"get msgBox text"_s).toStdString(), testing::HasSubstr("KELORA_TREE"));
    EXPECT_EQ(program.Send(u"answer ok"_s), QString());
    EXPECT_EQ(program.Send(u"wait frmMain"_s), QString());
    EXPECT_EQ(program.Quit(), 0);
}

TEST(Start, RunsWithoutMarksAndDictionary)
{
    ProductCopy product;
    QFile::remove(product.File(u"TARUNECLIENT.FDB"_s));
    Overwrite(product.File(u"PALIDICT.FDB"_s), "not a database");
    ProgramRun program(product);
    program.Start();
    EXPECT_EQ(program.Send(u"wait frmMain"_s), QString());
    EXPECT_EQ(program.Send(u"wait-page ebContent"_s), QString());
    EXPECT_EQ(program.Send(u"get acFocusHighlight enabled"_s), u"false"_s);
    EXPECT_EQ(program.Send(u"get acGetWord enabled"_s), u"false"_s);
    EXPECT_EQ(program.Quit(), 0);
    EXPECT_FALSE(QFile::exists(product.File(u"TARUNECLIENT.FDB"_s)));
}

struct Place
{
    const char *name;
    QString folder;
    void (*arrange)(const ProductCopy &, QProcessEnvironment &);
};

class UnusualPlace : public testing::TestWithParam<Place>
{};

TEST_P(UnusualPlace, OpensTheCanonAndLeaves)
{
    ProductCopy product(GetParam().folder);
    ProgramRun program(product);
    GetParam().arrange(product, program.environment);
    program.Start();
    EXPECT_EQ(program.Send(u"wait frmMain"_s), QString());
    EXPECT_EQ(program.Send(u"wait-page ebContent"_s), QString());
    EXPECT_GT(program.Send(u"get qryTreeSutas RecordCount"_s).toInt(), 200);
    EXPECT_EQ(program.Quit(), 0);
    QFile::setPermissions(product.Folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

INSTANTIATE_TEST_SUITE_P(
    Places, UnusualPlace,
    testing::Values(Place{"Blanks", u"a folder with blanks"_s, [](const ProductCopy &, QProcessEnvironment &) {}},
                    Place{"Letters", u"Tạng Luật ṭīkā 経"_s, [](const ProductCopy &, QProcessEnvironment &) {}},
                    Place{"Quotes", u"it's \"quoted\" & 100%"_s, [](const ProductCopy &, QProcessEnvironment &) {}},
                    Place{"PlainLocale", u"Tạng Luật"_s,
                          [](const ProductCopy &, QProcessEnvironment &environment) {
                              environment.remove(u"LC_ALL"_s);
                              environment.remove(u"LC_CTYPE"_s);
                              environment.insert(u"LANG"_s, u"C"_s);
                          }},
                    Place{"LocaleNotInstalled", u"Tạng Luật ṭīkā"_s,
                          [](const ProductCopy &, QProcessEnvironment &environment) {
                              environment.remove(u"LC_ALL"_s);
                              environment.remove(u"LC_CTYPE"_s);
                              environment.insert(u"LANG"_s, u"xx_YY.UTF-8"_s);
                          }},
                    Place{"NoHome", u"nohome"_s,
                          [](const ProductCopy &, QProcessEnvironment &environment) {
                              environment.remove(u"HOME"_s);
                              environment.remove(u"XDG_CONFIG_HOME"_s);
                          }},
                    Place{"ReadOnlySettings", u"rosettings"_s,
                          [](const ProductCopy &product, QProcessEnvironment &) {
                              QDir().mkpath(product.ConfigFolder());
                              QFile::setPermissions(product.ConfigFolder(), QFile::ReadOwner | QFile::ExeOwner);
                          }},
                    Place{"ReadOnlyFolder", u"readonly"_s,
                          [](const ProductCopy &product, QProcessEnvironment &) {
                              for (const QString &name : {u"KELORA.FDB"_s, u"PALIDICT.FDB"_s, u"TARUNECLIENT.FDB"_s})
                                  QFile::setPermissions(product.File(name), QFile::ReadOwner);
                              QFile::setPermissions(product.Folder(), QFile::ReadOwner | QFile::ExeOwner);
                          }}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(Start, TakesNoArguments)
{
    ProductCopy product;
    ProgramRun program(product);
    program.arguments = QStringList{u"-reverse"_s}; // the toolkit would lay out everything from right to left
    program.Start();
    EXPECT_EQ(program.Send(u"wait frmMain"_s), QString());
    EXPECT_EQ(program.Send(u"get frmMain layoutDirection"_s), u"LeftToRight"_s);
    EXPECT_EQ(program.Quit(), 0);
}

TEST(TwoCopies, ReadAndKeepTheirSettings)
{
    ProductCopy product;
    ProgramRun first(product);
    ProgramRun second(product);
    first.Start();
    EXPECT_EQ(first.Send(u"wait frmMain"_s), QString());
    second.Start();
    EXPECT_EQ(second.Send(u"wait frmMain"_s), QString());
    EXPECT_GT(second.Send(u"get qryTreeSutas RecordCount"_s).toInt(), 200);
    EXPECT_EQ(first.Send(u"click btnVietPali"_s), QString());
    EXPECT_EQ(second.Send(u"trigger acMarginWidth2"_s), QString());
    EXPECT_EQ(second.Send(u"wait-page ebContent"_s), QString());
    EXPECT_EQ(first.Send(u"wait-page ebContent"_s), QString());
    QFile file(product.SettingsFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray settings = file.readAll();
    EXPECT_TRUE(settings.contains("LanguageSutta")) << settings.constData();
    EXPECT_TRUE(settings.contains("MarginWidth")) << settings.constData();
    EXPECT_EQ(first.Quit(), 0);
    EXPECT_EQ(second.Quit(), 0);
}

TEST(Settings, DamagedFileIsKeptAsideAndTheProgramStarts)
{
    ProductCopy product;
    QDir().mkpath(QFileInfo(product.SettingsFile()).path());
    Overwrite(product.SettingsFile(), "{ \"half\": ");
    ProgramRun program(product);
    program.Start();
    EXPECT_EQ(program.Send(u"wait frmMain"_s), QString());
    EXPECT_EQ(program.Quit(), 0);
    bool kept = false;
    const QStringList names = QFileInfo(product.SettingsFile()).dir().entryList(QDir::Files);
    for (const QString &name : names) {
        QFile file(QFileInfo(product.SettingsFile()).path() + u'/' + name);
        kept = kept || (file.open(QIODevice::ReadOnly) && file.readAll() == "{ \"half\": ");
    }
    EXPECT_TRUE(kept) << names.join(u' ').toStdString();
}

} // namespace
