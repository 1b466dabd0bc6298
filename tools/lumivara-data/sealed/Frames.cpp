#include "lumivara-data/sealed/Frames.h"

#include "base/Messages.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <stdexcept>

namespace {

enum class Tag : quint8 { Null, Number, Text, Bytes };

constexpr qsizetype LengthBytes = 4;

/// Null texts and bytes count, which a variant does not take for nulls.
bool IsNull(const QVariant &value)
{
    if (value.typeId() == QMetaType::QString)
        return value.toString().isNull();
    return value.isNull() || (value.typeId() == QMetaType::QByteArray && value.toByteArray().isNull());
}

} // namespace

QByteArray Frame::Encoded() const
{
    QByteArray bytes(LengthBytes, '\0');
    QDataStream stream(&bytes, QIODevice::Append);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << static_cast<quint8>(kind) << static_cast<quint32>(values.size());
    for (const QVariant &value : values) {
        if (IsNull(value))
            stream << static_cast<quint8>(Tag::Null);
        else if (value.typeId() == QMetaType::QByteArray)
            stream << static_cast<quint8>(Tag::Bytes) << value.toByteArray();
        else if (value.typeId() == QMetaType::QString)
            stream << static_cast<quint8>(Tag::Text) << value.toString();
        else
            stream << static_cast<quint8>(Tag::Number) << static_cast<qint64>(value.toLongLong());
    }
    qToLittleEndian<quint32>(static_cast<quint32>(bytes.size() - LengthBytes), bytes.data());
    return bytes;
}

std::optional<Frame> FrameReader::Next()
{
    const auto waiting = m_bytes.size() - m_taken;
    if (waiting < LengthBytes)
        return std::nullopt;
    const qsizetype length = qFromLittleEndian<quint32>(m_bytes.constData() + m_taken);
    if (length > MostBytes)
        throw std::runtime_error(Sentence({u"một thông báo quá dài", u"a message is too long"}).toStdString());
    if (waiting < LengthBytes + length) {
        m_bytes.remove(0, m_taken);
        m_taken = 0;
        return std::nullopt;
    }
    const QByteArray bytes = QByteArray::fromRawData(m_bytes.constData() + m_taken + LengthBytes, length);
    m_taken += LengthBytes + length;
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    quint8 kind = 0;
    quint32 count = 0;
    stream >> kind >> count;
    if (kind > static_cast<quint8>(Frame::Kind::Done))
        throw std::runtime_error(
            Sentence({u"một thông báo không rõ loại", u"a message is of no known kind"}).toStdString());
    Frame frame{static_cast<Frame::Kind>(kind)};
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        quint8 tag = 0;
        qint64 number = 0;
        QByteArray value;
        QString text; // as UTF-16: from UTF-8 an invisible first letter would not come back
        stream >> tag;
        switch (static_cast<Tag>(tag)) {
        case Tag::Null:
            frame.values.append(QVariant());
            break;
        case Tag::Number:
            stream >> number;
            frame.values.append(number);
            break;
        case Tag::Text:
            stream >> text;
            frame.values.append(text.isNull() ? QStringLiteral("") : text);
            break;
        case Tag::Bytes:
            stream >> value;
            frame.values.append(value.isNull() ? QByteArray("") : value);
            break;
        default:
            stream.setStatus(QDataStream::ReadCorruptData);
        }
    }
    if (stream.status() != QDataStream::Ok)
        throw std::runtime_error(Sentence({u"một thông báo bị hỏng", u"a message is damaged"}).toStdString());
    return frame;
}
