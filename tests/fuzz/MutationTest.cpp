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

/// What damage and malice do to a file: bits and bytes change, pieces go, come twice or come from another file, it is
/// cut short, and counts are the largest and smallest there are.
QByteArray Mutated(QByteArray bytes, const QList<QByteArray> &others, QRandomGenerator &random)
{
    const auto below = [&random](qsizetype limit) { return qsizetype(random.bounded(int(limit))); };
    for (int changes = random.bounded(1, 6); changes > 0 && !bytes.isEmpty(); --changes) {
        const qsizetype at = below(bytes.size());
        const QByteArray &other = others[below(others.size())];
        switch (random.bounded(8)) {
        case 0:
            bytes[at] = char(random.bounded(256));
            break;
        case 1:
            bytes[at] = char(bytes[at] ^ (1 << random.bounded(8)));
            break;
        case 2:
            bytes.insert(at, bytes.mid(below(bytes.size()), random.bounded(40)));
            break;
        case 3:
            bytes.remove(at, random.bounded(1, 20));
            break;
        case 4:
            bytes.truncate(at);
            break;
        case 5:
            bytes.insert(at, other.isEmpty() ? QByteArray() : other.mid(below(other.size())));
            break;
        case 6:
            bytes.replace(at, 4, QByteArray(4, random.bounded(2) ? '\xFF' : '\0'));
            break;
        default:
            bytes.insert(at, bytes.mid(at, 8).repeated(random.bounded(200)));
            break;
        }
    }
    return bytes;
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
