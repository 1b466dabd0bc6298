#include "marks/HtmlToPlainText.h"
#include "support/WaitFor.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(HtmlToPlainText, IsTheBodyAsTheEngineReadsIt)
{
    const std::tuple<const char *, QString, QString> rows[]{
        {"blocks and breaks part lines", u"<p>một</p><p>hai<br>ba</p>"_s, u"một\n\nhai\nba"_s},
        {"blanks and entities", u"<b>a</b>  \n b&nbsp;c &amp;lt; &#7789;"_s, u"a b\u00a0c &lt; ṭ"_s},
        {"what is not shown is no text", u"<title>t</title><style>p{}</style>a<i style='display:none'>b</i>"_s, u"a"_s},
        {"scripts do not run", u"a<script>document.body.textContent = 'run'</script>"_s, u"a"_s},
        {"no page", u""_s, u""_s},
    };
    for (const auto &[rule, html, plain] : rows)
        EXPECT_EQ(HtmlToPlainText(html), plain) << rule;
    EXPECT_EQ(HtmlToPlainText(QString(1'000'000, u'ṭ')).size(), 1'000'000) << "longer than the engine takes as a text";
}

TEST(HtmlToPlainText, GivesNothingWhenTheProgramEndsMeanwhile)
{
    QString plain = u"none yet"_s;
    QTimer::singleShot(0, qApp, [&] {
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(3); });
        plain = HtmlToPlainText(u"<p>a</p>"_s);
    });
    EXPECT_EQ(QCoreApplication::exec(), 3);
    EXPECT_EQ(plain, QString());
    EXPECT_EQ(HtmlToPlainText(u"<p>a</p>"_s), u"a"_s);
}
