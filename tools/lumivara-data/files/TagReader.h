#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <vector>

/// Reads a text with tags part by part. Bytes are UTF-8 and pass as they stand; any bytes are read in linear time.
class TagReader
{
public:
    enum class Part {
        Text, ///< up to the next "<"; begins with "<" where that begins nothing else
        Open,
        Close,
        Aside,  ///< a comment, a declaration or an instruction
        Broken, ///< a tag inside of which the text ends
        End
    };
    enum class Manner {
        Browser,   ///< exactly as browsers read
        Forgiving, ///< a tag ends before the next "<" outside of quotes or is text; a quote that is never closed is
                   ///< none
    };
    struct Attribute
    {
        QByteArrayView name;
        QByteArrayView value;  ///< without quotes, entities as they stand
        QByteArrayView source; ///< the whole, as it stands
    };

    /// The text must outlive this.
    TagReader(QByteArrayView text, Manner manner) : m_at(text.data()), m_end(m_at + text.size()), m_manner(manner) {}

    Part Next();
    /// The part as it stands.
    QByteArrayView Source() const { return {m_start, m_at - m_start}; }
    /// Of the tag, in lower case.
    const QByteArray &Name() const { return m_name; }
    /// A tag's further attributes are read and not kept.
    static constexpr size_t MostAttributes = 10'000;
    bool HasMoreAttributes() const { return m_hasMoreAttributes; }
    /// Of the tag, as long as it is the last part that was read.
    const std::vector<Attribute> &Attributes() const { return m_attributes; }
    /// Takes what stands up to the end tag of the tag that was read last, whatever it looks like, or up to the end.
    /// The end tag stays to be read.
    QByteArrayView TakeRawText();

private:
    qsizetype Left() const { return m_end - m_at; }
    char Peek(qsizetype ahead) const { return Left() > ahead ? m_at[ahead] : '\0'; }
    bool IsForgiving() const { return m_manner == Manner::Forgiving; }
    Part ReadTag();
    bool ReadAttributes();
    Attribute ReadAttribute();
    QByteArrayView ReadValue();
    const char *Find(char wanted, const char *from, const char *end) const;

    const char *m_start = nullptr; ///< of the part
    const char *m_at;
    const char *m_end;
    const char *m_tagLimit = nullptr; ///< where the tag must have ended
    Manner m_manner;
    QByteArray m_name;
    std::vector<Attribute> m_attributes;
    bool m_hasMoreAttributes = false;
};

/// A text with its entities in place, such as "&eacute;" and "&#x1E47;"; what is none that is known stays as it stands.
QByteArray WithoutEntities(QByteArrayView text);
