#include "dictionary/EntryFormatter.h"

#include <QByteArrayView>

#include <algorithm>
#include <cstring>

namespace {

/// The last bytes of a line, in which a plus is ignored.
constexpr qsizetype UnseenTail = 2;
constexpr char NoKind = '\0';

QByteArrayView Trimmed(QByteArrayView line)
{
    const auto isBlank = [](char character) { return static_cast<unsigned char>(character) <= ' '; };
    while (!line.empty() && isBlank(line.front()))
        line = line.sliced(1);
    while (!line.empty() && isBlank(line.back()))
        line.chop(1);
    return line;
}

/// The next of a sign from `begin` on, or `end`.
const char *Find(char sign, const char *begin, const char *end)
{
    const void *found = begin == end ? nullptr : std::memchr(begin, sign, static_cast<size_t>(end - begin));
    return found ? static_cast<const char *>(found) : end;
}

/// The trimmed lines of a text, split at CR LF, CR and LF. An empty last line does not count.
class LineSource
{
public:
    explicit LineSource(QByteArrayView text)
        : m_rest(text), m_return(Find('\r', text.data(), text.data() + text.size())),
          m_feed(Find('\n', text.data(), text.data() + text.size()))
    {}

    bool AtEnd() const { return m_rest.empty(); }
    /// The next line; an empty one past the end.
    QByteArrayView Next()
    {
        const char *begin = m_rest.data();
        const char *end = begin + m_rest.size();
        // Each line end is searched for only once, so that a text without CR or LF is not scanned again for each line.
        if (m_return < begin)
            m_return = Find('\r', begin, end);
        if (m_feed < begin)
            m_feed = Find('\n', begin, end);
        const char *stop = std::min(m_return, m_feed);
        const QByteArrayView line(begin, std::min<qsizetype>(stop - begin, LongestEntryLine));
        if (stop != end)
            stop += *stop == '\r' && stop + 1 != end && stop[1] == '\n' ? 2 : 1;
        m_rest = QByteArrayView(stop, end - stop);
        return Trimmed(line);
    }

private:
    QByteArrayView m_rest;
    const char *m_return;
    const char *m_feed;
};

char KindOf(QByteArrayView line)
{
    return line.empty() ? NoKind : line.front();
}

/// A line split at its plus sign: word and translation.
struct PlusSplit
{
    QByteArrayView front;
    QByteArrayView back;
};

PlusSplit SplitAtPlus(QByteArrayView line)
{
    PlusSplit split{line.sliced(1), {}};
    const char *begin = line.data() + 1;
    const char *end = line.data() + std::max<qsizetype>(line.size() - UnseenTail, 1);
    const char *first = Find('+', begin, end);
    if (first == end)
        return split;
    split.front = QByteArrayView(begin, first - begin);
    // With a second plus there is no translation.
    if (Find('+', first + 1, end) == end)
        split.back = QByteArrayView(first + 1, line.data() + line.size() - first - 1);
    return split;
}

class Formatter
{
public:
    Formatter(QByteArrayView entry, const QString &fontName) : m_lines(entry)
    {
        MakeRoom(2 * entry.size() + 1024);
        Add("<HTML>");
        Add("<BODY>");
        Add("<head>");
        Add("<title></title>");
        Add("<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />");
        Add("<font face=\"", fontName.toUtf8(), "\">");
    }

    QByteArray Run()
    {
        // An empty text has no line, and its one look-ahead is no line either.
        QByteArrayView next;
        bool hasNext = !m_lines.AtEnd();
        if (hasNext)
            next = m_lines.Next();
        while (hasNext) {
            const QByteArrayView line = next;
            hasNext = !m_lines.AtEnd();
            next = hasNext ? m_lines.Next() : QByteArrayView();
            m_next = KindOf(next);
            AddLine(line);
            m_previous = KindOf(line);
        }
        Add("</ul>");
        Add("</FONT>");
        Add("</BODY>");
        Add("</HTML>");
        m_page.truncate(m_size);
        return std::move(m_page);
    }

private:
    template <typename... Parts>
    void Add(const Parts &...parts)
    {
        const QByteArrayView lineEnd("\r\n", 2);
        const qsizetype needed = (QByteArrayView(parts).size() + ... + lineEnd.size());
        if (m_page.size() - m_size < needed)
            MakeRoom(needed);
        char *place = m_page.data() + m_size;
        ((place = Put(place, QByteArrayView(parts))), ...);
        Put(place, lineEnd);
        m_size += needed;
    }
    static char *Put(char *place, QByteArrayView part)
    {
        if (!part.empty())
            std::memcpy(place, part.data(), static_cast<size_t>(part.size()));
        return place + part.size();
    }
    void MakeRoom(qsizetype bytes) { m_page.resize(std::max(2 * m_size, m_size + bytes)); }
    void OpenList() { Add("<ul>"); }
    void CloseLists(int count)
    {
        for (int list = 0; list < count; ++list)
            Add("</ul>");
    }
    bool NextIs(char kind) const { return m_next == kind; }

    void AddLine(QByteArrayView line)
    {
        switch (KindOf(line)) {
        case '@':
            Add("<em>", line.sliced(1), "<br /></em>");
            OpenList();
            break;
        case '*':
            AddClass(line.sliced(1));
            break;
        case '-':
            m_inPhrase = m_inPhrase || m_previous == '!';
            if (m_inPhrase)
                AddSenseInPhrase(line.sliced(1));
            else
                AddSense(SplitAtPlus(line));
            break;
        case '!':
            AddPhrase(line.sliced(1));
            break;
        case '=':
            if (m_inPhrase)
                AddExampleInPhrase(SplitAtPlus(line));
            else
                AddExample(SplitAtPlus(line));
            break;
        case '#':
            Add("<font color=\"#004586\">");
            Add("<br><b><i><u>", line.sliced(1), ": ", "</u><br/></i></b></font>");
            break;
        default:
            Add(line);
        }
    }

    void AddClass(QByteArrayView body)
    {
        m_inPhrase = false;
        Add("<li><P STYLE=\"margin-top: 0.2in\">");
        Add("<b><i>", body, "<br /></b></i></P>");
        if (!NextIs('*'))
            OpenList();
    }

    void AddSense(const PlusSplit &sense)
    {
        Add("<li><font color=\"#cc0000\">");
        if (sense.back.empty())
            Add("<b>", sense.front, "<br /></b></font>");
        else
            Add("<b>", sense.front, ": ", sense.back, "<br /></b></font>");
        if (NextIs('*'))
            CloseLists(1);
        else if (NextIs('='))
            OpenList();
        else if (NextIs('!'))
            m_inPhrase = true;
    }

    void AddSenseInPhrase(QByteArrayView body)
    {
        Add("<li><b>", body, "<br /></b>");
        m_inPhrase = NextIs('-') || NextIs('=');
        if (NextIs('='))
            OpenList();
        else if (!m_inPhrase)
            CloseLists(NextIs('!') ? 1 : 2);
    }

    void AddPhrase(QByteArrayView body)
    {
        Add("<li><font color=\"#cc0000\">");
        Add("<b><i>", body, "<br /></i></b></font>");
        if (NextIs('-') || NextIs('=')) {
            OpenList();
            m_inPhrase = true;
        } else if (NextIs('*')) {
            CloseLists(1);
        }
    }

    void AddExample(const PlusSplit &example)
    {
        Add("<li>");
        if (example.back.empty())
            Add("<b>", example.front, "</b><br />");
        else
            Add("<b>", example.front, ": </b>", example.back, "<br />");
        if (NextIs('-') || NextIs('!'))
            CloseLists(1);
        else if (NextIs('*'))
            CloseLists(2);
    }

    void AddExampleInPhrase(const PlusSplit &example)
    {
        Add("<li>");
        Add("<b>", example.front, ": </b>", example.back, "<br />");
        // The state ends with the class that follows alone.
        if (NextIs('-'))
            CloseLists(1);
        else if (NextIs('!'))
            CloseLists(2);
        else if (NextIs('*')) {
            m_inPhrase = false;
            CloseLists(3);
        }
    }

    LineSource m_lines;
    QByteArray m_page;    ///< with room behind what is written
    qsizetype m_size = 0; ///< written
    char m_previous = NoKind;
    char m_next = NoKind;
    bool m_inPhrase = false;
};

} // namespace

QByteArray FormatEntry(const QByteArray &entry, const QString &fontName)
{
    return Formatter(entry, fontName).Run();
}

QString EntryStyle()
{
    return QStringLiteral("body {\r\n"
                          "    background-color: %0:s;\r\n"
                          "    color: %1:s;\r\n"
                          "    font-family: \"%2:s\";\r\n"
                          "    font-size: %3:dpt;\r\n"
                          "    margin: 14px;\r\n"
                          "}\r\n"
                          "h1 {\r\n"
                          "    font-size: %3:dpt;\r\n"
                          "    font-weight: bold;\r\n"
                          "    text-align: center;\r\n"
                          "}\r\n"
                          "input#button {\r\n"
                          "    color: %1:s;\r\n"
                          "    font-family: \"%2:s\";\r\n"
                          "    font-size: %3:dpt;\r\n"
                          "}\r\n"
                          ".ruled {\r\n"
                          "    border-bottom: %4:s solid 2px;\r\n"
                          "    padding-bottom: 6px;\r\n"
                          "}");
}
