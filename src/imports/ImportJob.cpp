#include "imports/ImportJob.h"

#include "base/Messages.h"
#include "stores/Schema.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Word
{
    const char16_t *ofTool;
    Message text;
};

constexpr Word forms[]{
    {u"segmented", {u"Kinh sách chia theo từng đoạn", u"Texts in segments"}},
    {u"folder", {u"Thư mục kinh sách", u"A folder of texts"}},
    {u"copy", {u"Kho kinh sách của chương trình này", u"A canon of this program"}},
    {u"stardict", {u"Từ điển StarDict", u"A StarDict dictionary"}},
    {u"tsv", {u"Bảng từ và nghĩa", u"A table of words and entries"}},
    {u"markup", {u"Bản nguồn của từ điển", u"The source form of a dictionary"}},
};

} // namespace

std::optional<ImportTarget> TargetOf(const QString &path)
{
    const QFileInfo info(path);
    if (info.isDir())
        return QDir(path).entryList({u"*.ifo"_s}, QDir::Files).isEmpty() ? ImportTarget::Canon
                                                                         : ImportTarget::Dictionary;
    if (!info.isFile())
        return std::nullopt;
    const QString ending = info.suffix().toLower();
    if (ending == u"fdb")
        return ImportTarget::Canon;
    for (const auto words : {u"ifo", u"tsv", u"tab", u"txt"})
        if (ending == QStringView(words))
            return ImportTarget::Dictionary;
    return std::nullopt;
}

QString ImportJob::File() const
{
    return programFolder + (target == ImportTarget::Canon ? DatabaseFile::Canon : DatabaseFile::Dictionary);
}

QStringList ImportJob::Arguments() const
{
    QStringList arguments{u"import"_s};
    if (target == ImportTarget::Canon)
        arguments << u"canon"_s;
    else
        arguments << u"dictionary"_s << u"--kind"_s << QString::number(kind);
    if (!replaces)
        arguments << u"--add"_s;
    else if (target == ImportTarget::Dictionary)
        arguments << u"--replace"_s;
    arguments << u"--into"_s << File() << u"--json"_s << u"--progress"_s;
    arguments << u"--words"_s << TextOrEnglish({u"vi", u"en"});
    // The list of texts belongs to the marks, which a trial leaves alone.
    const QString marks = programFolder + DatabaseFile::Marks;
    if (target == ImportTarget::Canon && !isTrial && QFileInfo::exists(marks))
        arguments << u"--client"_s << marks;
    arguments << (isTrial ? u"--dry-run"_s : u"--keep-before"_s);
    return arguments << u"--"_s << source;
}

std::optional<ImportProgress> ProgressOf(const QByteArray &line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (!object.contains(u"done"_s))
        return std::nullopt;
    return ImportProgress{object[u"done"_s].toInteger(), object[u"total"_s].toInteger()};
}

ImportReport ReportOf(const QByteArray &json, int exitCode)
{
    constexpr int nothingMade = 2;
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    ImportReport report;
    // A canon with faults is told and not made, which is no failure of the tool.
    report.isDone = object.contains(u"file"_s) && exitCode < nothingMade;
    report.failure = object[u"error"_s].toString();
    report.form = object[u"form"_s].toString();
    report.name = object[u"name"_s].toString();
    report.licence = object[u"licence"_s].toString();
    const QJsonObject counted = object[u"counts"_s].toObject();
    for (auto count = counted.begin(); count != counted.end(); ++count)
        report.counts.append({count.key(), count->toInteger()});
    const QJsonArray findings = object[u"findings"_s].toArray();
    for (const QJsonValue &finding : findings)
        report.leftOut.append({finding[u"place"_s].toString(), finding[u"fault"_s].toString()});
    report.leftOutCount = object[u"findingCount"_s].toInteger();
    constexpr qsizetype mostFaults = 5;
    if (!report.isDone && report.failure.isEmpty()) {
        QStringList faults;
        for (const auto &[place, fault] : report.leftOut.first(std::min(mostFaults, report.leftOut.size())))
            faults += place + u": "_s + fault;
        report.failure = faults.join(u'\n');
    }
    return report;
}

QString CountText(const QString &what, qint64 number)
{
    return QLocale().toString(number) + u' ' + what;
}

QString FormText(const QString &form)
{
    for (const Word &known : forms)
        if (form == QStringView(known.ofTool))
            return TextOrEnglish(known.text);
    return form;
}
