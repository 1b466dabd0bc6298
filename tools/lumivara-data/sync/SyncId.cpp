#include "lumivara-data/sync/SyncId.h"

#include <QCryptographicHash>

#include <algorithm>

namespace {

/// -1 for what is no digit.
int DigitOf(char c)
{
    constexpr int ten = 10;
    if (c >= '0' && c <= '9')
        return c - '0';
    return c >= 'a' && c <= 'f' ? c - 'a' + ten : -1;
}

} // namespace

SyncId SyncId::Of(const QByteArrayList &parts)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QByteArray &part : parts) {
        hash.addData(QByteArray::number(part.size()) + ':');
        hash.addData(part);
        hash.addData(",");
    }
    const QByteArray sum = hash.result();
    SyncId id;
    std::copy_n(sum.begin(), id.bytes.size(), id.bytes.begin());
    return id;
}

std::optional<SyncId> SyncId::FromHex(QByteArrayView hex)
{
    if (hex.size() != HexLength)
        return std::nullopt;
    SyncId id;
    for (size_t i = 0; i < id.bytes.size(); ++i) {
        const auto at = static_cast<qsizetype>(2 * i);
        const int high = DigitOf(hex[at]), low = DigitOf(hex[at + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        constexpr int bitsOfDigit = 4;
        id.bytes[i] = static_cast<quint8>((high << bitsOfDigit) | low);
    }
    return id;
}

QByteArray SyncId::Hex() const
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())).toHex();
}
