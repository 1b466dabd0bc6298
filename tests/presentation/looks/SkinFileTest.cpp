#include "presentation/looks/SkinFile.h"
#include "support/SkinSupport.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray GoodPicture = R"~(<svg xmlns="http://www.w3.org/2000/svg"><path fill="url(#a)" d="M0 0"/></svg>)~";

class SkinFile : public testing::Test
{
protected:
    void Write(const QByteArray &bytes) { EXPECT_TRUE(WriteBytes(path, bytes)); }
    void Write(const QJsonArray &skins) { Write(SkinDocument(skins)); }

    ScratchFolder folder;
    const QString path = folder.Path(u"Skins.skinres"_s);
};

TEST_F(SkinFile, GivesItsSkinsInOrderAndEachWhole)
{
    QJsonObject full = WholeSkin(u"Đêm"_s, true, {{u"button"_s, QJsonArray{u"#0A0b0c"_s, u"#1d1e1f"_s}}});
    full[u"displayName"_s] = u"Đêm khuya"_s;
    full[u"highContrast"_s] = full[u"glossy"_s] = true;
    full[u"cornerRadius"_s] = 99;
    full[u"lineWidth"_s] = -1e300;
    full[u"focusWidth"_s] = u"3"_s;
    full[u"pictures"_s] = QJsonObject{{u"check"_s, QString::fromUtf8(GoodPicture)}, {u"radio"_s, u"<svg"_s}};
    full[u"later"_s] = QJsonObject{};
    Write("\xEF\xBB\xBF" + SkinDocument({WholeSkin(u"One"_s), full, WholeSkin(u"Three"_s)}));
    EXPECT_EQ(SkinNames(path), (QStringList{u"One"_s, u"Đêm"_s, u"Three"_s}));
    const auto skin = LoadSkin(path, u"Đêm"_s);
    ASSERT_TRUE(skin);
    EXPECT_EQ(skin->displayName, u"Đêm khuya"_s);
    EXPECT_TRUE(skin->isDark && skin->isHighContrast && skin->isGlossy);
    EXPECT_EQ(skin->cornerRadius * 100 + skin->lineWidth * 10 + skin->focusWidth, 1211);
    EXPECT_EQ(skin->Fill(SkinPart::Button), (SkinFill{0xFF0A0B0C, 0xFF1D1E1F}));
    EXPECT_EQ(skin->Fill(SkinPart::IconFill), (SkinFill{0xFF101010, 0xFF101010})) << "the last part";
    EXPECT_EQ(skin->pictures, (QHash<QString, QByteArray>{{u"check"_s, GoodPicture}}));
    EXPECT_FALSE(LoadSkin(path, u"đêm"_s));
}

TEST_F(SkinFile, HoldsNoSkinWhereItsContentCannotBeRead)
{
    const QByteArray good = SkinDocument({WholeSkin(u"One"_s)});
    const auto changed = [&good](const char *from, const QByteArray &to) { return QByteArray(good).replace(from, to); };
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("[]"), good.left(good.size() / 2), changed("lumivara-skins", "other"),
          changed("\"version\": 1", "\"version\": 2"), changed("\"skins\": [", "\"skins\": 1, \"x\": ["),
          changed("\"skins\": [", "\"x\": " + QByteArray(100000, '[') + ",\"skins\": ["),
          QByteArray(MaxSkinFileBytes, ' ') + good, QByteArray(1000, '\0')}) {
        Write(bytes);
        EXPECT_EQ(SkinNames(path), QStringList()) << bytes.left(200).toStdString();
        EXPECT_FALSE(LoadSkin(path, u"One"_s)) << bytes.left(200).toStdString();
    }
}

TEST_F(SkinFile, ListsValidNamesAndLoadsTheFirstOfTwo)
{
    QJsonArray skins{5, QJsonObject{{u"name"_s, 7}}, QJsonArray{}};
    for (const QString &name : {u""_s, u" a"_s, u"a "_s, u"a\nb"_s, u"a\u0000b"_s, QString(65, u'x')})
        skins.append(WholeSkin(name));
    Write(skins + WholeSkin(QString(64, u'x')) + WholeSkin(u"Twice"_s, true) + WholeSkin(u"Twice"_s, false));
    EXPECT_EQ(SkinNames(path), (QStringList{QString(64, u'x'), u"Twice"_s, u"Twice"_s}));
    EXPECT_TRUE(LoadSkin(path, u"Twice"_s)->isDark);
    EXPECT_FALSE(LoadSkin(path, u" a"_s));
    Write(SkinDocument({WholeSkin(u"lone"_s)}).replace("lone", "\\ud800"));
    EXPECT_EQ(SkinNames(path), QStringList()) << "half a character";
}

TEST_F(SkinFile, DoesNotLoadASkinWithoutEachColour)
{
    QJsonArray skins;
    const QJsonArray values = QJsonDocument::fromJson(R"(["#1234567", "#12345g", "123456", 5, {}, null, "#+12345",
        "#１２３４５６", ["#123456"], ["#123456", "x"], ["#123456", "#123456", "#123456"]])")
                                  .array();
    for (const QJsonValue &value : values)
        skins.append(WholeSkin(QString::number(skins.size()), false, {{u"iconFill"_s, value}}));
    Write(skins);
    EXPECT_EQ(SkinNames(path).size(), 11);
    for (int index = 0; index < skins.size(); ++index)
        EXPECT_FALSE(LoadSkin(path, QString::number(index))) << index;
}

TEST(SkinPart, OfALaterVersionTakesTheColourOfItsNeighbour)
{
    constexpr SkinPartRow rows[]{{u"bar"}, {u"footBar", u"bar"}, {u"footLine", u"footBar"}};
    const auto top = [&rows](const char *colours, QStringView part) {
        const auto fill = ReadPartFill(QJsonDocument::fromJson(colours).object(), part, rows);
        return fill ? fill->top & 0xFFFFFF : 0;
    };
    const std::tuple<const char *, QStringView, quint32> cases[]{
        {R"({"bar":"#000001","footBar":"#000002","footLine":"#000003"})", u"footLine", 3},
        {R"({"bar":"#000001","footBar":"#000002"})", u"footLine", 2},
        {R"({"bar":"#000001"})", u"footLine", 1},
        {R"({"footLine":"#000003"})", u"footLine", 3},
        {R"({"footLine":"#000003"})", u"footBar", 0},
        {R"({"bar":"#000001","footBar":"red"})", u"footBar", 0},
        {R"({"bar":"#000001","footBar":"red"})", u"footLine", 0},
        {R"({"footBar":"#000002"})", u"bar", 0},
        {R"({"bar":"#000001","later":"#000004"})", u"later", 4}};
    for (const auto &[colours, part, expected] : cases)
        EXPECT_EQ(top(colours, part), expected) << colours << ' ' << qPrintable(part.toString());
}

TEST(SkinPicture, IsASmallDrawingThatLeadsNowhere)
{
    EXPECT_EQ(PictureProblem(GoodPicture), QString());
    const QByteArray opening = R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink">)";
    QByteArrayList refused{"", "<svg/>", GoodPicture.chopped(1), "<!DOCTYPE svg [<!ENTITY a \"b\">]>" + GoodPicture,
                           "<?xml-stylesheet href=\"a\"?>" + GoodPicture};
    QByteArrayList parts =
        QByteArray(R"~(<image/>|<use xlink:href="#a"/>|<style/>|<script/>|<path fill="url( http://a )"/>|&a;|
            <linearGradient xlink:href="#a"/>|<path style="fill:url(file:a)"/>|<g onload="a"/>|<g xmlns="x"/>|
            <path stroke-dasharray="0.001"/>)~")
            .split('|');
    parts += {QByteArray("<g>").repeated(40) + QByteArray("</g>").repeated(40), QByteArray(MaxPictureBytes, ' ')};
    for (const QByteArray &part : parts)
        refused.append(opening + part + "</svg>");
    for (const QByteArray &svg : refused)
        EXPECT_NE(PictureProblem(svg), QString()) << svg.left(200).toStdString();
    EXPECT_EQ(PictureProblem(opening + "<path d=\"M0 0\"/></svg>"), QString());
}

} // namespace
