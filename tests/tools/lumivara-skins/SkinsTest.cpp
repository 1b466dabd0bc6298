#include "lumivara-skins/SkinCheck.h"
#include "presentation/looks/SkinFile.h"
#include "support/SkinSupport.h"
#include "tools/ToolSupport.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QJsonObject With(QJsonObject skin, const QString &key, const QJsonValue &value)
{
    skin[key] = value;
    return skin;
}

QJsonObject Coloured(const QString &part, const QJsonValue &colour, bool isHighContrast = false)
{
    return With(WholeSkin(u"A"_s, false, {{part, colour}}), u"highContrast"_s, isHighContrast);
}

TEST(SkinCheck, TellsWhatIsWrong)
{
    const QJsonObject good = WholeSkin(u"A"_s), noPicture{{u"check"_s, u"<svg/>"_s}};
    const QJsonArray falling{u"#ffffff"_s, u"#606060"_s};
    const std::pair<QJsonArray, std::string> cases[]{
        {{good, WholeSkin(u"B"_s, true)}, ""},
        {{}, "there is no skin"},
        {{good, good}, "A: another skin has this name"},
        {{With(good, u"name"_s, u" A"_s)}, "skin 1: \" A\" is no name for a skin"},
        {{With(good, u"colours"_s, QJsonObject{})}, "A: the colour \"window\" is missing"},
        {{Coloured(u"tab"_s, u"red"_s)}, "A: \"tab\" is no colour like \"#1a2b3c\" and no pair of them"},
        {{Coloured(u"tabs"_s, u"#ffffff"_s)}, "A: no colour is called \"tabs\""},
        {{With(good, u"lineWidth"_s, 1.5)}, "A: \"lineWidth\" is no whole number from 1 to 3"},
        {{With(good, u"dark"_s, true)}, "A: \"dark\" does not agree with the colour \"window\""},
        {{With(good, u"pictures"_s, noPicture)}, "A: the picture \"check\" can't be shown: it is no SVG"},
        {{Coloured(u"placeholderText"_s, u"#e03080"_s)},
         "A: \"placeholderText\" on \"base\" has a contrast of 4.03, less than 4.5"},
        {{Coloured(u"rowHover"_s, falling)}, "A: \"text\" on \"rowHover\" has a contrast of 3.02, less than 4.5"},
        {{Coloured(u"placeholderText"_s, u"#666666"_s, true)},
         "A: \"placeholderText\" on \"base\" has a contrast of 5.40, less than 7"},
        {{Coloured(u"disabledText"_s, u"#808080"_s, true)}, ""}, // is enough
        {{Coloured(u"menuFrame"_s, u"#a0a0a0"_s)}, "A: \"menuFrame\" on \"menu\" has a contrast of 2.46, less than 3"},
    };
    for (const auto &[skins, expected] : cases) // the first line, where there are many
        EXPECT_EQ(CheckSkins(skins).join(u'\n').section(u'\n', 0, 0).toStdString(), expected);
}

TEST(SkinCheck, AsksForNoColourThatANeighbourGives)
{
    constexpr SkinPartRow rows[]{{u"bar"}, {u"footBar", u"bar"}};
    const auto findings = [&rows](const QJsonObject &colours) {
        return CheckColours(colours, rows).join(u'\n').toStdString();
    };
    EXPECT_EQ(findings({{u"bar"_s, u"#000001"_s}}), "");
    EXPECT_EQ(findings({{u"footBar"_s, u"#000001"_s}}), "the colour \"bar\" is missing");
    EXPECT_EQ(findings({{u"bar"_s, u"#000001"_s}, {u"footBar"_s, 1}}),
              "\"footBar\" is no colour like \"#1a2b3c\" and no pair of them");
}

class SkinsTool : public ToolTest
{
protected:
    SkinsTool() : ToolTest(u"lumivara-skins"_s) {}
    void PutSkin(const QString &name, const QJsonObject &skin) const
    {
        Put(u"skins/"_s + name, QJsonDocument(skin).toJson());
    }
    const QString m_file = Path(u"All.skinres"_s);
};

TEST_F(SkinsTool, PacksWhatIsBasedOnOthersInTheOrderOfTheFiles)
{
    QJsonObject base = With(WholeSkin(u"Base"_s), u"cornerRadius"_s, 7);
    base[u"pictures"_s] = QJsonObject{{u"check"_s, u"tick.svg"_s}, {u"radio"_s, u"tick.svg"_s}};
    PutSkin(u"02-Base.skin"_s, base);
    PutSkin(u"01-Child.skin"_s, {{u"name"_s, u"Child"_s},
                                 {u"based"_s, u"Base"_s},
                                 {u"colours"_s, QJsonObject{{u"text"_s, QJsonArray{u"#0000AA"_s, u"#000000"_s}}}},
                                 {u"pictures"_s, QJsonObject{{u"radio"_s, QJsonValue()}}}});
    PutSkin(u"10-Grandchild.skin"_s, {{u"name"_s, u"Grandchild"_s}, {u"based"_s, u"Child"_s}});
    Put(u"skins/pictures/tick.svg"_s,
        "<svg xmlns=\"http://www.w3.org/2000/svg\"><path stroke=\"{text}\" fill=\"{base}\"/></svg>\n");
    Run(0, "pack skins All.skinres");
    const QByteArray before = BytesOf(m_file);
    Run(0, "pack skins All.skinres");
    EXPECT_TRUE(BytesOf(m_file) == before);
    const auto skin = LoadSkin(m_file, u"Grandchild"_s);
    ASSERT_TRUE(skin);
    EXPECT_EQ(skin->cornerRadius, 7);
    EXPECT_EQ(skin->Colour(SkinPart::WindowText), 0xFF101010);
    EXPECT_EQ(skin->pictures,
              (QHash<QString, QByteArray>{{u"check"_s, "<svg xmlns=\"http://www.w3.org/2000/svg\"><path "
                                                       "stroke=\"#0000aa\" fill=\"#f8f8f8\"/></svg>"}}));
    Run(0, "check All.skinres");
    EXPECT_EQ(Run(0, "list All.skinres"),
              "1\tChild\tChild\tlight\n2\tBase\tBase\tlight\n3\tGrandchild\tGrandchild\tlight\n");
}

TEST_F(SkinsTool, RefusesSourcesAndFilesThatCannotBeUnderstood)
{
    Put(u"All.skinres"_s, "old");
    Run(2, "pack skins All.skinres");
    const QJsonObject good = WholeSkin(u"A"_s);
    for (const auto &[name, skin] : std::initializer_list<std::pair<QString, QJsonObject>>{
             {u"01-A.skin"_s, With(good, u"based"_s, u"A"_s)},
             {u"01-A.skin"_s, With(good, u"pictures"_s, QJsonObject{{u"check"_s, u"none.svg"_s}})},
             {u"01-A.skin"_s, With(good, u"name"_s, u""_s)},
             {u"1-A.skin"_s, good},
             {u"01-B.skin"_s, good}}) {
        PutSkin(name, skin);
        EXPECT_THAT(Run(2, "pack skins All.skinres"), testing::HasSubstr(name.toStdString()));
        QFile::remove(Path(u"skins/"_s + name));
    }
    EXPECT_EQ(BytesOf(m_file), "old");
    EXPECT_EQ(::mkfifo(qPrintable(Path(u"pipe"_s)), 0600), 0);
    for (const std::string words : {"", "x", "pack folder", "check", "list a b", "check --x", "check All.skinres",
                                    "list All.skinres", "check pipe"})
        Run(2, words);
    Put(u"All.skinres"_s, SkinDocument({With(good, u"colours"_s, 1)}));
    Run(1, "check All.skinres");
}

TEST_F(SkinsTool, FindsTheProductsCleanAndWhereTheStoredNumbersLookForThem)
{
    const QString file = ProductFolder() + u"AllSkins.skinres"_s;
    Run(0, "check", {file});
    EXPECT_TRUE(LoadSkin(file, u"Office2010Blue"_s));
}

} // namespace
