#include "reader/PageComposer.h"

#include "base/Colour.h"
#include "base/Messages.h"

#include <QList>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr Message noData{u"Chưa có dữ liệu...", u"No data to display..."};

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
    // The parallel page is a table and has no margin.
    const bool hasMargin = mode < 3;
    if (!hasMargin || level < 0 || level >= static_cast<int>(margins.size()))
        return margins[0];
    return margins[static_cast<std::size_t>(level)];
}

/// Compares eight bytes in one step, with the case bit of ASCII letters set on both sides, except at the blank, which
/// would otherwise equal a NUL.
bool IsStoredFontAt(const char *at)
{
    static_assert(StoredFont.size() == sizeof(quint64));
    quint64 found;
    quint64 caseBits;
    quint64 wanted;
    std::memcpy(&found, at, sizeof found);
    std::memcpy(&caseBits, "\x20\x20\x20\x20\x20\0\x20\x20", sizeof caseBits);
    std::memcpy(&wanted, "segoe ui", sizeof wanted);
    return (found | caseBits) == wanted;
}

/// Marks possible starts of the name with FF, by two of its letters; reads `count` bytes plus the name's length. A
/// loop without branches, which the compiler vectorises: text has so many of the name's letters that any search by
/// jumps costs several times as much.
void MarkCandidates(const char *at, qsizetype count, unsigned char *marks)
{
    const auto *bytes = reinterpret_cast<const unsigned char *>(at);
    for (qsizetype i = 0; i < count; ++i) {
        // Bytes only: one wider operation would quarter the speed.
        const auto difference = static_cast<unsigned char>((bytes[i] ^ 's') | (bytes[i + 2] ^ 'g'));
        marks[i] = (difference & 0xDF) == 0 ? 0xFF : 0;
    }
}

/// The positions of the stored font's name, ignoring ASCII case. No end of the name is also its start, so no two
/// overlap.
QList<qsizetype> FindStoredFont(const QByteArray &content)
{
    constexpr qsizetype blockSize = 2048;
    std::array<unsigned char, blockSize> marks;
    QList<qsizetype> positions;
    const char *bytes = content.constData();
    const qsizetype startCount = content.size() - StoredFont.size() + 1;
    for (qsizetype block = 0; block < startCount; block += blockSize) {
        const qsizetype count = std::min(blockSize, startCount - block);
        MarkCandidates(bytes + block, count, marks.data());
        qsizetype at = 0;
        while (const void *mark = std::memchr(marks.data() + at, 0xFF, static_cast<std::size_t>(count - at))) {
            at = static_cast<const unsigned char *>(mark) - marks.data();
            const qsizetype position = block + at;
            if (IsStoredFontAt(bytes + position))
                positions.append(position);
            ++at;
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
        if (from - begin < StoredSize.size())
            continue;
        char *start = from - StoredSize.size();
        if (std::memcmp(start, StoredSize.data(), static_cast<std::size_t>(StoredSize.size())) == 0)
            std::memcpy(start, ShownSize.data(), static_cast<std::size_t>(ShownSize.size()));
    }
}

} // namespace

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

    const qsizetype marginSize = hasMargin ? margin.opening.size() + margin.closing.size() + 2 : 0;
    QByteArray page(bodySize + marginSize, Qt::Uninitialized);
    char *to = page.data();
    const auto put = [&to](const char *bytes, qsizetype size) {
        std::memcpy(to, bytes, static_cast<std::size_t>(size));
        to += size;
    };
    if (hasMargin) {
        put(margin.opening.data(), margin.opening.size());
        put("\r", 1);
    }
    char *body = to;
    qsizetype copied = 0;
    for (const qsizetype position : fontPositions) {
        put(content.constData() + copied, position - copied);
        put(font.constData(), font.size());
        copied = position + StoredFont.size();
    }
    put(content.constData() + copied, content.size() - copied);

    // After the font, whose name may itself complete the pattern "150%".
    SwapSizes(body, to);
    if (hasMargin) {
        put("\r", 1);
        put(margin.closing.data(), margin.closing.size());
    }
    return page;
}

QString PassageAddress(int idVic)
{
    return QStringLiteral("lumivara://text/%1").arg(idVic);
}

QString PassageLanguage(int mode)
{
    switch (mode) {
    case PageMode::Pali:
        return QStringLiteral("pi");
    case PageMode::English:
        return QStringLiteral("en");
    default:
        return QStringLiteral("vi");
    }
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
    if (idVic < firstNamedRow)
        return TextOrNone(noData, interfaceLang).toUtf8();
    switch (interfaceLang) {
    case 0:
        return nameVietnamese.toUtf8();
    case 1:
        return nameEnglish.toUtf8();
    default:
        return {};
    }
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
