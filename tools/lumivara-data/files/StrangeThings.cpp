#include "lumivara-data/files/StrangeThings.h"

#include "base/Messages.h"
#include "lumivara-data/files/DataFile.h"

using namespace Qt::StringLiterals;

QStringList StrangeThings(DataFile &file, const QList<std::pair<QString, QStringList>> &known)
{
    QStringList quoted;
    for (const auto &[table, columns] : known)
        quoted.append(u"'%1'"_s.arg(table));
    const std::pair<QString, QString> selects[] = {
        {Sentence({u"bảng", u"table"}),
         u"select RDB$RELATION_NAME from RDB$RELATIONS where RDB$SYSTEM_FLAG = 0 and RDB$RELATION_NAME "
         "not in (%1)"_s.arg(quoted.join(u", "_s))},
        {Sentence({u"thủ tục", u"procedure"}),
         u"select RDB$PROCEDURE_NAME from RDB$PROCEDURES where coalesce(RDB$SYSTEM_FLAG, 0) = 0"_s},
        {Sentence({u"hàm", u"function"}),
         u"select RDB$FUNCTION_NAME from RDB$FUNCTIONS where coalesce(RDB$SYSTEM_FLAG, 0) = 0"_s},
        // Those of checks come with their table.
        {Sentence({u"bẫy", u"trigger"}),
         u"select RDB$TRIGGER_NAME from RDB$TRIGGERS where coalesce(RDB$SYSTEM_FLAG, 0) = 0"_s},
    };
    QStringList found;
    for (const auto &[kind, select] : selects) {
        for (const QList<QVariant> &row : file.Rows(select))
            found.append(kind + u' ' + row[0].toString().trimmed());
    }
    for (const auto &[table, columns] : known) {
        for (const QString &column : file.Columns(table)) {
            if (!columns.contains(column))
                found.append(Sentence({u"cột %1 của %2", u"column %1 of %2"}).arg(column, table));
        }
    }
    return found;
}
