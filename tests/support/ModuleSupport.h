#pragma once

#include "presentation/GlobalUnit.h"
#include "stores/DatabaseError.h"
#include "stores/JsonRegistry.h"
#include "stores/KeloraDM.h"
#include "support/FailingDisk.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QStringList>

/// A program folder of its own with engine and settings but no databases, and doors that note what was asked of them.
/// The globals of the options stand at their zero values in each test.
class ModuleTest : public testing::Test
{
protected:
    /// The engine is loaded once per process and keeps the folder it came from; that must outlive a test's own.
    static void SetUpTestSuite()
    {
        TpFIBDatabase database;
        TpFIBTransaction transaction;
        const QString folder = ProductFolder();
        PrepareConnection(database, transaction, folder + QStringLiteral("NONE.FDB"), folder + QStringLiteral("exe"));
        EXPECT_THROW(database.SetConnected(true), DatabaseError);
    }
    void SetUp() override
    {
        ResetGlobals();
        QFile::link(ProductFolder() + QStringLiteral("libfbclient.so.2"), Path(QStringLiteral("libfbclient.so.2")));
        QFile::link(ProductFolder() + QStringLiteral("firebird"), Path(QStringLiteral("firebird")));
        doors.exeName = Path(QStringLiteral("Lumivara"));
        doors.showMessage = [this](const QString &text) { messages += text; };
        doors.terminate = [this] { ++terminations; };
        doors.createRegistry = [this] { return MakeRegistry(); };
    }
    void TearDown() override { ResetGlobals(); }

    QString Path(const QString &name) const { return m_folder.Path(name); }
    std::unique_ptr<TRegistry> MakeRegistry()
    {
        return std::make_unique<JsonRegistry>(Path(QStringLiteral("lumivara")), Path(QStringLiteral("autostart")),
                                              disk ? *disk : RealSettingsDisk());
    }
    /// The options key, open for writing.
    std::unique_ptr<TRegistry> OpenOptions()
    {
        auto registry = std::make_unique<JsonRegistry>(Path(QStringLiteral("lumivara")), QString());
        EXPECT_TRUE(registry->OpenKey(QString::fromUtf16(OptionsKey), true));
        return registry;
    }
    static void ResetGlobals()
    {
        AppPath.clear();
        InterfaceLang = 0;
        FontName.clear();
        LastWord.clear();
        DictionaryKind = 0;
        MultiDictionary = false;
        GlobalActiveStyle = 0;
        GlobalActiveName.clear();
    }

    ModuleDoors doors;
    QStringList messages;
    int terminations = 0;
    SettingsDisk *disk = nullptr;

private:
    ScratchFolder m_folder;
};
