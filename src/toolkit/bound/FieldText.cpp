#include "toolkit/bound/FieldText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString FittingPart(const QString &text, qsizetype room)
{
    QString part = text.left(std::max<qsizetype>(room, 0));
    if (part.size() < text.size() && !part.isEmpty() && part.back().isHighSurrogate())
        part.chop(1);
    return part;
}

QString LineEndOf(const QString &text)
{
    const qsizetype pairs = text.count("\r\n"_L1);
    const qsizetype feeds = text.count(u'\n') - pairs;
    const qsizetype returns = text.count(u'\r') - pairs;
    if (feeds == 0 && returns == 0)
        return u"\r\n"_s;
    return feeds == 0 && pairs == 0 ? u"\r"_s : u"\n"_s;
}

QString WithLineFeeds(const QString &text)
{
    QString lines = text;
    return lines.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n');
}

QString WithLineEnds(const QString &text, const QString &lineEnd)
{
    QString lines = text;
    return lineEnd == u'\n' ? lines : lines.replace(u'\n', lineEnd);
}
