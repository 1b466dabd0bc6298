#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Which tags a text has.
enum class TagDialect { Html, Pango, Xdxf };

/// Makes an entry in the line mark-up out of texts in other forms. Bytes are UTF-8. What the mark-up would take for
/// marks or tags stands as entities, lines fit into what the formatter reads of them, and tags are balanced, whatever
/// the source.
class EntryMarkup
{
public:
    /// `word` is the one that the entry is for.
    explicit EntryMarkup(const QByteArray &word);

    /// How the word sounds, for its head line: "/ … /" or "[ … ]".
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
