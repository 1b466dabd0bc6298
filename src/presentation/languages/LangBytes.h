#pragma once

#include "presentation/languages/LangError.h"

#include <QByteArray>
#include <QtEndian>

/// Reads the little-endian values of the binary language tables one after the other.
/// Every call throws EDKLangError, with `what` in its text, where the bytes end early.
class LangByteReader
{
public:
    LangByteReader(const QByteArray &bytes, const QString &what) : m_bytes(bytes), m_what(what) {}

    qsizetype Remaining() const { return m_bytes.size() - m_position; }
    quint8 Byte() { return quint8(*Take(1)); }
    quint16 Word() { return qFromLittleEndian<quint16>(Take(2)); }
    qint32 Integer() { return qFromLittleEndian<qint32>(Take(4)); }
    bool Boolean() { return Byte() != 0; }
    /// A 16-bit byte count and that many bytes of UTF-8; anything else than UTF-8 throws.
    QString Utf8String()
    {
        const int count = Word();
        const QByteArrayView text(Take(count), count);
        if (!text.isValidUtf8())
            Fail(QStringLiteral("a text is not UTF-8"));
        return QString::fromUtf8(text);
    }
    /// A 16-bit count of UTF-16 units and the units.
    QString WideString()
    {
        const int count = Word();
        const char *units = Take(count * 2);
        QString text(count, Qt::Uninitialized);
        qFromLittleEndian<quint16>(units, count, text.data());
        return text;
    }
    /// A count of things that take at least `leastBytes` each, so that no count promises more than the bytes can hold.
    int Count(int leastBytes)
    {
        const qint32 count = Integer();
        if (count < 0 || count > Remaining() / leastBytes)
            Fail(QStringLiteral("a count is beyond its end"));
        return count;
    }
    /// Throws unless everything has been read.
    void ExpectEnd() const
    {
        if (Remaining() > 0)
            Fail(QStringLiteral("it goes on after its end"));
    }
    [[noreturn]] void Fail(const QString &reason) const
    {
        throw EDKLangError(QStringLiteral("The %1 is damaged: %2").arg(m_what, reason));
    }

private:
    const char *Take(qsizetype count)
    {
        if (count > Remaining())
            Fail(QStringLiteral("it ends early"));
        const char *at = m_bytes.constData() + m_position;
        m_position += count;
        return at;
    }

    const QByteArray m_bytes;
    const QString m_what;
    qsizetype m_position = 0;
};

/// Writes what LangByteReader reads. Texts of more than 65,535 bytes or units throw EDKLangError.
class LangByteWriter
{
public:
    void Byte(quint8 value) { m_bytes.append(char(value)); }
    void Word(quint16 value) { Append(qToLittleEndian(value)); }
    void Integer(qint32 value) { Append(qToLittleEndian(value)); }
    void Boolean(bool value) { Byte(value ? 1 : 0); }
    void Utf8String(const QString &text)
    {
        const QByteArray utf8 = text.toUtf8();
        Word(Length(utf8.size()));
        m_bytes.append(utf8);
    }
    void WideString(const QString &text)
    {
        Word(Length(text.size()));
        for (const QChar unit : text)
            Word(unit.unicode());
    }
    const QByteArray &Bytes() const { return m_bytes; }

private:
    template <typename T>
    void Append(T value)
    {
        m_bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
    }
    static quint16 Length(qsizetype length)
    {
        if (length > 0xFFFF)
            throw EDKLangError(QStringLiteral("A text is too long for a language table"));
        return quint16(length);
    }

    QByteArray m_bytes;
};
