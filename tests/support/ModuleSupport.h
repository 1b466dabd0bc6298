#pragma once

#include "base/InterfaceLanguage.h"
#include "stores/KeloraDM.h"
#include "stores/engine/DatabaseError.h"
#include "stores/settings/JsonRegistry.h"
#include "stores/settings/Options.h"
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
        PrepareConnection(database, transaction, folder + u"NONE.FDB"_qs, folder + u"exe"_qs);
        EXPECT_THROW(database.SetConnected(true), DatabaseError);
    }
    void SetUp() override
    {
        ResetGlobals();
        QFile::link(ProductFolder() + u"libfbclient.so.2"_qs, Path(u"libfbclient.so.2"_qs));
        QFile::link(ProductFolder() + u"firebird"_qs, Path(u"firebird"_qs));
        doors.exeName = Path(u"Lumivara"_qs);
        doors.showMessage = [this](const QString &text) { messages += text; };
        doors.terminate = [this] { ++terminations; };
        doors.createRegistry = [this] {
            return std::make_unique<JsonRegistry>(Path(u"lumivara"_qs), Path(u"autostart"_qs),
                                                  disk ? *disk : RealSettingsDisk());
        };
    }
    void TearDown() override { ResetGlobals(); }

    QString Path(const QString &name) const { return m_folder.Path(name); }
    /// The options key, open for writing.
    std::unique_ptr<TRegistry> OpenOptions()
    {
        auto registry = std::make_unique<JsonRegistry>(Path(u"lumivara"_qs), QString());
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
