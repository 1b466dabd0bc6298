#include "program/ProgramRun.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// The system's program for addresses, replaced by one that notes what it is given.
class SystemBrowser
{
public:
    SystemBrowser(const ProductCopy &product, QProcessEnvironment &environment) : m_record(product.Scratch(u"opened"_s))
    {
        const QString folder = product.Scratch(u"bin"_s);
        QDir().mkpath(folder);
        QFile program(folder + u"/xdg-open"_s);
        EXPECT_TRUE(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\necho \"$*\" >>'" + QFile::encodeName(m_record) + "'\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        environment.insert(u"PATH"_s, folder + u':' + environment.value(u"PATH"_s));
    }

    QStringList Opened() const
    {
        QFile file(m_record);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

private:
    QString m_record;
};

/// Presses the left button on a link that takes the place of the page's text.
void ClickLink(ProgramRun &program, const QString &address)
{
    program.Send(u"script ebContent document.body.innerHTML = '<h1>page</h1><p><a href=\"%1\" style=\"display:block;"
                 "height:60px\">link</a><p id=there>'; 0"_s.arg(address));
    const QString place = program.Send(u"script ebContent (() => { const box = document.querySelector('a')"
                                       ".getBoundingClientRect(); return Math.round(box.x + 20) + ' ' + "
                                       "Math.round(box.y + 30); })()"_s);
    program.Do({u"click ebContent "_s + place, u"pause 300"_s, u"wait-page ebContent"_s});
}

TEST(Reading, LinksLeaveForTheSystemOnceOrNotAtAllAndThePageStays)
{
    ProductCopy product;
    ProgramRun program(product);
    const SystemBrowser browser(product, program.environment);
    program.Open();
    const QString outside[] = {u"http://example.org/a?b=%C3%A9"_s, u"https://example.org/x"_s,
                               u"mailto:reader@example.org?subject=x%20y"_s};
    QStringList expected;
    for (const QString &address : outside) {
        ClickLink(program, address);
        expected += address;
        EXPECT_EQ(browser.Opened(), expected) << address.toStdString();
    }
    for (const QString &address :
         {u"file:///etc/passwd"_s, u"other.html"_s, u"foo:bar"_s, u"ftp://example.org/"_s, u"about:blank"_s,
          u"data:text/html,x"_s, u"javascript:document.title=1"_s, u"#there"_s, QString()}) {
        ClickLink(program, address);
        EXPECT_EQ(browser.Opened(), expected) << address.toStdString();
        EXPECT_EQ(program.Send(u"script ebContent document.querySelector('h1').textContent"_s), u"page"_s)
            << address.toStdString();
    }
    EXPECT_EQ(program.Quit(), 0);
}

} // namespace
