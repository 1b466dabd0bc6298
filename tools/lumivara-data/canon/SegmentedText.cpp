#include "lumivara-data/canon/SegmentedText.h"

#include "base/Messages.h"

#include <QHashFunctions>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

QString TooMany()
{
    return Sentence({u"bài có hơn %1 đoạn", u"the text has more than %1 segments"}).arg(MostSegments);
}

/// Reads one flat object.
class Parser
{
public:
    explicit Parser(const QByteArray &json) : m_begin(json.constData()), m_at(m_begin), m_end(m_begin + json.size()) {}

    std::vector<TextSegment> Run()
    {
        std::vector<TextSegment> segments;
        Expect('{', Sentence({u"cần một đối tượng JSON", u"a JSON object is expected"}));
        if (SkipBlanks() != '}') {
            do {
                if (segments.size() == MostSegments)
                    Fail(TooMany());
                TextSegment segment;
                segment.id =
                    String(Sentence({u"cần mã của đoạn trong ngoặc kép", u"a segment id in quotes is expected"}));
                Expect(':',
                       Sentence({u"thiếu dấu hai chấm sau mã của đoạn", u"a colon is missing behind a segment id"}));
                if (SkipBlanks() != '"' && m_at != m_end)
                    Fail(Sentence({u"giá trị của \"%1\" không phải là văn bản", u"the value of \"%1\" is no text"})
                             .arg(QString::fromUtf8(segment.id.left(80))));
                segment.value = String({});
                segments.push_back(std::move(segment));
            } while (Accept(','));
        }
        Expect('}', Sentence({u"cần dấu phẩy hoặc chỗ kết thúc đối tượng",
                              u"a comma or the end of the object is expected"}));
        SkipBlanks();
        if (m_at != m_end)
            Fail(Sentence({u"có gì đó sau đối tượng", u"something follows the object"}));
        return segments;
    }

private:
    [[noreturn]] void Fail(const QString &fault) const
    {
        throw SegmentFault(static_cast<int>(std::count(m_begin, m_at, '\n')) + 1, fault);
    }

    /// The next byte that is no blank, 0 at the end.
    char SkipBlanks()
    {
        while (m_at < m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\r' || *m_at == '\t'))
            ++m_at;
        return m_at < m_end ? *m_at : '\0';
    }

    bool Accept(char wanted)
    {
        if (SkipBlanks() != wanted || m_at == m_end)
            return false;
        ++m_at;
        return true;
    }

    void Expect(char wanted, const QString &fault)
    {
        if (!Accept(wanted))
            Fail(m_at == m_end ? Sentence({u"tệp kết thúc quá sớm", u"the file ends early"}) : fault);
    }

    QByteArray String(const QString &fault)
    {
        Expect('"', fault);
        const char *start = m_at;
        while (m_at < m_end && *m_at != '"' && *m_at != '\\' && uchar(*m_at) >= ' ')
            ++m_at;
        QByteArray text(start, m_at - start);
        while (m_at < m_end && *m_at != '"') {
            if (uchar(*m_at) < ' ')
                Fail(Sentence({u"có ký tự điều khiển trong chuỗi", u"a control character stands in a string"}));
            if (*m_at == '\\') {
                ++m_at;
                AddEscaped(text);
                continue;
            }
            start = m_at;
            while (m_at < m_end && *m_at != '"' && *m_at != '\\' && uchar(*m_at) >= ' ')
                ++m_at;
            text.append(start, m_at - start);
        }
        if (m_at == m_end)
            Fail(Sentence({u"một chuỗi không có chỗ kết thúc", u"a string has no end"}));
        ++m_at;
        return text;
    }

    void AddEscaped(QByteArray &text)
    {
        constexpr char marks[] = "\"\\/bfnrt";
        constexpr char meanings[] = "\"\\/\b\f\n\r\t";
        if (m_at == m_end)
            Fail(Sentence({u"một chuỗi không có chỗ kết thúc", u"a string has no end"}));
        const char mark = *m_at++;
        if (mark == 'u') {
            AddCodePoint(text);
            return;
        }
        const char *known = mark ? std::strchr(marks, mark) : nullptr;
        if (!known)
            Fail(Sentence({u"dấu gạch chéo ngược đứng trước một ký tự không hợp lệ",
                           u"a backslash stands before something that it does not escape"}));
        text.append(meanings[known - marks]);
    }

    char16_t CodeUnit()
    {
        bool isNumber = false;
        const QByteArray digits = m_end - m_at >= 4 ? QByteArray(m_at, 4) : QByteArray();
        // Signs and blanks would pass as parts of a number.
        const bool areDigits =
            std::all_of(digits.cbegin(), digits.cend(), [](char c) { return std::isxdigit(uchar(c)); });
        const auto unit = static_cast<char16_t>(digits.toUShort(&isNumber, 16));
        if (!isNumber || !areDigits)
            Fail(Sentence({u"\\u cần bốn chữ số thập lục phân", u"\\u wants four hexadecimal digits"}));
        m_at += 4;
        return unit;
    }

    void AddCodePoint(QByteArray &text)
    {
        QString units{QChar(CodeUnit())};
        if (units[0].isHighSurrogate() && m_end - m_at >= 2 && m_at[0] == '\\' && m_at[1] == 'u') {
            m_at += 2;
            units += QChar(CodeUnit());
        }
        if (!units.isValidUtf16())
            Fail(Sentence({u"chỉ có một nửa của cặp ký tự thay thế", u"half a surrogate pair"}));
        text.append(units.toUtf8());
    }

    const char *m_begin;
    const char *m_at;
    const char *m_end;
};

std::string_view ViewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<size_t>(bytes.size())};
}

} // namespace

std::vector<TextSegment> ParseSegments(const QByteArray &json)
{
    return Parser(json).Run();
}

size_t Alignment::SeededHash::operator()(std::string_view id) const
{
    return qHashBits(id.data(), id.size(), QHashSeed::globalSeed());
}

template <typename Place>
void Alignment::Add(const std::vector<TextSegment> &segments, std::vector<QByteArray> &repeated, Place place)
{
    ++m_files;
    m_places.reserve(m_segments.size() + segments.size());
    int before = -1;
    for (const TextSegment &segment : segments) {
        // Files mostly have the same segments in the same order.
        const int following = before < 0 ? m_first : m_next[size_t(before)];
        int at = following;
        if (at < 0 || m_segments[size_t(at)].id != segment.id) {
            const auto known = m_places.find(ViewOf(segment.id));
            at = known == m_places.end() ? -1 : known->second;
        }
        if (at >= 0 && m_lastFile[size_t(at)] == m_files) {
            repeated.push_back(segment.id);
            continue;
        }
        if (at < 0) {
            if (m_segments.size() == MostSegments)
                throw SegmentFault(0, TooMany());
            at = static_cast<int>(m_segments.size());
            m_segments.push_back({segment.id, {}, {}});
            m_next.push_back(following);
            m_lastFile.push_back(0);
            (before < 0 ? m_first : m_next[size_t(before)]) = at;
            // The bytes are shared and stay where they are.
            m_places.emplace(ViewOf(m_segments.back().id), at);
        }
        m_lastFile[size_t(at)] = m_files;
        place(m_segments[size_t(at)]) = segment.value;
        before = at;
    }
}

void Alignment::AddText(int column, const std::vector<TextSegment> &segments, std::vector<QByteArray> &repeated)
{
    Add(segments, repeated, [column](AlignedSegment &segment) -> QByteArray & { return segment.text[column]; });
}

void Alignment::AddMarkup(const std::vector<TextSegment> &segments, std::vector<QByteArray> &repeated)
{
    Add(segments, repeated, [](AlignedSegment &segment) -> QByteArray & { return segment.markup; });
}

std::vector<AlignedSegment> Alignment::Take()
{
    std::vector<AlignedSegment> ordered;
    ordered.reserve(m_segments.size());
    for (int at = m_first; at >= 0; at = m_next[size_t(at)])
        ordered.push_back(std::move(m_segments[size_t(at)]));
    *this = Alignment();
    return ordered;
}
