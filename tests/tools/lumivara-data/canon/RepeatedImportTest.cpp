#include "base/PlainText.h"
#include "lumivara-data/canon/Renumbering.h"
#include "tools/ToolSupport.h"

using namespace Qt::StringLiterals;
using namespace std::string_literals;
using testing::HasSubstr;
using testing::Not;

namespace {

/// A collection that is imported again and again into K.FDB, and marks on it.
class RepeatedImport : public ToolTest
{
protected:
    /// A text of the group "g": the heads of its file, then a paragraph.
    void PutText(const QString &id, const QByteArrayList &heads, const QString &group = u"g"_s) const
    {
        QByteArray json = "{";
        for (qsizetype i = 0; i < heads.size(); ++i)
            json += "\"" + id.toUtf8() + ":0." + QByteArray::number(i + 1) + "\":\"" + heads[i] + "\",";
        Put(u"source/root/pli/%1/%2.json"_s.arg(group, id), json + "\"" + id.toUtf8() + ":1.1\":\"Evaṃ.\"}");
    }
    void Remove(const QString &id) const { EXPECT_TRUE(QFile::remove(Path(u"source/root/pli/g/%1.json"_s.arg(id)))); }
    /// "name=key" in reading order, parted by "|".
    std::string Keys() const
    {
        return Ask(u"K.FDB"_s, "select NAME_VIC_PAL || '=' || ID_VIC from KELORA_CONTENT order by NUMBER_VIC");
    }
    std::string KeyOf(const std::string &name) const
    {
        return Ask(u"K.FDB"_s, "select ID_VIC from KELORA_CONTENT where NAME_VIC_PAL = '" + name + "'");
    }
    /// Makes the file of marks, with a mark on each text of collection 6.
    void Mark(const std::vector<std::string> &keys) const
    {
        if (!Names().contains(u"M.FDB"_s)) {
            Run(0, "build marks --out .");
            EXPECT_TRUE(QFile::rename(Path(u"TARUNECLIENT.FDB"_s), Path(u"M.FDB"_s)));
        }
        OpenedDatabase marks(Path(u"M.FDB"_s));
        for (size_t i = 0; i < keys.size(); ++i) {
            marks.Execute(
                u"insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (%1, 'm%1', 6, %2)"_s.arg(
                    QString::number(i + 1), QString::fromStdString(keys[i])));
        }
    }
    /// "mark=name of its text" as the program joins them.
    std::string Marks() const
    {
        return Ask(u"M.FDB"_s,
                   "select F.NAME_FOC || '=' || S.NAME_SUT_PAL from SUTTA_TEXT_FOCUS F join SUTTA_LIST S on "
                   "S.NIK_SUT = F.NIK_SUT and S.NIC_SUT = F.NIC_SUT order by F.ID_FOC");
    }
    /// Every mark is on a text of the canon.
    void ExpectMarksOnTheirTexts(const std::string &marks) const
    {
        EXPECT_EQ(Marks(), marks);
        for (const std::string &pair : {marks.substr(0, marks.find('|')), marks.substr(marks.rfind('|') + 1)}) {
            const size_t equals = pair.find('=');
            EXPECT_EQ(Ask(u"M.FDB"_s,
                          "select NIC_SUT from SUTTA_TEXT_FOCUS where NAME_FOC = '" + pair.substr(0, equals) + "'"),
                      KeyOf(pair.substr(equals + 1)));
        }
    }

    static constexpr auto Import = "import canon source --into K.FDB";
    static constexpr auto ImportAll = "import canon source --into K.FDB --client M.FDB";
};

TEST_F(RepeatedImport, KeysAscendInReadingOrderAndStayWithTheirTexts)
{
    for (int i = 6; i >= 1; --i)
        PutText(u"k%1"_s.arg(i * 2), {"T" + QByteArray::number(i * 2)});
    Run(0, Import);
    EXPECT_EQ(Keys(), "T2=10001000|T4=10002000|T6=10003000|T8=10004000|T10=10005000|T12=10006000");
    // An insertion at each end and in the middle, a removal, a renamed file, a changed title.
    PutText(u"k1"_s, {"T1"});
    PutText(u"k7"_s, {"T7"});
    PutText(u"k13"_s, {"T13"});
    Remove(u"k4"_s);
    Remove(u"k8"_s);
    PutText(u"k9"_s, {"T8"});
    PutText(u"k10"_s, {"Ten"});
    EXPECT_THAT(Run(0, Import), HasSubstr("T8 keeps the key 10004000: its source is another one"));
    EXPECT_EQ(Keys(), "T1=10000500|T2=10001000|T6=10003000|T7=10003666|T8=10004000|Ten=10005000|T12=10006000|"
                      "T13=10007000");
    // The removed text comes back, and nothing has taken its key meanwhile.
    PutText(u"k3"_s, {"T3"});
    PutText(u"k4"_s, {"T4"});
    Run(0, Import);
    EXPECT_EQ(Keys(), "T1=10000500|T2=10001000|T3=10001500|T4=10002000|T6=10003000|T7=10003666|T8=10004000|"
                      "Ten=10005000|T12=10006000|T13=10007000");
    Run(0, "check K.FDB");
    // The ids go along with an export, beside the key, and so do the keys with a copy.
    Run(0, "export canon --file K.FDB --out out");
    EXPECT_THAT(Bytes(u"out/canon.csv"_s).toStdString(), HasSubstr("text,10003666,k7,1,6,T7,T7,"));
    for (const char *const source : {"out", "K.FDB"}) {
        Run(0, "import canon --into COPY.FDB "s + source);
        EXPECT_EQ(Ask(u"COPY.FDB"_s, "select ID_SOURCE from KELORA_SOURCE where ID_VIC = 10003666"), "k7") << source;
    }
}

TEST_F(RepeatedImport, ATableIsReadByItsNumbersOrTheNamesOfItsFiles)
{
    QByteArray table = "kind,key,group,number,pali,page_pali\ngroup,7,,,G,\n";
    for (const char *number : {"4", "10", "2", "1"}) {
        table += "text,,7,,T"s + number + ',' + number + ".txt\n";
        Put(u"source/%1.txt"_s.arg(QLatin1StringView(number)), "x");
    }
    Put(u"source/canon.csv"_s, table);
    Run(0, Import);
    EXPECT_EQ(Keys(), "T1=10001000|T2=10002000|T4=10003000|T10=10004000");
    Put(u"source/canon.csv"_s, "kind,key,group,number,pali,page_pali\ngroup,7,,,G,\ntext,,7,2,A,1.txt\n"
                               "text,,7,1,B,2.txt\n");
    EXPECT_THAT(Run(0, Import), HasSubstr("1 texts have keys from another order and stand out of place; --renumber"))
        << "keys stay where an order changes";
    EXPECT_THAT(Run(2, "import canon source --into K.FDB --renumber"), HasSubstr("--renumber wants --client FILE"));
    Mark({"10001000", "10002000"});
    Run(0, ImportAll + " --renumber"s);
    EXPECT_EQ(Keys(), "B=10001001|A=10002001");
    ExpectMarksOnTheirTexts("m1=A|m2=B");
}

TEST_F(RepeatedImport, AFullGapEndsTheImportAndNewKeysTakeTheMarksAlong)
{
    PutText(u"k1"_s, {"T1"});
    PutText(u"k3"_s, {"T3"});
    Put(u"full/canon.csv"_s, "kind,key,id,group,number,pali,vietnamese,english,page_pali,finished\n"
                             "group,1,,-1,,g,g,g,,1\ntext,10001000,k1,1,1,T1,T1,,p.html,1\n"
                             "text,10001001,k3,1,2,T3,T3,,p.html,1\n");
    Put(u"full/p.html"_s, "<meta charset=utf-8>x");
    Run(0, "import canon full --into K.FDB");
    Mark({"10001000", "10001001", "1101"});
    PutText(u"k2"_s, {"T2"});
    const QByteArray before = Bytes(u"K.FDB"_s);
    EXPECT_THAT(Run(2, ImportAll),
                HasSubstr("no key is free between 10001000 and 10001001 for 1 new texts; --renumber"));
    EXPECT_EQ(Bytes(u"K.FDB"_s), before);
    const std::string told = Run(0, ImportAll + " --renumber"s);
    ExpectParts(told, {"text 10001000: its 1 marks are on text 10001002 now (T1)", "K.FDB.before and M.FDB.before"});
    EXPECT_EQ(Keys(), "T1=10001002|T2=10002002|T3=10003002");
    ExpectMarksOnTheirTexts("m1=T1|m2=T3");
    EXPECT_EQ(Bytes(u"K.FDB.before"_s), before);
    EXPECT_EQ(Ask(u"M.FDB.before"_s, "select NIC_SUT from SUTTA_TEXT_FOCUS order by ID_FOC"), "10001000|10001001|1101");
    EXPECT_EQ(Names().filter(u"K.FDB."_s), (QStringList{u"K.FDB.before"_s, u"K.FDB.renumbered"_s}));
}

TEST_F(RepeatedImport, AKilledRenumberingIsEndedByTheNextImport)
{
    PutText(u"k1"_s, {"T1"});
    PutText(u"k2"_s, {"T2"});
    Run(0, Import);
    Mark({"10002000"});
    // What a run leaves that was killed behind the journal.
    struct Killed
    {};
    Renumbering renumbering(Path(u"K.FDB"_s));
    Put(u"new/canon.csv"_s, "kind,key,id,group,number,pali,vietnamese,english,page_pali,finished\n"
                            "group,1,,-1,,g,g,g,,1\ntext,10001001,k1,1,1,T1,T1,,p.html,1\n"
                            "text,10002001,k2,1,2,T2,T2,,p.html,1\n");
    Put(u"new/p.html"_s, "<meta charset=utf-8>x");
    Run(0, "import canon new --into NEW.FDB");
    EXPECT_TRUE(QFile::rename(Path(u"NEW.FDB"_s), renumbering.NextPath()));
    EXPECT_THROW(renumbering.Run({Path(u"M.FDB"_s), false, {{10'001'000, 10'001'001}, {10'002'000, 10'002'001}}},
                                 [](const Renumbering::Journal &) { throw Killed(); }),
                 Killed);
    EXPECT_THAT(Run(2, Import), HasSubstr("has to come to its end first; call this with --client"));
    EXPECT_THAT(Run(0, ImportAll + " --renumber"s), HasSubstr("an interrupted --renumber was brought to its end"));
    EXPECT_EQ(Keys(), "T1=10001001|T2=10002001") << "and no other one was begun";
    ExpectMarksOnTheirTexts("m1=T2");
    // One without a journal had changed nothing.
    Put(u"K.FDB.next"_s, "x");
    EXPECT_THAT(Run(0, ImportAll), HasSubstr("was taken back"));
    ExpectMarksOnTheirTexts("m1=T2");
}

TEST_F(RepeatedImport, MarksOnAnEarlierCanonAreMatchedAndNamesOfTheListRenewed)
{
    PutText(u"k1"_s, {"T1"});
    PutText(u"k2"_s, {"T2"});
    Mark({"1101", "80526629", "1201"});
    OpenedDatabase(Path(u"M.FDB"_s))
        .RunScript(u"insert into SUTTA_LIST values (6, 1101, 'T2', 'T2', null, null);"
                   "insert into SUTTA_LIST values (6, 80526629, 'Old', 'Old', null, null);"
                   "insert into SUTTA_LIST values (6, 1201, 'Other', 'Other', null, null);"_s);
    PutText(u"b"_s, {"B"}); // whose key was 80526629 once
    ExpectParts(Run(0, ImportAll), {"text 1101: its 1 marks are on text 10003000 now (T2)",
                                    "text 80526629: its 1 marks are on text 10001000 now (B)", "2 marks moved"});
    EXPECT_EQ(Marks(), "m1=T2|m2=B|m3=Other");
    PutText(u"k2"_s, {"Hai"});
    EXPECT_THAT(Run(0, ImportAll + " --keep-names"s), Not(HasSubstr("Hai")));
    EXPECT_EQ(Marks(), "m1=T2|m2=B|m3=Other");
    ExpectParts(Run(0, ImportAll), {"text 10003000: named T2 · T2, in the canon Hai · Hai", "1 names renewed"});
    EXPECT_EQ(Marks(), "m1=Hai|m2=B|m3=Other");
}

TEST_F(RepeatedImport, TextsAndGroupsAreNamedByTheirHeadsAndByTheUser)
{
    PutText(u"mn9"_s, {"Majjhima Nikāya 9", "Diṭṭhi"}, u"s/mn"_s);
    PutText(u"mn10"_s, {"Majjhima Nikāya 10", "Sati"}, u"s/mn"_s);
    PutText(u"dn22"_s, {"Dīgha Nikāya 22", "Sati"}, u"s/dn"_s);
    PutText(u"x"_s, {}, u"v"_s);
    Run(0, Import);
    EXPECT_EQ(Keys(), "22. Sati=10001000|Diṭṭhi=10002000|10. Sati=10003000|x=10004000");
    EXPECT_EQ(Ask(u"K.FDB"_s, "select NAME_VIT_PAL from KELORA_TREE order by ID_VIT"),
              "s|Dīgha Nikāya|Majjhima Nikāya|v");
    const std::string page = Ask(u"K.FDB"_s, "select CONTENT_VIC_PAL from KELORA_CONTENT where ID_VIC = 10002000");
    EXPECT_THAT(page, HasSubstr("<h2>Majjhima Nikāya 9</h2>\r\n<h1>Diṭṭhi</h1>"));
    EXPECT_EQ(StripHtml(QString::fromStdString(page)), u"Diṭṭhi\u00A0Majjhima Nikāya 9DiṭṭhiEvaṃ."_s)
        << "the title of the head stands by itself";
    Put(u"names.csv"_s, "id,pali,vietnamese\nmn10,Satipaṭṭhāna,Niệm xứ\ns/dn,Dīgha,\nv,,Luật\ngone,x,x\n");
    ExpectParts(Run(0, "import canon source --into K.FDB --names names.csv"),
                {"names.csv:5: nothing here is called \"gone\"", "4 texts read"});
    EXPECT_EQ(Keys(), "Sati=10001000|Diṭṭhi=10002000|Satipaṭṭhāna=10003000|x=10004000");
    EXPECT_EQ(Ask(u"K.FDB"_s, "select NAME_VIT_PAL, NAME_VIT_VIE from KELORA_TREE order by ID_VIT"),
              "s,s|Dīgha,Dīgha Nikāya|Majjhima Nikāya,Majjhima Nikāya|v,Luật");
    EXPECT_THAT(Run(2, "import canon source --into K.FDB --names none.csv"), HasSubstr("none.csv: there is no such"));
}

TEST_F(RepeatedImport, AnOldFileThatCannotBeReadCostsOnlyTheKeys)
{
    PutText(u"k1"_s, {"T1"});
    Put(u"K.FDB"_s, QByteArray(100000, 'x'));
    EXPECT_THAT(Run(0, Import), HasSubstr("no text keeps its key, because the file before cannot be read"));
    EXPECT_EQ(Keys(), "T1=10001000");
    // A canon from anywhere is read by a sealed process, whatever it can do.
    QFile::remove(Path(u"K.FDB"_s));
    Run(0, "build canon --out . --data", {BesideTests(u"data"_s)});
    EXPECT_TRUE(QFile::rename(Path(u"KELORA.FDB"_s), Path(u"K.FDB"_s)));
    EXPECT_THAT(Run(0, Import), Not(HasSubstr("cannot be read")));
    EXPECT_EQ(Keys(), "T1=10001000") << "the sample's keys are not taken";
}

TEST_F(RepeatedImport, ACanonWithoutSomeNamesIsTakenAndTold)
{
    Put(u"source/canon.csv"_s, "kind,key,group,number,pali,vietnamese,english,page_pali,finished\n"
                               "group,1,-1,,g,g,,,1\ntext,1500,1,1,t,,,p.html,1\n");
    Put(u"source/p.html"_s, "<meta charset=utf-8>x");
    Run(1, Import);
    EXPECT_EQ(Run(1, "import canon K.FDB --into COPY.FDB"),
              "text 1500 of group 1: NAME_VIC_VIE is null\n1 groups, 1 texts\n");
    EXPECT_EQ(Ask(u"COPY.FDB"_s, "select NAME_VIC_PAL, NAME_VIC_VIE from KELORA_CONTENT"), "t,null");
}

} // namespace
