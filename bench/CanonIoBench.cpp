#include "Measures.h"
#include "RawStatement.h"
#include "Sample.h"
#include "Suites.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/Verbs.h"
#include "lumivara-data/canon/CanonRows.h"
#include "lumivara-data/canon/CanonWriter.h"
#include "lumivara-data/files/Disk.h"
#include "stores/Schema.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int TextCount = 230;
constexpr int SegmentCount = 290;

void Put(const QString &path, const QByteArray &json)
{
    QDir().mkpath(path.section(u'/', 0, -2));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size())
        qFatal("no room for the collection");
}

/// Words enough for any segment, another piece of them each time.
QByteArray Words(const QByteArray &words, int seed)
{
    const qsizetype start = words.indexOf(' ', seed * 37 % (words.size() / 2)) + 1;
    return words.mid(start, words.indexOf(' ', start + 40 + seed * 13 % 120) - start);
}

/// A segmented collection of 20 MB in three languages, and what becomes of it.
class SegmentedTexts
{
public:
    SegmentedTexts()
    {
        QByteArray pali, vietnamese, english;
        for (int i = 0; i < 12; ++i) {
            pali += "so bhikkhu gāmaṃ pavisati dhammaṃ suṇāti sīlaṃ rakkhati evaṃ sikkhitabbaṃ ";
            vietnamese += "vị tỳ khưu ấy vào làng lắng nghe pháp giữ gìn giới luật và học tập như vậy ";
            english += "that monk enters the village, hears the teaching, keeps the rule and so trains himself ";
        }
        for (int text = 1; text <= TextCount; ++text) {
            const QString id = u"k%1"_s.arg(text), group = text % 2 ? u"long"_s : u"middle"_s;
            QByteArray files[4];
            for (int segment = 1; segment <= SegmentCount; ++segment) {
                const QByteArray key = "\n  \"" + id.toUtf8() + ':' + QByteArray::number((segment + 2) / 3) + '.' +
                                       QByteArray::number((segment + 2) % 3 + 1) + "\": \"";
                const QByteArray markup[] = {"{}</p>", "<p>{}", "{}"};
                const QByteArray values[] = {Words(pali, text + segment), Words(vietnamese, text + segment),
                                             Words(english, text + segment), markup[segment % 3]};
                for (int i = 0; i < 4; ++i)
                    files[i] += (segment == 1 ? "{" : ",") + key + values[i] + '"';
            }
            const QString places[] = {u"root/pli/ms"_s, u"translation/vi/an"_s, u"translation/en/bo"_s, u"html"_s};
            for (int i = 0; i < 4; ++i)
                Put(u"%1/%2/%3/%4.json"_s.arg(Source(), places[i], group, id), files[i] + "\n}\n");
        }
        ImportTime();
        DataFile file;
        file.Open(Canon());
        CanonRows rows(file);
        Console console(u"bench"_s);
        Report report(console);
        for (CanonText text; rows.Next(text, report);)
            m_texts.append(text);
        file.Close();
    }

    double ImportTime() const
    {
        QElapsedTimer clock;
        clock.start();
        Run(ParseAndRun<ParseImportCanon>, {Source(), u"--into"_s, Canon(), u"--quiet"_s});
        return Milliseconds(clock);
    }
    /// Reads every file, parses it with Qt, and writes the import's rows.
    double ParseAndInsertTime() const
    {
        const QString path = Sample().ScratchFile(u"floor.fdb"_s);
        QFile::remove(path);
        QElapsedTimer clock;
        clock.start();
        qsizetype segments = 0;
        for (QDirIterator files(Source(), QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly))
                segments += QJsonDocument::fromJson(file.readAll()).object().size();
        }
        DataFile file;
        file.Create(path, 16384, false);
        file.RunSchema(u"canon"_s);
        {
            RowWriter rows(file, Table::KeloraContent, TextColumns());
            for (const CanonText &text : m_texts) {
                rows.Append({text.idVit, text.idVic, *text.number, text.nameVietnamese, text.namePali, text.nameEnglish,
                             text.pages[0], text.pages[1], text.pages[2], text.pages[3]});
            }
        }
        file.Finish(true);
        SettleFile(path, {});
        if (segments != qsizetype(TextCount) * SegmentCount * 4)
            qFatal("the collection is not whole");
        return Milliseconds(clock);
    }

    /// Into a new folder each time; where files were deleted just now, file systems are slow to make new ones.
    double ExportTime()
    {
        const QString folder = Sample().ScratchFile(u"exported-%1"_s.arg(++m_exports));
        QElapsedTimer clock;
        clock.start();
        Run(ParseAndRun<ParseExportCanon>, {u"--file"_s, Canon(), u"--out"_s, folder, u"--quiet"_s});
        return Milliseconds(clock);
    }
    double ReadTime() const
    {
        QElapsedTimer clock;
        clock.start();
        QStringList selects;
        for (const QString &column : PageColumns())
            selects.append(u"select N.%1 from KELORA_CONTENT N"_s.arg(column));
        RawStatement(Sample().Folder() + u"libfbclient.so.2"_s, Canon(), selects.join(u" union all "_s)).ReadBlobs();
        return Milliseconds(clock);
    }

private:
    static QString Source() { return Sample().ScratchFile(u"segmented"_s); }
    static QString Canon() { return Sample().ScratchFile(u"imported.fdb"_s); }
    static void Run(int (*verb)(const QStringList &, Console &), const QStringList &arguments)
    {
        Console console(u"bench"_s);
        if (verb(arguments, console) != ExitCode::Clean)
            qFatal("the tool found something wrong");
    }

    QList<CanonText> m_texts;
    int m_exports = 0;
};

} // namespace

void RegisterCanonIoMeasures()
{
    const Lazy<SegmentedTexts> collection{[] { return std::make_unique<SegmentedTexts>(); }};
    Register({.name = u"import-segmented"_s,
              .unit = u"ms"_s,
              .reach = u"at most 1.5 x"_s,
              .ours = [collection] { return collection().ImportTime(); },
              .floor = [collection] { return collection().ParseAndInsertTime(); },
              .finish = {},
              .repetitions = 7});
    Register({.name = u"export-canon"_s,
              .unit = u"ms"_s,
              .reach = u"at most 1.5 x"_s,
              .ours = [collection] { return collection().ExportTime(); },
              .floor = [collection] { return collection().ReadTime(); },
              .finish = collection.Finish(),
              .repetitions = 7});
}
