#include "presentation/FontRules.h"

#include <gmock/gmock.h>

#include <QMap>
#include <QTextStream>

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
    QString words;
    QTextStream told(&words);
    told << places[int(rule->place)] << ' ' << starts[int(rule->start)];
    if (const int size = rule->Size(10))
        told << ' ' << size;
    told << (rule->addsItalic ? " i" : "") << (rule->smoothsAgain ? " q" : "");
    if (rule->textColour)
        told << u" #%1"_s.arg(*rule->textColour, 6, 16, QLatin1Char('0'));
    if (rule->effectDepth)
        told << " d" << rule->effectDepth;
    return words;
}

} // namespace

TEST(FontRules, TellEachKindAndTag)
{
    // The kinds, and the rules by Tag: all others have the one of *, or none.
    const std::pair<QByteArray, QString> rows[]{
        {"TPanel TcxGrid TEdit TMemo TDBMemo TLabel TcxPageControl TdxDockPanel", u"*=font base"_s},
        {"TcxDBTextEdit TcxComboBox TcxPopupEdit TcxSpinEdit TcxTimeEdit TcxDateEdit TcxDBImageComboBox",
         u"*=style base"_s},
        {"TDBAdvGrid", u"*=columns base q"_s},
        {"TdxBarManager", u"*=items base q"_s},
        {"TdxBar", u"*=bar base"_s},
        {"TdxBarPopupMenu", u"*=menu base"_s},
        {"TcxButtonEdit TcxTextEdit TcxMemo TcxDBMemo", u"0=style base,1=style base q #a4a0a0"_s},
        {"TcxButton", u"0=font base,-1=font base 9 q"_s},
        {"TdxLayoutControl", u"1=captions base 10 q"_s},
        {"TcxDBLabel", u"0=style base,10=style name 10 i q,-1=style name 9 i q"_s},
        {"TcxLabel", u"0=style base,10=style name 10 i q,1=style name 10 q #000000,11=style name 11 q #000000,"
                     "2=style designed 12 q,3=style designed 14 q,4=style designed 18 q,6=style designed 36 q,"
                     "5=style designed 24 q #800000 d1,7=style designed 48 q #000080 d2"_s},
        {"TBrowserControl TdxLayoutItem QLabel tpanel", {}}};
    for (const auto &[kinds, told] : rows) {
        QMap<QString, QString> rules;
        for (const QString &rule : told.split(u','))
            rules[rule.section(u'=', 0, 0)] = rule.section(u'=', 1);
        for (const QByteArray &kind : kinds.split(' '))
            for (int tag = -2; tag <= 12; ++tag)
                EXPECT_EQ(Told(kind, tag), rules.value(QString::number(tag), rules.value(u"*"_s, u"nothing"_s)))
                    << kind.data() << tag;
    }
}

TEST(FontRules, TheFirstKindOfTheTableDecides)
{
    EXPECT_EQ(FontKind({"TdxBar", "TcxButton", "QFrame", "TPanel", "TcxGrid"}), "TPanel");
    // A kind whose Tag has no rule still decides: what comes later in the table does not act in its place.
    EXPECT_EQ(FontKind({"TcxComboBox", "TcxDBLabel"}), "TcxDBLabel");
    EXPECT_EQ(FontKind({"QWebEngineView", "QWidget", "QObject"}), "");
}

TEST(FontRules, CutOffTheFractionOfAScaledSize)
{
    FontRule rule;
    rule.sizePercent = 90;
    EXPECT_EQ(rule.Size(11), 9);
    rule.sizePercent = 110;
    EXPECT_EQ(rule.Size(9), 9);
}
