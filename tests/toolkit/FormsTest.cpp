#include "toolkit/Forms.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

QWidget *Open(const QString &name)
{
    return OpenForm(name, [] { return new QWidget; });
}

} // namespace

TEST(Forms, StandOnceOfEachNameUntilTheyAreClosed)
{
    const QPointer<QWidget> form = Open(u"frmSearchSutas"_s);
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(form->objectName(), u"frmSearchSutas"_s);
    EXPECT_EQ(form->parentWidget(), nullptr);
    EXPECT_EQ(Open(u"frmSearchSutas"_s), form);
    EXPECT_NE(Open(u"frmDictionary"_s), form);
    EXPECT_EQ(FindForm(u"frmSearchSutas"_s), form);
    form->close();
    EXPECT_EQ(FindForm(u"frmSearchSutas"_s), nullptr);
    EXPECT_NE(Open(u"frmSearchSutas"_s), form.data());
    // The program's own loop deletes it on its next turn; a loop that begins later leaves that to the outer one.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(form.isNull());
    DeleteForms();
    EXPECT_EQ(FindForm(u"frmDictionary"_s), nullptr);
    EXPECT_THROW(OpenForm(u"frmDictionary"_s, []() -> QWidget * { throw std::runtime_error("no"); }),
                 std::runtime_error);
    EXPECT_EQ(FindForm(u"frmDictionary"_s), nullptr);
}
