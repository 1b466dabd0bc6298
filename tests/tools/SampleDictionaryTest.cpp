#include "lumivara-data/DictionarySource.h"
#include "tools/ToolSupport.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

const QList<DictionaryEntry> &Entries()
{
    static const QList<DictionaryEntry> entries = ReadDictionarySources(SampleSources() + u"/dictionary"_s);
    return entries;
}

TEST(SampleDictionary, EachKindHasItsShareOfWords)
{
    QMap<int, int> counts;
    for (const DictionaryEntry &entry : Entries())
        ++counts[entry.kind];
    for (const int kind : {1, 2, 5, 6, 7, 8})
        EXPECT_GE(counts[kind], 300) << kind;
    for (const int kind : {3, 4})
        EXPECT_GE(counts[kind], 40) << kind;
}

/// Each kind of line before each kind that changes what the formatter makes of it.
TEST(SampleDictionary, ShowsEveryRowOfTheMarkUp)
{
    QSet<QString> seen;
    for (const DictionaryEntry &entry : Entries()) {
        QString before;
        for (const QByteArray &line : entry.content.split('\n')) {
            const QString mark = line.isEmpty()                           ? u"_"_s
                                 : QByteArray("@*-!=#").contains(line[0]) ? QString(QLatin1Char(line[0]))
                                                                          : u"a"_s;
            seen.insert(before + mark);
            if (line.indexOf('+', 1) > 0 && line.indexOf('+', 1) < line.size() - 2)
                seen.insert(mark + u'+');
            before = mark;
        }
    }
    for (const char *pair : {"@*", "**", "*-", "--", "-*", "-=", "-!", "-#", "-@", "!-", "!=", "!*",
                             "!#", "==", "=-", "=!", "=*", "=#", "#a", "a_", "_a", "-+", "=+"})
        EXPECT_TRUE(seen.contains(QLatin1StringView(pair))) << pair;
}

struct Language
{
    const char *name;
    int kind;
    int column;
    int leastPercent;
};

class PassageWords : public testing::TestWithParam<Language>
{};

TEST_P(PassageWords, AreMostlyFound)
{
    QSet<QString> known;
    for (const DictionaryEntry &entry : Entries()) {
        if (entry.kind == GetParam().kind) {
            known.insert(entry.word.section(u' ', 0, 0).toLower());
            for (const QString &form : entry.forms)
                known.insert(form.toLower());
        }
    }
    static const QRegularExpression letters(u"\\p{L}+"_s);
    int found = 0;
    int all = 0;
    const QDir passages(SampleSources() + u"/canon/passages"_s);
    for (const QString &name : passages.entryList({u"*.txt"_s})) {
        for (const QString &line : QString::fromUtf8(BytesOf(passages.filePath(name))).split(u'\n')) {
            if (line.startsWith(u'@') || line.startsWith(u'#'))
                continue;
            auto words = letters.globalMatch(line.section(u'|', GetParam().column, GetParam().column).toLower());
            while (words.hasNext()) {
                ++all;
                found += known.contains(words.next().captured()) ? 1 : 0;
            }
        }
    }
    EXPECT_GE(100 * found / std::max(all, 1), GetParam().leastPercent) << found << " of " << all;
}

INSTANTIATE_TEST_SUITE_P(Languages, PassageWords,
                         testing::Values(Language{"Pali", 5, 0, 70}, Language{"PaliToEnglish", 8, 0, 70},
                                         Language{"Vietnamese", 6, 1, 70}),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
