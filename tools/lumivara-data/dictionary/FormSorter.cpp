#include "lumivara-data/dictionary/FormSorter.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/dictionary/DictionaryOrder.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/// Ends a key, a word and a form, which hold none.
constexpr char End = '\0';

void MakeHead(QByteArray &head, int kind, QByteArrayView sortKey, QByteArrayView word)
{
    head.resize(0);
    head += char(kind);
    head.append(sortKey);
    head += End;
    head.append(word);
    head += End;
}

void AppendNumber(QByteArray &record, int number)
{
    char bytes[sizeof(qint32)];
    qToBigEndian<qint32>(number, bytes);
    record.append(bytes, sizeof bytes);
}

/// What stands in a record by word: kind, key, word, the place with the higher byte first, form.
struct ByWord
{
    explicit ByWord(QByteArrayView record)
    {
        const qsizetype word = record.indexOf(End, 1) + 1;
        const qsizetype end = record.indexOf(End, word);
        head = record.first(end + 1);
        name = record.sliced(word, end - word);
        place = record.sliced(end + 1, sizeof(qint32));
        form = record.sliced(end + 1 + qsizetype(sizeof(qint32)));
    }
    QByteArrayView head, name, place, form;
};

int Compare(QByteArrayView a, QByteArrayView b)
{
    const int order = std::memcmp(a.data(), b.data(), static_cast<size_t>(std::min(a.size(), b.size())));
    return order != 0 ? order : a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

void Find(Report *report, int kind, QByteArrayView form, const QString &fault)
{
    const QString place =
        Sentence({u"từ điển %1, dạng từ \"%2\"", u"dictionary %1, form \"%2\""}).arg(kind).arg(QString::fromUtf8(form));
    if (!report)
        throw ToolError(place + u": "_s + fault);
    report->Find(place, fault);
}

} // namespace

void FormSorter::Add(int kind, const QString &form, const QString &word)
{
    MakeHead(m_record, kind, DictionarySortKey(kind, word), word.toUtf8());
    AppendNumber(m_record, static_cast<int>(m_byWord.Count()) + 1);
    m_record += form.toUtf8();
    m_byWord.Add(m_record);
}

bool FormSorter::NextByWord()
{
    return m_byWord.Count() > 0 && m_byWord.Next(m_next);
}

void FormSorter::SortByWord()
{
    m_byWord.Sort();
    m_isThere = NextByWord();
}

void FormSorter::TellWithoutWord(Report *report) const
{
    const ByWord next(m_next);
    Find(report, static_cast<uchar>(m_next.front()), next.form,
         Sentence({u"không có từ \"%1\"; bị bỏ", u"there is no word \"%1\"; left out"})
             .arg(QString::fromUtf8(next.name)));
}

void FormSorter::Meet(int kind, QByteArrayView sortKey, QByteArrayView word, Report *report)
{
    if (!m_isThere)
        return;
    MakeHead(m_head, kind, sortKey, word);
    for (; m_isThere; m_isThere = NextByWord()) {
        const ByWord next(m_next);
        const int order = Compare(next.head, m_head);
        if (order > 0)
            return;
        if (order < 0) {
            TellWithoutWord(report);
            continue;
        }
        m_record.resize(0);
        m_record += m_next.front();
        m_record.append(next.form);
        m_record += End;
        m_record.append(next.place);
        m_record.append(next.name);
        m_byForm.Add(m_record);
    }
}

void FormSorter::SortByForm(Report *report)
{
    for (; m_isThere; m_isThere = NextByWord())
        TellWithoutWord(report);
    m_byForm.Sort();
}

bool FormSorter::Next(Form &form, Report *report)
{
    QByteArrayView record;
    while (m_byForm.Count() > 0 && m_byForm.Next(record)) {
        const qsizetype end = record.indexOf(End, 1);
        const QByteArrayView key = record.first(end);
        const QByteArrayView word = record.sliced(end + 1 + qsizetype(sizeof(qint32)));
        if (key != QByteArrayView(m_lastForm)) {
            m_lastForm = key.toByteArray();
            m_wordsOfLast.clear();
        }
        const bool isKnown = std::find(m_wordsOfLast.begin(), m_wordsOfLast.end(), word) != m_wordsOfLast.end();
        if (isKnown)
            continue;
        form.kind = static_cast<uchar>(record.front());
        form.form = key.sliced(1).toByteArray();
        if (static_cast<qsizetype>(m_wordsOfLast.size()) == MostWordsOfForm) {
            Find(report, form.kind, form.form,
                 Sentence({u"có hơn %1 từ; \"%2\" bị bỏ", u"has more than %1 words; \"%2\" is left out"})
                     .arg(MostWordsOfForm)
                     .arg(QString::fromUtf8(word)));
            continue;
        }
        m_wordsOfLast.push_back(word.toByteArray());
        form.word = m_wordsOfLast.back();
        form.place = qFromBigEndian<qint32>(record.data() + end + 1);
        return true;
    }
    return false;
}
