#include "program/ProgramRun.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(Reading, LinksLeaveForTheSystemOnceOrNotAtAllAndThePageStays)
{
    ProductCopy product;
    ProgramRun program(product);
    // The system's program for addresses, replaced by one that notes what it is given.
    const QString folder = product.Scratch(u"bin"_s);
    QDir().mkpath(folder);
    QFile script(folder + u"/xdg-open"_s), record(product.Scratch(u"opened"_s));
    EXPECT_TRUE(script.open(QIODevice::WriteOnly) && record.open(QIODevice::ReadWrite));
    script.write("#!/bin/sh\necho \"$*\" >>'" + QFile::encodeName(record.fileName()) + "'\n");
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    script.close();
    program.environment.insert(u"PATH"_s, folder + u':' + program.environment.value(u"PATH"_s));
    program.Open();
    QByteArray expected;
    for (const QString &address :
         {u"http://example.org/a?b=%C3%A9"_s, u"https://example.org/x"_s, u"mailto:reader@example.org?subject=x%20y"_s,
          u"file:///etc/passwd"_s, u"other.html"_s, u"foo:bar"_s, u"about:blank"_s, u"data:text/html,x"_s,
          u"javascript:document.title=1"_s, u"#there"_s, QString()}) {
        program.Send(
            u"script ebContent document.body.innerHTML = '<h1>page</h1><p><a href=\"%1\" style=\"display:block;"
            "height:60px\">link</a><p id=there>'; 0"_s.arg(address));
        const QString place = program.Send(u"script ebContent (() => { const box = document.querySelector('a')"
                                           ".getBoundingClientRect(); return Math.round(box.x + 20) + ' ' + "
                                           "Math.round(box.y + 30); })()"_s);
        program.Do({u"click ebContent "_s + place, u"pause 300"_s, u"wait-page ebContent"_s});
        if (address.contains(u"example.org"_s))
            expected += address.toUtf8() + '\n';
        record.seek(0);
        EXPECT_EQ(record.readAll(), expected) << address.toStdString();
        EXPECT_EQ(program.Send(u"script ebContent document.querySelector('h1').textContent"_s), u"page"_s);
    }
    EXPECT_EQ(program.Quit(), 0);
}
