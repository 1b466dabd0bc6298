#include "base/Texts.h"

#include <QList>

QString FromUtf8(QByteArrayView bytes)
{
    QString text = QString::fromUtf8(bytes);
    if (bytes.startsWith("\xEF\xBB\xBF"))
        text.prepend(QChar(QChar::ByteOrderMark));
    return text;
}

QString TrimControls(const QString &text)
{
    const auto isControl = [](QChar letter) { return letter.unicode() <= 0x20; };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isControl(text[begin]))
        ++begin;
    while (end > begin && isControl(text[end - 1]))
        --end;
    return text.mid(begin, end - begin);
}

QString LowerAscii(QString text)
{
    for (QChar &character : text) {
        if (character >= u'A' && character <= u'Z')
            character = QChar(character.unicode() + (u'a' - u'A'));
    }
    return text;
}

QString UpperByCharacter(const QString &text)
{
    QString upper;
    upper.reserve(text.size());
    const QList<uint> characters = text.toUcs4();
    for (const uint character : characters)
        upper.append(QChar::fromUcs4(QChar::toUpper(character)));
    return upper;
}
