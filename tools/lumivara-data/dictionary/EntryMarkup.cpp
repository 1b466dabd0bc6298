#include "lumivara-data/dictionary/EntryMarkup.h"

#include "lumivara-data/files/TagReader.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <utility>

namespace {

/// The formatter reads 4096 bytes of a line; marks and the line's end take some.
constexpr qsizetype LongestText = 4000;
/// What may follow a word on its head line.
constexpr qsizetype LongestHeadRest = 60;
constexpr QByteArrayView Marks("@*-!=#");

QByteArrayView EntityOf(char c, bool escapesPlus)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '+':
        return escapesPlus ? QByteArrayView("&#43;") : QByteArrayView();
    default:
        return {};
    }
}

void AppendEscaped(QByteArray &to, QByteArrayView text, bool escapesPlus)
{
    qsizetype plain = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QByteArrayView entity = EntityOf(text[at], escapesPlus);
        if (entity.isEmpty())
            continue;
        to.append(text.sliced(plain, at - plain)).append(entity);
        plain = at + 1;
    }
    to.append(text.sliced(plain));
}

QByteArray Escaped(QByteArrayView text, bool escapesPlus = false)
{
    QByteArray escaped;
    AppendEscaped(escaped, text, escapesPlus);
    return escaped;
}

/// Where to break a long line: at a blank, else before a character that stands in no tag or entity.
qsizetype BreakOf(QByteArrayView text)
{
    const qsizetype blank = text.lastIndexOf(' ', LongestText);
    if (blank > LongestText / 2)
        return blank;
    qsizetype at = LongestText;
    while (at > LongestText - 4 && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80)
        --at;
    constexpr qsizetype longestInside = 10;
    for (qsizetype back = at - 1; back > at - longestInside; --back) {
        if (text[back] == '>' || text[back] == ';')
            break;
        if (text[back] == '<' || text[back] == '&')
            return back;
    }
    return at;
}

/// "1." or "12)" in front of a sense.
bool IsNumbered(QByteArrayView line)
{
    qsizetype at = 0;
    while (at < line.size() && at < 2 && line[at] >= '0' && line[at] <= '9')
        ++at;
    return at > 0 && at + 1 < line.size() && (line[at] == '.' || line[at] == ')') && line[at + 1] == ' ';
}

/// Elements whose content is nothing to read.
bool HoldsNoText(const QByteArray &name)
{
    static const char *const names[] = {"script", "style", "head",  "title", "iframe",   "object",
                                        "svg",    "audio", "video", "rref",  "template", "noscript"};
    return std::any_of(std::begin(names), std::end(names), [&](const char *known) { return name == known; });
}

/// Calls `take` for each line that is not blank, without the blanks at its ends, until that returns false.
template <typename Take>
void EachLine(QByteArrayView text, Take take)
{
    qsizetype begin = 0;
    for (qsizetype at = 0; at <= text.size(); ++at) {
        if (at < text.size() && text[at] != '\n' && text[at] != '\r')
            continue;
        const QByteArrayView line = text.sliced(begin, at - begin).trimmed();
        begin = at + 1;
        if (!line.isEmpty() && !take(line))
            return;
    }
}

} // namespace

EntryMarkup::EntryMarkup(const QByteArray &word) : m_word(word) {}

bool EntryMarkup::IsHead(QByteArrayView text) const
{
    if (m_word.isEmpty() || text.size() < m_word.size() || text.size() > m_word.size() + LongestHeadRest ||
        qstrnicmp(text.data(), m_word.size(), m_word.constData(), m_word.size()) != 0)
        return false;
    return text.size() == m_word.size() || QByteArrayView(" ,;:/[(").contains(text[m_word.size()]);
}

void EntryMarkup::AddSound(QByteArrayView text, char open, char close)
{
    const QByteArray sound = text.toByteArray().simplified();
    if (!sound.isEmpty())
        m_sounds += QByteArray(" ") + open + Escaped(sound) + close;
}

void EntryMarkup::AddLine(char mark, QByteArrayView text)
{
    if (mark == '@' && m_head.isEmpty() && m_lines.isEmpty() && text.size() <= LongestText) {
        m_head = text.toByteArray();
        return;
    }
    if (mark)
        m_lines += mark;
    for (bool isPlain = mark == '\0';; isPlain = true) {
        if (isPlain && !text.isEmpty() && Marks.contains(text.front())) {
            m_lines += "&#" + QByteArray::number(text.front()) + ';';
            text = text.sliced(1);
        }
        if (text.size() <= LongestText)
            break;
        const qsizetype end = BreakOf(text);
        m_lines += text.first(end);
        m_lines += '\n';
        // What goes on is a plain line.
        text = text.sliced(end);
        while (text.startsWith(' '))
            text = text.sliced(1);
    }
    m_lines += text;
    m_lines += mark ? "\n" : "<br />\n";
}

void EntryMarkup::AddPlain(QByteArrayView text)
{
    bool isMarkedUp = false;
    EachLine(text, [&](QByteArrayView line) {
        isMarkedUp = line.front() == '@' || line.front() == '*';
        return !isMarkedUp;
    });
    // Each further reserve would copy what is there, and a text may have a part for each of its bytes.
    if (m_lines.isEmpty())
        m_lines.reserve(text.size() + text.size() / 8);
    QByteArray escaped;
    EachLine(text, [&](QByteArrayView line) {
        const bool isMarked = isMarkedUp ? Marks.contains(line.front()) : line.startsWith("- ");
        const bool isHead = !isMarked && m_head.isEmpty() && m_lines.isEmpty() && IsHead(line);
        const bool isSense = !isMarked && !isHead && IsNumbered(line);
        char mark = '\0';
        escaped.resize(0);
        if (isMarked) {
            mark = line.front();
            line = line.sliced(1);
        } else if (isHead) {
            mark = '@';
        } else if (isSense) {
            mark = '-';
            escaped += ' ';
        }
        AppendEscaped(escaped, line, isMarked ? !isMarkedUp : isSense);
        AddLine(mark, escaped);
        return true;
    });
}

QByteArray EntryMarkup::Take()
{
    if (m_head.isEmpty() && m_sounds.isEmpty() && m_lines.isEmpty())
        return {};
    QByteArray entry = '@' + (m_head.isEmpty() ? Escaped(m_word) : m_head) + m_sounds + '\n' + m_lines;
    entry.chop(1);
    return entry;
}

/// Puts a tagged text into lines.
class TaggedLines
{
public:
    TaggedLines(EntryMarkup &entry, TagDialect dialect) : m_entry(entry), m_dialect(dialect) {}

    void Run(QByteArrayView text)
    {
        using Part = TagReader::Part;
        TagReader reader(text, TagReader::Manner::Forgiving);
        for (Part part = reader.Next(); part != Part::End; part = reader.Next()) {
            if (part == Part::Text)
                AddText(WithoutEntities(reader.Source()));
            else if (part == Part::Close)
                Close(reader.Name());
            else if (part == Part::Open && !HoldsNoText(reader.Name()))
                Open(reader.Name());
            else if (part == Part::Open && !reader.Source().endsWith("/>"))
                reader.TakeRawText();
        }
        EndLine();
    }

private:
    enum Style { Bold, Italic, Raised, Lowered, StyleCount };
    enum class Meaning {
        None,
        Bold,
        Italic,
        Raised,
        Lowered,
        Break,
        Block,
        List,
        Item,
        Quote,
        Term,
        Description,
        Heading,
        Cell,
        Keep,
        Key,
        Definition,
        Grammar,
        Sound,
        Translation
    };

    static Meaning MeaningOf(const QByteArray &tag, TagDialect dialect)
    {
        static const QHash<QByteArray, Meaning> common{
            {"b", Meaning::Bold},      {"strong", Meaning::Bold}, {"i", Meaning::Italic},
            {"em", Meaning::Italic},   {"cite", Meaning::Italic}, {"sup", Meaning::Raised},
            {"sub", Meaning::Lowered}, {"br", Meaning::Break},    {"abr", Meaning::Italic}};
        static const QHash<QByteArray, Meaning> html{
            {"p", Meaning::Block},        {"div", Meaning::Block},        {"hr", Meaning::Block},
            {"table", Meaning::Block},    {"section", Meaning::Block},    {"article", Meaning::Block},
            {"center", Meaning::Block},   {"tr", Meaning::Block},         {"td", Meaning::Cell},
            {"th", Meaning::Cell},        {"ul", Meaning::List},          {"ol", Meaning::List},
            {"li", Meaning::Item},        {"blockquote", Meaning::Quote}, {"dt", Meaning::Term},
            {"dd", Meaning::Description}, {"h1", Meaning::Heading},       {"h2", Meaning::Heading},
            {"h3", Meaning::Heading},     {"h4", Meaning::Heading},       {"h5", Meaning::Heading},
            {"h6", Meaning::Heading},     {"pre", Meaning::Keep}};
        static const QHash<QByteArray, Meaning> xdxf{
            {"k", Meaning::Key},    {"def", Meaning::Definition}, {"gr", Meaning::Grammar},
            {"tr", Meaning::Sound}, {"ex", Meaning::Quote},       {"ex_tran", Meaning::Translation},
            {"ar", Meaning::Block}, {"co", Meaning::Italic},      {"blockquote", Meaning::Block}};
        const auto own = dialect == TagDialect::Html   ? html.value(tag, Meaning::None)
                         : dialect == TagDialect::Xdxf ? xdxf.value(tag, Meaning::None)
                                                       : Meaning::None;
        return own != Meaning::None ? own : common.value(tag, Meaning::None);
    }

    void Open(const QByteArray &tag)
    {
        switch (MeaningOf(tag, m_dialect)) {
        case Meaning::Bold:
            ++m_styles[Bold];
            break;
        case Meaning::Italic:
            ++m_styles[Italic];
            break;
        case Meaning::Raised:
            ++m_styles[Raised];
            break;
        case Meaning::Lowered:
            ++m_styles[Lowered];
            break;
        case Meaning::Break:
        case Meaning::Block:
            EndLine();
            break;
        case Meaning::List:
            ++m_lists;
            EndLine();
            break;
        case Meaning::Item:
            BeginLine(m_lists > 1 ? '=' : '-');
            break;
        case Meaning::Definition:
        case Meaning::Description:
            BeginLine('-');
            break;
        case Meaning::Quote:
            BeginLine('=');
            break;
        case Meaning::Term:
        case Meaning::Heading:
            BeginLine('*');
            break;
        case Meaning::Key:
            BeginLine('@');
            break;
        case Meaning::Cell:
            if (!m_text.isEmpty())
                AddText(" | ");
            break;
        case Meaning::Keep:
            EndLine();
            ++m_kept;
            break;
        case Meaning::Grammar:
            ++m_styles[Italic];
            ++m_grammar;
            break;
        case Meaning::Sound:
            AddText(" [");
            break;
        case Meaning::Translation:
            m_isTranslated = !m_text.isEmpty();
            if (m_isTranslated)
                AddRaw("+");
            break;
        case Meaning::None:
            break;
        }
    }

    void Close(const QByteArray &tag)
    {
        switch (MeaningOf(tag, m_dialect)) {
        case Meaning::Bold:
            Lower(m_styles[Bold]);
            break;
        case Meaning::Italic:
            Lower(m_styles[Italic]);
            break;
        case Meaning::Raised:
            Lower(m_styles[Raised]);
            break;
        case Meaning::Lowered:
            Lower(m_styles[Lowered]);
            break;
        case Meaning::Grammar:
            Lower(m_styles[Italic]);
            Lower(m_grammar);
            break;
        case Meaning::Sound:
            AddText("]");
            break;
        case Meaning::List:
            Lower(m_lists);
            BeginLine('\0');
            break;
        case Meaning::Keep:
            Lower(m_kept);
            BeginLine('\0');
            break;
        case Meaning::None:
        case Meaning::Break:
        case Meaning::Cell:
        case Meaning::Translation:
            break;
        default:
            BeginLine('\0');
        }
    }

    static void Lower(int &depth) { depth = std::max(depth - 1, 0); }

    void BeginLine(char mark)
    {
        EndLine();
        m_mark = mark;
    }

    void AddText(QByteArrayView text)
    {
        const bool linesCount = m_dialect != TagDialect::Html || m_kept > 0;
        qsizetype start = 0;
        for (qsizetype at = 0; linesCount && at < text.size(); ++at) {
            if (text[at] == '\n') {
                AddRun(text.sliced(start, at - start));
                EndLine();
                start = at + 1;
            }
        }
        AddRun(text.sliced(start));
    }

    /// A piece of text on one line; blanks in a row count as one.
    void AddRun(QByteArrayView text)
    {
        QByteArray run;
        for (const char c : text) {
            const bool isBlank = static_cast<unsigned char>(c) <= ' ';
            if (!isBlank)
                run += c;
            else if (run.isEmpty() ? !m_plain.isEmpty() && !m_plain.endsWith(' ') : !run.endsWith(' '))
                run += ' ';
        }
        if (run.isEmpty())
            return;
        if (m_grammar == 0 && run != " ")
            m_isOnlyGrammar = false;
        m_plain += run;
        // A blank needs no style of its own.
        if (run != " ")
            SetStyles();
        AppendEscaped(m_text, run, true);
    }

    void AddRaw(QByteArrayView text)
    {
        CloseStyles();
        m_text += text;
        m_plain += text;
    }

    void SetStyles()
    {
        bool isSame = true;
        for (int style = 0; style < StyleCount; ++style)
            isSame = isSame && m_isOpen[style] == (m_styles[style] > 0);
        if (isSame)
            return;
        CloseStyles();
        for (int style = 0; style < StyleCount; ++style) {
            m_isOpen[style] = m_styles[style] > 0;
            if (m_isOpen[style])
                m_text += QByteArray("<") + Names[style] + '>';
        }
    }
    void CloseStyles()
    {
        for (int style = StyleCount - 1; style >= 0; --style) {
            if (std::exchange(m_isOpen[style], false))
                m_text += QByteArray("</") + Names[style] + '>';
        }
    }

    void EndLine()
    {
        CloseStyles();
        QByteArray text = std::exchange(m_text, {}).trimmed();
        const QByteArray plain = std::exchange(m_plain, {}).trimmed();
        const bool isOnlyGrammar = std::exchange(m_isOnlyGrammar, true);
        const bool isTranslated = std::exchange(m_isTranslated, false);
        // What comes before the first text of an item, such as a paragraph's begin, leaves it an item.
        if (plain.isEmpty())
            return;
        char mark = std::exchange(m_mark, '\0');
        const bool isFirst = m_entry.m_head.isEmpty() && m_entry.m_lines.isEmpty();
        if (isFirst && mark != '-' && m_entry.IsHead(plain))
            mark = '@';
        else if (mark == '\0' && isOnlyGrammar)
            mark = '*';
        else if (mark == '\0' && IsNumbered(plain))
            mark = '-';
        else if (mark == '@' && !isFirst)
            mark = '*';
        if (mark == '=' && isTranslated)
            m_entry.AddLine(mark, text);
        else
            m_entry.AddLine(mark, mark && mark != '@' ? ' ' + text : text);
    }

    static constexpr std::array<const char *, StyleCount> Names{"b", "i", "sup", "sub"};

    EntryMarkup &m_entry;
    TagDialect m_dialect;
    QByteArray m_text;  ///< of the line, escaped, with tags
    QByteArray m_plain; ///< the same without
    char m_mark = '\0';
    int m_styles[StyleCount] = {};
    bool m_isOpen[StyleCount] = {};
    int m_lists = 0;
    int m_kept = 0;
    int m_grammar = 0;
    bool m_isOnlyGrammar = true;
    bool m_isTranslated = false;
};

void EntryMarkup::AddTagged(QByteArrayView text, TagDialect dialect)
{
    TaggedLines(*this, dialect).Run(text);
}
