#include "marks/Excerpt.h"

#include "base/Messages.h"
#include "base/PlainText.h"
#include "base/Windows1252.h"

#include <QStringDecoder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr Message TooLong{
    u"Đoạn trích này dài %1 MB, quá dài để hiện ở đây. Ghi chép vẫn giữ nguyên đoạn trích, và lệnh \"lumivara-data "
    "export marks\" xuất ra trọn vẹn.",
    u"This excerpt is %1 MB long, too long to be shown here. The mark keeps all of it, and \"lumivara-data export "
    "marks\" writes it out whole."};

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
    // The nesting is odd but must stay: all excerpts in the readers' files have it.
    return AsLines(
        u"<HTML>\r<head>\r<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r<body>\r"
        "<blockquote>\r<font face = \"Segoe UI\">"_s +
        selection + u"\r</font>\r</blockquote>\r</body>\r</head>\r</HTML>"_s);
}

QByteArray ExcerptFileBytes(const QString &page)
{
    return "\xEF\xBB\xBF" + page.toUtf8();
}

bool IsShownWhole(const QByteArray &excerpt)
{
    return excerpt.size() <= LongestShownExcerpt;
}

QByteArray ShownExcerpt(const QByteArray &excerpt)
{
    if (IsShownWhole(excerpt))
        return excerpt;
    constexpr qsizetype megabyte = 1'000'000;
    const QString words = TextOrEnglish(TooLong).arg((excerpt.size() + megabyte / 2) / megabyte);
    return "<html><head><meta charset=\"utf-8\"></head><body><p>" + words.toHtmlEscaped().toUtf8() +
           "</p></body></html>";
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
