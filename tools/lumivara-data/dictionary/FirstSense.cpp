#include "lumivara-data/dictionary/FirstSense.h"

#include "base/Texts.h"
#include "lumivara-data/files/HtmlText.h"

#include <QByteArrayList>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestSense = 200;
/// Bytes of a line that are looked at; a sense lies at its beginning.
constexpr qsizetype MostBytes = 4096;

QString PlainLine(QByteArrayView line)
{
    QString text = TextOfHtml(FromUtf8(line.first(std::min(line.size(), MostBytes)))).simplified();
    if (text.size() > LongestSense) {
        text.truncate(LongestSense - 1);
        if (text.back().isHighSurrogate())
            text.chop(1);
        text += u'…';
    }
    return text;
}

} // namespace

QString FirstSense(const QByteArray &entry)
{
    QString plain, head;
    for (const QByteArray &part : QByteArray(entry).replace('\r', '\n').split('\n')) {
        const QByteArray line = part.trimmed();
        if (line.isEmpty())
            continue;
        const QByteArrayView body = QByteArrayView(line).sliced(1);
        if (line.front() == '-') {
            // The page parts a sense and its explanation at "+".
            QByteArray sense = body.trimmed().toByteArray();
            if (const qsizetype plus = sense.indexOf('+'); plus > 0)
                sense.replace(plus, 1, ": ");
            if (const QString text = PlainLine(sense); !text.isEmpty())
                return text;
        } else if (line.front() == '@') {
            if (head.isEmpty())
                head = PlainLine(body);
        } else if (!QByteArrayView("*!=#").contains(line.front()) && plain.isEmpty()) {
            plain = PlainLine(line);
        }
    }
    return plain.isEmpty() ? head : plain;
}
