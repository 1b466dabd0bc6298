#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Reads a text with tags as tolerantly as browsers: the texts between tags with their entities decoded, and the tags.
/// Skips comments, declarations, scripts, styles and embedded objects. UTF-8 bytes pass unchanged; any bytes are read
/// in linear time.
class TaggedText
{
public:
    enum class Part { Text, Open, Close, End };

    explicit TaggedText(QByteArrayView text) : m_text(text) {}

    Part Next();
    /// The text, or the tag's name in lower case.
    const QByteArray &Value() const { return m_value; }

private:
    bool ReadTag();
    qsizetype EndOfTag(qsizetype at);
    void SkipPast(QByteArrayView end);
    void SkipContentOf(const QByteArray &name);
    QByteArray Decoded(QByteArrayView text) const;

    QByteArrayView m_text;
    qsizetype m_at = 0;
    QByteArray m_value;
    Part m_part = Part::End;
    bool m_hasQuote[2] = {true, true}; ///< whether a double, a single quote may still come
};

/// The bytes of an entity without "&" and ";", such as "eacute" or "#x1E47"; empty for one that is not known.
QByteArray DecodedEntity(QByteArrayView name);
