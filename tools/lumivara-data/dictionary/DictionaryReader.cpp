#include "lumivara-data/dictionary/DictionaryReader.h"

#include "base/Messages.h"
#include "stores/Schema.h"
#include "stores/data/Field.h"
#include "stores/engine/Blobs.h"
#include "stores/engine/DatabaseError.h"
#include "stores/engine/Values.h"

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/// A select on the procedures and its rows.
class Rows
{
public:
    Rows(DataFile &file, const QString &sql, int kind)
        : m_file(file), m_statement(file.Database().Attachment(), file.Transaction().Native(), sql)
    {
        m_statement.OpenCursor(file.Transaction().Native(),
                               QList<QVariant>(m_statement.ParameterNames().size(), QVariant(kind)));
    }

    bool Next() { return m_statement.Fetch(); }
    bool IsNull(size_t column) const { return Value<short>(m_statement.Columns()[column].nullOffset) != 0; }
    qint64 Number(size_t column) const
    {
        const Column &shape = m_statement.Columns()[column];
        switch (shape.kind) {
        case ColumnKind::Small:
            return Value<qint16>(shape.offset);
        case ColumnKind::Long:
            return Value<qint32>(shape.offset);
        case ColumnKind::Big:
            return Value<qint64>(shape.offset);
        default:
            throw DatabaseError(Sentence({u"%1 không phải là số", u"%1 is no number"}).arg(shape.name));
        }
    }
    QString Text(size_t column) const
    {
        const Column &shape = m_statement.Columns()[column];
        if (IsNull(column))
            return {};
        if (shape.kind != ColumnKind::Text)
            throw DatabaseError(Sentence({u"%1 không phải là văn bản", u"%1 is no text"}).arg(shape.name));
        const auto *bytes = reinterpret_cast<const char *>(m_statement.Message() + shape.offset);
        qsizetype size = Value<quint16>(shape.offset);
        bytes += sizeof(quint16);
        while (shape.padded && size > 0 && bytes[size - 1] == ' ')
            --size;
        QByteArray text(bytes, size);
        JoinSurrogates(text);
        return QString::fromUtf8(text);
    }
    void Bytes(size_t column, QByteArray &bytes) const
    {
        const Column &shape = m_statement.Columns()[column];
        if (shape.kind != ColumnKind::Blob)
            throw DatabaseError(Sentence({u"%1 không phải là blob", u"%1 is no blob"}).arg(shape.name));
        ReadBlob(m_file.Database().Attachment(), m_file.Transaction().Native(), {Value<ISC_QUAD>(shape.offset)}, bytes);
        if (shape.isText)
            JoinSurrogates(bytes);
    }

private:
    template <typename Type>
    Type Value(unsigned offset) const
    {
        Type value;
        std::memcpy(&value, m_statement.Message() + offset, sizeof value);
        return value;
    }

    DataFile &m_file;
    Statement m_statement;
};

} // namespace

qsizetype DictionaryReader::CountWords(int kind)
{
    Rows rows(m_file, u"select count(*) from SP_GET_LIST_WORDS(:A_DICT) e"_s, kind);
    return rows.Next() ? rows.Number(0) : 0;
}

void DictionaryReader::EachWord(int kind, const std::function<void(const QString &)> &take)
{
    Rows rows(m_file, u"select e.WORD_NAME, e.DICT_TYPE from SP_GET_LIST_WORDS(:A_DICT) e"_s, kind);
    for (qsizetype row = 1; rows.Next(); ++row) {
        if (const qint64 told = rows.Number(1); told != kind)
            throw DatabaseError(
                Sentence({u"dòng %1 tự ghi là của từ điển %2", u"row %1 says that it is of dictionary %2"})
                    .arg(row)
                    .arg(told));
        take(rows.Text(0));
    }
}

void DictionaryReader::EachEntry(int kind, const std::function<void(const QString &, const QByteArray &)> &take)
{
    Rows rows(m_file,
              u"select L.WORD_NAME, E.WORD_CONTENT from SP_GET_LIST_WORDS(:A_DICT) L "
              "left join SP_GET_WORD_CONTENT(:DICT_TYPE, L.WORD_NAME, 0) E on 1 = 1"_s,
              kind);
    QString previous;
    QByteArray content;
    while (rows.Next()) {
        const QString word = rows.Text(0);
        if (word == previous && !previous.isNull())
            continue;
        if (rows.IsNull(1))
            content = QByteArray();
        else
            rows.Bytes(1, content);
        take(word, content);
        previous = word;
    }
}

bool DictionaryReader::HasForms()
{
    const QStringList columns = m_file.Columns(Table::DictionaryForm);
    for (const char16_t *const name : {u"DICT_TYPE", u"FORM_NAME", u"PLACE", u"WORD_NAME"}) {
        if (!columns.contains(QStringView(name)))
            return false;
    }
    return true;
}

void DictionaryReader::EachForm(int kind, const std::function<void(const QString &, const QString &)> &take)
{
    if (!HasForms())
        return;
    // In the order of storage, where the words of a form are in their order.
    Rows rows(m_file, u"select F.FORM_NAME, F.WORD_NAME from DICTIONARY_FORM F where F.DICT_TYPE = :A_DICT"_s, kind);
    while (rows.Next())
        take(rows.Text(0), rows.Text(1));
}

void DictionaryReader::ProveForms(int kind, const std::function<void(const QString &, const QString &, bool)> &take)
{
    if (!HasForms())
        return;
    Rows rows(m_file,
              u"select F.FORM_NAME, F.WORD_NAME, P.WORD from DICTIONARY_FORM F "
              "left join SP_GET_FORMS(F.DICT_TYPE, F.FORM_NAME) P on P.WORD = F.WORD_NAME "
              "where F.DICT_TYPE = :A_DICT"_s,
              kind);
    while (rows.Next())
        take(rows.Text(0), rows.Text(1), !rows.IsNull(2));
}
