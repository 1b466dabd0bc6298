#include "dictionary/WordRules.h"

#include "base/Messages.h"
#include "base/Texts.h"
#include "base/Velthuis.h"
#include "stores/Schema.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int DebounceDue = 200;
constexpr int DebounceWrapsAbove = 400;
constexpr int DebounceWrapsTo = 220;

struct KindRow
{
    Message caption;
    /// Of the button while several dictionaries show; none where the button keeps its caption.
    Message multi;
};

constexpr Message oneDictionary{u"Hiển thị nhiều từ điển", u"Multi Dictionary"};

constexpr std::array<KindRow, DictKind::All.size()> Kinds{{
    {{u"Anh-Việt", u"English-Vietnamese"}, {u"+ Pāli", u"+ Pāli"}},
    {{u"Việt-Anh", u"Vietnamese-English"}, {u"+ Pāli", u"+ Pāli"}},
    {{u"Pháp-Việt", u"French-Vietnamese"}, {}},
    {{u"Việt-Pháp", u"Vietnamese-French"}, {}},
    {{u"Pāli-Việt", u"Pāli-Vietnamese"}, {u"+ Anh", u"+ English"}},
    {{u"Việt-Pāli", u"Vietnamese-Pāli"}, {u"+ Anh", u"+ English"}},
    {{u"Anh-Pāli", u"English-Pāli"}, {u"+ Việt", u"+ Vietnamese"}},
    {{u"Pāli-Anh", u"Pāli-English"}, {u"+ Việt", u"+ Vietnamese"}},
}};

const KindRow *RowOf(int kind)
{
    return IsOneOf(DictKind::All, kind) ? &Kinds[static_cast<size_t>(kind - DictKind::All.front())] : nullptr;
}

} // namespace

QString DictionaryCaption(int kind, int interfaceLanguage)
{
    const KindRow *row = RowOf(kind);
    return row ? TextOrNone(row->caption, interfaceLanguage) : QString();
}

QString MultiDictionaryCaption(int kind, bool isMulti, int interfaceLanguage)
{
    if (!isMulti)
        return TextOrNone(oneDictionary, interfaceLanguage);
    const KindRow *row = RowOf(kind);
    if (!row || !row->multi.vietnamese)
        return {};
    // Where both languages say the same, any language does.
    const bool isOneWord = QStringView(row->multi.vietnamese) == QStringView(row->multi.english);
    return isOneWord ? TextOrEnglish(row->multi, interfaceLanguage) : TextOrNone(row->multi, interfaceLanguage);
}

int DictionaryKindOf(int contentLanguage, int current)
{
    switch (contentLanguage) {
    case PageMode::Pali:
        return DictKind::PaliVietnamese;
    case PageMode::Vietnamese:
        return DictKind::VietnamesePali;
    case PageMode::English:
        return DictKind::EnglishVietnamese;
    default:
        return current;
    }
}

QString LowerForm(const QString &text)
{
    return LowerAscii(TrimControls(text));
}

QString MixedForm(const QString &text)
{
    return text.isEmpty() ? text : text.front().toUpper() + text.mid(1);
}

QString TestedForm(int kind, const QString &text)
{
    return kind == DictKind::EnglishVietnamese ? LowerAscii(text) : UpperByCharacter(text);
}

std::optional<WordPlace> FindDictionary(int kind, const QString &text,
                                        const std::function<bool(int kind, const QString &form)> &contains)
{
    constexpr std::array<int, 3> firstOfPair{DictKind::EnglishVietnamese, DictKind::PaliVietnamese,
                                             DictKind::EnglishPali};
    for (const int first : firstOfPair) {
        if (kind != first && kind != first + 1)
            continue;
        if (contains(first, TestedForm(first, text)))
            return WordPlace{first, text};
        if (first == DictKind::EnglishVietnamese && !text.isEmpty() && text.back().toLower() == u's')
            return WordPlace{first, text.chopped(1)};
        if (contains(first + 1, TestedForm(first + 1, text)))
            return WordPlace{first + 1, text};
    }
    return std::nullopt;
}

bool IsOfPaliWords(int kind)
{
    return kind == DictKind::PaliVietnamese || kind == DictKind::PaliEnglish;
}

QChar NiggahitaOfWords(const std::function<bool(const QString &word)> &has)
{
    constexpr int enough = 3;
    NiggahitaCount count;
    int found = 0;
    for (const QString &word : {u"saṃsāra"_s, u"saṃyutta"_s, u"saṃvara"_s, u"aṃsa"_s, u"maṃsa"_s, u"haṃsa"_s,
                                u"saṃyojana"_s, u"evaṃ"_s, u"saṃvega"_s, u"ahiṃsā"_s, u"puṃ"_s, u"taṃ"_s}) {
        for (const QChar letter : Niggahitas) {
            if (!has(QString(word).replace(u'ṃ', letter)))
                continue;
            count.AddOne(letter);
            ++found;
        }
        if (found >= enough)
            break;
    }
    return count.Letter();
}

WordKey MeaningOfWordKey(int key, const QString &text)
{
    switch (key) {
    case Qt::Key_Down:
        return WordKey::NextRow;
    case Qt::Key_Up:
        return WordKey::PriorRow;
    case Qt::Key_PageDown:
        return WordKey::NextPage;
    case Qt::Key_PageUp:
        return WordKey::PriorPage;
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return WordKey::Typing;
    default:
        break;
    }
    // Qt numbers keys with a character by that character, the others beyond Unicode; the result of a dead key or an
    // input method comes as a text without a key.
    constexpr int firstWithoutCharacter = 0x01000000;
    const bool hasCharacter = key > 0 && key < firstWithoutCharacter;
    // Its first unit may be half of a character, or a joiner that shows nothing.
    const bool hasText =
        (key == 0 || key == Qt::Key_unknown) && !text.isEmpty() && text.front().category() != QChar::Other_Control;
    return hasCharacter || hasText ? WordKey::Typing : WordKey::Nothing;
}

bool TickDebounce(int &deltaT)
{
    deltaT += DebounceTick;
    if (deltaT > DebounceWrapsAbove)
        deltaT = DebounceWrapsTo;
    return deltaT == DebounceDue;
}
