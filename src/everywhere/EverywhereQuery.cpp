#include "everywhere/EverywhereQuery.h"

#include "everywhere/FoldedText.h"
#include "everywhere/Folding.h"

#include <algorithm>
#include <utility>

namespace {

bool IsQuote(QChar letter)
{
    return letter == u'"' || letter == u'“' || letter == u'”' || letter == u'„';
}

/// The typed text, whole letters of it.
QString CutOff(const QString &typed)
{
    const bool isInsidePair =
        typed.size() > EverywhereQuery::MostTyped && typed[EverywhereQuery::MostTyped].isLowSurrogate();
    return typed.left(EverywhereQuery::MostTyped - (isInsidePair ? 1 : 0));
}

/// Read like a page, so that both treat blanks and what has no width alike.
EverywherePart PartOf(const QString &typed, bool isPhrase, const EverywhereSwitches &switches)
{
    const QByteArray source = typed.toUtf8();
    FoldedStretch letters;
    letters.Read(source, Markup::None, {}, 0, source.size());
    EverywherePart part;
    part.isPhrase = isPhrase;
    part.typed = letters.Text(0, std::ssize(letters.Letters()));
    part.folded = Folded(source, Markup::None).bytes;
    if (part.typed.endsWith(u' '))
        part.typed.chop(1);
    if (part.folded.endsWith(' '))
        part.folded.chop(1);
    if (switches.exactCase || switches.exactMarks)
        part.exact = ExactForm(part.typed, switches.exactCase, switches.exactMarks);
    return part;
}

QList<EverywherePart> PartsOf(const QString &typed, const EverywhereSwitches &switches)
{
    QList<EverywherePart> parts;
    const auto add = [&](const QString &text, bool isPhrase) {
        EverywherePart part = PartOf(text, isPhrase, switches);
        const auto isSame = [&](const EverywherePart &other) {
            return other.folded == part.folded && other.exact == part.exact;
        };
        if (!part.folded.isEmpty() && std::none_of(parts.begin(), parts.end(), isSame))
            parts.append(std::move(part));
    };
    QString text;
    bool isQuoted = false;
    const auto end = [&] { add(std::exchange(text, {}), isQuoted); };
    for (const QChar letter : typed) {
        if (IsQuote(letter)) {
            end();
            isQuoted = !isQuoted;
        } else if (letter.isSpace() && !isQuoted) {
            end();
        } else {
            text += letter;
        }
    }
    end();
    return parts;
}

} // namespace

EverywhereQuery::EverywhereQuery(const QString &typed, const EverywhereSwitches &switches) : m_switches(switches)
{
    const QString text = CutOff(typed);
    m_parts = PartsOf(text, switches);
    if (m_parts.size() > MostParts) {
        QString unquoted = text;
        unquoted.removeIf(IsQuote);
        m_parts = {PartOf(unquoted, true, switches)};
    }
}

bool EverywhereQuery::IsEmpty() const
{
    const bool isAnywhere =
        m_switches.pali || m_switches.vietnamese || m_switches.english || m_switches.names || m_switches.marks;
    return m_parts.isEmpty() || !isAnywhere;
}
