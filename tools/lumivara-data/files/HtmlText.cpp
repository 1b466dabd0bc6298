#include "lumivara-data/files/HtmlText.h"

#include "base/PlainText.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

const QString LineMark(QChar(0xFFFF));
const QString BlankMark(QChar(0xFFFE));

} // namespace

QString TextOfHtml(const QString &html)
{
    static const QRegularExpression blockEnd(
        uR"((<\s*(?:br|hr)\b|<\s*/\s*(?:p|div|h[1-6]|li|tr|blockquote|pre|dt|dd|table|ul|ol)\s*>))"_s,
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression cellEnd(uR"(<\s*/\s*t[dh]\s*>)"_s, QRegularExpression::CaseInsensitiveOption);
    // The stripper drops line ends and the blanks before a tag, and words would join there.
    static const QRegularExpression blank(uR"([\r\n]+|[ \t]+(?=[<\r\n]))"_s);
    static const QRegularExpression blanks(u"[ \\t%1]+"_s.arg(BlankMark));
    static const QRegularExpression lineEnds(u" ?%1[ %1]*"_s.arg(LineMark));
    QString text = html;
    text.replace(blank, BlankMark).replace(cellEnd, BlankMark).replace(blockEnd, LineMark + u"\\1"_s);
    text.replace(u"&nbsp;"_s, QString(QChar::Nbsp));
    return StripHtml(text).replace(blanks, u" "_s).replace(lineEnds, u"\n"_s).trimmed();
}
