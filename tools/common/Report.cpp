#include "common/Report.h"

#include "common/Console.h"
#include "common/Tool.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A source of a million lines can be wrong in each: the report stays readable and small.
constexpr qsizetype LinesKept = 1000;

QJsonArray ArrayOf(const QList<std::pair<QString, QString>> &lines, const QString &textKey)
{
    QJsonArray array;
    for (const auto &[place, text] : lines)
        array.append(QJsonObject{{u"place"_s, place}, {textKey, text}});
    return array;
}

} // namespace

void Report::AddOptions(QCommandLineParser &parser)
{
    parser.addOption({u"quiet"_s, u"Tells only what is wrong."_s});
    parser.addOption({u"json"_s, u"Writes the report as one JSON object on the standard output."_s});
}

ReportOptions Report::OptionsOf(const QCommandLineParser &parser)
{
    return {parser.isSet(u"quiet"_s), parser.isSet(u"json"_s)};
}

Report::Report(Console &console, const ReportOptions &options) : m_console(&console), m_options(options)
{
    console.SetShowsProgress(!options.isQuiet && !options.isJson);
}

void Report::AddLine(QList<std::pair<QString, QString>> &lines, const QString &place, const QString &text)
{
    if (lines.size() < LinesKept)
        lines.append({place, text});
}

void Report::Find(const QString &place, const QString &fault)
{
    ++m_findingCount;
    AddLine(m_findings, place, fault);
    if (m_findingCount <= LinesKept)
        Print(place + u": "_s + fault);
}

void Report::Note(const QString &place, const QString &change)
{
    ++m_noteCount;
    AddLine(m_notes, place, change);
    if (!m_options.isQuiet && m_noteCount <= LinesKept)
        Print(place + u": "_s + change);
}

void Report::TakeOver(const Report &kept)
{
    for (const auto &[place, fault] : kept.m_findings)
        Find(place, fault);
    for (const auto &[place, change] : kept.m_notes)
        Note(place, change);
    m_findingCount += kept.m_findingCount - kept.m_findings.size();
    m_noteCount += kept.m_noteCount - kept.m_notes.size();
    for (const auto &[what, number] : kept.m_counts)
        Count(what, number);
}

void Report::Count(const QString &what, qsizetype number)
{
    const auto known =
        std::find_if(m_counts.begin(), m_counts.end(), [&](const auto &count) { return count.first == what; });
    if (known == m_counts.end())
        m_counts.append({what, number});
    else
        known->second += number;
}

void Report::Say(const QString &line)
{
    if (!m_options.isQuiet)
        Print(line);
}

void Report::Print(const QString &line)
{
    if (m_console && !m_options.isJson)
        m_console->PrintLine(line);
}

int Report::Code() const
{
    return m_findingCount == 0 ? ExitCode::Clean : ExitCode::Findings;
}

QJsonObject Report::Json() const
{
    QJsonObject counts;
    for (const auto &[what, number] : m_counts)
        counts[what] = number;
    QJsonObject object = m_values;
    object[u"counts"_s] = counts;
    object[u"findings"_s] = ArrayOf(m_findings, u"fault"_s);
    object[u"findingCount"_s] = m_findingCount;
    object[u"notes"_s] = ArrayOf(m_notes, u"change"_s);
    object[u"noteCount"_s] = m_noteCount;
    return object;
}

Report::~Report()
{
    if (m_console && m_options.isJson && !m_isFinished)
        m_console->KeepReport(Json());
}

int Report::Finish(const QString &verdict)
{
    m_console->EndProgress();
    m_isFinished = true;
    if (m_options.isJson) {
        m_console->Print(QString::fromUtf8(QJsonDocument(Json()).toJson()));
        return Code();
    }
    for (const qsizetype untold : {m_findingCount - LinesKept, m_options.isQuiet ? 0 : m_noteCount - LinesKept}) {
        if (untold > 0)
            m_console->Print(u"… and %1 more\n"_s.arg(untold));
    }
    if (m_options.isQuiet)
        return Code();
    QStringList words;
    for (const auto &[what, number] : m_counts)
        words.append(u"%1 %2"_s.arg(number).arg(what));
    const QString counts = words.join(u", "_s);
    if (!counts.isEmpty() || !verdict.isEmpty())
        m_console->PrintLine(counts + (counts.isEmpty() || verdict.isEmpty() ? u""_s : u": "_s) + verdict);
    return Code();
}
