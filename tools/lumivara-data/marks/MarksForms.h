#pragma once

#include "stores/Schema.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class DataFile;

/// A mark of a file, with the names of its text. Null texts are empty, and so are the names of a text that the list
/// does not have.
struct Mark
{
    int key = 0;
    int collection = 0;
    int text = 0;
    QString nameVietnamese, namePali, nameEnglish;
    QString title, keywords, note;
    std::optional<int> priority;
    QString time;           ///< local, as "2024-02-29 23:59:58.1234"; empty for none
    QByteArray excerpt;     ///< as stored; null for none
    QString reference = {}; ///< of an export: where the mark stands, as "1101:12"
};

/// The page of an excerpt, without a byte order mark.
QString ExcerptHtml(const Mark &mark);

/// Gives every mark of an open file, also those that the program does not list, by text and key.
void VisitMarks(DataFile &file, const std::function<void(const Mark &)> &visit);

/// The title that documents show: one line, "#" and the key where there is none.
QString ShownTitle(const Mark &mark);
/// "Cao" for 2; the number where it is no priority, nothing for none.
QString PriorityName(std::optional<int> priority);

/// How the CSV has the bytes of an excerpt, in its column TEXT_FORM.
namespace ExcerptForm {
inline constexpr SchemaName Marked = u"utf-8-bom"; ///< text, in the file behind a byte order mark
inline constexpr SchemaName Plain = u"utf-8";
inline constexpr SchemaName Encoded = u"base64";
inline constexpr SchemaName None = u"none"; ///< there is no excerpt
/// The column.
inline constexpr SchemaName Column = u"TEXT_FORM";
} // namespace ExcerptForm

/// A document made mark by mark. HTML holds no mark-up of the excerpts. CSV has a header line, CR LF ends its
/// records, and times are local in ISO form; from it each mark comes back byte for byte.
struct MarksForm
{
    const char16_t *name;
    QString head;
    /// `previous` is the mark before, null for the first.
    QString (*mark)(const Mark &mark, const Mark *previous);
    QString tail;
};
/// "html", "markdown", "md" or "csv". Throws ToolError for another name.
MarksForm MarksFormNamed(const QString &name);
