#include "lumivara-skins/SkinCheck.h"

#include "base/Contrast.h"
#include "presentation/looks/SkinObject.h"

#include <QSet>

#include <algorithm>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

enum class Need { Text, Shape };

/// What is drawn, and every ground that it is drawn on.
struct Pairing
{
    SkinPart ink;
    std::vector<SkinPart> grounds;
    Need need;
};

const std::vector<Pairing> &Pairings()
{
    using enum SkinPart;
    static const std::vector<SkinPart> iconGrounds{Window, Bar, Button, ButtonHover, ButtonChecked, Menu, MenuSide};
    static const std::vector<Pairing> pairings{
        {WindowText, {Window, Bar, Tab, TabActive}, Need::Text},
        {Text, {Base, AlternateBase, RowHover}, Need::Text},
        {PlaceholderText, {Base}, Need::Text},
        {SelectionText, {Selection, InactiveSelection}, Need::Text},
        {Link, {Window, Base}, Need::Text},
        {ButtonText, {Button, ButtonHover, ButtonPressed, ButtonChecked, Window, Bar}, Need::Text},
        {HeaderText, {Header, HeaderHover}, Need::Text},
        {MenuText, {Menu, MenuSide}, Need::Text},
        {MenuSelectionText, {MenuSelection}, Need::Text},
        {ToolTipText, {ToolTip}, Need::Text},
        {DisabledText, {Window, Base, Button, Menu, Bar}, Need::Shape},
        {Frame, {Window, Base}, Need::Shape},
        {ButtonFrame, {Window, Bar}, Need::Shape},
        {MenuFrame, {Menu}, Need::Shape},
        {FocusRing, {Window, Base, Bar}, Need::Shape},
        {IconInk, iconGrounds, Need::Shape},
        {IconAccent, iconGrounds, Need::Shape},
    };
    return pairings;
}

/// One skin's findings.
class SkinChecker
{
public:
    explicit SkinChecker(const QJsonObject &object) : m_object(object) {}

    QStringList Check()
    {
        m_findings += CheckColours(m_object.value("colours"_L1).toObject());
        CheckNumber(u"cornerRadius"_s, 0, 12);
        CheckNumber(u"lineWidth"_s, 1, 3);
        CheckNumber(u"focusWidth"_s, 1, 4);
        const QJsonObject pictures = m_object.value("pictures"_L1).toObject();
        for (auto picture = pictures.begin(); picture != pictures.end(); ++picture) {
            if (const QString problem = PictureProblem(picture->toString().toUtf8()); !problem.isEmpty())
                m_findings += u"the picture \"%1\" can't be shown: %2"_s.arg(picture.key(), problem);
        }
        if (const auto skin = ReadSkin(m_object))
            CheckContrasts(*skin);
        return m_findings;
    }

private:
    void CheckNumber(const QString &name, int least, int most)
    {
        if (!m_object.contains(name))
            return;
        const double value = m_object.value(name).toDouble(least - 1);
        if (value < least || value > most || value != std::floor(value))
            m_findings += u"\"%1\" is no whole number from %2 to %3"_s.arg(name).arg(least).arg(most);
    }

    void CheckContrasts(const Skin &skin)
    {
        constexpr double textNeed = 4.5;
        constexpr double highNeed = 7;
        constexpr double shapeNeed = 3;
        constexpr quint32 black = 0xFF000000;
        for (const Pairing &pairing : Pairings()) {
            const double need = pairing.need == Need::Shape ? shapeNeed : skin.isHighContrast ? highNeed : textNeed;
            for (const SkinPart ground : pairing.grounds)
                CheckContrast(skin, pairing.ink, ground, need);
        }
        if (skin.isDark != (ContrastRatio(black, skin.Colour(SkinPart::Window)) < textNeed))
            m_findings += u"\"dark\" does not agree with the colour \"window\""_s;
    }

    void CheckContrast(const Skin &skin, SkinPart ink, SkinPart ground, double need)
    {
        const SkinFill fill = skin.Fill(ground);
        const double contrast =
            std::min(ContrastRatio(skin.Colour(ink), fill.top), ContrastRatio(skin.Colour(ink), fill.bottom));
        if (contrast < need)
            m_findings +=
                u"\"%1\" on \"%2\" has a contrast of %3, less than %4"_s.arg(SkinPartName(ink), SkinPartName(ground))
                    .arg(std::floor(contrast * 100) / 100, 0, 'f', 2)
                    .arg(need);
    }

    QJsonObject m_object;
    QStringList m_findings;
};

} // namespace

QStringList CheckColours(const QJsonObject &colours, std::span<const SkinPartRow> rows)
{
    QStringList findings;
    QSet<QString> known;
    for (const SkinPartRow &row : rows) {
        const QString name = QStringView(row.name).toString();
        known.insert(name);
        if (!colours.contains(name) && row.neighbour.empty())
            findings += u"the colour \"%1\" is missing"_s.arg(name);
        else if (colours.contains(name) && !ReadSkinFill(colours.value(name)))
            findings += u"\"%1\" is no colour like \"#1a2b3c\" and no pair of them"_s.arg(name);
    }
    const QStringList names = colours.keys();
    for (const QString &name : names) {
        if (!known.contains(name))
            findings += u"no colour is called \"%1\""_s.arg(name);
    }
    return findings;
}

QStringList CheckSkins(const QJsonArray &skins)
{
    QStringList findings;
    if (skins.isEmpty())
        findings += u"there is no skin"_s;
    QSet<QString> names;
    for (qsizetype index = 0; index < skins.size(); ++index) {
        const QJsonObject object = skins[index].toObject();
        const QString name = object.value("name"_L1).toString();
        const QString place = IsSkinName(name) ? name : u"skin %1"_s.arg(index + 1);
        if (!IsSkinName(name))
            findings += u"%1: \"%2\" is no name for a skin"_s.arg(place, name);
        else if (names.contains(name))
            findings += u"%1: another skin has this name"_s.arg(place);
        names.insert(name);
        const QStringList found = SkinChecker(object).Check();
        for (const QString &finding : found)
            findings += u"%1: %2"_s.arg(place, finding);
    }
    return findings;
}
