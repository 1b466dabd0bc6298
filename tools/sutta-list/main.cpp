#include "common/Console.h"
#include "common/Tool.h"
#include "lumivara-data/files/CsvTable.h"
#include "stores/Schema.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

/// A title as a string literal of the compiler; an empty one as null.
QString Literal(QString title)
{
    if (title.isEmpty())
        return u"nullptr"_s;
    return u"u\""_s + title.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s) + u'"';
}

} // namespace

/// sutta-list TEXTS.csv ROWS.inc: the canon's list of texts as rows of a table to compile in.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Console console(u"sutta-list"_s);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        if (arguments.size() != 3)
            throw ToolError(u"wants TEXTS.csv and ROWS.inc"_s);
        QFile source(arguments[1]);
        if (!source.open(QIODevice::ReadOnly))
            throw ToolError(u"%1: %2"_s.arg(arguments[1], source.errorString()));
        const CsvTable texts(source.readAll(), arguments[1]);
        QString rows;
        for (qsizetype row = 0; row < texts.RowCount(); ++row) {
            rows += u"{%1, %2, %3},\n"_s.arg(QString::number(texts.Number(row, Field::IdVic)),
                                             Literal(texts.Text(row, Field::NameVicVie)),
                                             Literal(texts.Text(row, Field::NameVicPal)));
        }
        QSaveFile target(arguments[2]);
        const QByteArray bytes = rows.toUtf8();
        if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() || !target.commit())
            throw ToolError(u"%1: %2"_s.arg(arguments[2], target.errorString()));
    } catch (const std::exception &error) {
        console.Error(QString::fromUtf8(error.what()));
        return ExitCode::Failure;
    }
    return ExitCode::Clean;
}
