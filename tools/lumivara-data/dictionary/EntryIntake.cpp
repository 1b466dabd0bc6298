#include "lumivara-data/dictionary/EntryIntake.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "dictionary/EntryFormatter.h"
#include "dictionary/PaliLetters.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/dictionary/DictionaryCheck.h"
#include "lumivara-data/dictionary/DictionaryWriter.h"
#include "lumivara-data/files/PageFacts.h"
#include "stores/Schema.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Longer ones need not be composed to be seen as too long.
constexpr qsizetype MostWordBytes = 4096;

bool IsControl(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return (byte < ' ' && c != '\n' && c != '\t' && c != '\r') || byte == 0x7F;
}

bool IsControlUnit(QChar unit)
{
    return unit.category() == QChar::Other_Control || unit == QChar::ParagraphSeparator || unit == QChar::LineSeparator;
}

qsizetype LongestLine(const QByteArray &content)
{
    qsizetype longest = 0;
    const char *end = content.cend();
    for (const char *line = content.cbegin(); line < end;) {
        const char *lineEnd = std::find_if(line, end, [](char c) { return c == '\n' || c == '\r'; });
        longest = std::max(longest, qsizetype(lineEnd - line));
        line = lineEnd + 1;
    }
    return longest;
}

/// A form as look-ups ask for it: in lower case, and in Pali with one sign for each letter.
QString AskedForm(int kind, const QString &form)
{
    if (kind == DictKind::PaliVietnamese || kind == DictKind::PaliEnglish)
        return PaliFolded(form);
    return form.toLower().normalized(QString::NormalizationForm_C);
}

/// Without the signs that steer devices; one that parts words becomes a blank.
QString WithoutControls(QString word)
{
    for (QChar &unit : word) {
        if (unit == u'\n' || unit == u'\t' || unit == u'\r')
            unit = u' ';
    }
    word.removeIf(IsControlUnit);
    return word.simplified();
}

} // namespace

QString EntryIntake::NameOf(Part part)
{
    return part == Part::Word ? Sentence({u"từ", u"word"}) : Sentence({u"dạng từ", u"form"});
}

void EntryIntake::LeaveOut(const SourcePlace &place, const QString &why)
{
    m_report.Find(place.Text(), why + Sentence({u"; bị bỏ", u"; left out"}));
}

CheckedEntry EntryIntake::Check(QByteArray content)
{
    if (content.size() > DictionaryWriter::LongestEntry)
        return {{},
                Sentence({u"mục từ có hơn %1 byte", u"the entry has more than %1 bytes"})
                    .arg(DictionaryWriter::LongestEntry),
                {}};
    if (!content.isValidUtf8())
        return {{},
                Sentence({u"mục từ không phải UTF-8 ở byte %1", u"the entry is not UTF-8 at byte %1"})
                    .arg(FirstBadUtf8Byte(content)),
                {}};
    CheckedEntry entry;
    if (const auto controls = std::count_if(content.cbegin(), content.cend(), IsControl); controls > 0) {
        content.removeIf(IsControl);
        entry.changes.append(
            Sentence({u"%1 ký tự điều khiển được bỏ khỏi mục từ", u"%1 control characters are taken out of the entry"})
                .arg(controls));
    }
    if (QByteArrayView(content).trimmed().isEmpty()) {
        entry.fault = Sentence({u"mục từ trống", u"the entry is empty"});
        return entry;
    }
    if (content.contains('<')) {
        if (const QString fault = TagFault(content); !fault.isEmpty()) {
            entry.changes.append(
                Sentence({u"%1; các thẻ được hiện như chữ", u"%1; its tags are shown as text"}).arg(fault));
            content.replace('<', "&lt;");
        }
    }
    // Breaking it would change what an export brought.
    if (const qsizetype longest = content.size() > LongestEntryLine ? LongestLine(content) : 0;
        longest > LongestEntryLine)
        entry.changes.append(Sentence({u"một dòng của mục từ có %1 byte, cửa sổ chỉ hiện %2 byte đầu",
                                       u"a line of the entry has %1 bytes, of which the window shows the first %2"})
                                 .arg(longest)
                                 .arg(LongestEntryLine));
    entry.content = std::move(content);
    return entry;
}

int EntryIntake::Take(const QByteArray &word, QByteArray content, const SourcePlace &place)
{
    const int entry = TakeEntry(Check(std::move(content)), place);
    return entry && TakeWord(word, entry, place) ? entry : 0;
}

int EntryIntake::TakeEntry(const CheckedEntry &entry, const SourcePlace &place)
{
    for (const QString &change : entry.changes)
        m_report.Note(place.Text(), change);
    if (entry.fault.isNull())
        return m_store.AddEntry(entry.content);
    LeaveOut(place, entry.fault);
    return 0;
}

/// A word or form in composed letters and without what steers devices; none, and told, if it can't be one.
std::optional<QString> EntryIntake::Accepted(const QByteArray &bytes, Part part, const SourcePlace &place)
{
    if (!bytes.isValidUtf8()) {
        LeaveOut(place, Sentence({u"%1 không phải là UTF-8", u"the %1 is not UTF-8"}).arg(NameOf(part)));
        return std::nullopt;
    }
    if (bytes.size() > MostWordBytes) {
        LeaveOut(place, Sentence({u"%1 có %2 byte, nhiều hơn %3", u"the %1 has %2 bytes, more than %3"})
                            .arg(NameOf(part))
                            .arg(bytes.size())
                            .arg(MostWordBytes));
        return std::nullopt;
    }
    QString word = QString::fromUtf8(bytes).trimmed();
    if (std::any_of(word.cbegin(), word.cend(), IsControlUnit)) {
        word = WithoutControls(word);
        m_report.Note(place.Text(),
                      Sentence({u"ký tự điều khiển được bỏ khỏi \"%1\"", u"control characters are taken out of \"%1\""})
                          .arg(word));
    }
    // Typed words are composed.
    word = word.normalized(QString::NormalizationForm_C);
    if (word.isEmpty()) {
        LeaveOut(place, Sentence({u"%1 trống", u"the %1 is empty"}).arg(NameOf(part)));
        return std::nullopt;
    }
    if (word.size() > Length::Word) {
        LeaveOut(place, Sentence({u"\"%1…\" có %2 ký tự, nhiều hơn %3", u"\"%1…\" has %2 characters, more than %3"})
                            .arg(word.left(Length::Word))
                            .arg(word.size())
                            .arg(Length::Word));
        return std::nullopt;
    }
    return word;
}

bool EntryIntake::TakeWord(const QByteArray &bytes, int entry, const SourcePlace &place)
{
    std::optional<QString> word = Accepted(bytes, Part::Word, place);
    if (!word)
        return false;
    if (!CanBeReached(*word)) {
        m_report.Note(place.Text(), Sentence({u"\"%1\" được nhập bằng chữ thường, nếu không sẽ không tìm thấy",
                                              u"\"%1\" is taken in lower case, or no search would find it"})
                                        .arg(*word));
        word = LowerForm(*word);
    }
    if (++m_wordCount > MostWords)
        throw ToolError(Sentence({u"%1: nhiều hơn %2 từ", u"%1: more than %2 words"}).arg(place.Text()).arg(MostWords));
    m_store.AddWord(m_kind, *word, entry);
    return true;
}

bool EntryIntake::TakeForm(const QByteArray &form, const QByteArray &bytes, const SourcePlace &place)
{
    const std::optional<QString> given = Accepted(form, Part::Form, place);
    std::optional<QString> word = given ? Accepted(bytes, Part::Word, place) : std::nullopt;
    if (!word)
        return false;
    if (!CanBeReached(*word))
        word = LowerForm(*word); // as the list got it
    const QString asked = AskedForm(m_kind, *given);
    // Firebird spoils characters beyond the first 65,536 on their way to the procedure.
    if (asked.isEmpty() || asked.size() > Length::Word ||
        std::any_of(asked.cbegin(), asked.cend(), [](QChar unit) { return unit.isSurrogate(); })) {
        LeaveOut(place,
                 Sentence({u"\"%1\" không phải là dạng từ có thể tra", u"\"%1\" is no form that a look-up asks for"})
                     .arg(*given));
        return false;
    }
    if (++m_formCount > MostWords)
        throw ToolError(
            Sentence({u"%1: nhiều hơn %2 dạng từ", u"%1: more than %2 forms"}).arg(place.Text()).arg(MostWords));
    m_store.AddForm(m_kind, asked, *word);
    return true;
}
