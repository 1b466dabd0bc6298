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
        const ToolRun run = RunDataTool({u"build"_s, u"--data"_s, data, u"--out"_s, m_scratch.Path(u""_s), u"canon"_s});
        ASSERT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    }

    ScratchFolder m_scratch;
};

TEST_F(CheckVerb, TheSamplesAreClean)
{
    const ToolRun run = RunDataTool({u"check"_s, ProductFolder() + u"KELORA.FDB"_s});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.output + run.errors);
    EXPECT_EQ(run.output, u"28 groups, 205 texts: nothing wrong\n"_s);
    EXPECT_TRUE(
        RunDataTool({u"check"_s, ProductFolder() + u"PALIDICT.FDB"_s}).output.endsWith(u" words: nothing wrong\n"_s));
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

/// A dictionary with tables of its own, and a fault of each kind.
const char16_t ForeignDictionary[] = uR"(
create table MUC_TU (K integer, N integer, W varchar(80) character set UNICODE_FSS, C blob sub_type 0);
COMMIT WORK;
insert into MUC_TU values (5, 1, 'āpa', 'x');
insert into MUC_TU values (5, 2, 'anta', '- <i>một');
insert into MUC_TU values (5, 3, 'anta', '');
insert into MUC_TU values (5, 4, 'iPod', null);
insert into MUC_TU values (5, 5, 'ugga', x'2D20C3');
insert into MUC_TU values (5, 6, ')"
                                     "oooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooo"
                                     uR"(', 'x');
insert into MUC_TU values (6, 1, 'không', 'x');
COMMIT WORK;
SET TERM ^ ;
create procedure SP_GET_LIST_WORDS (A integer)
returns (WORD_NAME varchar(80) character set UNICODE_FSS, DICT_TYPE integer) as
begin
    for select W, K from MUC_TU where K = :A order by N into :WORD_NAME, :DICT_TYPE do suspend;
    if (A = 8) then WORD_NAME = 1 / (A - 8);
end^
create procedure SP_GET_WORD_CONTENT (K integer, W varchar(80) character set UNICODE_FSS, M smallint)
returns (WORD_CONTENT blob sub_type 0, WORD_CONTENT_2 blob sub_type 0) as
begin
    for select C from MUC_TU where K = :K and W = :W order by N into :WORD_CONTENT do suspend;
end^
create procedure SP_CHECK_WORD (K integer, W varchar(80) character set UNICODE_FSS) returns (RESULT smallint) as
begin
    if (K = 5) then RESULT = 1;
    suspend;
end^
SET TERM ; ^
)";

TEST_F(CheckVerb, ADictionaryIsProvedThroughItsProceduresAlone)
{
    const QStringList build{u"build"_s, u"--out"_s, m_scratch.Path(u""_s), u"marks"_s};
    ASSERT_EQ(RunDataTool(build).exitCode, 0);
    const QString file = m_scratch.Path(u"TARUNECLIENT.FDB"_s);
    OpenedDatabase(file).RunScript(QString::fromUtf16(ForeignDictionary));
    const ToolRun run = RunDataTool({u"check"_s, file});
    EXPECT_EQ(run.exitCode, 1) << qPrintable(run.errors);
    QStringList lines = run.output.split(u'\n');
    EXPECT_TRUE(lines.removeOne(u"7 words: 10 findings"_s));
    EXPECT_EQ(lines.filter(u"SP_GET_LIST_WORDS: "_s).size(), 1);
    EXPECT_TRUE(lines.value(lines.size() - 2).startsWith(u"dictionary 8, SP_GET_LIST_WORDS: "_s));
    lines.removeIf([](const QString &line) { return line.contains(u"SP_GET_LIST_WORDS: "_s); });
    EXPECT_EQ(lines.join(u'\n').toStdString(),
              "dictionary 5, \"anta\": stands after \"āpa\"\n"
              "dictionary 5, \"anta\": <i> is not closed\n"
              "dictionary 5, \"anta\": comes more than once\n"
              "dictionary 5, \"anta\": <i> is not closed\n"
              "dictionary 5, \"iPod\": is neither in lower case nor with one capital, so no search finds it\n"
              "dictionary 5, \"iPod\": the entry is empty\n"
              "dictionary 5, \"ugga\": the entry is not UTF-8 at byte 2\n"
              "dictionary 5, \"oooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooo\": has 64 characters, "
              "more than 63\n"
              "dictionary 6, \"không\": SP_CHECK_WORD does not know \"KHÔNG\"\n");

    OpenedDatabase(file).Execute(u"drop procedure SP_CHECK_WORD"_s);
    EXPECT_TRUE(RunDataTool({u"check"_s, file}).output.contains(u"dictionary 5, SP_CHECK_WORD: "_s));
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

TEST_F(CheckVerb, WhatIsNoDatabaseEndsWithTwoAndAMessage)
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
    for (const QString &name : {u"empty"_s, u"truncated"_s, u"headless"_s, u"random"_s, u"missing"_s, u"data"_s}) {
        const ToolRun run = RunDataTool({u"check"_s, m_scratch.Path(name)});
        EXPECT_EQ(run.exitCode, 2) << qPrintable(name);
        EXPECT_TRUE(run.output.isEmpty()) << qPrintable(run.output);
        EXPECT_TRUE(run.errors.startsWith(u"lumivara-data: "_s)) << qPrintable(run.errors);
    }
}

} // namespace
