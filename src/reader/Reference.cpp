#include "reader/Reference.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

QString ReferenceTo(int text, const PagePlace &place)
{
    return u"%1:%2"_s.arg(text).arg(place.segment.isEmpty() ? QString::number(place.block + 1) : place.segment);
}

std::optional<Reference> ReadReference(const QString &written)
{
    static const QRegularExpression form(uR"(^\s*(\d+)\s*(?::\s*(\d+(?:[.-]\d+)*)\s*)?$)"_s);
    const QRegularExpressionMatch match = form.match(written);
    bool isNumber = false;
    const int text = match.captured(1).toInt(&isNumber);
    if (!isNumber)
        return std::nullopt;
    Reference reference{text, std::nullopt};
    if (const QString part = match.captured(2); !part.isEmpty()) {
        // The page tells whether it has the part as an id; without one it is the block's place.
        reference.place = PagePlace{std::max(part.toInt() - 1, 0), 0, 0, part};
    }
    return reference;
}

QString WithoutMarks(const QString &text)
{
    QString bare;
    bare.reserve(text.size());
    const QString decomposed = text.toLower().normalized(QString::NormalizationForm_D);
    for (const QChar letter : decomposed) {
        if (letter.category() != QChar::Mark_NonSpacing)
            bare += letter == u'đ' ? QChar(u'd') : letter;
    }
    return bare.simplified();
}

QList<KeloraText> CandidatesFor(const QString &typed, const QList<KeloraText> &texts, qsizetype most)
{
    const QString wanted = WithoutMarks(typed);
    QList<KeloraText> first, others;
    if (wanted.isEmpty())
        return first;
    for (const KeloraText &text : texts) {
        bool begins = QString::number(text.number).startsWith(wanted);
        bool holds = false;
        for (const QString &name : {text.vietnamese, text.pali, text.english}) {
            const qsizetype at = WithoutMarks(name).indexOf(wanted);
            begins = begins || at == 0;
            holds = holds || at > 0;
        }
        if (begins)
            first.append(text);
        else if (holds)
            others.append(text);
    }
    return (first + others).first(std::min(most, first.size() + others.size()));
}

QString SourceText(const QString &form, const Source &source)
{
    const std::array<std::pair<QStringView, const QString *>, 4> parts{{{u"{collection}", &source.collection},
                                                                        {u"{name}", &source.name},
                                                                        {u"{reference}", &source.reference},
                                                                        {u"{language}", &source.language}}};
    QString text;
    for (qsizetype at = 0; at < form.size();) {
        const auto found = std::find_if(parts.begin(), parts.end(), [&](const auto &part) {
            return QStringView(form).sliced(at).startsWith(part.first);
        });
        // Names are put in once and not looked through again.
        text += found == parts.end() ? QString(form[at]) : *found->second;
        at += found == parts.end() ? 1 : found->first.size();
    }
    return text;
}
