#include "tools/ToolSupport.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

using CheckVerb = ToolTest;

TEST_F(CheckVerb, TheSamplesAreClean)
{
    EXPECT_EQ(Run(0, "check", {ProductFolder() + u"KELORA.FDB"_s}), "28 groups, 205 texts: nothing wrong\n");
    // No page shows a place that nothing has filled, and each says that it is a sample.
    EXPECT_EQ(OpenedDatabase(ProductFolder() + u"KELORA.FDB"_s)
                  .Text("select ID_VIC from KELORA_CONTENT where CONTENT_VIC_PAL containing '{' or CONTENT_VIC_VIE "
                        "containing '{' or CONTENT_VIC_PAL_VIE containing '{' or CONTENT_VIC_ENG containing '{' or "
                        "CONTENT_VIC_VIE not containing 'Văn bản mẫu' or CONTENT_VIC_ENG not containing 'Sample text'"),
              "");
    EXPECT_THAT(Run(0, "check", {ProductFolder() + u"PALIDICT.FDB"_s}), testing::EndsWith(" words: nothing wrong\n"));
}

TEST_F(CheckVerb, AnOutputThatDoesNotArriveIsAFailure)
{
    QProcess process;
    process.setStandardOutputFile(u"/dev/full"_s);
    Start(process, "check", {ProductFolder() + u"TARUNECLIENT.FDB"_s});
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_EQ(process.readAllStandardError(), "lumivara-data: the standard output cannot be written\n");
}

/// A dictionary with other tables, and a fault of each kind.
const char16_t ForeignDictionary[] = uR"(
create table MUC_TU (K integer, N integer, W varchar(80) character set UNICODE_FSS, C blob sub_type 0);
COMMIT WORK;
insert into MUC_TU values (5, 1, 'āpa', 'x');
insert into MUC_TU values (5, 2, 'anta', '- <i>một');
insert into MUC_TU values (5, 3, 'anta', '');
insert into MUC_TU values (5, 4, 'iPod', null);
insert into MUC_TU values (5, 5, 'ugga', x'2D20C3');
insert into MUC_TU values (5, 6, rpad('o', 64, 'o'), 'x');
insert into MUC_TU values (6, 1, 'không', 'x');
COMMIT WORK;
SET TERM ^ ;
create procedure SP_GET_LIST_WORDS (A integer) returns (WORD_NAME varchar(80) character set UNICODE_FSS,
DICT_TYPE integer) as begin
    for select W, K from MUC_TU where K = :A order by N into :WORD_NAME, :DICT_TYPE do suspend;
    if (A = 8) then WORD_NAME = 1 / (A - 8);
end^
create procedure SP_GET_WORD_CONTENT (K integer, W varchar(80) character set UNICODE_FSS, M smallint)
returns (WORD_CONTENT blob sub_type 0, WORD_CONTENT_2 blob sub_type 0) as begin
    for select C from MUC_TU where K = :K and W = :W order by N into :WORD_CONTENT do suspend;
end^
create procedure SP_CHECK_WORD (K integer, W varchar(80) character set UNICODE_FSS) returns (RESULT smallint) as begin
    if (K = 5) then RESULT = 1;
    suspend;
end^
SET TERM ; ^
)";

TEST_F(CheckVerb, ADictionaryIsProvedThroughItsProceduresAlone)
{
    Run(0, "build marks --out .");
    OpenedDatabase file(Path(u"TARUNECLIENT.FDB"_s));
    file.RunScript(QString::fromUtf16(ForeignDictionary));
    const std::string told = Run(1, "check TARUNECLIENT.FDB"), kind = "dictionary 5, ";
    ExpectParts(told, {kind + "\"anta\": stands after \"āpa\"\n" + kind + "\"anta\": <i> is not closed\n",
                       kind + "\"anta\": comes more than once\n" + kind + "\"anta\": <i> is not closed\n",
                       "\"iPod\": is neither in lower case nor with one capital, so no search finds it\n",
                       "\"iPod\": the entry is empty\n", "\"ugga\": the entry is not UTF-8 at byte 2\n",
                       std::string(64, 'o') + "\": has 64 characters, more than 63\n",
                       "dictionary 6, \"không\": SP_CHECK_WORD does not know \"KHÔNG\"\n",
                       "dictionary 8, SP_GET_LIST_WORDS: ", "\n7 words: 10 findings\n"});
    file.Execute(u"drop procedure SP_CHECK_WORD"_s);
    EXPECT_THAT(Run(1, "check TARUNECLIENT.FDB"), testing::HasSubstr("dictionary 5, SP_CHECK_WORD: "));
}

TEST_F(CheckVerb, LeavesTheFileAndItsFolderAsTheyAre)
{
    const QString folder = u"thư mục \"b\""_s, copy = folder + u"/ca 'non'.fdb"_s;
    QDir().mkpath(Path(folder));
    ASSERT_TRUE(QFile::copy(ProductFolder() + u"KELORA.FDB"_s, Path(copy)));
    const QByteArray before = Bytes(copy);
    QFile::setPermissions(Path(copy), QFile::ReadOwner);
    QFile::setPermissions(Path(folder), QFile::ReadOwner | QFile::ExeOwner);
    Run(0, "check", {copy});
    QFile::setPermissions(Path(folder), QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
    EXPECT_EQ(Bytes(copy), before);
    EXPECT_EQ(Names(folder).size(), 1);
}

TEST_F(CheckVerb, WhatIsNoDatabaseEndsWithTwoAndAMessage)
{
    const QByteArray canon = BytesOf(ProductFolder() + u"KELORA.FDB"_s);
    QByteArray random;
    for (quint32 value = 1; random.size() < 200000; value = value * 1664525 + 1013904223)
        random += char(value >> 24);
    Put(u"empty"_s, {});
    Put(u"truncated"_s, canon.left(canon.size() / 1000));
    Put(u"headless"_s, canon.left(100));
    Put(u"folder/random"_s, random);
    for (const std::string file : {"empty", "truncated", "headless", "folder/random", "missing", "folder"})
        EXPECT_THAT(Run(2, "check " + file), testing::StartsWith("lumivara-data: "));
}

} // namespace
