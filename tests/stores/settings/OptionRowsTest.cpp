#include "stores/settings/JsonRegistry.h"
#include "stores/settings/Options.h"
#include "support/SkinSupport.h"
#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr Option Newest{1000};
constexpr Option Other{1001};

/// Settings laid down by an installer, and the table of a version that has two more options.
class OptionRowsTest : public testing::Test
{
protected:
    void LayDown(const QString &locale)
    {
        QFile::remove(File());
        QProcess script;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.Path(u"config"_s));
        environment.insert(u"LC_ALL"_s, locale);
        script.setProcessEnvironment(environment);
        script.start(QCoreApplication::applicationDirPath() + u"/packaging/first-settings"_s, {m_folder.Path(u"."_s)});
        EXPECT_TRUE(script.waitForFinished());
        EXPECT_EQ(script.exitCode(), 0) << script.readAllStandardError().constData();
        EXPECT_TRUE(registry.OpenKey(QString::fromUtf16(OptionsKey), false));
    }
    QString File() const { return m_folder.Path(u"config/lumivara/registry.json"_s); }
    QStringList StoredNames() const
    {
        QFile file(File());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString key = SettingsFile::NormalPath(QString::fromUtf16(OptionsKey));
        return QJsonDocument::fromJson(file.readAll())[u"keys"_s][key].toObject().keys();
    }
    static std::vector<OptionRow> LaterRows()
    {
        std::vector<OptionRow> rows{{Newest, u"Newest"_s, OptionGroup::Ours, u"new"_s}};
        rows.insert(rows.end(), OptionRows().begin(), OptionRows().end());
        rows.push_back({Other, u"Other"_s, OptionGroup::Ours, true});
        return rows;
    }

    const ScratchFolder m_folder;
    JsonRegistry registry{m_folder.Path(u"config/lumivara"_s), QString()};
};

TEST_F(OptionRowsTest, AreWhatAnInstallerLaysDownWithItsFirstText)
{
    const QString english = m_folder.Path(u"English.lng"_s);
    EXPECT_TRUE(WriteBytes(english, ""));
    for (const int language : {0, 1}) {
        LayDown(language == 0 ? u"vi_VN.UTF-8"_s : u"C"_s);
        QStringList names;
        for (const OptionGroup group : {OptionGroup::Start, OptionGroup::Style}) {
            OptionValues expected = DefaultsOf(group);
            if (group == OptionGroup::Start) {
                expected[Option::LastKelora] = 1101;
                expected[Option::InterfaceLang] = language;
            }
            EXPECT_TRUE(ReadTogether(registry, group) == expected) << int(group);
            for (const auto &[option, value] : expected)
                names += RowOf(option).name;
        }
        names.sort();
        EXPECT_EQ(StoredNames(), names); // a text may be missing unnoticed, and nothing else is laid down
    }
}

TEST_F(OptionRowsTest, OfALaterVersionNeverResetThoseThatAReaderHas)
{
    const std::vector<OptionRow> rows = LaterRows();
    const auto ours = [](const QString &newest, bool other) {
        OptionValues values = DefaultsOf(OptionGroup::Ours);
        values[Newest] = newest;
        values[Other] = other;
        return values;
    };
    const OptionValues byDefault = ours(u"new"_s, true);
    EXPECT_TRUE(ReadOurs(registry, rows) == byDefault) << "no key";
    LayDown(u"vi"_s);
    registry.WriteInteger(u"PopupTime"_s, 7);
    OptionValues kept = DefaultsOf(OptionGroup::Start);
    kept[Option::LastKelora] = 1101;
    kept[Option::PopupTime] = 7;
    const auto keeps = [&] { return ReadTogether(registry, OptionGroup::Start, rows) == kept; };
    EXPECT_TRUE(keeps());
    EXPECT_TRUE(ReadOurs(registry, rows) == byDefault);
    WriteOption(registry, rows.back(), false);
    registry.WriteInteger(u"Newest"_s, 3);
    EXPECT_TRUE(keeps());
    EXPECT_TRUE(ReadOurs(registry, rows) == ours(u"new"_s, false)) << "of another type";
    // Nor are they reset by what resets those.
    WriteOption(registry, rows.front(), u"mine"_s);
    registry.WriteString(u"PopupTime"_s, u"7"_s);
    EXPECT_FALSE(ReadTogether(registry, OptionGroup::Start, rows));
    EXPECT_TRUE(ReadOurs(registry, rows) == ours(u"mine"_s, false));
}

} // namespace
