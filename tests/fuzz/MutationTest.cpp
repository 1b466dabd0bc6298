#include "fuzz/Fuzz.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QRandomGenerator>

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

class FuzzedParsers : public testing::TestWithParam<std::string>
{};

TEST_P(FuzzedParsers, TenThousandEndAsPromised)
{
    const FuzzTarget target = FuzzTargets().at(GetParam());
    const QList<QByteArray> corpus = Corpus(GetParam());
    ASSERT_FALSE(corpus.isEmpty());
    QRandomGenerator random(20);
    for (const QByteArray &input : corpus)
        EXPECT_NO_THROW(target(input)) << input.left(200).toPercentEncoding().constData();
    for (int round = 0; round < 10'000 && !HasFailure(); ++round) {
        const QByteArray input = Mutated(corpus[round % corpus.size()], corpus, random);
        EXPECT_NO_THROW(target(input)) << input.toPercentEncoding().constData();
    }
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
