#include "reader/PageComposer.h"

#include <QList>

#include <array>
#include <cstring>

namespace {

constexpr QByteArrayView StoredFont("Segoe UI");
constexpr QByteArrayView StoredSize("150%");
constexpr QByteArrayView ShownSize("200%");

struct Margin
{
    QByteArrayView opening;
    QByteArrayView closing;
};

Margin MarginOf(int mode, int level)
{
    static constexpr std::array<Margin, 4> margins{
        Margin{QByteArrayView(), QByteArrayView()},
        Margin{QByteArrayView("<blockquote>"), QByteArrayView("</blockquote>")},
        Margin{QByteArrayView("<blockquote> <blockquote>"), QByteArrayView("</blockquote> </blockquote>")},
        Margin{QByteArrayView("<blockquote> <blockquote> <blockquote>"),
               QByteArrayView("</blockquote> </blockquote> </blockquote>")},
    };
    // The parallel page is laid out as a table of its own and has no margin.
    const bool hasMargin = mode < 3;
    if (!hasMargin || level < 0 || level >= static_cast<int>(margins.size()))
        return margins[0];
    return margins[static_cast<std::size_t>(level)];
}

unsigned char Lower(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return value >= 'A' && value <= 'Z' ? static_cast<unsigned char>(value | 0x20) : value;
}

bool IsStoredFontAt(const char *at)
{
    for (qsizetype i = 0; i < StoredFont.size(); ++i) {
        if (Lower(at[i]) != Lower(StoredFont[i]))
            return false;
    }
    return true;
}

/// Whether a match may begin in the next BlockSize bytes; needs that many bytes and the pattern's length behind them.
/// A loop of fixed length over three far letters, without a branch: the compiler makes vector code of it, and a byte
/// costs a fraction of what any search by jumps costs in running text.
constexpr qsizetype BlockSize = 64;
bool MayHoldStoredFont(const char *at)
{
    unsigned char found = 0;
    for (qsizetype i = 0; i < BlockSize; ++i) {
        found |= static_cast<unsigned char>(static_cast<unsigned char>((at[i] | 0x20) == 's') &
                                            static_cast<unsigned char>((at[i + 2] | 0x20) == 'g') &
                                            static_cast<unsigned char>((at[i + 7] | 0x20) == 'i'));
    }
    return found != 0;
}

/// Where the stored font's name begins, in any mixture of ASCII case; matches do not overlap.
QList<qsizetype> FindStoredFont(const QByteArray &content)
{
    QList<qsizetype> positions;
    const char *bytes = content.constData();
    const qsizetype lastStart = content.size() - StoredFont.size();
    qsizetype at = 0;
    while (at <= lastStart) {
        const qsizetype blockEnd = at + BlockSize;
        const bool isWholeBlock = blockEnd <= lastStart;
        if (isWholeBlock && !MayHoldStoredFont(bytes + at)) {
            at = blockEnd;
            continue;
        }
        const qsizetype stop = isWholeBlock ? blockEnd : lastStart + 1;
        while (at < stop) {
            if (IsStoredFontAt(bytes + at)) {
                positions.append(at);
                at += StoredFont.size();
            } else {
                ++at;
            }
        }
    }
    return positions;
}

/// Both sizes are equally long, so the swap needs no second buffer.
void SwapSizes(char *begin, const char *end)
{
    char *from = begin;
    while (from < end) {
        char *percent = static_cast<char *>(std::memchr(from, '%', static_cast<std::size_t>(end - from)));
        if (!percent)
            return;
        from = percent + 1;
        char *start = from - StoredSize.size();
        if (start >= begin && std::memcmp(start, StoredSize.data(), static_cast<std::size_t>(StoredSize.size())) == 0)
            std::memcpy(start, ShownSize.data(), static_cast<std::size_t>(ShownSize.size()));
    }
}

} // namespace

QString ContentColumn(int mode)
{
    switch (mode) {
    case PageMode::Pali:
        return QStringLiteral("CONTENT_VIC_PAL");
    case PageMode::Vietnamese:
        return QStringLiteral("CONTENT_VIC_VIE");
    case PageMode::English:
        return QStringLiteral("CONTENT_VIC_ENG");
    case PageMode::Parallel:
        return QStringLiteral("CONTENT_VIC_PAL_VIE");
    default:
        return {};
    }
}

QByteArray ComposePassage(const QByteArray &content, const PageOptions &options)
{
    const QByteArray font = options.fontName.toUtf8();
    QList<qsizetype> fontPositions;
    if (font != StoredFont)
        fontPositions = FindStoredFont(content);

    const qsizetype bodySize = content.size() + fontPositions.size() * (font.size() - StoredFont.size());
    if (bodySize == 0)
        return {};
    const Margin margin = MarginOf(options.mode, options.marginWidth);
    const bool hasMargin = !margin.opening.isEmpty();

    QByteArray page;
    page.reserve(bodySize + margin.opening.size() + margin.closing.size() + 2);
    if (hasMargin)
        page.append(margin.opening).append('\r');
    const qsizetype bodyStart = page.size();
    qsizetype copied = 0;
    for (const qsizetype position : fontPositions) {
        page.append(content.constData() + copied, position - copied).append(font);
        copied = position + StoredFont.size();
    }
    page.append(content.constData() + copied, content.size() - copied);

    // After the font, whose name may itself complete the pattern.
    SwapSizes(page.data() + bodyStart, page.constData() + page.size());
    if (hasMargin)
        page.append('\r').append(margin.closing);
    return page;
}

QByteArray ComposeFallbackPage(const QByteArray &text)
{
    return QByteArrayLiteral(
               "<HTML>\r<head>\r<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r"
               "<font face = \"Segoe UI\">\r<h3> <p ALIGN=\"CENTER\"> <br> "
               "<font face=\"Times New Roman\" color=\"#800000\">") +
           text + QByteArrayLiteral("</font> </p> </h3></font>\r</head>\r</HTML>");
}

QByteArray FallbackText(int idVic, int interfaceLang, const QString &nameVietnamese, const QString &nameEnglish)
{
    constexpr int firstNamedRow = 1000;
    const bool isNamed = idVic >= firstNamedRow;
    if (interfaceLang == 0)
        return isNamed ? nameVietnamese.toUtf8() : QStringLiteral("Chưa có dữ liệu...").toUtf8();
    if (interfaceLang == 1)
        return isNamed ? nameEnglish.toUtf8() : QByteArrayLiteral("No data to display...");
    return {};
}

QString HostStyle(Colour background)
{
    return QStringLiteral("body {background-color: ") + ColorToHtml(background) +
           QStringLiteral("}\r\np {\r\nline-height: 175%\r\n}\r\n");
}

QByteArray UTF8StrToHTML(const QByteArray &text)
{
    QByteArray page =
        QByteArrayLiteral("<HTML>\r\n<BODY>\r\n<head>\r\n<title></title>\r\n"
                          "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r\n");
    if (!text.isEmpty())
        page += text + QByteArrayLiteral("\r\n");
    return page + QByteArrayLiteral("</BODY>\r\n</HTML>\r\n");
}
