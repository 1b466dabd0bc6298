#include "lumivara-data/dictionary/WordLines.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "lumivara-data/dictionary/DictionaryWriter.h"
#include "lumivara-data/dictionary/EntryIntake.h"
#include "lumivara-data/files/TextLines.h"
#include "stores/Schema.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr char Literal = '\\';

bool IsBlankSign(char c)
{
    return static_cast<unsigned char>(c) <= ' ';
}

/// Texts of two bytes a character, without a mark that says so, would lose letters.
QString ZeroByte()
{
    return Sentence(
        {u"có byte không, nên không phải là UTF-8; bị bỏ", u"holds a zero byte, so it is no UTF-8; left out"});
}

void DropLineEnd(QByteArray &line)
{
    if (line.endsWith('\n'))
        line.chop(1);
    if (line.endsWith('\r') && !line.startsWith(Literal))
        line.chop(1);
}

/// Lines of an entry put together: blank ones at both ends and blanks at the ends of the whole go, but for what a
/// backslash keeps.
class LinesOfEntry
{
public:
    void Add(const QByteArray &line)
    {
        if (m_content.size() > DictionaryWriter::LongestEntry)
            return;
        const bool isLiteral = line.startsWith(Literal);
        QByteArray text = isLiteral ? line.mid(1) : line;
        if (!isLiteral && !m_hasBegun) {
            text = WithoutBlanksInFront(text);
            if (text.isEmpty())
                return;
        }
        if (m_hasBegun)
            m_content += '\n';
        m_hasBegun = true;
        m_content += text;
        if (isLiteral)
            m_kept = m_content.size();
    }
    QByteArray Take()
    {
        while (m_content.size() > m_kept && IsBlankSign(m_content.back()))
            m_content.chop(1);
        return std::exchange(m_content, {});
    }

private:
    static QByteArray WithoutBlanksInFront(const QByteArray &line)
    {
        qsizetype at = 0;
        while (at < line.size() && IsBlankSign(line[at]))
            ++at;
        return line.mid(at);
    }

    QByteArray m_content;
    qsizetype m_kept = 0; ///< bytes that are not trimmed
    bool m_hasBegun = false;
};

} // namespace

void MarkUpWords::ReadHead(const QByteArray &line)
{
    constexpr QByteArrayView heading("dictionary ");
    if (line.startsWith(heading)) {
        m_kind = line.mid(heading.size()).trimmed().toInt();
        if (!IsOneOf(DictKind::All, m_kind))
            m_fault(m_lines.Number(),
                    Sentence({u"loại phải là một số từ 1 đến 8", u"the kind is a number from 1 to 8"}));
    } else if (!line.trimmed().isEmpty() && !line.startsWith('#')) {
        m_fault(m_lines.Number(), Sentence({u"có chữ trước từ đầu tiên", u"text before the first word"}));
    }
}

bool MarkUpWords::Next(Word &word)
{
    const bool isThere = m_nextWord.has_value();
    if (isThere)
        word.name = *std::exchange(m_nextWord, std::nullopt);
    word.line = m_nextLine;
    LinesOfEntry lines;
    QByteArray line;
    while (!m_nextWord && m_lines.Next(line)) {
        DropLineEnd(line);
        if (line.startsWith("% ")) {
            m_nextWord = line.mid(2).trimmed();
            m_nextLine = m_lines.Number();
        } else if (isThere) {
            lines.Add(line);
        } else {
            ReadHead(line);
        }
    }
    if (!isThere)
        return m_nextWord.has_value() && Next(word);
    word.content = lines.Take();
    return true;
}

QByteArray MarkUpWords::Written(const QByteArray &content)
{
    QByteArray written;
    const QByteArrayList lines = content.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray &line = lines[i];
        const bool isOuter = i == 0 || i + 1 == lines.size();
        if (line.startsWith(Literal) || line.startsWith("% ") || line.endsWith('\r') ||
            (isOuter && (line.isEmpty() || IsBlankSign(line.front()) || IsBlankSign(line.back()))))
            written += Literal;
        written += line + '\n';
    }
    return written;
}

void AppendEscapedEntry(QByteArray &line, QByteArrayView content)
{
    constexpr QByteArrayView signs("\\\n\r\t");
    constexpr QByteArrayView names("\\nrt");
    qsizetype plain = 0;
    for (qsizetype at = 0; at < content.size(); ++at) {
        const char c = content[at];
        if (static_cast<unsigned char>(c) > '\r' && c != '\\')
            continue;
        const qsizetype sign = signs.indexOf(c);
        if (sign < 0)
            continue;
        line.append(content.sliced(plain, at - plain));
        line += '\\';
        line += names[sign];
        plain = at + 1;
    }
    line.append(content.sliced(plain));
}

QByteArray UnescapedEntry(QByteArrayView text)
{
    QByteArray content;
    content.reserve(text.size());
    qsizetype plain = 0;
    for (qsizetype at = text.indexOf('\\'); at >= 0; at = text.indexOf('\\', at)) {
        const char next = at + 1 < text.size() ? text[at + 1] : '\0';
        const char meant = next == 'n' ? '\n' : next == 't' ? '\t' : next == 'r' ? '\r' : next == '\\' ? '\\' : '\0';
        if (!meant) {
            ++at;
            continue;
        }
        content += text.sliced(plain, at - plain);
        content += meant;
        plain = at += 2;
    }
    return content += text.sliced(plain);
}

namespace {

/// Calls `take` with both cells of each line that has them. `withoutTab` is told of a line that has one cell.
void EachTabbedLine(QIODevice &device, const QString &fileName, EntryIntake &intake,
                    const std::function<void()> &progress, const QString &withoutTab,
                    const std::function<void()> &count,
                    const std::function<void(QByteArrayView, QByteArrayView, const SourcePlace &)> &take)
{
    TextLines lines(device, fileName);
    if (lines.WasConverted())
        intake.Told().Note(fileName, Sentence({u"được chuyển từ UTF-16", u"converted from UTF-16"}));
    QByteArray line;
    while (lines.Next(line)) {
        progress();
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        if (line.trimmed().isEmpty())
            continue;
        count();
        const SourcePlace place{fileName, lines.Number()};
        const qsizetype tab = line.indexOf('\t');
        if (lines.IsCut())
            intake.Told().Find(place.Text(),
                               Sentence({u"dòng dài hơn %1 byte; bị bỏ", u"the line is longer than %1 bytes; left out"})
                                   .arg(TextLines::MostBytes));
        else if (line.contains('\0'))
            intake.Told().Find(place.Text(), ZeroByte());
        else if (tab < 0)
            intake.Told().Find(place.Text(), withoutTab);
        else
            take(QByteArrayView(line).first(tab), QByteArrayView(line).sliced(tab + 1), place);
    }
}

} // namespace

void TakeTabbedWords(QIODevice &device, const QString &fileName, EntryIntake &intake,
                     const std::function<void()> &progress)
{
    EachTabbedLine(
        device, fileName, intake, progress,
        Sentence({u"không có dấu tab giữa từ và mục từ; bị bỏ", u"there is no tab between word and entry; left out"}),
        [&] { intake.CountRead(1); },
        [&](QByteArrayView word, QByteArrayView entry, const SourcePlace &place) {
            intake.Take(UnescapedEntry(word), UnescapedEntry(entry), place);
        });
}

void TakeTabbedForms(QIODevice &device, const QString &fileName, EntryIntake &intake,
                     const std::function<void()> &progress)
{
    EachTabbedLine(
        device, fileName, intake, progress,
        Sentence({u"không có dấu tab giữa dạng từ và từ; bị bỏ", u"there is no tab between form and word; left out"}),
        [&] { intake.CountFormsRead(1); },
        [&](QByteArrayView form, QByteArrayView word, const SourcePlace &place) {
            intake.TakeForm(UnescapedEntry(form), UnescapedEntry(word), place);
        });
}

void TakeMarkUpWords(QIODevice &device, const QString &fileName, EntryIntake &intake,
                     const std::function<void()> &progress)
{
    TextLines lines(device, fileName);
    if (lines.WasConverted())
        intake.Told().Note(fileName, Sentence({u"được chuyển từ UTF-16", u"converted from UTF-16"}));
    MarkUpWords words(lines, [&](qsizetype line, const QString &fault) {
        intake.Told().Find(SourcePlace{fileName, line}.Text(), fault);
    });
    MarkUpWords::Word word;
    bool isFirst = true;
    while (words.Next(word)) {
        progress();
        intake.CountRead(1);
        if (std::exchange(isFirst, false) && words.Kind() != 0 && words.Kind() != intake.Kind())
            intake.Told().Note(fileName, Sentence({u"tự ghi là từ điển %1, được nhập vào %2",
                                                   u"says that it is dictionary %1, taken as %2"})
                                             .arg(words.Kind())
                                             .arg(intake.Kind()));
        if (const SourcePlace place{fileName, word.line}; word.name.contains('\0') || word.content.contains('\0'))
            intake.Told().Find(place.Text(), ZeroByte());
        else
            intake.Take(word.name, word.content, place);
    }
}
