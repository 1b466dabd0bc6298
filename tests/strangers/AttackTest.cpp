#include "strangers/StrangersFiles.h"

#include "lumivara-data/sealed/Seal.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <linux/landlock.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Files from strangers beside a file of marks, which they are after. Everything that is done to a file must leave the
/// folder as it was, but for what was asked for.
class Strangers : public ToolTest
{
protected:
    void SetUp() override
    {
        Put(u"NOTES.FDB"_s, StrangersMarks());
        m_before = Listing();
        m_environment = QProcess::systemEnvironment() << u"XDG_CACHE_HOME="_s + m_cache.Path(u"cache"_s);
    }
    /// Names of the folder's files, with the bytes of the notes.
    QByteArray Listing() const
    {
        return QDir(Path()).entryList(QDir::Files | QDir::Hidden).join(u' ').toUtf8() + Bytes(u"NOTES.FDB"_s);
    }
    /// A script with the notes, and a file that does not exist, in the place of the two arguments.
    QString Aimed(QString script) const
    {
        return script.replace(u"%1"_s, Path(u"NOTES.FDB"_s)).replace(u"%2"_s, Path(u"PREY"_s));
    }

    /// How the program would open a file, by name: "as it is", "as copy", "not at all".
    std::string Manner(const QString &name) const
    {
        const std::string line = Run(0, "scout", {Path(name)});
        const QJsonObject json = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        const QString copy = json[u"copy"_s].toString();
        EXPECT_EQ(copy.isEmpty(), !QFile::exists(copy)) << line;
        return json[u"manner"_s].toString().toStdString();
    }
    void ExpectNothingDone(const std::string &name, const QStringList &made = {}) const
    {
        QDir folder(Path());
        for (const QString &file : made)
            folder.remove(file);
        EXPECT_EQ(Listing(), m_before) << name;
    }

    QByteArray m_before;
    ScratchFolder m_cache;
};

struct Attack
{
    const char *name;
    const char *manner; ///< in which the program opens such a canon or dictionary
    QString script;
};

/// A routine that each of them runs: it writes to the notes, then into its own file.
const QString Routine = uR"(set term ^ ;
create procedure DO_IT returns (N integer) as begin
  in autonomous transaction do begin
    execute statement 'delete from SUTTA_TEXT_FOCUS' on external '%1' as user 'SYSDBA' password 'x'; when any do begin end
  end
  in autonomous transaction do begin execute statement 'create shadow 7 ''%2'''; when any do begin end end
  N = 1; suspend;
end^
create function IT() returns integer as declare N integer; begin select N from DO_IT into :N; return N; end^
set term ; ^
commit work;
)"_s;

const std::vector<Attack> &Attacks()
{
    static const std::vector<Attack> attacks{
        {"a trigger at the connection", "as copy", Routine + uR"(set term ^ ;
create trigger T on connect as declare N integer; begin select N from DO_IT into :N; end^
set term ; ^
)"_s},
        {"a trigger at the transaction", "as copy", Routine + uR"(set term ^ ;
create trigger T on transaction start as declare N integer; begin select N from DO_IT into :N; end^
set term ; ^
)"_s},
        {"a view", "as copy", Routine + u"create view V as select N from DO_IT;\n"_s},
        {"a computed column", "as copy", Routine + u"create table C (A integer, B computed by (IT()));\n"_s},
        {"a check", "as copy", Routine + u"create table C (A integer check (IT() = 1));\n"_s},
        {"an index on an expression", "as copy",
         Routine + u"create table C (A integer);\ncreate index I on C computed by (A + IT());\n"_s},
        {"a shadow", "as copy", u"create shadow 1 manual conditional '%2';\n"_s},
        {"helpers that only help", "as it is", uR"(set term ^ ;
create procedure HELP (A integer) returns (B integer) as begin B = A + 189; suspend; end^
create table H (A integer, B varchar(40) default 'execute statement')^
create trigger HT for H before insert as begin new.A = 164; end^
set term ; ^
)"_s},
    };
    return attacks;
}

TEST_F(Strangers, ACanonDoesNothingWhateverIsDoneToIt)
{
    for (const Attack &attack : Attacks()) {
        Put(u"CANON.FDB"_s, StrangersCanon(Aimed(attack.script)));
        QDir(Path()).remove(u"PREY"_s); // made by Firebird when the shadow was declared
        const bool isHarmless = std::string(attack.manner) == "as it is";
        const std::string told = Run(isHarmless ? 0 : 1, "check", {Path(u"CANON.FDB"_s)});
        EXPECT_EQ(told.find(isHarmless ? "nothing wrong" : "private copy") != std::string::npos, true)
            << attack.name << told;
        EXPECT_EQ(Manner(u"CANON.FDB"_s), attack.manner) << attack.name;
        EXPECT_EQ(Run(0, "import canon CANON.FDB --into NEW.FDB").find("left out") != std::string::npos,
                  attack.name != std::string_view("a shadow"))
            << attack.name;
        EXPECT_EQ(OpenedDatabase(Path(u"NEW.FDB"_s))
                      .Text("select count(*) from RDB$PROCEDURES union all select count(*) from RDB$TRIGGERS where "
                            "RDB$SYSTEM_FLAG = 0 union all select count(*) from KELORA_CONTENT"),
                  "0|0|2")
            << attack.name;
        ExpectNothingDone(attack.name, {u"CANON.FDB"_s, u"NEW.FDB"_s});
    }
}

TEST_F(Strangers, TheProceduresOfADictionaryReachNothing)
{
    Put(u"DICT.FDB"_s, StrangersDictionary(Aimed(Routine) + uR"(set term ^ ;
alter procedure SP_GET_LIST_WORDS (A_DICT integer) returns (WORD_NAME varchar(63), DICT_TYPE integer) as
declare I integer;
begin
  select N from DO_IT into :I;
  for select N, K from W where K = :A_DICT into :WORD_NAME, :DICT_TYPE do suspend;
end^
set term ; ^
)"_s));
    Run(1, "check", {Path(u"DICT.FDB"_s)});
    EXPECT_EQ(Manner(u"DICT.FDB"_s), "as copy");
    Run(0, "export dictionary --kind 5 --out w.tsv --file DICT.FDB");
    EXPECT_EQ(Bytes(u"w.tsv"_s).count('\n'), 2);
    ExpectNothingDone("dictionary", {u"DICT.FDB"_s, u"w.tsv"_s});
}

TEST_F(Strangers, TheProcedureOfFormsIsJudgedLikeTheOthers)
{
    for (const auto &[body, manner] :
         {std::pair(u"WORD = 'anta'; suspend;"_s, "as it is"),
          {u"select 'anta' from DO_IT into :WORD; suspend;"_s, "as copy"},
          {u"execute statement 'select first 1 N from W' into :WORD; suspend;"_s, "as copy"}}) {
        const bool isHarmless = std::string_view(manner) == "as it is";
        Put(u"DICT.FDB"_s, StrangersDictionary((isHarmless ? QString() : Aimed(Routine)) + uR"(set term ^ ;
create procedure SP_GET_FORMS (K integer, F varchar(63) character set UTF8) returns (WORD varchar(63)) as begin %1 end^
set term ; ^
)"_s.arg(body)));
        EXPECT_EQ(Manner(u"DICT.FDB"_s), manner) << body.toStdString();
        Put(u"t.txt"_s, "antaka\n");
        Run(0, "words t.txt --kind 5 --dictionary DICT.FDB --out found.tsv");
        ExpectNothingDone("forms", {u"DICT.FDB"_s, u"found.tsv"_s, u"t.txt"_s});
    }
}

TEST_F(Strangers, MarksThatCanDoMoreAreNotOpened)
{
    const struct
    {
        const char *name, *manner;
        QString script;
    } cases[] = {
        {"with a routine that composes statements", "not at all", Routine},
        {"with a shadow", "not at all", u"create shadow 1 manual conditional '%2';\n"_s},
        {"with a helper", "as it is",
         u"set term ^ ;\ncreate procedure P returns (A integer) as begin A = 1; suspend; end^\nset term ; ^\n"_s},
    };
    for (const auto &one : cases) {
        Put(u"TARUNECLIENT.FDB"_s, StrangersMarks(Aimed(one.script)));
        QDir(Path()).remove(u"PREY"_s);
        EXPECT_EQ(Manner(u"TARUNECLIENT.FDB"_s), one.manner) << one.name;
        ExpectNothingDone(one.name, {u"TARUNECLIENT.FDB"_s});
    }
}

TEST_F(Strangers, ABackupGivesItsRowsAndNothingElse)
{
    Put(u"B.fbk"_s, BackupOf(StrangersMarks(Aimed(Routine + uR"(create table MORE (A integer);
alter table SUTTA_LIST add EXTRA integer;
set term ^ ;
create trigger T on connect as declare N integer; begin select N from DO_IT into :N; end^
create trigger L for SUTTA_LIST before insert as declare N integer; begin select N from DO_IT into :N; end^
set term ; ^
)"_s))));
    QDir(Path()).remove(u"PREY"_s);
    const std::string refused = Run(2, "restore B.fbk --to R.FDB");
    ExpectParts(refused,
                {"table MORE", "column EXTRA of SUTTA_LIST", "procedure DO_IT", "trigger T", "trigger L", "--drop"});
    EXPECT_FALSE(QFile::exists(Path(u"R.FDB"_s)));
    Run(0, "restore B.fbk --to R.FDB --drop");
    OpenedDatabase restored(Path(u"R.FDB"_s));
    EXPECT_EQ(restored.Text("select ID_FOC, NAME_FOC, TEXT_FOC, PRIORITY_FOC, DESC_FOC, NIK_SUT, NIC_SUT, "
                            "cast(DATETIME_FOC as varchar(30)), KEYWORD_FOC from SUTTA_TEXT_FOCUS"),
              "1,ghi,<p>chữ</p>,2,null,6,1101,2024-02-29 12:00:00.1234,a");
    EXPECT_EQ(restored.Text("select count(*) from RDB$TRIGGERS where RDB$SYSTEM_FLAG = 0"), "0");
    ExpectNothingDone("backup", {u"B.fbk"_s, u"R.FDB"_s});
}

TEST_F(Strangers, AnExaminationIsRememberedUntilTheFileChanges)
{
    Put(u"CANON.FDB"_s, StrangersCanon(Aimed(Routine)));
    const auto copies = [this] { return QDir(m_cache.Path(u"cache/lumivara"_s)).entryList({u"copy-*"_s}); };
    EXPECT_EQ(Manner(u"CANON.FDB"_s), "as copy");
    const QStringList first = copies();
    EXPECT_EQ(Manner(u"CANON.FDB"_s), "as copy");
    EXPECT_EQ(copies(), first);
    Put(u"CANON.FDB"_s, StrangersCanon());
    EXPECT_EQ(Manner(u"CANON.FDB"_s), "as it is");
    EXPECT_EQ(copies(), QStringList()); // the former copy went with its file
}

/// What a sealed process tries, in bits of its exit code; zero if nothing of it succeeds.
void TryToBreakOut(const QString &folder, const QString &outside)
{
    SealProcess(folder);
    QFile inside(folder + u"/inside"_s), other(outside);
    int broken = inside.open(QIODevice::WriteOnly) ? 0 : 1;
    broken |= other.open(QIODevice::WriteOnly) ? 2 : 0;
    broken |= QFile::rename(folder + u"/inside"_s, outside) ? 4 : 0;
    broken |= ::socket(AF_INET, SOCK_STREAM, 0) >= 0 ? 8 : 0;
    ::execl("/bin/false", "false", nullptr); // would end with 1
    std::_Exit(broken);
}

TEST(Seal, KeepsAProcessInItsFolder)
{
    if (::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) < 1)
        GTEST_SKIP() << "this kernel has no Landlock";
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const QString folder = QDir::tempPath() + u"/lumivara-seal-test"_s, outside = folder + u"-outside"_s;
    EXPECT_TRUE(QDir().mkpath(folder));
    EXPECT_EXIT(TryToBreakOut(folder, outside), testing::ExitedWithCode(0), "");
    EXPECT_FALSE(QFile::exists(outside));
    EXPECT_TRUE(QDir(folder).removeRecursively());
}

} // namespace
