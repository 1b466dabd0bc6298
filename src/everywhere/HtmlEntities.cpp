#include "everywhere/HtmlEntities.h"

#include "base/Windows1252.h"

#include <QByteArrayList>
#include <QHash>
#include <QString>

#include <array>

namespace {

struct Named
{
    const char *name;
    char32_t character;
};

using Entities = QHash<QByteArray, char32_t>;

/// "amacr" and its like: a letter and what stands on or below it.
void AddAccented(Entities &entities)
{
    static constexpr std::array accents{
        Named{"grave", 0x300}, Named{"acute", 0x301}, Named{"circ", 0x302},  Named{"tilde", 0x303},
        Named{"macr", 0x304},  Named{"breve", 0x306}, Named{"dot", 0x307},   Named{"uml", 0x308},
        Named{"ring", 0x30A},  Named{"dblac", 0x30B}, Named{"caron", 0x30C}, Named{"cedil", 0x327},
        Named{"ogon", 0x328},
    };
    constexpr char16_t end = 0x180; // letters beyond have no such names
    for (const char letter : QByteArrayView("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")) {
        for (const Named &accent : accents) {
            const QString composed = (QString(QLatin1Char(letter)) + QChar(static_cast<char16_t>(accent.character)))
                                         .normalized(QString::NormalizationForm_C);
            if (composed.size() == 1 && composed.front() < QChar(end))
                entities.insert(letter + QByteArray(accent.name), composed.front().unicode());
        }
    }
}

Entities MakeEntities()
{
    static constexpr std::array others{
        Named{"amp", U'&'},      Named{"lt", U'<'},       Named{"gt", U'>'},       Named{"quot", U'"'},
        Named{"apos", U'\''},    Named{"AMP", U'&'},      Named{"LT", U'<'},       Named{"GT", U'>'},
        Named{"QUOT", U'"'},     Named{"AElig", U'Æ'},    Named{"aelig", U'æ'},    Named{"ETH", U'Ð'},
        Named{"eth", U'ð'},      Named{"Oslash", U'Ø'},   Named{"oslash", U'ø'},   Named{"THORN", U'Þ'},
        Named{"thorn", U'þ'},    Named{"szlig", U'ß'},    Named{"times", U'×'},    Named{"divide", U'÷'},
        Named{"Dstrok", U'Đ'},   Named{"dstrok", U'đ'},   Named{"Hstrok", U'Ħ'},   Named{"hstrok", U'ħ'},
        Named{"Lstrok", U'Ł'},   Named{"lstrok", U'ł'},   Named{"Tstrok", U'Ŧ'},   Named{"tstrok", U'ŧ'},
        Named{"imath", U'ı'},    Named{"inodot", U'ı'},   Named{"IJlig", U'Ĳ'},    Named{"ijlig", U'ĳ'},
        Named{"ENG", U'Ŋ'},      Named{"eng", U'ŋ'},      Named{"OElig", U'Œ'},    Named{"oelig", U'œ'},
        Named{"ensp", 0x2002},   Named{"emsp", 0x2003},   Named{"thinsp", 0x2009}, Named{"zwnj", 0x200C},
        Named{"zwj", 0x200D},    Named{"lrm", 0x200E},    Named{"rlm", 0x200F},    Named{"ndash", 0x2013},
        Named{"mdash", 0x2014},  Named{"lsquo", 0x2018},  Named{"rsquo", 0x2019},  Named{"sbquo", 0x201A},
        Named{"ldquo", 0x201C},  Named{"rdquo", 0x201D},  Named{"bdquo", 0x201E},  Named{"dagger", 0x2020},
        Named{"Dagger", 0x2021}, Named{"bull", 0x2022},   Named{"hellip", 0x2026}, Named{"prime", 0x2032},
        Named{"Prime", 0x2033},  Named{"lsaquo", 0x2039}, Named{"rsaquo", 0x203A}, Named{"euro", 0x20AC},
        Named{"trade", 0x2122},
    };
    Entities entities;
    AddAccented(entities);
    for (const Named &other : others)
        entities.insert(other.name, other.character);
    char32_t character = 0xA0;
    for (const QByteArray &sign : QByteArray("nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy "
                                             "reg macr deg plusmn sup2 sup3 acute micro para middot cedil sup1 ordm "
                                             "raquo frac14 frac12 frac34 iquest")
                                      .split(' '))
        entities.insert(sign, character++);
    return entities;
}

} // namespace

char32_t EntityOf(QByteArrayView name)
{
    static const Entities entities = MakeEntities();
    return entities.value(QByteArray::fromRawData(name.data(), name.size()), 0);
}

bool IsEntityWithoutEnd(QByteArrayView name)
{
    constexpr char32_t endOfLatin1 = 0x100;
    const char32_t character = EntityOf(name);
    return character != 0 && character < endOfLatin1 && name != "apos";
}

char32_t NumberedCharacter(char32_t number)
{
    constexpr char32_t lastCharacter = 0x10FFFF;
    if (number == 0 || number > lastCharacter || QChar::isSurrogate(number))
        return QChar::ReplacementCharacter;
    if (number >= 0x80 && number < 0xA0)
        return FromWindows1252(QByteArray(1, static_cast<char>(number))).front().unicode();
    return number;
}
