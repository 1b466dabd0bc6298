#include "presentation/FontRules.h"

#include <gmock/gmock.h>

#include <QMap>

namespace {

/// A rule in short: place, start, size at base 10, then "i" italic, "q" quality again, colour, "d" depth of the effect.
QString Told(const QByteArray &kind, int tag)
{
    const auto rule = FindFontRule(kind, tag);
    if (!rule)
        return QStringLiteral("nothing");
    const char *const places[] = {"font", "style", "columns", "captions", "items", "bar", "menu"};
    const char *const starts[] = {"base", "name", "designed"};
    QStringList words{QString::fromLatin1(places[static_cast<int>(rule->place)]),
                      QString::fromLatin1(starts[static_cast<int>(rule->start)])};
    if (const int size = rule->Size(10))
        words += QString::number(size);
    if (rule->addsItalic)
        words += QStringLiteral("i");
    if (rule->smoothsAgain)
        words += QStringLiteral("q");
    if (rule->textColour)
        words += QStringLiteral("#%1").arg(*rule->textColour, 6, 16, QLatin1Char('0'));
    if (rule->effectDepth)
        words += QStringLiteral("d%1").arg(rule->effectDepth);
    return words.join(QLatin1Char(' '));
}

struct Row
{
    const char *kinds;        ///< parted by blanks
    QMap<int, QString> rules; ///< by Tag; the others are "nothing"
    const char *anyTag = nullptr;
};

QMap<int, QString> Edit()
{
    return {{0, QStringLiteral("style base")}, {1, QStringLiteral("style base q #a4a0a0")}};
}

const QList<Row> rows{
    {"TPanel TcxGrid TEdit TMemo TDBMemo TLabel TcxPageControl TdxDockPanel", {}, "font base"},
    {"TcxDBTextEdit TcxComboBox TcxPopupEdit TcxSpinEdit TcxTimeEdit TcxDateEdit TcxDBImageComboBox", {}, "style base"},
    {"TDBAdvGrid", {}, "columns base q"},
    {"TdxBarManager", {}, "items base q"},
    {"TdxBar", {}, "bar base"},
    {"TdxBarPopupMenu", {}, "menu base"},
    {"TcxButtonEdit TcxTextEdit TcxMemo TcxDBMemo", Edit()},
    {"TcxButton", {{0, QStringLiteral("font base")}, {-1, QStringLiteral("font base 9 q")}}},
    {"TdxLayoutControl", {{1, QStringLiteral("captions base 10 q")}}},
    {"TcxDBLabel",
     {{0, QStringLiteral("style base")},
      {10, QStringLiteral("style name 10 i q")},
      {-1, QStringLiteral("style name 9 i q")}}},
    {"TcxLabel",
     {{0, QStringLiteral("style base")},
      {10, QStringLiteral("style name 10 i q")},
      {1, QStringLiteral("style name 10 q #000000")},
      {11, QStringLiteral("style name 11 q #000000")},
      {2, QStringLiteral("style designed 12 q")},
      {3, QStringLiteral("style designed 14 q")},
      {4, QStringLiteral("style designed 18 q")},
      {5, QStringLiteral("style designed 24 q #800000 d1")},
      {6, QStringLiteral("style designed 36 q")},
      {7, QStringLiteral("style designed 48 q #000080 d2")}}},
    {"TBrowserControl TDBTreeList TdxLayoutItem TdxBarSubItem TcxGridDBTableView QLabel QObject tpanel", {}},
};

} // namespace

TEST(FontRules, TellEachKindAndTag)
{
    for (const Row &row : rows) {
        for (const QByteArray &kind : QByteArray(row.kinds).split(' ')) {
            for (const int tag : {-2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 2147483647}) {
                const QString other = row.anyTag ? QString::fromLatin1(row.anyTag) : QStringLiteral("nothing");
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
