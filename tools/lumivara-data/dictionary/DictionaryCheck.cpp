#include "lumivara-data/dictionary/DictionaryCheck.h"

#include "dictionary/WordRules.h"
#include "lumivara-data/dictionary/DictionaryOrder.h"
#include "lumivara-data/files/PageFacts.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestWord = 63;
/// Faults of one sort that are listed: a dictionary in another order would have one for every word.
constexpr qsizetype MostOfASort = 20;

} // namespace

bool CanBeReached(const QString &word)
{
    return word == LowerForm(word) || word == MixedForm(word);
}

QString TagFault(const QByteArray &html)
{
    static const QSet<QString> withoutEnd{u"area"_s, u"base"_s,  u"br"_s,   u"col"_s,  u"embed"_s, u"hr"_s,
                                          u"img"_s,  u"input"_s, u"link"_s, u"meta"_s, u"wbr"_s};
    static const QSet<QString> endOptional{u"p"_s,  u"li"_s, u"dt"_s,    u"dd"_s,    u"tr"_s,
                                           u"td"_s, u"th"_s, u"tbody"_s, u"thead"_s, u"option"_s};
    static const QRegularExpression tag(
        uR"(<!--.*?(?:-->|\z)|<(/?)([A-Za-z][A-Za-z0-9]*)((?:"[^"]*"|'[^']*'|[^<>"'])*)(>?))"_s,
        QRegularExpression::DotMatchesEverythingOption);
    QStringList open;
    QRegularExpressionMatchIterator tags = tag.globalMatch(QString::fromLatin1(html));
    while (tags.hasNext()) {
        const QRegularExpressionMatch match = tags.next();
        const QString name = match.captured(2).toLower();
        if (name.isEmpty())
            continue;
        if (match.captured(4).isEmpty())
            return u"the tag <%1%2 has no end"_s.arg(match.captured(1), name);
        if (withoutEnd.contains(name) || match.captured(3).endsWith(u'/'))
            continue;
        if (match.captured(1).isEmpty()) {
            open.append(name);
            continue;
        }
        while (!open.isEmpty() && open.last() != name && endOptional.contains(open.last()))
            open.removeLast();
        if (open.isEmpty())
            return u"</%1> closes nothing"_s.arg(name);
        if (open.last() != name)
            return u"</%1> comes before </%2>"_s.arg(name, open.last());
        open.removeLast();
    }
    while (!open.isEmpty() && endOptional.contains(open.last()))
        open.removeLast();
    return open.isEmpty() ? QString() : u"<%1> is not closed"_s.arg(open.last());
}

QString DictionaryChecker::RowName(const QString &word) const
{
    return u"dictionary %1, \"%2\""_s.arg(m_kind).arg(word);
}

void DictionaryChecker::Fault(const char *sort, const QString &row, const QString &fault)
{
    if (++m_counts[sort] <= MostOfASort)
        m_findings.append({row, fault});
}

void DictionaryChecker::AddWord(const QString &word)
{
    const QString row = RowName(word);
    ++m_wordCount;
    if (word.isEmpty()) {
        Fault("empty words", u"dictionary %1, row %2"_s.arg(m_kind).arg(m_wordCount), u"the word is empty"_s);
        return;
    }
    if (word.size() > LongestWord)
        Fault("long words", row, u"has %1 characters, more than %2"_s.arg(word.size()).arg(LongestWord));
    if (const quint64 digest = qHash(word, size_t(0)); m_seen.contains(digest) && !m_seenTwice.contains(digest)) {
        m_seenTwice.insert(digest);
        Fault("words twice", row, u"comes more than once"_s);
    } else {
        m_seen.insert(digest);
    }
    if (!CanBeReached(word))
        Fault("words out of reach", row, u"is neither in lower case nor with one capital, so no search finds it"_s);
    const QByteArray key = DictionarySortKey(m_kind, word);
    if (key < m_previousKey)
        Fault("words out of order", row, u"stands after \"%1\""_s.arg(m_previous));
    m_previousKey = key;
    m_previous = word;
}

void DictionaryChecker::AddEntry(const QString &word, const QByteArray &entry, const QByteArray &joined)
{
    const QString row = RowName(word);
    if (entry.trimmed().isEmpty()) {
        Fault("empty entries", row, u"the entry is empty"_s);
        return;
    }
    if (joined.trimmed().isEmpty())
        Fault("empty joined entries", row, u"the entry is empty with several dictionaries"_s);
    if (const qsizetype bad = FirstBadUtf8Byte(entry); bad >= 0)
        Fault("entries not in UTF-8", row, u"the entry is not UTF-8 at byte %1"_s.arg(bad));
    if (const QString fault = TagFault(entry); !fault.isEmpty())
        Fault("entries with unbalanced tags", row, fault);
}

void DictionaryChecker::AddExistence(const QString &word, bool found)
{
    if (!found)
        Fault("words not known to SP_CHECK_WORD", RowName(word),
              u"SP_CHECK_WORD does not know \"%1\""_s.arg(TestedForm(m_kind, word)));
}

void DictionaryChecker::AddFailure(const QString &procedure, const QString &message)
{
    Fault("failures", u"dictionary %1, %2"_s.arg(m_kind).arg(procedure), QString(message).replace(u'\n', u' '));
}

void DictionaryChecker::ReportInto(DictionaryReport &report) const
{
    report.wordCount += m_wordCount;
    report.findings += m_findings;
    QList<QByteArray> sorts = m_counts.keys();
    std::sort(sorts.begin(), sorts.end());
    for (const QByteArray &sort : sorts) {
        const qsizetype count = m_counts[sort];
        report.faultCount += count;
        if (count > MostOfASort) {
            report.findings.append(
                {u"dictionary %1"_s.arg(m_kind), u"%1 %2 in all"_s.arg(count).arg(QString::fromLatin1(sort))});
        }
    }
}
