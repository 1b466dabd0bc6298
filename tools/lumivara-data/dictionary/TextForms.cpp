#include "lumivara-data/dictionary/TextForms.h"

#include "common/Tool.h"

using namespace Qt::StringLiterals;

namespace {

bool IsOfWord(const QString &text, qsizetype at)
{
    const QChar unit = text[at];
    if (unit.isLetter() || unit.isMark() || unit == u'’')
        return true;
    if (unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        return QChar::isLetter(QChar::surrogateToUcs4(unit, text[at + 1]));
    return unit.isLowSurrogate() && at > 0 && text[at - 1].isHighSurrogate() &&
           QChar::isLetter(QChar::surrogateToUcs4(text[at - 1], unit));
}

} // namespace

void TextForms::Add(const QString &given)
{
    // Lower case may part a letter from its mark.
    const QString text =
        given.normalized(QString::NormalizationForm_C).toLower().normalized(QString::NormalizationForm_C);
    for (qsizetype from = 0; from < text.size();) {
        if (!IsOfWord(text, from) || text[from] == u'’' || text[from].isMark()) {
            ++from;
            continue;
        }
        qsizetype to = from + 1;
        while (to < text.size() && IsOfWord(text, to))
            ++to;
        const qsizetype next = to;
        while (text[to - 1] == u'’')
            --to;
        const QString form = text.mid(from, to - from);
        if (qsizetype &count = m_counts[form]; ++count == 1) {
            if (m_forms.size() == MostForms)
                throw ToolError(u"more than %1 different words"_s.arg(MostForms));
            m_forms.append(form);
        }
        ++m_total;
        from = next;
    }
}
