#include "BenchDictionary.h"
#include "Measures.h"
#include "RawStatement.h"
#include "Sample.h"
#include "Suites.h"

#include "common/Console.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/Verbs.h"
#include "lumivara-data/dictionary/DictionaryOrder.h"
#include "lumivara-data/dictionary/DictionaryReader.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/Disk.h"
#include "tools/lumivara-data/dictionary/StarDictSample.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <array>
#include <memory>
#include <zlib.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int WordCount = 100'000;

/// An entry of the line mark-up as dictionaries have them: most of 200 to 600 bytes, one in fifty of 3 KB, one in a
/// thousand of 14 KB, in words that come again and again, so that it packs as texts do.
QByteArray EntryText(const QByteArray &word, quint32 seed)
{
    const auto roll = [&seed](quint32 sides) { return (seed = seed * 1'664'525 + 1'013'904'223) / 256 % sides; };
    const quint32 size = roll(1000) == 0 ? 14'000 : roll(50) == 0 ? 3'000 : 200 + roll(400);
    QByteArray text = '@' + word;
    while (text.size() < qsizetype(size)) {
        text += std::array{"\n* ", "\n- ", "\n- ", "\n="}[roll(4)];
        for (quint32 left = 4 + roll(8); left > 0; --left)
            text += BenchWord(int(roll(60) * roll(60))).toUtf8() + (left == 5 ? '+' : ' ');
        text.chop(1);
    }
    return text;
}

/// A StarDict dictionary of 100,000 words with entries of some 450 bytes, compressed in chunks.
class BenchStarDict
{
public:
    BenchStarDict()
    {
        StarDictSample sample;
        sample.packing = StarDictSample::Packing::Chunks;
        for (int number = 0; number < WordCount; ++number) {
            const QByteArray word = BenchWord(number).toUtf8();
            sample.words.append({word, EntryText(word, quint32(number)), -1, -1});
        }
        // An index is in the order of its words' bytes.
        std::sort(sample.words.begin(), sample.words.end(),
                  [](const auto &a, const auto &b) { return a.name < b.name; });
        sample.Write(Base());
        for (const StarDictSample::Word &word : sample.words) {
            const QString name = QString::fromUtf8(word.name);
            m_rows.append({int(m_rows.size()) + 1, word.text, name,
                           QString::fromLatin1(DictionarySortKey(BenchKind, name)), TestedForm(BenchKind, name)});
        }
        std::sort(m_rows.begin(), m_rows.end(),
                  [](const QVariantList &a, const QVariantList &b) { return a[3].toString() < b[3].toString(); });
        ImportTime();
        ExpandAndInsertTime();
        if (RowsOf(Dictionary()) != RowsOf(Floor()))
            qFatal("the floor has other rows than the import");
    }

    double ImportTime() const
    {
        QFile::remove(Dictionary());
        QElapsedTimer clock;
        clock.start();
        Run(ParseAndRun<ParseImportDictionary>,
            {Base() + u".ifo"_s, u"--kind"_s, QString::number(BenchKind), u"--into"_s, Dictionary(), u"--quiet"_s});
        return Milliseconds(clock);
    }
    /// The texts expanded, and the rows that the import gives put in by one prepared statement in one transaction, the
    /// indices after them.
    double ExpandAndInsertTime() const
    {
        const QString path = Floor();
        QFile::remove(path);
        QElapsedTimer clock;
        clock.start();
        const gzFile packed = gzopen(QFile::encodeName(Base() + u".dict.dz"_s).constData(), "rb");
        QByteArray block(1 << 18, '\0');
        qint64 expanded = 0;
        for (int got = 1; got > 0; expanded += got)
            got = std::max(0, gzread(packed, block.data(), unsigned(block.size())));
        gzclose(packed);
        if (expanded < WordCount)
            qFatal("the texts can't be expanded");
        DataFile file;
        file.Create(path, 4096, false);
        file.RunSchema(u"dictionary"_s);
        file.Close();
        {
            RawStatement rows(
                ClientLibrary(), path,
                u"execute block (ID integer = ?, CONTENT blob = ?, NAME varchar(63) = ?, KEY varchar(190) "
                "character set ASCII = ?, FORM varchar(63) = ?) as begin "
                "insert into DICTIONARY_ENTRY values (:ID, :CONTENT); "
                "insert into DICTIONARY_LIST_%1 values (:NAME); "
                "insert into DICTIONARY_WORD values (%1, :KEY, :NAME, :FORM, :ID); end"_s.arg(BenchKind));
            for (const QVariantList &row : m_rows)
                rows.Execute(row);
            rows.Commit();
        }
        file.Open(path);
        file.RunSchema(u"dictionary-entries"_s);
        file.RunSchema(u"dictionary-indices"_s);
        file.Finish(true);
        SettleFile(path, {});
        return Milliseconds(clock);
    }

    double ExportTime() const
    {
        QElapsedTimer clock;
        clock.start();
        Run(ParseAndRun<ParseExportDictionary>, {u"--file"_s, Dictionary(), u"--kind"_s, QString::number(BenchKind),
                                                 u"--out"_s, Sample().ScratchFile(u"exported.tsv"_s), u"--quiet"_s});
        return Milliseconds(clock);
    }
    double ReadTime() const
    {
        QElapsedTimer clock;
        clock.start();
        RawStatement(ClientLibrary(), Dictionary(),
                     u"select E.WORD_CONTENT, L.WORD_NAME from SP_GET_LIST_WORDS(%1) L "
                     "left join SP_GET_WORD_CONTENT(%1, L.WORD_NAME, 0) E on 1 = 1"_s.arg(BenchKind))
            .ReadBlobs();
        return Milliseconds(clock);
    }

private:
    static QString Base() { return Sample().ScratchFile(u"stardict/words"_s); }
    static QString Dictionary() { return Sample().ScratchFile(u"imported-dictionary.fdb"_s); }
    static QString Floor() { return Sample().ScratchFile(u"floor-dictionary.fdb"_s); }
    static QString ClientLibrary() { return Sample().Folder() + u"libfbclient.so.2"_s; }
    /// A digest of everything that a dictionary has of the kind.
    static QByteArray RowsOf(const QString &path)
    {
        DataFile file;
        file.Open(path);
        QCryptographicHash digest(QCryptographicHash::Sha1);
        DictionaryReader(file).EachEntry(BenchKind, [&](const QString &word, const QByteArray &content) {
            digest.addData(word.toUtf8() + '\0' + content + '\0');
        });
        for (const auto &row :
             file.Rows(u"select hash(SORT_KEY || WORD_FORM) from DICTIONARY_WORD order by DICT_TYPE, WORD_NAME"_s))
            digest.addData(row[0].toString().toUtf8());
        return digest.result();
    }
    static void Run(int (*verb)(const QStringList &, Console &), const QStringList &arguments)
    {
        Console console(u"bench"_s);
        if (verb(arguments, console) != ExitCode::Clean)
            qFatal("the tool found something wrong");
    }

    QList<QVariantList> m_rows; ///< in dictionary order, as the floor's statement takes them
};

} // namespace

void RegisterDictionaryIoMeasures()
{
    const Lazy<BenchStarDict> dictionary{[] { return std::make_unique<BenchStarDict>(); }};
    Register({.name = u"import-stardict"_s,
              .unit = u"ms"_s,
              .reach = u"at most 1.5 x"_s,
              .ours = [dictionary] { return dictionary().ImportTime(); },
              .floor = [dictionary] { return dictionary().ExpandAndInsertTime(); },
              .finish = {},
              .repetitions = 5});
    Register({.name = u"export-dictionary"_s,
              .unit = u"ms"_s,
              .reach = u"at most 1.5 x"_s,
              .ours = [dictionary] { return dictionary().ExportTime(); },
              .floor = [dictionary] { return dictionary().ReadTime(); },
              .finish = dictionary.Finish(),
              .repetitions = 5});
}
