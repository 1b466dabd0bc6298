#include "stores/settings/AutostartEntry.h"

#include <QHash>
#include <QProcess>
#include <QStringDecoder>
#include <QStringList>
#include <QUrl>

namespace {

const QString ExecKey = QStringLiteral("Exec");
// Desktops start nothing while the file named here is missing.
const QString ConditionKey = QStringLiteral("TryExec");
const QString CommandKey = QStringLiteral("X-Lumivara-Command");
const QString ExpandableKey = QStringLiteral("X-Lumivara-Expandable");
const QString HiddenKey = QStringLiteral("Hidden");
// The switch set by desktops' own dialogs for the start list.
const QString EnabledKey = QStringLiteral("X-GNOME-Autostart-enabled");
const QString True = QStringLiteral("true");
const QString False = QStringLiteral("false");

/// An argument of an Exec line: quoted, with the four letters escaped that keep a meaning in quotes, and "%" doubled.
QString QuotedArgument(const QString &argument)
{
    QString quoted;
    for (const QChar letter : argument) {
        if (QStringView(u"\"`$\\").contains(letter))
            quoted += QLatin1Char('\\');
        quoted += letter;
        if (letter == QLatin1Char('%'))
            quoted += letter;
    }
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

/// The general escapes of a value in a desktop entry.
QString EscapedValue(const QString &text)
{
    QString escaped;
    for (const QChar letter : text) {
        switch (letter.unicode()) {
        case u'\\':
            escaped += QStringLiteral("\\\\");
            break;
        case u'\n':
            escaped += QStringLiteral("\\n");
            break;
        case u'\r':
            escaped += QStringLiteral("\\r");
            break;
        case u'\t':
            escaped += QStringLiteral("\\t");
            break;
        default:
            escaped += letter;
        }
    }
    return escaped;
}

QString UnescapedValue(const QString &text)
{
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != QLatin1Char('\\') || i + 1 == text.size()) {
            plain += text[i];
            continue;
        }
        switch (text[++i].unicode()) {
        case u's':
            plain += QLatin1Char(' ');
            break;
        case u'n':
            plain += QLatin1Char('\n');
            break;
        case u'r':
            plain += QLatin1Char('\r');
            break;
        case u't':
            plain += QLatin1Char('\t');
            break;
        default:
            plain += text[i];
        }
    }
    return plain;
}

/// The file name of a command in double quotes; empty for any other command.
QString QuotedFile(const QString &command)
{
    constexpr qsizetype bothQuotes = 2;
    const QLatin1Char quote('"');
    if (command.size() <= bothQuotes || !command.startsWith(quote) || !command.endsWith(quote))
        return {};
    return command.mid(1, command.size() - bothQuotes);
}

/// The Exec line that starts a command of the list.
QString ExecOf(const QString &command, const QString &launcher)
{
    // The launcher brings the user's copy of the program up to date first.
    if (!launcher.isEmpty())
        return QuotedArgument(launcher);
    // The quotes around a path are the list's own: between them is one file name, with any characters.
    if (const QString file = QuotedFile(command); !file.isEmpty())
        return QuotedArgument(file);
    QStringList arguments;
    for (const QString &argument : QProcess::splitCommand(command))
        arguments += QuotedArgument(argument);
    return arguments.join(QLatin1Char(' '));
}

/// A foreign Exec line as a command of the list: keeps quotes, removes escapes and placeholders for files.
QString CommandOf(const QString &exec)
{
    QString command;
    bool isQuoted = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar letter = exec[i];
        const bool hasNext = i + 1 < exec.size();
        if (letter == QLatin1Char('\\') && isQuoted && hasNext) {
            command += exec[++i];
        } else if (letter == QLatin1Char('%') && hasNext) {
            if (exec[++i] == QLatin1Char('%'))
                command += QLatin1Char('%');
        } else {
            isQuoted ^= letter == QLatin1Char('"');
            command += letter;
        }
    }
    return command.trimmed();
}

/// Keys and values of the entry's main group, values still escaped.
QHash<QString, QString> MainGroup(const QByteArray &bytes)
{
    QHash<QString, QString> values;
    bool isMainGroup = false;
    const QStringList lines = QString::fromUtf8(bytes).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(QLatin1Char('['))) {
            isMainGroup = trimmed == QStringLiteral("[Desktop Entry]");
            continue;
        }
        const qsizetype equals = trimmed.indexOf(QLatin1Char('='));
        if (!isMainGroup || trimmed.startsWith(QLatin1Char('#')) || equals < 0)
            continue;
        values.insert(trimmed.left(equals).trimmed(), trimmed.mid(equals + 1).trimmed());
    }
    return values;
}

} // namespace

QByteArray AutostartFileOf(const QString &name, const AutostartEntry &entry)
{
    QStringList lines{QStringLiteral("[Desktop Entry]"), QStringLiteral("Type=Application"),
                      QStringLiteral("Name=") + EscapedValue(name)};
    if (entry.command.isEmpty()) {
        lines += HiddenKey + QLatin1Char('=') + True;
    } else {
        // Percent-encoded, because no other form of a value keeps every character, including blanks at the ends.
        const QByteArray exact = QUrl::toPercentEncoding(entry.command, QByteArrayLiteral("/\"'()+,:@\\"));
        if (!entry.launcher.isEmpty())
            lines += ConditionKey + QLatin1Char('=') + EscapedValue(entry.launcher);
        lines += ExecKey + QLatin1Char('=') + EscapedValue(ExecOf(entry.command, entry.launcher));
        lines += CommandKey + QLatin1Char('=') + EscapedValue(QString::fromLatin1(exact));
    }
    if (entry.isExpandable)
        lines += ExpandableKey + QLatin1Char('=') + True;
    return (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8();
}

QString LauncherNoteOf(const QString &command)
{
    const QString file = QuotedFile(command);
    const qsizetype end = file.lastIndexOf(QLatin1Char('/'));
    return file.startsWith(QLatin1Char('/')) ? file.left(end + 1) + QStringLiteral("launcher") : QString();
}

QString ReadLauncherNote(const QByteArray &bytes)
{
    const QString path = QString::fromUtf8(bytes).trimmed();
    return path.startsWith(QLatin1Char('/')) && !path.contains(QLatin1Char('\n')) ? path : QString();
}

AutostartEntry ReadAutostartFile(const QByteArray &bytes)
{
    const QHash<QString, QString> values = MainGroup(bytes);
    AutostartEntry entry;
    entry.isExpandable = values.value(ExpandableKey) == True;
    if (values.value(HiddenKey) == True || values.value(EnabledKey) == False)
        return entry;
    // Every character counts, even a byte order mark at the start.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString exact =
        decoder.decode(QByteArray::fromPercentEncoding(UnescapedValue(values.value(CommandKey)).toLatin1()));
    const QString exec = UnescapedValue(values.value(ExecKey));
    // If the Exec line was changed since, that is what the desktop runs.
    entry.launcher = UnescapedValue(values.value(ConditionKey));
    entry.command = !exact.isEmpty() && ExecOf(exact, entry.launcher) == exec ? exact : CommandOf(exec);
    return entry;
}
