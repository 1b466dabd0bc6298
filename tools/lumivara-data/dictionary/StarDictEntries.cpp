#include "lumivara-data/dictionary/StarDictEntries.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "lumivara-data/dictionary/EntryMarkup.h"
#include "lumivara-data/files/PageFacts.h"

#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

void StarDictEntries::AddField(char type, QByteArrayView field, EntryMarkup &entry)
{
    switch (type) {
    case 'm':
        entry.AddPlain(field);
        return;
    case 'l':
        // In the encoding of some country, which nothing tells.
        if (FirstBadUtf8Byte(field.toByteArray()) < 0)
            entry.AddPlain(field);
        else
            ++m_skipped[type];
        return;
    case 'g':
        entry.AddTagged(field, TagDialect::Pango);
        return;
    case 'x':
        entry.AddTagged(field, TagDialect::Xdxf);
        return;
    case 'h':
        entry.AddTagged(field, TagDialect::Html);
        return;
    case 't':
        entry.AddSound(field, '/', '/');
        return;
    case 'y':
        entry.AddSound(field, '[', ']');
        return;
    default:
        ++m_skipped[type];
    }
}

QByteArray StarDictEntries::Of(const QByteArray &word, const QByteArray &text)
{
    EntryMarkup entry(word);
    QByteArrayView rest(text);
    for (qsizetype field = 0; m_types.isEmpty() ? !rest.isEmpty() : field < m_types.size(); ++field) {
        char type = 0;
        if (m_types.isEmpty()) {
            type = rest.front();
            rest = rest.sliced(1);
        } else {
            type = m_types[field];
        }
        const bool isSized = type >= 'A' && type <= 'Z';
        // The last of a known sequence goes on to the end.
        const bool isLast = !m_types.isEmpty() && field + 1 == m_types.size();
        qsizetype size = rest.size();
        qsizetype after = size;
        if (!isLast && isSized) {
            if (rest.size() < 4)
                break;
            const qsizetype told = qFromBigEndian<quint32>(rest.data());
            rest = rest.sliced(4);
            size = after = std::min(told, rest.size());
        } else if (!isLast) {
            if (const qsizetype end = rest.indexOf('\0'); end >= 0) {
                size = end;
                after = end + 1;
            }
        }
        AddField(type, rest.first(size), entry);
        rest = rest.sliced(after);
    }
    return entry.Take();
}

void StarDictEntries::TellSkipped(const QString &fileName, Report &report) const
{
    QList<char> types = m_skipped.keys();
    std::sort(types.begin(), types.end());
    for (const char type : types) {
        const QString shown = type > ' ' && type < '\x7F' ? QString(QLatin1Char(type)) : QString::number(uchar(type));
        report.Find(fileName,
                    Sentence({u"%1 văn bản kiểu \"%2\"%3 bị bỏ", u"%1 texts of type \"%2\"%3 were left out"})
                        .arg(m_skipped[type])
                        .arg(shown, type == 'l' ? Sentence({u", không rõ bảng mã,", u", whose encoding is not known,"})
                                                : u""_s));
    }
}
