#include "lumivara-data/sample/SampleCanon.h"

#include "common/Tool.h"
#include "lumivara-data/files/CsvTable.h"
#include "lumivara-data/files/PageFacts.h"
#include "lumivara-data/sample/PageWriter.h"
#include "stores/Schema.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

constexpr const char16_t *FormNames[] = {u"label", u"opening", u"story", u"rule", u"analysis", u"closing", u"heads"};
constexpr qsizetype HeadCount = 4;

QByteArray ReadFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, file.errorString()));
    return file.readAll();
}

QList<CanonGroup> ReadGroups(const QString &path)
{
    const CsvTable table(ReadFile(path), path);
    QList<CanonGroup> groups;
    for (qsizetype row = 0; row < table.RowCount(); ++row) {
        groups.append({table.Number(row, Field::IdVit), table.Number(row, Field::ParentIdVit),
                       table.Text(row, Field::NameVitVie), table.Text(row, Field::NameVitPal),
                       table.Text(row, Field::NameVitEng)});
    }
    return groups;
}

QList<SampleText> ReadTexts(const QString &path)
{
    const CsvTable table(ReadFile(path), path);
    QList<SampleText> texts;
    for (qsizetype row = 0; row < table.RowCount(); ++row) {
        texts.append({table.Number(row, Field::NumberVic), table.Number(row, Field::IdVic),
                      table.Number(row, Field::IdVit), table.Text(row, Field::NameVicPal),
                      table.Text(row, Field::NameVicVie), table.Text(row, Field::NameVicEng),
                      table.Text(row, u"WITHOUT"_s).split(u' ', Qt::SkipEmptyParts)});
    }
    return texts;
}

const CanonGroup &GroupOf(const SampleCanon &source, const SampleText &text)
{
    for (const CanonGroup &group : source.groups) {
        if (group.idVit == text.idVit)
            return group;
    }
    throw ToolError(u"text %1: there is no group %2"_s.arg(text.idVic).arg(text.idVit));
}

/// A formula sentence for one text.
Segment Fill(Segment segment, const SampleText &text, const CanonGroup &group)
{
    const QString titles[] = {text.namePali, text.nameVietnamese, text.nameEnglish};
    const QString groups[] = {group.namePali, group.nameVietnamese, group.nameEnglish};
    for (size_t language = 0; language < LanguageCount; ++language) {
        segment.text[language].replace(u"{title}"_s, titles[language]);
        segment.text[language].replace(u"{group}"_s, groups[language]);
        segment.text[language].replace(u"{number}"_s, QString::number(text.number));
    }
    return segment;
}

} // namespace

QString ReadTextFile(const QString &path)
{
    const QByteArray bytes = ReadFile(path);
    if (const qsizetype bad = FirstBadUtf8Byte(bytes); bad >= 0)
        throw ToolError(u"%1: not UTF-8 at byte %2"_s.arg(path).arg(bad));
    return QString::fromUtf8(bytes);
}

SampleCanon ReadSampleCanon(const QString &folder)
{
    const QDir dir(folder);
    if (!dir.exists())
        throw ToolError(u"%1: there is no such folder"_s.arg(folder));
    SampleCanon source;
    source.groups = ReadGroups(dir.filePath(u"groups.csv"_s));
    source.texts = ReadTexts(dir.filePath(u"texts.csv"_s));

    QStringList files{dir.filePath(u"formulas.txt"_s)};
    const QDir passages(dir.filePath(u"passages"_s));
    for (const QString &name : passages.entryList({u"*.txt"_s}, QDir::Files, QDir::Name))
        files.append(passages.filePath(name));
    for (const QString &file : files) {
        const QHash<QString, SamplePassage> sections = ParsePassages(ReadTextFile(file), file);
        for (auto it = sections.cbegin(); it != sections.cend(); ++it) {
            if (source.passages.contains(it.key()))
                throw ToolError(u"%1: \"%2\" stands in another file too"_s.arg(file, it.key()));
            source.passages.insert(it.key(), it.value());
        }
    }
    for (const char16_t *name : FormNames) {
        if (source.passages.value(u"form "_s + QString::fromUtf16(name)).isEmpty())
            throw ToolError(u"%1: there is no form \"%2\""_s.arg(files.first(), QString::fromUtf16(name)));
    }
    if (source.passages[u"form heads"_s].size() != HeadCount)
        throw ToolError(u"%1: the form \"heads\" wants %2 lines"_s.arg(files.first()).arg(HeadCount));

    const QDir pictures(dir.filePath(u"pictures"_s));
    for (const QString &name : pictures.entryList({u"*.svg"_s, u"*.png"_s}, QDir::Files, QDir::Name))
        source.pictures.insert(name, ReadFile(pictures.filePath(name)));
    return source;
}

SamplePassage AssemblePassage(const SampleCanon &source, const SampleText &text)
{
    const CanonGroup &group = GroupOf(source, text);
    SamplePassage passage;
    const auto heading = [&](qsizetype index) {
        Segment head = source.passages[u"form heads"_s][index];
        head.kind = Segment::Kind::Heading;
        passage.append(head);
    };
    // Strides with no common factor with the pools' sizes spread the sentences over the texts.
    const auto take = [&](const QString &form, qsizetype count, qsizetype stride) {
        const SamplePassage &pool = source.passages[u"form "_s + form];
        for (qsizetype i = 0; i < count; ++i)
            passage.append(Fill(pool[(text.number * stride + i) % pool.size()], text, group));
    };

    take(u"label"_s, 1, 0);
    take(u"opening"_s, 1, 1);
    if (const SamplePassage own = source.passages.value(u"text %1"_s.arg(text.idVic)); !own.isEmpty()) {
        passage.append(own);
    } else {
        heading(0);
        take(u"story"_s, 4, 3);
    }
    heading(1);
    take(u"rule"_s, 1, 3);
    heading(2);
    take(u"analysis"_s, 4, 5);
    heading(3);
    take(u"closing"_s, 2, 1);
    return passage;
}

TextPages ComposePages(const SampleCanon &source, const SampleText &text)
{
    const PageWriter writer(source.pictures);
    const SamplePassage passage = AssemblePassage(source, text);
    TextPages pages;
    if (!text.without.contains(u"pal"_s))
        pages.pali = writer.Page(text.namePali, passage, Language::Pali);
    if (!text.without.contains(u"vie"_s))
        pages.vietnamese = writer.Page(text.nameVietnamese, passage, Language::Vietnamese);
    if (!text.without.contains(u"eng"_s) && !text.nameEnglish.isEmpty())
        pages.english = writer.Page(text.nameEnglish, passage, Language::English);
    if (!text.without.contains(u"par"_s) && !pages.pali.isEmpty() && !pages.vietnamese.isEmpty())
        pages.parallel = writer.ParallelPage(text.namePali, text.nameVietnamese, passage);
    return pages;
}
