#include "lumivara-data/files/PageFacts.h"
using namespace Qt::StringLiterals;

namespace {

/// Length of the well-formed sequence at `at`, 0 if there is none.
qsizetype SequenceLength(const QByteArray &bytes, qsizetype at)
{
    const auto byteAt = [&](qsizetype i) { return i < bytes.size() ? uchar(bytes[i]) : uchar(0); };
    const uchar lead = byteAt(at);
    if (lead < 0x80)
        return 1;
    const qsizetype length = lead >= 0xC2 && lead <= 0xDF   ? 2
                             : lead >= 0xE0 && lead <= 0xEF ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
    for (qsizetype i = 1; i < length; ++i) {
        if ((byteAt(at + i) & 0xC0) != 0x80)
            return 0;
    }
    const uchar second = byteAt(at + 1);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool surrogate = lead == 0xED && second > 0x9F;
    const bool tooHigh = lead == 0xF4 && second > 0x8F;
    return overlong || surrogate || tooHigh ? 0 : length;
}

} // namespace

qsizetype FirstBadUtf8Byte(const QByteArray &bytes)
{
    // Qt is faster on a whole page, but does not report where it fails.
    if (bytes.isValidUtf8())
        return -1;
    for (qsizetype at = 0; at < bytes.size();) {
        const qsizetype length = SequenceLength(bytes, at);
        if (length == 0)
            return at;
        at += length;
    }
    return -1;
}

const QRegularExpression &DeclaredCharset()
{
    static const QRegularExpression charset(u"<meta[\\s/][^>]*\\bcharset\\s*=\\s*[\"']?\\s*([\\w:.-]+)"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    return charset;
}

PageFacts InspectPage(const QByteArray &page)
{
    // Engines look for the declaration in the first kilobyte; word processors put long headers before it.
    constexpr qsizetype searchedBytes = 65536;
    PageFacts facts;
    facts.byteCount = page.size();
    facts.firstBadByte = FirstBadUtf8Byte(page);
    if (page.startsWith("\xEF\xBB\xBF"))
        facts.charset = QByteArrayLiteral("utf-8");
    else
        facts.charset =
            DeclaredCharset().match(QString::fromLatin1(page.left(searchedBytes))).captured(1).toLower().toLatin1();
    return facts;
}
