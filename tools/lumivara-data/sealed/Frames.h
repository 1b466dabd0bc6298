#pragma once

#include <QByteArray>
#include <QList>
#include <QVariant>

#include <optional>

/// One message of a sealed process to the one that started it: what it is, and values. Values are numbers, texts, bytes
/// and nulls alone, written in a form of our own: the sender may be in a stranger's hands.
struct Frame
{
    enum class Kind : quint8 {
        Progress, ///< work, done, total, unit
        Row,      ///< table, then its values
        Value,    ///< key, value
        Finding,  ///< place, fault
        Untold,   ///< number of further findings
        Note,     ///< place, change
        Count,    ///< what, number
        Failure,  ///< text
        Done
    };
    Kind kind = Kind::Done;
    QList<QVariant> values = {};

    /// The bytes that FrameReader takes apart again, their length in front.
    QByteArray Encoded() const;
};

/// Takes frames out of a stream of bytes.
class FrameReader
{
public:
    /// No frame is longer; one page of a canon is the longest thing in it.
    static constexpr qsizetype MostBytes = qsizetype{256} * 1024 * 1024;

    void Append(const QByteArray &bytes) { m_bytes += bytes; }
    /// The next whole frame. Throws std::runtime_error if what comes can't be one.
    std::optional<Frame> Next();

private:
    QByteArray m_bytes;
    qsizetype m_taken = 0; ///< bytes of the former frames
};
