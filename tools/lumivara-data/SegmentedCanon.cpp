#include "lumivara-data/SegmentedCanon.h"

#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/ImportedPage.h"

#include <algorithm>
#include <future>
#include <set>

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

} // namespace

SegmentedCanon::SegmentedCanon(const SourceFolder &folder, const QStringList &authors, Report &report)
    : m_folder(folder), m_authors(authors), m_report(report)
{
    for (const QString &other : folder.Folders()) {
        if (other != u"root"_s && other != u"translation"_s && other != u"html"_s)
            report.Note(other + u'/', u"not read: only root, translation and html are"_s);
    }
    if (folder.HasFolder(u"root"_s))
        ListRoot();
    if (folder.HasFolder(u"translation"_s))
        ListTranslations();
    if (folder.HasFolder(u"html"_s))
        ListMarkup();
    for (const auto &[place, count] : m_otherAuthors)
        report.Note(place, u"%1 texts left out for another author's"_s.arg(count));
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
    m_report.Note(file, u"no JSON; not read"_s);
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
        m_report.Find(place, u"none of the languages Pāli, Vietnamese, English: %1 texts not taken"_s.arg(count));
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
        m_report.Find(place, u"none of the languages Pāli, Vietnamese, English: %1 texts not taken"_s.arg(count));
}

void SegmentedCanon::ListMarkup()
{
    for (const QString &file : m_folder.FilesBelow(u"html"_s, m_report)) {
        if (!IsJson(file))
            continue;
        const auto text = m_texts.find(TextId(file));
        if (text == m_texts.end())
            m_report.Find(file, u"the mark-up of a text that is not there; not taken"_s);
        else if (!text->second.markup.isEmpty())
            m_report.Find(file, u"the text has mark-up already, %1; not taken"_s.arg(text->second.markup));
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
    if (isNew)
        text->second.group = group;
    QString &place = text->second.text[size_t(language)];
    QString &placeAuthor = text->second.author[size_t(language)];
    if (!place.isEmpty() && placeAuthor == author) {
        m_report.Find(file, u"the id \"%1\" is that of %2 too; not taken"_s.arg(id, place));
        return;
    }
    // What stands in root/ is by nobody and comes first.
    const auto rank = [this](const QString &name) { return std::pair(name.isEmpty() ? -1 : Rank(name), name); };
    const bool isBetter = place.isEmpty() || rank(author) < rank(placeAuthor);
    if (!place.isEmpty())
        ++m_otherAuthors[(isBetter ? place : file).section(u'/', 0, 2)];
    if (isBetter) {
        place = file;
        placeAuthor = author;
    }
}

/// Takes away the folders that all texts have in common, such as one for the edition, and leaves one where nothing
/// would be left.
void SegmentedCanon::ShortenGroups()
{
    if (m_texts.empty())
        throw ToolError(u"%1: there is no text in root/ or translation/"_s.arg(m_folder.Path()));
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

QHash<QString, int> SegmentedCanon::WriteGroups(CanonWriter &writer)
{
    std::set<QString, decltype(&GroupLess)> paths(&GroupLess);
    for (const auto &[id, files] : m_texts) {
        for (QString path = files.group; !path.isEmpty() && paths.insert(path).second;)
            path = path.section(u'/', 0, -2);
    }
    QHash<QString, int> keys;
    for (const QString &path : paths) {
        const int key = int(keys.size()) + 1;
        QString name = FittingName(path.section(u'/', -1), path, m_report);
        if (name.isEmpty())
            name = QString::number(key);
        writer.Add(SourceGroup{key, keys.value(path.section(u'/', 0, -2), -1), name, name, name});
        keys.insert(path, key);
    }
    return keys;
}

void SegmentedCanon::WriteTo(CanonWriter &writer, Console &console)
{
    const QHash<QString, int> groups = WriteGroups(writer);
    std::vector<std::map<QString, Files>::const_iterator> ordered;
    for (auto text = m_texts.cbegin(); text != m_texts.cend(); ++text)
        ordered.push_back(text);
    std::sort(ordered.begin(), ordered.end(), [&](const auto &a, const auto &b) {
        const int left = groups[a->second.group], right = groups[b->second.group];
        return left != right ? left < right : NaturalLess(a->first, b->first);
    });
    // The next text is read and composed while the engine stores this one; no two are composed at once.
    int number = 0;
    const auto compose = [&](size_t at) {
        const auto &[id, files] = *ordered[at];
        std::optional<CanonText> text = Compose(id, files, groups[files.group], number + 1);
        number += text ? 1 : 0;
        return text;
    };
    std::future<std::optional<CanonText>> next;
    for (size_t at = 0; at < ordered.size(); ++at) {
        const std::optional<CanonText> text = at == 0 ? compose(at) : next.get();
        if (at + 1 < ordered.size())
            next = std::async(std::launch::async, compose, at + 1);
        if (text)
            writer.Add(*text, false);
        console.Progress(u"texts"_s, qsizetype(at) + 1, qsizetype(ordered.size()));
    }
    console.EndProgress();
    m_counts.Tell(m_report);
}

std::optional<std::vector<TextSegment>> SegmentedCanon::Read(const QString &file)
{
    if (file.isEmpty())
        return std::nullopt;
    const std::optional<QByteArray> json = m_folder.ReadText(file, m_report);
    if (!json)
        return std::nullopt;
    try {
        return ParseSegments(*json);
    } catch (const SegmentFault &fault) {
        m_report.Find(u"%1:%2"_s.arg(file).arg(fault.Line()), fault.Fault() + u"; not taken"_s);
    }
    return std::nullopt;
}

std::vector<AlignedSegment> SegmentedCanon::Align(const Files &files, bool &hasMarkup)
{
    Alignment alignment;
    const auto tell = [this](const QString &file, const std::vector<QByteArray> &repeated) {
        for (const QByteArray &id : repeated)
            m_report.Find(file, u"the segment \"%1\" comes again; not taken"_s.arg(QString::fromUtf8(id)));
    };
    for (int column = 0; column < LanguageCount; ++column) {
        const QString &file = files.text[size_t(column)];
        std::vector<QByteArray> repeated;
        if (const auto segments = Read(file))
            alignment.AddText(column, *segments, repeated);
        tell(file, repeated);
    }
    std::vector<QByteArray> repeated;
    const auto markup = Read(files.markup);
    hasMarkup = markup && !markup->empty();
    if (markup)
        alignment.AddMarkup(*markup, repeated);
    tell(files.markup, repeated);
    return alignment.Take();
}

std::optional<CanonText> SegmentedCanon::Compose(const QString &id, const Files &files, int group, int number)
{
    bool hasMarkup = false;
    std::vector<AlignedSegment> segments = Align(files, hasMarkup);

    std::array<QByteArray, LanguageCount> titles;
    std::array<QString, LanguageCount> names;
    for (int i = 0; i < LanguageCount; ++i) {
        titles[size_t(i)] = SegmentedPage::Title(segments, Language(i));
        names[size_t(i)] = FittingName(QString::fromUtf8(titles[size_t(i)]), files.text[size_t(i)], m_report);
    }
    for (AlignedSegment &segment : segments) {
        for (QByteArray &words : segment.text)
            words = ImportedPage::Escaped(words);
    }
    const auto named = [&](Language language) {
        for (const Language other : {language, Language::Pali, Language::Vietnamese, Language::English}) {
            if (const QString &name = names[size_t(other)]; !name.isEmpty())
                return name;
        }
        return FittingName(id, id, m_report);
    };
    const auto single = [&](Language language) {
        const QByteArray title =
            titles[size_t(language)].isEmpty() ? named(language).toUtf8() : titles[size_t(language)];
        return SegmentedPage::Single(segments, language, hasMarkup, title, m_counts);
    };
    CanonText text{group, m_keys.For(id), number, named(Language::Pali), named(Language::Vietnamese), {}, {}};
    if (const QString &english = names[size_t(Language::English)]; !english.isEmpty())
        text.nameEnglish = english;
    text.pages[0] = single(Language::Pali);
    text.pages[1] = single(Language::English);
    text.pages[2] = single(Language::Vietnamese);
    if (!text.pages[0].isNull()) {
        const Language other = text.pages[2].isNull() ? Language::English : Language::Vietnamese;
        text.pages[3] = SegmentedPage::Parallel(segments, other, (text.namePali + u" – "_s + named(other)).toUtf8());
    }
    if (text.pages[0].isNull() && text.pages[1].isNull() && text.pages[2].isNull()) {
        m_report.Find(id, u"nothing is left of this text; not taken"_s);
        return std::nullopt;
    }
    return text;
}
