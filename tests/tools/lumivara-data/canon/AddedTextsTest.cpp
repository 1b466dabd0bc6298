#include "tools/ToolSupport.h"

using namespace Qt::StringLiterals;
using namespace std::string_literals;
using testing::HasSubstr;
using testing::Not;

namespace {

/// K.FDB with the texts k1, k3, k9 of a group g, and a folder "more" with others.
class AddedTexts : public ToolTest
{
protected:
    AddedTexts()
    {
        for (const char *number : {"1", "3", "9"})
            PutText("source", "g/k"s + number, "T"s + number);
        Run(0, "import canon source --into K.FDB");
    }
    void PutText(const std::string &folder, const std::string &id, const std::string &title) const
    {
        Put(QString::fromStdString(folder + "/root/pli/" + id + ".json"),
            QByteArray::fromStdString("{\"x:0.1\":\"" + title + "\",\"x:1.1\":\"Evaṃ " + title + ".\"}"));
    }
    void PutMore() const
    {
        for (const char *number : {"1", "2", "4"})
            PutText("more", "g/k"s + number, "T"s + number);
        PutText("more", "g/k3", "Three");
        PutText("more", "h/m1", "M1");
    }
    /// "name=key of group" in the order of the keys.
    std::string Keys() const
    {
        return Ask(u"K.FDB"_s,
                   "select NAME_VIC_PAL || '=' || ID_VIC || ' ' || ID_VIT from KELORA_CONTENT order by ID_VIC");
    }

    static constexpr auto Add = "import canon more --into K.FDB --add";
    static constexpr auto Before = "T1=10001000 1|T3=10002000 1|T9=10003000 1";
};

TEST_F(AddedTexts, ComeBetweenOrBehindThoseThatStay)
{
    PutMore();
    ExpectParts(Run(0, Add), {"5 texts read", "3 texts added", "2 texts renewed", "1 texts kept", "2 groups, 6 texts"});
    EXPECT_EQ(Keys(), "T1=10001000 1|T2=10001500 1|Three=10002000 1|T9=10003000 1|T4=10004000 1|M1=10005000 2");
    EXPECT_THAT(Ask(u"K.FDB"_s, "select CONTENT_VIC_PAL from KELORA_CONTENT where ID_VIC = 10002000"),
                HasSubstr("Evaṃ Three."));
    Run(0, "check K.FDB");
    const std::string keys = Keys();
    ExpectParts(Run(0, Add), {"0 texts added", "5 texts renewed", "1 texts kept", "2 groups, 6 texts"});
    EXPECT_EQ(Keys(), keys) << "and once more changes nothing";
    // A text that has gone meanwhile comes back under its key.
    Run(0, "import canon source --into K.FDB");
    EXPECT_THAT(Keys(), Not(HasSubstr("M1")));
    Run(0, Add);
    EXPECT_THAT(Keys(), HasSubstr("M1=10005000 2"));
}

TEST_F(AddedTexts, MarksStayAndTheListGetsWhatIsNew)
{
    PutMore();
    Run(0, "build marks --out .");
    OpenedDatabase(Path(u"TARUNECLIENT.FDB"_s))
        .RunScript(u"insert into SUTTA_LIST values (6, 1500, 'M1', 'M1', null, null);"
                   "insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (1, 'a', 6, 1500);"
                   "insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (2, 'b', 6, 10004000);"_s);
    Run(0, Add + " --client TARUNECLIENT.FDB"s);
    EXPECT_EQ(Ask(u"TARUNECLIENT.FDB"_s, "select NIC_SUT from SUTTA_TEXT_FOCUS order by ID_FOC"), "1500|10004000");
    EXPECT_THAT(Keys(), Not(HasSubstr("=10004000"))) << "the text of a mark is no other one";
    EXPECT_EQ(Ask(u"TARUNECLIENT.FDB"_s, "select count(*) from SUTTA_LIST where NIK_SUT = 6"), "7");
}

TEST_F(AddedTexts, AnExportAndACanonAreAddedWithTheirKeys)
{
    Run(0, "build canon --out . --data", {BesideTests(u"data"_s)});
    EXPECT_THAT(Run(0, "import canon KELORA.FDB --into K.FDB --add"), HasSubstr("3 texts kept"));
    Run(0, "check K.FDB");
    EXPECT_EQ(
        Ask(u"K.FDB"_s, "select NAME_VIC_PAL from KELORA_CONTENT where ID_VIC in (10001000, 10003000) order by 1"),
        "T1|T9");
    const char *const pages =
        "select ID_VIC, CONTENT_VIC_PAL from KELORA_CONTENT where ID_VIC in (1101, 1201) order by 1";
    EXPECT_EQ(Ask(u"K.FDB"_s, pages), Ask(u"KELORA.FDB"_s, pages));
    const std::string keys = Keys();
    Run(0, "export canon --file KELORA.FDB --out out");
    EXPECT_THAT(Run(0, "import canon out --into K.FDB --add"), HasSubstr(" 0 texts added"));
    EXPECT_EQ(Keys(), keys) << "known by key and names, where there is no id";
}

TEST_F(AddedTexts, PagesWithATableComeUnderNewKeysWhereOthersHaveTheirs)
{
    Put(u"more/a.txt"_s, "evaṃ");
    const QByteArray head = "kind,key,group,pali,page_pali\ngroup,1,,Other,\n";
    Put(u"more/canon.csv"_s, head + "text,1500,1,A,a.txt\n");
    Run(0, Add);
    EXPECT_EQ(Keys(), "A=1500 2|"s + Before);
    Put(u"more/canon.csv"_s, head + "text,1500,1,B,b.txt\n");
    Put(u"more/b.txt"_s, "evaṃ");
    EXPECT_THAT(Run(0, Add), HasSubstr("its key 1500 is that of another row here"));
    EXPECT_EQ(Keys(), "A=1500 2|"s + Before + "|B=10004000 2") << "in the group of the same name";
}

TEST_F(AddedTexts, NothingChangesWhereNothingIsToChange)
{
    PutMore();
    const QByteArray before = Bytes(u"K.FDB"_s);
    Run(0, Add + " --dry-run"s);
    EXPECT_THAT(Run(2, Add + " --renumber --client K.FDB"s), HasSubstr("two different things"));
    Put(u"bad.FDB"_s, QByteArray(70000, 'x'));
    EXPECT_THAT(Run(2, "import canon bad.FDB --into K.FDB --add --words vi"), HasSubstr("không phải là cơ sở dữ liệu"));
    QByteArray table = "kind,key,group,pali,page_pali\ngroup,1,,Many,\n";
    for (int i = 0; i < 3000; ++i)
        table += "text,,1,t" + QByteArray::number(i) + ",a.txt\n";
    Put(u"many/canon.csv"_s, table);
    Put(u"many/a.txt"_s, "evaṃ");
    for (const bool isKilled : {false, true})
        Stopped(isKilled, "texts:", "import canon many --into K.FDB --add");
    EXPECT_EQ(Bytes(u"K.FDB"_s), before);
    Run(0, Add + " --keep-before"s);
    EXPECT_EQ(Bytes(u"K.FDB.before"_s), before);
    EXPECT_EQ(Unfinished(), QStringList()) << "what a kill has left goes with the next run";
    // Texts that can't be kept are no reason to lose them.
    Put(u"BAD.FDB"_s, QByteArray(70000, 'x'));
    EXPECT_THAT(Run(2, "import canon more --into BAD.FDB --add"), HasSubstr("it is no database"));
    EXPECT_EQ(Bytes(u"BAD.FDB"_s), QByteArray(70000, 'x'));
    Run(0, "import canon more --into NEW.FDB --add");
    EXPECT_EQ(Ask(u"NEW.FDB"_s, "select count(*) from KELORA_CONTENT"), "5");
}

} // namespace
