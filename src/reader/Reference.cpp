#include "reader/Reference.h"

#include "everywhere/FoldedText.h"

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

QList<Candidate> CandidatesFor(const QString &typed, const QList<KeloraText> &texts, qsizetype most)
{
    const auto folded = [](const QString &text) { return Folded(text.toUtf8(), Markup::None).bytes.trimmed(); };
    const QByteArray wanted = folded(typed);
    QList<Candidate> first, others;
    if (wanted.isEmpty())
        return first;
    for (const KeloraText &text : texts) {
        std::optional<Candidate> begins, holds;
        if (QByteArray::number(text.number).startsWith(wanted))
            begins = Candidate{text.number, {}};
        for (const QString &name : {text.vietnamese, text.pali, text.english}) {
            const qsizetype at = folded(name).indexOf(wanted);
            std::optional<Candidate> &found = at == 0 ? begins : holds;
            if (at >= 0 && !found)
                found = Candidate{text.number, name};
        }
        if (begins)
            first.append(*begins);
        else if (holds)
            others.append(*holds);
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
