#include "stores/ClientsDM.h"

#include "stores/KeloraSuttaList.h"
#include "stores/engine/Refusal.h"
#include "stores/engine/Scripter.h"
#include "support/FullDisk.h"
#include "support/ModuleSupport.h"
#include "support/StoreSupport.h"
#include "tools/ToolSupport.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QScopedValueRollback>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray Excerpt = "\xEF\xBB\xBF<HTML>\r\n<b>Ph\xE1\xBA\xA9m\0 I</b></HTML>\r\n"_ba;

/// A client file as delivered, with three texts in its list, and a module open on it.
class ClientsModule : public ModuleTest
{
protected:
    void SetUp() override
    {
        ModuleTest::SetUp();
        EXPECT_TRUE(QFile::copy(DeliveredFile(), File()));
        OpenedDatabase(File()).RunScript(u"insert into SUTTA_LIST values (6, 1101, 'Chương', 'Kaṇḍaṃ', null, null);"
                                         "insert into SUTTA_LIST values (1, 5, 'Kinh', 'Suttaṃ', 'Discourse', 1);"
                                         "insert into SUTTA_LIST values (7, 5, 'Lạ', 'Aññaṃ', null, null); commit;"_s);
        AppPath = Path(QString()) + u'/';
        doors.now = [this] { return time; };
        copy = Open();
    }
    static QString DeliveredFile()
    {
        static const ScratchFolder folder;
        static const ToolRun run = RunDataTool({u"build"_s, u"marks"_s, u"--out"_s, folder.Path(u""_s)});
        return folder.Path(u"TARUNECLIENT.FDB"_s);
    }
    QString File() const { return Path(u"TARUNECLIENT.FDB"_s); }
    /// One running copy of the program, as far as the marks know it.
    std::unique_ptr<TfrmClientsDM> Open()
    {
        auto module = std::make_unique<TfrmClientsDM>(doors);
        module->DataModuleCreate();
        EXPECT_TRUE(module->vIsOKClients);
        module->qryFocus.Open();
        return module;
    }
    static void Fill(TfrmClientsDM &module, const QString &title, int collection = 6, int number = 1101)
    {
        module.qryFocus.Insert();
        module.qryFocus.FieldByName(u"TEXT_FOC"_s).SetAsBytes(Excerpt);
        module.qryFocus.FieldByName(u"NIK_SUT"_s).SetAsInteger(collection);
        module.qryFocus.FieldByName(u"NIC_SUT"_s).SetAsInteger(number);
        Retitle(module, title);
    }
    static void Mark(TfrmClientsDM &module, const QString &title)
    {
        Fill(module, title);
        module.qryFocus.Post();
    }
    static void Retitle(TfrmClientsDM &module, const QString &title)
    {
        if (module.qryFocus.State() == DataSetState::Browse)
            module.qryFocus.Edit();
        module.qryFocus.FieldByName(u"NAME_FOC"_s).SetAsString(title);
    }
    TField &Field(const QString &name) { return copy->qryFocus.FieldByName(name); }
    QByteArray Text() { return Field(u"TEXT_FOC"_s).AsBytes(); }
    /// Key and title of every stored mark, as another process would see them.
    QString Stored()
    {
        const QString titles = u"select ID_FOC || NAME_FOC M from SUTTA_TEXT_FOCUS order by ID_FOC"_s;
        return OpenedDatabase(File()).Rows(u"select list(M, ' ') from (%1)"_s.arg(titles))[0][0].toString();
    }
    QString FailureOfPost()
    {
        return FailureOf([this] { copy->qryFocus.Post(); });
    }
    /// What the reader is told of it.
    QString ExplanationOfPost(int language)
    {
        InterfaceLang = language;
        try {
            copy->qryFocus.Post();
        } catch (const DatabaseError &error) {
            return ExplainedFailure(error);
        }
        return {};
    }

    QDateTime time = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 59, 123));
    std::unique_ptr<TfrmClientsDM> copy;
};

TEST_F(ClientsModule, EveryPostGivesTheHighestKeyAndTheTime)
{
    Fill(*copy, u"một"_s);
    EXPECT_EQ(Field(u"PRIORITY_FOC"_s).AsInteger(), 2);
    copy->qryFocus.Post();
    EXPECT_EQ(Stored(), u"1một"_s) << "the table was empty";
    EXPECT_EQ(Field(u"DATETIME_FOC"_s).AsDateTime(), time);
    time = time.addDays(1);
    Retitle(*copy, u"một*"_s);
    copy->qryFocus.Post();
    EXPECT_EQ(Stored(), u"2một*"_s) << "an edit renumbers";
    EXPECT_EQ(Field(u"DATETIME_FOC"_s).AsDateTime(), time);
    Mark(*copy, u"hai"_s);
    copy->qryFocus.Delete();
    Mark(*copy, u"ba"_s);
    EXPECT_EQ(Stored(), u"2một* 3ba"_s) << "the highest key is used again";
    copy->qryFocus.First();
    EXPECT_EQ(Text(), Excerpt);
}

TEST_F(ClientsModule, ATextIsLabelledByCollectionAndLanguage)
{
    const std::tuple<int, int, int, QString> cases[]{{6, 1101, 0, u"(Tạng Luật - Chương)"_s},
                                                     {6, 1101, 1, u"(Kelora - Kaṇḍaṃ)"_s},
                                                     {1, 5, 0, u"(Trường Bộ - Kinh)"_s},
                                                     {1, 5, 1, u"(Digha Tarune - Discourse)"_s},
                                                     {7, 5, 0, u"Lạ)"_s},
                                                     {7, 5, 1, u"Aññaṃ)"_s},
                                                     {6, 1101, 2, u""_s}};
    for (const auto &[collection, number, language, text] : cases) {
        Fill(*copy, u"x"_s, collection, number);
        copy->qryFocus.Post();
        InterfaceLang = language;
        const TField &label = Field(u"NAME_SUT_VIE"_s);
        EXPECT_EQ(label.DisplayText(), text) << collection << ' ' << language;
        EXPECT_EQ(copy->qryFocus.DisplayTextAt(copy->qryFocus.RecNo(), label.Index()), text);
    }
}

TEST_F(ClientsModule, TheTextsOfTheKeloraAreThoseOfTheCanon)
{
    TpFIBDatabase canon;
    TpFIBTransaction reading;
    Prepare(canon, reading, ProductFolder() + u"KELORA.FDB"_s);
    canon.SetConnected(true);
    reading.SetActive(true);
    TpFIBScripter script;
    script.SetDatabase(&copy->dbClientTarune);
    script.Script() = KeloraSuttaListScript(KeloraTexts(canon, reading));
    EXPECT_LT(script.Script().indexOf(QRegularExpression(u".*6, 1309, .*"_s)),
              script.Script().indexOf(QRegularExpression(u".*6, 1308, .*"_s)))
        << "in the order of the table";
    EXPECT_THROW(script.ExecuteScript(1), DatabaseError) << "one of them is there";
    OpenedDatabase(File()).RunScript(u"delete from SUTTA_LIST where NIK_SUT = 6; commit;"_s);
    script.ExecuteScript(1);
    const auto listed = OpenedDatabase(File()).Rows(
        u"select NIC_SUT, NAME_SUT_VIE, NAME_SUT_PAL from SUTTA_LIST where NIK_SUT = 6 and NAME_SUT_ENG is null "
        "and FAVOURITE_SUT is null order by 1"_s);
    EXPECT_EQ(listed.size(), 205);
    EXPECT_EQ(listed, OpenedDatabase(ProductFolder() + u"KELORA.FDB"_s)
                          .Rows(u"select ID_VIC, NAME_VIC_VIE, NAME_VIC_PAL from KELORA_CONTENT order by 1"_s));
}

TEST_F(ClientsModule, ACanonThatIsNotAsItShouldBeIsListedAllTheSame)
{
    OpenedDatabase(File()).RunScript(
        u"create table KELORA_CONTENT (ID_VIC integer, NAME_VIC_VIE varchar(300) character set UNICODE_FSS, "
        "NAME_VIC_PAL varchar(300) character set UNICODE_FSS, NAME_VIC_ENG varchar(300) character set UNICODE_FSS);"
        "commit; delete from SUTTA_LIST where NIK_SUT = 6;"
        "insert into KELORA_CONTENT values (7, 'It''s; \"seven\"', '', 'Seven');"
        "insert into KELORA_CONTENT values (null, 'x', null, null);"
        "insert into KELORA_CONTENT values (7, 'again', null, null);"
        "insert into KELORA_CONTENT values (3, null, rpad('', 130, 'ā'), null);"_s);
    TpFIBScripter script;
    script.SetDatabase(&copy->dbClientTarune);
    script.Script() = KeloraSuttaListScript(KeloraTexts(copy->dbClientTarune, copy->trClientTarune));
    script.ExecuteScript();
    EXPECT_EQ(OpenedDatabase(File()).Text("select NIC_SUT, NAME_SUT_VIE, char_length(NAME_SUT_PAL), NAME_SUT_ENG from "
                                          "SUTTA_LIST where NIK_SUT = 6 order by 1"),
              "3,null,127,null|7,It's; \"seven\",null,null");
}

TEST_F(ClientsModule, NothingIsPostedIntoAFileThatIsNoLongerInItsPlace)
{
    const QString aside = Path(u"aside.FDB"_s);
    using Step = std::function<void()>;
    const std::tuple<const char *, Step, Step> cases[]{
        {"renamed", [&] { QFile::rename(File(), aside); }, [&] { QFile::rename(aside, File()); }},
        {"replaced", [&] { QFile::rename(File(), aside), QFile::copy(aside, File()); },
         [&] { QFile::remove(File()), QFile::rename(aside, File()); }},
        {"read-only", [&] { QFile::setPermissions(File(), QFile::ReadOwner); },
         [&] { QFile::setPermissions(File(), QFile::ReadOwner | QFile::WriteOwner); }}};
    Mark(*copy, u"cũ"_s);
    for (const auto &[rule, harm, repair] : cases) {
        SCOPED_TRACE(rule);
        if (rule == std::string("read-only") && ::geteuid() == 0)
            continue; // nothing is read-only for root
        Fill(*copy, u"mới"_s);
        harm();
        EXPECT_TRUE(FailureOfPost().contains(File()));
        EXPECT_TRUE(ExplanationOfPost(0).contains(u"nên chưa lưu gì cả. Hãy"_s));
        EXPECT_EQ(copy->qryFocus.State(), DataSetState::Insert);
        EXPECT_EQ(Text(), Excerpt);
        repair();
        EXPECT_EQ(Stored(), u"1cũ"_s);
        copy->qryFocus.Post();
        Retitle(*copy, u"sửa"_s);
        harm();
        EXPECT_NE(FailureOfPost(), QString());
        copy->qryFocus.Cancel();
        EXPECT_THROW(copy->qryFocus.Delete(), DatabaseError);
        repair();
        EXPECT_EQ(Stored(), u"1cũ 2mới"_s);
        copy->qryFocus.Delete();
    }
}

TEST_F(ClientsModule, AnotherCopysMarkUnderTheSameKeyIsNeverOverwritten)
{
    const auto other = Open();
    const std::tuple<const char *, std::function<void()>, QString> cases[]{
        {"deleted", [&] { other->qryFocus.Delete(); }, u""_s},
        {"deleted, the key used again", [&] { other->qryFocus.Delete(), Mark(*other, u"khác"_s); }, u"1khác"_s},
        {"edited", [&] { Retitle(*other, u"khác"_s), other->qryFocus.Post(); }, u"2khác"_s},
    };
    for (const auto &[rule, theirs, left] : cases) {
        SCOPED_TRACE(rule);
        Mark(*copy, u"gốc"_s);
        other->qryFocus.FullRefresh();
        time = time.addMSecs(1);
        theirs();
        Retitle(*copy, u"của tôi"_s);
        EXPECT_TRUE(FailureOfPost().contains(u"changed or deleted elsewhere"_s));
        EXPECT_TRUE(ExplanationOfPost(0).startsWith(u"Ghi chép này vừa bị sửa hoặc xóa"_s));
        EXPECT_TRUE(ExplanationOfPost(1).contains(u"\"Read again\""_s));
        EXPECT_FALSE(ExplanationOfPost(1).contains(u"qryFocus"_s));
        EXPECT_EQ(copy->qryFocus.State(), DataSetState::Edit);
        EXPECT_EQ(Field(u"NAME_FOC"_s).AsString(), u"của tôi"_s);
        copy->qryFocus.Cancel();
        EXPECT_THROW(copy->qryFocus.Delete(), DatabaseError);
        EXPECT_EQ(Stored(), left);
        OpenedDatabase(File()).RunScript(u"delete from SUTTA_TEXT_FOCUS; commit;"_s);
        copy->qryFocus.FullRefresh();
    }
}

TEST_F(ClientsModule, AKeyTakenByAnotherCopyIsTakenAnewAtTheSecondTry)
{
    const auto other = Open();
    bool raced = false;
    copy->qryFocus.BeforePost = [&] {
        copy->qryFocusBeforePost();
        if (!std::exchange(raced, true))
            Mark(*other, u"nhanh hơn"_s);
    };
    Fill(*copy, u"chậm hơn"_s);
    const QString told = ExplanationOfPost(1);
    EXPECT_TRUE(told.startsWith(u"Another copy of Lumivara stored an entry at the same time"_s));
    EXPECT_TRUE(told.contains(u"\n\nviolation of PRIMARY or UNIQUE KEY constraint"_s)) << told.toStdString();
    EXPECT_EQ(copy->qryFocus.State(), DataSetState::Insert);
    copy->qryFocus.Post();
    raced = false;
    Retitle(*copy, u"sửa"_s);
    EXPECT_NE(FailureOfPost(), QString());
    EXPECT_EQ(Field(u"ID_FOC"_s).OldValue(), 2);
    copy->qryFocus.Post();
    EXPECT_EQ(Stored(), u"1nhanh hơn 3nhanh hơn 4sửa"_s);
    EXPECT_EQ(Text(), Excerpt);
}

TEST_F(ClientsModule, KeysThatComeTwiceAreNotWrittenOver)
{
    OpenedDatabase(File()).RunScript(
        u"alter table SUTTA_TEXT_FOCUS drop constraint PK_SUTTA_TEXT_FOCUS; commit;"
        "insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (1, 'a', 6, 1101);"
        "insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (1, 'b', 6, 1101); commit;"_s);
    copy->qryFocus.FullRefresh();
    Retitle(*copy, u"x"_s);
    EXPECT_TRUE(FailureOfPost().contains(u"2 records have the key"_s));
    EXPECT_TRUE(ExplanationOfPost(0).startsWith(u"Có 2 ghi chép mang cùng một khóa"_s));
    EXPECT_EQ(Stored(), u"1a 1b"_s);
}

TEST_F(ClientsModule, AFullDiskKeepsTheRowPendingAndTheSamePostSucceedsLater)
{
    Mark(*copy, u"trước"_s);
    for (const auto &[room, length] : {std::pair(0, 20000), {1 << 18, 100000}}) { // outgrows what the first one freed
        const QByteArray large = Excerpt.repeated(length);
        Fill(*copy, u"sau"_s);
        for (const QByteArray &text : {large, large + large}) {
            const DataSetState state = copy->qryFocus.State();
            Field(u"TEXT_FOC"_s).SetAsBytes(text);
            {
                const FullDisk full(static_cast<rlim_t>(QFileInfo(File()).size() + room));
                for (const char *turn : {"first", "second"})
                    EXPECT_NE(FailureOfPost(), QString()) << room << turn;
                EXPECT_EQ(copy->qryFocus.State(), state) << room;
            }
            copy->qryFocus.Post();
            EXPECT_TRUE(Text() == text) << room;
            Retitle(*copy, u"sửa"_s);
        }
        copy->qryFocus.Cancel();
        EXPECT_EQ(Stored(), u"1trước 3sửa"_s) << room;
        copy->qryFocus.Delete();
    }
}

TEST_F(ClientsModule, APostFailedOrNotLeavesTheRestOfTheListToBeRead)
{
    OpenedDatabase(File()).RunScript(
        u"insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT)"
        " select first 2000 row_number() over (), 'x', 6, 1101 from RDB$FIELDS a cross join RDB$FIELDS b; commit;"_s);
    copy->qryFocus.FullRefresh();
    Retitle(*copy, u"hỏng"_s);
    EXPECT_LT(copy->qryFocus.RecordCount(), 2000);
    copy->qryFocus.BeforePost = [this] { Field(u"ID_FOC"_s).SetAsInteger(5); };
    EXPECT_NE(FailureOfPost(), QString());
    copy->qryFocus.BeforePost = [this] { Field(u"ID_FOC"_s).SetAsInteger(5000); };
    copy->qryFocus.Post();
    copy->qryFocus.Last();
    EXPECT_EQ(copy->qryFocus.RecordCount(), 2000);
}

TEST(ExplainedFailure, SaysFirstInTheReadersLanguageWhatHappenedAndWhatToDo)
{
    const QScopedValueRollback rollback(InterfaceLang);
    const QString engine = u"\n\nviolation of \"PK_SUTTA_TEXT_FOCUS\""_s;
    // A lock, an update, a key, a read-only file, a text too long, the disk, damage.
    for (const int code : {335544336, 335544345, 335544451, 335544510, 335544349, 335544665, 335544765, 335544321,
                           335544344, 335544335, 335544323, 335544333}) {
        QString sentences[2];
        for (const int language : {0, 1}) {
            InterfaceLang = language;
            QString &sentence = sentences[language] = ExplainedFailure(DatabaseError(engine.sliced(2), code));
            EXPECT_TRUE(sentence.endsWith(engine)) << code;
            sentence.chop(engine.size());
            static const QRegularExpression internal(u"[A-Z]{3}_|isc_|::|\\b[a-z]+[A-Z]|T[A-Z]"_s);
            EXPECT_FALSE(sentence.contains(internal)) << sentence.toStdString();
        }
        EXPECT_TRUE(sentences[0].contains(u"Hãy "_s)) << code;
        EXPECT_NE(sentences[0], sentences[1]);
    }
    EXPECT_EQ(ExplainedFailure(DatabaseError(u"unknown"_s, 1)), u"unknown"_s);
}

} // namespace
