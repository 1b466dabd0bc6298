#include "lumivara-data/canon/SegmentedCanon.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/InOrder.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/canon/NamesTable.h"
#include "lumivara-data/canon/ReadingOrder.h"

#include <algorithm>
#include <set>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

std::optional<Language> LanguageOf(const QString &folder)
{
    static const QHash<QString, Language> known = {{u"pli"_s, Language::Pali},
                                                   {u"pi"_s, Language::Pali},
                                                   {u"pali"_s, Language::Pali},
                                                   {u"pāli"_s, Language::Pali},
                                                   {u"vi"_s, Language::Vietnamese},
                                                   {u"vie"_s, Language::Vietnamese},
                                                   {u"vietnamese"_s, Language::Vietnamese},
                                                   {u"en"_s, Language::English},
                                                   {u"eng"_s, Language::English},
                                                   {u"english"_s, Language::English}};
    const auto found = known.constFind(folder.toLower());
    return found == known.cend() ? std::nullopt : std::optional(*found);
}

/// "dn1" of "dn1_root-pli-ms.json".
QString TextId(const QString &file)
{
    QString id = file.section(u'/', -1).chopped(5);
    for (const QString &part : {u"_root"_s, u"_translation"_s, u"_html"_s}) {
        if (const qsizetype at = id.indexOf(part); at > 0)
            id.truncate(at);
    }
    return id;
}

/// The folders of a name below its first `levels` ones, without the file.
QString GroupOf(const QString &file, int levels)
{
    return file.section(u'/', levels, -2);
}

bool GroupLess(const QString &a, const QString &b)
{
    const QStringList left = a.split(u'/'), right = b.split(u'/');
    for (qsizetype i = 0; i < left.size() && i < right.size(); ++i) {
        if (left[i] != right[i])
            return NaturalLess(left[i], right[i]);
    }
    return left.size() < right.size();
}

/// Names of texts in the order of writing, to tell apart those that are the same.
class SameNames
{
public:
    /// `isFinal` for a text whose names the user gives.
    void Add(const LanguageNames &names, const QString &number, bool isFinal)
    {
        for (size_t language = 0; language < LanguageCount; ++language) {
            if (!names[language].isEmpty())
                ++m_counts[language][names[language]];
        }
        m_numbers.append(isFinal ? QString() : number);
    }
    void PutNumbersInFront(CanonWriter &writer) const
    {
        Report ignored;
        for (qsizetype at = 0; at < m_numbers.size(); ++at) {
            if (m_numbers[at].isEmpty())
                continue;
            const CheckedText &text = writer.Rows().texts[at];
            const LanguageNames before{text.namePali, text.nameVietnamese, text.nameEnglish};
            LanguageNames names = before;
            for (size_t language = 0; language < LanguageCount; ++language) {
                if (m_counts[language].value(names[language]) > 1)
                    names[language] = FittingName(m_numbers[at] + u". "_s + names[language], {}, ignored);
            }
            if (names != before)
                writer.Rename(at, names);
        }
    }

private:
    std::array<QHash<QString, int>, LanguageCount> m_counts;
    QStringList m_numbers; ///< of the texts; empty where there is none
};

} // namespace

SegmentedCanon::SegmentedCanon(const SourceFolder &folder, const QStringList &authors, Report &report)
    : m_folder(folder), m_authors(authors), m_report(report)
{
    for (const QString &other : folder.Folders()) {
        if (other != u"root"_s && other != u"translation"_s && other != u"html"_s)
            report.Note(other + u'/', Sentence({u"không đọc: chỉ đọc root, translation và html",
                                                u"not read: only root, translation and html are"}));
    }
    if (folder.HasFolder(u"root"_s))
        ListRoot();
    if (folder.HasFolder(u"translation"_s))
        ListTranslations();
    if (folder.HasFolder(u"html"_s))
        ListMarkup();
    for (const auto &[place, count] : m_otherAuthors)
        report.Note(place, Sentence({u"%1 bài bị bỏ vì đã lấy bài của dịch giả khác",
                                     u"%1 texts left out for another author's"})
                               .arg(count));
    BringTogether();
    ShortenGroups();
}

bool SegmentedCanon::IsOne(const SourceFolder &folder)
{
    return folder.HasFolder(u"root"_s) || folder.HasFolder(u"translation"_s);
}

bool SegmentedCanon::IsJson(const QString &file)
{
    if (file.endsWith(u".json"_s, Qt::CaseInsensitive) && file.section(u'/', -1).size() > 5)
        return true;
    m_report.Note(file, Sentence({u"không phải JSON; không đọc", u"no JSON; not read"}));
    return false;
}

void SegmentedCanon::ListRoot()
{
    const QStringList files = m_folder.FilesBelow(u"root"_s, m_report);
    // Folders of languages need not be there; but if one is, the others are languages too.
    const bool hasLanguages = std::any_of(files.cbegin(), files.cend(), [](const QString &file) {
        return file.count(u'/') > 1 && LanguageOf(file.section(u'/', 1, 1));
    });
    std::map<QString, qsizetype> unknown;
    for (const QString &file : files) {
        if (!IsJson(file))
            continue;
        const QString folder = hasLanguages ? file.section(u'/', 1, 1) : u"pli"_s;
        if (const auto language = LanguageOf(folder))
            Take(TextId(file), *language, {}, GroupOf(file, hasLanguages ? 2 : 1), file);
        else
            ++unknown[u"root/"_s + folder];
    }
    for (const auto &[place, count] : unknown)
        m_report.Find(place, Sentence({u"không phải tiếng Pāli, Việt hay Anh: %1 bài không được nhập",
                                       u"none of the languages Pāli, Vietnamese, English: %1 texts not taken"})
                                 .arg(count));
}

void SegmentedCanon::ListTranslations()
{
    std::map<QString, qsizetype> unknown;
    for (const QString &file : m_folder.FilesBelow(u"translation"_s, m_report)) {
        if (!IsJson(file))
            continue;
        const QString folder = file.section(u'/', 1, 1);
        const bool hasAuthor = file.count(u'/') > 2;
        if (const auto language = LanguageOf(folder); language && file.count(u'/') > 1)
            Take(TextId(file), *language, hasAuthor ? file.section(u'/', 2, 2) : QString(), GroupOf(file, 3), file);
        else
            ++unknown[u"translation/"_s + folder];
    }
    for (const auto &[place, count] : unknown)
        m_report.Find(place, Sentence({u"không phải tiếng Pāli, Việt hay Anh: %1 bài không được nhập",
                                       u"none of the languages Pāli, Vietnamese, English: %1 texts not taken"})
                                 .arg(count));
}

void SegmentedCanon::ListMarkup()
{
    for (const QString &file : m_folder.FilesBelow(u"html"_s, m_report)) {
        if (!IsJson(file))
            continue;
        const auto text = m_texts.find(TextId(file));
        if (text == m_texts.end())
            m_report.Find(file, Sentence({u"định dạng của một bài không có; không nhập",
                                          u"the mark-up of a text that is not there; not taken"}));
        else if (!text->second.markup.isEmpty())
            m_report.Find(
                file, Sentence({u"bài đã có định dạng, %1; không nhập", u"the text has mark-up already, %1; not taken"})
                          .arg(text->second.markup));
        else
            text->second.markup = file;
    }
}

int SegmentedCanon::Rank(const QString &author) const
{
    const qsizetype at = m_authors.indexOf(author);
    return at < 0 ? int(m_authors.size()) : int(at);
}

void SegmentedCanon::Take(const QString &id, Language language, const QString &author, const QString &group,
                          const QString &file)
{
    const auto [text, isNew] = m_texts.try_emplace(id);
    const bool isTranslation = file.startsWith(u"translation/"_s);
    if (isNew)
        text->second.group = group;
    if (isNew && isTranslation)
        m_onlyTranslated.append(id);
    else if (const QString tail = group.isEmpty() ? group : u'/' + group;
             isTranslation && text->second.group.endsWith(tail))
        m_editions.insert(text->second.group.chopped(tail.size()));
    QString &place = text->second.text[size_t(language)];
    QString &placeAuthor = text->second.author[size_t(language)];
    if (!place.isEmpty() && placeAuthor == author) {
        m_report.Find(file,
                      Sentence({u"mã \"%1\" cũng là của %2; không nhập", u"the id \"%1\" is that of %2 too; not taken"})
                          .arg(id, place));
        return;
    }
    // Files in root/ have no author and come first.
    const auto rank = [this](const QString &name) { return std::pair(name.isEmpty() ? -1 : Rank(name), name); };
    const bool isBetter = place.isEmpty() || rank(author) < rank(placeAuthor);
    if (!place.isEmpty())
        ++m_otherAuthors[(isBetter ? place : file).section(u'/', 0, 2)];
    if (isBetter) {
        place = file;
        placeAuthor = author;
    }
}

/// Puts texts that root/ lacks into the groups of the others: there a folder for the edition may come first.
void SegmentedCanon::BringTogether()
{
    if (m_editions.size() != 1 || m_editions.cbegin()->isEmpty())
        return;
    for (const QString &id : std::as_const(m_onlyTranslated)) {
        QString &group = m_texts[id].group;
        group = *m_editions.cbegin() + (group.isEmpty() ? group : u'/' + group);
    }
}

/// Takes away the folders that all texts have in common, such as one for the edition, and leaves one where nothing
/// would be left.
void SegmentedCanon::ShortenGroups()
{
    if (m_texts.empty())
        throw ToolError(Sentence({u"%1: không có bài nào trong root/ hay translation/",
                                  u"%1: there is no text in root/ or translation/"})
                            .arg(m_folder.Path()));
    QStringList common = m_texts.begin()->second.group.split(u'/', Qt::SkipEmptyParts);
    for (const auto &[id, files] : m_texts) {
        const QStringList parts = files.group.split(u'/', Qt::SkipEmptyParts);
        qsizetype same = 0;
        while (same < parts.size() && same < common.size() && parts[same] == common[same])
            ++same;
        // A text needs a group of its own below what is taken away.
        common.resize(qMin(same, qMax<qsizetype>(parts.size() - 1, 0)));
    }
    for (auto &[id, files] : m_texts) {
        files.group = files.group.split(u'/', Qt::SkipEmptyParts).mid(common.size()).join(u'/');
        if (files.group.isEmpty())
            files.group = m_folder.Name();
    }
}

QStringList SegmentedCanon::GroupPaths() const
{
    std::set<QString, decltype(&GroupLess)> paths(&GroupLess);
    for (const auto &[id, files] : m_texts) {
        for (QString path = files.group; !path.isEmpty() && paths.insert(path).second;)
            path = path.section(u'/', 0, -2);
    }
    return {paths.cbegin(), paths.cend()};
}

/// Keys are places in the list of paths, so they ascend in reading order too.
void SegmentedCanon::WriteGroups(const QStringList &paths, NamesTable &names, CanonWriter &writer)
{
    const QHash<QString, LanguageNames> ownNames = GroupNames(paths, m_heads);
    QHash<QString, int> keys;
    for (const QString &path : paths) {
        const int key = static_cast<int>(keys.size()) + 1;
        keys.insert(path, key);
        const QString folder = path.section(u'/', -1);
        QString lastResort = FittingName(folder, path, m_report);
        if (lastResort.isEmpty())
            lastResort = QString::number(key);
        LanguageNames name = ownNames.value(path, {lastResort, lastResort, lastResort});
        names.Apply(names.Has(path) ? path : folder, name);
        writer.Add(CanonGroup{key, keys.value(path.section(u'/', 0, -2), -1), name[size_t(Language::Vietnamese)],
                              name[size_t(Language::Pali)], name[size_t(Language::English)]});
    }
}

SegmentedCanon::Texts SegmentedCanon::InReadingOrder(const QStringList &paths) const
{
    QHash<QString, qsizetype> places;
    QList<qsizetype> parents;
    for (const QString &path : paths) {
        parents.append(places.value(path.section(u'/', 0, -2), -1));
        places.insert(path, places.size());
    }
    Texts texts, ordered;
    QList<ReadingOrder::Text> wanted;
    for (auto text = m_texts.cbegin(); text != m_texts.cend(); ++text) {
        texts.push_back(text);
        wanted.append({places[text->second.group], {}, {text->first}});
    }
    for (const qsizetype at : ReadingOrder::Of(parents, wanted, false))
        ordered.push_back(texts[size_t(at)]);
    return ordered;
}

void SegmentedCanon::WriteTo(CanonWriter &writer, TextKeys &keys, NamesTable &names, Console &console)
{
    const QStringList paths = GroupPaths();
    QHash<QString, int> groups;
    for (const QString &path : paths)
        groups.insert(path, int(groups.size()) + 1);
    const Texts ordered = InReadingOrder(paths);
    QList<TextKeys::Text> wanted;
    for (const auto &text : ordered)
        wanted.append({KeptSource(text->first), {}});
    InOrder<ComposedText> texts;
    auto composeAhead = [&, next = ordered.cbegin()]() mutable {
        for (; next != ordered.cend(); ++next) {
            // Its pages have each text twice.
            const auto bytes = 2 * static_cast<size_t>((*next)->second.Bytes(m_folder));
            if (!texts.HasRoom(bytes))
                return;
            texts.Put(bytes, [this, text = *next] { return ComposeSegmented(m_folder, text->first, text->second); });
        }
    };
    composeAhead();
    const QList<int> textKeys = keys.For(wanted);
    CleaningCounts counts;
    SameNames same;
    int number = 0;
    for (size_t at = 0; at < ordered.size(); ++at) {
        composeAhead();
        ComposedText composed = texts.Take();
        m_report.TakeOver(composed.told);
        counts += composed.counts;
        if (composed.text) {
            CanonText &text = *composed.text;
            const auto &[id, files] = *ordered[at];
            text.idVit = groups[files.group];
            text.idVic = textKeys[qsizetype(at)];
            text.number = ++number;
            LanguageNames own{text.namePali, text.nameVietnamese, text.nameEnglish};
            names.Apply(id, own);
            same.Add(own, composed.number, names.Has(id));
            std::tie(text.namePali, text.nameVietnamese, text.nameEnglish) = std::tie(own[0], own[1], own[2]);
            writer.Add(text, false);
            m_heads.append({files.group, composed.above});
        }
        console.Progress(u"texts"_s, qsizetype(at) + 1, qsizetype(ordered.size()));
    }
    console.EndProgress();
    same.PutNumbersInFront(writer);
    WriteGroups(paths, names, writer);
    m_report.Count(Sentence({u"bài đã đọc", u"texts read"}), qsizetype(ordered.size()));
    if (const qsizetype leftOut = qsizetype(ordered.size()) - number; leftOut > 0)
        m_report.Count(Sentence({u"bài bị bỏ", u"texts left out"}), leftOut);
    counts.Tell(m_report);
}
