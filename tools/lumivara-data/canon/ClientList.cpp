#include "lumivara-data/canon/ClientList.h"

#include "common/Leftover.h"
#include "common/Tool.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/marks/MarksCheck.h"
#include "lumivara-data/sealed/Examination.h"
#include "stores/Schema.h"

#include <QFileInfo>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

QVariant OrNull(const QString &name)
{
    return name.isEmpty() ? QVariant() : QVariant(name);
}

} // namespace

void ClientList::Prepare(const QString &path, Console &console)
{
    const QFileInfo info(path);
    if (!info.isFile())
        throw ToolError(u"%1: there is no such file"_s.arg(path));
    if (!info.isWritable())
        throw ToolError(u"%1: cannot be written"_s.arg(path));
    TpFIBDatabase::SetLockFolder(info.absolutePath() + u"/lock"_s);
    DataFile file;
    file.Open(OpenablePath(info.absoluteFilePath(), false, console));
    if (!IsMarks(file))
        throw ToolError(u"%1: no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"_s.arg(path));
    file.Close();
}

qsizetype ClientList::AddMissing(const QString &path, const CheckedCanon &canon)
{
    DataFile file;
    file.Open(QFileInfo(path).absoluteFilePath());
    QSet<int> listed;
    for (const QList<QVariant> &row :
         file.Rows(u"select S.NIC_SUT from SUTTA_LIST S where S.NIK_SUT = %1"_s.arg(Collection::Kelora)))
        listed.insert(row[0].toInt());
    qsizetype added = 0;
    {
        RowWriter texts(file, Table::SuttaList, ListColumns());
        for (const CheckedText &text : canon.texts) {
            if (!text.idVic || listed.contains(*text.idVic))
                continue;
            listed.insert(*text.idVic);
            texts.Append({Collection::Kelora, *text.idVic, OrNull(text.nameVietnamese), OrNull(text.namePali),
                          OrNull(text.nameEnglish)});
            ++added;
        }
    }
    file.Database().CheckFileInPlace();
    Leftover::Complete(path, [&file] { file.Finish(false); });
    return added;
}
