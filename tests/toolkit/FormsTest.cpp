#include "toolkit/Forms.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTest>
#include <QWidget>

#include <gmock/gmock.h>

namespace {

class Forms : public testing::Test
{
protected:
    ~Forms() override { DeleteForms(); }

    QWidget *Open(const QString &name)
    {
        return OpenForm(name, [this] {
            ++made;
            return new QWidget;
        });
    }

    int made = 0;
};

} // namespace

TEST_F(Forms, AtMostOneOfEachName)
{
    QWidget *search = Open(QStringLiteral("frmSearchSutas"));
    EXPECT_TRUE(search->isVisible());
    EXPECT_EQ(search->objectName(), QStringLiteral("frmSearchSutas"));
    EXPECT_EQ(search->parentWidget(), nullptr);
    EXPECT_EQ(Open(QStringLiteral("frmSearchSutas")), search);
    EXPECT_NE(Open(QStringLiteral("frmDictionary")), search);
    EXPECT_EQ(made, 2);
    EXPECT_EQ(FindForm(QStringLiteral("frmSearchSutas")), search);
    EXPECT_EQ(FindForm(QStringLiteral("frmFocusHighlight")), nullptr);
}

TEST_F(Forms, AMinimisedOneIsRestored)
{
    QWidget *form = Open(QStringLiteral("frmDictionary"));
    form->setWindowState(Qt::WindowMinimized);
    EXPECT_EQ(Open(QStringLiteral("frmDictionary")), form);
    EXPECT_FALSE(form->isMinimized());
}

TEST_F(Forms, AClosedOneIsFoundNoMoreAndGoes)
{
    const QPointer<QWidget> form = Open(QStringLiteral("frmDictionary"));
    form->close();
    EXPECT_EQ(FindForm(QStringLiteral("frmDictionary")), nullptr);
    EXPECT_NE(Open(QStringLiteral("frmDictionary")), form.data());
    // The program's own loop deletes it on its next turn; a loop that begins later leaves that to the outer one.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(form.isNull());
}

TEST_F(Forms, WhatFailsToBeMadeIsNotThere)
{
    EXPECT_THROW(OpenForm(QStringLiteral("frmDictionary"), []() -> QWidget * { throw std::runtime_error("no"); }),
                 std::runtime_error);
    EXPECT_EQ(FindForm(QStringLiteral("frmDictionary")), nullptr);
}
