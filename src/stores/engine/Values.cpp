#include "stores/engine/Values.h"

#include "base/Texts.h"

#include <QDateTime>
#include <QLocale>

void JoinSurrogates(QByteArray &text)
{
    const auto byte = [&text](qsizetype at) { return static_cast<uint>(static_cast<unsigned char>(text[at])); };
    const auto isHalf = [&](qsizetype at, uint kind) { return byte(at) == 0xED && (byte(at + 1) & 0xF0) == kind; };
    const auto half = [&](qsizetype at) { return (byte(at + 1) & 0x0F) << 6 | (byte(at + 2) & 0x3F); };
    qsizetype from = text.indexOf('\xED');
    if (from < 0)
        return;
    constexpr qsizetype pair = 6;
    qsizetype to = from;
    while (from < text.size()) {
        if (text.size() - from < pair || !isHalf(from, 0xA0) || !isHalf(from + 3, 0xB0)) {
            text[to++] = text[from++];
            continue;
        }
        const uint point = 0x10000 + (half(from) << 10 | half(from + 3));
        from += pair;
        for (const uint unit :
             {0xF0 | point >> 18, 0x80 | (point >> 12 & 0x3F), 0x80 | (point >> 6 & 0x3F), 0x80 | (point & 0x3F)})
            text[to++] = static_cast<char>(unit);
    }
    text.truncate(to);
}

QString ValueText(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QByteArray:
        return FromUtf8(value.toByteArray());
    case QMetaType::QDateTime:
        return QLocale().toString(value.toDateTime(), QLocale::ShortFormat);
    default:
        return value.toString();
    }
}
