#include "support/FullDisk.h"
#include "support/TestSupport.h"
#include "tools/StarDictSample.h"
#include "tools/ToolSupport.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using Rows = QList<QList<QVariant>>;

/// Words and entries of a kind as the program sees them.
Rows WordsOf(const QString &path, int kind)
{
    return OpenedDatabase(path).Rows(u"select L.WORD_NAME, E.WORD_CONTENT from SP_GET_LIST_WORDS(%1) L left join "
                                     "SP_GET_WORD_CONTENT(%1, L.WORD_NAME, 0) E on 1 = 1"_s.arg(kind));
}

QString EntryOf(const QString &path, int kind, const QString &word)
{
    for (const QList<QVariant> &row : WordsOf(path, kind)) {
        if (row[0] == word)
            return QString::fromUtf8(row[1].toByteArray());
    }
    return u"no such word"_s;
}

/// A dictionary with one word of kind 8 and a place for sources.
class DictionaryTransfer : public testing::Test
{
protected:
    QString Path(const QString &name) const { return m_scratch.Path(name); }
    QString File() const { return Path(u"P.FDB"_s); }
    ToolRun Import(const QString &source, int kind = 5, const QStringList &more = {}) const
    {
        return RunDataTool(QStringList{u"import"_s, u"dictionary"_s, Path(source), u"--kind"_s, QString::number(kind),
                                       u"--into"_s, File(), u"--quiet"_s} +
                           more);
    }
    void MakeFile() const
    {
        WriteFile(Path(u"first.tsv"_s), "dhamma\t@dhamma\\n- teaching\ndhammo\t@dhamma\\n- teaching\n");
        const ToolRun run = Import(u"first.tsv"_s, 8);
        EXPECT_EQ(run.exitCode, 0) << qPrintable(run.output + run.errors);
    }
    static void ExpectSound(const QString &path)
    {
        const ToolRun run = RunDataTool({u"check"_s, u"dictionary"_s, path, u"--quiet"_s});
        EXPECT_EQ(run.exitCode, 0) << qPrintable(run.output + run.errors);
    }

    ScratchFolder m_scratch;
};

TEST_F(DictionaryTransfer, EachFormOfExportComesBackAsTheSameRows)
{
    QFile::copy(ProductFolder() + u"PALIDICT.FDB"_s, File());
    // What each of the forms has signs of its own for, forms of a word, and names out of the order of the letters.
    WriteFile(Path(u"s.tsv"_s), "\xEF\xBB\xBF%\t% a\\n\\\\n\\\\\nZoo\t <b>x</b> "
                                "\\n\nzoo\t\\n\\na\\r\\nb\\tc\r\ncôté\tx\ncote\tx\n\xF0\x9F\x98\x80\tx\n");
    ASSERT_EQ(Import(u"s.tsv"_s, 3, {u"--replace"_s}).exitCode, 0);
    for (const auto &[kind, ending] : {std::pair(3, u".tsv"_s), {3, u".txt"_s}, {3, u".ifo"_s}, {5, u".ifo"_s}}) {
        SCOPED_TRACE(qPrintable(ending));
        const QString out = Path(u"out"_s + ending);
        const ToolRun run = RunDataTool({u"export"_s, u"dictionary"_s, u"--file"_s, File(), u"--kind"_s,
                                         QString::number(kind), u"--out"_s, out, u"--quiet"_s});
        ASSERT_EQ(run.exitCode, 0) << qPrintable(run.output + run.errors);
        const Rows before = WordsOf(File(), kind);
        ASSERT_GE(before.size(), 6);
        const QString entries =
            u"select count(distinct W.ID_ENTRY) from DICTIONARY_WORD W where W.DICT_TYPE = %1"_s.arg(kind);
        const Rows entriesBefore = OpenedDatabase(File()).Rows(entries);
        ASSERT_EQ(Import(u"out"_s + ending, kind, {u"--replace"_s}).exitCode, 0);
        EXPECT_EQ(WordsOf(File(), kind), before);
        EXPECT_EQ(OpenedDatabase(File()).Rows(entries), entriesBefore) << "forms share their entry";
    }
    ExpectSound(File());
}

TEST_F(DictionaryTransfer, KeepsTheOtherKindsAndServesWhoHasTheOldFileOpen)
{
    MakeFile();
    OpenedDatabase inUse(File());
    const Rows kept = WordsOf(File(), 8);
    WriteFile(Path(u"m.txt"_s), "# mine\r\ndictionary 7\r\n\r\n% gāma\r\n@gāma\r\n- làng\r\n\r\n% Gotama\r\nx\r\n"
                                "% gAMa\r\n@other\r\n");
    const ToolRun run = Import(u"m.txt"_s);
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.output);
    EXPECT_EQ(inUse.Rows(u"select * from SP_GET_LIST_WORDS(5)"_s).size(), 0);
    EXPECT_EQ(WordsOf(File(), 8), kept);
    // One of them is brought into reach of the search.
    EXPECT_EQ(WordsOf(File(), 5).size(), 3);
    EXPECT_EQ(EntryOf(File(), 5, u"gāma"_s), u"@gāma\n- làng"_s);
    EXPECT_EQ(EntryOf(File(), 5, u"gama"_s), u"@other"_s);
    ExpectSound(File());
}

using Packing = StarDictSample::Packing;
const StarDictSample::Word A{"a", "A+", -1, -1}, B{"b", "B", -1, -1};
const QString EntryA = u"@a\nA+<br />"_s;

TEST_F(DictionaryTransfer, StarDictIsTakenAsFarAsItIsSound)
{
    const struct
    {
        StarDictSample source;
        std::string told; ///< what the report says; behind "~" it is no fault
        QString words;
        QString entry = EntryA; ///< of the first word
    } rows[]{
        {{.words = {{"b", QByteArray("làng ").repeated(40), -1, -1}, A},
          .forms = {{"ā", 1}, {"bo", 0}},
          .packing = Packing::Chunks,
          .chunkSize = 16},
         "~",
         u"a ā b bo"_s},
        {{.words = {B, A}, .packing = Packing::Gzip, .offsetBits = 64, .hasPackedIndex = true}, "~", u"a b"_s},
        {{.words = {{"a", QByteArray("ə\0\0\0\0\3wav<i>x</i>", 18), -1, -1}}, .types = "tWh"},
         "d.dict: 1 texts of type \"W\" were left out",
         u"a"_s,
         u"@a /ə/\n<i>x</i><br />"_s},
        {{.words = {{"a", QByteArray("mx\0yka\0", 7), -1, -1}, {"b", "l\xE9", -1, -1}}, .types = ""},
         "whose encoding is not known, were left out",
         u"a"_s,
         u"@a [ka]\nx<br />"_s},
        {{.words = {A, {"b", "", 0, 2}}}, "~", u"a b"_s},
        {{.words = {A, {"a", "B", -1, -1}}}, "~has 2 entries, joined", u"a"_s, EntryA + u"\n\n@a\nB<br />"_s},
        {{.words = {A, {"b", "", 1, 1}}}, "~d.idx:2: the entry overlaps another", u"a b"_s},
        {{.words = {A, {"b", "B", 3, 4}}}, "d.idx:2: the entry lies beyond the end", u"a"_s},
        {{.words = {A, {"b", "B", 0, 0xFFFFFFFFLL}}, .packing = Packing::Chunks},
         "d.idx:2: the entry has 4294967295 bytes, more than 1048576",
         u"a"_s},
        {{.words = {A, {QByteArray(64, 'x'), "B", -1, -1}}}, "has 64 characters, more than 63", u"a"_s},
        {{.words = {A, {"", "B", -1, -1}, {" ", "C", -1, -1}}}, "d.idx:2: the word is empty", u"a"_s},
        {{.words = {A, {"\xE9", "B", -1, -1}, {"c", "\xE9", -1, -1}}},
         "d.idx:3: the entry is not UTF-8 at byte 3",
         u"a"_s},
        {{.words = {{"a\x01", "A+\x02", -1, -1}}}, "~control characters", u"a"_s},
        {{.words = {A}, .forms = {{"c", 7}}}, "d.syn:1: there is no word 8", u"a"_s},
        {{.words = {A}, .moreDescription = "wordcount=3\n"}, "has 1 words where the description tells 3", u"a"_s},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.told);
        QDir(Path(u"s"_s)).removeRecursively();
        QFile::remove(File());
        row.source.Write(Path(u"s/d"_s));
        const bool isSound = row.told.starts_with('~');
        const ToolRun run =
            RunDataTool({u"import"_s, u"dictionary"_s, Path(u"s/d.ifo"_s), u"--kind"_s, u"5"_s, u"--into"_s, File()});
        EXPECT_EQ(run.exitCode, isSound ? 0 : 1) << qPrintable(run.output + run.errors);
        EXPECT_THAT(run.output.toStdString(), testing::HasSubstr(row.told.substr(isSound ? 1 : 0)));
        QStringList words;
        for (const QList<QVariant> &stored : WordsOf(File(), 5))
            words.append(stored[0].toString());
        EXPECT_EQ(words.join(u' '), row.words);
        EXPECT_EQ(EntryOf(File(), 5, words.value(0)).toStdString(), row.entry.toStdString());
        ExpectSound(File());
    }
}

QString Put(const ScratchFolder &folder, const QString &name, const QByteArray &bytes)
{
    WriteFile(folder.Path(name), bytes);
    return name;
}

/// A StarDict dictionary without some of its files.
QString Without(const ScratchFolder &folder, StarDictSample sample, const QStringList &endings)
{
    sample.words = sample.words.isEmpty() ? QList{A} : sample.words;
    sample.Write(folder.Path(u"s/d"_s));
    for (const QString &ending : endings)
        QFile::remove(folder.Path(u"s/d"_s + ending));
    return u"s"_s;
}

TEST_F(DictionaryTransfer, ARefusalLeavesTheOldFile)
{
    const struct
    {
        const char *message;
        std::function<QString(const ScratchFolder &)> source; ///< makes it and gives its name
    } rows[]{
        {"dictionary 8 has words already; --replace", [](auto &folder) { return Put(folder, u"w.tsv"_s, "a\tb\n"); }},
        {"there is no such file", [](auto &) { return u"none.tsv"_s; }},
        {"which form is this?", [](auto &folder) { return Put(folder, u"w.bin"_s, "a\tb\n"); }},
        {"is no regular file",
         [](auto &folder) {
             ::mkfifo(QFile::encodeName(folder.Path(u"w.txt"_s)).constData(), 0600);
             return u"w.txt"_s;
         }},
        {"d.idx: there is no such file", [](auto &folder) { return Without(folder, {}, {u".idx"_s}); }},
        {"d.dict: there is no such file", [](auto &folder) { return Without(folder, {}, {u".dict"_s}); }},
        {"version \"9\" is not known", [](auto &folder) { return Without(folder, {.version = "9"}, {}); }},
        {"more than 4 times the bytes",
         [](auto &folder) {
             StarDictSample sample{.words = {{"a", QByteArray(1 << 20, 'x'), -1, -1}}};
             for (int i = 1; i < 9; ++i)
                 sample.words.append({"b" + QByteArray::number(i), "", i, (1 << 20) - i});
             return Without(folder, sample, {});
         }},
        {"is a link that leads out of the folder", [](auto &folder) {
             const QString source = Without(folder, {}, {u".dict"_s});
             QFile::link(folder.Path(Put(folder, u"secret"_s, "A+")), folder.Path(u"s/d.dict"_s));
             return source;
         }}};
    MakeFile();
    const QByteArray before = BytesOf(File());
    for (const auto &row : rows) {
        SCOPED_TRACE(row.message);
        QDir(Path(u"s"_s)).removeRecursively();
        const QString source = row.source(m_scratch);
        const ToolRun run = Import(source, QByteArray(row.message).contains("--replace") ? 8 : 5);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_THAT(run.errors.toStdString(), testing::HasSubstr(row.message));
        EXPECT_EQ(BytesOf(File()), before);
        EXPECT_THAT(QDir(Path(u""_s)).entryList({u"*.part*"_s, u".lumivara*"_s}, QDir::AllEntries | QDir::Hidden),
                    testing::IsEmpty());
    }
}

TEST_F(DictionaryTransfer, WhatDoesNotGetToItsEndLeavesTheOldFile)
{
    MakeFile();
    const QByteArray before = BytesOf(File());
    QByteArray words;
    for (int number = 0; number < 30000; ++number)
        words += 'w' + QByteArray::number(number) + "\tan entry of some length, " + QByteArray::number(number) + '\n';
    WriteFile(Path(u"w.tsv"_s), words);
    const auto left = [&] {
        return QDir(Path(u""_s)).entryList({u"*.part"_s, u".lumivara*"_s}, QDir::AllEntries | QDir::Hidden);
    };
    {
        // Enough for the engine's lock files and not for the words.
        const FullDisk disk(1'400'000);
        EXPECT_EQ(Import(u"w.tsv"_s).exitCode, 2);
    }
    EXPECT_EQ(BytesOf(File()), before);
    EXPECT_EQ(left(), QStringList());
    for (const auto &[stage, isKilled] : {std::pair("keeping dictionary 8", false),
                                          {"reading the source", false},
                                          {"storing words", false},
                                          {"storing words", true}}) {
        QProcess stopped;
        stopped.setReadChannel(QProcess::StandardError);
        stopped.start(ToolPath(),
                      {u"import"_s, u"dictionary"_s, Path(u"w.tsv"_s), u"--kind"_s, u"5"_s, u"--into"_s, File()});
        QByteArray told;
        while (!told.contains(stage) && stopped.waitForReadyRead())
            told += stopped.readAllStandardError();
        isKilled ? stopped.kill() : stopped.terminate();
        EXPECT_TRUE(stopped.waitForFinished());
        EXPECT_EQ(stopped.exitStatus(), isKilled ? QProcess::CrashExit : QProcess::NormalExit);
        told += stopped.readAllStandardError();
        EXPECT_EQ(told.contains("interrupted"), !isKilled) << stage;
        EXPECT_EQ(BytesOf(File()), before) << stage;
        EXPECT_EQ(left().size(), isKilled ? 1 : 0) << stage;
    }
    EXPECT_EQ(Import(u"w.tsv"_s).exitCode, 0) << "what a killed one has left is in nobody's way";
    EXPECT_EQ(left(), QStringList());
    EXPECT_EQ(WordsOf(File(), 5).size(), 30000);
}

} // namespace
