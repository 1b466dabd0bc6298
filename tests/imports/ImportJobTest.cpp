#include "imports/ImportJob.h"
#include "base/InterfaceLanguage.h"
#include "support/SkinSupport.h"
#include "support/TestSupport.h"

#include <QDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(ImportJob, TellsTextsFromWordsByWhatAPathLooksLike)
{
    const ScratchFolder folder;
    EXPECT_TRUE(QDir(folder.Path(u"."_s)).mkpath(u"texts/a"_s));
    EXPECT_TRUE(QDir(folder.Path(u"."_s)).mkpath(u"words"_s));
    for (const QString &name :
         {u"words/a.ifo"_s, u"a.FDB"_s, u"a.fdb"_s, u"a.tsv"_s, u"a.txt"_s, u"a.pdf"_s, u"bare"_s})
        EXPECT_TRUE(WriteBytes(folder.Path(name), "x"));
    for (const auto &[name, target] : {std::pair(u"texts"_s, std::optional(ImportTarget::Canon)),
                                       {u"words"_s, ImportTarget::Dictionary},
                                       {u"words/a.ifo"_s, ImportTarget::Dictionary},
                                       {u"a.FDB"_s, ImportTarget::Canon},
                                       {u"a.fdb"_s, ImportTarget::Canon},
                                       {u"a.tsv"_s, ImportTarget::Dictionary},
                                       {u"a.txt"_s, ImportTarget::Dictionary},
                                       {u"a.pdf"_s, std::nullopt},
                                       {u"bare"_s, std::nullopt},
                                       {u"missing.tsv"_s, std::nullopt}})
        EXPECT_EQ(TargetOf(folder.Path(name)), target) << name.toStdString();
}

TEST(ImportJob, ATrialChangesNothingAndAnImportKeepsTheOldFile)
{
    ImportJob job{.source = u"--odd name"_s, .target = ImportTarget::Dictionary, .kind = 8, .programFolder = u"/p/"_s};
    job.isTrial = true;
    EXPECT_TRUE(job.Arguments().contains(u"--dry-run"_s));
    job.isTrial = false;
    EXPECT_FALSE(job.Arguments().contains(u"--dry-run"_s));
    EXPECT_TRUE(job.Arguments().contains(u"--keep-before"_s));
    EXPECT_EQ(job.Arguments().sliced(job.Arguments().size() - 2), (QStringList{u"--"_s, u"--odd name"_s}));
}

TEST(ImportJob, AsksForSentencesInTheInterfacesLanguageAndForTheWayThatWasChosen)
{
    for (const auto &[language, words] : {std::pair(0, u"vi"_s), {1, u"en"_s}, {7, u"en"_s}}) {
        InterfaceLang = language;
        for (const ImportTarget target : {ImportTarget::Canon, ImportTarget::Dictionary}) {
            for (const bool replaces : {true, false}) {
                const QStringList told =
                    ImportJob{.source = u"s"_s, .target = target, .replaces = replaces, .programFolder = u"/p/"_s}
                        .Arguments();
                EXPECT_EQ(told.value(told.indexOf(u"--words"_s) + 1), words);
                EXPECT_EQ(told.contains(u"--add"_s), !replaces);
                EXPECT_EQ(told.contains(u"--replace"_s), replaces && target == ImportTarget::Dictionary);
            }
        }
    }
    InterfaceLang = 0;
}

TEST(ImportJob, ReadsWhatTheToolTells)
{
    EXPECT_EQ(ProgressOf(R"({"work":"reading","done":3,"total":9,"unit":"bytes"})")->done, 3);
    EXPECT_FALSE(ProgressOf("lumivara-data: something"));
    const QByteArray json =
        R"({"file":"/p/PALIDICT.FDB","form":"stardict","name":"N","licence":"L","counts":{"words imported":2},
        "findings":[{"place":"a:1","fault":"no entry"}],"findingCount":5})";
    const ImportReport report = ReportOf(json, 1);
    EXPECT_TRUE(report.isDone);
    EXPECT_EQ(report.counts, (QList<std::pair<QString, qint64>>{{u"words imported"_s, 2}}));
    EXPECT_EQ(report.leftOut, (QList<std::pair<QString, QString>>{{u"a:1"_s, u"no entry"_s}}));
    EXPECT_EQ(report.leftOutCount, 5);
    EXPECT_FALSE(ReportOf(R"({"error":"x: no texts"})", 2).isDone);
    EXPECT_EQ(ReportOf(R"({"error":"x: no texts"})", 2).failure, u"x: no texts"_s);
    const ImportReport refused = ReportOf(R"({"counts":{},"findings":[{"place":"text 1","fault":"bad"}]})", 1);
    EXPECT_FALSE(refused.isDone) << "faults were told, and nothing was made";
    EXPECT_EQ(refused.failure, u"text 1: bad"_s);
    EXPECT_FALSE(ReportOf("", 0).isDone) << "nothing was said";
    EXPECT_FALSE(ReportOf("[1]", 0).isDone);
}
