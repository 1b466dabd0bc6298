#include "stores/ClientsDM.h"

#include "stores/KeloraSuttaList.h"
#include "stores/Scripter.h"
#include "support/FullDisk.h"
#include "support/ModuleSupport.h"
#include "support/StoreSupport.h"
#include "tools/ToolSupport.h"

#include <QFileInfo>

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
        EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
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
    static void Fill(TfrmClientsDM &module, const QString &title, const QByteArray &text = Excerpt, int collection = 6,
                     int number = 1101)
    {
        module.qryFocus.Insert();
        module.qryFocus.FieldByName(u"NAME_FOC"_s).SetAsString(title);
        module.qryFocus.FieldByName(u"TEXT_FOC"_s).SetAsBytes(text);
        module.qryFocus.FieldByName(u"NIK_SUT"_s).SetAsInteger(collection);
        module.qryFocus.FieldByName(u"NIC_SUT"_s).SetAsInteger(number);
    }
    static void Mark(TfrmClientsDM &module, const QString &title)
    {
        Fill(module, title);
        module.qryFocus.Post();
    }
    static void Retitle(TfrmClientsDM &module, const QString &title)
    {
        module.qryFocus.Edit();
        module.qryFocus.FieldByName(u"NAME_FOC"_s).SetAsString(title);
    }
    TField &Field(const QString &name) { return copy->qryFocus.FieldByName(name); }
    /// Key and title of every stored mark, as another process would see them.
    QString Stored()
    {
        return OpenedDatabase(File())
            .Rows(
                u"select list(M, ' ') from (select ID_FOC || NAME_FOC M from SUTTA_TEXT_FOCUS order by ID_FOC)"_s)[0][0]
            .toString();
    }
    static QString FailureOfPost(TfrmClientsDM &module)
    {
        return FailureOf([&] { module.qryFocus.Post(); });
    }

    QDateTime time = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 59, 123));
    std::unique_ptr<TfrmClientsDM> copy;
};

TEST_F(ClientsModule, EveryPostGivesTheHighestKeyAndTheTime)
{
    Fill(*copy, u"một"_s);
    EXPECT_EQ(Field(u"PRIORITY_FOC"_s).AsInteger(), 2);
    copy->qryFocus.Post();
    EXPECT_EQ(Field(u"ID_FOC"_s).AsInteger(), 1) << "the table was empty";
    EXPECT_EQ(Field(u"DATETIME_FOC"_s).AsDateTime(), time);
    EXPECT_EQ(Field(u"TEXT_FOC"_s).AsBytes(), Excerpt);

    time = time.addDays(1);
    Retitle(*copy, u"một*"_s);
    copy->qryFocus.Post();
    EXPECT_EQ(Field(u"ID_FOC"_s).AsInteger(), 2) << "an edit renumbers";
    EXPECT_EQ(Field(u"DATETIME_FOC"_s).AsDateTime(), time);
    Mark(*copy, u"hai"_s);
    copy->qryFocus.Delete();
    Mark(*copy, u"ba"_s);
    EXPECT_EQ(Stored(), u"2một* 3ba"_s) << "the highest key is used again";
    EXPECT_TRUE(copy->qryTemp.SelectSQL().isEmpty());
    copy->qryFocus.First();
    EXPECT_EQ(Field(u"TEXT_FOC"_s).AsBytes(), Excerpt);
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
        Fill(*copy, u"x"_s, {}, collection, number);
        copy->qryFocus.Post();
        InterfaceLang = language;
        const TField &label = Field(u"NAME_SUT_VIE"_s);
        EXPECT_EQ(label.DisplayText(), text) << collection << ' ' << language;
        EXPECT_EQ(copy->qryFocus.DisplayTextAt(copy->qryFocus.RecNo(), label.Index()), text);
    }
}

TEST_F(ClientsModule, TheTextsOfTheKeloraAreThoseOfTheCanon)
{
    TpFIBScripter script;
    script.SetDatabase(&copy->dbClientTarune);
    script.Script() = KeloraSuttaListScript();
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

TEST_F(ClientsModule, NothingIsPostedIntoAFileThatIsNoLongerInItsPlace)
{
    const QString aside = Path(u"aside.FDB"_s);
    const std::tuple<const char *, std::function<void()>, std::function<void()>> cases[]{
        {"renamed", [&] { QFile::rename(File(), aside); }, [&] { QFile::rename(aside, File()); }},
        {"replaced", [&] { QFile::rename(File(), aside), QFile::copy(aside, File()); },
         [&] { QFile::remove(File()), QFile::rename(aside, File()); }},
        {"read-only", [&] { QFile::setPermissions(File(), QFile::ReadOwner); },
         [&] { QFile::setPermissions(File(), QFile::ReadOwner | QFile::WriteOwner); }},
    };
    Mark(*copy, u"cũ"_s);
    for (const auto &[rule, harm, repair] : cases) {
        if (rule == std::string("read-only") && ::geteuid() == 0)
            continue; // nothing is read-only for root
        Fill(*copy, u"mới"_s);
        harm();
        EXPECT_TRUE(FailureOfPost(*copy).contains(File())) << rule;
        EXPECT_EQ(copy->qryFocus.State(), DataSetState::Insert) << rule;
        EXPECT_EQ(Field(u"TEXT_FOC"_s).AsBytes(), Excerpt) << rule;
        repair();
        EXPECT_FALSE(Stored().contains(u"mới"_s)) << rule;
        copy->qryFocus.Post();
        EXPECT_EQ(Stored(), u"1cũ 2mới"_s) << rule;
        Retitle(*copy, u"sửa"_s);
        harm();
        EXPECT_NE(FailureOfPost(*copy), QString()) << rule;
        copy->qryFocus.Cancel();
        EXPECT_THROW(copy->qryFocus.Delete(), DatabaseError) << rule;
        repair();
        EXPECT_EQ(Stored(), u"1cũ 2mới"_s) << rule;
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
        Mark(*copy, u"gốc"_s);
        other->qryFocus.FullRefresh();
        time = time.addMSecs(1);
        theirs();
        Retitle(*copy, u"của tôi"_s);
        EXPECT_TRUE(FailureOfPost(*copy).contains(u"changed or deleted elsewhere"_s)) << rule;
        EXPECT_EQ(copy->qryFocus.State(), DataSetState::Edit) << rule;
        EXPECT_EQ(Field(u"NAME_FOC"_s).AsString(), u"của tôi"_s) << rule;
        EXPECT_EQ(Field(u"ID_FOC"_s).OldValue().toInt(), 1) << rule;
        copy->qryFocus.Cancel();
        EXPECT_THROW(copy->qryFocus.Delete(), DatabaseError) << rule;
        EXPECT_EQ(Stored(), left) << rule;
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
    EXPECT_NE(FailureOfPost(*copy), QString());
    EXPECT_EQ(copy->qryFocus.State(), DataSetState::Insert);
    copy->qryFocus.Post();
    raced = false;
    Retitle(*copy, u"sửa"_s);
    EXPECT_NE(FailureOfPost(*copy), QString());
    EXPECT_EQ(Field(u"ID_FOC"_s).OldValue().toInt(), 2);
    copy->qryFocus.Post();
    EXPECT_EQ(Stored(), u"1nhanh hơn 3nhanh hơn 4sửa"_s);
    EXPECT_EQ(Field(u"TEXT_FOC"_s).AsBytes(), Excerpt);
}

TEST_F(ClientsModule, ARowLockedByAnotherCopyWaitsForTheSecondTry)
{
    const auto other = Open();
    Mark(*copy, u"khóa"_s);
    other->qryFocus.FullRefresh();
    other->qryFocus.SetAutoCommit(false);
    Retitle(*other, u"chưa xong"_s);
    other->qryFocus.Post();
    Retitle(*copy, u"của tôi"_s);
    EXPECT_TRUE(FailureOfPost(*copy).contains(u"update conflicts with concurrent update"_s));
    other->trClientTarune.RollbackRetaining();
    copy->qryFocus.Post();
    EXPECT_EQ(Stored(), u"2của tôi"_s);
}

TEST_F(ClientsModule, KeysThatComeTwiceAreNotWrittenOver)
{
    OpenedDatabase(File()).RunScript(
        u"alter table SUTTA_TEXT_FOCUS drop constraint PK_SUTTA_TEXT_FOCUS; commit;"
        "insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (1, 'a', 6, 1101);"
        "insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (1, 'b', 6, 1101); commit;"_s);
    copy->qryFocus.FullRefresh();
    Retitle(*copy, u"x"_s);
    EXPECT_TRUE(FailureOfPost(*copy).contains(u"2 records have the key"_s));
    EXPECT_EQ(Stored(), u"1a 1b"_s);
}

TEST_F(ClientsModule, AFullDiskKeepsTheRowPendingAndTheSamePostSucceedsLater)
{
    Mark(*copy, u"trước"_s);
    const auto failThenPost = [this](qint64 room, const QByteArray &text) {
        const DataSetState state = copy->qryFocus.State();
        {
            const FullDisk full(static_cast<rlim_t>(QFileInfo(File()).size() + room));
            EXPECT_NE(FailureOfPost(*copy), QString()) << room;
            EXPECT_NE(FailureOfPost(*copy), QString()) << room << ": the second try is no different";
            EXPECT_EQ(copy->qryFocus.State(), state) << room;
        }
        copy->qryFocus.Post();
        EXPECT_TRUE(Field(u"TEXT_FOC"_s).AsBytes() == text) << room;
    };
    const struct
    {
        qint64 room;
        qsizetype length;
    } cases[] = {{0, 20000}, {1 << 18, 100000}}; // the second one outgrows what the first one has freed
    for (const auto &[room, length] : cases) {
        const QByteArray large = Excerpt.repeated(length);
        Fill(*copy, u"sau"_s, large);
        failThenPost(room, large);
        EXPECT_EQ(Stored(), u"1trước 2sau"_s) << room;
        Retitle(*copy, u"sửa"_s);
        Field(u"TEXT_FOC"_s).SetAsBytes(large + large);
        failThenPost(room, large + large);
        copy->qryFocus.Delete();
    }
    copy.reset();
    EXPECT_EQ(Stored(), u"1trước"_s);
}

TEST_F(ClientsModule, AFailedPostLeavesTheRestOfTheListToBeRead)
{
    OpenedDatabase(File()).RunScript(
        u"set term ^ ; execute block as declare I integer = 0; begin while (I < 2000) do begin I = I + 1;"
        " insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (:I, 'x', 6, 1101); end end ^"
        " commit ^ set term ; ^"_s);
    copy->qryFocus.FullRefresh();
    EXPECT_LT(copy->qryFocus.RecordCount(), 2000);
    Retitle(*copy, u"hỏng"_s);
    copy->qryFocus.BeforePost = [this] { Field(u"ID_FOC"_s).SetAsInteger(5); };
    EXPECT_NE(FailureOfPost(*copy), QString());
    copy->qryFocus.Cancel();
    copy->qryFocus.Last();
    EXPECT_EQ(copy->qryFocus.RecordCount(), 2000);
}

} // namespace
