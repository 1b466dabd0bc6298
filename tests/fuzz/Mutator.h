#pragma once

#include <QByteArray>
#include <QList>
#include <QRandomGenerator>

#include <iterator>

/// Does to inputs what damage and malice do: bits and bytes change, pieces go, come twice or come from another input or
/// from what parsers stumble over, the end is cut off. Always in the same way.
class Mutator
{
public:
    /// `inputs` must outlive this.
    explicit Mutator(const QList<QByteArray> &inputs) : m_inputs(inputs) {}

    QByteArray Of(QByteArray bytes)
    {
        for (auto changes = 1 + Below(5); changes > 0 && !bytes.isEmpty(); --changes)
            Change(bytes);
        return bytes;
    }

private:
    qsizetype Below(qsizetype limit) { return qsizetype(m_random.bounded(int(limit))); }

    void Change(QByteArray &bytes)
    {
        static const QByteArray pieces[] = {"\xFF\xFF\xFF\xFF",
                                            QByteArray(4, '\0'),
                                            QByteArray("\x7F\xFF\xFF\xFF", 4),
                                            "99999999999999999999",
                                            "1e999",
                                            "=",
                                            ",",
                                            ":",
                                            "\t",
                                            "\r",
                                            "\n",
                                            "\"",
                                            "\"\"",
                                            "'",
                                            "\\",
                                            "\\u",
                                            "\\ud800",
                                            "{",
                                            "}",
                                            "{}",
                                            "[[[[",
                                            "null",
                                            "<",
                                            ">",
                                            "/",
                                            "<b",
                                            "&#",
                                            "&#58;",
                                            "<!--",
                                            "-->",
                                            "<script>",
                                            "</script",
                                            "<style>",
                                            "</style>",
                                            "<svg>",
                                            "<title>",
                                            "</title>",
                                            "<textarea>",
                                            " onload=x",
                                            "url(",
                                            "@import",
                                            "\\75",
                                            "# ",
                                            "## ",
                                            "<!-- 6-0 -->",
                                            " · ",
                                            "% ",
                                            "\xF0\x9F",
                                            "\xFF\xFE",
                                            "\xEF\xBB\xBF",
                                            "group,",
                                            "RA",
                                            QByteArray(5000, '"')};
        const qsizetype at = Below(bytes.size());
        const QByteArray &other = m_inputs[Below(m_inputs.size())];
        switch (Below(9)) {
        case 0:
            bytes[at] = char(Below(256));
            break;
        case 1:
            bytes[at] = char(bytes[at] ^ (1 << Below(8)));
            break;
        case 2:
            bytes.insert(at, bytes.mid(Below(bytes.size()), Below(40)));
            break;
        case 3:
            bytes.remove(at, 1 + Below(20));
            break;
        case 4:
            bytes.truncate(at);
            break;
        case 5:
            bytes.insert(at, other.isEmpty() ? QByteArray() : other.mid(Below(other.size())));
            break;
        case 6:
            bytes.replace(at, 4, pieces[Below(std::ssize(pieces))]);
            break;
        case 7:
            bytes.insert(at, pieces[Below(std::ssize(pieces))]);
            break;
        default:
            bytes.insert(at, bytes.mid(at, 8).repeated(Below(200)));
            break;
        }
    }

    const QList<QByteArray> &m_inputs;
    QRandomGenerator m_random{20};
};
