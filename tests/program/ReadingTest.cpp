#include "program/ProgramRun.h"

#include <QDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(Reading, LinksLeaveForTheSystemOnceOrNotAtAllAndThePageStays)
{
    ProductCopy product;
    ProgramRun program(product);
    // The system's program for addresses, replaced by one that notes what it is given.
    const QString folder = product.Scratch(u"bin"_s);
    QDir().mkpath(folder);
    StandIn opener(folder + u"/xdg-open"_s);
    program.environment.insert(u"PATH"_s, folder + u':' + program.environment.value(u"PATH"_s));
    program.Open();
    const auto click = [&](const char *link) {
        const QString place = program.Send(u"script ebContent (() => { const box = document.querySelector('%1')"
                                           ".getBoundingClientRect(); return Math.round(box.x + 20) + ' ' + "
                                           "Math.round(box.y + 30); })()"_s.arg(QLatin1StringView(link)));
        program.Do({u"click ebContent "_s + place, u"wait-page ebContent"_s});
    };
    for (const QString &address :
         {u"http://example.org/a?b=%C3%A9"_s, u"https://example.org/x"_s, u"mailto:reader@example.org?subject=x%20y"_s,
          u"file:///etc/passwd"_s, u"other.html"_s, u"foo:bar"_s, u"about:blank"_s, u"data:text/html,x"_s,
          u"javascript:document.title=1"_s, u"#there"_s, QString()}) {
        SCOPED_TRACE(address.toStdString());
        program.Send(u"script ebContent document.body.innerHTML = '<style>a { display:block; height:60px }</style>"
                     "<h1>page</h1><a id=here href=\"%1\">link</a><a id=there href=\"https://next\">next</a>'; 0"_s.arg(
                         address));
        click("#here");
        const bool leaves = address.contains(u"example.org"_s);
        EXPECT_EQ(leaves ? opener.NextCall() : "", leaves ? "0 " + address.toStdString() : "");
        EXPECT_EQ(program.Send(u"script ebContent document.querySelector('h1').textContent"_s), u"page"_s);
        click("#there");
        EXPECT_EQ(opener.NextCall(), "0 https://next/") << "nothing else came before it";
    }
    EXPECT_EQ(program.Quit(), 0);
}
