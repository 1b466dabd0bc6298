#include "lumivara-data/files/TextLines.h"

#include "common/Tool.h"

#include <QIODevice>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 ChunkBytes = 1 << 16;

/// A unit that is half a pair becomes a byte that no UTF-8 has.
QByteArray AsUtf8(const QString &text)
{
    if (text.isValidUtf16())
        return text.toUtf8();
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate())
            bytes += QStringView(text).sliced(i, 1).toUtf8();
        else if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            bytes += QStringView(text).sliced(i++, 2).toUtf8();
        else
            bytes += '\xFF';
    }
    return bytes;
}

} // namespace

TextLines::TextLines(QIODevice &device, const QString &fileName, qsizetype most)
    : m_device(device), m_fileName(fileName), m_most(most)
{
    constexpr qint64 longestMark = 3;
    const QByteArray begin = device.peek(longestMark);
    if (begin.startsWith("\xEF\xBB\xBF"))
        m_device.skip(longestMark);
    else if (begin.startsWith("\xFF\xFE"))
        m_decoder = QStringDecoder(QStringDecoder::Utf16LE);
    else if (begin.startsWith("\xFE\xFF"))
        m_decoder = QStringDecoder(QStringDecoder::Utf16BE);
    if (m_decoder.isValid())
        m_device.skip(2);
}

bool TextLines::Next(QByteArray &line)
{
    m_isCut = false;
    if (!m_again.isEmpty()) {
        line = m_again.takeLast();
        ++m_number;
        return true;
    }
    qsizetype end = m_buffer.indexOf('\n', m_from);
    while (end < 0) {
        m_buffer.remove(0, m_from);
        m_from = 0;
        if (m_buffer.size() > m_most) {
            m_isCut = true;
            m_buffer.truncate(m_most);
        }
        const qsizetype known = m_buffer.size();
        if (!Refill())
            break;
        end = m_buffer.indexOf('\n', known);
    }
    line = m_buffer.sliced(m_from, (end < 0 ? m_buffer.size() : end + 1) - m_from);
    m_from += line.size();
    if (line.isEmpty())
        return false;
    ++m_number;
    return true;
}

void TextLines::GiveBack(const QByteArrayList &lines)
{
    for (qsizetype i = lines.size() - 1; i >= 0; --i)
        m_again.append(lines[i]);
    m_number -= lines.size();
}

bool TextLines::Refill()
{
    const QByteArray bytes = m_device.read(ChunkBytes);
    if (bytes.isEmpty()) {
        if (!m_device.atEnd())
            throw ToolError(u"%1:%2: %3"_s.arg(m_fileName).arg(m_number + 1).arg(m_device.errorString()));
        m_buffer += AsUtf8(std::exchange(m_halfPair, {}));
        return false;
    }
    if (!m_decoder.isValid()) {
        m_buffer += bytes;
        return true;
    }
    QString text = std::exchange(m_halfPair, {}) + QString(m_decoder.decode(bytes));
    if (!text.isEmpty() && text.back().isHighSurrogate()) {
        m_halfPair = text.right(1);
        text.chop(1);
    }
    m_buffer += AsUtf8(text);
    return true;
}

QString WithUnixLineEnds(QString text)
{
    return text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
}
