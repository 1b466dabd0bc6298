#include "marks/Excerpt.h"

#include "base/PlainText.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int firstOfOwn = 0x80; ///< from here to 0x9F the code page has signs of its own; elsewhere byte is character

constexpr std::array<char16_t, 32> ownSigns{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

/// As a list of lines writes itself: each with CR LF behind it.
QString AsLines(const QString &text)
{
    const QString lineBreak = u"\r\n"_s;
    QString lines;
    lines.reserve(text.size() + text.size() / 32 + lineBreak.size());
    qsizetype begin = 0;
    while (begin < text.size()) {
        const auto rest = QStringView(text).sliced(begin);
        const auto *const stop =
            std::find_if(rest.begin(), rest.end(), [](QChar unit) { return unit == u'\r' || unit == u'\n'; });
        const qsizetype end = begin + (stop - rest.begin());
        lines.append(QStringView(text).sliced(begin, end - begin)).append(lineBreak);
        const bool isPair = end + 1 < text.size() && text[end] == u'\r' && text[end + 1] == u'\n';
        begin = end + (isPair ? 2 : 1);
    }
    return lines;
}

} // namespace

QString ExcerptPage(const QString &selection)
{
    // The nesting is odd, and stays: every excerpt in the readers' files is made like this.
    return AsLines(
        u"<HTML>\r<head>\r<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r<body>\r"
        "<blockquote>\r<font face = \"Segoe UI\">"_s +
        selection + u"\r</font>\r</blockquote>\r</body>\r</head>\r</HTML>"_s);
}

QByteArray ExcerptFileBytes(const QString &page)
{
    return "\xEF\xBB\xBF" + page.toUtf8();
}

QString FromWindows1252(const QByteArray &bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    std::transform(bytes.begin(), bytes.end(), text.begin(), [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        const bool isOwn = code >= firstOfOwn && code < firstOfOwn + ownSigns.size();
        return QChar(isOwn ? ownSigns[code - firstOfOwn] : static_cast<char16_t>(code));
    });
    return text;
}

QByteArray ToWindows1252(const QString &text)
{
    QByteArray bytes(text.size(), Qt::Uninitialized);
    std::transform(text.begin(), text.end(), bytes.begin(), [](QChar unit) {
        const char16_t code = unit.unicode();
        if (code < firstOfOwn || (code >= firstOfOwn + ownSigns.size() && code <= 0xFF))
            return static_cast<char>(code);
        const auto *const own = std::find(ownSigns.begin(), ownSigns.end(), code);
        return own == ownSigns.end() ? '?' : static_cast<char>(firstOfOwn + (own - ownSigns.begin()));
    });
    return bytes;
}

QString DefaultTitle(const QByteArray &excerpt)
{
    // A plain conversion would drop the mark, which belongs to the title.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString page = decoder(ToWindows1252(FromWindows1252(excerpt)));
    QString title = StripHtml(page).left(DefaultTitleSize);
    if (!title.isEmpty() && title.back().isHighSurrogate())
        title.chop(1);
    return title;
}
