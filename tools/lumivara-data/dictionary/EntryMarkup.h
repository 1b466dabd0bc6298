#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// The kind of tags in a text.
enum class TagDialect { Html, Pango, Xdxf };

/// Makes an entry in the line mark-up from texts in other forms. Bytes are UTF-8. For any source, characters that the
/// mark-up would interpret are entities, lines fit the formatter's limit, and tags are balanced.
class EntryMarkup
{
public:
    /// `word` is the one that the entry is for.
    explicit EntryMarkup(const QByteArray &word);

    /// The pronunciation for the head line: "/ … /" or "[ … ]".
    void AddSound(QByteArrayView text, char open, char close);
    /// A plain text. One whose lines have the marks of the line mark-up, a head or classes among them, keeps them.
    void AddPlain(QByteArrayView text);
    void AddTagged(QByteArrayView text, TagDialect dialect);

    /// The entry, which begins with a head line; empty if nothing was added.
    QByteArray Take();

private:
    friend class TaggedLines;
    /// Adds a line without its mark; '\0' for a plain one. `text` is escaped.
    void AddLine(char mark, QByteArrayView text);
    bool IsHead(QByteArrayView text) const;

    QByteArray m_word;
    QByteArray m_head; ///< without its mark; empty for none
    QByteArray m_sounds;
    QByteArray m_lines;
};
