#include "presentation/FontRules.h"

#include <gmock/gmock.h>

#include <QMap>

using namespace Qt::StringLiterals;

namespace {

/// A rule in short: place, start, size at base 10, then "i" italic, "q" quality again, colour, "d" depth of the effect.
QString Told(const QByteArray &kind, int tag)
{
    const auto rule = FindFontRule(kind, tag);
    if (!rule)
        return u"nothing"_s;
    const char *const places[] = {"font", "style", "columns", "captions", "items", "bar", "menu"};
    const char *const starts[] = {"base", "name", "designed"};
    QStringList words{QString::fromLatin1(places[static_cast<int>(rule->place)]),
                      QString::fromLatin1(starts[static_cast<int>(rule->start)])};
    if (const int size = rule->Size(10))
        words += QString::number(size);
    if (rule->addsItalic)
        words += u"i"_s;
    if (rule->smoothsAgain)
        words += u"q"_s;
    if (rule->textColour)
        words += u"#%1"_s.arg(*rule->textColour, 6, 16, QLatin1Char('0'));
    if (rule->effectDepth)
        words += u"d%1"_s.arg(rule->effectDepth);
    return words.join(u' ');
}

struct Row
{
    const char *kinds;        ///< parted by blanks
    QMap<int, QString> rules; ///< by Tag; the others are "nothing"
    const char *anyTag = nullptr;
};

QMap<int, QString> Edit()
{
    return {{0, u"style base"_s}, {1, u"style base q #a4a0a0"_s}};
}

const QList<Row> rows{
    {"TPanel TcxGrid TEdit TMemo TDBMemo TLabel TcxPageControl TdxDockPanel", {}, "font base"},
    {"TcxDBTextEdit TcxComboBox TcxPopupEdit TcxSpinEdit TcxTimeEdit TcxDateEdit TcxDBImageComboBox", {}, "style base"},
    {"TDBAdvGrid", {}, "columns base q"},
    {"TdxBarManager", {}, "items base q"},
    {"TdxBar", {}, "bar base"},
    {"TdxBarPopupMenu", {}, "menu base"},
    {"TcxButtonEdit TcxTextEdit TcxMemo TcxDBMemo", Edit()},
    {"TcxButton", {{0, u"font base"_s}, {-1, u"font base 9 q"_s}}},
    {"TdxLayoutControl", {{1, u"captions base 10 q"_s}}},
    {"TcxDBLabel", {{0, u"style base"_s}, {10, u"style name 10 i q"_s}, {-1, u"style name 9 i q"_s}}},
    {"TcxLabel",
     {{0, u"style base"_s},
      {10, u"style name 10 i q"_s},
      {1, u"style name 10 q #000000"_s},
      {11, u"style name 11 q #000000"_s},
      {2, u"style designed 12 q"_s},
      {3, u"style designed 14 q"_s},
      {4, u"style designed 18 q"_s},
      {5, u"style designed 24 q #800000 d1"_s},
      {6, u"style designed 36 q"_s},
      {7, u"style designed 48 q #000080 d2"_s}}},
    {"TBrowserControl TDBTreeList TdxLayoutItem TdxBarSubItem TcxGridDBTableView QLabel QObject tpanel", {}},
};

} // namespace

TEST(FontRules, TellEachKindAndTag)
{
    for (const Row &row : rows) {
        for (const QByteArray &kind : QByteArray(row.kinds).split(' ')) {
            for (const int tag : {-2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 2147483647}) {
                const QString other = row.anyTag ? QString::fromLatin1(row.anyTag) : u"nothing"_s;
                EXPECT_EQ(Told(kind, tag), row.rules.value(tag, other)) << kind.constData() << " with Tag " << tag;
            }
        }
    }
}

TEST(FontRules, TheFirstKindOfTheTableDecides)
{
    EXPECT_EQ(FontKind({"TdxBar", "TcxButton", "QFrame", "TPanel", "TcxGrid"}), "TPanel");
    EXPECT_EQ(FontKind({"TMyLabel", "TcxLabel", "QLabel", "QObject"}), "TcxLabel");
    EXPECT_EQ(FontKind({"TcxTextEdit", "TcxDBTextEdit"}), "TcxDBTextEdit");
    // A kind whose Tag has no rule still decides: what comes later in the table does not act in its place.
    EXPECT_EQ(FontKind({"TcxComboBox", "TcxDBLabel"}), "TcxDBLabel");
    EXPECT_EQ(FontKind({"QWebEngineView", "QWidget", "QObject"}), "");
    EXPECT_EQ(FontKind({}), "");
}

TEST(FontRules, CutOffTheFractionOfAScaledSize)
{
    FontRule rule;
    EXPECT_EQ(rule.Size(10), 0);
    rule.sizePercent = 90;
    EXPECT_EQ(rule.Size(11), 9);
    rule.sizePercent = 110;
    EXPECT_EQ(rule.Size(9), 9);
    rule.sizePercent = 100;
    rule.sizeLess = 1;
    EXPECT_EQ(rule.Size(10), 9);
}
