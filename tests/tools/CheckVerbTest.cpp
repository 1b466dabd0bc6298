#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

class CheckVerb : public testing::Test
{
protected:
    QString Canon() const { return m_scratch.Path(u"KELORA.FDB"_s); }
    /// A canon of the small sources after a change of theirs.
    void Build(const std::function<void(const QString &data)> &change = [](const QString &) {}) const
    {
        const QString data = m_scratch.Path(u"data"_s);
        WriteSmallSources(data);
        change(data);
        const ToolRun run =
            RunDataTool({u"build"_s, u"--data"_s, data, u"--out"_s, m_scratch.Path(u""_s), u"--only"_s, u"canon"_s});
        ASSERT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    }

    ScratchFolder m_scratch;
};

TEST_F(CheckVerb, TheSampleCollectionIsClean)
{
    const ToolRun run = RunDataTool({u"check"_s, ProductFolder() + u"KELORA.FDB"_s});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.output + run.errors);
    EXPECT_EQ(run.output, u"28 groups, 205 texts: nothing wrong\n"_s);
}

TEST_F(CheckVerb, FindingsNameTheirRowsAndEndWithOne)
{
    Build([](const QString &data) {
        WriteFile(data + u"/canon/groups.csv"_s, "ID_VIT,P_ID_VIT,NAME_VIT_VIE,NAME_VIT_PAL,NAME_VIT_ENG\n"
                                                 "2,7,Nhánh,,\n"
                                                 "101,-1,Gốc,Mūlaṃ,Root\n");
        WriteFile(data + u"/canon/texts.csv"_s,
                  "NUMBER_VIC,ID_VIC,ID_VIT,NAME_VIC_PAL,NAME_VIC_VIE,NAME_VIC_ENG,WITHOUT\n"
                  "1,1101,2,Paṭhamaṃ,Thứ nhất,,\n"
                  "4,1201,2,Dutiyaṃ,Thứ nhì,,\n");
    });
    const ToolRun run = RunDataTool({u"check"_s, Canon()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output.toStdString(),
              "group 101: 1000 + ID_VIT is 1101, the number of a text: the group shows that text\n"
              "group 2: the parent group 7 does not exist\n"
              "text 1201 of group 2: NUMBER_VIC is 4, and 2 to 3 are missing before it\n"
              "group 2: NAME_VIT_PAL is null\n"
              "2 groups, 2 texts: 4 findings\n");
}

TEST_F(CheckVerb, LeavesTheFileAndItsFolderAsTheyAre)
{
    Build();
    const QString folder = m_scratch.Path(u"thư mục \"b\""_s);
    QDir().mkpath(folder);
    const QString copy = folder + u"/ca 'non'.fdb"_s;
    ASSERT_TRUE(QFile::copy(Canon(), copy));
    const QByteArray before = BytesOf(copy);
    QFile::setPermissions(copy, QFile::ReadOwner);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    const ToolRun run = RunDataTool({u"check"_s, u"ca 'non'.fdb"_s}, folder);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    EXPECT_EQ(BytesOf(copy), before);
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"ca 'non'.fdb"_s});
}

TEST_F(CheckVerb, WhatIsNoCanonEndsWithTwoAndAMessage)
{
    Build();
    const QByteArray canon = BytesOf(Canon());
    WriteFile(m_scratch.Path(u"empty"_s), {});
    WriteFile(m_scratch.Path(u"truncated"_s), canon.left(canon.size() / 3));
    WriteFile(m_scratch.Path(u"headless"_s), canon.left(100));
    QByteArray random;
    for (quint32 value = 1; random.size() < 200000; value = value * 1664525 + 1013904223)
        random += char(value >> 24);
    WriteFile(m_scratch.Path(u"random"_s), random);
    ASSERT_EQ(RunDataTool({u"build"_s, u"--data"_s, m_scratch.Path(u"data"_s), u"--out"_s, m_scratch.Path(u""_s),
                           u"--only"_s, u"marks"_s})
                  .exitCode,
              0);
    for (const QString &name :
         {u"empty"_s, u"truncated"_s, u"headless"_s, u"random"_s, u"TARUNECLIENT.FDB"_s, u"missing"_s, u"data"_s}) {
        const ToolRun run = RunDataTool({u"check"_s, m_scratch.Path(name)});
        EXPECT_EQ(run.exitCode, 2) << qPrintable(name);
        EXPECT_TRUE(run.output.isEmpty()) << qPrintable(run.output);
        EXPECT_TRUE(run.errors.startsWith(u"lumivara-data: "_s)) << qPrintable(run.errors);
    }
}

} // namespace
