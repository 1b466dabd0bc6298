#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <array>
#include <compare>
#include <optional>

/// Names a mark, a version of one, or what one holds: the first 16 bytes of a checksum (SHA-256). The same on every
/// machine, so no two machines need to agree on numbers, and a copied or restored file repeats none.
struct SyncId
{
    static constexpr qsizetype HexLength = 32;

    std::array<quint8, 16> bytes{};

    auto operator<=>(const SyncId &) const = default;
    /// Of parts in their order; each is hashed as "length:bytes,", so no two lists of parts give the same bytes.
    static SyncId Of(const QByteArrayList &parts);
    /// Nothing unless the text is 32 hexadecimal digits in lower case.
    static std::optional<SyncId> FromHex(QByteArrayView hex);
    QByteArray Hex() const;
};
