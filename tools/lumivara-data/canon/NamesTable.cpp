#include "lumivara-data/canon/NamesTable.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/canon/CanonTable.h"
#include "lumivara-data/files/CsvTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

NamesTable::NamesTable(const QString &path, Report &report)
{
    const CsvTable table(CanonTable::BytesOf(path, report), path);
    if (table.RowCount() > CanonTable::MostRows)
        throw ToolError(Sentence({u"%1: bảng có hơn %2 dòng", u"%1: the table has more than %2 rows"})
                            .arg(path)
                            .arg(CanonTable::MostRows));
    for (qsizetype row = 0; row < table.RowCount(); ++row) {
        const QString place = u"%1:%2"_s.arg(path).arg(table.Line(row));
        const QString id = table.Text(row, u"id"_s).trimmed();
        if (id.isEmpty() || m_names.contains(id)) {
            report.Find(
                place,
                id.isEmpty()
                    ? Sentence({u"dòng không có mã; không nhập", u"the row has no id; not taken"})
                    : Sentence({u"mã \"%1\" lặp lại; không nhập", u"the id \"%1\" comes again; not taken"}).arg(id));
            continue;
        }
        Row names{{}, place};
        for (const auto &[language, column] : {std::pair(Language::Pali, u"pali"_s),
                                               {Language::Vietnamese, u"vietnamese"_s},
                                               {Language::English, u"english"_s}}) {
            if (table.Has(column))
                names.names[size_t(language)] = FittingName(table.Text(row, column), place, report);
        }
        m_names.insert(id, names);
    }
}

void NamesTable::Apply(const QString &id, LanguageNames &names)
{
    const auto row = m_names.find(id);
    if (row == m_names.end())
        return;
    row->isUsed = true;
    for (size_t language = 0; language < LanguageCount; ++language) {
        if (!row->names[language].isEmpty())
            names[language] = row->names[language];
    }
}

void NamesTable::TellUnused(Report &report) const
{
    QStringList unused;
    for (auto row = m_names.cbegin(); row != m_names.cend(); ++row) {
        if (!row->isUsed)
            unused.append(row.key());
    }
    std::sort(unused.begin(), unused.end());
    for (const QString &id : std::as_const(unused))
        report.Note(m_names[id].place,
                    Sentence({u"ở đây không có gì tên là \"%1\"", u"nothing here is called \"%1\""}).arg(id));
}
