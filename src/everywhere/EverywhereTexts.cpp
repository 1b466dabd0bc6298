#include "everywhere/EverywhereTexts.h"

#include "base/InterfaceLanguage.h"
#include "base/Messages.h"
#include "everywhere/EverywhereQuery.h"
#include "stores/Schema.h"

#include <QLocale>
#include <QStringList>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestShown = 60; ///< characters of a word or phrase; a passage may have been pasted

constexpr Message nothingTyped{
    u"Gõ những từ cần tìm. Nhiều từ: tất cả đều có trong một bài. “Trong ngoặc kép”: đúng cụm từ.",
    u"Type the words to find. Several words: all of them in one text. “In quotes”: a phrase."};
constexpr Message nowhere{u"Chưa chọn nơi để tìm.", u"Nowhere to look: switch on a language, the names or the marks."};
constexpr Message sought{u"Tìm %1; %2; %3.", u"Looking for %1; %2; %3."};
constexpr Message inPlaces{u"trong %1", u"in %1"};
constexpr Message everywhere{u"ở khắp nơi", u"everywhere"};
constexpr Message inOneText{u"%1 trong cùng một bài", u"%1 in one text"};
constexpr Message quoted{u"“%1”", u"“%1”"};
constexpr Message andWord{u" và ", u" and "};
constexpr Message anyCase{u"hoa thường như nhau", u"any case"};
constexpr Message exactCase{u"đúng hoa thường", u"exact case"};
constexpr Message anyMarks{u"không kể dấu", u"any accents"};
constexpr Message exactMarks{u"đúng dấu", u"exact accents"};
constexpr Message wholeWords{u"nguyên từ", u"whole words"};
constexpr Message paliPages{u"trang Pāli", u"Pāli pages"};
constexpr Message vietnamesePages{u"trang tiếng Việt", u"Vietnamese pages"};
constexpr Message englishPages{u"trang tiếng Anh", u"English pages"};
constexpr Message namesOfTexts{u"tên bài", u"names of texts"};
constexpr Message ownMarks{u"ghi chép của bạn", u"your marks"};

constexpr Message nothingFound{u"Không tìm thấy", u"Nothing found"};
constexpr Message onePlace{u"1 chỗ", u"1 place"};
constexpr Message places{u"%1 chỗ", u"%1 places"};
constexpr Message inText{u" trong 1 bài", u" in 1 text"};
constexpr Message inTexts{u" trong %1 bài", u" in %1 texts"};
constexpr Message lookedAt{u"đã xem %1/%2", u"%1/%2 looked at"};
constexpr Message unreadable{u"%1 trang không đọc được", u"%1 pages can't be read"};
constexpr Message listCut{u"danh sách chỉ có phần đầu", u"the list has only the first"};

constexpr Message pali{u"Pāli", u"Pāli"};
constexpr Message vietnamese{u"Việt", u"Vietnamese"};
constexpr Message english{u"Anh", u"English"};
constexpr Message parallel{u"Pāli-Việt", u"Pāli-Vietnamese"};
constexpr Message name{u"Tên: %1", u"Name: %1"};
constexpr Message mark{u"Ghi chép: %1", u"Mark: %1"};
constexpr Message title{u"tiêu đề", u"title"};
constexpr Message keywords{u"từ khóa", u"keywords"};
constexpr Message note{u"ghi chú", u"note"};
constexpr Message excerpt{u"trích đoạn", u"excerpt"};

constexpr Message tableCaptions{u"Bài\tNhóm\tỞ đâu\tTrước\tChỗ tìm thấy\tSau",
                                u"Text\tGroup\tWhere\tBefore\tFound\tAfter"};

/// "a, b and c".
QString Joined(QStringList words)
{
    const QString last = words.takeLast();
    return words.isEmpty() ? last : words.join(u", "_s) + TextOrEnglish(andWord) + last;
}

QString HowText(const EverywhereSwitches &switches)
{
    QStringList words{TextOrEnglish(switches.exactCase ? exactCase : anyCase),
                      TextOrEnglish(switches.exactMarks ? exactMarks : anyMarks)};
    if (switches.wholeWords)
        words += TextOrEnglish(wholeWords);
    return words.join(u", "_s);
}

QStringList WhereTexts(const EverywhereSwitches &switches)
{
    const std::pair<bool, const Message &> places[]{{switches.pali, paliPages},
                                                    {switches.vietnamese, vietnamesePages},
                                                    {switches.english, englishPages},
                                                    {switches.names, namesOfTexts},
                                                    {switches.marks, ownMarks}};
    QStringList words;
    for (const auto &[isOn, text] : places)
        if (isOn)
            words += TextOrEnglish(text);
    return words;
}

QString PlacesText(qint64 count)
{
    return count == 1 ? TextOrEnglish(onePlace) : TextOrEnglish(places).arg(QLocale().toString(count));
}

QString NameAndGroup(const EverywhereLine &line)
{
    return line.group.isEmpty() ? line.text : line.text + u"  ·  "_s + line.group;
}

QString Cell(QString text)
{
    for (QChar &character : text)
        if (character.unicode() < 0x20)
            character = u' ';
    return text;
}

} // namespace

QString PageModeName(int mode)
{
    switch (mode) {
    case PageMode::Pali:
        return TextOrEnglish(pali);
    case PageMode::Vietnamese:
        return TextOrEnglish(vietnamese);
    case PageMode::English:
        return TextOrEnglish(english);
    default:
        return TextOrEnglish(parallel);
    }
}

QString SoughtText(const EverywhereQuery &query)
{
    if (query.Parts().isEmpty())
        return TextOrEnglish(nothingTyped);
    const QStringList where = WhereTexts(query.Switches());
    if (where.isEmpty())
        return TextOrEnglish(nowhere);
    QStringList words;
    for (const EverywherePart &part : query.Parts())
        words += TextOrEnglish(quoted).arg(part.typed.size() <= longestShown ? part.typed
                                                                             : part.typed.left(longestShown) + u'…');
    QString what = Joined(words);
    if (words.size() > 1)
        what = TextOrEnglish(inOneText).arg(what);
    const bool isAll = where.size() == WhereTexts({}).size();
    // In one call, because what was typed may hold a "%1".
    return TextOrEnglish(sought).arg(what, HowText(query.Switches()),
                                     isAll ? TextOrEnglish(everywhere) : TextOrEnglish(inPlaces).arg(Joined(where)));
}

QString CountsText(const EverywhereCounts &counts)
{
    const auto number = [](qint64 value) { return QLocale().toString(value); };
    QStringList words;
    if (counts.hits > 0)
        words += PlacesText(counts.hits) +
                 (counts.texts == 1 ? TextOrEnglish(inText) : TextOrEnglish(inTexts).arg(number(counts.texts)));
    else if (!counts.isRunning)
        words += TextOrEnglish(nothingFound);
    if (counts.isRunning)
        words += TextOrEnglish(lookedAt).arg(number(counts.textsDone), number(counts.textsInAll));
    if (counts.failures > 0)
        words += TextOrEnglish(unreadable).arg(number(counts.failures));
    if (counts.isListCut)
        words += TextOrEnglish(listCut);
    return words.join(u"  ·  "_s);
}

QString PlaceText(const EverywhereHit &hit)
{
    if (hit.kind == EverywhereKind::Page)
        return PageModeName(hit.language);
    if (hit.kind == EverywhereKind::Name)
        return TextOrEnglish(name).arg(PageModeName(hit.language));
    switch (hit.field) {
    case EverywhereField::Title:
        return TextOrEnglish(mark).arg(TextOrEnglish(title));
    case EverywhereField::Keywords:
        return TextOrEnglish(mark).arg(TextOrEnglish(keywords));
    case EverywhereField::Note:
        return TextOrEnglish(mark).arg(TextOrEnglish(note));
    default:
        return TextOrEnglish(mark).arg(TextOrEnglish(excerpt));
    }
}

QString ShownName(const EverywhereNames &names)
{
    // The tree's choice: the English interface shows the names in Pāli.
    const QString &own = InterfaceLang == 0 ? names.vietnamese : names.pali;
    const QString &other = InterfaceLang == 0 ? names.pali : names.vietnamese;
    return !own.isEmpty() ? own : !other.isEmpty() ? other : names.english;
}

QString SpokenLine(const EverywhereLine &line)
{
    QStringList words{line.text, line.group};
    if (line.isText)
        words += PlacesText(line.count);
    else
        words = QStringList{line.before + line.hit + line.after, line.place} + words;
    words.removeAll({});
    return words.join(u". "_s);
}

QString ListAsText(const QList<EverywhereLine> &lines, const QString &title)
{
    QString text = title + u'\n';
    for (const EverywhereLine &line : lines) {
        if (line.isText)
            text += u"\n%1 (%2)\n"_s.arg(NameAndGroup(line), QString::number(line.count));
        else
            text += u"  %1: %2\n"_s.arg(line.place, Cell(line.before + line.hit + line.after));
    }
    return text;
}

QString ListAsTable(const QList<EverywhereLine> &lines)
{
    QString text = TextOrEnglish(tableCaptions) + u'\n';
    for (const EverywhereLine &line : lines) {
        if (line.isText)
            continue;
        QStringList cells{line.text, line.group, line.place, line.before, line.hit, line.after};
        for (QString &cell : cells)
            cell = Cell(cell);
        text += cells.join(u'\t') + u'\n';
    }
    return text;
}

QString ListAsPage(const QList<EverywhereLine> &lines, const QString &title)
{
    QString page =
        u"<!DOCTYPE html>\n<html lang=\"%1\">\n<head>\n<meta charset=\"utf-8\">\n<title>%2</title>\n</head>\n"
        "<body>\n<h1>%2</h1>\n"_s.arg(InterfaceLang == 0 ? u"vi"_s : u"en"_s, title.toHtmlEscaped());
    for (const EverywhereLine &line : lines) {
        if (line.isText)
            page += u"<h2>%1 (%2)</h2>\n"_s.arg(NameAndGroup(line).toHtmlEscaped(), QString::number(line.count));
        else
            page += u"<p>%1: %2<b>%3</b>%4</p>\n"_s.arg(line.place.toHtmlEscaped(), line.before.toHtmlEscaped(),
                                                        line.hit.toHtmlEscaped(), line.after.toHtmlEscaped());
    }
    return page + u"</body>\n</html>\n"_s;
}
