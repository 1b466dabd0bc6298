#include "lumivara-data/sample/SamplePassage.h"

#include "common/Tool.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int LargestRepetition = 100000;

/// Reads one source, line by line.
class Reader
{
public:
    explicit Reader(const QString &fileName) : m_fileName(fileName) {}

    void ReadLine(const QString &text)
    {
        ++m_line;
        const QString line = text.trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            return;
        if (line.startsWith(u'@'))
            ReadMark(line.section(u' ', 0, 0).mid(1), line.section(u' ', 1).trimmed());
        else
            Add(Segment::Kind::Paragraph, {}, line);
    }

    QHash<QString, SamplePassage> Take()
    {
        if (m_repetition)
            Fail(u"@repeat without @end"_s);
        return m_sections;
    }

private:
    [[noreturn]] void Fail(const QString &message) const
    {
        throw ToolError(u"%1:%2: %3"_s.arg(m_fileName).arg(m_line).arg(message));
    }

    void ReadMark(const QString &mark, const QString &rest)
    {
        static const QHash<QString, Segment::Kind> kinds = {
            {u"head"_s, Segment::Kind::Heading}, {u"item"_s, Segment::Kind::Item},
            {u"verse"_s, Segment::Kind::Verse},  {u"row"_s, Segment::Kind::Row},
            {u"note"_s, Segment::Kind::Note},    {u"picture"_s, Segment::Kind::Picture},
        };
        if (mark == u"text"_s || mark == u"form"_s) {
            BeginSection(mark + u' ' + rest);
        } else if (mark == u"repeat"_s) {
            BeginRepetition(rest);
        } else if (mark == u"end"_s) {
            EndRepetition();
        } else if (const auto kind = kinds.constFind(mark); kind == kinds.cend()) {
            Fail(u"there is no mark @%1"_s.arg(mark));
        } else if (*kind == Segment::Kind::Note || *kind == Segment::Kind::Picture) {
            Add(*kind, rest.section(u' ', 0, 0), rest.section(u' ', 1));
        } else {
            Add(*kind, {}, rest);
        }
    }

    void BeginSection(const QString &key)
    {
        if (m_repetition)
            Fail(u"@repeat without @end"_s);
        if (m_sections.contains(key))
            Fail(u"\"%1\" comes twice"_s.arg(key));
        m_key = key;
        m_sections.insert(key, {});
    }

    void BeginRepetition(const QString &count)
    {
        bool isNumber = false;
        m_count = count.toInt(&isNumber);
        if (m_repetition || !isNumber || m_count < 1 || m_count > LargestRepetition)
            Fail(u"@repeat wants a number from 1 to %1 and may not stand in another"_s.arg(LargestRepetition));
        m_repetition.emplace();
    }

    void EndRepetition()
    {
        if (!m_repetition)
            Fail(u"@end without @repeat"_s);
        const SamplePassage body = *m_repetition;
        m_repetition.reset();
        for (int n = 1; n <= m_count; ++n) {
            for (Segment segment : body) {
                for (QString &text : segment.text)
                    text.replace(u"{n}"_s, QString::number(n));
                m_sections[m_key].append(segment);
            }
        }
    }

    void Add(Segment::Kind kind, const QString &argument, const QString &columns)
    {
        if (m_key.isEmpty())
            Fail(u"text before the first @text or @form"_s);
        const QStringList texts = columns.split(u" | "_s);
        if (texts.size() > LanguageCount)
            Fail(u"more than three languages"_s);
        Segment segment{kind, argument, {}};
        for (qsizetype i = 0; i < texts.size(); ++i)
            segment.text[size_t(i)] = texts[i].trimmed();
        (m_repetition ? *m_repetition : m_sections[m_key]).append(segment);
    }

    QString m_fileName;
    int m_line = 0;
    QString m_key;
    QHash<QString, SamplePassage> m_sections;
    std::optional<SamplePassage> m_repetition;
    int m_count = 0;
};

} // namespace

QHash<QString, SamplePassage> ParsePassages(const QString &source, const QString &fileName)
{
    Reader reader(fileName);
    for (const QString &line : source.split(u'\n'))
        reader.ReadLine(line);
    return reader.Take();
}
