#include "lumivara-data/MarksFile.h"

#include "common/Tool.h"
#include "lumivara-data/Verbs.h"
#include "lumivara-data/canon/ClientList.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/FileLock.h"
#include "lumivara-data/marks/MarksCheck.h"
#include "lumivara-data/marks/TextsOfMarks.h"
#include "lumivara-data/sealed/Examination.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QString ExistingFile(const QString &name)
{
    const QFileInfo file(name);
    if (!file.exists())
        throw ToolError(u"%1: there is no such file"_s.arg(name));
    if (!file.isFile())
        throw ToolError(u"%1: is no file"_s.arg(name));
    return file.canonicalFilePath();
}

QList<KeloraText> TextsFor(DataFile &file, const QString &canon, Console &console)
{
    const QString usual = DefaultFile(Thing::Canon);
    if (!TextsOfMarks::ListLacksKelora(file) || (canon.isEmpty() && !QFileInfo::exists(usual)))
        return {};
    return ClientList::TextsOf(canon.isEmpty() ? usual : canon, console);
}

} // namespace

QString
ChangeMarks(const QString &given, const QString &canon, Console &console,
            const std::function<void(DataFile &file, const QString &path, const QList<KeloraText> &texts)> &work)
{
    const QString path = ExistingFile(given);
    // Two that write would both find a mark new, or give the same keys.
    FileLock lock(path + u".import.lock"_s);
    if (!lock.Take())
        throw ToolError(u"%1: an import into this file, or a sync of it, is running"_s.arg(path));
    DataFile file;
    constexpr int pagesInMemory = 4096; // with the few of the default each new mark waits for the disk
    file.Database().SetCachePages(pagesInMemory);
    OnFile(path, [&] {
        file.Open(OpenablePath(path, false, console));
        if (!IsMarks(file))
            throw ToolError(u"%1: no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"_s.arg(path));
        work(file, path, TextsFor(file, canon, console));
    });
    return path;
}
