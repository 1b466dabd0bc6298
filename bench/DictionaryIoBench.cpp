#include "BenchDictionary.h"
#include "Measures.h"
#include "RawStatement.h"
#include "Sample.h"
#include "Suites.h"

#include "common/Console.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/DataFile.h"
#include "lumivara-data/DictionaryOrder.h"
#include "lumivara-data/UnfinishedFile.h"
#include "lumivara-data/Verbs.h"
#include "tools/StarDictSample.h"

#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <memory>
#include <zlib.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int WordCount = 100'000;

/// A StarDict dictionary of 100,000 words with entries of some 300 bytes, compressed in chunks.
class BenchStarDict
{
public:
    BenchStarDict()
    {
        const QByteArray example =
            "* danh từ nam tính\n- hội chúng của các vị tỳ khưu+a community of those gone forth\n"
            "=saṅghaṃ saraṇaṃ gacchāmi+con xin nương tựa nơi chúng tăng\n- nghĩa khác của từ này";
        StarDictSample sample;
        sample.packing = StarDictSample::Packing::Chunks;
        for (int number = 0; number < WordCount; ++number) {
            const QByteArray word = BenchWord(number).toUtf8();
            sample.words.append({word, '@' + word + '\n' + example + QByteArray::number(number), -1, -1});
        }
        sample.Write(Base());
        for (const StarDictSample::Word &word : sample.words) {
            const QString name = QString::fromUtf8(word.name);
            m_rows.append({int(m_rows.size()) + 1, word.text, name,
                           QString::fromLatin1(DictionarySortKey(BenchKind, name)), TestedForm(BenchKind, name)});
        }
        std::sort(m_rows.begin(), m_rows.end(),
                  [](const QVariantList &a, const QVariantList &b) { return a[3].toString() < b[3].toString(); });
        ImportTime();
    }

    double ImportTime() const
    {
        QFile::remove(Dictionary());
        QElapsedTimer clock;
        clock.start();
        Run(ImportDictionary,
            {Base() + u".ifo"_s, u"--kind"_s, QString::number(BenchKind), u"--into"_s, Dictionary(), u"--quiet"_s});
        return Milliseconds(clock);
    }
    /// The texts expanded, and the rows that the import gives put in by one prepared statement in one transaction, the
    /// indices after them.
    double ExpandAndInsertTime() const
    {
        const QString path = Sample().ScratchFile(u"floor-dictionary.fdb"_s);
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
        Settle(path);
        return Milliseconds(clock);
    }

    double ExportTime() const
    {
        QElapsedTimer clock;
        clock.start();
        Run(ExportDictionary, {u"--file"_s, Dictionary(), u"--kind"_s, QString::number(BenchKind), u"--out"_s,
                               Sample().ScratchFile(u"exported.tsv"_s), u"--quiet"_s});
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
    static QString ClientLibrary() { return Sample().Folder() + u"libfbclient.so.2"_s; }
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
