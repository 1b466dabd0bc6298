#include "presentation/languages/LangText.h"

#include "base/Windows1252.h"

#include <QIODevice>
#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>

namespace {

struct Mark
{
    QByteArrayView bytes;
    QStringConverter::Encoding encoding;
};

const Mark *MarkOf(QByteArrayView bytes)
{
    static constexpr Mark marks[] = {{"\xFF\xFE", QStringConverter::Utf16LE},
                                     {"\xFE\xFF", QStringConverter::Utf16BE},
                                     {"\xEF\xBB\xBF", QStringConverter::Utf8}};
    const auto *mark =
        std::find_if(std::begin(marks), std::end(marks), [bytes](const Mark &m) { return bytes.startsWith(m.bytes); });
    return mark != std::end(marks) ? mark : nullptr;
}

// Finds the first "[" that begins a line, in pieces of any length.
class SectionFinder
{
public:
    bool Find(QStringView piece)
    {
        for (const QChar unit : piece) {
            if (unit == u'\n' || unit == u'\r')
                m_atStart = true;
            else if (m_atStart && unit == u'[')
                return true;
            else if (m_atStart && !unit.isSpace())
                m_atStart = false;
        }
        return false;
    }

private:
    bool m_atStart = true;
};

} // namespace

QString DecodeLangText(const QByteArray &bytes, bool *hasMark)
{
    const Mark *mark = MarkOf(bytes);
    if (hasMark)
        *hasMark = mark != nullptr;
    if (mark) {
        // A second mark is a character of the text.
        QStringDecoder decoder(mark->encoding, QStringConverter::Flag::ConvertInitialBom);
        return decoder(QByteArrayView(bytes).sliced(mark->bytes.size()));
    }
    return bytes.isValidUtf8() ? QString::fromUtf8(bytes) : FromWindows1252(bytes);
}

QByteArray EncodeLangText(const QString &text)
{
    QByteArray bytes("\xFF\xFE");
    const qsizetype start = bytes.size();
    bytes.resize(start + text.size() * 2);
    qToLittleEndian<quint16>(text.constData(), text.size(), bytes.data() + start);
    return bytes;
}

QByteArray ReadLangHeader(QIODevice &device)
{
    constexpr qint64 piece = 64 * 1024, limit = 16 * 1024 * 1024;
    QByteArray header = device.read(piece);
    const Mark *mark = MarkOf(header);
    // Without a mark the encoding may turn out to be another, but lines, blanks and brackets are the same in both.
    QStringDecoder decoder(mark ? mark->encoding : QStringConverter::Utf8);
    SectionFinder finder;
    QByteArrayView unseen = QByteArrayView(header).sliced(mark ? mark->bytes.size() : 0);
    bool ended = false, found = false;
    while (!unseen.isEmpty()) {
        const QString text = decoder(unseen);
        found = finder.Find(text);
        ended = found || header.size() >= limit;
        if (ended)
            break;
        const qsizetype seen = header.size();
        header += device.read(piece);
        unseen = QByteArrayView(header).sliced(seen);
    }
    // Half a character at the end of the last piece would make valid UTF-8 look like another encoding.
    if (ended && (!mark || mark->encoding == QStringConverter::Utf8)) {
        const auto lineEnd =
            std::find_if(header.crbegin(), header.crend(), [](char c) { return c == '\n' || c == '\r'; });
        header.truncate(header.crend() - lineEnd);
    }
    return header;
}
