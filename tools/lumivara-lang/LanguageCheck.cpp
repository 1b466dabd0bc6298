#include "lumivara-lang/LanguageCheck.h"

#include "presentation/languages/LangText.h"
#include "presentation/languages/Locales.h"
#include "presentation/languages/Translations.h"

#include <QHash>
#include <QMap>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr quint16 LanguageOfTheWindows = 1066;

/// A lone "&" marks the letter that works with Alt; "&&" is one that shows.
bool HasMnemonic(QString text)
{
    return text.remove(u"&&"_s).contains(u'&');
}

QStringList Placeholders(const QString &text)
{
    static const QRegularExpression form(u"%([sdgnfxu]|[0-9]{1,2})"_s);
    QStringList found;
    for (auto match = form.globalMatch(text); match.hasNext();)
        found += match.next().captured();
    found.sort();
    return found;
}

/// How many line breaks stand before the first letter, and behind the last.
std::pair<int, int> SurroundingBreaks(const QString &text)
{
    static const QRegularExpression before(u"^\\s*"_s), behind(u"\\s*$"_s);
    return {int(before.match(text).captured().count(u'\n')), int(behind.match(text).captured().count(u'\n'))};
}

class Checker
{
public:
    explicit Checker(const QList<WindowTable> &windows)
    {
        for (const WindowTable &window : windows)
            m_sections.insert(window.section.toLower(), {&window, {}, 0});
    }

    QList<LanguageFinding> Check(const QStringList &lines)
    {
        for (m_line = 1; m_line <= lines.size(); ++m_line)
            TakeLine(lines[m_line - 1].trimmed());
        if (!m_hasId)
            m_findings.prepend({1, u"there is no LANGID: the program passes the file over"_s});
        for (const Section &section : std::as_const(m_sections))
            FindMissing(section, lines.size());
        std::ranges::stable_sort(m_findings, {}, &LanguageFinding::line);
        return m_findings;
    }

private:
    struct Section
    {
        const WindowTable *window;
        QHash<int, qsizetype> lineOfNumber;
        qsizetype headerLine;
    };

    void Report(const QString &text) { m_findings.append({m_line, text}); }

    void TakeLine(const QString &line)
    {
        if (line.isEmpty() || line.startsWith(u';'))
            return;
        if (line.startsWith(u'['))
            return OpenSection(line);
        const qsizetype sign = line.indexOf(u'=');
        const QString name = line.left(sign).trimmed();
        if (sign < 0 || name.isEmpty())
            return Report(u"not of the form \"name=value\": the program skips the line"_s);
        const QString value = line.mid(sign + 1).trimmed();
        if (m_isHeader)
            TakeParameter(name, value);
        else if (!m_isConstants)
            TakeValue(name, DecodeLangValue(value));
    }

    void OpenSection(const QString &line)
    {
        if (line.size() <= 2 || !line.endsWith(u']'))
            return Report(u"not of the form \"[name]\": the program skips the line"_s);
        const QString name = line.mid(1, line.size() - 2).trimmed();
        m_isHeader = false;
        m_isConstants = name.compare("$CONSTANTS"_L1, Qt::CaseInsensitive) == 0;
        const auto found = m_sections.find(name.toLower());
        m_section = found == m_sections.end() ? nullptr : &*found;
        if (m_section)
            m_section->headerLine = m_line;
        else if (!m_isConstants)
            Report(u"no window is called \"%1\""_s.arg(name));
    }

    void TakeParameter(const QString &name, const QString &value)
    {
        if (name.compare("LANGID"_L1, Qt::CaseInsensitive) != 0 || m_hasId)
            return;
        m_hasId = true;
        const quint16 id = value.toUShort();
        if (id == 0)
            Report(u"\"%1\" is no language id: the program passes the file over"_s.arg(value));
        else if (id == LanguageOfTheWindows)
            Report(u"%1 is the language of the windows themselves: the program takes nothing from the file"_s.arg(id));
        else if (!FindLocale(id))
            Report(u"%1 is no known language: the program has no name for it but the number"_s.arg(id));
    }

    void TakeValue(const QString &name, const QString &value)
    {
        bool isNumber = false;
        const int number = name.toInt(&isNumber);
        if (!isNumber || number <= 0)
            return Report(u"\"%1\" is no number: the program skips the line"_s.arg(name));
        if (!m_section)
            return;
        const QString place = u"%1 %2"_s.arg(m_section->window->section).arg(number);
        if (const qsizetype first = m_section->lineOfNumber.value(number))
            return Report(u"%1 stands in line %2 too: the program refuses the file"_s.arg(place).arg(first));
        m_section->lineOfNumber.insert(number, m_line);
        const auto &texts = m_section->window->texts;
        const auto text = std::ranges::find(texts, number, &WindowText::number);
        if (text == texts.end())
            return Report(u"%1: no text has this number"_s.arg(place));
        Compare(place + u' ' + text->name, text->value, value);
    }

    void Compare(const QString &place, const QString &text, const QString &translation)
    {
        if (translation.isEmpty())
            return Report(u"%1 is empty"_s.arg(place));
        if (HasMnemonic(text) != HasMnemonic(translation))
            Report(HasMnemonic(text) ? u"%1 has lost its mnemonic \"&\""_s.arg(place)
                                     : u"%1 has a mnemonic \"&\" that its text has not; write \"&&\""_s.arg(place));
        if (Placeholders(text) != Placeholders(translation))
            Report(u"%1 has placeholders other than \"%2\""_s.arg(place, Placeholders(text).join(u' ')));
        if (SurroundingBreaks(text) != SurroundingBreaks(translation))
            Report(u"%1 begins or ends with other line breaks than its text"_s.arg(place));
    }

    void FindMissing(const Section &section, qsizetype lastLine)
    {
        const WindowTable &window = *section.window;
        for (const WindowText &text : window.texts) {
            if (text.isMeantForReaders && !section.lineOfNumber.contains(text.number))
                m_findings.append({section.headerLine ? section.headerLine : std::max<qsizetype>(lastLine, 1),
                                   u"%1 %2 %3 is missing: %4"_s.arg(window.section)
                                       .arg(text.number)
                                       .arg(text.name, EncodeLangValue(text.value))});
        }
    }

    QMap<QString, Section> m_sections; // by name in lower case
    Section *m_section = nullptr;      // the one in force, null for one that is no window's
    bool m_isHeader = true;
    bool m_isConstants = false;
    bool m_hasId = false;
    qsizetype m_line = 0;
    QList<LanguageFinding> m_findings;
};

} // namespace

QStringList LinesOf(const QByteArray &bytes)
{
    QString text = DecodeLangText(bytes);
    return text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').split(u'\n');
}

QList<LanguageFinding> CheckLanguage(const QStringList &lines, const QList<WindowTable> &windows)
{
    return Checker(windows).Check(lines);
}
