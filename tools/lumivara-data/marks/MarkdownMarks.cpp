#include "lumivara-data/marks/MarksReader.h"

#include "common/Interrupt.h"
#include "common/Report.h"
#include "stores/Schema.h"

#include <QDateTime>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView TextHeading("# ");
constexpr QByteArrayView MarkHeading("## ");
constexpr qsizetype QuotedLength = 63; ///< of a faulty line, in a message
const QString Parting = u" · "_s;
/// Joins the lines of a note, as the reader's own key does.
const QString NoteLineEnd = u"\r\n"_s;

bool IsHeading(const QByteArray &line)
{
    return line.startsWith(TextHeading) || line.startsWith(MarkHeading);
}

/// A line as a reader sees it.
QString Plain(const QString &line)
{
    static const QRegularExpression escaped(uR"(\\([!-/:-@\[-`{-~]))"_s);
    return line.trimmed().replace(escaped, u"\\1"_s);
}

int PriorityNamed(const QString &name)
{
    for (const int priority : Priority::All) {
        if (name == PriorityName(priority) || name == QString::number(priority))
            return priority;
    }
    return 0;
}

QString PlainLines(const QStringList &lines, const QString &lineEnd)
{
    QStringList plain;
    for (const QString &line : lines)
        plain.append(Plain(line));
    while (!plain.isEmpty() && plain.last().isEmpty())
        plain.removeLast();
    while (!plain.isEmpty() && plain.first().isEmpty())
        plain.removeFirst();
    return plain.join(lineEnd);
}

/// Takes the lines at the front as long as they are what they are asked to be.
template <typename Condition>
QStringList TakeWhile(QStringList &lines, Condition condition)
{
    const auto end = std::find_if_not(lines.cbegin(), lines.cend(), condition);
    const QStringList taken(lines.cbegin(), end);
    lines.remove(0, taken.size());
    return taken;
}

bool IsBlank(const QString &line)
{
    return line.trimmed().isEmpty();
}

bool IsQuotation(const QString &line)
{
    return line.startsWith(u'>');
}

/// Priority, date and keywords; false if the line does not begin with a priority. A reference before them is for people
/// alone: the excerpt tells where it stands.
bool TakeFacts(const QString &facts, Mark &mark)
{
    QStringList words = facts.split(Parting);
    static const QRegularExpression reference(QRegularExpression::anchoredPattern(uR"(\(\d+(:[\d.-]+)?\))"_s));
    if (reference.match(words.first().trimmed()).hasMatch())
        words.removeFirst();
    if (words.isEmpty())
        return true;
    mark.priority = PriorityNamed(words.takeFirst().trimmed());
    if (!words.isEmpty()) {
        const QDateTime time = QDateTime::fromString(words.first(), u"yyyy-MM-dd HH:mm"_s);
        if (time.isValid())
            mark.time = words.takeFirst() + u":00.0000"_s;
    }
    mark.keywords = words.join(Parting);
    return mark.priority != 0;
}

} // namespace

void KnownTexts::Enter(const QString &name, std::pair<int, int> text)
{
    if (name.isEmpty())
        return;
    const auto known = m_texts.constFind(name);
    m_texts[name] = known == m_texts.constEnd() || *known == text ? text : std::pair(0, 0);
}

void KnownTexts::Add(int collection, int text, const QStringList &names)
{
    QStringList simple;
    for (const QString &name : names) {
        if (const QString plain = name.simplified(); !plain.isEmpty())
            simple.append(plain);
    }
    for (const QString &name : std::as_const(simple))
        Enter(name, {collection, text});
    Enter(simple.join(Parting), {collection, text});
}

bool KnownTexts::Find(const QString &name, Mark &mark) const
{
    static const QRegularExpression numbers(QRegularExpression::anchoredPattern(uR"((\d{1,9})-(\d{1,9}))"_s));
    const auto match = numbers.match(name);
    const auto text = match.hasMatch() ? std::pair(match.captured(1).toInt(), match.captured(2).toInt())
                                       : m_texts.value(name.simplified(), {0, 0});
    mark.collection = text.first;
    mark.text = text.second;
    return text.first > 0 && text.second > 0;
}

MarkdownMarks::MarkdownMarks(QIODevice &device, const QString &fileName, Report &report, const KnownTexts &texts)
    : MarksReader(device, fileName, report), m_texts(texts)
{}

bool MarkdownMarks::ReadNext(MarkAtLine &mark)
{
    for (QByteArray line; m_lines.Next(line);) {
        ThrowIfInterrupted();
        if (line.startsWith(TextHeading)) {
            TakeText(line);
        } else if (line.startsWith(MarkHeading)) {
            if (TakeMark(line, mark))
                return true;
        } else if (!line.trimmed().isEmpty() && !m_strayIsTold) {
            m_report.Find(Place(m_lines.Number()), u"belongs to no mark"_s);
            m_strayIsTold = true;
        }
    }
    return false;
}

void MarkdownMarks::TakeText(const QByteArray &heading)
{
    static const QRegularExpression comment(uR"(\s*<!--\s*(\d+-\d+)\s*-->\s*$)"_s);
    m_text = {};
    m_strayIsTold = false;
    m_isText = heading.isValidUtf8() && !m_lines.IsCut();
    if (!m_isText)
        return;
    QString title = QString::fromUtf8(heading.sliced(TextHeading.size()));
    const auto number = comment.match(title);
    title.remove(comment);
    title = Plain(title);
    m_isText = m_texts.Find(number.hasMatch() ? number.captured(1) : title, m_text);
    if (!number.hasMatch() || title == number.captured(1))
        return;
    // For a list that lacks the text. Which of the names is missing here, nothing tells.
    const QStringList names = title.split(Parting);
    m_text.nameVietnamese = names.value(0);
    m_text.namePali = names.value(1);
    m_text.nameEnglish = names.mid(2).join(Parting);
}

bool MarkdownMarks::ReadBody(QStringList &lines)
{
    qsizetype bytes = 0;
    bool isGood = true;
    for (QByteArray line; m_lines.Next(line);) {
        if (IsHeading(line)) {
            m_lines.GiveBack({line});
            break;
        }
        constexpr qsizetype overhead = 64; // what a line costs beside its letters
        bytes += line.size() + overhead;
        isGood = isGood && line.isValidUtf8() && !m_lines.IsCut() && bytes < LargestMark;
        if (isGood)
            lines.append(QString::fromUtf8(line));
    }
    return isGood;
}

bool MarkdownMarks::Leave(qsizetype line, const QString &fault)
{
    m_report.Find(Place(line), fault);
    return false;
}

bool MarkdownMarks::TakeMark(const QByteArray &heading, MarkAtLine &source)
{
    static const QRegularExpression key(QRegularExpression::anchoredPattern(u"#\\d+"_s));
    source = {m_lines.Number(), m_text};
    Mark &mark = source.mark;
    const bool isCut = m_lines.IsCut();
    QStringList body;
    if (!ReadBody(body) || !heading.isValidUtf8() || isCut)
        return Leave(source.line, u"the mark is not UTF-8, or longer than %1 MiB"_s.arg(LargestMark >> 20));
    if (!m_isText)
        return Leave(source.line, u"stands below no heading that names one text of the list"_s);
    mark.title = Plain(QString::fromUtf8(heading.sliced(MarkHeading.size())));
    if (key.match(mark.title).hasMatch()) // stands for no title
        mark.title.clear();
    TakeWhile(body, IsBlank);
    const QStringList facts = TakeWhile(body, [](const QString &line) { return !IsBlank(line) && !IsQuotation(line); });
    mark.priority = Priority::OfNewMark;
    mark.time = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss.zzz0"_s);
    if (!facts.isEmpty() && !TakeFacts(PlainLines(facts, u"\n"_s), mark))
        return Leave(source.line, u"its first line does not begin with a priority: \"%1\""_s.arg(
                                      facts.first().trimmed().left(QuotedLength)));
    TakeWhile(body, IsBlank);
    QStringList excerpt = TakeWhile(body, IsQuotation);
    for (QString &line : excerpt)
        line.remove(0, 1);
    const QString text = PlainLines(excerpt, u"\n"_s);
    if (FreshExcerptSize(text) > LargestMark)
        return Leave(source.line, TooLarge());
    mark.excerpt = FreshExcerpt(text);
    mark.note = PlainLines(body, NoteLineEnd);
    return IsStorable(source);
}
