#include "presentation/languages/Published.h"

#include <gmock/gmock.h>

namespace {

class Item : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Description MEMBER Description)
    Q_PROPERTY(QString Name MEMBER ItemName)

public:
    QString Description, ItemName;
};

class TFont : public Item
{
    Q_OBJECT
};

class Grid : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Caption MEMBER Caption)
    Q_PROPERTY(QString hint MEMBER Hint STORED false)
    Q_PROPERTY(QString Name MEMBER NameText)
    Q_PROPERTY(QString ReadOnly READ ReadOnly)
    Q_PROPERTY(QStringList Lines MEMBER Lines)
    Q_PROPERTY(int Number MEMBER Number)
    Q_PROPERTY(Item *Options READ Options)
    Q_PROPERTY(QObject *Neighbour MEMBER Neighbour)
    Q_PROPERTY(TFont *Font READ Font)
    Q_PROPERTY(QList<QObject *> Items READ Items)

public:
    QString ReadOnly() const { return {}; }
    Item *Options() { return &m_options; }
    TFont *Font() { return &m_font; }
    QList<QObject *> Items() { return {&m_items[0], &m_items[1]}; }

    QString Caption, Hint, NameText;
    QStringList Lines;
    int Number = 0;
    QObject *Neighbour = nullptr;
    Item m_options, m_items[2];
    TFont m_font;
};

QStringList WalkedNames(QObject &object, const PublishedFilter &filter = {})
{
    QStringList names;
    WalkPublished(&object, filter, [&](const QString &name, const PublishedText &text) {
        EXPECT_TRUE(text.IsValid());
        names.append(name);
    });
    return names;
}

TEST(PublishedName, FollowsTheTableFromTheMostDerivedClassUp)
{
    // The classes, the toolkit's property and the name it is published by.
    const std::tuple<QByteArray, QByteArray, QString> rows[]{
        {"QToolButton QAbstractButton QWidget QObject", "text", u"Caption"_qs},
        {"QToolButton QAbstractButton QWidget QObject", "toolTip", u"Hint"_qs},
        {"QToolButton QAbstractButton QWidget QObject", "windowTitle", {}},
        {"QMenu QWidget QObject", "windowTitle", {}},
        {"QLineEdit QWidget QObject", "text", u"Text"_qs},
        {"QTextBrowser QTextEdit QWidget QObject", "plainText", u"Lines"_qs},
        {"QComboBox QWidget QObject", "items", u"Properties.Items"_qs},
        {"QAction QObject", "text", u"Caption"_qs},
        {"QActionGroup QObject", "text", u"Text"_qs},
        {"QWidget QObject", "objectName", {}}};
    for (const auto &[chain, property, name] : rows)
        EXPECT_EQ(PublishedName(chain.split(' '), property), name) << chain.data() << property.data();
}

TEST(Published, WalkVisitsTextsNestedObjectsAndCollections)
{
    Grid grid, named;
    named.setObjectName(u"other"_qs);
    grid.Neighbour = &named;
    grid.setProperty("OptionsView.NoData", u"x"_qs);
    grid.setProperty("Name", u"x"_qs);
    grid.setProperty("_q_internal", u"x"_qs);
    grid.setProperty("Tag", 3);
    Item dynamicItem;
    grid.setProperty("Properties.Items", QVariant::fromValue(QList<QObject *>{&dynamicItem}));
    const QStringList all = WalkedNames(grid);
    EXPECT_EQ(all.join(u' '),
              u"Caption Hint Lines Options.Description Options.Name Font.Description Font.Name Items[0].Description "
              "Items[0].Name Items[1].Description Items[1].Name OptionsView.NoData "
              "Properties.Items[0].Description Properties.Items[0].Name"_qs);
    const PublishedFilter filter = [](const QString &name, const QObject *object) {
        return !(object && object->inherits("TFont")) && name != u"Items" && name != u"Caption";
    };
    const QStringList allowed = WalkedNames(grid, filter);
    EXPECT_EQ(allowed.size(), 14 - 2 - 4 - 1);

    // What the walk visits is found by its name, under the same filter, and nothing else is.
    for (const QString &name : all) {
        FindPublished(&grid, name).Write(u"text of "_qs + name);
        EXPECT_EQ(FindPublished(&grid, name).Read(), u"text of "_qs + name);
        EXPECT_EQ(FindPublished(&grid, name, filter).IsValid(), allowed.contains(name)) << name.toStdString();
    }
    EXPECT_EQ(dynamicItem.Description, u"text of Properties.Items[0].Description"_qs);
    for (const QString &name : u"Name,caption,Neighbour.Caption,Items[2].Description,Items[-1].Description,Items[0],"
                               "Items[0]Description,Items[x].Description,Number,Options,,ReadOnly,Options.,"
                               "_q_internal,Tag"_qs.split(u','))
        EXPECT_FALSE(FindPublished(&grid, name).IsValid()) << name.toStdString();
    grid.Neighbour = &grid; // without a name it is a part
    EXPECT_GT(WalkedNames(grid).size(), all.size());
    EXPECT_FALSE(FindPublished(&grid, u"Neighbour."_qs.repeated(10'000) + u"Caption"_qs).IsValid());
}

TEST(Published, TextsKeepTheirKindAndShowTheirLines)
{
    Grid grid;
    grid.setProperty("Page", QStringList{});
    FindPublished(&grid, u"Caption"_qs).Write(u"a\r\nb\rc\nd"_qs);
    EXPECT_EQ(grid.Caption, u"a\nb\nc\nd"_qs);
    EXPECT_TRUE(FindPublished(&grid, u"Caption"_qs).IsStored() && !FindPublished(&grid, u"Hint"_qs).IsStored());
    const std::pair<QStringList, QString> rows[]{
        {{}, {}}, {{u""_qs}, u"\r\n"_qs}, {{u"a"_qs, u"b"_qs}, u"a\r\nb"_qs}, {{u"a"_qs, u""_qs}, u"a\r\n\r\n"_qs}};
    for (const auto &[lines, text] : rows) {
        grid.Lines = lines;
        EXPECT_EQ(FindPublished(&grid, u"Lines"_qs).Read(), text);
        FindPublished(&grid, u"Page"_qs).Write(text);
        EXPECT_EQ(grid.property("Page"), QVariant(lines));
    }
}

} // namespace

#include "PublishedTest.moc"
