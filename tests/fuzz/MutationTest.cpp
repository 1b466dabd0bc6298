#include "fuzz/Fuzz.h"
#include "fuzz/Mutator.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QList>

#include <sys/resource.h>

std::map<std::string, FuzzTarget> &FuzzTargets()
{
    static std::map<std::string, FuzzTarget> targets;
    return targets;
}

namespace {

QList<QByteArray> Corpus(const std::string &name)
{
    const QDir folder(QCoreApplication::applicationDirPath() + u"/corpus/"_qs + QString::fromStdString(name));
    QList<QByteArray> inputs;
    for (const QString &file : folder.entryList(QDir::Files, QDir::Name)) {
        QFile input(folder.filePath(file));
        EXPECT_TRUE(input.open(QIODevice::ReadOnly)) << file.toStdString();
        inputs << input.readAll();
    }
    return inputs;
}

/// The most memory that this process has taken so far.
long MostKilobytes()
{
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class FuzzedParsers : public testing::TestWithParam<std::string>
{};

TEST_P(FuzzedParsers, TenThousandEndAsPromised)
{
    const FuzzTarget target = FuzzTargets().at(GetParam());
    const QList<QByteArray> corpus = Corpus(GetParam());
    ASSERT_FALSE(corpus.isEmpty());
    Mutator mutator(corpus);
    [[maybe_unused]] const long before = MostKilobytes();
    for (const QByteArray &input : corpus)
        EXPECT_NO_THROW(target(input)) << input.left(200).toPercentEncoding().constData();
    for (int round = 0; round < 10'000 && !HasFailure(); ++round) {
        const QByteArray input = mutator.Of(corpus[round % corpus.size()]);
        EXPECT_NO_THROW(target(input)) << input.toPercentEncoding().constData();
    }
#ifndef __SANITIZE_ADDRESS__ // it keeps what was freed
    constexpr long limit = 300 * 1024;
    EXPECT_LT(MostKilobytes() - before, limit);
#endif
}

std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const auto &[name, target] : FuzzTargets())
        names.push_back(name);
    return names;
}

// Evaluated when main() runs, after all targets have been entered.
INSTANTIATE_TEST_SUITE_P(Parsers, FuzzedParsers, testing::ValuesIn(Names()), [](const auto &row) { return row.param; });

} // namespace
