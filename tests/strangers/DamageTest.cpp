#include "strangers/StrangersFiles.h"

#include <QRandomGenerator>

#include <algorithm>
#include <future>

using namespace Qt::StringLiterals;

namespace {

using Damage = ToolTest;

constexpr int PageBytes = 16384; // of the files that the tests make

/// Damage as disks and downloads do it: bits, runs of bytes, the end, whole pages. Always in the same way.
QByteArray Damaged(QByteArray bytes, quint32 seed)
{
    QRandomGenerator random(seed);
    const auto below = [&random](qsizetype limit) { return static_cast<qsizetype>(random.bounded(qint64(limit))); };
    const auto page = [&] { return below(std::max<qsizetype>(bytes.size() / PageBytes, 1)) * PageBytes; };
    switch (seed % 6) {
    case 0:
        bytes[below(bytes.size())] = static_cast<char>(random.bounded(256));
        break;
    case 1:
        bytes[below(bytes.size())] = static_cast<char>(bytes[below(bytes.size())] ^ (1 << random.bounded(8)));
        bytes[below(std::min<qsizetype>(bytes.size(), 256))] = static_cast<char>(random.bounded(256));
        break;
    case 2:
        for (qsizetype at = below(bytes.size()), end = std::min(at + 64, bytes.size()); at < end; ++at)
            bytes[at] = static_cast<char>(random.bounded(256));
        break;
    case 3:
        bytes.truncate(below(bytes.size()));
        break;
    case 4: {
        const qsizetype at = page();
        std::fill_n(bytes.begin() + at, std::min<qsizetype>(PageBytes, bytes.size() - at), '\0');
        break;
    }
    default: {
        const qsizetype a = page(), b = page(), length = std::min<qsizetype>(PageBytes, bytes.size() - std::max(a, b));
        std::swap_ranges(bytes.begin() + a, bytes.begin() + a + length, bytes.begin() + b);
    }
    }
    return bytes;
}

TEST_F(Damage, NoChangedFileBreaksTheToolAndEachFailureNamesIt)
{
    const int changes = std::max(qEnvironmentVariableIntValue("LUMIVARA_CHANGES"), 40);
    const QByteArray marks = StrangersMarks();
    const struct
    {
        QString name;
        QByteArray bytes;
        QStringList words; ///< before the file
    } kinds[] = {{u"canon"_s, StrangersCanon(), {u"check"_s}},
                 {u"dictionary"_s, StrangersDictionary(), {u"check"_s}},
                 {u"marks"_s, marks, {u"check"_s}},
                 {u"backup"_s, BackupOf(marks), {u"restore"_s}}};
    for (const auto &kind : kinds) {
        const auto tryOne = [&](int seed) {
            const QString name = u"%1-%2"_s.arg(kind.name).arg(seed);
            Put(name, Damaged(kind.bytes, static_cast<quint32>(seed)));
            QStringList words = kind.words + QStringList{Path(name)};
            if (kind.name == u"backup")
                words << u"--to"_s << Path(name + u".FDB"_s);
            const ToolRun run = RunDataTool(words);
            QFile::remove(Path(name));
            QFile::remove(Path(name + u".FDB"_s));
            EXPECT_TRUE(run.exitCode >= 0 && run.exitCode <= 2) << qPrintable(name + run.errors);
            EXPECT_TRUE(run.exitCode != 2 || run.errors.contains(name)) << qPrintable(run.errors);
        };
        // Two at a time; most of a run is waiting for the other process.
        for (int seed = 0; seed < changes; seed += 2) {
            const auto other = std::async(std::launch::async, tryOne, seed + 1);
            tryOne(seed);
        }
    }
}

TEST_F(Damage, WhatTheHeaderCannotMeanIsRefusedBeforeFirebirdSeesIt)
{
    const QByteArray canon = StrangersCanon();
    const auto with = [&canon](int at, const QByteArray &bytes) {
        return QByteArray(canon).replace(at, bytes.size(), bytes);
    };
    const struct
    {
        const char *told;
        QByteArray bytes;
    } cases[] = {
        {"it is no database", "no database at all"},          {"it is no database of Firebird 3", with(18, "\x0b\x80")},
        {"pages of 12345 bytes", with(16, "\x39\x30")},       {"it ends early", canon.left(canon.size() - 1)},
        {"the shadow of another database", with(42, "\x01")}, {"locked for a backup", with(43, "\x04")},
        {"one of several files", with(40, "\x01")},
    };
    for (const auto &one : cases) {
        Put(u"X.FDB"_s, one.bytes);
        ExpectParts(Run(2, "check X.FDB"), {"X.FDB: ", one.told});
    }
    // A cache of 64 GB is not believed, and the rows are read all the same.
    Put(u"X.FDB"_s, with(68, QByteArray("\x00\x00\x40\x00", 4)));
    ExpectParts(Run(1, "check X.FDB"), {"asks for a cache of 65536 MB", "2 texts"});
}

TEST_F(Damage, ABackupWithAnyChangedBitIsRefused)
{
    Put(u"TARUNECLIENT.FDB"_s, StrangersMarks());
    Run(0, "backup --file TARUNECLIENT.FDB --to B.fbk");
    const QByteArray backup = Bytes(u"B.fbk"_s);
    for (int i = 0; i < 8; ++i) {
        QByteArray changed = backup;
        const qsizetype at = backup.size() * i / 8;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        Put(u"C.fbk"_s, changed);
        EXPECT_THAT(Run(2, "restore C.fbk --to R.FDB"), testing::HasSubstr("C.fbk: is damaged")) << at;
    }
    Run(0, "restore B.fbk --to R.FDB");
}

TEST_F(Damage, ATextThatCannotBeReadIsNamedAndTheOthersAreRead)
{
    // A page of its own for the blob, then nothing of it left.
    QByteArray canon = StrangersCanon(
        u"update KELORA_CONTENT set CONTENT_VIC_VIE = cast(rpad('x', 8000, 'x') as blob) || rpad('x', 8000, 'x') || "
        "rpad('x', 8000, 'x') || rpad('x', 8000, 'x') where ID_VIC = 1101;\ncommit work;\n"_s);
    for (qsizetype at = canon.indexOf(QByteArray(4000, 'x')); at >= 0; at = canon.indexOf(QByteArray(4000, 'x'))) {
        const qsizetype page = at / PageBytes * PageBytes;
        std::fill_n(canon.begin() + page, PageBytes, '\0');
    }
    Put(u"X.FDB"_s, canon);
    ExpectParts(Run(1, "check X.FDB"), {"text 1101 of group 1: CONTENT_VIC_VIE cannot be read", "2 texts"});
}

} // namespace
