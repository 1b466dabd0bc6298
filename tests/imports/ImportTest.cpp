#include "imports/Import.h"
#include "reader/ReaderWindow.h"

#include <QComboBox>
#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

/// The assistant over the real tool, in a folder of its own.
class Imports : public ReaderWindow
{
protected:
    Imports()
    {
        for (const QString &name : {u"libfbclient.so.2"_s, u"firebird"_s, u"lumivara-data"_s})
            EXPECT_TRUE(QFile::link(ProductFolder() + name, folder.Path(name)));
        EXPECT_TRUE(QFile::copy(Beside(u"KELORA.FDB"_s), folder.Path(u"KELORA.FDB"_s)));
        program = folder.Path(u"Lumivara"_s);
        skinFile = folder.Path(u"AllSkins.skinres"_s);
        SetSkins({});
        EXPECT_TRUE(QDir(folder.Path(u"."_s)).mkpath(u"texts"_s));
        WriteTable("5001");
        EXPECT_TRUE(WriteBytes(folder.Path(u"texts/a.html"_s), "<p>evaṃ</p>"));
        EXPECT_TRUE(WriteBytes(folder.Path(u"texts/b.html"_s), "<p>như vầy</p>"));
        EXPECT_TRUE(WriteBytes(folder.Path(u"words.tsv"_s), "dhamma\tnature\nmagga\tpath\n\tno word\n"));
    }
    ~Imports() override { End(); }

    /// The table of the one text, under a key.
    void WriteTable(const QByteArray &key)
    {
        EXPECT_TRUE(WriteBytes(folder.Path(u"texts/canon.csv"_s),
                               "kind,key,group,number,pali,vietnamese,page_pali,page_vietnamese\n"
                               "group,1,,,Vagga,Phẩm,,\ntext," +
                                   key + ",1,1,Sutta,Kinh mới,a.html,b.html\n"));
    }
    QByteArray Tool(const QStringList &arguments)
    {
        QProcess tool;
        tool.start(folder.Path(u"lumivara-data"_s), arguments);
        EXPECT_TRUE(tool.waitForFinished());
        EXPECT_LT(tool.exitCode(), 2) << tool.readAllStandardError().toStdString();
        return tool.readAllStandardOutput();
    }
    TfrmImport &Open()
    {
        Trigger("acImport");
        return static_cast<TfrmImport &>(*FindForm(u"frmImport"_s));
    }
    template <typename T>
    T &On(const char *name)
    {
        return In<T>(*FindForm(u"frmImport"_s), name);
    }
    bool Shows(const char *page)
    {
        return WaitFor([&] { return On<QWidget>(page).isVisible(); }, 30000);
    }
    std::string Text(const char *label) { return On<QLabel>(label).text().toStdString(); }
    void Press(const char *button) { On<QPushButton>(button).click(); }
    /// Puts a script in the tool's place.
    void FakeTool(const QByteArray &script)
    {
        const QString path = folder.Path(u"lumivara-data"_s);
        EXPECT_TRUE(QFile::remove(path));
        EXPECT_TRUE(WriteBytes(path, "#!/bin/sh\n" + script));
        EXPECT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner));
    }

    ScratchFolder folder;
};

} // namespace

TEST_F(Imports, TextsAreLookedAtTakenOverShownAtOnceAndTakenBack)
{
    StartOn();
    const QStringList before = PassageNames();
    Open().Look(folder.Path(u"texts"_s));
    ASSERT_TRUE(Shows("tsFound")) << Text("lbSourceFault");
    EXPECT_EQ(PassageNames(), before) << "a look changes nothing";
    EXPECT_FALSE(QFileInfo::exists(folder.Path(u"KELORA.FDB.before"_s)));
    EXPECT_THAT(Text("lbFound"), testing::HasSubstr("1 bài"));
    Press("btnImport");
    ASSERT_TRUE(Shows("tsDone")) << Text("lbSourceFault");
    EXPECT_EQ(PassageNames(), QStringList{u"Kinh mới"_s});
    Press("btnTakeBack");
    EXPECT_TRUE(WaitFor([&] { return Text("lbDone").find("Đã lấy lại bản cũ.") == 0; }, 30000));
    EXPECT_THAT(Text("lbDone"),
                testing::Not(testing::AnyOf(testing::HasSubstr("Bản mới"), testing::HasSubstr("Bản cũ"))));
    EXPECT_EQ(PassageNames().join(u"|"_s).toStdString(), before.join(u"|"_s).toStdString());
}

TEST_F(Imports, EnterInTheBoxLooksAndCancelsNothing)
{
    StartOn();
    Open();
    auto &box = On<QLineEdit>("edSource");
    box.setText(folder.Path(u"texts"_s));
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_TRUE(Shows("tsFound")) << Text("lbDone");
}

TEST_F(Imports, TextsGoBesideThoseThatAreThere)
{
    StartOn();
    const QStringList before = PassageNames();
    Open().Look(folder.Path(u"texts"_s));
    ASSERT_TRUE(Shows("tsFound")) << Text("lbSourceFault");
    On<QRadioButton>("rbBeside").setChecked(true);
    Press("btnImport");
    ASSERT_TRUE(Shows("tsDone")) << Text("lbSourceFault");
    EXPECT_THAT(Text("lbDone"), testing::HasSubstr("1 bài được thêm"));
    EXPECT_TRUE(PassageNames().contains(u"Kinh mới"_s));
    EXPECT_EQ(PassageNames().size(), before.size() + 1);
    Press("btnTakeBack");
    EXPECT_TRUE(WaitFor([&] { return Text("lbDone").find("Đã lấy lại bản cũ.") == 0; }, 30000)) << Text("lbDone");
    EXPECT_EQ(PassageNames(), before);
}

TEST_F(Imports, WhatIsLeftOutOfAHostileFolderIsToldInTheInterfacesLanguage)
{
    AddEnglish();
    for (const auto &[language, told] : {std::pair(0, "dẫn ra ngoài thư mục"), {1, "leads out of the folder"}}) {
        StartOn(1101, 1, language);
        EXPECT_TRUE(
            WriteBytes(folder.Path(u"texts/canon.csv"_s),
                       "kind,key,group,number,pali,vietnamese,page_pali,page_vietnamese\ngroup,1,,,Vagga,Phẩm,,\n"
                       "text,5001,1,1,Sutta,Kinh,a.html,../../outside.html\n"));
        Open().Look(folder.Path(u"texts"_s));
        ASSERT_TRUE(Shows("tsFound")) << Text("lbSourceFault");
        ASSERT_EQ(On<QListWidget>("lstLeftOut").count(), 1);
        EXPECT_THAT(On<QListWidget>("lstLeftOut").item(0)->text().toStdString(), testing::HasSubstr(told));
        End();
    }
}

TEST_F(Imports, MarksGoWithTheirTextAndComeBackWithTheOldFile)
{
    const QString marks = folder.Path(u"TARUNECLIENT.FDB"_s);
    EXPECT_TRUE(QFile::copy(ProductFolder() + u"TARUNECLIENT.FDB"_s, marks));
    Tool({u"import"_s, u"canon"_s, folder.Path(u"texts"_s), u"--into"_s, folder.Path(u"KELORA.FDB"_s)});
    EXPECT_TRUE(WriteBytes(folder.Path(u"marks.md"_s), "# Kinh mới <!-- 6-5001 -->\n\n## mine\n\n> words\n"));
    Tool({u"import"_s, u"marks"_s, folder.Path(u"marks.md"_s), u"--into"_s, marks, u"--canon"_s,
          folder.Path(u"KELORA.FDB"_s)});
    const auto marked = [&] {
        return Tool({u"export"_s, u"marks"_s, u"--file"_s, marks, u"--format"_s, u"csv"_s}).toStdString();
    };
    ASSERT_THAT(marked(), testing::HasSubstr("5001"));
    WriteTable("20001000");
    StartOn();
    Open().Look(folder.Path(u"texts"_s));
    ASSERT_TRUE(Shows("tsFound")) << Text("lbSourceFault");
    Press("btnImport");
    ASSERT_TRUE(Shows("tsDone")) << Text("lbSourceFault");
    EXPECT_THAT(marked(), testing::HasSubstr("20001000")) << Text("lbDone");
    Press("btnTakeBack");
    EXPECT_TRUE(WaitFor([&] { return Text("lbDone").find("Đã lấy lại bản cũ.") == 0; }, 30000)) << Text("lbDone");
    EXPECT_THAT(marked(), testing::HasSubstr("5001"));
}

TEST_F(Imports, AFailureBehindTheNewFileIsToldAsOne)
{
    // The tool puts the file in its place, and fails with the marks, or dies.
    for (const auto &[end, told] :
         {std::pair("echo '{\"error\": \"no marks\"}'; exit 2\n", "no marks"), {"kill -SEGV $$\n", "bất ngờ"}}) {
        const QString tool = folder.Path(u"lumivara-data"_s), kept = folder.Path(u"kept"_s);
        EXPECT_TRUE(QFile::copy(tool, kept));
        StartOn();
        Open().Look(folder.Path(u"texts"_s));
        ASSERT_TRUE(Shows("tsFound")) << Text("lbSourceFault");
        FakeTool("cd '" + QFile::encodeName(folder.Path(u"."_s)) +
                 "'; cp KELORA.FDB other; mv KELORA.FDB KELORA.FDB.before; mv other KELORA.FDB\n" + end);
        Press("btnImport");
        ASSERT_TRUE(Shows("tsDone")) << Text("lbSourceFault");
        EXPECT_THAT(Text("lbDone"), testing::HasSubstr(told));
        EXPECT_TRUE(On<QPushButton>("btnTakeBack").isVisible());
        End();
        EXPECT_TRUE(QFile::remove(tool) && QFile::rename(kept, tool));
    }
}

TEST_F(Imports, WordsGoBesideThoseThatAreThereOrInTheirPlace)
{
    StartOn();
    EXPECT_FALSE(dictionary->vIsOKDictionary);
    const auto import = [&](const QString &source, const char *way) {
        Open().Look(folder.Path(source));
        ASSERT_TRUE(Shows("tsFound")) << Text("lbSourceFault");
        On<QComboBox>("cbTarget").setCurrentIndex(7);
        On<QRadioButton>(way).setChecked(true);
        Press("btnImport");
        ASSERT_TRUE(Shows("tsDone")) << Text("lbSourceFault");
        EXPECT_TRUE(dictionary->vIsOKDictionary);
        Press("btnBack");
    };
    import(u"words.tsv"_s, "rbBeside");
    EXPECT_EQ(On<QListWidget>("lstLeftOut").count(), 1) << "a line without a word";
    EXPECT_TRUE(WriteBytes(folder.Path(u"more.tsv"_s), "sangha\tcommunity\n"));
    import(u"more.tsv"_s, "rbBeside");
    EXPECT_THAT(Text("lbDone"), testing::HasSubstr("1 từ được nhập"));
    import(u"more.tsv"_s, "rbInPlace");
    EXPECT_THAT(Text("lbDone"), testing::HasSubstr("1 từ được nhập"));
}

TEST_F(Imports, WhatCannotBeTakenIsToldAndChangesNothing)
{
    StartOn();
    EXPECT_TRUE(WriteBytes(folder.Path(u"bad.FDB"_s), QByteArray(70000, 'x')));
    EXPECT_TRUE(WriteBytes(folder.Path(u"bad.ifo"_s), "no such thing"));
    const QStringList before = PassageNames();
    for (const QString &source : {u"bad.FDB"_s, u"bad.ifo"_s, u"missing"_s, u"Lumivara.pdf"_s}) {
        Open().Look(folder.Path(source));
        EXPECT_TRUE(WaitFor([&] { return !On<QLabel>("lbSourceFault").text().isEmpty(); }, 30000))
            << source.toStdString();
        EXPECT_TRUE(On<QWidget>("tsSource").isVisible()) << source.toStdString();
        EXPECT_TRUE(On<QPushButton>("btnLook").isVisible()) << source.toStdString();
    }
    EXPECT_EQ(PassageNames(), before);
}

TEST_F(Imports, CancelAndACrashLeaveEverythingAsItWas)
{
    StartOn();
    FakeTool("echo '{\"done\":1,\"total\":2}' >&2\nexec sleep 1000\n");
    Open().Look(folder.Path(u"texts"_s));
    EXPECT_TRUE(WaitFor([&] { return On<QProgressBar>("pbImport").value() == 500; }, 30000));
    Press("btnCancel");
    EXPECT_TRUE(Shows("tsSource"));
    EXPECT_THAT(Text("lbSourceFault"), testing::HasSubstr("Đã hủy"));
    FakeTool("kill -SEGV $$\n");
    Open().Look(folder.Path(u"texts"_s));
    EXPECT_TRUE(Shows("tsSource"));
    EXPECT_TRUE(WaitFor([&] { return Text("lbSourceFault").find("bất ngờ") != std::string::npos; }, 30000));
    EXPECT_TRUE(QFile::remove(folder.Path(u"lumivara-data"_s)));
    Open().Look(folder.Path(u"texts"_s));
    EXPECT_TRUE(WaitFor([&] { return Text("lbSourceFault").find("bất ngờ") != std::string::npos; }, 30000));
}

TEST_F(Imports, AFileDroppedOnTheWindowIsLookedAt)
{
    StartOn();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(folder.Path(u"words.tsv"_s))});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &drop);
    ASSERT_TRUE(WaitFor([] { return FindForm(u"frmImport"_s) != nullptr; }));
    EXPECT_TRUE(Shows("tsFound"));
}

TEST_F(Imports, AFileReplacedFromElsewhereIsOfferedAtTheFoot)
{
    StartOn();
    const QString other = folder.Path(u"other.FDB"_s);
    Tool({u"import"_s, u"canon"_s, folder.Path(u"texts"_s), u"--into"_s, other});
    std::filesystem::rename(other.toStdString(), folder.Path(u"KELORA.FDB"_s).toStdString());
    auto &action = Find<QToolButton>("btnFootAction");
    ASSERT_TRUE(WaitFor([&] { return action.isVisible(); }));
    EXPECT_NE(PassageNames(), QStringList{u"Kinh mới"_s}) << "goes on with the old file";
    action.click();
    EXPECT_EQ(PassageNames(), QStringList{u"Kinh mới"_s});
    EXPECT_FALSE(action.isVisible());
}
