#include "base/Windows1252.h"

#include <algorithm>
#include <array>

namespace {

constexpr int firstOfOwn =
    0x80; ///< from here to 0x9F the code page has its own characters; elsewhere byte equals character

constexpr std::array<char16_t, 32> ownSigns{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace

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
