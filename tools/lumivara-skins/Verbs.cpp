#include "lumivara-skins/Verbs.h"

#include "common/Console.h"
#include "lumivara-skins/SkinCheck.h"
#include "lumivara-skins/SkinSource.h"
#include "presentation/looks/SkinObject.h"

#include <QCommandLineParser>
#include <QFile>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

QJsonArray ReadSkins(const QString &path)
{
    QFile file(path);
    OpenSource(file);
    const QByteArray bytes = file.read(MaxSkinFileBytes + 1);
    if (bytes.size() > MaxSkinFileBytes)
        throw ToolError(u"%1: it has more than %2 bytes"_s.arg(path).arg(MaxSkinFileBytes));
    QString problem;
    const auto skins = SkinObjects(bytes, &problem);
    if (!skins)
        throw ToolError(u"%1: %2"_s.arg(path, problem));
    return *skins;
}

QString OnlyFile(const QCommandLineParser &parser, const QString &verb)
{
    if (parser.positionalArguments().size() != 1)
        throw ToolError(u"%1 wants one FILE; see \"lumivara-skins %1 --help\""_s.arg(verb));
    return parser.positionalArguments().first();
}

} // namespace

int RunPack(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Makes the skin file of the *.skin files of a folder, in the order of their names. What a skin takes from\n"
        u"another one is written out, pictures are taken in from the folder's \"pictures\". The same sources give the\n"
        u"same bytes; the file is replaced at once or not at all.\n"
        u"Exit codes: 0 done, 2 wrong usage, sources that cannot be read or a file that cannot be written."_s);
    parser.addPositionalArgument(u"FOLDER"_s, u"The folder with the sources."_s);
    parser.addPositionalArgument(u"FILE"_s, u"The skin file to write."_s);
    if (ParseOrHelp(parser, u"pack FOLDER FILE"_s, arguments, console))
        return ExitCode::Clean;
    const QStringList words = parser.positionalArguments();
    if (words.size() != 2)
        throw ToolError(u"pack wants a FOLDER and a FILE; see \"lumivara-skins pack --help\""_s);
    const QJsonArray skins = ReadSkinSources(words[0]);
    const QByteArray bytes = SkinFileBytes(skins);
    if (bytes.size() > MaxSkinFileBytes)
        throw ToolError(u"%1: the skins have more than %2 bytes"_s.arg(words[0]).arg(MaxSkinFileBytes));
    QSaveFile file(words[1]);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw ToolError(u"%1: %2"_s.arg(words[1], file.errorString()));
    console.Print(u"%1: %2 skins\n"_s.arg(words[1]).arg(skins.size()));
    return ExitCode::Clean;
}

int RunCheckSkins(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Tells what is wrong with a skin file, one finding a line: names that are not valid or stand twice, colours\n"
        u"that are missing or unknown, numbers out of their limits, pictures that cannot be shown, and contrasts that\n"
        u"are too low to read.\n"
        u"Exit codes: 0 clean, 1 findings, 2 wrong usage or a file that cannot be read."_s);
    parser.addPositionalArgument(u"FILE"_s, u"The skin file."_s);
    if (ParseOrHelp(parser, u"check FILE"_s, arguments, console))
        return ExitCode::Clean;
    const QString path = OnlyFile(parser, u"check"_s);
    const QStringList findings = CheckSkins(ReadSkins(path));
    for (const QString &finding : findings)
        console.Print(u"%1: %2\n"_s.arg(path, finding));
    return findings.isEmpty() ? ExitCode::Clean : ExitCode::Findings;
}

int RunListSkins(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Lists the skins of a file, one a line: position, name, the name for people, and whether it is\n"
        u"dark or light and of high contrast, parted by tabs. What the program can't list is left out.\n"
        u"Exit codes: 0 done, 2 wrong usage or a file that cannot be read."_s);
    parser.addPositionalArgument(u"FILE"_s, u"The skin file."_s);
    if (ParseOrHelp(parser, u"list FILE"_s, arguments, console))
        return ExitCode::Clean;
    int position = 0;
    const QJsonArray skins = ReadSkins(OnlyFile(parser, u"list"_s));
    for (const QJsonValue value : skins) {
        const QJsonObject skin = value.toObject();
        const QString name = skin.value("name"_L1).toString();
        if (!IsSkinName(name))
            continue;
        QString kind = skin.value("dark"_L1).toBool() ? u"dark"_s : u"light"_s;
        if (skin.value("highContrast"_L1).toBool())
            kind += u", high contrast"_s;
        console.Print(
            u"%1\t%2\t%3\t%4\n"_s.arg(++position).arg(name, skin.value("displayName"_L1).toString(name), kind));
    }
    return ExitCode::Clean;
}
