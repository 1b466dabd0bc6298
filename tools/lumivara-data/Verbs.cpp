#include "lumivara-data/Verbs.h"

#include <QCoreApplication>
#include <QDir>

namespace {

constexpr Verb Table[] = {
    {u"build", u"make the databases from their sources", RunBuild},
    {u"check", u"tell what is wrong with a canon, a dictionary or a file of marks", RunCheck},
    {u"backup", u"save the marks, also while the program runs", RunBackup},
    {u"restore", u"make a file of marks out of a backup", RunRestore},
    {u"export", u"write the marks as HTML, Markdown or CSV", RunExport},
};

} // namespace

std::span<const Verb> DataVerbs()
{
    return Table;
}

QStringList WithoutMarksWord(QStringList positional)
{
    if (positional.value(0) == QLatin1StringView("marks"))
        positional.removeFirst();
    return positional;
}

QString DefaultMarksFile()
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("TARUNECLIENT.FDB"));
}
