#include "lumivara-data/dictionary/DictionaryCheck.h"

#include "base/Messages.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/dictionary/DictionaryOrder.h"
#include "lumivara-data/files/PageFacts.h"
#include "lumivara-data/files/TagReader.h"
#include "stores/Schema.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cctype>

using namespace Qt::StringLiterals;

namespace {

/// Of one sort of fault no more than this is told: a dictionary in another order would have one for every word.
constexpr qsizetype MostOfASort = 20;

} // namespace

bool CanBeReached(const QString &word)
{
    return word == LowerForm(word) || word == MixedForm(word);
}

QString TagFault(const QByteArray &html)
{
    static const QSet<QByteArray> withoutEnd{"area", "base",  "br",   "col",  "embed", "hr",
                                             "img",  "input", "link", "meta", "wbr"};
    static const QSet<QByteArray> endOptional{"p", "li", "dt", "dd", "tr", "td", "th", "tbody", "thead", "option"};
    using Part = TagReader::Part;
    const auto cut = [](QByteArrayView tag) {
        qsizetype end = tag.startsWith("</") ? 2 : 1;
        while (end < tag.size() && std::isalnum(static_cast<unsigned char>(tag[end])))
            ++end;
        return Sentence({u"thẻ %1 không có chỗ kết thúc", u"the tag %1 has no end"})
            .arg(QString::fromLatin1(tag.first(end)).toLower());
    };
    QByteArrayList open;
    TagReader reader(html, TagReader::Manner::Browser);
    for (Part part = reader.Next(); part != Part::End; part = reader.Next()) {
        if (part == Part::Broken)
            return cut(reader.Source());
        if (part != Part::Open && part != Part::Close)
            continue;
        const QByteArray &name = reader.Name();
        const auto holdsTagSign = [](const TagReader::Attribute &attribute) { return attribute.name.contains('<'); };
        if (name.contains('<') || std::any_of(reader.Attributes().begin(), reader.Attributes().end(), holdsTagSign))
            return cut(reader.Source());
        if (withoutEnd.contains(name) || reader.Source().endsWith("/>"))
            continue;
        if (part == Part::Open) {
            open.append(name);
            continue;
        }
        while (!open.isEmpty() && open.last() != name && endOptional.contains(open.last()))
            open.removeLast();
        if (open.isEmpty())
            return Sentence({u"</%1> không đóng thẻ nào", u"</%1> closes nothing"}).arg(QString::fromLatin1(name));
        if (open.last() != name)
            return Sentence({u"</%1> đứng trước </%2>", u"</%1> comes before </%2>"})
                .arg(QString::fromLatin1(name), QString::fromLatin1(open.last()));
        open.removeLast();
    }
    while (!open.isEmpty() && endOptional.contains(open.last()))
        open.removeLast();
    return open.isEmpty()
               ? QString()
               : Sentence({u"<%1> không được đóng", u"<%1> is not closed"}).arg(QString::fromLatin1(open.last()));
}

QString DictionaryChecker::RowName(const QString &word) const
{
    return Sentence({u"từ điển %1, \"%2\"", u"dictionary %1, \"%2\""}).arg(m_kind).arg(word);
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
        Fault("empty words", u"dictionary %1, row %2"_s.arg(m_kind).arg(m_wordCount),
              Sentence({u"từ trống", u"the word is empty"}));
        return;
    }
    if (word.size() > Length::Word)
        Fault("long words", row, u"has %1 characters, more than %2"_s.arg(word.size()).arg(Length::Word));
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
        Fault("empty entries", row, Sentence({u"mục từ trống", u"the entry is empty"}));
        return;
    }
    if (joined.trimmed().isEmpty())
        Fault("empty joined entries", row, u"the entry is empty with several dictionaries"_s);
    if (const qsizetype bad = FirstBadUtf8Byte(entry); bad >= 0)
        Fault("entries not in UTF-8", row,
              Sentence({u"mục từ không phải UTF-8 ở byte %1", u"the entry is not UTF-8 at byte %1"}).arg(bad));
    if (const QString fault = TagFault(entry); !fault.isEmpty())
        Fault("entries with unbalanced tags", row, fault);
}

void DictionaryChecker::AddExistence(const QString &word, bool found)
{
    if (!found)
        Fault("words not known to SP_CHECK_WORD", RowName(word),
              u"SP_CHECK_WORD does not know \"%1\""_s.arg(TestedForm(m_kind, word)));
}

void DictionaryChecker::AddForm(const QString &form, const QString &word, bool isGiven)
{
    const QString row = u"dictionary %1, form \"%2\""_s.arg(m_kind).arg(form);
    ++m_formCount;
    if (!m_seen.contains(qHash(word, size_t(0))))
        Fault("forms without a word", row, u"is of \"%1\", which the list does not have"_s.arg(word));
    if (form != form.toLower())
        Fault("forms not in lower case", row, u"is not in lower case, so no look-up asks for it"_s);
    else if (!isGiven)
        Fault("forms not known to SP_GET_FORMS", row, u"SP_GET_FORMS does not give \"%1\" for it"_s.arg(word));
}

void DictionaryChecker::AddFailure(const QString &procedure, const QString &message)
{
    Fault("failures", u"dictionary %1, %2"_s.arg(m_kind).arg(procedure), QString(message).replace(u'\n', u' '));
}

void DictionaryChecker::ReportInto(DictionaryReport &report) const
{
    report.wordCount += m_wordCount;
    report.formCount += m_formCount;
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
